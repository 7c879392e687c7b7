#include "reference/agent/ref_dsp_agent.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "engine/constants.h"
#include "engine/effect_layouts.h"
#include "imaging/image_buffer.h"
#include "reference/agent/agent_registry.h"
#include "reference/agent/event_producer.h"
#include "reference/agent/track_store.h"
#include "reference/agent/frame_work.h"
#include "reference/agent/mask_store.h"
#include "reference/agent/record_json.h"
#include "runtime/dump_log.h"
#include "engine/result_codes.h"

namespace pcg {
namespace refagent {

namespace {

// What GetVideoAspectRatio writes for a clip it does not know.
constexpr double kDefaultAspectRatio = 16.0 / 9.0;

// An injected value as a 32-bit code: the low 32 bits of the value truncated
// to an integer, so 0x80004005 and -2147467259 name the same code. A value
// that is not a number fits no code and reads as E_FAIL.
uint32_t ToCode(double value) {
    if (!std::isfinite(value) || value <= -9.2e18 || value >= 9.2e18) {
        return static_cast<uint32_t>(kResultFail);
    }
    return static_cast<uint32_t>(static_cast<int64_t>(value));
}

Json Args() {
    return Json::array();
}

template <typename... T>
Json Args(T&&... values) {
    Json args = Json::array();
    (args.push_back(Json(std::forward<T>(values))), ...);
    return args;
}

}  // namespace

CRefDspAgent::CRefDspAgent(const char* name, int64_t instance)
    : m_name(name ? name : ""), m_nInstance(instance), m_pProducer(std::make_shared<EventProducer>(instance)) {
    AgentRegistry::Instance().Add(Counter::AgentsLive, 1);
    RegisterProducer(m_nInstance, m_pProducer);
}

CRefDspAgent::~CRefDspAgent() {
    UnregisterProducer(m_nInstance);
    m_pProducer.reset();
    FreeTrackPointList(m_pLatestList);
    AgentRegistry::Instance().Add(Counter::AgentsLive, -1);
}

Json CRefDspAgent::m_fnEntry(const char* op) const {
    Json entry = Json::object();
    entry["agent"] = m_name;
    entry["instance"] = m_nInstance;
    entry["op"] = op;
    return entry;
}

void CRefDspAgent::m_fnJournal(const char* op, Json args) {
    Json entry = m_fnEntry(op);
    entry["args"] = std::move(args);
    AgentRegistry::Instance().Append(std::move(entry));
}

int32_t CRefDspAgent::m_fnAnswer(const char* op, int32_t own) const {
    double value = 0.0;
    if (!AgentRegistry::Instance().FindResult(m_name, op, &value)) {
        return own;
    }
    return static_cast<int32_t>(ToCode(value));
}

bool CRefDspAgent::m_fnAnswerBool(const char* op, bool own) const {
    double value = 0.0;
    return AgentRegistry::Instance().FindResult(m_name, op, &value) ? value != 0.0 : own;
}

uint32_t CRefDspAgent::m_fnAnswerUnsigned(const char* op, uint32_t own) const {
    double value = 0.0;
    return AgentRegistry::Instance().FindResult(m_name, op, &value) ? ToCode(value) : own;
}

double CRefDspAgent::m_fnAnswerDouble(const char* op, double own) const {
    double value = 0.0;
    return AgentRegistry::Instance().FindResult(m_name, op, &value) ? value : own;
}

// ------------------------------------------------------------ references

uint32_t CRefDspAgent::AddRef() {
    const uint32_t refs = ++m_nRefCount;
    Json entry = m_fnEntry("AddRef");
    entry["args"] = Args();
    entry["refs"] = refs;
    AgentRegistry::Instance().Append(std::move(entry));
    return refs;
}

uint32_t CRefDspAgent::Release() {
    const uint32_t refs = --m_nRefCount;
    AgentRegistry& registry = AgentRegistry::Instance();
    Json entry = m_fnEntry("Release");
    entry["args"] = Args();
    entry["refs"] = refs;
    registry.Append(std::move(entry));
    if (refs == 0) {
        registry.Append(m_fnEntry("Destroyed"));
        delete this;
    }
    return refs;
}

// ----------------------------------------------------------- effect data

void CRefDspAgent::LockEffectDataWriter() {
    m_fnJournal("LockEffectDataWriter", Args());
    m_writerLock.Lock();
}

void CRefDspAgent::UnlockEffectDataWriter() {
    m_fnJournal("UnlockEffectDataWriter", Args());
    if (!m_writerLock.Unlock()) {
        DumpLog("CRefDspAgent::UnlockEffectDataWriter, Error. the lock is not held by this thread\n");
    }
}

int32_t CRefDspAgent::SetFrameRate(double framesPerSecond) {
    m_fnJournal("SetFrameRate", Args(framesPerSecond));
    int32_t result = kResultInvalidArg;
    if (std::isfinite(framesPerSecond) && framesPerSecond > 0.0) {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_dFrameRate = framesPerSecond;
        result = kResultOk;
    }
    return m_fnAnswer("SetFrameRate", result);
}

int32_t CRefDspAgent::PushEffect(uint32_t videoID, FUNCTION_ID functionID,
                                 pcg::engine::EffectRecordHeader** ppRecord) {
    pcg::engine::EffectRecordHeader* record = ppRecord ? *ppRecord : nullptr;
    m_fnJournal("PushEffect", Args(videoID, static_cast<uint32_t>(functionID),
                                   RecordJson(static_cast<uint32_t>(functionID), record)));
    if (!record) {
        return m_fnAnswer("PushEffect", kResultPointer);
    }
    if (!pcg::engine::FindEffectLayout(static_cast<uint32_t>(functionID))) {
        DumpLog("CRefDspAgent::PushEffect, Error. no layout for FUNCTION_ID %u: only the record's block can be "
                "freed\n",
                static_cast<uint32_t>(functionID));
    }
    {
        WriterLockScope writer(m_writerLock);
        m_clips.PutRecord(videoID, static_cast<uint32_t>(functionID), record);
    }
    // The record is the agent's now; the caller's pointer no longer owns it.
    *ppRecord = nullptr;
    return m_fnAnswer("PushEffect", kResultOk);
}

int32_t CRefDspAgent::ClearTask(uint32_t videoID) {
    m_fnJournal("ClearTask", Args(videoID));
    {
        WriterLockScope writer(m_writerLock);
        m_clips.ClearRecords(videoID);
    }
    return m_fnAnswer("ClearTask", kResultOk);
}

int32_t CRefDspAgent::AddMaskInfo(uint32_t videoID, FUNCTION_ID maskFunctionID, uint32_t maskID,
                                  HVN::MaskInfoBase** ppMask) {
    HVN::MaskInfoBase* mask = ppMask ? *ppMask : nullptr;
    m_fnJournal("AddMaskInfo", Args(videoID, static_cast<uint32_t>(maskFunctionID), maskID, MaskJson(mask)));
    if (!mask) {
        return m_fnAnswer("AddMaskInfo", kResultPointer);
    }
    {
        WriterLockScope writer(m_writerLock);
        m_clips.PutMask(videoID, maskID, mask);
    }
    *ppMask = nullptr;
    return m_fnAnswer("AddMaskInfo", kResultOk);
}

int32_t CRefDspAgent::ClearMaskInfo(uint32_t videoID) {
    m_fnJournal("ClearMaskInfo", Args(videoID));
    {
        WriterLockScope writer(m_writerLock);
        m_clips.ClearMasks(videoID);
    }
    return m_fnAnswer("ClearMaskInfo", kResultOk);
}

// ------------------------------------------------------------------ clips

int32_t CRefDspAgent::AddVideo(uint32_t videoID, int64_t llStart, int64_t llDuration, double dAspectRatio) {
    m_fnJournal("AddVideo", Args(videoID, llStart, llDuration, dAspectRatio));
    m_clips.AddClip(videoID, ClipInfo{llStart, llDuration, dAspectRatio});
    return m_fnAnswer("AddVideo", kResultOk);
}

int32_t CRefDspAgent::UpdateVideo(uint32_t videoID, int64_t llStart, int64_t llDuration, double dAspectRatio) {
    m_fnJournal("UpdateVideo", Args(videoID, llStart, llDuration, dAspectRatio));
    const bool known = m_clips.UpdateClip(videoID, ClipInfo{llStart, llDuration, dAspectRatio});
    return m_fnAnswer("UpdateVideo", known ? kResultOk : kResultInvalidArg);
}

int32_t CRefDspAgent::GetVideoAspectRatio(uint32_t videoID, int32_t nReserved1, int32_t nReserved2,
                                          double* pdAspectRatio) {
    m_fnJournal("GetVideoAspectRatio", Args(videoID, nReserved1, nReserved2));
    if (!pdAspectRatio) {
        return kResultPointer;
    }
    ClipInfo clip;
    const double own = m_clips.FindClip(videoID, &clip) ? clip.dAspectRatio : kDefaultAspectRatio;
    *pdAspectRatio = m_fnAnswerDouble("GetVideoAspectRatio", own);
    return kResultOk;
}

int32_t CRefDspAgent::RemoveVideo(uint32_t videoID) {
    m_fnJournal("RemoveVideo", Args(videoID));
    bool known = false;
    {
        WriterLockScope writer(m_writerLock);
        known = m_clips.RemoveClip(videoID);
    }
    return m_fnAnswer("RemoveVideo", known ? kResultOk : kResultInvalidArg);
}

int32_t CRefDspAgent::RemoveAllVideo() {
    m_fnJournal("RemoveAllVideo", Args());
    {
        WriterLockScope writer(m_writerLock);
        m_clips.RemoveAll();
    }
    return m_fnAnswer("RemoveAllVideo", kResultOk);
}

// ------------------------------------------------------- frames and LUTs

int32_t CRefDspAgent::AdjustBufferRect(uint32_t videoID, int32_t width, int32_t height, double dWidthOverHeight,
                                       RECT* pRect) {
    // The reference renders the whole frame: the rectangle stays as given.
    m_fnJournal("AdjustBufferRect", Args(videoID, width, height, dWidthOverHeight, RectJson(pRect)));
    return m_fnAnswer("AdjustBufferRect", pRect ? kResultOk : kResultPointer);
}

int32_t CRefDspAgent::SetLUT(uint32_t videoID, const LUTSetting* pSetting) {
    m_fnJournal("SetLUT", Args(videoID, LutJson(pSetting)));
    if (!pSetting) {
        return m_fnAnswer("SetLUT", kResultPointer);
    }
    LutCopy lut;
    lut.nSize = pSetting->nSize;
    std::memcpy(lut.fDomainMin, pSetting->fDomainMin, sizeof(lut.fDomainMin));
    std::memcpy(lut.fDomainMax, pSetting->fDomainMax, sizeof(lut.fDomainMax));
    lut.table.assign(pSetting->table.begin(), pSetting->table.end());
    m_clips.PutLut(videoID, std::move(lut));
    return m_fnAnswer("SetLUT", kResultOk);
}

int32_t CRefDspAgent::ClearLUT(uint32_t videoID) {
    m_fnJournal("ClearLUT", Args(videoID));
    m_clips.ClearLut(videoID);
    return m_fnAnswer("ClearLUT", kResultOk);
}

bool CRefDspAgent::NeedsSourceCopy(uint32_t videoID) {
    // The reference render reads the source and writes only the destination.
    m_fnJournal("NeedsSourceCopy", Args(videoID));
    return m_fnAnswerBool("NeedsSourceCopy", false);
}

bool CRefDspAgent::ApplyLUTOnBuffer(uint32_t videoID, IImageBuffer* pBuffer) {
    m_fnJournal("ApplyLUTOnBuffer", Args(videoID, OpaqueJson(pBuffer)));
    bool applied = false;
    LutCopy lut;
    if (pBuffer && m_clips.FindLut(videoID, &lut)) {
        uint8_t* pixels = nullptr;
        int width = 0;
        int height = 0;
        if (pBuffer->LockBuffer(&pixels, &width, &height)) {
            applied = ApplyLut(lut, pixels, width, height, pBuffer->GetPixelBytes());
            pBuffer->UnlockBuffer();
        }
    }
    return m_fnAnswerBool("ApplyLUTOnBuffer", applied);
}

int32_t CRefDspAgent::SetCacheFrameOnDspAgent(uint32_t videoID, int64_t llTime, BOOL bEnable) {
    m_fnJournal("SetCacheFrameOnDspAgent", Args(videoID, llTime, bEnable));
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_nCacheVideoID = videoID;
        m_llCacheTime = llTime;
        m_bCacheFrame = bEnable;
    }
    return m_fnAnswer("SetCacheFrameOnDspAgent", kResultOk);
}

int32_t CRefDspAgent::EnableCacheFramePlaying(BOOL bEnable, int64_t llFrameInterval) {
    m_fnJournal("EnableCacheFramePlaying", Args(bEnable, llFrameInterval));
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_bCachePlaying = bEnable;
        m_llCacheInterval = llFrameInterval;
    }
    return m_fnAnswer("EnableCacheFramePlaying", kResultOk);
}

int32_t CRefDspAgent::ResetCacheFramePlaying() {
    m_fnJournal("ResetCacheFramePlaying", Args());
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_bCachePlaying = 0;
        m_llCacheInterval = 0;
    }
    return m_fnAnswer("ResetCacheFramePlaying", kResultOk);
}

int32_t CRefDspAgent::ApplyEffectOnBuffer(IImageRetouch* pImageRetouch, ApplyBufferSetting* pSetting) {
    m_fnJournal("ApplyEffectOnBuffer", Args(OpaqueJson(pImageRetouch), ApplyBufferSettingJson(pSetting)));
    if (!pSetting || !RenderFrame(*pSetting)) {
        return m_fnAnswer("ApplyEffectOnBuffer", kResultPointer);
    }
    m_clips.RenderEffects(pSetting->nVideoID, pSetting->llTime, pSetting->pDstBuffer, pSetting->nDstWidth,
                          pSetting->nDstHeight,
                          pSetting->nDstStride > 0 ? pSetting->nDstStride : pSetting->nDstWidth * 4);
    const HistogramDist histogram =
        MeasureHistogram(pSetting->pDstBuffer, pSetting->nDstWidth, pSetting->nDstHeight, pSetting->nDstStride);
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_lastHistogram = histogram;
    }
    return m_fnAnswer("ApplyEffectOnBuffer", kResultOk);
}

int32_t CRefDspAgent::GetInterpolatedToneMapInfo(uint32_t videoID, int64_t llTime,
                                                 pcg::engine::ContractVector<int32_t*>& tables) {
    m_fnJournal("GetInterpolatedToneMapInfo", Args(videoID, llTime));
    ClipInfo clip;
    if (!m_clips.FindClip(videoID, &clip)) {
        return m_fnAnswer("GetInterpolatedToneMapInfo", kResultFail);
    }
    // No tone effect is interpolated yet, so each of the four maps is the identity.
    for (int index = 0; index < 4; ++index) {
        auto* table = static_cast<int32_t*>(
            pcg::engine::AllocEffectMemory(sizeof(int32_t) * static_cast<std::size_t>(TONE_MAX_TABLE_SIZE)));
        if (!table) {
            return m_fnAnswer("GetInterpolatedToneMapInfo", kResultFail);
        }
        for (int32_t value = 0; value < TONE_MAX_TABLE_SIZE; ++value) {
            table[value] = value;
        }
        if (!tables.push_back(table)) {
            pcg::engine::FreeEffectMemory(table);
            return m_fnAnswer("GetInterpolatedToneMapInfo", kResultFail);
        }
    }
    return m_fnAnswer("GetInterpolatedToneMapInfo", kResultOk);
}

// --------------------------------------------------------------- tracking
// Results come from the library's track store (RefAgent_SeedTrack): a miss
// is E_FAIL. Queue entries and the lists of the queue and database lookups
// are the caller's; the latest-result list stays the agent's until its next
// such lookup or its end.

int32_t CRefDspAgent::QueryTrackResultInQueue(uint32_t videoID, uint32_t maskID, int64_t llTime,
                                              TrackQueueEntry** ppEntry) {
    m_fnJournal("QueryTrackResultInQueue", Args(videoID, maskID, llTime));
    if (!ppEntry) {
        return m_fnAnswer("QueryTrackResultInQueue", kResultPointer);
    }
    *ppEntry = nullptr;
    TrackResult found;
    if (!TrackStore::Instance().FindInQueue(static_cast<int32_t>(videoID), static_cast<int32_t>(maskID), llTime,
                                            &found)) {
        return m_fnAnswer("QueryTrackResultInQueue", kResultFail);
    }
    auto* entry = new TrackQueueEntry{};
    entry->position[0] = found.position[0];
    entry->position[1] = found.position[1];
    if (!found.bNoList) {
        entry->pList = new TrackPointList{};
        FillTrackPointList(found, entry->pList);
    }
    *ppEntry = entry;
    AgentRegistry::Instance().Add(Counter::TrackEntriesOut, 1);
    return m_fnAnswer("QueryTrackResultInQueue", kResultOk);
}

int32_t CRefDspAgent::CopyMTMaskInfoDB(int32_t nFirst, int32_t nSecond, int32_t nThird) {
    m_fnJournal("CopyMTMaskInfoDB", Args(nFirst, nSecond, nThird));
    return m_fnAnswer("CopyMTMaskInfoDB", kResultOk);
}

int32_t CRefDspAgent::FlushQueue2DBUntilPos(int32_t nFirst, int32_t nSecond, int32_t nThird, int64_t llPos) {
    m_fnJournal("FlushQueue2DBUntilPos", Args(nFirst, nSecond, nThird, llPos));
    TrackStore::Instance().Flush(nFirst, nSecond, nThird, llPos);
    return m_fnAnswer("FlushQueue2DBUntilPos", kResultOk);
}

int32_t CRefDspAgent::ClearTrackResultQueue() {
    m_fnJournal("ClearTrackResultQueue", Args());
    TrackStore::Instance().ClearQueue();
    return m_fnAnswer("ClearTrackResultQueue", kResultOk);
}

int32_t CRefDspAgent::GetMaxTrackingID(int32_t* pnTrackingID) {
    m_fnJournal("GetMaxTrackingID", Args());
    if (!pnTrackingID) {
        return m_fnAnswer("GetMaxTrackingID", kResultPointer);
    }
    *pnTrackingID = TrackStore::Instance().MaxTrackingID();
    return m_fnAnswer("GetMaxTrackingID", kResultOk);
}

int32_t CRefDspAgent::QueryMotionTrackingMaskInfo(int32_t trackingID, int32_t videoID, int32_t maskID,
                                                  TrackPointList** ppList, int64_t llTime, float* pPosition) {
    m_fnJournal("QueryMotionTrackingMaskInfo", Args(trackingID, videoID, maskID, llTime));
    if (!ppList || !pPosition) {
        return m_fnAnswer("QueryMotionTrackingMaskInfo", kResultPointer);
    }
    TrackResult found;
    if (!TrackStore::Instance().FindInDatabase(trackingID, videoID, maskID, llTime, &found)) {
        return m_fnAnswer("QueryMotionTrackingMaskInfo", kResultFail);
    }
    // The caller's list is filled; without one, a new list is the caller's.
    if (*ppList == nullptr) {
        *ppList = new TrackPointList{};
    }
    FillTrackPointList(found, *ppList);
    pPosition[0] = found.position[0];
    pPosition[1] = found.position[1];
    return m_fnAnswer("QueryMotionTrackingMaskInfo", kResultOk);
}

int32_t CRefDspAgent::QueryLatestMotionTrackingMaskInfo(int32_t videoID, int32_t maskID, int32_t trackingID,
                                                        TrackPointList** ppList, int64_t* pllTime,
                                                        float* pPosition) {
    m_fnJournal("QueryLatestMotionTrackingMaskInfo", Args(videoID, maskID, trackingID));
    if (!ppList || !pllTime || !pPosition) {
        return m_fnAnswer("QueryLatestMotionTrackingMaskInfo", kResultPointer);
    }
    TrackResult found;
    if (!TrackStore::Instance().FindLatest(videoID, maskID, trackingID, &found)) {
        return m_fnAnswer("QueryLatestMotionTrackingMaskInfo", kResultFail);
    }
    std::lock_guard<std::mutex> guard(m_stateLock);
    if (m_pLatestList == nullptr) {
        m_pLatestList = new TrackPointList{};
    }
    FillTrackPointList(found, m_pLatestList);
    *ppList = m_pLatestList;
    *pllTime = found.llTime;
    pPosition[0] = found.position[0];
    pPosition[1] = found.position[1];
    return m_fnAnswer("QueryLatestMotionTrackingMaskInfo", kResultOk);
}

int32_t CRefDspAgent::DeleteMotionTrackingMaskInfoRange(int32_t nFirst, int32_t nSecond, int64_t llTime) {
    m_fnJournal("DeleteMotionTrackingMaskInfoRange", Args(nFirst, nSecond, llTime));
    TrackStore::Instance().DeleteFrom(nFirst, nSecond, llTime);
    return m_fnAnswer("DeleteMotionTrackingMaskInfoRange", kResultOk);
}

int32_t CRefDspAgent::DeleteMotionTrackingMaskInfoInterval(int32_t nFirst, int32_t nSecond, int64_t llBegin,
                                                           int64_t llEnd) {
    m_fnJournal("DeleteMotionTrackingMaskInfoInterval", Args(nFirst, nSecond, llBegin, llEnd));
    TrackStore::Instance().DeleteWithin(nFirst, nSecond, llBegin, llEnd);
    return m_fnAnswer("DeleteMotionTrackingMaskInfoInterval", kResultOk);
}

void CRefDspAgent::DumpTask() {
    Json tasks = Json::array();
    for (const auto& task : m_clips.Tasks()) {
        DumpLog("CRefDspAgent::DumpTask, videoID=%u, functionID=%u\n", task.first, task.second);
        tasks.push_back(Args(task.first, task.second));
    }
    Json entry = m_fnEntry("DumpTask");
    entry["args"] = Args();
    entry["tasks"] = std::move(tasks);
    AgentRegistry::Instance().Append(std::move(entry));
}

// ---------------------------------------------------------- track history

int32_t CRefDspAgent::GetTrackHistoryStream(char** ppBytes, uint32_t* pnSize) {
    m_fnJournal("GetTrackHistoryStream", Args());
    if (!ppBytes || !pnSize) {
        return m_fnAnswer("GetTrackHistoryStream", kResultPointer);
    }
    std::lock_guard<std::mutex> guard(m_stateLock);
    *ppBytes = nullptr;
    *pnSize = static_cast<uint32_t>(m_trackHistory.size());
    if (!m_trackHistory.empty()) {
        *ppBytes = static_cast<char*>(std::malloc(m_trackHistory.size()));
        if (!*ppBytes) {
            *pnSize = 0;
            return m_fnAnswer("GetTrackHistoryStream", kResultFail);
        }
        std::memcpy(*ppBytes, m_trackHistory.data(), m_trackHistory.size());
        AgentRegistry::Instance().Add(Counter::StreamsOut, 1);
    }
    return m_fnAnswer("GetTrackHistoryStream", kResultOk);
}

int32_t CRefDspAgent::FreeTrackHistoryStream(char** ppBytes) {
    m_fnJournal("FreeTrackHistoryStream", Args(OpaqueJson(ppBytes ? *ppBytes : nullptr)));
    if (!ppBytes) {
        return m_fnAnswer("FreeTrackHistoryStream", kResultPointer);
    }
    if (*ppBytes) {
        std::free(*ppBytes);
        *ppBytes = nullptr;
        AgentRegistry::Instance().Add(Counter::StreamsOut, -1);
    }
    return m_fnAnswer("FreeTrackHistoryStream", kResultOk);
}

int32_t CRefDspAgent::SetTrackHistoryStream(const char* pBytes, uint32_t nSize) {
    m_fnJournal("SetTrackHistoryStream", Args(BytesJson(pBytes, nSize), nSize));
    if (!pBytes && nSize != 0) {
        return m_fnAnswer("SetTrackHistoryStream", kResultPointer);
    }
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_trackHistory.assign(pBytes, pBytes + nSize);
    }
    return m_fnAnswer("SetTrackHistoryStream", kResultOk);
}

int32_t CRefDspAgent::ClearCurTrackHistoryStream() {
    m_fnJournal("ClearCurTrackHistoryStream", Args());
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_trackHistory.clear();
    }
    return m_fnAnswer("ClearCurTrackHistoryStream", kResultOk);
}

int32_t CRefDspAgent::DeleteTrackingKeyFrame(int64_t llTime) {
    m_fnJournal("DeleteTrackingKeyFrame", Args(llTime));
    return m_fnAnswer("DeleteTrackingKeyFrame", kResultOk);
}

// ------------------------------------------------------ links and switches

int32_t CRefDspAgent::SetCallbackQueue(DspCallbackQueue* pQueue) {
    m_fnJournal("SetCallbackQueue", Args(OpaqueJson(pQueue)));
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_pCallbackQueue = pQueue;
    }
    // Returns only when no write into the previous ring is under way.
    m_pProducer->SetRing(pQueue);
    if (pQueue != nullptr) {
        NoteRingHolder(m_nInstance);
    }
    return m_fnAnswer("SetCallbackQueue", kResultOk);
}

int32_t CRefDspAgent::GetCurrentTrackingID() {
    m_fnJournal("GetCurrentTrackingID", Args());
    return m_fnAnswer("GetCurrentTrackingID", TrackStore::Instance().CurrentTrackingID());
}

bool CRefDspAgent::SetDBMgr(CDBAccessThreadMgr* pThreadMgr, IVXTinyDB* pTinyDB) {
    m_fnJournal("SetDBMgr", Args(OpaqueJson(pThreadMgr), OpaqueJson(pTinyDB)));
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_pDBThreadMgr = pThreadMgr;
        m_pTinyDB = pTinyDB;
    }
    return m_fnAnswerBool("SetDBMgr", true);
}

int32_t CRefDspAgent::SetOverUnderExposureImage(bool bEnable) {
    m_fnJournal("SetOverUnderExposureImage", Args(bEnable));
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_bOverUnderExposure = bEnable;
    }
    return m_fnAnswer("SetOverUnderExposureImage", kResultOk);
}

HistogramDist CRefDspAgent::GetHistogramInfo() {
    m_fnJournal("GetHistogramInfo", Args());
    std::lock_guard<std::mutex> guard(m_stateLock);
    return m_lastHistogram;
}

HistogramDist CRefDspAgent::GetToneCurveHistogramInfo() {
    // No tone curve is rendered yet, so before and after it are the same picture.
    m_fnJournal("GetToneCurveHistogramInfo", Args());
    std::lock_guard<std::mutex> guard(m_stateLock);
    return m_lastHistogram;
}

int32_t CRefDspAgent::SetImageRetouchMgr(ImageRetouchMgr* pMgr) {
    Json entry = m_fnEntry("SetImageRetouchMgr");
    entry["args"] = Args(OpaqueJson(pMgr));
    // Which manager it was, so that a test can tell one facade's manager from
    // another's; the pointer is kept, never called.
    entry["manager"] = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pMgr));
    AgentRegistry::Instance().Append(std::move(entry));
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        m_pImageRetouchMgr = pMgr;
    }
    return m_fnAnswer("SetImageRetouchMgr", kResultOk);
}

void CRefDspAgent::SetDspVideoID(uint32_t videoID) {
    m_fnJournal("SetDspVideoID", Args(videoID));
    std::lock_guard<std::mutex> guard(m_stateLock);
    m_nDspVideoID = videoID;
}

uint32_t CRefDspAgent::GetDspVideoID() {
    m_fnJournal("GetDspVideoID", Args());
    uint32_t videoID = 0;
    {
        std::lock_guard<std::mutex> guard(m_stateLock);
        videoID = m_nDspVideoID;
    }
    return m_fnAnswerUnsigned("GetDspVideoID", videoID);
}

}  // namespace refagent
}  // namespace pcg
