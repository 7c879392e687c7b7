// The built-in stand-in for the system trace library "advapi32.dll": a pseudo
// module whose EventRegister / EventWriteString / EventUnregister keep the ETW
// signatures and write to syslog. Tests watch it through a hook.
#pragma once

#include "platform/platform.h"

namespace pcg {
namespace platform {
namespace posix {

// True for the name that LoadModuleNarrow answers with the pseudo module.
bool IsTraceModuleName(const char* name);
ModuleHandle TraceModuleHandle();
void* FindTraceSymbol(const char* name);

// Test seam. While a hook is set, written texts go to it instead of syslog;
// registrations and unregistrations are reported too.
struct TraceModuleHook {
    void (*onRegister)(const TraceGuid* provider, TraceRegHandle handle);
    void (*onWrite)(TraceRegHandle handle, uint8_t level, uint64_t keyword, const wchar_t* text);
    void (*onUnregister)(TraceRegHandle handle);
};
void SetTraceModuleHook(const TraceModuleHook* hook);

}  // namespace posix
}  // namespace platform
}  // namespace pcg
