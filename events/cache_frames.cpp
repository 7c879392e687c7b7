// The facade's three cache frame slots and the two members that steer the
// agent's producer of them. The slot lock is taken after the interpreter lock
// on script threads and without it on the callback thread, so the two never
// meet in the other order.
#include "facade/clipgrade.h"
#include "imaging/image_buffer.h"
#include "runtime/dump_log.h"

void PyClipGrade::m_fnSetCacheSlot(IImageBuffer** slot, IImageBuffer* frame, const char* logLine) {
    if (frame == nullptr) {
        return;
    }
    pcg::platform::CriticalSectionScope lock(m_cacheFrameLock);
    if (*slot != nullptr) {
        (*slot)->Release();
        *slot = nullptr;
    }
    *slot = frame;
    frame->AddRef();
    DumpLog(logLine, static_cast<void*>(frame), frame->GetPixelBytes());
}

IImageBuffer* PyClipGrade::m_fnGetCacheSlot(IImageBuffer* const* slot) {
    pcg::platform::CriticalSectionScope lock(m_cacheFrameLock);
    if (*slot != nullptr) {
        (*slot)->AddRef();
    }
    return *slot;
}

void PyClipGrade::SetCacheFrame(IImageBuffer* frame) {
    m_fnSetCacheSlot(&m_pCacheFrame, frame, "PyClipGrade::SetCacheFrame cache frame=%p, bytes per pixel=%d");
}

void PyClipGrade::SetCachePureFrame(IImageBuffer* frame) {
    m_fnSetCacheSlot(&m_pCachePureFrame, frame, "PyClipGrade::SetCachePureFrame cache frame=%p, bytes per pixel=%d");
}

void PyClipGrade::SetCacheFramePlaying(IImageBuffer* frame) {
    m_fnSetCacheSlot(&m_pCacheFramePlaying, frame,
                     "PyClipGrade::SetCacheFramePlaying cache frame=%p, bytes per pixel=%d");
}

IImageBuffer* PyClipGrade::GetCacheFrame() { return m_fnGetCacheSlot(&m_pCacheFrame); }

IImageBuffer* PyClipGrade::GetCachePureFrame() { return m_fnGetCacheSlot(&m_pCachePureFrame); }

IImageBuffer* PyClipGrade::GetCacheFramePlaying() { return m_fnGetCacheSlot(&m_pCacheFramePlaying); }

void PyClipGrade::SetCacheFrameOnDspAgent(UINT videoID, LONGLONG llTime, BOOL bEnable) {
    if (m_dspAgent == nullptr) {
        return;
    }
    m_dspAgent->SetCacheFrameOnDspAgent(videoID, llTime, bEnable);
}

void PyClipGrade::SetCacheFramePlayingOnDspAgent(BOOL enable, LONGLONG frameInterval) {
    if (m_dspAgent == nullptr) {
        return;
    }
    DumpLog("PyClipGrade::SetCacheFramePlayingOnDspAgent enable = %d, frame_interval = %lld", enable,
            static_cast<long long>(frameInterval));
    m_dspAgent->ResetCacheFramePlaying();
    m_dspAgent->EnableCacheFramePlaying(enable, frameInterval);
}

void PyClipGrade::m_fnReleaseCacheFrames() {
    IImageBuffer** slots[] = {&m_pCacheFrame, &m_pCachePureFrame, &m_pCacheFramePlaying};
    for (IImageBuffer** slot : slots) {
        if (*slot != nullptr) {
            (*slot)->Release();
            *slot = nullptr;
        }
    }
}
