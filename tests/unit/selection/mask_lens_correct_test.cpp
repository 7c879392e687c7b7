#include "selection/mask_lens_correct.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "tests/unit/selection/log_capture.h"
#include "tests/unit/selection/mask_fixtures.h"
#include "tests/unit/selection/reference_loops.h"

namespace {

constexpr int32_t kPointer = static_cast<int32_t>(0x80004003u);
constexpr int32_t kFail = static_cast<int32_t>(0x80004005u);

LensCorrectSetting Lens(int distortion, int vertical = 0, int horizontal = 0) {
    LensCorrectSetting s;
    s.nDistortion = distortion;
    s.nVertical = vertical;
    s.nHorizontal = horizontal;
    return s;
}

using LensLog = LogCapture;

TEST(MaskLensCorrect, StartsAllZero) {
    MaskLensCorrect lens;
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(lens.m_dForward[r][c], 0.0);
            EXPECT_EQ(lens.m_dInverse[r][c], 0.0);
        }
    EXPECT_EQ(lens.m_dRadius, 0.0);
    EXPECT_EQ(lens.m_dPolyA + lens.m_dPolyB + lens.m_dPolyC + lens.m_dPolyD, 0.0);
}

TEST_F(LensLog, NullPixelsAreRefused) {
    MaskLensCorrect lens;
    TestMask mask(3, 3);
    BufferData none;
    EXPECT_EQ(lens.TransformMask(none, Lens(10), 0, mask.View()), kPointer);
    EXPECT_TRUE(Logged("MaskLensCorrect::TransformMask Null Pointer : inputMask.pBuffer\n"));
    EXPECT_EQ(lens.TransformMask(mask.View(), Lens(10), 0, none), kPointer);
    EXPECT_TRUE(Logged("MaskLensCorrect::TransformMask Null Pointer : outputMask.pBuffer\n"));
}

TEST(MaskLensCorrect, NoCorrectionCopiesThePicture) {
    std::mt19937 rng(1);
    TestMask in = RandomMask(rng, 23, 11, 29, 0.5);
    TestMask out(23, 11, 29, 0x5A);
    MaskLensCorrect lens;
    for (int mode : {0, 1}) {
        ASSERT_EQ(lens.TransformMask(in.View(), Lens(0), mode, out.View()), 0);
        for (int y = 0; y < 11; ++y)
            for (int x = 0; x < 23; ++x) ASSERT_EQ(out.At(x, y), in.At(x, y));
    }
}

TEST(MaskLensCorrect, TiltWithoutDistortionLeavesThePolynomialAlone) {
    MaskLensCorrect lens;
    lens.m_dRadius = 7.0;
    lens.m_dPolyA = 1.5;
    TestMask in(40, 30, -1, 255), out(40, 30);
    ASSERT_EQ(lens.TransformMask(in.View(), Lens(0, 30, 0), 0, out.View()), 0);
    EXPECT_EQ(lens.m_dRadius, 7.0);
    EXPECT_EQ(lens.m_dPolyA, 1.5);
    EXPECT_NE(lens.m_dForward[0][0], 0.0);
}

// On a one-pixel-high mask the solve fails (empty source rectangle), so
// matrices set by hand are the ones the loop reads.
void SetShift(double (&m)[3][3], double dx) {
    const double shift[3][3] = {{1, 0, dx}, {0, 1, 0}, {0, 0, 1}};
    std::memcpy(m, shift, sizeof(shift));
}

TEST(MaskLensCorrect, DirectionPicksTheMatrix) {
    TestMask in(6, 1), out(6, 1);
    in.bytes = {10, 20, 30, 40, 50, 60};
    MaskLensCorrect lens;
    SetShift(lens.m_dForward, 1.0);
    SetShift(lens.m_dInverse, 2.0);
    ASSERT_EQ(lens.TransformMask(in.View(), Lens(0, 10), 1, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>({20, 30, 40, 50, 60, 0}));
    ASSERT_EQ(lens.TransformMask(in.View(), Lens(0, 10), 0, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>({30, 40, 50, 60, 0, 0}));
    ASSERT_EQ(lens.TransformMask(in.View(), Lens(0, 10), 5, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>({30, 40, 50, 60, 0, 0}));
}

TEST(MaskLensCorrect, PositiveDistortionSamplesFurtherOut) {
    // The direct polynomial with k < 0 gives t > r below the corner radius.
    MaskLensCorrect lens;
    TestMask in(101, 101), out(101, 101);
    // A ring of 255 at radius 30 around the centre (50, 50).
    for (int y = 0; y < 101; ++y)
        for (int x = 0; x < 101; ++x) {
            const double r = std::hypot(x - 50.0, y - 50.0);
            in.At(x, y) = (r > 28 && r < 32) ? 255 : 0;
        }
    ASSERT_EQ(lens.TransformMask(in.View(), Lens(100), 0, out.View()), 0);
    // The ring lands closer to the centre.
    int inside = 0, beyond = 0;
    for (int y = 0; y < 101; ++y)
        for (int x = 0; x < 101; ++x)
            if (out.At(x, y)) (std::hypot(x - 50.0, y - 50.0) < 28 ? inside : beyond) += 1;
    EXPECT_GT(inside, 0);
    EXPECT_EQ(beyond, 0);
    TestMask negative(101, 101);
    ASSERT_EQ(lens.TransformMask(in.View(), Lens(-100), 0, negative.View()), 0);
    inside = beyond = 0;
    for (int y = 0; y < 101; ++y)
        for (int x = 0; x < 101; ++x)
            if (negative.At(x, y)) (std::hypot(x - 50.0, y - 50.0) > 32 ? beyond : inside) += 1;
    EXPECT_GT(beyond, 0);
    EXPECT_EQ(inside, 0);
}

TEST(MaskLensCorrect, PolynomialCoefficients) {
    MaskLensCorrect lens;
    TestMask in(11, 7), out(11, 7);
    lens.TransformMask(in.View(), Lens(50), 0, out.View());
    const double k = -(50 * 0.0016);
    EXPECT_EQ(lens.m_dPolyA, k);
    EXPECT_EQ(lens.m_dPolyB, k);
    EXPECT_EQ(lens.m_dPolyC, k);
    EXPECT_EQ(lens.m_dPolyD, 1 - k - k - k);
    EXPECT_EQ(lens.m_dRadius, std::sqrt(5.0 * 5.0 + 3.0 * 3.0));
}

TEST(MaskLensCorrect, CentreOfAnOddMaskStays) {
    MaskLensCorrect lens;
    lens.m_dRadius = 10;
    lens.m_dPolyA = lens.m_dPolyB = lens.m_dPolyC = -0.1;
    lens.m_dPolyD = 1.3;
    double x = 5, y = 5;
    EXPECT_EQ(lens.SolveRadialInverse(x, y, 5, 5, 60), 0);
    EXPECT_EQ(x, 5.0);
    EXPECT_EQ(y, 5.0);
    // And through a full transform: only the centre byte set, it stays.
    TestMask in(9, 9), out(9, 9);
    in.At(4, 4) = 255;
    for (int mode : {0, 1}) {
        ASSERT_EQ(lens.TransformMask(in.View(), Lens(80), mode, out.View()), 0);
        EXPECT_EQ(out.At(4, 4), 255);
    }
}

TEST(MaskLensCorrect, CornerStaysInTheDirectDirection) {
    // s = 1 and t = 1 at the corners. On 9 x 7 (corner radius 5) with
    // distortion 10 the double arithmetic lands exactly on them; for other
    // sizes and amounts it may land a hair outside, which samples as 0.
    TestMask in(9, 7);
    in.At(0, 0) = 11;
    in.At(8, 0) = 22;
    in.At(0, 6) = 33;
    in.At(8, 6) = 44;
    TestMask out(9, 7);
    MaskLensCorrect lens;
    ASSERT_EQ(lens.TransformMask(in.View(), Lens(10), 0, out.View()), 0);
    EXPECT_EQ(out.At(0, 0), 11);
    EXPECT_EQ(out.At(8, 0), 22);
    EXPECT_EQ(out.At(0, 6), 33);
    EXPECT_EQ(out.At(8, 6), 44);
}

TEST(MaskLensCorrect, ReverseUndoesDirectForEitherSign) {
    // The reverse solver inverts the direct polynomial at every radius; the
    // root it keeps lies beyond q for a negative distortion, within q for a
    // positive one.
    for (int distortion : {-90, 90}) {
        MaskLensCorrect lens;
        TestMask in(61, 41), out(61, 41);
        lens.TransformMask(in.View(), Lens(distortion), 0, out.View());
        const double cx = 30, cy = 20, R = lens.m_dRadius;
        for (double px : {1.0, 12.5, 29.0, 47.0}) {
            double x = px, y = 7.0;
            ASSERT_EQ(lens.SolveRadialInverse(x, y, cx, cy, distortion), 0);
            const double u = (x - cx) / R, v = (y - cy) / R, s = u * u + v * v, r = std::sqrt(s);
            const double q = std::hypot(px - cx, 7.0 - cy) / R;
            if (distortion < 0) EXPECT_GE(r, q);
            else EXPECT_LE(r, q);
            const double t = (lens.m_dPolyA * r * s + lens.m_dPolyB * s + lens.m_dPolyC * r + lens.m_dPolyD) * r;
            EXPECT_NEAR(t * u / r * R + cx, px, 1e-6) << distortion;
            EXPECT_NEAR(t * v / r * R + cy, 7.0, 1e-6) << distortion;
        }
    }
}

TEST(MaskLensCorrect, SolverEqualsTheClosedFormStepByStep) {
    // Every point of a grid over masks of several sizes, for distortions of
    // both signs, and for a polynomial set by hand: the same bits, and the
    // same result code, as the plain steps.
    std::mt19937 rng(606);
    std::uniform_real_distribution<double> coefficient(-0.6, 0.6);
    for (int round = 0; round < 40; ++round) {
        const int W = 5 + 7 * round, H = 3 + 5 * round;
        const int distortion = round % 2 ? 4 * round : -4 * round - 1;
        MaskLensCorrect lens;
        TestMask in(W, H), out(W, H);
        lens.TransformMask(in.View(), Lens(distortion), 1, out.View());
        if (round % 5 == 4) {
            lens.m_dPolyA = coefficient(rng);
            lens.m_dPolyB = coefficient(rng);
            lens.m_dPolyC = coefficient(rng);
            lens.m_dPolyD = 1 - lens.m_dPolyA - lens.m_dPolyB - lens.m_dPolyC;
        }
        const double cx = (W + 1) * 0.5 - 1.0, cy = (H + 1) * 0.5 - 1.0;
        int moved = 0;
        for (int y = 0; y < H; y += 1 + H / 9)
            for (int x = 0; x < W; x += 1 + W / 11) {
                double ax = x, ay = y, bx = x, by = y;
                const int32_t ra = lens.SolveRadialInverse(ax, ay, cx, cy, distortion);
                const int32_t rb = oracle::SolveRadialInverse(lens, bx, by, cx, cy, distortion);
                ASSERT_EQ(ra, rb) << round << " " << x << " " << y;
                ASSERT_EQ(ax, bx) << round << " " << x << " " << y;
                ASSERT_EQ(ay, by) << round << " " << x << " " << y;
                moved += ax != x || ay != y;
            }
        // A hand-set polynomial may have no usable root anywhere.
        if (round % 5 != 4) {
            EXPECT_GT(moved, 0) << round;
        }
    }
}

TEST(MaskLensCorrect, SolverLeavesPointsBeyondTheCornerRadius) {
    MaskLensCorrect lens;
    lens.m_dRadius = 5;
    lens.m_dPolyA = lens.m_dPolyB = lens.m_dPolyC = -0.1;
    lens.m_dPolyD = 1.3;
    double x = 20, y = 0;
    EXPECT_EQ(lens.SolveRadialInverse(x, y, 0, 0, 60), 0);
    EXPECT_EQ(x, 20.0);
}

TEST(MaskLensCorrect, SamplingBoundsAreExact) {
    // A pure shift by the perspective matrices: set both by hand through a
    // mode-1 transform with a tilt, then compare against the plain loop,
    // which applies the bounds literally.
    TestMask in(13, 9);
    for (int x = 0; x < 13; ++x)
        for (int y = 0; y < 9; ++y) in.At(x, y) = static_cast<uint8_t>(1 + x + 13 * y);
    for (int v : {1, 5, -5, 33, 100, -100, 140}) {
        for (int mode : {0, 1}) {
            MaskLensCorrect a, b;
            TestMask out(13, 9), expected(13, 9);
            ASSERT_EQ(a.TransformMask(in.View(), Lens(0, v, v / 2), mode, out.View()), 0);
            oracle::WarpMask(b, in.View(), Lens(0, v, v / 2), mode, expected.View());
            ASSERT_EQ(out.bytes, expected.bytes) << v << " " << mode;
        }
    }
}

TEST(MaskLensCorrect, HairBeyondTheLastColumnIsZero) {
    TestMask in(6, 1, -1, 255), out(6, 1);
    in.At(5, 0) = 7;
    MaskLensCorrect lens;
    // Column 5 samples 5 + 1e-9: past W - 1, so 0, though it would round to 5.
    SetShift(lens.m_dForward, 1e-9);
    ASSERT_EQ(lens.TransformMask(in.View(), Lens(0, 10), 1, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>({255, 255, 255, 255, 255, 0}));
    // Column 4 samples 4.6 = W - 1.4, which reads column 5.
    SetShift(lens.m_dForward, 0.6);
    ASSERT_EQ(lens.TransformMask(in.View(), Lens(0, 10), 1, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>({255, 255, 255, 255, 7, 0}));
}

TEST_F(LensLog, FailedSolveIsLoggedAndTheTransformStillSucceeds) {
    MaskLensCorrect lens;
    EXPECT_EQ(lens.ComputePerspective(3, 40, 20, 0), kFail);
    EXPECT_TRUE(Logged(" GetPerspectiveTransform failed. (error -57)"));
    TestMask in(3, 40, -1, 255), out(3, 40);
    EXPECT_EQ(lens.TransformMask(in.View(), Lens(0, 20), 0, out.View()), 0);
}

TEST_F(LensLog, SolveLogTextsCarryTheQuad) {
    // W = 1 gives an empty source rectangle, status -6. The plane has no
    // width, so the horizontal tilt leaves every z at 0.
    MaskLensCorrect lens;
    EXPECT_EQ(lens.ComputePerspective(1, 8, 0, 100), kFail);
    EXPECT_TRUE(Logged(" GetPerspectiveTransform failed. (error -6)"));
    EXPECT_TRUE(Logged(" dQuad2D = (+0.000000, +1.750000), (+0.000000, +1.750000), "
                       "(+0.000000, +5.250000), (+0.000000, +5.250000)"));
    EXPECT_TRUE(Logged(" FocusDistance = 4, dQuad3D = (+0.000000, +0.000000, +0.000000, +0.000000)"));
}

TEST_F(LensLog, MaskWithoutColumnsStillSetsUpTheGeometry) {
    // Zero columns: no pixel to warp, but the radius, the polynomial and the
    // perspective solve (which fails on the empty rectangle) are still done.
    MaskLensCorrect lens;
    TestMask in(1, 5, 1, 255), out(1, 5, 1, 9);
    BufferData inView = in.View(), outView = out.View();
    inView.nWidth = outView.nWidth = 0;
    ASSERT_EQ(lens.TransformMask(inView, Lens(10, 20), 0, outView), 0);
    EXPECT_EQ(lens.m_dRadius, std::sqrt(0.5 * 0.5 + 2.0 * 2.0));
    EXPECT_EQ(lens.m_dPolyA, -(10 * 0.0016));
    EXPECT_TRUE(Logged(" GetPerspectiveTransform failed. (error -6)"));
    EXPECT_EQ(out.bytes, std::vector<uint8_t>(5, 9));
}

TEST(MaskLensCorrect, InverseIsTheMatrixInverse) {
    MaskLensCorrect lens;
    ASSERT_EQ(lens.ComputePerspective(64, 48, 45, -30), 0);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) {
            double sum = 0;
            for (int k = 0; k < 3; ++k) sum += lens.m_dForward[r][k] * lens.m_dInverse[k][c];
            EXPECT_NEAR(sum, r == c ? 1.0 : 0.0, 1e-12);
        }
}

TEST(MaskLensCorrect, PerspectiveCarriesTheRectangleOntoTheTiltedQuad) {
    // nVertical 100 is 35 degrees about the x axis.
    const int W = 40, H = 30;
    MaskLensCorrect lens;
    ASSERT_EQ(lens.ComputePerspective(W, H, 100, 0), 0);
    const double A = 35.0 * 3.141592654 / 180.0;
    const double hx = 19.5, hy = 14.5;
    const double y0 = -hy * 0.5, x0 = -hx * 0.5;
    const double F = 20;
    const double y = std::cos(A) * y0, z = std::sin(A) * y0;
    const double u = F * x0 / (F - z) + hx, v = F * y / (F - z) + hy;
    const double (&m)[3][3] = lens.m_dForward;
    const double px = W / 4, py = H / 4;
    const double w = m[2][0] * px + m[2][1] * py + m[2][2];
    EXPECT_NEAR((m[0][0] * px + m[0][1] * py + m[0][2]) / w, u, 1e-9);
    EXPECT_NEAR((m[1][0] * px + m[1][1] * py + m[1][2]) / w, v, 1e-9);
}

TEST(MaskLensCorrect, OppositeTiltsMirror) {
    // nVertical -100 tilts the other way: the top-left corner's image under
    // +100 and the bottom-left corner's under -100 lie at the same depth, so
    // they share u and mirror v about the centre row.
    const int W = 41, H = 31;
    MaskLensCorrect up, down;
    ASSERT_EQ(up.ComputePerspective(W, H, 100, 0), 0);
    ASSERT_EQ(down.ComputePerspective(W, H, -100, 0), 0);
    auto map = [](const double (&m)[3][3], double x, double y, double* u, double* v) {
        const double w = m[2][0] * x + m[2][1] * y + m[2][2];
        *u = (m[0][0] * x + m[0][1] * y + m[0][2]) / w;
        *v = (m[1][0] * x + m[1][1] * y + m[1][2]) / w;
    };
    const double left = W / 4, top = H / 4, bottom = H / 4 + H / 2 - 1;
    double u0, v0, u3, v3;
    map(up.m_dForward, left, top, &u0, &v0);
    map(down.m_dForward, left, bottom, &u3, &v3);
    const double hy = (H - 1) * 0.5;
    EXPECT_NEAR(u3, u0, 1e-9);
    EXPECT_NEAR(v3, 2 * hy - v0, 1e-9);
    // Untilted, p0 would project to v = hy / 2: the tilt did move it.
    EXPECT_GT(std::fabs(v0 - hy * 0.5), 0.1);
}

// Production against the plain per-pixel loop on random masks, all paths.
TEST(MaskLensCorrect, EqualsPlainFormOnRandomMasks) {
    std::mt19937 rng(4242);
    std::uniform_int_distribution<int> side(2, 70);
    std::uniform_int_distribution<int> amount(-150, 150);
    for (int round = 0; round < 160; ++round) {
        const int w = side(rng), h = side(rng);
        TestMask in = RandomMask(rng, w, h, w + round % 6, 0.5, 0.9);
        const int kind = round % 4;
        const LensCorrectSetting s = Lens(kind != 1 ? amount(rng) : 0, kind >= 1 ? amount(rng) : 0,
                                          kind >= 2 ? amount(rng) : 0);
        const int mode = round % 3 == 0 ? 1 : (round % 3 == 1 ? 0 : 7);
        MaskLensCorrect a, b;
        TestMask out(w, h, w + round % 6, 0x11), expected(w, h, w + round % 6, 0x11);
        ASSERT_EQ(a.TransformMask(in.View(), s, mode, out.View()), 0);
        oracle::WarpMask(b, in.View(), s, mode, expected.View());
        ASSERT_EQ(out.bytes, expected.bytes) << "round " << round << " distortion " << s.nDistortion;
    }
}

}  // namespace
