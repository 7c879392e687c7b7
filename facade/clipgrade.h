// PyClipGrade: the one class through which a script reaches the engines. It
// brings up its render agents (or shares another facade's), turns effect
// dictionaries into records for them, and lets go of everything in a fixed
// order.
#pragma once

#include <cstdint>

#include "binding/py_compat.h"
#include "engine/dsp_callback_queue.h"
#include "engine/engine_contract.h"
#include "events/py_callback.h"
#include "engine/records/record_types.h"
#include "platform/platform.h"

struct ToneCurveRGBSetting;

// Type words of the script surface beyond those of the records.
using UINT = std::uint32_t;
using WCHAR = wchar_t;
using HRESULT = std::int32_t;

class PyClipGrade : public PyCallbackWnd {
public:
    // agent: an agent another facade made (its GetDspAgentPtr text on the
    // script side), or null to make "DspMain" here. createBufferAgent: make
    // "DspBuf" (and, later, ImageRetouch and the allocator) here.
    PyClipGrade(IVXHvnDspAgent* agent = nullptr, BOOL createBufferAgent = 1, BOOL startCallbackThread = 1,
                WCHAR* imageRetouchDllPath = nullptr, WCHAR* logRootKey = nullptr);
    ~PyClipGrade() override;

    PyClipGrade(const PyClipGrade&) = delete;
    PyClipGrade& operator=(const PyClipGrade&) = delete;

    // "@_PtrWrapper_$=" and m_dspAgent in hexadecimal; no reference is taken here.
    PyObject* GetDspAgentPtr();

    HRESULT PushTask(UINT videoID, long taskID, PyObject* effect, bool useBufferAgent);
    HRESULT ClearTask(UINT videoID, bool useBufferAgent);
    // Builds the mask objects that `masks` describes for the mask function of
    // `taskID` and hands each to the agent, which owns it from then on.
    HRESULT AddMaskInfo(UINT videoID, long taskID, PyObject* masks, bool useBufferAgent);

    // Clips: mirrored to the buffer agent first, then the main agent, whose
    // result is the operation's.
    HRESULT AddVideo(UINT videoID, LONGLONG llFirst, LONGLONG llSecond, double dValue);
    HRESULT UpdateVideo(UINT videoID, LONGLONG llFirst, LONGLONG llSecond, double dValue);
    HRESULT RemoveVideo(UINT videoID);
    HRESULT RemoveAllVideo();
    bool SetDBMgr(CDBAccessThreadMgr* threadMgr, IVXTinyDB* pIVXTinyDB);

    // Selected by the bool (true: the buffer agent); nothing happens without it.
    void DumpTask(bool useBufferAgent = false);
    void LockEffectDataWriter(bool useBufferAgent = false);
    void UnlockEffectDataWriter(bool useBufferAgent = false);

    // The main agent only.
    bool SetFrameRate(double framesPerSecond);
    void SetDspVideoID(UINT videoID);
    UINT GetDspVideoID();
    void SetOverUnderExposureImage(bool enable);

    // A tone curve's full 16-bit mapping table for the engine: 65536 ints
    // from the effect heap, owned by the caller (a curve keyframe entry, and
    // with it the agent). Null only when the heap refuses.
    int* Query_ToneMapInfoForEngine(ToneCurveRGBSetting setToneCurve);

    // Events (events/): the callable, cache frames and track results.
    // None or null clears the callable; no type check. Always true.
    bool SetPyCallback(PyObject* callback);

    // Cache frames: each slot holds one reference of its own. A null frame
    // changes nothing; a get adds a reference that goes to the caller.
    void SetCacheFrame(IImageBuffer* frame);
    IImageBuffer* GetCacheFrame();
    void SetCachePureFrame(IImageBuffer* frame);
    IImageBuffer* GetCachePureFrame();
    void SetCacheFramePlaying(IImageBuffer* frame);
    IImageBuffer* GetCacheFramePlaying();
    void SetCacheFrameOnDspAgent(UINT videoID, LONGLONG llTime, BOOL bEnable);
    void SetCacheFramePlayingOnDspAgent(BOOL enable, LONGLONG frameInterval);

    // Track results, all through m_dspAgent.
    void FlushQueue2DBUntilPos(int first, int second, int third, LONGLONG position);
    void ClearTrackResultQueue();
    PyObject* GetMaxTrackingID();
    PyObject* getTrackResult(int trackingID, int videoID, int maskID, LONGLONG time);
    PyObject* getLatestTrackResult(int videoID, int maskID, int trackingID);
    PyObject* GetTrackHistoryStream();
    // `size` bytes of `stream` go to the agent, not the string's length.
    void SetTrackHistoryStream(char* stream, int size);
    void DeleteTrackingKeyFrame(LONGLONG time);
    void ClearCurTrackHistoryStream();
    void copyTrackResultInDB(int first, int second, int third);
    bool DeleteMotionTrackingMaskInfoRange(int first, int second, LONGLONG time);
    bool DeleteMotionTrackingMaskInfoInterval(int first, int second, LONGLONG begin, LONGLONG end);

    IVXHvnDspAgent* m_dspAgent;
    IVXHvnDspAgent* m_dspBufAgent;
    pcg::platform::ModuleHandle m_hDspAgentDll;
    pcg::platform::ModuleHandle m_hIompDll;
    // A reference on the library that holds a passed agent's code, so that the
    // agent's code stays mapped while this facade holds it, even when the
    // facade that loaded the library is gone first.
    pcg::platform::ModuleHandle m_hPassedAgentCode;

    // The ring of two items the main agent posts events into, and the named
    // event the callback thread sets as its last act (null without a thread).
    DspCallbackQueue m_callbackQueue;
    pcg::platform::Event* m_hCallbackDoneEvent;

    // Guards the three slots together; taken after the interpreter lock.
    pcg::platform::CriticalSection m_cacheFrameLock;
    IImageBuffer* m_pCacheFrame;
    IImageBuffer* m_pCachePureFrame;
    IImageBuffer* m_pCacheFramePlaying;

private:
    void m_fnBringUpAgents(bool agentPassed, BOOL createBufferAgent);
    IVXHvnDspAgent* m_fnSelectAgent(bool useBufferAgent) const { return useBufferAgent ? m_dspBufAgent : m_dspAgent; }
    template <typename Call>
    HRESULT m_fnMirror(const char* nullLine, Call call);
    void m_fnReleaseAgents();
    void m_fnFreeAgentLibraries();
    void m_fnStartCallbackThread();
    // Stops every callback loop on this facade; the interpreter lock is not held.
    void m_fnStopCallbackThread();
    // Lets go of the frames of items nobody will read any more.
    void m_fnSettleUnreadEvents();
    void m_fnSetCacheSlot(IImageBuffer** slot, IImageBuffer* frame, const char* logLine);
    IImageBuffer* m_fnGetCacheSlot(IImageBuffer* const* slot);
    void m_fnReleaseCacheFrames();
};

// The marker that begins an agent's text, and its length: a text carries an
// agent only with at least one character after the marker.
constexpr const char kAgentTextMarker[] = "@_PtrWrapper_$=";
constexpr int kAgentTextMarkerLength = 15;
