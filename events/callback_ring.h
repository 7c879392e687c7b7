// The event ring's two sides. The render agent produces, the callback thread
// consumes; both follow one protocol on the shared record, so a closed agent
// and this code meet in the same memory:
//   producer: wait hFreeSlots; enter lock; write pItems[nPut % nCapacity];
//             nPut += 1; leave lock; release hFilledSlots by one.
//   consumer: wait hFilledSlots; enter lock; read pItems[nTake % nCapacity];
//             nTake += 1; leave lock; release hFreeSlots by one.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/dsp_callback_queue.h"
#include "platform/platform.h"

namespace pcg {
namespace events {

// Every facade's ring holds two items.
constexpr int32_t kCallbackRingCapacity = 2;

// 24 bytes per item; all ones when the product does not fit (so that the
// allocation fails rather than comes out short).
std::size_t CallbackRingBytes(int32_t capacity);

// Semaphores (free: capacity of capacity; filled: 0 of capacity), the lock,
// both counts 0 and a zeroed item array, which stays null when it cannot be had.
void InitCallbackRing(DspCallbackQueue* ring, int32_t capacity);
// Frees the items, deletes the lock, closes both semaphores; the record is
// zeroed. Frames of items still unread are the caller's to settle first.
void FreeCallbackRing(DspCallbackQueue* ring);

// The producer's side. kWaitObject0 once written; kWaitTimeout when no slot
// came free in time; kWaitFailed when the ring has no items or no semaphore
// (nothing written, nothing released).
uint32_t PostCallbackItem(DspCallbackQueue* ring, const DspCallbackItem& item,
                          uint32_t timeoutMs = platform::kInfinite);
// The consumer's side, the same results. The slot is free again before this returns.
uint32_t TakeCallbackItem(DspCallbackQueue* ring, DspCallbackItem* item,
                          uint32_t timeoutMs = platform::kInfinite);

}  // namespace events
}  // namespace pcg
