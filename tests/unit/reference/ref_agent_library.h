// The reference render agent library as the tests reach it: loaded once
// through the platform layer from <host>/KESdlls/VXHvnDspAgent, exactly as
// the module finds it, with its entries looked up by name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "engine/effect_record.h"
#include "engine/engine_contract.h"

namespace pcg {
namespace reftest {

using Json = nlohmann::ordered_json;

class RefAgentLibrary {
public:
    // Loads on first use; the library stays loaded for the whole run.
    static RefAgentLibrary& Get();

    bool Loaded() const;
    IVXHvnDspAgent* Create(const char* name);
    int32_t JournalInto(char* buffer, int32_t capacity);
    std::string JournalText();
    Json JournalJson();
    void Reset();
    void SetResult(const char* agentName, const char* op, double value);
    int64_t Counter(const char* name);
    int32_t PostEvent(int32_t instance, int32_t command, int32_t value, int64_t llValue, int32_t frameWidth,
                      int32_t frameHeight);
    int32_t WaitPosted(int32_t instance, int32_t timeoutMs);
    int32_t SeedTrack(int32_t where, int32_t trackingID, int32_t videoID, int32_t maskID, int64_t time, float x,
                      float y, const float* points, int32_t pointCount);

private:
    RefAgentLibrary();
    void* m_pModule = nullptr;
    CreateHvnDspAgentFn m_fnCreate = nullptr;
    int32_t (*m_fnJournal)(char*, int32_t) = nullptr;
    void (*m_fnReset)() = nullptr;
    void (*m_fnSetResult)(const char*, const char*, double) = nullptr;
    int64_t (*m_fnCounter)(const char*) = nullptr;
    int32_t (*m_fnPostEvent)(int32_t, int32_t, int32_t, int64_t, int32_t, int32_t) = nullptr;
    int32_t (*m_fnWaitPosted)(int32_t, int32_t) = nullptr;
    int32_t (*m_fnSeedTrack)(int32_t, int32_t, int32_t, int32_t, int64_t, float, float, const float*,
                             int32_t) = nullptr;
};

// Every test starts with an empty journal and no injected results.
class RefAgentTest : public ::testing::Test {
protected:
    void SetUp() override;
    RefAgentLibrary& Library() { return RefAgentLibrary::Get(); }
    // Journal entries with this op, in order.
    std::vector<Json> Entries(const char* op);
    // The one entry with this op; a failure when there is not exactly one.
    Json Entry(const char* op);
};

// A clarity record with one keyframe per (time, value), interpolation 2.
pcg::engine::EffectRecordHeader* MakeClarityRecord(const std::vector<std::pair<int64_t, int32_t>>& keys);

}  // namespace reftest
}  // namespace pcg
