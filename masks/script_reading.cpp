#include "masks/script_reading.h"

#include <climits>

namespace pcg {
namespace masks {

ScriptRef& ScriptRef::operator=(ScriptRef&& other) noexcept {
    if (this != &other) {
        PyObject* old = m_pObject;
        m_pObject = other.m_pObject;
        other.m_pObject = nullptr;
        Py_XDECREF(old);
    }
    return *this;
}

int32_t ScriptListSize(PyObject* list) {
    if (list == nullptr || !PyList_Check(list)) {
        return -1;
    }
    return static_cast<int32_t>(PyList_GET_SIZE(list));
}

ScriptRef ListItem(PyObject* list, int32_t index) {
    if (list == nullptr || !PyList_Check(list) || index < 0 || index >= PyList_GET_SIZE(list)) {
        return ScriptRef();
    }
    return ScriptRef::Hold(PyList_GET_ITEM(list, index));
}

ScriptRef TupleItem(PyObject* tuple, int32_t index) {
    if (tuple == nullptr || !PyTuple_Check(tuple) || index < 0 || index >= PyTuple_GET_SIZE(tuple)) {
        return ScriptRef();
    }
    return ScriptRef::Hold(PyTuple_GET_ITEM(tuple, index));
}

ScriptRef DictValue(PyObject* dictionary, const char* key) {
    if (dictionary == nullptr || !PyDict_Check(dictionary)) {
        return ScriptRef();
    }
    ScriptRef value = ScriptRef::Hold(PyDict_GetItemString(dictionary, key));
    PyErr_Clear();
    return value;
}

ScriptRef DictValue(PyObject* dictionary, PyObject* key) {
    if (dictionary == nullptr || !PyDict_Check(dictionary) || key == nullptr) {
        return ScriptRef();
    }
    // The keys' own comparison may run script code; the value is held at once.
    ScriptRef value = ScriptRef::Hold(PyDict_GetItem(dictionary, key));
    PyErr_Clear();
    return value;
}

void ParseInto(PyObject* object, const char* format, void* out) {
    if (object == nullptr) {
        return;
    }
    if (!PyArg_Parse(object, format, out)) {
        PyErr_Clear();
    }
}

double FloatOf(PyObject* object) {
    if (object == nullptr) {
        return -1.0;
    }
    const double value = PyFloat_AsDouble(object);
    if (value == -1.0 && PyErr_Occurred()) {
        PyErr_Clear();
    }
    return value;
}

int64_t LongLongOf(PyObject* object) {
    if (object == nullptr) {
        return -1;
    }
    const long long value = PyLong_AsLongLong(object);
    if (value == -1 && PyErr_Occurred()) {
        PyErr_Clear();
    }
    return static_cast<int64_t>(value);
}

int32_t HostLongOf(PyObject* object) {
    const int64_t value = LongLongOf(object);
    return (value < INT32_MIN || value > INT32_MAX) ? -1 : static_cast<int32_t>(value);
}

}  // namespace masks
}  // namespace pcg
