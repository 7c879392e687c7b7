// The reference agent's event side: one producer thread per agent writes the
// items that tests post (RefAgent_PostEvent) into the ring that the agent was
// given with SetCallbackQueue, in post order, by the ring protocol. Library
// wide, the producers are found by the agent's instance number.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

#include "engine/dsp_callback_queue.h"

namespace pcg {
namespace refagent {

class EventProducer {
public:
    explicit EventProducer(int64_t instance);
    // Stops the thread; items not yet written are dropped and their frames released.
    ~EventProducer();
    EventProducer(const EventProducer&) = delete;
    EventProducer& operator=(const EventProducer&) = delete;

    // The agent's SetCallbackQueue. Returns only when no write into the
    // previous ring is under way, so nothing reaches a ring after the call
    // that took it away. Null drops the items not yet written.
    void SetRing(DspCallbackQueue* ring);

    // Queues one item (its frame reference comes along). False, and nothing
    // queued, when the agent holds no ring.
    bool Post(const DspCallbackItem& item);

    // True once every item posted so far is written into a ring or dropped.
    bool WaitPosted(uint32_t timeoutMs);

private:
    void m_fnRun();
    // Releases the frames of the items not yet written; the lock is held.
    void m_fnDropPending();

    const int64_t m_nInstance;
    std::mutex m_mutex;
    std::condition_variable m_cv;
    std::deque<DspCallbackItem> m_pending;
    DspCallbackQueue* m_pRing = nullptr;
    bool m_bStop = false;
    bool m_bInFlight = false;    // an item taken off m_pending is being written
    uint64_t m_nPosted = 0;
    uint64_t m_nSettled = 0;     // written or dropped
    std::thread m_thread;
};

// The library's table of producers by instance number.
void RegisterProducer(int64_t instance, const std::shared_ptr<EventProducer>& producer);
void UnregisterProducer(int64_t instance);
// Instance 0 names the agent that last received a non-null ring.
std::shared_ptr<EventProducer> FindProducer(int64_t instance);
void NoteRingHolder(int64_t instance);

}  // namespace refagent
}  // namespace pcg
