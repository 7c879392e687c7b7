#include "selection/manual_brush.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/unit/selection/log_capture.h"
#include "tests/unit/selection/mask_fixtures.h"
#include "tests/unit/selection/reference_loops.h"

namespace {

constexpr int32_t kPointer = static_cast<int32_t>(0x80004003u);

using BrushLog = LogCapture;

int Painted(const TestMask& mask) {
    int n = 0;
    for (int y = 0; y < mask.nHeight; ++y)
        for (int x = 0; x < mask.nWidth; ++x) n += mask.At(x, y) == 255;
    return n;
}

TEST(CManualBrush, ConstructionLeavesLastPositionAtZero) {
    CManualBrush brush;
    EXPECT_EQ(brush.m_nLastX, 0);
    EXPECT_EQ(brush.m_nLastY, 0);
    EXPECT_EQ(brush.m_bufferData.pBuffer, nullptr);
}

TEST_F(BrushLog, InitializeNeedsPixels) {
    CManualBrush brush;
    BufferData none;
    EXPECT_EQ(brush.Initialize(none), kPointer);
    EXPECT_TRUE(Logged("CManualBrush::Initialize Null Pointer : mask.pBuffer\n"));
}

TEST(CManualBrush, InitializeKeepsFourFieldsAndResetsPosition) {
    TestMask mask(9, 7, 12);
    BufferData view = mask.View();
    view.nColorDepth = 8;
    CManualBrush brush;
    ASSERT_EQ(brush.Initialize(view), 0);
    EXPECT_EQ(brush.m_bufferData.pBuffer, mask.bytes.data());
    EXPECT_EQ(brush.m_bufferData.nWidth, 9);
    EXPECT_EQ(brush.m_bufferData.nHeight, 7);
    EXPECT_EQ(brush.m_bufferData.nStride, 12);
    EXPECT_EQ(brush.m_bufferData.nColorDepth, 0);
    EXPECT_EQ(brush.m_nLastX, -1);
    EXPECT_EQ(brush.m_nLastY, -1);
    ASSERT_EQ(brush.Uninitialize(), 0);
    EXPECT_EQ(brush.m_bufferData.pBuffer, nullptr);
    EXPECT_EQ(brush.m_bufferData.nWidth, 0);
    EXPECT_EQ(brush.m_bufferData.nStride, 0);
    EXPECT_EQ(brush.m_nLastX, -1);
}

TEST_F(BrushLog, UpdateStrokeNeedsBothBuffers) {
    CManualBrush brush;
    TestMask mask(4, 4);
    BufferData none;
    EXPECT_EQ(brush.UpdateStroke(1, 1, 1, true, true, mask.View()), kPointer);
    EXPECT_TRUE(Logged("CManualBrush::UpdateStroke Null Pointer : m_bufferData.pBuffer\n"));
    brush.Initialize(mask.View());
    EXPECT_EQ(brush.UpdateStroke(1, 1, 1, true, true, none), kPointer);
    EXPECT_TRUE(Logged("CManualBrush::UpdateStroke Null Pointer : output.pBuffer\n"));
}

TEST(CManualBrush, RadiusOnePaintsOnePixel) {
    TestMask mask(5, 5);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(2, 3, 1, true, true, mask.View()), 0);
    EXPECT_EQ(Painted(mask), 1);
    EXPECT_EQ(mask.At(2, 3), 255);
}

TEST(CManualBrush, RadiusZeroPaintsNothingButMoves) {
    TestMask mask(5, 5);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(4, 1, 0, true, true, mask.View()), 0);
    EXPECT_EQ(Painted(mask), 0);
    EXPECT_EQ(brush.m_nLastX, 4);
    EXPECT_EQ(brush.m_nLastY, 1);
}

TEST(CManualBrush, NegativeRadiusStampsItsClampedBox) {
    // Radius -1 on a 1x1 mask: the box (1, -1) .. (-1, 1) clamps to the one
    // pixel, and 0^2 + 0^2 < (-1)^2 holds.
    TestMask mask(1, 1);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(0, 0, -1, true, true, mask.View()), 0);
    EXPECT_EQ(mask.At(0, 0), 255);
    EXPECT_EQ(brush.m_nLastX, 0);
    EXPECT_EQ(brush.m_nLastY, 0);
}

TEST(CManualBrush, NegativeRadiusKeepsTheStrictDiscTest) {
    // Centre (1, 0) off a 1x1 mask: the box still clamps to the pixel, whose
    // offset 1 is not below 1 for radius -1 and is below 4 for radius -2.
    TestMask mask(1, 1);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(1, 0, -1, true, true, mask.View()), 0);
    EXPECT_EQ(mask.At(0, 0), 0);
    ASSERT_EQ(brush.UpdateStroke(1, 0, -2, true, true, mask.View()), 0);
    EXPECT_EQ(mask.At(0, 0), 255);
}

TEST(CManualBrush, NegativeRadiusOnAWiderMaskPaintsNothing) {
    // The box's left (x + 2) lies right of its right (x - 2) after clamping.
    TestMask mask(9, 9);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(4, 4, -2, true, true, mask.View()), 0);
    ASSERT_EQ(brush.UpdateStroke(8, 8, -2, false, true, mask.View()), 0);
    EXPECT_EQ(Painted(mask), 0);
    EXPECT_EQ(brush.m_nLastX, 8);
    EXPECT_EQ(brush.m_nLastY, 8);
}

TEST(CManualBrush, DiscTestIsStrict) {
    // Radius 2: dx^2 + dy^2 < 4 keeps the 3x3 block and the four (0, +-1)
    // ... (+-1, 0) arms are inside it; (2, 0) with 4 is not.
    TestMask mask(9, 9);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(4, 4, 2, true, true, mask.View()), 0);
    EXPECT_EQ(Painted(mask), 9);
    EXPECT_EQ(mask.At(6, 4), 0);
    EXPECT_EQ(mask.At(5, 5), 255);
}

TEST(CManualBrush, NewStrokePaintsAtOnceWithoutInterpolation) {
    TestMask mask(60, 10);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(3, 5, 2, true, true, mask.View()), 0);
    ASSERT_EQ(brush.UpdateStroke(50, 5, 2, true, true, mask.View()), 0);
    EXPECT_EQ(Painted(mask), 18);
    EXPECT_EQ(mask.At(25, 5), 0);
}

TEST(CManualBrush, QuarterRadiusPaintsOneStampWithoutInterpolation) {
    // Radius 8: d = 2 is exactly 8 * 0.25, below 8 * 0.35.
    TestMask mask(40, 40), expected(40, 40);
    CManualBrush brush;
    brush.Initialize(mask.View());
    brush.UpdateStroke(10, 10, 8, true, true, mask.View());
    std::fill(mask.bytes.begin(), mask.bytes.end(), 0);
    ASSERT_EQ(brush.UpdateStroke(12, 10, 8, false, true, mask.View()), 0);
    oracle::Stamp(expected.View(), 12, 10, 8, 255);
    EXPECT_EQ(mask.bytes, expected.bytes);
    EXPECT_EQ(brush.m_nLastX, 12);
}

TEST(CManualBrush, SmallMovesAccumulate) {
    TestMask mask(40, 40);
    CManualBrush brush;
    brush.Initialize(mask.View());
    brush.UpdateStroke(10, 10, 8, true, true, mask.View());
    std::fill(mask.bytes.begin(), mask.bytes.end(), 0);
    ASSERT_EQ(brush.UpdateStroke(11, 10, 8, false, true, mask.View()), 0);
    EXPECT_EQ(Painted(mask), 0);
    EXPECT_EQ(brush.m_nLastX, 10);
    ASSERT_EQ(brush.UpdateStroke(12, 10, 8, false, true, mask.View()), 0);
    EXPECT_GT(Painted(mask), 0);
    EXPECT_EQ(brush.m_nLastX, 12);
}

TEST(CManualBrush, ContinuationAfterInitializeInterpolatesFromMinusOne) {
    TestMask mask(30, 30), expected(30, 30);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(20, 20, 3, false, true, mask.View()), 0);
    int lastX = -1, lastY = -1;
    oracle::BrushStep(lastX, lastY, 20, 20, 3, false, true, expected.View());
    EXPECT_EQ(mask.bytes, expected.bytes);
    // Stamps along the diagonal from (-1, -1): the origin corner is painted.
    EXPECT_EQ(mask.At(0, 0), 255);
}

TEST(CManualBrush, DiscPartlyAndWhollyOffTheMask) {
    TestMask mask(10, 10), expected(10, 10);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(-2, 5, 4, true, true, mask.View()), 0);
    oracle::Stamp(expected.View(), -2, 5, 4, 255);
    EXPECT_EQ(mask.bytes, expected.bytes);
    EXPECT_EQ(mask.At(1, 5), 255);
    EXPECT_EQ(mask.At(2, 5), 0);
    std::fill(mask.bytes.begin(), mask.bytes.end(), 0);
    ASSERT_EQ(brush.UpdateStroke(-20, 5, 4, true, true, mask.View()), 0);
    EXPECT_EQ(Painted(mask), 0);
}

TEST(CManualBrush, BackgroundErasesWithTheSameGeometry) {
    TestMask mask(12, 12, -1, 255), painted(12, 12);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(6, 6, 3, true, false, mask.View()), 0);
    CManualBrush other;
    other.Initialize(painted.View());
    other.UpdateStroke(6, 6, 3, true, true, painted.View());
    for (size_t i = 0; i < mask.bytes.size(); ++i) EXPECT_EQ(mask.bytes[i], painted.bytes[i] ? 0 : 255);
}

TEST(CManualBrush, SeparateOutputGetsACopyFirst) {
    TestMask mask(6, 3, 8, 0);
    mask.At(0, 0) = 255;
    TestMask out(6, 3, 8, 9);
    CManualBrush brush;
    brush.Initialize(mask.View());
    ASSERT_EQ(brush.UpdateStroke(4, 1, 1, true, true, out.View()), 0);
    EXPECT_EQ(out.At(0, 0), 255);
    EXPECT_EQ(out.At(4, 1), 255);
    EXPECT_EQ(out.At(1, 0), 0);
    EXPECT_EQ(mask.At(4, 1), 0);
}

// Production against the plain per-pixel form on random strokes.
TEST(CManualBrush, StrokesEqualPlainForm) {
    std::mt19937 rng(31337);
    std::uniform_int_distribution<int> side(1, 90);
    for (int round = 0; round < 60; ++round) {
        const int w = side(rng), h = side(rng);
        TestMask mask(w, h, w + round % 4), expected(w, h, w + round % 4);
        std::uniform_int_distribution<int> px(-20, w + 20), py(-20, h + 20), radius(-6, 25);
        CManualBrush brush;
        brush.Initialize(mask.View());
        int lastX = -1, lastY = -1;
        for (int step = 0; step < 40; ++step) {
            const int x = px(rng), y = py(rng), r = radius(rng);
            const bool bNew = step % 9 == 0, bFg = step % 13 != 5;
            ASSERT_EQ(brush.UpdateStroke(x, y, r, bNew, bFg, mask.View()), 0);
            oracle::BrushStep(lastX, lastY, x, y, r, bNew, bFg, expected.View());
            ASSERT_EQ(mask.bytes, expected.bytes) << "round " << round << " step " << step;
            ASSERT_EQ(brush.m_nLastX, lastX);
            ASSERT_EQ(brush.m_nLastY, lastY);
        }
    }
}

}  // namespace
