#include "tests/unit/reference/ref_agent_library.h"

namespace pcg {
namespace reftest {
namespace {

using AgentLifecycle = RefAgentTest;

TEST_F(AgentLifecycle, EachAgentCarriesItsNameAndTheNextInstanceNumber) {
    IVXHvnDspAgent* main = Library().Create("DspMain");
    IVXHvnDspAgent* buffer = Library().Create("DspBuf");
    main->SetDspVideoID(1);
    buffer->SetDspVideoID(2);
    const std::vector<Json> calls = Entries("SetDspVideoID");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].at("agent"), "DspMain");
    EXPECT_EQ(calls[1].at("agent"), "DspBuf");
    EXPECT_EQ(calls[1].at("instance").get<int64_t>(), calls[0].at("instance").get<int64_t>() + 1);
    main->Release();
    buffer->Release();
}

TEST_F(AgentLifecycle, NullNameIsEmpty) {
    IVXHvnDspAgent* agent = Library().Create(nullptr);
    agent->DumpTask();
    EXPECT_EQ(Entry("DumpTask").at("agent"), "");
    agent->Release();
}

TEST_F(AgentLifecycle, NewAgentHoldsOneReference) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    EXPECT_EQ(agent->AddRef(), 2u);
    EXPECT_EQ(agent->Release(), 1u);
    EXPECT_EQ(agent->Release(), 0u);
}

TEST_F(AgentLifecycle, AddRefAndReleaseJournalTheCountAfterTheCall) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->AddRef();
    agent->Release();
    const Json journal = Library().JournalJson();
    ASSERT_EQ(journal.size(), 2u);
    const int64_t instance = journal[0].at("instance").get<int64_t>();
    EXPECT_EQ(journal[0], Json::parse(R"({"agent":"DspMain","instance":)" + std::to_string(instance) +
                                      R"(,"op":"AddRef","args":[],"refs":2})"));
    EXPECT_EQ(journal[1], Json::parse(R"({"agent":"DspMain","instance":)" + std::to_string(instance) +
                                      R"(,"op":"Release","args":[],"refs":1})"));
    agent->Release();
}

TEST_F(AgentLifecycle, LastReleaseIsFollowedByDestroyed) {
    const int64_t live = Library().Counter("agentsLive");
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    EXPECT_EQ(Library().Counter("agentsLive"), live + 1);
    agent->Release();
    const Json journal = Library().JournalJson();
    ASSERT_EQ(journal.size(), 2u);
    EXPECT_EQ(journal[0].at("op"), "Release");
    EXPECT_EQ(journal[0].at("refs"), 0);
    EXPECT_EQ(journal[1].at("op"), "Destroyed");
    EXPECT_EQ(journal[1].at("agent"), "DspBuf");
    EXPECT_EQ(journal[1].at("instance"), journal[0].at("instance"));
    EXPECT_EQ(journal[1].count("args"), 0u);
    EXPECT_EQ(Library().Counter("agentsLive"), live);
}

TEST_F(AgentLifecycle, UnknownCounterNameReadsMinusOne) {
    EXPECT_EQ(Library().Counter("noSuchCounter"), -1);
    EXPECT_EQ(Library().Counter(nullptr), -1);
}

}  // namespace
}  // namespace reftest
}  // namespace pcg
