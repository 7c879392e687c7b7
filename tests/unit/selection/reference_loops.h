// Plain forms of the selection loops, written step by step as the tools are
// meant to behave. The production code must equal them byte for byte.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "engine/records/brush_records.h"
#include "engine/records/effect_records.h"
#include "engine/records/image_records.h"
#include "selection/mask_lens_correct.h"

namespace oracle {

inline std::vector<SelectionLine> MaskToPoint(const BufferData& mask) {
    std::vector<SelectionLine> lines;
    int left = mask.rectROI.left, top = mask.rectROI.top;
    int width = mask.rectROI.right - left, height = mask.rectROI.bottom - top;
    if (width == 0 && height == 0) {
        left = top = 0;
        width = mask.nWidth;
        height = mask.nHeight;
    }
    if (height < 1) return lines;
    for (int r = 0; r < height; ++r) {
        bool open = false;
        int start = 0, end = 0;
        for (int c = 0; c < width; ++c) {
            const uint8_t b = mask.pBuffer[r * mask.nStride + c];
            if (b != 0) {
                if (!open) {
                    open = true;
                    start = c + left;
                }
                end = c + left;
                if (c != width - 1) continue;
            }
            if (open && end >= start)
                lines.push_back({static_cast<short>(start), static_cast<short>(top + r),
                                 static_cast<short>(end - start + 1)});
            open = false;
        }
    }
    return lines;
}

inline int32_t PointToMask(const std::vector<SelectionLine>& lines, const BufferData& mask,
                           bool bInv) {
    int left = mask.rectROI.left, top = mask.rectROI.top;
    int right = mask.rectROI.right, bottom = mask.rectROI.bottom;
    if (right - left == 0 && bottom - top == 0) {
        left = top = 0;
        right = mask.nWidth;
        bottom = mask.nHeight;
    }
    for (int r = 0; r < bottom - top; ++r)
        for (int c = 0; c < right - left; ++c) mask.pBuffer[r * mask.nStride + c] = bInv ? 255 : 0;
    for (const SelectionLine& l : lines) {
        if (l.nX == -1 && l.nY == -1) return l.nLength == -1 ? 0 : static_cast<int32_t>(0x80004005u);
        if (l.nX < 0 || l.nY < 0) return static_cast<int32_t>(0x80004005u);
        if (l.nY < top || l.nY > bottom - 1) continue;
        for (int x = std::max<int>(l.nX, left); x < std::min<int>(l.nX + l.nLength, right); ++x)
            mask.pBuffer[(l.nY - top) * mask.nStride + x - left] = bInv ? 0 : 255;
    }
    return 0;
}

inline int32_t GetMaskROI(const BufferData& mask, ROI& roi) {
    roi.nLeft = mask.nWidth;
    roi.nTop = mask.nHeight;
    int maxX = 0, maxY = 0;
    if (mask.nHeight < 1) {
        if (roi.nLeft > 0 || roi.nTop > 0) return static_cast<int32_t>(0x80004005u);
        roi.nWidth = 1 - roi.nLeft;
        roi.nHeight = 1 - roi.nTop;
        return 0;
    }
    for (int y = 0; y < mask.nHeight; ++y)
        for (int x = 0; x < mask.nWidth; ++x)
            if (mask.pBuffer[y * mask.nStride + x]) {
                roi.nLeft = std::min(roi.nLeft, x);
                roi.nTop = std::min(roi.nTop, y);
                maxX = std::max(maxX, x);
                maxY = std::max(maxY, y);
            }
    if (roi.nLeft > maxX || roi.nTop > maxY) return static_cast<int32_t>(0x80004005u);
    roi.nWidth = maxX - roi.nLeft + 1;
    roi.nHeight = maxY - roi.nTop + 1;
    return 0;
}

inline void Combine(const BufferData& m1, const BufferData& m2, bool bOr, const BufferData& out) {
    for (int y = 0; y < out.nHeight; ++y)
        for (int x = 0; x < out.nWidth; ++x) {
            const uint8_t a = m1.pBuffer[y * m1.nStride + x], b = m2.pBuffer[y * m2.nStride + x];
            out.pBuffer[y * out.nStride + x] = bOr ? (a | b) : (a & b);
        }
}

// Reads the byte at an offset of mask1, or 0 past the end of its bytes.
inline double ByteOrZero(const BufferData& m, long long offset) {
    return offset < static_cast<long long>(m.nHeight) * m.nStride ? m.pBuffer[offset] : 0;
}

inline void CropRotate(const BufferData& m1, const CropRotateSetting& s, const BufferData& out) {
    const double a = static_cast<double>(s.fAngle) * 3.141592654 / 180.0;
    const int W = m1.nWidth, H = m1.nHeight;
    if (std::fabs(a) < 0.001) {
        for (int y = s.nTop; y < s.nTop + s.nHeight; ++y)
            for (int x = s.nLeft; x < s.nLeft + s.nWidth; ++x)
                out.pBuffer[(y - s.nTop) * out.nStride + x - s.nLeft] =
                    m1.pBuffer[std::min(y, H - 1) * m1.nStride + std::min(x, W - 1)];
        return;
    }
    const double c = std::cos(a), sn = std::sin(a);
    for (int i = 0; i < s.nHeight; ++i)
        for (int j = 0; j < s.nWidth; ++j) {
            double sy = i * c - j * sn + s.nTop;
            double sx = j * c + i * sn + s.nLeft;
            if (sx < 0) sx = 0;
            if (sy < 0) sy = 0;
            const int ix = std::min(W - 1, static_cast<int>(std::trunc(sx)));
            const int iy = std::min(H - 1, static_cast<int>(std::trunc(sy)));
            const long long tl = static_cast<long long>(iy) * m1.nStride + ix;
            const double ptl = m1.pBuffer[tl];
            const double ptr = ix < W - 1 ? m1.pBuffer[tl + 1] : ptl;
            const double pbl = iy < H - 1 ? m1.pBuffer[tl + m1.nStride] : ptl;
            const double pbr = iy < H - 1 ? ByteOrZero(m1, tl + m1.nStride + 1) : ptl;
            const double fx = sx - ix, gx = (ix + 1) - sx, fy = sy - iy, gy = (iy + 1) - sy;
            const double value = fy * gx * pbl + gx * gy * ptl + fx * gy * ptr + fx * fy * pbr;
            out.pBuffer[i * out.nStride + j] = static_cast<uint8_t>(static_cast<int>(value) & 0xFF);
        }
}

// The inverse of the radial polynomial, by Ferrari's closed form, step by
// step on the lens's coefficients and radius.
inline int32_t SolveRadialInverse(const MaskLensCorrect& lens, double& x, double& y, double cx,
                                  double cy, int nDistortion) {
    const double R = lens.m_dRadius, a = lens.m_dPolyA;
    const double u = (x - cx) / R, v = (y - cy) / R, q = std::sqrt(u * u + v * v);
    if (q > 1.0 || !(q > 0)) return 0;
    const double B = lens.m_dPolyB / a, C = lens.m_dPolyC / a, D = lens.m_dPolyD / a;
    const double alpha = C - B * B * 0.375;
    const double beta = B * B * B * 0.125 + D - C * B * 0.5;
    const double gamma = -(q / a) - B * B * B * B * 3.0 * 0.00390625 + B * B * C * 0.0625 - D * B * 0.25;
    const double P = -(alpha * alpha / 12.0) - gamma;
    const double Q = gamma * alpha / 3.0 - alpha * alpha * alpha / 108.0 - beta * beta * 0.125;
    const double U = std::pow(std::sqrt(P * P * P / 27.0 + Q * Q * 0.25) - Q * 0.5, 1.0 / 3.0);
    const double Y = U == 0 ? alpha * -5.0 / 6.0 + U - std::pow(Q, 1.0 / 3.0)
                            : alpha * -5.0 / 6.0 + U - P / (U * 3.0);
    if (!(alpha + 2 * Y > 0)) return static_cast<int32_t>(0x80004005u);
    const double Wr = std::sqrt(alpha + 2 * Y), E = 2 * beta / Wr, G = 3 * alpha + 2 * Y;
    double res = q;
    const auto take = [&](double candidate) {
        if (candidate < 0 || std::isnan(candidate)) return;
        if (nDistortion < 0 ? candidate >= q : candidate <= q) res = candidate;
    };
    if (G + E < 0) {
        const double S = std::sqrt(-(G + E));
        take((Wr - S) * 0.5 - B * 0.25);
        take((S + Wr) * 0.5 - B * 0.25);
    }
    if (G - E < 0) {
        const double S = std::sqrt(-(G - E));
        take((-Wr - S) * 0.5 - B * 0.25);
        take((S - Wr) * 0.5 - B * 0.25);
    }
    x = res * u / q * R + cx;
    y = res * v / q * R + cy;
    return 0;
}

// The per-pixel warp, with the per-point pieces of MaskLensCorrect.
inline void WarpMask(MaskLensCorrect& lens, const BufferData& in, const LensCorrectSetting& s,
                     int nMode, const BufferData& out) {
    const int W = in.nWidth, H = in.nHeight;
    const double cx = (W + 1) * 0.5 - 1.0, cy = (H + 1) * 0.5 - 1.0;
    double a = 0, b = 0, c = 0, d = 0, R = lens.m_dRadius;
    if (s.nDistortion != 0) {
        R = std::sqrt(cx * cx + cy * cy);
        const double k = -(s.nDistortion * 0.0016);
        a = b = c = k;
        d = 1 - k - k - k;
        lens.m_dRadius = R;
        lens.m_dPolyA = a;
        lens.m_dPolyB = b;
        lens.m_dPolyC = c;
        lens.m_dPolyD = d;
    }
    const bool persp = !(s.nVertical == 0 && s.nHorizontal == 0);
    if (persp) lens.ComputePerspective(W, H, s.nVertical, s.nHorizontal);
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            double sx = x, sy = y;
            if (nMode == 1) {
                double px = x, py = y;
                if (s.nDistortion != 0) SolveRadialInverse(lens, px, py, cx, cy, s.nDistortion);
                sx = px;
                sy = py;
                if (persp) {
                    const double(&m)[3][3] = lens.m_dForward;
                    const double w = m[2][0] * px + m[2][1] * py + m[2][2];
                    sx = (m[0][0] * px + m[0][1] * py + m[0][2]) / w;
                    sy = (m[1][0] * px + m[1][1] * py + m[1][2]) / w;
                }
            } else {
                double px = x, py = y;
                if (persp) {
                    const double(&m)[3][3] = lens.m_dInverse;
                    const double w = m[2][0] * x + m[2][1] * y + m[2][2];
                    px = (m[0][0] * x + m[0][1] * y + m[0][2]) / w;
                    py = (m[1][0] * x + m[1][1] * y + m[1][2]) / w;
                }
                sx = px;
                sy = py;
                if (s.nDistortion != 0) {
                    const double u = (px - cx) / R, v = (py - cy) / R, ss = u * u + v * v;
                    if (ss > 0 && ss < 1.000001) {
                        const double r = std::sqrt(ss);
                        const double t = (a * r * ss + b * ss + c * r + d) * r;
                        sx = (t * u / r) * R + cx;
                        sy = (t * v / r) * R + cy;
                    }
                }
            }
            uint8_t value = 0;
            if (!(sx < 0 || sx > W - 1 || sy < 0 || sy > H - 1) && !std::isnan(sx) && !std::isnan(sy))
                value = in.pBuffer[static_cast<int>(std::trunc(sy + 0.5)) * in.nStride +
                                   static_cast<int>(std::trunc(sx + 0.5))];
            out.pBuffer[y * in.nStride + x] = value;
        }
}

inline void Stamp(const BufferData& out, int cx, int cy, int r, uint8_t value) {
    const int left = std::clamp(cx - r, 0, out.nWidth - 1), right = std::clamp(cx + r, 0, out.nWidth - 1);
    const int top = std::clamp(cy - r, 0, out.nHeight - 1), bottom = std::clamp(cy + r, 0, out.nHeight - 1);
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x)
            if ((x - cx) * (x - cx) + (y - cy) * (y - cy) < r * r) out.pBuffer[y * out.nStride + x] = value;
}

// One brush position on `out`, from the last position (lastX, lastY).
inline void BrushStep(int& lastX, int& lastY, int nX, int nY, int r, bool bNew, bool bFg,
                      const BufferData& out) {
    const uint8_t value = bFg ? 255 : 0;
    double dist = 0;
    if (!bNew) dist = std::pow((lastX - nX) * (lastX - nX) + (lastY - nY) * (lastY - nY), 0.5);
    if (!bNew && dist < r * 0.25) return;
    if (!bNew && dist >= r * 0.35 && r > 0) {
        const int n = static_cast<int>(dist / (r * 0.35));
        const float stepX = static_cast<float>(nX - lastX) / (n + 1);
        const float stepY = static_cast<float>(nY - lastY) / (n + 1);
        for (int i = 1; i <= n; ++i)
            Stamp(out, static_cast<int>(lastX + i * stepX + 0.5), static_cast<int>(lastY + i * stepY + 0.5), r,
                  value);
    }
    Stamp(out, nX, nY, r, value);
    lastX = nX;
    lastY = nY;
}

}  // namespace oracle
