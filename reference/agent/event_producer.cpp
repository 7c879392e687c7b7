#include "reference/agent/event_producer.h"

#include <chrono>
#include <map>

#include "events/callback_ring.h"
#include "imaging/image_buffer.h"
#include "platform/platform.h"

namespace pcg {
namespace refagent {

namespace {

// How often a producer waiting for a free slot looks whether its ring was
// taken away (or the agent is going).
constexpr uint32_t kSlotPollMs = 10;

struct ProducerTable {
    std::mutex m_mutex;
    std::map<int64_t, std::weak_ptr<EventProducer>> m_byInstance;
    int64_t m_nRingHolder = 0;
};

ProducerTable& Table() {
    static ProducerTable table;
    return table;
}

}  // namespace

EventProducer::EventProducer(int64_t instance) : m_nInstance(instance) {
    m_thread = std::thread([this] { m_fnRun(); });
}

EventProducer::~EventProducer() {
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_bStop = true;
        m_fnDropPending();
        m_cv.notify_all();
    }
    m_thread.join();
}

void EventProducer::m_fnDropPending() {
    for (const DspCallbackItem& item : m_pending) {
        if (item.pFrame != nullptr) item.pFrame->Release();
    }
    m_nSettled += m_pending.size();
    m_pending.clear();
}

void EventProducer::SetRing(DspCallbackQueue* ring) {
    std::unique_lock<std::mutex> lock(m_mutex);
    DspCallbackQueue* previous = m_pRing;
    m_pRing = ring;
    if (ring == nullptr) m_fnDropPending();
    m_cv.notify_all();
    if (previous != ring) {
        m_cv.wait(lock, [this] { return !m_bInFlight; });
    }
}

bool EventProducer::Post(const DspCallbackItem& item) {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_pRing == nullptr || m_bStop) return false;
    m_pending.push_back(item);
    ++m_nPosted;
    m_cv.notify_all();
    return true;
}

bool EventProducer::WaitPosted(uint32_t timeoutMs) {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_cv.wait_for(lock, std::chrono::milliseconds(timeoutMs), [this] { return m_nSettled == m_nPosted; });
}

void EventProducer::m_fnRun() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_cv.wait(lock, [this] { return m_bStop || (!m_pending.empty() && m_pRing != nullptr); });
        if (m_bStop) return;
        const DspCallbackItem item = m_pending.front();
        m_pending.pop_front();
        DspCallbackQueue* ring = m_pRing;
        m_bInFlight = true;
        lock.unlock();

        // Wait for a slot as the protocol says, but look now and then whether
        // the ring is still ours: a ring taken away must not be written.
        bool written = false;
        for (;;) {
            const uint32_t result = pcg::events::PostCallbackItem(ring, item, kSlotPollMs);
            if (result == platform::kWaitObject0) {
                written = true;
                break;
            }
            if (result != platform::kWaitTimeout) break;
            lock.lock();
            const bool stillOurs = m_pRing == ring && !m_bStop;
            lock.unlock();
            if (!stillOurs) break;
        }
        if (!written && item.pFrame != nullptr) item.pFrame->Release();

        lock.lock();
        m_bInFlight = false;
        ++m_nSettled;
        m_cv.notify_all();
    }
}

void RegisterProducer(int64_t instance, const std::shared_ptr<EventProducer>& producer) {
    ProducerTable& table = Table();
    std::lock_guard<std::mutex> lock(table.m_mutex);
    table.m_byInstance[instance] = producer;
}

void UnregisterProducer(int64_t instance) {
    ProducerTable& table = Table();
    std::lock_guard<std::mutex> lock(table.m_mutex);
    table.m_byInstance.erase(instance);
    if (table.m_nRingHolder == instance) table.m_nRingHolder = 0;
}

std::shared_ptr<EventProducer> FindProducer(int64_t instance) {
    ProducerTable& table = Table();
    std::lock_guard<std::mutex> lock(table.m_mutex);
    if (instance == 0) instance = table.m_nRingHolder;
    auto found = table.m_byInstance.find(instance);
    return found == table.m_byInstance.end() ? nullptr : found->second.lock();
}

void NoteRingHolder(int64_t instance) {
    ProducerTable& table = Table();
    std::lock_guard<std::mutex> lock(table.m_mutex);
    table.m_nRingHolder = instance;
}

}  // namespace refagent
}  // namespace pcg
