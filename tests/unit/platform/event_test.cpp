#include <gtest/gtest.h>

#include <atomic>
#include <chrono>

#include "platform/platform.h"

using namespace pcg::platform;

namespace {

struct WaitJob {
    Event* m_pEvent;
    uint32_t m_nTimeoutMs;
};

uint32_t WaitOnEvent(void* argument) {
    auto* job = static_cast<WaitJob*>(argument);
    return job->m_pEvent->Wait(job->m_nTimeoutMs);
}

uint32_t ExitCodeOf(Thread& thread) {
    EXPECT_EQ(thread.Wait(), kWaitObject0);
    uint32_t code = 0xDEAD;
    EXPECT_TRUE(thread.GetExitCode(&code));
    return code;
}

TEST(Event, ManualResetStaysSignalledUntilReset) {
    Event event(true, false);
    EXPECT_EQ(event.Wait(0), kWaitTimeout);
    event.Set();
    EXPECT_EQ(event.Wait(0), kWaitObject0);
    EXPECT_EQ(event.Wait(0), kWaitObject0);
    event.Reset();
    EXPECT_EQ(event.Wait(0), kWaitTimeout);
}

TEST(Event, AutoResetFallsBackAfterOneWait) {
    Event event(false, true);
    EXPECT_EQ(event.Wait(0), kWaitObject0);
    EXPECT_EQ(event.Wait(0), kWaitTimeout);
    event.Set();
    EXPECT_EQ(event.Wait(0), kWaitObject0);
    EXPECT_EQ(event.Wait(0), kWaitTimeout);
}

TEST(Event, ResetOfAutoResetEventClearsPendingSignal) {
    Event event(false, false);
    event.Set();
    event.Reset();
    EXPECT_EQ(event.Wait(0), kWaitTimeout);
}

TEST(Event, AutoResetSetReleasesExactlyOneOfTwoWaiters) {
    Event event(false, false);
    WaitJob job{&event, 1500};
    auto first = Thread::Start(&WaitOnEvent, &job);
    auto second = Thread::Start(&WaitOnEvent, &job);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    event.Set();
    const uint32_t a = ExitCodeOf(*first);
    const uint32_t b = ExitCodeOf(*second);
    EXPECT_EQ((a == kWaitObject0) + (b == kWaitObject0), 1);
    EXPECT_EQ((a == kWaitTimeout) + (b == kWaitTimeout), 1);
}

TEST(Event, ManualResetSetReleasesEveryWaiter) {
    Event event(true, false);
    WaitJob job{&event, 10000};
    auto first = Thread::Start(&WaitOnEvent, &job);
    auto second = Thread::Start(&WaitOnEvent, &job);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    event.Set();
    EXPECT_EQ(ExitCodeOf(*first), kWaitObject0);
    EXPECT_EQ(ExitCodeOf(*second), kWaitObject0);
}

TEST(Event, WaitTimesOutNoEarlierThanAsked) {
    Event event(true, false);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(event.Wait(60), kWaitTimeout);
    const auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count(), 50);
}

TEST(Event, SameNameOpensTheExistingEvent) {
    Event created(true, false, L"PcgPlatformTest SameName Evt");
    // Kind and initial state of a second creation are those of the first.
    Event opened(false, true, L"PcgPlatformTest SameName Evt");
    EXPECT_EQ(opened.Wait(0), kWaitTimeout);
    created.Set();
    EXPECT_EQ(opened.Wait(0), kWaitObject0);
    EXPECT_EQ(opened.Wait(0), kWaitObject0);
}

TEST(Event, DifferentNamesAreDifferentEvents) {
    Event one(true, false, L"PcgPlatformTest One Evt");
    Event two(true, false, L"PcgPlatformTest Two Evt");
    one.Set();
    EXPECT_EQ(two.Wait(0), kWaitTimeout);
}

TEST(Event, UnnamedEventsAreDistinct) {
    Event one(true, false);
    Event two(true, false);
    one.Set();
    EXPECT_EQ(two.Wait(0), kWaitTimeout);
}

}  // namespace
