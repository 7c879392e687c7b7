// The shared reference renderer: renders global effect settings onto
// four-channel pixels, 8 or 16 bits per channel, in memory order blue, green,
// red, alpha. The render agent and the reference image engine draw through
// it. Python-free, and built for Windows too.
//
// Each effect is skipped when its setting is neutral, so a neutral setting
// leaves every pixel bit for bit as it was. Otherwise channels are worked in
// double precision on the scale 0..M (M = 255 or 65535), in this order, and
// rounded to the nearest integer and clamped to 0..M once at the end; alpha
// is never touched:
//
//   exposure E (stops):      c = c * 2^E
//   brightness B (-100..100): c = c + B / 100 * M / 4
//   contrast C (-100..100):   c = (c - M/2) * (1 + C / 100) + M/2
//   white balance, temperature T (kelvin, neutral 5000) and tint N (neutral 0):
//                             r = r * (T / 5000)^(1/4), b = b * (5000 / T)^(1/4),
//                             g = g * (1 - N / 1000)   (warmer is redder, a
//                             positive tint is more magenta)
//   saturation S (-100..100): with Y = 0.299 r + 0.587 g + 0.114 b,
//                             c = Y + (c - Y) * (1 + S / 100)
#pragma once

#include <cstdint>

namespace pcg {
namespace renderer {

struct GlobalSettings {
    double dExposure = 0.0;
    double dBrightness = 0.0;
    double dContrast = 0.0;
    double dTemperature = 5000.0;
    double dTint = 0.0;
    double dSaturation = 0.0;
};

// True when every setting is neutral.
bool IsNeutral(const GlobalSettings& settings);

// Renders in place. bytesPerChannel is 1 or 2; stride in bytes. False, and
// nothing changed, for null pixels, a size below 1, a stride shorter than a
// row, another channel size, or a temperature that is not positive.
bool RenderGlobal(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel,
                  const GlobalSettings& settings);

}  // namespace renderer
}  // namespace pcg
