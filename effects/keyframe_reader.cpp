#include "effects/keyframe_reader.h"

#include <cstring>

#include "runtime/dump_log.h"

namespace pcg {
namespace effects {
namespace {

// Large enough for the biggest value any format letter writes.
constexpr std::size_t kMaxValueSize = 16;

// Parses element `index` of `item` with `format` into `out`. A missing
// element leaves `out` as it was, like an element of the wrong type.
void ParseElement(PyObject* item, Py_ssize_t index, Py_ssize_t itemSize, const char* format, void* out) {
    if (index >= itemSize) {
        return;
    }
    PyObject* element = PyList_GetItem(item, index);
    if (element != nullptr) {
        ParseScalar(element, format, out);
    }
}

}  // namespace

bool ParseScalar(PyObject* object, const char* format, void* out) {
    if (PyArg_Parse(object, format, out)) {
        return true;
    }
    // The field keeps its initial value. The parse error is not left
    // pending: the operation answers with its own result, and a Python 3
    // interpreter refuses a result that comes with an error set.
    PyErr_Clear();
    return false;
}

bool FindKeyedList(PyObject* effect, const char* key, PyObject*& list, int32_t& size) {
    list = nullptr;
    size = 0;
    if (effect == nullptr || !PyDict_Check(effect)) {
        return false;
    }
    list = PyDict_GetItemString(effect, key);
    if (list == nullptr) {
        return false;
    }
    size = PyList_Check(list) ? static_cast<int32_t>(PyList_Size(list)) : -1;
    return true;
}

void ReadKeyedSetting(PyObject* effect, const char* key, const char* valueFormat, std::size_t valueSize,
                      void* target, KeyframeSink sink) {
    PyObject* list = nullptr;
    int32_t size = 0;
    if (FindKeyedList(effect, key, list, size)) {
        ReadKeyframeList(list, key, valueFormat, valueSize, target, sink);
    }
}

void ReadKeyframeList(PyObject* list, const char* label, const char* valueFormat, std::size_t valueSize,
                      void* target, KeyframeSink sink) {
    // A value that is not a list counts as an empty one.
    if (list == nullptr || !PyList_Check(list) || valueSize > kMaxValueSize) {
        return;
    }
    const int32_t count = static_cast<int32_t>(PyList_Size(list));
    for (int32_t index = 0; index < count; ++index) {
        PyObject* item = PyList_GetItem(list, index);
        if (item == nullptr || !PyList_Check(item)) {
            // Keyframe items are lists; anything else has no time or value
            // to read, so it is skipped rather than guessed at.
            DumpLog("[Err] keyframe %d of \"%s\" is not a list; skipped\n", index, label);
            continue;
        }
        const Py_ssize_t itemSize = PyList_Size(item);
        long long time = 0;
        unsigned char value[kMaxValueSize];
        std::memset(value, 0, sizeof(value));
        int interpolation = engine::kDefaultInterpolation;

        ParseElement(item, 0, itemSize, "L", &time);
        ParseElement(item, 1, itemSize, valueFormat, value);
        if (itemSize == 3) {
            ParseElement(item, itemSize - 1, itemSize, "i", &interpolation);
        }
        sink(target, static_cast<int64_t>(time), value, static_cast<int32_t>(interpolation));
    }
}

}  // namespace effects
}  // namespace pcg
