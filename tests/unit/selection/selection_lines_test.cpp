#include "selection/selection_lines.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/unit/selection/log_capture.h"
#include "tests/unit/selection/mask_fixtures.h"
#include "tests/unit/selection/reference_loops.h"

namespace {

constexpr int32_t kPointer = static_cast<int32_t>(0x80004003u);
constexpr int32_t kFail = static_cast<int32_t>(0x80004005u);

bool SameLines(const std::vector<SelectionLine>& a, const std::vector<SelectionLine>& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].nX != b[i].nX || a[i].nY != b[i].nY || a[i].nLength != b[i].nLength) return false;
    return true;
}

void ExpectLine(const SelectionLine& l, short x, short y, short length) {
    EXPECT_EQ(l.nX, x);
    EXPECT_EQ(l.nY, y);
    EXPECT_EQ(l.nLength, length);
}

using SelectionLinesLog = LogCapture;

TEST_F(SelectionLinesLog, MaskToPointRefusesNullPixels) {
    BufferData mask;
    mask.nWidth = mask.nHeight = mask.nStride = 4;
    std::vector<SelectionLine> lines(3);
    EXPECT_EQ(MaskToPoint(mask, lines), kPointer);
    EXPECT_TRUE(Logged("MaskToPoint Null Pointer : mask.pBuffer\n"));
}

TEST_F(SelectionLinesLog, PointToMaskRefusesNullPixels) {
    BufferData mask;
    mask.nWidth = mask.nHeight = mask.nStride = 4;
    EXPECT_EQ(PointToMask(nullptr, 0, mask, false), kPointer);
    EXPECT_TRUE(Logged("PointToMask Null Pointer : mask.pBuffer\n"));
}

TEST_F(SelectionLinesLog, SideAbove32767IsRefused) {
    // The 16-bit scan counters cannot cover such a row.
    TestMask mask(32768, 1, -1, 255);
    std::vector<SelectionLine> lines(1);
    EXPECT_EQ(MaskToPoint(mask.View(), lines), kFail);
    EXPECT_TRUE(lines.empty());
    EXPECT_TRUE(Logged("MaskToPoint [Err] mask side above 32767: 32768 x 1\n"));
    TestMask widest(32767, 1, -1, 255);
    ASSERT_EQ(MaskToPoint(widest.View(), lines), 0);
    ASSERT_EQ(lines.size(), 1u);
    ExpectLine(lines[0], 0, 0, 32767);
}

TEST(MaskToPoint, AllZeroMaskGivesNoRuns) {
    TestMask mask(9, 5);
    std::vector<SelectionLine> lines(2);
    EXPECT_EQ(MaskToPoint(mask.View(), lines), 0);
    EXPECT_TRUE(lines.empty());
}

TEST(MaskToPoint, FullRowIsOneRun) {
    TestMask mask(7, 3);
    for (int x = 0; x < 7; ++x) mask.At(x, 1) = 255;
    std::vector<SelectionLine> lines;
    ASSERT_EQ(MaskToPoint(mask.View(), lines), 0);
    ASSERT_EQ(lines.size(), 1u);
    ExpectLine(lines[0], 0, 1, 7);
}

TEST(MaskToPoint, LastColumnPixelIsARunOfOne) {
    TestMask mask(6, 2);
    mask.At(5, 0) = 1;
    std::vector<SelectionLine> lines;
    ASSERT_EQ(MaskToPoint(mask.View(), lines), 0);
    ASSERT_EQ(lines.size(), 1u);
    ExpectLine(lines[0], 5, 0, 1);
}

TEST(MaskToPoint, IdenticalRowsAreNotMerged) {
    TestMask mask(5, 2);
    for (int y = 0; y < 2; ++y)
        for (int x = 1; x < 4; ++x) mask.At(x, y) = 200;
    std::vector<SelectionLine> lines;
    ASSERT_EQ(MaskToPoint(mask.View(), lines), 0);
    ASSERT_EQ(lines.size(), 2u);
    ExpectLine(lines[0], 1, 0, 3);
    ExpectLine(lines[1], 1, 1, 3);
}

TEST(MaskToPoint, RunsOfARowAreSortedAndSeparated) {
    TestMask mask(10, 1);
    for (int x : {0, 1, 4, 6, 7, 8}) mask.At(x, 0) = 9;
    std::vector<SelectionLine> lines;
    ASSERT_EQ(MaskToPoint(mask.View(), lines), 0);
    ASSERT_EQ(lines.size(), 3u);
    ExpectLine(lines[0], 0, 0, 2);
    ExpectLine(lines[1], 4, 0, 1);
    ExpectLine(lines[2], 6, 0, 3);
}

TEST(MaskToPoint, RoiRunsComeOutInWholeMaskCoordinates) {
    // The buffer is the rectangle itself: its first byte is pixel (3, 2).
    TestMask roi(4, 2);
    roi.At(0, 0) = roi.At(1, 0) = 255;
    roi.At(3, 1) = 255;
    BufferData view = roi.View();
    view.rectROI = {3, 2, 7, 4};
    std::vector<SelectionLine> lines;
    ASSERT_EQ(MaskToPoint(view, lines), 0);
    ASSERT_EQ(lines.size(), 2u);
    ExpectLine(lines[0], 3, 2, 2);
    ExpectLine(lines[1], 6, 3, 1);

    TestMask back(4, 2, -1, 77);
    BufferData backView = back.View();
    backView.rectROI = view.rectROI;
    ASSERT_EQ(PointToMask(lines.data(), static_cast<int>(lines.size()), backView, false), 0);
    EXPECT_EQ(back.bytes, std::vector<uint8_t>({255, 255, 0, 0, 0, 0, 0, 255}));
}

TEST(MaskToPoint, RoiWithNoColumnsGivesNoRuns) {
    TestMask mask(4, 4, -1, 255);
    BufferData view = mask.View();
    view.rectROI = {2, 0, 2, 3};
    std::vector<SelectionLine> lines(1);
    EXPECT_EQ(MaskToPoint(view, lines), 0);
    EXPECT_TRUE(lines.empty());
}

TEST(PointToMask, EmptyListFillsBackgroundOnly) {
    TestMask mask(5, 3, 8, 9);
    ASSERT_EQ(PointToMask(nullptr, 0, mask.View(), false), 0);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) EXPECT_EQ(mask.At(x, y), 0);
    ASSERT_EQ(PointToMask(nullptr, 0, mask.View(), true), 0);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) EXPECT_EQ(mask.At(x, y), 255);
    // The stride's padding is not part of the mask.
    EXPECT_EQ(mask.bytes[5], 0xA5);
}

TEST(PointToMask, RunsPastTheRightEdgeAreClipped) {
    TestMask mask(5, 1);
    const SelectionLine lines[] = {{3, 0, 10}};
    ASSERT_EQ(PointToMask(lines, 1, mask.View(), false), 0);
    EXPECT_EQ(mask.bytes, std::vector<uint8_t>({0, 0, 0, 255, 255}));
}

TEST(PointToMask, NegativeLengthPaintsNothingAndListGoesOn) {
    TestMask mask(5, 2);
    const SelectionLine lines[] = {{1, 0, -3}, {2, 1, 2}};
    ASSERT_EQ(PointToMask(lines, 2, mask.View(), false), 0);
    EXPECT_EQ(mask.bytes, std::vector<uint8_t>({0, 0, 0, 0, 0, 0, 0, 255, 255, 0}));
}

TEST(PointToMask, InvertedPaintsZeroOnWhite) {
    TestMask mask(4, 1);
    const SelectionLine lines[] = {{1, 0, 2}};
    ASSERT_EQ(PointToMask(lines, 1, mask.View(), true), 0);
    EXPECT_EQ(mask.bytes, std::vector<uint8_t>({255, 0, 0, 255}));
}

TEST(PointToMask, MinusOnePairWithOtherLengthFailsAfterPaintingEarlierRuns) {
    TestMask mask(4, 2);
    const SelectionLine lines[] = {{0, 0, 2}, {-1, -1, 5}, {0, 1, 4}};
    EXPECT_EQ(PointToMask(lines, 3, mask.View(), false), kFail);
    EXPECT_EQ(mask.bytes, std::vector<uint8_t>({255, 255, 0, 0, 0, 0, 0, 0}));
}

TEST(PointToMask, TerminatorEndsTheListWithSuccess) {
    TestMask mask(4, 2);
    const SelectionLine lines[] = {{0, 0, 2}, {-1, -1, -1}, {0, 1, 4}};
    EXPECT_EQ(PointToMask(lines, 3, mask.View(), false), 0);
    EXPECT_EQ(mask.bytes, std::vector<uint8_t>({255, 255, 0, 0, 0, 0, 0, 0}));
}

TEST(PointToMask, NegativeColumnWithRowFails) {
    TestMask mask(4, 6);
    const SelectionLine lines[] = {{-1, 4, 3}};
    EXPECT_EQ(PointToMask(lines, 1, mask.View(), false), kFail);
}

TEST(PointToMask, RowsOutsideTheRectangleAreSkipped) {
    TestMask mask(3, 2);
    const SelectionLine lines[] = {{0, 5, 3}, {1, 1, 1}};
    EXPECT_EQ(PointToMask(lines, 2, mask.View(), false), 0);
    EXPECT_EQ(mask.bytes, std::vector<uint8_t>({0, 0, 0, 0, 255, 0}));
}

// Production against the plain form, and mask -> runs -> mask round trips,
// on random masks of odd sizes, strides and rectangles.
TEST(SelectionLinesRandom, EqualsPlainFormAndRoundTrips) {
    std::mt19937 rng(12345);
    std::uniform_int_distribution<int> side(1, 97);
    std::uniform_int_distribution<int> wide(100, 700);
    std::uniform_int_distribution<int> pad(0, 9);
    std::uniform_real_distribution<double> density(0.0, 1.0);
    for (int round = 0; round < 400; ++round) {
        // Narrow rows, and rows of several 64-byte blocks with a tail.
        const int w = round % 4 == 3 ? wide(rng) : side(rng), h = side(rng);
        const int stride = w + pad(rng);
        TestMask mask = RandomMask(rng, w, h, stride, density(rng), density(rng));
        BufferData view = mask.View();
        if (round % 2) {
            // A rectangle in whole-mask coordinates; the buffer is its top-left.
            std::uniform_int_distribution<int> off(0, 500);
            const int left = off(rng), top = off(rng);
            view.rectROI = {left, top, left + w, top + h};
        }
        std::vector<SelectionLine> lines;
        ASSERT_EQ(MaskToPoint(view, lines), 0);
        ASSERT_TRUE(SameLines(lines, oracle::MaskToPoint(view))) << "round " << round;

        TestMask back(w, h, stride, 0x33);
        BufferData backView = back.View();
        backView.rectROI = view.rectROI;
        const bool bInv = round % 3 == 0;
        ASSERT_EQ(PointToMask(lines.data(), static_cast<int>(lines.size()), backView, bInv), 0);
        TestMask expected(w, h, stride, 0x33);
        BufferData expectedView = expected.View();
        expectedView.rectROI = view.rectROI;
        ASSERT_EQ(oracle::PointToMask(lines, expectedView, bInv), 0);
        ASSERT_EQ(back.bytes, expected.bytes) << "round " << round;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                ASSERT_EQ(back.At(x, y), (mask.At(x, y) != 0) != bInv ? 255 : 0);
    }
}

// Random run lists, including clipped, negative-length and out-of-row runs.
TEST(SelectionLinesRandom, PointToMaskEqualsPlainFormOnArbitraryLists) {
    std::mt19937 rng(777);
    std::uniform_int_distribution<int> side(1, 41);
    std::uniform_int_distribution<int> coord(-2, 60);
    std::uniform_int_distribution<int> count(0, 30);
    for (int round = 0; round < 300; ++round) {
        const int w = side(rng), h = side(rng), stride = w + round % 5;
        std::vector<SelectionLine> lines(static_cast<size_t>(count(rng)));
        for (SelectionLine& l : lines)
            l = {static_cast<short>(std::max(0, coord(rng))), static_cast<short>(std::max(0, coord(rng))),
                 static_cast<short>(coord(rng))};
        TestMask a(w, h, stride), b(w, h, stride);
        BufferData va = a.View(), vb = b.View();
        if (round % 2) va.rectROI = vb.rectROI = {5, 3, 5 + w, 3 + h};
        ASSERT_EQ(PointToMask(lines.data(), static_cast<int>(lines.size()), va, round % 4 == 1),
                  oracle::PointToMask(lines, vb, round % 4 == 1));
        ASSERT_EQ(a.bytes, b.bytes) << "round " << round;
    }
}

}  // namespace
