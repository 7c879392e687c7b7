// Libraries and the host folder on Windows.
#include "platform/platform.h"

#include <windows.h>
#include <shlwapi.h>

#include <vector>

namespace pcg {
namespace platform {

namespace {

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

std::wstring StripTrailingSeparators(std::wstring path) {
    // A drive root keeps its backslash.
    while (path.size() > 1 && IsSeparator(path.back()) && !(path.size() == 3 && path[1] == L':')) path.pop_back();
    return path;
}

// Under Wine a Unix path ("/work/...") can stand in the variable; Wine names
// its DOS form. Elsewhere such a path is taken as written.
std::wstring DosPathOf(const std::wstring& path) {
    if (path.empty() || path[0] != L'/') return path;
    using WineDosNameFn = WCHAR*(CDECL*)(LPCSTR);
    auto fnDosName = reinterpret_cast<WineDosNameFn>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_dos_file_name")));
    if (fnDosName == nullptr) return path;
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, path.c_str(), -1, nullptr, 0, nullptr, nullptr);
    if (bytes <= 0) return path;
    std::vector<char> unixPath(static_cast<size_t>(bytes));
    WideCharToMultiByte(CP_UTF8, 0, path.c_str(), -1, unixPath.data(), bytes, nullptr, nullptr);
    WCHAR* dos = fnDosName(unixPath.data());
    if (dos == nullptr) return path;
    std::wstring result(dos);
    HeapFree(GetProcessHeap(), 0, dos);
    return result;
}

}  // namespace

std::wstring HostDirectory() {
    std::wstring overridden;
    if (ReadEnvironmentVariable(L"PYCLIPGRADE_HOST_DIR", &overridden) && !overridden.empty()) return StripTrailingSeparators(DosPathOf(overridden));
    std::vector<wchar_t> buffer(MAX_PATH);
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
        if (length == 0) return std::wstring();
        if (length < buffer.size()) break;
        buffer.resize(buffer.size() * 2);
    }
    PathRemoveFileSpecW(buffer.data());
    return buffer.data();
}

std::wstring JoinHostPath(const std::wstring& folder, const std::wstring& relative) {
    return folder + L"\\" + relative;
}

ModuleHandle LoadModule(const wchar_t* path) {
    if (path == nullptr || path[0] == L'\0') return nullptr;
    return LoadLibraryW(path);
}

ModuleHandle LoadModuleFromItsFolder(const wchar_t* path) {
    if (path == nullptr || path[0] == L'\0') return nullptr;
    return LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

ModuleHandle LoadModuleNarrow(const char* name) {
    if (name == nullptr || name[0] == '\0') return nullptr;
    return LoadLibraryA(name);
}

void* FindSymbol(ModuleHandle module, const char* name) {
    if (module == nullptr || name == nullptr) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

ModuleHandle AcquireModuleOfAddress(const void* address) {
    HMODULE module = nullptr;
    if (address == nullptr ||
        !GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, static_cast<LPCWSTR>(address), &module)) {
        return nullptr;
    }
    return module;
}

int UnloadModule(ModuleHandle module) {
    if (module == nullptr) return 0;
    return FreeLibrary(static_cast<HMODULE>(module)) ? 1 : 0;
}

}  // namespace platform
}  // namespace pcg
