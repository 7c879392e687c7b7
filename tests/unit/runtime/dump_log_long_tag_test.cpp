// Runs in a process of its own: the first configure carries a tag too long
// for the prefixes, so they stay empty.
#include <gtest/gtest.h>

#include <string>

#include "platform/testing/settings_editor.h"
#include "runtime/dump_log.h"
#include "tests/unit/runtime/log_capture.h"

using namespace pcg::platform_testing;

namespace {

TEST(DumpLogLongTag, TagOf64CharactersLeavesLinesWithoutPrefix) {
    ASSERT_TRUE(SetSettingsDword(L"SoftWare\\Verimont\\Huevane5", L"DumpMsg", 1));
    DumpConfigure(std::string(64, 'T').c_str(), nullptr, nullptr, nullptr);
    DeleteSettingsKey(L"SoftWare\\Verimont\\Huevane5");
    EXPECT_STREQ(DumpGetState().narrowPrefix, "");
    EXPECT_EQ(std::wstring(DumpGetState().widePrefix), L"");
    Captured().Start();
    DumpLog("PyClipGrade::PyClipGrade() enter\n");
    DumpLogW(L"wide\n");
    Captured().Stop();
    ASSERT_EQ(Captured().m_debugNarrow.size(), 1u);
    EXPECT_EQ(Captured().m_debugNarrow[0], "PyClipGrade::PyClipGrade() enter\n\n");
    ASSERT_EQ(Captured().m_debugWide.size(), 1u);
    EXPECT_EQ(Captured().m_debugWide[0], L"wide\n\n");
}

}  // namespace
