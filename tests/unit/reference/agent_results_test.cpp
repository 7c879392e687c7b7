#include <limits>

#include "engine/constants.h"
#include "engine/result_codes.h"
#include "tests/unit/reference/ref_agent_library.h"

namespace pcg {
namespace reftest {
namespace {

using AgentResults = RefAgentTest;

TEST_F(AgentResults, ResultSetByNameReachesOnlyAgentsOfThatName) {
    IVXHvnDspAgent* main = Library().Create("DspMain");
    IVXHvnDspAgent* buffer = Library().Create("DspBuf");
    Library().SetResult("DspMain", "AddVideo", 2147500037.0);
    EXPECT_EQ(main->AddVideo(7, 0, 1, 1.5), kResultFail);
    EXPECT_EQ(buffer->AddVideo(7, 0, 1, 1.5), kResultOk);
    main->Release();
    buffer->Release();
}

TEST_F(AgentResults, ResultSetForStarReachesLiveAndFutureAgents) {
    IVXHvnDspAgent* live = Library().Create("DspMain");
    Library().SetResult("*", "NeedsSourceCopy", 1.0);
    IVXHvnDspAgent* future = Library().Create("DspBuf");
    EXPECT_TRUE(live->NeedsSourceCopy(7));
    EXPECT_TRUE(future->NeedsSourceCopy(7));
    live->Release();
    future->Release();
}

TEST_F(AgentResults, ResultForTheAgentsOwnNameWinsOverStar) {
    IVXHvnDspAgent* main = Library().Create("DspMain");
    IVXHvnDspAgent* buffer = Library().Create("DspBuf");
    Library().SetResult("DspMain", "RemoveAllVideo", 1.0);
    Library().SetResult("*", "RemoveAllVideo", -2147024809.0);
    EXPECT_EQ(main->RemoveAllVideo(), 1);
    EXPECT_EQ(buffer->RemoveAllVideo(), kResultInvalidArg);
    main->Release();
    buffer->Release();
}

TEST_F(AgentResults, InjectedAspectRatioIsWhatGetVideoAspectRatioWrites) {
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    agent->AddVideo(7, 0, 1, 1.7);
    Library().SetResult("DspBuf", "GetVideoAspectRatio", 1.28);
    double ratio = 0.0;
    EXPECT_EQ(agent->GetVideoAspectRatio(7, 0, 0, &ratio), kResultOk);
    EXPECT_EQ(ratio, 1.28);
    agent->Release();
}

TEST_F(AgentResults, BoolResultIsTrueForNonZero) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    Library().SetResult("DspMain", "SetDBMgr", 0.0);
    EXPECT_FALSE(agent->SetDBMgr(nullptr, nullptr));
    Library().SetResult("DspMain", "SetDBMgr", -0.5);
    EXPECT_TRUE(agent->SetDBMgr(nullptr, nullptr));
    agent->Release();
}

TEST_F(AgentResults, NotANumberReadsAsEFail) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    Library().SetResult("*", "SetFrameRate", std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(agent->SetFrameRate(25.0), kResultFail);
    agent->Release();
}

TEST_F(AgentResults, UnsignedResultTakesTheLowThirtyTwoBits) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    Library().SetResult("*", "GetDspVideoID", 4294967295.0);
    EXPECT_EQ(agent->GetDspVideoID(), 4294967295u);
    agent->Release();
}

TEST_F(AgentResults, InjectedResultStillLetsTheOperationWork) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    Library().SetResult("*", "AddVideo", -1.0);
    EXPECT_EQ(agent->AddVideo(7, 0, 1, 1.25), -1);
    double ratio = 0.0;
    agent->GetVideoAspectRatio(7, 0, 0, &ratio);
    EXPECT_EQ(ratio, 1.25);
    agent->Release();
}

TEST_F(AgentResults, ResetRemovesInjectedResults) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    Library().SetResult("*", "ClearTask", -1.0);
    EXPECT_EQ(agent->ClearTask(7), -1);
    Library().Reset();
    EXPECT_EQ(agent->ClearTask(7), kResultOk);
    agent->Release();
}

TEST_F(AgentResults, FactoryRefusedForOneNameMakesNoAgentOfThatName) {
    const int64_t live = Library().Counter("agentsLive");
    Library().SetResult("DspBuf", "CreateHvnDspAgent", -2147467259.0);
    EXPECT_EQ(Library().Create("DspBuf"), nullptr);
    IVXHvnDspAgent* main = Library().Create("DspMain");
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(Library().Counter("agentsLive"), live + 1);
    main->Release();
    EXPECT_EQ(Library().Counter("agentsLive"), live);
}

TEST_F(AgentResults, AgentFailingEverythingIsStillMade) {
    Library().SetResult("*", "*", -2147467259.0);
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    ASSERT_NE(agent, nullptr);
    EXPECT_EQ(agent->ClearTask(7), kResultFail);
    agent->Release();
}

}  // namespace
}  // namespace reftest
}  // namespace pcg
