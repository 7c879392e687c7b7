#include "runtime/image_retouch_mgr.h"

#include "engine/result_codes.h"
#include "runtime/dump_log.h"

using pcg::kResultFail;
using pcg::kResultInvalidArg;
using pcg::kResultOk;
using pcg::kResultPointer;
using pcg::platform::CriticalSectionScope;

// ----------------------------------------------------------------- tasks

RetouchTaskBase::RetouchTaskBase(uint32_t nTaskID, ImageRetouchMgr* pMgr)
    : CThreadTask(nTaskID), m_event(0), m_pImageRetouchMgr(pMgr) {}

RetouchTaskBase::~RetouchTaskBase() { m_pImageRetouchMgr = nullptr; }

int32_t RetouchTaskBase::m_fnTaskExecute() { return kResultOk; }

void RetouchTaskBase::m_fnTaskDone(uint32_t taskId, int32_t hr) {
    if (m_pImageRetouchMgr != nullptr) {
        CriticalSectionScope guard(m_pImageRetouchMgr->m_csTasks);
        m_pImageRetouchMgr->m_taskResults[taskId] = hr;
    }
    m_event.Set();
}

CreateImageRetouchInstTask::CreateImageRetouchInstTask(uint32_t nTaskID, ImageRetouchMgr* pMgr,
                                                       IImageRetouch** ppRetouch,
                                                       pcg::platform::ModuleHandle hModule)
    : RetouchTaskBase(nTaskID, pMgr), m_ppRetouch(ppRetouch), m_hModule(hModule) {}

int32_t CreateImageRetouchInstTask::m_fnTaskExecute() {
    if (m_pImageRetouchMgr == nullptr) {
        DumpLog("CreateImageRetouchInstTask::m_fnTaskExecute Null Pointer : m_pImageRetouchMgr\n");
        return kResultPointer;
    }
    return m_pImageRetouchMgr->m_fnCreateImageRetouchInst(m_ppRetouch, m_hModule);
}

ReleaseImageRetouchInstTask::ReleaseImageRetouchInstTask(uint32_t nTaskID, ImageRetouchMgr* pMgr,
                                                         IImageRetouch* pRetouch)
    : RetouchTaskBase(nTaskID, pMgr), m_pRetouch(pRetouch) {}

int32_t ReleaseImageRetouchInstTask::m_fnTaskExecute() {
    if (m_pRetouch == nullptr) {
        DumpLog("ReleaseImageRetouchInstTask::m_fnTaskExecute Null Pointer : m_pRetouch\n");
        return kResultPointer;
    }
    m_pRetouch->Release();
    return kResultOk;
}

ReleaseAllImageRetouchInQueueTask::ReleaseAllImageRetouchInQueueTask(uint32_t nTaskID, ImageRetouchMgr* pMgr)
    : RetouchTaskBase(nTaskID, pMgr) {}

int32_t ReleaseAllImageRetouchInQueueTask::m_fnTaskExecute() {
    if (m_pImageRetouchMgr == nullptr) {
        DumpLog("ReleaseAllImageRetouchInQueueTask::m_fnTaskExecute Null Pointer : m_pImageRetouchMgr\n");
        return kResultPointer;
    }
    m_pImageRetouchMgr->m_fnReleaseAllImageRetouchInQueue();
    return kResultOk;
}

// --------------------------------------------------------------- manager

ImageRetouchMgr::ImageRetouchMgr(bool bUseGdiplus)
    : m_bFlag(false),
      m_pThreadTaskQueue(nullptr),
      m_pThread(nullptr),
      m_nLastTaskID(0),
      m_bUseGdiplus(bUseGdiplus),
      m_gdiplusToken(0) {
    DumpLog("ImageRetouchMgr::ImageRetouchMgr() enter\n");
    if (m_bUseGdiplus) pcg::platform::StartGdiplus(&m_gdiplusToken);
    m_pThreadTaskQueue = new CObservableThreadQueue();
    m_pThread = new CObservorThread(m_pThreadTaskQueue, 1);
    m_pThread->m_fnSetThreadState(0);
    DumpLog("ImageRetouchMgr::ImageRetouchMgr() end\n");
}

ImageRetouchMgr::~ImageRetouchMgr() {
    DumpLog("ImageRetouchMgr::~ImageRetouchMgr() enter\n");
    // Tasks still waiting are dropped unrun; their senders would never wake,
    // which is why nothing is sent at this stage.
    if (m_pThreadTaskQueue != nullptr) m_pThreadTaskQueue->m_fnClear();
    delete m_pThread;
    m_pThread = nullptr;
    delete m_pThreadTaskQueue;
    m_pThreadTaskQueue = nullptr;
    if (m_bUseGdiplus) pcg::platform::StopGdiplus(m_gdiplusToken);
    DumpLog("ImageRetouchMgr::~ImageRetouchMgr() end\n");
}

uint32_t ImageRetouchMgr::m_fnNextTaskID() {
    CriticalSectionScope guard(m_csTasks);
    return ++m_nLastTaskID;
}

int32_t ImageRetouchMgr::CreateImageRetouchInst(IImageRetouch** ppRetouch, pcg::platform::ModuleHandle hModule) {
    return m_fnSendTask(std::make_shared<CreateImageRetouchInstTask>(m_fnNextTaskID(), this, ppRetouch, hModule));
}

int32_t ImageRetouchMgr::ReleaseImageRetouchInst(IImageRetouch* pRetouch) {
    return m_fnSendTask(std::make_shared<ReleaseImageRetouchInstTask>(m_fnNextTaskID(), this, pRetouch));
}

int32_t ImageRetouchMgr::ReleaseAllImageRetouchInQueue() {
    return m_fnSendTask(std::make_shared<ReleaseAllImageRetouchInQueueTask>(m_fnNextTaskID(), this));
}

int32_t ImageRetouchMgr::m_fnSendTask(std::shared_ptr<RetouchTaskBase> task) {
    if (m_pThreadTaskQueue == nullptr) {
        DumpLog("ImageRetouchMgr::m_fnSendTask Null Pointer : m_pThreadTaskQueue\n");
        return kResultPointer;
    }
    if (m_pThread == nullptr) {
        DumpLog("ImageRetouchMgr::m_fnSendTask Null Pointer : m_pThread\n");
        return kResultPointer;
    }
    if (!task) {
        // A task that could not be made: nothing would ever set its event.
        DumpLog("ImageRetouchMgr::m_fnSendTask Null Pointer : task\n");
        return kResultPointer;
    }
    DumpLogW(L"ImageRetouchMgr::m_fnSendTask Send Task From Thread %d",
             static_cast<int>(pcg::platform::CurrentThreadId()));
    std::shared_ptr<CThreadTask> queued = task;
    m_pThreadTaskQueue->m_fnAddTask(queued);
    task->m_event.Wait(0);
    task->m_event.Reset();
    DumpLogW(L"ImageRetouchMgr::m_fnSendTask Task Complete For Thread %d",
             static_cast<int>(pcg::platform::CurrentThreadId()));
    return m_fnGetTaskResult(task->m_nTaskID);
}

int32_t ImageRetouchMgr::m_fnGetTaskResult(uint32_t taskId) {
    CriticalSectionScope guard(m_csTasks);
    auto found = m_taskResults.find(taskId);
    if (found == m_taskResults.end()) return kResultFail;
    const int32_t hr = found->second;
    m_taskResults.erase(found);
    return hr;
}

int32_t ImageRetouchMgr::m_fnCreateImageRetouchInst(IImageRetouch** ppRetouch,
                                                     pcg::platform::ModuleHandle hModule) {
    using namespace pcg::engine;
    if (ppRetouch == nullptr) return kResultInvalidArg;
    if (hModule == nullptr) {
        const int32_t hr = pcg::platform::CreateRegisteredInstance(&CLSID_ImageRetouch, &IID_IImageRetouch,
                                                                   reinterpret_cast<void**>(ppRetouch));
        if (hr < 0) {
            DumpLog("ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] Can't create CLSID_ImageRetouch, hr=0x%X",
                    static_cast<unsigned int>(hr));
            return kResultFail;
        }
    } else {
        auto getClassObject =
            reinterpret_cast<DllGetClassObjectFn>(pcg::platform::FindSymbol(hModule, kDllGetClassObjectName));
        IComClassFactory* spFactory = nullptr;
        // A library without the export cannot serve the class: the same
        // failure as a refused class, rather than a call through null.
        const int32_t hrFactory =
            getClassObject != nullptr
                ? getClassObject(CLSID_ImageRetouch, IID_IClassFactory, reinterpret_cast<void**>(&spFactory))
                : kResultClassNotAvailable;
        if (hrFactory < 0 || spFactory == nullptr) {
            DumpLog("ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] Can't get spFactory hr=%X",
                    static_cast<unsigned int>(hrFactory));
            if (spFactory != nullptr) spFactory->Release();
            return kResultFail;
        }
        const int32_t hr = spFactory->CreateInstance(nullptr, IID_IImageRetouch, reinterpret_cast<void**>(ppRetouch));
        if (hr < 0) {
            DumpLog("ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] Init ImageRetouch Fail! hr=%X",
                    static_cast<unsigned int>(hr));
            spFactory->Release();
            return kResultFail;
        }
        spFactory->Release();
    }
    DumpLog("ImageRetouchMgr::m_fnCreateImageRetouchInst Initial VXImageRetouch success!");
    if (*ppRetouch != nullptr) {
        int32_t videoMode = 1;
        (*ppRetouch)->SetProperty(RETOUCH_PROPERTY_SET_VIDEO_MODE, sizeof(videoMode), &videoMode);
    }
    return kResultOk;
}

int32_t ImageRetouchMgr::m_fnReleaseAllImageRetouchInQueue() {
    CriticalSectionScope guard(m_csInstances);
    if (!m_worker.empty()) {
        DumpLogW(L"ImageRetouchMgr::m_fnReleaseAllImageRetouchInQueue [Err] There may something wrong if m_worker "
                 L"size !=0");
    }
    for (IImageRetouch* instance : m_instances) {
        if (instance != nullptr) instance->Release();
    }
    m_instances.clear();
    return kResultOk;
}
