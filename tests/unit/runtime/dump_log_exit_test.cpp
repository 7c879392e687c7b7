#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "platform/testing/settings_editor.h"
#include "runtime/dump_log.h"

using namespace pcg::platform_testing;

namespace {

const DumpTraceObserver kPrintingObserver = {
    nullptr,
    nullptr,
    [](const void*, uint64_t handle, uint32_t result) {
        std::fprintf(stderr, "unregistered %" PRIu64 " result %u\n", handle, result);
        std::fflush(stderr);
    },
};

// The handler registered at load time runs when the process ends: a child
// process configures the trace (exit code 3 when no provider handle came
// back), exits, and reports the unregistration of its non-zero handle.
TEST(DumpLogExit, UnloadHandlerUnregistersAtProcessExit) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            SetSettingsDword(L"SoftWare\\Verimont\\Huevane5", L"DumpMsg", 0);
            SetSettingsDword(L"SoftWare\\Verimont\\Huevane5", L"DumpInETW", 1);
            DumpConfigure("PyClipGrade", nullptr, nullptr, nullptr);
            DeleteSettingsKey(L"SoftWare\\Verimont\\Huevane5");
            if (DumpGetState().providerHandle == 0) std::_Exit(3);
            DumpSetTraceObserver(&kPrintingObserver);
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "unregistered .+ result 0");
}

}  // namespace
