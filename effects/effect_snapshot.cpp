#include "effects/effect_snapshot.h"

#include <utility>
#include <vector>

#include "runtime/dump_log.h"

namespace pcg {
namespace effects {
namespace {

bool IsContainer(PyObject* object) {
    return PyList_Check(object) || PyTuple_Check(object) || PyDict_Check(object);
}

// Copies are read by the converters alone; a script that walks the
// collector's objects or referrers does not find them.
void HideFromScripts(PyObject* copy) {
    PyObject_GC_UnTrack(copy);
}

}  // namespace

EffectSnapshot::EffectSnapshot(PyObject* effect) : m_pRoot(nullptr) {
    if (effect == nullptr) {
        return;
    }
    m_pRoot = Copy(effect, 0);
    if (m_pRoot == nullptr) {
        // No memory for the copy: the effect reads as one that is no
        // container at all.
        PyErr_Clear();
        DumpLog("[Err] no memory to copy the effect; it is read as empty\n");
        Py_INCREF(Py_None);
        m_pRoot = Py_None;
    }
}

EffectSnapshot::~EffectSnapshot() {
    // The copies may refer to each other in cycles, as the originals did:
    // emptying them first lets every one of them go.
    for (auto& entry : m_copies) {
        PyObject* copy = entry.second;
        if (PyList_Check(copy)) {
            PyList_SetSlice(copy, 0, PyList_GET_SIZE(copy), nullptr);
        } else if (PyDict_Check(copy)) {
            PyDict_Clear(copy);
        }
    }
    Py_XDECREF(m_pRoot);
    for (auto& entry : m_copies) {
        Py_DECREF(entry.second);
        Py_DECREF(entry.first);
    }
    PyErr_Clear();
}

void EffectSnapshot::Remember(PyObject* original, PyObject* copy) {
    Py_INCREF(original);
    Py_INCREF(copy);
    m_copies.emplace(original, copy);
}

PyObject* EffectSnapshot::Copy(PyObject* original, int depth) {
    if (!IsContainer(original) || depth >= kMaxDepth) {
        Py_INCREF(original);
        return original;
    }
    auto known = m_copies.find(original);
    if (known != m_copies.end()) {
        Py_INCREF(known->second);
        return known->second;
    }
    if (PyList_Check(original)) {
        return CopyList(original, depth);
    }
    if (PyTuple_Check(original)) {
        return CopyTuple(original, depth);
    }
    return CopyDict(original, depth);
}

// A list's items are taken in one slice, which runs no script code; each
// item is then copied in turn.
PyObject* EffectSnapshot::CopyList(PyObject* original, int depth) {
    PyObject* copy = PyList_GetSlice(original, 0, PyList_GET_SIZE(original));
    if (copy == nullptr) {
        return nullptr;
    }
    Remember(original, copy);
    for (Py_ssize_t index = 0; index < PyList_GET_SIZE(copy); ++index) {
        PyObject* item = PyList_GET_ITEM(copy, index);
        PyObject* itemCopy = Copy(item, depth + 1);
        if (itemCopy == nullptr) {
            PyErr_Clear();
            Py_INCREF(Py_None);
            itemCopy = Py_None;
        }
        PyList_SetItem(copy, index, itemCopy);
    }
    HideFromScripts(copy);
    return copy;
}

PyObject* EffectSnapshot::CopyTuple(PyObject* original, int depth) {
    const Py_ssize_t size = PyTuple_GET_SIZE(original);
    PyObject* copy = PyTuple_New(size);
    if (copy == nullptr) {
        return nullptr;
    }
    // A tuple cannot change, but its items are held while they are copied.
    std::vector<PyObject*> items(static_cast<std::size_t>(size));
    for (Py_ssize_t index = 0; index < size; ++index) {
        items[index] = PyTuple_GET_ITEM(original, index);
        Py_INCREF(items[index]);
        Py_INCREF(Py_None);
        PyTuple_SET_ITEM(copy, index, Py_None);
    }
    Remember(original, copy);
    for (Py_ssize_t index = 0; index < size; ++index) {
        PyObject* itemCopy = Copy(items[index], depth + 1);
        Py_DECREF(items[index]);
        if (itemCopy == nullptr) {
            PyErr_Clear();
            continue;
        }
        PyObject* placeholder = PyTuple_GET_ITEM(copy, index);
        PyTuple_SET_ITEM(copy, index, itemCopy);
        Py_DECREF(placeholder);
    }
    HideFromScripts(copy);
    return copy;
}

// The pairs are taken from the dictionary's own storage, the way the
// converters look keys up, in one loop that runs no script code. Storing
// them in the copy may hash a script's key object; by then the pairs are
// held, so what that code changes is not the copy.
PyObject* EffectSnapshot::CopyDict(PyObject* original, int depth) {
    std::vector<std::pair<PyObject*, PyObject*>> pairs;
    pairs.reserve(static_cast<std::size_t>(PyDict_Size(original)));
    Py_ssize_t position = 0;
    PyObject* key = nullptr;
    PyObject* value = nullptr;
    while (PyDict_Next(original, &position, &key, &value)) {
        Py_INCREF(key);
        Py_INCREF(value);
        pairs.emplace_back(key, value);
    }
    PyObject* copy = PyDict_New();
    if (copy != nullptr) {
        Remember(original, copy);
    }
    for (auto& pair : pairs) {
        if (copy != nullptr) {
            PyObject* valueCopy = Copy(pair.second, depth + 1);
            if (valueCopy == nullptr || PyDict_SetItem(copy, pair.first, valueCopy) < 0) {
                // A key whose hash fails is not found by the converters
                // either: it is left out.
                PyErr_Clear();
            }
            Py_XDECREF(valueCopy);
        }
        Py_DECREF(pair.first);
        Py_DECREF(pair.second);
    }
    if (copy != nullptr) {
        HideFromScripts(copy);
    }
    return copy;
}

}  // namespace effects
}  // namespace pcg
