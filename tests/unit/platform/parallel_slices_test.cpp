#include "platform/parallel_slices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

using namespace pcg::platform;

namespace {

struct Slice {
    int first;
    int last;
    std::thread::id thread;
};

// Runs ForEachSlice and returns the slices it made, sorted by start.
std::vector<Slice> SlicesOf(int count, int minSlice) {
    std::mutex lock;
    std::vector<Slice> slices;
    ForEachSlice(count, minSlice, [&](int first, int last) {
        std::lock_guard<std::mutex> guard(lock);
        slices.push_back({first, last, std::this_thread::get_id()});
    });
    std::sort(slices.begin(), slices.end(), [](const Slice& a, const Slice& b) { return a.first < b.first; });
    return slices;
}

class SliceLimit : public ::testing::Test {
protected:
    void TearDown() override { SetSliceThreadLimit(0); }
};

TEST(ParallelSlices, ProcessorCountIsPositive) {
    EXPECT_GE(ProcessorCount(), 1);
    EXPECT_EQ(SliceThreadCount(), ProcessorCount());
}

TEST(ParallelSlices, EveryItemExactlyOnce) {
    std::vector<std::atomic<int>> seen(1001);
    ForEachSlice(1001, 1, [&](int first, int last) {
        for (int i = first; i < last; ++i) seen[static_cast<size_t>(i)].fetch_add(1);
    });
    for (size_t i = 0; i < seen.size(); ++i) ASSERT_EQ(seen[i].load(), 1) << i;
}

TEST(ParallelSlices, SlicesAreContiguousAndBounded) {
    const std::vector<Slice> slices = SlicesOf(1001, 7);
    ASSERT_FALSE(slices.empty());
    EXPECT_LE(static_cast<int>(slices.size()), 1001 / 7);
    std::vector<std::thread::id> threads;
    for (const Slice& slice : slices) threads.push_back(slice.thread);
    std::sort(threads.begin(), threads.end());
    threads.erase(std::unique(threads.begin(), threads.end()), threads.end());
    EXPECT_LE(static_cast<int>(threads.size()), SliceThreadCount());
    EXPECT_EQ(slices.front().first, 0);
    EXPECT_EQ(slices.back().last, 1001);
    for (size_t k = 0; k < slices.size(); ++k) {
        EXPECT_GE(slices[k].last - slices[k].first, 7);
        if (k > 0) {
            EXPECT_EQ(slices[k].first, slices[k - 1].last);
        }
    }
}

TEST(ParallelSlices, NothingForNoItems) {
    EXPECT_TRUE(SlicesOf(0, 1).empty());
    EXPECT_TRUE(SlicesOf(-5, 1).empty());
}

TEST(ParallelSlices, FewItemsStayOnTheCaller) {
    // Fewer than two slices' worth: one slice, on the calling thread.
    const std::vector<Slice> slices = SlicesOf(13, 7);
    ASSERT_EQ(slices.size(), 1u);
    EXPECT_EQ(slices[0].first, 0);
    EXPECT_EQ(slices[0].last, 13);
    EXPECT_EQ(slices[0].thread, std::this_thread::get_id());
}

TEST_F(SliceLimit, LimitOfOneIsSerial) {
    SetSliceThreadLimit(1);
    EXPECT_EQ(SliceThreadCount(), 1);
    const std::vector<Slice> slices = SlicesOf(100000, 1);
    ASSERT_EQ(slices.size(), 1u);
    EXPECT_EQ(slices[0].last, 100000);
    EXPECT_EQ(slices[0].thread, std::this_thread::get_id());
}

TEST_F(SliceLimit, LimitNeverRaisesAboveTheProcessors) {
    SetSliceThreadLimit(ProcessorCount() + 5);
    EXPECT_EQ(SliceThreadCount(), ProcessorCount());
}

TEST_F(SliceLimit, HelpersTakeSlices) {
    if (ProcessorCount() < 2) GTEST_SKIP() << "one processor";
    SetSliceThreadLimit(2);
    // The caller's first slice waits (up to 20 s) until a slice has begun on
    // another thread, so the helper must take part.
    std::mutex lock;
    std::condition_variable helped;
    bool bHelped = false;
    const std::thread::id caller = std::this_thread::get_id();
    std::vector<Slice> slices;
    ForEachSlice(10, 1, [&](int first, int last) {
        std::unique_lock<std::mutex> hold(lock);
        slices.push_back({first, last, std::this_thread::get_id()});
        if (std::this_thread::get_id() != caller) {
            bHelped = true;
            helped.notify_all();
        } else {
            helped.wait_for(hold, std::chrono::seconds(20), [&] { return bHelped; });
        }
    });
    EXPECT_TRUE(bHelped);
    std::sort(slices.begin(), slices.end(), [](const Slice& a, const Slice& b) { return a.first < b.first; });
    ASSERT_GE(slices.size(), 2u);
    EXPECT_EQ(slices.front().first, 0);
    EXPECT_EQ(slices.back().last, 10);
    for (size_t k = 1; k < slices.size(); ++k) EXPECT_EQ(slices[k].first, slices[k - 1].last);
}

// A call made while every helper is busy (here: from inside the one helper's
// own slice) does not wait for one; its caller runs the slices itself.
TEST_F(SliceLimit, BusyHelpersLeaveTheSlicesToTheCaller) {
    if (ProcessorCount() < 2) GTEST_SKIP() << "one processor";
    SetSliceThreadLimit(2);
    const std::thread::id caller = std::this_thread::get_id();
    std::atomic<bool> bInnerStarted{false};
    std::atomic<bool> bInnerDone{false};
    std::atomic<int> nInnerItems{0};
    std::mutex lock;
    std::condition_variable innerDone;
    ForEachSlice(2, 1, [&](int, int) {
        if (std::this_thread::get_id() == caller) {
            // Holds the caller until the helper's call has finished.
            std::unique_lock<std::mutex> hold(lock);
            innerDone.wait_for(hold, std::chrono::seconds(20), [&] { return bInnerDone.load(); });
            return;
        }
        // A quick helper may take both slices; one inner call is enough.
        if (bInnerStarted.exchange(true)) return;
        ForEachSlice(100, 1, [&](int first, int last) { nInnerItems.fetch_add(last - first); });
        std::lock_guard<std::mutex> hold(lock);
        bInnerDone = true;
        innerDone.notify_all();
    });
    EXPECT_TRUE(bInnerDone.load());
    EXPECT_EQ(nInnerItems.load(), 100);
}

}  // namespace
