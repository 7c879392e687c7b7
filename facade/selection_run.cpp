// A selection run: the smart selection over one picture and the manual
// brush, both writing into the live mask m_LatestSelectionResult.mask.
#include <cstring>
#include <new>
#include <vector>

#include "engine/result_codes.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "facade/selection_buffers.h"
#include "facade/selection_lists.h"
#include "runtime/dump_log.h"

using pcg::facade::AllocateMaskBuffer;
using pcg::facade::CopyIntoBuffer;
using pcg::facade::ViewBytes;

namespace {

// The picture for the selection engine: the first three bytes of every
// pixel of a packed 4-byte source, tightly packed. Null for a null source.
BYTE* ConvertTo24Bits(const BYTE* pSource, int nWidth, int nHeight) {
    if (!pSource) return nullptr;
    BYTE* pTarget = pcg::facade::NewMaskArray(static_cast<int64_t>(nWidth) * 3, nHeight);
    if (!pTarget) return nullptr;
    const std::size_t pixels = static_cast<std::size_t>(nWidth) * nHeight;
    for (std::size_t index = 0; index < pixels; ++index) {
        std::memcpy(pTarget + 3 * index, pSource + 4 * index, 3);
    }
    return pTarget;
}

}  // namespace

void PyClipGrade::m_fnFreeSelectionMask() {
    BufferData& mask = m_LatestSelectionResult.mask;
    // The brush aliases the mask: it must not keep a view of freed bytes.
    if (m_ManualBrush.m_bufferData.pBuffer && m_ManualBrush.m_bufferData.pBuffer == mask.pBuffer) {
        m_ManualBrush.m_bufferData.pBuffer = nullptr;
        m_bBrushOnMask = true;
    }
    pcg::facade::FreeMaskArray(mask.pBuffer);
    mask.pBuffer = nullptr;
    mask.nWidth = 0;
    mask.nHeight = 0;
    mask.nStride = 0;
}

IImageBuffer* PyClipGrade::m_fnCopyOfMask(const char* pszFailure) {
    const BufferData& mask = m_LatestSelectionResult.mask;
    IImageBuffer* pOutBuffer = AllocateMaskBuffer(m_pBufferAllocator, mask.nWidth, mask.nHeight);
    if (!pOutBuffer) {
        DumpLog("%s", pszFailure);
        return nullptr;
    }
    CopyIntoBuffer(pOutBuffer, mask.pBuffer, ViewBytes(mask));
    return pOutBuffer;
}

HRESULT PyClipGrade::m_fnSetSelectionResultMaskData(PyObject* pPyoMaskLine, bool bMaskInvert) {
    if (!pPyoMaskLine) {
        DumpLog("PyClipGrade::m_fnSetSelectionResultMaskData Null Pointer : pPyoMaskLine\n");
        return pcg::kResultPointer;
    }
    if (m_nSelectionWidth == 0 || m_nSelectionHeight == 0) {
        DumpLog("PyClipGrade::m_fnSetSelectionResultMaskData w or h == 0\n");
        return pcg::kResultOk;
    }
    std::vector<SelectionLine> lines;
    const Py_ssize_t nLineSize = pcg::facade::ListLength(pPyoMaskLine);
    if (nLineSize > 0) {
        try {
            lines.resize(static_cast<std::size_t>(nLineSize));
        } catch (const std::bad_alloc&) {
            DumpLog("PyClipGrade::m_fnSetSelectionResultMaskData can't get the memory for the SelectionLine\n");
            return pcg::kResultOk;
        }
        pcg::facade::ReadBoundaryLines(pPyoMaskLine, lines);
    } else {
        DumpLog("PyClipGrade::m_fnSetSelectionResultMaskData nLineSize < 0\n");
    }

    m_fnFreeSelectionMask();
    BufferData& mask = m_LatestSelectionResult.mask;
    mask.pBuffer = pcg::facade::NewMaskArray(m_nSelectionWidth, m_nSelectionHeight);
    if (!mask.pBuffer) {
        DumpLog("PyClipGrade::m_fnSetSelectionResultMaskData can't get the memory for the mask\n");
        return pcg::kResultFail;
    }
    mask.nWidth = m_nSelectionWidth;
    mask.nHeight = m_nSelectionHeight;
    mask.nStride = m_nSelectionWidth;
    if (m_bBrushOnMask) {
        // The brush follows the live mask to its new bytes; its last
        // position stays, as the stroke has not ended.
        m_ManualBrush.m_bufferData.pBuffer = mask.pBuffer;
        m_ManualBrush.m_bufferData.nWidth = mask.nWidth;
        m_ManualBrush.m_bufferData.nHeight = mask.nHeight;
        m_ManualBrush.m_bufferData.nStride = mask.nStride;
        m_bBrushOnMask = false;
    }

    if (!lines.empty()) {
        PyGilUnlockScope unlocked;
        const int32_t hr = m_SelectionTool.SelectionPointToMask(static_cast<int>(lines.size()), lines.data(), mask,
                                                                bMaskInvert);
        if (hr < 0) {
            DumpLog("PyClipGrade::m_fnSetSelectionResultMaskData m_SelectionTool.SelectionPointToMask(nLineSize, "
                    "pslLines, m_LatestSelectionResult.mask, bMaskInvert) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    } else {
        DumpLog("PyClipGrade::m_fnSetSelectionResultMaskData pslLines == NULL\n");
    }
    return pcg::kResultOk;
}

HRESULT PyClipGrade::Selection_Initialize(IImageBuffer* pBufferData, PyObject* pPyoMaskLine) {
    DumpLog("PyClipGrade::Selection_Initialize() enter\n");
    if (!pBufferData) {
        DumpLog("PyClipGrade::Selection_Initialize Null Pointer : pBufferData\n");
        return pcg::kResultPointer;
    }
    const int depth = pBufferData->GetPixelBytes();
    if (depth != 4) {
        DumpLog("PyClipGrade::Selection_Initialize [Err] not support buffer pixel depth=%d", depth);
        return pcg::kResultFail;
    }
    const int width = pBufferData->GetWidth();
    const int height = pBufferData->GetHeight();
    m_nSelectionWidth = width;
    m_nSelectionHeight = height;
    {
        PyGilUnlockScope unlocked;
        uint8_t* pPixels = nullptr;
        int lockedWidth = 0;
        int lockedHeight = 0;
        pBufferData->LockBuffer(&pPixels, &lockedWidth, &lockedHeight);
        BYTE* pPicture = ConvertTo24Bits(pPixels, width, height);
        if (!pPicture) DumpLog("PyClipGrade::Selection_Initialize convert fail!");
        pBufferData->UnlockBuffer();
        pcg::facade::FreeMaskArray(m_selectionBufData.pBuffer);
        m_selectionBufData.pBuffer = pPicture;
        m_selectionBufData.nWidth = width;
        m_selectionBufData.nHeight = height;
        m_selectionBufData.nColorDepth = 8;
        m_selectionBufData.nChannelBoundary = 255;
        m_selectionBufData.nStride = width * 3;
        m_selectionBufData.eColorSpace = static_cast<COLOR_SPACE>(0);

        if (m_MagicSelection.m_pMagicSelection) {
            // An object from an earlier run that was never closed would be
            // lost with its picture when the pointer is replaced.
            DumpLog("PyClipGrade::Selection_Initialize the last run was not uninitialized, close it first\n");
            m_MagicSelection.Uninitialize(&m_ZenodorLoader);
        }
        const int32_t hr = m_MagicSelection.Initialize(&m_ZenodorLoader, m_selectionBufData);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_Initialize m_MagicSelection.Initialize(&m_ZenodorLoader, "
                    "m_selectionBufData) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    m_fnSetSelectionResultMaskData(pPyoMaskLine, false);
    DumpLog("PyClipGrade::Selection_Initialize() end\n");
    return pcg::kResultOk;
}

HRESULT PyClipGrade::Selection_Uninitialize() {
    DumpLog("PyClipGrade::Selection_Uninitialize() enter\n");
    m_nSelectionWidth = 0;
    m_nSelectionHeight = 0;
    m_fnFreeSelectionMask();
    {
        PyGilUnlockScope unlocked;
        const int32_t hr = m_MagicSelection.Uninitialize(&m_ZenodorLoader);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_Uninitialize m_MagicSelection.Uninitialize(&m_ZenodorLoader) failed "
                    "hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    DumpLog("PyClipGrade::Selection_Uninitialize() end\n");
    return pcg::kResultOk;
}

IImageBuffer* PyClipGrade::Selection_MagicSelect(PyObject* pPyoLstPos, int nRadius, bool bStrokeFlag1,
                                                 bool bStrokeFlag2, bool bStrokeFlag3) {
    DumpLog("PyClipGrade::Selection_MagicSelect() enter\n");
    if (!m_pBufferAllocator) {
        DumpLog("PyClipGrade::Selection_MagicSelect Null Pointer : m_pBufferAllocator\n");
        return nullptr;
    }
    if (!pPyoLstPos) {
        DumpLog("PyClipGrade::Selection_MagicSelect Null Pointer : pPyoLstPos\n");
        return nullptr;
    }
    const Py_ssize_t count = pcg::facade::ListLength(pPyoLstPos);
    if (count <= 0) {
        DumpLog("PyClipGrade::Selection_MagicSelect Size of Position <= 0\n");
        return nullptr;
    }
    std::vector<int> positions;
    try {
        positions.resize(static_cast<std::size_t>(count) * 2);
    } catch (const std::bad_alloc&) {
        DumpLog("PyClipGrade::Selection_MagicSelect Size of Position <= 0\n");
        return nullptr;
    }
    pcg::facade::ReadPositions(pPyoLstPos, positions);
    {
        PyGilUnlockScope unlocked;
        for (Py_ssize_t index = 0; index < count; ++index) {
            int64_t nTimeStamp = 0;
            int32_t hr = m_MagicSelection.GetCurrentTimeStamp(nTimeStamp);
            if (hr < 0) {
                DumpLog("PyClipGrade::Selection_MagicSelect m_MagicSelection.GetCurrentTimeStamp(nTimeStamp) failed "
                        "hr=0x%08X\n",
                        static_cast<unsigned>(hr));
            }
            MagicStroke msStroke = {};
            msStroke.nX = positions[2 * index];
            msStroke.nY = positions[2 * index + 1];
            msStroke.nRadius = nRadius;
            msStroke.bFirstFlag = bStrokeFlag1;
            msStroke.bSecondFlag = bStrokeFlag2;
            msStroke.bThirdFlag = bStrokeFlag3;
            msStroke.llTimeStamp = nTimeStamp;
            hr = m_MagicSelection.MagicSelect(msStroke, m_LatestSelectionResult);
            if (hr < 0) {
                DumpLog("PyClipGrade::Selection_MagicSelect m_MagicSelection.MagicSelect(msStroke, "
                        "m_LatestSelectionResult) failed hr=0x%08X\n",
                        static_cast<unsigned>(hr));
            }
        }
    }
    IImageBuffer* pOutBuffer = m_fnCopyOfMask("PyClipGrade::Selection_MagicSelect Null Pointer : pOutBuffer\n");
    if (pOutBuffer) DumpLog("PyClipGrade::Selection_MagicSelect() end\n");
    return pOutBuffer;
}

HRESULT PyClipGrade::Selection_ClearStrokeHistory() {
    DumpLog("PyClipGrade::Selection_ClearStrokeHistory() enter\n");
    {
        PyGilUnlockScope unlocked;
        const int32_t hr = m_MagicSelection.ClearStrokeHistory();
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_ClearStrokeHistory m_MagicSelection.ClearStrokeHistory() failed "
                    "hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    DumpLog("PyClipGrade::Selection_ClearStrokeHistory() end\n");
    return pcg::kResultOk;
}

HRESULT PyClipGrade::Selection_Undo(int nStep) {
    DumpLog("PyClipGrade::Selection_Undo() enter\n");
    {
        PyGilUnlockScope unlocked;
        const int32_t hr = m_MagicSelection.Undo(nStep);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_Undo m_MagicSelection.Undo(nStep) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    DumpLog("PyClipGrade::Selection_Undo() end\n");
    return pcg::kResultOk;
}

HRESULT PyClipGrade::Selection_Redo(int nStep) {
    DumpLog("PyClipGrade::Selection_Redo() enter\n");
    {
        PyGilUnlockScope unlocked;
        const int32_t hr = m_MagicSelection.Redo(nStep);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_Redo m_MagicSelection.Redo(nStep) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    DumpLog("PyClipGrade::Selection_Redo() end\n");
    return pcg::kResultOk;
}

HRESULT PyClipGrade::Manual_Initialize(PyObject* pPyoMaskLine, int nWidth, int nHeight) {
    DumpLog("PyClipGrade::Manual_Initialize() enter\n");
    m_nSelectionWidth = nWidth;
    m_nSelectionHeight = nHeight;
    m_fnSetSelectionResultMaskData(pPyoMaskLine, false);
    {
        PyGilUnlockScope unlocked;
        const int32_t hr = m_ManualBrush.Initialize(m_LatestSelectionResult.mask);
        if (hr < 0) {
            DumpLog("PyClipGrade::Manual_Initialize m_ManualBrush.Initialize(m_LatestSelectionResult.mask) failed "
                    "hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    m_bBrushOnMask = false;
    DumpLog("PyClipGrade::Manual_Initialize() end\n");
    return pcg::kResultOk;
}

HRESULT PyClipGrade::Manual_Uninitialize() {
    DumpLog("PyClipGrade::Manual_Uninitialize() enter\n");
    m_nSelectionWidth = 0;
    m_nSelectionHeight = 0;
    m_fnFreeSelectionMask();
    {
        PyGilUnlockScope unlocked;
        m_ManualBrush.Uninitialize();
    }
    m_bBrushOnMask = false;
    DumpLog("PyClipGrade::Manual_Uninitialize() end\n");
    return pcg::kResultOk;
}

IImageBuffer* PyClipGrade::Manual_UpdateStroke(PyObject* pPyoLstPos, int nRadius, bool bNewStroke, bool bForeground) {
    DumpLog("PyClipGrade::Manual_UpdateStroke() enter\n");
    if (!m_pBufferAllocator) {
        DumpLog("PyClipGrade::Manual_UpdateStroke Null Pointer : m_pBufferAllocator\n");
        return nullptr;
    }
    if (!pPyoLstPos) {
        DumpLog("PyClipGrade::Manual_UpdateStroke Null Pointer : pPyoLstPos\n");
        return nullptr;
    }
    const Py_ssize_t count = pcg::facade::ListLength(pPyoLstPos);
    if (count <= 0) {
        DumpLog("PyClipGrade::Manual_UpdateStroke Size of Position <= 0\n");
        return nullptr;
    }
    std::vector<int> positions;
    try {
        positions.resize(static_cast<std::size_t>(count) * 2);
    } catch (const std::bad_alloc&) {
        DumpLog("PyClipGrade::Manual_UpdateStroke can't get the memory for the SelectionLine\n");
        return nullptr;
    }
    pcg::facade::ReadPositions(pPyoLstPos, positions);
    {
        PyGilUnlockScope unlocked;
        for (Py_ssize_t index = 0; index < count; ++index) {
            const int32_t hr = m_ManualBrush.UpdateStroke(positions[2 * index], positions[2 * index + 1], nRadius,
                                                          index == 0 ? bNewStroke : false, bForeground,
                                                          m_LatestSelectionResult.mask);
            if (hr < 0) {
                DumpLog("PyClipGrade::Manual_UpdateStroke m_ManualBrush.UpdateStroke(pLstPos[i][0], pLstPos[i][1], "
                        "nRadius, bNewStroke, bForeground, m_LatestSelectionResult.mask) failed hr=0x%08X\n",
                        static_cast<unsigned>(hr));
            }
        }
    }
    IImageBuffer* pOutBuffer = m_fnCopyOfMask("PyClipGrade::Manual_UpdateStroke Null Pointer : pOutBuffer\n");
    if (pOutBuffer) DumpLog("PyClipGrade::Manual_UpdateStroke() end\n");
    return pOutBuffer;
}
