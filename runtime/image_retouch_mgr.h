// ImageRetouchMgr: a home thread for the image engine. Its worker has
// entered a single-threaded apartment and does nothing but create and
// release engine instances, so an instance is made and loses its last
// reference on the thread that made it, whichever thread asks. Each request
// is a blocking send: the sender waits on its task's event for the whole of
// the task (run it with the interpreter lock given up). Between creation and
// release the facade calls the engine directly.
//
// Locks: m_csTasks guards the identity counter and the results map,
// m_csInstances the two lists; neither is held during a wait, and neither is
// held while the other is taken.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "engine/image_retouch.h"
#include "platform/platform.h"
#include "runtime/thread_task.h"

class ImageRetouchMgr;

// A task that records its result for its sender and then wakes it.
struct RetouchTaskBase : public CThreadTask {
    RetouchTaskBase(uint32_t nTaskID, ImageRetouchMgr* pMgr);
    ~RetouchTaskBase() override;
    int32_t m_fnTaskExecute() override;
    // On the worker: the result into the manager's map (when there is a
    // manager), then Set the event, always, last.
    void m_fnTaskDone(uint32_t taskId, int32_t hr) override;

    CSyncEvent m_event;
    ImageRetouchMgr* m_pImageRetouchMgr;
};

struct CreateImageRetouchInstTask : public RetouchTaskBase {
    CreateImageRetouchInstTask(uint32_t nTaskID, ImageRetouchMgr* pMgr, IImageRetouch** ppRetouch,
                               pcg::platform::ModuleHandle hModule);
    int32_t m_fnTaskExecute() override;

    IImageRetouch** m_ppRetouch;
    pcg::platform::ModuleHandle m_hModule;
};

struct ReleaseImageRetouchInstTask : public RetouchTaskBase {
    ReleaseImageRetouchInstTask(uint32_t nTaskID, ImageRetouchMgr* pMgr, IImageRetouch* pRetouch);
    int32_t m_fnTaskExecute() override;

    IImageRetouch* m_pRetouch;
};

struct ReleaseAllImageRetouchInQueueTask : public RetouchTaskBase {
    ReleaseAllImageRetouchInQueueTask(uint32_t nTaskID, ImageRetouchMgr* pMgr);
    int32_t m_fnTaskExecute() override;
};

class ImageRetouchMgr {
public:
    // bUseGdiplus: start GDI+ for the manager's life (the facade passes false).
    explicit ImageRetouchMgr(bool bUseGdiplus);
    ~ImageRetouchMgr();
    ImageRetouchMgr(const ImageRetouchMgr&) = delete;
    ImageRetouchMgr& operator=(const ImageRetouchMgr&) = delete;

    void m_fnSetFlag(bool value) { m_bFlag = value; }

    // Blocking sends; each answers what its task answered on the worker.
    int32_t CreateImageRetouchInst(IImageRetouch** ppRetouch, pcg::platform::ModuleHandle hModule);
    int32_t ReleaseImageRetouchInst(IImageRetouch* pRetouch);
    int32_t ReleaseAllImageRetouchInQueue();

    int32_t m_fnSendTask(std::shared_ptr<RetouchTaskBase> task);
    // The result stored for the identity, erased as it is read; E_FAIL when none.
    int32_t m_fnGetTaskResult(uint32_t taskId);

    // On the worker. hModule chooses the way: null, the registered class;
    // otherwise the library's DllGetClassObject.
    int32_t m_fnCreateImageRetouchInst(IImageRetouch** ppRetouch, pcg::platform::ModuleHandle hModule);
    int32_t m_fnReleaseAllImageRetouchInQueue();

    // The next task identity: 1 for the first task of a manager.
    uint32_t m_fnNextTaskID();

    pcg::platform::CriticalSection m_csInstances;
    pcg::platform::CriticalSection m_csTasks;
    bool m_bFlag;
    // Instances waiting for release, and a list that must be empty when they
    // are released. Nothing in the module writes either; the render agent,
    // which holds the manager's pointer, may.
    std::vector<IImageRetouch*> m_instances;
    std::vector<void*> m_worker;
    CObservableThreadQueue* m_pThreadTaskQueue;
    CObservorThread* m_pThread;
    uint32_t m_nLastTaskID;
    std::map<uint32_t, int32_t> m_taskResults;
    bool m_bUseGdiplus;
    uintptr_t m_gdiplusToken;
};
