// The facade's result slot for the smart selection engine. The facade owns
// `mask` (the live selection, one byte per pixel); the engine writes only the
// leading stamp and the two counts behind the mask.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/records/image_records.h"

struct SelectionResult {
    int64_t llTimeStamp = 0;      // stamp of the stroke that wrote the mask
    BufferData mask;
    int32_t nSelectedPixels = 0;  // selected pixels after the stroke
    int32_t nChangedPixels = 0;   // pixels the stroke changed
};
static_assert(offsetof(SelectionResult, llTimeStamp) == 0 && offsetof(SelectionResult, mask) == 8 &&
                  offsetof(SelectionResult, nSelectedPixels) == 232 &&
                  offsetof(SelectionResult, nChangedPixels) == 236,
              "SelectionResult layout");
static_assert(sizeof(SelectionResult) == 240, "SelectionResult size");
