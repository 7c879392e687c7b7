#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/platform.h"

using namespace pcg::platform;

namespace {

TEST(Thread, ExitCodeIsTheRoutineResult) {
    auto thread = Thread::Start([](void*) -> uint32_t { return 42; }, nullptr);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(thread->Wait(), kWaitObject0);
    uint32_t code = 0;
    ASSERT_TRUE(thread->GetExitCode(&code));
    EXPECT_EQ(code, 42u);
}

TEST(Thread, NoExitCodeWhileRunning) {
    Event release(true, false);
    auto thread = Thread::Start(
        [](void* argument) -> uint32_t { return static_cast<Event*>(argument)->Wait() == kWaitObject0 ? 7 : 8; },
        &release);
    ASSERT_NE(thread, nullptr);
    uint32_t code = 0xDEAD;
    EXPECT_FALSE(thread->GetExitCode(&code));
    EXPECT_EQ(code, 0xDEADu);
    EXPECT_EQ(thread->Wait(20), kWaitTimeout);
    release.Set();
    EXPECT_EQ(thread->Wait(), kWaitObject0);
    ASSERT_TRUE(thread->GetExitCode(&code));
    EXPECT_EQ(code, 7u);
}

TEST(Thread, ArgumentReachesRoutine) {
    uint32_t value = 1234;
    auto thread = Thread::Start([](void* argument) -> uint32_t { return *static_cast<uint32_t*>(argument) + 1; },
                                &value);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(thread->Wait(), kWaitObject0);
    uint32_t code = 0;
    ASSERT_TRUE(thread->GetExitCode(&code));
    EXPECT_EQ(code, 1235u);
}

struct SelfOwned {
    std::unique_ptr<Thread> m_pThread;
    Event m_stored{true, false};
    Event m_deleted{true, false};
};

// A thread may drop its own Thread object while it runs (as CloseHandle on its
// own handle): the object goes without waiting, and the routine's end touches
// nothing of it.
TEST(Thread, ThreadMayDeleteItsOwnObject) {
    // Holders outlive every round: their events may still be in use by a
    // routine that is ending.
    std::vector<std::unique_ptr<SelfOwned>> holders;
    for (int round = 0; round < 20; ++round) {
        holders.push_back(std::make_unique<SelfOwned>());
        SelfOwned* holder = holders.back().get();
        holder->m_pThread = Thread::Start(
            [](void* argument) -> uint32_t {
                auto* self = static_cast<SelfOwned*>(argument);
                self->m_stored.Wait();
                self->m_pThread.reset();
                self->m_deleted.Set();
                return 5;
            },
            holder);
        ASSERT_NE(holder->m_pThread, nullptr);
        holder->m_stored.Set();
        ASSERT_EQ(holder->m_deleted.Wait(10000), kWaitObject0);
        EXPECT_EQ(holder->m_pThread, nullptr);
    }
    Event pause(true, false);
    pause.Wait(100);   // the last routines return meanwhile
}

TEST(Thread, NullRoutineStartsNothing) {
    EXPECT_EQ(Thread::Start(nullptr, nullptr), nullptr);
    EXPECT_FALSE(BeginDetachedThread(nullptr, nullptr));
}

TEST(Thread, DetachedThreadRuns) {
    Event done(true, false);
    ASSERT_TRUE(BeginDetachedThread([](void* argument) { static_cast<Event*>(argument)->Set(); }, &done));
    EXPECT_EQ(done.Wait(10000), kWaitObject0);
}

TEST(Thread, ThreadIdsDifferBetweenThreads) {
    const uint32_t mine = CurrentThreadId();
    auto thread = Thread::Start([](void*) -> uint32_t { return CurrentThreadId(); }, nullptr);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(thread->Wait(), kWaitObject0);
    uint32_t theirs = 0;
    ASSERT_TRUE(thread->GetExitCode(&theirs));
    EXPECT_NE(mine, 0u);
    EXPECT_NE(theirs, 0u);
    EXPECT_NE(theirs, mine);
    EXPECT_EQ(CurrentThreadId(), mine);
}

}  // namespace
