// Each effect of the renderer on real pixels (a thumbnail of a photograph):
// its neutral value changes nothing, it moves the picture the way its name
// says, more of it moves it further, and 8 and 16 bits agree within one 8-bit
// step.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "reference/renderer/colour_bands.h"
#include "reference/renderer/filters.h"
#include "reference/renderer/pixel_math.h"
#include "reference/renderer/renderer.h"
#include "tests/unit/reference/coffee_thumbnail.h"

using pcg::renderer::GlobalSettings;
using pcg::renderer::RenderGlobal;
using pcg::rendertest::kCoffee;
using pcg::rendertest::kCoffeeHeight;
using pcg::rendertest::kCoffeeWidth;

namespace {

using Adjust = std::function<void(GlobalSettings&)>;

// The thumbnail at 8 bits, or at 16 (each code times 257), with a padded stride.
struct Picture {
    explicit Picture(int bytesPerChannel)
        : width(kCoffeeWidth), height(kCoffeeHeight), channel(bytesPerChannel),
          stride(kCoffeeWidth * 4 * bytesPerChannel + 8), pixels(static_cast<size_t>(stride) * kCoffeeHeight, 0xA5) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                for (int i = 0; i < 4; ++i) Set(x, y, i, kCoffee[(y * width + x) * 4 + i] * (channel == 1 ? 1 : 257));
    }
    double Max() const { return channel == 1 ? 255.0 : 65535.0; }
    uint8_t* Address(int x, int y, int i) {
        return pixels.data() + static_cast<size_t>(y) * stride + (static_cast<size_t>(x) * 4 + i) * channel;
    }
    int At(int x, int y, int i) const {
        const uint8_t* p = const_cast<Picture*>(this)->Address(x, y, i);
        if (channel == 1) return p[0];
        uint16_t v;
        std::memcpy(&v, p, 2);
        return v;
    }
    // On the 8-bit scale whatever the depth.
    double Unit8(int x, int y, int i) const { return At(x, y, i) * 255.0 / Max(); }
    void Set(int x, int y, int i, int value) {
        uint8_t* p = Address(x, y, i);
        if (channel == 1) p[0] = static_cast<uint8_t>(value);
        else {
            const uint16_t v = static_cast<uint16_t>(value);
            std::memcpy(p, &v, 2);
        }
    }
    double Luma(int x, int y) const {
        return 0.299 * Unit8(x, y, 2) + 0.587 * Unit8(x, y, 1) + 0.114 * Unit8(x, y, 0);
    }
    bool Render(const GlobalSettings& s) { return RenderGlobal(pixels.data(), width, height, stride, channel, s); }
    int width, height, channel, stride;
    std::vector<uint8_t> pixels;
};

Picture Rendered(int bytesPerChannel, const Adjust& adjust) {
    Picture picture(bytesPerChannel);
    GlobalSettings s;
    adjust(s);
    EXPECT_TRUE(picture.Render(s));
    return picture;
}

// Mean over the pixels (of the untouched thumbnail) that `pick` selects.
using Metric = std::function<double(const Picture&, int x, int y)>;
using Pick = std::function<bool(const Picture&, int x, int y)>;

double MeanOver(const Picture& picture, const Picture& original, const Metric& metric, const Pick& pick) {
    double sum = 0;
    int count = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            if (pick(original, x, y)) {
                sum += metric(picture, x, y);
                ++count;
            }
    EXPECT_GT(count, 20) << "too few pixels picked to judge";
    return sum / std::max(count, 1);
}

bool Everywhere(const Picture&, int, int) { return true; }
double LumaMetric(const Picture& p, int x, int y) { return p.Luma(x, y); }
double Colourful(const Picture& p, int x, int y) {
    const double hi = std::max({p.Unit8(x, y, 0), p.Unit8(x, y, 1), p.Unit8(x, y, 2)});
    const double lo = std::min({p.Unit8(x, y, 0), p.Unit8(x, y, 1), p.Unit8(x, y, 2)});
    return hi - lo;
}
double HueOfPixel(const Picture& p, int x, int y) {
    double h, s, l;
    pcg::renderer::RgbToHsl(p.Unit8(x, y, 2) / 255.0, p.Unit8(x, y, 1) / 255.0, p.Unit8(x, y, 0) / 255.0, &h, &s, &l);
    return h;
}
bool Dark(const Picture& p, int x, int y) { return p.Luma(x, y) < 70; }
bool Bright(const Picture& p, int x, int y) { return p.Luma(x, y) > 170; }
// Orange-band pixels with a clear colour: hue 20..45 degrees.
bool Orange(const Picture& p, int x, int y) {
    const double h = HueOfPixel(p, x, y);
    return Colourful(p, x, y) > 40 && h > 20 && h < 45;
}
bool Corner(const Picture& p, int x, int y) { return (x < 8 || x >= p.width - 8) && (y < 6 || y >= p.height - 6); }
bool Centre(const Picture& p, int x, int y) {
    return std::abs(x - p.width / 2) < 6 && std::abs(y - p.height / 2) < 5;
}
// Mean absolute difference of the luma from its 3x3 neighbourhood mean: fine detail.
double FineDetail(const Picture& p) {
    double sum = 0;
    int count = 0;
    for (int y = 1; y + 1 < p.height; ++y)
        for (int x = 1; x + 1 < p.width; ++x) {
            double mean = 0;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) mean += p.Luma(x + dx, y + dy);
            sum += std::fabs(p.Luma(x, y) - mean / 9.0);
            ++count;
        }
    return sum / count;
}

// Mean absolute difference of the colour (blue minus red) between horizontal neighbours.
double ColourDetail(const Picture& p) {
    double sum = 0;
    int count = 0;
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x + 1 < p.width; ++x) {
            sum += std::fabs((p.Unit8(x, y, 0) - p.Unit8(x, y, 2)) - (p.Unit8(x + 1, y, 0) - p.Unit8(x + 1, y, 2)));
            ++count;
        }
    return sum / count;
}

// An effect, a ladder of its values, and what must rise along the ladder.
struct Ladder {
    std::string name;
    std::function<void(GlobalSettings&, double)> set;
    std::vector<double> values;  // neutral included, in increasing order of the measured quantity
    std::function<double(const Picture& rendered, const Picture& original)> measure;
    bool needsFilters = false;
};

std::vector<Ladder> Ladders() {
    auto mean = [](Metric metric, Pick pick) {
        return [metric, pick](const Picture& r, const Picture& o) { return MeanOver(r, o, metric, pick); };
    };
    auto channelGap = [](int up, int down, Pick pick) {
        return [up, down, pick](const Picture& r, const Picture& o) {
            return MeanOver(r, o, [up, down](const Picture& p, int x, int y) { return p.Unit8(x, y, up) - p.Unit8(x, y, down); },
                            pick);
        };
    };
    std::vector<Ladder> all = {
        {"exposure", [](GlobalSettings& s, double v) { s.dExposure = v; }, {-1, -0.3, 0, 0.3, 1},
         mean(LumaMetric, Everywhere)},
        {"brightness", [](GlobalSettings& s, double v) { s.dBrightness = v; }, {-60, -20, 0, 20, 60},
         mean(LumaMetric, Everywhere)},
        {"blacks", [](GlobalSettings& s, double v) { s.dBlacks = v; }, {-100, -40, 0, 40, 100}, mean(LumaMetric, Dark)},
        {"fill light", [](GlobalSettings& s, double v) { s.dFillLight = v; }, {-100, -40, 0, 40, 100},
         mean(LumaMetric, Dark)},
        {"recovery", [](GlobalSettings& s, double v) { s.dRecovery = v; }, {100, 40, 0, -40, -100},
         mean(LumaMetric, Bright)},
        {"whites", [](GlobalSettings& s, double v) { s.dWhites = v; }, {-100, -40, 0, 40, 100},
         mean(LumaMetric, Bright)},
        {"temperature", [](GlobalSettings& s, double v) { s.dTemperature = v; }, {2500, 4000, 5000, 6500, 9000},
         channelGap(2, 0, Everywhere)},
        {"tint", [](GlobalSettings& s, double v) { s.dTint = v; }, {100, 30, 0, -30, -100},
         mean([](const Picture& p, int x, int y) { return p.Unit8(x, y, 1); }, Everywhere)},
        {"saturation", [](GlobalSettings& s, double v) { s.dSaturation = v; }, {-100, -40, 0, 40, 100},
         mean(Colourful, Everywhere)},
        {"vibrance", [](GlobalSettings& s, double v) { s.dVibrance = v; }, {-100, -40, 0, 40, 100},
         mean(Colourful, Everywhere)},
        {"orange hue", [](GlobalSettings& s, double v) { s.dBandHue[1] = v; }, {-100, -40, 0, 40, 100},
         mean(HueOfPixel, Orange)},
        {"orange saturation", [](GlobalSettings& s, double v) { s.dBandSaturation[1] = v; }, {-100, -40, 0, 40, 100},
         mean(Colourful, Orange)},
        {"orange luminance", [](GlobalSettings& s, double v) { s.dBandLuminance[1] = v; }, {-100, -40, 0, 40, 100},
         mean(LumaMetric, Orange)},
        {"hue shift", [](GlobalSettings& s, double v) { s.dHueShift = v; }, {-0.05, -0.02, 0, 0.02, 0.05},
         mean(HueOfPixel, Orange)},
        {"black and white mix, orange",
         [](GlobalSettings& s, double v) {
             s.bBlackWhite = true;
             s.dBlackWhiteMix[1] = v;
         },
         {-100, -40, 0, 40, 100}, mean(LumaMetric, Orange)},
        {"tint towards blue", [](GlobalSettings& s, double v) {
             s.dTintHue = 240;
             s.dTintAmount = v;
         },
         {0, 20, 50, 100}, channelGap(0, 2, Everywhere)},
        {"split tone lights blue",
         [](GlobalSettings& s, double v) {
             s.dSplitLightHue = 240;
             s.dSplitLightSaturation = v;
         },
         {0, 30, 60, 100}, channelGap(0, 2, Bright)},
        {"split tone darks red",
         [](GlobalSettings& s, double v) {
             s.dSplitDarkHue = 0;
             s.dSplitDarkSaturation = v;
         },
         {0, 30, 60, 100}, channelGap(2, 0, Dark)},
        {"split tone balance towards the lights",
         [](GlobalSettings& s, double v) {
             s.dSplitLightHue = 240;
             s.dSplitLightSaturation = 60;
             s.dSplitBalance = v;
         },
         {-80, -30, 0, 30, 80}, channelGap(0, 2, Everywhere)},
        {"colour replacement tolerance, orange to blue",
         [](GlobalSettings& s, double v) {
             s.bColourReplace = true;
             const double from[3] = {200, 110, 50}, to[3] = {50, 110, 200};
             for (int i = 0; i < 3; ++i) {
                 s.dReplaceFrom[i] = from[i];
                 s.dReplaceTo[i] = to[i];
             }
             s.dReplaceTolerance = v;
         },
         {0, 15, 40, 100}, channelGap(0, 2, Orange)},
        {"colour splash tolerance",
         [](GlobalSettings& s, double v) {
             s.bColourSplash = true;
             s.dSplashColour[0] = 200;
             s.dSplashColour[1] = 120;
             s.dSplashColour[2] = 40;
             s.dSplashTolerance = v;
         },
         {0, 5, 20, 60}, mean(Colourful, Everywhere)},
        {"colour splash hue shift",
         [](GlobalSettings& s, double v) {
             s.bColourSplash = true;
             s.dSplashColour[0] = 200;
             s.dSplashColour[1] = 120;
             s.dSplashColour[2] = 40;
             s.dSplashTolerance = 30;
             s.dSplashHueShift = v;
         },
         {-0.05, 0, 0.05}, mean(HueOfPixel, Orange)},
        {"levels input black", [](GlobalSettings& s, double v) { s.masterLevels.dInBlack = v; }, {0.3, 0.15, 0.05, 0},
         mean(LumaMetric, Everywhere)},
        {"levels gamma", [](GlobalSettings& s, double v) { s.masterLevels.dGamma = v; }, {0.5, 0.8, 1, 1.3, 2},
         mean(LumaMetric, Everywhere)},
        {"levels output white", [](GlobalSettings& s, double v) { s.masterLevels.dOutWhite = v; }, {0.5, 0.8, 1},
         mean(LumaMetric, Everywhere)},
        {"red levels gamma", [](GlobalSettings& s, double v) { s.channelLevels[0].dGamma = v; }, {0.5, 1, 2},
         channelGap(2, 1, Everywhere)},
        {"master curve power",
         [](GlobalSettings& s, double v) {
             s.masterCurve.resize(65536);
             for (size_t i = 0; i < 65536; ++i)
                 s.masterCurve[i] = static_cast<int32_t>(std::lround(65535.0 * std::pow(i / 65535.0, v)));
         },
         {2, 1.4, 1, 0.7, 0.5}, mean(LumaMetric, Everywhere)},
        {"blue curve power",
         [](GlobalSettings& s, double v) {
             s.channelCurves[2].resize(65536);
             for (size_t i = 0; i < 65536; ++i)
                 s.channelCurves[2][i] = static_cast<int32_t>(std::lround(65535.0 * std::pow(i / 65535.0, v)));
         },
         {2, 1, 0.5}, channelGap(0, 1, Everywhere)},
        {"clarity", [](GlobalSettings& s, double v) { s.dClarity = v; }, {-100, -40, 0, 40, 100},
         [](const Picture& r, const Picture&) { return FineDetail(r); }, true},
        {"sharpness", [](GlobalSettings& s, double v) {
             s.dSharpAmount = v;
             s.dSharpRadius = 2;
         },
         {0, 30, 60, 100}, [](const Picture& r, const Picture&) { return FineDetail(r); }, true},
        {"blur", [](GlobalSettings& s, double v) { s.dBlurLevel = v; }, {40, 15, 5, 0},
         [](const Picture& r, const Picture&) { return FineDetail(r); }, true},
        {"HDR edge strength", [](GlobalSettings& s, double v) {
             s.dEdgeStrength = v;
             s.dEdgeRadius = 20;
         },
         {0, 30, 60, 100}, [](const Picture& r, const Picture&) { return FineDetail(r); }, true},
        {"HDR glow strength, less spread between light and dark",
         [](GlobalSettings& s, double v) {
             s.dGlowStrength = v;
             s.dGlowRadius = 50;
         },
         {100, 60, 30, 0},
         [](const Picture& r, const Picture& o) {
             const double m = MeanOver(r, o, LumaMetric, Everywhere);
             return MeanOver(r, o, [m](const Picture& p, int x, int y) { return std::fabs(p.Luma(x, y) - m); },
                             Everywhere);
         },
         true},
        {"HDR glow balance", [](GlobalSettings& s, double v) {
             s.dGlowStrength = 60;
             s.dGlowBalance = v;
         },
         {-100, -30, 0, 30, 100}, mean(LumaMetric, Everywhere), true},
        {"luminance noise reduction", [](GlobalSettings& s, double v) { s.dNoiseLumaAmount = v; }, {100, 50, 20, 0},
         [](const Picture& r, const Picture&) { return FineDetail(r); }, true},
        {"colour noise reduction", [](GlobalSettings& s, double v) { s.dNoiseChromaAmount = v; }, {100, 50, 20, 0},
         [](const Picture& r, const Picture&) { return ColourDetail(r); }, true},
        {"vignette amount", [](GlobalSettings& s, double v) { s.dVignetteAmount = v; }, {-100, -50, 0, 50, 100},
         mean(LumaMetric, Corner)},
        {"vignette midpoint, darkening",
         [](GlobalSettings& s, double v) {
             s.dVignetteAmount = -60;
             s.dVignetteMidPoint = v;
         },
         {0, 30, 60, 90}, mean(LumaMetric, Everywhere)},
    };
    all.push_back({"contrast", [](GlobalSettings& s, double v) { s.dContrast = v; }, {-60, -20, 0, 20, 60},
                   [](const Picture& r, const Picture& o) {
                       const double m = MeanOver(r, o, LumaMetric, Everywhere);
                       return MeanOver(r, o, [m](const Picture& p, int x, int y) { return std::fabs(p.Luma(x, y) - m); },
                                       Everywhere);
                   }});
    return all;
}

class RendererEffects : public ::testing::TestWithParam<int> {};

constexpr char kNoFilters[] =
    "this build has no OpenCV: noise reduction, HDR, clarity, sharpness and blur are left out";

void ClimbLadders(int bytesPerChannel, bool filters) {
    const Picture original(bytesPerChannel);
    for (const Ladder& ladder : Ladders()) {
        if (ladder.needsFilters != filters) continue;
        std::vector<double> measured;
        for (double v : ladder.values) {
            const Picture rendered = Rendered(bytesPerChannel, [&](GlobalSettings& s) { ladder.set(s, v); });
            measured.push_back(ladder.measure(rendered, original));
        }
        for (size_t i = 1; i < measured.size(); ++i)
            EXPECT_LT(measured[i - 1], measured[i]) << ladder.name << " between values " << ladder.values[i - 1]
                                                    << " and " << ladder.values[i];
    }
}

void CompareDepths(bool filters) {
    for (const Ladder& ladder : Ladders()) {
        if (ladder.needsFilters != filters) continue;
        const double strong = std::fabs(ladder.values.front()) > std::fabs(ladder.values.back()) ? ladder.values.front()
                                                                                                 : ladder.values.back();
        const Adjust adjust = [&](GlobalSettings& s) { ladder.set(s, strong); };
        const Picture eight = Rendered(1, adjust);
        const Picture sixteen = Rendered(2, adjust);
        int worst = 0;
        for (int y = 0; y < eight.height; ++y)
            for (int x = 0; x < eight.width; ++x)
                for (int i = 0; i < 4; ++i) {
                    const double apart = std::fabs(sixteen.At(x, y, i) / 257.0 - eight.At(x, y, i));
                    worst = std::max(worst, static_cast<int>(std::ceil(apart - 1e-9)));
                }
        EXPECT_LE(worst, 1) << ladder.name << " at " << strong;
    }
}

TEST_P(RendererEffects, EachEffectMovesThePictureItsWayAndFurtherWithMore) { ClimbLadders(GetParam(), false); }

TEST_P(RendererEffects, EachFilterMovesThePictureItsWayAndFurtherWithMore) {
    if (!pcg::renderer::FiltersAvailable()) GTEST_SKIP() << kNoFilters;
    ClimbLadders(GetParam(), true);
}

TEST(RendererDepths, EightAndSixteenBitsAgreeWithinOneEightBitStep) { CompareDepths(false); }

TEST(RendererDepths, FiltersOnEightAndSixteenBitsAgreeWithinOneEightBitStep) {
    if (!pcg::renderer::FiltersAvailable()) GTEST_SKIP() << kNoFilters;
    CompareDepths(true);
}

// Every setting at its neutral value, and the settings that do nothing alone.
TEST_P(RendererEffects, NeutralValuesLeaveEveryByteAsItWas) {
    const Picture original(GetParam());
    std::vector<uint16_t> identity(65536);
    std::iota(identity.begin(), identity.end(), 0);
    const std::vector<Adjust> neutral = {
        [](GlobalSettings&) {},
        [](GlobalSettings& s) {
            s.dExposure = s.dBrightness = s.dContrast = s.dTint = s.dSaturation = 0;
            s.dTemperature = 5000;
        },
        [](GlobalSettings& s) { s.dBlacks = s.dFillLight = s.dRecovery = s.dWhites = 0; },
        [&](GlobalSettings& s) {
            s.masterCurve.assign(identity.begin(), identity.end());
            for (auto& curve : s.channelCurves) curve.assign(identity.begin(), identity.end());
        },
        [](GlobalSettings& s) {
            s.masterLevels = pcg::renderer::Levels();
            s.channelLevels[1] = pcg::renderer::Levels();
        },
        [](GlobalSettings& s) {
            s.dVibrance = 0;
            s.dHueShift = 0;
        },
        [](GlobalSettings& s) {
            s.bBlackWhite = false;
            for (double& v : s.dBlackWhiteMix) v = 80;  // the mix does nothing while black and white is off
        },
        [](GlobalSettings& s) { s.dTintHue = 200; },
        [](GlobalSettings& s) {
            s.dSplitLightHue = 40;
            s.dSplitDarkHue = 220;
            s.dSplitBalance = 50;
        },
        [](GlobalSettings& s) {
            s.dSharpRadius = 9;
            s.dSharpMask = 30;
        },
        [](GlobalSettings& s) {
            s.dVignetteMidPoint = 10;
            s.dVignetteRoundness = -70;
            s.dVignetteFeather = 90;
        },
        [](GlobalSettings& s) {
            s.dClarity = 0;
            s.dBlurLevel = 0;
            s.dNoiseLumaDetail = 90;  // detail without an amount
            s.dNoiseChromaDetail = 10;
            s.dGlowRadius = 40;  // HDR radii and balances without a strength
            s.dGlowBalance = 20;
            s.dEdgeRadius = 30;
            s.dEdgeBalance = -20;
        },
        [](GlobalSettings& s) {
            s.bColourSplash = false;
            s.dSplashTolerance = 10;
            s.dSplashColour[2] = 255;
            s.bColourReplace = true;  // a replacement without tolerance
            s.dReplaceFrom[0] = 255;
            s.dReplaceTo[1] = 255;
        },
        [](GlobalSettings& s) {
            s.bColourReplace = true;  // to the colour it comes from
            s.dReplaceTolerance = 80;
            s.dReplaceFrom[0] = s.dReplaceTo[0] = 128;
        },
        // Levels that cannot be applied are left out.
        [](GlobalSettings& s) {
            s.masterLevels.dInBlack = 0.8;
            s.masterLevels.dInWhite = 0.2;
            s.channelLevels[2].dGamma = 0;
        },
        // Not finite: read as neutral.
        [](GlobalSettings& s) {
            s.dExposure = NAN;
            s.dSaturation = INFINITY;
            s.dVignetteAmount = NAN;
            s.dClarity = -INFINITY;
            s.dBandHue[3] = NAN;
        },
    };
    for (size_t k = 0; k < neutral.size(); ++k) {
        GlobalSettings s;
        neutral[k](s);
        EXPECT_TRUE(pcg::renderer::IsNeutral(s)) << "neutral set " << k;
        Picture picture(GetParam());
        ASSERT_TRUE(picture.Render(s));
        EXPECT_EQ(picture.pixels, original.pixels) << "neutral set " << k;
    }
}

TEST_P(RendererEffects, PerChannelEffectsKeepTheOrderOfCodes) {
    // A per-channel effect is a non-decreasing function of the code: a channel
    // that was darker than another before is not brighter after.
    const Picture original(GetParam());
    const std::vector<Adjust> perChannel = {
        [](GlobalSettings& s) { s.dExposure = 0.7; },
        [](GlobalSettings& s) { s.dContrast = 45; },
        [](GlobalSettings& s) {
            s.dBlacks = -100;
            s.dFillLight = 100;
            s.dRecovery = 100;
            s.dWhites = -100;
        },
        [](GlobalSettings& s) {
            s.dBlacks = 100;
            s.dFillLight = -100;
            s.dRecovery = -100;
            s.dWhites = 100;
        },
        [](GlobalSettings& s) {
            s.masterLevels.dInBlack = 0.1;
            s.masterLevels.dInWhite = 0.85;
            s.masterLevels.dGamma = 1.4;
            s.masterLevels.dOutBlack = 0.05;
        },
    };
    for (size_t k = 0; k < perChannel.size(); ++k) {
        const Picture rendered = Rendered(GetParam(), perChannel[k]);
        for (int i = 0; i < 3; ++i) {
            std::vector<std::pair<int, int>> pairs;
            for (int y = 0; y < original.height; ++y)
                for (int x = 0; x < original.width; ++x) pairs.emplace_back(original.At(x, y, i), rendered.At(x, y, i));
            std::sort(pairs.begin(), pairs.end());
            for (size_t j = 1; j < pairs.size(); ++j) ASSERT_LE(pairs[j - 1].second, pairs[j].second) << k << " " << i;
        }
    }
}

TEST_P(RendererEffects, ASplashThatKeepsEveryHueChangesNothing) {
    const Picture original(GetParam());
    const Picture rendered = Rendered(GetParam(), [](GlobalSettings& s) {
        s.bColourSplash = true;
        s.dSplashColour[0] = 10;
        s.dSplashColour[1] = 200;
        s.dSplashColour[2] = 30;
        s.dSplashTolerance = 100;
    });
    EXPECT_EQ(rendered.pixels, original.pixels);
}

TEST_P(RendererEffects, ASplashOfBlueTurnsTheWarmPhotographGrey) {
    const Picture rendered = Rendered(GetParam(), [](GlobalSettings& s) {
        s.bColourSplash = true;
        s.dSplashColour[2] = 255;
        s.dSplashTolerance = 5;
    });
    int grey = 0;
    for (int y = 0; y < rendered.height; ++y)
        for (int x = 0; x < rendered.width; ++x)
            grey += rendered.At(x, y, 0) == rendered.At(x, y, 1) && rendered.At(x, y, 1) == rendered.At(x, y, 2);
    EXPECT_GT(grey, rendered.width * rendered.height * 9 / 10);
}

TEST_P(RendererEffects, BlackAndWhiteMakesEveryPixelGrey) {
    const Picture rendered = Rendered(GetParam(), [](GlobalSettings& s) {
        s.bBlackWhite = true;
        s.dBlackWhiteMix[0] = 60;
        s.dBlackWhiteMix[5] = -40;
    });
    for (int y = 0; y < rendered.height; ++y)
        for (int x = 0; x < rendered.width; ++x) {
            EXPECT_EQ(rendered.At(x, y, 0), rendered.At(x, y, 1));
            EXPECT_EQ(rendered.At(x, y, 1), rendered.At(x, y, 2));
        }
}

TEST_P(RendererEffects, ABandLeavesGreysAndFarColoursAlone) {
    Picture picture(GetParam());
    const int m = static_cast<int>(picture.Max());
    // A grey, a pure blue and a pure green: none is in the orange band.
    const int colours[3][3] = {{m / 2, m / 2, m / 2}, {m, 0, 0}, {0, m, 0}};  // b, g, r
    for (int k = 0; k < 3; ++k)
        for (int i = 0; i < 3; ++i) picture.Set(k, 0, i, colours[k][i]);
    const Picture before = picture;
    GlobalSettings s;
    s.dBandHue[1] = 100;
    s.dBandSaturation[1] = -100;
    s.dBandLuminance[1] = 100;
    ASSERT_TRUE(picture.Render(s));
    for (int k = 0; k < 3; ++k)
        for (int i = 0; i < 4; ++i) EXPECT_EQ(picture.At(k, 0, i), before.At(k, 0, i)) << k << " " << i;
}

TEST_P(RendererEffects, VignetteLeavesTheCentreAndDarkensTheCorners) {
    const Picture original(GetParam());
    const Picture rendered = Rendered(GetParam(), [](GlobalSettings& s) {
        s.dVignetteAmount = -100;
        s.dVignetteMidPoint = 40;
        s.dVignetteFeather = 20;
    });
    for (int y = 0; y < original.height; ++y)
        for (int x = 0; x < original.width; ++x) {
            for (int i = 0; i < 3; ++i) {
                if (Centre(original, x, y)) {
                    EXPECT_EQ(rendered.At(x, y, i), original.At(x, y, i));
                }
                EXPECT_LE(rendered.At(x, y, i), original.At(x, y, i));
            }
            EXPECT_EQ(rendered.At(x, y, 3), original.At(x, y, 3));
        }
    // Full strength past the falloff: the outermost corner pixel is black.
    for (int i = 0; i < 3; ++i) EXPECT_EQ(rendered.At(0, 0, i), 0);
}

TEST_P(RendererEffects, AlphaAndPaddingStayUnderEveryEffect) {
    const Picture original(GetParam());
    GlobalSettings s;
    s.dExposure = 0.4;
    s.dVibrance = 30;
    s.dBandLuminance[2] = 50;
    s.bBlackWhite = true;
    s.dTintAmount = 40;
    s.dSplitDarkSaturation = 50;
    s.dClarity = 50;
    s.dSharpAmount = 50;
    s.dBlurLevel = 10;
    s.dNoiseLumaAmount = 50;
    s.dNoiseChromaAmount = 50;
    s.dGlowStrength = 40;
    s.dEdgeStrength = 40;
    s.dVignetteAmount = -50;
    Picture picture(GetParam());
    ASSERT_TRUE(picture.Render(s));
    const int row = picture.width * 4 * picture.channel;
    for (int y = 0; y < picture.height; ++y) {
        for (int b = row; b < picture.stride; ++b)
            EXPECT_EQ(picture.pixels[y * picture.stride + b], original.pixels[y * original.stride + b]);
        for (int x = 0; x < picture.width; ++x) EXPECT_EQ(picture.At(x, y, 3), original.At(x, y, 3));
    }
    EXPECT_NE(picture.pixels, original.pixels);
}

TEST_P(RendererEffects, SettingsFarOutsideTheirRangesStillGiveCodes) {
    // Every setting at an enormous value, one at a time and all together: the
    // render succeeds, alpha stays, and the arithmetic's overflow never reaches
    // an integer conversion (checked under the undefined-behaviour sanitizer).
    const Picture original(GetParam());
    std::vector<std::function<void(GlobalSettings&, double)>> each = {
        [](GlobalSettings& s, double v) { s.dExposure = v; },
        [](GlobalSettings& s, double v) { s.dBrightness = v; },
        [](GlobalSettings& s, double v) { s.dContrast = v; },
        [](GlobalSettings& s, double v) { s.dTint = v; },
        [](GlobalSettings& s, double v) { s.dSaturation = v; },
        [](GlobalSettings& s, double v) { s.dBlacks = s.dFillLight = s.dRecovery = s.dWhites = v; },
        [](GlobalSettings& s, double v) { s.masterLevels.dOutWhite = v; },
        [](GlobalSettings& s, double v) { s.channelLevels[1].dGamma = std::fabs(v); },
        [](GlobalSettings& s, double v) { s.dVibrance = v; },
        [](GlobalSettings& s, double v) {
            for (int b = 0; b < 8; ++b) s.dBandHue[b] = s.dBandSaturation[b] = s.dBandLuminance[b] = v;
        },
        [](GlobalSettings& s, double v) { s.dHueShift = v; },
        [](GlobalSettings& s, double v) {
            s.bBlackWhite = true;
            for (double& m : s.dBlackWhiteMix) m = v;
        },
        [](GlobalSettings& s, double v) {
            s.dTintHue = v;
            s.dTintAmount = v;
        },
        [](GlobalSettings& s, double v) {
            s.dSplitLightHue = s.dSplitDarkHue = v;
            s.dSplitLightSaturation = s.dSplitDarkSaturation = s.dSplitBalance = v;
        },
        [](GlobalSettings& s, double v) {
            s.bColourReplace = s.bColourSplash = true;
            for (int i = 0; i < 3; ++i) s.dReplaceFrom[i] = s.dReplaceTo[i] = s.dSplashColour[i] = v * (i - 1);
            s.dReplaceTolerance = s.dSplashTolerance = s.dSplashHueShift = v;
        },
        [](GlobalSettings& s, double v) { s.dClarity = v; },
        [](GlobalSettings& s, double v) {
            s.dSharpAmount = v;
            s.dSharpRadius = v;
            s.dSharpMask = v;
        },
        [](GlobalSettings& s, double v) { s.dBlurLevel = v; },
        [](GlobalSettings& s, double v) {
            s.dNoiseLumaAmount = s.dNoiseLumaDetail = s.dNoiseChromaAmount = s.dNoiseChromaDetail = v;
        },
        [](GlobalSettings& s, double v) {
            s.dGlowStrength = s.dGlowRadius = s.dGlowBalance = v;
            s.dEdgeStrength = s.dEdgeRadius = s.dEdgeBalance = v;
        },
        [](GlobalSettings& s, double v) {
            s.dVignetteAmount = s.dVignetteMidPoint = s.dVignetteRoundness = s.dVignetteFeather = v;
        },
    };
    for (double v : {1e300, -1e300, 1e9, -1e9}) {
        GlobalSettings all;
        for (size_t k = 0; k < each.size(); ++k) {
            GlobalSettings one;
            each[k](one, v);
            each[k](all, v);
            Picture picture(GetParam());
            ASSERT_TRUE(picture.Render(one)) << k << " at " << v;
            for (int x = 0; x < picture.width; ++x) EXPECT_EQ(picture.At(x, 7, 3), original.At(x, 7, 3));
        }
        Picture picture(GetParam());
        ASSERT_TRUE(picture.Render(all)) << v;
    }
    // An enormous exposure: black stays black (0 times the gain), all else is white.
    const Picture blown = Rendered(GetParam(), [](GlobalSettings& s) { s.dExposure = 1e300; });
    for (int y = 0; y < blown.height; ++y)
        for (int x = 0; x < blown.width; ++x)
            for (int i = 0; i < 3; ++i)
                EXPECT_EQ(blown.At(x, y, i), original.At(x, y, i) == 0 ? 0 : static_cast<int>(blown.Max()));
}

INSTANTIATE_TEST_SUITE_P(EightAndSixteenBits, RendererEffects, ::testing::Values(1, 2));

TEST(RendererEffects, CurveTablesOfAnotherLengthAreRefused) {
    Picture picture(1);
    const std::vector<uint8_t> before = picture.pixels;
    GlobalSettings s;
    s.dExposure = 1;
    s.channelCurves[1].assign(100, 0);
    EXPECT_FALSE(picture.Render(s));
    EXPECT_EQ(picture.pixels, before);
}

TEST(RendererEffects, CurveTableValuesOutsideTheCodesAreHeldToThem) {
    Picture picture(1);
    GlobalSettings s;
    s.masterCurve.assign(65536, 70000);
    ASSERT_TRUE(picture.Render(s));
    for (int x = 0; x < picture.width; ++x)
        for (int i = 0; i < 3; ++i) EXPECT_EQ(picture.At(x, 5, i), 255);
    s.masterCurve.assign(65536, -5);
    ASSERT_TRUE(picture.Render(s));
    for (int x = 0; x < picture.width; ++x)
        for (int i = 0; i < 3; ++i) EXPECT_EQ(picture.At(x, 5, i), 0);
}

TEST(RendererEffects, FiltersAreThereWhereTheBuildHasThem) {
#if defined(_WIN32)
    EXPECT_FALSE(pcg::renderer::FiltersAvailable());
#else
    EXPECT_TRUE(pcg::renderer::FiltersAvailable());
#endif
}

TEST(ColourBands, AHueFallsBetweenItsTwoNearestBands) {
    using pcg::renderer::ShareOfBands;
    auto check = [](double hue, int lower, int upper, double share) {
        const auto s = ShareOfBands(hue);
        EXPECT_EQ(s.nLower, lower) << hue;
        EXPECT_EQ(s.nUpper, upper) << hue;
        EXPECT_NEAR(s.dUpperShare, share, 1e-12) << hue;
    };
    check(0, 0, 1, 0);
    check(15, 0, 1, 0.5);
    check(45, 1, 2, 0.5);
    check(90, 2, 3, 0.5);
    check(120, 3, 4, 0);
    check(210, 4, 5, 0.5);
    check(255, 5, 6, 0.5);
    check(285, 6, 7, 0.5);
    check(330, 7, 0, 0.5);
    check(359, 7, 0, 59.0 / 60.0);
    check(-30, 7, 0, 0.5);
    check(390, 1, 2, 0.0);
    check(NAN, 0, 1, 0);
}

TEST(ColourBands, HslRoundTripsAndKnownColours) {
    double h, s, l;
    pcg::renderer::RgbToHsl(1, 0, 0, &h, &s, &l);
    EXPECT_DOUBLE_EQ(h, 0);
    EXPECT_DOUBLE_EQ(s, 1);
    EXPECT_DOUBLE_EQ(l, 0.5);
    pcg::renderer::RgbToHsl(0, 0, 1, &h, &s, &l);
    EXPECT_DOUBLE_EQ(h, 240);
    pcg::renderer::RgbToHsl(0.5, 0.5, 0.5, &h, &s, &l);
    EXPECT_DOUBLE_EQ(s, 0);
    EXPECT_DOUBLE_EQ(l, 0.5);
    for (int k = 0; k < 200; ++k) {
        const double r = (k * 37 % 101) / 100.0, g = (k * 53 % 101) / 100.0, b = (k * 71 % 101) / 100.0;
        double r2, g2, b2;
        pcg::renderer::RgbToHsl(r, g, b, &h, &s, &l);
        pcg::renderer::HslToRgb(h, s, l, &r2, &g2, &b2);
        EXPECT_NEAR(r2, r, 1e-12);
        EXPECT_NEAR(g2, g, 1e-12);
        EXPECT_NEAR(b2, b, 1e-12);
    }
}

TEST(PixelMath, RoundsHalfUpAndClampsToTheCodes) {
    using pcg::renderer::ToChannel;
    EXPECT_EQ(ToChannel(0.0, 255.0), 0.0);
    EXPECT_EQ(ToChannel(0.49, 255.0), 0.0);
    EXPECT_EQ(ToChannel(0.5, 255.0), 1.0);
    EXPECT_EQ(ToChannel(-0.5, 255.0), 0.0);
    EXPECT_EQ(ToChannel(-0.51, 255.0), 0.0);
    EXPECT_EQ(ToChannel(-1e300, 255.0), 0.0);
    EXPECT_EQ(ToChannel(127.5, 255.0), 128.0);
    EXPECT_EQ(ToChannel(254.49, 255.0), 254.0);
    EXPECT_EQ(ToChannel(254.5, 255.0), 255.0);
    EXPECT_EQ(ToChannel(1e300, 255.0), 255.0);
    EXPECT_EQ(ToChannel(65534.7, 65535.0), 65535.0);
    EXPECT_EQ(ToChannel(NAN, 65535.0), 0.0);
    EXPECT_EQ(ToChannel(INFINITY, 65535.0), 65535.0);
    EXPECT_EQ(ToChannel(-INFINITY, 65535.0), 0.0);
}

}  // namespace
