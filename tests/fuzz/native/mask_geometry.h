// A mask of fuzzed geometry: width, height and stride up to 300, an ROI
// inside it or none. The buffer is allocated to the byte the ROI's last row
// ends at, so any access past it is caught.
#pragma once

#include <algorithm>
#include <vector>

#include "engine/records/image_records.h"
#include "fuzz_input.h"

struct FuzzMask {
    std::vector<uint8_t> bytes;
    BufferData mask;
    int width = 0;   // of the scanned rectangle
    int height = 0;

    explicit FuzzMask(FuzzInput& input) {
        const int fullWidth = input.Take<uint8_t>() % 200 + 1;
        const int fullHeight = input.Take<uint8_t>() % 120 + 1;
        const int stride = fullWidth + input.Take<uint8_t>() % 70;
        const bool withROI = input.Take<uint8_t>() & 1;
        int left = 0, top = 0;
        width = fullWidth;
        height = fullHeight;
        if (withROI) {
            left = input.Take<uint8_t>() % fullWidth;
            top = input.Take<uint8_t>() % fullHeight;
            width = std::max(1, input.Take<uint8_t>() % (fullWidth - left + 1));
            height = std::max(1, input.Take<uint8_t>() % (fullHeight - top + 1));
        }
        bytes.resize(static_cast<std::size_t>((height - 1) * stride + width));
        mask.nWidth = fullWidth;
        mask.nHeight = fullHeight;
        mask.nStride = stride;
        mask.nColorDepth = 8;
        if (withROI) {
            mask.rectROI.left = left;
            mask.rectROI.top = top;
            mask.rectROI.right = left + width;
            mask.rectROI.bottom = top + height;
        }
        mask.pBuffer = bytes.data();
    }
};
