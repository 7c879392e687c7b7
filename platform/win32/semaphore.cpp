#include "platform/platform.h"

#include <windows.h>

namespace pcg {
namespace platform {

struct Semaphore::Impl {
    HANDLE m_hSemaphore;
};

// CreateSemaphoreW itself refuses counts outside 0..maximum; the handle is then null.
Semaphore::Semaphore(int32_t initialCount, int32_t maximumCount)
    : m_pImpl(new Impl{CreateSemaphoreW(nullptr, initialCount, maximumCount, nullptr)}) {
    if (m_pImpl->m_hSemaphore == nullptr) {
        DebugOutputA("Semaphore refused: initial count outside 0..maximum or maximum below 1\n");
    }
}

Semaphore::~Semaphore() {
    if (m_pImpl->m_hSemaphore != nullptr) CloseHandle(m_pImpl->m_hSemaphore);
}

bool Semaphore::Release(int32_t count, int32_t* previousCount) {
    // Windows refuses a count below 1; Wine lets 0 through, so it is refused here.
    if (m_pImpl->m_hSemaphore == nullptr || count < 1) return false;
    LONG previous = 0;
    if (!ReleaseSemaphore(m_pImpl->m_hSemaphore, count, &previous)) return false;
    if (previousCount != nullptr) *previousCount = previous;
    return true;
}

uint32_t Semaphore::Wait(uint32_t timeoutMs) {
    if (m_pImpl->m_hSemaphore == nullptr) return kWaitFailed;
    return WaitForSingleObject(m_pImpl->m_hSemaphore, timeoutMs);
}

}  // namespace platform
}  // namespace pcg
