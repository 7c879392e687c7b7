// Test fixture that switches the diagnostic log on through the settings
// store and collects every narrow line it writes.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/testing/settings_editor.h"
#include "runtime/dump_log.h"

class LogCapture : public ::testing::Test {
protected:
    void SetUp() override {
        Lines().clear();
        pcg::platform_testing::SetSettingsDword(kKey, L"DumpMsg", 1);
        DumpConfigure("PyClipGrade", nullptr, nullptr, nullptr);
        pcg::platform::SetDebugOutputHook(&Capture);
    }
    void TearDown() override {
        pcg::platform::SetDebugOutputHook(nullptr);
        pcg::platform_testing::DeleteSettingsValue(kKey, L"DumpMsg");
        DumpConfigure("PyClipGrade", nullptr, nullptr, nullptr);
    }

    // True when the log wrote exactly this text as one line.
    static bool Logged(const std::string& text) {
        const std::string line = "[PyClipGrade] " + text + "\n";
        std::lock_guard<std::mutex> lock(Mutex());
        return std::find(Lines().begin(), Lines().end(), line) != Lines().end();
    }
    static size_t LineCount() {
        std::lock_guard<std::mutex> lock(Mutex());
        return Lines().size();
    }

private:
    static constexpr const wchar_t* kKey = L"SoftWare\\Verimont\\Huevane5";
    static std::vector<std::string>& Lines() {
        static std::vector<std::string> lines;
        return lines;
    }
    static std::mutex& Mutex() {
        static std::mutex mutex;
        return mutex;
    }
    static void Capture(const char* narrow, const wchar_t*) {
        if (!narrow) return;
        std::lock_guard<std::mutex> lock(Mutex());
        Lines().push_back(narrow);
    }
};
