// The task thread framework: one worker thread runs tasks for others, one at
// a time, in the order they arrive. Pieces: a task (CThreadTask), a queue of
// shared tasks (CThreadQueue), a subject and observer pair (CObservable,
// CObserver), the worker (CThreadBase) sleeping on a manual-reset event
// (CSyncEvent), and the two classes that tie them: CObservableThreadQueue
// tells its observers when a task arrives, CObservorThread is a worker that
// observes such a queue and wakes itself. The framework never blocks a
// sender; ImageRetouchMgr adds the blocking send.
//
// Locks, outermost first: the subject's m_cs (held through a notification),
// the worker's m_csCheck, the worker's m_csState. The queue's m_cs is taken
// under m_csCheck and never held during a notification.
//
// Results are HRESULT-style (engine/result_codes.h).
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <vector>

#include "platform/platform.h"

// A unit of work. m_hrResult is E_FAIL until m_fnTaskExecute has run.
struct CThreadTask {
    explicit CThreadTask(uint32_t nTaskID);
    virtual ~CThreadTask();
    // The work; the base has none and answers S_FALSE.
    virtual int32_t m_fnTaskExecute();
    // Called on the worker after the work with its result; the base does nothing.
    virtual void m_fnTaskDone(uint32_t nTaskID, int32_t hr);

    int32_t m_hrResult;
    uint32_t m_nTaskID;
};

// A manual- or auto-reset event with a timeout of 0 meaning "for ever": no
// call can poll it. The critical section is kept with the object and never
// entered.
class CSyncEvent {
public:
    explicit CSyncEvent(int32_t bInitialState = 0);
    ~CSyncEvent();
    CSyncEvent(const CSyncEvent&) = delete;
    CSyncEvent& operator=(const CSyncEvent&) = delete;

    void Set();
    void Reset();
    // WaitForSingleObject's result; 0 waits without limit.
    uint32_t Wait(uint32_t timeoutMs);

    int32_t m_bInitialState;
    pcg::platform::CriticalSection m_cs;
    pcg::platform::Event m_hEvent;
};

// Pending tasks, oldest in front, shared with their senders.
class CThreadQueue {
public:
    CThreadQueue();
    virtual ~CThreadQueue();
    CThreadQueue(const CThreadQueue&) = delete;
    CThreadQueue& operator=(const CThreadQueue&) = delete;

    // Queues a copy of the shared pointer; S_OK.
    virtual int32_t m_fnAddTask(std::shared_ptr<CThreadTask>& task);
    // Drops every task from the front; S_OK.
    int32_t m_fnClear();
    std::size_t m_fnGetSize();

    std::deque<std::shared_ptr<CThreadTask>> m_tasks;
    pcg::platform::CriticalSection m_cs;
};

class CObservable;

// Notification events.
constexpr uint32_t OBSERVABLE_EVENT_TASK_ADDED = 1;
constexpr uint32_t OBSERVABLE_EVENT_DESTROYED = 0xFFFFFF;

class CObserver {
public:
    virtual ~CObserver();
    // The base wants nothing and answers false.
    virtual bool Update(uint32_t event, CObservable* source, intptr_t data);
};

// A subject: observers per event, told in the order they attached, under
// m_cs for the whole notification.
class CObservable {
public:
    CObservable();
    virtual ~CObservable();
    CObservable(const CObservable&) = delete;
    CObservable& operator=(const CObservable&) = delete;

    // The data of a notification; 0 here and in every subclass.
    virtual intptr_t GetData();

    // Always true; a second attach of an observer stands twice.
    bool Attach(uint32_t event, CObserver* observer);
    // Removes the first entry equal to the observer; false when there was none.
    // An emptied vector stays in the map.
    bool Detach(uint32_t event, CObserver* observer);
    // Always true; null entries are skipped and Update's answers ignored.
    bool Notify(uint32_t event);

    std::map<uint32_t, std::vector<CObserver*>> m_observers;
    CObservable* m_pSource;
    pcg::platform::CriticalSection m_cs;
};

// A queue that tells OBSERVABLE_EVENT_TASK_ADDED after each task, outside
// the queue's lock, and OBSERVABLE_EVENT_DESTROYED when it goes (twice:
// once of its own, once as a subject).
class CObservableThreadQueue : public CThreadQueue, public CObservable {
public:
    CObservableThreadQueue();
    ~CObservableThreadQueue() override;
    int32_t m_fnAddTask(std::shared_ptr<CThreadTask>& task) override;
};

// A worker thread that sleeps on m_event and runs one task per pass.
// States of m_nState: -1 constructed, 0 running, 1 idle (queue found empty),
// -2 stopping. A subclass that overrides ExecuteNext or m_fnThreadProc stops
// the thread in its own destructor, before its part of the object goes.
class CThreadBase {
public:
    explicit CThreadBase(CThreadQueue* queue);
    virtual ~CThreadBase();
    CThreadBase(const CThreadBase&) = delete;
    CThreadBase& operator=(const CThreadBase&) = delete;

    virtual int32_t m_fnThreadProc();
    virtual int32_t ExecuteNext();

    // 0 starts, 1 pauses, anything else is E_FAIL and changes nothing.
    int32_t m_fnSetThreadState(int32_t request);
    int32_t m_fnStartThread();
    int32_t m_fnPauseThread();
    int32_t m_fnCheckNext();
    int32_t m_fnStopThread();
    // The thread's entry: enters the apartment, runs m_fnThreadProc, leaves.
    static uint32_t ProcEntry(void* pParam);

    CThreadQueue* m_pThreadQueue;
    std::atomic<uint32_t> m_dwThreadId;
    // Written under m_csState; read without a lock to decide one more pass.
    std::atomic<int32_t> m_nState;
    pcg::platform::CriticalSection m_csState;
    pcg::platform::CriticalSection m_csCheck;
    std::unique_ptr<pcg::platform::Thread> m_hThread;
    CSyncEvent m_event;
};

// A worker that observes its queue: with m_bAutoStart, each new task starts
// (wakes) the thread. The thread is not started by the constructor.
class CObservorThread : public CThreadBase, public CObserver {
public:
    CObservorThread(CObservableThreadQueue* queue, int32_t bAutoStart);
    ~CObservorThread() override;
    bool Update(uint32_t event, CObservable* source, intptr_t data) override;

    int32_t m_bAutoStart;
    CObservableThreadQueue* m_pObservable;
};
