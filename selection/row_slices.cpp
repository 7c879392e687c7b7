#include "selection/row_slices.h"

#include <atomic>

namespace pcg {
namespace selection {

namespace {

// About a millisecond of the slowest loops: below it a thread's start and
// join are no longer small beside the work.
constexpr int64_t kDefaultGrain = int64_t{1} << 18;
std::atomic<int64_t> g_nGrain{kDefaultGrain};

}  // namespace

int64_t ParallelPixelGrain() { return g_nGrain.load(std::memory_order_relaxed); }

void SetParallelPixelGrain(int64_t nPixels) {
    g_nGrain.store(nPixels > 0 ? nPixels : kDefaultGrain, std::memory_order_relaxed);
}

}  // namespace selection
}  // namespace pcg
