// The hidden message window on POSIX: there is no window system to ask, so a
// window is an object with the class, title, style word and user-data slot a
// real one would have. Its procedure runs only through SendWindowMessage.
#include "platform/platform.h"

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace pcg {
namespace platform {

namespace {

struct PosixWindow {
    std::wstring m_className;
    std::wstring m_title;
    WindowProcedure m_fnProcedure;
    void* m_pUserData;
    uint32_t m_nStyle;
};

// Classes stay registered for the life of the process, as on Windows; the
// table is never destroyed, since windows may go during static teardown.
struct WindowTables {
    std::mutex m_mutex;
    std::map<std::wstring, WindowProcedure> m_classes;
    std::set<PosixWindow*> m_windows;
};
WindowTables& Tables() {
    static WindowTables* s_pTables = new WindowTables;
    return *s_pTables;
}

// The live window behind a handle, or null; the caller holds the tables' lock.
PosixWindow* Find(WindowTables& tables, WindowHandle window) {
    auto* candidate = static_cast<PosixWindow*>(window);
    return tables.m_windows.count(candidate) ? candidate : nullptr;
}

}  // namespace

bool RegisterHiddenWindowClass(const wchar_t* className, WindowProcedure procedure) {
    if (className == nullptr || procedure == nullptr) return false;
    WindowTables& tables = Tables();
    std::lock_guard<std::mutex> lock(tables.m_mutex);
    return tables.m_classes.emplace(className, procedure).second;
}

WindowHandle CreateHiddenWindow(const wchar_t* className, const wchar_t* title) {
    if (className == nullptr) return nullptr;
    WindowTables& tables = Tables();
    std::lock_guard<std::mutex> lock(tables.m_mutex);
    auto found = tables.m_classes.find(className);
    if (found == tables.m_classes.end()) return nullptr;
    // Held until the table has it, so that a failed insertion frees it.
    std::unique_ptr<PosixWindow> window(new PosixWindow{className, title ? title : L"", found->second, nullptr,
                                                        kHiddenWindowStyle & ~kWindowCaption});
    tables.m_windows.insert(window.get());
    return window.release();
}

void* SetWindowUserData(WindowHandle window, void* data) {
    WindowTables& tables = Tables();
    std::lock_guard<std::mutex> lock(tables.m_mutex);
    PosixWindow* live = Find(tables, window);
    if (live == nullptr) return nullptr;
    void* previous = live->m_pUserData;
    live->m_pUserData = data;
    return previous;
}

void* GetWindowUserData(WindowHandle window) {
    WindowTables& tables = Tables();
    std::lock_guard<std::mutex> lock(tables.m_mutex);
    PosixWindow* live = Find(tables, window);
    return live ? live->m_pUserData : nullptr;
}

uint32_t GetWindowStyleBits(WindowHandle window) {
    WindowTables& tables = Tables();
    std::lock_guard<std::mutex> lock(tables.m_mutex);
    PosixWindow* live = Find(tables, window);
    return live ? live->m_nStyle : 0;
}

std::wstring GetWindowClassName(WindowHandle window) {
    WindowTables& tables = Tables();
    std::lock_guard<std::mutex> lock(tables.m_mutex);
    PosixWindow* live = Find(tables, window);
    return live ? live->m_className : std::wstring();
}

std::wstring GetWindowTitle(WindowHandle window) {
    WindowTables& tables = Tables();
    std::lock_guard<std::mutex> lock(tables.m_mutex);
    PosixWindow* live = Find(tables, window);
    return live ? live->m_title : std::wstring();
}

intptr_t DefaultWindowProcedure(WindowHandle, uint32_t, uintptr_t, intptr_t) {
    // Nothing to do by default without a window system.
    return 0;
}

intptr_t SendWindowMessage(WindowHandle window, uint32_t message, uintptr_t wParam, intptr_t lParam) {
    WindowProcedure procedure = nullptr;
    {
        WindowTables& tables = Tables();
        std::lock_guard<std::mutex> lock(tables.m_mutex);
        PosixWindow* live = Find(tables, window);
        if (live == nullptr) return 0;
        procedure = live->m_fnProcedure;
    }
    // The procedure runs outside the tables' lock: it reads the user data.
    return procedure(window, message, wParam, lParam);
}

bool DestroyHiddenWindow(WindowHandle window) {
    WindowTables& tables = Tables();
    std::lock_guard<std::mutex> lock(tables.m_mutex);
    PosixWindow* live = Find(tables, window);
    if (live == nullptr) return false;
    tables.m_windows.erase(live);
    delete live;
    return true;
}

}  // namespace platform
}  // namespace pcg
