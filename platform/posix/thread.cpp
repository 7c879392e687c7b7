// Threads on POSIX: std::thread with the Windows notions of a waitable thread
// and an exit code.
#include "platform/platform.h"
#include "platform/fault_injection.h"

#include <atomic>
#include <memory>
#include <system_error>
#include <thread>
#include <sys/syscall.h>
#include <unistd.h>

namespace pcg {
namespace platform {

// What the running routine writes when it ends. Shared with the thread, so
// that a thread which drops its own Thread object (the object then detaches
// instead of joining) still finds it.
struct ThreadEnd {
    ThreadEnd() : m_finished(true, false) {}
    Event m_finished;   // manual reset: every waiter sees the end
    std::atomic<bool> m_bDone{false};
    uint32_t m_nExitCode = 0;   // written before m_bDone is set
};

struct Thread::Impl {
    std::thread m_thread;
    std::shared_ptr<ThreadEnd> m_pEnd = std::make_shared<ThreadEnd>();
};

Thread::Thread() : m_pImpl(new Impl) {}

Thread::~Thread() {
    if (m_pImpl->m_thread.joinable()) {
        if (m_pImpl->m_thread.get_id() == std::this_thread::get_id()) m_pImpl->m_thread.detach();
        else m_pImpl->m_thread.join();
    }
}

std::unique_ptr<Thread> Thread::Start(Routine routine, void* argument) {
    if (routine == nullptr || ThreadStartFaultDue()) return nullptr;
    std::unique_ptr<Thread> thread(new Thread);
    std::shared_ptr<ThreadEnd> end = thread->m_pImpl->m_pEnd;
    try {
        thread->m_pImpl->m_thread = std::thread([end, routine, argument] {
            end->m_nExitCode = routine(argument);
            end->m_bDone.store(true);
            end->m_finished.Set();
        });
    } catch (const std::system_error&) {
        return nullptr;
    }
    return thread;
}

uint32_t Thread::Wait(uint32_t timeoutMs) { return m_pImpl->m_pEnd->m_finished.Wait(timeoutMs); }

bool Thread::GetExitCode(uint32_t* exitCode) const {
    if (!m_pImpl->m_pEnd->m_bDone.load()) return false;
    if (exitCode != nullptr) *exitCode = m_pImpl->m_pEnd->m_nExitCode;
    return true;
}

bool BeginDetachedThread(void (*routine)(void* argument), void* argument) {
    if (routine == nullptr) return false;
    try {
        std::thread(routine, argument).detach();
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

uint32_t CurrentThreadId() { return static_cast<uint32_t>(syscall(SYS_gettid)); }

}  // namespace platform
}  // namespace pcg
