// The reference selection engine's colour space and region growing.
#include "reference/select/region_grow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using pcg::refselect::ConvertToLab;
using pcg::refselect::GrowRegion;
using pcg::refselect::LabPicture;
using pcg::refselect::SrgbToLab;

TEST(RegionGrowTest, LabOfKnownColours) {
    float lab[3];
    SrgbToLab(255, 255, 255, lab);
    EXPECT_NEAR(lab[0], 100.0f, 0.01f);
    EXPECT_NEAR(lab[1], 0.0f, 0.01f);
    EXPECT_NEAR(lab[2], 0.0f, 0.01f);
    SrgbToLab(0, 0, 0, lab);
    EXPECT_NEAR(lab[0], 0.0f, 0.001f);
    SrgbToLab(255, 0, 0, lab);
    EXPECT_NEAR(lab[0], 53.24f, 0.02f);
    EXPECT_NEAR(lab[1], 80.09f, 0.05f);
    EXPECT_NEAR(lab[2], 67.20f, 0.05f);
    SrgbToLab(0, 0, 255, lab);
    EXPECT_NEAR(lab[0], 32.30f, 0.02f);
    EXPECT_NEAR(lab[1], 79.19f, 0.05f);
    EXPECT_NEAR(lab[2], -107.86f, 0.05f);
}

TEST(RegionGrowTest, PixelBytesAreBlueGreenRed) {
    const uint8_t pixel[3] = {255, 0, 0};  // blue
    LabPicture picture;
    ConvertToLab(pixel, 1, 1, 3, picture);
    float blue[3];
    SrgbToLab(0, 0, 255, blue);
    EXPECT_FLOAT_EQ(picture.lab[0], blue[0]);
    EXPECT_FLOAT_EQ(picture.lab[1], blue[1]);
    EXPECT_FLOAT_EQ(picture.lab[2], blue[2]);
}

// A grey ramp: the region takes the neighbours within the tolerance of the
// seed's colour and stops at the first step beyond it.
TEST(RegionGrowTest, GrowsAlongARampUntilTheToleranceIsSpent) {
    const int width = 64;
    std::vector<uint8_t> pixels(width * 3);
    for (int x = 0; x < width; ++x) pixels[3 * x] = pixels[3 * x + 1] = pixels[3 * x + 2] = static_cast<uint8_t>(x * 4);
    LabPicture picture;
    ConvertToLab(pixels.data(), width, 1, width * 3, picture);
    std::vector<uint8_t> region;
    ASSERT_EQ(GrowRegion(picture, 32, 0, 0, false, region), 1);
    const float seedL = picture.lab[3 * 32];
    for (int x = 0; x < width; ++x) {
        const float d = std::abs(picture.lab[3 * x] - seedL);
        EXPECT_EQ(region[x], d <= pcg::refselect::kBaseTolerance ? 1 : 0) << x;
    }
}

TEST(RegionGrowTest, NoSeedInsideLeavesTheRegionEmpty) {
    const std::vector<uint8_t> pixels(4 * 4 * 3, 100);
    LabPicture picture;
    ConvertToLab(pixels.data(), 4, 4, 12, picture);
    std::vector<uint8_t> region(3, 7);
    EXPECT_EQ(GrowRegion(picture, 10, 10, 2, false, region), 0);
    EXPECT_EQ(region, std::vector<uint8_t>(16, 0));
    // A uniform picture is taken whole from any seed.
    EXPECT_EQ(GrowRegion(picture, 0, 0, 1, false, region), 3);
    EXPECT_EQ(region, std::vector<uint8_t>(16, 1));
}
