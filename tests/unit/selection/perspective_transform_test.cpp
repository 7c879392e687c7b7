#include "selection/perspective_transform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>

#if defined(PCG_TEST_WITH_OPENCV)
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>
#endif

namespace {

void Map(const double m[3][3], double x, double y, double* u, double* v) {
    const double w = m[2][0] * x + m[2][1] * y + m[2][2];
    *u = (m[0][0] * x + m[0][1] * y + m[0][2]) / w;
    *v = (m[1][0] * x + m[1][1] * y + m[1][2]) / w;
}

void ExpectCornersOnQuad(IppiRect rect, const double quad[4][2], const double m[3][3]) {
    const double right = rect.x + rect.width - 1.0, bottom = rect.y + rect.height - 1.0;
    const double corners[4][2] = {{1.0 * rect.x, 1.0 * rect.y}, {right, 1.0 * rect.y}, {right, bottom},
                                  {1.0 * rect.x, bottom}};
    for (int i = 0; i < 4; ++i) {
        double u, v;
        Map(m, corners[i][0], corners[i][1], &u, &v);
        EXPECT_NEAR(u, quad[i][0], 1e-9) << "corner " << i;
        EXPECT_NEAR(v, quad[i][1], 1e-9) << "corner " << i;
    }
}

TEST(GetPerspectiveTransform, CarriesCornersInOrder) {
    const IppiRect rect = {10, 5, 20, 16};
    const double quad[4][2] = {{1, 2}, {40, -3}, {35, 30}, {-2, 25}};
    double m[3][3];
    ASSERT_EQ(GetPerspectiveTransform(rect, quad, m), 0);
    EXPECT_EQ(m[2][2], 1.0);
    ExpectCornersOnQuad(rect, quad, m);
}

TEST(GetPerspectiveTransform, IdentityForTheRectangleItself) {
    const IppiRect rect = {2, 3, 5, 4};
    const double quad[4][2] = {{2, 3}, {6, 3}, {6, 6}, {2, 6}};
    double m[3][3];
    ASSERT_EQ(GetPerspectiveTransform(rect, quad, m), 0);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) EXPECT_NEAR(m[r][c], r == c ? 1.0 : 0.0, 1e-12);
}

TEST(GetPerspectiveTransform, NegativeOriginOrEmptyRectangleIsSizeError) {
    const double quad[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    double m[3][3];
    EXPECT_EQ(GetPerspectiveTransform({-1, 0, 4, 4}, quad, m), -6);
    EXPECT_EQ(GetPerspectiveTransform({0, -1, 4, 4}, quad, m), -6);
    EXPECT_EQ(GetPerspectiveTransform({0, 0, 0, 4}, quad, m), -6);
    EXPECT_EQ(GetPerspectiveTransform({0, 0, 4, 0}, quad, m), -6);
}

TEST(GetPerspectiveTransform, OnePixelWideOrHighIsRectError) {
    const double quad[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    double m[3][3];
    EXPECT_EQ(GetPerspectiveTransform({0, 0, 1, 4}, quad, m), -57);
    EXPECT_EQ(GetPerspectiveTransform({0, 0, 4, 1}, quad, m), -57);
}

TEST(GetPerspectiveTransform, DegenerateOrTwistedQuadIsCoeffError) {
    double m[3][3];
    const double collinear[4][2] = {{0, 0}, {1, 0}, {2, 0}, {3, 0}};
    EXPECT_EQ(GetPerspectiveTransform({0, 0, 4, 4}, collinear, m), -58);
    const double bowtie[4][2] = {{0, 0}, {4, 4}, {4, 0}, {0, 4}};
    EXPECT_EQ(GetPerspectiveTransform({0, 0, 4, 4}, bowtie, m), -58);
    const double dart[4][2] = {{0, 0}, {4, 0}, {1, 1}, {0, 4}};
    EXPECT_EQ(GetPerspectiveTransform({0, 0, 4, 4}, dart, m), -58);
}

TEST(GetPerspectiveTransform, RandomConvexQuadsCarryTheCorners) {
    std::mt19937 rng(8);
    std::uniform_real_distribution<double> jitter(-0.2, 0.2);
    for (int round = 0; round < 200; ++round) {
        const IppiRect rect = {round % 50, round % 30, 2 + round % 97, 2 + round % 61};
        const double quad[4][2] = {{jitter(rng), jitter(rng)},
                                   {1 + jitter(rng), jitter(rng)},
                                   {1 + jitter(rng), 1 + jitter(rng)},
                                   {jitter(rng), 1 + jitter(rng)}};
        double scaled[4][2];
        for (int i = 0; i < 4; ++i) {
            scaled[i][0] = 100 * quad[i][0] + 3;
            scaled[i][1] = 80 * quad[i][1] - 7;
        }
        double m[3][3];
        ASSERT_EQ(GetPerspectiveTransform(rect, scaled, m), 0);
        ExpectCornersOnQuad(rect, scaled, m);
    }
}

#if defined(PCG_TEST_WITH_OPENCV)
// OpenCV's solver as the oracle: the same matrix, scaled to c22 = 1.
TEST(GetPerspectiveTransform, AgreesWithOpenCV) {
    double maxError = 0;
    std::mt19937 rng(81);
    std::uniform_real_distribution<double> jitter(-0.25, 0.25);
    for (int round = 0; round < 200; ++round) {
        const IppiRect rect = {round % 40, round % 25, 2 + round % 300, 2 + round % 200};
        double quad[4][2] = {{jitter(rng), jitter(rng)},
                             {1 + jitter(rng), jitter(rng)},
                             {1 + jitter(rng), 1 + jitter(rng)},
                             {jitter(rng), 1 + jitter(rng)}};
        for (auto& p : quad) {
            p[0] = 500 * p[0] - 20;
            p[1] = 300 * p[1] + 11;
        }
        const double right = rect.x + rect.width - 1.0, bottom = rect.y + rect.height - 1.0;
        const cv::Point2f src[4] = {{float(rect.x), float(rect.y)}, {float(right), float(rect.y)},
                                    {float(right), float(bottom)}, {float(rect.x), float(bottom)}};
        const cv::Point2f dst[4] = {{float(quad[0][0]), float(quad[0][1])}, {float(quad[1][0]), float(quad[1][1])},
                                    {float(quad[2][0]), float(quad[2][1])}, {float(quad[3][0]), float(quad[3][1])}};
        // OpenCV takes single-precision points; compare where they agree.
        double q32[4][2];
        for (int i = 0; i < 4; ++i) {
            q32[i][0] = dst[i].x;
            q32[i][1] = dst[i].y;
        }
        double m32[3][3];
        ASSERT_EQ(GetPerspectiveTransform(rect, q32, m32), 0);
        ExpectCornersOnQuad(rect, q32, m32);
        const cv::Mat expected = cv::getPerspectiveTransform(src, dst, cv::DECOMP_LU);
        // OpenCV eliminates on the raw 8x8 system, which is poorly scaled for
        // coordinates in the hundreds; its own corners are off by up to about
        // 1e-5 pixel. Both matrices must carry a grid over the rectangle to
        // the same places.
        double mcv[3][3];
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 3; ++c) mcv[r][c] = expected.at<double>(r, c);
        for (double fx : {0.0, 0.25, 0.5, 1.0})
            for (double fy : {0.0, 0.4, 1.0}) {
                const double x = rect.x + fx * (rect.width - 1), y = rect.y + fy * (rect.height - 1);
                double u, v, ucv, vcv;
                Map(m32, x, y, &u, &v);
                Map(mcv, x, y, &ucv, &vcv);
                maxError = std::max(maxError, std::max(std::fabs(u - ucv), std::fabs(v - vcv)));
            }
    }
    EXPECT_LT(maxError, 1e-4);
    std::printf("largest distance between the two mappings: %.3g pixel\n", maxError);
}
#else
TEST(GetPerspectiveTransform, OpenCVOracleNeedsTheNativeBuild) {
    GTEST_SKIP() << "OpenCV is not part of this build; the oracle comparison runs natively";
}
#endif

}  // namespace
