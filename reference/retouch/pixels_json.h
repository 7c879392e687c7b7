// How the reference image engine journals what it is handed by pointer.
#pragma once

#include "engine/image_retouch.h"
#include "reference/agent/journal_json.h"

namespace pcg {
namespace refretouch {

// Bytes per pixel of a format; 0 for an unknown one.
int PixelBytesOf(PIXEL_FORMAT format);

// {"width", "height", "stride", "sha256"}: the hash of the visible bytes, row
// by row; null for a null view, "sha256" null when there are no pixels.
pcg::refagent::Json PixelsJson(const BufferData* data);

// {"function", "version", "param": [8], "effect": RECORD or null}; null for null.
pcg::refagent::Json TaskJson(const ImageTaskRecord* task);

}  // namespace refretouch
}  // namespace pcg
