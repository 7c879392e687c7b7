// The reference agent's event producer and track results.
#include <atomic>
#include <thread>
#include <vector>

#include "engine/track_results.h"
#include "events/callback_ring.h"
#include "imaging/image_buffer.h"
#include "tests/unit/reference/ref_agent_library.h"

namespace pcg {
namespace reftest {
namespace {

using pcg::events::FreeCallbackRing;
using pcg::events::InitCallbackRing;
using pcg::events::TakeCallbackItem;
using pcg::platform::kWaitObject0;

class AgentEventsTest : public RefAgentTest {
protected:
    void SetUp() override {
        RefAgentTest::SetUp();
        InitCallbackRing(&m_ring, 2);
        m_pAgent = Library().Create("DspMain");
    }
    void TearDown() override {
        m_pAgent->SetCallbackQueue(nullptr);
        DspCallbackItem item{};
        while (TakeCallbackItem(&m_ring, &item, 0) == kWaitObject0) {
            if (item.pFrame) item.pFrame->Release();
        }
        m_pAgent->Release();
        FreeCallbackRing(&m_ring);
    }
    DspCallbackItem Take() {
        DspCallbackItem item{};
        EXPECT_EQ(TakeCallbackItem(&m_ring, &item, 10000), kWaitObject0);
        return item;
    }
    DspCallbackQueue m_ring;
    IVXHvnDspAgent* m_pAgent = nullptr;
};

TEST_F(AgentEventsTest, NothingIsQueuedWithoutARing) {
    EXPECT_EQ(Library().PostEvent(0, 1, 2, 3, 0, 0), -1);
    EXPECT_EQ(Library().PostEvent(999999, 1, 2, 3, 0, 0), -1);
    EXPECT_EQ(Library().WaitPosted(999999, 0), -1);
}

TEST_F(AgentEventsTest, ItemsArriveInPostOrderWithTheirFrames) {
    const int64_t live = Library().Counter("framesLive");
    m_pAgent->SetCallbackQueue(&m_ring);
    ASSERT_EQ(Library().PostEvent(0, 1, -5, 1LL << 40, 0, 0), 0);
    ASSERT_EQ(Library().PostEvent(0, 4, 0, 0x0A0B0C, 3, 2), 0);
    ASSERT_EQ(Library().PostEvent(0, 9, 1, 2, 0, 5), 0);
    DspCallbackItem first = Take();
    EXPECT_EQ(first.nCommand, 1);
    EXPECT_EQ(first.nValue, -5);
    EXPECT_EQ(first.llValue, 1LL << 40);
    EXPECT_EQ(first.pFrame, nullptr);
    DspCallbackItem second = Take();
    EXPECT_EQ(second.nCommand, 4);
    ASSERT_NE(second.pFrame, nullptr);
    EXPECT_EQ(second.pFrame->GetWidth(), 3);
    EXPECT_EQ(second.pFrame->GetHeight(), 2);
    EXPECT_EQ(second.pFrame->GetPixelBytes(), 4);
    uint8_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    ASSERT_TRUE(second.pFrame->LockBuffer(&pixels, &width, &height));
    for (int at = 0; at < 6; ++at) {
        EXPECT_EQ(pixels[4 * at], 0x0C);
        EXPECT_EQ(pixels[4 * at + 1], 0x0B);
        EXPECT_EQ(pixels[4 * at + 2], 0x0A);
        EXPECT_EQ(pixels[4 * at + 3], 255);
    }
    second.pFrame->UnlockBuffer();
    EXPECT_EQ(Library().Counter("framesLive"), live + 1);
    EXPECT_EQ(second.pFrame->Release(), 0);
    EXPECT_EQ(Library().Counter("framesLive"), live);
    EXPECT_EQ(Take().nCommand, 9);
    EXPECT_EQ(Library().WaitPosted(0, 1000), 0);
}

TEST_F(AgentEventsTest, TakingTheRingAwayDropsWhatWasNotWrittenAndWritesNothingAfter) {
    const int64_t live = Library().Counter("framesLive");
    m_pAgent->SetCallbackQueue(&m_ring);
    for (int i = 0; i < 6; ++i) {
        ASSERT_EQ(Library().PostEvent(0, 4, i, i, 1, 1), 0);
    }
    // Two fit; the producer waits for a third slot.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    m_pAgent->SetCallbackQueue(nullptr);
    // The agent is done with the ring: no lock is needed to read it now.
    const int32_t written = m_ring.nPut;
    EXPECT_EQ(written, 2);
    // Everything posted is settled: written or dropped.
    EXPECT_EQ(Library().WaitPosted(0, 1000), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(m_ring.nPut, written);
    // Only the two written frames are still alive, for the consumer.
    EXPECT_EQ(Library().Counter("framesLive"), live + 2);
}

TEST_F(AgentEventsTest, ManyPostersAndARingComingAndGoingLoseNoFrame) {
    const int64_t live = Library().Counter("framesLive");
    m_pAgent->SetCallbackQueue(&m_ring);
    constexpr int kPosters = 3;
    constexpr int kEach = 3000;
    std::atomic<bool> done{false};
    std::vector<int64_t> last(kPosters, -1);
    std::atomic<int> received{0};
    std::thread consumer([&] {
        while (!done) {
            DspCallbackItem item{};
            if (TakeCallbackItem(&m_ring, &item, 5) != kWaitObject0) continue;
            ASSERT_GT(item.llValue, last[item.nValue]);
            last[item.nValue] = item.llValue;
            if (item.pFrame) item.pFrame->Release();
            ++received;
        }
    });
    std::thread toggler([&] {
        for (int i = 0; i < 20; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            m_pAgent->SetCallbackQueue(nullptr);
            m_pAgent->SetCallbackQueue(&m_ring);
        }
    });
    std::vector<std::thread> posters;
    std::atomic<int> queued{0};
    for (int p = 0; p < kPosters; ++p) {
        posters.emplace_back([&, p] {
            for (int i = 0; i < kEach; ++i) {
                if (Library().PostEvent(0, 4, p, i, i % 10 == 0 ? 2 : 0, 2) == 0) ++queued;
            }
        });
    }
    for (std::thread& poster : posters) poster.join();
    toggler.join();
    EXPECT_EQ(Library().WaitPosted(0, 20000), 0);
    auto unread = [this] {
        pcg::platform::RawLockEnter(m_ring.lock);
        const bool any = m_ring.nTake != m_ring.nPut;
        pcg::platform::RawLockLeave(m_ring.lock);
        return any;
    };
    while (unread()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    done = true;
    consumer.join();
    EXPECT_LE(received.load(), queued.load());
    EXPECT_GT(received.load(), 0);
    EXPECT_EQ(Library().Counter("framesLive"), live);
}

TEST_F(AgentEventsTest, SeededResultsAnswerTheLookups) {
    const float points[] = {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f};
    EXPECT_EQ(Library().SeedTrack(2, 1, 1, 1, 1, 0, 0, nullptr, 0), -1);
    ASSERT_EQ(Library().SeedTrack(0, 7, 1, 2, 30, 0.5f, 1.5f, points, 2), 0);
    ASSERT_EQ(Library().SeedTrack(1, 9, 1, 2, 40, 2.5f, 3.5f, points, 1), 0);
    EXPECT_EQ(m_pAgent->GetCurrentTrackingID(), 7);
    int32_t highest = 0;
    EXPECT_EQ(m_pAgent->GetMaxTrackingID(&highest), 0);
    EXPECT_EQ(highest, 9);

    const int64_t out = Library().Counter("trackEntriesOut");
    TrackQueueEntry* entry = nullptr;
    ASSERT_EQ(m_pAgent->QueryTrackResultInQueue(1, 2, 30, &entry), 0);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(Library().Counter("trackEntriesOut"), out + 1);
    EXPECT_EQ(entry->position[0], 0.5f);
    EXPECT_EQ(entry->position[1], 1.5f);
    ASSERT_NE(entry->pList, nullptr);
    EXPECT_EQ(entry->pList->nCount, 2u);
    EXPECT_EQ(entry->pList->pPoints[1].fValue[2], 6.0f);
    FreeTrackPointList(entry->pList);
    delete entry;
    EXPECT_EQ(m_pAgent->QueryTrackResultInQueue(1, 2, 31, &entry), static_cast<int32_t>(0x80004005u));

    auto* list = new TrackPointList{};
    float position[2] = {};
    ASSERT_EQ(m_pAgent->QueryMotionTrackingMaskInfo(9, 1, 2, &list, 40, position), 0);
    EXPECT_EQ(list->nCount, 1u);
    EXPECT_EQ(position[0], 2.5f);
    FreeTrackPointList(list);

    TrackPointList* latest = nullptr;
    int64_t time = 0;
    ASSERT_EQ(m_pAgent->QueryLatestMotionTrackingMaskInfo(1, 2, 9, &latest, &time, position), 0);
    EXPECT_EQ(time, 40);
    EXPECT_EQ(latest->nCount, 1u);   // the agent's to free
    Library().Reset();
    EXPECT_EQ(m_pAgent->GetCurrentTrackingID(), 0);
}

}  // namespace
}  // namespace reftest
}  // namespace pcg
