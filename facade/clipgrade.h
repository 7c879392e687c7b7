// PyClipGrade: the one class through which a script reaches the engines. It
// brings up its render agents (or shares another facade's), turns effect
// dictionaries into records for them, and lets go of everything in a fixed
// order.
#pragma once

#include <cstdint>
#include <string>

#include "binding/py_compat.h"
#include "engine/buffer_allocator.h"
#include "engine/engine_contract.h"
#include "engine/image_retouch.h"
#include "engine/dsp_callback_queue.h"
#include "engine/engine_contract.h"
#include "events/py_callback.h"
#include "engine/records/record_types.h"
#include "engine/selection_result.h"
#include "imaging/image_buffer.h"
#include "imaging/ipp_functions.h"
#include "selection/magic_selection.h"
#include "selection/manual_brush.h"
#include "selection/selection_tool.h"
#include "selection/zenodor_loader.h"
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

    // Colour questions (facade/query_*.cpp): a one-picture run on the image
    // engine per question; None (or false) when it cannot be answered.
    PyObject* Query_WBDropInfo(long lImageID, IImageBuffer* pBuffer, int nX, int nY, int nParam1, int nParam2);
    bool Run_Query_TATMapInfoTask(long lImageID, long lTaskMask, IImageBuffer* pBuffer, int nX, int nY,
                                  PixelInfo& info);
    PyObject* Query_TATMapInfo(long lImageID, IImageBuffer* pBuffer, int nX, int nY);
    PyObject* Query_ToneTATMapInfo(long lImageID, IImageBuffer* pBuffer, int nX, int nY);
    // A 256-entry display curve through the dictionary's "TCurvPts".
    PyObject* Query_ToneMapInfo(PyObject* pPyoSetting);
    // Never None: empty unless the agent gave exactly four tables.
    PyObject* Query_InterpolatedToneMapInfo(UINT nVideoID, LONGLONG llTime);
    // A new histogram with one reference, the caller's.
    CHistogramDist* GetHistogramInfo();
    CHistogramDist* GetToneCurveHistogramInfo();
    // One-line forwarders to the image engine; false without it or on failure.
    bool SetImage(long lImageID, BufferData* pBufferData, ImageRetouchSetting imageSetting);
    bool RegisterImageRatio(long lImageID, long lBufferID, float fRatio, BufferData* ratioBuffer);
    bool UnregisterImageRatio(long lImageID, long lBufferID);
    bool ReleaseImage(long lImageID);

    // Single frames and look-up tables (facade/buffer_lut.cpp). The frame
    // comes back as a new 4-byte buffer with one reference, the caller's.
    IImageBuffer* ApplyEffectOnBuffer(UINT videoID, long nParam, IImageBuffer* pSrc, LONGLONG llTime, UINT nFlags);
    HRESULT SetLUT(PyObject* pyVideoIDList, PyObject* pySize, PyObject* pyDomainMin, PyObject* pyDomainMax,
                   PyObject* pyTable, bool useBufferAgent);
    HRESULT ClearLUT(PyObject* pyVideoIDList, bool useBufferAgent);
    bool ApplyLUTOnBuffer(UINT videoID, IImageBuffer* pBuffer);

    // Selections (facade/selection_*.cpp). Masks handed back are new buffers
    // from the allocator carrying one reference for the caller.
    HRESULT Selection_Initialize(IImageBuffer* pBufferData, PyObject* pPyoMaskLine);
    HRESULT Selection_Uninitialize();
    IImageBuffer* Selection_MagicSelect(PyObject* pPyoLstPos, int nRadius, bool bStrokeFlag1, bool bStrokeFlag2,
                                        bool bStrokeFlag3);
    HRESULT Selection_ClearStrokeHistory();
    HRESULT Selection_Undo(int nStep);
    HRESULT Selection_Redo(int nStep);
    PyObject* Selection_MaskToPoint(IImageBuffer* pInputBuffer, PyObject* pPyoRect);
    IImageBuffer* Selection_PointToMask(PyObject* pPyoMaskList, int nWidth, int nHeight, bool bInv);
    IImageBuffer* Selection_MaskCorrection(IImageBuffer* pInputBuffer, PyObject* pPyoMaskCorrect);
    // Without settings: a plain copy.
    IImageBuffer* Selection_MaskCorrection(IImageBuffer* pInputBuffer);
    // Null only where a Python error is set; None for no result.
    PyObject* Selection_ScaleUSSelectionList(PyObject* pPyoMaskList, int nSrcWidth, int nSrcHeight, int nDstWidth,
                                             int nDstHeight);
    HRESULT Manual_Initialize(PyObject* pPyoMaskLine, int nWidth, int nHeight);
    HRESULT Manual_Uninitialize();
    IImageBuffer* Manual_UpdateStroke(PyObject* pPyoLstPos, int nRadius, bool bNewStroke, bool bForeground);
    // A 4-byte buffer resampled by area into a new nWidth x nHeight buffer.
    IImageBuffer* ResizeImageBuffer(IImageBuffer* pSrc, UINT nWidth, UINT nHeight);
    // The mask's rows and runs into the diagnostic log.
    void DumpIImageBuffer(IImageBuffer* pBuffer);
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

    // Fields in the order they are built; they are torn down in the reverse.
    IVXHvnDspAgent* m_dspAgent;
    IVXHvnDspAgent* m_dspBufAgent;
    pcg::platform::ModuleHandle m_hDspAgentDll;
    pcg::platform::ModuleHandle m_hIompDll;
    // The ring of two items the main agent posts events into, and the named
    // event the callback thread sets as its last act (null without a thread).
    DspCallbackQueue m_callbackQueue;
    pcg::platform::Event* m_hCallbackDoneEvent;

    // The image side of the engine. m_pImageRetouch belongs to
    // m_pImageRetouchMgr and goes back through it; the facade holds one
    // reference on the allocator and owns the manager.
    IImageRetouch* m_pImageRetouch;
    IBufferAllocator* m_pBufferAllocator;
    // The working depth, settled together in the constructor: PIXEL_ARGB32,
    // VX_PIXEL_4BYTES, 0 or PIXEL_ARGB64, VX_PIXEL_8BYTES, 1.
    int32_t m_pixelFormat;
    int32_t m_pixelBytes;
    int32_t m_highDepth;
    // The image engine's library when the constructor was given its path.
    pcg::platform::ModuleHandle m_hImageRetouchDll;
    std::wstring m_imageRetouchDllPath;

    // The live selection, the picture copy the smart selection reads, and
    // the tools that work on them. Plain arrays owned by the facade.
    SelectionResult m_LatestSelectionResult;
    BufferData m_selectionBufData;
    ZenodorLoader m_ZenodorLoader;
    CSelectionTool m_SelectionTool;
    CMagicSelection m_MagicSelection;
    CManualBrush m_ManualBrush;

    // Guards the three slots together; taken after the interpreter lock.
    pcg::platform::CriticalSection m_cacheFrameLock;
    IImageBuffer* m_pCacheFrame;
    IImageBuffer* m_pCachePureFrame;
    IImageBuffer* m_pCacheFramePlaying;
    IppFunctions m_ippFunctions;
    ImageRetouchMgr* m_pImageRetouchMgr;

    // Beyond the class's own fields. A reference on the library that holds a
    // passed agent's code, so that the agent's code stays mapped while this
    // facade holds it, even when the facade that loaded the library is gone
    // first; and the size of the run the live selection was built for.
    pcg::platform::ModuleHandle m_hPassedAgentCode;
    int32_t m_nSelectionWidth;
    int32_t m_nSelectionHeight;

    // Applies the lens settings, then crop and rotation, of a correction
    // dictionary; output.pBuffer is a new plain array for the caller.
    HRESULT m_fnMaskCorrection(PyObject* pPyoMaskCorrect, BufferData input, BufferData& output);
    // Rebuilds the live mask at the run's size from a boundary line list.
    HRESULT m_fnSetSelectionResultMaskData(PyObject* pPyoMaskLine, bool bMaskInvert);

private:
    void m_fnBringUpAgents(bool agentPassed, BOOL createBufferAgent);
    IVXHvnDspAgent* m_fnSelectAgent(bool useBufferAgent) const { return useBufferAgent ? m_dspBufAgent : m_dspAgent; }
    template <typename Call>
    HRESULT m_fnMirror(const char* nullLine, Call call);
    void m_fnReleaseAgents();
    // Engine start-up: the path, the manager, ImageRetouch and the allocator
    // (when createBufferAgent), then the pixel depth; and their teardown.
    void m_fnStartImageEngine(WCHAR* imageRetouchDllPath, BOOL createBufferAgent);
    HRESULT m_fnInitImageRetouch();
    void m_fnSettlePixelDepth();
    void m_fnReleaseImageEngine();
    void m_fnFreeImageRetouchLibrary();
    void m_fnFreeAgentLibraries();
    // The image engine's calls of a query run, each logging its failure.
    HRESULT m_fnSetImage(long lImageID, BufferData* pBufferData);
    HRESULT m_fnRegisterImageRatio(long lImageID, long lBufferID, float fRatio, BufferData* ratioBuffer);
    HRESULT m_fnUnregisterImageRatio(long lImageID, long lBufferID);
    HRESULT m_fnReleaseImage(long lImageID);
    // Frees the live mask and empties its view; a brush that aliased it
    // loses its view until the next mask is built (m_bBrushOnMask).
    void m_fnFreeSelectionMask();
    // A new allocator buffer holding a copy of the live mask; the line is
    // logged when none comes.
    IImageBuffer* m_fnCopyOfMask(const char* pszFailure);
    // Teardown: the picture copy, the live mask, and an open smart selection.
    void m_fnFreeSelectionBuffers();

    bool m_bBrushOnMask;
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
