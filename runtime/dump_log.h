// The diagnostic trace: off unless the settings store switches it on, one
// narrow and one wide printf-style entry, two destinations (the debugger
// stream or the system trace). Safe on any thread; with the trace off a call
// tests one flag and returns.
#pragma once

#include <cstdint>

namespace pcg {
namespace platform {
struct TraceGuid;
}
}  // namespace pcg

// tag: "PyClipGrade" from the facade; subKey and valueName usually null;
// rootKey: the facade's fifth argument, null for the product key.
void DumpConfigure(const char* tag, const wchar_t* subKey, const wchar_t* valueName,
                   const wchar_t* rootKey);

void DumpLog(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

void DumpLogW(const wchar_t* format, ...);

// What the module's unload handler runs; exposed so tests can run it too.
void DumpUnload();

// Read-only view of the trace's process-wide state, for tests.
struct DumpLogState {
    bool dumpMessage;
    bool dumpInEtw;
    bool traceLibraryLoaded;
    bool eventRegisterBound;
    bool eventWriteStringBound;
    bool eventUnregisterBound;
    uint64_t providerHandle;
    char narrowPrefix[64];
    wchar_t widePrefix[64];
};
DumpLogState DumpGetState();

// Test seam on the trace destination. While set, each call that the log makes
// to a function it bound from the system trace library is reported after that
// function returned, with the function called and its own result (and, for
// EventRegister, the provider it was given); a report
// therefore proves that the real EventRegister / EventWriteString /
// EventUnregister ran, and which one (tests compare it with the symbol of the
// system trace library). On POSIX that library is the platform layer's
// built-in pseudo module, on Windows advapi32.dll itself.
struct DumpTraceObserver {
    void (*onRegister)(const void* function, const pcg::platform::TraceGuid* provider, uint64_t providerHandle,
                       uint32_t result);
    void (*onWrite)(const void* function, uint64_t providerHandle, uint8_t level, uint64_t keyword,
                    const wchar_t* text, uint32_t result);
    void (*onUnregister)(const void* function, uint64_t providerHandle, uint32_t result);
};
void DumpSetTraceObserver(const DumpTraceObserver* observer);
