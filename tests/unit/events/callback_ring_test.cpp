#include "events/callback_ring.h"

#include "platform/fault_injection.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <thread>
#include <vector>

namespace {

using pcg::events::CallbackRingBytes;
using pcg::events::FreeCallbackRing;
using pcg::events::InitCallbackRing;
using pcg::events::PostCallbackItem;
using pcg::events::TakeCallbackItem;
using pcg::platform::kWaitFailed;
using pcg::platform::kWaitObject0;
using pcg::platform::kWaitTimeout;

TEST(DspCallbackContract, ItemAndRingOffsets) {
    EXPECT_EQ(sizeof(DspCallbackItem), 24u);
    EXPECT_EQ(offsetof(DspCallbackItem, nCommand), 0u);
    EXPECT_EQ(offsetof(DspCallbackItem, nValue), 4u);
    EXPECT_EQ(offsetof(DspCallbackItem, llValue), 8u);
    EXPECT_EQ(offsetof(DspCallbackItem, pFrame), 16u);
    EXPECT_EQ(sizeof(DspCallbackQueue), 80u);
    EXPECT_EQ(offsetof(DspCallbackQueue, hFreeSlots), 0u);
    EXPECT_EQ(offsetof(DspCallbackQueue, hFilledSlots), 8u);
    EXPECT_EQ(offsetof(DspCallbackQueue, lock), 16u);
    EXPECT_EQ(offsetof(DspCallbackQueue, nCapacity), 56u);
    EXPECT_EQ(offsetof(DspCallbackQueue, nPut), 60u);
    EXPECT_EQ(offsetof(DspCallbackQueue, nTake), 64u);
    EXPECT_EQ(offsetof(DspCallbackQueue, pItems), 72u);
}

TEST(CallbackRing, BytesAre24PerItemAndSaturate) {
    EXPECT_EQ(CallbackRingBytes(2), 48u);
    EXPECT_EQ(CallbackRingBytes(0), 0u);
    EXPECT_EQ(CallbackRingBytes(-1), std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(CallbackRingBytes(std::numeric_limits<int32_t>::max()),
              static_cast<std::size_t>(std::numeric_limits<int32_t>::max()) * 24u);
}

TEST(CallbackRing, StartsWithTwoFreeSlotsZeroedItemsAndNoCounts) {
    DspCallbackQueue ring;
    InitCallbackRing(&ring, pcg::events::kCallbackRingCapacity);
    EXPECT_EQ(ring.nCapacity, 2);
    EXPECT_EQ(ring.nPut, 0);
    EXPECT_EQ(ring.nTake, 0);
    ASSERT_NE(ring.pItems, nullptr);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(ring.pItems[i].nCommand, 0);
        EXPECT_EQ(ring.pItems[i].llValue, 0);
        EXPECT_EQ(ring.pItems[i].pFrame, nullptr);
    }
    // Two free slots and no filled one.
    EXPECT_EQ(pcg::platform::WaitSemaphoreHandle(ring.hFilledSlots, 0), kWaitTimeout);
    EXPECT_EQ(pcg::platform::WaitSemaphoreHandle(ring.hFreeSlots, 0), kWaitObject0);
    EXPECT_EQ(pcg::platform::WaitSemaphoreHandle(ring.hFreeSlots, 0), kWaitObject0);
    EXPECT_EQ(pcg::platform::WaitSemaphoreHandle(ring.hFreeSlots, 0), kWaitTimeout);
    EXPECT_TRUE(pcg::platform::ReleaseSemaphoreHandle(ring.hFreeSlots, 2));
    // The maximum is the capacity.
    EXPECT_FALSE(pcg::platform::ReleaseSemaphoreHandle(ring.hFreeSlots, 1));
    FreeCallbackRing(&ring);
    EXPECT_EQ(ring.pItems, nullptr);
    EXPECT_EQ(ring.hFreeSlots, nullptr);
}

TEST(CallbackRing, ItemsComeOutInOrderAndAProducerWaitsWhenTwoAreUnread) {
    DspCallbackQueue ring;
    InitCallbackRing(&ring, 2);
    EXPECT_EQ(PostCallbackItem(&ring, {1, 10, 100, nullptr}), kWaitObject0);
    EXPECT_EQ(PostCallbackItem(&ring, {2, 20, 200, nullptr}), kWaitObject0);
    EXPECT_EQ(PostCallbackItem(&ring, {3, 30, 300, nullptr}, 10), kWaitTimeout);
    EXPECT_EQ(ring.nPut, 2);
    DspCallbackItem item{};
    EXPECT_EQ(TakeCallbackItem(&ring, &item), kWaitObject0);
    EXPECT_EQ(item.nCommand, 1);
    EXPECT_EQ(item.nValue, 10);
    EXPECT_EQ(item.llValue, 100);
    EXPECT_EQ(PostCallbackItem(&ring, {3, 30, 300, nullptr}, 10), kWaitObject0);
    // The third went into slot 0 again: the count modulo the capacity.
    EXPECT_EQ(ring.pItems[0].nCommand, 3);
    EXPECT_EQ(TakeCallbackItem(&ring, &item), kWaitObject0);
    EXPECT_EQ(item.nCommand, 2);
    EXPECT_EQ(TakeCallbackItem(&ring, &item), kWaitObject0);
    EXPECT_EQ(item.nCommand, 3);
    EXPECT_EQ(TakeCallbackItem(&ring, &item, 10), kWaitTimeout);
    EXPECT_EQ(ring.nPut, 3);
    EXPECT_EQ(ring.nTake, 3);
    FreeCallbackRing(&ring);
}

TEST(CallbackRing, CountsWrapInStepPastTheirRange) {
    DspCallbackQueue ring;
    InitCallbackRing(&ring, 2);
    ring.nPut = std::numeric_limits<int32_t>::max();
    ring.nTake = std::numeric_limits<int32_t>::max();
    for (int32_t command = 1; command <= 5; ++command) {
        ASSERT_EQ(PostCallbackItem(&ring, {command, 0, 0, nullptr}), kWaitObject0);
        DspCallbackItem item{};
        ASSERT_EQ(TakeCallbackItem(&ring, &item), kWaitObject0);
        EXPECT_EQ(item.nCommand, command);
    }
    EXPECT_EQ(ring.nPut, ring.nTake);
    FreeCallbackRing(&ring);
}

TEST(CallbackRing, ARingWithoutItemsRefusesBothSides) {
    DspCallbackQueue ring;
    InitCallbackRing(&ring, 2);
    DspCallbackItem* items = ring.pItems;
    ring.pItems = nullptr;   // as when the allocation failed
    DspCallbackItem item{};
    EXPECT_EQ(PostCallbackItem(&ring, {1, 0, 0, nullptr}), kWaitFailed);
    EXPECT_EQ(TakeCallbackItem(&ring, &item, 0), kWaitFailed);
    EXPECT_EQ(ring.nPut, 0);
    ring.pItems = items;
    FreeCallbackRing(&ring);
}

TEST(CallbackRing, AFailedArrayAllocationLeavesTheRestOfTheRingAndRefusesItems) {
    pcg::platform::FailSite("ring-array", true);
    DspCallbackQueue ring;
    InitCallbackRing(&ring, 2);
    pcg::platform::FailSite("ring-array", false);
    EXPECT_EQ(ring.pItems, nullptr);
    EXPECT_EQ(ring.nCapacity, 2);
    EXPECT_NE(ring.hFreeSlots, nullptr);
    EXPECT_NE(ring.hFilledSlots, nullptr);
    DspCallbackItem item{};
    EXPECT_EQ(PostCallbackItem(&ring, {7, 0, 0, nullptr}, 0), kWaitFailed);
    EXPECT_EQ(TakeCallbackItem(&ring, &item, 0), kWaitFailed);
    EXPECT_EQ(ring.nPut, 0);
    EXPECT_EQ(ring.nTake, 0);
    FreeCallbackRing(&ring);
    EXPECT_EQ(ring.hFreeSlots, nullptr);
}

TEST(CallbackRing, ManyProducersOneConsumerKeepEachProducersOrder) {
    constexpr int kProducers = 4;
    constexpr int kEach = 5000;
    DspCallbackQueue ring;
    InitCallbackRing(&ring, 2);
    std::vector<std::thread> producers;
    for (int p = 0; p < kProducers; ++p) {
        producers.emplace_back([&ring, p] {
            for (int i = 0; i < kEach; ++i) {
                PostCallbackItem(&ring, {1, p, i, nullptr});
            }
        });
    }
    std::vector<int64_t> last(kProducers, -1);
    int received = 0;
    for (; received < kProducers * kEach; ++received) {
        DspCallbackItem item{};
        ASSERT_EQ(TakeCallbackItem(&ring, &item, 10000), kWaitObject0);
        ASSERT_EQ(item.llValue, last[item.nValue] + 1);
        last[item.nValue] = item.llValue;
    }
    for (std::thread& producer : producers) producer.join();
    EXPECT_EQ(received, kProducers * kEach);
    EXPECT_EQ(ring.nPut, kProducers * kEach);
    FreeCallbackRing(&ring);
}

}  // namespace
