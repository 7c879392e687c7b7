#include "facade/selection_lists.h"

namespace pcg {
namespace facade {

namespace {

// Calls parse(item, index) for each index below the list's length at the
// start, with a reference held on the list and on the item.
template <typename Parse>
void ForEachItem(PyObject* list, Py_ssize_t count, Parse parse) {
    Py_INCREF(list);
    for (Py_ssize_t index = 0; index < count; ++index) {
        if (index >= PyList_Size(list)) break;
        PyObject* item = PyList_GetItem(list, index);
        if (item == nullptr) {
            PyErr_Clear();
            break;
        }
        Py_INCREF(item);
        parse(item, index);
        if (PyErr_Occurred()) PyErr_Clear();
        Py_DECREF(item);
    }
    Py_DECREF(list);
}

}  // namespace

Py_ssize_t ListLength(PyObject* list) {
    if (list == nullptr || !PyList_Check(list)) return 0;
    return PyList_Size(list);
}

void ReadBoundaryLines(PyObject* list, std::vector<SelectionLine>& lines) {
    ForEachItem(list, static_cast<Py_ssize_t>(lines.size()), [&](PyObject* item, Py_ssize_t index) {
        short x = 0, y = 0, length = 0;
        PyArg_ParseTuple(item, "hhh", &x, &y, &length);
        lines[index].nX = x;
        lines[index].nY = y;
        lines[index].nLength = length;
    });
}

void ReadNormalisedLines(PyObject* list, std::vector<float>& values) {
    ForEachItem(list, static_cast<Py_ssize_t>(values.size() / 3), [&](PyObject* item, Py_ssize_t index) {
        float* line = &values[3 * index];
        PyArg_ParseTuple(item, "fff", &line[0], &line[1], &line[2]);
    });
}

void ReadPositions(PyObject* list, std::vector<int>& values) {
    ForEachItem(list, static_cast<Py_ssize_t>(values.size() / 2), [&](PyObject* item, Py_ssize_t index) {
        int* position = &values[2 * index];
        PyArg_ParseTuple(item, "ii", &position[0], &position[1]);
    });
}

PyObject* BoundaryLineList(const SelectionLine* lines, std::size_t count) {
    PyObject* list = PyList_New(static_cast<Py_ssize_t>(count));
    if (list == nullptr) return nullptr;
    // The tuples "(i,i,i)" would make, built directly: a selection of a
    // 4K picture can have millions of runs, and the format parser per item
    // was most of the time.
    for (std::size_t index = 0; index < count; ++index) {
        PyObject* item = PyTuple_New(3);
        PyObject* x = PyInt_FromLong(lines[index].nX);
        PyObject* y = PyInt_FromLong(lines[index].nY);
        PyObject* length = PyInt_FromLong(lines[index].nLength);
        if (item == nullptr || x == nullptr || y == nullptr || length == nullptr) {
            Py_XDECREF(item);
            Py_XDECREF(x);
            Py_XDECREF(y);
            Py_XDECREF(length);
            Py_DECREF(list);
            return nullptr;
        }
        PyTuple_SET_ITEM(item, 0, x);
        PyTuple_SET_ITEM(item, 1, y);
        PyTuple_SET_ITEM(item, 2, length);
        PyList_SET_ITEM(list, static_cast<Py_ssize_t>(index), item);
    }
    return list;
}

}  // namespace facade
}  // namespace pcg
