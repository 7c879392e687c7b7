#include "runtime/thread_task.h"

#include <algorithm>

#include "engine/result_codes.h"
#include "runtime/dump_log.h"

using pcg::kResultFail;
using pcg::kResultFalse;
using pcg::kResultOk;
using pcg::kResultPointer;
using pcg::platform::CriticalSectionScope;

namespace {
constexpr uint32_t kStillActive = 259;  // STILL_ACTIVE
}

// ------------------------------------------------------------------ task

CThreadTask::CThreadTask(uint32_t nTaskID) : m_hrResult(kResultFail), m_nTaskID(nTaskID) {}

CThreadTask::~CThreadTask() = default;

int32_t CThreadTask::m_fnTaskExecute() { return kResultFalse; }

void CThreadTask::m_fnTaskDone(uint32_t, int32_t) {}

// ----------------------------------------------------------------- event

CSyncEvent::CSyncEvent(int32_t bInitialState)
    : m_bInitialState(bInitialState), m_hEvent(true, bInitialState != 0) {}

CSyncEvent::~CSyncEvent() = default;

void CSyncEvent::Set() { m_hEvent.Set(); }

void CSyncEvent::Reset() { m_hEvent.Reset(); }

uint32_t CSyncEvent::Wait(uint32_t timeoutMs) {
    return m_hEvent.Wait(timeoutMs == 0 ? pcg::platform::kInfinite : timeoutMs);
}

// ----------------------------------------------------------------- queue

CThreadQueue::CThreadQueue() = default;

CThreadQueue::~CThreadQueue() { m_fnClear(); }

int32_t CThreadQueue::m_fnAddTask(std::shared_ptr<CThreadTask>& task) {
    CriticalSectionScope guard(m_cs);
    m_tasks.push_back(task);
    return kResultOk;
}

int32_t CThreadQueue::m_fnClear() {
    // The tasks die outside the lock: a task's destructor may be anything.
    std::deque<std::shared_ptr<CThreadTask>> dropped;
    {
        CriticalSectionScope guard(m_cs);
        while (!m_tasks.empty()) {
            dropped.push_back(std::move(m_tasks.front()));
            m_tasks.pop_front();
        }
    }
    return kResultOk;
}

std::size_t CThreadQueue::m_fnGetSize() {
    CriticalSectionScope guard(m_cs);
    return m_tasks.size();
}

// -------------------------------------------------- subject and observer

CObserver::~CObserver() = default;

bool CObserver::Update(uint32_t, CObservable*, intptr_t) { return false; }

CObservable::CObservable() : m_pSource(this) {}

CObservable::~CObservable() {
    Notify(OBSERVABLE_EVENT_DESTROYED);
    CriticalSectionScope guard(m_cs);
    for (auto& entry : m_observers) std::fill(entry.second.begin(), entry.second.end(), nullptr);
    m_observers.clear();
}

intptr_t CObservable::GetData() { return 0; }

bool CObservable::Attach(uint32_t event, CObserver* observer) {
    CriticalSectionScope guard(m_cs);
    m_observers[event].push_back(observer);
    return true;
}

bool CObservable::Detach(uint32_t event, CObserver* observer) {
    CriticalSectionScope guard(m_cs);
    auto found = m_observers.find(event);
    if (found == m_observers.end()) return false;
    auto& list = found->second;
    auto entry = std::find(list.begin(), list.end(), observer);
    if (entry == list.end()) return false;
    list.erase(entry);
    return true;
}

bool CObservable::Notify(uint32_t event) {
    CriticalSectionScope guard(m_cs);
    auto found = m_observers.find(event);
    if (found == m_observers.end()) return true;
    // By index: an observer may detach itself (m_cs is recursive) while told.
    for (std::size_t i = 0; i < found->second.size(); ++i) {
        CObserver* observer = found->second[i];
        if (observer == nullptr) continue;
        const intptr_t data = GetData();
        observer->Update(event, m_pSource, data);
    }
    return true;
}

CObservableThreadQueue::CObservableThreadQueue() = default;

CObservableThreadQueue::~CObservableThreadQueue() { Notify(OBSERVABLE_EVENT_DESTROYED); }

int32_t CObservableThreadQueue::m_fnAddTask(std::shared_ptr<CThreadTask>& task) {
    CThreadQueue::m_fnAddTask(task);
    Notify(OBSERVABLE_EVENT_TASK_ADDED);
    return kResultOk;
}

// ---------------------------------------------------------------- worker

CThreadBase::CThreadBase(CThreadQueue* queue)
    : m_pThreadQueue(queue), m_dwThreadId(0), m_nState(-1), m_event(0) {}

CThreadBase::~CThreadBase() {
    m_fnStopThread();
    m_pThreadQueue = nullptr;
    m_hThread.reset();
}

int32_t CThreadBase::m_fnSetThreadState(int32_t request) {
    if (request == 0) return m_fnStartThread();
    if (request == 1) return m_fnPauseThread();
    return kResultFail;
}

int32_t CThreadBase::m_fnStartThread() {
    {
        CriticalSectionScope guard(m_csState);
        m_nState.store(0);
    }
    if (!m_hThread) {
        m_hThread = pcg::platform::Thread::Start(&CThreadBase::ProcEntry, this);
        if (!m_hThread) {
            DumpLog("CThreadBase::m_fnStartThread m_fnInitialize() , failed hr=0x%08X\n",
                    static_cast<unsigned int>(kResultFail));
            return kResultFail;
        }
    }
    m_event.Set();
    return kResultOk;
}

int32_t CThreadBase::m_fnPauseThread() {
    CriticalSectionScope guard(m_csState);
    // A stop that came first keeps its state and its wake-up: pausing over it
    // left the worker waiting for ever and its owner joining it for ever.
    if (m_nState.load() == -2) return kResultOk;
    m_nState.store(1);
    m_event.Reset();
    return kResultOk;
}

uint32_t CThreadBase::ProcEntry(void* pParam) {
    if (pParam == nullptr) {
        DumpLog("CThreadBase::ProcEntry Null Pointer : pParam\n");
        return static_cast<uint32_t>(kResultPointer);
    }
    auto* self = static_cast<CThreadBase*>(pParam);
    self->m_dwThreadId.store(pcg::platform::CurrentThreadId());
    const int32_t hrApartment = pcg::platform::EnterApartment();
    const int32_t result = self->m_fnThreadProc();
    if (hrApartment >= 0) pcg::platform::LeaveApartment();
    return static_cast<uint32_t>(result);
}

int32_t CThreadBase::m_fnThreadProc() {
    for (;;) {
        m_event.Wait(0);
        if (m_nState.load() > -2) {
            if (m_fnCheckNext() >= 0) ExecuteNext();
        }
        if (m_nState.load() == -2) return 0;
    }
}

int32_t CThreadBase::m_fnCheckNext() {
    if (m_pThreadQueue == nullptr) {
        DumpLog("CThreadBase::m_fnCheckNext Null Pointer : m_pThreadQueue\n");
        return kResultPointer;
    }
    CriticalSectionScope guard(m_csCheck);
    if (m_pThreadQueue->m_fnGetSize() == 0) {
        m_fnPauseThread();
        return kResultFail;
    }
    return kResultOk;
}

int32_t CThreadBase::ExecuteNext() {
    if (m_pThreadQueue == nullptr) {
        DumpLog("CThreadBase::ExecuteNext Null Pointer : m_pThreadQueue\n");
        return kResultPointer;
    }
    std::shared_ptr<CThreadTask> task;
    {
        CriticalSectionScope guard(m_pThreadQueue->m_cs);
        if (!m_pThreadQueue->m_tasks.empty()) {
            task = m_pThreadQueue->m_tasks.front();
            m_pThreadQueue->m_tasks.pop_front();
        }
    }
    if (!task) return kResultFail;
    const int32_t hr = task->m_fnTaskExecute();
    task->m_hrResult = hr;
    task->m_fnTaskDone(task->m_nTaskID, hr);
    return kResultOk;
}

int32_t CThreadBase::m_fnStopThread() {
    {
        // Under the state lock: a pause that comes later sees the stop and
        // leaves the state and the wake-up below alone.
        CriticalSectionScope guard(m_csState);
        m_nState.store(-2);
    }
    if (!m_hThread) return kResultOk;
    uint32_t exitCode = kStillActive;
    // A thread that has ended already keeps its handle until the object goes.
    if (m_hThread->GetExitCode(&exitCode) && exitCode != kStillActive) return kResultOk;
    m_event.Set();
    m_hThread->Wait(pcg::platform::kInfinite);
    // The handle is closed and forgotten: a second stop finds no thread.
    m_hThread.reset();
    return kResultOk;
}

// ----------------------------------------------------- observing worker

CObservorThread::CObservorThread(CObservableThreadQueue* queue, int32_t bAutoStart)
    : CThreadBase(queue), m_bAutoStart(bAutoStart), m_pObservable(queue) {
    if (queue != nullptr) {
        queue->Attach(OBSERVABLE_EVENT_DESTROYED, this);
        queue->Attach(OBSERVABLE_EVENT_TASK_ADDED, this);
    }
}

CObservorThread::~CObservorThread() {
    if (m_pObservable != nullptr) {
        m_pObservable->Detach(OBSERVABLE_EVENT_DESTROYED, this);
        m_pObservable->Detach(OBSERVABLE_EVENT_TASK_ADDED, this);
        m_pObservable = nullptr;
    }
}

bool CObservorThread::Update(uint32_t event, CObservable* source, intptr_t data) {
    if (event == OBSERVABLE_EVENT_TASK_ADDED) {
        if (m_nState.load() > -2 && m_bAutoStart != 0) {
            CriticalSectionScope guard(m_csCheck);
            m_fnStartThread();
        }
        return true;
    }
    if (event == OBSERVABLE_EVENT_DESTROYED) {
        m_pObservable = nullptr;
        return true;
    }
    return false;
}
