// Events on POSIX with the Windows rules: manual-reset stays signalled until
// Reset, auto-reset lets one waiter through. A Set of an auto-reset event with
// threads waiting hands the signal straight to one of them, so Sets in a row
// release as many waiters and none is lost to a waiter that has not run yet.
// A named event is shared by every Event of the same name in the process, as
// CreateEventW opens an existing one.
#include "platform/platform.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace pcg {
namespace platform {

namespace {

struct EventState {
    EventState(bool manualReset, bool initialState) : m_bManualReset(manualReset), m_bSignalled(initialState) {}
    std::mutex m_mutex;
    std::condition_variable m_cv;
    const bool m_bManualReset;
    bool m_bSignalled;
    int m_nWaiters = 0;    // threads inside Wait
    int m_nReleases = 0;   // auto-reset signals handed to waiters, not yet taken
};

// Never destroyed: events may be made and dropped during static teardown.
struct NamedEvents {
    std::mutex m_mutex;
    std::map<std::wstring, std::weak_ptr<EventState>> m_byName;
};
NamedEvents& Names() {
    static NamedEvents* s_pNames = new NamedEvents;
    return *s_pNames;
}

std::shared_ptr<EventState> MakeState(bool manualReset, bool initialState, const wchar_t* name) {
    if (name == nullptr || name[0] == L'\0') return std::make_shared<EventState>(manualReset, initialState);
    NamedEvents& names = Names();
    std::lock_guard<std::mutex> lock(names.m_mutex);
    std::weak_ptr<EventState>& slot = names.m_byName[name];
    if (std::shared_ptr<EventState> existing = slot.lock()) return existing;
    auto state = std::make_shared<EventState>(manualReset, initialState);
    slot = state;
    return state;
}

}  // namespace

struct Event::Impl {
    std::shared_ptr<EventState> m_pState;
};

Event::Event(bool manualReset, bool initialState, const wchar_t* name)
    : m_pImpl(new Impl{MakeState(manualReset, initialState, name)}) {}

Event::~Event() = default;

void Event::Set() {
    EventState& s = *m_pImpl->m_pState;
    std::lock_guard<std::mutex> lock(s.m_mutex);
    if (s.m_bManualReset) {
        s.m_bSignalled = true;
        s.m_cv.notify_all();
    } else if (s.m_nWaiters > s.m_nReleases) {
        ++s.m_nReleases;
        s.m_cv.notify_one();
    } else {
        s.m_bSignalled = true;
    }
}

void Event::Reset() {
    EventState& s = *m_pImpl->m_pState;
    std::lock_guard<std::mutex> lock(s.m_mutex);
    s.m_bSignalled = false;
}

uint32_t Event::Wait(uint32_t timeoutMs) {
    EventState& s = *m_pImpl->m_pState;
    std::unique_lock<std::mutex> lock(s.m_mutex);
    auto signalled = [&s] { return s.m_nReleases > 0 || s.m_bSignalled; };
    ++s.m_nWaiters;
    bool released = true;
    if (timeoutMs == kInfinite) {
        s.m_cv.wait(lock, signalled);
    } else {
        // A waiter that times out with a signal handed over still takes it.
        released = s.m_cv.wait_for(lock, std::chrono::milliseconds(timeoutMs), signalled);
    }
    --s.m_nWaiters;
    if (!released) return kWaitTimeout;
    if (s.m_bManualReset) return kWaitObject0;
    if (s.m_nReleases > 0) --s.m_nReleases;
    else s.m_bSignalled = false;
    return kWaitObject0;
}

}  // namespace platform
}  // namespace pcg
