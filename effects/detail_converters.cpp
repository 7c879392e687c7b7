#include "effects/converter_frame.h"
#include "effects/converters.h"
#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"
#include "engine/keyed_records/detail_records.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace effects {

int32_t m_fnSharpToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::SharpenRecord>(record, [effect](engine::SharpenRecord& sharpen) {
        ReadKeyframes(effect, STR_SHARP_AMOUNT, sharpen.amount);
        ReadKeyframes(effect, STR_SHARP_RADIUS, sharpen.radius);
        ReadKeyframes(effect, STR_SHARP_DETAIL, sharpen.detail);
        ReadKeyframes(effect, STR_SHARP_MASK, sharpen.mask);
        ReadKeyframes(effect, STR_SHARP_OUTPUT, sharpen.outputMode);
    });
}

// The luminance, chroma and combined noise tasks all come here, and the
// converter is not told which: every key is read each time.
int32_t m_fnNoiseToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::NoiseRecord>(record, [effect](engine::NoiseRecord& noise) {
        ReadKeyframes(effect, STR_LNOISE_AMOUNT, noise.lumaAmount);
        ReadKeyframes(effect, STR_LNOISE_DETAIL, noise.lumaDetail);
        ReadKeyframes(effect, STR_CNOISE_AMOUNT, noise.chromaAmount);
        ReadKeyframes(effect, STR_CNOISE_DETAIL, noise.chromaDetail);
    });
}

// Read in the order amount, midpoint, feather, roundness; the record keeps
// roundness third and feather fourth.
int32_t m_fnVignetteToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::VignetteRecord>(record, [effect](engine::VignetteRecord& vignette) {
        ReadKeyframes(effect, STR_VIGNETTE_AMOUNT, vignette.amount);
        ReadKeyframes(effect, STR_VIGNETTE_MIDPOINT, vignette.midPoint);
        ReadKeyframes(effect, STR_VIGNETTE_FEATHER, vignette.feather);
        ReadKeyframes(effect, STR_VIGNETTE_ROUNDNESS, vignette.roundness);
    });
}

// The plain case with a trace of every keyframe.
int32_t m_fnBlurToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::BlurRecord>(record, [effect](engine::BlurRecord& blur) {
        LogKeyedListSize(effect, STR_PEBLUR_MASK_LEVEL);
        ReadKeyedSetting(effect, STR_PEBLUR_MASK_LEVEL, "i", sizeof(int32_t), &blur.level,
                         [](void* target, int64_t time, const void* value, int32_t interpolation) {
                             const int32_t level = *static_cast<const int32_t*>(value);
                             DumpLog("KeyFrame: %lld", static_cast<long long>(time));
                             DumpLog("Level: %d", level);
                             AppendParsedKeyframe<int32_t>(target, time, value, interpolation);
                         });
    });
}

}  // namespace effects
}  // namespace pcg
