// Keyed records of the global colour effects: the plain ones (white balance,
// saturation, tint, hue shift), the per-band ones (HSL, black and white) and
// the two whose keyframe is a whole setting (colour replacement, colour
// splash).
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/constants.h"
#include "engine/effect_record.h"
#include "engine/records/effect_records.h"

namespace pcg {
namespace engine {

// FUNCTION_SET_WB.
struct WBRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> temperature;  // "Tmp"
    KeyframeVector<int32_t> tint;         // "Tnt"
};

static_assert(sizeof(WBRecord) == 56, "white balance record");
static_assert(offsetof(WBRecord, temperature) == 8, "temperature vector");
static_assert(offsetof(WBRecord, tint) == 32, "tint vector");

// FUNCTION_SET_SATURATION.
struct SaturationRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> saturation;  // "Sat"
};

static_assert(sizeof(SaturationRecord) == 32, "saturation record");
static_assert(offsetof(SaturationRecord, saturation) == 8, "saturation vector");

// FUNCTION_SET_BWTINT.
struct TintRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> hue;    // "PETintHue"
    KeyframeVector<double> amount;  // "PETintAmo"
};

static_assert(sizeof(TintRecord) == 56, "tint record");
static_assert(offsetof(TintRecord, hue) == 8, "tint hue vector");
static_assert(offsetof(TintRecord, amount) == 32, "tint amount vector");

// FUNCTION_SET_HUESHIFT.
struct HueShiftRecord {
    EffectRecordHeader header;
    KeyframeVector<float> hueShift;  // "CM"
};

static_assert(sizeof(HueShiftRecord) == 32, "hue shift record");
static_assert(offsetof(HueShiftRecord, hueShift) == 8, "hue shift vector");

// One vector per colour band, in band order (Hue_Red first).
using BandVectors = KeyframeVector<int32_t>[Hue_COLOR_COUNT];
static_assert(Hue_COLOR_COUNT == 8, "eight colour bands");

// FUNCTION_SET_HSLCOLOR.
struct HSLRecord {
    EffectRecordHeader header;
    KeyframeVector<int32_t> vibrancy;  // "Vib"
    BandVectors hue;                   // "HSL_H"
    BandVectors saturation;            // "HSL_S"
    BandVectors luminance;             // "HSL_L"
};

static_assert(sizeof(HSLRecord) == 608, "HSL record");
static_assert(offsetof(HSLRecord, vibrancy) == 8, "vibrancy vector");
static_assert(offsetof(HSLRecord, hue) == 32, "first hue vector");
static_assert(offsetof(HSLRecord, saturation) == 224, "first saturation vector");
static_assert(offsetof(HSLRecord, luminance) == 416, "first luminance vector");

// FUNCTION_SET_BLACKWHITE. The header's second word carries the "BW" switch.
struct BlackWhiteRecord {
    EffectRecordHeader header;
    BandVectors luminance;  // "BW_L"
};

static_assert(sizeof(BlackWhiteRecord) == 200, "black and white record");
static_assert(offsetof(BlackWhiteRecord, header.nHeaderWord) == 4, "black and white switch");
static_assert(offsetof(BlackWhiteRecord, luminance) == 8, "first luminance vector");

// Colour replacement and colour splash keyframes carry a whole setting as
// their value: KeyframeEntry<ColorReplaceSetting> and
// KeyframeEntry<ColorsplashSetting>, the same entries the local adjustments
// use.
static_assert(sizeof(ColorReplaceSetting) == 40, "colour replacement setting");
static_assert(offsetof(ColorReplaceSetting, srcColor) == 0, "source colour");
static_assert(offsetof(ColorReplaceSetting, dstColor) == 6, "destination colour");
static_assert(offsetof(ColorReplaceSetting, fSrcTolerance) == 12, "source tolerance");
static_assert(offsetof(ColorReplaceSetting, fDstTolerance) == 16, "destination tolerance");
static_assert(offsetof(ColorReplaceSetting, eColorSpace) == 20, "colour space");
static_assert(offsetof(ColorReplaceSetting, bReserved) == 24, "reserved bytes");
static_assert(sizeof(KeyframeEntry<ColorReplaceSetting>) == 56, "colour replacement entry");
static_assert(offsetof(KeyframeEntry<ColorReplaceSetting>, value) == 8, "colour replacement entry setting");
static_assert(offsetof(KeyframeEntry<ColorReplaceSetting>, nInterpolation) == 48,
              "colour replacement entry interpolation");

// FUNCTION_SET_COLORREPLACE.
struct ColorReplaceRecord {
    EffectRecordHeader header;
    KeyframeVector<ColorReplaceSetting> replacement;  // "CR"
};

static_assert(sizeof(ColorReplaceRecord) == 32, "colour replacement record");
static_assert(offsetof(ColorReplaceRecord, replacement) == 8, "colour replacement vector");

static_assert(sizeof(ColorsplashSetting) == 56, "colour splash setting");
static_assert(offsetof(ColorsplashSetting, fTolerance) == 0, "tolerance");
static_assert(offsetof(ColorsplashSetting, dropperColor) == 4, "dropper colour");
static_assert(offsetof(ColorsplashSetting, bEnableColorsplash) == 24, "enable flag");
static_assert(offsetof(ColorsplashSetting, nMaskType) == 28, "mask type");
static_assert(offsetof(ColorsplashSetting, nMaskID) == 32, "mask ID");
static_assert(offsetof(ColorsplashSetting, fHueShift) == 36, "hue shift");
static_assert(offsetof(ColorsplashSetting, bReserved) == 40, "reserved bytes");
static_assert(sizeof(KeyframeEntry<ColorsplashSetting>) == 72, "colour splash entry");
static_assert(offsetof(KeyframeEntry<ColorsplashSetting>, value) == 8, "colour splash entry setting");
static_assert(offsetof(KeyframeEntry<ColorsplashSetting>, nInterpolation) == 64,
              "colour splash entry interpolation");

// FUNCTION_SET_COLORSPLASH.
struct ColorSplashRecord {
    EffectRecordHeader header;
    KeyframeVector<ColorsplashSetting> splash;  // "CS"
};

static_assert(sizeof(ColorSplashRecord) == 32, "colour splash record");
static_assert(offsetof(ColorSplashRecord, splash) == 8, "colour splash vector");

}  // namespace engine
}  // namespace pcg
