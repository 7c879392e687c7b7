#include "platform/fault_injection.h"

#include <gtest/gtest.h>

#include "engine/effect_record.h"
#include "platform/platform.h"

namespace {

using pcg::platform::AllocationFaultDue;
using pcg::platform::FailAllocations;

class FaultInjection : public ::testing::Test {
protected:
    void TearDown() override { FailAllocations(0, 0); }
};

TEST_F(FaultInjection, OffByDefaultNothingFails) {
    FailAllocations(0, 0);
    for (int i = 0; i < 5; ++i) EXPECT_FALSE(AllocationFaultDue());
}

TEST_F(FaultInjection, OnlyTheNamedChecksFail) {
    FailAllocations(2, 2);
    EXPECT_FALSE(AllocationFaultDue());
    EXPECT_TRUE(AllocationFaultDue());
    EXPECT_TRUE(AllocationFaultDue());
    EXPECT_FALSE(AllocationFaultDue());
    EXPECT_FALSE(AllocationFaultDue());
}

TEST_F(FaultInjection, CountZeroFailsEveryLaterCheck) {
    FailAllocations(3, 0);
    EXPECT_FALSE(AllocationFaultDue());
    EXPECT_FALSE(AllocationFaultDue());
    for (int i = 0; i < 10; ++i) EXPECT_TRUE(AllocationFaultDue());
}

TEST_F(FaultInjection, TurningOnAgainCountsFromOne) {
    FailAllocations(1, 1);
    EXPECT_TRUE(AllocationFaultDue());
    FailAllocations(1, 1);
    EXPECT_TRUE(AllocationFaultDue());
    EXPECT_FALSE(AllocationFaultDue());
}

TEST_F(FaultInjection, EffectHeapAllocationFailsWhenDue) {
    FailAllocations(1, 1);
    EXPECT_EQ(pcg::engine::AllocEffectMemory(16), nullptr);
    void* block = pcg::engine::AllocEffectMemory(16);
    EXPECT_NE(block, nullptr);
    pcg::engine::FreeEffectMemory(block);
}

uint32_t ReturnSeven(void*) { return 7; }

TEST(ThreadStartFaults, TheGivenNumberOfStartsFailThenThreadsStartAgain) {
    pcg::platform::FailThreadStarts(2);
    EXPECT_EQ(pcg::platform::Thread::Start(&ReturnSeven, nullptr), nullptr);
    EXPECT_EQ(pcg::platform::Thread::Start(&ReturnSeven, nullptr), nullptr);
    auto thread = pcg::platform::Thread::Start(&ReturnSeven, nullptr);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(thread->Wait(), pcg::platform::kWaitObject0);
    uint32_t code = 0;
    EXPECT_TRUE(thread->GetExitCode(&code));
    EXPECT_EQ(code, 7u);
    pcg::platform::FailThreadStarts(1);
    pcg::platform::FailThreadStarts(0);
    EXPECT_FALSE(pcg::platform::ThreadStartFaultDue());
}

}  // namespace

namespace {

class SiteFaults : public ::testing::Test {
protected:
    void TearDown() override { pcg::platform::FailSite(nullptr, false); }
};

TEST_F(SiteFaults, OffByDefaultNoSiteFails) {
    pcg::platform::FailSite(nullptr, false);
    EXPECT_FALSE(pcg::platform::SiteFaultDue("ring-array"));
    EXPECT_FALSE(pcg::platform::SiteFaultDue(nullptr));
}

TEST_F(SiteFaults, OnlyTheNamedSiteFailsAndAtEveryCheckUntilTurnedOff) {
    pcg::platform::FailSite("ring-array", true);
    EXPECT_TRUE(pcg::platform::SiteFaultDue("ring-array"));
    EXPECT_TRUE(pcg::platform::SiteFaultDue("ring-array"));
    EXPECT_FALSE(pcg::platform::SiteFaultDue("ring"));
    EXPECT_FALSE(pcg::platform::SiteFaultDue(nullptr));
    pcg::platform::FailSite("ring-array", false);
    EXPECT_FALSE(pcg::platform::SiteFaultDue("ring-array"));
}

TEST_F(SiteFaults, SitesAreIndependentOfTheAllocationSwitch) {
    pcg::platform::FailSite("ring-array", true);
    EXPECT_FALSE(AllocationFaultDue());
    FailAllocations(1, 0);
    pcg::platform::FailSite("ring-array", false);
    EXPECT_TRUE(AllocationFaultDue());
    EXPECT_FALSE(pcg::platform::SiteFaultDue("ring-array"));
}

}  // namespace
