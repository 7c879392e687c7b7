#include "platform/platform.h"
#include "platform/fault_injection.h"

#include <process.h>
#include <windows.h>

namespace pcg {
namespace platform {

namespace {

struct StartBlock {
    Thread::Routine m_fnRoutine;
    void* m_pArgument;
};

DWORD WINAPI ThreadEntry(LPVOID parameter) {
    StartBlock block = *static_cast<StartBlock*>(parameter);
    delete static_cast<StartBlock*>(parameter);
    return block.m_fnRoutine(block.m_pArgument);
}

}  // namespace

struct Thread::Impl {
    HANDLE m_hThread = nullptr;
};

Thread::Thread() : m_pImpl(new Impl) {}

Thread::~Thread() {
    if (m_pImpl->m_hThread == nullptr) return;
    if (GetThreadId(m_pImpl->m_hThread) != GetCurrentThreadId()) WaitForSingleObject(m_pImpl->m_hThread, INFINITE);
    CloseHandle(m_pImpl->m_hThread);
}

std::unique_ptr<Thread> Thread::Start(Routine routine, void* argument) {
    if (routine == nullptr || ThreadStartFaultDue()) return nullptr;
    auto* block = new StartBlock{routine, argument};
    HANDLE handle = CreateThread(nullptr, 0, &ThreadEntry, block, 0, nullptr);
    if (handle == nullptr) {
        delete block;
        return nullptr;
    }
    std::unique_ptr<Thread> thread(new Thread);
    thread->m_pImpl->m_hThread = handle;
    return thread;
}

uint32_t Thread::Wait(uint32_t timeoutMs) { return WaitForSingleObject(m_pImpl->m_hThread, timeoutMs); }

bool Thread::GetExitCode(uint32_t* exitCode) const {
    // STILL_ACTIVE is also a possible exit code: ask whether the thread ended.
    if (WaitForSingleObject(m_pImpl->m_hThread, 0) != WAIT_OBJECT_0) return false;
    DWORD code = 0;
    if (!GetExitCodeThread(m_pImpl->m_hThread, &code)) return false;
    if (exitCode != nullptr) *exitCode = code;
    return true;
}

bool BeginDetachedThread(void (*routine)(void* argument), void* argument) {
    if (routine == nullptr) return false;
    return _beginthread(routine, 0, argument) != static_cast<uintptr_t>(-1);
}

uint32_t CurrentThreadId() { return GetCurrentThreadId(); }

}  // namespace platform
}  // namespace pcg
