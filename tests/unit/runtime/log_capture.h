// Test helper: what the diagnostic log handed to each destination. The
// debugger stream is caught through the platform's hook; the system trace
// through the log's observer, which reports each call that really went to the
// bound EventRegister / EventWriteString / EventUnregister.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "platform/platform.h"

struct TraceWrite {
    const void* m_pFunction;
    uint64_t m_handle;
    uint8_t m_level;
    uint64_t m_keyword;
    std::wstring m_strText;
    uint32_t m_result;
};

struct LogCapture {
    std::mutex m_mutex;
    std::vector<std::string> m_debugNarrow;
    std::vector<std::wstring> m_debugWide;
    std::vector<uint64_t> m_registered;
    std::vector<uint32_t> m_registerResults;
    std::vector<const void*> m_registerFunctions;
    std::vector<pcg::platform::TraceGuid> m_registerProviders;
    std::vector<TraceWrite> m_traceWrites;
    std::vector<uint64_t> m_unregistered;
    std::vector<const void*> m_unregisterFunctions;

    // Installs both hooks, forgetting what was caught before; keeps the
    // system trace out of the machine's log meanwhile.
    void Start();
    // Removes both hooks.
    void Stop();
    size_t LinesToDebugger();
};

LogCapture& Captured();

// The function of that name in the system trace library, as the log binds it.
const void* SystemTraceFunction(const char* name);
