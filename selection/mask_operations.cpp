#include "selection/mask_operations.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "engine/constants.h"
#include "runtime/dump_log.h"
#include "engine/result_codes.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

template <bool bOr>
void CombineRow(const uint8_t* pA, const uint8_t* pB, uint8_t* pOut, int nWidth) {
    int x = 0;
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

}  // namespace

void CombineMasks(const BufferData& mask1, const BufferData& mask2, bool bOr,
                  const BufferData& output) {
    for (int y = 0; y < output.nHeight; ++y) {
        const uint8_t* pA = mask1.pBuffer + static_cast<int64_t>(y) * mask1.nStride;
        const uint8_t* pB = mask2.pBuffer + static_cast<int64_t>(y) * mask2.nStride;
        uint8_t* pOut = output.pBuffer + static_cast<int64_t>(y) * output.nStride;
        if (bOr) CombineRow<true>(pA, pB, pOut, output.nWidth);
        else CombineRow<false>(pA, pB, pOut, output.nWidth);
    }
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
    const int64_t nEnd = static_cast<int64_t>(H) * nStride;
    bool bPastEnd = false;
    std::vector<double> jc(static_cast<size_t>(std::max(0, setting.nWidth)));
    std::vector<double> js(jc.size());
    for (int j = 0; j < setting.nWidth; ++j) {
        jc[j] = j * c;
        js[j] = j * s;
    }
    for (int i = 0; i < setting.nHeight; ++i) {
        const double ic = i * c;
        const double is = i * s;
        uint8_t* pOut = output.pBuffer + static_cast<int64_t>(i) * output.nStride;
        for (int j = 0; j < setting.nWidth; ++j) {
            double sy = ic - js[j] + setting.nTop;
            double sx = jc[j] + is + setting.nLeft;
            // Negative positions become 0; so does NaN, which has no integer part.
            if (!(sx >= 0)) sx = 0;
            if (!(sy >= 0)) sy = 0;
            const int ix = sx >= W - 1 ? W - 1 : static_cast<int>(sx);
            const int iy = sy >= H - 1 ? H - 1 : static_cast<int>(sy);
            const int64_t nTl = static_cast<int64_t>(iy) * nStride + ix;
            const double ptl = pIn[nTl];
            const double ptr = ix < W - 1 ? pIn[nTl + 1] : ptl;
            double pbl = ptl;
            double pbr = ptl;
            if (iy < H - 1) {
                pbl = pIn[nTl + nStride];
                // In the last column the diagonal is the byte after pbl; on
                // the second-to-last row of a packed mask that is past the end.
                if (nTl + nStride + 1 < nEnd) {
                    pbr = pIn[nTl + nStride + 1];
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
            pOut[j] = LowByte(value);
        }
    }
    if (bPastEnd)
        DumpLog("CSelectionTool::SelectionMaskOperation [Err] neighbour past the end of mask1 read as 0\n");
    return pcg::kResultOk;
}
