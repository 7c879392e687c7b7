// Keyed records of the detail and finish effects: clarity, sharpen, noise
// reduction, the post-crop vignette and the blur.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/effect_record.h"

namespace pcg {
namespace engine {

// FUNCTION_SET_CLARITY. The plain case, and the pattern of all records of
// keyframe vectors: the header and one integer vector (nClarity).
struct ClarityRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> clarity;
};

static_assert(sizeof(ClarityRecord) == 32, "clarity record");
static_assert(offsetof(ClarityRecord, clarity) == 8, "clarity vector");

// FUNCTION_SET_SHARP. The radius entry is a double although the setting's
// field is a float: the agent narrows it.
struct SharpenRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> amount;      // nAmount
    KeyframeVector<double> radius;       // fRadius
    KeyframeVector<int32_t> detail;      // nDetail
    KeyframeVector<int32_t> mask;        // nMask
    KeyframeVector<int32_t> outputMode;  // nOutputMode
};

static_assert(sizeof(SharpenRecord) == 128, "sharpen record");
static_assert(offsetof(SharpenRecord, amount) == 8, "amount vector");
static_assert(offsetof(SharpenRecord, radius) == 32, "radius vector");
static_assert(offsetof(SharpenRecord, detail) == 56, "detail vector");
static_assert(offsetof(SharpenRecord, mask) == 80, "mask vector");
static_assert(offsetof(SharpenRecord, outputMode) == 104, "output vector");

// FUNCTION_SET_NOISE, for the luminance, chroma and combined noise tasks alike.
struct NoiseRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> lumaAmount;    // nLAmount
    KeyframeVector<int32_t> lumaDetail;    // nLDetail
    KeyframeVector<int32_t> chromaAmount;  // nCAmount
    KeyframeVector<int32_t> chromaDetail;  // nCDetail
};

static_assert(sizeof(NoiseRecord) == 104, "noise record");
static_assert(offsetof(NoiseRecord, lumaAmount) == 8, "luminance amount vector");
static_assert(offsetof(NoiseRecord, lumaDetail) == 32, "luminance detail vector");
static_assert(offsetof(NoiseRecord, chromaAmount) == 56, "chroma amount vector");
static_assert(offsetof(NoiseRecord, chromaDetail) == 80, "chroma detail vector");

// FUNCTION_SET_POST_VIGNETTE. Roundness stands before feather here, the
// reverse of VignetteSetting's fields: that is the order the agent reads.
struct VignetteRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> amount;     // nAmount
    KeyframeVector<int32_t> midPoint;   // nMidPoint
    KeyframeVector<int32_t> roundness;  // nRoundness
    KeyframeVector<int32_t> feather;    // nFeather
};

static_assert(sizeof(VignetteRecord) == 104, "vignette record");
static_assert(offsetof(VignetteRecord, amount) == 8, "amount vector");
static_assert(offsetof(VignetteRecord, midPoint) == 32, "midpoint vector");
static_assert(offsetof(VignetteRecord, roundness) == 56, "roundness vector");
static_assert(offsetof(VignetteRecord, feather) == 80, "feather vector");

// FUNCTION_SET_BLUR_MASK: a global effect despite its name; it names no mask.
struct BlurRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> level;  // "PEBlurLevel"
};

static_assert(sizeof(BlurRecord) == 32, "blur record");
static_assert(offsetof(BlurRecord, level) == 8, "level vector");

}  // namespace engine
}  // namespace pcg
