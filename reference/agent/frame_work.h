// The pixel work of the reference agent on single frames: the render of
// ApplyEffectOnBuffer, the histogram of what it rendered, and a clip's LUT
// applied to a buffer. Pixels are 4 bytes (or 3 for a LUT) in memory order
// blue, green, red, alpha: the little-endian form of PIXEL_ARGB32.
#pragma once

#include <cstdint>

#include "engine/buffer_settings.h"
#include "engine/records/image_records.h"
#include "reference/agent/clip_store.h"

namespace pcg {
namespace refagent {

// Renders the block's source into its destination. No pixel effects are
// decoded yet, so the render is the identity: the overlap of the two areas
// is copied row by row through the strides. False when a pixel pointer is null.
bool RenderFrame(const ApplyBufferSetting& setting);

// Red, green, blue and luminance (0.299 R + 0.587 G + 0.114 B, rounded) of a
// 4-byte-per-pixel area; nTotalCount the pixels counted, the maxima the
// highest bin of each. The exposure fields stay 0.
HistogramDist MeasureHistogram(const uint8_t* pixels, int32_t width, int32_t height, int32_t stride);

// Applies the LUT in place. A table of 3 * size^3 values is a 3-D table with
// red varying fastest, interpolated trilinearly; a table of 3 * size values
// is one curve per channel, interpolated linearly. Channel values are taken
// to the domain [min, max] and the table's output, 0 to 1, back to bytes.
// False, with the pixels untouched, for any other table or a pixel size
// other than 3 or 4.
bool ApplyLut(const LutCopy& lut, uint8_t* pixels, int32_t width, int32_t height, int32_t pixelBytes);

}  // namespace refagent
}  // namespace pcg
