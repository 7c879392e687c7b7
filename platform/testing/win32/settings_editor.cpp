// The real registry below HKEY_LOCAL_MACHINE (under Wine, the prefix's).
#include "platform/testing/settings_editor.h"

#include <windows.h>

namespace pcg {
namespace platform_testing {

bool SetSettingsValue(const std::wstring& keyPath, const std::wstring& name, uint32_t type, const void* data,
                      uint32_t size) {
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, keyPath.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr) !=
        ERROR_SUCCESS) {
        return false;
    }
    const LSTATUS status = RegSetValueExW(key, name.c_str(), 0, type, static_cast<const BYTE*>(data), size);
    RegCloseKey(key);
    return status == ERROR_SUCCESS;
}

bool SetSettingsDword(const std::wstring& keyPath, const std::wstring& name, uint32_t value) {
    return SetSettingsValue(keyPath, name, REG_DWORD, &value, sizeof(value));
}

bool DeleteSettingsValue(const std::wstring& keyPath, const std::wstring& name) {
    HKEY key = nullptr;
    const LSTATUS opened = RegOpenKeyExW(HKEY_LOCAL_MACHINE, keyPath.c_str(), 0, KEY_SET_VALUE, &key);
    if (opened == ERROR_FILE_NOT_FOUND) return true;
    if (opened != ERROR_SUCCESS) return false;
    const LSTATUS status = RegDeleteValueW(key, name.c_str());
    RegCloseKey(key);
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

bool DeleteSettingsKey(const std::wstring& keyPath) {
    const LSTATUS status = RegDeleteTreeW(HKEY_LOCAL_MACHINE, keyPath.c_str());
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

}  // namespace platform_testing
}  // namespace pcg

namespace pcg {
namespace platform_testing {

bool RegisteredClassesFollowSettings() { return false; }

}  // namespace platform_testing
}  // namespace pcg
