// The hidden message window on Windows: a real top-level window of a class
// registered here, never shown, served by the host's message loop.
#include "platform/platform.h"

#include <windows.h>

namespace pcg {
namespace platform {

static_assert(sizeof(WNDCLASSEXW) == kWindowClassBytes, "the class structure's size");

bool RegisterHiddenWindowClass(const wchar_t* className, WindowProcedure procedure) {
    if (className == nullptr || procedure == nullptr) return false;
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = kWindowClassBytes;
    windowClass.style = kWindowClassStyle;
    windowClass.lpfnWndProc = reinterpret_cast<WNDPROC>(procedure);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(kNullBrush));
    windowClass.lpszClassName = className;
    return RegisterClassExW(&windowClass) != 0;
}

WindowHandle CreateHiddenWindow(const wchar_t* className, const wchar_t* title) {
    HWND window = CreateWindowExW(0, className, title, kHiddenWindowStyle, 0, 0, 10, 10, nullptr, nullptr,
                                  nullptr, nullptr);
    if (window == nullptr) return nullptr;
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    SetWindowLongPtrW(window, GWL_STYLE, style & ~static_cast<LONG_PTR>(kWindowCaption));
    return window;
}

void* SetWindowUserData(WindowHandle window, void* data) {
    return reinterpret_cast<void*>(
        SetWindowLongPtrW(static_cast<HWND>(window), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(data)));
}

void* GetWindowUserData(WindowHandle window) {
    return reinterpret_cast<void*>(GetWindowLongPtrW(static_cast<HWND>(window), GWLP_USERDATA));
}

uint32_t GetWindowStyleBits(WindowHandle window) {
    return static_cast<uint32_t>(GetWindowLongPtrW(static_cast<HWND>(window), GWL_STYLE));
}

std::wstring GetWindowClassName(WindowHandle window) {
    wchar_t name[256] = {};
    if (window == nullptr || GetClassNameW(static_cast<HWND>(window), name, 256) == 0) return std::wstring();
    return name;
}

std::wstring GetWindowTitle(WindowHandle window) {
    wchar_t title[256] = {};
    if (window == nullptr) return std::wstring();
    GetWindowTextW(static_cast<HWND>(window), title, 256);
    return title;
}

intptr_t DefaultWindowProcedure(WindowHandle window, uint32_t message, uintptr_t wParam, intptr_t lParam) {
    return DefWindowProcW(static_cast<HWND>(window), message, wParam, lParam);
}

intptr_t SendWindowMessage(WindowHandle window, uint32_t message, uintptr_t wParam, intptr_t lParam) {
    return SendMessageW(static_cast<HWND>(window), message, wParam, lParam);
}

bool DestroyHiddenWindow(WindowHandle window) {
    return window != nullptr && DestroyWindow(static_cast<HWND>(window)) != FALSE;
}

}  // namespace platform
}  // namespace pcg
