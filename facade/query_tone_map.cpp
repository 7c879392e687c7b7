#include "engine/effect_record.h"
#include "engine/keyed_records/tone_records.h"
#include "engine/records/effect_records.h"
#include "facade/clipgrade.h"

int* PyClipGrade::Query_ToneMapInfoForEngine(ToneCurveRGBSetting setToneCurve) {
    // The table travels inside a record that the agent frees, so it comes
    // from the effect heap. It is allocated before anything else: without
    // an image engine it is handed on as it stands, which on this heap is
    // zero-filled rather than undefined. The image engine's curve, and the
    // pivot limit and log lines that go with it, come with that engine.
    (void)setToneCurve;
    return static_cast<int*>(pcg::engine::AllocEffectMemory(pcg::engine::kCurveTableBytes));
}
