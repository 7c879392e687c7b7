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

// Reads a keyed setting of integer, float or double values into `vector`.
template <typename TValue>
void ReadKeyframes(PyObject* effect, const char* key, engine::KeyframeVector<TValue>& vector) {
    ReadKeyedSetting(effect, key, KeyframeFormat<TValue>::letters, sizeof(TValue), &vector,
                     [](void* target, int64_t time, const void* value, int32_t interpolation) {
                         engine::AppendKeyframe(*static_cast<engine::KeyframeVector<TValue>*>(target), time,
                                                *static_cast<const TValue*>(value), interpolation);
                     });
}

}  // namespace effects
}  // namespace pcg
