// The one reader of keyed settings that every converter shares: a keyframe
// list under a key of the effect dictionary becomes a keyframe vector, item
// by item, in the script's order. Nothing is scaled, clamped, sorted or
// interpolated here: all of that is the engine's.
#pragma once

#include <cstddef>
#include <cstdint>

#include "binding/py_compat.h"
#include "engine/effect_record.h"

namespace pcg {
namespace effects {

// Receives one keyframe: time, the parsed value (valueSize bytes at value)
// and the interpolation.
using KeyframeSink = void (*)(void* target, int64_t time, const void* value, int32_t interpolation);

// Reads the list under `key` of `effect`. An absent key, an empty list and a
// value that is not a list all leave the target untouched. Each item's time
// is parsed with "L" and its value with `valueFormat`; an element of the
// wrong type, or missing, leaves that field 0 and the keyframe is kept. The interpolation
// is the item's last element when the item has exactly 3 elements, else 2.
void ReadKeyedSetting(PyObject* effect, const char* key, const char* valueFormat, std::size_t valueSize,
                      void* target, KeyframeSink sink);

template <typename TValue>
struct KeyframeFormat;
template <>
struct KeyframeFormat<int32_t> {
    static constexpr const char* letters = "i";
};
template <>
struct KeyframeFormat<float> {
    static constexpr const char* letters = "f";
};
template <>
struct KeyframeFormat<double> {
    static constexpr const char* letters = "d";
};

// The keyframe loop of ReadKeyedSetting on a list already at hand, such as one
// band of a band list. `label` names the list in log lines. Anything but a
// non-empty list leaves the target untouched.
void ReadKeyframeList(PyObject* list, const char* label, const char* valueFormat, std::size_t valueSize,
                      void* target, KeyframeSink sink);

// Looks `key` up in `effect`. False when the key is absent (or the effect is
// no dictionary). Otherwise `list` is the value and `size` its length as the
// reader takes it: the low 32 bits, and -1 for a value that is not a list.
bool FindKeyedList(PyObject* effect, const char* key, PyObject*& list, int32_t& size);

// Parses `object` with a one-unit format into `out`. On failure `out` keeps
// its value, no interpreter error is left pending, and the result is false.
bool ParseScalar(PyObject* object, const char* format, void* out);

template <typename TValue>
void AppendParsedKeyframe(void* target, int64_t time, const void* value, int32_t interpolation) {
    engine::AppendKeyframe(*static_cast<engine::KeyframeVector<TValue>*>(target), time,
                           *static_cast<const TValue*>(value), interpolation);
}

// Reads a keyed setting of integer, float or double values into `vector`.
template <typename TValue>
void ReadKeyframes(PyObject* effect, const char* key, engine::KeyframeVector<TValue>& vector) {
    ReadKeyedSetting(effect, key, KeyframeFormat<TValue>::letters, sizeof(TValue), &vector,
                     AppendParsedKeyframe<TValue>);
}

// Reads one keyframe list of integer, float or double values into `vector`.
template <typename TValue>
void ReadKeyframeList(PyObject* list, const char* label, engine::KeyframeVector<TValue>& vector) {
    ReadKeyframeList(list, label, KeyframeFormat<TValue>::letters, sizeof(TValue), &vector,
                     AppendParsedKeyframe<TValue>);
}

}  // namespace effects
}  // namespace pcg
