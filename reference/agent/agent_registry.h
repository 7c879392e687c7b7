// Library-wide state of the reference render agent, shared by every agent it
// makes: the journal, the injected results, the instance numbers and the
// ownership counters. Safe on any thread.
#pragma once

#include <cstdint>
#include <string>

#include "reference/agent/journal_json.h"

namespace pcg {
namespace refagent {

// Ownership counters, read through RefAgent_Counter.
enum class Counter {
    AgentsLive,      // agents made and not yet destroyed
    RecordsHeld,     // effect records the live agents hold
    RecordsFreed,    // effect records freed since the library was loaded
    EntriesFreed,    // keyframe entries freed with them
    MasksHeld,       // mask objects the live agents hold
    StreamsOut,      // track history streams handed out and not given back
    FramesLive,      // image buffers the agent made that are still alive
    TrackEntriesOut, // track queue entries handed out since the last Reset
    Count
};

class AgentRegistry {
public:
    static AgentRegistry& Instance();

    // 1 for the first agent the library ever made, then 2, ...
    int64_t NextInstance();

    void Append(Json entry);
    // The journal as JSON text.
    std::string JournalText();
    // Empties the journal and removes every injected result.
    void Reset();

    // agentName "*" stands for every agent.
    void SetResult(const std::string& agentName, const std::string& op, double value);
    // The injected value for this agent and operation: one set for its own
    // name wins over one set for "*". False when there is none.
    bool FindResult(const std::string& agentName, const char* op, double* value);
    // The same, without the entries set for every operation ("*"): for the
    // factory, which an agent failing everything must not stop.
    bool FindNamedResult(const std::string& agentName, const char* op, double* value);

    void Add(Counter counter, int64_t delta);
    int64_t Get(Counter counter);

private:
    AgentRegistry() = default;
    struct Impl;
    Impl& State();
};

}  // namespace refagent
}  // namespace pcg
