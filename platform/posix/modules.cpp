// Libraries on POSIX: Windows-style relative paths below the host folder are
// mapped onto the shared objects that the build lays out the same way.
#include "platform/platform.h"

#include <dlfcn.h>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

#include "platform/posix/text.h"
#include "platform/posix/trace_module.h"

namespace pcg {
namespace platform {

namespace {

std::string StripTrailingSeparators(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

// '\\' read as '/', and a ".dll" suffix (any case) read as ".so".
std::string PosixLibraryPath(std::string path) {
    for (char& c : path) {
        if (c == '\\') c = '/';
    }
    const size_t n = path.size();
    if (n >= 4 && strcasecmp(path.c_str() + n - 4, ".dll") == 0) path.replace(n - 4, 4, ".so");
    return path;
}

std::string BinaryPathOfThisLayer() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&HostDirectory), &info) != 0 && info.dli_fname != nullptr &&
        std::strchr(info.dli_fname, '/') != nullptr) {
        char resolved[PATH_MAX];
        if (realpath(info.dli_fname, resolved) != nullptr) return resolved;
        return info.dli_fname;
    }
    // The main program can come back without a path; the kernel knows it.
    char self[PATH_MAX];
    const ssize_t len = readlink("/proc/self/exe", self, sizeof(self) - 1);
    if (len <= 0) return std::string();
    return std::string(self, static_cast<size_t>(len));
}

}  // namespace

std::wstring HostDirectory() {
    std::wstring overridden;
    if (ReadEnvironmentVariable(L"PYCLIPGRADE_HOST_DIR", &overridden) && !overridden.empty()) {
        return posix::WideFromUtf8(StripTrailingSeparators(posix::Utf8FromWide(overridden)));
    }
    const std::string binary = BinaryPathOfThisLayer();
    const size_t slash = binary.rfind('/');
    if (slash == std::string::npos) return std::wstring();
    return posix::WideFromUtf8(slash == 0 ? std::string("/") : binary.substr(0, slash));
}

std::wstring JoinHostPath(const std::wstring& folder, const std::wstring& relative) {
    std::wstring joined = folder;
    joined += L'/';
    for (wchar_t c : relative) joined += (c == L'\\') ? L'/' : c;
    return joined;
}

ModuleHandle LoadModule(const wchar_t* path) {
    if (path == nullptr || path[0] == L'\0') return nullptr;
    const std::string file = PosixLibraryPath(posix::Utf8FromWide(path));
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

ModuleHandle LoadModuleFromItsFolder(const wchar_t* path) {
    return LoadModule(path);
}

ModuleHandle LoadModuleNarrow(const char* name) {
    if (name == nullptr || name[0] == '\0') return nullptr;
    if (posix::IsTraceModuleName(name)) return posix::TraceModuleHandle();
    const std::string file = PosixLibraryPath(name);
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* FindSymbol(ModuleHandle module, const char* name) {
    if (module == nullptr || name == nullptr) return nullptr;
    if (module == posix::TraceModuleHandle()) return posix::FindTraceSymbol(name);
    return dlsym(module, name);
}

ModuleHandle AcquireModuleOfAddress(const void* address) {
    Dl_info info{};
    if (address == nullptr || dladdr(address, &info) == 0 || info.dli_fname == nullptr) return nullptr;
    // RTLD_NOLOAD: only a library that is in the process already.
    return dlopen(info.dli_fname, RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
}

int UnloadModule(ModuleHandle module) {
    if (module == nullptr) return 0;
    if (module == posix::TraceModuleHandle()) return 1;
    return dlclose(module) == 0 ? 1 : 0;
}

}  // namespace platform
}  // namespace pcg
