// The records of the local adjustment effects and of the show-mask effect,
// as they cross to the render agent.
//
// A local effect record is the effect header and an ordered map from mask ID
// to one per-mask record. Every per-mask record starts with the same 16-byte
// head and continues with keyframe vectors, like a plain record does after
// its 8-byte header. The agent reads the map directly and frees the record,
// the map's nodes, every per-mask record and everything hanging on them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "engine/constants.h"
#include "engine/effect_record.h"
#include "engine/keyed_records/colour_records.h"
#include "engine/ordered_map.h"
#include "engine/records/mask_records.h"

namespace pcg {
namespace engine {

// ------------------------------------------------------- per-mask records

struct MaskRecordHead {
    int32_t nEffectVersion;  // 9, or the dictionary's raw "EffVer"
    int32_t nMaskID;
    int32_t nMaskType;
    int32_t nReserved;       // never written: zero from the heap
};

static_assert(sizeof(MaskRecordHead) == 16, "per-mask head");
static_assert(offsetof(MaskRecordHead, nEffectVersion) == 0, "effect version");
static_assert(offsetof(MaskRecordHead, nMaskID) == 4, "mask ID");
static_assert(offsetof(MaskRecordHead, nMaskType) == 8, "mask type");

// Where the keyframe vectors of a per-mask record begin.
constexpr std::size_t kFirstMaskVectorOffset = sizeof(MaskRecordHead);

// Size of a per-mask record with `vectorCount` vectors.
constexpr uint32_t MaskRecordSize(std::size_t vectorCount) {
    return static_cast<uint32_t>(kFirstMaskVectorOffset + vectorCount * kVectorSize);
}

// Whole-setting entries: time, the setting, interpolation, padded to eight.
// The colour replacement entry is the global effect's (colour_records.h).
using MaskColorsplashEntry = KeyframeEntry<MaskColorsplashSetting>;

static_assert(sizeof(MaskColorsplashEntry) == 72, "colour splash entry");
static_assert(offsetof(MaskColorsplashEntry, llTime) == 0, "colour splash time");
static_assert(offsetof(MaskColorsplashEntry, value) == 8, "colour splash setting");
static_assert(offsetof(MaskColorsplashEntry, nInterpolation) == 64, "colour splash interpolation");
// The agent reads the local splash entry as it reads the global one.
static_assert(sizeof(MaskColorsplashSetting) == sizeof(ColorsplashSetting) &&
                  offsetof(MaskColorsplashSetting, dropperColor) == offsetof(ColorsplashSetting, dropperColor) &&
                  offsetof(MaskColorsplashSetting, bEnableColorsplash) ==
                      offsetof(ColorsplashSetting, bEnableColorsplash) &&
                  offsetof(MaskColorsplashSetting, nMaskType) == offsetof(ColorsplashSetting, nMaskType) &&
                  offsetof(MaskColorsplashSetting, nMaskID) == offsetof(ColorsplashSetting, nMaskID) &&
                  offsetof(MaskColorsplashSetting, fHueShift) == offsetof(ColorsplashSetting, fHueShift),
              "one splash entry layout for global and local effects");

struct MaskWBRecord {
    MaskRecordHead head;
    KeyframeVector<int32_t> temperature;  // "MskWBTmp"
    KeyframeVector<int32_t> tint;         // "MskWBTnt"
};

struct MaskToneRecord {
    MaskRecordHead head;
    KeyframeVector<double> exposure;      // "MskTnXpo"
    KeyframeVector<int32_t> brightness;   // "MskTnBrt"
    KeyframeVector<int32_t> contrast;     // "MskTnCtr"
};

struct MaskClarityRecord {
    MaskRecordHead head;
    KeyframeVector<int32_t> clarity;      // "MskClr"
};

struct MaskSaturationRecord {
    MaskRecordHead head;
    KeyframeVector<int32_t> saturation;   // "MskSat"
};

// After the vibrancy, three blocks of one vector per colour band, in band
// order Hue_Red to Hue_Magenta.
struct MaskHSLRecord {
    MaskRecordHead head;
    KeyframeVector<int32_t> vibrancy;  // "MskVib"
    BandVectors hue;                   // "MskHSLH"
    BandVectors saturation;            // "MskHSLS"
    BandVectors luminance;             // "MskHSLL"
};

struct MaskColorReplaceRecord {
    MaskRecordHead head;
    KeyframeVector<ColorReplaceSetting> colorReplace;     // "MskCR"
};

struct MaskTintRecord {
    MaskRecordHead head;
    KeyframeVector<int32_t> hue;          // "MskPETintHue"
    KeyframeVector<double> amount;        // "MskPETintAmo"
};

struct MaskBlurRecord {
    MaskRecordHead head;
    KeyframeVector<int32_t> level;        // "MskPEBlurLevel"
};

struct MaskColorSplashRecord {
    MaskRecordHead head;
    KeyframeVector<MaskColorsplashSetting> colorSplash;   // "MskCS"
};

static_assert(sizeof(MaskWBRecord) == 64 && sizeof(MaskWBRecord) == MaskRecordSize(2), "white balance per mask");
static_assert(offsetof(MaskWBRecord, temperature) == 16 && offsetof(MaskWBRecord, tint) == 40, "white balance");
static_assert(sizeof(MaskToneRecord) == 88 && sizeof(MaskToneRecord) == MaskRecordSize(3), "tone per mask");
static_assert(offsetof(MaskToneRecord, exposure) == 16 && offsetof(MaskToneRecord, brightness) == 40 &&
                  offsetof(MaskToneRecord, contrast) == 64,
              "tone");
static_assert(sizeof(MaskClarityRecord) == 40 && offsetof(MaskClarityRecord, clarity) == 16, "clarity per mask");
static_assert(sizeof(MaskSaturationRecord) == 40 && offsetof(MaskSaturationRecord, saturation) == 16,
              "saturation per mask");
static_assert(sizeof(MaskHSLRecord) == 616 && sizeof(MaskHSLRecord) == MaskRecordSize(25), "HSL per mask");
static_assert(offsetof(MaskHSLRecord, vibrancy) == 16 && offsetof(MaskHSLRecord, hue) == 40 &&
                  offsetof(MaskHSLRecord, saturation) == 232 && offsetof(MaskHSLRecord, luminance) == 424,
              "HSL blocks of 192 bytes");
static_assert(sizeof(MaskColorReplaceRecord) == 40 && offsetof(MaskColorReplaceRecord, colorReplace) == 16,
              "colour replacement per mask");
static_assert(sizeof(MaskTintRecord) == 64 && offsetof(MaskTintRecord, hue) == 16 &&
                  offsetof(MaskTintRecord, amount) == 40,
              "tint per mask");
static_assert(sizeof(MaskBlurRecord) == 40 && offsetof(MaskBlurRecord, level) == 16, "blur per mask");
static_assert(sizeof(MaskColorSplashRecord) == 40 && offsetof(MaskColorSplashRecord, colorSplash) == 16,
              "colour splash per mask");

// ------------------------------------------------------ local effect record

struct LocalEffectRecord {
    EffectRecordHeader header;             // version 9; the second word stays zero
    OrderedMap<MaskRecordHead> masks;      // mask ID -> per-mask record
};

static_assert(sizeof(LocalEffectRecord) == 24, "local effect record");
static_assert(offsetof(LocalEffectRecord, header) == 0, "effect version");
static_assert(offsetof(LocalEffectRecord, masks) == 8, "mask map");
static_assert(std::is_standard_layout<LocalEffectRecord>::value, "binary contract");

// -------------------------------------------------------- show-mask record

// No second header word: the mask type follows the version directly.
struct ShowMaskRecord {
    uint32_t nEffectVersion;
    int32_t nMaskType;
    int32_t nMaskID;
    ColorSpace maskColor;
};

static_assert(sizeof(ShowMaskRecord) == 32, "show-mask record");
static_assert(offsetof(ShowMaskRecord, nEffectVersion) == 0, "effect version");
static_assert(offsetof(ShowMaskRecord, nMaskType) == 4, "mask type");
static_assert(offsetof(ShowMaskRecord, nMaskID) == 8, "mask ID");
static_assert(offsetof(ShowMaskRecord, maskColor) == 12, "overlay colour");
static_assert(offsetof(ShowMaskRecord, maskColor) + offsetof(ColorSpace, eColorDepth) == 24, "colour depth");
static_assert(offsetof(ShowMaskRecord, maskColor) + offsetof(ColorSpace, eColorSpace) == 28, "colour space");
static_assert(std::is_standard_layout<ShowMaskRecord>::value, "binary contract");

}  // namespace engine
}  // namespace pcg
