// Keyed records of the global tone effects: the tone sliders and the two
// tone curves. A curve keyframe carries a finished mapping table rather than
// pivots, so its entry is a kind of its own.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/constants.h"
#include "engine/effect_record.h"

namespace pcg {
namespace engine {

// FUNCTION_SET_TONE. The vector order is the agent's, not ToneSetting's field
// order: exposure (the one double), blacks, recovery, fill light, brightness,
// contrast, whites.
struct ToneRecord {
    EffectRecordHeader header;
    KeyframeVector<double> exposure;     // dExposure
    KeyframeVector<int32_t> blacks;      // nBlacks
    KeyframeVector<int32_t> recovery;    // nRecovery
    KeyframeVector<int32_t> fillLight;   // nFillLight
    KeyframeVector<int32_t> brightness;  // nBrightness
    KeyframeVector<int32_t> contrast;    // nContrast
    KeyframeVector<int32_t> whites;      // nWhites
};

static_assert(sizeof(ToneRecord) == 176, "tone record");
static_assert(offsetof(ToneRecord, exposure) == 8, "exposure vector");
static_assert(offsetof(ToneRecord, blacks) == 32, "blacks vector");
static_assert(offsetof(ToneRecord, recovery) == 56, "recovery vector");
static_assert(offsetof(ToneRecord, fillLight) == 80, "fill light vector");
static_assert(offsetof(ToneRecord, brightness) == 104, "brightness vector");
static_assert(offsetof(ToneRecord, contrast) == 128, "contrast vector");
static_assert(offsetof(ToneRecord, whites) == 152, "whites vector");

// Number of 32-bit values in a curve's mapping table, and the table's bytes.
constexpr std::size_t kCurveTableCount = TONE_MAX_TABLE_SIZE;
constexpr std::size_t kCurveTableBytes = kCurveTableCount * sizeof(int32_t);
static_assert(kCurveTableBytes == 262144, "a curve table is 256 KiB");

// One keyframe of a tone curve: its value is the mapping table, which belongs
// to the entry (and so to the record). The table is null for a master curve
// item of the wrong shape.
using CurveKeyframeEntry = KeyframeEntry<int32_t*>;

static_assert(sizeof(CurveKeyframeEntry) == 24, "curve entry");
static_assert(offsetof(CurveKeyframeEntry, llTime) == 0, "curve entry time");
static_assert(offsetof(CurveKeyframeEntry, value) == 8, "curve entry table");
static_assert(offsetof(CurveKeyframeEntry, nInterpolation) == 16, "curve entry interpolation");

using CurveKeyframeVector = KeyframeVector<int32_t*>;

// FUNCTION_SET_TONECURVE_RGB: the master curve.
struct ToneCurveRecord {
    EffectRecordHeader header;
    CurveKeyframeVector curve;
};

static_assert(sizeof(ToneCurveRecord) == 32, "tone curve record");
static_assert(offsetof(ToneCurveRecord, curve) == 8, "master curve vector");

// FUNCTION_SET_TONECURVE: one curve per channel, red, green, blue.
struct ToneCurveChannelRecord {
    EffectRecordHeader header;
    CurveKeyframeVector channels[COLOR_CHANNEL_COUNT];
};

static_assert(COLOR_CHANNEL_COUNT == 3, "red, green and blue");
static_assert(sizeof(ToneCurveChannelRecord) == 80, "tone curve channel record");
static_assert(offsetof(ToneCurveChannelRecord, channels) == 8, "red curve vector");
static_assert(offsetof(ToneCurveChannelRecord, channels) + 2 * kVectorSize == 56, "blue curve vector");

}  // namespace engine
}  // namespace pcg
