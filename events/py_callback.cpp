#include "events/py_callback.h"

#include <climits>
#include <cstdarg>
#include <cstring>
#include <cwctype>
#include <string>

namespace pcg {
namespace events {

const wchar_t kCallbackWindowName[] = L"Callback Window";

namespace {

const wchar_t kMainWindowVariable[] = L"ostrel main window";
// The value is read into a buffer of 64 wide characters that the read is told
// holds 128; a longer value is not written, and one of 64 or more would run
// past the buffer. Both read here as no number.
constexpr std::size_t kMainWindowBufferChars = 64;

int64_t ReadMainWindow() {
    std::wstring value;
    if (!pcg::platform::ReadEnvironmentVariable(kMainWindowVariable, &value)) {
        // Without the variable the buffer would be read as it happened to be.
        return 0;
    }
    if (value.size() >= kMainWindowBufferChars) {
        return 0;
    }
    return WideTextToInt(value.c_str());
}

}  // namespace

int32_t WideTextToInt(const wchar_t* text) {
    if (text == nullptr) return 0;
    while (*text != L'\0' && std::iswspace(static_cast<wint_t>(*text))) ++text;
    bool negative = false;
    if (*text == L'+' || *text == L'-') {
        negative = *text == L'-';
        ++text;
    }
    long long magnitude = 0;
    for (; *text >= L'0' && *text <= L'9'; ++text) {
        magnitude = magnitude * 10 + (*text - L'0');
        if (magnitude > static_cast<long long>(INT_MAX) + 1) {
            magnitude = static_cast<long long>(INT_MAX) + 1;
        }
    }
    const long long value = negative ? -magnitude : magnitude;
    if (value > INT_MAX) return INT_MAX;
    return static_cast<int32_t>(value);
}

intptr_t PCG_WINAPI CallbackWindowProcedure(pcg::platform::WindowHandle window, uint32_t message,
                                            uintptr_t wParam, intptr_t lParam) {
    auto* owner = static_cast<PyCallbackWnd*>(pcg::platform::GetWindowUserData(window));
    if (owner != nullptr && owner->m_magic == PyCallbackWnd::kMagic) {
        return owner->WindowProc(message, wParam, lParam);
    }
    return pcg::platform::DefaultWindowProcedure(window, message, wParam, lParam);
}

}  // namespace events
}  // namespace pcg

PyCallback::PyCallback() : m_callback(nullptr), m_mainWindow(pcg::events::ReadMainWindow()) {}

PyCallback::~PyCallback() {
    // The facade clears the callable while it holds the interpreter lock; one
    // left here is dropped under the lock, taken if need be.
    if (m_callback != nullptr) {
        PyGILState_STATE state = PyGILState_Ensure();
        Py_CLEAR(m_callback);
        PyGILState_Release(state);
    }
}

PyObject* PyCallback::SetCallback(PyObject* object) {
    PyObject* old = m_callback;
    __atomic_store_n(&m_callback, static_cast<PyObject*>(nullptr), __ATOMIC_RELEASE);
    if (object != nullptr && object != Py_None) {
        Py_INCREF(object);
        __atomic_store_n(&m_callback, object, __ATOMIC_RELEASE);
    }
    // Dropped last: the old callable's destruction may run script code, which
    // must already see the new state.
    Py_XDECREF(old);
    return m_callback;
}

void PyCallback::Invoke(const char* format, ...) {
    // Looked at without any lock: no callable, no interpreter lock taken.
    PyObject* unlocked = __atomic_load_n(&m_callback, __ATOMIC_ACQUIRE);
    if (unlocked == nullptr || unlocked == Py_None) {
        return;
    }
    PyGILState_STATE state = PyGILState_Ensure();
    PyObject* arguments = nullptr;
    bool built = true;
    if (format != nullptr && format[0] != '\0') {
        va_list values;
        va_start(values, format);
        if (format[1] == '\0') {
            // One unit alone would build a bare value, not a tuple.
            char single[4] = {'(', format[0], ')', '\0'};
            arguments = Py_VaBuildValue(single, values);
        } else {
            arguments = Py_VaBuildValue(format, values);
        }
        va_end(values);
        built = arguments != nullptr;
    }
    // Read again under the lock: the script may have changed it meanwhile.
    // The call holds its own reference, so the callable survives being
    // replaced from inside itself.
    PyObject* callable = m_callback;
    if (built && callable != nullptr) {
        Py_INCREF(callable);
        PyObject* result = PyObject_CallObject(callable, arguments);
        Py_DECREF(callable);
        Py_XDECREF(result);
    }
    Py_XDECREF(arguments);
    if (PyErr_Occurred()) {
        PyErr_Print();
    }
    PyGILState_Release(state);
}

PyCallbackWnd::PyCallbackWnd() : m_magic(kMagic), m_hWnd(nullptr) {
    // Registered on every construction; a refusal (the class exists) is ignored.
    pcg::platform::RegisterHiddenWindowClass(pcg::events::kCallbackWindowName,
                                             &pcg::events::CallbackWindowProcedure);
    m_hWnd = pcg::platform::CreateHiddenWindow(pcg::events::kCallbackWindowName,
                                               pcg::events::kCallbackWindowName);
    if (m_hWnd != nullptr) {
        pcg::platform::SetWindowUserData(m_hWnd, this);
    }
}

PyCallbackWnd::~PyCallbackWnd() {
    if (m_callback != nullptr) {
        PyGILState_STATE state = PyGILState_Ensure();
        SetCallback(nullptr);
        PyGILState_Release(state);
    }
    if (m_hWnd != nullptr) {
        pcg::platform::SetWindowUserData(m_hWnd, nullptr);
    }
    m_magic = 0;
    if (m_hWnd != nullptr) {
        pcg::platform::DestroyHiddenWindow(m_hWnd);
        m_hWnd = nullptr;
    }
}

intptr_t PyCallbackWnd::WindowProc(uint32_t message, uintptr_t wParam, intptr_t lParam) {
    return pcg::platform::DefaultWindowProcedure(m_hWnd, message, wParam, lParam);
}
