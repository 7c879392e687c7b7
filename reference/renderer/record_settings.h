// The global settings a set of effect records asks for at one time, for the
// renderer. Understood: the tone record (exposure, brightness, contrast), the
// white balance record (temperature, tint) and the saturation record; other
// records are left to later effects and change nothing here.
//
// A keyframe vector's value at time t: none (neutral) when it has no entry;
// the first entry's value before it, the last one's after it; between two
// entries, linear in time from the earlier to the later. Null entries are
// skipped. Where two records of a kind are given, the later one wins.
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
