#include "effects/colour_bands.h"
#include "effects/converter_frame.h"
#include "effects/converters.h"
#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"
#include "engine/keyed_records/colour_records.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace effects {

int32_t m_fnWBToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::WBRecord>(record, [effect](engine::WBRecord& wb) {
        ReadKeyframes(effect, STR_WB_TEMPERATURE, wb.temperature);
        ReadKeyframes(effect, STR_WB_TINT, wb.tint);
    });
}

int32_t m_fnSaturationToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::SaturationRecord>(record, [effect](engine::SaturationRecord& saturation) {
        ReadKeyframes(effect, STR_SATURATION, saturation.saturation);
    });
}

int32_t m_fnTintToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::TintRecord>(record, [effect](engine::TintRecord& tint) {
        ReadKeyframes(effect, STR_PETINT_MASK_HUE, tint.hue);
        ReadKeyframes(effect, STR_PETINT_MASK_AMOUNT, tint.amount);
    });
}

// The plain case with a trace of every keyframe; the value is logged as the
// double the float widens to.
int32_t m_fnHueShiftToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::HueShiftRecord>(record, [effect](engine::HueShiftRecord& hueShift) {
        LogKeyedListSize(effect, STR_COLOR_SHIFT);
        ReadKeyedSetting(effect, STR_COLOR_SHIFT, "f", sizeof(float), &hueShift.hueShift,
                         [](void* target, int64_t time, const void* value, int32_t interpolation) {
                             DumpLog("KeyFrame: %lld", static_cast<long long>(time));
                             DumpLog("HueShift: %f", static_cast<double>(*static_cast<const float*>(value)));
                             AppendParsedKeyframe<float>(target, time, value, interpolation);
                         });
    });
}

int32_t m_fnHSLToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::HSLRecord>(record, [effect](engine::HSLRecord& hsl) {
        ReadKeyframes(effect, STR_VIBRANCY_VIBRANCY, hsl.vibrancy);
        ReadColourBands("m_fnHSLToEffect", effect, STR_HSL_HUE, hsl.hue);
        ReadColourBands("m_fnHSLToEffect", effect, STR_HSL_SATURATION, hsl.saturation);
        ReadColourBands("m_fnHSLToEffect", effect, STR_HSL_LUMINANCE, hsl.luminance);
    });
}

// The switch "BW" is a plain scalar kept in the header's second word; a
// missing key leaves it 0.
int32_t m_fnBlackWhiteToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::BlackWhiteRecord>(record, [effect](engine::BlackWhiteRecord& blackWhite) {
        if (effect != nullptr && PyDict_Check(effect)) {
            if (PyObject* value = PyDict_GetItemString(effect, STR_BLACK_WHITE)) {
                int blackWhiteSwitch = 0;
                ParseScalar(value, "i", &blackWhiteSwitch);
                blackWhite.header.nHeaderWord = static_cast<uint32_t>(blackWhiteSwitch);
            }
        }
        ReadColourBands("m_fnBlackWhiteToEffect", effect, STR_BW_LUMINANCE, blackWhite.luminance);
    });
}

}  // namespace effects
}  // namespace pcg
