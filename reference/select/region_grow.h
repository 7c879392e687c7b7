// The reference selection engine's colour region: a stroke's disc of pixels
// seeds a region that grows over neighbours whose colour is close to the
// seeds' mean colour in CIE L*a*b* (sRGB, D65 white).
//
// Distance: CIE76, the Euclidean distance in L*a*b*. A neighbour joins when
// its distance to the seeds' mean is at most
//     kBaseTolerance + min(seedScatter, kMaxSpreadAllowance)
// with seedScatter the root mean square distance of the seed pixels to
// their mean colour: a stroke over a textured area accepts as much variation
// as it covers.
// Seeds are the pixels with dx^2 + dy^2 <= radius^2 (radius 0: the centre
// alone) and always belong to the region. Growing is 4-connected; a global
// stroke takes every pixel of the picture within the tolerance instead.
#pragma once

#include <cstdint>
#include <vector>

namespace pcg {
namespace refselect {

constexpr float kBaseTolerance = 12.0f;
constexpr float kMaxSpreadAllowance = 20.0f;

// L*, a*, b* per pixel, rows top first, packed.
struct LabPicture {
    int nWidth = 0;
    int nHeight = 0;
    std::vector<float> lab;  // 3 floats per pixel
};

// Pixels of 3 bytes in the order blue, green, red (the byte order of the
// host's 32-bit buffers without their alpha).
void ConvertToLab(const uint8_t* pPixels, int nWidth, int nHeight, int nStride, LabPicture& picture);

// One colour in L*a*b*, from 8-bit sRGB.
void SrgbToLab(uint8_t red, uint8_t green, uint8_t blue, float lab[3]);

// Sets region[i] to 1 for every pixel of the grown region and 0 elsewhere
// (region is resized to width * height). Returns the number of seed pixels
// inside the picture; 0 leaves the region empty.
int64_t GrowRegion(const LabPicture& picture, int nX, int nY, int nRadius, bool bGlobal,
                   std::vector<uint8_t>& region);

}  // namespace refselect
}  // namespace pcg
