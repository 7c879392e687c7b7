#include "events/callback_ring.h"

#include <cstdlib>
#include <cstring>
#include <limits>

#include "platform/fault_injection.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace events {

namespace {

// The running counts are 32-bit and would overflow after 2^31 items; they
// advance in unsigned arithmetic, so they wrap instead, and the slot index
// (count modulo capacity) stays in step on both sides.
int32_t Advance(int32_t count) { return static_cast<int32_t>(static_cast<uint32_t>(count) + 1u); }

uint32_t Slot(int32_t count, int32_t capacity) {
    return static_cast<uint32_t>(count) % static_cast<uint32_t>(capacity);
}

bool Usable(const DspCallbackQueue* ring) {
    return ring != nullptr && ring->pItems != nullptr && ring->nCapacity > 0 && ring->hFreeSlots != nullptr &&
           ring->hFilledSlots != nullptr;
}

}  // namespace

std::size_t CallbackRingBytes(int32_t capacity) {
    constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();
    if (capacity < 0) return kAll;
    const auto count = static_cast<std::size_t>(capacity);
    if (count > kAll / sizeof(DspCallbackItem)) return kAll;
    return count * sizeof(DspCallbackItem);
}

void InitCallbackRing(DspCallbackQueue* ring, int32_t capacity) {
    std::memset(ring, 0, sizeof(*ring));
    ring->hFreeSlots = platform::CreateSemaphoreHandle(capacity, capacity);
    ring->hFilledSlots = platform::CreateSemaphoreHandle(0, capacity);
    platform::RawLockInit(ring->lock);
    ring->nCapacity = capacity;
    const std::size_t bytes = CallbackRingBytes(capacity);
    const bool refused = bytes == std::numeric_limits<std::size_t>::max() || platform::SiteFaultDue("ring-array");
    void* items = refused ? nullptr : std::malloc(bytes ? bytes : 1);
    if (items != nullptr) {
        std::memset(items, 0, bytes);
    }
    ring->pItems = static_cast<DspCallbackItem*>(items);
}

void FreeCallbackRing(DspCallbackQueue* ring) {
    std::free(ring->pItems);
    platform::RawLockDelete(ring->lock);
    platform::CloseSemaphoreHandle(ring->hFreeSlots);
    platform::CloseSemaphoreHandle(ring->hFilledSlots);
    std::memset(ring, 0, sizeof(*ring));
}

uint32_t PostCallbackItem(DspCallbackQueue* ring, const DspCallbackItem& item, uint32_t timeoutMs) {
    if (!Usable(ring)) {
        // Writing would go through a null array: refused instead.
        DumpLog("[PyClipGrade] PostCallbackItem() the ring has no items, command %d not posted", item.nCommand);
        return platform::kWaitFailed;
    }
    const uint32_t waited = platform::WaitSemaphoreHandle(ring->hFreeSlots, timeoutMs);
    if (waited != platform::kWaitObject0) return waited;
    platform::RawLockEnter(ring->lock);
    ring->pItems[Slot(ring->nPut, ring->nCapacity)] = item;
    ring->nPut = Advance(ring->nPut);
    platform::RawLockLeave(ring->lock);
    platform::ReleaseSemaphoreHandle(ring->hFilledSlots, 1);
    return platform::kWaitObject0;
}

uint32_t TakeCallbackItem(DspCallbackQueue* ring, DspCallbackItem* item, uint32_t timeoutMs) {
    if (!Usable(ring)) {
        DumpLog("[PyClipGrade] TakeCallbackItem() the ring has no items");
        return platform::kWaitFailed;
    }
    const uint32_t waited = platform::WaitSemaphoreHandle(ring->hFilledSlots, timeoutMs);
    if (waited != platform::kWaitObject0) return waited;
    platform::RawLockEnter(ring->lock);
    *item = ring->pItems[Slot(ring->nTake, ring->nCapacity)];
    ring->nTake = Advance(ring->nTake);
    platform::RawLockLeave(ring->lock);
    platform::ReleaseSemaphoreHandle(ring->hFreeSlots, 1);
    return platform::kWaitObject0;
}

}  // namespace events
}  // namespace pcg
