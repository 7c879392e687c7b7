#include "platform/parallel_slices.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace pcg {
namespace platform {

namespace {

std::atomic<int> g_nThreadLimit{0};

// Slices per thread: a helper the system schedules late leaves its share to
// the threads already running, which take the slices it has not begun.
constexpr int kSlicesPerThread = 4;

// One call's slices. Whoever runs them (the caller, helpers) takes the next
// one until none is left; the caller returns when every slice is done.
struct SliceJob {
    SliceRoutine work;
    void* context;
    int count;
    int nSlices;
    std::atomic<int> next{0};
    std::atomic<int> done{0};
    std::atomic<int> helpersWanted{0};
    std::mutex doneLock;               // leaf lock: guards nothing but the wake-up below
    std::condition_variable allDone;

    int Bound(int k) const { return static_cast<int>(static_cast<int64_t>(count) * k / nSlices); }

    void RunSlices() {
        for (int k = next.fetch_add(1); k < nSlices; k = next.fetch_add(1)) {
            work(context, Bound(k), Bound(k + 1));
            if (done.fetch_add(1) + 1 == nSlices) {
                std::lock_guard<std::mutex> hold(doneLock);
                allDone.notify_all();
            }
        }
    }
};

// Helper threads, started when first needed and kept for the process's
// life: the pool is never destroyed, so no exit path joins a thread (at a
// library's unload that would wait under the loader's lock). A helper that
// never comes costs nothing but parallelism: the caller runs every slice
// no helper has begun.
class SlicePool {
public:
    // Offers the job to up to nHelpers helpers.
    void Offer(const std::shared_ptr<SliceJob>& job, int nHelpers) {
        std::lock_guard<std::mutex> hold(m_lock);
        while (static_cast<int>(m_nThreads) < nHelpers) {
            try {
                std::thread(&SlicePool::Serve, this).detach();
                ++m_nThreads;
            } catch (const std::system_error&) {
                break;
            }
        }
        job->helpersWanted.store(nHelpers);
        m_job = job;
        ++m_nGeneration;
        m_wake.notify_all();
    }

    // Forgets the job if it is still the one on offer.
    void Withdraw(const std::shared_ptr<SliceJob>& job) {
        std::lock_guard<std::mutex> hold(m_lock);
        if (m_job == job) m_job.reset();
    }

private:
    void Serve() {
        uint64_t nSeen = 0;
        for (;;) {
            std::shared_ptr<SliceJob> job;
            {
                std::unique_lock<std::mutex> hold(m_lock);
                m_wake.wait(hold, [&] { return m_nGeneration != nSeen; });
                nSeen = m_nGeneration;
                job = m_job;
            }
            // More helpers may wake than the job asked for.
            if (job && job->helpersWanted.fetch_sub(1) > 0) job->RunSlices();
        }
    }

    std::mutex m_lock;   // leaf lock: never held while slices run
    std::condition_variable m_wake;
    std::shared_ptr<SliceJob> m_job;
    uint64_t m_nGeneration = 0;
    size_t m_nThreads = 0;
};

SlicePool& Pool() {
    static SlicePool* const pPool = new SlicePool;
    return *pPool;
}

}  // namespace

int ProcessorCount() {
    static const int nCount = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    return nCount;
}

int SliceThreadCount() {
    const int nLimit = g_nThreadLimit.load(std::memory_order_relaxed);
    const int nCount = ProcessorCount();
    return nLimit > 0 ? std::min(nLimit, nCount) : nCount;
}

void SetSliceThreadLimit(int nThreads) {
    g_nThreadLimit.store(std::max(0, nThreads), std::memory_order_relaxed);
}

void ForEachSlice(int count, int minSlice, SliceRoutine work, void* context) {
    if (count <= 0) return;
    const int nMin = std::max(1, minSlice);
    const int nThreads = std::max(1, std::min(SliceThreadCount(), count / nMin));
    if (nThreads == 1) {
        work(context, 0, count);
        return;
    }
    auto job = std::make_shared<SliceJob>();
    job->work = work;
    job->context = context;
    job->count = count;
    // Slice k covers [k * count / nSlices, (k + 1) * count / nSlices).
    job->nSlices = std::min(count / nMin, nThreads * kSlicesPerThread);
    Pool().Offer(job, nThreads - 1);
    job->RunSlices();
    Pool().Withdraw(job);
    // Only slices a helper has begun are waited for.
    std::unique_lock<std::mutex> hold(job->doneLock);
    job->allDone.wait(hold, [&] { return job->done.load() == job->nSlices; });
}

}  // namespace platform
}  // namespace pcg
