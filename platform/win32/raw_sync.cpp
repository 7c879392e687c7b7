// The event ring's lock and semaphores on Windows: a CRITICAL_SECTION in the
// ring's own bytes and semaphore handles, as a closed agent expects them.
#include "platform/platform.h"

#include <windows.h>

namespace pcg {
namespace platform {

static_assert(sizeof(CRITICAL_SECTION) == kRawLockBytes, "the ring holds a CRITICAL_SECTION");

void RawLockInit(void* storage) { InitializeCriticalSection(static_cast<CRITICAL_SECTION*>(storage)); }

void RawLockEnter(void* storage) { EnterCriticalSection(static_cast<CRITICAL_SECTION*>(storage)); }

void RawLockLeave(void* storage) { LeaveCriticalSection(static_cast<CRITICAL_SECTION*>(storage)); }

void RawLockDelete(void* storage) { DeleteCriticalSection(static_cast<CRITICAL_SECTION*>(storage)); }

SemaphoreHandle CreateSemaphoreHandle(int32_t initialCount, int32_t maximumCount) {
    HANDLE semaphore = CreateSemaphoreW(nullptr, initialCount, maximumCount, nullptr);
    if (semaphore == nullptr) {
        DebugOutputA("Semaphore refused: initial count outside 0..maximum or maximum below 1\n");
    }
    return semaphore;
}

uint32_t WaitSemaphoreHandle(SemaphoreHandle semaphore, uint32_t timeoutMs) {
    if (semaphore == nullptr) return kWaitFailed;
    return WaitForSingleObject(semaphore, timeoutMs);
}

bool ReleaseSemaphoreHandle(SemaphoreHandle semaphore, int32_t count) {
    // Windows refuses a count below 1; Wine lets 0 through, so it is refused here.
    if (semaphore == nullptr || count < 1) return false;
    return ReleaseSemaphore(semaphore, count, nullptr) != FALSE;
}

void CloseSemaphoreHandle(SemaphoreHandle semaphore) {
    if (semaphore != nullptr) CloseHandle(semaphore);
}

}  // namespace platform
}  // namespace pcg
