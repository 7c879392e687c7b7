// The render agent's interface, IVXHvnDspAgent, and its factory. The agent
// lives in a closed library of the host ("KESdlls\VXHvnDspAgent.dll"); the
// reference agent in reference/agent keeps the same contract. The order of
// the virtual operations is the binding part: the closed library is reached
// through this table, so an operation is never moved, added in between or
// removed.
//
// Result types: an HRESULT-style int32_t where the module reads the result
// or the operation reports one it does not read; void where the operation
// has none. Negative is failure; the codes are in engine/result_codes.h.
#pragma once

#include <cstdint>

#include "engine/constants.h"
#include "engine/records/image_records.h"

// What belongs to others and crosses this interface only by pointer.
class IImageBuffer;
class IImageRetouch;
class ImageRetouchMgr;
class CDBAccessThreadMgr;
class IVXTinyDB;
namespace HVN {
class MaskInfoBase;
}

struct ApplyBufferSetting;
struct LUTSetting;
struct DspCallbackQueue;
struct TrackPointList;
struct TrackQueueEntry;

namespace pcg {
namespace engine {
struct EffectRecordHeader;
template <typename T>
struct ContractVector;
}  // namespace engine
}  // namespace pcg

class IVXHvnDspAgent {
public:
    // Reference counting; not COM: there is no QueryInterface. The agent
    // ends with the last Release.
    virtual uint32_t AddRef() = 0;
    virtual uint32_t Release() = 0;

    // The agent's own lock on its effect data; pairing is the caller's duty.
    virtual void LockEffectDataWriter() = 0;
    virtual void UnlockEffectDataWriter() = 0;

    virtual int32_t SetFrameRate(double framesPerSecond) = 0;

    // Takes *ppRecord and everything that hangs on it; the agent frees it.
    virtual int32_t PushEffect(uint32_t videoID, FUNCTION_ID functionID,
                               pcg::engine::EffectRecordHeader** ppRecord) = 0;
    // Drops what was pushed for the clip.
    virtual int32_t ClearTask(uint32_t videoID) = 0;
    // Takes the mask object in *ppMask.
    virtual int32_t AddMaskInfo(uint32_t videoID, FUNCTION_ID maskFunctionID, uint32_t maskID,
                                HVN::MaskInfoBase** ppMask) = 0;
    virtual int32_t ClearMaskInfo(uint32_t videoID) = 0;

    virtual int32_t AddVideo(uint32_t videoID, int64_t llStart, int64_t llDuration, double dAspectRatio) = 0;
    virtual int32_t UpdateVideo(uint32_t videoID, int64_t llStart, int64_t llDuration, double dAspectRatio) = 0;
    // Always writes *pdAspectRatio; the module does not preset it.
    virtual int32_t GetVideoAspectRatio(uint32_t videoID, int32_t nReserved1, int32_t nReserved2,
                                        double* pdAspectRatio) = 0;
    virtual int32_t RemoveVideo(uint32_t videoID) = 0;
    virtual int32_t RemoveAllVideo() = 0;

    // May change *pRect (in and out); the module puts what is left there into
    // the ApplyBufferSetting's roi.
    virtual int32_t AdjustBufferRect(uint32_t videoID, int32_t width, int32_t height, double dWidthOverHeight,
                                     RECT* pRect) = 0;
    // Copies the block: it is gone after the call.
    virtual int32_t SetLUT(uint32_t videoID, const LUTSetting* pSetting) = 0;
    virtual int32_t ClearLUT(uint32_t videoID) = 0;
    virtual bool NeedsSourceCopy(uint32_t videoID) = 0;
    virtual bool ApplyLUTOnBuffer(uint32_t videoID, IImageBuffer* pBuffer) = 0;

    virtual int32_t SetCacheFrameOnDspAgent(uint32_t videoID, int64_t llTime, BOOL bEnable) = 0;
    virtual int32_t EnableCacheFramePlaying(BOOL bEnable, int64_t llFrameInterval) = 0;
    virtual int32_t ResetCacheFramePlaying() = 0;

    // Renders the clip's effects at the block's time from its source pixels
    // into its destination pixels.
    virtual int32_t ApplyEffectOnBuffer(IImageRetouch* pImageRetouch, ApplyBufferSetting* pSetting) = 0;
    // 0 on success: four tables of TONE_MAX_TABLE_SIZE int32 values, each
    // from AllocEffectMemory; the caller frees the tables and the storage.
    virtual int32_t GetInterpolatedToneMapInfo(uint32_t videoID, int64_t llTime,
                                               pcg::engine::ContractVector<int32_t*>& tables) = 0;

    // Track results. An entry from QueryTrackResultInQueue is the caller's
    // (operator delete), as is its list (FreeTrackPointList).
    virtual int32_t QueryTrackResultInQueue(uint32_t videoID, uint32_t maskID, int64_t llTime,
                                            TrackQueueEntry** ppEntry) = 0;
    virtual int32_t CopyMTMaskInfoDB(int32_t nFirst, int32_t nSecond, int32_t nThird) = 0;
    virtual int32_t FlushQueue2DBUntilPos(int32_t nFirst, int32_t nSecond, int32_t nThird, int64_t llPos) = 0;
    virtual int32_t ClearTrackResultQueue() = 0;
    virtual int32_t GetMaxTrackingID(int32_t* pnTrackingID) = 0;
    virtual int32_t QueryMotionTrackingMaskInfo(int32_t trackingID, int32_t videoID, int32_t maskID,
                                                TrackPointList** ppList, int64_t llTime, float* pPosition) = 0;
    virtual int32_t QueryLatestMotionTrackingMaskInfo(int32_t videoID, int32_t maskID, int32_t trackingID,
                                                      TrackPointList** ppList, int64_t* pllTime,
                                                      float* pPosition) = 0;
    virtual int32_t DeleteMotionTrackingMaskInfoRange(int32_t nFirst, int32_t nSecond, int64_t llTime) = 0;
    virtual int32_t DeleteMotionTrackingMaskInfoInterval(int32_t nFirst, int32_t nSecond, int64_t llBegin,
                                                         int64_t llEnd) = 0;

    virtual void DumpTask() = 0;

    // The track history: opaque bytes. What GetTrackHistoryStream hands out
    // goes back through FreeTrackHistoryStream.
    virtual int32_t GetTrackHistoryStream(char** ppBytes, uint32_t* pnSize) = 0;
    virtual int32_t FreeTrackHistoryStream(char** ppBytes) = 0;
    virtual int32_t SetTrackHistoryStream(const char* pBytes, uint32_t nSize) = 0;
    virtual int32_t ClearCurTrackHistoryStream() = 0;
    virtual int32_t DeleteTrackingKeyFrame(int64_t llTime) = 0;

    // Posts engine events into the ring until told null; never posts after
    // the null call has returned.
    virtual int32_t SetCallbackQueue(DspCallbackQueue* pQueue) = 0;
    virtual int32_t GetCurrentTrackingID() = 0;
    // Keeps both pointers.
    virtual bool SetDBMgr(CDBAccessThreadMgr* pThreadMgr, IVXTinyDB* pTinyDB) = 0;
    virtual int32_t SetOverUnderExposureImage(bool bEnable) = 0;
    virtual HistogramDist GetHistogramInfo() = 0;
    virtual HistogramDist GetToneCurveHistogramInfo() = 0;
    // Keeps the pointer; the manager outlives the facade's reference.
    virtual int32_t SetImageRetouchMgr(ImageRetouchMgr* pMgr) = 0;
    virtual void SetDspVideoID(uint32_t videoID) = 0;
    virtual uint32_t GetDspVideoID() = 0;

protected:
    // Lifetime goes through Release only.
    ~IVXHvnDspAgent() = default;
};

// The factory that the agent's library exports by this name. The module
// passes "DspMain" or "DspBuf", 0 and null; the result holds one reference.
using CreateHvnDspAgentFn = IVXHvnDspAgent* (*)(const char* name, int32_t reserved, void* context);
constexpr const char kCreateHvnDspAgentName[] = "CreateHvnDspAgent";
