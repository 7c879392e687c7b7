#include "effects/converter_frame.h"
#include "effects/converters.h"
#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"
#include "engine/keyed_records/creative_records.h"

namespace pcg {
namespace effects {

int32_t m_fnHDRToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::HDRRecord>(record, [effect](engine::HDRRecord& hdr) {
        ReadKeyframes(effect, STR_HDR_GLOW_STRENGTH, hdr.glowStrength);
        ReadKeyframes(effect, STR_HDR_GLOW_RADIUS, hdr.glowRadius);
        ReadKeyframes(effect, STR_HDR_GLOW_BALANCE, hdr.glowBalance);
        ReadKeyframes(effect, STR_HDR_EDGE_STRENGTH, hdr.edgeStrength);
        ReadKeyframes(effect, STR_HDR_EDGE_RADIUS, hdr.edgeRadius);
        ReadKeyframes(effect, STR_HDR_EDGE_BALANCE, hdr.edgeBalance);
    });
}

int32_t m_fnSplitToneToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::SplitToneRecord>(record, [effect](engine::SplitToneRecord& split) {
        ReadKeyframes(effect, STR_SPLITTONE_LIGHT_HUE, split.lightHue);
        ReadKeyframes(effect, STR_SPLITTONE_LIGHTS_SATURATION, split.lightSaturation);
        ReadKeyframes(effect, STR_SPLITTONE_BALANCE, split.balance);
        ReadKeyframes(effect, STR_SPLITTONE_DARK_HUE, split.darkHue);
        ReadKeyframes(effect, STR_SPLITTONE_DARK_SATURATION, split.darkSaturation);
    });
}

}  // namespace effects
}  // namespace pcg
