#include "reference/retouch/retouch_questions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

using pcg::refretouch::DropWhiteBalance;
using pcg::refretouch::PictureView;
using pcg::refretouch::ReadPixelInfo;
using pcg::refretouch::ToneCurveTable;

namespace {

// A w x h picture of one colour, bytes blue, green, red, alpha.
std::vector<uint8_t> Flat(int w, int h, uint8_t r, uint8_t g, uint8_t b) {
    std::vector<uint8_t> pixels;
    for (int i = 0; i < w * h; ++i) pixels.insert(pixels.end(), {b, g, r, 255});
    return pixels;
}

ToneCurveRGBSetting Curve(std::vector<std::pair<float, float>> pivots, int maxValue = 65535) {
    ToneCurveRGBSetting s;
    s.nMaxValue = maxValue;
    s.nPivotCount = static_cast<int>(pivots.size());
    for (size_t i = 0; i < pivots.size(); ++i) {
        s.fPivotX[i] = pivots[i].first;
        s.fPivotY[i] = pivots[i].second;
    }
    return s;
}

}  // namespace

TEST(DropWhiteBalance, GreyNeedsNoCorrection) {
    const auto pixels = Flat(9, 9, 128, 128, 128);
    int t = 0, n = 0;
    ASSERT_TRUE(DropWhiteBalance(PictureView{pixels.data(), 9, 9, 4}, 4, 4, 0, &t, &n));
    EXPECT_EQ(t, 5000);
    EXPECT_EQ(n, 0);
}

TEST(DropWhiteBalance, WarmPatchAsksForALowerTemperatureAndMagentaForGreen) {
    const auto warm = Flat(5, 5, 160, 140, 140);
    int t = 0, n = 0;
    ASSERT_TRUE(DropWhiteBalance(PictureView{warm.data(), 5, 5, 4}, 2, 2, 1, &t, &n));
    EXPECT_EQ(t, 3828);  // 5000 * (140 / 160)^2
    EXPECT_EQ(n, -69);   // 1000 * (1 - sqrt(160 * 140) / 140): more green
    // Too much green for the tint's range: held at 150.
    const auto green = Flat(5, 5, 100, 200, 100);
    ASSERT_TRUE(DropWhiteBalance(PictureView{green.data(), 5, 5, 4}, 0, 0, 2, &t, &n));
    EXPECT_EQ(t, 5000);
    EXPECT_EQ(n, 150);
}

TEST(DropWhiteBalance, HeldToItsRangeAndRefusesPointsOutside) {
    const auto blue = Flat(3, 3, 0, 0, 255);
    int t = 0, n = 0;
    ASSERT_TRUE(DropWhiteBalance(PictureView{blue.data(), 3, 3, 4}, 1, 1, 1, &t, &n));
    EXPECT_EQ(t, 50000);
    EXPECT_EQ(n, -150);
    EXPECT_FALSE(DropWhiteBalance(PictureView{blue.data(), 3, 3, 4}, 3, 0, 1, &t, &n));
    EXPECT_FALSE(DropWhiteBalance(PictureView{blue.data(), 3, 3, 4}, 0, -1, 1, &t, &n));
    EXPECT_FALSE(DropWhiteBalance(PictureView{blue.data(), 3, 3, 3}, 0, 0, 1, &t, &n));
}

TEST(ReadPixelInfo, HueBetweenTwoBands) {
    // Hue 45 degrees: halfway between orange (30) and yellow (60).
    const auto pixels = Flat(1, 1, 255, 191, 0);
    PixelInfo info;
    ASSERT_TRUE(ReadPixelInfo(PictureView{pixels.data(), 1, 1, 4}, 0, 0, &info));
    EXPECT_EQ(info.HSV[0], 45);
    EXPECT_TRUE(info.hueColor1 == Hue_Orange || info.hueColor1 == Hue_Yellow);
    EXPECT_NEAR(info.dWeight1 + info.dWeight2, 1.0, 1e-12);
    EXPECT_NEAR(info.dWeight1, 0.5, 0.01);
    EXPECT_EQ(info.RGB[0], 255);
    EXPECT_EQ(info.RGB[1], 191);
    EXPECT_EQ(info.RGB[2], 0);
}

TEST(ReadPixelInfo, PureBlueIsAllBlueAndMagentaClosesTheCircle) {
    const auto blue = Flat(1, 1, 0, 0, 255);
    PixelInfo info;
    ASSERT_TRUE(ReadPixelInfo(PictureView{blue.data(), 1, 1, 4}, 0, 0, &info));
    EXPECT_EQ(info.hueColor1, Hue_Blue);
    EXPECT_EQ(info.hueColor2, Hue_Purple);
    EXPECT_DOUBLE_EQ(info.dWeight1, 1.0);
    EXPECT_DOUBLE_EQ(info.dWeight2, 0.0);
    // Hue 345: three quarters of the way from magenta (300) to red (360).
    const auto pink = Flat(1, 1, 255, 0, 64);
    ASSERT_TRUE(ReadPixelInfo(PictureView{pink.data(), 1, 1, 4}, 0, 0, &info));
    EXPECT_EQ(info.hueColor1, Hue_Red);
    EXPECT_EQ(info.hueColor2, Hue_Magenta);
    EXPECT_NEAR(info.dWeight1, 0.75, 0.01);
}

TEST(ReadPixelInfo, GreyHasNoBandAndToneWeightsFollowLuminance) {
    PixelInfo info;
    const auto black = Flat(1, 1, 0, 0, 0);
    ASSERT_TRUE(ReadPixelInfo(PictureView{black.data(), 1, 1, 4}, 0, 0, &info));
    EXPECT_EQ(info.hueColor1, Hue_None);
    EXPECT_EQ(info.hueColor2, Hue_None);
    EXPECT_EQ(info.dWeight1, 0.0);
    EXPECT_EQ(info.dToneWeight[0], 1.0);
    EXPECT_EQ(info.dToneWeight[3], 0.0);
    const auto white = Flat(1, 1, 255, 255, 255);
    ASSERT_TRUE(ReadPixelInfo(PictureView{white.data(), 1, 1, 4}, 0, 0, &info));
    EXPECT_EQ(info.dToneWeight[3], 1.0);
    EXPECT_EQ(info.dToneWeight[0], 0.0);
    // Luminance 0.5: halfway between the darks (3/8) and lights (5/8) centres.
    std::vector<uint8_t> mid16 = {0x00, 0x80, 0x00, 0x80, 0x00, 0x80, 0xFF, 0xFF};
    ASSERT_TRUE(ReadPixelInfo(PictureView{mid16.data(), 1, 1, 8}, 0, 0, &info));
    EXPECT_NEAR(info.dToneWeight[1], 0.5, 1e-4);
    EXPECT_NEAR(info.dToneWeight[2], 0.5, 1e-4);
    EXPECT_EQ(info.dToneWeight[0], 0.0);
}

TEST(ToneCurveTable, NoPivotsIsTheIdentity) {
    std::vector<int32_t> table(65536, -1);
    ToneCurveTable(Curve({}), table.data());
    for (int i = 0; i < 65536; ++i) ASSERT_EQ(table[i], i);
    std::vector<int32_t> small(256, -1);
    ToneCurveTable(Curve({{0.0f, 0.0f}, {1.0f, 1.0f}}, 255), small.data());
    for (int i = 0; i < 256; ++i) ASSERT_EQ(small[i], i);
}

TEST(ToneCurveTable, PassesThroughItsPivotsMonotoneWithoutOvershoot) {
    std::vector<int32_t> table(65536);
    ToneCurveTable(Curve({{0.25f, 0.15f}, {0.5f, 0.5f}, {0.75f, 0.9f}}), table.data());
    EXPECT_EQ(table[0], 0);
    EXPECT_EQ(table[65535], 65535);
    EXPECT_NEAR(table[16384], 0.15 * 65535, 2);
    EXPECT_NEAR(table[32768], 0.5 * 65535, 2);
    EXPECT_NEAR(table[49151], 0.9 * 65535, 2);
    for (int i = 1; i < 65536; ++i) ASSERT_GE(table[i], table[i - 1]) << i;
}

TEST(ToneCurveTable, FlatStretchStaysFlat) {
    // A plateau between two equal pivots: a cubic without the slope limits
    // would bulge above it.
    std::vector<int32_t> table(256);
    ToneCurveTable(Curve({{0.2f, 0.6f}, {0.8f, 0.6f}}, 255), table.data());
    for (int i = 52; i <= 204; ++i) ASSERT_EQ(table[i], 153) << i;
    for (int i = 1; i < 256; ++i) ASSERT_GE(table[i], table[i - 1]);
}

TEST(ToneCurveTable, UnsortedDuplicateAndOutOfRangePivots) {
    std::vector<int32_t> a(256), b(256);
    ToneCurveTable(Curve({{0.75f, 0.9f}, {0.25f, 0.1f}, {0.25f, 0.2f}, {2.0f, 1.0f}}, 255), a.data());
    ToneCurveTable(Curve({{0.25f, 0.2f}, {0.75f, 0.9f}}, 255), b.data());
    EXPECT_EQ(a, b);
    EXPECT_EQ(a[64], 51);
}

TEST(ToneCurveTable, InvertingCurveFallsMonotonically) {
    std::vector<int32_t> table(256);
    ToneCurveTable(Curve({{0.0f, 1.0f}, {1.0f, 0.0f}}, 255), table.data());
    for (int i = 0; i < 256; ++i) ASSERT_EQ(table[i], 255 - i);
}
