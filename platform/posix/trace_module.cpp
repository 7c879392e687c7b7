#include "platform/posix/trace_module.h"

#include <atomic>
#include <cstring>
#include <string>
#include <strings.h>
#include <syslog.h>

#include "platform/posix/text.h"

namespace pcg {
namespace platform {
namespace posix {

namespace {

// Only trivially destructible state: the log unregisters from an exit handler.
std::atomic<const TraceModuleHook*> g_pHook{nullptr};
std::atomic<TraceRegHandle> g_nextHandle{0};
char g_moduleTag;   // its address is the pseudo module's handle

constexpr uint32_t kErrorInvalidParameterCode = 87;

int SyslogPriority(uint8_t level) {
    switch (level) {
    case 1: return LOG_CRIT;
    case 2: return LOG_ERR;
    case 3: return LOG_WARNING;
    case 4: return LOG_INFO;
    default: return LOG_DEBUG;   // 5 (verbose) and anything else
    }
}

uint32_t PCG_WINAPI TraceEventRegister(const TraceGuid* provider, void*, void*, TraceRegHandle* regHandle) {
    if (regHandle == nullptr) return kErrorInvalidParameterCode;
    *regHandle = ++g_nextHandle;   // handles start at 1 and are never reused
    if (const TraceModuleHook* hook = g_pHook.load()) {
        if (hook->onRegister) hook->onRegister(provider, *regHandle);
    }
    return 0;
}

uint32_t PCG_WINAPI TraceEventWriteString(TraceRegHandle regHandle, uint8_t level, uint64_t keyword,
                                          const wchar_t* text) {
    if (text == nullptr) return kErrorInvalidParameterCode;
    if (const TraceModuleHook* hook = g_pHook.load()) {
        if (hook->onWrite) hook->onWrite(regHandle, level, keyword, text);
        return 0;
    }
    const std::string line = Utf8FromWide(text);
    syslog(LOG_USER | SyslogPriority(level), "%s", line.c_str());
    return 0;
}

uint32_t PCG_WINAPI TraceEventUnregister(TraceRegHandle regHandle) {
    if (const TraceModuleHook* hook = g_pHook.load()) {
        if (hook->onUnregister) hook->onUnregister(regHandle);
    }
    return 0;
}

}  // namespace

bool IsTraceModuleName(const char* name) {
    return name != nullptr && strcasecmp(name, "advapi32.dll") == 0;
}

ModuleHandle TraceModuleHandle() { return &g_moduleTag; }

void* FindTraceSymbol(const char* name) {
    if (name == nullptr) return nullptr;
    if (std::strcmp(name, "EventRegister") == 0) return reinterpret_cast<void*>(&TraceEventRegister);
    if (std::strcmp(name, "EventWriteString") == 0) return reinterpret_cast<void*>(&TraceEventWriteString);
    if (std::strcmp(name, "EventUnregister") == 0) return reinterpret_cast<void*>(&TraceEventUnregister);
    return nullptr;
}

void SetTraceModuleHook(const TraceModuleHook* hook) { g_pHook.store(hook); }

}  // namespace posix
}  // namespace platform
}  // namespace pcg
