#include "effects/task_map.h"

#include "engine/result_codes.h"

namespace pcg {
namespace effects {
namespace {

struct TaskMapping {
    int32_t taskID;
    FUNCTION_ID functionID;
};

// Three tasks share the one noise function, and the two tone curve tasks
// cross over: the master curve goes to the _RGB function, the per-channel
// curve to the one without. The engine relies on both as they stand.
constexpr TaskMapping kTaskMap[] = {
    {PY_SET_WB, FUNCTION_SET_WB},
    {PY_SET_BLACK_WHITE, FUNCTION_SET_BLACKWHITE},
    {PY_SET_TONE, FUNCTION_SET_TONE},
    {PY_SET_LEVEL, FUNCTION_SET_LEVEL},
    {PY_SET_SHARPNESS, FUNCTION_SET_SHARP},
    {PY_SET_LUMA_NOISE, FUNCTION_SET_NOISE},
    {PY_SET_CHROMA_NOISE, FUNCTION_SET_NOISE},
    {PY_SET_CLARITY, FUNCTION_SET_CLARITY},
    {PY_SET_POSTCROP_VIGNETTE, FUNCTION_SET_POST_VIGNETTE},
    {PY_SET_SHOW_MASK, FUNCTION_SET_SHOW_MASK},
    {PY_SET_SATURATION, FUNCTION_SET_SATURATION},
    {PY_SET_HSL_VIB, FUNCTION_SET_HSLCOLOR},
    {PY_SET_LEVEL_RGB, FUNCTION_SET_LEVEL_RGB},
    {PY_SET_NOISE, FUNCTION_SET_NOISE},
    {PY_SET_TONE_CURVE, FUNCTION_SET_TONECURVE_RGB},
    {PY_SET_COLORREPLACEMENT, FUNCTION_SET_COLORREPLACE},
    {PY_SET_HDR, FUNCTION_SET_HDR},
    {PY_SET_TONE_CURVE_CHANNEL, FUNCTION_SET_TONECURVE},
    {PY_SET_SPLITTONE, FUNCTION_SET_SPLITTONE},
    {PY_SET_COLORSPLASH, FUNCTION_SET_COLORSPLASH},
    {PY_SET_COLORSHIFT, FUNCTION_SET_HUESHIFT},
    {PY_SET_MASK_WB, FUNCTION_SET_WB_MASK},
    {PY_SET_MASK_TONE, FUNCTION_SET_TONE_MASK},
    {PY_SET_MASK_CLARITY, FUNCTION_SET_CLARITY_MASK},
    {PY_SET_MASK_SATURATION, FUNCTION_SET_SATURATION_MASK},
    {PY_SET_MASK_HSL, FUNCTION_SET_HSLCOLOR_MASK},
    {PY_SET_PETINT, FUNCTION_SET_BWTINT},
    {PY_SET_PEBLUR, FUNCTION_SET_BLUR_MASK},
    {PY_SET_MASK_COLORREPLACEMENT, FUNCTION_SET_COLORREPLACE_MASK},
    {PY_SET_MASK_PETINT, FUNCTION_SET_BWTINT_MASK},
    {PY_SET_MASK_PEBLUR, FUNCTION_SET_MEAN_BLUR_MASK},
    {PY_SET_MASK_COLORSPLASH, FUNCTION_SET_COLORSPLASH_MASK},
};

}  // namespace

int32_t MapTaskToFunction(int32_t taskID, FUNCTION_ID& functionID) {
    for (const TaskMapping& mapping : kTaskMap) {
        if (mapping.taskID == taskID) {
            functionID = mapping.functionID;
            return kResultOk;
        }
    }
    return kResultInvalidArg;
}

}  // namespace effects
}  // namespace pcg
