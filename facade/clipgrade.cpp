#include "facade/clipgrade.h"

#include <cstdint>
#include <cstdio>
#include <string>

#include "events/callback_ring.h"
#include "events/live_facades.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/agent_registry.h"
#include "facade/construction_probe.h"
#include "facade/selection_buffers.h"
#include "imaging/image_buffer.h"
#include "runtime/dump_log.h"

namespace {

// Relative to the host's folder, in the order they are loaded: the OpenMP
// runtime must be in the process before the agent's library.
const wchar_t kDspAgentRelativePath[] = L"KESdlls\\VXHvnDspAgent.dll";
const wchar_t kIompRelativePath[] = L"Kernel\\ImageRetouch\\libiomp5md.dll";

}  // namespace

void (*pcg::facade::g_pfnMembersBuilt)() = nullptr;

PyClipGrade::PyClipGrade(IVXHvnDspAgent* agent, BOOL createBufferAgent, BOOL startCallbackThread,
                         WCHAR* imageRetouchDllPath, WCHAR* logRootKey)
    : m_dspAgent(nullptr),
      m_dspBufAgent(nullptr),
      m_hDspAgentDll(nullptr),
      m_hIompDll(nullptr),
      m_callbackQueue(),
      m_hCallbackDoneEvent(nullptr),
      m_pImageRetouch(nullptr),
      m_pBufferAllocator(nullptr),
      m_pixelFormat(0),
      m_pixelBytes(0),
      m_highDepth(0),
      m_hImageRetouchDll(nullptr),
      m_pCacheFrame(nullptr),
      m_pCachePureFrame(nullptr),
      m_pCacheFramePlaying(nullptr),
      m_pImageRetouchMgr(nullptr),
      m_hPassedAgentCode(nullptr),
      m_nSelectionWidth(0),
      m_nSelectionHeight(0),
      m_bBrushOnMask(false) {
    if (pcg::facade::g_pfnMembersBuilt != nullptr) pcg::facade::g_pfnMembersBuilt();
    pcg::events::InitCallbackRing(&m_callbackQueue, pcg::events::kCallbackRingCapacity);
    pcg::events::RegisterLiveFacade(this);
    DumpConfigure("PyClipGrade", nullptr, nullptr, logRootKey);
    DumpLog("PyClipGrade::PyClipGrade() enter\n");

    const bool agentPassed = agent != nullptr;
    if (agentPassed) {
        // The only reference taken on a passed agent; it stays the caller's too.
        m_dspAgent = agent;
        m_hPassedAgentCode = pcg::platform::AcquireModuleOfAddress(*reinterpret_cast<void* const*>(agent));
        m_dspAgent->AddRef();
        pcg::facade::RegisterHeldAgent(m_dspAgent);
        DumpLog("[PyClipGrade constructor] Get VXHvnDspAgent addr=0x%X",
                static_cast<unsigned int>(reinterpret_cast<uintptr_t>(agent)));
    }
    m_fnStartImageEngine(imageRetouchDllPath, createBufferAgent);
    m_fnBringUpAgents(agentPassed, createBufferAgent);
    m_fnSettlePixelDepth();

    // The selection engine; a failure is logged by the loader and leaves
    // the smart selection without an object.
    m_ZenodorLoader.LoadZenodor();
    if (startCallbackThread) {
        m_fnStartCallbackThread();
    }

    DumpLog("PyClipGrade::PyClipGrade() end\n");
}

void PyClipGrade::m_fnBringUpAgents(bool agentPassed, BOOL createBufferAgent) {
    if (agentPassed && !createBufferAgent) {
        // A second handle on an existing engine loads nothing.
        return;
    }
    const std::wstring hostDirectory = pcg::platform::HostDirectory();
    const std::wstring agentPath = pcg::platform::JoinHostPath(hostDirectory, kDspAgentRelativePath);
    const std::wstring iompPath = pcg::platform::JoinHostPath(hostDirectory, kIompRelativePath);
    DumpLogW(L"PyClipGrade::PyClipGrade path of DspAgent=%ls, libiomp5md=%ls", agentPath.c_str(), iompPath.c_str());

    // Neither load is tested: a missing library leaves its handle null.
    m_hIompDll = pcg::platform::LoadModule(iompPath.c_str());
    m_hDspAgentDll = pcg::platform::LoadModule(agentPath.c_str());

    auto createAgent = reinterpret_cast<CreateHvnDspAgentFn>(
        pcg::platform::FindSymbol(m_hDspAgentDll, kCreateHvnDspAgentName));
    if (createAgent == nullptr) {
        return;
    }
    if (!agentPassed) {
        DumpLog("PyClipGrade::PyClipGrade PyClipGrade Initial DspMain");
        m_dspAgent = createAgent("DspMain", 0, nullptr);
        if (m_dspAgent != nullptr) m_dspAgent->SetImageRetouchMgr(m_pImageRetouchMgr);
        pcg::facade::RegisterHeldAgent(m_dspAgent);
    }
    if (createBufferAgent) {
        DumpLog("PyClipGrade::PyClipGrade PyClipGrade Initial DspBuf");
        m_dspBufAgent = createAgent("DspBuf", 0, nullptr);
        if (m_dspBufAgent != nullptr) m_dspBufAgent->SetImageRetouchMgr(m_pImageRetouchMgr);
    }
}

PyClipGrade::~PyClipGrade() {
    DumpLog("PyClipGrade::~PyClipGrade() enter\n");
    // With the interpreter lock still held, so the callable's reference can drop.
    SetCallback(nullptr);
    {
        // A callback thread inside the script function, or waiting for the
        // interpreter lock, must be able to finish while this thread waits.
        PyGilUnlockScope unlock;
        if (m_dspAgent != nullptr) {
            m_dspAgent->SetCallbackQueue(nullptr);
        }
        m_fnStopCallbackThread();
        m_fnSettleUnreadEvents();
        m_ippFunctions.Unload();
        m_fnFreeSelectionBuffers();
        m_fnReleaseAgents();
        m_fnReleaseCacheFrames();
        // The engine goes back through its manager's worker; its library
        // stays loaded until the release is done.
        m_fnReleaseImageEngine();
        m_fnFreeImageRetouchLibrary();
        m_fnFreeAgentLibraries();
        if (pcg::platform::UnloadModule(m_hPassedAgentCode) == 1) {
            m_hPassedAgentCode = nullptr;
        }
        DumpLog("PyClipGrade::~PyClipGrade() end\n");
    }
    pcg::events::FreeCallbackRing(&m_callbackQueue);
    pcg::events::ForgetFacade(this);
}

void PyClipGrade::m_fnSettleUnreadEvents() {
    // Items nobody will read any more: their frames would be lost with the ring.
    DspCallbackItem item{};
    while (pcg::events::TakeCallbackItem(&m_callbackQueue, &item, 0) == pcg::platform::kWaitObject0) {
        if (item.pFrame != nullptr) {
            DumpLog("PyClipGrade::~PyClipGrade an unread event (command %d) lets its frame go", item.nCommand);
            item.pFrame->Release();
        }
    }
}

bool PyClipGrade::SetPyCallback(PyObject* callback) {
    SetCallback(callback == Py_None ? nullptr : callback);
    return true;
}

void PyClipGrade::m_fnReleaseAgents() {
    if (m_dspAgent != nullptr) {
        pcg::facade::UnregisterHeldAgent(m_dspAgent);
        m_dspAgent->Release();
        m_dspAgent = nullptr;
    }
    if (m_dspBufAgent != nullptr) {
        m_dspBufAgent->Release();
        m_dspBufAgent = nullptr;
    }
}

void PyClipGrade::m_fnFreeAgentLibraries() {
    // The runtime goes last because it came first. A handle is nulled only
    // when its unload said yes.
    if (pcg::platform::UnloadModule(m_hDspAgentDll) == 1) {
        m_hDspAgentDll = nullptr;
    }
    if (pcg::platform::UnloadModule(m_hIompDll) == 1) {
        m_hIompDll = nullptr;
    }
}

PyObject* PyClipGrade::GetDspAgentPtr() {
    // The pointer in hexadecimal behind "0x", so that the receiving constructor
    // reads it back in base 0 whatever the C library's "%p" writes (glibc
    // writes "(nil)" for null).
    char text[64];
    std::snprintf(text, sizeof(text), "%s0x%llx", kAgentTextMarker,
                  static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(m_dspAgent)));
    return PyString_FromString(text);
}

void PyClipGrade::m_fnFreeSelectionBuffers() {
    pcg::facade::FreeMaskArray(m_selectionBufData.pBuffer);
    m_selectionBufData.pBuffer = nullptr;
    m_fnFreeSelectionMask();
    // A smart selection left open holds its picture in the engine; it goes
    // back before the loader frees the library under it.
    if (m_MagicSelection.m_pMagicSelection) m_MagicSelection.Uninitialize(&m_ZenodorLoader);
}
