#include "runtime/registry.h"

#include "runtime/dump_log.h"

using namespace pcg::platform;

namespace {
constexpr uint32_t kDwordBytes = 4;
const wchar_t kProductKey[] = L"SoftWare\\Verimont\\Huevane5";
}  // namespace

CRegistry::CRegistry(SettingsKey rootKey)
    : m_lLastResult(0), m_dwLastType(0), m_dwLastSize(0), m_hKey(rootKey) {}

CRegistry::~CRegistry() {
    if (m_hKey != nullptr) CloseSettingsKey(m_hKey);
}

bool CRegistry::m_fnOpen(SettingsKey rootKey, const wchar_t* path, int readOnly) {
    if (m_hKey != nullptr) {
        CloseSettingsKey(m_hKey);
        m_hKey = nullptr;
    }
    m_strKeyPath = path != nullptr ? path : L"";
    const uint32_t access = readOnly != 0 ? kKeyRead : kKeyAllAccess;
    m_lLastResult = static_cast<int32_t>(OpenSettingsKey(rootKey, path, access, &m_hKey));
    m_dwLastType = 0;
    m_dwLastSize = 0;
    return m_lLastResult == kErrorSuccess;
}

bool CRegistry::m_fnQueryDWORD(const wchar_t* name, uint32_t* value) {
    // The value is read into a copy of the caller's, so that a failed read,
    // whose data the system leaves undefined, cannot touch *value, while a
    // shorter value still overlays only its own bytes as the direct read would.
    uint32_t room = value != nullptr ? *value : 0;
    m_dwLastSize = kDwordBytes;
    m_lLastResult = static_cast<int32_t>(QuerySettingsValue(m_hKey, name, &m_dwLastType, &room, &m_dwLastSize));
    if (m_lLastResult != kErrorSuccess) return false;
    if (value == nullptr) {
        DumpLog("CRegistry::m_fnQueryDWORD() Null Pointer : value\n");
        return true;
    }
    *value = room;
    return true;
}

uint32_t Use16bitsColorDepth() {
    CRegistry registry(LocalMachineKey());
    registry.m_fnOpen(LocalMachineKey(), kProductKey, 1);
    uint32_t depth = 0;
    if (!registry.m_fnQueryDWORD(L"Use16bitsColorDepth", &depth)) return 1;
    return depth;
}
