// Writes the effect version into a record that a converter built.
#pragma once

#include <cstdint>

#include "binding/py_compat.h"
#include "engine/effect_record.h"

namespace pcg {
namespace effects {

// Always 0. A dict effect (or subclass) gives its "EffVer" code, translated;
// a list effect leaves the version as its converter wrote it.
int32_t m_fnSetEffectVerToEffect(int32_t taskID, engine::EffectRecordHeader* record, PyObject* effect);

// The version a record carries for an "EffVer" code of the script.
uint32_t EffectVersionForCode(int32_t versionCode);

}  // namespace effects
}  // namespace pcg
