// Test helper: the reference image engine library, loaded as the facade
// loads it, with its inspection entries. Loading it resets its journal and
// injected results; so does letting it go.
#pragma once

#include <cstdint>

#include "platform/platform.h"
#include "reference/retouch/ref_retouch_api.h"

namespace pcg {
namespace reftest {

const wchar_t kEngineRelativePath[] = L"Kernel\\ImageRetouch\\ImageRetouch.dll";

// The reference image engine, loaded as the facade loads it.
class RetouchLibrary {
public:
    RetouchLibrary() {
        m_hModule = pcg::platform::LoadModule(pcg::platform::JoinHostPath(pcg::platform::HostDirectory(), kEngineRelativePath).c_str());
        m_fnCounter = reinterpret_cast<RefRetouchCounterFn>(pcg::platform::FindSymbol(m_hModule, "RefRetouch_Counter"));
        m_fnReset = reinterpret_cast<RefRetouchResetFn>(pcg::platform::FindSymbol(m_hModule, "RefRetouch_Reset"));
        m_fnSetResult =
            reinterpret_cast<RefRetouchSetResultFn>(pcg::platform::FindSymbol(m_hModule, "RefRetouch_SetResult"));
        if (m_fnReset) m_fnReset();
    }
    ~RetouchLibrary() {
        if (m_fnReset) m_fnReset();
        pcg::platform::UnloadModule(m_hModule);
    }
    int64_t Counter(const char* name) const { return m_fnCounter(name); }
    void SetResult(const char* object, const char* op, double value) const { m_fnSetResult(object, op, value); }
    bool Loaded() const { return m_hModule && m_fnCounter && m_fnReset && m_fnSetResult; }

    pcg::platform::ModuleHandle m_hModule = nullptr;
    RefRetouchCounterFn m_fnCounter = nullptr;
    RefRetouchResetFn m_fnReset = nullptr;
    RefRetouchSetResultFn m_fnSetResult = nullptr;
};

}  // namespace reftest
}  // namespace pcg
