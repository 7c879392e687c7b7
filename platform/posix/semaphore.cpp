// Counting semaphore with the CreateSemaphoreW / ReleaseSemaphore rules.
#include "platform/platform.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace pcg {
namespace platform {

struct Semaphore::Impl {
    std::mutex m_mutex;
    std::condition_variable m_cv;
    int32_t m_nCount = 0;
    int32_t m_nMaximum = 0;
    bool m_bValid = false;
};

Semaphore::Semaphore(int32_t initialCount, int32_t maximumCount) : m_pImpl(new Impl) {
    if (maximumCount < 1 || initialCount < 0 || initialCount > maximumCount) {
        DebugOutputA("Semaphore refused: initial count outside 0..maximum or maximum below 1\n");
        return;
    }
    m_pImpl->m_nCount = initialCount;
    m_pImpl->m_nMaximum = maximumCount;
    m_pImpl->m_bValid = true;
}

Semaphore::~Semaphore() = default;

bool Semaphore::Release(int32_t count, int32_t* previousCount) {
    Impl& s = *m_pImpl;
    if (!s.m_bValid || count < 1) return false;
    std::lock_guard<std::mutex> lock(s.m_mutex);
    if (count > s.m_nMaximum - s.m_nCount) return false;
    if (previousCount != nullptr) *previousCount = s.m_nCount;
    s.m_nCount += count;
    if (count == 1) s.m_cv.notify_one();
    else s.m_cv.notify_all();
    return true;
}

uint32_t Semaphore::Wait(uint32_t timeoutMs) {
    Impl& s = *m_pImpl;
    if (!s.m_bValid) return kWaitFailed;
    std::unique_lock<std::mutex> lock(s.m_mutex);
    auto available = [&s] { return s.m_nCount > 0; };
    if (timeoutMs == kInfinite) {
        s.m_cv.wait(lock, available);
    } else if (!s.m_cv.wait_for(lock, std::chrono::milliseconds(timeoutMs), available)) {
        return kWaitTimeout;
    }
    --s.m_nCount;
    return kWaitObject0;
}

}  // namespace platform
}  // namespace pcg
