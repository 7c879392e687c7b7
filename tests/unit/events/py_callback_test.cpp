#include "events/py_callback.h"

#include <gtest/gtest.h>

#include "platform/testing/environment.h"

namespace {

// The interpreter is brought up by the scope guard's test file of this program.

class CountingWnd : public PyCallbackWnd {
public:
    intptr_t WindowProc(uint32_t message, uintptr_t wParam, intptr_t lParam) override {
        ++m_nCalls;
        return static_cast<intptr_t>(message + wParam + lParam);
    }
    int m_nCalls = 0;
};

TEST(PyCallbackWnd, BuildsTheHiddenWindowWithItsClassTitleStyleAndUserData) {
    PyCallbackWnd window;
    EXPECT_EQ(window.m_magic, 0x12345678u);
    ASSERT_NE(window.m_hWnd, nullptr);
    EXPECT_EQ(pcg::platform::GetWindowClassName(window.m_hWnd), L"Callback Window");
    EXPECT_EQ(pcg::platform::GetWindowTitle(window.m_hWnd), L"Callback Window");
    const uint32_t style = pcg::platform::GetWindowStyleBits(window.m_hWnd);
    EXPECT_EQ(style & 0x6000000u, 0x6000000u);
    EXPECT_EQ(style & 0xC00000u, 0u);
    EXPECT_EQ(pcg::platform::GetWindowUserData(window.m_hWnd), &window);
}

TEST(PyCallbackWnd, MessagesReachTheObjectWhileItsMagicHolds) {
    CountingWnd window;
    EXPECT_EQ(pcg::platform::SendWindowMessage(window.m_hWnd, 0x400, 2, 3), 0x405);
    EXPECT_EQ(window.m_nCalls, 1);
    window.m_magic = 0;
    // A dead object's magic: the default procedure answers, the object is not called.
    pcg::platform::SendWindowMessage(window.m_hWnd, 0x400, 2, 3);
    EXPECT_EQ(window.m_nCalls, 1);
    window.m_magic = PyCallbackWnd::kMagic;
}

TEST(PyCallbackWnd, TwoObjectsShareTheClassAndKeepTheirOwnWindows) {
    CountingWnd first;
    CountingWnd second;
    ASSERT_NE(first.m_hWnd, second.m_hWnd);
    pcg::platform::SendWindowMessage(second.m_hWnd, 0x401, 0, 0);
    EXPECT_EQ(first.m_nCalls, 0);
    EXPECT_EQ(second.m_nCalls, 1);
}

TEST(PyCallbackWnd, TheWindowGoesWithTheObject) {
    pcg::platform::WindowHandle handle = nullptr;
    {
        PyCallbackWnd window;
        handle = window.m_hWnd;
    }
    EXPECT_FALSE(pcg::platform::DestroyHiddenWindow(handle));
}

TEST(PyCallback, SetCallbackHoldsOneReferenceAndNoneClears) {
    PyGILState_STATE state = PyGILState_Ensure();
    PyObject* callable = PyLong_FromLong(123456);
    const Py_ssize_t before = Py_REFCNT(callable);
    {
        PyCallback holder;
        EXPECT_EQ(holder.SetCallback(callable), callable);
        EXPECT_EQ(Py_REFCNT(callable), before + 1);
        EXPECT_EQ(holder.SetCallback(Py_None), nullptr);
        EXPECT_EQ(holder.m_callback, nullptr);
        EXPECT_EQ(Py_REFCNT(callable), before);
        holder.SetCallback(callable);
    }
    // The destructor lets the last one go.
    EXPECT_EQ(Py_REFCNT(callable), before);
    Py_DECREF(callable);
    PyGILState_Release(state);
}

TEST(PyCallback, InvokeBuildsATupleFromASingleUnitAndPassesNothingForNoFormat) {
    PyGILState_STATE state = PyGILState_Ensure();
    PyObject* globals = PyDict_New();
    PyDict_SetItemString(globals, "__builtins__", PyEval_GetBuiltins());
    PyObject* ran = PyRun_String("calls = []\ndef record(*a):\n    calls.append(a)\n", Py_file_input, globals, globals);
    ASSERT_NE(ran, nullptr);
    Py_DECREF(ran);
    PyCallback holder;
    holder.SetCallback(PyDict_GetItemString(globals, "record"));
    holder.Invoke("i", 7);
    holder.Invoke(nullptr);
    holder.Invoke("");
    holder.Invoke("siL", "TRACKING_STATE", 3, 1LL << 40);
    PyObject* text = PyObject_Repr(PyDict_GetItemString(globals, "calls"));
    EXPECT_STREQ(PyUnicode_AsUTF8(text), "[(7,), (), (), ('TRACKING_STATE', 3, 1099511627776)]");
    Py_DECREF(text);
    holder.SetCallback(nullptr);
    Py_DECREF(globals);
    PyGILState_Release(state);
}

TEST(PyCallback, MainWindowNumberIsReadLikeWtoi) {
    using pcg::events::WideTextToInt;
    EXPECT_EQ(WideTextToInt(L"  -42xyz"), -42);
    EXPECT_EQ(WideTextToInt(L"+17"), 17);
    EXPECT_EQ(WideTextToInt(L"abc"), 0);
    EXPECT_EQ(WideTextToInt(L""), 0);
    EXPECT_EQ(WideTextToInt(L"99999999999"), 2147483647);
    EXPECT_EQ(WideTextToInt(L"-99999999999"), -2147483647 - 1);
}

TEST(PyCallback, MainWindowComesFromTheEnvironment) {
    {
        pcg::platform_testing::ScopedEnvironmentValue value("ostrel main window", "  4242");
        PyCallback holder;
        EXPECT_EQ(holder.m_mainWindow, 4242);
        EXPECT_EQ(holder.m_callback, nullptr);
    }
    {
        // Without the variable, or with one too long for the buffer: no number.
        pcg::platform_testing::ScopedEnvironmentValue value("ostrel main window", std::string(70, '1').c_str());
        PyCallback holder;
        EXPECT_EQ(holder.m_mainWindow, 0);
    }
    PyCallback unset;
    EXPECT_EQ(unset.m_mainWindow, 0);
}

}  // namespace
