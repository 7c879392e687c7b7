#include "reference/renderer/lut3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <vector>


using pcg::renderer::ApplyLut3D;
using pcg::renderer::IsUsable;
using pcg::renderer::Lut3D;

namespace {

// Random channels, alpha and row padding included.
struct Picture {
    Picture(int w, int h, int bytesPerChannel, unsigned seed)
        : width(w), height(h), channel(bytesPerChannel), stride(w * 4 * bytesPerChannel + 6),
          pixels(static_cast<size_t>(stride) * h) {
        std::mt19937 random(seed);
        for (auto& byte : pixels) byte = static_cast<uint8_t>(random());
    }
    int Max() const { return channel == 1 ? 255 : 65535; }
    uint8_t* Address(int x, int y, int i) {
        return pixels.data() + static_cast<size_t>(y) * stride + (static_cast<size_t>(x) * 4 + i) * channel;
    }
    int At(int x, int y, int i) {
        const uint8_t* p = Address(x, y, i);
        if (channel == 1) return p[0];
        uint16_t v;
        std::memcpy(&v, p, 2);
        return v;
    }
    void Set(int x, int y, int i, int value) {
        uint8_t* p = Address(x, y, i);
        if (channel == 1) p[0] = static_cast<uint8_t>(value);
        else {
            const uint16_t v = static_cast<uint16_t>(value);
            std::memcpy(p, &v, 2);
        }
    }
    bool Apply(const Lut3D& lut) { return ApplyLut3D(pixels.data(), width, height, stride, channel, lut); }
    int width, height, channel, stride;
    std::vector<uint8_t> pixels;
};

// A table filled from f(r, g, b) -> (r', g', b') over the lattice of the unit cube.
Lut3D MakeTable(int n, const std::function<void(double, double, double, float*)>& f) {
    Lut3D lut;
    lut.nSize = n;
    lut.table.resize(static_cast<size_t>(3) * n * n * n);
    for (int b = 0; b < n; ++b)
        for (int g = 0; g < n; ++g)
            for (int r = 0; r < n; ++r)
                f(r / double(n - 1), g / double(n - 1), b / double(n - 1),
                  &lut.table[3 * (static_cast<size_t>(r) + static_cast<size_t>(g) * n + static_cast<size_t>(b) * n * n)]);
    return lut;
}

Lut3D Identity(int n) {
    return MakeTable(n, [](double r, double g, double b, float* out) {
        out[0] = static_cast<float>(r);
        out[1] = static_cast<float>(g);
        out[2] = static_cast<float>(b);
    });
}

class Lut3DTest : public ::testing::TestWithParam<int> {};

TEST_P(Lut3DTest, IdentityTablesOfAnySizeChangeNothing) {
    for (int n : {2, 3, 17, 33, 64}) {
        Picture picture(37, 23, GetParam(), static_cast<unsigned>(n));
        const std::vector<uint8_t> before = picture.pixels;
        ASSERT_TRUE(picture.Apply(Identity(n))) << n;
        EXPECT_EQ(picture.pixels, before) << "size " << n;
    }
}

TEST_P(Lut3DTest, IdentityChangesNoneOfTheExtremeCodes) {
    Picture picture(4, 1, GetParam(), 3);
    const int max = picture.Max();
    const int codes[4] = {0, 1, max - 1, max};
    for (int x = 0; x < 4; ++x)
        for (int i = 0; i < 3; ++i) picture.Set(x, 0, i, codes[(x + i) % 4]);
    const std::vector<uint8_t> before = picture.pixels;
    ASSERT_TRUE(picture.Apply(Identity(33)));
    EXPECT_EQ(picture.pixels, before);
}

TEST_P(Lut3DTest, InvertingTableMapsEveryChannelToItsComplement) {
    Picture picture(19, 7, GetParam(), 4);
    Picture before = picture;
    ASSERT_TRUE(picture.Apply(MakeTable(5, [](double r, double g, double b, float* out) {
        out[0] = static_cast<float>(1 - r);
        out[1] = static_cast<float>(1 - g);
        out[2] = static_cast<float>(1 - b);
    })));
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 19; ++x) {
            for (int i = 0; i < 3; ++i) EXPECT_EQ(picture.At(x, y, i), picture.Max() - before.At(x, y, i));
            EXPECT_EQ(picture.At(x, y, 3), before.At(x, y, 3));
        }
}

TEST_P(Lut3DTest, ChannelsSwapThroughTheTable) {
    Picture picture(11, 5, GetParam(), 5);
    Picture before = picture;
    // Red out = blue in, blue out = red in, green kept.
    ASSERT_TRUE(picture.Apply(MakeTable(9, [](double r, double g, double b, float* out) {
        out[0] = static_cast<float>(b);
        out[1] = static_cast<float>(g);
        out[2] = static_cast<float>(r);
    })));
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 11; ++x) {
            EXPECT_EQ(picture.At(x, y, 2), before.At(x, y, 0));
            EXPECT_EQ(picture.At(x, y, 1), before.At(x, y, 1));
            EXPECT_EQ(picture.At(x, y, 0), before.At(x, y, 2));
        }
}

TEST_P(Lut3DTest, ConstantTableGivesKnownColour) {
    Picture picture(6, 3, GetParam(), 6);
    ASSERT_TRUE(picture.Apply(MakeTable(4, [](double, double, double, float* out) {
        out[0] = 0.25f;
        out[1] = 0.5f;
        out[2] = 0.75f;
    })));
    const int max = picture.Max();
    const int red = static_cast<int>(std::floor(0.25 * max + 0.5));
    const int green = static_cast<int>(std::floor(0.5 * max + 0.5));
    const int blue = static_cast<int>(std::floor(0.75 * max + 0.5));
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 6; ++x) {
            EXPECT_EQ(picture.At(x, y, 2), red);
            EXPECT_EQ(picture.At(x, y, 1), green);
            EXPECT_EQ(picture.At(x, y, 0), blue);
        }
}

TEST_P(Lut3DTest, BlendBetweenLatticePointsIsTrilinear) {
    // Corners of r*g*b on a 2-point lattice: the trilinear blend is r*g*b exactly.
    Picture picture(3, 1, GetParam(), 7);
    const int max = picture.Max();
    const int values[3][3] = {{max / 2, max / 4, max}, {max / 3, max / 3, max / 3}, {max, max, 0}};
    for (int x = 0; x < 3; ++x)
        for (int i = 0; i < 3; ++i) picture.Set(x, 0, 2 - i, values[x][i]);  // r, g, b
    ASSERT_TRUE(picture.Apply(MakeTable(2, [](double r, double g, double b, float* out) {
        out[0] = static_cast<float>(r * g * b);
        out[1] = static_cast<float>(r);
        out[2] = static_cast<float>(b);
    })));
    for (int x = 0; x < 3; ++x) {
        const double r = values[x][0] / double(max), g = values[x][1] / double(max), b = values[x][2] / double(max);
        EXPECT_NEAR(picture.At(x, 0, 2), r * g * b * max, 0.5 + 1e-6 * max) << x;
        EXPECT_EQ(picture.At(x, 0, 1), values[x][0]);
        EXPECT_EQ(picture.At(x, 0, 0), values[x][2]);
    }
    EXPECT_EQ(picture.At(2, 0, 2), 0);
    EXPECT_EQ(picture.At(1, 0, 2), GetParam() == 1 ? 9 : 2427);  // a third cubed: M / 27
}

TEST_P(Lut3DTest, InputOutsideTheDomainClamps) {
    Lut3D lut = Identity(3);
    for (int k = 0; k < 3; ++k) {
        lut.domainMin[k] = 0.2f;
        lut.domainMax[k] = 0.8f;
    }
    Picture picture(3, 1, GetParam(), 8);
    const int max = picture.Max();
    const int in[3] = {max / 10, max * 4 / 10 + 1, max * 19 / 20};  // below, inside, above
    for (int x = 0; x < 3; ++x)
        for (int i = 0; i < 3; ++i) picture.Set(x, 0, i, in[x]);
    ASSERT_TRUE(picture.Apply(lut));
    const double v = in[1] / double(max);
    const int inside = static_cast<int>(std::floor((v - 0.2f) / (0.8f - 0.2f) * max + 0.5));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(picture.At(0, 0, i), 0);
        EXPECT_NEAR(picture.At(1, 0, i), inside, 1);
        EXPECT_EQ(picture.At(2, 0, i), max);
    }
}

TEST_P(Lut3DTest, OutputsBeyondTheUnitRangeClampAndNanReadsBlack) {
    Picture picture(8, 2, GetParam(), 9);
    ASSERT_TRUE(picture.Apply(MakeTable(2, [](double, double, double, float* out) {
        out[0] = 2.0f;
        out[1] = -1.0f;
        out[2] = std::numeric_limits<float>::quiet_NaN();
    })));
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 8; ++x) {
            EXPECT_EQ(picture.At(x, y, 2), picture.Max());
            EXPECT_EQ(picture.At(x, y, 1), 0);
            EXPECT_EQ(picture.At(x, y, 0), 0);
        }
}

TEST_P(Lut3DTest, PaddingAndAlphaAreNotTouched) {
    Picture picture(5, 4, GetParam(), 10);
    Picture before = picture;
    ASSERT_TRUE(picture.Apply(MakeTable(3, [](double r, double g, double b, float* out) {
        out[0] = static_cast<float>(g);
        out[1] = static_cast<float>(b);
        out[2] = static_cast<float>(r * 0.5);
    })));
    const int row = 5 * 4 * GetParam();
    for (int y = 0; y < 4; ++y) {
        for (int b = row; b < picture.stride; ++b)
            EXPECT_EQ(picture.pixels[y * picture.stride + b], before.pixels[y * picture.stride + b]);
        for (int x = 0; x < 5; ++x) EXPECT_EQ(picture.At(x, y, 3), before.At(x, y, 3));
    }
}

INSTANTIATE_TEST_SUITE_P(EightAndSixteenBits, Lut3DTest, ::testing::Values(1, 2));

TEST(Lut3D, UsableTablesOnly) {
    EXPECT_TRUE(IsUsable(Identity(2)));
    EXPECT_TRUE(IsUsable(Identity(33)));
    EXPECT_FALSE(IsUsable(Lut3D()));
    Lut3D one;
    one.nSize = 1;
    one.table.assign(3, 0.5f);
    EXPECT_FALSE(IsUsable(one));
    Lut3D big;
    big.nSize = 257;
    EXPECT_FALSE(IsUsable(big));
    Lut3D shortTable = Identity(4);
    shortTable.table.pop_back();
    EXPECT_FALSE(IsUsable(shortTable));
    Lut3D wrongSize = Identity(4);
    wrongSize.nSize = 5;
    EXPECT_FALSE(IsUsable(wrongSize));
    Lut3D flat = Identity(4);
    flat.domainMax[1] = flat.domainMin[1];
    EXPECT_FALSE(IsUsable(flat));
    Lut3D reversed = Identity(4);
    reversed.domainMin[2] = 1.0f;
    reversed.domainMax[2] = 0.0f;
    EXPECT_FALSE(IsUsable(reversed));
    Lut3D notANumber = Identity(4);
    notANumber.domainMin[0] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(IsUsable(notANumber));
    Lut3D infinite = Identity(4);
    infinite.domainMax[0] = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(IsUsable(infinite));
}

TEST(Lut3D, RefusesWhatItCannotApplyAndChangesNothing) {
    std::vector<uint8_t> pixels(64, 7);
    const Lut3D swap = MakeTable(2, [](double r, double g, double b, float* out) {
        out[0] = static_cast<float>(b);
        out[1] = static_cast<float>(g);
        out[2] = static_cast<float>(r);
    });
    EXPECT_FALSE(ApplyLut3D(nullptr, 2, 2, 8, 1, swap));
    EXPECT_FALSE(ApplyLut3D(pixels.data(), 0, 2, 8, 1, swap));
    EXPECT_FALSE(ApplyLut3D(pixels.data(), 2, -1, 8, 1, swap));
    EXPECT_FALSE(ApplyLut3D(pixels.data(), 2, 2, 7, 1, swap));
    EXPECT_FALSE(ApplyLut3D(pixels.data(), 2, 2, 15, 2, swap));
    EXPECT_FALSE(ApplyLut3D(pixels.data(), 2, 2, 8, 3, swap));
    Lut3D broken = swap;
    broken.table.resize(5);
    EXPECT_FALSE(ApplyLut3D(pixels.data(), 2, 2, 8, 1, broken));
    EXPECT_EQ(pixels, std::vector<uint8_t>(64, 7));
}

}  // namespace
