#include "tests/unit/runtime/log_capture.h"

#include "platform/platform.h"
#include "platform/testing/system_trace.h"
#include "runtime/dump_log.h"

namespace {

void OnDebugOutput(const char* narrow, const wchar_t* wide) {
    LogCapture& c = Captured();
    std::lock_guard<std::mutex> lock(c.m_mutex);
    if (narrow != nullptr) c.m_debugNarrow.emplace_back(narrow);
    if (wide != nullptr) c.m_debugWide.emplace_back(wide);
}

const DumpTraceObserver kObserver = {
    [](const void* function, const pcg::platform::TraceGuid* provider, uint64_t handle, uint32_t result) {
        LogCapture& c = Captured();
        std::lock_guard<std::mutex> lock(c.m_mutex);
        c.m_registerProviders.push_back(*provider);
        c.m_registered.push_back(handle);
        c.m_registerResults.push_back(result);
        c.m_registerFunctions.push_back(function);
    },
    [](const void* function, uint64_t handle, uint8_t level, uint64_t keyword, const wchar_t* text, uint32_t result) {
        LogCapture& c = Captured();
        std::lock_guard<std::mutex> lock(c.m_mutex);
        c.m_traceWrites.push_back(TraceWrite{function, handle, level, keyword, text, result});
    },
    [](const void* function, uint64_t handle, uint32_t) {
        LogCapture& c = Captured();
        std::lock_guard<std::mutex> lock(c.m_mutex);
        c.m_unregistered.push_back(handle);
        c.m_unregisterFunctions.push_back(function);
    },
};

}  // namespace

LogCapture& Captured() {
    static LogCapture s_capture;
    return s_capture;
}

void LogCapture::Start() {
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_debugNarrow.clear();
        m_debugWide.clear();
        m_registered.clear();
        m_registerResults.clear();
        m_registerFunctions.clear();
        m_registerProviders.clear();
        m_traceWrites.clear();
        m_unregistered.clear();
        m_unregisterFunctions.clear();
    }
    pcg::platform_testing::SilenceSystemTrace(true);
    pcg::platform::SetDebugOutputHook(&OnDebugOutput);
    DumpSetTraceObserver(&kObserver);
}

void LogCapture::Stop() {
    pcg::platform::SetDebugOutputHook(nullptr);
    DumpSetTraceObserver(nullptr);
    pcg::platform_testing::SilenceSystemTrace(false);
}

const void* SystemTraceFunction(const char* name) {
    pcg::platform::ModuleHandle module = pcg::platform::LoadModuleNarrow("advapi32.dll");
    const void* function = pcg::platform::FindSymbol(module, name);
    pcg::platform::UnloadModule(module);   // the system library stays loaded by the process
    return function;
}

size_t LogCapture::LinesToDebugger() {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_debugNarrow.size() + m_debugWide.size();
}
