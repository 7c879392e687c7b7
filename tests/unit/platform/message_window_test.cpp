#include <gtest/gtest.h>

#include "platform/platform.h"

namespace {

using namespace pcg::platform;

intptr_t PCG_WINAPI EchoProcedure(WindowHandle window, uint32_t message, uintptr_t wParam, intptr_t lParam) {
    auto* seen = static_cast<int*>(GetWindowUserData(window));
    if (seen != nullptr && message == 0x400) {
        ++*seen;
        return static_cast<intptr_t>(wParam) + lParam;
    }
    return DefaultWindowProcedure(window, message, wParam, lParam);
}

TEST(MessageWindow, AClassRegistersOnceAndItsWindowsAreHiddenWithoutCaption) {
    EXPECT_TRUE(RegisterHiddenWindowClass(L"PcgTestWindowClass", &EchoProcedure));
    EXPECT_FALSE(RegisterHiddenWindowClass(L"PcgTestWindowClass", &EchoProcedure));
    WindowHandle window = CreateHiddenWindow(L"PcgTestWindowClass", L"Title");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(GetWindowClassName(window), L"PcgTestWindowClass");
    EXPECT_EQ(GetWindowTitle(window), L"Title");
    EXPECT_EQ(GetWindowStyleBits(window) & kHiddenWindowStyle, kHiddenWindowStyle);
    EXPECT_EQ(GetWindowStyleBits(window) & kWindowCaption, 0u);
    EXPECT_TRUE(DestroyHiddenWindow(window));
    EXPECT_FALSE(DestroyHiddenWindow(window));
}

TEST(MessageWindow, UserDataSteersTheProcedure) {
    RegisterHiddenWindowClass(L"PcgTestWindowClass2", &EchoProcedure);
    WindowHandle window = CreateHiddenWindow(L"PcgTestWindowClass2", L"");
    ASSERT_NE(window, nullptr);
    int seen = 0;
    EXPECT_EQ(SetWindowUserData(window, &seen), nullptr);
    EXPECT_EQ(GetWindowUserData(window), &seen);
    EXPECT_EQ(SendWindowMessage(window, 0x400, 2, 40), 42);
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(SetWindowUserData(window, nullptr), &seen);
    SendWindowMessage(window, 0x400, 2, 40);
    EXPECT_EQ(seen, 1);
    EXPECT_TRUE(DestroyHiddenWindow(window));
}

TEST(MessageWindow, AnUnknownClassMakesNoWindow) {
    EXPECT_EQ(CreateHiddenWindow(L"PcgNoSuchWindowClass", L"x"), nullptr);
}

TEST(RawSync, SemaphoreHandlesKeepTheirCountsAndTheLockIsRecursive) {
    SemaphoreHandle semaphore = CreateSemaphoreHandle(1, 2);
    ASSERT_NE(semaphore, nullptr);
    EXPECT_EQ(WaitSemaphoreHandle(semaphore, 0), kWaitObject0);
    EXPECT_EQ(WaitSemaphoreHandle(semaphore, 0), kWaitTimeout);
    EXPECT_TRUE(ReleaseSemaphoreHandle(semaphore, 2));
    EXPECT_FALSE(ReleaseSemaphoreHandle(semaphore, 1));
    CloseSemaphoreHandle(semaphore);
    EXPECT_EQ(CreateSemaphoreHandle(3, 2), nullptr);
    EXPECT_EQ(WaitSemaphoreHandle(nullptr, 0), kWaitFailed);
    alignas(8) unsigned char lock[kRawLockBytes];
    RawLockInit(lock);
    RawLockEnter(lock);
    RawLockEnter(lock);
    RawLockLeave(lock);
    RawLockLeave(lock);
    RawLockDelete(lock);
}

}  // namespace
