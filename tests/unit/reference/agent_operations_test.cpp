#include <atomic>
#include <chrono>
#include <functional>
#include <limits>
#include <thread>

#include "engine/buffer_settings.h"
#include "engine/constants.h"
#include "engine/dsp_callback_queue.h"
#include "engine/mask_objects.h"
#include "engine/track_results.h"
#include "engine/result_codes.h"
#include "tests/unit/reference/ref_agent_library.h"

namespace pcg {
namespace reftest {
namespace {

// Stand-ins for objects that cross the interface only as opaque pointers.
int g_opaque = 0;
template <typename T>
T* Opaque() {
    return reinterpret_cast<T*>(&g_opaque);
}

struct OperationCase {
    const char* pszOp;
    std::function<void(IVXHvnDspAgent*)> fnCall;
    const char* pszArgs;
};

void PrintTo(const OperationCase& operation, std::ostream* out) {
    *out << operation.pszOp;
}

class AgentOperation : public RefAgentTest, public ::testing::WithParamInterface<OperationCase> {};

TEST_P(AgentOperation, IsJournaledWithItsArguments) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    GetParam().fnCall(agent);
    const std::vector<Json> calls = Entries(GetParam().pszOp);
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.front().at("agent"), "DspMain");
    EXPECT_EQ(calls.front().at("args"), Json::parse(GetParam().pszArgs))
        << calls.front().at("args").dump();
    agent->Release();
}

const OperationCase kOperations[] = {
    {"LockEffectDataWriter",
     [](IVXHvnDspAgent* a) {
         a->LockEffectDataWriter();
         a->UnlockEffectDataWriter();
     },
     "[]"},
    {"UnlockEffectDataWriter",
     [](IVXHvnDspAgent* a) {
         a->LockEffectDataWriter();
         a->UnlockEffectDataWriter();
     },
     "[]"},
    {"SetFrameRate", [](IVXHvnDspAgent* a) { a->SetFrameRate(25.0); }, "[25.0]"},
    {"PushEffect",
     [](IVXHvnDspAgent* a) {
         pcg::engine::EffectRecordHeader* record = MakeClarityRecord({{1200, 35}, {2400, 50}});
         a->PushEffect(7, FUNCTION_SET_CLARITY, &record);
     },
     R"([7,225,{"version":9,"word":0,"vectors":[[{"time":1200,"value":35,"interp":2},)"
     R"({"time":2400,"value":50,"interp":2}]]}])"},
    {"ClearTask", [](IVXHvnDspAgent* a) { a->ClearTask(7); }, "[7]"},
    {"AddMaskInfo",
     [](IVXHvnDspAgent* a) {
         auto* gradient = new HVN::GradientMask;
         gradient->nMaskID = 3;
         gradient->effectInfoID = FUNCTION_EFFECTINFO_GMASK;
         HVN::MaskInfoBase* mask = gradient;
         a->AddMaskInfo(7, static_cast<FUNCTION_ID>(16), 3, &mask);
     },
     R"([7,16,3,{"class":"GradientMask","nMaskID":3,"nMaskKind":0,"effectInfoID":38,"keyFrames":[]}])"},
    {"ClearMaskInfo", [](IVXHvnDspAgent* a) { a->ClearMaskInfo(7); }, "[7]"},
    {"AddVideo", [](IVXHvnDspAgent* a) { a->AddVideo(7, 0, 3000, 1.5); }, "[7,0,3000,1.5]"},
    {"UpdateVideo", [](IVXHvnDspAgent* a) { a->UpdateVideo(7, -1, 3000, 0.75); }, "[7,-1,3000,0.75]"},
    {"GetVideoAspectRatio",
     [](IVXHvnDspAgent* a) {
         double ratio = 0.0;
         a->GetVideoAspectRatio(7, 0, 0, &ratio);
     },
     "[7,0,0]"},
    {"RemoveVideo", [](IVXHvnDspAgent* a) { a->RemoveVideo(7); }, "[7]"},
    {"RemoveAllVideo", [](IVXHvnDspAgent* a) { a->RemoveAllVideo(); }, "[]"},
    {"AdjustBufferRect",
     [](IVXHvnDspAgent* a) {
         RECT rect;
         rect.right = 640;
         rect.bottom = 480;
         a->AdjustBufferRect(7, 640, 480, 1.25, &rect);
     },
     R"([7,640,480,1.25,{"left":0,"top":0,"right":640,"bottom":480}])"},
    {"SetLUT",
     [](IVXHvnDspAgent* a) {
         LUTSetting setting;
         setting.nSize = 2;
         setting.fDomainMax[1] = 0.5f;
         setting.table.push_back(0.5f);
         setting.table.push_back(0.25f);
         a->SetLUT(7, &setting);
         setting.table.Free();
     },
     R"([7,{"size":2,"min":[0.0,0.0,0.0],"max":[1.0,0.5,1.0],"table":[0.5,0.25]}])"},
    {"ClearLUT", [](IVXHvnDspAgent* a) { a->ClearLUT(7); }, "[7]"},
    {"NeedsSourceCopy", [](IVXHvnDspAgent* a) { a->NeedsSourceCopy(7); }, "[7]"},
    {"ApplyLUTOnBuffer", [](IVXHvnDspAgent* a) { a->ApplyLUTOnBuffer(7, nullptr); }, "[7,null]"},
    {"SetCacheFrameOnDspAgent", [](IVXHvnDspAgent* a) { a->SetCacheFrameOnDspAgent(7, 1234, 1); }, "[7,1234,1]"},
    {"EnableCacheFramePlaying", [](IVXHvnDspAgent* a) { a->EnableCacheFramePlaying(1, 40); }, "[1,40]"},
    {"ResetCacheFramePlaying", [](IVXHvnDspAgent* a) { a->ResetCacheFramePlaying(); }, "[]"},
    {"ApplyEffectOnBuffer", [](IVXHvnDspAgent* a) { a->ApplyEffectOnBuffer(nullptr, nullptr); }, "[null,null]"},
    {"GetInterpolatedToneMapInfo",
     [](IVXHvnDspAgent* a) {
         pcg::engine::ContractVector<int32_t*> tables;
         a->GetInterpolatedToneMapInfo(7, 99, tables);
         pcg::engine::FreeEntryVector(tables);
     },
     "[7,99]"},
    {"QueryTrackResultInQueue",
     [](IVXHvnDspAgent* a) {
         TrackQueueEntry* entry = nullptr;
         a->QueryTrackResultInQueue(7, 3, 99, &entry);
     },
     "[7,3,99]"},
    {"CopyMTMaskInfoDB", [](IVXHvnDspAgent* a) { a->CopyMTMaskInfoDB(1, 2, 3); }, "[1,2,3]"},
    {"FlushQueue2DBUntilPos",
     [](IVXHvnDspAgent* a) { a->FlushQueue2DBUntilPos(1, 2, 3, std::numeric_limits<int64_t>::max()); },
     "[1,2,3,9223372036854775807]"},
    {"ClearTrackResultQueue", [](IVXHvnDspAgent* a) { a->ClearTrackResultQueue(); }, "[]"},
    {"GetMaxTrackingID",
     [](IVXHvnDspAgent* a) {
         int32_t id = -1;
         a->GetMaxTrackingID(&id);
     },
     "[]"},
    {"QueryMotionTrackingMaskInfo",
     [](IVXHvnDspAgent* a) {
         TrackPointList* list = nullptr;
         float position[2] = {0.0f, 0.0f};
         a->QueryMotionTrackingMaskInfo(1, 7, 3, &list, 99, position);
     },
     "[1,7,3,99]"},
    {"QueryLatestMotionTrackingMaskInfo",
     [](IVXHvnDspAgent* a) {
         TrackPointList* list = nullptr;
         int64_t time = 0;
         float position[2] = {0.0f, 0.0f};
         a->QueryLatestMotionTrackingMaskInfo(7, 3, 1, &list, &time, position);
     },
     "[7,3,1]"},
    {"DeleteMotionTrackingMaskInfoRange", [](IVXHvnDspAgent* a) { a->DeleteMotionTrackingMaskInfoRange(7, 3, 99); },
     "[7,3,99]"},
    {"DeleteMotionTrackingMaskInfoInterval",
     [](IVXHvnDspAgent* a) { a->DeleteMotionTrackingMaskInfoInterval(7, 3, 10, 20); }, "[7,3,10,20]"},
    {"DumpTask", [](IVXHvnDspAgent* a) { a->DumpTask(); }, "[]"},
    {"GetTrackHistoryStream",
     [](IVXHvnDspAgent* a) {
         char* bytes = nullptr;
         uint32_t size = 0;
         a->GetTrackHistoryStream(&bytes, &size);
         a->FreeTrackHistoryStream(&bytes);
     },
     "[]"},
    {"FreeTrackHistoryStream",
     [](IVXHvnDspAgent* a) {
         char* bytes = nullptr;
         a->FreeTrackHistoryStream(&bytes);
     },
     "[null]"},
    {"SetTrackHistoryStream", [](IVXHvnDspAgent* a) { a->SetTrackHistoryStream("\x01\xab\x00z", 3); },
     R"(["01ab00",3])"},
    {"ClearCurTrackHistoryStream", [](IVXHvnDspAgent* a) { a->ClearCurTrackHistoryStream(); }, "[]"},
    {"DeleteTrackingKeyFrame", [](IVXHvnDspAgent* a) { a->DeleteTrackingKeyFrame(-5); }, "[-5]"},
    {"SetCallbackQueue",
     [](IVXHvnDspAgent* a) {
         DspCallbackQueue queue{};
         a->SetCallbackQueue(&queue);
         a->SetCallbackQueue(nullptr);
     },
     "[true]"},
    {"GetCurrentTrackingID", [](IVXHvnDspAgent* a) { a->GetCurrentTrackingID(); }, "[]"},
    {"SetDBMgr", [](IVXHvnDspAgent* a) { a->SetDBMgr(Opaque<CDBAccessThreadMgr>(), nullptr); }, "[true,null]"},
    {"SetOverUnderExposureImage", [](IVXHvnDspAgent* a) { a->SetOverUnderExposureImage(true); }, "[true]"},
    {"GetHistogramInfo", [](IVXHvnDspAgent* a) { a->GetHistogramInfo(); }, "[]"},
    {"GetToneCurveHistogramInfo", [](IVXHvnDspAgent* a) { a->GetToneCurveHistogramInfo(); }, "[]"},
    {"SetImageRetouchMgr", [](IVXHvnDspAgent* a) { a->SetImageRetouchMgr(Opaque<ImageRetouchMgr>()); }, "[true]"},
    {"SetDspVideoID", [](IVXHvnDspAgent* a) { a->SetDspVideoID(4000000000u); }, "[4000000000]"},
    {"GetDspVideoID", [](IVXHvnDspAgent* a) { a->GetDspVideoID(); }, "[]"},
};

INSTANTIATE_TEST_SUITE_P(EveryOperation, AgentOperation, ::testing::ValuesIn(kOperations),
                         [](const ::testing::TestParamInfo<OperationCase>& info) {
                             return std::string(info.param.pszOp);
                         });

using AgentBehaviour = RefAgentTest;

// With the writer lock held by this thread, a ClearTask on another thread
// stays blocked until this thread unlocks.
void ExpectClearTaskWaitsForUnlock(IVXHvnDspAgent* agent) {
    std::atomic<bool> cleared{false};
    std::thread other([&] {
        agent->ClearTask(7);
        cleared = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(cleared.load());
    agent->UnlockEffectDataWriter();
    other.join();
    EXPECT_TRUE(cleared.load());
}

TEST_F(AgentBehaviour, UpdateOfAnUnknownClipIsAnInvalidArgument) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    EXPECT_EQ(agent->UpdateVideo(7, 0, 100, 1.5), kResultInvalidArg);
    EXPECT_EQ(agent->AddVideo(7, 0, 100, 1.5), kResultOk);
    EXPECT_EQ(agent->UpdateVideo(7, 0, 200, 1.25), kResultOk);
    agent->Release();
}

TEST_F(AgentBehaviour, RemoveOfAnUnknownClipIsAnInvalidArgument) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    EXPECT_EQ(agent->RemoveVideo(8), kResultInvalidArg);
    agent->AddVideo(8, 0, 100, 1.5);
    EXPECT_EQ(agent->RemoveVideo(8), kResultOk);
    EXPECT_EQ(agent->RemoveVideo(8), kResultInvalidArg);
    agent->Release();
}

TEST_F(AgentBehaviour, AspectRatioIsTheClipsOrSixteenByNine) {
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    agent->AddVideo(7, 0, 100, 4.0 / 3.0);
    double ratio = 0.0;
    EXPECT_EQ(agent->GetVideoAspectRatio(7, 0, 0, &ratio), kResultOk);
    EXPECT_EQ(ratio, 4.0 / 3.0);
    agent->UpdateVideo(7, 0, 100, 2.0);
    agent->GetVideoAspectRatio(7, 0, 0, &ratio);
    EXPECT_EQ(ratio, 2.0);
    agent->GetVideoAspectRatio(9, 0, 0, &ratio);
    EXPECT_EQ(ratio, 16.0 / 9.0);
    agent->Release();
}

TEST_F(AgentBehaviour, FrameRateMustBeFiniteAndPositive) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    EXPECT_EQ(agent->SetFrameRate(29.97), kResultOk);
    EXPECT_EQ(agent->SetFrameRate(0.0), kResultInvalidArg);
    EXPECT_EQ(agent->SetFrameRate(-25.0), kResultInvalidArg);
    EXPECT_EQ(agent->SetFrameRate(std::numeric_limits<double>::quiet_NaN()), kResultInvalidArg);
    agent->Release();
}

TEST_F(AgentBehaviour, DspVideoIDIsWhatWasSetAndZeroAtFirst) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    EXPECT_EQ(agent->GetDspVideoID(), 0u);
    agent->SetDspVideoID(4000000000u);
    EXPECT_EQ(agent->GetDspVideoID(), 4000000000u);
    agent->Release();
}

TEST_F(AgentBehaviour, TrackLookupsFailWithNoResultsHeld) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    TrackQueueEntry* entry = Opaque<TrackQueueEntry>();
    EXPECT_EQ(agent->QueryTrackResultInQueue(7, 3, 99, &entry), kResultFail);
    EXPECT_EQ(entry, nullptr);
    TrackPointList* list = nullptr;
    float position[2] = {0.0f, 0.0f};
    int64_t time = 0;
    EXPECT_EQ(agent->QueryMotionTrackingMaskInfo(1, 7, 3, &list, 99, position), kResultFail);
    EXPECT_EQ(agent->QueryLatestMotionTrackingMaskInfo(7, 3, 1, &list, &time, position), kResultFail);
    int32_t maxID = -1;
    EXPECT_EQ(agent->GetMaxTrackingID(&maxID), kResultOk);
    EXPECT_EQ(maxID, 0);
    EXPECT_EQ(agent->GetCurrentTrackingID(), 0);
    agent->Release();
}

TEST_F(AgentBehaviour, TrackHistoryRoundTripsAsACopyTheCallerGivesBack) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    const int64_t out = Library().Counter("streamsOut");
    agent->SetTrackHistoryStream("ab\0cd", 5);
    char* bytes = nullptr;
    uint32_t size = 0;
    EXPECT_EQ(agent->GetTrackHistoryStream(&bytes, &size), kResultOk);
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(std::string(bytes, size), std::string("ab\0cd", 5));
    EXPECT_EQ(Library().Counter("streamsOut"), out + 1);
    EXPECT_EQ(agent->FreeTrackHistoryStream(&bytes), kResultOk);
    EXPECT_EQ(bytes, nullptr);
    EXPECT_EQ(Library().Counter("streamsOut"), out);
    agent->Release();
}

TEST_F(AgentBehaviour, ClearedTrackHistoryIsHandedOutAsNullAndSizeZero) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->SetTrackHistoryStream("ab", 2);
    agent->ClearCurTrackHistoryStream();
    char* bytes = Opaque<char>();
    uint32_t size = 5;
    EXPECT_EQ(agent->GetTrackHistoryStream(&bytes, &size), kResultOk);
    EXPECT_EQ(bytes, nullptr);
    EXPECT_EQ(size, 0u);
    agent->Release();
}

TEST_F(AgentBehaviour, SetDBMgrKeepsThePointersAndAnswersTrue) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    EXPECT_TRUE(agent->SetDBMgr(Opaque<CDBAccessThreadMgr>(), Opaque<IVXTinyDB>()));
    agent->Release();
}

TEST_F(AgentBehaviour, DumpTaskListsTheRecordsHeld) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    pcg::engine::EffectRecordHeader* first = MakeClarityRecord({});
    pcg::engine::EffectRecordHeader* second = MakeClarityRecord({});
    agent->PushEffect(9, FUNCTION_SET_CLARITY, &first);
    agent->PushEffect(2, FUNCTION_SET_CLARITY, &second);
    agent->DumpTask();
    EXPECT_EQ(Entry("DumpTask").at("tasks"), Json::parse("[[2,225],[9,225]]"));
    agent->Release();
}

TEST_F(AgentBehaviour, EffectChangesWaitForTheWriterLockOfAnotherThread) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->LockEffectDataWriter();
    ExpectClearTaskWaitsForUnlock(agent);
    agent->Release();
}

TEST_F(AgentBehaviour, WriterLockIsRecursiveOnItsThread) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->LockEffectDataWriter();
    agent->LockEffectDataWriter();
    EXPECT_EQ(agent->ClearTask(7), kResultOk);
    agent->UnlockEffectDataWriter();
    agent->UnlockEffectDataWriter();
    agent->Release();
}

TEST_F(AgentBehaviour, UnlockFromAThreadWithoutTheLockIsRefused) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->LockEffectDataWriter();
    std::thread([&] { agent->UnlockEffectDataWriter(); }).join();
    ExpectClearTaskWaitsForUnlock(agent);
    agent->Release();
}

}  // namespace
}  // namespace reftest
}  // namespace pcg
