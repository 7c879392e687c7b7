// Test helper: the diagnostic log switched on to the debugger stream for one
// case, and a look for a line among what it wrote.
#pragma once

#include <string>

#include "platform/testing/settings_editor.h"
#include "runtime/dump_log.h"
#include "tests/unit/runtime/log_capture.h"

class LogOn {
public:
    LogOn() {
        pcg::platform_testing::SetSettingsDword(kProductKey, L"DumpMsg", 1);
        pcg::platform_testing::SetSettingsDword(kProductKey, L"DumpInETW", 0);
        DumpConfigure("PyClipGrade", nullptr, nullptr, nullptr);
        Captured().Start();
    }
    ~LogOn() {
        Captured().Stop();
        // A missing key leaves the switches as they were: turn them off first.
        pcg::platform_testing::SetSettingsDword(kProductKey, L"DumpMsg", 0);
        DumpConfigure("PyClipGrade", nullptr, nullptr, nullptr);
        pcg::platform_testing::DeleteSettingsKey(kProductKey);
    }
    LogOn(const LogOn&) = delete;
    LogOn& operator=(const LogOn&) = delete;

    // How many written lines are exactly "[PyClipGrade] " + text + "\n"
    // (narrow or wide).
    static int Count(const std::string& text) {
        const std::string line = "[PyClipGrade] " + text + "\n";
        std::lock_guard<std::mutex> guard(Captured().m_mutex);
        int count = 0;
        for (const auto& narrow : Captured().m_debugNarrow) count += narrow == line ? 1 : 0;
        for (const auto& wide : Captured().m_debugWide) {
            std::string ascii;
            for (wchar_t c : wide) ascii.push_back(static_cast<char>(c));
            count += ascii == line ? 1 : 0;
        }
        return count;
    }

private:
    static constexpr const wchar_t* kProductKey = L"SoftWare\\Verimont\\Huevane5";
};
