// Test-only switch that makes allocations of the shared effect heap fail, so
// that the paths taken when memory runs out can be reached from tests. Off
// unless a test turns it on; then each check costs one atomic step.
//
// The switch is per library (the module and the agent each have their own):
// - the environment variable PYCLIPGRADE_FAIL_ALLOCATION="N" or "N:K", read
//   at the first check: the Nth check from then on (counting from 1) and the
//   K - 1 after it fail (K absent: every later one);
// - or, in the module, the exported C entry PcgTesting_FailAllocations(N, K)
//   (K = 0: every later one; N = 0 turns the switch off and resets).
#pragma once

#include <cstdint>

namespace pcg {
namespace platform {

// True when this allocation is one the switch makes fail.
bool AllocationFaultDue();

// Turns the switch on as described above, or off with first = 0.
void FailAllocations(uint32_t first, uint32_t count);

// Test-only: the next `count` thread starts (Thread::Start) fail as if the
// system had refused to make the thread; 0 turns the switch off.
void FailThreadStarts(uint32_t count);

// True when this thread start is one the switch makes fail (and counts it).
bool ThreadStartFaultDue();

// Named faults, for the one-off creations whose failure has its own path
// (the callback ring's array: "ring-array"; CreateImageBuffer:
// "image-buffer"). A site fails at every check while its name is on: from
// the environment variable PYCLIPGRADE_FAIL_SITES="name,name,..." read at
// the first check, or from the module's exported entry
// PcgTesting_FailSite(name, on). Off by default; then a check costs one
// atomic load.
bool SiteFaultDue(const char* site);

// Turns one site on or off (a null site turns every site off).
void FailSite(const char* site, bool on);

}  // namespace platform
}  // namespace pcg
