// The effect converters: each turns one effect dictionary into the plain
// record of its FUNCTION_ID, and the dispatch picks the converter.
#pragma once

#include <cstdint>

#include "binding/py_compat.h"
#include "engine/constants.h"
#include "engine/effect_record.h"

class PyClipGrade;

namespace pcg {
namespace effects {

// A converter allocates its record, fills it from the effect and stores it
// through `record` on every path, so a converter whose keys are all absent
// still yields a record of empty vectors. Its result is not looked at.
using EffectConverter = int32_t (*)(PyClipGrade* facade, FUNCTION_ID functionID, PyObject* effect,
                                    engine::EffectRecordHeader*& record);

// Runs the converter of `functionID`: 0, or 0x80070057 at once when the
// function has no converter.
int32_t DispatchEffectConverter(PyClipGrade* facade, FUNCTION_ID functionID, PyObject* effect,
                                engine::EffectRecordHeader*& record);

// Null when the function has no converter.
EffectConverter FindEffectConverter(FUNCTION_ID functionID);

int32_t m_fnClarityToEffect(PyClipGrade* facade, FUNCTION_ID functionID, PyObject* effect,
                            engine::EffectRecordHeader*& record);

}  // namespace effects
}  // namespace pcg
