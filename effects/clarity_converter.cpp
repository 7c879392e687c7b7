#include "effects/converter_frame.h"
#include "effects/converters.h"
#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"
#include "engine/keyed_records/detail_records.h"

namespace pcg {
namespace effects {

int32_t m_fnClarityToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::ClarityRecord>(record, [effect](engine::ClarityRecord& clarity) {
        ReadKeyframes(effect, STR_CLARITY, clarity.clarity);
    });
}

}  // namespace effects
}  // namespace pcg
