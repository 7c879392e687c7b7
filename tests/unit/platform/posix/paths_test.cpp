#include <gtest/gtest.h>

#include <string>

#include "platform/platform.h"
#include "platform/testing/environment.h"

using namespace pcg::platform;
using namespace pcg::platform_testing;

namespace {

TEST(PosixPaths, JoinUsesSlashesThroughout) {
    EXPECT_EQ(JoinHostPath(L"/opt/host", L"KESdlls\\VXHvnDspAgent.dll"), L"/opt/host/KESdlls/VXHvnDspAgent.dll");
}

TEST(PosixPaths, WindowsPathWithDllSuffixLoadsTheSharedObject) {
    // Backslashes all through the path, as a caller on Windows would write it.
    std::wstring path = std::wstring(PCG_TEST_HOST_DIR L"") + L"\\testing\\PlatformProbe.dll";
    for (wchar_t& c : path) {
        if (c == L'/') c = L'\\';
    }
    ModuleHandle module = LoadModule(path.c_str());
    ASSERT_NE(module, nullptr);
    EXPECT_NE(FindSymbol(module, "PlatformProbeAnswer"), nullptr);
    EXPECT_EQ(UnloadModule(module), 1);
}

TEST(PosixPaths, HostDirectoryWithoutVariableIsTheBinaryFolder) {
    ScopedEnvironmentValue host("PYCLIPGRADE_HOST_DIR", nullptr);
    ASSERT_TRUE(host.Applied());
    const std::wstring folder = HostDirectory();
    const std::string expected = PCG_TEST_BINARY_DIR;
    EXPECT_EQ(folder, std::wstring(expected.begin(), expected.end()));
}

TEST(PosixPaths, HostDirectoryVariableIsTakenAsWritten) {
    ScopedEnvironmentValue host("PYCLIPGRADE_HOST_DIR", "/some/where//");
    ASSERT_TRUE(host.Applied());
    EXPECT_EQ(HostDirectory(), L"/some/where");
}

}  // namespace
