#include <gtest/gtest.h>

#include "platform/platform.h"

using namespace pcg::platform;

namespace {

TEST(DebugStream, NarrowTextGoesToStandardError) {
    ::testing::internal::CaptureStderr();
    DebugOutputA("narrow to stderr\n");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "narrow to stderr\n");
}

TEST(DebugStream, WideTextGoesToStandardErrorAsUtf8) {
    ::testing::internal::CaptureStderr();
    DebugOutputW(L"wide \u00e9\u20ac\n");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "wide \xc3\xa9\xe2\x82\xac\n");
}

TEST(DebugStream, HookKeepsTextOffTheStream) {
    SetDebugOutputHook([](const char*, const wchar_t*) {});
    ::testing::internal::CaptureStderr();
    DebugOutputA("hooked\n");
    DebugOutputW(L"hooked\n");
    const std::string written = ::testing::internal::GetCapturedStderr();
    SetDebugOutputHook(nullptr);
    EXPECT_EQ(written, "");
}

}  // namespace
