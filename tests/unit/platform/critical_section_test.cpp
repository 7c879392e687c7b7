#include <gtest/gtest.h>

#include "platform/platform.h"

using namespace pcg::platform;

namespace {

// Exit code 1 when another thread could take the lock (it gives it back).
uint32_t TryFromOtherThread(CriticalSection& lock) {
    auto thread = Thread::Start(
        [](void* argument) -> uint32_t {
            auto* cs = static_cast<CriticalSection*>(argument);
            if (!cs->TryEnter()) return 0;
            cs->Leave();
            return 1;
        },
        &lock);
    EXPECT_NE(thread, nullptr);
    if (!thread) return 0xDEAD;
    EXPECT_EQ(thread->Wait(), kWaitObject0);
    uint32_t code = 0xDEAD;
    EXPECT_TRUE(thread->GetExitCode(&code));
    return code;
}

TEST(CriticalSection, OwnerEntersAgain) {
    CriticalSection lock;
    lock.Enter();
    EXPECT_TRUE(lock.TryEnter());
    lock.Leave();
    lock.Leave();
}

TEST(CriticalSection, HeldUntilEveryEnterIsLeft) {
    CriticalSection lock;
    lock.Enter();
    lock.Enter();
    EXPECT_EQ(TryFromOtherThread(lock), 0u);
    lock.Leave();
    EXPECT_EQ(TryFromOtherThread(lock), 0u);
    lock.Leave();
    EXPECT_EQ(TryFromOtherThread(lock), 1u);
}

TEST(CriticalSection, LeaveByThreadThatDoesNotOwnItIsRefused) {
    CriticalSection lock;
    lock.Enter();
    auto intruder = Thread::Start(
        [](void* argument) -> uint32_t {
            static_cast<CriticalSection*>(argument)->Leave();
            return 0;
        },
        &lock);
    ASSERT_NE(intruder, nullptr);
    EXPECT_EQ(intruder->Wait(), kWaitObject0);
    EXPECT_EQ(TryFromOtherThread(lock), 0u);
    lock.Leave();
    EXPECT_EQ(TryFromOtherThread(lock), 1u);
}

TEST(CriticalSection, ScopeLeavesOnExit) {
    CriticalSection lock;
    {
        CriticalSectionScope scope(lock);
        EXPECT_EQ(TryFromOtherThread(lock), 0u);
    }
    EXPECT_EQ(TryFromOtherThread(lock), 1u);
}

}  // namespace
