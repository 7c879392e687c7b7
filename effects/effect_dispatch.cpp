#include "effects/converters.h"

#include "engine/result_codes.h"

namespace pcg {
namespace effects {
namespace {

struct ConverterEntry {
    FUNCTION_ID functionID;
    EffectConverter converter;
};

// FUNCTION_SET_LEVEL and FUNCTION_SET_LEVEL_RGB pass the task map and have
// no converter: level tasks are refused here.
constexpr ConverterEntry kConverters[] = {
    {FUNCTION_SET_CLARITY, m_fnClarityToEffect},
    {FUNCTION_SET_BLACKWHITE, m_fnBlackWhiteToEffect},
    {FUNCTION_SET_WB, m_fnWBToEffect},
    {FUNCTION_SET_TONE, m_fnToneToEffect},
    {FUNCTION_SET_HSLCOLOR, m_fnHSLToEffect},
    {FUNCTION_SET_SHARP, m_fnSharpToEffect},
    {FUNCTION_SET_SATURATION, m_fnSaturationToEffect},
    {FUNCTION_SET_POST_VIGNETTE, m_fnVignetteToEffect},
    {FUNCTION_SET_TONECURVE, m_fnToneCurveChannelToEffect},
    {FUNCTION_SET_TONECURVE_RGB, m_fnToneCurveToEffect},
    {FUNCTION_SET_BWTINT, m_fnTintToEffect},
    {FUNCTION_SET_BLUR_MASK, m_fnBlurToEffect},
    {FUNCTION_SET_COLORREPLACE, m_fnColorReplaceToEffect},
    {FUNCTION_SET_SPLITTONE, m_fnSplitToneToEffect},
    {FUNCTION_SET_COLORSPLASH, m_fnColorSplashToEffect},
    {FUNCTION_SET_HUESHIFT, m_fnHueShiftToEffect},
    {FUNCTION_SET_NOISE, m_fnNoiseToEffect},
    {FUNCTION_SET_HDR, m_fnHDRToEffect},
    {FUNCTION_SET_SHOW_MASK, m_fnShowMaskToEffect},
    {FUNCTION_SET_WB_MASK, m_fnMaskWBToEffect},
    {FUNCTION_SET_TONE_MASK, m_fnMaskToneToEffect},
    {FUNCTION_SET_CLARITY_MASK, m_fnMaskClarityToEffect},
    {FUNCTION_SET_SATURATION_MASK, m_fnMaskSaturationToEffect},
    {FUNCTION_SET_HSLCOLOR_MASK, m_fnMaskHSLToEffect},
    {FUNCTION_SET_COLORREPLACE_MASK, m_fnMaskColorReplaceToEffect},
    {FUNCTION_SET_BWTINT_MASK, m_fnMaskTintToEffect},
    {FUNCTION_SET_MEAN_BLUR_MASK, m_fnMaskBlurToEffect},
    {FUNCTION_SET_COLORSPLASH_MASK, m_fnMaskColorSplashToEffect},
};

}  // namespace

EffectConverter FindEffectConverter(FUNCTION_ID functionID) {
    for (const ConverterEntry& entry : kConverters) {
        if (entry.functionID == functionID) {
            return entry.converter;
        }
    }
    return nullptr;
}

int32_t DispatchEffectConverter(PyClipGrade* facade, FUNCTION_ID functionID, PyObject* effect,
                                engine::EffectRecordHeader*& record) {
    EffectConverter converter = FindEffectConverter(functionID);
    if (converter == nullptr) {
        return kResultInvalidArg;
    }
    converter(facade, functionID, effect, record);
    return kResultOk;
}

}  // namespace effects
}  // namespace pcg
