#include "reference/agent/agent_registry.h"

#include <atomic>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace pcg {
namespace refagent {

struct AgentRegistry::Impl {
    std::mutex m_journalLock;
    std::vector<Json> m_journal;
    std::mutex m_resultLock;
    std::map<std::pair<std::string, std::string>, double> m_results;
    std::atomic<int64_t> m_nLastInstance{0};
    std::atomic<int64_t> m_counters[static_cast<int>(Counter::Count)] = {};
};

AgentRegistry& AgentRegistry::Instance() {
    static AgentRegistry registry;
    return registry;
}

AgentRegistry::Impl& AgentRegistry::State() {
    // Destroyed when the library is unloaded: the facade unloads it after its
    // last agent is gone, and one process may load it many times.
    static Impl state;
    return state;
}

int64_t AgentRegistry::NextInstance() {
    return ++State().m_nLastInstance;
}

void AgentRegistry::Append(Json entry) {
    Impl& state = State();
    std::lock_guard<std::mutex> guard(state.m_journalLock);
    state.m_journal.push_back(std::move(entry));
}

std::string AgentRegistry::JournalText() {
    Impl& state = State();
    std::lock_guard<std::mutex> guard(state.m_journalLock);
    std::string text = "[";
    for (std::size_t index = 0; index < state.m_journal.size(); ++index) {
        if (index != 0) {
            text += ',';
        }
        AppendJson(text, state.m_journal[index]);
    }
    text += ']';
    return text;
}

void AgentRegistry::Reset() {
    Impl& state = State();
    {
        std::lock_guard<std::mutex> guard(state.m_journalLock);
        state.m_journal.clear();
    }
    std::lock_guard<std::mutex> guard(state.m_resultLock);
    state.m_results.clear();
}

void AgentRegistry::SetResult(const std::string& agentName, const std::string& op, double value) {
    Impl& state = State();
    std::lock_guard<std::mutex> guard(state.m_resultLock);
    state.m_results[{agentName, op}] = value;
}

bool AgentRegistry::FindResult(const std::string& agentName, const char* op, double* value) {
    Impl& state = State();
    std::lock_guard<std::mutex> guard(state.m_resultLock);
    if (state.m_results.empty()) {
        return false;
    }
    // The most specific entry wins: this agent and this operation, any agent
    // and this operation, this agent and any operation, then any of both.
    auto it = state.m_results.find({agentName, op});
    if (it == state.m_results.end()) {
        it = state.m_results.find({std::string("*"), op});
    }
    if (it == state.m_results.end()) {
        it = state.m_results.find({agentName, std::string("*")});
    }
    if (it == state.m_results.end()) {
        it = state.m_results.find({std::string("*"), std::string("*")});
    }
    if (it == state.m_results.end()) {
        return false;
    }
    *value = it->second;
    return true;
}

bool AgentRegistry::FindNamedResult(const std::string& agentName, const char* op, double* value) {
    Impl& state = State();
    std::lock_guard<std::mutex> guard(state.m_resultLock);
    auto it = state.m_results.find({agentName, op});
    if (it == state.m_results.end()) {
        it = state.m_results.find({std::string("*"), op});
    }
    if (it == state.m_results.end()) {
        return false;
    }
    *value = it->second;
    return true;
}

void AgentRegistry::Add(Counter counter, int64_t delta) {
    State().m_counters[static_cast<int>(counter)] += delta;
}

int64_t AgentRegistry::Get(Counter counter) {
    return State().m_counters[static_cast<int>(counter)].load();
}

}  // namespace refagent
}  // namespace pcg
