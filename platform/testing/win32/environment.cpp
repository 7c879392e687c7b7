#include "platform/testing/environment.h"

#include <windows.h>

#include <vector>

namespace pcg {
namespace platform_testing {

// The Windows environment block, which the platform layer reads, not the C
// runtime's copy.
bool SetEnvironmentValue(const char* name, const char* value) { return SetEnvironmentVariableA(name, value) != FALSE; }

bool UnsetEnvironmentValue(const char* name) {
    return SetEnvironmentVariableA(name, nullptr) != FALSE || GetLastError() == ERROR_ENVVAR_NOT_FOUND;
}

bool GetEnvironmentValue(const char* name, std::string* value) {
    const DWORD needed = GetEnvironmentVariableA(name, nullptr, 0);
    if (needed == 0) return false;
    std::vector<char> buffer(needed);
    const DWORD length = GetEnvironmentVariableA(name, buffer.data(), needed);
    if (length >= needed) return false;
    value->assign(buffer.data(), length);
    return true;
}

}  // namespace platform_testing
}  // namespace pcg
