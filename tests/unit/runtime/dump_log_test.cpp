#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/testing/settings_editor.h"
#include "runtime/dump_log.h"
#include "tests/unit/runtime/log_capture.h"

using namespace pcg::platform;
using namespace pcg::platform_testing;

namespace {

const wchar_t kProductKey[] = L"SoftWare\\Verimont\\Huevane5";
const char kTag[] = "PyClipGrade";

class DumpLogTest : public ::testing::Test {
protected:
    void SetUp() override {
        SwitchBothOff();
        DumpUnload();
        Captured().Start();
    }
    void TearDown() override {
        Captured().Stop();
        SwitchBothOff();
        DumpUnload();
    }
    // Leaves the switches off and the product key missing.
    static void SwitchBothOff() {
        ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpMsg", 0));
        ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpInETW", 0));
        DumpConfigure(kTag, nullptr, nullptr, nullptr);
        ASSERT_FALSE(DumpGetState().dumpMessage);
        ASSERT_FALSE(DumpGetState().dumpInEtw);
        ASSERT_TRUE(DeleteSettingsKey(kProductKey));
    }
    static void Configure(uint32_t dumpMsg, uint32_t dumpInEtw) {
        ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpMsg", dumpMsg));
        ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpInETW", dumpInEtw));
        DumpConfigure(kTag, nullptr, nullptr, nullptr);
    }
};

// ------------------------------------------------------------ switches

TEST_F(DumpLogTest, WithoutKeyNothingIsWrittenAndNoLibraryLoaded) {
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
    DumpLog("PyClipGrade::PyClipGrade() enter\n");
    DumpLogW(L"wide %d\n", 1);
    const DumpLogState state = DumpGetState();
    EXPECT_FALSE(state.dumpMessage);
    EXPECT_FALSE(state.dumpInEtw);
    EXPECT_FALSE(state.traceLibraryLoaded);
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
    EXPECT_TRUE(Captured().m_traceWrites.empty());
    EXPECT_TRUE(Captured().m_registered.empty());
}

TEST_F(DumpLogTest, BothValuesZeroLoadsNothingAndKeepsPrefixes) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpMsg", 1));
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
    Configure(0, 0);
    DumpConfigure("Other", nullptr, nullptr, nullptr);
    const DumpLogState state = DumpGetState();
    EXPECT_FALSE(state.traceLibraryLoaded);
    EXPECT_STREQ(state.narrowPrefix, "[PyClipGrade] ");
}

TEST_F(DumpLogTest, MissingKeyKeepsTheSwitchesAsTheyWere) {
    Configure(1, 0);
    ASSERT_TRUE(DumpGetState().dumpMessage);
    ASSERT_TRUE(DeleteSettingsKey(kProductKey));
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
    EXPECT_TRUE(DumpGetState().dumpMessage);
    DumpLog("still on\n");
    ASSERT_EQ(Captured().m_debugNarrow.size(), 1u);
    EXPECT_EQ(Captured().m_debugNarrow[0], "[PyClipGrade] still on\n\n");
}

TEST_F(DumpLogTest, MissingValuesInAnExistingKeyTurnTheSwitchesOff) {
    Configure(1, 0);
    ASSERT_TRUE(DeleteSettingsKey(kProductKey));
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Unrelated", 1));
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
    EXPECT_FALSE(DumpGetState().dumpMessage);
    DumpLog("off\n");
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
}

TEST_F(DumpLogTest, InEtwWithDumpMsgZeroRegistersButWritesNothing) {
    Configure(0, 1);
    const DumpLogState state = DumpGetState();
    EXPECT_FALSE(state.dumpMessage);
    EXPECT_TRUE(state.dumpInEtw);
    EXPECT_TRUE(state.traceLibraryLoaded);
    EXPECT_TRUE(state.eventRegisterBound);
    EXPECT_TRUE(state.eventWriteStringBound);
    EXPECT_TRUE(state.eventUnregisterBound);
    ASSERT_EQ(Captured().m_registered.size(), 1u);
    EXPECT_EQ(Captured().m_registerResults[0], 0u);
    EXPECT_NE(Captured().m_registered[0], 0u);
    EXPECT_EQ(Captured().m_registerFunctions[0], SystemTraceFunction("EventRegister"));
    EXPECT_EQ(state.providerHandle, Captured().m_registered[0]);
    DumpLog("narrow\n");
    DumpLogW(L"wide\n");
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
    EXPECT_TRUE(Captured().m_traceWrites.empty());
}

TEST_F(DumpLogTest, ProviderIsRegisteredUnderItsGuid) {
    Configure(0, 1);
    ASSERT_EQ(Captured().m_registerProviders.size(), 1u);
    const TraceGuid& guid = Captured().m_registerProviders[0];
    EXPECT_EQ(guid.Data1, 0x9AD3F8FAu);
    EXPECT_EQ(guid.Data2, 0xB0D3u);
    EXPECT_EQ(guid.Data3, 0x45A2u);
    const uint8_t data4[8] = {0x8E, 0x95, 0x5D, 0x18, 0x99, 0xE0, 0xAD, 0x05};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(guid.Data4[i], data4[i]) << "byte " << i;
}

TEST_F(DumpLogTest, InEtwWithDumpMsgMissingRegistersButWritesNothing) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpInETW", 1));
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
    EXPECT_FALSE(DumpGetState().dumpMessage);
    EXPECT_TRUE(DumpGetState().traceLibraryLoaded);
    EXPECT_EQ(Captured().m_registered.size(), 1u);
    DumpLog("narrow\n");
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
    EXPECT_TRUE(Captured().m_traceWrites.empty());
}

TEST_F(DumpLogTest, ValueOfAnotherTypeCountsByItsFirstBytes) {
    const uint8_t one[4] = {1, 0, 0, 0};
    ASSERT_TRUE(SetSettingsValue(kProductKey, L"DumpMsg", kRegBinary, one, sizeof(one)));
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
    EXPECT_TRUE(DumpGetState().dumpMessage);
}

TEST_F(DumpLogTest, AnyNonZeroValueSwitchesOn) {
    Configure(0x100, 0);
    EXPECT_TRUE(DumpGetState().dumpMessage);
}

// ------------------------------------------------------------ destinations

TEST_F(DumpLogTest, DumpMsgAloneWritesNarrowLineToDebugger) {
    Configure(1, 0);
    DumpLog("PyClipGrade::PushTask() enter %d\n", 19);
    ASSERT_EQ(Captured().m_debugNarrow.size(), 1u);
    EXPECT_EQ(Captured().m_debugNarrow[0], "[PyClipGrade] PyClipGrade::PushTask() enter 19\n\n");
    EXPECT_TRUE(Captured().m_debugWide.empty());
    EXPECT_TRUE(Captured().m_traceWrites.empty());
    EXPECT_FALSE(DumpGetState().traceLibraryLoaded);
}

TEST_F(DumpLogTest, DumpMsgAloneWritesWideLineToDebugger) {
    Configure(1, 0);
    DumpLogW(L"wide %d %ls", 7, L"text");
    ASSERT_EQ(Captured().m_debugWide.size(), 1u);
    EXPECT_EQ(Captured().m_debugWide[0], L"[PyClipGrade] wide 7 text\n");
    EXPECT_TRUE(Captured().m_debugNarrow.empty());
}

TEST_F(DumpLogTest, BothOnSendsNarrowLineToTraceOnly) {
    Configure(1, 1);
    ASSERT_EQ(Captured().m_registered.size(), 1u);
    DumpLog("PyClipGrade::PushTask() end\n");
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
    ASSERT_EQ(Captured().m_traceWrites.size(), 1u);
    const TraceWrite& write = Captured().m_traceWrites[0];
    EXPECT_EQ(write.m_strText, L"[PyClipGrade] PyClipGrade::PushTask() end\n\n");
    EXPECT_EQ(write.m_level, 5);
    EXPECT_EQ(write.m_keyword, 0u);
    EXPECT_EQ(write.m_handle, Captured().m_registered[0]);
    EXPECT_EQ(write.m_result, 0u);
    EXPECT_EQ(write.m_pFunction, SystemTraceFunction("EventWriteString"));
    EXPECT_NE(write.m_pFunction, nullptr);
}

TEST_F(DumpLogTest, BothOnSendsWideLineToTraceOnly) {
    Configure(1, 1);
    DumpLogW(L"wide %d\n", 3);
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
    ASSERT_EQ(Captured().m_traceWrites.size(), 1u);
    EXPECT_EQ(Captured().m_traceWrites[0].m_strText, L"[PyClipGrade] wide 3\n\n");
    EXPECT_EQ(Captured().m_traceWrites[0].m_level, 5);
    EXPECT_EQ(Captured().m_traceWrites[0].m_result, 0u);
}

TEST_F(DumpLogTest, NarrowBytesAboveAsciiAreWidenedOneByOneForTheTrace) {
    Configure(1, 1);
    DumpLog("\xe9\xff");
    ASSERT_EQ(Captured().m_traceWrites.size(), 1u);
    EXPECT_EQ(Captured().m_traceWrites[0].m_strText, std::wstring(L"[PyClipGrade] ") + L"\u00e9\u00ff\n");
}

// ------------------------------------------------------------ line shape

TEST_F(DumpLogTest, NarrowTextIsCutAt260Characters) {
    Configure(1, 0);
    const std::string long500(500, 'a');
    DumpLog("%s", long500.c_str());
    ASSERT_EQ(Captured().m_debugNarrow.size(), 1u);
    EXPECT_EQ(Captured().m_debugNarrow[0], "[PyClipGrade] " + std::string(260, 'a') + "\n");
}

TEST_F(DumpLogTest, NarrowTextOf260CharactersIsKeptWhole) {
    Configure(1, 0);
    const std::string exact(259, 'b');
    DumpLog("%s\n", exact.c_str());
    ASSERT_EQ(Captured().m_debugNarrow.size(), 1u);
    EXPECT_EQ(Captured().m_debugNarrow[0], "[PyClipGrade] " + exact + "\n\n");
}

TEST_F(DumpLogTest, WideTextIsCutAt260Characters) {
    Configure(1, 0);
    const std::wstring long500(500, L'w');
    DumpLogW(L"%ls", long500.c_str());
    ASSERT_EQ(Captured().m_debugWide.size(), 1u);
    EXPECT_EQ(Captured().m_debugWide[0], L"[PyClipGrade] " + std::wstring(260, L'w') + L"\n");
}

TEST_F(DumpLogTest, CutTextGoesToTheTraceCutToo) {
    Configure(1, 1);
    DumpLog("%s", std::string(500, 'c').c_str());
    ASSERT_EQ(Captured().m_traceWrites.size(), 1u);
    EXPECT_EQ(Captured().m_traceWrites[0].m_strText, L"[PyClipGrade] " + std::wstring(260, L'c') + L"\n");
}

TEST_F(DumpLogTest, PrefixesCarryTheTag) {
    Configure(1, 0);
    const DumpLogState state = DumpGetState();
    EXPECT_STREQ(state.narrowPrefix, "[PyClipGrade] ");
    EXPECT_EQ(std::wstring(state.widePrefix), L"[PyClipGrade] ");
}

TEST_F(DumpLogTest, WidePrefixIsTheNarrowTagWidened) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpMsg", 1));
    DumpConfigure("Tag\xe9", nullptr, nullptr, nullptr);
    EXPECT_EQ(std::wstring(DumpGetState().widePrefix), L"[Tag\u00e9] ");
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
}

TEST_F(DumpLogTest, TagOf64CharactersLeavesThePrefixesAsTheyWere) {
    Configure(1, 0);
    DumpConfigure(std::string(64, 'T').c_str(), nullptr, nullptr, nullptr);
    EXPECT_STREQ(DumpGetState().narrowPrefix, "[PyClipGrade] ");
    EXPECT_EQ(std::wstring(DumpGetState().widePrefix), L"[PyClipGrade] ");
    DumpLog("x\n");
    ASSERT_EQ(Captured().m_debugNarrow.size(), 1u);
    EXPECT_EQ(Captured().m_debugNarrow[0], "[PyClipGrade] x\n\n");
}

TEST_F(DumpLogTest, NullTagLeavesThePrefixesAsTheyWere) {
    Configure(1, 0);
    DumpConfigure(nullptr, nullptr, nullptr, nullptr);
    EXPECT_STREQ(DumpGetState().narrowPrefix, "[PyClipGrade] ");
}

TEST_F(DumpLogTest, TagOf63CharactersIsCutToThe64ElementPrefix) {
    Configure(1, 0);
    const std::string tag(63, 'T');
    DumpConfigure(tag.c_str(), nullptr, nullptr, nullptr);
    EXPECT_EQ(std::string(DumpGetState().narrowPrefix), "[" + std::string(62, 'T'));
    EXPECT_EQ(std::wstring(DumpGetState().widePrefix), L"[" + std::wstring(62, L'T'));
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
}

TEST_F(DumpLogTest, NullFormatWritesNothing) {
    Configure(1, 0);
    DumpLog(nullptr);
    DumpLogW(nullptr);
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
}

TEST_F(DumpLogTest, SwitchedOffLogDoesNotFormat) {
    // An argument that formatting would dereference: the call must return first.
    const char* unreadable = reinterpret_cast<const char*>(static_cast<uintptr_t>(1));
    DumpLog("%s", unreadable);
    DumpLogW(L"%s", unreadable);
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
}

// ------------------------------------------------------------ registry reading

TEST_F(DumpLogTest, ValueNameReplacesTheFirstName) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"MyDumpSwitch", 1));
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpMsg", 0));
    DumpConfigure(kTag, nullptr, L"MyDumpSwitch", nullptr);
    EXPECT_TRUE(DumpGetState().dumpMessage);
}

TEST_F(DumpLogTest, ValueNameLeavesDumpMsgUnread) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"MyDumpSwitch", 0));
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpMsg", 1));
    DumpConfigure(kTag, nullptr, L"MyDumpSwitch", nullptr);
    EXPECT_FALSE(DumpGetState().dumpMessage);
}

TEST_F(DumpLogTest, ValueNameLeavesDumpInEtwUnderItsOwnName) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"MyDumpSwitch", 1));
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpInETW", 1));
    DumpConfigure(kTag, nullptr, L"MyDumpSwitch", nullptr);
    EXPECT_TRUE(DumpGetState().dumpMessage);
    EXPECT_TRUE(DumpGetState().dumpInEtw);
    EXPECT_EQ(Captured().m_registered.size(), 1u);
}

TEST_F(DumpLogTest, SubKeyIsAppendedBehindABackslash) {
    ASSERT_TRUE(SetSettingsDword(L"SoftWare\\Verimont\\Huevane5\\Trace", L"DumpMsg", 1));
    DumpConfigure(kTag, L"Trace", nullptr, nullptr);
    EXPECT_TRUE(DumpGetState().dumpMessage);
}

TEST_F(DumpLogTest, RootKeyArgumentReplacesTheProductKey) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpMsg", 0));
    ASSERT_TRUE(SetSettingsDword(L"SoftWare\\PcgLogTest", L"DumpMsg", 1));
    DumpConfigure(kTag, nullptr, nullptr, L"SoftWare\\PcgLogTest");
    EXPECT_TRUE(DumpGetState().dumpMessage);
    ASSERT_TRUE(DeleteSettingsKey(L"SoftWare\\PcgLogTest"));
}

TEST_F(DumpLogTest, KeyPathPastItsBoundIsNotOpened) {
    Configure(1, 0);
    // A root of 259 characters leaves no room for "\\Sub". The path is refused
    // as a whole: the key at the root alone, which says off, is not read.
    const std::wstring root = L"SoftWare\\" + std::wstring(250, L'k');
    ASSERT_TRUE(SetSettingsDword(root, L"DumpMsg", 0));
    DumpConfigure(kTag, L"Sub", nullptr, root.c_str());
    EXPECT_TRUE(DumpGetState().dumpMessage);
    ASSERT_TRUE(DeleteSettingsKey(root));
}

TEST_F(DumpLogTest, SizeIsNotSetAfreshForTheSecondQuery) {
    // A 2-byte first value leaves room for 2 bytes: the 4-byte DumpInETW no
    // longer fits and reads as 0.
    const uint8_t two[2] = {1, 0};
    ASSERT_TRUE(SetSettingsValue(kProductKey, L"DumpMsg", kRegBinary, two, sizeof(two)));
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"DumpInETW", 1));
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
    EXPECT_TRUE(DumpGetState().dumpMessage);
    EXPECT_FALSE(DumpGetState().dumpInEtw);
    EXPECT_FALSE(DumpGetState().traceLibraryLoaded);
}

TEST_F(DumpLogTest, TooLongFirstValueLeavesItsSizeAsRoomForTheSecond) {
    // A 6-byte first value does not fit in 4 (off, size 6); a 6-byte second
    // value then fits and counts by its first 4 bytes.
    const uint8_t six[6] = {1, 0, 0, 0, 9, 9};
    ASSERT_TRUE(SetSettingsValue(kProductKey, L"DumpMsg", kRegBinary, six, sizeof(six)));
    ASSERT_TRUE(SetSettingsValue(kProductKey, L"DumpInETW", kRegBinary, six, sizeof(six)));
    DumpConfigure(kTag, nullptr, nullptr, nullptr);
    EXPECT_FALSE(DumpGetState().dumpMessage);
    EXPECT_TRUE(DumpGetState().dumpInEtw);
}

// ------------------------------------------------------------ registration

TEST_F(DumpLogTest, EveryConfigureRegistersAgainAndUnloadUnregistersTheLastHandle) {
    Configure(1, 1);
    Configure(1, 1);
    ASSERT_EQ(Captured().m_registered.size(), 2u);
    EXPECT_EQ(DumpGetState().providerHandle, Captured().m_registered[1]);
    DumpUnload();
    ASSERT_EQ(Captured().m_unregistered.size(), 1u);
    EXPECT_EQ(Captured().m_unregistered[0], Captured().m_registered[1]);
    EXPECT_EQ(Captured().m_unregisterFunctions[0], SystemTraceFunction("EventUnregister"));
}

TEST_F(DumpLogTest, UnloadClearsHandleLibraryAndFunctions) {
    Configure(1, 1);
    DumpUnload();
    const DumpLogState state = DumpGetState();
    EXPECT_EQ(state.providerHandle, 0u);
    EXPECT_FALSE(state.traceLibraryLoaded);
    EXPECT_FALSE(state.eventRegisterBound);
    EXPECT_FALSE(state.eventWriteStringBound);
    EXPECT_FALSE(state.eventUnregisterBound);
    // The switches stay: lines now find no bound function and go nowhere.
    EXPECT_TRUE(state.dumpInEtw);
    DumpLog("after unload\n");
    EXPECT_EQ(Captured().LinesToDebugger(), 0u);
    EXPECT_TRUE(Captured().m_traceWrites.empty());
}

TEST_F(DumpLogTest, UnloadWithoutRegistrationDoesNothing) {
    DumpUnload();
    EXPECT_TRUE(Captured().m_unregistered.empty());
}

TEST_F(DumpLogTest, TraceLibraryIsLoadedOnceAcrossConfigures) {
    Configure(0, 1);
    Configure(0, 1);
    EXPECT_TRUE(DumpGetState().traceLibraryLoaded);
    EXPECT_EQ(Captured().m_registered.size(), 2u);
}

TEST_F(DumpLogTest, LatestReadingWins) {
    Configure(1, 1);
    Configure(1, 0);
    DumpLog("debugger again\n");
    ASSERT_EQ(Captured().m_debugNarrow.size(), 1u);
    EXPECT_TRUE(Captured().m_traceWrites.empty());
}

// ------------------------------------------------------------ threads

TEST_F(DumpLogTest, LinesFromSeveralThreadsArriveWhole) {
    Configure(1, 0);
    constexpr int kThreads = 4;
    constexpr int kLines = 200;
    std::vector<std::unique_ptr<Thread>> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.push_back(Thread::Start(
            [](void*) -> uint32_t {
                for (int i = 0; i < kLines; ++i) DumpLog("thread line %04d of a fixed length\n", i);
                return 0;
            },
            nullptr));
        ASSERT_NE(threads.back(), nullptr);
    }
    for (auto& thread : threads) EXPECT_EQ(thread->Wait(), kWaitObject0);
    ASSERT_EQ(Captured().m_debugNarrow.size(), static_cast<size_t>(kThreads * kLines));
    for (const std::string& line : Captured().m_debugNarrow) {
        ASSERT_EQ(line.size(), std::string("[PyClipGrade] thread line 0000 of a fixed length\n\n").size());
        ASSERT_EQ(line.compare(0, 26, "[PyClipGrade] thread line "), 0);
    }
}

}  // namespace
