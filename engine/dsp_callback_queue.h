// The event ring between the render agent's threads and the module's
// callback thread. The agent writes into this memory directly, so the layout
// of both records is binding.
//
// Producer side (the agent): wait on hFreeSlots; enter lock; write
// pItems[nPut % nCapacity]; nPut += 1; leave lock; release hFilledSlots by one.
// Consumer side (the module): the mirror image, with nTake and hFreeSlots.
#pragma once

#include <cstddef>
#include <cstdint>

class IImageBuffer;

// One event. A non-null pFrame carries one reference for the consumer.
struct DspCallbackItem {
    int32_t nCommand;
    int32_t nValue;
    int64_t llValue;
    IImageBuffer* pFrame;
};

static_assert(sizeof(DspCallbackItem) == 24, "DspCallbackItem");
static_assert(offsetof(DspCallbackItem, nCommand) == 0, "nCommand");
static_assert(offsetof(DspCallbackItem, nValue) == 4, "nValue");
static_assert(offsetof(DspCallbackItem, llValue) == 8, "llValue");
static_assert(offsetof(DspCallbackItem, pFrame) == 16, "pFrame");

// Size of the lock's storage: a Win32 CRITICAL_SECTION.
constexpr std::size_t kDspCallbackLockBytes = 40;

// The bounded ring. The handles and the lock are the owner's synchronisation
// objects, opaque to this record; how they are made is the ring's owner's
// affair (events/).
struct DspCallbackQueue {
    void* hFreeSlots;      // semaphore: initial count and maximum the capacity
    void* hFilledSlots;    // semaphore: initial count 0, maximum the capacity
    alignas(8) unsigned char lock[kDspCallbackLockBytes];
    int32_t nCapacity;
    int32_t nPut;          // items ever written
    int32_t nTake;         // items ever read
    int32_t nPadding;
    DspCallbackItem* pItems;  // nCapacity items; null if the allocation failed
};

static_assert(sizeof(DspCallbackQueue) == 80, "DspCallbackQueue");
static_assert(offsetof(DspCallbackQueue, hFreeSlots) == 0, "hFreeSlots");
static_assert(offsetof(DspCallbackQueue, hFilledSlots) == 8, "hFilledSlots");
static_assert(offsetof(DspCallbackQueue, lock) == 16, "lock");
static_assert(offsetof(DspCallbackQueue, nCapacity) == 56, "nCapacity");
static_assert(offsetof(DspCallbackQueue, nPut) == 60, "nPut");
static_assert(offsetof(DspCallbackQueue, nTake) == 64, "nTake");
static_assert(offsetof(DspCallbackQueue, pItems) == 72, "pItems");
