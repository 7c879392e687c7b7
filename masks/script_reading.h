// Reading a script's mask lists as if the script were hostile: every
// container and item in use is held by an owned reference, so a conversion
// that runs script code (an __index__ that empties the list being read)
// cannot free what the reader is looking at; every error a read sets is
// cleared, since the operation answers with its own result.
#pragma once

#include <cstdint>

#include "binding/py_compat.h"

namespace pcg {
namespace masks {

// One owned reference, or null.
class ScriptRef {
public:
    ScriptRef() = default;
    // Takes over a new reference.
    explicit ScriptRef(PyObject* owned) : m_pObject(owned) {}
    // Takes a reference of its own on a borrowed object.
    static ScriptRef Hold(PyObject* borrowed) {
        Py_XINCREF(borrowed);
        return ScriptRef(borrowed);
    }
    ScriptRef(ScriptRef&& other) noexcept : m_pObject(other.m_pObject) { other.m_pObject = nullptr; }
    ScriptRef& operator=(ScriptRef&& other) noexcept;
    ScriptRef(const ScriptRef&) = delete;
    ScriptRef& operator=(const ScriptRef&) = delete;
    ~ScriptRef() { Py_XDECREF(m_pObject); }

    PyObject* get() const { return m_pObject; }
    explicit operator bool() const { return m_pObject != nullptr; }

private:
    PyObject* m_pObject = nullptr;
};

// The list's size as PyList_Size gives it, -1 for anything but a list; the
// error that leaves is cleared.
int32_t ScriptListSize(PyObject* list);

// Item `index` of a list (or of a tuple for TupleItem); null when the object
// is not one, or is shorter now.
ScriptRef ListItem(PyObject* list, int32_t index);
ScriptRef TupleItem(PyObject* tuple, int32_t index);

// The value under a text or object key of a dictionary; null when absent or
// when the object is no dictionary.
ScriptRef DictValue(PyObject* dictionary, const char* key);
ScriptRef DictValue(PyObject* dictionary, PyObject* key);

// PyArg_Parse of one format unit; a failure (or a null object) leaves `out`
// as it was.
void ParseInto(PyObject* object, const char* format, void* out);

// PyFloat_AsDouble and PyLong_AsLongLong: -1 when the object is null or
// does not convert, as the interpreter answers.
double FloatOf(PyObject* object);
int64_t LongLongOf(PyObject* object);

// PyInt_AsLong with the host's 32-bit long: -1 when the object is null, does
// not convert or does not fit.
int32_t HostLongOf(PyObject* object);

// Whether the object is exactly True (a bool-typed test, not truth).
inline bool IsTrue(PyObject* object) { return object == Py_True; }

}  // namespace masks
}  // namespace pcg
