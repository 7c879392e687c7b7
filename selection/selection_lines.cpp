#include "selection/selection_lines.h"

#include <algorithm>
#include <cstring>

#include "runtime/dump_log.h"
#include "selection/byte_scan.h"
#include "selection/row_slices.h"
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

// Calls on(c, edges) for each 64-column word of a row, c its first column:
// bit i of edges is set where the selection turns on or off at column c + i.
// The last word is padded with unselected columns, so a run reaching the end
// of the row closes at the width there, unless the width ends a whole word.
template <class OnWord>
inline void ForEachEdgeWord(const uint8_t* pRow, int nWidth, OnWord&& on) {
    uint64_t nPrevious = 0;
    int c = 0;
    for (; c + 64 <= nWidth; c += 64) {
        const uint64_t nonZero = pcg::scan::NonZeroBits64(pRow + c);
        on(c, nonZero ^ ((nonZero << 1) | nPrevious));
        nPrevious = nonZero >> 63;
    }
    if (c < nWidth) {
        uint64_t nonZero = 0;
        for (int i = c; i < nWidth; ++i) nonZero |= static_cast<uint64_t>(pRow[i] != 0) << (i - c);
        on(c, nonZero ^ ((nonZero << 1) | nPrevious));
    }
}

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
    // Two passes over row slices: count each row's runs, then write them
    // straight to their place in the list.
    std::vector<int64_t> rowStart(static_cast<size_t>(nHeight) + 1, 0);
    pcg::selection::ForEachRowSlice(nHeight, nWidth, [&](int r0, int r1) {
        for (int r = r0; r < r1; ++r) {
            int64_t nEdges = 0;
            ForEachEdgeWord(mask.pBuffer + static_cast<int64_t>(r) * mask.nStride, nWidth,
                            [&](int, uint64_t edges) { nEdges += __builtin_popcountll(edges); });
            rowStart[static_cast<size_t>(r) + 1] = (nEdges + 1) / 2;
        }
    });
    for (int r = 0; r < nHeight; ++r) rowStart[static_cast<size_t>(r) + 1] += rowStart[static_cast<size_t>(r)];
    lines.resize(static_cast<size_t>(rowStart[static_cast<size_t>(nHeight)]));
    SelectionLine* pLines = lines.data();
    pcg::selection::ForEachRowSlice(nHeight, nWidth, [&](int r0, int r1) {
        // Edge columns of one row: they alternate, opening first; a run still
        // open at the end closes at the width.
        std::vector<int> edges(static_cast<size_t>(nWidth) + 2);
        for (int r = r0; r < r1; ++r) {
            int* pEdge = edges.data();
            ForEachEdgeWord(mask.pBuffer + static_cast<int64_t>(r) * mask.nStride, nWidth,
                            [&](int c, uint64_t bits) {
                                while (bits) {
                                    *pEdge++ = c + __builtin_ctzll(bits);
                                    bits &= bits - 1;
                                }
                            });
            int nEdges = static_cast<int>(pEdge - edges.data());
            if (nEdges & 1) edges[static_cast<size_t>(nEdges++)] = nWidth;
            const int16_t nY = static_cast<int16_t>(rect.nTop + r);
            SelectionLine* pRun = pLines + rowStart[static_cast<size_t>(r)];
            for (int k = 0; k < nEdges; k += 2) {
                pRun->nX = static_cast<int16_t>(rect.nLeft + edges[static_cast<size_t>(k)]);
                pRun->nY = nY;
                pRun->nLength = static_cast<int16_t>(edges[static_cast<size_t>(k) + 1] - edges[static_cast<size_t>(k)]);
                ++pRun;
            }
        }
    });
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
