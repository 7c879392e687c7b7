// Every difference between the Python 2.7 and Python 3 C interfaces that the
// module's own code meets is settled here, and nowhere else. Code outside this
// header uses the Python 2 spelling (PyInt_*, PyString_*) or the pcg_ helpers.
#pragma once

#include <Python.h>
#include <cwchar>

#if PY_MAJOR_VERSION >= 3

#define PyInt_Check PyLong_Check
#define PyInt_AsLong PyLong_AsLong
#define PyInt_FromLong PyLong_FromLong
#define PyString_Check PyUnicode_Check
#define PyString_FromString PyUnicode_FromString
#define PyString_FromFormat PyUnicode_FromFormat

// The thread state that currently holds the interpreter lock
// (_PyThreadState_Current in Python 2).
static inline PyThreadState* pcg_CurrentThreadState() { return _PyThreadState_UncheckedGet(); }

// A script int or long.
static inline bool pcg_IsScriptInteger(PyObject* o) { return PyLong_Check(o); }

// A text object as the script's narrow string: str in Python 3.
static inline bool pcg_IsNarrowOrUnicodeText(PyObject* o) { return PyUnicode_Check(o) || PyBytes_Check(o); }

// UTF-8 view of a str (Python 3) or the bytes of a str (Python 2); null when
// the object is neither. Borrowed from the object.
static inline const char* pcg_TextAsUtf8(PyObject* o, Py_ssize_t* length) {
    if (PyUnicode_Check(o)) return PyUnicode_AsUTF8AndSize(o, length);
    return nullptr;
}

// The wide characters of a Unicode object as a buffer the caller frees with
// pcg_FreeWide; null when the object is not Unicode.
static inline wchar_t* pcg_UnicodeAsWide(PyObject* o) {
    if (!PyUnicode_Check(o)) return nullptr;
    return PyUnicode_AsWideCharString(o, nullptr);
}
static inline void pcg_FreeWide(wchar_t* text) { PyMem_Free(text); }

// A byte string of the script's (bytes in Python 3) holding a copy of the
// bytes, embedded zeros included: Py_BuildValue's "s#" of Python 2.
static inline PyObject* pcg_BytesFromBuffer(const char* bytes, Py_ssize_t size) {
    return PyBytes_FromStringAndSize(bytes, size);
}

// The bytes of a script string: bytes as they are, str as UTF-8. Null when
// the object is neither. Borrowed from the object.
static inline const char* pcg_ByteStringView(PyObject* o, Py_ssize_t* length) {
    if (PyBytes_Check(o)) {
        *length = PyBytes_GET_SIZE(o);
        return PyBytes_AS_STRING(o);
    }
    if (PyUnicode_Check(o)) return PyUnicode_AsUTF8AndSize(o, length);
    return nullptr;
}

#else  // Python 2.7

static inline PyThreadState* pcg_CurrentThreadState() { return _PyThreadState_Current; }

static inline bool pcg_IsScriptInteger(PyObject* o) { return PyInt_Check(o) || PyLong_Check(o); }

static inline bool pcg_IsNarrowOrUnicodeText(PyObject* o) { return PyString_Check(o) || PyUnicode_Check(o); }

static inline const char* pcg_TextAsUtf8(PyObject* o, Py_ssize_t* length) {
    if (PyString_Check(o)) {
        *length = PyString_Size(o);
        return PyString_AsString(o);
    }
    return nullptr;
}

// The host's interpreter stores 16-bit characters, which is what WCHAR is
// there: the buffer is used in place, without a copy.
static inline wchar_t* pcg_UnicodeAsWide(PyObject* o) {
    if (!PyUnicode_Check(o)) return nullptr;
    return reinterpret_cast<wchar_t*>(PyUnicode_AsUnicode(o));
}
static inline void pcg_FreeWide(wchar_t*) {}

static inline PyObject* pcg_BytesFromBuffer(const char* bytes, Py_ssize_t size) {
    return PyString_FromStringAndSize(bytes, size);
}

static inline const char* pcg_ByteStringView(PyObject* o, Py_ssize_t* length) {
    if (PyString_Check(o)) {
        *length = PyString_Size(o);
        return PyString_AsString(o);
    }
    return nullptr;
}

#endif
