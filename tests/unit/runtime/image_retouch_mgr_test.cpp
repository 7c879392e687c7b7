#include "runtime/image_retouch_mgr.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "engine/result_codes.h"
#include "platform/testing/settings_editor.h"
#include "reference/retouch/ref_retouch_api.h"
#include "tests/unit/runtime/log_on.h"
#include "tests/unit/runtime/retouch_library.h"

using namespace pcg;

namespace {

const wchar_t kClassName[] = L"{58529D7C-751A-47A9-982D-1560342ECB14}";

class ImageRetouchMgrTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_library.Loaded());
        platform_testing::DeleteSettingsKey(L"Classes");
    }
    void TearDown() override { platform_testing::DeleteSettingsKey(L"Classes"); }
    pcg::reftest::RetouchLibrary m_library;
};

TEST_F(ImageRetouchMgrTest, ConstructionStartsAnIdleWorkerWithoutGdiplus) {
    LogOn log;
    {
        ImageRetouchMgr mgr(false);
        EXPECT_FALSE(mgr.m_bUseGdiplus);
        EXPECT_EQ(mgr.m_gdiplusToken, 0u);
        EXPECT_FALSE(mgr.m_bFlag);
        mgr.m_fnSetFlag(true);
        EXPECT_TRUE(mgr.m_bFlag);
        ASSERT_NE(mgr.m_pThread, nullptr);
        ASSERT_NE(mgr.m_pThreadTaskQueue, nullptr);
        EXPECT_EQ(mgr.m_pThread->m_bAutoStart, 1);
        EXPECT_EQ(mgr.m_nLastTaskID, 0u);
        EXPECT_TRUE(mgr.m_pThread->m_hThread);
    }
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::ImageRetouchMgr() enter\n"), 1);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::ImageRetouchMgr() end\n"), 1);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::~ImageRetouchMgr() enter\n"), 1);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::~ImageRetouchMgr() end\n"), 1);
}

TEST_F(ImageRetouchMgrTest, ByLibraryTheInstanceIsMadeAndReleasedOnTheWorker) {
    LogOn log;
    ImageRetouchMgr mgr(false);
    const int64_t videoModes = m_library.Counter("videoModeSet");
    IImageRetouch* retouch = nullptr;
    ASSERT_EQ(mgr.CreateImageRetouchInst(&retouch, m_library.m_hModule), kResultOk);
    ASSERT_NE(retouch, nullptr);
    const uint32_t worker = mgr.m_pThread->m_dwThreadId.load();
    EXPECT_NE(worker, platform::CurrentThreadId());
    EXPECT_EQ(m_library.Counter("instancesLive"), 1);
    EXPECT_EQ(m_library.Counter("createdOnThread"), worker);
    EXPECT_EQ(m_library.Counter("videoModeSet"), videoModes + 1);
    EXPECT_EQ(mgr.ReleaseImageRetouchInst(retouch), kResultOk);
    EXPECT_EQ(m_library.Counter("instancesLive"), 0);
    EXPECT_EQ(m_library.Counter("releasedOnThread"), worker);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::m_fnCreateImageRetouchInst Initial VXImageRetouch success!"), 1);
    char sent[96];
    std::snprintf(sent, sizeof(sent), "ImageRetouchMgr::m_fnSendTask Send Task From Thread %d",
                  static_cast<int>(platform::CurrentThreadId()));
    EXPECT_EQ(LogOn::Count(sent), 2);
    std::snprintf(sent, sizeof(sent), "ImageRetouchMgr::m_fnSendTask Task Complete For Thread %d",
                  static_cast<int>(platform::CurrentThreadId()));
    EXPECT_EQ(LogOn::Count(sent), 2);
    EXPECT_TRUE(mgr.m_taskResults.empty());
}

TEST_F(ImageRetouchMgrTest, ByRegisteredClassTheReferenceLibraryServesIt) {
    ImageRetouchMgr mgr(false);
    IImageRetouch* retouch = nullptr;
    ASSERT_EQ(mgr.CreateImageRetouchInst(&retouch, nullptr), kResultOk);
    ASSERT_NE(retouch, nullptr);
    EXPECT_EQ(m_library.Counter("instancesLive"), 1);
    EXPECT_EQ(m_library.Counter("createdOnThread"), mgr.m_pThread->m_dwThreadId.load());
    EXPECT_EQ(mgr.ReleaseImageRetouchInst(retouch), kResultOk);
    EXPECT_EQ(m_library.Counter("instancesLive"), 0);
}

TEST_F(ImageRetouchMgrTest, AClassNotRegisteredFailsWithTheEnginesOwnCodeInTheLog) {
    if (!platform_testing::RegisteredClassesFollowSettings()) GTEST_SKIP() << "COM's own registrations";
    ASSERT_TRUE(platform_testing::SetSettingsValue(L"Classes", kClassName, platform::kRegSz, L"\0\0", 2));
    LogOn log;
    ImageRetouchMgr mgr(false);
    IImageRetouch* retouch = nullptr;
    EXPECT_EQ(mgr.CreateImageRetouchInst(&retouch, nullptr), kResultFail);
    EXPECT_EQ(retouch, nullptr);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] Can't create CLSID_ImageRetouch, "
                           "hr=0x80040154"),
              1);
    EXPECT_EQ(m_library.Counter("instancesLive"), 0);
}

TEST_F(ImageRetouchMgrTest, OutsideAnApartmentTheRegisteredClassIsRefused) {
    IImageRetouch* retouch = nullptr;
    ASSERT_FALSE(platform::InApartment());
    EXPECT_EQ(platform::CreateRegisteredInstance(&engine::CLSID_ImageRetouch, &engine::IID_IImageRetouch,
                                                 reinterpret_cast<void**>(&retouch)),
              static_cast<int32_t>(0x800401F0u));
    EXPECT_EQ(retouch, nullptr);
}

TEST_F(ImageRetouchMgrTest, ANullOutputGivesInvalidArgThroughTheResultsMap) {
    ImageRetouchMgr mgr(false);
    EXPECT_EQ(mgr.CreateImageRetouchInst(nullptr, m_library.m_hModule), kResultInvalidArg);
    EXPECT_EQ(mgr.CreateImageRetouchInst(nullptr, nullptr), kResultInvalidArg);
    EXPECT_TRUE(mgr.m_taskResults.empty());
    EXPECT_EQ(m_library.Counter("instancesLive"), 0);
}

TEST_F(ImageRetouchMgrTest, ReleasingNullGivesPointerAndTheSenderWakes) {
    LogOn log;
    ImageRetouchMgr mgr(false);
    EXPECT_EQ(mgr.ReleaseImageRetouchInst(nullptr), kResultPointer);
    EXPECT_EQ(LogOn::Count("ReleaseImageRetouchInstTask::m_fnTaskExecute Null Pointer : m_pRetouch\n"), 1);
}

TEST_F(ImageRetouchMgrTest, AFailingClassObjectIsLoggedAndGivesFail) {
    m_library.SetResult("Library", "DllGetClassObject", static_cast<double>(0x80004005u));
    LogOn log;
    ImageRetouchMgr mgr(false);
    IImageRetouch* retouch = nullptr;
    EXPECT_EQ(mgr.CreateImageRetouchInst(&retouch, m_library.m_hModule), kResultFail);
    EXPECT_EQ(retouch, nullptr);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] Can't get spFactory hr=80004005"), 1);
}

TEST_F(ImageRetouchMgrTest, AFailingCreateInstanceIsLoggedAndGivesFail) {
    m_library.SetResult("ImageRetouchFactory", "CreateInstance", static_cast<double>(0x8007000Eu));
    LogOn log;
    ImageRetouchMgr mgr(false);
    IImageRetouch* retouch = nullptr;
    EXPECT_EQ(mgr.CreateImageRetouchInst(&retouch, m_library.m_hModule), kResultFail);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] Init ImageRetouch Fail! hr=8007000E"),
              1);
    EXPECT_EQ(m_library.Counter("instancesLive"), 0);
}

TEST_F(ImageRetouchMgrTest, ALibraryWithoutTheEntryFailsAsARefusedClass) {
    LogOn log;
    ImageRetouchMgr mgr(false);
    platform::ModuleHandle self = platform::LoadModuleNarrow("advapi32.dll");
    IImageRetouch* retouch = nullptr;
    EXPECT_EQ(mgr.CreateImageRetouchInst(&retouch, self), kResultFail);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] Can't get spFactory hr=80040111"), 1);
    platform::UnloadModule(self);
}

TEST_F(ImageRetouchMgrTest, TaskIdentitiesStartAtOneAndRunPerManager) {
    ImageRetouchMgr first(false);
    ImageRetouchMgr second(false);
    EXPECT_EQ(first.ReleaseImageRetouchInst(nullptr), kResultPointer);
    EXPECT_EQ(first.m_nLastTaskID, 1u);
    EXPECT_EQ(first.ReleaseAllImageRetouchInQueue(), kResultOk);
    EXPECT_EQ(first.m_nLastTaskID, 2u);
    EXPECT_EQ(second.m_nLastTaskID, 0u);
    EXPECT_EQ(second.ReleaseAllImageRetouchInQueue(), kResultOk);
    EXPECT_EQ(second.m_nLastTaskID, 1u);
    EXPECT_NE(first.m_pThread->m_dwThreadId.load(), second.m_pThread->m_dwThreadId.load());
}

TEST_F(ImageRetouchMgrTest, AResultGoneFromTheMapReadsAsFail) {
    ImageRetouchMgr mgr(false);
    EXPECT_EQ(mgr.m_fnGetTaskResult(42), kResultFail);
    mgr.m_taskResults[42] = kResultFalse;
    EXPECT_EQ(mgr.m_fnGetTaskResult(42), kResultFalse);
    EXPECT_EQ(mgr.m_fnGetTaskResult(42), kResultFail);
}

TEST_F(ImageRetouchMgrTest, ReleaseAllWithANonEmptyWorkerListLogsAndStillReleases) {
    LogOn log;
    ImageRetouchMgr mgr(false);
    IImageRetouch* a = nullptr;
    IImageRetouch* b = nullptr;
    ASSERT_EQ(mgr.CreateImageRetouchInst(&a, m_library.m_hModule), kResultOk);
    ASSERT_EQ(mgr.CreateImageRetouchInst(&b, m_library.m_hModule), kResultOk);
    mgr.m_instances = {a, b};
    int marker = 0;
    mgr.m_worker.push_back(&marker);
    EXPECT_EQ(m_library.Counter("instancesLive"), 2);
    EXPECT_EQ(mgr.ReleaseAllImageRetouchInQueue(), kResultOk);
    EXPECT_EQ(m_library.Counter("instancesLive"), 0);
    EXPECT_TRUE(mgr.m_instances.empty());
    EXPECT_EQ(mgr.m_worker.size(), 1u);
    EXPECT_EQ(m_library.Counter("releasedOnThread"), mgr.m_pThread->m_dwThreadId.load());
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::m_fnReleaseAllImageRetouchInQueue [Err] There may something wrong if "
                           "m_worker size !=0"),
              1);
    mgr.m_worker.clear();
}

TEST_F(ImageRetouchMgrTest, SendWithoutQueueOrWorkerIsRefused) {
    LogOn log;
    ImageRetouchMgr mgr(false);
    auto task = std::make_shared<RetouchTaskBase>(1, &mgr);
    CObservableThreadQueue* queue = mgr.m_pThreadTaskQueue;
    mgr.m_pThreadTaskQueue = nullptr;
    EXPECT_EQ(mgr.m_fnSendTask(task), kResultPointer);
    mgr.m_pThreadTaskQueue = queue;
    CObservorThread* worker = mgr.m_pThread;
    mgr.m_pThread = nullptr;
    EXPECT_EQ(mgr.m_fnSendTask(task), kResultPointer);
    mgr.m_pThread = worker;
    EXPECT_EQ(mgr.m_fnSendTask(nullptr), kResultPointer);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::m_fnSendTask Null Pointer : m_pThreadTaskQueue\n"), 1);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::m_fnSendTask Null Pointer : m_pThread\n"), 1);
    EXPECT_EQ(mgr.m_fnSendTask(task), kResultOk);
}

TEST_F(ImageRetouchMgrTest, TasksWithoutAManagerRefuseAndStillSetTheirEvent) {
    LogOn log;
    IImageRetouch* retouch = nullptr;
    CreateImageRetouchInstTask create(1, nullptr, &retouch, nullptr);
    EXPECT_EQ(create.m_fnTaskExecute(), kResultPointer);
    ReleaseAllImageRetouchInQueueTask releaseAll(2, nullptr);
    EXPECT_EQ(releaseAll.m_fnTaskExecute(), kResultPointer);
    create.m_fnTaskDone(1, kResultPointer);
    EXPECT_EQ(create.m_event.Wait(1), platform::kWaitObject0);
    EXPECT_EQ(LogOn::Count("CreateImageRetouchInstTask::m_fnTaskExecute Null Pointer : m_pImageRetouchMgr\n"), 1);
    EXPECT_EQ(LogOn::Count("ReleaseAllImageRetouchInQueueTask::m_fnTaskExecute Null Pointer : m_pImageRetouchMgr\n"),
              1);
}

// Counts its runs and its end, so that dropped tasks can be told from lost ones.
struct CountedRetouchTask : RetouchTaskBase {
    CountedRetouchTask(uint32_t id, ImageRetouchMgr* pMgr, std::atomic<int>* runs, std::atomic<int>* freed)
        : RetouchTaskBase(id, pMgr), m_pRuns(runs), m_pFreed(freed) {}
    ~CountedRetouchTask() override { ++*m_pFreed; }
    int32_t m_fnTaskExecute() override {
        ++*m_pRuns;
        return kResultOk;
    }
    std::atomic<int>* m_pRuns;
    std::atomic<int>* m_pFreed;
};

// Holds the worker until the tasks queued behind it have been taken away.
struct HoldUntilClearedTask : RetouchTaskBase {
    HoldUntilClearedTask(ImageRetouchMgr* pMgr, std::atomic<bool>* started, std::atomic<bool>* queued)
        : RetouchTaskBase(0, pMgr), m_pStarted(started), m_pQueued(queued), m_pQueue(pMgr->m_pThreadTaskQueue) {}
    int32_t m_fnTaskExecute() override {
        *m_pStarted = true;
        while (!*m_pQueued || m_pQueue->m_fnGetSize() != 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return kResultOk;
    }
    std::atomic<bool>* m_pStarted;
    std::atomic<bool>* m_pQueued;
    CObservableThreadQueue* m_pQueue;
};

TEST_F(ImageRetouchMgrTest, TasksStillQueuedAtDestructionAreDroppedUnrunAndFreed) {
    constexpr int kQueued = 500;
    std::atomic<int> runs{0};
    std::atomic<int> freed{0};
    std::atomic<bool> started{false};
    std::atomic<bool> queued{false};
    LogOn log;
    {
        ImageRetouchMgr mgr(false);
        std::shared_ptr<CThreadTask> holder = std::make_shared<HoldUntilClearedTask>(&mgr, &started, &queued);
        mgr.m_pThreadTaskQueue->m_fnAddTask(holder);
        holder.reset();
        for (int i = 0; i < 200 && !started; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(5));
        ASSERT_TRUE(started.load());
        for (int i = 0; i < kQueued; ++i) {
            std::shared_ptr<CThreadTask> task =
                std::make_shared<CountedRetouchTask>(mgr.m_fnNextTaskID(), &mgr, &runs, &freed);
            mgr.m_pThreadTaskQueue->m_fnAddTask(task);
        }
        EXPECT_EQ(mgr.m_pThreadTaskQueue->m_fnGetSize(), static_cast<std::size_t>(kQueued));
        queued = true;
    }
    EXPECT_EQ(runs.load(), 0);
    EXPECT_EQ(freed.load(), kQueued);
    EXPECT_EQ(LogOn::Count("ImageRetouchMgr::~ImageRetouchMgr() end\n"), 1);
}

TEST_F(ImageRetouchMgrTest, ManyConcurrentSendersEachGetTheirOwnAnswer) {
    ImageRetouchMgr mgr(false);
    constexpr int kSenders = 8;
    constexpr int kRounds = 120;
    std::atomic<int> failures{0};
    std::vector<std::thread> senders;
    for (int s = 0; s < kSenders; ++s) {
        senders.emplace_back([&] {
            for (int i = 0; i < kRounds; ++i) {
                IImageRetouch* retouch = nullptr;
                if (mgr.CreateImageRetouchInst(&retouch, m_library.m_hModule) != kResultOk || retouch == nullptr)
                    ++failures;
                if (mgr.ReleaseImageRetouchInst(nullptr) != kResultPointer) ++failures;
                if (mgr.ReleaseImageRetouchInst(retouch) != kResultOk) ++failures;
            }
        });
    }
    for (auto& sender : senders) sender.join();
    EXPECT_EQ(failures.load(), 0);
    EXPECT_EQ(mgr.m_nLastTaskID, static_cast<uint32_t>(kSenders * kRounds * 3));
    EXPECT_TRUE(mgr.m_taskResults.empty());
    EXPECT_EQ(m_library.Counter("instancesLive"), 0);
    EXPECT_EQ(m_library.Counter("releasedOnThread"), mgr.m_pThread->m_dwThreadId.load());
}

}  // namespace
