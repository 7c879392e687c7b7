// The shared reference renderer: renders global effect settings onto
// four-channel pixels, 8 or 16 bits per channel, in memory order blue, green,
// red, alpha. The render agent and the reference image engine draw through
// it. Python-free, and built for Windows too (where the filters that rest on
// OpenCV are left out: see FiltersAvailable).
//
// Each effect is skipped when its setting is neutral, so a neutral setting
// leaves every pixel bit for bit as it was. Otherwise channels are worked in
// double precision on the scale 0..M (M = 255 or 65535) and rounded to the
// nearest integer and clamped to 0..M at the end of each stage; alpha is never
// touched. t below is a channel on the unit scale, c / M.
//
// Stage 1, per channel (folded into one table per channel per frame):
//   exposure E (stops):       c = c * 2^E
//   brightness B (-100..100): c = c + B / 100 * M / 4
//   contrast C (-100..100):   c = (c - M/2) * (1 + C / 100) + M/2
//   white balance, temperature T (kelvin, neutral 5000) and tint N (neutral 0):
//                             r = r * (T / 5000)^(1/4), b = b * (5000 / T)^(1/4),
//                             g = g * (1 - N / 1000)   (warmer is redder, a
//                             positive tint is more magenta)
//   then, each with k = its value / 100 (-1..1), on t:
//   blacks:     t = t + k/4 * (1 - t)^3     (positive lifts the darkest tones)
//   fill light: t = t + k * t * (1 - t)^2    (positive opens the shadows)
//   recovery:   t = t - k/4 * t^4           (positive pulls the highlights down)
//   whites:     t = t + k/4 * t^3           (positive raises the brightest tones)
//   levels, master then the channel's own (in black a, in white b, gamma g,
//   out black o, out white p, unit scale):
//               t = o + (p - o) * clamp((t - a) / (b - a), 0, 1)^(1/g)
//   tone curves, the master's then the channel's: 65536-entry tables of
//   16-bit codes; t is read at u = clamp(t) * 65535, linearly between the two
//   neighbouring entries, and becomes table(u) / 65535.
// Stage 2, across the channels of a pixel (luma Y = 0.299 r + 0.587 g + 0.114 b):
//   colour replacement (from colour f, to colour d, both 0..255, tolerance T
//     0..100): with dist the distance of c / M from f / 255 in the unit cube
//     and radius = T / 100 * sqrt(3) / 2, w = clamp(1 - dist / radius, 0, 1);
//     c = c + w * (d - f) / 255 * M. T <= 0 or f = d is neutral.
//   saturation S (-100..100):  c = Y + (c - Y) * (1 + S / 100)
//   vibrance V (-100..100):    c = Y + (c - Y) * (1 + V / 100 * (1 - s)),
//                              s = (max - min) / M, the pixel's own colourfulness
//   HSL per band (colour_bands.h): hue +-30 degrees, saturation times
//     (1 + v / 100), lightness towards white or black by v / 200 times the
//     pixel's saturation, each weighted by the pixel's share of the band.
//   hue shift H (-1..1):       hue rotated by H * 180 degrees
//   colour splash (when on; dropper colour, tolerance T 0..100, hue shift
//     H): with d the hue distance of the pixel from the dropper's (0..180
//     degrees) and W = T / 100 * 180, kept k = clamp((W + 15 - d) / 15, 0, 1);
//     the hue turns by H * 180 * k degrees, then c = Y + (c - Y) * k: the
//     dropper's colours stay, everything else goes grey.
//   black and white (when switched on): every channel becomes
//     Y * (1 + sum over bands of weight * L_band / 100 * s)
//   tint (hue h degrees, amount A 0..100): c = c + A / 100 * 4t(1-t) * (k_c - Y(k)) * M / 2,
//     k the pure colour of hue h, t = Y / M: toning that keeps black and white
//   split tone (light hue, light saturation, balance, dark hue, dark
//     saturation): p = 0.5 - balance / 200; lights weight (t - p) / (1 - p)
//     above p, darks weight (p - t) / p below; c = c + (wl * sl / 100 *
//     (k_light,c - Y(k_light)) + wd * sd / 100 * (k_dark,c - Y(k_dark))) * M / 2
// Stage 3, filters (OpenCV; filters.h): noise reduction, HDR, clarity, sharpness, blur.
// Stage 4, the post-crop vignette (vignette.h).
#pragma once

#include <cstdint>
#include <vector>

namespace pcg {
namespace renderer {

// Levels of one channel, on the unit scale. Neutral: 0, 1, 1, 0, 1.
struct Levels {
    double dInBlack = 0.0;
    double dInWhite = 1.0;
    double dGamma = 1.0;
    double dOutBlack = 0.0;
    double dOutWhite = 1.0;
};

struct GlobalSettings {
    double dExposure = 0.0;
    double dBrightness = 0.0;
    double dContrast = 0.0;
    double dTemperature = 5000.0;
    double dTint = 0.0;
    double dSaturation = 0.0;

    double dBlacks = 0.0;
    double dFillLight = 0.0;
    double dRecovery = 0.0;
    double dWhites = 0.0;
    Levels masterLevels;
    Levels channelLevels[3];  // red, green, blue

    // Mapping tables of TONE_MAX_TABLE_SIZE 16-bit codes; empty is no curve.
    std::vector<int32_t> masterCurve;
    std::vector<int32_t> channelCurves[3];  // red, green, blue

    double dVibrance = 0.0;
    double dBandHue[8] = {};         // per colour band, Hue_Red first, -100..100
    double dBandSaturation[8] = {};
    double dBandLuminance[8] = {};
    double dHueShift = 0.0;          // -1..1

    bool bColourReplace = false;
    double dReplaceFrom[3] = {};     // red, green, blue, 0..255
    double dReplaceTo[3] = {};
    double dReplaceTolerance = 0.0;  // 0..100

    bool bColourSplash = false;
    double dSplashColour[3] = {};    // red, green, blue, 0..255
    double dSplashTolerance = 0.0;   // 0..100
    double dSplashHueShift = 0.0;    // -1..1

    bool bBlackWhite = false;
    double dBlackWhiteMix[8] = {};   // per colour band, -100..100

    double dTintHue = 0.0;           // degrees
    double dTintAmount = 0.0;        // 0..100

    double dSplitLightHue = 0.0;     // degrees
    double dSplitLightSaturation = 0.0;  // 0..100
    double dSplitBalance = 0.0;      // -100..100
    double dSplitDarkHue = 0.0;
    double dSplitDarkSaturation = 0.0;

    double dClarity = 0.0;           // -100..100
    double dSharpAmount = 0.0;       // 0..100
    double dSharpRadius = 1.0;       // 1..15 (filters.h)
    double dSharpMask = 0.0;         // 0..100
    double dBlurLevel = 0.0;         // 0..100
    double dGlowStrength = 0.0;      // HDR: 0..100
    double dGlowRadius = 0.0;        // 0..100
    double dGlowBalance = 0.0;       // -100..100
    double dEdgeStrength = 0.0;      // 0..100
    double dEdgeRadius = 0.0;        // 0..100
    double dEdgeBalance = 0.0;       // -100..100
    double dNoiseLumaAmount = 0.0;   // 0..100
    double dNoiseLumaDetail = 50.0;  // 0..100
    double dNoiseChromaAmount = 0.0; // 0..100
    double dNoiseChromaDetail = 50.0;// 0..100

    double dVignetteAmount = 0.0;    // -100..100
    double dVignetteMidPoint = 50.0; // 0..100
    double dVignetteRoundness = 0.0; // -100..100
    double dVignetteFeather = 50.0;  // 0..100
};

// True when every setting is neutral.
bool IsNeutral(const GlobalSettings& settings);

// Renders in place. bytesPerChannel is 1 or 2; stride in bytes. False, and
// nothing changed, for null pixels, a size below 1, a stride shorter than a
// row, another channel size, a temperature that is not positive, or a curve
// table that is neither empty nor 65536 entries long.
bool RenderGlobal(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel,
                  const GlobalSettings& settings);

}  // namespace renderer
}  // namespace pcg
