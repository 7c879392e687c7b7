#include <gtest/gtest.h>

#include "platform/platform.h"

using namespace pcg::platform;

namespace {

using AnswerFn = int (*)();

std::wstring ProbePath(const wchar_t* relative) { return JoinHostPath(HostDirectory(), relative); }

TEST(Module, LoadsLibraryByWindowsStylePathBelowHost) {
    ModuleHandle module = LoadModule(ProbePath(L"testing\\PlatformProbe.dll").c_str());
    ASSERT_NE(module, nullptr);
    auto fnAnswer = reinterpret_cast<AnswerFn>(FindSymbol(module, "PlatformProbeAnswer"));
    ASSERT_NE(fnAnswer, nullptr);
    EXPECT_EQ(fnAnswer(), 42);
    EXPECT_EQ(UnloadModule(module), 1);
}

TEST(Module, LoadsLibraryWithItsOwnFolderSearchedFirst) {
    ModuleHandle module = LoadModuleFromItsFolder(ProbePath(L"testing\\PlatformProbe.dll").c_str());
    ASSERT_NE(module, nullptr);
    auto fnAnswer = reinterpret_cast<AnswerFn>(FindSymbol(module, "PlatformProbeAnswer"));
    ASSERT_NE(fnAnswer, nullptr);
    EXPECT_EQ(UnloadModule(module), 1);
    EXPECT_EQ(LoadModuleFromItsFolder(ProbePath(L"testing\\NoSuchLibrary.dll").c_str()), nullptr);
    EXPECT_EQ(LoadModuleFromItsFolder(nullptr), nullptr);
}

TEST(Module, DllSuffixMatchesWithoutRegardToCase) {
    ModuleHandle module = LoadModule(ProbePath(L"testing\\PlatformProbe.DLL").c_str());
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(UnloadModule(module), 1);
}

TEST(Module, SecondLoadGivesSameHandleAndCountsReferences) {
    const std::wstring path = ProbePath(L"testing\\PlatformProbe.dll");
    ModuleHandle first = LoadModule(path.c_str());
    ModuleHandle second = LoadModule(path.c_str());
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(second, first);
    auto fnBump = reinterpret_cast<AnswerFn>(FindSymbol(first, "PlatformProbeBump"));
    ASSERT_NE(fnBump, nullptr);
    const int before = fnBump();
    EXPECT_EQ(UnloadModule(second), 1);
    // Still loaded through the first reference: the counter goes on.
    EXPECT_EQ(fnBump(), before + 1);
    EXPECT_EQ(UnloadModule(first), 1);
}

TEST(Module, UnloadReleasesLibrarySoNextLoadStartsAfresh) {
    const std::wstring path = ProbePath(L"testing\\PlatformProbe.dll");
    ModuleHandle module = LoadModule(path.c_str());
    ASSERT_NE(module, nullptr);
    auto fnBump = reinterpret_cast<AnswerFn>(FindSymbol(module, "PlatformProbeBump"));
    ASSERT_NE(fnBump, nullptr);
    fnBump();
    fnBump();
    ASSERT_EQ(UnloadModule(module), 1);
    module = LoadModule(path.c_str());
    ASSERT_NE(module, nullptr);
    fnBump = reinterpret_cast<AnswerFn>(FindSymbol(module, "PlatformProbeBump"));
    ASSERT_NE(fnBump, nullptr);
    EXPECT_EQ(fnBump(), 1);
    EXPECT_EQ(UnloadModule(module), 1);
}

TEST(Module, MissingLibraryGivesNull) {
    EXPECT_EQ(LoadModule(ProbePath(L"testing\\NoSuchLibrary.dll").c_str()), nullptr);
}

TEST(Module, NullOrEmptyPathGivesNull) {
    EXPECT_EQ(LoadModule(nullptr), nullptr);
    EXPECT_EQ(LoadModule(L""), nullptr);
    EXPECT_EQ(LoadModuleNarrow(nullptr), nullptr);
}

TEST(Module, MissingSymbolGivesNull) {
    ModuleHandle module = LoadModule(ProbePath(L"testing\\PlatformProbe.dll").c_str());
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(FindSymbol(module, "NoSuchSymbol"), nullptr);
    EXPECT_EQ(UnloadModule(module), 1);
}

TEST(Module, NullHandleFindsNothingAndFailsToUnload) {
    EXPECT_EQ(FindSymbol(nullptr, "PlatformProbeAnswer"), nullptr);
    EXPECT_EQ(UnloadModule(nullptr), 0);
}

TEST(Module, SystemTraceLibraryOffersTheThreeEventFunctions) {
    ModuleHandle module = LoadModuleNarrow("advapi32.dll");
    ASSERT_NE(module, nullptr);
    EXPECT_NE(FindSymbol(module, "EventRegister"), nullptr);
    EXPECT_NE(FindSymbol(module, "EventWriteString"), nullptr);
    EXPECT_NE(FindSymbol(module, "EventUnregister"), nullptr);
    EXPECT_EQ(UnloadModule(module), 1);
}

TEST(Module, SystemTraceLibraryNameMatchesWithoutRegardToCase) {
    ModuleHandle module = LoadModuleNarrow("ADVAPI32.DLL");
    ASSERT_NE(module, nullptr);
    EXPECT_NE(FindSymbol(module, "EventWriteString"), nullptr);
    EXPECT_EQ(UnloadModule(module), 1);
}

TEST(Module, ReferenceFromAnAddressKeepsTheLibraryLoaded) {
    const std::wstring path = ProbePath(L"testing\\PlatformProbe.dll");
    ModuleHandle module = LoadModule(path.c_str());
    ASSERT_NE(module, nullptr);
    auto fnBump = reinterpret_cast<AnswerFn>(FindSymbol(module, "PlatformProbeBump"));
    ASSERT_NE(fnBump, nullptr);
    fnBump();
    ModuleHandle pinned = AcquireModuleOfAddress(reinterpret_cast<const void*>(fnBump));
    ASSERT_NE(pinned, nullptr);
    ASSERT_EQ(UnloadModule(module), 1);
    // Still the same library with its state: the pin kept it in the process.
    EXPECT_EQ(fnBump(), 2);
    EXPECT_EQ(UnloadModule(pinned), 1);
    module = LoadModule(path.c_str());
    fnBump = reinterpret_cast<AnswerFn>(FindSymbol(module, "PlatformProbeBump"));
    ASSERT_NE(fnBump, nullptr);
    EXPECT_EQ(fnBump(), 1);
    EXPECT_EQ(UnloadModule(module), 1);
}

TEST(Module, AddressOutsideEveryLibraryGivesNull) {
    EXPECT_EQ(AcquireModuleOfAddress(nullptr), nullptr);
    int onTheStack = 0;
    EXPECT_EQ(AcquireModuleOfAddress(&onTheStack), nullptr);
}

}  // namespace
