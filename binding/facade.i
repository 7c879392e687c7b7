// The facade class as scripts see it, with the agent text and the wide
// string arguments of its constructor.

%{
#include "engine/effect_record.h"
#include "facade/agent_registry.h"
#include "facade/clipgrade.h"
#include <new>

// An agent's text: at least one character after the marker.
static bool pcg_IsAgentText(PyObject* o) {
    Py_ssize_t length = 0;
    const char* text = pcg_TextAsUtf8(o, &length);
    if (text == nullptr) {
        PyErr_Clear();
        return false;
    }
    return length > kAgentTextMarkerLength &&
           std::char_traits<char>::compare(text, kAgentTextMarker, kAgentTextMarkerLength) == 0;
}

// The number after the marker, in the base its own prefix tells. Null for a
// null agent; an error is set when the number is not one, or names no agent
// that a live facade holds (a stale or made-up number would be called
// through as an agent).
static IVXHvnDspAgent* pcg_AgentFromText(PyObject* o, bool* failed) {
    *failed = true;
    Py_ssize_t length = 0;
    const char* text = pcg_TextAsUtf8(o, &length);
    if (text == nullptr) return nullptr;
    PyObject* number = PyLong_FromString(const_cast<char*>(text + kAgentTextMarkerLength), nullptr, 0);
    if (number == nullptr) return nullptr;
    void* pointer = PyLong_AsVoidPtr(number);
    Py_DECREF(number);
    if (pointer == nullptr && PyErr_Occurred()) return nullptr;
    IVXHvnDspAgent* agent = static_cast<IVXHvnDspAgent*>(pointer);
    if (agent != nullptr && !pcg::facade::IsHeldAgent(agent)) {
        PyErr_SetString(PyExc_ValueError, "in method 'new_PyClipGrade', argument 1 of type 'IVXHvnDspAgent *'");
        return nullptr;
    }
    *failed = false;
    return agent;
}
%}

%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) IVXHvnDspAgent * {
    $1 = pcg_IsAgentText($input) ? 1 : 0;
}
%typemap(in) IVXHvnDspAgent * (bool pcgFailed) {
    $1 = pcg_AgentFromText($input, &pcgFailed);
    if (pcgFailed) SWIG_fail;
}

// Wide strings: the dispatcher lets any text or wrapped wide pointer
// through, but only a Unicode object is taken in the end. The constructor
// copies what it keeps.
%typemap(typecheck, precedence=SWIG_TYPECHECK_UNISTRING) WCHAR * {
    void* pcgPointer = 0;
    $1 = (pcg_IsNarrowOrUnicodeText($input) ||
          SWIG_IsOK(SWIG_ConvertPtr($input, &pcgPointer, $descriptor(wchar_t *), 0))) ? 1 : 0;
}
%typemap(in) WCHAR * (wchar_t* pcgWide = 0) {
    pcgWide = pcg_UnicodeAsWide($input);
    if (pcgWide == 0) {
        PyErr_SetString(PyExc_TypeError, "Unicode string expected");
        SWIG_fail;
    }
    $1 = pcgWide;
}
%typemap(freearg) WCHAR * {
    pcg_FreeWide(pcgWide$argnum);
}

// Memory running out while a facade's members are built unwinds what was
// built; the script sees MemoryError rather than an exception crossing into
// the interpreter.
%exception PyClipGrade::PyClipGrade {
  try {
    $action
  } catch (const std::bad_alloc&) {
    PyErr_SetString(PyExc_MemoryError, "PyClipGrade: out of memory while the facade was being built");
    SWIG_fail;
  }
}

// A curve table for the engine reaches the script as a list of its 65536
// integers; the table itself goes back to the heap it came from.
%typemap(out) int* Query_ToneMapInfoForEngine {
  if ($1 == 0) {
    $result = PyErr_NoMemory();
    SWIG_fail;
  }
  $result = PyList_New(TONE_MAX_TABLE_SIZE);
  for (Py_ssize_t pcgIndex = 0; $result != 0 && pcgIndex < TONE_MAX_TABLE_SIZE; ++pcgIndex) {
    PyObject* pcgValue = PyInt_FromLong($1[pcgIndex]);
    if (pcgValue == 0) {
      Py_CLEAR($result);
      break;
    }
    PyList_SET_ITEM($result, pcgIndex, pcgValue);
  }
  pcg::engine::FreeEffectMemory($1);
  if ($result == 0) SWIG_fail;
}

class IVXHvnDspAgent;
// Pixel objects cross as opaque handles; the script never releases them.
class IImageBuffer;
// Objects of the host's database layer, handed through as opaque pointers.
class CDBAccessThreadMgr;
class IVXTinyDB;

class PyClipGrade {
public:
    // Six overloads, each the next with its last argument left off; spelled
    // out so that the script sees exactly these and no keyword defaults.
    PyClipGrade(IVXHvnDspAgent* agent, BOOL createBufferAgent, BOOL startCallbackThread,
                WCHAR* imageRetouchDllPath, WCHAR* logRootKey);
    PyClipGrade(IVXHvnDspAgent* agent, BOOL createBufferAgent, BOOL startCallbackThread,
                WCHAR* imageRetouchDllPath);
    PyClipGrade(IVXHvnDspAgent* agent, BOOL createBufferAgent, BOOL startCallbackThread);
    PyClipGrade(IVXHvnDspAgent* agent, BOOL createBufferAgent);
    PyClipGrade(IVXHvnDspAgent* agent);
    PyClipGrade();
    virtual ~PyClipGrade();

    PyObject* GetDspAgentPtr();
    HRESULT PushTask(UINT videoID, long taskID, PyObject* effect, bool useBufferAgent);
    HRESULT ClearTask(UINT videoID, bool useBufferAgent);
    HRESULT AddMaskInfo(UINT videoID, long taskID, PyObject* masks, bool useBufferAgent);

    // A new buffer with one reference that the script releases itself.
    IImageBuffer* ApplyEffectOnBuffer(UINT videoID, long nParam, IImageBuffer* pSrc, LONGLONG llTime, UINT nFlags);
    HRESULT SetLUT(PyObject* pyVideoIDList, PyObject* pySize, PyObject* pyDomainMin, PyObject* pyDomainMax,
                   PyObject* pyTable, bool useBufferAgent);
    HRESULT ClearLUT(PyObject* pyVideoIDList, bool useBufferAgent);
    bool ApplyLUTOnBuffer(UINT videoID, IImageBuffer* pBuffer);

    PyObject* Query_WBDropInfo(long lImageID, IImageBuffer* pBuffer, int nX, int nY, int nParam1, int nParam2);
    bool Run_Query_TATMapInfoTask(long lImageID, long lTaskMask, IImageBuffer* pBuffer, int nX, int nY,
                                  PixelInfo& info);
    PyObject* Query_TATMapInfo(long lImageID, IImageBuffer* pBuffer, int nX, int nY);
    PyObject* Query_ToneTATMapInfo(long lImageID, IImageBuffer* pBuffer, int nX, int nY);
    PyObject* Query_ToneMapInfo(PyObject* pPyoSetting);
    int* Query_ToneMapInfoForEngine(ToneCurveRGBSetting setToneCurve);
    PyObject* Query_InterpolatedToneMapInfo(UINT nVideoID, LONGLONG llTime);
    // Not owned by the wrapper: the script calls Release() itself.
    CHistogramDist* GetHistogramInfo();
    CHistogramDist* GetToneCurveHistogramInfo();

    HRESULT AddVideo(UINT videoID, LONGLONG llFirst, LONGLONG llSecond, double dValue);
    HRESULT UpdateVideo(UINT videoID, LONGLONG llFirst, LONGLONG llSecond, double dValue);
    HRESULT RemoveVideo(UINT videoID);
    HRESULT RemoveAllVideo();
    bool SetDBMgr(CDBAccessThreadMgr* threadMgr, IVXTinyDB* pIVXTinyDB);

    // With the bool and without it (false); spelled out as two overloads.
    void LockEffectDataWriter(bool useBufferAgent);
    void LockEffectDataWriter();
    void UnlockEffectDataWriter(bool useBufferAgent);
    void UnlockEffectDataWriter();
    void DumpTask(bool useBufferAgent);
    void DumpTask();

    bool SetFrameRate(double framesPerSecond);
    void SetDspVideoID(UINT videoID);
    UINT GetDspVideoID();
    void SetOverUnderExposureImage(bool enable);

    IImageBuffer* ResizeImageBuffer(IImageBuffer* pSrc, UINT nWidth, UINT nHeight);
    PyObject* Selection_MaskToPoint(IImageBuffer* pInputBuffer, PyObject* pPyoRect);
    IImageBuffer* Selection_PointToMask(PyObject* pPyoMaskList, int nWidth, int nHeight, bool bInv);
    // With the settings and without them; spelled out as two overloads.
    IImageBuffer* Selection_MaskCorrection(IImageBuffer* pInputBuffer, PyObject* pPyoMaskCorrect);
    IImageBuffer* Selection_MaskCorrection(IImageBuffer* pInputBuffer);
    PyObject* Selection_ScaleUSSelectionList(PyObject* pPyoMaskList, int nSrcWidth, int nSrcHeight, int nDstWidth,
                                             int nDstHeight);
    HRESULT Selection_Initialize(IImageBuffer* pBufferData, PyObject* pPyoMaskLine);
    HRESULT Selection_Uninitialize();
    IImageBuffer* Selection_MagicSelect(PyObject* pPyoLstPos, int nRadius, bool bStrokeFlag1, bool bStrokeFlag2,
                                        bool bStrokeFlag3);
    HRESULT Selection_ClearStrokeHistory();
    HRESULT Selection_Undo(int nStep);
    HRESULT Selection_Redo(int nStep);
    HRESULT Manual_Initialize(PyObject* pPyoMaskLine, int nWidth, int nHeight);
    HRESULT Manual_Uninitialize();
    IImageBuffer* Manual_UpdateStroke(PyObject* pPyoLstPos, int nRadius, bool bNewStroke, bool bForeground);
    void DumpIImageBuffer(IImageBuffer* pBuffer);
    bool SetPyCallback(PyObject* callback);
    void SetCacheFrame(IImageBuffer* frame);
    IImageBuffer* GetCacheFrame();
    void SetCachePureFrame(IImageBuffer* frame);
    IImageBuffer* GetCachePureFrame();
    void SetCacheFrameOnDspAgent(UINT videoID, LONGLONG llTime, BOOL bEnable);
    void SetCacheFramePlaying(IImageBuffer* frame);
    IImageBuffer* GetCacheFramePlaying();
    void SetCacheFramePlayingOnDspAgent(BOOL enable, LONGLONG frameInterval);
    void FlushQueue2DBUntilPos(int first, int second, int third, LONGLONG position);
    void ClearTrackResultQueue();
    PyObject* GetMaxTrackingID();
    PyObject* getTrackResult(int trackingID, int videoID, int maskID, LONGLONG time);
    PyObject* getLatestTrackResult(int videoID, int maskID, int trackingID);
    PyObject* GetTrackHistoryStream();
    void SetTrackHistoryStream(char* pcgStream, int pcgStreamSize);
    void DeleteTrackingKeyFrame(LONGLONG time);
    void ClearCurTrackHistoryStream();
    void copyTrackResultInDB(int first, int second, int third);
    bool DeleteMotionTrackingMaskInfoRange(int first, int second, LONGLONG time);
    bool DeleteMotionTrackingMaskInfoInterval(int first, int second, LONGLONG begin, LONGLONG end);
};
