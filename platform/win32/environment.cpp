#include "platform/platform.h"

#include <windows.h>

#include <vector>

namespace pcg {
namespace platform {

bool ReadEnvironmentVariable(const wchar_t* name, std::wstring* value) {
    if (name == nullptr || value == nullptr) return false;
    SetLastError(ERROR_SUCCESS);
    const DWORD needed = GetEnvironmentVariableW(name, nullptr, 0);
    if (needed == 0) {
        if (GetLastError() == ERROR_ENVVAR_NOT_FOUND) return false;
        value->clear();   // set to the empty text
        return true;
    }
    std::vector<wchar_t> buffer(needed);
    const DWORD length = GetEnvironmentVariableW(name, buffer.data(), needed);
    if (length >= needed) return false;
    value->assign(buffer.data(), length);
    return true;
}

}  // namespace platform
}  // namespace pcg
