#include "selection/mask_lens_correct.h"

#include <climits>
#include <cmath>
#include <cstring>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "engine/constants.h"
#include "engine/result_codes.h"
#include "runtime/dump_log.h"
#include "selection/perspective_transform.h"
#include "selection/row_slices.h"
#include "selection/simd_dispatch.h"

#if PCG_AVX2_KERNELS
#include <immintrin.h>
#endif

namespace {

// A projective point map with the row-major 3x3 matrix m.
struct Projected {
    double sx;
    double sy;
};
inline Projected Project(const double m[3][3], double px, double py) {
    const double w = m[2][0] * px + m[2][1] * py + m[2][2];
    return {(m[0][0] * px + m[0][1] * py + m[0][2]) / w, (m[1][0] * px + m[1][1] * py + m[1][2]) / w};
}

#if PCG_AVX2_KERNELS
// ProjectRow's loop four lanes at a time; returns where it stopped.
PCG_TARGET_AVX2
int ProjectRowAvx2(const double m[3][3], double* sx, double* sy, int n) {
    const __m256d m00 = _mm256_set1_pd(m[0][0]), m01 = _mm256_set1_pd(m[0][1]), m02 = _mm256_set1_pd(m[0][2]);
    const __m256d m10 = _mm256_set1_pd(m[1][0]), m11 = _mm256_set1_pd(m[1][1]), m12 = _mm256_set1_pd(m[1][2]);
    const __m256d m20 = _mm256_set1_pd(m[2][0]), m21 = _mm256_set1_pd(m[2][1]), m22 = _mm256_set1_pd(m[2][2]);
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m256d px = _mm256_loadu_pd(sx + i);
        const __m256d py = _mm256_loadu_pd(sy + i);
        const __m256d w = _mm256_add_pd(_mm256_add_pd(_mm256_mul_pd(m20, px), _mm256_mul_pd(m21, py)), m22);
        const __m256d u = _mm256_add_pd(_mm256_add_pd(_mm256_mul_pd(m00, px), _mm256_mul_pd(m01, py)), m02);
        const __m256d v = _mm256_add_pd(_mm256_add_pd(_mm256_mul_pd(m10, px), _mm256_mul_pd(m11, py)), m12);
        _mm256_storeu_pd(sx + i, _mm256_div_pd(u, w));
        _mm256_storeu_pd(sy + i, _mm256_div_pd(v, w));
    }
    return i;
}
#endif

// Project over a row, in place: (sx[i], sy[i]) holds the point on entry and
// its image on return. Several lanes at a time where the processor has them;
// each lane does the scalar operations in the scalar order, so the results
// are the same.
void ProjectRow(const double m[3][3], double* sx, double* sy, int n) {
    int i = 0;
#if PCG_AVX2_KERNELS
    if (pcg::selection::UseAvx2()) i = ProjectRowAvx2(m, sx, sy, n);
#endif
#if defined(__SSE2__)
    const __m128d m00 = _mm_set1_pd(m[0][0]), m01 = _mm_set1_pd(m[0][1]), m02 = _mm_set1_pd(m[0][2]);
    const __m128d m10 = _mm_set1_pd(m[1][0]), m11 = _mm_set1_pd(m[1][1]), m12 = _mm_set1_pd(m[1][2]);
    const __m128d m20 = _mm_set1_pd(m[2][0]), m21 = _mm_set1_pd(m[2][1]), m22 = _mm_set1_pd(m[2][2]);
    for (; i + 2 <= n; i += 2) {
        const __m128d px = _mm_loadu_pd(sx + i);
        const __m128d py = _mm_loadu_pd(sy + i);
        const __m128d w = _mm_add_pd(_mm_add_pd(_mm_mul_pd(m20, px), _mm_mul_pd(m21, py)), m22);
        const __m128d u = _mm_add_pd(_mm_add_pd(_mm_mul_pd(m00, px), _mm_mul_pd(m01, py)), m02);
        const __m128d v = _mm_add_pd(_mm_add_pd(_mm_mul_pd(m10, px), _mm_mul_pd(m11, py)), m12);
        _mm_storeu_pd(sx + i, _mm_div_pd(u, w));
        _mm_storeu_pd(sy + i, _mm_div_pd(v, w));
    }
#endif
    for (; i < n; ++i) {
        const Projected p = Project(m, sx[i], sy[i]);
        sx[i] = p.sx;
        sy[i] = p.sy;
    }
}

// Nearest sampling: 0 outside [0, W - 1] x [0, H - 1]; a NaN position is
// outside too rather than an undefined conversion.
inline uint8_t Sample(const uint8_t* pIn, int nStride, double dMaxX, double dMaxY, double sx,
                      double sy) {
    if (!(sx >= 0 && sx <= dMaxX && sy >= 0 && sy <= dMaxY)) return 0;
    return pIn[static_cast<int64_t>(static_cast<int>(sy + 0.5)) * nStride +
               static_cast<int>(sx + 0.5)];
}

// Where a row's sampling runs: the input, its limits and its size in bytes.
struct SampleSource {
    const uint8_t* pIn;
    int nStride;
    double dMaxX;
    double dMaxY;
    int64_t nEnd;
};

#if PCG_AVX2_KERNELS
// Sample's work four pixels at a time; returns where it stopped. The
// positions and tests are four lanes wide, the byte loads one lane at a
// time: plain loads beat the processor's gather here.
PCG_TARGET_AVX2
int SampleRowAvx2(const SampleSource& src, const double* sx, const double* sy, uint8_t* pRow, int n) {
    const __m256d vZero = _mm256_setzero_pd();
    const __m256d vHalf = _mm256_set1_pd(0.5);
    const __m256d vMaxX = _mm256_set1_pd(src.dMaxX);
    const __m256d vMaxY = _mm256_set1_pd(src.dMaxY);
    const __m128i vStride = _mm_set1_epi32(src.nStride);
    int x = 0;
    for (; x + 4 <= n; x += 4) {
        __m256d px = _mm256_loadu_pd(sx + x);
        __m256d py = _mm256_loadu_pd(sy + x);
        const __m256d inside =
            _mm256_and_pd(_mm256_and_pd(_mm256_cmp_pd(px, vZero, _CMP_GE_OQ), _mm256_cmp_pd(px, vMaxX, _CMP_LE_OQ)),
                          _mm256_and_pd(_mm256_cmp_pd(py, vZero, _CMP_GE_OQ), _mm256_cmp_pd(py, vMaxY, _CMP_LE_OQ)));
        // Lanes outside read the first byte; their position becomes 0 so that
        // the conversion stays defined.
        px = _mm256_and_pd(inside, px);
        py = _mm256_and_pd(inside, py);
        const __m128i ix = _mm256_cvttpd_epi32(_mm256_add_pd(px, vHalf));
        const __m128i iy = _mm256_cvttpd_epi32(_mm256_add_pd(py, vHalf));
        alignas(16) int32_t at[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(at), _mm_add_epi32(_mm_mullo_epi32(iy, vStride), ix));
        const int nInside = _mm256_movemask_pd(inside);
        for (int k = 0; k < 4; ++k)
            pRow[x + k] = static_cast<uint8_t>(src.pIn[at[k]] & -((nInside >> k) & 1));
    }
    return x;
}
#endif

// Nearest sampling of a row of source positions into pRow.
void SampleRow(const SampleSource& src, const double* sx, const double* sy, uint8_t* pRow, int n,
               bool bVector) {
    int x = 0;
#if PCG_AVX2_KERNELS
    if (bVector) x = SampleRowAvx2(src, sx, sy, pRow, n);
#else
    (void)bVector;
#endif
    for (; x < n; ++x) pRow[x] = Sample(src.pIn, src.nStride, src.dMaxX, src.dMaxY, sx[x], sy[x]);
}

// Offset from the centre, in pixels, that the radial polynomial gives the
// normalised position (u, v); false where it leaves the point in place
// (outside 0 < s < 1.000001).
inline bool PolynomialOffset(const RadialPolynomial& p, double R, double u, double v, double* pdx,
                             double* pdy) {
    const double s = u * u + v * v;
    if (!(s > 0 && s < 1.000001)) return false;
    const double r = std::sqrt(s);
    const double t = (p.dA * r * s + p.dB * s + p.dC * r + p.dD) * r;
    *pdx = t * u / r * R;
    *pdy = t * v / r * R;
    return true;
}

// The same for the inverse of the polynomial: 1 with the offset, 0 where the
// point stays (q outside 0 < q <= 1), -1 where the quartic has no usable root.
inline int InverseOffset(const RadialRootSolver& solver, double R, double u, double v, double* pdx,
                         double* pdy) {
    const double q = std::sqrt(u * u + v * v);
    if (q > 1.0 || !(q > 0)) return 0;
    double res = 0;
    if (!solver.Solve(q, &res)) return -1;
    *pdx = res * u / q * R;
    *pdy = res * v / q * R;
    return 1;
}

#if PCG_AVX2_KERNELS
// The radial offsets of pixels 0 .. n - 1 of a half row, four at a time, by
// PolynomialOffset (bReverse false) or InverseOffset (true), each lane doing
// their operations in their order. u[x] is (x - cx) / R, v the row's.
// Returns how many it did.
PCG_TARGET_AVX2
int RadialOffsetsAvx2(bool bReverse, const RadialPolynomial& p, const RadialRootSolver& solver, double R,
                      const double* u, double v, int n, double* offsetX, double* offsetY, uint8_t* moved) {
    const __m256d vR = _mm256_set1_pd(R);
    const __m256d vV = _mm256_set1_pd(v);
    const __m256d vZero = _mm256_setzero_pd();
    const __m256d vA = _mm256_set1_pd(p.dA), vB = _mm256_set1_pd(p.dB), vC = _mm256_set1_pd(p.dC),
                  vD = _mm256_set1_pd(p.dD);
    const __m256d vOne = _mm256_set1_pd(1.0);
    const __m256d vLimit = _mm256_set1_pd(1.000001);
    const __m256d vv = _mm256_mul_pd(vV, vV);
    int x = 0;
    for (; x + 4 <= n; x += 4) {
        const __m256d vU = _mm256_loadu_pd(u + x);
        const __m256d s = _mm256_add_pd(_mm256_mul_pd(vU, vU), vv);
        __m256d inside;
        __m256d scale;   // t for the polynomial, the root for the inverse
        __m256d r;       // what u and v are divided by
        if (!bReverse) {
            inside = _mm256_and_pd(_mm256_cmp_pd(s, vZero, _CMP_GT_OQ), _mm256_cmp_pd(s, vLimit, _CMP_LT_OQ));
            r = _mm256_sqrt_pd(s);
            __m256d t = _mm256_mul_pd(_mm256_mul_pd(vA, r), s);
            t = _mm256_add_pd(t, _mm256_mul_pd(vB, s));
            t = _mm256_add_pd(t, _mm256_mul_pd(vC, r));
            t = _mm256_add_pd(t, vD);
            scale = _mm256_mul_pd(t, r);
        } else {
            r = _mm256_sqrt_pd(s);   // q
            inside = _mm256_and_pd(_mm256_cmp_pd(r, vOne, _CMP_LE_OQ), _mm256_cmp_pd(r, vZero, _CMP_GT_OQ));
            alignas(32) double q[4];
            alignas(32) double root[4];
            _mm256_store_pd(q, r);
            const int nRooted = solver.SolveFour(q, root);
            const __m256d rooted = _mm256_castsi256_pd(_mm256_cmpgt_epi64(
                _mm256_and_si256(_mm256_set1_epi64x(nRooted), _mm256_setr_epi64x(1, 2, 4, 8)), _mm256_setzero_si256()));
            inside = _mm256_and_pd(inside, rooted);
            scale = _mm256_load_pd(root);
        }
        _mm256_storeu_pd(offsetX + x, _mm256_mul_pd(_mm256_div_pd(_mm256_mul_pd(scale, vU), r), vR));
        _mm256_storeu_pd(offsetY + x, _mm256_mul_pd(_mm256_div_pd(_mm256_mul_pd(scale, vV), r), vR));
        const int nInside = _mm256_movemask_pd(inside);
        for (int k = 0; k < 4; ++k) moved[x + k] = static_cast<uint8_t>((nInside >> k) & 1);
    }
    return x;
}
#endif

}  // namespace

MaskLensCorrect::MaskLensCorrect()
    : m_dForward{}, m_dInverse{}, m_dRadius(0), m_dPolyA(0), m_dPolyB(0), m_dPolyC(0),
      m_dPolyD(0) {}

RadialPolynomial MaskLensCorrect::m_fnPolynomial() const {
    return {m_dPolyA, m_dPolyB, m_dPolyC, m_dPolyD};
}

int32_t MaskLensCorrect::TransformMask(const BufferData& inputMask,
                                       const LensCorrectSetting& setting, int nMode,
                                       const BufferData& outputMask) {
    if (!inputMask.pBuffer) {
        DumpLog("MaskLensCorrect::TransformMask Null Pointer : inputMask.pBuffer\n");
        return pcg::kResultPointer;
    }
    if (!outputMask.pBuffer) {
        DumpLog("MaskLensCorrect::TransformMask Null Pointer : outputMask.pBuffer\n");
        return pcg::kResultPointer;
    }
    WarpMask(inputMask, setting, nMode, outputMask);
    return pcg::kResultOk;
}

int32_t MaskLensCorrect::SolveRadialInverse(double& x, double& y, double cx, double cy,
                                            int nDistortion) {
    const double R = m_dRadius;
    double dx = 0;
    double dy = 0;
    const int nMoved = InverseOffset(RadialRootSolver(m_fnPolynomial(), nDistortion), R,
                                     (x - cx) / R, (y - cy) / R, &dx, &dy);
    if (nMoved < 0) return pcg::kResultFail;
    if (nMoved > 0) {
        x = dx + cx;
        y = dy + cy;
    }
    return pcg::kResultOk;
}

int32_t MaskLensCorrect::ComputePerspective(int nWidth, int nHeight, int nVertical,
                                            int nHorizontal) {
    const int W = nWidth;
    const int H = nHeight;
    const double hx = (W - 1) * 0.5;
    const double hy = (H - 1) * 0.5;
    // Half-size image plane at z = 0, corners p0..p3 clockwise from top left.
    double corner[4][3] = {
        {-hx * 0.5, -hy * 0.5, 0.0},
        {(W - 1 - hx) * 0.5, -hy * 0.5, 0.0},
        {(W - 1 - hx) * 0.5, (H - 1 - hy) * 0.5, 0.0},
        {-hx * 0.5, (H - 1 - hy) * 0.5, 0.0},
    };
    // A slider value of 100 is a 35 degree tilt; vertical first, then horizontal.
    if (nVertical != 0) {
        const double A = nVertical / 100.0 * 35.0 * pi / 180.0;
        const double c = std::cos(A);
        const double s = std::sin(A);
        for (double* p : corner) {
            const double y = c * p[1] - s * p[2];
            const double z = s * p[1] + c * p[2];
            p[1] = y;
            p[2] = z;
        }
    }
    if (nHorizontal != 0) {
        const double A = nHorizontal / 100.0 * 35.0 * pi / 180.0;
        const double c = std::cos(A);
        const double s = std::sin(A);
        for (double* p : corner) {
            const double x = c * p[0] + s * p[2];
            const double z = c * p[2] - s * p[0];
            p[0] = x;
            p[2] = z;
        }
    }
    const int F = H < W ? W / 2 : H / 2;
    double quad[4][2];
    for (int i = 0; i < 4; ++i) {
        quad[i][0] = F * corner[i][0] / (F - corner[i][2]) + hx;
        quad[i][1] = F * corner[i][1] / (F - corner[i][2]) + hy;
    }
    const IppiRect rect = {W / 4, H / 4, W / 2, H / 2};
    const IppStatus status = GetPerspectiveTransform(rect, quad, m_dForward);
    if (status != ippStsNoErr) {
        DumpLog(" GetPerspectiveTransform failed. (error %d)", status);
        DumpLog(" dQuad2D = (%+.6f, %+.6f), (%+.6f, %+.6f), (%+.6f, %+.6f), (%+.6f, %+.6f)",
                quad[0][0], quad[0][1], quad[1][0], quad[1][1], quad[2][0], quad[2][1],
                quad[3][0], quad[3][1]);
        DumpLog(" FocusDistance = %d, dQuad3D = (%+.6f, %+.6f, %+.6f, %+.6f)", F, corner[0][2],
                corner[1][2], corner[2][2], corner[3][2]);
        return pcg::kResultFail;
    }
    const double(&m)[3][3] = m_dForward;
    const double det = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                       (m[1][0] * m[2][2] - m[2][0] * m[1][2]) * m[0][1] +
                       m[0][2] * (m[1][0] * m[2][1] - m[2][0] * m[1][1]);
    if (det == 0.0) {
        DumpLog(" Inverse matrix doesn't exist.");
        return pcg::kResultFail;
    }
    m_dInverse[0][0] = (m[1][1] * m[2][2] - m[1][2] * m[2][1]) / det;
    m_dInverse[0][1] = (m[0][2] * m[2][1] - m[0][1] * m[2][2]) / det;
    m_dInverse[0][2] = (m[0][1] * m[1][2] - m[0][2] * m[1][1]) / det;
    m_dInverse[1][0] = (m[1][2] * m[2][0] - m[1][0] * m[2][2]) / det;
    m_dInverse[1][1] = (m[0][0] * m[2][2] - m[0][2] * m[2][0]) / det;
    m_dInverse[1][2] = (m[0][2] * m[1][0] - m[0][0] * m[1][2]) / det;
    m_dInverse[2][0] = (m[1][0] * m[2][1] - m[1][1] * m[2][0]) / det;
    m_dInverse[2][1] = (m[0][1] * m[2][0] - m[0][0] * m[2][1]) / det;
    m_dInverse[2][2] = (m[0][0] * m[1][1] - m[0][1] * m[1][0]) / det;
    return pcg::kResultOk;
}

void MaskLensCorrect::WarpMask(const BufferData& inputMask, const LensCorrectSetting& setting,
                               int nMode, const BufferData& outputMask) {
    const int W = inputMask.nWidth;
    const int H = inputMask.nHeight;
    const int nStride = inputMask.nStride;
    const uint8_t* pIn = inputMask.pBuffer;
    uint8_t* pOut = outputMask.pBuffer;
    const int nDistortion = setting.nDistortion;
    const double cx = (W + 1) * 0.5 - 1.0;
    const double cy = (H + 1) * 0.5 - 1.0;
    if (nDistortion != 0) {
        m_dRadius = std::sqrt(cx * cx + cy * cy);
        const double k = -(nDistortion * 0.0016);
        m_dPolyA = m_dPolyB = m_dPolyC = k;
        m_dPolyD = 1 - k - k - k;
    }
    const bool bPerspective = !(setting.nVertical == 0 && setting.nHorizontal == 0);
    if (bPerspective) ComputePerspective(W, H, setting.nVertical, setting.nHorizontal);
    // The geometry above is set up even for a mask without pixels.
    if (W <= 0 || H <= 0) return;

    const double dMaxX = W - 1;
    const double dMaxY = H - 1;
    const double R = m_dRadius;
    const RadialPolynomial poly = m_fnPolynomial();

    if (nDistortion == 0 && !bPerspective) {
        // Identity: every pixel samples itself.
        for (int y = 0; y < H; ++y)
            std::memmove(pOut + static_cast<int64_t>(y) * nStride,
                         pIn + static_cast<int64_t>(y) * nStride, static_cast<size_t>(W));
        return;
    }

    const SampleSource src = {pIn, nStride, dMaxX, dMaxY, static_cast<int64_t>(H) * nStride};
    // Warping a mask onto itself reads bytes already written: one thread,
    // pixel by pixel, in order.
    const bool bInPlace = pcg::selection::BytesOverlap(pIn, src.nEnd, pOut, src.nEnd);
    // The four-lane sampler addresses bytes with 32-bit offsets.
    const bool bVector = pcg::selection::UseAvx2() && !bInPlace && src.nEnd <= INT_MAX;

    if (nMode != 1 && bPerspective) {
        // Direct with a tilt: the inverse matrix, then the radial polynomial.
        pcg::selection::ForEachRowSlice(H, W, [&](int y0, int y1) {
            std::vector<double> rowX(static_cast<size_t>(W));
            std::vector<double> rowY(static_cast<size_t>(W));
            for (int y = y0; y < y1; ++y) {
                for (int x = 0; x < W; ++x) {
                    rowX[x] = x;
                    rowY[x] = y;
                }
                ProjectRow(m_dInverse, rowX.data(), rowY.data(), W);
                if (nDistortion != 0)
                    for (int x = 0; x < W; ++x) {
                        double dx = 0;
                        double dy = 0;
                        if (!PolynomialOffset(poly, R, (rowX[x] - cx) / R, (rowY[x] - cy) / R, &dx, &dy))
                            continue;
                        rowX[x] = dx + cx;
                        rowY[x] = dy + cy;
                    }
                SampleRow(src, rowX.data(), rowY.data(), pOut + static_cast<int64_t>(y) * nStride, W, bVector);
            }
        }, bInPlace);
        return;
    }

    // The radial step works on whole pixels here: the polynomial in the
    // direct direction, its inverse in the reverse one. Either moves a pixel
    // by a function of u^2 + v^2, and the centre lies midway between mirrored
    // columns and rows, so one evaluation serves up to four pixels: the
    // mirrored offsets are the exact negations of the computed ones. Row y
    // and its mirror H - 1 - y go together, so a slice is of row pairs.
    const int nHalfW = (W - 1) / 2;
    const RadialRootSolver solver(poly, nDistortion);
    // u of each column of the left half, worked out once for every row.
    std::vector<double> columnU(static_cast<size_t>(nHalfW) + 1);
    if (nDistortion != 0)
        for (int x = 0; x <= nHalfW; ++x) columnU[x] = (x - cx) / R;
    const bool bVectorRadial = pcg::selection::UseAvx2();
    // The reverse solve costs several times the direct polynomial per pixel.
    const int64_t nCostPerPair = static_cast<int64_t>(W) * (nMode == 1 ? 8 : 2);
    pcg::selection::ForEachRowSlice((H - 1) / 2 + 1, nCostPerPair, [&](int p0, int p1) {
        std::vector<double> offsetX(static_cast<size_t>(nHalfW) + 1);
        std::vector<double> offsetY(offsetX.size());
        std::vector<uint8_t> moved(offsetX.size());
        std::vector<double> rowX(static_cast<size_t>(W));
        std::vector<double> rowY(static_cast<size_t>(W));
        for (int y = p0; y < p1; ++y) {
            // Without distortion R may still be 0: no offset is computed then.
            const double v = nDistortion != 0 ? (y - cy) / R : 0.0;
            int x = 0;
#if PCG_AVX2_KERNELS
            if (nDistortion != 0 && bVectorRadial)
                x = RadialOffsetsAvx2(nMode == 1, poly, solver, R, columnU.data(), v, nHalfW + 1, offsetX.data(),
                                      offsetY.data(), moved.data());
#endif
            for (; x <= nHalfW && nDistortion != 0; ++x) {
                const double u = columnU[x];
                moved[x] = nMode != 1 ? PolynomialOffset(poly, R, u, v, &offsetX[x], &offsetY[x])
                                      : InverseOffset(solver, R, u, v, &offsetX[x], &offsetY[x]) > 0;
            }
            const int rows[2] = {y, H - 1 - y};
            for (int nRow = 0; nRow < (rows[0] == rows[1] ? 1 : 2); ++nRow) {
                const int yy = rows[nRow];
                const double signY = nRow == 0 ? 1.0 : -1.0;
                for (int x = 0; x <= nHalfW; ++x) {
                    if (moved[x]) {
                        rowX[x] = offsetX[x] + cx;
                        rowY[x] = signY * offsetY[x] + cy;
                    } else {
                        rowX[x] = x;
                        rowY[x] = yy;
                    }
                }
                for (int x = nHalfW + 1; x < W; ++x) {
                    const int k = W - 1 - x;
                    if (moved[k]) {
                        rowX[x] = -offsetX[k] + cx;
                        rowY[x] = signY * offsetY[k] + cy;
                    } else {
                        rowX[x] = x;
                        rowY[x] = yy;
                    }
                }
                if (bPerspective) ProjectRow(m_dForward, rowX.data(), rowY.data(), W);
                SampleRow(src, rowX.data(), rowY.data(), pOut + static_cast<int64_t>(yy) * nStride, W, bVector);
            }
        }
    }, bInPlace);
}
