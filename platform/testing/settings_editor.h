// Test-only: writes the settings store that the platform layer reads, so tests
// set up the registry values a case needs. Key paths are below
// HKEY_LOCAL_MACHINE. On Windows this is the real registry (under Wine, the
// prefix's); on POSIX a temporary settings file that PYCLIPGRADE_REGISTRY is
// pointed at, rewritten at each change. Each call reports success.
#pragma once

#include <cstdint>
#include <string>

namespace pcg {
namespace platform_testing {

// Makes the key when it is missing.
bool SetSettingsDword(const std::wstring& keyPath, const std::wstring& name, uint32_t value);
// Any type with its raw bytes, e.g. REG_BINARY, REG_QWORD, or REG_SZ in UTF-16LE.
bool SetSettingsValue(const std::wstring& keyPath, const std::wstring& name, uint32_t type,
                      const void* data, uint32_t size);
// True when the value is gone afterwards, also when it was never there.
bool DeleteSettingsValue(const std::wstring& keyPath, const std::wstring& name);
// The key with its values and every key below it; true when it is gone afterwards.
bool DeleteSettingsKey(const std::wstring& keyPath);

// Whether the registered-class lookup reads the settings store's [Classes]
// table (POSIX), so that a test can unregister a class by writing an empty
// value there. On Windows the classes are COM's own registrations.
bool RegisteredClassesFollowSettings();

}  // namespace platform_testing
}  // namespace pcg
