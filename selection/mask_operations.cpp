#include "selection/mask_operations.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <vector>

#include "engine/constants.h"
#include "engine/result_codes.h"
#include "runtime/dump_log.h"
#include "selection/row_slices.h"
#include "selection/simd_dispatch.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#if PCG_AVX2_KERNELS
#include <immintrin.h>
#endif

namespace {

#if PCG_AVX2_KERNELS
// 128 bytes a step, 32 per lane group; returns where it stopped.
template <bool bOr>
PCG_TARGET_AVX2 int CombineRowAvx2(const uint8_t* pA, const uint8_t* pB, uint8_t* pOut, int nWidth) {
    int x = 0;
    for (; x + 128 <= nWidth; x += 128)
        for (int k = 0; k < 128; k += 32) {
            const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pA + x + k));
            const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pB + x + k));
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(pOut + x + k),
                                bOr ? _mm256_or_si256(a, b) : _mm256_and_si256(a, b));
        }
    return x;
}
#endif

template <bool bOr>
void CombineRow(const uint8_t* pA, const uint8_t* pB, uint8_t* pOut, int nWidth, bool bVector) {
    int x = 0;
#if PCG_AVX2_KERNELS
    if (bVector) x = CombineRowAvx2<bOr>(pA, pB, pOut, nWidth);
#else
    (void)bVector;
#endif
#if defined(__SSE2__)
    for (; x + 16 <= nWidth; x += 16) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pA + x));
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pB + x));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pOut + x),
                         bOr ? _mm_or_si128(a, b) : _mm_and_si128(a, b));
    }
#endif
    for (; x < nWidth; ++x) pOut[x] = bOr ? (pA[x] | pB[x]) : (pA[x] & pB[x]);
}

// The low 8 bits of the value truncated to an integer. Values that a 32-bit
// conversion cannot hold give 0, as the processor's own conversion would.
inline uint8_t LowByte(double value) {
    if (!(value > -2147483648.0 && value < 2147483648.0)) return 0;
    return static_cast<uint8_t>(static_cast<int32_t>(value) & 0xFF);
}

// What one rotated output row needs; j * cos and j * sin are tabled once.
struct RotateGeometry {
    const uint8_t* pIn;
    int W;
    int H;
    int nStride;
    int64_t nEnd;          // bytes of mask1: H * nStride
    int nLeft;
    int nTop;
    const double* jc;      // j * cos(a)
    const double* js;      // j * sin(a)
};

// One output pixel of the rotation, bilinear between the four neighbours.
// bPastEnd is set when the diagonal neighbour lies past mask1's last byte.
inline uint8_t RotatedPixel(const RotateGeometry& g, double ic, double is, int j, bool& bPastEnd) {
    double sy = ic - g.js[j] + g.nTop;
    double sx = g.jc[j] + is + g.nLeft;
    // Negative positions become 0; so does NaN, which has no integer part.
    if (!(sx >= 0)) sx = 0;
    if (!(sy >= 0)) sy = 0;
    const int ix = sx >= g.W - 1 ? g.W - 1 : static_cast<int>(sx);
    const int iy = sy >= g.H - 1 ? g.H - 1 : static_cast<int>(sy);
    const int64_t nTl = static_cast<int64_t>(iy) * g.nStride + ix;
    const double ptl = g.pIn[nTl];
    const double ptr = ix < g.W - 1 ? g.pIn[nTl + 1] : ptl;
    double pbl = ptl;
    double pbr = ptl;
    if (iy < g.H - 1) {
        pbl = g.pIn[nTl + g.nStride];
        // In the last column the diagonal is the byte after pbl; on the
        // second-to-last row of a packed mask that is past the end.
        if (nTl + g.nStride + 1 < g.nEnd) {
            pbr = g.pIn[nTl + g.nStride + 1];
        } else {
            pbr = 0;
            bPastEnd = true;
        }
    }
    const double fx = sx - ix;
    const double gx = (ix + 1) - sx;
    const double fy = sy - iy;
    const double gy = (iy + 1) - sy;
    const double value = fy * gx * pbl + gx * gy * ptl + fx * gy * ptr + fx * fy * pbr;
    return LowByte(value);
}

#if PCG_AVX2_KERNELS
// Four output pixels at a time, j from j0 while four fit before j1; returns
// where it stopped. Lanes do RotatedPixel's operations in its order. A group
// whose source rows reach the last two rows of mask1 goes through
// RotatedPixel, so the two-byte loads below never pass the end: with
// iy <= H - 3 and nStride >= W >= 3, the loads at the lower row end at
// (H - 2) * nStride + W < H * nStride.
PCG_TARGET_AVX2
int RotateRowAvx2(const RotateGeometry& g, double ic, double is, int j0, int j1, uint8_t* pOut,
                  bool& bPastEnd) {
    const __m256d vic = _mm256_set1_pd(ic);
    const __m256d vis = _mm256_set1_pd(is);
    const __m256d vTop = _mm256_set1_pd(g.nTop);
    const __m256d vLeft = _mm256_set1_pd(g.nLeft);
    const __m256d vZero = _mm256_setzero_pd();
    const __m256d vMaxX = _mm256_set1_pd(g.W - 1);
    const __m256d vMaxY = _mm256_set1_pd(g.H - 1);
    const __m128i vLastCol = _mm_set1_epi32(g.W - 1);
    const __m128i vSafeRow = _mm_set1_epi32(g.H - 3);
    const __m128i vStride = _mm_set1_epi32(g.nStride);
    const __m128i vOne = _mm_set1_epi32(1);
    const __m128i vByte = _mm_set1_epi32(0xFF);
    const __m128i vPack = _mm_setr_epi8(0, 4, 8, 12, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
    int j = j0;
    for (; j + 4 <= j1; j += 4) {
        __m256d sy = _mm256_add_pd(_mm256_sub_pd(vic, _mm256_loadu_pd(g.js + j)), vTop);
        __m256d sx = _mm256_add_pd(_mm256_add_pd(_mm256_loadu_pd(g.jc + j), vis), vLeft);
        sx = _mm256_and_pd(_mm256_cmp_pd(sx, vZero, _CMP_GE_OQ), sx);
        sy = _mm256_and_pd(_mm256_cmp_pd(sy, vZero, _CMP_GE_OQ), sy);
        // min(s, max) then truncation equals "s >= max ? max : trunc(s)".
        const __m128i ix = _mm256_cvttpd_epi32(_mm256_min_pd(sx, vMaxX));
        const __m128i iy = _mm256_cvttpd_epi32(_mm256_min_pd(sy, vMaxY));
        if (_mm_movemask_epi8(_mm_cmpgt_epi32(iy, vSafeRow))) {
            for (int k = 0; k < 4; ++k) pOut[j + k] = RotatedPixel(g, ic, is, j + k, bPastEnd);
            continue;
        }
        // Byte pairs at the pixel and one row down, loaded one lane at a
        // time: plain loads beat the processor's gather here.
        alignas(16) int32_t at[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(at), _mm_add_epi32(_mm_mullo_epi32(iy, vStride), ix));
        int32_t pairs[4];
        for (int k = 0; k < 4; ++k) {
            uint16_t upper;
            uint16_t lower;
            std::memcpy(&upper, g.pIn + at[k], 2);
            std::memcpy(&lower, g.pIn + at[k] + g.nStride, 2);
            pairs[k] = static_cast<int32_t>(upper | (static_cast<uint32_t>(lower) << 16));
        }
        // Put together in registers: four narrow stores read back as one
        // vector would wait for the stores to reach the cache.
        const __m128i both = _mm_setr_epi32(pairs[0], pairs[1], pairs[2], pairs[3]);
        // Four zero neighbours weigh to 0 whatever the weights (a NaN sum
        // converts to 0 too): the unselected part of a mask costs no
        // arithmetic.
        if (_mm_testz_si128(both, both)) {
            std::memset(pOut + j, 0, 4);
            continue;
        }
        const __m128i top = both;
        const __m128i bottom = _mm_srli_epi32(both, 16);
        const __m128i tlByte = _mm_and_si128(top, vByte);
        const __m128i trByte = _mm_blendv_epi8(_mm_and_si128(_mm_srli_epi32(top, 8), vByte), tlByte,
                                               _mm_cmpeq_epi32(ix, vLastCol));
        const __m256d ptl = _mm256_cvtepi32_pd(tlByte);
        const __m256d ptr = _mm256_cvtepi32_pd(trByte);
        const __m256d pbl = _mm256_cvtepi32_pd(_mm_and_si128(bottom, vByte));
        const __m256d pbr = _mm256_cvtepi32_pd(_mm_and_si128(_mm_srli_epi32(bottom, 8), vByte));
        const __m256d fx = _mm256_sub_pd(sx, _mm256_cvtepi32_pd(ix));
        const __m256d gx = _mm256_sub_pd(_mm256_cvtepi32_pd(_mm_add_epi32(ix, vOne)), sx);
        const __m256d fy = _mm256_sub_pd(sy, _mm256_cvtepi32_pd(iy));
        const __m256d gy = _mm256_sub_pd(_mm256_cvtepi32_pd(_mm_add_epi32(iy, vOne)), sy);
        __m256d value = _mm256_mul_pd(_mm256_mul_pd(fy, gx), pbl);
        value = _mm256_add_pd(value, _mm256_mul_pd(_mm256_mul_pd(gx, gy), ptl));
        value = _mm256_add_pd(value, _mm256_mul_pd(_mm256_mul_pd(fx, gy), ptr));
        value = _mm256_add_pd(value, _mm256_mul_pd(_mm256_mul_pd(fx, fy), pbr));
        // Out-of-range values convert to 0x80000000, whose low byte is 0.
        const __m128i bytes = _mm_shuffle_epi8(_mm256_cvttpd_epi32(value), vPack);
        const int nPacked = _mm_cvtsi128_si32(bytes);
        std::memcpy(pOut + j, &nPacked, 4);
    }
    return j;
}
#endif

void RotateRows(const RotateGeometry& g, double c, double s, int i0, int i1, const BufferData& output,
                int nWidth, bool bInPlace, bool& bPastEnd) {
#if PCG_AVX2_KERNELS
    const bool bVector = pcg::selection::UseAvx2() && !bInPlace && g.W >= 3 && g.H >= 3 && g.nStride >= g.W &&
                         g.nEnd <= INT32_MAX;
#endif
    for (int i = i0; i < i1; ++i) {
        const double ic = i * c;
        const double is = i * s;
        uint8_t* pOut = output.pBuffer + static_cast<int64_t>(i) * output.nStride;
        int j = 0;
#if PCG_AVX2_KERNELS
        if (bVector) j = RotateRowAvx2(g, ic, is, 0, nWidth, pOut, bPastEnd);
#endif
        for (; j < nWidth; ++j) pOut[j] = RotatedPixel(g, ic, is, j, bPastEnd);
    }
}

}  // namespace

void CombineMasks(const BufferData& mask1, const BufferData& mask2, bool bOr,
                  const BufferData& output) {
    const bool bVector = pcg::selection::UseAvx2();
    pcg::selection::ForEachRowSlice(output.nHeight, output.nWidth, [&](int y0, int y1) {
        for (int y = y0; y < y1; ++y) {
            const uint8_t* pA = mask1.pBuffer + static_cast<int64_t>(y) * mask1.nStride;
            const uint8_t* pB = mask2.pBuffer + static_cast<int64_t>(y) * mask2.nStride;
            uint8_t* pOut = output.pBuffer + static_cast<int64_t>(y) * output.nStride;
            if (bOr) CombineRow<true>(pA, pB, pOut, output.nWidth, bVector);
            else CombineRow<false>(pA, pB, pOut, output.nWidth, bVector);
        }
    });
}

int32_t CropRotateMask(const BufferData& mask1, const CropRotateSetting& setting,
                       const BufferData& output) {
    const int W = mask1.nWidth;
    const int H = mask1.nHeight;
    const int nStride = mask1.nStride;
    const uint8_t* pIn = mask1.pBuffer;
    // An empty crop reads nothing, whatever mask1 is.
    if (setting.nWidth <= 0 || setting.nHeight <= 0) return pcg::kResultOk;
    if (W < 1 || H < 1) {
        // Clamping to an empty source would read before the buffer.
        DumpLog("CSelectionTool::SelectionMaskOperation [Err] empty mask1 %d x %d\n", W, H);
        return pcg::kResultInvalidArg;
    }
    const double a = static_cast<double>(setting.fAngle) * pi / 180.0;

    if (std::fabs(a) < 0.001) {
        if (setting.nLeft < 0 || setting.nTop < 0) {
            // Only the upper side is clamped; a negative corner would read before the mask.
            DumpLog("CSelectionTool::SelectionMaskOperation [Err] negative crop corner (%d, %d)\n",
                    setting.nLeft, setting.nTop);
            return pcg::kResultInvalidArg;
        }
        for (int i = 0; i < setting.nHeight; ++i) {
            // Summed wide: a corner near the integer limit must not wrap.
            const int y = static_cast<int>(std::min<int64_t>(static_cast<int64_t>(setting.nTop) + i, H - 1));
            const uint8_t* pSrc = pIn + static_cast<int64_t>(y) * nStride;
            uint8_t* pOut = output.pBuffer + static_cast<int64_t>(i) * output.nStride;
            // Columns up to the source's last one are a copy; beyond it the
            // last column repeats.
            const int nInside = std::max(0, std::min(setting.nWidth, W - setting.nLeft));
            if (nInside > 0) std::memcpy(pOut, pSrc + setting.nLeft, static_cast<size_t>(nInside));
            if (setting.nWidth > nInside)
                std::memset(pOut + nInside, pSrc[W - 1], static_cast<size_t>(setting.nWidth - nInside));
        }
        return pcg::kResultOk;
    }

    const double c = std::cos(a);
    const double s = std::sin(a);
    std::vector<double> jc(static_cast<size_t>(setting.nWidth));
    std::vector<double> js(jc.size());
    for (int j = 0; j < setting.nWidth; ++j) {
        jc[j] = j * c;
        js[j] = j * s;
    }
    const RotateGeometry g = {pIn, W, H, nStride, static_cast<int64_t>(H) * nStride,
                              setting.nLeft, setting.nTop, jc.data(), js.data()};
    // An output over mask1's own bytes reads what earlier pixels wrote: one
    // thread, pixel by pixel, in order.
    const bool bInPlace = pcg::selection::BytesOverlap(
        pIn, g.nEnd, output.pBuffer,
        static_cast<int64_t>(setting.nHeight - 1) * output.nStride + setting.nWidth);
    std::atomic<bool> bAnyPastEnd{false};
    pcg::selection::ForEachRowSlice(setting.nHeight, setting.nWidth, [&](int i0, int i1) {
        bool bSlicePastEnd = false;
        RotateRows(g, c, s, i0, i1, output, setting.nWidth, bInPlace, bSlicePastEnd);
        if (bSlicePastEnd) bAnyPastEnd.store(true, std::memory_order_relaxed);
    }, bInPlace);
    const bool bPastEnd = bAnyPastEnd.load();
    if (bPastEnd)
        DumpLog("CSelectionTool::SelectionMaskOperation [Err] neighbour past the end of mask1 read as 0\n");
    return pcg::kResultOk;
}
