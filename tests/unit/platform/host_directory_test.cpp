#include <gtest/gtest.h>

#include <cwctype>
#include <string>

#include "platform/platform.h"
#include "platform/testing/environment.h"

using namespace pcg::platform;
using namespace pcg::platform_testing;

namespace {

const char kHostVariable[] = "PYCLIPGRADE_HOST_DIR";

bool SamePathIgnoringCase(const std::wstring& a, const std::wstring& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (std::towlower(static_cast<wint_t>(a[i])) != std::towlower(static_cast<wint_t>(b[i]))) return false;
    }
    return true;
}

bool ProbeLoadsBelowHost() {
    ModuleHandle module = LoadModule(JoinHostPath(HostDirectory(), L"testing\\PlatformProbe.dll").c_str());
    if (module == nullptr) return false;
    UnloadModule(module);
    return true;
}

TEST(HostDirectory, VariableNamesTheHostFolder) {
    ScopedEnvironmentValue host(kHostVariable, PCG_TEST_HOST_DIR);
    ASSERT_TRUE(host.Applied());
    EXPECT_TRUE(ProbeLoadsBelowHost());
    ASSERT_TRUE(SetEnvironmentValue(kHostVariable, PCG_TEST_BINARY_DIR));
    EXPECT_FALSE(ProbeLoadsBelowHost());
}

TEST(HostDirectory, TrailingSeparatorOfVariableIsDropped) {
    ScopedEnvironmentValue host(kHostVariable, PCG_TEST_HOST_DIR);
    ASSERT_TRUE(host.Applied());
    const std::wstring plain = HostDirectory();
    ASSERT_TRUE(SetEnvironmentValue(kHostVariable, PCG_TEST_HOST_DIR "/"));
    EXPECT_EQ(HostDirectory(), plain);
    EXPECT_TRUE(ProbeLoadsBelowHost());
}

TEST(HostDirectory, WithoutVariableItIsTheFolderOfTheBinary) {
    ScopedEnvironmentValue host(kHostVariable, nullptr);
    // The variable's reading of the test binary's folder is the expected text,
    // in the platform's own form of the path.
    ASSERT_TRUE(SetEnvironmentValue(kHostVariable, PCG_TEST_BINARY_DIR));
    const std::wstring expected = HostDirectory();
    ASSERT_TRUE(UnsetEnvironmentValue(kHostVariable));
    const std::wstring actual = HostDirectory();
    EXPECT_TRUE(SamePathIgnoringCase(actual, expected));
    EXPECT_FALSE(ProbeLoadsBelowHost());
}

TEST(HostDirectory, EmptyVariableCountsAsUnset) {
    ScopedEnvironmentValue host(kHostVariable, nullptr);
    ASSERT_TRUE(UnsetEnvironmentValue(kHostVariable));
    const std::wstring unset = HostDirectory();
    ASSERT_TRUE(SetEnvironmentValue(kHostVariable, ""));
    EXPECT_EQ(HostDirectory(), unset);
}

}  // namespace
