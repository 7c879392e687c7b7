// Keyed records of the creative effects: HDR and split toning. Where the
// engine's setting holds a float the keyframe carries a double.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/effect_record.h"

namespace pcg {
namespace engine {

// FUNCTION_SET_HDR. Edge strength is the one double.
struct HDRRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> glowStrength;  // nGlow_strength
    KeyframeVector<int32_t> glowRadius;    // nGlow_radius
    KeyframeVector<int32_t> glowBalance;   // nGlow_balance
    KeyframeVector<double> edgeStrength;   // fEdge_strength
    KeyframeVector<int32_t> edgeRadius;    // nEdge_radius
    KeyframeVector<int32_t> edgeBalance;   // nEdge_balance
};

static_assert(sizeof(HDRRecord) == 152, "HDR record");
static_assert(offsetof(HDRRecord, glowStrength) == 8, "glow strength vector");
static_assert(offsetof(HDRRecord, glowRadius) == 32, "glow radius vector");
static_assert(offsetof(HDRRecord, glowBalance) == 56, "glow balance vector");
static_assert(offsetof(HDRRecord, edgeStrength) == 80, "edge strength vector");
static_assert(offsetof(HDRRecord, edgeRadius) == 104, "edge radius vector");
static_assert(offsetof(HDRRecord, edgeBalance) == 128, "edge balance vector");

// FUNCTION_SET_SPLITTONE: all five values are doubles.
struct SplitToneRecord {
    EffectRecordHeader header;
    KeyframeVector<double> lightHue;         // fLightHue
    KeyframeVector<double> lightSaturation;  // fLightSaturation
    KeyframeVector<double> balance;          // fBalance
    KeyframeVector<double> darkHue;          // fDarkHue
    KeyframeVector<double> darkSaturation;   // fDarkSaturation
};

static_assert(sizeof(SplitToneRecord) == 128, "split tone record");
static_assert(offsetof(SplitToneRecord, lightHue) == 8, "light hue vector");
static_assert(offsetof(SplitToneRecord, lightSaturation) == 32, "light saturation vector");
static_assert(offsetof(SplitToneRecord, balance) == 56, "balance vector");
static_assert(offsetof(SplitToneRecord, darkHue) == 80, "dark hue vector");
static_assert(offsetof(SplitToneRecord, darkSaturation) == 104, "dark saturation vector");

}  // namespace engine
}  // namespace pcg
