// Component objects on POSIX: the apartment is a per-thread count, the
// registered classes come from the settings file's class table with the
// reference image engine's library behind it, and the stop message, which
// nobody could answer, is written out instead of shown.
#include "platform/platform.h"

#include <syslog.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <mutex>
#include <string>
#include <vector>

#include "engine/com_contract.h"
#include "platform/posix/text.h"

namespace pcg {
namespace platform {

namespace {

thread_local int t_nApartmentDepth = 0;

constexpr int32_t kNotInitialized = static_cast<int32_t>(0x800401F0u);
constexpr int32_t kClassNotRegistered = static_cast<int32_t>(0x80040154u);
constexpr int32_t kModuleNotFound = static_cast<int32_t>(0x8007007Eu);
constexpr int32_t kInvalidArg = static_cast<int32_t>(0x80070057u);
constexpr int32_t kPointer = static_cast<int32_t>(0x80004003u);

const wchar_t kClassesKey[] = L"Classes";
const wchar_t kFallbackLibrary[] = L"Kernel\\ImageRetouch\\ImageRetouch.dll";

using Guid = pcg::engine::ComGuid;

std::wstring ClassName(const Guid& clsid) {
    wchar_t text[64];
    std::swprintf(text, 64, L"{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", clsid.Data1, clsid.Data2,
                  clsid.Data3, clsid.Data4[0], clsid.Data4[1], clsid.Data4[2], clsid.Data4[3], clsid.Data4[4],
                  clsid.Data4[5], clsid.Data4[6], clsid.Data4[7]);
    return text;
}

// The class table's entry: true with the relative path when the class has a
// value (an empty path when it is registered as nobody's).
bool LookUpClass(const Guid& clsid, std::wstring* relative) {
    SettingsKey key = nullptr;
    if (OpenSettingsKey(LocalMachineKey(), kClassesKey, kKeyRead, &key) != kErrorSuccess) return false;
    const std::wstring name = ClassName(clsid);
    uint32_t type = 0;
    uint32_t size = 0;
    bool found = false;
    if (QuerySettingsValue(key, name.c_str(), &type, nullptr, &size) == kErrorSuccess && type == kRegSz) {
        std::vector<uint8_t> bytes(size + 4, 0);
        if (QuerySettingsValue(key, name.c_str(), &type, bytes.data(), &size) == kErrorSuccess) {
            relative->clear();
            // UTF-16LE up to its terminator.
            for (uint32_t i = 0; i + 1 < size; i += 2) {
                const wchar_t c = static_cast<wchar_t>(bytes[i] | (bytes[i + 1] << 8));
                if (c == 0) break;
                relative->push_back(c);
            }
            found = true;
        }
    }
    CloseSettingsKey(key);
    return found;
}

// Libraries that served a class stay loaded for the process, as COM keeps
// them; each path is loaded once.
std::mutex g_servedLock;
std::vector<std::pair<std::wstring, ModuleHandle>>& ServedLibraries() {
    static std::vector<std::pair<std::wstring, ModuleHandle>> libraries;
    return libraries;
}

ModuleHandle ServingLibrary(const std::wstring& path) {
    std::lock_guard<std::mutex> guard(g_servedLock);
    for (const auto& entry : ServedLibraries()) {
        if (entry.first == path) return entry.second;
    }
    ModuleHandle module = LoadModule(path.c_str());
    if (module != nullptr) ServedLibraries().emplace_back(path, module);
    return module;
}

}  // namespace

int32_t EnterApartment() { return t_nApartmentDepth++ == 0 ? 0 : 1; }

void LeaveApartment() {
    if (t_nApartmentDepth > 0) --t_nApartmentDepth;
}

bool InApartment() { return t_nApartmentDepth > 0; }

int32_t CreateRegisteredInstance(const void* clsid, const void* iid, void** ppv) {
    if (ppv == nullptr) return kPointer;
    *ppv = nullptr;
    if (clsid == nullptr || iid == nullptr) return kInvalidArg;
    if (!InApartment()) return kNotInitialized;
    const Guid& classId = *static_cast<const Guid*>(clsid);
    std::wstring relative;
    if (!LookUpClass(classId, &relative)) relative = kFallbackLibrary;
    if (relative.empty()) return kClassNotRegistered;
    ModuleHandle module = ServingLibrary(JoinHostPath(HostDirectory(), relative));
    if (module == nullptr) return kModuleNotFound;
    auto getClassObject = reinterpret_cast<DllGetClassObjectFn>(FindSymbol(module, kDllGetClassObjectName));
    if (getClassObject == nullptr) return kClassNotRegistered;
    void* factoryObject = nullptr;
    int32_t hr = getClassObject(classId, pcg::engine::IID_IClassFactory, &factoryObject);
    if (hr < 0 || factoryObject == nullptr) return kClassNotRegistered;
    auto* factory = static_cast<IComClassFactory*>(factoryObject);
    hr = factory->CreateInstance(nullptr, *static_cast<const Guid*>(iid), ppv);
    factory->Release();
    return hr;
}

int32_t ShowStopMessage(const wchar_t* text, const wchar_t* caption) {
    const std::wstring line = std::wstring(L"[MessageBox] ") + (caption != nullptr ? caption : L"") + L": " +
                              (text != nullptr ? text : L"") + L"\n";
    const std::string utf8 = posix::Utf8FromWide(line);
    syslog(LOG_USER | LOG_ERR, "%s", utf8.c_str());
    DebugOutputW(line.c_str());
    return 1;  // IDOK
}

}  // namespace platform
}  // namespace pcg

namespace pcg {
namespace platform {

bool StartGdiplus(uintptr_t* token) {
    if (token != nullptr) *token = 0;
    return false;
}

void StopGdiplus(uintptr_t) {}

}  // namespace platform
}  // namespace pcg
