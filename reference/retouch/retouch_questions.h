// The colour questions of the reference image engine, as plain functions of
// a picture: what the white balance dropper reads, which hue bands and tonal
// ranges a pixel belongs to, and the tone curve through a set of pivots.
// Pixels are in memory order blue, green, red, alpha, one byte per channel
// (PIXEL_ARGB32) or two (PIXEL_ARGB64), rows packed.
//
// White balance drop. The mean red, green and blue of the square of
// half-size r (nParam1, 2 when not positive, at most 50) around the clicked
// pixel, clipped to the picture, each taken as at least 1/255 of full scale,
// give the setting that makes the square neutral under the shared
// renderer's balance (red gain (T/5000)^(1/4), blue gain (5000/T)^(1/4),
// green gain 1 - N/1000):
//     T = 5000 * (B / R)^2,            held to 2000..50000 kelvin
//     N = 1000 * (1 - sqrt(R * B) / G), held to -150..150
// both rounded to the nearest integer.
//
// Hue bands. The pixel's hue H (degrees, from the HSV hexcone) lies between
// two neighbouring band centres c1 <= H < c2 of
//     red 0, orange 30, yellow 60, green 120, aqua 180, blue 240,
//     purple 270, magenta 300, red again at 360;
// hueColor1 is the nearer band and dWeight1 = 1 - d1 / (c2 - c1), hueColor2
// the other one and dWeight2 = 1 - dWeight1 (d1 the distance to the nearer
// centre). A grey pixel (no chroma) belongs to no band: both -1, weights 0.
// RGB, HSV and, when asked for (bGetROMMRGB), ROMMRGB (the same values: the
// reference works in one space) are filled too; H in degrees, S and V 0..255.
//
// Tonal ranges. The luminance Y = 0.299 R + 0.587 G + 0.114 B, as a fraction
// of full scale, weighs the four ranges shadows, darks, lights, highlights,
// centred at 1/8, 3/8, 5/8, 7/8: between two neighbouring centres the weight
// goes linearly from one to the other, below the first centre and above the
// last it is all the outer range's. dToneWeight sums to 1.
//
// Tone curve. The free pivots (x, y in 0..1, held to it) are sorted by x;
// a later pivot with the same x replaces an earlier one; (0, 0) and (1, 1)
// are added where no pivot has x 0 or 1. Through them runs a monotone
// piecewise cubic Hermite curve (Fritsch-Carlson slopes), which never
// overshoots its pivots: between two pivots the curve stays between their
// y. table[i] = round(curve(i / M) * M) for i in 0..M, M = nMaxValue (1 when
// not positive, at most 65535). No pivots: the identity.
#pragma once

#include <cstdint>

#include "engine/image_retouch.h"

namespace pcg {
namespace refretouch {

// A picture as the engine keeps it.
struct PictureView {
    const uint8_t* pixels;
    int width;
    int height;
    int pixelBytes;  // 4 or 8
};

// False when the point lies outside the picture or the picture is not 4 or 8
// bytes per pixel.
bool DropWhiteBalance(const PictureView& picture, int x, int y, int halfSize, int* temperature, int* tint);
bool ReadPixelInfo(const PictureView& picture, int x, int y, PixelInfo* info);

// Writes nMaxValue + 1 entries into table (which must hold them).
void ToneCurveTable(const ToneCurveRGBSetting& setting, int32_t* table);

}  // namespace refretouch
}  // namespace pcg
