// The reference resampler behind the primitives table, loaded the way the
// module loads it: "Kernel\Photo\IPPDLL.dll" below the host folder.
#include <gtest/gtest.h>

#include <vector>

#include "imaging/ipp_functions.h"

namespace {

class ReferenceResize : public ::testing::Test {
protected:
    void SetUp() override { table.Load(nullptr); }
    IppFunctions table;
};

#if defined(PCG_TEST_WITH_REFERENCE_IPP)

TEST_F(ReferenceResize, ExportsAllTwentyTwoEntries) {
    ASSERT_NE(table.m_hLibrary, nullptr);
    for (const char* name : IppFunctions::kEntryNames)
        EXPECT_NE(pcg::platform::FindSymbol(table.m_hLibrary, name), nullptr) << name;
    EXPECT_NE(table.m_pIppiResizeLinear_8u_C4R, nullptr);
    EXPECT_NE(table.m_pIppiThreshold_GTVal_8u_C1IR, nullptr);
}

TEST_F(ReferenceResize, LoadTwiceKeepsTheLibraryAndUnloadEmpties) {
    const pcg::platform::ModuleHandle first = table.m_hLibrary;
    table.Load(L"no\\such\\IPPDLL.dll");
    EXPECT_EQ(table.m_hLibrary, first);
    table.Unload();
    EXPECT_EQ(table.m_hLibrary, nullptr);
    EXPECT_EQ(table.m_pIppsMalloc_8u, nullptr);
    EXPECT_EQ(table.m_pIppiResizeSuper_8u_C1R, nullptr);
}

TEST_F(ReferenceResize, LinearUpscaleReplicatesTheEdge) {
    // Two pixels to four: centres at -0.25, 0.25, 0.75, 1.25 of the source;
    // the outer two clamp to the edge.
    const Ipp8u src[2] = {0, 255};
    Ipp8u dst[4] = {};
    ASSERT_EQ(ResizeBuffer_8u(table, 2, 1, src, {2, 1}, 2, dst, {4, 1}, {0, 0}, 4), 0);
    EXPECT_EQ(std::vector<Ipp8u>(dst, dst + 4), (std::vector<Ipp8u>{0, 64, 191, 255}));
}

TEST_F(ReferenceResize, SuperDownscaleAveragesAreas) {
    // 4x4 in 2x2 blocks to 2x2, one channel, a padded source stride.
    const Ipp8u src[4 * 6] = {10, 20, 100, 100, 9, 9,  //
                              30, 40, 100, 100, 9, 9,  //
                              0,  0,  255, 255, 9, 9,  //
                              0,  4,  255, 251, 9, 9};
    Ipp8u dst[4] = {};
    ASSERT_EQ(ResizeBuffer_8u(table, 8, 1, src, {4, 4}, 6, dst, {2, 2}, {0, 0}, 2), 0);
    EXPECT_EQ(std::vector<Ipp8u>(dst, dst + 4), (std::vector<Ipp8u>{25, 100, 1, 254}));
}

TEST_F(ReferenceResize, FourChannelsResampleAlphaLikeColour) {
    // A 2x1 BGRA picture halved to one pixel: each channel, alpha too, is the mean.
    const Ipp8u src[8] = {0, 100, 200, 10, 100, 200, 0, 250};
    Ipp8u dst[4] = {};
    ASSERT_EQ(ResizeBuffer_8u(table, 8, 4, src, {2, 1}, 8, dst, {1, 1}, {0, 0}, 4), 0);
    EXPECT_EQ(std::vector<Ipp8u>(dst, dst + 4), (std::vector<Ipp8u>{50, 150, 100, 130}));
}

TEST_F(ReferenceResize, ThreeChannelsKeepTheirOrder) {
    const Ipp8u src[6 * 2] = {1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3};
    Ipp8u dst[3 * 3 * 3] = {};
    ASSERT_EQ(ResizeBuffer_8u(table, 2, 3, src, {2, 2}, 6, dst, {3, 3}, {0, 0}, 9), 0);
    for (int i = 0; i < 27; ++i) EXPECT_EQ(dst[i], 1 + i % 3);
}

TEST_F(ReferenceResize, TileAtAnOffsetIsPartOfTheWhole) {
    std::vector<Ipp8u> src(17 * 13);
    for (size_t i = 0; i < src.size(); ++i) src[i] = static_cast<Ipp8u>(i * 37);
    std::vector<Ipp8u> whole(9 * 7), tile(4 * 3);
    ASSERT_EQ(ResizeBuffer_8u(table, 2, 1, src.data(), {17, 13}, 17, whole.data(), {9, 7}, {0, 0}, 9), 0);
    // The tile routine itself, with the whole destination size at init.
    int stateSize = 0, initSize = 0, workSize = 0;
    ASSERT_EQ(table.m_pIppiResizeGetSize_8u({17, 13}, {9, 7}, 2, 0, &stateSize, &initSize), 0);
    Ipp8u* state = table.m_pIppsMalloc_8u(stateSize);
    IppiResizeState* resize = reinterpret_cast<IppiResizeState*>(state);
    ASSERT_EQ(table.m_pIppiResizeLinearInit_8u({17, 13}, {9, 7}, resize), 0);
    ASSERT_EQ(table.m_pIppiResizeGetBufferSize_8u(resize, {4, 3}, 1, &workSize), 0);
    Ipp8u* work = table.m_pIppsMalloc_8u(workSize);
    ASSERT_EQ(table.m_pIppiResizeLinear_8u_C1R(src.data(), 17, tile.data(), 4, {5, 2}, {4, 3}, 1, nullptr,
                                               resize, work),
              0);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_EQ(tile[y * 4 + x], whole[(y + 2) * 9 + x + 5]);
    table.m_pIppsFree(work);
    table.m_pIppsFree(state);
}

TEST_F(ReferenceResize, EmptySizeIsASizeError) {
    Ipp8u src[4] = {}, dst[4] = {};
    EXPECT_EQ(ResizeBuffer_8u(table, 8, 1, src, {0, 2}, 0, dst, {2, 2}, {0, 0}, 2), -6);
}

TEST_F(ReferenceResize, PlainHelpers) {
    Ipp8u plane[6] = {1, 9, 3, 200, 5, 250};
    ASSERT_EQ(table.m_pIppiThreshold_GTVal_8u_C1IR(plane, 3, {3, 2}, 100, 7), 0);
    EXPECT_EQ(std::vector<Ipp8u>(plane, plane + 6), (std::vector<Ipp8u>{1, 9, 3, 7, 5, 7}));
    Ipp8u out[6] = {};
    ASSERT_EQ(table.m_pIppiThreshold_LTVal_8u_C1R(plane, 3, out, 3, {3, 2}, 5, 0), 0);
    EXPECT_EQ(std::vector<Ipp8u>(out, out + 6), (std::vector<Ipp8u>{0, 9, 0, 7, 5, 7}));
    ASSERT_EQ(table.m_pIppiXor_8u_C1IR(plane, 3, out, 3, {3, 2}), 0);
    EXPECT_EQ(std::vector<Ipp8u>(out, out + 6), (std::vector<Ipp8u>{1, 0, 3, 0, 0, 0}));
    ASSERT_EQ(table.m_pIppiSet_8u_C1R(4, out, 3, {2, 2}), 0);
    EXPECT_EQ(std::vector<Ipp8u>(out, out + 6), (std::vector<Ipp8u>{4, 4, 3, 4, 4, 0}));
    void* block = table.m_pIppMalloc(10);
    EXPECT_NE(block, nullptr);
    table.m_pIppFree(block);
    int size = 0;
    EXPECT_EQ(table.m_pIppiResizeGetBufSize({0, 0, 4, 4}, {0, 0, 2, 2}, 1, 8, &size), 0);
    EXPECT_GT(size, 0);
}

TEST_F(ReferenceResize, MaskedHelpersAndErode) {
    const Ipp8u mask[2] = {0, 1};
    const Ipp8u src[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    Ipp8u dst[8] = {};
    ASSERT_EQ(table.m_pIppiCopy_8u_C4MR(src, 8, dst, 8, {2, 1}, mask, 2), 0);
    EXPECT_EQ(std::vector<Ipp8u>(dst, dst + 8), (std::vector<Ipp8u>{0, 0, 0, 0, 5, 6, 7, 8}));
    const Ipp8u value[4] = {9, 9, 9, 9};
    const Ipp8u first[2] = {1, 0};
    ASSERT_EQ(table.m_pIppiSet_8u_C4MR(value, dst, 8, {2, 1}, first, 2), 0);
    EXPECT_EQ(std::vector<Ipp8u>(dst, dst + 8), (std::vector<Ipp8u>{9, 9, 9, 9, 5, 6, 7, 8}));
    // 3x3 erosion of the centre of a 3x3 block: the minimum of all nine.
    const Ipp8u block[9] = {9, 8, 7, 6, 5, 4, 3, 2, 200};
    const Ipp8u element[9] = {1, 1, 1, 1, 1, 1, 1, 1, 1};
    Ipp8u centre = 0;
    ASSERT_EQ(table.m_pIppiErode_8u_C1R(block + 4, 3, &centre, 1, {1, 1}, element, {3, 3}, {1, 1}), 0);
    EXPECT_EQ(centre, 2);
}

#else

// Without OpenCV there is no reference resampler: the module's
// missing-library path is what runs, and every resize answers -118.
TEST_F(ReferenceResize, WithoutTheLibraryEveryResizeIsMinus118) {
    EXPECT_EQ(table.m_hLibrary, nullptr);
    Ipp8u src[16] = {}, dst[4] = {};
    EXPECT_EQ(ResizeBuffer_8u(table, 8, 4, src, {2, 2}, 8, dst, {1, 1}, {0, 0}, 4), -118);
    EXPECT_EQ(ResizeBuffer_8u(table, 2, 1, src, {2, 2}, 2, dst, {1, 1}, {0, 0}, 1), -118);
}

#endif

}  // namespace
