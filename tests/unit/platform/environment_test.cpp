#include <gtest/gtest.h>

#include <string>

#include "platform/platform.h"
#include "platform/testing/environment.h"

using namespace pcg::platform;
using namespace pcg::platform_testing;

namespace {

const char kName[] = "PCG_PLATFORM_TEST_VARIABLE";

TEST(Environment, SetVariableReadsBack) {
    ScopedEnvironmentValue variable(kName, "main window 1");
    ASSERT_TRUE(variable.Applied());
    std::wstring value = L"unchanged";
    EXPECT_TRUE(ReadEnvironmentVariable(L"PCG_PLATFORM_TEST_VARIABLE", &value));
    EXPECT_EQ(value, L"main window 1");
}

TEST(Environment, UnsetVariableIsMissingAndLeavesValue) {
    ScopedEnvironmentValue variable(kName, nullptr);
    ASSERT_TRUE(variable.Applied());
    std::wstring value = L"unchanged";
    EXPECT_FALSE(ReadEnvironmentVariable(L"PCG_PLATFORM_TEST_VARIABLE", &value));
    EXPECT_EQ(value, L"unchanged");
}

TEST(Environment, EmptyVariableIsSetAndEmpty) {
    ScopedEnvironmentValue variable(kName, "");
    ASSERT_TRUE(variable.Applied());
    std::wstring value = L"unchanged";
    EXPECT_TRUE(ReadEnvironmentVariable(L"PCG_PLATFORM_TEST_VARIABLE", &value));
    EXPECT_EQ(value, L"");
}

TEST(Environment, ScopeRestoresThePreviousValue) {
    ScopedEnvironmentValue outer(kName, "outer");
    {
        ScopedEnvironmentValue inner(kName, "inner");
        std::wstring value;
        ASSERT_TRUE(ReadEnvironmentVariable(L"PCG_PLATFORM_TEST_VARIABLE", &value));
        EXPECT_EQ(value, L"inner");
    }
    std::wstring value;
    ASSERT_TRUE(ReadEnvironmentVariable(L"PCG_PLATFORM_TEST_VARIABLE", &value));
    EXPECT_EQ(value, L"outer");
}

TEST(Environment, NullArgumentsReadNothing) {
    std::wstring value;
    EXPECT_FALSE(ReadEnvironmentVariable(nullptr, &value));
    EXPECT_FALSE(ReadEnvironmentVariable(L"PATH", nullptr));
}

}  // namespace
