#include "reference/agent/ref_agent_api.h"

#include <cstring>
#include <string>

#include "reference/agent/agent_registry.h"
#include "reference/agent/ref_dsp_agent.h"

using pcg::refagent::AgentRegistry;
using pcg::refagent::Counter;

namespace {

struct CounterName {
    const char* pszName;
    Counter eCounter;
};

const CounterName kCounterNames[] = {
    {"agentsLive", Counter::AgentsLive},     {"recordsHeld", Counter::RecordsHeld},
    {"recordsFreed", Counter::RecordsFreed}, {"entriesFreed", Counter::EntriesFreed},
    {"masksHeld", Counter::MasksHeld},       {"streamsOut", Counter::StreamsOut},
};

}  // namespace

extern "C" {

IVXHvnDspAgent* CreateHvnDspAgent(const char* name, int32_t reserved, void* context) {
    return new pcg::refagent::CRefDspAgent(name, AgentRegistry::Instance().NextInstance());
}

int32_t RefAgent_Journal(char* buffer, int32_t capacity) {
    const std::string text = AgentRegistry::Instance().JournalText();
    const auto length = static_cast<int32_t>(text.size());
    if (buffer && capacity >= length) {
        // The NUL goes along only when there is room for it.
        std::memcpy(buffer, text.c_str(), capacity > length ? text.size() + 1 : text.size());
    }
    return length;
}

void RefAgent_Reset(void) {
    AgentRegistry::Instance().Reset();
}

void RefAgent_SetResult(const char* agentName, const char* op, double value) {
    if (!agentName || !op) {
        return;
    }
    AgentRegistry::Instance().SetResult(agentName, op, value);
}

int64_t RefAgent_Counter(const char* name) {
    if (!name) {
        return -1;
    }
    for (const CounterName& entry : kCounterNames) {
        if (std::strcmp(entry.pszName, name) == 0) {
            return AgentRegistry::Instance().Get(entry.eCounter);
        }
    }
    return -1;
}

}  // extern "C"
