#include "reference/renderer/colour_bands.h"

#include <cmath>

namespace pcg {
namespace renderer {

namespace {

double WrapHue(double h) {
    if (!std::isfinite(h)) return 0.0;
    h = std::fmod(h, 360.0);
    if (h < 0.0) h += 360.0;
    if (h >= 360.0) h = 0.0;  // fmod of a tiny negative can round up to 360
    return h;
}

double HueToChannel(double p, double q, double t) {
    if (t < 0.0) t += 1.0;
    if (t > 1.0) t -= 1.0;
    if (t < 1.0 / 6.0) return p + (q - p) * 6.0 * t;
    if (t < 0.5) return q;
    if (t < 2.0 / 3.0) return p + (q - p) * (2.0 / 3.0 - t) * 6.0;
    return p;
}

}  // namespace

BandShare ShareOfBands(double hueDegrees) {
    const double h = WrapHue(hueDegrees);
    BandShare share{kBandCount - 1, 0, 0.0};
    for (int i = 0; i < kBandCount; ++i) {
        const double next = i + 1 < kBandCount ? kBandCentre[i + 1] : 360.0;
        if (h >= kBandCentre[i] && h < next) {
            share.nLower = i;
            share.nUpper = (i + 1) % kBandCount;
            share.dUpperShare = (h - kBandCentre[i]) / (next - kBandCentre[i]);
            break;
        }
    }
    return share;
}

void RgbToHsl(double r, double g, double b, double* h, double* s, double* l) {
    const double max = std::fmax(r, std::fmax(g, b));
    const double min = std::fmin(r, std::fmin(g, b));
    *l = (max + min) / 2.0;
    const double d = max - min;
    if (d <= 0.0) {
        *h = 0.0;
        *s = 0.0;
        return;
    }
    *s = *l > 0.5 ? d / (2.0 - max - min) : d / (max + min);
    double hue;
    if (max == r) hue = (g - b) / d + (g < b ? 6.0 : 0.0);
    else if (max == g) hue = (b - r) / d + 2.0;
    else hue = (r - g) / d + 4.0;
    *h = WrapHue(hue * 60.0);
}

void HslToRgb(double h, double s, double l, double* r, double* g, double* b) {
    if (s <= 0.0) {
        *r = *g = *b = l;
        return;
    }
    const double q = l < 0.5 ? l * (1.0 + s) : l + s - l * s;
    const double p = 2.0 * l - q;
    const double t = WrapHue(h) / 360.0;
    *r = HueToChannel(p, q, t + 1.0 / 3.0);
    *g = HueToChannel(p, q, t);
    *b = HueToChannel(p, q, t - 1.0 / 3.0);
}

void PureColour(double hueDegrees, double* r, double* g, double* b) { HslToRgb(hueDegrees, 1.0, 0.5, r, g, b); }

}  // namespace renderer
}  // namespace pcg
