#include <gtest/gtest.h>

#include "platform/platform.h"

using namespace pcg::platform;

namespace {

TEST(Semaphore, InitialCountIsAvailableAtOnce) {
    Semaphore semaphore(2, 3);
    EXPECT_EQ(semaphore.Wait(0), kWaitObject0);
    EXPECT_EQ(semaphore.Wait(0), kWaitObject0);
    EXPECT_EQ(semaphore.Wait(0), kWaitTimeout);
}

TEST(Semaphore, ReleaseReportsPreviousCount) {
    Semaphore semaphore(1, 5);
    int32_t previous = -1;
    EXPECT_TRUE(semaphore.Release(2, &previous));
    EXPECT_EQ(previous, 1);
    EXPECT_TRUE(semaphore.Release(1, &previous));
    EXPECT_EQ(previous, 3);
}

TEST(Semaphore, ReleasePastMaximumFailsAndChangesNothing) {
    Semaphore semaphore(1, 2);
    int32_t previous = -1;
    EXPECT_FALSE(semaphore.Release(2, &previous));
    EXPECT_EQ(previous, -1);
    EXPECT_TRUE(semaphore.Release(1));
    EXPECT_FALSE(semaphore.Release(1));
    EXPECT_EQ(semaphore.Wait(0), kWaitObject0);
    EXPECT_EQ(semaphore.Wait(0), kWaitObject0);
    EXPECT_EQ(semaphore.Wait(0), kWaitTimeout);
}

TEST(Semaphore, ReleaseOfZeroFails) {
    Semaphore semaphore(0, 2);
    EXPECT_FALSE(semaphore.Release(0));
    EXPECT_EQ(semaphore.Wait(0), kWaitTimeout);
}

TEST(Semaphore, InitialCountAboveMaximumMakesNoSemaphore) {
    Semaphore semaphore(3, 2);
    EXPECT_FALSE(semaphore.Release(1));
    EXPECT_EQ(semaphore.Wait(0), kWaitFailed);
}

TEST(Semaphore, ReleaseWakesWaiterOnAnotherThread) {
    Semaphore semaphore(0, 1);
    auto waiter = Thread::Start([](void* argument) { return static_cast<Semaphore*>(argument)->Wait(10000); },
                                &semaphore);
    ASSERT_NE(waiter, nullptr);
    EXPECT_TRUE(semaphore.Release(1));
    EXPECT_EQ(waiter->Wait(), kWaitObject0);
    uint32_t code = 0xDEAD;
    ASSERT_TRUE(waiter->GetExitCode(&code));
    EXPECT_EQ(code, kWaitObject0);
}

}  // namespace
