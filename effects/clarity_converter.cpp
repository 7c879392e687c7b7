#include "effects/converters.h"
#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"

namespace pcg {
namespace effects {

int32_t m_fnClarityToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    auto* clarity = engine::NewEffectRecord<engine::ClarityRecord>(EFFECT_VERSION_LATEST);
    if (clarity != nullptr) {
        ReadKeyframes(effect, STR_CLARITY, clarity->clarity);
    }
    record = reinterpret_cast<engine::EffectRecordHeader*>(clarity);
    return 0;
}

}  // namespace effects
}  // namespace pcg
