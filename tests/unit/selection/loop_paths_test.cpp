// Every way the mask loops can run: on the calling thread or sliced over
// threads, with or without the four-lane forms. Each must give the plain
// per-pixel forms' bytes exactly, on random masks of odd sizes and strides.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "engine/constants.h"
#include "platform/parallel_slices.h"
#include "selection/mask_lens_correct.h"
#include "selection/row_slices.h"
#include "selection/selection_lines.h"
#include "selection/selection_tool.h"
#include "selection/simd_dispatch.h"
#include "tests/unit/selection/mask_fixtures.h"
#include "tests/unit/selection/reference_loops.h"

namespace {

struct LoopPath {
    bool bSliced;   // rows over two threads, from the first row on
    bool bVector;   // the four-lane forms where the processor has them
};

std::string PathName(const ::testing::TestParamInfo<LoopPath>& info) {
    return std::string(info.param.bSliced ? "Sliced" : "Serial") + (info.param.bVector ? "Vector" : "Scalar");
}

class LoopPaths : public ::testing::TestWithParam<LoopPath> {
protected:
    void SetUp() override {
        pcg::platform::SetSliceThreadLimit(GetParam().bSliced ? 2 : 1);
        // One pixel per slice: even a 2x2 mask is split when it has two rows.
        pcg::selection::SetParallelPixelGrain(GetParam().bSliced ? 1 : 0);
        pcg::selection::SetAvx2Allowed(GetParam().bVector);
    }
    void TearDown() override {
        pcg::platform::SetSliceThreadLimit(0);
        pcg::selection::SetParallelPixelGrain(0);
        pcg::selection::SetAvx2Allowed(true);
        SetRunListPasses(0);
    }
};

LensCorrectSetting Lens(int distortion, int vertical, int horizontal) {
    LensCorrectSetting s;
    s.nDistortion = distortion;
    s.nVertical = vertical;
    s.nHorizontal = horizontal;
    return s;
}

TEST(LoopPathSettings, DefaultsAreRestored) {
    pcg::selection::SetParallelPixelGrain(5);
    EXPECT_EQ(pcg::selection::ParallelPixelGrain(), 5);
    pcg::selection::SetParallelPixelGrain(0);
    EXPECT_EQ(pcg::selection::ParallelPixelGrain(), int64_t{1} << 18);
    pcg::selection::SetAvx2Allowed(false);
    EXPECT_FALSE(pcg::selection::UseAvx2());
    pcg::selection::SetAvx2Allowed(true);
}

TEST(LoopPathSettings, OverlapIsAnySharedByte) {
    uint8_t bytes[16] = {};
    EXPECT_TRUE(pcg::selection::BytesOverlap(bytes, 8, bytes + 7, 8));
    EXPECT_FALSE(pcg::selection::BytesOverlap(bytes, 8, bytes + 8, 8));
    EXPECT_FALSE(pcg::selection::BytesOverlap(bytes + 8, 8, bytes, 8));
    EXPECT_TRUE(pcg::selection::BytesOverlap(bytes + 2, 1, bytes, 16));
    EXPECT_FALSE(pcg::selection::BytesOverlap(bytes, 0, bytes, 16));
}

// Each way of building the list: chosen from the mask, one pass, two passes.
TEST_P(LoopPaths, MaskToPointEqualsPlainForm) {
    for (int passes = 0; passes <= 2; ++passes) {
        SetRunListPasses(passes);
        std::mt19937 rng(90001);
        std::uniform_int_distribution<int> side(1, 61);
        std::uniform_int_distribution<int> wide(64, 333);
        std::uniform_int_distribution<int> pad(0, 7);
        std::uniform_real_distribution<double> density(0.0, 1.0);
        // The forced forms take half the rounds: they only repeat what the
        // choice already runs one way or the other.
        const int nRounds = passes == 0 ? 120 : 60;
        for (int round = 0; round < nRounds; ++round) {
            const int w = round % 3 == 2 ? wide(rng) : side(rng), h = side(rng);
            // Every fourth mask sparse, so the choice goes both ways.
            const double on = round % 4 == 3 ? density(rng) * 0.002 : density(rng);
            TestMask mask = RandomMask(rng, w, h, w + pad(rng), on, density(rng));
            BufferData view = mask.View();
            if (round % 2) view.rectROI = {3, 5, 3 + w, 5 + h};
            std::vector<SelectionLine> lines(3);   // emptied first
            ASSERT_EQ(MaskToPoint(view, lines), 0);
            const std::vector<SelectionLine> expected = oracle::MaskToPoint(view);
            ASSERT_EQ(lines.size(), expected.size()) << "passes " << passes << " round " << round;
            for (size_t i = 0; i < lines.size(); ++i) {
                ASSERT_EQ(lines[i].nX, expected[i].nX) << "passes " << passes << " round " << round << " run " << i;
                ASSERT_EQ(lines[i].nY, expected[i].nY) << "passes " << passes << " round " << round << " run " << i;
                ASSERT_EQ(lines[i].nLength, expected[i].nLength)
                    << "passes " << passes << " round " << round << " run " << i;
            }
        }
    }
    SetRunListPasses(0);
}

// Full rows of 64 and 128 columns end their runs at the width, and a row
// of runs of one pixel fills every slot of the eight-at-a-time decoding.
TEST_P(LoopPaths, MaskToPointAtWordEnds) {
    for (int passes = 1; passes <= 2; ++passes) {
        SetRunListPasses(passes);
        for (int w : {64, 128, 129, 191}) {
            TestMask mask(w, 3, w);
            for (int x = 0; x < w; ++x) {
                mask.At(x, 0) = 9;
                mask.At(x, 1) = (x % 2) ? 0 : 200;
                mask.At(x, 2) = (x == w - 1) ? 1 : 0;
            }
            std::vector<SelectionLine> lines;
            ASSERT_EQ(MaskToPoint(mask.View(), lines), 0);
            const std::vector<SelectionLine> expected = oracle::MaskToPoint(mask.View());
            ASSERT_EQ(lines.size(), static_cast<size_t>(1 + (w + 1) / 2 + 1)) << "width " << w;
            ASSERT_EQ(lines.size(), expected.size());
            for (size_t i = 0; i < lines.size(); ++i) {
                ASSERT_EQ(lines[i].nX, expected[i].nX) << "width " << w << " run " << i;
                ASSERT_EQ(lines[i].nY, expected[i].nY) << "width " << w << " run " << i;
                ASSERT_EQ(lines[i].nLength, expected[i].nLength) << "width " << w << " run " << i;
            }
            EXPECT_EQ(lines[0].nLength, w);
            EXPECT_EQ(lines.back().nX, w - 1);
            EXPECT_EQ(lines.back().nLength, 1);
        }
    }
    SetRunListPasses(0);
}

TEST_P(LoopPaths, CombineEqualsPlainForm) {
    CSelectionTool tool;
    std::mt19937 rng(90002);
    std::uniform_int_distribution<int> side(1, 140);
    for (int round = 0; round < 80; ++round) {
        const int w = side(rng), h = side(rng);
        TestMask a = RandomMask(rng, w, h, w + round % 5, 0.5, 0.6);
        TestMask b = RandomMask(rng, w, h, w + round % 7, 0.5, 0.3);
        TestMask out(w, h, w + round % 3), expected(w, h, w + round % 3);
        const int op = round % 2 ? MASK_UNION : MASK_INTERSECT;
        ASSERT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), op, nullptr, out.View()), 0);
        oracle::Combine(a.View(), b.View(), op == MASK_UNION, expected.View());
        ASSERT_EQ(out.bytes, expected.bytes) << "round " << round;
    }
}

TEST_P(LoopPaths, CombineIntoOneOfTheInputs) {
    CSelectionTool tool;
    std::mt19937 rng(90003);
    TestMask a = RandomMask(rng, 77, 41, 80, 0.5, 0.5), b = RandomMask(rng, 77, 41, 80, 0.5, 0.5);
    TestMask expected(77, 41, 80);
    oracle::Combine(a.View(), b.View(), true, expected.View());
    ASSERT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), MASK_UNION, nullptr, a.View()), 0);
    for (int y = 0; y < 41; ++y)
        for (int x = 0; x < 77; ++x) ASSERT_EQ(a.At(x, y), expected.At(x, y)) << x << "," << y;
}

TEST_P(LoopPaths, CropRotateEqualsPlainForm) {
    CSelectionTool tool;
    std::mt19937 rng(90004);
    std::uniform_int_distribution<int> side(1, 75);
    std::uniform_real_distribution<float> angle(-180.0f, 180.0f);
    for (int round = 0; round < 160; ++round) {
        const int w = side(rng), h = side(rng);
        TestMask src = RandomMask(rng, w, h, w + round % 4, 0.5, 0.7);
        std::uniform_int_distribution<int> corner(0, 2 * std::max(w, h));
        CropRotateSetting s;
        s.fAngle = round % 8 == 0 ? 0.0f : angle(rng);
        s.nLeft = corner(rng) / 2;
        s.nTop = corner(rng) / 2;
        s.nWidth = side(rng);
        s.nHeight = side(rng);
        TestMask out(s.nWidth, s.nHeight, s.nWidth + round % 5), expected(s.nWidth, s.nHeight, s.nWidth + round % 5);
        ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &s, out.View()), 0);
        oracle::CropRotate(src.View(), s, expected.View());
        ASSERT_EQ(out.bytes, expected.bytes) << "round " << round << " angle " << s.fAngle;
    }
}

TEST_P(LoopPaths, CropRotateOfTheWholeMaskReadsEveryEdge) {
    // Small angles over the whole mask: source rows reach the last two rows
    // and the last column, where the four-lane form hands over to the plain one.
    CSelectionTool tool;
    std::mt19937 rng(90005);
    for (int round = 0; round < 40; ++round) {
        const int w = 3 + round % 37, h = 3 + (round * 7) % 29;
        TestMask src = RandomMask(rng, w, h, w + round % 2, 0.5, 0.2);
        CropRotateSetting s;
        s.fAngle = (round % 2 ? 1.0f : -1.0f) * (0.1f + round);
        s.nLeft = round % 3;
        s.nTop = round % 2;
        s.nWidth = w + 2;
        s.nHeight = h + 1;
        TestMask out(s.nWidth, s.nHeight), expected(s.nWidth, s.nHeight);
        ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &s, out.View()), 0);
        oracle::CropRotate(src.View(), s, expected.View());
        ASSERT_EQ(out.bytes, expected.bytes) << "round " << round;
    }
}

TEST_P(LoopPaths, LensCorrectionEqualsPlainForm) {
    std::mt19937 rng(90006);
    std::uniform_int_distribution<int> side(1, 71);
    std::uniform_int_distribution<int> amount(-150, 150);
    for (int round = 0; round < 160; ++round) {
        const int w = side(rng), h = side(rng);
        TestMask in = RandomMask(rng, w, h, w + round % 6, 0.5, 0.9);
        const int kind = round % 4;
        const LensCorrectSetting s = Lens(kind != 1 ? amount(rng) : 0, kind >= 1 ? amount(rng) : 0,
                                          kind >= 2 ? amount(rng) : 0);
        const int mode = round % 3 == 0 ? 1 : (round % 3 == 1 ? 0 : -4);
        MaskLensCorrect a, b;
        TestMask out(w, h, w + round % 6, 0x11), expected(w, h, w + round % 6, 0x11);
        ASSERT_EQ(a.TransformMask(in.View(), s, mode, out.View()), 0);
        oracle::WarpMask(b, in.View(), s, mode, expected.View());
        ASSERT_EQ(out.bytes, expected.bytes)
            << "round " << round << " distortion " << s.nDistortion << " tilt " << s.nVertical << "/"
            << s.nHorizontal << " mode " << mode;
    }
}

INSTANTIATE_TEST_SUITE_P(AllPaths, LoopPaths,
                         ::testing::Values(LoopPath{false, false}, LoopPath{false, true}, LoopPath{true, false},
                                           LoopPath{true, true}),
                         PathName);

}  // namespace
