#include "selection/simd_dispatch.h"

#include <atomic>

namespace pcg {
namespace selection {

namespace {

bool ProcessorHasAvx2() {
#if PCG_AVX2_KERNELS
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt") && __builtin_cpu_supports("bmi") &&
           __builtin_cpu_supports("bmi2");
#else
    return false;
#endif
}

std::atomic<bool> g_bAllowed{true};

}  // namespace

bool UseAvx2() {
    static const bool bHas = ProcessorHasAvx2();
    return bHas && g_bAllowed.load(std::memory_order_relaxed);
}

void SetAvx2Allowed(bool bAllowed) { g_bAllowed.store(bAllowed, std::memory_order_relaxed); }

}  // namespace selection
}  // namespace pcg
