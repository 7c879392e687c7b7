#include "effects/converter_frame.h"
#include "effects/converters.h"
#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"
#include "engine/keyed_records/tone_records.h"

namespace pcg {
namespace effects {

// The seven sliders in the agent's order, which is also the reading order.
int32_t m_fnToneToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::ToneRecord>(record, [effect](engine::ToneRecord& tone) {
        ReadKeyframes(effect, STR_TONE_EXPOSURE, tone.exposure);
        ReadKeyframes(effect, STR_TONE_BLACKS, tone.blacks);
        ReadKeyframes(effect, STR_TONE_RECOVERY, tone.recovery);
        ReadKeyframes(effect, STR_TONE_FILLLIGHT, tone.fillLight);
        ReadKeyframes(effect, STR_TONE_BRIGHTNESS, tone.brightness);
        ReadKeyframes(effect, STR_TONE_CONTRAST, tone.contrast);
        ReadKeyframes(effect, STR_TONE_WHITES, tone.whites);
    });
}

}  // namespace effects
}  // namespace pcg
