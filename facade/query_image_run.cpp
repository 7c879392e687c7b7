// The one-picture questions to the image engine: a run of SetImage,
// RegisterImageRatio, a query task, the task run, the query, and the
// teardown, on a picture the script hands in. The order of the engine calls
// is the engine's contract and is kept exactly; so are the failure paths: a
// run that fails before the query leaves the image registered.
#include <cstdlib>
#include <cstring>

#include "engine/result_codes.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "runtime/dump_log.h"

namespace {

constexpr int32_t kQueryBufferID = 1;
constexpr float kQueryRatio = 1.0f;
constexpr long kTaskMaskHsl = 0x10;
constexpr long kTaskMaskToneCurve = 0x2000;

// The picture of a run: locked pixels, 4 bytes per pixel, rows packed.
BufferData RunPicture(uint8_t* pixels, int width, int height) {
    BufferData data;
    data.pBuffer = pixels;
    data.nWidth = width;
    data.nHeight = height;
    data.nStride = width * 4;
    data.nColorDepth = 8;
    data.nChannelBoundary = 255;
    data.ePixelFormat = PIXEL_ARGB32;
    return data;
}

// 3 bytes per pixel to 4: the three bytes in order, then 255. Null
// arguments, or a size whose array cannot be had, give null.
uint8_t* ConvertBgrToArgb(const uint8_t* source, int width, int height) {
    if (source == nullptr || width <= 0 || height <= 0) return nullptr;
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    auto* out = static_cast<uint8_t*>(std::malloc(count * 4));
    if (out == nullptr) return nullptr;
    for (size_t i = 0; i < count; ++i) {
        out[i * 4] = source[i * 3];
        out[i * 4 + 1] = source[i * 3 + 1];
        out[i * 4 + 2] = source[i * 3 + 2];
        out[i * 4 + 3] = 255;
    }
    return out;
}

}  // namespace

HRESULT PyClipGrade::m_fnSetImage(long lImageID, BufferData* pBufferData) {
    ImageRetouchSetting imageSetting;
    const HRESULT hr = m_pImageRetouch->SetImage(static_cast<int32_t>(lImageID), pBufferData, imageSetting);
    if (hr < 0) {
        DumpLog("PyClipGrade::SetImage m_pImageRetouch->SetImage(lImageID, &pBufferData, imageSetting) failed "
                "hr=0x%08X\n",
                static_cast<unsigned>(hr));
    }
    return hr;
}

HRESULT PyClipGrade::m_fnRegisterImageRatio(long lImageID, long lBufferID, float fRatio, BufferData* ratioBuffer) {
    const HRESULT hr = m_pImageRetouch->RegisterImageRatio(static_cast<int32_t>(lImageID),
                                                           static_cast<int32_t>(lBufferID), fRatio, ratioBuffer);
    if (hr < 0) {
        DumpLog("PyClipGrade::RegisterImageRatio m_pImageRetouch->RegisterImageRatio(lImageID, lBufferID, fRatio, "
                "ratioBuffer) failed hr=0x%08X\n",
                static_cast<unsigned>(hr));
    }
    return hr;
}

HRESULT PyClipGrade::m_fnUnregisterImageRatio(long lImageID, long lBufferID) {
    const HRESULT hr =
        m_pImageRetouch->UnregisterImageRatio(static_cast<int32_t>(lImageID), static_cast<int32_t>(lBufferID));
    if (hr < 0) {
        DumpLog("PyClipGrade::UnregisterImageRatio m_pImageRetouch->UnregisterImageRatio(lImageID, lBufferID) failed "
                "hr=0x%08X\n",
                static_cast<unsigned>(hr));
    }
    return hr;
}

HRESULT PyClipGrade::m_fnReleaseImage(long lImageID) {
    const HRESULT hr = m_pImageRetouch->ReleaseImage(static_cast<int32_t>(lImageID));
    if (hr < 0) {
        DumpLog("PyClipGrade::ReleaseImage m_pImageRetouch->ReleaseImage(lImageID) failed hr=0x%08X\n",
                static_cast<unsigned>(hr));
    }
    return hr;
}

bool PyClipGrade::SetImage(long lImageID, BufferData* pBufferData, ImageRetouchSetting imageSetting) {
    if (m_pImageRetouch == nullptr) return false;
    (void)imageSetting;  // every picture is taken the same way
    return m_fnSetImage(lImageID, pBufferData) >= 0;
}

bool PyClipGrade::RegisterImageRatio(long lImageID, long lBufferID, float fRatio, BufferData* ratioBuffer) {
    return m_pImageRetouch != nullptr && m_fnRegisterImageRatio(lImageID, lBufferID, fRatio, ratioBuffer) >= 0;
}

bool PyClipGrade::UnregisterImageRatio(long lImageID, long lBufferID) {
    return m_pImageRetouch != nullptr && m_fnUnregisterImageRatio(lImageID, lBufferID) >= 0;
}

bool PyClipGrade::ReleaseImage(long lImageID) {
    return m_pImageRetouch != nullptr && m_fnReleaseImage(lImageID) >= 0;
}

bool PyClipGrade::Run_Query_TATMapInfoTask(long lImageID, long lTaskMask, IImageBuffer* pBuffer, int nX, int nY,
                                           PixelInfo& info) {
    DumpLog("PyClipGrade::Run_Query_TATMapInfoTask() enter\n");
    if (m_pImageRetouch == nullptr || pBuffer == nullptr) return false;
    // Another script thread may hold the picture's lock: wait without the
    // interpreter lock. No script object is touched from here on.
    PyGilUnlockScope unlocked;
    if (pBuffer->GetPixelBytes() != 4) {
        DumpLog("PyClipGrade::Run_Query_TATMapInfoTask not support image format!");
        return false;
    }
    const int32_t imageID = static_cast<int32_t>(lImageID);
    uint8_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    pBuffer->LockBuffer(&pixels, &width, &height);
    BufferData pBufferData = RunPicture(pixels, width, height);
    if (m_fnSetImage(lImageID, &pBufferData) < 0 ||
        m_fnRegisterImageRatio(lImageID, kQueryBufferID, kQueryRatio, &pBufferData) < 0) {
        pBuffer->UnlockBuffer();
        return false;
    }
    const bool hsl = (lTaskMask & kTaskMaskHsl) != 0;
    const bool toneCurve = !hsl && (lTaskMask & kTaskMaskToneCurve) != 0;
    if (hsl || toneCurve) {
        ImageTaskRecord task;
        task.eFunctionID = hsl ? FUNCTION_GET_HSL_TAT_MAP : FUNCTION_GET_TONECURVE_TAT_MAP;
        const HRESULT hr = m_pImageRetouch->Image_PushTask(imageID, kQueryBufferID, &task);
        if (hr < 0) {
            DumpLog("PyClipGrade::Run_Query_TATMapInfoTask Image_PushTask failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
            pBuffer->UnlockBuffer();
            return false;
        }
    }
    HRESULT hr = m_pImageRetouch->Image_StartRunAllTask(imageID, kQueryBufferID);
    if (hr < 0) {
        DumpLog("PyClipGrade::Run_Query_TATMapInfoTask Image_StartRunAllTask failed hr=0x%08X\n",
                static_cast<unsigned>(hr));
        pBuffer->UnlockBuffer();
        return false;
    }
    hr = m_pImageRetouch->Image_RunAllTask(imageID, kQueryBufferID, ImageRunAllTaskSetting());
    if (hr < 0) {
        DumpLog("PyClipGrade::Run_Query_TATMapInfoTask Image_RunAllTask failed hr=0x%08X\n",
                static_cast<unsigned>(hr));
        pBuffer->UnlockBuffer();
        return false;
    }
    // A failed question leaves `info` as the caller prepared it.
    if (hsl) {
        hr = m_pImageRetouch->Query_TATMapInfo(imageID, kQueryBufferID, nX, nY, &info);
        if (hr < 0) {
            DumpLog("PyClipGrade::Run_Query_TATMapInfoTask Query_TATMapInfo failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    } else if (toneCurve) {
        hr = m_pImageRetouch->Query_ToneTATMapInfo(imageID, kQueryBufferID, nX, nY, &info);
        if (hr < 0) {
            DumpLog("PyClipGrade::Run_Query_TATMapInfoTask Query_ToneTATMapInfo failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    pBuffer->UnlockBuffer();
    m_fnUnregisterImageRatio(lImageID, kQueryBufferID);
    return m_fnReleaseImage(lImageID) >= 0;
}

namespace {

// The record the TAT map questions start from: no band, no weight.
PixelInfo PreparedPixelInfo() {
    PixelInfo info;
    info.hueColor1 = Hue_None;
    info.hueColor2 = Hue_None;
    info.dWeight1 = 0;
    info.dWeight2 = 0;
    info.bGetROMMRGB = 1;
    return info;
}

}  // namespace

PyObject* PyClipGrade::Query_TATMapInfo(long lImageID, IImageBuffer* pBuffer, int nX, int nY) {
    PixelInfo info = PreparedPixelInfo();
    if (!Run_Query_TATMapInfoTask(lImageID, kTaskMaskHsl, pBuffer, nX, nY, info)) {
        Py_RETURN_NONE;
    }
    return Py_BuildValue("{s:d, s:d, s:i, s:i}", "TATMapWeight1", info.dWeight1, "TATMapWeight2", info.dWeight2,
                         "TATMapHueColor1", static_cast<int>(info.hueColor1), "TATMapHueColor2",
                         static_cast<int>(info.hueColor2));
}

PyObject* PyClipGrade::Query_ToneTATMapInfo(long lImageID, IImageBuffer* pBuffer, int nX, int nY) {
    PixelInfo info = PreparedPixelInfo();
    if (!Run_Query_TATMapInfoTask(lImageID, kTaskMaskToneCurve, pBuffer, nX, nY, info)) {
        Py_RETURN_NONE;
    }
    return Py_BuildValue("(dddd)", info.dToneWeight[0], info.dToneWeight[1], info.dToneWeight[2],
                         info.dToneWeight[3]);
}

PyObject* PyClipGrade::Query_WBDropInfo(long lImageID, IImageBuffer* pBuffer, int nX, int nY, int nParam1,
                                        int nParam2) {
    DumpLog("PyClipGrade::Query_WBDropInfo() enter\n");
    if (m_pImageRetouch == nullptr || pBuffer == nullptr) Py_RETURN_NONE;
    ImageTaskRecord record;
    record.eFunctionID = FUNCTION_GET_DROP_TEMPERATURE;
    record.nEffectVersion = EFFECT_VERSION_LATEST;
    record.nParam[0] = nParam1;
    record.nParam[1] = nParam2;
    bool answered = false;
    {
        PyGilUnlockScope unlocked;
        const int pixelBytes = pBuffer->GetPixelBytes();
        uint8_t* pixels = nullptr;
        int width = 0;
        int height = 0;
        uint8_t* converted = nullptr;
        if (pixelBytes == 3) {
            pBuffer->LockBuffer(&pixels, &width, &height);
            converted = ConvertBgrToArgb(pixels, width, height);
            pBuffer->UnlockBuffer();
            if (converted == nullptr) {
                DumpLog("PyClipGrade::Query_WBDropInfo cannot convert BGR to ARGB\n");
            }
            pixels = converted;
        } else if (pixelBytes == 4) {
            pBuffer->LockBuffer(&pixels, &width, &height);
        } else {
            DumpLog("PyClipGrade::Query_WBDropInfo image buffer get un-support format bytes per pixel = %d",
                    pixelBytes);
        }
        BufferData pBufferData = RunPicture(pixels, width, height);
        if (pixels != nullptr && m_fnSetImage(lImageID, &pBufferData) >= 0 &&
            m_fnRegisterImageRatio(lImageID, kQueryBufferID, kQueryRatio, &pBufferData) >= 0) {
            const HRESULT hr = m_pImageRetouch->Query_WBDropInfo(static_cast<int32_t>(lImageID), kQueryBufferID, nX,
                                                                 nY, &record);
            if (hr < 0) {
                DumpLog("PyClipGrade::Query_WBDropInfo Query_WBDropInfo failed hr=0x%08X\n",
                        static_cast<unsigned>(hr));
            }
            m_fnUnregisterImageRatio(lImageID, kQueryBufferID);
            m_fnReleaseImage(lImageID);
            answered = true;
        }
        if (converted != nullptr) std::free(converted);
        else if (pixelBytes == 4) pBuffer->UnlockBuffer();
    }
    if (!answered) Py_RETURN_NONE;
    return Py_BuildValue("{s:i, s:i}", "Tmp", record.nParam[2], "Tnt", record.nParam[3]);
}
