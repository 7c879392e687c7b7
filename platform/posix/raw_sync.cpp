// The event ring's lock and semaphores on POSIX: a recursive mutex built in
// the ring's 40 bytes (a CRITICAL_SECTION's room) and counting semaphores
// behind opaque handles.
#include "platform/platform.h"

#include <mutex>
#include <new>

namespace pcg {
namespace platform {

static_assert(sizeof(std::recursive_mutex) <= kRawLockBytes, "the lock fits a CRITICAL_SECTION's room");
static_assert(alignof(std::recursive_mutex) <= 8, "the ring aligns its lock to 8");

void RawLockInit(void* storage) { new (storage) std::recursive_mutex; }

void RawLockEnter(void* storage) { static_cast<std::recursive_mutex*>(storage)->lock(); }

void RawLockLeave(void* storage) { static_cast<std::recursive_mutex*>(storage)->unlock(); }

void RawLockDelete(void* storage) {
    using Mutex = std::recursive_mutex;
    static_cast<Mutex*>(storage)->~Mutex();
}

SemaphoreHandle CreateSemaphoreHandle(int32_t initialCount, int32_t maximumCount) {
    if (maximumCount < 1 || initialCount < 0 || initialCount > maximumCount) {
        DebugOutputA("Semaphore refused: initial count outside 0..maximum or maximum below 1\n");
        return nullptr;
    }
    return new Semaphore(initialCount, maximumCount);
}

uint32_t WaitSemaphoreHandle(SemaphoreHandle semaphore, uint32_t timeoutMs) {
    if (semaphore == nullptr) return kWaitFailed;
    return static_cast<Semaphore*>(semaphore)->Wait(timeoutMs);
}

bool ReleaseSemaphoreHandle(SemaphoreHandle semaphore, int32_t count) {
    if (semaphore == nullptr) return false;
    return static_cast<Semaphore*>(semaphore)->Release(count);
}

void CloseSemaphoreHandle(SemaphoreHandle semaphore) { delete static_cast<Semaphore*>(semaphore); }

}  // namespace platform
}  // namespace pcg
