// Runs in a process of its own: the log must never have been configured.
#include <gtest/gtest.h>

#include "platform/testing/settings_editor.h"
#include "runtime/dump_log.h"
#include "tests/unit/runtime/log_capture.h"

using namespace pcg::platform_testing;

namespace {

TEST(DumpLogFresh, LinesBeforeConfigureWriteNothing) {
    ASSERT_TRUE(SetSettingsDword(L"SoftWare\\Verimont\\Huevane5", L"DumpMsg", 1));
    Captured().Start();
    DumpLog("PyClipGrade::PyClipGrade() enter\n");
    DumpLogW(L"wide\n");
    Captured().Stop();
    DeleteSettingsKey(L"SoftWare\\Verimont\\Huevane5");
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
    EXPECT_TRUE(Captured().m_traceWrites.empty());
    const DumpLogState state = DumpGetState();
    EXPECT_FALSE(state.dumpMessage);
    EXPECT_FALSE(state.dumpInEtw);
    EXPECT_EQ(state.providerHandle, 0u);
    EXPECT_STREQ(state.narrowPrefix, "");
}

}  // namespace
