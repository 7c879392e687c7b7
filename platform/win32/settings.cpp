// The registry itself.
#include "platform/platform.h"

#include <windows.h>

namespace pcg {
namespace platform {

SettingsKey LocalMachineKey() { return HKEY_LOCAL_MACHINE; }

long OpenSettingsKey(SettingsKey root, const wchar_t* path, uint32_t access, SettingsKey* result) {
    if (result == nullptr) return kErrorInvalidParameter;
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(static_cast<HKEY>(root), path, 0, access, &key);
    *result = status == ERROR_SUCCESS ? key : nullptr;
    return status;
}

long QuerySettingsValue(SettingsKey key, const wchar_t* name, uint32_t* type, void* data, uint32_t* size) {
    static_assert(sizeof(DWORD) == sizeof(uint32_t), "DWORD is 32 bits");
    return RegQueryValueExW(static_cast<HKEY>(key), name, nullptr, reinterpret_cast<DWORD*>(type),
                            static_cast<BYTE*>(data), reinterpret_cast<DWORD*>(size));
}

long CloseSettingsKey(SettingsKey key) { return RegCloseKey(static_cast<HKEY>(key)); }

}  // namespace platform
}  // namespace pcg
