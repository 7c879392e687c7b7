// CMagicSelection over the selection engine contract: the null paths with
// their log lines, and the forwarding against the reference engine and the
// loader's stand-in libraries.
#include "selection/magic_selection.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/result_codes.h"
#include "platform/testing/environment.h"
#include "tests/unit/reference/ref_select_library.h"
#include "tests/unit/selection/log_capture.h"
#include "tests/unit/selection/zenodor_fixture.h"

namespace {

constexpr int32_t kPointer = static_cast<int32_t>(0x80004003u);

class MagicSelectionTest : public LogCapture {
protected:
    void UseHost(const std::string& dir) {
        ASSERT_TRUE(pcg::platform_testing::SetEnvironmentValue("PYCLIPGRADE_HOST_DIR", dir.c_str()));
    }
    void UseReferenceHost() { UseHost(PCG_TEST_HOST_DIR); }
    void UseFixture(const char* variant) { UseHost(std::string(ZENODOR_FIXTURE_DIR) + "/" + variant); }
    void TearDown() override {
        pcg::platform_testing::UnsetEnvironmentValue("PYCLIPGRADE_HOST_DIR");
        LogCapture::TearDown();
    }
    // A 4 x 3 picture, left two columns one colour, right two another.
    BufferData Picture() {
        m_pixels.assign(4 * 3 * 3, 0);
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 4; ++x) {
                uint8_t* p = &m_pixels[(y * 4 + x) * 3];
                p[0] = x < 2 ? 200 : 10;
                p[1] = x < 2 ? 30 : 220;
                p[2] = 40;
            }
        }
        BufferData data;
        data.pBuffer = m_pixels.data();
        data.nWidth = 4;
        data.nHeight = 3;
        data.nStride = 12;
        return data;
    }
    SelectionResult Result() {
        m_mask.assign(12, 0);
        SelectionResult result;
        result.mask.pBuffer = m_mask.data();
        result.mask.nWidth = 4;
        result.mask.nHeight = 3;
        result.mask.nStride = 4;
        return result;
    }
    std::vector<uint8_t> m_pixels;
    std::vector<uint8_t> m_mask;
};

TEST_F(MagicSelectionTest, StartsWithoutAnObject) {
    CMagicSelection selection;
    EXPECT_EQ(selection.m_pMagicSelection, nullptr);
}

TEST_F(MagicSelectionTest, EveryWrapperRefusesWithoutAnObject) {
    CMagicSelection selection;
    SelectionResult result = Result();
    int64_t stamp = 5;
    EXPECT_EQ(selection.MagicSelect(MagicStroke(), result), kPointer);
    EXPECT_TRUE(Logged("CMagicSelection::MagicSelect Null Pointer : m_pMagicSelection\n"));
    EXPECT_EQ(selection.ClearStrokeHistory(), kPointer);
    EXPECT_TRUE(Logged("CMagicSelection::ClearStrokeHistory Null Pointer : m_pMagicSelection\n"));
    EXPECT_EQ(selection.GetCurrentTimeStamp(stamp), kPointer);
    EXPECT_TRUE(Logged("CMagicSelection::GetCurrentTimeStamp Null Pointer : m_pMagicSelection\n"));
    EXPECT_EQ(stamp, 5);
    EXPECT_EQ(selection.Undo(1), kPointer);
    EXPECT_TRUE(Logged("CMagicSelection::Undo Null Pointer : m_pMagicSelection\n"));
    EXPECT_EQ(selection.Redo(1), kPointer);
    EXPECT_TRUE(Logged("CMagicSelection::Redo Null Pointer : m_pMagicSelection\n"));
    ZenodorLoader loader;
    EXPECT_EQ(selection.Uninitialize(&loader), kPointer);
    EXPECT_TRUE(Logged("CMagicSelection::Uninitialize Null Pointer : m_pMagicSelection\n"));
    EXPECT_EQ(loader.m_hZenodorLibrary, nullptr);
}

TEST_F(MagicSelectionTest, NullLoader) {
    CMagicSelection selection;
    EXPECT_EQ(selection.Initialize(nullptr, Picture()), kPointer);
    EXPECT_TRUE(Logged("CMagicSelection::Initialize Null Pointer : pZenodorLoader\n"));
    EXPECT_EQ(selection.Uninitialize(nullptr), kPointer);
    EXPECT_TRUE(Logged("CMagicSelection::Uninitialize Null Pointer : pZenodorLoader\n"));
}

TEST_F(MagicSelectionTest, MissingLibraryLeavesNoObject) {
    UseFixture("missing");
    ZenodorLoader loader;
    CMagicSelection selection;
    EXPECT_EQ(selection.Initialize(&loader, Picture()), kPointer);
    EXPECT_EQ(selection.m_pMagicSelection, nullptr);
    EXPECT_TRUE(Logged("ZenodorLoader::CreateMagicSelection m_fnLoadZenodor() , failed hr=0x80004003\n"));
    EXPECT_EQ(selection.Undo(1), kPointer);
}

TEST_F(MagicSelectionTest, StrokeNeedsTheMaskBytes) {
    UseReferenceHost();
    ZenodorLoader loader;
    CMagicSelection selection;
    ASSERT_EQ(selection.Initialize(&loader, Picture()), 0);
    SelectionResult result = Result();
    result.mask.pBuffer = nullptr;
    EXPECT_EQ(selection.MagicSelect(MagicStroke(), result), kPointer);
    EXPECT_TRUE(Logged("CMagicSelection::MagicSelect Null Pointer : result.mask.pBuffer\n"));
    EXPECT_EQ(selection.Uninitialize(&loader), 0);
}

TEST_F(MagicSelectionTest, ForwardsEveryCallToTheEngine) {
    UseReferenceHost();
    ZenodorLoader loader;
    ASSERT_EQ(loader.m_fnLoadZenodor(), 0);
    pcg::reftest::RefSelectEntries entries(loader);
    ASSERT_TRUE(entries.Bound());
    entries.Reset();
    const int64_t live = entries.Counter("objectsLive");

    CMagicSelection selection;
    ASSERT_EQ(selection.Initialize(&loader, Picture()), 0);
    ASSERT_NE(selection.m_pMagicSelection, nullptr);
    EXPECT_EQ(entries.Counter("objectsLive"), live + 1);
    int64_t stamp = 0;
    ASSERT_EQ(selection.GetCurrentTimeStamp(stamp), 0);
    EXPECT_EQ(stamp, 1);
    MagicStroke stroke = {};
    stroke.nX = 0;
    stroke.nY = 1;
    stroke.nRadius = 1;
    stroke.bThirdFlag = true;
    stroke.llTimeStamp = stamp;
    SelectionResult result = Result();
    ASSERT_EQ(selection.MagicSelect(stroke, result), 0);
    EXPECT_EQ(m_mask, std::vector<uint8_t>({255, 255, 0, 0, 255, 255, 0, 0, 255, 255, 0, 0}));
    EXPECT_EQ(result.llTimeStamp, 1);
    EXPECT_EQ(result.nSelectedPixels, 6);
    EXPECT_EQ(selection.Undo(1), 0);
    EXPECT_EQ(selection.Redo(1), 0);
    EXPECT_EQ(selection.ClearStrokeHistory(), 0);
    EXPECT_EQ(selection.Uninitialize(&loader), 0);
    EXPECT_EQ(selection.m_pMagicSelection, nullptr);
    EXPECT_EQ(entries.Counter("objectsLive"), live);

    const auto journal = entries.Journal();
    std::vector<std::string> ops;
    for (const auto& entry : journal) ops.push_back(entry["op"].get<std::string>());
    EXPECT_EQ(ops, std::vector<std::string>({"Create", "Initialize", "GetCurrentTimeStamp", "MagicSelect", "Undo",
                                             "Redo", "ClearStrokeHistory", "Uninitialize", "Release"}));
    // The picture description: 3 channels, the buffer's stride, nothing reserved.
    EXPECT_EQ(journal[1]["args"][0]["width"], 4);
    EXPECT_EQ(journal[1]["args"][0]["height"], 3);
    EXPECT_EQ(journal[1]["args"][0]["channels"], 3);
    EXPECT_EQ(journal[1]["args"][0]["stride"], 12);
    EXPECT_TRUE(journal[1]["args"][1].is_null());
    // The stroke as built, the mask description from the result's mask.
    EXPECT_EQ(journal[3]["args"][0].dump(),
              R"({"nX":0,"nY":1,"nRadius":1,"bFirstFlag":false,"bSecondFlag":false,"bThirdFlag":true,"llTimeStamp":1})");
    EXPECT_EQ(journal[3]["args"][1]["width"], 4);
    EXPECT_EQ(journal[3]["args"][1]["height"], 3);
    EXPECT_EQ(journal[3]["args"][1]["stride"], 4);
    EXPECT_EQ(journal[3]["args"][2], true);
    EXPECT_EQ(journal[4]["args"].dump(), "[1]");
    entries.Reset();
}

TEST_F(MagicSelectionTest, SecondInitializeReplacesThePointerWithoutARelease) {
    UseReferenceHost();
    ZenodorLoader loader;
    ASSERT_EQ(loader.m_fnLoadZenodor(), 0);
    pcg::reftest::RefSelectEntries entries(loader);
    const int64_t live = entries.Counter("objectsLive");
    CMagicSelection selection;
    ASSERT_EQ(selection.Initialize(&loader, Picture()), 0);
    void* first = selection.m_pMagicSelection;
    ASSERT_EQ(selection.Initialize(&loader, Picture()), 0);
    EXPECT_NE(static_cast<void*>(selection.m_pMagicSelection), first);
    EXPECT_EQ(entries.Counter("objectsLive"), live + 2);
    EXPECT_EQ(selection.Uninitialize(&loader), 0);
    EXPECT_EQ(entries.Counter("objectsLive"), live + 1);
    EXPECT_EQ(loader.ReleaseMagicSelection(&first), 0);
    EXPECT_EQ(entries.Counter("objectsLive"), live);
    entries.Reset();
}

TEST_F(MagicSelectionTest, EngineFailuresAreHandedBack) {
    UseReferenceHost();
    ZenodorLoader loader;
    ASSERT_EQ(loader.m_fnLoadZenodor(), 0);
    pcg::reftest::RefSelectEntries entries(loader);
    entries.Reset();
    entries.SetResult("Selection", "Initialize", -2147467259.0);
    entries.SetResult("Selection", "Undo", -2147024809.0);
    CMagicSelection selection;
    EXPECT_EQ(selection.Initialize(&loader, Picture()), static_cast<int32_t>(0x80004005u));
    // The object stays in hand: it exists, only its picture was refused.
    ASSERT_NE(selection.m_pMagicSelection, nullptr);
    EXPECT_EQ(selection.Undo(2), static_cast<int32_t>(0x80070057u));
    EXPECT_EQ(selection.Uninitialize(&loader), 0);
    entries.Reset();
}

TEST_F(MagicSelectionTest, MissingReleaseEntryStillAnswersZero) {
    UseFixture("no_release");
    ZenodorLoader loader;
    CMagicSelection selection;
    // The first load binds the factory and fails on the release entry; the
    // library is held, so the second attempt makes an object.
    EXPECT_EQ(selection.Initialize(&loader, Picture()), kPointer);
    ASSERT_EQ(selection.Initialize(&loader, Picture()), 0);
    void* object = selection.m_pMagicSelection;
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(selection.Uninitialize(&loader), 0);
    EXPECT_TRUE(Logged("ZenodorLoader::ReleaseMagicSelection Null Pointer : m_pZenodorReleaseZenodorObject\n"));
    EXPECT_EQ(selection.m_pMagicSelection, nullptr);
    auto destroy = reinterpret_cast<ZenodorFixtureDeleteFn>(
        pcg::platform::FindSymbol(loader.m_hZenodorLibrary, "ZenodorFixtureDelete"));
    ASSERT_NE(destroy, nullptr);
    destroy(object);
}

}  // namespace
