#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/platform.h"

using namespace pcg::platform;

namespace {

struct Captured {
    std::vector<std::string> m_narrow;
    std::vector<std::wstring> m_wide;
    int m_nBoth = 0;
    int m_nNeither = 0;
};
Captured g_captured;

void Capture(const char* narrow, const wchar_t* wide) {
    if (narrow != nullptr && wide != nullptr) ++g_captured.m_nBoth;
    if (narrow == nullptr && wide == nullptr) ++g_captured.m_nNeither;
    if (narrow != nullptr) g_captured.m_narrow.emplace_back(narrow);
    if (wide != nullptr) g_captured.m_wide.emplace_back(wide);
}

class DebugOutputTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_captured = Captured();
        SetDebugOutputHook(&Capture);
    }
    void TearDown() override { SetDebugOutputHook(nullptr); }
};

TEST_F(DebugOutputTest, HookTakesNarrowTextAlone) {
    DebugOutputA("narrow line\n");
    ASSERT_EQ(g_captured.m_narrow.size(), 1u);
    EXPECT_EQ(g_captured.m_narrow[0], "narrow line\n");
    EXPECT_TRUE(g_captured.m_wide.empty());
    EXPECT_EQ(g_captured.m_nBoth, 0);
    EXPECT_EQ(g_captured.m_nNeither, 0);
}

TEST_F(DebugOutputTest, HookTakesWideTextAlone) {
    DebugOutputW(L"wide line\n");
    ASSERT_EQ(g_captured.m_wide.size(), 1u);
    EXPECT_EQ(g_captured.m_wide[0], L"wide line\n");
    EXPECT_TRUE(g_captured.m_narrow.empty());
    EXPECT_EQ(g_captured.m_nBoth, 0);
}

TEST_F(DebugOutputTest, ClearedHookHearsNothing) {
    SetDebugOutputHook(nullptr);
    DebugOutputA("to the stream\n");
    DebugOutputW(L"to the stream\n");
    EXPECT_TRUE(g_captured.m_narrow.empty());
    EXPECT_TRUE(g_captured.m_wide.empty());
}

TEST_F(DebugOutputTest, NullTextIsSkipped) {
    DebugOutputA(nullptr);
    DebugOutputW(nullptr);
    EXPECT_TRUE(g_captured.m_narrow.empty());
    EXPECT_TRUE(g_captured.m_wide.empty());
    EXPECT_EQ(g_captured.m_nNeither, 0);
}

}  // namespace
