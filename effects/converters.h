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

// The global effects, one converter per FUNCTION_ID, each of the converter
// signature.
using EffectConverterFunction = int32_t(PyClipGrade* facade, FUNCTION_ID functionID, PyObject* effect,
                                        engine::EffectRecordHeader*& record);
EffectConverterFunction m_fnBlackWhiteToEffect;
EffectConverterFunction m_fnWBToEffect;
EffectConverterFunction m_fnToneToEffect;
EffectConverterFunction m_fnHSLToEffect;
EffectConverterFunction m_fnSharpToEffect;
EffectConverterFunction m_fnSaturationToEffect;
EffectConverterFunction m_fnVignetteToEffect;
EffectConverterFunction m_fnToneCurveChannelToEffect;
EffectConverterFunction m_fnToneCurveToEffect;
EffectConverterFunction m_fnTintToEffect;
EffectConverterFunction m_fnBlurToEffect;
EffectConverterFunction m_fnColorReplaceToEffect;
EffectConverterFunction m_fnSplitToneToEffect;
EffectConverterFunction m_fnColorSplashToEffect;
EffectConverterFunction m_fnHueShiftToEffect;
EffectConverterFunction m_fnNoiseToEffect;
EffectConverterFunction m_fnHDRToEffect;

// The local adjustments (the effect is a list of one dictionary per mask) and
// the show-mask effect; they live in masks/.
EffectConverterFunction m_fnMaskWBToEffect;
EffectConverterFunction m_fnMaskToneToEffect;
EffectConverterFunction m_fnMaskClarityToEffect;
EffectConverterFunction m_fnMaskSaturationToEffect;
EffectConverterFunction m_fnMaskHSLToEffect;
EffectConverterFunction m_fnMaskColorReplaceToEffect;
EffectConverterFunction m_fnMaskTintToEffect;
EffectConverterFunction m_fnMaskBlurToEffect;
EffectConverterFunction m_fnMaskColorSplashToEffect;
EffectConverterFunction m_fnShowMaskToEffect;

}  // namespace effects
}  // namespace pcg
