// CManualBrush: the round brush that paints discs into the selection mask
// along the positions of a stroke, filling gaps between distant positions.
// It aliases the facade's mask and owns nothing.
#pragma once

#include <cstdint>

#include "engine/records/image_records.h"

class CManualBrush {
public:
    CManualBrush();

    // Keeps pBuffer, nWidth, nHeight and nStride of the mask and forgets the
    // last position.
    int32_t Initialize(const BufferData& mask);
    // One position of the brush: paints 255 (bForeground) or 0 into output.
    int32_t UpdateStroke(int nX, int nY, int nRadius, bool bNewStroke, bool bForeground,
                         const BufferData& output);
    int32_t Uninitialize();

    BufferData m_bufferData;
    int32_t m_nLastX;
    int32_t m_nLastY;

private:
    // A filled disc of pixels with dx^2 + dy^2 < nRadius^2, clipped to output.
    static void m_fnStamp(const BufferData& output, int nX, int nY, int nRadius, uint8_t nValue);
};
