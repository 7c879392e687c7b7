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
// [0, count) exactly once. A slice has at least minSlice items, and there are
// never more slices than SliceThreadCount(). The first slice runs on the
// calling thread, the others on threads started for this call; all are done
// when the call returns. With one slice nothing is started. A thread that
// cannot be started leaves its slice to the caller. `work` must not throw.
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
