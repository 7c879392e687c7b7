#include "engine/constants.h"
#include "engine/result_codes.h"
#include "tests/unit/reference/ref_agent_library.h"

namespace pcg {
namespace reftest {
namespace {

// Counter readings at the start of a test; the tests compare differences.
struct Counters {
    int64_t nHeld;
    int64_t nFreed;
    int64_t nEntries;
};

class AgentOwnership : public RefAgentTest {
protected:
    Counters Read() {
        return Counters{Library().Counter("recordsHeld"), Library().Counter("recordsFreed"),
                        Library().Counter("entriesFreed")};
    }
    void Push(IVXHvnDspAgent* agent, uint32_t videoID, std::vector<std::pair<int64_t, int32_t>> keys) {
        pcg::engine::EffectRecordHeader* record = MakeClarityRecord(keys);
        agent->PushEffect(videoID, FUNCTION_SET_CLARITY, &record);
    }
};

TEST_F(AgentOwnership, PushEffectTakesTheRecordAndNullsThePointer) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    pcg::engine::EffectRecordHeader* record = MakeClarityRecord({{0, 1}});
    EXPECT_EQ(agent->PushEffect(7, FUNCTION_SET_CLARITY, &record), kResultOk);
    EXPECT_EQ(record, nullptr);
    EXPECT_EQ(Read().nHeld, before.nHeld + 1);
    EXPECT_EQ(Read().nFreed, before.nFreed);
    agent->Release();
}

TEST_F(AgentOwnership, ReplacedRecordIsFreedWithItsEntries) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    Push(agent, 7, {{0, 1}, {10, 2}, {20, 3}});
    Push(agent, 7, {{0, 4}});
    EXPECT_EQ(Read().nHeld, before.nHeld + 1);
    EXPECT_EQ(Read().nFreed, before.nFreed + 1);
    EXPECT_EQ(Read().nEntries, before.nEntries + 3);
    agent->Release();
}

TEST_F(AgentOwnership, RecordsOfOtherClipsOrFunctionsAreKept) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    Push(agent, 7, {{0, 1}});
    Push(agent, 8, {{0, 1}});
    pcg::engine::EffectRecordHeader* saturation = MakeClarityRecord({{0, 1}});
    agent->PushEffect(7, FUNCTION_SET_SATURATION, &saturation);
    EXPECT_EQ(Read().nHeld, before.nHeld + 3);
    EXPECT_EQ(Read().nFreed, before.nFreed);
    agent->Release();
}

TEST_F(AgentOwnership, ClearTaskFreesOnlyThatClipsRecords) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    Push(agent, 7, {{0, 1}, {5, 2}});
    Push(agent, 8, {{0, 1}});
    agent->ClearTask(7);
    EXPECT_EQ(Read().nHeld, before.nHeld + 1);
    EXPECT_EQ(Read().nFreed, before.nFreed + 1);
    EXPECT_EQ(Read().nEntries, before.nEntries + 2);
    agent->Release();
}

TEST_F(AgentOwnership, RemoveVideoFreesTheClipsRecords) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    agent->AddVideo(7, 0, 100, 1.5);
    Push(agent, 7, {{0, 1}});
    agent->RemoveVideo(7);
    EXPECT_EQ(Read().nHeld, before.nHeld);
    EXPECT_EQ(Read().nFreed, before.nFreed + 1);
    agent->Release();
}

TEST_F(AgentOwnership, RemoveAllVideoFreesEveryRecord) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    Push(agent, 7, {{0, 1}});
    Push(agent, 8, {{0, 1}});
    agent->RemoveAllVideo();
    EXPECT_EQ(Read().nHeld, before.nHeld);
    EXPECT_EQ(Read().nFreed, before.nFreed + 2);
    agent->Release();
}

TEST_F(AgentOwnership, LastReleaseFreesEverythingHeld) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    Push(agent, 7, {{0, 1}, {5, 2}});
    Push(agent, 8, {{0, 1}});
    agent->AddRef();
    agent->Release();
    EXPECT_EQ(Read().nFreed, before.nFreed);
    agent->Release();
    EXPECT_EQ(Read().nHeld, before.nHeld);
    EXPECT_EQ(Read().nFreed, before.nFreed + 2);
    EXPECT_EQ(Read().nEntries, before.nEntries + 3);
}

TEST_F(AgentOwnership, NullRecordIsRefusedAndJournaledAsNull) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    pcg::engine::EffectRecordHeader* record = nullptr;
    EXPECT_EQ(agent->PushEffect(7, FUNCTION_SET_CLARITY, &record), kResultPointer);
    EXPECT_EQ(agent->PushEffect(7, FUNCTION_SET_CLARITY, nullptr), kResultPointer);
    EXPECT_EQ(Read().nHeld, before.nHeld);
    EXPECT_EQ(Entries("PushEffect")[0].at("args"), Json::parse("[7,225,null]"));
    agent->Release();
}

TEST_F(AgentOwnership, RecordOfAnUnknownFunctionIsKeptAndJournaledByItsHeader) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    auto* record = static_cast<pcg::engine::EffectRecordHeader*>(
        pcg::engine::AllocEffectMemory(sizeof(pcg::engine::EffectRecordHeader)));
    record->nEffectVersion = 3;
    record->nHeaderWord = 5;
    agent->PushEffect(7, FUNCTION_SET_LEVEL, &record);
    EXPECT_EQ(Entry("PushEffect").at("args"), Json::parse(R"([7,97,{"version":3,"word":5}])"));
    EXPECT_EQ(Read().nHeld, before.nHeld + 1);
    agent->Release();
    EXPECT_EQ(Read().nFreed, before.nFreed + 1);
}

TEST_F(AgentOwnership, SamePointerPushedAgainStaysOneRecord) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const Counters before = Read();
    pcg::engine::EffectRecordHeader* record = MakeClarityRecord({{0, 1}});
    pcg::engine::EffectRecordHeader* again = record;
    agent->PushEffect(7, FUNCTION_SET_CLARITY, &record);
    agent->PushEffect(7, FUNCTION_SET_CLARITY, &again);
    EXPECT_EQ(Read().nHeld, before.nHeld + 1);
    EXPECT_EQ(Read().nFreed, before.nFreed);
    agent->Release();
    EXPECT_EQ(Read().nFreed, before.nFreed + 1);
}

TEST_F(AgentOwnership, RecordDecodingShowsEveryVectorInRecordOrder) {
    // A tone record: exposure (double), then six integer vectors.
    struct ToneRecord {
        pcg::engine::EffectRecordHeader header;
        pcg::engine::KeyframeVector<double> exposure;
        pcg::engine::KeyframeVector<int32_t> others[6];
    };
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    auto* record = pcg::engine::NewEffectRecord<ToneRecord>(4);
    pcg::engine::AppendKeyframe<double>(record->exposure, -3, -1.25, 0);
    pcg::engine::AppendKeyframe<int32_t>(record->others[5], 9, -100);
    record->others[5].push_back(nullptr);
    pcg::engine::EffectRecordHeader* header = &record->header;
    agent->PushEffect(1, FUNCTION_SET_TONE, &header);
    EXPECT_EQ(Entry("PushEffect").at("args")[2],
              Json::parse(R"({"version":4,"word":0,"vectors":[[{"time":-3,"value":-1.25,"interp":0}],)"
                          R"([],[],[],[],[],[{"time":9,"value":-100,"interp":2},null]]})"));
    agent->Release();
}

}  // namespace
}  // namespace reftest
}  // namespace pcg
