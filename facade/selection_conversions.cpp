// The facade's conversions of selections: mask to boundary lines and back,
// correction by lens and crop settings, rescaling of a normalised list, and
// the mask dump.
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "effects/effect_keys.h"
#include "engine/constants.h"
#include "engine/result_codes.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "facade/selection_buffers.h"
#include "facade/selection_lists.h"
#include "imaging/cimage_buffer.h"
#include "runtime/dump_log.h"

using pcg::facade::AllocateMaskBuffer;
using pcg::facade::CopyIntoBuffer;
using pcg::facade::FreeMaskArray;
using pcg::facade::NewMaskArray;
using pcg::facade::ViewBytes;

namespace {

// A buffer's bytes seen as a mask of its width, with the stride equal to
// the width. The caller locks the buffer and sets pBuffer.
BufferData MaskViewOf(IImageBuffer* pBuffer) {
    BufferData data;
    data.nWidth = pBuffer->GetWidth();
    data.nStride = data.nWidth;
    data.nHeight = pBuffer->GetHeight();
    return data;
}

// Copies the visible rows of `from` into `to` (both of the same size).
void CopyRows(const BufferData& from, const BufferData& to) {
    if (!from.pBuffer || !to.pBuffer || from.nWidth <= 0) return;
    for (int y = 0; y < from.nHeight; ++y) {
        std::memcpy(to.pBuffer + static_cast<std::size_t>(y) * to.nStride,
                    from.pBuffer + static_cast<std::size_t>(y) * from.nStride, static_cast<std::size_t>(from.nWidth));
    }
}

// The value under `key` of a dictionary, with a reference for the caller;
// null when absent.
PyObject* DictItem(PyObject* dictionary, const char* key) {
    PyObject* value = PyDict_GetItemString(dictionary, key);
    if (value == nullptr) {
        if (PyErr_Occurred()) PyErr_Clear();
        return nullptr;
    }
    Py_INCREF(value);
    return value;
}

// Reads `key` of the dictionary with a one-unit format into `target`; a
// failed parse leaves the target as it was.
template <typename T>
void ReadSetting(PyObject* dictionary, const char* key, const char* format, T* target) {
    PyObject* value = PyDict_Check(dictionary) ? DictItem(dictionary, key) : nullptr;
    if (value == nullptr) return;
    T parsed = *target;
    if (PyArg_Parse(value, format, &parsed)) {
        *target = parsed;
    } else {
        PyErr_Clear();
    }
    Py_DECREF(value);
}

// A tuple item as a plain integer; 0 when it is none.
int TupleInt(PyObject* tuple, Py_ssize_t index) {
    PyObject* item = PyTuple_GetItem(tuple, index);
    if (item == nullptr) {
        PyErr_Clear();
        return 0;
    }
    Py_INCREF(item);
    const long value = PyInt_AsLong(item);
    Py_DECREF(item);
    if (value == -1 && PyErr_Occurred()) {
        PyErr_Clear();
        return 0;
    }
    return static_cast<int>(value);
}

// Zeroes everything outside the rectangle; the row `bottom` stays inside.
void ClearOutside(BYTE* pPixels, int width, int height, int left, int top, int right, int bottom) {
    if (!pPixels || width <= 0) return;
    const int clearLeft = left < 0 ? 0 : (left > width ? width : left);
    const int keepRight = right < 0 ? 0 : (right > width ? width : right);
    for (int y = 0; y < height; ++y) {
        BYTE* row = pPixels + static_cast<std::size_t>(y) * width;
        if (y < top || y > bottom) {
            std::memset(row, 0, static_cast<std::size_t>(width));
            continue;
        }
        std::memset(row, 0, static_cast<std::size_t>(clearLeft));
        if (keepRight < width) std::memset(row + keepRight, 0, static_cast<std::size_t>(width - keepRight));
    }
}

}  // namespace

PyObject* PyClipGrade::Selection_MaskToPoint(IImageBuffer* pInputBuffer, PyObject* pPyoRect) {
    DumpLog("PyClipGrade::Selection_MaskToPoint() enter\n");
    if (!pInputBuffer || !pPyoRect) Py_RETURN_NONE;

    bool clear = false;
    int left = 0, top = 0, right = 0, bottom = 0;
    if (PyTuple_Check(pPyoRect) && PyTuple_Size(pPyoRect) >= 4) {
        Py_INCREF(pPyoRect);
        left = TupleInt(pPyoRect, 0);
        top = TupleInt(pPyoRect, 1);
        right = left + TupleInt(pPyoRect, 2);
        bottom = top + TupleInt(pPyoRect, 3);
        Py_DECREF(pPyoRect);
        clear = left != 0 || top != 0 || right != 0 || bottom != 0;
    }

    BufferData maskData = MaskViewOf(pInputBuffer);
    int unPointLength = 0;
    ROI roiSrc;
    {
        PyGilUnlockScope unlocked;
        int width = 0;
        int height = 0;
        pInputBuffer->LockBuffer(&maskData.pBuffer, &width, &height);
        if (clear) ClearOutside(maskData.pBuffer, maskData.nWidth, maskData.nHeight, left, top, right, bottom);
        int32_t hr = m_SelectionTool.SelectionMaskToPoint(maskData, unPointLength);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_MaskToPoint m_SelectionTool.SelectionMaskToPoint(maskData, "
                    "(int&)unPointLength) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
        hr = m_SelectionTool.SelectionGetMaskROI(maskData, roiSrc);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_MaskToPoint m_SelectionTool.SelectionGetMaskROI(maskData, roiSrc) failed "
                    "hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
        pInputBuffer->UnlockBuffer();
    }
    if (unPointLength <= 0) {
        // Nothing to hand out; the tool's line buffer is emptied all the same.
        m_SelectionTool.m_lines.clear();
        Py_RETURN_NONE;
    }
    std::vector<SelectionLine> lines;
    try {
        lines.resize(static_cast<std::size_t>(unPointLength));
    } catch (const std::bad_alloc&) {
        DumpLog("PyClipGrade::Selection_MaskToPoint can't get the memory for the pslBoundaryLines\n");
        m_SelectionTool.m_lines.clear();
        Py_RETURN_NONE;
    }
    {
        PyGilUnlockScope unlocked;
        const int32_t hr = m_SelectionTool.SelectionGetSelectionLinePoint(lines.data());
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_MaskToPoint m_SelectionTool.SelectionGetSelectionLinePoint("
                    "pslBoundaryLines) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    PyObject* list = pcg::facade::BoundaryLineList(lines.data(), lines.size());
    if (list == nullptr) return nullptr;
    PyObject* result = Py_BuildValue("{s:O, s:(i,i,i,i,f)}", "lstLine", list, "roiSrc", roiSrc.nLeft, roiSrc.nTop,
                                     roiSrc.nWidth, roiSrc.nHeight, 0.0);
    Py_DECREF(list);
    DumpLog("PyClipGrade::Selection_MaskToPoint() end\n");
    return result;
}

IImageBuffer* PyClipGrade::Selection_PointToMask(PyObject* pPyoMaskList, int nWidth, int nHeight, bool bInv) {
    DumpLog("PyClipGrade::Selection_PointToMask() enter\n");
    if (!m_pBufferAllocator) {
        DumpLog("PyClipGrade::Selection_PointToMask Null Pointer : m_pBufferAllocator\n");
        return nullptr;
    }
    if (!pPyoMaskList) {
        DumpLog("PyClipGrade::Selection_PointToMask Null Pointer : pPyoMaskList\n");
        return nullptr;
    }
    const Py_ssize_t count = pcg::facade::ListLength(pPyoMaskList);
    if (count <= 0) return nullptr;
    std::vector<SelectionLine> lines;
    try {
        lines.resize(static_cast<std::size_t>(count));
    } catch (const std::bad_alloc&) {
        DumpLog("PyClipGrade::Selection_PointToMask can't get the memory for the pslMask\n");
        return nullptr;
    }
    pcg::facade::ReadBoundaryLines(pPyoMaskList, lines);

    BufferData maskData = pcg::facade::NewMaskData(nWidth, nHeight);
    if (!maskData.pBuffer) {
        // A negative size or one beyond memory has no mask to draw into.
        DumpLog("PyClipGrade::Selection_PointToMask can't get the memory for the maskData\n");
        return nullptr;
    }
    {
        PyGilUnlockScope unlocked;
        const int32_t hr = m_SelectionTool.SelectionPointToMask(static_cast<int>(lines.size()), lines.data(),
                                                                maskData, bInv);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_PointToMask m_SelectionTool.SelectionPointToMask(nListSize, pslMask, "
                    "maskData, bInv) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    IImageBuffer* pOutBuffer = AllocateMaskBuffer(m_pBufferAllocator, maskData.nWidth, maskData.nHeight);
    if (!pOutBuffer) {
        DumpLog("PyClipGrade::Selection_PointToMask can't get the memory for the pOutBuffer\n");
        FreeMaskArray(maskData.pBuffer);
        return nullptr;
    }
    CopyIntoBuffer(pOutBuffer, maskData.pBuffer, ViewBytes(maskData));
    FreeMaskArray(maskData.pBuffer);
    DumpLog("PyClipGrade::Selection_PointToMask() end\n");
    return pOutBuffer;
}

IImageBuffer* PyClipGrade::Selection_MaskCorrection(IImageBuffer* pInputBuffer) {
    return Selection_MaskCorrection(pInputBuffer, nullptr);
}

IImageBuffer* PyClipGrade::Selection_MaskCorrection(IImageBuffer* pInputBuffer, PyObject* pPyoMaskCorrect) {
    DumpLog("PyClipGrade::Selection_MaskCorrection() enter\n");
    if (!pInputBuffer) {
        DumpLog("PyClipGrade::Selection_MaskCorrection Null Pointer : pInputBuffer\n");
        return nullptr;
    }
    if (pPyoMaskCorrect == Py_None) {
        pInputBuffer->AddRef();
        return pInputBuffer;
    }
    BufferData inputData = MaskViewOf(pInputBuffer);
    BufferData outputData;
    {
        PyGilUnlockScope unlocked;
        int width = 0;
        int height = 0;
        pInputBuffer->LockBuffer(&inputData.pBuffer, &width, &height);
    }
    m_fnMaskCorrection(pPyoMaskCorrect, inputData, outputData);
    pInputBuffer->UnlockBuffer();
    DumpLog("PyClipGrade::Selection_MaskCorrection outputDate.nWidth %d\n", outputData.nWidth);
    DumpLog("PyClipGrade::Selection_MaskCorrection outputDate.nHeight %d\n", outputData.nHeight);
    DumpLog("PyClipGrade::Selection_MaskCorrection outputDate.nStride %d\n", outputData.nStride);

    IImageBuffer* pOutBuffer = AllocateMaskBuffer(m_pBufferAllocator, outputData.nWidth, outputData.nHeight);
    if (!pOutBuffer) {
        DumpLog("PyClipGrade::Selection_MaskCorrection can't get the memory for the pOutBuffer\n");
        FreeMaskArray(outputData.pBuffer);
        return pInputBuffer;
    }
    const std::size_t bytes = (outputData.nWidth > 0 && outputData.nHeight > 0)
                                  ? static_cast<std::size_t>(outputData.nWidth) * outputData.nHeight
                                  : 0;
    CopyIntoBuffer(pOutBuffer, outputData.pBuffer, bytes);
    FreeMaskArray(outputData.pBuffer);
    DumpLog("PyClipGrade::Selection_MaskCorrection() end\n");
    return pOutBuffer;
}

HRESULT PyClipGrade::m_fnMaskCorrection(PyObject* pPyoMaskCorrect, BufferData input, BufferData& output) {
    if (!input.pBuffer) {
        DumpLog("PyClipGrade::m_fnMaskCorrection Null Pointer : input.pBuffer\n");
        return pcg::kResultPointer;
    }
    if (!pPyoMaskCorrect || pPyoMaskCorrect == Py_None || !PyDict_Check(pPyoMaskCorrect)) {
        DumpLog("PyClipGrade::m_fnMaskCorrection Mask does not correct\n");
        output = pcg::facade::NewMaskData(input.nWidth, input.nHeight);
        CopyRows(input, output);
        return pcg::kResultOk;
    }
    Py_INCREF(pPyoMaskCorrect);
    BufferData bufferData = pcg::facade::NewMaskData(input.nWidth, input.nHeight);

    PyObject* lens = DictItem(pPyoMaskCorrect, STR_LENS_CORRECTION);
    if (lens) {
        // The lens operation reads a MaskCorrectSetting: the lens settings
        // and a warp direction. No direction is chosen here; it stays at its
        // default 0, the direct one (any value but 1), never unset bytes.
        MaskCorrectSetting maskCorrectSetting;
        LensCorrectSetting& lenscorrectSetting = maskCorrectSetting.lensCorrectSetting;
        ReadSetting(lens, STR_LENS_CORRECTION_DISTORTION, "i", &lenscorrectSetting.nDistortion);
        ReadSetting(lens, STR_LENS_CORRECTION_VERTICAL, "i", &lenscorrectSetting.nVertical);
        ReadSetting(lens, STR_LENS_CORRECTION_HORIZONTAL, "i", &lenscorrectSetting.nHorizontal);
        ReadSetting(lens, STR_LENS_CORRECTION_CA_RED, "i", &lenscorrectSetting.nCARed);
        ReadSetting(lens, STR_LENS_CORRECTION_CA_BLUE, "i", &lenscorrectSetting.nCABlue);
        Py_DECREF(lens);
        DumpLog("PyClipGrade::m_fnMaskCorrection Lens Setting nDistortion : %d\n", lenscorrectSetting.nDistortion);
        DumpLog("PyClipGrade::m_fnMaskCorrection Lens Setting nVertical : %d\n", lenscorrectSetting.nVertical);
        DumpLog("PyClipGrade::m_fnMaskCorrection Lens Setting nHorizontal : %d\n", lenscorrectSetting.nHorizontal);
        DumpLog("PyClipGrade::m_fnMaskCorrection Lens Setting nCARed : %d\n", lenscorrectSetting.nCARed);
        DumpLog("PyClipGrade::m_fnMaskCorrection Lens Setting nCABlue : %d\n", lenscorrectSetting.nCABlue);
        PyGilUnlockScope unlocked;
        const int32_t hr = m_SelectionTool.SelectionMaskOperation(input, input, MASK_LENSCORRECT,
                                                                  static_cast<void*>(&maskCorrectSetting), bufferData);
        if (hr < 0) {
            DumpLog("PyClipGrade::m_fnMaskCorrection m_SelectionTool.SelectionMaskOperation(input, input, "
                    "MASK_LENSCORRECT, (void*)&lenscorrectSetting, bufferData) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    } else {
        DumpLog("PyClipGrade::m_fnMaskCorrection no lens correction effect\n");
        CopyRows(input, bufferData);
    }

    PyObject* crop = DictItem(pPyoMaskCorrect, STR_CROPROTATE);
    if (crop) {
        CropRotateSetting croprotate;
        ReadSetting(crop, STR_CROPROTATE_ANGLE, "f", &croprotate.fAngle);
        PyObject* rect = PyDict_Check(crop) ? DictItem(crop, STR_CROPROTATE_RECT) : nullptr;
        if (rect) {
            int left = 0, top = 0, width = 0, height = 0;
            if (PyArg_ParseTuple(rect, "iiii", &left, &top, &width, &height)) {
                croprotate.nLeft = left;
                croprotate.nTop = top;
                croprotate.nWidth = width;
                croprotate.nHeight = height;
            } else {
                PyErr_Clear();
            }
            Py_DECREF(rect);
        }
        Py_DECREF(crop);
        DumpLog("PyClipGrade::m_fnMaskCorrection Crop Setting fAngle : %f\n", static_cast<double>(croprotate.fAngle));
        DumpLog("PyClipGrade::m_fnMaskCorrection Crop Setting nLeft : %d\n", croprotate.nLeft);
        DumpLog("PyClipGrade::m_fnMaskCorrection Crop Setting nTop : %d\n", croprotate.nTop);
        DumpLog("PyClipGrade::m_fnMaskCorrection Crop Setting nWidth : %d\n", croprotate.nWidth);
        DumpLog("PyClipGrade::m_fnMaskCorrection Crop Setting nHeight : %d\n", croprotate.nHeight);
        output = pcg::facade::NewMaskData(croprotate.nWidth, croprotate.nHeight);
        if (!output.pBuffer) {
            // A negative crop size has no pixels; the result is an empty mask.
            DumpLog("PyClipGrade::m_fnMaskCorrection [Err] crop size %d x %d, the result is empty\n",
                    croprotate.nWidth, croprotate.nHeight);
            output = pcg::facade::NewMaskData(0, 0);
        }
        PyGilUnlockScope unlocked;
        const int32_t hr = m_SelectionTool.SelectionMaskOperation(bufferData, bufferData, MASK_CROPROTATE,
                                                                  static_cast<void*>(&croprotate), output);
        if (hr < 0) {
            DumpLog("PyClipGrade::m_fnMaskCorrection m_SelectionTool.SelectionMaskOperation(bufferData, bufferData, "
                    "MASK_CROPROTATE, (void*)&croprotate, output) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    } else {
        output = pcg::facade::NewMaskData(bufferData.nWidth, bufferData.nHeight);
        DumpLog("PyClipGrade::m_fnMaskCorrection no crop effect\n");
        CopyRows(bufferData, output);
    }
    Py_DECREF(pPyoMaskCorrect);
    FreeMaskArray(bufferData.pBuffer);
    return pcg::kResultOk;
}

PyObject* PyClipGrade::Selection_ScaleUSSelectionList(PyObject* pPyoMaskList, int nSrcWidth, int nSrcHeight,
                                                      int nDstWidth, int nDstHeight) {
    DumpLog("PyClipGrade::Selection_ScaleUSSelectionList() enter\n");
    if (!m_ippFunctions.m_hLibrary) {
        PyGilUnlockScope unlocked;
        m_ippFunctions.Load(nullptr);
    }
    if (!m_pBufferAllocator) {
        DumpLog("PyClipGrade::Selection_ScaleUSSelectionList Null Pointer : m_pBufferAllocator\n");
        Py_RETURN_NONE;
    }
    if (!pPyoMaskList) {
        DumpLog("PyClipGrade::Selection_ScaleUSSelectionList Null Pointer : pPyoMaskList\n");
        Py_RETURN_NONE;
    }
    const Py_ssize_t count = pcg::facade::ListLength(pPyoMaskList);
    if (count <= 0) Py_RETURN_NONE;
    std::vector<float> normalised;
    std::vector<SelectionLine> lines;
    try {
        normalised.resize(static_cast<std::size_t>(count) * 3);
        lines.resize(static_cast<std::size_t>(count));
    } catch (const std::bad_alloc&) {
        DumpLog("PyClipGrade::Selection_ScaleUSSelectionList can't get the memory for the pslMask\n");
        Py_RETURN_NONE;
    }
    pcg::facade::ReadNormalisedLines(pPyoMaskList, normalised);
    const float W = static_cast<float>(nSrcWidth);
    const float H = static_cast<float>(nSrcHeight);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const float* line = &normalised[3 * index];
        lines[index].nX = static_cast<short>(static_cast<int>(static_cast<double>(W * line[0]) + 0.5));
        lines[index].nY = static_cast<short>(static_cast<int>(static_cast<double>(H * line[1]) + 0.5));
        lines[index].nLength = static_cast<short>(static_cast<int>(static_cast<double>(W * line[2]) + 0.5));
    }

    BufferData maskDataSrc = pcg::facade::NewMaskData(nSrcWidth, nSrcHeight);
    BufferData maskDataDst = pcg::facade::NewMaskData(nDstWidth, nDstHeight);
    if (!maskDataSrc.pBuffer || !maskDataDst.pBuffer) {
        DumpLog("PyClipGrade::Selection_ScaleUSSelectionList can't get the memory for the maskData\n");
        FreeMaskArray(maskDataSrc.pBuffer);
        FreeMaskArray(maskDataDst.pBuffer);
        Py_RETURN_NONE;
    }
    int nPointLength = 0;
    {
        PyGilUnlockScope unlocked;
        int32_t hr = m_SelectionTool.SelectionPointToMask(static_cast<int>(lines.size()), lines.data(), maskDataSrc,
                                                          false);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_ScaleUSSelectionList m_SelectionTool.SelectionPointToMask(nListSize, "
                    "pslMask, maskDataSrc, false) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
        const IppStatus status = ResizeBuffer_8u(m_ippFunctions, 2, 1, maskDataSrc.pBuffer, IppiSize{nSrcWidth, nSrcHeight},
                                                 nSrcWidth, maskDataDst.pBuffer, IppiSize{nDstWidth, nDstHeight},
                                                 IppiPoint{0, 0}, nDstWidth);
        if (status != 0) {
            DumpLog("PyClipGrade::Selection_ScaleUSSelectionList [Err] ResizeBuffer_8u() status=%d", status);
        }
        FreeMaskArray(maskDataSrc.pBuffer);
        hr = m_SelectionTool.SelectionMaskToPoint(maskDataDst, nPointLength);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_ScaleUSSelectionList m_SelectionTool.SelectionMaskToPoint(maskDataDst, "
                    "nPointLength) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
        ROI roiSrc;
        hr = m_SelectionTool.SelectionGetMaskROI(maskDataDst, roiSrc);
        if (hr < 0) {
            DumpLog("PyClipGrade::Selection_ScaleUSSelectionList m_SelectionTool.SelectionGetMaskROI(maskDataDst, "
                    "roiSrc) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    FreeMaskArray(maskDataDst.pBuffer);
    if (nPointLength <= 0) {
        m_SelectionTool.m_lines.clear();
        Py_RETURN_NONE;
    }
    std::vector<SelectionLine> boundary;
    try {
        boundary.resize(static_cast<std::size_t>(nPointLength));
    } catch (const std::bad_alloc&) {
        m_SelectionTool.m_lines.clear();
        Py_RETURN_NONE;
    }
    m_SelectionTool.SelectionGetSelectionLinePoint(boundary.data());
    PyObject* list = PyList_New(static_cast<Py_ssize_t>(boundary.size()));
    if (list == nullptr) return nullptr;
    for (std::size_t index = 0; index < boundary.size(); ++index) {
        const float fx = boundary[index].nX / static_cast<float>(nDstWidth);
        const float fy = boundary[index].nY / static_cast<float>(nDstHeight);
        const float fl = boundary[index].nLength / static_cast<float>(nDstWidth);
        PyObject* item = Py_BuildValue("(f,f,f)", static_cast<double>(fx), static_cast<double>(fy),
                                       static_cast<double>(fl));
        if (item == nullptr) {
            Py_DECREF(list);
            return nullptr;
        }
        PyList_SET_ITEM(list, static_cast<Py_ssize_t>(index), item);
    }
    DumpLog("PyClipGrade::Selection_ScaleUSSelectionList() end\n");
    return list;
}

void PyClipGrade::DumpIImageBuffer(IImageBuffer* pBuffer) {
    if (!pBuffer) return;
    BufferData maskData = MaskViewOf(pBuffer);
    DumpLog("@DumpIImageBuffer() Width=%d, Height=%d, pBuffer=%X", maskData.nWidth, maskData.nHeight,
            static_cast<unsigned>(reinterpret_cast<uintptr_t>(pBuffer)));
    int unPointLength = 0;
    {
        PyGilUnlockScope unlocked;
        int width = 0;
        int height = 0;
        pBuffer->LockBuffer(&maskData.pBuffer, &width, &height);
        const int32_t hr = m_SelectionTool.SelectionMaskToPoint(maskData, unPointLength);
        if (hr < 0) {
            DumpLog("PyClipGrade::DumpIImageBuffer m_SelectionTool.SelectionMaskToPoint(maskData, "
                    "(int&)unPointLength) failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
        DumpLog("========================== RawBuffer =================================");
        std::string row;
        for (int y = 0; y < maskData.nHeight && maskData.pBuffer; ++y) {
            row.assign(static_cast<std::size_t>(maskData.nWidth > 0 ? maskData.nWidth : 0), '.');
            const BYTE* pixels = maskData.pBuffer + static_cast<std::size_t>(y) * maskData.nStride;
            for (int x = 0; x < maskData.nWidth; ++x) {
                if (pixels[x]) row[static_cast<std::size_t>(x)] = 'x';
            }
            DumpLog("[%d] %s", y, row.c_str());
        }
        DumpLog("======================================================================");
        pBuffer->UnlockBuffer();
    }
    if (unPointLength <= 0) {
        m_SelectionTool.m_lines.clear();
        return;
    }
    std::vector<SelectionLine> lines;
    try {
        lines.resize(static_cast<std::size_t>(unPointLength));
    } catch (const std::bad_alloc&) {
        m_SelectionTool.m_lines.clear();
        return;
    }
    const int32_t hr = m_SelectionTool.SelectionGetSelectionLinePoint(lines.data());
    if (hr < 0) {
        DumpLog("PyClipGrade::DumpIImageBuffer m_SelectionTool.SelectionGetSelectionLinePoint(pslBoundaryLines) "
                "failed hr=0x%08X\n",
                static_cast<unsigned>(hr));
    }
    DumpLog("================== DumpIImageBuffer SelectionLine =====================");
    for (const SelectionLine& line : lines) DumpLog("(%d,%d,%d)", line.nX, line.nY, line.nLength);
    DumpLog("=======================================================================");
}

IImageBuffer* PyClipGrade::ResizeImageBuffer(IImageBuffer* pSrc, UINT nWidth, UINT nHeight) {
    PyGilUnlockScope unlocked;
    DumpLog("PyClipGrade::ResizeImageBuffer() enter\n");
    if (!m_ippFunctions.m_hLibrary) m_ippFunctions.Load(nullptr);
    if (!pSrc) return nullptr;
    const int pixelBytes = pSrc->GetPixelBytes();
    if (pixelBytes != 4) {
        DumpLog("PyClipGrade::ResizeImageBuffer [Err] Not support PixelFormat=%d!", pixelBytes);
        return nullptr;
    }
    uint8_t* pSrcPixels = nullptr;
    int srcWidth = 0;
    int srcHeight = 0;
    pSrc->LockBuffer(&pSrcPixels, &srcWidth, &srcHeight);
    IImageBuffer* pTarget = CreateImageBuffer(nWidth, nHeight, 4);
    if (!pTarget) {
        // No pixels to be had at that size: nothing to hand back.
        DumpLog("PyClipGrade::ResizeImageBuffer [Err] no buffer of %u x %u", nWidth, nHeight);
        pSrc->UnlockBuffer();
        return nullptr;
    }
    uint8_t* pDstPixels = nullptr;
    int dstWidth = 0;
    int dstHeight = 0;
    pTarget->LockBuffer(&pDstPixels, &dstWidth, &dstHeight);
    const IppStatus status = ResizeBuffer_8u(m_ippFunctions, 8, 4, pSrcPixels, IppiSize{srcWidth, srcHeight},
                                             srcWidth * 4, pDstPixels, IppiSize{dstWidth, dstHeight}, IppiPoint{0, 0},
                                             static_cast<int>(nWidth) * 4);
    if (status != 0) DumpLog("PyClipGrade::ResizeImageBuffer [Err] ResizeBuffer_8u() status=%d", status);
    pTarget->UnlockBuffer();
    pSrc->UnlockBuffer();
    DumpLog("PyClipGrade::ResizeImageBuffer() end\n");
    return pTarget;
}
