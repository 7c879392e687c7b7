#include "imaging/ipp_functions.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace {

// A scripted resampling library: each entry records its call and answers
// what the test set.
struct Script {
    IppStatus getSize = 0;
    int stateSize = 24;
    int initSize = 16;
    IppStatus init = 0;
    IppStatus bufferSize = 0;
    int workSize = 64;
    int failMallocAt = -1;  // index of the ippsMalloc_8u call that fails
    IppStatus resize = 0;

    std::vector<std::string> calls;
    uint32_t interpolation = 0;
    Ipp32u channels = 0;
    IppiBorderType border = -1;
    const Ipp8u* borderValue = reinterpret_cast<const Ipp8u*>(1);
    IppiPoint offset = {-1, -1};
    int mallocs = 0;
    std::vector<void*> allocated;
    std::vector<void*> freed;
};
Script* g_script = nullptr;

IppStatus PCG_IPPAPI FakeGetSize(IppiSize, IppiSize, uint32_t interpolation, Ipp32u antialiasing,
                                 int* pStateSize, int* pInitSize) {
    g_script->calls.push_back("GetSize");
    g_script->interpolation = interpolation;
    EXPECT_EQ(antialiasing, 0u);
    *pStateSize = g_script->stateSize;
    *pInitSize = g_script->initSize;
    return g_script->getSize;
}
IppStatus PCG_IPPAPI FakeLinearInit(IppiSize, IppiSize, IppiResizeState*) {
    g_script->calls.push_back("LinearInit");
    return g_script->init;
}
IppStatus PCG_IPPAPI FakeSuperInit(IppiSize, IppiSize, IppiResizeState*) {
    g_script->calls.push_back("SuperInit");
    return g_script->init;
}
IppStatus PCG_IPPAPI FakeBufferSize(const IppiResizeState*, IppiSize, Ipp32u channels, int* pSize) {
    g_script->calls.push_back("GetBufferSize");
    g_script->channels = channels;
    *pSize = g_script->workSize;
    return g_script->bufferSize;
}
Ipp8u* PCG_IPPAPI FakeMalloc(int len) {
    const int index = g_script->mallocs++;
    g_script->calls.push_back("Malloc" + std::to_string(len));
    if (index == g_script->failMallocAt) return nullptr;
    void* block = std::malloc(static_cast<size_t>(len > 0 ? len : 1));
    g_script->allocated.push_back(block);
    return static_cast<Ipp8u*>(block);
}
void PCG_IPPAPI FakeFree(void* p) {
    g_script->calls.push_back("Free");
    g_script->freed.push_back(p);
    std::free(p);
}
template <int channels>
IppStatus PCG_IPPAPI FakeLinear(const Ipp8u*, Ipp32s, Ipp8u*, Ipp32s, IppiPoint offset, IppiSize,
                                IppiBorderType border, const Ipp8u* borderValue, const IppiResizeState*,
                                Ipp8u* work) {
    g_script->calls.push_back("Linear_C" + std::to_string(channels));
    g_script->border = border;
    g_script->borderValue = borderValue;
    g_script->offset = offset;
    EXPECT_NE(work, nullptr);
    return g_script->resize;
}
template <int channels>
IppStatus PCG_IPPAPI FakeSuper(const Ipp8u*, Ipp32s, Ipp8u*, Ipp32s, IppiPoint offset, IppiSize,
                               const IppiResizeState*, Ipp8u* work) {
    g_script->calls.push_back("Super_C" + std::to_string(channels));
    g_script->offset = offset;
    EXPECT_NE(work, nullptr);
    return g_script->resize;
}

class ResizeBufferTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_script = &script;
        table.m_hLibrary = reinterpret_cast<pcg::platform::ModuleHandle>(&script);  // any non-null
        table.m_pIppiResizeGetSize_8u = &FakeGetSize;
        table.m_pIppiResizeLinearInit_8u = &FakeLinearInit;
        table.m_pIppiResizeSuperInit_8u = &FakeSuperInit;
        table.m_pIppiResizeGetBufferSize_8u = &FakeBufferSize;
        table.m_pIppsMalloc_8u = &FakeMalloc;
        table.m_pIppsFree = &FakeFree;
        table.m_pIppiResizeLinear_8u_C1R = &FakeLinear<1>;
        table.m_pIppiResizeLinear_8u_C3R = &FakeLinear<3>;
        table.m_pIppiResizeLinear_8u_C4R = &FakeLinear<4>;
        table.m_pIppiResizeSuper_8u_C1R = &FakeSuper<1>;
        table.m_pIppiResizeSuper_8u_C3R = &FakeSuper<3>;
        table.m_pIppiResizeSuper_8u_C4R = &FakeSuper<4>;
    }
    void TearDown() override {
        table.m_hLibrary = nullptr;  // not a real library: nothing to unload
        g_script = nullptr;
    }
    IppStatus Run(uint32_t interpolation, int channels) {
        return ResizeBuffer_8u(table, interpolation, channels, src, {4, 4}, 16, dst, {2, 2}, {0, 0}, 8);
    }
    Script script;
    IppFunctions table;
    Ipp8u src[64] = {};
    Ipp8u dst[16] = {};
};

using Calls = std::vector<std::string>;

TEST_F(ResizeBufferTest, MissingLibraryOrEntryIsMinus118) {
    table.m_hLibrary = nullptr;
    EXPECT_EQ(Run(8, 4), -118);
    SetUp();
    PFN_ippiResizeGetSize_8u saved = table.m_pIppiResizeGetSize_8u;
    table.m_pIppiResizeGetSize_8u = nullptr;
    EXPECT_EQ(Run(8, 4), -118);
    table.m_pIppiResizeGetSize_8u = saved;
    table.m_pIppsMalloc_8u = nullptr;
    EXPECT_EQ(Run(8, 4), -118);
    SetUp();
    table.m_pIppiResizeSuperInit_8u = nullptr;
    EXPECT_EQ(Run(2, 1), -118);
    SetUp();
    table.m_pIppiResizeLinearInit_8u = nullptr;
    EXPECT_EQ(Run(8, 4), -118);
    SetUp();
    table.m_pIppiResizeGetBufferSize_8u = nullptr;
    EXPECT_EQ(Run(8, 4), -118);
    SetUp();
    table.m_pIppsFree = nullptr;
    EXPECT_EQ(Run(8, 4), -118);
    EXPECT_TRUE(script.calls.empty());
}

TEST_F(ResizeBufferTest, TwoChannelsIsBadArgumentAndTouchesNothing) {
    EXPECT_EQ(Run(8, 2), -5);
    EXPECT_TRUE(script.calls.empty());
    for (Ipp8u b : dst) EXPECT_EQ(b, 0);
}

TEST_F(ResizeBufferTest, SuperSequenceWithFourChannels) {
    ASSERT_EQ(Run(8, 4), 0);
    EXPECT_EQ(script.calls, (Calls{"GetSize", "Malloc24", "Malloc16", "SuperInit", "GetBufferSize",
                                   "Malloc64", "Super_C4", "Free", "Free", "Free"}));
    EXPECT_EQ(script.interpolation, 8u);
    EXPECT_EQ(script.channels, 4u);
    // Init buffer, then the resize state, then the work buffer.
    ASSERT_EQ(script.freed.size(), 3u);
    EXPECT_EQ(script.freed[0], script.allocated[1]);
    EXPECT_EQ(script.freed[1], script.allocated[0]);
    EXPECT_EQ(script.freed[2], script.allocated[2]);
}

TEST_F(ResizeBufferTest, LinearUsesBorderArguments) {
    ASSERT_EQ(Run(2, 1), 0);
    EXPECT_EQ(script.calls, (Calls{"GetSize", "Malloc24", "Malloc16", "LinearInit", "GetBufferSize",
                                   "Malloc64", "Linear_C1", "Free", "Free", "Free"}));
    EXPECT_EQ(script.border, 1);
    EXPECT_EQ(script.borderValue, nullptr);
    EXPECT_EQ(script.offset.x, 0);
    EXPECT_EQ(script.offset.y, 0);
}

TEST_F(ResizeBufferTest, AnyCodeButEightIsLinear) {
    ASSERT_EQ(Run(3, 3), 0);
    EXPECT_EQ(script.interpolation, 3u);
    EXPECT_EQ(script.calls[3], "LinearInit");
    EXPECT_EQ(script.calls[6], "Linear_C3");
    script.calls.clear();
    ASSERT_EQ(Run(0, 4), 0);
    EXPECT_EQ(script.calls[6], "Linear_C4");
}

TEST_F(ResizeBufferTest, SizeQueryStatusIsReturned) {
    script.getSize = -6;
    EXPECT_EQ(Run(8, 4), -6);
    EXPECT_EQ(script.calls, (Calls{"GetSize"}));
}

TEST_F(ResizeBufferTest, MissingStateOrInitBufferSkipsTheResize) {
    script.failMallocAt = 0;
    EXPECT_EQ(Run(8, 4), 0);
    EXPECT_EQ(script.calls, (Calls{"GetSize", "Malloc24", "Malloc16", "Free"}));
    script = Script();
    script.failMallocAt = 1;
    EXPECT_EQ(Run(8, 4), 0);
    EXPECT_EQ(script.calls, (Calls{"GetSize", "Malloc24", "Malloc16", "Free"}));
}

TEST_F(ResizeBufferTest, InitFailureStops) {
    script.init = -8;
    EXPECT_EQ(Run(8, 1), -8);
    EXPECT_EQ(script.calls, (Calls{"GetSize", "Malloc24", "Malloc16", "SuperInit", "Free", "Free"}));
}

TEST_F(ResizeBufferTest, BufferSizeFailureStops) {
    script.bufferSize = -5;
    EXPECT_EQ(Run(2, 1), -5);
    EXPECT_EQ(script.calls,
              (Calls{"GetSize", "Malloc24", "Malloc16", "LinearInit", "GetBufferSize", "Free", "Free"}));
}

TEST_F(ResizeBufferTest, WorkBufferFailureIsMinus4) {
    script.failMallocAt = 2;
    EXPECT_EQ(Run(8, 4), -4);
    EXPECT_EQ(script.calls, (Calls{"GetSize", "Malloc24", "Malloc16", "SuperInit", "GetBufferSize",
                                   "Malloc64", "Free", "Free"}));
}

TEST_F(ResizeBufferTest, ResizeStatusIsReturned) {
    script.resize = -13;
    EXPECT_EQ(Run(8, 3), -13);
    EXPECT_EQ(script.calls[6], "Super_C3");
}

TEST_F(ResizeBufferTest, MissingRoutineIsRefusedNotCalled) {
    table.m_pIppiResizeSuper_8u_C4R = nullptr;
    EXPECT_EQ(Run(8, 4), -118);
    EXPECT_EQ(script.calls.back(), "Free");
}

// ---------------------------------------------------------------- Load

TEST(IppFunctions, StartsEmpty) {
    IppFunctions table;
    EXPECT_EQ(table.m_hLibrary, nullptr);
    EXPECT_EQ(table.m_pIppiCopy_8u_C4MR, nullptr);
    EXPECT_EQ(table.m_pIppsFree, nullptr);
}

TEST(IppFunctions, EntryNamesInTableOrder) {
    EXPECT_STREQ(IppFunctions::kEntryNames[0], "ippiCopy_8u_C4MR");
    EXPECT_STREQ(IppFunctions::kEntryNames[7], "ippiResizeGetBufferSize_8u");
    EXPECT_STREQ(IppFunctions::kEntryNames[9], "ippiResizeGetSize_8u");
    EXPECT_STREQ(IppFunctions::kEntryNames[14], "ippiResizeSuperInit_8u");
    EXPECT_STREQ(IppFunctions::kEntryNames[20], "ippsMalloc_8u");
    EXPECT_STREQ(IppFunctions::kEntryNames[21], "ippsFree");
}

TEST(IppFunctions, MissingLibraryLeavesTheTableEmpty) {
    IppFunctions table;
    table.Load(L"no\\such\\folder\\IPPDLL.dll");
    EXPECT_EQ(table.m_hLibrary, nullptr);
    EXPECT_EQ(table.m_pIppiResizeGetSize_8u, nullptr);
    Ipp8u src[4] = {}, dst[4] = {};
    EXPECT_EQ(ResizeBuffer_8u(table, 2, 1, src, {2, 2}, 2, dst, {2, 2}, {0, 0}, 2), -118);
    table.Unload();  // nothing to do
    EXPECT_EQ(table.m_hLibrary, nullptr);
}

}  // namespace
