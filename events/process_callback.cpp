// The callback pump: the loop that drains a facade's event ring, the start
// of its thread and the stop sequence of the facade's destructor.
#include "events/process_callback.h"

#include "events/callback_ring.h"
#include "events/live_facades.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "imaging/image_buffer.h"
#include "runtime/dump_log.h"

namespace {

constexpr int32_t kCommandTrackingState = 1;
constexpr int32_t kCommandStop = 7;
// The destructor's waits look this often whether anything is left to wait for.
constexpr uint32_t kStopPollMs = 20;

const char* const kEventNames[] = {
    nullptr,
    "TRACKING_STATE",
    "TRACKING_MEET_KEYFRAME",
    "TRACKING_MISS_TIME",
    "CACHE_FRAME_UPDATED",
    "CACHE_PURE_FRAME_UPDATED",
    "CACHE_FRAME_PLAYING_UPDATED",
};

// The facade whose loop runs on this thread, and whether that facade was
// destroyed from inside its own script function: then the loop must leave
// without touching the facade again.
thread_local PyClipGrade* t_pLoopFacade = nullptr;
thread_local bool t_bLoopFacadeGone = false;

void RunLoop(PyClipGrade* facade) {
    bool stopped = false;
    for (;;) {
        DspCallbackItem item{};
        uint32_t taken = 0;
        {
            // Run from script, the wait would otherwise hold the caller's
            // interpreter lock, and the facade's destructor on another script
            // thread could never get to post the command that ends it.
            PyGilUnlockScope unlock;
            taken = pcg::events::TakeCallbackItem(&facade->m_callbackQueue, &item);
        }
        if (taken != pcg::platform::kWaitObject0) {
            // A ring without items (its allocation failed) would fault on the
            // first read; the loop ends instead.
            DumpLog("[PyClipGrade] ProcessCallback() the ring cannot be read, the loop ends");
            break;
        }
        if (item.nCommand < kCommandTrackingState || item.nCommand > kCommandStop) {
            DumpLog("[PyClipGrade] ProcessCallback() Doesn't recognize the command id = %d", item.nCommand);
            continue;
        }
        if (item.nCommand == kCommandStop) {
            stopped = true;
            break;
        }
        const char* name = kEventNames[item.nCommand];
        if (item.nCommand <= 3) {
            facade->Invoke("siL", name, static_cast<int>(item.nValue), static_cast<long long>(item.llValue));
        } else {
            if (item.pFrame == nullptr) {
                continue;
            }
            // Stored first, so the script function can already fetch it; the
            // agent's reference goes only after the function has returned.
            if (item.nCommand == 4) {
                facade->SetCacheFrame(item.pFrame);
            } else if (item.nCommand == 5) {
                facade->SetCachePureFrame(item.pFrame);
            } else {
                facade->SetCacheFramePlaying(item.pFrame);
            }
            facade->Invoke("sL", name, static_cast<long long>(item.llValue));
            item.pFrame->Release();
        }
        if (t_bLoopFacadeGone) {
            return;
        }
    }
    if (facade->m_hCallbackDoneEvent != nullptr) {
        facade->m_hCallbackDoneEvent->Set();
    }
    pcg::events::LeaveCallbackLoop(facade, stopped);
}

// Posts command 7 as any producer does. Gives up, with a log line, once no
// loop is left that could free a slot.
void PostStop(PyClipGrade* facade) {
    const DspCallbackItem stop{kCommandStop, 0, 0, nullptr};
    for (;;) {
        const uint32_t posted = pcg::events::PostCallbackItem(&facade->m_callbackQueue, stop, kStopPollMs);
        if (posted == pcg::platform::kWaitObject0) {
            pcg::events::NoteStopPosted(facade);
            return;
        }
        if (posted != pcg::platform::kWaitTimeout || pcg::events::RunningCallbackLoops(facade) == 0) {
            DumpLog("PyClipGrade::~PyClipGrade no callback loop is left to take the stop command");
            return;
        }
    }
}

}  // namespace

void ProcessCallback(void* parameter) {
    if (parameter == nullptr) {
        return;
    }
    auto* facade = static_cast<PyClipGrade*>(parameter);
    if (!pcg::events::EnterCallbackLoop(facade)) {
        // A pointer that names no live facade would be read as one.
        DumpLog("[PyClipGrade] ProcessCallback() the pointer is not a live facade, nothing to do");
        return;
    }
    PyClipGrade* outer = t_pLoopFacade;
    const bool outerGone = t_bLoopFacadeGone;
    t_pLoopFacade = facade;
    t_bLoopFacadeGone = false;
    RunLoop(facade);
    t_pLoopFacade = outer;
    t_bLoopFacadeGone = outerGone;
}

namespace {

void CallbackThreadEntry(void* parameter) { ProcessCallback(parameter); }

}  // namespace

void PyClipGrade::m_fnStartCallbackThread() {
    DumpLog("PyClipGrade::PyClipGrade PyClipGrade Initial DspCallbackThread");
    if (m_dspAgent != nullptr) {
        m_dspAgent->SetCallbackQueue(&m_callbackQueue);
    }
    m_hCallbackDoneEvent = new pcg::platform::Event(true, false, L"PyClipGrade::FinishTerminateThread Evt");
    pcg::events::ReserveCallbackLoop(this);
    if (!pcg::platform::BeginDetachedThread(&CallbackThreadEntry, this)) {
        pcg::events::CancelCallbackLoopReservation(this);
        DumpLog("PyClipGrade::PyClipGrade, [Err] the callback thread could not be started");
    }
}

void PyClipGrade::m_fnStopCallbackThread() {
    if (t_pLoopFacade == this) {
        // Deleted from inside its own script function: that loop cannot be
        // waited for from here. It leaves as soon as the function returns.
        DumpLog("PyClipGrade::~PyClipGrade, [Err] deleted on its own callback thread; that loop is left to end");
        t_bLoopFacadeGone = true;
        pcg::events::LeaveCallbackLoop(this, false);
    }
    if (m_hCallbackDoneEvent != nullptr) {
        DumpLog("PyClipGrade::~PyClipGrade Try to terminate CB thread");
        PostStop(this);
        while (m_hCallbackDoneEvent->Wait(kStopPollMs) != pcg::platform::kWaitObject0) {
            if (pcg::events::RunningCallbackLoops(this) == 0) {
                break;
            }
        }
        DumpLog("PyClipGrade::~PyClipGrade Finish terminate CB thread");
    }
    // The shared named event may have been signalled by another facade, and a
    // script may run a loop of its own on this facade: every loop still
    // running gets a stop command of its own before the ring goes.
    pcg::events::UnregisterLiveFacade(this);
    for (;;) {
        const int32_t running = pcg::events::RunningCallbackLoops(this);
        if (running == 0) {
            break;
        }
        if (running > pcg::events::OutstandingStops(this)) {
            PostStop(this);
            continue;
        }
        pcg::events::WaitCallbackLoopsChange(this, running, kStopPollMs);
    }
    delete m_hCallbackDoneEvent;
    m_hCallbackDoneEvent = nullptr;
}
