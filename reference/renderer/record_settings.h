// The global settings a set of effect records asks for at one time, for the
// renderer. Every global effect record the renderer can draw is read: tone
// (all seven sliders), white balance, saturation, HSL with its vibrancy, black
// and white (the header word is the switch), tint, hue shift, both tone curve
// records, clarity, sharpen (amount, radius, masking), the post-crop
// vignette, split tone, blur, noise reduction, HDR, colour replacement and
// colour splash (their keyframes are whole settings: the latest at or before
// the time is taken, not blended). Levels have no record.
//
// A keyframe vector's value at time t: none (the setting stays neutral) when
// it has no entry; the first entry's value before it, the last one's after
// it; between two entries, linear in time from the earlier to the later. Null
// entries are skipped. A tone curve keyframe's value is its whole mapping
// table, blended entry by entry the same way (rounded to the nearest code); a
// keyframe with a null table is skipped like a null entry. Where two records
// of a kind are given, the later one wins for every vector it fills.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "reference/renderer/renderer.h"

namespace pcg {
namespace engine {
struct EffectRecordHeader;
}

namespace renderer {

using HeldRecord = std::pair<uint32_t, const pcg::engine::EffectRecordHeader*>;  // FUNCTION_ID, record

GlobalSettings SettingsAt(const std::vector<HeldRecord>& records, int64_t time);

}  // namespace renderer
}  // namespace pcg
