// The diagnostic trace. Process-wide state only, read without a lock by every
// thread that logs: the switches and bound functions are atomics, and the
// prefixes are published as immutable pairs so a reader never sees half of one.
#include "runtime/dump_log.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace {

using namespace pcg::platform;

constexpr size_t kKeyPathChars = 260;      // 0x104, bounds the key path
constexpr size_t kPrefixChars = 64;        // bounds the tag and each prefix
constexpr size_t kLineChars = 1024;        // the formatting buffers
constexpr size_t kFormattedChars = 260;    // a line's text is cut here
constexpr uint8_t kLevelVerbose = 5;
constexpr uint64_t kKeywordNone = 0;
constexpr uint32_t kSwitchValueBytes = 4;

// {9AD3F8FA-B0D3-45A2-8E95-5D1899E0AD05}
constexpr TraceGuid kProviderGuid = {0x9AD3F8FA, 0xB0D3, 0x45A2, {0x8E, 0x95, 0x5D, 0x18, 0x99, 0xE0, 0xAD, 0x05}};

struct Prefixes {
    char m_narrow[kPrefixChars];
    wchar_t m_wide[kPrefixChars];
    // Earlier pairs stay reachable: a thread that is logging may still read one.
    const Prefixes* m_pPrevious;
};

const Prefixes g_emptyPrefixes{};
std::atomic<const Prefixes*> g_pPrefixes{&g_emptyPrefixes};

std::atomic<bool> g_bDumpMessage{false};
std::atomic<bool> g_bDumpInEtw{false};
std::atomic<uint64_t> g_providerHandle{0};
std::atomic<ModuleHandle> g_hAdvapi{nullptr};
std::atomic<EventWriteStringFn> g_fnEventWriteString{nullptr};
std::atomic<EventRegisterFn> g_fnEventRegister{nullptr};
std::atomic<EventUnregisterFn> g_fnEventUnregister{nullptr};
std::atomic<const DumpTraceObserver*> g_pObserver{nullptr};

wchar_t g_logRootKey[kKeyPathChars];

// Load time: the log root key is built and the unload handler registered.
struct LoadTime {
    LoadTime() {
        std::wcsncpy(g_logRootKey, L"SoftWare\\Verimont\\Huevane5", kKeyPathChars - 1);
        std::atexit(&DumpUnload);
    }
};
const LoadTime g_loadTime;

// Bytes widened one by one, as the "C" locale of the Windows runtime does it,
// so that no byte of a line is lost to an encoding error. Cut to fit room.
void WidenBytes(const char* text, wchar_t* out, size_t room) {
    size_t i = 0;
    for (; text[i] != '\0' && i + 1 < room; ++i) out[i] = static_cast<wchar_t>(static_cast<unsigned char>(text[i]));
    out[i] = L'\0';
}

// Appends source to the key path within its bound; false, leaving the path
// unusable, when it does not fit.
bool AppendBounded(wchar_t* path, const wchar_t* source) {
    const size_t used = std::wcslen(path);
    const size_t length = std::wcslen(source);
    if (used + length >= kKeyPathChars) return false;
    std::wmemcpy(path + used, source, length + 1);
    return true;
}

// One switch value: room for 4 bytes the first time, then whatever size the
// previous query left, since the size variable is shared and not set afresh.
// A value longer than the 4-byte variable lands in scratch room first and only
// its first 4 bytes are taken, where the variable alone would be overrun.
uint32_t ReadSwitchValue(SettingsKey key, const wchar_t* name, uint32_t* size) {
    std::vector<uint8_t> room(std::max(*size, kSwitchValueBytes), 0);
    uint32_t type = 0;
    uint32_t value = 0;
    const long result = QuerySettingsValue(key, name, &type, room.data(), size);
    if (result != kErrorSuccess) return 0;   // missing, or too long for the room
    if (*size > kSwitchValueBytes) {
        DumpLog("DumpConfigure() value of %u bytes read into scratch room, first 4 bytes taken\n", *size);
    }
    std::memcpy(&value, room.data(), kSwitchValueBytes);
    return value;
}

// "[%s] " and "[%S] " with the tag, each cut to the 64 elements of its buffer.
void PublishPrefixes(const char* tag) {
    Prefixes fresh{};
    const std::string narrow = std::string("[") + tag + "] ";
    std::memcpy(fresh.m_narrow, narrow.c_str(), std::min(narrow.size(), kPrefixChars - 1));
    wchar_t wideTag[kPrefixChars];
    WidenBytes(tag, wideTag, kPrefixChars);
    const std::wstring wide = std::wstring(L"[") + wideTag + L"] ";
    std::wmemcpy(fresh.m_wide, wide.c_str(), std::min(wide.size(), kPrefixChars - 1));
    const Prefixes* current = g_pPrefixes.load(std::memory_order_acquire);
    if (std::memcmp(current->m_narrow, fresh.m_narrow, sizeof(fresh.m_narrow)) == 0 &&
        std::wmemcmp(current->m_wide, fresh.m_wide, kPrefixChars) == 0) {
        return;
    }
    fresh.m_pPrevious = current;
    g_pPrefixes.store(new Prefixes(fresh), std::memory_order_release);
}

void BindTraceLibrary() {
    if (g_hAdvapi.load() != nullptr) return;
    ModuleHandle module = LoadModuleNarrow("advapi32.dll");
    if (module == nullptr) return;
    g_hAdvapi.store(module);
    g_fnEventWriteString.store(reinterpret_cast<EventWriteStringFn>(FindSymbol(module, "EventWriteString")));
    g_fnEventRegister.store(reinterpret_cast<EventRegisterFn>(FindSymbol(module, "EventRegister")));
    g_fnEventUnregister.store(reinterpret_cast<EventUnregisterFn>(FindSymbol(module, "EventUnregister")));
}

void RegisterProvider() {
    EventRegisterFn fnRegister = g_fnEventRegister.load();
    if (fnRegister == nullptr) return;
    TraceRegHandle handle = g_providerHandle.load();
    const uint32_t result = fnRegister(&kProviderGuid, nullptr, nullptr, &handle);
    g_providerHandle.store(handle);
    if (const DumpTraceObserver* observer = g_pObserver.load()) {
        if (observer->onRegister) {
            observer->onRegister(reinterpret_cast<const void*>(fnRegister), &kProviderGuid, handle, result);
        }
    }
}

void WriteTrace(const wchar_t* line) {
    EventWriteStringFn fnWrite = g_fnEventWriteString.load();
    if (fnWrite == nullptr) return;
    const uint64_t handle = g_providerHandle.load();
    const uint32_t result = fnWrite(handle, kLevelVerbose, kKeywordNone, line);
    if (const DumpTraceObserver* observer = g_pObserver.load()) {
        if (observer->onWrite) {
            observer->onWrite(reinterpret_cast<const void*>(fnWrite), handle, kLevelVerbose, kKeywordNone, line, result);
        }
    }
}

}  // namespace

void DumpConfigure(const char* tag, const wchar_t* subKey, const wchar_t* valueName, const wchar_t* rootKey) {
    wchar_t keyPath[kKeyPathChars] = {};
    bool pathFits = AppendBounded(keyPath, rootKey != nullptr ? rootKey : g_logRootKey);
    if (pathFits && subKey != nullptr) pathFits = AppendBounded(keyPath, L"\\") && AppendBounded(keyPath, subKey);

    SettingsKey key = nullptr;
    if (!pathFits) {
        DumpLog("DumpConfigure() key path longer than %u characters, not opened\n",
                static_cast<unsigned>(kKeyPathChars - 1));
    } else if (OpenSettingsKey(LocalMachineKey(), keyPath, kKeyQueryValue, &key) == kErrorSuccess) {
        uint32_t size = kSwitchValueBytes;
        const uint32_t message = ReadSwitchValue(key, valueName != nullptr ? valueName : L"DumpMsg", &size);
        const uint32_t inEtw = ReadSwitchValue(key, L"DumpInETW", &size);
        CloseSettingsKey(key);
        g_bDumpMessage.store(message != 0);
        g_bDumpInEtw.store(inEtw != 0);
    }

    if (!g_bDumpMessage.load() && !g_bDumpInEtw.load()) return;
    if (tag != nullptr && std::strlen(tag) < kPrefixChars) PublishPrefixes(tag);
    if (g_bDumpInEtw.load()) {
        BindTraceLibrary();
        RegisterProvider();
        g_bDumpInEtw.store(g_hAdvapi.load() != nullptr);
    }
}

void DumpLog(const char* format, ...) {
    if (!g_bDumpMessage.load(std::memory_order_relaxed)) return;
    if (format == nullptr) return;
    char text[kLineChars] = {};
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, kFormattedChars + 1, format, args);
    va_end(args);
    text[kFormattedChars] = '\0';

    std::string line = g_pPrefixes.load(std::memory_order_acquire)->m_narrow;
    line += text;
    line += '\n';
    if (!g_bDumpInEtw.load()) {
        DebugOutputA(line.c_str());
        return;
    }
    wchar_t wide[kLineChars] = {};
    WidenBytes(line.c_str(), wide, kLineChars);
    WriteTrace(wide);
}

void DumpLogW(const wchar_t* format, ...) {
    if (!g_bDumpMessage.load(std::memory_order_relaxed)) return;
    if (format == nullptr) return;
    wchar_t text[kLineChars] = {};
    va_list args;
    va_start(args, format);
    // A cut line comes back as a failure, with the first 260 characters written.
    std::vswprintf(text, kFormattedChars + 1, format, args);
    va_end(args);
    text[kFormattedChars] = L'\0';

    std::wstring line = g_pPrefixes.load(std::memory_order_acquire)->m_wide;
    line += text;
    line += L'\n';
    if (!g_bDumpInEtw.load()) {
        DebugOutputW(line.c_str());
        return;
    }
    WriteTrace(line.c_str());
}

void DumpUnload() {
    const uint64_t handle = g_providerHandle.load();
    if (handle != 0) {
        if (EventUnregisterFn fnUnregister = g_fnEventUnregister.load()) {
            const uint32_t result = fnUnregister(handle);
            if (const DumpTraceObserver* observer = g_pObserver.load()) {
                if (observer->onUnregister) {
                    observer->onUnregister(reinterpret_cast<const void*>(fnUnregister), handle, result);
                }
            }
        }
        g_providerHandle.store(0);
    }
    if (ModuleHandle module = g_hAdvapi.load()) {
        UnloadModule(module);
        g_hAdvapi.store(nullptr);
        g_fnEventWriteString.store(nullptr);
        g_fnEventRegister.store(nullptr);
        g_fnEventUnregister.store(nullptr);
    }
}

DumpLogState DumpGetState() {
    DumpLogState state{};
    state.dumpMessage = g_bDumpMessage.load();
    state.dumpInEtw = g_bDumpInEtw.load();
    state.traceLibraryLoaded = g_hAdvapi.load() != nullptr;
    state.eventRegisterBound = g_fnEventRegister.load() != nullptr;
    state.eventWriteStringBound = g_fnEventWriteString.load() != nullptr;
    state.eventUnregisterBound = g_fnEventUnregister.load() != nullptr;
    state.providerHandle = g_providerHandle.load();
    const Prefixes* prefixes = g_pPrefixes.load(std::memory_order_acquire);
    std::memcpy(state.narrowPrefix, prefixes->m_narrow, sizeof(state.narrowPrefix));
    std::memcpy(state.widePrefix, prefixes->m_wide, sizeof(state.widePrefix));
    return state;
}

void DumpSetTraceObserver(const DumpTraceObserver* observer) { g_pObserver.store(observer); }
