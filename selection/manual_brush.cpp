#include "selection/manual_brush.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "runtime/dump_log.h"
#include "engine/result_codes.h"

CManualBrush::CManualBrush() : m_bufferData(), m_nLastX(0), m_nLastY(0) {}

int32_t CManualBrush::Initialize(const BufferData& mask) {
    if (!mask.pBuffer) {
        DumpLog("CManualBrush::Initialize Null Pointer : mask.pBuffer\n");
        return pcg::kResultPointer;
    }
    m_bufferData.pBuffer = mask.pBuffer;
    m_bufferData.nWidth = mask.nWidth;
    m_bufferData.nHeight = mask.nHeight;
    m_bufferData.nStride = mask.nStride;
    m_nLastX = -1;
    m_nLastY = -1;
    return pcg::kResultOk;
}

int32_t CManualBrush::Uninitialize() {
    m_bufferData.pBuffer = nullptr;
    m_bufferData.nWidth = 0;
    m_bufferData.nHeight = 0;
    m_bufferData.nStride = 0;
    m_nLastX = -1;
    m_nLastY = -1;
    return pcg::kResultOk;
}

int32_t CManualBrush::UpdateStroke(int nX, int nY, int nRadius, bool bNewStroke, bool bForeground,
                                   const BufferData& output) {
    if (!m_bufferData.pBuffer) {
        DumpLog("CManualBrush::UpdateStroke Null Pointer : m_bufferData.pBuffer\n");
        return pcg::kResultPointer;
    }
    if (!output.pBuffer) {
        DumpLog("CManualBrush::UpdateStroke Null Pointer : output.pBuffer\n");
        return pcg::kResultPointer;
    }
    if (output.pBuffer != m_bufferData.pBuffer) {
        const int64_t nBytes = static_cast<int64_t>(m_bufferData.nStride) * m_bufferData.nHeight;
        if (nBytes > 0) std::memcpy(output.pBuffer, m_bufferData.pBuffer, static_cast<size_t>(nBytes));
    }
    const uint8_t nValue = bForeground ? 255 : 0;

    double d = 0;
    if (!bNewStroke) {
        // Squares in 64 bits: far-apart positions must not overflow.
        const int64_t dx = static_cast<int64_t>(m_nLastX) - nX;
        const int64_t dy = static_cast<int64_t>(m_nLastY) - nY;
        d = std::pow(static_cast<double>(dx * dx + dy * dy), 0.5);
        // Small moves add up until they count: the last position stays.
        if (d < nRadius * 0.25) return pcg::kResultOk;
        const double dStep = nRadius * 0.35;
        // Without a positive radius the count of stamps in between is not
        // above 0 (or is no number at all for radius 0): nothing to fill in.
        if (nRadius > 0 && d >= dStep) {
            const double dCount = d / dStep;
            if (dCount < 2147483647.0) {
                const int n = static_cast<int>(dCount);
                const float stepX = static_cast<float>(nX - m_nLastX) / static_cast<float>(n + 1);
                const float stepY = static_cast<float>(nY - m_nLastY) / static_cast<float>(n + 1);
                for (int i = 1; i <= n; ++i)
                    m_fnStamp(output, static_cast<int>(m_nLastX + i * stepX + 0.5),
                              static_cast<int>(m_nLastY + i * stepY + 0.5), nRadius, nValue);
            } else {
                DumpLog("CManualBrush::UpdateStroke [Err] too many stamps between positions\n");
            }
        }
    }
    m_fnStamp(output, nX, nY, nRadius, nValue);
    m_nLastX = nX;
    m_nLastY = nY;
    return pcg::kResultOk;
}

void CManualBrush::m_fnStamp(const BufferData& output, int nX, int nY, int nRadius,
                             uint8_t nValue) {
    const int W = output.nWidth;
    const int H = output.nHeight;
    if (W < 1 || H < 1) return;
    // A negative radius is not refused: its box is clamped like any other and
    // the disc test then decides (on a 1x1 mask, radius -1 at the origin
    // paints). Radius 0 paints nothing, as no offset is below 0.
    const int64_t r = nRadius;
    const int nLeft = static_cast<int>(std::clamp<int64_t>(nX - r, 0, W - 1));
    const int nRight = static_cast<int>(std::clamp<int64_t>(nX + r, 0, W - 1));
    const int nTop = static_cast<int>(std::clamp<int64_t>(nY - r, 0, H - 1));
    const int nBottom = static_cast<int>(std::clamp<int64_t>(nY + r, 0, H - 1));
    const int64_t r2 = r * r;
    for (int y = nTop; y <= nBottom; ++y) {
        const int64_t dy = static_cast<int64_t>(y) - nY;
        const int64_t nRoom = r2 - dy * dy;  // dx^2 must stay below this
        if (nRoom <= 0) continue;
        // Widest k with k^2 < nRoom.
        int64_t k = static_cast<int64_t>(std::sqrt(static_cast<double>(nRoom)));
        while (k * k >= nRoom) --k;
        while ((k + 1) * (k + 1) < nRoom) ++k;
        const int64_t nFrom = std::max<int64_t>(nLeft, nX - k);
        const int64_t nTo = std::min<int64_t>(nRight, nX + k);
        if (nTo >= nFrom)
            std::memset(output.pBuffer + static_cast<int64_t>(y) * output.nStride + nFrom, nValue,
                        static_cast<size_t>(nTo - nFrom + 1));
    }
}
