#include "runtime/thread_task.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "engine/result_codes.h"
#include "tests/unit/runtime/log_on.h"

using namespace pcg;

namespace {

// Waits (briefly polling, tests only) until the condition holds or 10 s pass.
template <typename Condition>
bool Eventually(Condition condition) {
    for (int i = 0; i < 10000; ++i) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return condition();
}

// A task that records when and where it ran, and can answer a set result.
struct RecordingTask : CThreadTask {
    struct Record {
        std::mutex m_mutex;
        std::vector<uint32_t> m_order;
        std::vector<uint32_t> m_threads;
        std::vector<uint32_t> m_doneIDs;
        std::vector<int32_t> m_doneResults;
        std::vector<bool> m_inApartment;
    };
    RecordingTask(uint32_t id, Record* record, int32_t answer = kResultOk)
        : CThreadTask(id), m_pRecord(record), m_answer(answer) {}
    int32_t m_fnTaskExecute() override {
        std::lock_guard<std::mutex> guard(m_pRecord->m_mutex);
        m_pRecord->m_order.push_back(m_nTaskID);
        m_pRecord->m_threads.push_back(pcg::platform::CurrentThreadId());
        m_pRecord->m_inApartment.push_back(pcg::platform::InApartment());
        return m_answer;
    }
    void m_fnTaskDone(uint32_t id, int32_t hr) override {
        std::lock_guard<std::mutex> guard(m_pRecord->m_mutex);
        m_pRecord->m_doneIDs.push_back(id);
        m_pRecord->m_doneResults.push_back(hr);
    }
    Record* m_pRecord;
    int32_t m_answer;
};

std::shared_ptr<CThreadTask> Task(uint32_t id, RecordingTask::Record* record, int32_t answer = kResultOk) {
    return std::make_shared<RecordingTask>(id, record, answer);
}

struct CountingObserver : CObserver {
    bool Update(uint32_t event, CObservable* source, intptr_t data) override {
        m_events.push_back(event);
        m_sources.push_back(source);
        m_data.push_back(data);
        return true;
    }
    std::vector<uint32_t> m_events;
    std::vector<CObservable*> m_sources;
    std::vector<intptr_t> m_data;
};

// ------------------------------------------------------------------ task

TEST(ThreadTask, StartsWithFailAndItsIdentity) {
    CThreadTask task(7);
    EXPECT_EQ(task.m_hrResult, kResultFail);
    EXPECT_EQ(task.m_nTaskID, 7u);
    EXPECT_EQ(task.m_fnTaskExecute(), kResultFalse);
}

// ----------------------------------------------------------------- event

TEST(SyncEvent, IsManualResetWithItsInitialState) {
    CSyncEvent on(1);
    EXPECT_EQ(on.m_bInitialState, 1);
    EXPECT_EQ(on.Wait(1), platform::kWaitObject0);
    EXPECT_EQ(on.Wait(1), platform::kWaitObject0);  // manual reset: still set
    on.Reset();
    EXPECT_EQ(on.Wait(1), platform::kWaitTimeout);
    CSyncEvent off(0);
    EXPECT_EQ(off.Wait(1), platform::kWaitTimeout);
}

TEST(SyncEvent, WaitOfZeroWaitsForEverInsteadOfPolling) {
    CSyncEvent event(0);
    std::atomic<bool> returned{false};
    std::atomic<uint32_t> result{99};
    std::thread waiter([&] {
        result = event.Wait(0);
        returned = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_FALSE(returned.load());
    event.Set();
    waiter.join();
    EXPECT_TRUE(returned.load());
    EXPECT_EQ(result.load(), platform::kWaitObject0);
}

// ----------------------------------------------------------------- queue

TEST(ThreadQueue, WithoutWorkerKeepsItsTasks) {
    RecordingTask::Record record;
    CObservableThreadQueue queue;
    auto first = Task(1, &record);
    auto second = Task(2, &record);
    EXPECT_EQ(queue.m_fnAddTask(first), kResultOk);
    EXPECT_EQ(queue.m_fnAddTask(second), kResultOk);
    EXPECT_EQ(queue.m_fnGetSize(), 2u);
    EXPECT_EQ(first.use_count(), 2);
    EXPECT_TRUE(record.m_order.empty());
    EXPECT_EQ(queue.m_fnClear(), kResultOk);
    EXPECT_EQ(queue.m_fnGetSize(), 0u);
    EXPECT_EQ(first.use_count(), 1);
}

// -------------------------------------------------- subject and observer

TEST(Observable, SourceIsTheSubjectAndDataZero) {
    CObservable subject;
    CountingObserver observer;
    EXPECT_EQ(subject.m_pSource, &subject);
    EXPECT_TRUE(subject.Attach(5, &observer));
    EXPECT_TRUE(subject.Notify(5));
    ASSERT_EQ(observer.m_events.size(), 1u);
    EXPECT_EQ(observer.m_events[0], 5u);
    EXPECT_EQ(observer.m_sources[0], &subject);
    EXPECT_EQ(observer.m_data[0], 0);
    subject.Detach(5, &observer);
}

TEST(Observable, AnEventNobodyAskedForDoesNothing) {
    CObservable subject;
    CountingObserver observer;
    subject.Attach(1, &observer);
    EXPECT_TRUE(subject.Notify(2));
    EXPECT_TRUE(observer.m_events.empty());
    subject.Detach(1, &observer);
}

TEST(Observable, ObserversAreToldInTheOrderOfAttachingAndNullsSkipped) {
    struct Ordered : CObserver {
        Ordered(std::vector<int>* log, int id) : m_log(log), m_id(id) {}
        bool Update(uint32_t, CObservable*, intptr_t) override {
            m_log->push_back(m_id);
            return false;  // ignored
        }
        std::vector<int>* m_log;
        int m_id;
    };
    std::vector<int> log;
    Ordered a(&log, 1), b(&log, 2), c(&log, 3);
    CObservable subject;
    subject.Attach(1, &b);
    subject.Attach(1, &a);
    subject.Attach(1, nullptr);
    subject.Attach(1, &c);
    EXPECT_TRUE(subject.Notify(1));
    EXPECT_EQ(log, (std::vector<int>{2, 1, 3}));
    subject.m_observers.clear();
}

TEST(Observable, DetachOfAnObserverStandingTwiceRemovesOneEntry) {
    CObservable subject;
    CountingObserver observer;
    CountingObserver other;
    subject.Attach(1, &observer);
    subject.Attach(1, &other);
    subject.Attach(1, &observer);
    EXPECT_TRUE(subject.Detach(1, &observer));
    ASSERT_EQ(subject.m_observers[1].size(), 2u);
    EXPECT_EQ(subject.m_observers[1][0], &other);
    EXPECT_EQ(subject.m_observers[1][1], &observer);
    EXPECT_TRUE(subject.Detach(1, &observer));
    EXPECT_FALSE(subject.Detach(1, &observer));
    EXPECT_FALSE(subject.Detach(9, &observer));
    EXPECT_TRUE(subject.Detach(1, &other));
    // The emptied vector stays in the map.
    ASSERT_EQ(subject.m_observers.count(1), 1u);
    EXPECT_TRUE(subject.m_observers[1].empty());
}

TEST(ObservableThreadQueue, TellsTaskAddedAfterEachTask) {
    RecordingTask::Record record;
    CObservableThreadQueue queue;
    CountingObserver observer;
    queue.Attach(OBSERVABLE_EVENT_TASK_ADDED, &observer);
    auto task = Task(1, &record);
    queue.m_fnAddTask(task);
    queue.m_fnAddTask(task);
    EXPECT_EQ(observer.m_events, (std::vector<uint32_t>{1, 1}));
    EXPECT_EQ(observer.m_sources[0], static_cast<CObservable*>(&queue));
    queue.Detach(OBSERVABLE_EVENT_TASK_ADDED, &observer);
}

TEST(ObservableThreadQueue, ObserversHearDestroyedTwice) {
    CountingObserver observer;
    {
        CObservableThreadQueue queue;
        queue.Attach(OBSERVABLE_EVENT_DESTROYED, &observer);
    }
    EXPECT_EQ(observer.m_events, (std::vector<uint32_t>{0xFFFFFF, 0xFFFFFF}));
}

// ---------------------------------------------------------------- worker

TEST(ThreadBase, StartsConstructedAndNotRunning) {
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 1);
    EXPECT_EQ(worker.m_nState.load(), -1);
    EXPECT_EQ(worker.m_dwThreadId.load(), 0u);
    EXPECT_FALSE(worker.m_hThread);
    EXPECT_EQ(worker.m_pThreadQueue, &queue);
    EXPECT_EQ(worker.m_pObservable, &queue);
    // Attached to the end of the subject, then to new tasks.
    ASSERT_EQ(queue.m_observers[OBSERVABLE_EVENT_DESTROYED].size(), 1u);
    ASSERT_EQ(queue.m_observers[OBSERVABLE_EVENT_TASK_ADDED].size(), 1u);
}

TEST(ThreadBase, SetThreadStateTwoFailsAndChangesNothing) {
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 1);
    EXPECT_EQ(worker.m_fnSetThreadState(2), kResultFail);
    EXPECT_EQ(worker.m_fnSetThreadState(-1), kResultFail);
    EXPECT_EQ(worker.m_nState.load(), -1);
    EXPECT_FALSE(worker.m_hThread);
}

TEST(ThreadBase, WorkerStartedOnEmptyQueueGoesIdleAndResetsItsEvent) {
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 1);
    EXPECT_EQ(worker.m_fnSetThreadState(0), kResultOk);
    EXPECT_TRUE(worker.m_hThread);
    ASSERT_TRUE(Eventually([&] { return worker.m_nState.load() == 1; }));
    EXPECT_EQ(worker.m_event.Wait(1), platform::kWaitTimeout);
    EXPECT_NE(worker.m_dwThreadId.load(), 0u);
    EXPECT_NE(worker.m_dwThreadId.load(), platform::CurrentThreadId());
}

TEST(ThreadBase, PauseSetsStateOneAndResetsTheEvent) {
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 1);
    worker.m_event.Set();
    EXPECT_EQ(worker.m_fnSetThreadState(1), kResultOk);
    EXPECT_EQ(worker.m_nState.load(), 1);
    EXPECT_EQ(worker.m_event.Wait(1), platform::kWaitTimeout);
}

// The worker pausing on an empty queue just after its owner asked for a stop
// must not undo the stop: the owner would join a worker asleep for ever.
TEST(ThreadBase, APauseAfterAStopKeepsTheStopAndItsWakeUp) {
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 1);
    worker.m_fnStopThread();
    worker.m_event.Set();
    EXPECT_EQ(worker.m_fnSetThreadState(1), kResultOk);
    EXPECT_EQ(worker.m_nState.load(), -2);
    EXPECT_EQ(worker.m_event.Wait(1), platform::kWaitObject0);
}

TEST(ThreadBase, TenTasksAddedWhileIdleRunInOrderOnOneThreadInAnApartment) {
    RecordingTask::Record record;
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 1);
    worker.m_fnSetThreadState(0);
    ASSERT_TRUE(Eventually([&] { return worker.m_nState.load() == 1; }));
    std::vector<std::shared_ptr<CThreadTask>> tasks;
    for (uint32_t id = 1; id <= 10; ++id) {
        tasks.push_back(Task(id, &record));
        queue.m_fnAddTask(tasks.back());
    }
    ASSERT_TRUE(Eventually([&] {
        std::lock_guard<std::mutex> guard(record.m_mutex);
        return record.m_doneIDs.size() == 10;
    }));
    ASSERT_TRUE(Eventually([&] { return worker.m_nState.load() == 1; }));
    std::lock_guard<std::mutex> guard(record.m_mutex);
    EXPECT_EQ(record.m_order, (std::vector<uint32_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(record.m_doneIDs, record.m_order);
    for (uint32_t thread : record.m_threads) EXPECT_EQ(thread, worker.m_dwThreadId.load());
    for (bool inside : record.m_inApartment) EXPECT_TRUE(inside);
    EXPECT_FALSE(platform::InApartment());
    for (const auto& task : tasks) EXPECT_EQ(task->m_hrResult, kResultOk);
}

TEST(ThreadBase, AFailingTaskDoesNotStopTheNext) {
    RecordingTask::Record record;
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 1);
    auto failing = Task(1, &record, kResultFail);
    auto next = Task(2, &record, kResultFalse);
    queue.m_fnAddTask(failing);
    queue.m_fnAddTask(next);
    worker.m_fnSetThreadState(0);
    ASSERT_TRUE(Eventually([&] {
        std::lock_guard<std::mutex> guard(record.m_mutex);
        return record.m_doneIDs.size() == 2;
    }));
    EXPECT_EQ(failing->m_hrResult, kResultFail);
    EXPECT_EQ(next->m_hrResult, kResultFalse);
    std::lock_guard<std::mutex> guard(record.m_mutex);
    EXPECT_EQ(record.m_doneResults, (std::vector<int32_t>{kResultFail, kResultFalse}));
}

TEST(ThreadBase, WithoutAutoStartANewTaskWaitsForAStart) {
    RecordingTask::Record record;
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 0);
    auto task = Task(1, &record);
    queue.m_fnAddTask(task);
    EXPECT_FALSE(worker.m_hThread);
    EXPECT_EQ(worker.m_nState.load(), -1);
    worker.m_fnSetThreadState(0);
    ASSERT_TRUE(Eventually([&] {
        std::lock_guard<std::mutex> guard(record.m_mutex);
        return record.m_doneIDs.size() == 1;
    }));
    EXPECT_EQ(task->m_hrResult, kResultOk);
}

TEST(ThreadBase, ANullQueueIsRefusedWithItsLines) {
    LogOn log;
    CThreadBase worker(nullptr);
    EXPECT_EQ(worker.m_fnCheckNext(), kResultPointer);
    EXPECT_EQ(worker.ExecuteNext(), kResultPointer);
    EXPECT_EQ(CThreadBase::ProcEntry(nullptr), static_cast<uint32_t>(kResultPointer));
    EXPECT_EQ(LogOn::Count("CThreadBase::m_fnCheckNext Null Pointer : m_pThreadQueue\n"), 1);
    EXPECT_EQ(LogOn::Count("CThreadBase::ExecuteNext Null Pointer : m_pThreadQueue\n"), 1);
    EXPECT_EQ(LogOn::Count("CThreadBase::ProcEntry Null Pointer : pParam\n"), 1);
}

TEST(ThreadBase, ExecuteNextOnAnEmptyQueueOrANullTaskFails) {
    CThreadQueue queue;
    CThreadBase worker(&queue);
    EXPECT_EQ(worker.ExecuteNext(), kResultFail);
    std::shared_ptr<CThreadTask> none;
    queue.m_fnAddTask(none);
    EXPECT_EQ(worker.ExecuteNext(), kResultFail);
    EXPECT_EQ(queue.m_fnGetSize(), 0u);
}

TEST(ThreadBase, CheckNextPausesOnAnEmptyQueue) {
    RecordingTask::Record record;
    CThreadQueue queue;
    CThreadBase worker(&queue);
    EXPECT_EQ(worker.m_fnCheckNext(), kResultFail);
    EXPECT_EQ(worker.m_nState.load(), 1);
    auto task = Task(1, &record);
    queue.m_fnAddTask(task);
    EXPECT_EQ(worker.m_fnCheckNext(), kResultOk);
    EXPECT_EQ(worker.ExecuteNext(), kResultOk);
    EXPECT_EQ(task->m_hrResult, kResultOk);
}

TEST(ThreadBase, StopOfAWorkerNeverStartedAndASecondStopAreHarmless) {
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 1);
    EXPECT_EQ(worker.m_fnStopThread(), kResultOk);
    EXPECT_EQ(worker.m_nState.load(), -2);
    worker.m_fnStartThread();
    // Once idle the worker waits on its event, so the stop finds it alive and
    // joins it (a worker that ended first would keep its handle).
    while (worker.m_nState.load() != 1) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(worker.m_fnStopThread(), kResultOk);
    EXPECT_FALSE(worker.m_hThread);
    EXPECT_EQ(worker.m_fnStopThread(), kResultOk);
}

TEST(ThreadBase, NoAutoStartWhileAStopIsUnderWay) {
    RecordingTask::Record record;
    CObservableThreadQueue queue;
    CObservorThread worker(&queue, 1);
    worker.m_fnStopThread();
    auto task = Task(1, &record);
    queue.m_fnAddTask(task);
    EXPECT_FALSE(worker.m_hThread);
    EXPECT_TRUE(worker.Update(OBSERVABLE_EVENT_TASK_ADDED, &queue, 0));
    EXPECT_FALSE(worker.m_hThread);
    EXPECT_FALSE(worker.Update(2, &queue, 0));
}

TEST(ObservorThread, TheSubjectGoingFirstClearsItsPointer) {
    auto* queue = new CObservableThreadQueue;
    CObservorThread worker(queue, 1);
    delete queue;
    EXPECT_EQ(worker.m_pObservable, nullptr);
}

TEST(ObservorThread, GoingFirstDetachesFromTheSubject) {
    CObservableThreadQueue queue;
    {
        CObservorThread worker(&queue, 1);
    }
    EXPECT_TRUE(queue.m_observers[OBSERVABLE_EVENT_DESTROYED].empty());
    EXPECT_TRUE(queue.m_observers[OBSERVABLE_EVENT_TASK_ADDED].empty());
}

// ----------------------------------------------------------- under load

struct CountedTask : CThreadTask {
    CountedTask(uint32_t id, std::atomic<int>* runs, std::atomic<int>* alive)
        : CThreadTask(id), m_pRuns(runs), m_pAlive(alive) {
        ++*m_pAlive;
    }
    ~CountedTask() override { --*m_pAlive; }
    int32_t m_fnTaskExecute() override {
        m_pRuns[m_nTaskID].fetch_add(1);
        return kResultOk;
    }
    std::atomic<int>* m_pRuns;
    std::atomic<int>* m_pAlive;
};

TEST(ThreadBase, ManyConcurrentSendersLoseNothingAndRunNothingTwice) {
    constexpr int kSenders = 8;
    constexpr int kPerSender = 500;
    std::unique_ptr<std::atomic<int>[]> runs(new std::atomic<int>[kSenders * kPerSender]);
    for (int i = 0; i < kSenders * kPerSender; ++i) runs[i] = 0;
    std::atomic<int> alive{0};
    {
        CObservableThreadQueue queue;
        CObservorThread worker(&queue, 1);
        worker.m_fnSetThreadState(0);
        std::vector<std::thread> senders;
        for (int s = 0; s < kSenders; ++s) {
            senders.emplace_back([&, s] {
                for (int i = 0; i < kPerSender; ++i) {
                    std::shared_ptr<CThreadTask> task =
                        std::make_shared<CountedTask>(static_cast<uint32_t>(s * kPerSender + i), runs.get(), &alive);
                    queue.m_fnAddTask(task);
                }
            });
        }
        for (auto& sender : senders) sender.join();
        ASSERT_TRUE(Eventually([&] { return alive.load() == 0; }));
    }
    for (int i = 0; i < kSenders * kPerSender; ++i) ASSERT_EQ(runs[i].load(), 1) << "task " << i;
}

TEST(ThreadBase, ShutdownWithTasksQueuedRunsEachAtMostOnceAndFreesAll) {
    constexpr int kTasks = 3000;
    std::unique_ptr<std::atomic<int>[]> runs(new std::atomic<int>[kTasks]);
    for (int i = 0; i < kTasks; ++i) runs[i] = 0;
    std::atomic<int> alive{0};
    {
        auto* queue = new CObservableThreadQueue;
        auto* worker = new CObservorThread(queue, 1);
        worker->m_fnSetThreadState(0);
        std::thread sender([&] {
            for (int i = 0; i < kTasks; ++i) {
                std::shared_ptr<CThreadTask> task = std::make_shared<CountedTask>(i, runs.get(), &alive);
                queue->m_fnAddTask(task);
            }
        });
        sender.join();
        // The owner's order: drop what waits, stop the worker, drop the queue.
        queue->m_fnClear();
        delete worker;
        delete queue;
    }
    EXPECT_EQ(alive.load(), 0);
    int ran = 0;
    for (int i = 0; i < kTasks; ++i) {
        ASSERT_LE(runs[i].load(), 1) << "task " << i;
        ran += runs[i].load();
    }
    // Whatever ran, ran in the order of adding: a prefix of the tasks.
    for (int i = 0; i < ran; ++i) ASSERT_EQ(runs[i].load(), 1) << "task " << i;
}

}  // namespace
