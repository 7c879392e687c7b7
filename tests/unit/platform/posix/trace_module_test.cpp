#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/posix/trace_module.h"

using namespace pcg::platform;
using namespace pcg::platform::posix;

namespace {

struct Heard {
    std::vector<TraceRegHandle> m_registered;
    std::vector<TraceGuid> m_providers;
    std::vector<std::wstring> m_texts;
    std::vector<uint8_t> m_levels;
    std::vector<uint64_t> m_keywords;
    std::vector<TraceRegHandle> m_writtenHandles;
    std::vector<TraceRegHandle> m_unregistered;
};
Heard g_heard;

const TraceModuleHook kHook = {
    [](const TraceGuid* provider, TraceRegHandle handle) {
        g_heard.m_registered.push_back(handle);
        g_heard.m_providers.push_back(*provider);
    },
    [](TraceRegHandle handle, uint8_t level, uint64_t keyword, const wchar_t* text) {
        g_heard.m_writtenHandles.push_back(handle);
        g_heard.m_levels.push_back(level);
        g_heard.m_keywords.push_back(keyword);
        g_heard.m_texts.emplace_back(text);
    },
    [](TraceRegHandle handle) { g_heard.m_unregistered.push_back(handle); },
};

class TraceModuleTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_heard = Heard();
        SetTraceModuleHook(&kHook);
        m_hModule = LoadModuleNarrow("advapi32.dll");
        ASSERT_NE(m_hModule, nullptr);
        m_fnRegister = reinterpret_cast<EventRegisterFn>(FindSymbol(m_hModule, "EventRegister"));
        m_fnWrite = reinterpret_cast<EventWriteStringFn>(FindSymbol(m_hModule, "EventWriteString"));
        m_fnUnregister = reinterpret_cast<EventUnregisterFn>(FindSymbol(m_hModule, "EventUnregister"));
        ASSERT_NE(m_fnRegister, nullptr);
        ASSERT_NE(m_fnWrite, nullptr);
        ASSERT_NE(m_fnUnregister, nullptr);
    }
    void TearDown() override {
        SetTraceModuleHook(nullptr);
        UnloadModule(m_hModule);
    }
    ModuleHandle m_hModule = nullptr;
    EventRegisterFn m_fnRegister = nullptr;
    EventWriteStringFn m_fnWrite = nullptr;
    EventUnregisterFn m_fnUnregister = nullptr;
};

const TraceGuid kGuid = {0x01020304, 0x0506, 0x0708, {9, 10, 11, 12, 13, 14, 15, 16}};

TEST_F(TraceModuleTest, EachRegistrationGetsItsOwnNonZeroHandle) {
    TraceRegHandle first = 0, second = 0;
    EXPECT_EQ(m_fnRegister(&kGuid, nullptr, nullptr, &first), 0u);
    EXPECT_EQ(m_fnRegister(&kGuid, nullptr, nullptr, &second), 0u);
    EXPECT_NE(first, 0u);
    EXPECT_NE(second, 0u);
    EXPECT_NE(first, second);
    ASSERT_EQ(g_heard.m_registered.size(), 2u);
    EXPECT_EQ(g_heard.m_registered[0], first);
    EXPECT_EQ(g_heard.m_registered[1], second);
    EXPECT_EQ(g_heard.m_providers[0].Data1, 0x01020304u);
    EXPECT_EQ(g_heard.m_providers[0].Data4[7], 16);
}

TEST_F(TraceModuleTest, WrittenTextReachesHookWithLevelAndKeyword) {
    TraceRegHandle handle = 0;
    ASSERT_EQ(m_fnRegister(&kGuid, nullptr, nullptr, &handle), 0u);
    EXPECT_EQ(m_fnWrite(handle, 5, 0, L"[PyClipGrade] line\n"), 0u);
    ASSERT_EQ(g_heard.m_texts.size(), 1u);
    EXPECT_EQ(g_heard.m_texts[0], L"[PyClipGrade] line\n");
    EXPECT_EQ(g_heard.m_levels[0], 5);
    EXPECT_EQ(g_heard.m_keywords[0], 0u);
    EXPECT_EQ(g_heard.m_writtenHandles[0], handle);
}

TEST_F(TraceModuleTest, UnregisterIsReportedWithItsHandle) {
    TraceRegHandle handle = 0;
    ASSERT_EQ(m_fnRegister(&kGuid, nullptr, nullptr, &handle), 0u);
    EXPECT_EQ(m_fnUnregister(handle), 0u);
    ASSERT_EQ(g_heard.m_unregistered.size(), 1u);
    EXPECT_EQ(g_heard.m_unregistered[0], handle);
}

TEST_F(TraceModuleTest, NullTextOrHandleAreRefused) {
    EXPECT_EQ(m_fnWrite(1, 5, 0, nullptr), 87u);
    EXPECT_EQ(m_fnRegister(&kGuid, nullptr, nullptr, nullptr), 87u);
    EXPECT_TRUE(g_heard.m_texts.empty());
    EXPECT_TRUE(g_heard.m_registered.empty());
}

TEST_F(TraceModuleTest, OtherSymbolsAreMissing) { EXPECT_EQ(FindSymbol(m_hModule, "RegOpenKeyExW"), nullptr); }

TEST_F(TraceModuleTest, PseudoModuleIsTheSameOnEveryLoad) {
    ModuleHandle again = LoadModuleNarrow("advapi32.dll");
    EXPECT_EQ(again, m_hModule);
    EXPECT_EQ(UnloadModule(again), 1);
}

}  // namespace
