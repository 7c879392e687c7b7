#include <gtest/gtest.h>

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
