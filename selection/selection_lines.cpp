#include "selection/selection_lines.h"

#include <algorithm>
#include <cstring>

#include "runtime/dump_log.h"
#include "selection/byte_scan.h"
#include "selection/row_slices.h"
#include "selection/simd_dispatch.h"
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

// Calls on(c, opening, closing) for each 64-column word of a row, c its
// first column: bit i of opening is set where a run starts at column c + i,
// bit i of closing where the column c + i is the first one after a run. The
// last word is padded with unselected columns, so a run reaching the end of
// the row closes at the width there, unless the width ends a whole word.
template <class OnWord>
inline __attribute__((always_inline)) void ForEachEdgeWord(const uint8_t* pRow, int nWidth, OnWord&& on) {
    uint64_t nPrevious = 0;
    int c = 0;
    for (; c + 64 <= nWidth; c += 64) {
        const uint64_t nonZero = pcg::scan::NonZeroBits64(pRow + c);
        const uint64_t before = (nonZero << 1) | nPrevious;
        on(c, nonZero & ~before, ~nonZero & before);
        nPrevious = nonZero >> 63;
    }
    if (c < nWidth) {
        uint64_t nonZero = 0;
        for (int i = c; i < nWidth; ++i) nonZero |= static_cast<uint64_t>(pRow[i] != 0) << (i - c);
        const uint64_t before = (nonZero << 1) | nPrevious;
        on(c, nonZero & ~before, ~nonZero & before);
    }
}

// rectROI, or the whole buffer when the rectangle has no width and no height.
ScanRect RectOf(const BufferData& mask) {
    const RECT& r = mask.rectROI;
    if (r.right - r.left == 0 && r.bottom - r.top == 0) return {0, 0, mask.nWidth, mask.nHeight};
    return {r.left, r.top, r.right, r.bottom};
}

// What both passes over a row slice need.
struct RunScan {
    const uint8_t* pBuffer;
    int nStride;
    int nWidth;
    int nLeft;
    int nTop;
};

// Runs per row of [r0, r1) into pCount[r].
inline __attribute__((always_inline)) void CountRunsBody(const RunScan& scan, int r0, int r1, int64_t* pCount) {
    for (int r = r0; r < r1; ++r) {
        int64_t nEdges = 0;
        ForEachEdgeWord(scan.pBuffer + static_cast<int64_t>(r) * scan.nStride, scan.nWidth,
                        [&](int, uint64_t opening, uint64_t closing) {
                            nEdges += __builtin_popcountll(opening | closing);
                        });
        pCount[r] = (nEdges + 1) / 2;
    }
}

// The runs of rows [r0, r1), row r's first at pLines + rowStart[r].
inline __attribute__((always_inline)) void WriteRunsBody(const RunScan& scan, int r0, int r1,
                                                         const int64_t* rowStart, SelectionLine* pLines) {
    const int nLeft = scan.nLeft;
    for (int r = r0; r < r1; ++r) {
        const int16_t nY = static_cast<int16_t>(scan.nTop + r);
        SelectionLine* pRun = pLines + rowStart[r];
        // A run open at the end of a word closes at the first closing edge
        // of a later one; one still open at the end of the row closes at the
        // width. Openings and closings are walked as two separate chains.
        bool bOpen = false;
        int nStart = 0;
        ForEachEdgeWord(scan.pBuffer + static_cast<int64_t>(r) * scan.nStride, scan.nWidth,
                        [&](int c, uint64_t opening, uint64_t closing) {
                            if (bOpen) {
                                if (!closing) return;
                                *pRun++ = {static_cast<int16_t>(nLeft + nStart), nY,
                                           static_cast<int16_t>(c + __builtin_ctzll(closing) - nStart)};
                                closing &= closing - 1;
                                bOpen = false;
                            }
                            // Every closing left has its opening in this word.
                            for (int n = __builtin_popcountll(closing); n > 0; --n) {
                                const int nFrom = __builtin_ctzll(opening);
                                const int nTo = __builtin_ctzll(closing);
                                opening &= opening - 1;
                                closing &= closing - 1;
                                *pRun++ = {static_cast<int16_t>(nLeft + c + nFrom), nY,
                                           static_cast<int16_t>(nTo - nFrom)};
                            }
                            if (opening) {
                                bOpen = true;
                                nStart = c + __builtin_ctzll(opening);
                            }
                        });
        if (bOpen) *pRun++ = {static_cast<int16_t>(nLeft + nStart), nY, static_cast<int16_t>(scan.nWidth - nStart)};
    }
}

// The same bodies compiled for the processors with AVX2, whose bit counting
// and bit scanning are single instructions.
#if PCG_AVX2_KERNELS
PCG_TARGET_AVX2 void CountRunsAvx2(const RunScan& scan, int r0, int r1, int64_t* pCount) {
    CountRunsBody(scan, r0, r1, pCount);
}
PCG_TARGET_AVX2 void WriteRunsAvx2(const RunScan& scan, int r0, int r1, const int64_t* rowStart,
                                   SelectionLine* pLines) {
    WriteRunsBody(scan, r0, r1, rowStart, pLines);
}
#endif
void CountRuns(const RunScan& scan, int r0, int r1, int64_t* pCount, bool bVector) {
#if PCG_AVX2_KERNELS
    if (bVector) return CountRunsAvx2(scan, r0, r1, pCount);
#else
    (void)bVector;
#endif
    CountRunsBody(scan, r0, r1, pCount);
}
void WriteRuns(const RunScan& scan, int r0, int r1, const int64_t* rowStart, SelectionLine* pLines, bool bVector) {
#if PCG_AVX2_KERNELS
    if (bVector) return WriteRunsAvx2(scan, r0, r1, rowStart, pLines);
#else
    (void)bVector;
#endif
    WriteRunsBody(scan, r0, r1, rowStart, pLines);
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
    const RunScan scan = {mask.pBuffer, mask.nStride, nWidth, rect.nLeft, rect.nTop};
    const bool bVector = pcg::selection::UseAvx2();
    std::vector<int64_t> rowStart(static_cast<size_t>(nHeight) + 1, 0);
    pcg::selection::ForEachRowSlice(nHeight, nWidth, [&](int r0, int r1) {
        CountRuns(scan, r0, r1, rowStart.data() + 1, bVector);
    });
    for (int r = 0; r < nHeight; ++r) rowStart[static_cast<size_t>(r) + 1] += rowStart[static_cast<size_t>(r)];
    lines.resize(static_cast<size_t>(rowStart[static_cast<size_t>(nHeight)]));
    SelectionLine* pLines = lines.data();
    pcg::selection::ForEachRowSlice(nHeight, nWidth, [&](int r0, int r1) {
        WriteRuns(scan, r0, r1, rowStart.data(), pLines, bVector);
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
