// The C++ peer of the Python selection benchmark: the same CSelectionTool
// calls that Selection_MaskToPoint and Selection_PointToMask make, on the
// same mask, timed in the same process. Header-only, compiled into the test
// companion module that the Python benchmark imports.
#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

#include "imaging/image_buffer.h"
#include "selection/selection_tool.h"

namespace pcg {
namespace bench {

struct ToolTimes {
    double dMaskToPointMs = 0;  // median, SelectionMaskToPoint + ROI + fetch of the lines
    double dPointToMaskMs = 0;  // median, SelectionPointToMask into a fresh zeroed mask
    int nLines = 0;
};

inline double MedianMs(std::vector<double> samples) {
    std::sort(samples.begin(), samples.end());
    return samples.empty() ? 0.0 : samples[samples.size() / 2];
}

inline ToolTimes TimeSelectionTool(IImageBuffer* pMask, int nRepetitions) {
    ToolTimes times;
    if (!pMask || nRepetitions <= 0) return times;
    using Clock = std::chrono::steady_clock;
    BufferData mask;
    mask.nWidth = mask.nStride = pMask->GetWidth();
    mask.nHeight = pMask->GetHeight();
    int width = 0, height = 0;
    pMask->LockBuffer(&mask.pBuffer, &width, &height);
    CSelectionTool tool;
    std::vector<SelectionLine> lines;
    std::vector<double> toPoint, toMask;
    for (int i = 0; i < nRepetitions; ++i) {
        const auto start = Clock::now();
        int count = 0;
        tool.SelectionMaskToPoint(mask, count);
        ROI roi;
        tool.SelectionGetMaskROI(mask, roi);
        lines.resize(static_cast<size_t>(count));
        tool.SelectionGetSelectionLinePoint(lines.data());
        toPoint.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        times.nLines = count;
    }
    std::vector<uint8_t> target(static_cast<size_t>(mask.nWidth) * mask.nHeight);
    BufferData out = mask;
    out.pBuffer = target.data();
    for (int i = 0; i < nRepetitions; ++i) {
        const auto start = Clock::now();
        std::fill(target.begin(), target.end(), 0);
        tool.SelectionPointToMask(static_cast<int>(lines.size()), lines.data(), out, false);
        toMask.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    pMask->UnlockBuffer();
    times.dMaskToPointMs = MedianMs(toPoint);
    times.dPointToMaskMs = MedianMs(toMask);
    return times;
}

}  // namespace bench
}  // namespace pcg
