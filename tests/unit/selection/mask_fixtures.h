// Masks for the selection tests: owned byte planes with a stride, random
// content, and BufferData views of them.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "engine/records/image_records.h"

struct TestMask {
    int nWidth = 0;
    int nHeight = 0;
    int nStride = 0;
    std::vector<uint8_t> bytes;

    TestMask() = default;
    // Padding bytes beyond the width carry a marker so stray writes show.
    TestMask(int width, int height, int stride = -1, uint8_t fill = 0)
        : nWidth(width), nHeight(height), nStride(stride < 0 ? width : stride),
          bytes(static_cast<size_t>(nStride) * height, 0xA5) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) At(x, y) = fill;
    }
    uint8_t& At(int x, int y) { return bytes[static_cast<size_t>(y) * nStride + x]; }
    uint8_t At(int x, int y) const { return bytes[static_cast<size_t>(y) * nStride + x]; }
    BufferData View() {
        BufferData data;
        data.pBuffer = bytes.data();
        data.nWidth = nWidth;
        data.nHeight = nHeight;
        data.nStride = nStride;
        return data;
    }
};

// Each pixel 0 or a random non-zero value, selected with probability
// `density`; runs grow long when `stickiness` is near 1.
inline TestMask RandomMask(std::mt19937& rng, int width, int height, int stride, double density,
                           double stickiness = 0.0) {
    TestMask mask(width, height, stride);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::uniform_int_distribution<int> value(1, 255);
    for (int y = 0; y < height; ++y) {
        bool bOn = false;
        for (int x = 0; x < width; ++x) {
            if (x == 0 || unit(rng) > stickiness) bOn = unit(rng) < density;
            mask.At(x, y) = bOn ? static_cast<uint8_t>(value(rng)) : 0;
        }
    }
    return mask;
}
