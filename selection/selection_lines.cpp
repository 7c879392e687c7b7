#include "selection/selection_lines.h"

#include <algorithm>
#include <cstring>

#include "runtime/dump_log.h"
#include "selection/byte_scan.h"
#include "engine/result_codes.h"

namespace {

// The scan counters and coordinates are 16-bit.
constexpr int kMaxSide = 32767;

struct ScanRect {
    int nLeft;
    int nTop;
    int nRight;
    int nBottom;
};

// rectROI, or the whole buffer when the rectangle has no width and no height.
ScanRect RectOf(const BufferData& mask) {
    const RECT& r = mask.rectROI;
    if (r.right - r.left == 0 && r.bottom - r.top == 0) return {0, 0, mask.nWidth, mask.nHeight};
    return {r.left, r.top, r.right, r.bottom};
}

}  // namespace

int32_t MaskToPoint(const BufferData& mask, std::vector<SelectionLine>& lines) {
    if (!mask.pBuffer) {
        DumpLog("MaskToPoint Null Pointer : mask.pBuffer\n");
        return pcg::kResultPointer;
    }
    lines.clear();
    const ScanRect rect = RectOf(mask);
    const int nWidth = rect.nRight - rect.nLeft;
    const int nHeight = rect.nBottom - rect.nTop;
    if (nHeight < 1 || nWidth < 1) return pcg::kResultOk;
    if (nWidth > kMaxSide || nHeight > kMaxSide) {
        // 16-bit counters would never reach the end of such a side.
        DumpLog("MaskToPoint [Err] mask side above 32767: %d x %d\n", nWidth, nHeight);
        return pcg::kResultFail;
    }
    // A row holds at most (width + 1) / 2 runs; they are gathered here and
    // appended a row at a time.
    std::vector<SelectionLine> rowRuns(static_cast<size_t>(nWidth / 2 + 1));
    for (int r = 0; r < nHeight; ++r) {
        const uint8_t* pRow = mask.pBuffer + static_cast<int64_t>(r) * mask.nStride;
        const int16_t nY = static_cast<int16_t>(rect.nTop + r);
        SelectionLine* pRun = rowRuns.data();
        int nStart = 0;
        auto emit = [&](int nEnd) {
            *pRun++ = {static_cast<int16_t>(rect.nLeft + nStart), nY,
                       static_cast<int16_t>(nEnd - nStart)};
        };
        // 64 bytes at a time: a set bit in `edges` is a column where the
        // selection turns on or off; the edges alternate, opening first.
        bool bOpen = false;
        int c = 0;
        uint64_t nPrevious = 0;
        for (; c + 64 <= nWidth; c += 64) {
            const uint64_t nonZero = pcg::scan::NonZeroBits64(pRow + c);
            uint64_t edges = nonZero ^ ((nonZero << 1) | nPrevious);
            nPrevious = nonZero >> 63;
            while (edges) {
                const int nAt = c + __builtin_ctzll(edges);
                edges &= edges - 1;
                if (!bOpen) nStart = nAt;
                else emit(nAt);
                bOpen = !bOpen;
            }
        }
        for (; c < nWidth; ++c) {
            const bool bOn = pRow[c] != 0;
            if (bOn == bOpen) continue;
            if (bOn) nStart = c;
            else emit(c);
            bOpen = bOn;
        }
        // A run that reaches the last column ends with it.
        if (bOpen) emit(nWidth);
        lines.insert(lines.end(), rowRuns.data(), pRun);
    }
    return pcg::kResultOk;
}

int32_t PointToMask(const SelectionLine* pLines, int nCount, const BufferData& mask, bool bInv) {
    if (!mask.pBuffer) {
        DumpLog("PointToMask Null Pointer : mask.pBuffer\n");
        return pcg::kResultPointer;
    }
    const ScanRect rect = RectOf(mask);
    const int nWidth = rect.nRight - rect.nLeft;
    const int nHeight = rect.nBottom - rect.nTop;
    const uint8_t nBackground = bInv ? 0xFF : 0x00;
    const uint8_t nPaint = bInv ? 0x00 : 0xFF;
    if (nWidth > 0)
        for (int r = 0; r < nHeight; ++r)
            std::memset(mask.pBuffer + static_cast<int64_t>(r) * mask.nStride, nBackground,
                        static_cast<size_t>(nWidth));
    for (int i = 0; i < nCount; ++i) {
        const SelectionLine& line = pLines[i];
        if (line.nX == -1 && line.nY == -1)
            return line.nLength == -1 ? pcg::kResultOk : pcg::kResultFail;
        if (line.nX < 0 || line.nY < 0) return pcg::kResultFail;
        if (line.nY < rect.nTop || line.nY >= rect.nBottom) continue;
        const int nFrom = std::max<int>(line.nX, rect.nLeft);
        const int nTo = std::min<int>(line.nX + line.nLength, rect.nRight);
        if (nTo > nFrom)
            std::memset(mask.pBuffer + static_cast<int64_t>(line.nY - rect.nTop) * mask.nStride +
                            (nFrom - rect.nLeft),
                        nPaint, static_cast<size_t>(nTo - nFrom));
    }
    return pcg::kResultOk;
}
