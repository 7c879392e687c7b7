#include "reference/renderer/renderer.h"

#include <cmath>
#include <cstring>

#include "platform/parallel_slices.h"
#include "reference/renderer/colour_bands.h"
#include "reference/renderer/filters.h"
#include "reference/renderer/pixel_math.h"
#include "reference/renderer/vignette.h"

namespace pcg {
namespace renderer {

namespace {

constexpr size_t kCurveEntries = 65536;
constexpr int kMinSlicePixels = 1 << 16;

bool IsNeutral(const Levels& l) {
    return l.dInBlack == 0.0 && l.dInWhite == 1.0 && l.dGamma == 1.0 && l.dOutBlack == 0.0 && l.dOutWhite == 1.0;
}

// Levels that cannot be applied (an empty or reversed input range, a gamma
// that is not positive, a value that is not finite) are left out as neutral.
bool IsUsable(const Levels& l) {
    return std::isfinite(l.dInBlack) && std::isfinite(l.dInWhite) && std::isfinite(l.dGamma) &&
           std::isfinite(l.dOutBlack) && std::isfinite(l.dOutWhite) && l.dInWhite > l.dInBlack && l.dGamma > 0.0;
}

// A value that is not finite reads as the setting's neutral one: a script's NaN
// must not reach an integer conversion.
double Finite(double v, double neutral) { return std::isfinite(v) ? v : neutral; }

GlobalSettings Sanitized(const GlobalSettings& in) {
    GlobalSettings s = in;
    for (double* v : {&s.dReplaceTolerance, &s.dSplashTolerance, &s.dSplashHueShift, &s.dReplaceFrom[0],
                      &s.dReplaceFrom[1], &s.dReplaceFrom[2], &s.dReplaceTo[0], &s.dReplaceTo[1], &s.dReplaceTo[2],
                      &s.dSplashColour[0], &s.dSplashColour[1], &s.dSplashColour[2]})
        *v = Finite(*v, 0.0);
    for (double* v : {&s.dExposure, &s.dBrightness, &s.dContrast, &s.dTint, &s.dSaturation, &s.dBlacks, &s.dFillLight,
                      &s.dRecovery, &s.dWhites, &s.dVibrance, &s.dHueShift, &s.dTintHue, &s.dTintAmount,
                      &s.dSplitLightHue, &s.dSplitLightSaturation, &s.dSplitBalance, &s.dSplitDarkHue,
                      &s.dSplitDarkSaturation})
        *v = Finite(*v, 0.0);
    for (int i = 0; i < kBandCount; ++i) {
        s.dBandHue[i] = Finite(s.dBandHue[i], 0.0);
        s.dBandSaturation[i] = Finite(s.dBandSaturation[i], 0.0);
        s.dBandLuminance[i] = Finite(s.dBandLuminance[i], 0.0);
        s.dBlackWhiteMix[i] = Finite(s.dBlackWhiteMix[i], 0.0);
    }
    if (!IsUsable(s.masterLevels)) s.masterLevels = Levels();
    for (Levels& l : s.channelLevels)
        if (!IsUsable(l)) l = Levels();
    return s;
}

// ------------------------------------------------------------ per channel

double CurveAt(const std::vector<int32_t>& table, double t) {
    const double u = Clamp(t, 0.0, 1.0) * 65535.0;
    const size_t i = static_cast<size_t>(u);
    const double a = Clamp(table[i], 0.0, 65535.0);
    if (i + 1 >= kCurveEntries) return a / 65535.0;
    const double b = Clamp(table[i + 1], 0.0, 65535.0);
    return (a + (b - a) * (u - static_cast<double>(i))) / 65535.0;
}

// An identity table changes nothing: it is skipped like an absent one.
bool IsActiveCurve(const std::vector<int32_t>& table) {
    for (size_t i = 0; i < table.size(); ++i)
        if (table[i] != static_cast<int32_t>(i)) return true;
    return false;
}

double LevelsAt(const Levels& l, double t) {
    double v = Clamp((t - l.dInBlack) / (l.dInWhite - l.dInBlack), 0.0, 1.0);
    if (l.dGamma != 1.0) v = std::pow(v, 1.0 / l.dGamma);
    return l.dOutBlack + (l.dOutWhite - l.dOutBlack) * v;
}

struct PointPlan {
    double dMax;
    bool bExposure, bBrightness, bContrast, bBalance, bSliders, bMasterLevels, bMasterCurve;
    bool bChannelLevels[3], bChannelCurve[3];  // red, green, blue
    double dExposureGain, dBrightnessShift, dContrastGain;
    double dGain[3];  // blue, green, red, as in memory
    double kBlacks, kFill, kRecovery, kWhites;
    bool Active() const {
        return bExposure || bBrightness || bContrast || bBalance || bSliders || bMasterLevels || bMasterCurve ||
               bChannelLevels[0] || bChannelLevels[1] || bChannelLevels[2] || bChannelCurve[0] || bChannelCurve[1] ||
               bChannelCurve[2];
    }
};

PointPlan MakePointPlan(const GlobalSettings& s, double max) {
    PointPlan p{};
    p.dMax = max;
    p.bExposure = s.dExposure != 0.0;
    p.dExposureGain = std::pow(2.0, s.dExposure);
    p.bBrightness = s.dBrightness != 0.0;
    p.dBrightnessShift = s.dBrightness / 100.0 * max / 4.0;
    p.bContrast = s.dContrast != 0.0;
    p.dContrastGain = 1.0 + s.dContrast / 100.0;
    p.bBalance = s.dTemperature != 5000.0 || s.dTint != 0.0;
    p.dGain[2] = std::pow(s.dTemperature / 5000.0, 0.25);
    p.dGain[0] = std::pow(5000.0 / s.dTemperature, 0.25);
    p.dGain[1] = 1.0 - s.dTint / 1000.0;
    p.kBlacks = s.dBlacks / 100.0;
    p.kFill = s.dFillLight / 100.0;
    p.kRecovery = s.dRecovery / 100.0;
    p.kWhites = s.dWhites / 100.0;
    p.bSliders = p.kBlacks != 0.0 || p.kFill != 0.0 || p.kRecovery != 0.0 || p.kWhites != 0.0;
    p.bMasterLevels = !IsNeutral(s.masterLevels);
    p.bMasterCurve = IsActiveCurve(s.masterCurve);
    for (int i = 0; i < 3; ++i) {
        p.bChannelLevels[i] = !IsNeutral(s.channelLevels[i]);
        p.bChannelCurve[i] = IsActiveCurve(s.channelCurves[i]);
    }
    return p;
}

// Channel `memoryIndex` (0 blue, 1 green, 2 red) of value c through stage 1.
double PointValue(const PointPlan& p, const GlobalSettings& s, int memoryIndex, double c) {
    const int rgb = 2 - memoryIndex;
    if (p.bExposure) c *= p.dExposureGain;
    if (p.bBrightness) c += p.dBrightnessShift;
    if (p.bContrast) c = (c - p.dMax / 2.0) * p.dContrastGain + p.dMax / 2.0;
    if (p.bBalance) c *= p.dGain[memoryIndex];
    if (!(p.bSliders || p.bMasterLevels || p.bChannelLevels[rgb] || p.bMasterCurve || p.bChannelCurve[rgb])) return c;
    double t = c / p.dMax;
    if (p.bSliders) {
        const double dark = 1.0 - t;
        if (p.kBlacks != 0.0) t += p.kBlacks / 4.0 * dark * dark * dark;
        if (p.kFill != 0.0) t += p.kFill * t * dark * dark;
        if (p.kRecovery != 0.0) t -= p.kRecovery / 4.0 * t * t * t * t;
        if (p.kWhites != 0.0) t += p.kWhites / 4.0 * t * t * t;
    }
    if (p.bMasterLevels) t = LevelsAt(s.masterLevels, t);
    if (p.bChannelLevels[rgb]) t = LevelsAt(s.channelLevels[rgb], t);
    if (p.bMasterCurve) t = CurveAt(s.masterCurve, t);
    if (p.bChannelCurve[rgb]) t = CurveAt(s.channelCurves[rgb], t);
    return t * p.dMax;
}

// ------------------------------------------------------------ per pixel

struct ColourPlan {
    double dMax;
    bool bReplace, bSaturation, bVibrance, bHsl, bSplash, bBlackWhite, bTint, bSplit;
    double dSaturationGain, kVibrance;
    double dHueShiftDegrees;
    const GlobalSettings* pSettings;
    double dTintAmount, tint[3], dTintLuma;  // tint colour in memory order
    double dPivot, dLightStrength, light[3], dLightLuma, dDarkStrength, dark[3], dDarkLuma;
    double dReplaceRadius, replaceFrom[3], replaceShift[3];  // memory order, unit scale
    double dSplashHue, dSplashWidth;
    bool Active() const { return bReplace || bSaturation || bVibrance || bHsl || bSplash || bBlackWhite || bTint || bSplit; }
};

bool AnyNonZero(const double (&values)[kBandCount]) {
    for (double v : values)
        if (v != 0.0) return true;
    return false;
}

void PureInMemoryOrder(double hue, double* colour, double* luma) {
    double r, g, b;
    PureColour(hue, &r, &g, &b);
    colour[0] = b;
    colour[1] = g;
    colour[2] = r;
    *luma = Luma(r, g, b);
}

ColourPlan MakeColourPlan(const GlobalSettings& s, double max) {
    ColourPlan p{};
    p.dMax = max;
    p.pSettings = &s;
    p.dReplaceRadius = s.dReplaceTolerance / 100.0 * std::sqrt(3.0) / 2.0;
    for (int i = 0; i < 3; ++i) {
        p.replaceFrom[2 - i] = s.dReplaceFrom[i] / 255.0;
        p.replaceShift[2 - i] = (s.dReplaceTo[i] - s.dReplaceFrom[i]) / 255.0;
    }
    p.bReplace = s.bColourReplace && p.dReplaceRadius > 0.0 &&
                 (p.replaceShift[0] != 0.0 || p.replaceShift[1] != 0.0 || p.replaceShift[2] != 0.0);
    p.bSplash = s.bColourSplash;
    {
        double l, sat;
        RgbToHsl(Clamp(s.dSplashColour[0] / 255.0, 0.0, 1.0), Clamp(s.dSplashColour[1] / 255.0, 0.0, 1.0),
                 Clamp(s.dSplashColour[2] / 255.0, 0.0, 1.0), &p.dSplashHue, &sat, &l);
    }
    p.dSplashWidth = Clamp(s.dSplashTolerance, 0.0, 100.0) / 100.0 * 180.0;
    p.bSaturation = s.dSaturation != 0.0;
    p.dSaturationGain = 1.0 + s.dSaturation / 100.0;
    p.bVibrance = s.dVibrance != 0.0;
    p.kVibrance = s.dVibrance / 100.0;
    p.dHueShiftDegrees = s.dHueShift * 180.0;
    p.bHsl = AnyNonZero(s.dBandHue) || AnyNonZero(s.dBandSaturation) || AnyNonZero(s.dBandLuminance) ||
             s.dHueShift != 0.0;
    p.bBlackWhite = s.bBlackWhite;
    p.bTint = s.dTintAmount != 0.0;
    p.dTintAmount = s.dTintAmount / 100.0;
    PureInMemoryOrder(s.dTintHue, p.tint, &p.dTintLuma);
    p.bSplit = s.dSplitLightSaturation != 0.0 || s.dSplitDarkSaturation != 0.0;
    p.dPivot = Clamp(0.5 - s.dSplitBalance / 200.0, 0.01, 0.99);
    p.dLightStrength = s.dSplitLightSaturation / 100.0;
    p.dDarkStrength = s.dSplitDarkSaturation / 100.0;
    PureInMemoryOrder(s.dSplitLightHue, p.light, &p.dLightLuma);
    PureInMemoryOrder(s.dSplitDarkHue, p.dark, &p.dDarkLuma);
    return p;
}

double LumaOf(const double* c) { return Luma(c[2], c[1], c[0]); }

double Colourfulness(const double* c, double max) {
    const double hi = std::fmax(c[0], std::fmax(c[1], c[2]));
    const double lo = std::fmin(c[0], std::fmin(c[1], c[2]));
    return Clamp((hi - lo) / max, 0.0, 1.0);
}

// Hue of a pixel on 0..M, in degrees.
double HueOf(const double* c, double max) {
    double h, s, l;
    RgbToHsl(Clamp(c[2] / max, 0.0, 1.0), Clamp(c[1] / max, 0.0, 1.0), Clamp(c[0] / max, 0.0, 1.0), &h, &s, &l);
    return h;
}

double BandValue(const double (&values)[kBandCount], const BandShare& share) {
    return values[share.nLower] * (1.0 - share.dUpperShare) + values[share.nUpper] * share.dUpperShare;
}

// b, g, r on 0..M in and out.
void ColourPixel(const ColourPlan& p, double* c) {
    const GlobalSettings& s = *p.pSettings;
    const double max = p.dMax;
    if (p.bReplace) {
        double dist = 0.0;
        for (int i = 0; i < 3; ++i) {
            const double apart = c[i] / max - p.replaceFrom[i];
            dist += apart * apart;
        }
        const double w = Clamp(1.0 - std::sqrt(dist) / p.dReplaceRadius, 0.0, 1.0);
        for (int i = 0; i < 3; ++i) c[i] += w * p.replaceShift[i] * max;
    }
    if (p.bSaturation) {
        const double y = LumaOf(c);
        for (int i = 0; i < 3; ++i) c[i] = y + (c[i] - y) * p.dSaturationGain;
    }
    if (p.bVibrance) {
        const double y = LumaOf(c);
        const double gain = 1.0 + p.kVibrance * (1.0 - Colourfulness(c, max));
        for (int i = 0; i < 3; ++i) c[i] = y + (c[i] - y) * gain;
    }
    if (p.bHsl) {
        double h, sat, l;
        RgbToHsl(Clamp(c[2] / max, 0.0, 1.0), Clamp(c[1] / max, 0.0, 1.0), Clamp(c[0] / max, 0.0, 1.0), &h, &sat, &l);
        if (sat > 0.0) {
            const BandShare share = ShareOfBands(h);
            const double dl = BandValue(s.dBandLuminance, share) / 100.0;
            h += BandValue(s.dBandHue, share) / 100.0 * 30.0 + p.dHueShiftDegrees;
            const double before = sat;
            sat = Clamp(sat * (1.0 + BandValue(s.dBandSaturation, share) / 100.0), 0.0, 1.0);
            l += dl / 2.0 * before * (dl > 0.0 ? 1.0 - l : l);
            double r, g, b;
            HslToRgb(h, sat, l, &r, &g, &b);
            c[0] = b * max;
            c[1] = g * max;
            c[2] = r * max;
        }
    }
    if (p.bSplash) {
        double h, sat, l;
        RgbToHsl(Clamp(c[2] / max, 0.0, 1.0), Clamp(c[1] / max, 0.0, 1.0), Clamp(c[0] / max, 0.0, 1.0), &h, &sat, &l);
        const double apart = std::fabs(h - p.dSplashHue);
        const double d = apart > 180.0 ? 360.0 - apart : apart;
        const double kept = sat > 0.0 ? Clamp((p.dSplashWidth + 15.0 - d) / 15.0, 0.0, 1.0) : 0.0;
        if (kept > 0.0 && s.dSplashHueShift != 0.0) {
            double r, g, b;
            HslToRgb(h + s.dSplashHueShift * 180.0 * kept, sat, l, &r, &g, &b);
            c[0] = b * max;
            c[1] = g * max;
            c[2] = r * max;
        }
        const double y = LumaOf(c);
        for (int i = 0; i < 3; ++i) c[i] = y + (c[i] - y) * kept;
    }
    if (p.bBlackWhite) {
        double grey = LumaOf(c);
        const double colourful = Colourfulness(c, max);
        if (colourful > 0.0 && AnyNonZero(s.dBlackWhiteMix))
            grey *= 1.0 + BandValue(s.dBlackWhiteMix, ShareOfBands(HueOf(c, max))) / 100.0 * colourful;
        c[0] = c[1] = c[2] = grey;
    }
    if (p.bTint) {
        const double t = Clamp(LumaOf(c) / max, 0.0, 1.0);
        const double weight = p.dTintAmount * 4.0 * t * (1.0 - t) * max / 2.0;
        for (int i = 0; i < 3; ++i) c[i] += weight * (p.tint[i] - p.dTintLuma);
    }
    if (p.bSplit) {
        const double t = Clamp(LumaOf(c) / max, 0.0, 1.0);
        const double wl = t > p.dPivot ? (t - p.dPivot) / (1.0 - p.dPivot) : 0.0;
        const double wd = t < p.dPivot ? (p.dPivot - t) / p.dPivot : 0.0;
        for (int i = 0; i < 3; ++i)
            c[i] += (wl * p.dLightStrength * (p.light[i] - p.dLightLuma) +
                     wd * p.dDarkStrength * (p.dark[i] - p.dDarkLuma)) * max / 2.0;
    }
}

template <typename T>
void RenderColours(uint8_t* pixels, int width, int height, int stride, const GlobalSettings& s) {
    const double max = sizeof(T) == 1 ? 255.0 : 65535.0;
    const size_t codes = sizeof(T) == 1 ? 256 : 65536;
    const PointPlan point = MakePointPlan(s, max);
    const ColourPlan colour = MakeColourPlan(s, max);
    if (!point.Active() && !colour.Active()) return;
    // Stage 1 is a function of one channel's code: one table per channel per frame.
    std::vector<double> table(3 * codes);
    for (int i = 0; i < 3; ++i)
        for (size_t code = 0; code < codes; ++code)
            table[i * codes + code] = point.Active() ? PointValue(point, s, i, static_cast<double>(code))
                                                     : static_cast<double>(code);
    const int minRows = 1 + kMinSlicePixels / width;
    if (!colour.Active()) {
        std::vector<T> direct(3 * codes);
        for (size_t k = 0; k < direct.size(); ++k) direct[k] = static_cast<T>(ToChannel(table[k], max));
        platform::ForEachSlice(height, minRows, [&](int first, int last) {
            for (int y = first; y < last; ++y) {
                uint8_t* row = pixels + static_cast<size_t>(y) * static_cast<size_t>(stride);
                for (int x = 0; x < width; ++x) {
                    T px[4];
                    std::memcpy(px, row + static_cast<size_t>(x) * sizeof(px), sizeof(px));
                    for (int i = 0; i < 3; ++i) px[i] = direct[i * codes + px[i]];
                    std::memcpy(row + static_cast<size_t>(x) * sizeof(px), px, sizeof(px));
                }
            }
        });
        return;
    }
    platform::ForEachSlice(height, minRows, [&](int first, int last) {
        // Local copies: the pixel writes below may alias anything reached through a reference.
        const ColourPlan plan = colour;
        const double* const blue = table.data();
        const double* const green = blue + codes;
        const double* const red = green + codes;
        for (int y = first; y < last; ++y) {
            uint8_t* row = pixels + static_cast<size_t>(y) * static_cast<size_t>(stride);
            for (int x = 0; x < width; ++x) {
                T px[4];
                std::memcpy(px, row + static_cast<size_t>(x) * sizeof(px), sizeof(px));
                double c[3] = {blue[px[0]], green[px[1]], red[px[2]]};
                ColourPixel(plan, c);
                for (int i = 0; i < 3; ++i) px[i] = static_cast<T>(ToChannel(c[i], max));
                std::memcpy(row + static_cast<size_t>(x) * sizeof(px), px, sizeof(px));
            }
        }
    });
}

bool CurveShapeUsable(const std::vector<int32_t>& table) { return table.empty() || table.size() == kCurveEntries; }

}  // namespace

bool IsNeutral(const GlobalSettings& in) {
    const GlobalSettings s = Sanitized(in);
    return !MakePointPlan(s, 255.0).Active() && !MakeColourPlan(s, 255.0).Active() && !FiltersActive(s) &&
           !VignetteActive(s);
}

bool RenderGlobal(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel,
                  const GlobalSettings& settings) {
    if (pixels == nullptr || width < 1 || height < 1) return false;
    if (bytesPerChannel != 1 && bytesPerChannel != 2) return false;
    if (static_cast<int64_t>(stride) < static_cast<int64_t>(width) * 4 * bytesPerChannel) return false;
    if (!(settings.dTemperature > 0.0) || !std::isfinite(settings.dTemperature)) return false;
    if (!CurveShapeUsable(settings.masterCurve)) return false;
    for (const auto& curve : settings.channelCurves)
        if (!CurveShapeUsable(curve)) return false;
    const GlobalSettings s = Sanitized(settings);
    if (bytesPerChannel == 1) RenderColours<uint8_t>(pixels, width, height, stride, s);
    else RenderColours<uint16_t>(pixels, width, height, stride, s);
    if (FiltersActive(s)) ApplyFilters(pixels, width, height, stride, bytesPerChannel, s);
    if (VignetteActive(s)) ApplyVignette(pixels, width, height, stride, bytesPerChannel, s);
    return true;
}

}  // namespace renderer
}  // namespace pcg
