#include "facade/agent_registry.h"

#include <map>

#include "platform/platform.h"

namespace pcg {
namespace facade {
namespace {

// Guards the map; taken for one lookup or update and nothing else.
platform::CriticalSection& RegistryLock() {
    static platform::CriticalSection lock;
    return lock;
}

// Agent → number of live facades that hold it.
std::map<const IVXHvnDspAgent*, int>& HeldAgents() {
    static std::map<const IVXHvnDspAgent*, int> held;
    return held;
}

}  // namespace

void RegisterHeldAgent(IVXHvnDspAgent* agent) {
    if (agent == nullptr) {
        return;
    }
    platform::CriticalSectionScope scope(RegistryLock());
    ++HeldAgents()[agent];
}

void UnregisterHeldAgent(IVXHvnDspAgent* agent) {
    if (agent == nullptr) {
        return;
    }
    platform::CriticalSectionScope scope(RegistryLock());
    auto found = HeldAgents().find(agent);
    if (found != HeldAgents().end() && --found->second == 0) {
        HeldAgents().erase(found);
    }
}

bool IsHeldAgent(const IVXHvnDspAgent* agent) {
    platform::CriticalSectionScope scope(RegistryLock());
    return HeldAgents().count(agent) != 0;
}

}  // namespace facade
}  // namespace pcg
