#include "reference/renderer/renderer.h"

#include <cmath>
#include <cstring>

namespace pcg {
namespace renderer {

namespace {

// Per-channel factors fixed for the whole picture.
struct Plan {
    double dMax;
    bool bExposure, bBrightness, bContrast, bBalance, bSaturation;
    double dExposureGain, dBrightnessShift, dContrastGain;
    double dRedGain, dGreenGain, dBlueGain;
    double dSaturationGain;
};

Plan MakePlan(const GlobalSettings& s, double max) {
    Plan p{};
    p.dMax = max;
    p.bExposure = s.dExposure != 0.0;
    p.dExposureGain = std::pow(2.0, s.dExposure);
    p.bBrightness = s.dBrightness != 0.0;
    p.dBrightnessShift = s.dBrightness / 100.0 * max / 4.0;
    p.bContrast = s.dContrast != 0.0;
    p.dContrastGain = 1.0 + s.dContrast / 100.0;
    p.bBalance = s.dTemperature != 5000.0 || s.dTint != 0.0;
    p.dRedGain = std::pow(s.dTemperature / 5000.0, 0.25);
    p.dBlueGain = std::pow(5000.0 / s.dTemperature, 0.25);
    p.dGreenGain = 1.0 - s.dTint / 1000.0;
    p.bSaturation = s.dSaturation != 0.0;
    p.dSaturationGain = 1.0 + s.dSaturation / 100.0;
    return p;
}

double ToChannel(double value, double max) {
    const double rounded = std::floor(value + 0.5);
    return rounded < 0.0 ? 0.0 : (rounded > max ? max : rounded);
}

// b, g, r in and out.
void RenderPixel(const Plan& p, double* c) {
    for (int i = 0; i < 3; ++i) {
        if (p.bExposure) c[i] *= p.dExposureGain;
        if (p.bBrightness) c[i] += p.dBrightnessShift;
        if (p.bContrast) c[i] = (c[i] - p.dMax / 2.0) * p.dContrastGain + p.dMax / 2.0;
    }
    if (p.bBalance) {
        c[0] *= p.dBlueGain;
        c[1] *= p.dGreenGain;
        c[2] *= p.dRedGain;
    }
    if (p.bSaturation) {
        const double y = 0.299 * c[2] + 0.587 * c[1] + 0.114 * c[0];
        for (int i = 0; i < 3; ++i) c[i] = y + (c[i] - y) * p.dSaturationGain;
    }
    for (int i = 0; i < 3; ++i) c[i] = ToChannel(c[i], p.dMax);
}

template <typename T>
void RenderRows(uint8_t* pixels, int width, int height, int stride, const Plan& plan) {
    for (int y = 0; y < height; ++y) {
        uint8_t* row = pixels + static_cast<size_t>(y) * stride;
        for (int x = 0; x < width; ++x) {
            T channels[4];
            std::memcpy(channels, row + static_cast<size_t>(x) * sizeof(channels), sizeof(channels));
            double c[3] = {static_cast<double>(channels[0]), static_cast<double>(channels[1]),
                           static_cast<double>(channels[2])};
            RenderPixel(plan, c);
            for (int i = 0; i < 3; ++i) channels[i] = static_cast<T>(c[i]);
            std::memcpy(row + static_cast<size_t>(x) * sizeof(channels), channels, sizeof(channels));
        }
    }
}

}  // namespace

bool IsNeutral(const GlobalSettings& s) {
    return s.dExposure == 0.0 && s.dBrightness == 0.0 && s.dContrast == 0.0 && s.dTemperature == 5000.0 &&
           s.dTint == 0.0 && s.dSaturation == 0.0;
}

bool RenderGlobal(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel,
                  const GlobalSettings& settings) {
    if (pixels == nullptr || width < 1 || height < 1) return false;
    if (bytesPerChannel != 1 && bytesPerChannel != 2) return false;
    if (static_cast<int64_t>(stride) < static_cast<int64_t>(width) * 4 * bytesPerChannel) return false;
    if (!(settings.dTemperature > 0.0) || !std::isfinite(settings.dTemperature)) return false;
    if (IsNeutral(settings)) return true;
    if (bytesPerChannel == 1) RenderRows<uint8_t>(pixels, width, height, stride, MakePlan(settings, 255.0));
    else RenderRows<uint16_t>(pixels, width, height, stride, MakePlan(settings, 65535.0));
    return true;
}

}  // namespace renderer
}  // namespace pcg
