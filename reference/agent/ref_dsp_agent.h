// The reference render agent: a real IVXHvnDspAgent that keeps clips and
// their effects, owns and frees what it is given, and writes every call into
// the library's journal. What each operation does is told in
// reference/agent/ref_agent_api.h.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/buffer_settings.h"
#include "engine/dsp_callback_queue.h"
#include "engine/engine_contract.h"
#include "engine/track_results.h"
#include "reference/agent/clip_store.h"
#include "reference/agent/event_producer.h"
#include "reference/agent/journal_json.h"
#include "reference/agent/writer_lock.h"

namespace pcg {
namespace refagent {

class CRefDspAgent final : public IVXHvnDspAgent {
public:
    // Holds one reference for the caller.
    CRefDspAgent(const char* name, int64_t instance);

    uint32_t AddRef() override;
    uint32_t Release() override;
    void LockEffectDataWriter() override;
    void UnlockEffectDataWriter() override;
    int32_t SetFrameRate(double framesPerSecond) override;
    int32_t PushEffect(uint32_t videoID, FUNCTION_ID functionID,
                       pcg::engine::EffectRecordHeader** ppRecord) override;
    int32_t ClearTask(uint32_t videoID) override;
    int32_t AddMaskInfo(uint32_t videoID, FUNCTION_ID maskFunctionID, uint32_t maskID,
                        HVN::MaskInfoBase** ppMask) override;
    int32_t ClearMaskInfo(uint32_t videoID) override;
    int32_t AddVideo(uint32_t videoID, int64_t llStart, int64_t llDuration, double dAspectRatio) override;
    int32_t UpdateVideo(uint32_t videoID, int64_t llStart, int64_t llDuration, double dAspectRatio) override;
    int32_t GetVideoAspectRatio(uint32_t videoID, int32_t nReserved1, int32_t nReserved2,
                                double* pdAspectRatio) override;
    int32_t RemoveVideo(uint32_t videoID) override;
    int32_t RemoveAllVideo() override;
    int32_t AdjustBufferRect(uint32_t videoID, int32_t width, int32_t height, double dWidthOverHeight,
                             RECT* pRect) override;
    int32_t SetLUT(uint32_t videoID, const LUTSetting* pSetting) override;
    int32_t ClearLUT(uint32_t videoID) override;
    bool NeedsSourceCopy(uint32_t videoID) override;
    bool ApplyLUTOnBuffer(uint32_t videoID, IImageBuffer* pBuffer) override;
    int32_t SetCacheFrameOnDspAgent(uint32_t videoID, int64_t llTime, BOOL bEnable) override;
    int32_t EnableCacheFramePlaying(BOOL bEnable, int64_t llFrameInterval) override;
    int32_t ResetCacheFramePlaying() override;
    int32_t ApplyEffectOnBuffer(IImageRetouch* pImageRetouch, ApplyBufferSetting* pSetting) override;
    int32_t GetInterpolatedToneMapInfo(uint32_t videoID, int64_t llTime,
                                       pcg::engine::ContractVector<int32_t*>& tables) override;
    int32_t QueryTrackResultInQueue(uint32_t videoID, uint32_t maskID, int64_t llTime,
                                    TrackQueueEntry** ppEntry) override;
    int32_t CopyMTMaskInfoDB(int32_t nFirst, int32_t nSecond, int32_t nThird) override;
    int32_t FlushQueue2DBUntilPos(int32_t nFirst, int32_t nSecond, int32_t nThird, int64_t llPos) override;
    int32_t ClearTrackResultQueue() override;
    int32_t GetMaxTrackingID(int32_t* pnTrackingID) override;
    int32_t QueryMotionTrackingMaskInfo(int32_t trackingID, int32_t videoID, int32_t maskID,
                                        TrackPointList** ppList, int64_t llTime, float* pPosition) override;
    int32_t QueryLatestMotionTrackingMaskInfo(int32_t videoID, int32_t maskID, int32_t trackingID,
                                              TrackPointList** ppList, int64_t* pllTime,
                                              float* pPosition) override;
    int32_t DeleteMotionTrackingMaskInfoRange(int32_t nFirst, int32_t nSecond, int64_t llTime) override;
    int32_t DeleteMotionTrackingMaskInfoInterval(int32_t nFirst, int32_t nSecond, int64_t llBegin,
                                                 int64_t llEnd) override;
    void DumpTask() override;
    int32_t GetTrackHistoryStream(char** ppBytes, uint32_t* pnSize) override;
    int32_t FreeTrackHistoryStream(char** ppBytes) override;
    int32_t SetTrackHistoryStream(const char* pBytes, uint32_t nSize) override;
    int32_t ClearCurTrackHistoryStream() override;
    int32_t DeleteTrackingKeyFrame(int64_t llTime) override;
    int32_t SetCallbackQueue(DspCallbackQueue* pQueue) override;
    int32_t GetCurrentTrackingID() override;
    bool SetDBMgr(CDBAccessThreadMgr* pThreadMgr, IVXTinyDB* pTinyDB) override;
    int32_t SetOverUnderExposureImage(bool bEnable) override;
    HistogramDist GetHistogramInfo() override;
    HistogramDist GetToneCurveHistogramInfo() override;
    int32_t SetImageRetouchMgr(ImageRetouchMgr* pMgr) override;
    void SetDspVideoID(uint32_t videoID) override;
    uint32_t GetDspVideoID() override;

private:
    ~CRefDspAgent();

    // A journal object for this agent: {"agent", "instance", "op"}.
    Json m_fnEntry(const char* op) const;
    void m_fnJournal(const char* op, Json args);
    // The operation's own answer, unless a result was injected for it.
    int32_t m_fnAnswer(const char* op, int32_t own) const;
    bool m_fnAnswerBool(const char* op, bool own) const;
    uint32_t m_fnAnswerUnsigned(const char* op, uint32_t own) const;
    double m_fnAnswerDouble(const char* op, double own) const;

    const std::string m_name;
    const int64_t m_nInstance;
    std::atomic<uint32_t> m_nRefCount{1};
    // Writes posted events into the ring held; stopped before the agent goes.
    std::shared_ptr<EventProducer> m_pProducer;
    WriterLock m_writerLock;
    ClipStore m_clips;

    // Everything below is guarded by m_stateLock.
    std::mutex m_stateLock;
    double m_dFrameRate = 0.0;
    uint32_t m_nDspVideoID = 0;
    bool m_bOverUnderExposure = false;
    uint32_t m_nCacheVideoID = 0;
    int64_t m_llCacheTime = 0;
    BOOL m_bCacheFrame = 0;
    BOOL m_bCachePlaying = 0;
    int64_t m_llCacheInterval = 0;
    DspCallbackQueue* m_pCallbackQueue = nullptr;
    CDBAccessThreadMgr* m_pDBThreadMgr = nullptr;
    IVXTinyDB* m_pTinyDB = nullptr;
    ImageRetouchMgr* m_pImageRetouchMgr = nullptr;
    std::vector<char> m_trackHistory;
    TrackPointList* m_pLatestList = nullptr;   // handed out by the latest-result lookup, still ours
    HistogramDist m_lastHistogram;
};

}  // namespace refagent
}  // namespace pcg
