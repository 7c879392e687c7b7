// The two bases of every facade: PyCallback holds the one script callable
// that engine events are delivered to; PyCallbackWnd adds a hidden message
// window that does no work of its own.
#pragma once

#include <cstdint>

#include "binding/py_compat.h"
#include "platform/platform.h"

class PyCallback {
public:
    PyCallback();
    virtual ~PyCallback();
    PyCallback(const PyCallback&) = delete;
    PyCallback& operator=(const PyCallback&) = delete;

    // Drops the callable held and stores `object` with a reference of its
    // own; null and None both leave no callable. Answers what is stored.
    // Runs under the interpreter lock.
    PyObject* SetCallback(PyObject* object);

    // Calls the callable, if any, under the interpreter lock (taken here), with
    // the arguments that `format` builds (Py_BuildValue's format; null or empty:
    // none; a single unit becomes a one-item tuple). A script exception is
    // printed and cleared; the result is dropped. Safe on any thread.
    void Invoke(const char* format, ...);

    // Never None: None is stored as null.
    PyObject* m_callback;
    // The number in the environment variable "ostrel main window", read once.
    int64_t m_mainWindow;
};

class PyCallbackWnd : public PyCallback {
public:
    static constexpr uint32_t kMagic = 0x12345678;

    PyCallbackWnd();
    ~PyCallbackWnd() override;

    // Hands the message on to the default window procedure of m_hWnd.
    virtual intptr_t WindowProc(uint32_t message, uintptr_t wParam, intptr_t lParam);

    // kMagic while the object lives, 0 once its destructor has begun.
    uint32_t m_magic;
    pcg::platform::WindowHandle m_hWnd;
};

namespace pcg {
namespace events {

// "Callback Window": the class name and the window title.
extern const wchar_t kCallbackWindowName[];

// The class's procedure: the object in the window's user data, when it is a
// live PyCallbackWnd (its magic), or else the default procedure.
intptr_t PCG_WINAPI CallbackWindowProcedure(pcg::platform::WindowHandle window, uint32_t message,
                                            uintptr_t wParam, intptr_t lParam);

// _wtoi: leading blanks, a sign, decimal digits up to the first other
// character; 0 when there are none; saturated to the 32-bit range.
int32_t WideTextToInt(const wchar_t* text);

}  // namespace events
}  // namespace pcg
