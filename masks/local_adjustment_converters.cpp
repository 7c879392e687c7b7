// The nine local adjustment converters: each reads its own keys, in its
// record's order, into one per-mask record per dictionary of the list.
#include "effects/colour_bands.h"
#include "effects/converters.h"
#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"
#include "masks/local_adjustment_frame.h"
#include "masks/local_adjustment_settings.h"

namespace pcg {
namespace effects {
namespace {

using engine::EffectRecordHeader;
using masks::ConvertLocalEffect;

void ReadWBKeys(PyObject* dictionary, engine::MaskWBRecord& mask) {
    ReadKeyframes(dictionary, STR_MASK_WB_TEMPERATURE, mask.temperature);
    ReadKeyframes(dictionary, STR_MASK_WB_TINT, mask.tint);
}

void ReadToneKeys(PyObject* dictionary, engine::MaskToneRecord& mask) {
    ReadKeyframes(dictionary, STR_MASK_TONE_EXPOSURE, mask.exposure);
    ReadKeyframes(dictionary, STR_MASK_TONE_BRIGHTNESS, mask.brightness);
    ReadKeyframes(dictionary, STR_MASK_TONE_CONTRAST, mask.contrast);
}

void ReadClarityKeys(PyObject* dictionary, engine::MaskClarityRecord& mask) {
    ReadKeyframes(dictionary, STR_MASK_CLARITY_VALUE, mask.clarity);
}

void ReadSaturationKeys(PyObject* dictionary, engine::MaskSaturationRecord& mask) {
    ReadKeyframes(dictionary, STR_MASK_SATURATION_VALUE, mask.saturation);
}

void ReadHSLKeys(PyObject* dictionary, engine::MaskHSLRecord& mask) {
    ReadKeyframes(dictionary, STR_MASK_VIBRANCY, mask.vibrancy);
    effects::ReadColourBands("m_fnMaskHSLToEffect", dictionary, STR_MASK_HSL_HUE, mask.hue);
    effects::ReadColourBands("m_fnMaskHSLToEffect", dictionary, STR_MASK_HSL_SATURATION, mask.saturation);
    effects::ReadColourBands("m_fnMaskHSLToEffect", dictionary, STR_MASK_HSL_LUMINANCE, mask.luminance);
}

void ReadColorReplaceKeys(PyObject* dictionary, engine::MaskColorReplaceRecord& mask) {
    masks::ReadColorReplaceList(dictionary, STR_MASK_COLORREPLACEMENT, mask.colorReplace);
}

void ReadTintKeys(PyObject* dictionary, engine::MaskTintRecord& mask) {
    ReadKeyframes(dictionary, STR_MASK_PETINT_HUE, mask.hue);
    ReadKeyframes(dictionary, STR_MASK_PETINT_AMOUNT, mask.amount);
}

void ReadBlurKeys(PyObject* dictionary, engine::MaskBlurRecord& mask) {
    ReadKeyframes(dictionary, STR_MASK_PEBLUR_LEVEL, mask.level);
}

void ReadColorSplashKeys(PyObject* dictionary, engine::MaskColorSplashRecord& mask) {
    masks::ReadColorSplashList(dictionary, STR_MASK_COLORSPLASH, mask.head, mask.colorSplash);
}

}  // namespace

int32_t m_fnMaskWBToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, EffectRecordHeader*& record) {
    return ConvertLocalEffect<engine::MaskWBRecord, ReadWBKeys>("m_fnMaskWBToEffect", FUNCTION_SET_WB_MASK, effect,
                                                                record);
}

int32_t m_fnMaskToneToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, EffectRecordHeader*& record) {
    return ConvertLocalEffect<engine::MaskToneRecord, ReadToneKeys>("m_fnMaskToneToEffect", FUNCTION_SET_TONE_MASK,
                                                                    effect, record);
}

int32_t m_fnMaskClarityToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, EffectRecordHeader*& record) {
    return ConvertLocalEffect<engine::MaskClarityRecord, ReadClarityKeys>("m_fnMaskClarityToEffect",
                                                                          FUNCTION_SET_CLARITY_MASK, effect, record);
}

int32_t m_fnMaskSaturationToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, EffectRecordHeader*& record) {
    return ConvertLocalEffect<engine::MaskSaturationRecord, ReadSaturationKeys>(
        "m_fnMaskSaturationToEffect", FUNCTION_SET_SATURATION_MASK, effect, record);
}

int32_t m_fnMaskHSLToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, EffectRecordHeader*& record) {
    return ConvertLocalEffect<engine::MaskHSLRecord, ReadHSLKeys>("m_fnMaskHSLToEffect", FUNCTION_SET_HSLCOLOR_MASK,
                                                                  effect, record);
}

int32_t m_fnMaskColorReplaceToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, EffectRecordHeader*& record) {
    return ConvertLocalEffect<engine::MaskColorReplaceRecord, ReadColorReplaceKeys>(
        "m_fnMaskColorReplaceToEffect", FUNCTION_SET_COLORREPLACE_MASK, effect, record);
}

int32_t m_fnMaskTintToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, EffectRecordHeader*& record) {
    return ConvertLocalEffect<engine::MaskTintRecord, ReadTintKeys>("m_fnMaskTintToEffect", FUNCTION_SET_BWTINT_MASK,
                                                                    effect, record);
}

int32_t m_fnMaskBlurToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, EffectRecordHeader*& record) {
    return ConvertLocalEffect<engine::MaskBlurRecord, ReadBlurKeys>("m_fnMaskBlurToEffect", FUNCTION_SET_MEAN_BLUR_MASK,
                                                                    effect, record);
}

int32_t m_fnMaskColorSplashToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, EffectRecordHeader*& record) {
    return ConvertLocalEffect<engine::MaskColorSplashRecord, ReadColorSplashKeys>(
        "m_fnMaskColorSplashToEffect", FUNCTION_SET_COLORSPLASH_MASK, effect, record);
}

}  // namespace effects
}  // namespace pcg
