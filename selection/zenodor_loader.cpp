#include "selection/zenodor_loader.h"

#include <string>

#include "runtime/dump_log.h"
#include "engine/result_codes.h"

ZenodorLoader::ZenodorLoader()
    : m_hZenodorLibrary(nullptr),
      m_pZenodorCreateZenodorObject(nullptr),
      m_pZenodorReleaseZenodorObject(nullptr) {}

ZenodorLoader::~ZenodorLoader() {
    m_pZenodorCreateZenodorObject = nullptr;
    m_pZenodorReleaseZenodorObject = nullptr;
    if (m_hZenodorLibrary) {
        pcg::platform::UnloadModule(m_hZenodorLibrary);
        m_hZenodorLibrary = nullptr;
    }
}

int32_t ZenodorLoader::LoadZenodor() {
    const int32_t hr = m_fnLoadZenodor();
    if (hr < 0) DumpLog("ZenodorLoader::LoadZenodor m_fnLoadZenodor() , failed hr=0x%08X\n", static_cast<unsigned>(hr));
    return hr;
}

int32_t ZenodorLoader::m_fnLoadZenodor() {
    if (m_hZenodorLibrary) {
        DumpLog("[m_fnLoadZenodor] zenodor has existed");
        return pcg::kResultOk;
    }
    const std::wstring path = pcg::platform::JoinHostPath(pcg::platform::HostDirectory(),
                                                          L"Kernel\\ImageRetouch\\Zenodor.dll");
    m_hZenodorLibrary = pcg::platform::LoadModuleFromItsFolder(path.c_str());
    if (!m_hZenodorLibrary) {
        DumpLog("ZenodorLoader::m_fnLoadZenodor Null Pointer : m_hZenodorLibrary\n");
        return pcg::kResultPointer;
    }
    m_pZenodorCreateZenodorObject = reinterpret_cast<PFN_CreateZenodorObject>(
        pcg::platform::FindSymbol(m_hZenodorLibrary, "CreateZenodorObject"));
    if (!m_pZenodorCreateZenodorObject) {
        DumpLog("ZenodorLoader::m_fnLoadZenodor Null Pointer : m_pZenodorCreateZenodorObject\n");
        return pcg::kResultPointer;
    }
    m_pZenodorReleaseZenodorObject = reinterpret_cast<PFN_ReleaseZenodorObject>(
        pcg::platform::FindSymbol(m_hZenodorLibrary, "ReleaseZenodorObject"));
    if (!m_pZenodorReleaseZenodorObject) {
        DumpLog("ZenodorLoader::m_fnLoadZenodor Null Pointer : m_pZenodorReleaseZenodorObject\n");
        return pcg::kResultPointer;
    }
    return pcg::kResultOk;
}

int32_t ZenodorLoader::CreateMagicSelection(void** ppMagicSelection) {
    const int32_t hr = m_fnLoadZenodor();
    if (hr < 0) {
        DumpLog("ZenodorLoader::CreateMagicSelection m_fnLoadZenodor() , failed hr=0x%08X\n", static_cast<unsigned>(hr));
        return hr;
    }
    if (!ppMagicSelection) {
        DumpLog("ZenodorLoader::CreateMagicSelection Null Pointer : ppMagicSelection\n");
        return pcg::kResultPointer;
    }
    // A library held from an earlier, partly failed load may lack the factory.
    if (!m_pZenodorCreateZenodorObject) {
        DumpLog("ZenodorLoader::CreateMagicSelection Null Pointer : m_pZenodorCreateZenodorObject\n");
        return pcg::kResultPointer;
    }
    const int32_t hrCreate = m_pZenodorCreateZenodorObject(&IID_IMagicSelection, ppMagicSelection);
    if (!*ppMagicSelection) {
        DumpLog("ZenodorLoader::CreateMagicSelection Null Pointer : pMagicSelection\n");
        return pcg::kResultPointer;
    }
    return hrCreate;
}

int32_t ZenodorLoader::ReleaseMagicSelection(void** ppMagicSelection) {
    if (!m_pZenodorReleaseZenodorObject) {
        DumpLog("ZenodorLoader::ReleaseMagicSelection Null Pointer : m_pZenodorReleaseZenodorObject\n");
        return pcg::kResultPointer;
    }
    return m_pZenodorReleaseZenodorObject(ppMagicSelection);
}
