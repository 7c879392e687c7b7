// Three-dimensional colour look-up tables, applied with trilinear
// interpolation onto four-channel pixels (blue, green, red, alpha in memory;
// 8 or 16 bits per channel). Python-free, and built for Windows too.
//
// The table holds nSize^3 red, green, blue triples with the red index running
// fastest, then green, then blue (the order of a .cube file). A channel c on
// the scale 0..M is read as v = c / M, clamped to the table's domain
// [min, max] and placed at p = (v - min) / (max - min) * (nSize - 1); the
// output is the trilinear blend of the eight entries around (pr, pg, pb),
// clamped to 0..1 and written back as round(out * M). Alpha is never touched.
//
// An identity table (entry (i, j, k) = (i, j, k) / (nSize - 1) over the unit
// domain) gives back every channel exactly: the blend of an identity is the
// input itself, and the rounding returns the original integer.
#pragma once

#include <cstdint>
#include <vector>

namespace pcg {
namespace renderer {

struct Lut3D {
    int nSize = 0;
    float domainMin[3] = {0, 0, 0};
    float domainMax[3] = {1, 1, 1};
    std::vector<float> table;  // nSize^3 RGB triples, red index fastest (.cube order)
};

// nSize 2..256, table.size() == 3 * nSize^3, max > min per channel, every
// bound finite.
bool IsUsable(const Lut3D& lut);

// Trilinear application in place. False, and nothing changed, when the table
// is not usable, pixels is null, a size is below 1, the stride is shorter than
// a row or bytesPerChannel is not 1 or 2.
bool ApplyLut3D(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel, const Lut3D& lut);

}  // namespace renderer
}  // namespace pcg
