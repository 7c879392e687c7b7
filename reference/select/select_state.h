// Library-wide state of the reference selection engine: the journal and the
// injected results (the render agent's registry, built into this library
// with its own instance) and the two ownership counters.
#pragma once

#include <atomic>
#include <cstdint>

#include "reference/agent/agent_registry.h"

namespace pcg {
namespace refselect {

// The name that the journal's "object" member and SetResult use.
constexpr const char kObjectName[] = "Selection";

inline pcg::refagent::AgentRegistry& Registry() { return pcg::refagent::AgentRegistry::Instance(); }

// Objects made and not yet released.
std::atomic<int64_t>& ObjectsLive();
// Strokes the live objects hold in their histories.
std::atomic<int64_t>& StrokesHeld();

}  // namespace refselect
}  // namespace pcg
