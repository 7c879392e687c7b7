// Single frames and colour look-up tables: a clip's effects rendered onto a
// script's picture through the buffer agent, and tables set on, cleared from
// and applied for clips. ApplyBufferSetting and LUTSetting are laid out here
// for the agent (engine/buffer_settings.h) and stay this side's.
#include <cstdlib>
#include <cstring>

#include "engine/buffer_settings.h"
#include "engine/result_codes.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "imaging/cimage_buffer.h"
#include "masks/script_reading.h"
#include "runtime/dump_log.h"

namespace {

// Aspect ratios from 1.28 to 1.38, both included, are 4:3; all else 16:9.
void AspectOf(double ratio, int32_t* numerator, int32_t* denominator) {
    const bool fourThree = ratio >= 1.28 && ratio <= 1.38;
    *numerator = fourThree ? 4 : 16;
    *denominator = fourThree ? 3 : 9;
}

// Three floats from a list of exactly three, each narrowed from
// PyFloat_AsDouble; anything else leaves `values` as they are.
void ReadDomain(PyObject* list, float values[3]) {
    if (pcg::masks::ScriptListSize(list) != 3) return;
    for (int32_t i = 0; i < 3; ++i) {
        pcg::masks::ScriptRef item = pcg::masks::ListItem(list, i);
        // An element that does not convert gives the interpreter's -1.0.
        values[i] = static_cast<float>(item ? pcg::masks::FloatOf(item.get()) : -1.0);
    }
}

}  // namespace

IImageBuffer* PyClipGrade::ApplyEffectOnBuffer(UINT videoID, long nParam, IImageBuffer* pSrc, LONGLONG llTime,
                                               UINT nFlags) {
    if (pSrc == nullptr || m_dspBufAgent == nullptr) return nullptr;
    PyGilUnlockScope unlocked;
    // The agent reads the source as 4 bytes per pixel with computed stride:
    // any other depth would be read past its end.
    if (pSrc->GetPixelBytes() != 4) {
        DumpLog("PyClipGrade::ApplyEffectOnBuffer [Err] source of %d bytes per pixel, 4 expected\n",
                pSrc->GetPixelBytes());
        return nullptr;
    }
    uint8_t* pSrcPixels = nullptr;
    int width = 0;
    int height = 0;
    pSrc->LockBuffer(&pSrcPixels, &width, &height);
    const size_t frameBytes = static_cast<size_t>(width) * static_cast<size_t>(height) * 4;

    uint8_t* pCopy = nullptr;
    if (m_dspBufAgent->NeedsSourceCopy(videoID)) {
        pCopy = static_cast<uint8_t*>(std::malloc(frameBytes > 0 ? frameBytes : 1));
        if (pCopy == nullptr) {
            DumpLog("PyClipGrade::ApplyEffectOnBuffer [Err] no copy of %zu bytes\n", frameBytes);
            pSrc->UnlockBuffer();
            return nullptr;
        }
        if (frameBytes > 0) std::memcpy(pCopy, pSrcPixels, frameBytes);
        pSrcPixels = pCopy;
    }

    IImageBuffer* pResult = CreateImageBuffer(static_cast<UINT>(width), static_cast<UINT>(height), 4);
    if (pResult == nullptr) {
        DumpLog("PyClipGrade::ApplyEffectOnBuffer [Err] no result of %d x %d\n", width, height);
        pSrc->UnlockBuffer();
        std::free(pCopy);
        return nullptr;
    }
    uint8_t* pDstPixels = nullptr;
    int dstWidth = 0;
    int dstHeight = 0;
    pResult->LockBuffer(&pDstPixels, &dstWidth, &dstHeight);

    // Read as the agent writes it; an agent that writes nothing gives 16:9.
    double aspect = 0.0;
    m_dspBufAgent->GetVideoAspectRatio(videoID, 0, 0, &aspect);
    const double ratio = height != 0 ? static_cast<double>(width) / height : 0.0;

    ApplyBufferSetting setting;
    // Every byte set, padding included: the agent may read the block whole.
    std::memset(static_cast<void*>(&setting), 0, sizeof(setting));
    setting.nVideoID = videoID;
    setting.nParam = static_cast<int32_t>(nParam);
    setting.llTime = llTime;
    setting.pSrcBuffer = pSrcPixels;
    setting.pDstBuffer = pDstPixels;
    setting.nSrcWidth = width;
    setting.nSrcHeight = height;
    setting.nSrcStride = width * 4;
    setting.nDstWidth = width;
    setting.nDstHeight = height;
    setting.nDstStride = width * 4;
    AspectOf(aspect, &setting.nAspectNumerator, &setting.nAspectDenominator);

    RECT rect;
    rect.left = 0;
    rect.top = 0;
    rect.right = width;
    rect.bottom = height;
    m_dspBufAgent->AdjustBufferRect(videoID, width, height, ratio, &rect);
    // Field for field: the third and fourth hold the rectangle's right and bottom.
    setting.roi.nLeft = rect.left;
    setting.roi.nTop = rect.top;
    setting.roi.nWidth = rect.right;
    setting.roi.nHeight = rect.bottom;
    setting.roi.fAngle = 0.0f;
    setting.nReserved84 = 0;
    setting.nFlags = nFlags;
    setting.nReserved100 = 1;

    m_dspBufAgent->ApplyEffectOnBuffer(m_pImageRetouch, &setting);

    pResult->UnlockBuffer();
    pSrc->UnlockBuffer();
    std::free(pCopy);
    return pResult;
}

bool PyClipGrade::ApplyLUTOnBuffer(UINT videoID, IImageBuffer* pBuffer) {
    if (m_dspAgent == nullptr) return false;
    return m_dspAgent->ApplyLUTOnBuffer(videoID, pBuffer);
}

HRESULT PyClipGrade::SetLUT(PyObject* pyVideoIDList, PyObject* pySize, PyObject* pyDomainMin,
                            PyObject* pyDomainMax, PyObject* pyTable, bool useBufferAgent) {
    using pcg::masks::ScriptRef;
    DumpLog("PyClipGrade::SetLUT() enter\n");
    if (pySize == nullptr || pyDomainMin == nullptr || pyDomainMax == nullptr || pyTable == nullptr) {
        return pcg::kResultFail;
    }
    IVXHvnDspAgent* agent = m_fnSelectAgent(useBufferAgent);
    if (agent == nullptr) {
        DumpLog("PyClipGrade::SetLUT Null Pointer : agent\n");
        return pcg::kResultFail;
    }
    if (pyVideoIDList == nullptr) {
        DumpLog("PyClipGrade::SetLUT Null Pointer : pyVideoIDList\n");
        return pcg::kResultFail;
    }
    // Every object is held for the whole reading: a conversion may run
    // script code that drops the caller's own references.
    ScriptRef ids = ScriptRef::Hold(pyVideoIDList);
    ScriptRef size = ScriptRef::Hold(pySize);
    ScriptRef domainMin = ScriptRef::Hold(pyDomainMin);
    ScriptRef domainMax = ScriptRef::Hold(pyDomainMax);
    ScriptRef table = ScriptRef::Hold(pyTable);

    LUTSetting setting;
    if (pcg_IsScriptInteger(size.get())) setting.nSize = pcg::masks::HostLongOf(size.get());
    ReadDomain(domainMin.get(), setting.fDomainMin);
    ReadDomain(domainMax.get(), setting.fDomainMax);
    const int32_t tableLength = pcg::masks::ScriptListSize(table.get());
    if (tableLength > 0 && !setting.table.reserve(static_cast<size_t>(tableLength))) {
        DumpLog("PyClipGrade::SetLUT [Err] no room for a table of %d values\n", tableLength);
        return pcg::kResultFail;
    }
    for (int32_t i = 0; i < tableLength; ++i) {
        ScriptRef item = pcg::masks::ListItem(table.get(), i);
        if (!item) break;  // the list grew shorter under a conversion
        setting.table.push_back(static_cast<float>(pcg::masks::FloatOf(item.get())));
    }
    const int32_t idCount = pcg::masks::ScriptListSize(ids.get());
    for (int32_t i = 0; i < idCount; ++i) {
        ScriptRef item = pcg::masks::ListItem(ids.get(), i);
        if (!item) break;
        agent->SetLUT(static_cast<uint32_t>(pcg::masks::HostLongOf(item.get())), &setting);
    }
    DumpLog("PyClipGrade::SetLUT() end\n");
    setting.table.Free();
    return pcg::kResultOk;
}

HRESULT PyClipGrade::ClearLUT(PyObject* pyVideoIDList, bool useBufferAgent) {
    DumpLog("PyClipGrade::ClearLUT() enter\n");
    IVXHvnDspAgent* agent = m_fnSelectAgent(useBufferAgent);
    if (agent == nullptr) {
        DumpLog("PyClipGrade::ClearLUT Null Pointer : agent\n");
        return pcg::kResultPointer;
    }
    if (pyVideoIDList == nullptr) {
        DumpLog("PyClipGrade::ClearLUT Null Pointer : pyVideoIDList\n");
        return pcg::kResultPointer;
    }
    pcg::masks::ScriptRef ids = pcg::masks::ScriptRef::Hold(pyVideoIDList);
    const int32_t idCount = pcg::masks::ScriptListSize(ids.get());
    for (int32_t i = 0; i < idCount; ++i) {
        pcg::masks::ScriptRef item = pcg::masks::ListItem(ids.get(), i);
        if (!item) break;
        agent->ClearLUT(static_cast<uint32_t>(pcg::masks::HostLongOf(item.get())));
    }
    DumpLog("PyClipGrade::ClearLUT() end\n");
    return pcg::kResultOk;
}
