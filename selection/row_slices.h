// Splitting a mask loop's rows over the processors. A loop hands over its
// row count and a cost per row in pixels; masks too small to pay for a
// thread stay on the calling thread.
#pragma once

#include <algorithm>
#include <climits>
#include <cstdint>

#include "platform/parallel_slices.h"

namespace pcg {
namespace selection {

// Pixels a slice must hold before another thread is worth starting.
int64_t ParallelPixelGrain();
// Tests lower it to put small masks through the threaded path; 0 restores
// the default.
void SetParallelPixelGrain(int64_t nPixels);

// Whether two byte ranges share a byte. A loop whose output overlaps its
// input reads bytes it has written, so its rows must go in their one order.
inline bool BytesOverlap(const uint8_t* pA, int64_t nA, const uint8_t* pB, int64_t nB) {
    if (nA <= 0 || nB <= 0) return false;
    const uintptr_t a = reinterpret_cast<uintptr_t>(pA);
    const uintptr_t b = reinterpret_cast<uintptr_t>(pB);
    return a < b + static_cast<uintptr_t>(nB) && b < a + static_cast<uintptr_t>(nA);
}

// work(first, last) over slices of [0, nRows); see platform::ForEachSlice.
// bSerial keeps every row on the calling thread, in order.
template <class F>
void ForEachRowSlice(int nRows, int64_t nPixelsPerRow, F&& work, bool bSerial = false) {
    if (bSerial) {
        if (nRows > 0) work(0, nRows);
        return;
    }
    const int64_t nCost = std::max<int64_t>(1, nPixelsPerRow);
    const int64_t nMinRows = (ParallelPixelGrain() + nCost - 1) / nCost;
    platform::ForEachSlice(nRows, static_cast<int>(std::min<int64_t>(INT_MAX, std::max<int64_t>(1, nMinRows))),
                           work);
}

}  // namespace selection
}  // namespace pcg
