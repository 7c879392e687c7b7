// The everyday operations: clips, task clearing, switches. Almost all are one
// agent call with a null test in front; what matters is which agent they reach.
#include "engine/result_codes.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "runtime/dump_log.h"

// Clips must be the same on both agents: the buffer agent hears first and its
// answer is dropped. A facade without a main agent touches neither.
template <typename Call>
HRESULT PyClipGrade::m_fnMirror(const char* nullLine, Call call) {
    if (m_dspAgent == nullptr) {
        DumpLog("%s", nullLine);
        return pcg::kResultPointer;
    }
    if (m_dspBufAgent != nullptr) {
        call(m_dspBufAgent);
    }
    return call(m_dspAgent);
}

HRESULT PyClipGrade::AddVideo(UINT videoID, LONGLONG llFirst, LONGLONG llSecond, double dValue) {
    return m_fnMirror("PyClipGrade::AddVideo Null Pointer : m_dspAgent\n", [&](IVXHvnDspAgent* agent) {
        return agent->AddVideo(videoID, llFirst, llSecond, dValue);
    });
}

HRESULT PyClipGrade::UpdateVideo(UINT videoID, LONGLONG llFirst, LONGLONG llSecond, double dValue) {
    return m_fnMirror("PyClipGrade::UpdateVideo Null Pointer : m_dspAgent\n", [&](IVXHvnDspAgent* agent) {
        return agent->UpdateVideo(videoID, llFirst, llSecond, dValue);
    });
}

// Removing clips takes the agent's writer lock, which another script thread
// may hold while it runs script code: the wait is made without the
// interpreter lock, or that thread could never finish and let go.
HRESULT PyClipGrade::RemoveVideo(UINT videoID) {
    PyGilUnlockScope unlocked;
    return m_fnMirror("PyClipGrade::RemoveVideo Null Pointer : m_dspAgent\n",
                      [&](IVXHvnDspAgent* agent) { return agent->RemoveVideo(videoID); });
}

HRESULT PyClipGrade::RemoveAllVideo() {
    PyGilUnlockScope unlocked;
    return m_fnMirror("PyClipGrade::RemoveAllVideo Null Pointer : m_dspAgent\n",
                      [](IVXHvnDspAgent* agent) { return agent->RemoveAllVideo(); });
}

bool PyClipGrade::SetDBMgr(CDBAccessThreadMgr* threadMgr, IVXTinyDB* pIVXTinyDB) {
    if (m_dspAgent == nullptr) {
        DumpLog("PyClipGrade::SetDBMgr, Error. m_dspAgent is NULL");
        return false;
    }
    if (threadMgr == nullptr || pIVXTinyDB == nullptr) {
        DumpLog("PyClipGrade::SetDBMgr, Error. threadMgr or pIVXTinyDB is NULL");
        return false;
    }
    if (m_dspBufAgent != nullptr) {
        m_dspBufAgent->SetDBMgr(threadMgr, pIVXTinyDB);
    }
    return m_dspAgent->SetDBMgr(threadMgr, pIVXTinyDB);
}

HRESULT PyClipGrade::ClearTask(UINT videoID, bool useBufferAgent) {
    PyGilUnlockScope unlocked;
    IVXHvnDspAgent* agent = m_fnSelectAgent(useBufferAgent);
    if (agent == nullptr) {
        DumpLog("PyClipGrade::ClearTask Null Pointer : agent\n");
        return pcg::kResultPointer;
    }
    // The effects and the masks of a clip always go together, in this order.
    agent->ClearTask(videoID);
    agent->ClearMaskInfo(videoID);
    return pcg::kResultOk;
}

void PyClipGrade::DumpTask(bool useBufferAgent) {
    if (IVXHvnDspAgent* agent = m_fnSelectAgent(useBufferAgent)) {
        agent->DumpTask();
    }
}

// The writer lock may be held by another script thread until it runs again:
// the wait is made without the interpreter lock.
void PyClipGrade::LockEffectDataWriter(bool useBufferAgent) {
    PyGilUnlockScope unlocked;
    if (IVXHvnDspAgent* agent = m_fnSelectAgent(useBufferAgent)) {
        agent->LockEffectDataWriter();
    }
}

void PyClipGrade::UnlockEffectDataWriter(bool useBufferAgent) {
    if (IVXHvnDspAgent* agent = m_fnSelectAgent(useBufferAgent)) {
        agent->UnlockEffectDataWriter();
    }
}

bool PyClipGrade::SetFrameRate(double framesPerSecond) {
    return m_dspAgent != nullptr && m_dspAgent->SetFrameRate(framesPerSecond) >= 0;
}

void PyClipGrade::SetDspVideoID(UINT videoID) {
    if (m_dspAgent != nullptr) {
        m_dspAgent->SetDspVideoID(videoID);
    }
}

UINT PyClipGrade::GetDspVideoID() {
    return m_dspAgent != nullptr ? m_dspAgent->GetDspVideoID() : 0;
}

void PyClipGrade::SetOverUnderExposureImage(bool enable) {
    DumpLog("PyClipGrade::SetOverUnderExposureImage() enter\n");
    if (m_dspAgent != nullptr) {
        m_dspAgent->SetOverUnderExposureImage(enable);
    }
    DumpLog("PyClipGrade::SetOverUnderExposureImage() end\n");
}
