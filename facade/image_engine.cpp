// The image side of the engine: the manager whose worker creates and releases
// ImageRetouch, the buffer allocator, the working pixel depth, and their
// teardown. The ImageRetouch library (when the facade was given its path)
// stays loaded until the manager has released the instance, because the
// release runs code inside it.
#include "facade/clipgrade.h"

#include "engine/constants.h"
#include "engine/result_codes.h"
#include "events/py_gil_unlock_scope.h"
#include "runtime/dump_log.h"
#include "runtime/image_retouch_mgr.h"
#include "runtime/registry.h"

namespace {
const wchar_t kProductKey[] = L"SoftWare\\Verimont\\Huevane5";
const wchar_t kEnableMultiThreadValue[] = L"EnableKESPlugInMultiThread";
}  // namespace

void PyClipGrade::m_fnStartImageEngine(WCHAR* imageRetouchDllPath, BOOL createBufferAgent) {
    if (imageRetouchDllPath != nullptr) m_imageRetouchDllPath = imageRetouchDllPath;

    // Read for the log only: it switches nothing.
    uint32_t enableMultiThread = 0xFFFFFFFFu;
    {
        CRegistry registry(pcg::platform::LocalMachineKey());
        if (registry.m_fnOpen(pcg::platform::LocalMachineKey(), kProductKey, 1)) {
            registry.m_fnQueryDWORD(kEnableMultiThreadValue, &enableMultiThread);
        }
    }
    DumpLog("PyClipGrade::PyClipGrade EnableKESPlugInMultiThread=%d", static_cast<int>(enableMultiThread));

    m_pImageRetouchMgr = new ImageRetouchMgr(false);
    m_pImageRetouchMgr->m_fnSetFlag(true);

    if (createBufferAgent) {
        DumpLog("PyClipGrade::PyClipGrade PyClipGrade Initial ImageRetouch");
        m_fnInitImageRetouch();
    }
}

HRESULT PyClipGrade::m_fnInitImageRetouch() {
    if (m_pImageRetouch != nullptr) return pcg::kResultOk;
    if (!m_imageRetouchDllPath.empty() && m_hImageRetouchDll == nullptr) {
        // Not tested: a null handle makes the manager use the registered class.
        m_hImageRetouchDll = pcg::platform::LoadModule(m_imageRetouchDllPath.c_str());
    }
    HRESULT hr;
    {
        // A wait for the worker, which runs engine code: never with the
        // interpreter lock held.
        PyGilUnlockScope unlocked;
        hr = m_pImageRetouchMgr->CreateImageRetouchInst(&m_pImageRetouch, m_hImageRetouchDll);
    }
    if (hr < 0) {
        // Blocks until answered on Windows; written to the trace elsewhere.
        pcg::platform::ShowStopMessage(L"PyClipGrade: cannot create m_pImageRetouch", L"Huevane");
        return pcg::kResultFail;
    }
    if (m_pBufferAllocator != nullptr) return pcg::kResultOk;
    // The registered class needs an apartment on this thread. The host's
    // script thread has one; a thread that has none joins one for good:
    // leaving it would let COM unload the allocator's library under us.
    if (!pcg::platform::InApartment()) pcg::platform::EnterApartment();
    hr = pcg::platform::CreateRegisteredInstance(&pcg::engine::CLSID_BufferAllocator,
                                                 &pcg::engine::IID_IBufferAllocator,
                                                 reinterpret_cast<void**>(&m_pBufferAllocator));
    if (hr < 0 || m_pBufferAllocator == nullptr) {
        DumpLog("%s CoCreateInstance %s (%s) failed hr=0x%08X\n", "PyClipGrade::m_fnInitImageRetouch",
                "IID_IBufferAllocator", "m_pBufferAllocator", static_cast<unsigned int>(hr));
        DumpLog("PyClipGrade::m_fnInitImageRetouch [Err] Can't initialize IID_IBufferAllocator!!!");
        return pcg::kResultFail;
    }
    return pcg::kResultOk;
}

void PyClipGrade::m_fnSettlePixelDepth() {
    m_pixelBytes = VX_PIXEL_4BYTES;
    if (Use16bitsColorDepth() == 1) m_pixelBytes = VX_PIXEL_8BYTES;
    if (m_pixelBytes == VX_PIXEL_8BYTES) {
        m_pixelFormat = PIXEL_ARGB64;
        m_highDepth = 1;
    } else {
        m_pixelFormat = PIXEL_ARGB32;
        m_highDepth = 0;
    }
}

void PyClipGrade::m_fnReleaseImageEngine() {
    IBufferAllocator* allocator = m_pBufferAllocator;
    m_pBufferAllocator = nullptr;
    if (allocator != nullptr) allocator->Release();

    if (m_pImageRetouchMgr != nullptr) {
        PyGilUnlockScope unlocked;
        m_pImageRetouchMgr->ReleaseImageRetouchInst(m_pImageRetouch);
        m_pImageRetouch = nullptr;
        m_pImageRetouchMgr->ReleaseAllImageRetouchInQueue();
        delete m_pImageRetouchMgr;
        m_pImageRetouchMgr = nullptr;
    }
}

void PyClipGrade::m_fnFreeImageRetouchLibrary() {
    if (pcg::platform::UnloadModule(m_hImageRetouchDll) == 1) m_hImageRetouchDll = nullptr;
}
