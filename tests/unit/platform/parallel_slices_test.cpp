#include "platform/parallel_slices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
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
    EXPECT_LE(static_cast<int>(slices.size()), SliceThreadCount());
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

TEST_F(SliceLimit, TwoSlicesRunOnTwoThreads) {
    if (ProcessorCount() < 2) GTEST_SKIP() << "one processor";
    SetSliceThreadLimit(2);
    const std::vector<Slice> slices = SlicesOf(10, 1);
    ASSERT_EQ(slices.size(), 2u);
    EXPECT_EQ(slices[0].first, 0);
    EXPECT_EQ(slices[0].last, 5);
    EXPECT_EQ(slices[1].first, 5);
    EXPECT_EQ(slices[1].last, 10);
    // The first slice is the caller's own.
    EXPECT_EQ(slices[0].thread, std::this_thread::get_id());
    EXPECT_NE(slices[1].thread, std::this_thread::get_id());
}

}  // namespace
