#include "reference/retouch/retouch_state.h"

#include <atomic>
#include <cmath>
#include <map>
#include <mutex>
#include <utility>

namespace pcg {
namespace refretouch {

struct RetouchState::Impl {
    std::mutex m_lock;
    Json m_journal = Json::array();
    std::map<std::pair<std::string, std::string>, double> m_results;
    std::atomic<int64_t> m_nextInstance{0};
    std::atomic<int64_t> m_counters[static_cast<int>(Counter::Count)] = {};
};

RetouchState& RetouchState::Instance() {
    static RetouchState state;
    return state;
}

// A static destroyed with the library, so unloading it leaks nothing.
RetouchState::Impl& RetouchState::State() {
    static Impl state;
    return state;
}

int64_t RetouchState::NextInstance() { return ++State().m_nextInstance; }

void RetouchState::Journal(const char* object, int64_t instance, const char* op, Json args) {
    Json entry = Json::object();
    entry["object"] = object;
    entry["instance"] = instance;
    entry["op"] = op;
    entry["args"] = std::move(args);
    std::lock_guard<std::mutex> guard(State().m_lock);
    State().m_journal.push_back(std::move(entry));
}

std::string RetouchState::JournalText() {
    std::string text;
    std::lock_guard<std::mutex> guard(State().m_lock);
    pcg::refagent::AppendJson(text, State().m_journal);
    return text;
}

void RetouchState::Reset() {
    std::lock_guard<std::mutex> guard(State().m_lock);
    State().m_journal = Json::array();
    State().m_results.clear();
}

void RetouchState::SetResult(const std::string& object, const std::string& op, double value) {
    std::lock_guard<std::mutex> guard(State().m_lock);
    State().m_results[{object, op}] = value;
}

int32_t RetouchState::Answer(const char* object, const char* op, int32_t own) {
    std::lock_guard<std::mutex> guard(State().m_lock);
    auto found = State().m_results.find({object, op});
    if (found == State().m_results.end()) found = State().m_results.find({"*", op});
    if (found == State().m_results.end()) return own;
    const double value = found->second;
    if (!std::isfinite(value)) return static_cast<int32_t>(0x80004005u);
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<int64_t>(value)));
}

void RetouchState::Add(Counter counter, int64_t delta) { State().m_counters[static_cast<int>(counter)] += delta; }

void RetouchState::Set(Counter counter, int64_t value) { State().m_counters[static_cast<int>(counter)] = value; }

int64_t RetouchState::Get(Counter counter) { return State().m_counters[static_cast<int>(counter)].load(); }

}  // namespace refretouch
}  // namespace pcg
