// The image buffers the reference agent makes for the frames it posts: real,
// reference-counted four-byte pixels, counted by "framesLive" while alive.
#pragma once

#include <cstdint>

#include "imaging/image_buffer.h"

namespace pcg {
namespace refagent {

// A width x height frame of 4-byte pixels, every pixel blue = colour & 0xFF,
// green = (colour >> 8) & 0xFF, red = (colour >> 16) & 0xFF, alpha 255, with
// one reference for the caller. Null when the pixels cannot be had.
IImageBuffer* MakeSolidFrame(int32_t width, int32_t height, int64_t colour);

}  // namespace refagent
}  // namespace pcg
