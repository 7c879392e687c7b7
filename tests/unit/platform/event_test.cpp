#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>

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

// Two threads that each wait on job's event with job's timeout.
struct TwoWaiters {
    std::unique_ptr<Thread> m_pFirst;
    std::unique_ptr<Thread> m_pSecond;
};

void StartTwoWaiters(WaitJob* job, TwoWaiters* waiters) {
    waiters->m_pFirst = Thread::Start(&WaitOnEvent, job);
    waiters->m_pSecond = Thread::Start(&WaitOnEvent, job);
    ASSERT_NE(waiters->m_pFirst, nullptr);
    ASSERT_NE(waiters->m_pSecond, nullptr);
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
    TwoWaiters waiters;
    ASSERT_NO_FATAL_FAILURE(StartTwoWaiters(&job, &waiters));
    event.Set();
    const uint32_t a = ExitCodeOf(*waiters.m_pFirst);
    const uint32_t b = ExitCodeOf(*waiters.m_pSecond);
    EXPECT_EQ((a == kWaitObject0) + (b == kWaitObject0), 1);
    EXPECT_EQ((a == kWaitTimeout) + (b == kWaitTimeout), 1);
}

// Each Set of an auto-reset event hands its signal to one thread that waits at
// that moment, so two Sets in a row release two waiting threads; the second
// Set is not lost to a first waiter that has not run yet.
TEST(Event, AutoResetSetsInARowReleaseAsManyWaiters) {
    for (int round = 0; round < 2; ++round) {
        Event event(false, false);
        WaitJob job{&event, 3000};
        TwoWaiters waiters;
        ASSERT_NO_FATAL_FAILURE(StartTwoWaiters(&job, &waiters));
        Event pause(true, false);
        // Both threads are blocked in Wait by then, with room to spare on a
        // loaded machine or under a sanitizer.
        pause.Wait(1000);
        event.Set();
        event.Set();
        EXPECT_EQ(ExitCodeOf(*waiters.m_pFirst), kWaitObject0);
        EXPECT_EQ(ExitCodeOf(*waiters.m_pSecond), kWaitObject0);
        // Both signals went to the waiters: none is left over.
        EXPECT_EQ(event.Wait(0), kWaitTimeout);
    }
}

TEST(Event, ManualResetSetReleasesEveryWaiter) {
    Event event(true, false);
    WaitJob job{&event, 10000};
    TwoWaiters waiters;
    ASSERT_NO_FATAL_FAILURE(StartTwoWaiters(&job, &waiters));
    event.Set();
    EXPECT_EQ(ExitCodeOf(*waiters.m_pFirst), kWaitObject0);
    EXPECT_EQ(ExitCodeOf(*waiters.m_pSecond), kWaitObject0);
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
