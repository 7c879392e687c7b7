#include "platform/parallel_slices.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace pcg {
namespace platform {

namespace {

std::atomic<int> g_nThreadLimit{0};

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
    const int nSlices = std::max(1, std::min(SliceThreadCount(), count / nMin));
    if (nSlices == 1) {
        work(context, 0, count);
        return;
    }
    // Slice k covers [k * count / nSlices, (k + 1) * count / nSlices).
    auto bound = [&](int k) { return static_cast<int>(static_cast<int64_t>(count) * k / nSlices); };
    std::vector<std::thread> threads;
    threads.reserve(static_cast<size_t>(nSlices - 1));
    std::vector<int> leftOver;
    for (int k = 1; k < nSlices; ++k) {
        try {
            threads.emplace_back(work, context, bound(k), bound(k + 1));
        } catch (const std::system_error&) {
            leftOver.push_back(k);
        }
    }
    work(context, 0, bound(1));
    for (int k : leftOver) work(context, bound(k), bound(k + 1));
    for (std::thread& t : threads) t.join();
}

}  // namespace platform
}  // namespace pcg
