#include "selection/selection_lines.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <mutex>
#include <vector>

#include "runtime/dump_log.h"
#include "selection/byte_scan.h"
#include "selection/row_slices.h"
#include "selection/simd_dispatch.h"
#include "engine/result_codes.h"

#if PCG_AVX2_KERNELS
#include <immintrin.h>
#endif

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

// What both passes over a row slice need.
struct RunScan {
    const uint8_t* pBuffer;
    int nStride;
    int nWidth;
    int nLeft;
    int nTop;
};

// Room past the most runs a row can have, for the decoding that writes
// eight at a time.
constexpr int kDecodeSlack = 8;

// For each byte value: the places of its set bits, lowest first, and how
// many there are.
struct BitPlaces {
    uint8_t at[256][8];
    uint8_t count[256];
};

constexpr BitPlaces MakeBitPlaces() {
    BitPlaces t{};
    for (int b = 0; b < 256; ++b) {
        int n = 0;
        for (int i = 0; i < 8; ++i)
            if (b & (1 << i)) t.at[b][n++] = static_cast<uint8_t>(i);
        t.count[b] = static_cast<uint8_t>(n);
    }
    return t;
}

constexpr BitPlaces kBitPlaces = MakeBitPlaces();

namespace plain {
#define PCG_RUN_WORDS_AVX2 0
#include "selection/run_scan_kernels.inc"
#undef PCG_RUN_WORDS_AVX2
}  // namespace plain

#if PCG_AVX2_KERNELS
// clang ignores GCC's target pragma; its own form also reaches the lambdas.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2,popcnt,bmi,bmi2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2,popcnt,bmi,bmi2")
#endif
namespace avx2 {
#define PCG_RUN_WORDS_AVX2 1
#include "selection/run_scan_kernels.inc"
#undef PCG_RUN_WORDS_AVX2
}  // namespace avx2
#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif
#endif

void CountRows(const RunScan& scan, int r0, int r1, int64_t* pCount, bool bVector) {
#if PCG_AVX2_KERNELS
    if (bVector) return avx2::CountRows(scan, r0, r1, pCount);
#else
    (void)bVector;
#endif
    plain::CountRows(scan, r0, r1, pCount);
}

int64_t CountSampleRows(const RunScan& scan, int nHeight, int nSamples, bool bVector) {
#if PCG_AVX2_KERNELS
    if (bVector) return avx2::CountSampleRows(scan, nHeight, nSamples);
#else
    (void)bVector;
#endif
    return plain::CountSampleRows(scan, nHeight, nSamples);
}

// Scratch for one slice: the edges of one row.
std::vector<int16_t> RowEdges(int nWidth) { return std::vector<int16_t>(static_cast<size_t>(nWidth) + 1 + kDecodeSlack); }

void WriteRows(const RunScan& scan, int r0, int r1, const int64_t* rowStart, SelectionLine* pLines, bool bVector) {
    std::vector<int16_t> edges = RowEdges(scan.nWidth);
#if PCG_AVX2_KERNELS
    if (bVector) return avx2::WriteRows(scan, r0, r1, rowStart, pLines, edges.data());
#else
    (void)bVector;
#endif
    plain::WriteRows(scan, r0, r1, rowStart, pLines, edges.data());
}

void AppendRows(const RunScan& scan, int r0, int r1, std::vector<SelectionLine>& out, bool bVector) {
    std::vector<int16_t> edges = RowEdges(scan.nWidth);
#if PCG_AVX2_KERNELS
    if (bVector) return avx2::AppendRows(scan, r0, r1, out, edges.data());
#else
    (void)bVector;
#endif
    plain::AppendRows(scan, r0, r1, out, edges.data());
}

std::atomic<int> g_nRunPasses{0};

// Whether the list will be short beside the mask: under one byte of list
// for eight of mask, judged on up to 16 rows spread over it.
bool FewRuns(const RunScan& scan, int nHeight, bool bVector) {
    switch (g_nRunPasses.load(std::memory_order_relaxed)) {
        case 1: return true;
        case 2: return false;
        default: break;
    }
    const int nSamples = std::min(nHeight, 16);
    const int64_t nRuns = CountSampleRows(scan, nHeight, nSamples, bVector);
    return nRuns * static_cast<int64_t>(sizeof(SelectionLine)) * 8 < static_cast<int64_t>(nSamples) * scan.nWidth;
}

// One pass: each slice fills a list of its own, and the lists are joined
// in row order. A short list costs less to copy than a second read of the
// mask.
void OnePass(const RunScan& scan, int nHeight, bool bVector, std::vector<SelectionLine>& lines) {
    struct Part {
        int nFirstRow;
        std::vector<SelectionLine> lines;
    };
    std::vector<Part> parts;
    parts.reserve(static_cast<size_t>(pcg::platform::SliceThreadCount()));
    // A leaf lock: nothing else is taken while it is held.
    std::mutex partsLock;
    pcg::selection::ForEachRowSlice(nHeight, scan.nWidth, [&](int r0, int r1) {
        Part part{r0, {}};
        AppendRows(scan, r0, r1, part.lines, bVector);
        std::lock_guard<std::mutex> hold(partsLock);
        parts.push_back(std::move(part));
    });
    std::sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) { return a.nFirstRow < b.nFirstRow; });
    size_t nTotal = 0;
    for (const Part& part : parts) nTotal += part.lines.size();
    lines.resize(nTotal);
    size_t nAt = 0;
    for (const Part& part : parts) {
        if (!part.lines.empty())
            std::memcpy(lines.data() + nAt, part.lines.data(), part.lines.size() * sizeof(SelectionLine));
        nAt += part.lines.size();
    }
}

// Two passes: count each row's runs, then write them straight to their
// place in the list, so a long list is never copied.
void TwoPasses(const RunScan& scan, int nHeight, bool bVector, std::vector<SelectionLine>& lines) {
    std::vector<int64_t> rowStart(static_cast<size_t>(nHeight) + 1, 0);
    pcg::selection::ForEachRowSlice(nHeight, scan.nWidth, [&](int r0, int r1) {
        CountRows(scan, r0, r1, rowStart.data() + 1, bVector);
    });
    for (int r = 0; r < nHeight; ++r) rowStart[static_cast<size_t>(r) + 1] += rowStart[static_cast<size_t>(r)];
    lines.resize(static_cast<size_t>(rowStart[static_cast<size_t>(nHeight)]));
    SelectionLine* pLines = lines.data();
    pcg::selection::ForEachRowSlice(nHeight, scan.nWidth, [&](int r0, int r1) {
        WriteRows(scan, r0, r1, rowStart.data(), pLines, bVector);
    });
}

}  // namespace

int32_t MaskToPoint(const BufferData& mask, std::vector<SelectionLine>& lines) {
    if (!mask.pBuffer) {
        DumpLog("MaskToPoint Null Pointer : mask.pBuffer\n");
        return pcg::kResultPointer;
    }
    const ScanRect rect = RectOf(mask);
    const int nWidth = rect.nRight - rect.nLeft;
    const int nHeight = rect.nBottom - rect.nTop;
    if (nHeight < 1 || nWidth < 1 || nWidth > kMaxSide || nHeight > kMaxSide) lines.clear();
    if (nHeight < 1 || nWidth < 1) return pcg::kResultOk;
    if (nWidth > kMaxSide || nHeight > kMaxSide) {
        // 16-bit counters would never reach the end of such a side.
        DumpLog("MaskToPoint [Err] mask side above 32767: %d x %d\n", nWidth, nHeight);
        return pcg::kResultFail;
    }
    const RunScan scan = {mask.pBuffer, mask.nStride, nWidth, rect.nLeft, rect.nTop};
    const bool bVector = pcg::selection::UseAvx2();
    // Both forms size the list to its count and write every entry, so a
    // list kept from an earlier call is not cleared first: shrinking it
    // costs nothing, where clearing and growing it again zeroes it all.
    if (FewRuns(scan, nHeight, bVector)) OnePass(scan, nHeight, bVector, lines);
    else TwoPasses(scan, nHeight, bVector, lines);
    return pcg::kResultOk;
}

void SetRunListPasses(int nPasses) { g_nRunPasses.store(nPasses == 1 || nPasses == 2 ? nPasses : 0, std::memory_order_relaxed); }

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
