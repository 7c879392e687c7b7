// The reference selection engine through its contract, loaded as the module
// loads it: region growing, add and remove, history, journal and counters.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <set>
#include <vector>

#include "engine/result_codes.h"
#include "engine/selection_engine.h"
#include "engine/selection_result.h"
#include "platform/testing/environment.h"
#include "selection/zenodor_loader.h"
#include "tests/unit/reference/ref_select_library.h"

namespace {

constexpr int kBlock = 8;      // block edge in pixels
constexpr int kBlocks = 4;     // blocks per row and column
constexpr int kSide = kBlock * kBlocks;

// Sixteen colours far apart in L*a*b* (bytes blue, green, red).
const uint8_t kColours[16][3] = {
    {0, 0, 0},     {0, 0, 255},   {0, 255, 0},   {255, 0, 0},   {0, 255, 255}, {255, 0, 255},
    {255, 255, 0}, {255, 255, 255}, {0, 0, 128},  {0, 128, 0},   {128, 0, 0},   {0, 128, 128},
    {128, 128, 0}, {128, 0, 128}, {128, 128, 128}, {0, 128, 255}};

// A picture of 4 x 4 blocks; block k has colour colourOf[k].
std::vector<uint8_t> BlockPicture(const std::vector<int>& colourOf, int stride) {
    std::vector<uint8_t> pixels(static_cast<size_t>(stride) * kSide, 0xEE);
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const uint8_t* colour = kColours[colourOf[(y / kBlock) * kBlocks + x / kBlock]];
            std::memcpy(&pixels[static_cast<size_t>(y) * stride + 3 * x], colour, 3);
        }
    }
    return pixels;
}

std::vector<int> DistinctBlocks() {
    std::vector<int> colourOf(16);
    for (int k = 0; k < 16; ++k) colourOf[k] = k;
    return colourOf;
}

// The mask that selects exactly these blocks.
std::vector<uint8_t> BlocksMask(const std::set<int>& blocks) {
    std::vector<uint8_t> mask(static_cast<size_t>(kSide) * kSide, 0);
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            if (blocks.count((y / kBlock) * kBlocks + x / kBlock)) mask[static_cast<size_t>(y) * kSide + x] = 255;
        }
    }
    return mask;
}

MagicStroke StrokeAtBlock(int block, int radius, bool remove = false, bool global = false, int64_t stamp = 0) {
    MagicStroke stroke = {};
    stroke.nX = (block % kBlocks) * kBlock + kBlock / 2;
    stroke.nY = (block / kBlocks) * kBlock + kBlock / 2;
    stroke.nRadius = radius;
    stroke.bFirstFlag = remove;
    stroke.bSecondFlag = global;
    stroke.llTimeStamp = stamp;
    return stroke;
}

MagicStroke OutsideStroke() {
    MagicStroke stroke = {};
    stroke.nX = -100;
    stroke.nY = -100;
    stroke.nRadius = 3;
    return stroke;
}

class SelectEngineTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(m_loader.m_fnLoadZenodor(), 0);
        m_entries.reset(new pcg::reftest::RefSelectEntries(m_loader));
        ASSERT_TRUE(m_entries->Bound());
        m_entries->Reset();
        m_liveBefore = m_entries->Counter("objectsLive");
        void* pObject = nullptr;
        ASSERT_EQ(m_loader.CreateMagicSelection(&pObject), 0);
        m_pObject = static_cast<IMagicSelection*>(pObject);
        m_mask.assign(static_cast<size_t>(kSide) * kSide, 0);
    }
    void TearDown() override {
        if (m_pObject) {
            void* pObject = m_pObject;
            m_loader.ReleaseMagicSelection(&pObject);
        }
        m_entries->Reset();
    }
    int32_t Init(const std::vector<uint8_t>& pixels, int stride) {
        m_picture = pixels;
        MagicImage image = {kSide, kSide, 3, stride, 0, m_picture.data()};
        return m_pObject->Initialize(&image, nullptr);
    }
    MagicMask Mask() {
        MagicMask mask = {};
        mask.nWidth = kSide;
        mask.nHeight = kSide;
        mask.nStride = kSide;
        mask.pMask = m_mask.data();
        return mask;
    }
    int32_t Select(const MagicStroke& stroke) {
        MagicMask mask = Mask();
        return m_pObject->MagicSelect(&stroke, &mask, &m_result);
    }
    // The engine's current selection, written without taking a step.
    std::vector<uint8_t> Current() {
        EXPECT_EQ(Select(OutsideStroke()), pcg::kResultFalse);
        return m_mask;
    }

    ZenodorLoader m_loader;
    std::unique_ptr<pcg::reftest::RefSelectEntries> m_entries;
    IMagicSelection* m_pObject = nullptr;
    std::vector<uint8_t> m_picture;
    std::vector<uint8_t> m_mask;
    SelectionResult m_result;
    int64_t m_liveBefore = 0;
};

TEST_F(SelectEngineTest, CreateCountsTheObjectAndReleaseNullsIt) {
    EXPECT_EQ(m_entries->Counter("objectsLive"), m_liveBefore + 1);
    void* pObject = m_pObject;
    EXPECT_EQ(m_loader.ReleaseMagicSelection(&pObject), pcg::kResultOk);
    EXPECT_EQ(pObject, nullptr);
    m_pObject = nullptr;
    EXPECT_EQ(m_entries->Counter("objectsLive"), m_liveBefore);
    EXPECT_EQ(m_loader.ReleaseMagicSelection(&pObject), pcg::kResultFalse);
    EXPECT_EQ(m_loader.m_pZenodorReleaseZenodorObject(nullptr), pcg::kResultPointer);
    EXPECT_EQ(m_entries->Counter("noSuchCounter"), -1);
}

TEST_F(SelectEngineTest, CreateRefusesAnotherInterface) {
    const ZenodorGuid other = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    void* pObject = reinterpret_cast<void*>(0x1);
    EXPECT_EQ(m_loader.m_pZenodorCreateZenodorObject(&other, &pObject), static_cast<int32_t>(0x80004002u));
    EXPECT_EQ(pObject, nullptr);
    EXPECT_EQ(m_loader.m_pZenodorCreateZenodorObject(&IID_IMagicSelection, nullptr), pcg::kResultPointer);
    EXPECT_EQ(m_loader.m_pZenodorCreateZenodorObject(nullptr, &pObject), pcg::kResultPointer);
}

TEST_F(SelectEngineTest, InitializeChecksThePicture) {
    EXPECT_EQ(m_pObject->Initialize(nullptr, nullptr), pcg::kResultPointer);
    MagicImage image = {kSide, kSide, 3, kSide * 3, 0, nullptr};
    EXPECT_EQ(m_pObject->Initialize(&image, nullptr), pcg::kResultPointer);
    std::vector<uint8_t> pixels = BlockPicture(DistinctBlocks(), kSide * 4);
    image.pPixels = pixels.data();
    image.nChannels = 4;
    EXPECT_EQ(m_pObject->Initialize(&image, nullptr), pcg::kResultInvalidArg);
    image.nChannels = 3;
    image.nStride = kSide * 3 - 1;
    EXPECT_EQ(m_pObject->Initialize(&image, nullptr), pcg::kResultInvalidArg);
    image.nStride = kSide * 4;
    image.nWidth = 0;
    EXPECT_EQ(m_pObject->Initialize(&image, nullptr), pcg::kResultInvalidArg);
    // Nothing was taken: a stroke still has no picture.
    EXPECT_EQ(Select(StrokeAtBlock(0, 1)), pcg::kResultFail);
}

TEST_F(SelectEngineTest, StrokeChecksItsArguments) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    MagicMask mask = Mask();
    const MagicStroke stroke = StrokeAtBlock(0, 1);
    EXPECT_EQ(m_pObject->MagicSelect(nullptr, &mask, &m_result), pcg::kResultPointer);
    EXPECT_EQ(m_pObject->MagicSelect(&stroke, nullptr, &m_result), pcg::kResultPointer);
    mask.pMask = nullptr;
    EXPECT_EQ(m_pObject->MagicSelect(&stroke, &mask, &m_result), pcg::kResultPointer);
    mask = Mask();
    mask.nWidth = kSide - 1;
    EXPECT_EQ(m_pObject->MagicSelect(&stroke, &mask, &m_result), pcg::kResultInvalidArg);
    mask = Mask();
    mask.nStride = kSide - 1;
    EXPECT_EQ(m_pObject->MagicSelect(&stroke, &mask, &m_result), pcg::kResultInvalidArg);
    EXPECT_EQ(m_entries->Counter("strokesHeld"), 0);
    // The result slot is optional.
    mask = Mask();
    EXPECT_EQ(m_pObject->MagicSelect(&stroke, &mask, nullptr), 0);
    EXPECT_EQ(m_mask, BlocksMask({0}));
}

TEST_F(SelectEngineTest, StrokeSelectsTheConnectedRegionOfItsColour) {
    // Padded rows: the stride is honoured.
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3 + 5), kSide * 3 + 5), 0);
    EXPECT_EQ(Select(StrokeAtBlock(5, 2, false, false, 77)), 0);
    EXPECT_EQ(m_mask, BlocksMask({5}));
    EXPECT_EQ(m_result.llTimeStamp, 77);
    EXPECT_EQ(m_result.nSelectedPixels, kBlock * kBlock);
    EXPECT_EQ(m_result.nChangedPixels, kBlock * kBlock);
    // A second stroke adds.
    EXPECT_EQ(Select(StrokeAtBlock(10, 0)), 0);
    EXPECT_EQ(m_mask, BlocksMask({5, 10}));
    EXPECT_EQ(m_result.nSelectedPixels, 2 * kBlock * kBlock);
}

TEST_F(SelectEngineTest, ConnectedGrowingStopsWhereGlobalDoesNot) {
    std::vector<int> colourOf = DistinctBlocks();
    colourOf[15] = colourOf[0];  // the same colour in two corners
    ASSERT_EQ(Init(BlockPicture(colourOf, kSide * 3), kSide * 3), 0);
    EXPECT_EQ(Select(StrokeAtBlock(0, 1)), 0);
    EXPECT_EQ(m_mask, BlocksMask({0}));
    EXPECT_EQ(Select(StrokeAtBlock(0, 1, false, true)), 0);
    EXPECT_EQ(m_mask, BlocksMask({0, 15}));
    EXPECT_EQ(m_result.nChangedPixels, kBlock * kBlock);
}

TEST_F(SelectEngineTest, FirstFlagRemoves) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    m_mask = BlocksMask({1, 2, 3});
    EXPECT_EQ(Select(StrokeAtBlock(2, 3, true)), 0);
    EXPECT_EQ(m_mask, BlocksMask({1, 3}));
    EXPECT_EQ(m_result.nChangedPixels, kBlock * kBlock);
}

TEST_F(SelectEngineTest, FirstStrokeStartsFromTheGivenMaskLaterOnesFromTheEngine) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    m_mask = BlocksMask({7});
    m_mask[3] = 1;  // any non-zero byte counts as selected
    EXPECT_EQ(Select(StrokeAtBlock(4, 1)), 0);
    std::vector<uint8_t> expected = BlocksMask({4, 7});
    expected[3] = 255;
    EXPECT_EQ(m_mask, expected);
    // Bytes changed behind the engine's back do not count any more.
    std::fill(m_mask.begin(), m_mask.end(), 0);
    EXPECT_EQ(Select(StrokeAtBlock(6, 1)), 0);
    expected = BlocksMask({4, 6, 7});
    expected[3] = 255;
    EXPECT_EQ(m_mask, expected);
}

TEST_F(SelectEngineTest, SeedsOffThePictureAreNoStep) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    EXPECT_EQ(Select(StrokeAtBlock(0, 1)), 0);
    int64_t stamp = 0;
    ASSERT_EQ(m_pObject->GetCurrentTimeStamp(&stamp), 0);
    EXPECT_EQ(stamp, 2);
    EXPECT_EQ(Select(OutsideStroke()), pcg::kResultFalse);
    EXPECT_EQ(m_mask, BlocksMask({0}));
    EXPECT_EQ(m_result.nChangedPixels, 0);
    ASSERT_EQ(m_pObject->GetCurrentTimeStamp(&stamp), 0);
    EXPECT_EQ(stamp, 2);
    EXPECT_EQ(m_entries->Counter("strokesHeld"), 1);
    // A disc that only overlaps the picture's corner seeds what is inside.
    MagicStroke corner = {};
    corner.nX = -2;
    corner.nY = -2;
    corner.nRadius = 3;
    EXPECT_EQ(Select(corner), 0);
    EXPECT_EQ(m_entries->Counter("strokesHeld"), 2);
}

TEST_F(SelectEngineTest, TimeStampsCountSteps) {
    int64_t stamp = -1;
    EXPECT_EQ(m_pObject->GetCurrentTimeStamp(nullptr), pcg::kResultPointer);
    ASSERT_EQ(m_pObject->GetCurrentTimeStamp(&stamp), 0);
    EXPECT_EQ(stamp, 1);
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    for (int k = 0; k < 3; ++k) ASSERT_EQ(Select(StrokeAtBlock(k, 1)), 0);
    ASSERT_EQ(m_pObject->GetCurrentTimeStamp(&stamp), 0);
    EXPECT_EQ(stamp, 4);
}

TEST_F(SelectEngineTest, UndoAndRedoCodes) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    EXPECT_EQ(m_pObject->Undo(1), pcg::kResultFalse);
    EXPECT_EQ(m_pObject->Redo(1), pcg::kResultFalse);
    ASSERT_EQ(Select(StrokeAtBlock(0, 1)), 0);
    EXPECT_EQ(m_pObject->Undo(-1), pcg::kResultInvalidArg);
    EXPECT_EQ(m_pObject->Redo(-1), pcg::kResultInvalidArg);
    EXPECT_EQ(m_pObject->Undo(0), pcg::kResultFalse);
    EXPECT_EQ(m_pObject->Redo(1), pcg::kResultFalse);
    EXPECT_EQ(m_pObject->Undo(5), pcg::kResultOk);  // as far as there is history
    EXPECT_EQ(m_pObject->Undo(1), pcg::kResultFalse);
    EXPECT_EQ(m_pObject->Redo(5), pcg::kResultOk);
    EXPECT_EQ(Current(), BlocksMask({0}));
}

TEST_F(SelectEngineTest, UndoShowsAtTheNextStrokeAndANewStrokeDropsTheRedoSteps) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    ASSERT_EQ(Select(StrokeAtBlock(0, 1)), 0);
    ASSERT_EQ(Select(StrokeAtBlock(1, 1)), 0);
    ASSERT_EQ(Select(StrokeAtBlock(2, 1)), 0);
    EXPECT_EQ(m_entries->Counter("strokesHeld"), 3);
    ASSERT_EQ(m_pObject->Undo(2), 0);
    // The caller's mask is not touched by Undo.
    EXPECT_EQ(m_mask, BlocksMask({0, 1, 2}));
    ASSERT_EQ(Select(StrokeAtBlock(9, 1)), 0);
    EXPECT_EQ(m_mask, BlocksMask({0, 9}));
    EXPECT_EQ(m_entries->Counter("strokesHeld"), 2);
    EXPECT_EQ(m_pObject->Redo(1), pcg::kResultFalse);
    // Back to before the first stroke: the mask that stroke started from.
    ASSERT_EQ(m_pObject->Undo(2), 0);
    EXPECT_EQ(Current(), BlocksMask({}));
}

TEST_F(SelectEngineTest, ClearStrokeHistoryKeepsTheSelection) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    ASSERT_EQ(Select(StrokeAtBlock(0, 1)), 0);
    ASSERT_EQ(Select(StrokeAtBlock(1, 1)), 0);
    EXPECT_EQ(m_pObject->ClearStrokeHistory(), 0);
    EXPECT_EQ(m_entries->Counter("strokesHeld"), 0);
    EXPECT_EQ(m_pObject->Undo(1), pcg::kResultFalse);
    ASSERT_EQ(Select(StrokeAtBlock(2, 1)), 0);
    EXPECT_EQ(m_mask, BlocksMask({0, 1, 2}));
    ASSERT_EQ(m_pObject->Undo(1), 0);
    EXPECT_EQ(Current(), BlocksMask({0, 1}));
}

TEST_F(SelectEngineTest, UninitializeDropsPictureAndHistory) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    ASSERT_EQ(Select(StrokeAtBlock(0, 1)), 0);
    EXPECT_EQ(m_pObject->Uninitialize(), 0);
    EXPECT_EQ(m_entries->Counter("strokesHeld"), 0);
    EXPECT_EQ(Select(StrokeAtBlock(0, 1)), pcg::kResultFail);
    // A new picture starts a new history.
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    std::fill(m_mask.begin(), m_mask.end(), 0);
    ASSERT_EQ(Select(StrokeAtBlock(3, 1)), 0);
    EXPECT_EQ(m_mask, BlocksMask({3}));
}

TEST_F(SelectEngineTest, ReleaseWithHistoryGivesBackItsStrokes) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    ASSERT_EQ(Select(StrokeAtBlock(0, 1)), 0);
    ASSERT_EQ(Select(StrokeAtBlock(1, 1)), 0);
    EXPECT_EQ(m_entries->Counter("strokesHeld"), 2);
    void* pObject = m_pObject;
    ASSERT_EQ(m_loader.ReleaseMagicSelection(&pObject), 0);
    m_pObject = nullptr;
    EXPECT_EQ(m_entries->Counter("strokesHeld"), 0);
}

// Random strokes, removals, undos and redos against a model of the history:
// a list of block sets and a cursor.
TEST_F(SelectEngineTest, HistoryFollowsAModel) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    std::vector<std::set<int>> states = {{}};
    size_t cursor = 0;
    std::mt19937 random(12);
    for (int round = 0; round < 300; ++round) {
        const int action = static_cast<int>(random() % 4);
        const int amount = static_cast<int>(random() % 3);
        if (action <= 1) {
            const int block = static_cast<int>(random() % 16);
            const bool remove = action == 1;
            ASSERT_EQ(Select(StrokeAtBlock(block, 2, remove)), 0);
            std::set<int> next = states[cursor];
            if (remove) next.erase(block); else next.insert(block);
            states.resize(cursor + 1);
            states.push_back(next);
            ++cursor;
            ASSERT_EQ(m_mask, BlocksMask(next)) << "round " << round;
        } else if (action == 2) {
            const size_t moved = std::min(static_cast<size_t>(amount), cursor);
            ASSERT_EQ(m_pObject->Undo(amount), moved > 0 ? 0 : pcg::kResultFalse) << "round " << round;
            cursor -= moved;
        } else {
            const size_t moved = std::min(static_cast<size_t>(amount), states.size() - 1 - cursor);
            ASSERT_EQ(m_pObject->Redo(amount), moved > 0 ? 0 : pcg::kResultFalse) << "round " << round;
            cursor += moved;
        }
        ASSERT_EQ(m_entries->Counter("strokesHeld"), static_cast<int64_t>(states.size() - 1)) << "round " << round;
        if (round % 7 == 0) ASSERT_EQ(Current(), BlocksMask(states[cursor])) << "round " << round;
    }
}

TEST_F(SelectEngineTest, JournalDecodesEveryCall) {
    const std::vector<uint8_t> pixels = BlockPicture(DistinctBlocks(), kSide * 3);
    ASSERT_EQ(Init(pixels, kSide * 3), 0);
    ASSERT_EQ(Select(StrokeAtBlock(1, 2, false, true, 9)), 0);
    ASSERT_EQ(m_pObject->Undo(3), 0);
    ASSERT_EQ(m_pObject->Redo(2), 0);
    int64_t stamp = 0;
    ASSERT_EQ(m_pObject->GetCurrentTimeStamp(&stamp), 0);
    ASSERT_EQ(m_pObject->ClearStrokeHistory(), 0);
    ASSERT_EQ(m_pObject->Uninitialize(), 0);
    void* pObject = m_pObject;
    ASSERT_EQ(m_loader.ReleaseMagicSelection(&pObject), 0);
    m_pObject = nullptr;

    const auto journal = m_entries->Journal();
    ASSERT_EQ(journal.size(), 9u);
    EXPECT_EQ(journal[0]["op"], "Create");
    EXPECT_EQ(journal[0]["args"].dump(), R"(["2b3357f9-601e-474d-80bf-60d2a37ecd6f"])");
    const int64_t instance = journal[0]["instance"].get<int64_t>();
    EXPECT_EQ(journal[1]["object"], "Selection");
    EXPECT_EQ(journal[1]["op"], "Initialize");
    EXPECT_EQ(journal[1]["args"][0]["width"], kSide);
    EXPECT_EQ(journal[1]["args"][0]["height"], kSide);
    EXPECT_EQ(journal[1]["args"][0]["channels"], 3);
    EXPECT_EQ(journal[1]["args"][0]["stride"], kSide * 3);
    EXPECT_EQ(journal[1]["args"][0]["sha256"].get<std::string>().size(), 64u);
    EXPECT_TRUE(journal[1]["args"][1].is_null());
    EXPECT_EQ(journal[2]["op"], "MagicSelect");
    EXPECT_EQ(journal[2]["args"][0].dump(),
              R"({"nX":12,"nY":4,"nRadius":2,"bFirstFlag":false,"bSecondFlag":true,"bThirdFlag":false,"llTimeStamp":9})");
    EXPECT_EQ(journal[2]["args"][1]["width"], kSide);
    EXPECT_EQ(journal[2]["args"][1]["stride"], kSide);
    EXPECT_EQ(journal[2]["args"][2], true);
    EXPECT_EQ(journal[3]["op"], "Undo");
    EXPECT_EQ(journal[3]["args"].dump(), "[3]");
    EXPECT_EQ(journal[4]["op"], "Redo");
    EXPECT_EQ(journal[4]["args"].dump(), "[2]");
    EXPECT_EQ(journal[5]["op"], "GetCurrentTimeStamp");
    EXPECT_EQ(journal[5]["args"].dump(), "[]");
    EXPECT_EQ(journal[6]["op"], "ClearStrokeHistory");
    EXPECT_EQ(journal[7]["op"], "Uninitialize");
    EXPECT_EQ(journal[8]["op"], "Release");
    for (const auto& entry : journal) EXPECT_EQ(entry["instance"].get<int64_t>(), instance);
}

TEST_F(SelectEngineTest, JournalDigestIsOfTheVisibleBytes) {
    // The same picture with two paddings gives one digest.
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3 + 7), kSide * 3 + 7), 0);
    const auto entries = m_entries->Entries("Initialize");
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0]["args"][0]["sha256"], entries[1]["args"][0]["sha256"]);
    EXPECT_EQ(entries[1]["args"][0]["stride"], kSide * 3 + 7);
}

TEST_F(SelectEngineTest, InjectedResultsChangeOnlyTheAnswer) {
    ASSERT_EQ(Init(BlockPicture(DistinctBlocks(), kSide * 3), kSide * 3), 0);
    m_entries->SetResult("Selection", "MagicSelect", -2147467259.0);
    m_entries->SetResult("*", "Undo", 1.0);
    EXPECT_EQ(Select(StrokeAtBlock(0, 1)), pcg::kResultFail);
    EXPECT_EQ(m_mask, BlocksMask({0}));
    EXPECT_EQ(m_pObject->Undo(1), pcg::kResultFalse);
    m_entries->Reset();
    EXPECT_EQ(Current(), BlocksMask({}));
    m_entries->SetResult("Selection", "Redo", std::nan(""));
    EXPECT_EQ(m_pObject->Redo(1), pcg::kResultFail);
}

TEST_F(SelectEngineTest, JournalBufferTooSmallWritesNothing) {
    ASSERT_EQ(m_pObject->Undo(1), pcg::kResultFalse);
    const int32_t length = m_entries->m_fnJournal(nullptr, 0);
    ASSERT_GT(length, 2);
    std::string text(static_cast<size_t>(length), 'x');
    EXPECT_EQ(m_entries->m_fnJournal(&text[0], length - 1), length);
    EXPECT_EQ(text, std::string(static_cast<size_t>(length), 'x'));
    EXPECT_EQ(m_entries->m_fnJournal(&text[0], length), length);
    EXPECT_EQ(text.front(), '[');
    EXPECT_EQ(text.back(), ']');
}

}  // namespace
