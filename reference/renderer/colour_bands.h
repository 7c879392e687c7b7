// The eight colour bands of the HSL and black-and-white effects (Hue_Red to
// Hue_Magenta), where a hue falls between them, and the colour conversions
// the renderer's per-pixel colour work rests on. Python-free.
//
// Band centres, in degrees: red 0, orange 30, yellow 60, green 120, aqua 180,
// blue 240, purple 270, magenta 300. A hue between two neighbouring centres
// belongs to both, linearly: at a centre wholly to that band, halfway between
// two centres half to each. Between magenta (300) and red (360 = 0) the same.
#pragma once

namespace pcg {
namespace renderer {

constexpr int kBandCount = 8;
constexpr double kBandCentre[kBandCount] = {0.0, 30.0, 60.0, 120.0, 180.0, 240.0, 270.0, 300.0};

struct BandShare {
    int nLower;           // band at or below the hue
    int nUpper;           // the next band up (red after magenta)
    double dUpperShare;   // 0..1; the lower band has 1 - this
};

// Any finite hue, wrapped into [0, 360). A non-finite hue reads as 0.
BandShare ShareOfBands(double hueDegrees);

// Unit-scale red, green, blue to hue (degrees, [0, 360)), saturation and
// lightness (0..1), the usual double hexcone. A grey has hue 0 and saturation 0.
void RgbToHsl(double r, double g, double b, double* h, double* s, double* l);
void HslToRgb(double h, double s, double l, double* r, double* g, double* b);

// Luma of unit-scale red, green, blue: 0.299 r + 0.587 g + 0.114 b.
inline double Luma(double r, double g, double b) { return 0.299 * r + 0.587 * g + 0.114 * b; }

// The pure colour of a hue (saturation 1, lightness 0.5), unit scale.
void PureColour(double hueDegrees, double* r, double* g, double* b);

}  // namespace renderer
}  // namespace pcg
