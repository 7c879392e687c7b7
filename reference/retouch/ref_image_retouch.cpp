#include "reference/retouch/ref_image_retouch.h"

#include <algorithm>
#include <cstring>

#include "engine/effect_layouts.h"
#include "engine/effect_record.h"
#include "engine/result_codes.h"
#include "platform/platform.h"
#include "reference/agent/record_json.h"
#include "reference/agent/sha256.h"
#include "reference/renderer/record_settings.h"
#include "reference/retouch/pixels_json.h"
#include "reference/retouch/retouch_questions.h"
#include "reference/retouch/retouch_state.h"

namespace pcg {
namespace refretouch {

namespace {
const char kObject[] = "ImageRetouch";
}  // namespace

CRefImageRetouch::CRefImageRetouch() : m_nInstance(RetouchState::Instance().NextInstance()) {
    RetouchState::Instance().Add(Counter::InstancesLive, 1);
    RetouchState::Instance().Set(Counter::CreatedOnThread, pcg::platform::CurrentThreadId());
}

CRefImageRetouch::~CRefImageRetouch() {
    std::lock_guard<std::mutex> guard(m_lock);
    std::vector<int32_t> images;
    for (const auto& picture : m_pictures) images.push_back(picture.first);
    for (int32_t id : images) m_fnForgetImage(id);
    for (auto& tasks : m_tasks) m_fnFreeTasks(tasks.second);
    m_tasks.clear();
    RetouchState::Instance().Add(Counter::InstancesLive, -1);
}

int32_t CRefImageRetouch::m_fnAnswer(const char* op, int32_t own) {
    return RetouchState::Instance().Answer(kObject, op, own);
}

void CRefImageRetouch::m_fnJournal(const char* op, pcg::refagent::Json args) {
    RetouchState::Instance().Journal(kObject, m_nInstance, op, std::move(args));
}

void CRefImageRetouch::m_fnFreeTasks(std::vector<Task>& tasks) {
    for (Task& task : tasks) {
        if (task.m_pEffect == nullptr) continue;
        const pcg::engine::EffectLayout* layout = pcg::engine::FindEffectLayout(task.m_eFunctionID);
        if (layout != nullptr) pcg::engine::FreeEffectRecord(*layout, task.m_pEffect);
        else pcg::engine::FreeEffectMemory(task.m_pEffect);
        task.m_pEffect = nullptr;
        RetouchState::Instance().Add(Counter::RecordsHeld, -1);
    }
    tasks.clear();
}

void CRefImageRetouch::m_fnForgetImage(int32_t lImageID) {
    if (m_pictures.erase(lImageID) != 0) RetouchState::Instance().Add(Counter::ImagesHeld, -1);
    for (auto it = m_ratioBuffers.begin(); it != m_ratioBuffers.end();) {
        it = it->first.first == lImageID ? m_ratioBuffers.erase(it) : std::next(it);
    }
    for (auto it = m_tasks.begin(); it != m_tasks.end();) {
        if (it->first.first == lImageID) {
            m_fnFreeTasks(it->second);
            it = m_tasks.erase(it);
        } else {
            ++it;
        }
    }
}

int32_t CRefImageRetouch::QueryInterface(const pcg::engine::ComGuid& riid, void** ppvObject) {
    if (ppvObject == nullptr) return kResultPointer;
    *ppvObject = nullptr;
    if (!pcg::engine::SameGuid(riid, pcg::engine::IID_IUnknown) &&
        !pcg::engine::SameGuid(riid, pcg::engine::IID_IImageRetouch)) {
        return pcg::engine::kResultNoInterface;
    }
    AddRef();
    *ppvObject = static_cast<IImageRetouch*>(this);
    return kResultOk;
}

uint32_t CRefImageRetouch::AddRef() {
    const uint32_t refs = ++m_nRefs;
    m_fnJournal("AddRef", Json::array());
    return refs;
}

uint32_t CRefImageRetouch::Release() {
    const uint32_t refs = --m_nRefs;
    m_fnJournal("Release", Json::array());
    if (refs == 0) {
        m_fnJournal("Destroyed", Json::array());
        RetouchState::Instance().Set(Counter::ReleasedOnThread, pcg::platform::CurrentThreadId());
        delete this;
    }
    return refs;
}

int32_t CRefImageRetouch::GetToneCurveInfo(ToneCurveRGBSetting setToneCurve, ToneMappingInfo* mappingInfo) {
    Json pivots = Json::array();
    const int count = std::min(std::max(setToneCurve.nPivotCount, 0), 20);
    for (int i = 0; i < count; ++i) pivots.push_back(Json::array({setToneCurve.fPivotX[i], setToneCurve.fPivotY[i]}));
    m_fnJournal("GetToneCurveInfo",
                Json::array({Json{{"maxValue", setToneCurve.nMaxValue}, {"pivotCount", setToneCurve.nPivotCount},
                                  {"pivots", pivots}},
                             mappingInfo != nullptr}));
    if (mappingInfo == nullptr || mappingInfo->MappingTable == nullptr) {
        return m_fnAnswer("GetToneCurveInfo", kResultPointer);
    }
    if (setToneCurve.nMaxValue < 1 || setToneCurve.nMaxValue > 65535) {
        return m_fnAnswer("GetToneCurveInfo", kResultInvalidArg);
    }
    const int32_t result = m_fnAnswer("GetToneCurveInfo", kResultOk);
    if (result < 0) return result;  // a failing engine writes nothing
    ToneCurveTable(setToneCurve, mappingInfo->MappingTable);
    mappingInfo->nMappingTableSize = setToneCurve.nMaxValue + 1;
    return result;
}

bool CRefImageRetouch::m_fnPicture(int32_t lImageID, PictureView* view) {
    auto picture = m_pictures.find(lImageID);
    if (picture == m_pictures.end()) return false;
    *view = PictureView{picture->second.m_pixels.data(), picture->second.m_nWidth, picture->second.m_nHeight,
                        picture->second.m_nPixelBytes};
    return true;
}

int32_t CRefImageRetouch::SetImage(int32_t lImageID, BufferData* pBufferData, ImageRetouchSetting imageSetting) {
    m_fnJournal("SetImage", Json::array({lImageID, PixelsJson(pBufferData), imageSetting.fScale}));
    int32_t result = kResultOk;
    Picture picture;
    if (pBufferData == nullptr) {
        result = kResultPointer;
    } else {
        const int bytes = PixelBytesOf(pBufferData->ePixelFormat);
        const int row = pBufferData->nWidth * bytes;
        if (pBufferData->pBuffer == nullptr || pBufferData->nWidth <= 0 || pBufferData->nHeight <= 0 || bytes == 0 ||
            pBufferData->nStride < row) {
            result = kResultInvalidArg;
        } else {
            picture.m_nWidth = pBufferData->nWidth;
            picture.m_nHeight = pBufferData->nHeight;
            picture.m_nPixelBytes = bytes;
            picture.m_eFormat = pBufferData->ePixelFormat;
            picture.m_pixels.resize(static_cast<size_t>(row) * pBufferData->nHeight);
            for (int y = 0; y < pBufferData->nHeight; ++y) {
                std::memcpy(picture.m_pixels.data() + static_cast<size_t>(y) * row,
                            pBufferData->pBuffer + static_cast<size_t>(y) * pBufferData->nStride, row);
            }
        }
    }
    result = m_fnAnswer("SetImage", result);
    if (result < 0) return result;
    std::lock_guard<std::mutex> guard(m_lock);
    if (m_pictures.count(lImageID) == 0) RetouchState::Instance().Add(Counter::ImagesHeld, 1);
    m_pictures[lImageID] = std::move(picture);
    return result;
}

int32_t CRefImageRetouch::RegisterImageRatio(int32_t lImageID, int32_t lBufferID, float fRatio,
                                             BufferData* ratioBuffer) {
    m_fnJournal("RegisterImageRatio", Json::array({lImageID, lBufferID, fRatio, PixelsJson(ratioBuffer)}));
    std::lock_guard<std::mutex> guard(m_lock);
    int32_t result = kResultOk;
    if (ratioBuffer == nullptr) result = kResultPointer;
    else if (m_pictures.count(lImageID) == 0) result = kResultInvalidArg;
    result = m_fnAnswer("RegisterImageRatio", result);
    if (result >= 0 && ratioBuffer != nullptr) m_ratioBuffers[{lImageID, lBufferID}] = *ratioBuffer;
    return result;
}

int32_t CRefImageRetouch::UnregisterImageRatio(int32_t lImageID, int32_t lBufferID) {
    m_fnJournal("UnregisterImageRatio", Json::array({lImageID, lBufferID}));
    std::lock_guard<std::mutex> guard(m_lock);
    const bool known = m_ratioBuffers.erase({lImageID, lBufferID}) != 0;
    auto tasks = m_tasks.find({lImageID, lBufferID});
    if (tasks != m_tasks.end()) {
        m_fnFreeTasks(tasks->second);
        m_tasks.erase(tasks);
    }
    return m_fnAnswer("UnregisterImageRatio", known ? kResultOk : kResultInvalidArg);
}

int32_t CRefImageRetouch::ReleaseImage(int32_t lImageID) {
    m_fnJournal("ReleaseImage", Json::array({lImageID}));
    std::lock_guard<std::mutex> guard(m_lock);
    const bool known = m_pictures.count(lImageID) != 0;
    m_fnForgetImage(lImageID);
    return m_fnAnswer("ReleaseImage", known ? kResultOk : kResultInvalidArg);
}

int32_t CRefImageRetouch::Query_WBDropInfo(int32_t lImageID, int32_t lBufferID, int nX, int nY,
                                           ImageTaskRecord* pRecord) {
    m_fnJournal("Query_WBDropInfo", Json::array({lImageID, lBufferID, nX, nY, TaskJson(pRecord)}));
    if (pRecord == nullptr) return m_fnAnswer("Query_WBDropInfo", kResultPointer);
    std::lock_guard<std::mutex> guard(m_lock);
    PictureView picture{};
    int temperature = 0;
    int tint = 0;
    if (!m_fnPicture(lImageID, &picture) ||
        !DropWhiteBalance(picture, nX, nY, pRecord->nParam[0], &temperature, &tint)) {
        return m_fnAnswer("Query_WBDropInfo", kResultInvalidArg);
    }
    // The answer goes behind the two parameters; an answer made a failure
    // (SetResult) writes nothing, as a failing engine would.
    const int32_t result = m_fnAnswer("Query_WBDropInfo", kResultOk);
    if (result >= 0) {
        pRecord->nParam[2] = temperature;
        pRecord->nParam[3] = tint;
    }
    return result;
}

int32_t CRefImageRetouch::m_fnPixelQuestion(const char* op, int32_t lImageID, int32_t lBufferID, int nX, int nY,
                                            PixelInfo* pInfo, bool tones) {
    m_fnJournal(op, Json::array({lImageID, lBufferID, nX, nY}));
    if (pInfo == nullptr) return m_fnAnswer(op, kResultPointer);
    std::lock_guard<std::mutex> guard(m_lock);
    PictureView picture{};
    PixelInfo answer = *pInfo;
    if (!m_fnPicture(lImageID, &picture) || !ReadPixelInfo(picture, nX, nY, &answer)) {
        return m_fnAnswer(op, kResultInvalidArg);
    }
    const int32_t result = m_fnAnswer(op, kResultOk);
    if (result < 0) return result;  // a failing engine writes nothing
    // Each question writes only its own part of the record.
    if (tones) {
        std::copy(std::begin(answer.dToneWeight), std::end(answer.dToneWeight), std::begin(pInfo->dToneWeight));
    } else {
        pInfo->hueColor1 = answer.hueColor1;
        pInfo->hueColor2 = answer.hueColor2;
        pInfo->dWeight1 = answer.dWeight1;
        pInfo->dWeight2 = answer.dWeight2;
    }
    std::copy(std::begin(answer.RGB), std::end(answer.RGB), std::begin(pInfo->RGB));
    std::copy(std::begin(answer.HSV), std::end(answer.HSV), std::begin(pInfo->HSV));
    std::copy(std::begin(answer.ROMMRGB), std::end(answer.ROMMRGB), std::begin(pInfo->ROMMRGB));
    return result;
}

int32_t CRefImageRetouch::Query_TATMapInfo(int32_t lImageID, int32_t lBufferID, int nX, int nY, PixelInfo* pInfo) {
    return m_fnPixelQuestion("Query_TATMapInfo", lImageID, lBufferID, nX, nY, pInfo, false);
}

int32_t CRefImageRetouch::Query_ToneTATMapInfo(int32_t lImageID, int32_t lBufferID, int nX, int nY,
                                               PixelInfo* pInfo) {
    return m_fnPixelQuestion("Query_ToneTATMapInfo", lImageID, lBufferID, nX, nY, pInfo, true);
}

int32_t CRefImageRetouch::Image_StartRunAllTask(int32_t lImageID, int32_t lBufferID) {
    m_fnJournal("Image_StartRunAllTask", Json::array({lImageID, lBufferID}));
    std::lock_guard<std::mutex> guard(m_lock);
    const bool known = m_ratioBuffers.count({lImageID, lBufferID}) != 0;
    return m_fnAnswer("Image_StartRunAllTask", known ? kResultOk : kResultInvalidArg);
}

int32_t CRefImageRetouch::Image_RunAllTask(int32_t lImageID, int32_t lBufferID, ImageRunAllTaskSetting setting) {
    m_fnJournal("Image_RunAllTask", Json::array({lImageID, lBufferID, Json::array({setting.nWord[0], setting.nWord[1],
                                                                                   setting.nWord[2], setting.nWord[3],
                                                                                   setting.nWord[4]})}));
    std::lock_guard<std::mutex> guard(m_lock);
    auto picture = m_pictures.find(lImageID);
    auto target = m_ratioBuffers.find({lImageID, lBufferID});
    if (picture == m_pictures.end() || target == m_ratioBuffers.end()) {
        return m_fnAnswer("Image_RunAllTask", kResultInvalidArg);
    }
    const BufferData& out = target->second;
    const int bytes = picture->second.m_nPixelBytes;
    int32_t result = kResultOk;
    if (out.pBuffer == nullptr || out.nWidth <= 0 || out.nHeight <= 0 || PixelBytesOf(out.ePixelFormat) != bytes ||
        out.nStride < out.nWidth * bytes) {
        result = kResultInvalidArg;
    } else {
        // The picture sampled to the registered buffer's size (nearest pixel).
        const Picture& in = picture->second;
        for (int y = 0; y < out.nHeight; ++y) {
            const int sy = static_cast<int>(static_cast<int64_t>(y) * in.m_nHeight / out.nHeight);
            for (int x = 0; x < out.nWidth; ++x) {
                const int sx = static_cast<int>(static_cast<int64_t>(x) * in.m_nWidth / out.nWidth);
                std::memcpy(out.pBuffer + static_cast<size_t>(y) * out.nStride + static_cast<size_t>(x) * bytes,
                            in.m_pixels.data() + (static_cast<size_t>(sy) * in.m_nWidth + sx) * bytes, bytes);
            }
        }
        // Then the buffer's effect records, as they stand at time 0 (a
        // picture has no timeline), through the shared renderer.
        std::vector<pcg::renderer::HeldRecord> records;
        auto tasks = m_tasks.find({lImageID, lBufferID});
        if (tasks != m_tasks.end()) {
            for (const Task& task : tasks->second) {
                if (task.m_pEffect != nullptr) records.emplace_back(task.m_eFunctionID, task.m_pEffect);
            }
        }
        const int bytesPerChannel = out.ePixelFormat == PIXEL_ARGB32 ? 1 : (out.ePixelFormat == PIXEL_ARGB64 ? 2 : 0);
        if (bytesPerChannel != 0 && !records.empty()) {
            pcg::renderer::RenderGlobal(out.pBuffer, out.nWidth, out.nHeight, out.nStride, bytesPerChannel,
                                        pcg::renderer::SettingsAt(records, 0));
        }
    }
    return m_fnAnswer("Image_RunAllTask", result);
}

int32_t CRefImageRetouch::Image_PushTask(int32_t lImageID, int32_t lBufferID, ImageTaskRecord* pRecord) {
    m_fnJournal("Image_PushTask", Json::array({lImageID, lBufferID, TaskJson(pRecord)}));
    if (pRecord == nullptr) return m_fnAnswer("Image_PushTask", kResultPointer);
    Task task;
    task.m_eFunctionID = pRecord->eFunctionID;
    std::memcpy(task.m_nParam, pRecord->nParam, sizeof(task.m_nParam));
    task.m_pEffect = pRecord->pEffect;
    pRecord->pEffect = nullptr;  // the engine's from here on
    std::lock_guard<std::mutex> guard(m_lock);
    if (task.m_pEffect != nullptr) RetouchState::Instance().Add(Counter::RecordsHeld, 1);
    m_tasks[{lImageID, lBufferID}].push_back(task);
    return m_fnAnswer("Image_PushTask", kResultOk);
}

int32_t CRefImageRetouch::SetProperty(uint32_t nPropertyID, uint32_t nSize, void* pValue) {
    Json value = nullptr;
    if (pValue != nullptr && nSize == 4) {
        int32_t word = 0;
        std::memcpy(&word, pValue, 4);
        value = word;
    } else if (pValue != nullptr) {
        value = pcg::refagent::BytesJson(static_cast<const char*>(pValue), nSize);
    }
    m_fnJournal("SetProperty", Json::array({nPropertyID, nSize, value}));
    if (pValue == nullptr && nSize != 0) return m_fnAnswer("SetProperty", kResultPointer);
    {
        std::lock_guard<std::mutex> guard(m_lock);
        const auto* bytes = static_cast<const uint8_t*>(pValue);
        m_properties[nPropertyID].assign(bytes, bytes + nSize);
    }
    if (nPropertyID == RETOUCH_PROPERTY_SET_VIDEO_MODE && value.is_number_integer() && value.get<int32_t>() == 1) {
        RetouchState::Instance().Add(Counter::VideoModeSet, 1);
    }
    return m_fnAnswer("SetProperty", kResultOk);
}

}  // namespace refretouch
}  // namespace pcg
