#include "events/live_facades.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

namespace pcg {
namespace events {

namespace {

struct LoopState {
    bool bLive = false;
    int32_t nRunning = 0;
    int32_t nReserved = 0;
    int32_t nStopsPosted = 0;
    int32_t nStopsTaken = 0;
};

struct Table {
    std::mutex m_mutex;
    std::condition_variable m_cv;
    std::map<const void*, LoopState> m_facades;
};

// Never destroyed: a facade may go during interpreter teardown.
Table& Facades() {
    static Table* s_pTable = new Table;
    return *s_pTable;
}

}  // namespace

void RegisterLiveFacade(PyClipGrade* facade) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    t.m_facades[facade] = LoopState{};
    t.m_facades[facade].bLive = true;
}

void UnregisterLiveFacade(PyClipGrade* facade) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    auto found = t.m_facades.find(facade);
    if (found != t.m_facades.end()) found->second.bLive = false;
}

void ReserveCallbackLoop(PyClipGrade* facade) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    LoopState& s = t.m_facades[facade];
    ++s.nRunning;
    ++s.nReserved;
}

void CancelCallbackLoopReservation(PyClipGrade* facade) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    LoopState& s = t.m_facades[facade];
    if (s.nReserved > 0) {
        --s.nReserved;
        --s.nRunning;
    }
    t.m_cv.notify_all();
}

bool EnterCallbackLoop(PyClipGrade* facade) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    auto found = t.m_facades.find(facade);
    if (found == t.m_facades.end()) return false;
    LoopState& s = found->second;
    if (s.nReserved > 0) {
        --s.nReserved;
        return true;
    }
    if (!s.bLive) return false;
    ++s.nRunning;
    return true;
}

void LeaveCallbackLoop(PyClipGrade* facade, bool byStopCommand) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    auto found = t.m_facades.find(facade);
    if (found == t.m_facades.end()) return;
    --found->second.nRunning;
    if (byStopCommand) ++found->second.nStopsTaken;
    t.m_cv.notify_all();
}

int32_t RunningCallbackLoops(PyClipGrade* facade) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    auto found = t.m_facades.find(facade);
    return found == t.m_facades.end() ? 0 : found->second.nRunning;
}

void NoteStopPosted(PyClipGrade* facade) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    ++t.m_facades[facade].nStopsPosted;
}

int32_t OutstandingStops(PyClipGrade* facade) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    auto found = t.m_facades.find(facade);
    if (found == t.m_facades.end()) return 0;
    const int32_t outstanding = found->second.nStopsPosted - found->second.nStopsTaken;
    return outstanding > 0 ? outstanding : 0;
}

void WaitCallbackLoopsChange(PyClipGrade* facade, int32_t seen, uint32_t timeoutMs) {
    Table& t = Facades();
    std::unique_lock<std::mutex> lock(t.m_mutex);
    t.m_cv.wait_for(lock, std::chrono::milliseconds(timeoutMs), [&] {
        auto found = t.m_facades.find(facade);
        return found == t.m_facades.end() || found->second.nRunning != seen;
    });
}

void ForgetFacade(PyClipGrade* facade) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    t.m_facades.erase(facade);
}

bool IsLiveFacade(const void* pointer) {
    Table& t = Facades();
    std::lock_guard<std::mutex> lock(t.m_mutex);
    auto found = t.m_facades.find(pointer);
    return found != t.m_facades.end() && found->second.bLive;
}

}  // namespace events
}  // namespace pcg
