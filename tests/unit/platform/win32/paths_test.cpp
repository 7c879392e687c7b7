#include <gtest/gtest.h>

#include <string>

#include "platform/platform.h"
#include "platform/testing/environment.h"

using namespace pcg::platform;
using namespace pcg::platform_testing;

namespace {

TEST(WindowsPaths, JoinUsesBackslash) {
    EXPECT_EQ(JoinHostPath(L"C:\\Host", L"KESdlls\\VXHvnDspAgent.dll"), L"C:\\Host\\KESdlls\\VXHvnDspAgent.dll");
}

TEST(WindowsPaths, DosPathInVariableIsTakenAsWritten) {
    ScopedEnvironmentValue host("PYCLIPGRADE_HOST_DIR", "C:\\Some\\Where\\");
    ASSERT_TRUE(host.Applied());
    EXPECT_EQ(HostDirectory(), L"C:\\Some\\Where");
}

TEST(WindowsPaths, UnixPathInVariableIsTakenAsItsDosPath) {
    ScopedEnvironmentValue host("PYCLIPGRADE_HOST_DIR", "/some/where");
    ASSERT_TRUE(host.Applied());
    EXPECT_EQ(HostDirectory(), L"Z:\\some\\where");
}

}  // namespace
