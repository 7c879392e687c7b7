// Row work split over the processors: the one way the imaging loops use more
// than the calling thread. Portable C++ threads, so the same code serves the
// POSIX and the Windows side.
#pragma once

#include <cstdint>
#include <type_traits>

namespace pcg {
namespace platform {

// Processors of the machine, as the C++ library counts them; at least 1.
int ProcessorCount();

// Threads ForEachSlice may use, the caller included: ProcessorCount(), or a
// lower limit set by SetSliceThreadLimit (tests use it to force one path).
int SliceThreadCount();
// 0 lifts the limit.
void SetSliceThreadLimit(int nThreads);

using SliceRoutine = void (*)(void* context, int first, int last);

// Calls work(context, first, last) over contiguous slices that cover
// [0, count) exactly once, each of at least minSlice items. At most
// SliceThreadCount() threads run them, the calling thread included: the
// others are helpers kept from call to call, and each thread takes the next
// slice not yet begun, so a helper the system starts late leaves its slices
// to the rest (there are a few slices per thread for that). With fewer than
// two threads' worth of items the one slice runs on the caller and no
// helper is asked. All slices are done when the call returns. `work` must
// not throw.
void ForEachSlice(int count, int minSlice, SliceRoutine work, void* context);

template <class F>
void ForEachSlice(int count, int minSlice, F&& work) {
    using Fn = typename std::remove_reference<F>::type;
    ForEachSlice(count, minSlice,
                 [](void* context, int first, int last) { (*static_cast<Fn*>(context))(first, last); },
                 const_cast<void*>(static_cast<const void*>(&work)));
}

}  // namespace platform
}  // namespace pcg
