// Records of the local adjustments: one effect on one mask, arrays of these,
// the blur family and the local tools. Engines take them by pointer, so field
// order and widths are binding; the sizes below are those of the 64-bit
// engines.
#pragma once

#include "engine/records/effect_records.h"

// ---------------------------------------------------- one effect on one mask
//
// Records that name a mask start with nMaskID -1, no mask.

struct MaskToneSetting {
    double dExposure = 0;
    int nBrightness = 0;
    int nContrast = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskToneSetting) == 32, "MaskToneSetting layout");

struct MaskToothSetting {
    int nToothBrightness = 0;
    int nToothThreshold = -1;
    int nMaskType = 0;
    int nMaskID = -1;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskToothSetting) == 32, "MaskToothSetting layout");

struct MaskDodgeBurnSetting {
    double dDodgeExposure = 0;
    double dDodgeSaturation = 0;
    int nDodgeMaskType = 0;
    int nDodgeMaskID = -1;
    double dBurnExposure = 0;
    double dBurnSaturation = 0;
    int nBurnMaskType = 0;
    int nBurnMaskID = -1;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskDodgeBurnSetting) == 64, "MaskDodgeBurnSetting layout");

struct MaskSaturationSetting {
    int nSaturation = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskSaturationSetting) == 20, "MaskSaturationSetting layout");

struct MaskClaritySetting {
    int nClarity = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskClaritySetting) == 20, "MaskClaritySetting layout");

struct MaskSharpnessSetting {
    int nSharpness = 0;
    float fSharpnessRadius = MASK_SHARPNESS_RADIUS;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskSharpnessSetting) == 24, "MaskSharpnessSetting layout");

// A new one has a white point of 5000 K and a temperature of 0: the two
// start unlike on purpose.
struct MaskWBSetting {
    int nWhitePointTemperature = DEFAULT_TEMPERATURE;
    int nWhitePointTint = 0;
    int nTemperature = 0;
    int nTint = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskWBSetting) == 32, "MaskWBSetting layout");

struct MaskTintSetting {
    PIXEL RGB[3] = {};
    double dAmount = 0;
    int nMaskType = 0;
    int nMaskID = -1;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskTintSetting) == 40, "MaskTintSetting layout");

// Grain through a mask; it starts with a radius of 25 and a strength of 50.
struct MaskGrainSetting : GrainSetting {
    int nMaskType = 0;
    int nMaskID = -1;
    BYTE bReserved[16] = {};

    MaskGrainSetting() {
        dRadius = 25.0;
        dStrength = 50.0;
    }
};
static_assert(sizeof(MaskGrainSetting) == 80, "MaskGrainSetting layout");

struct MaskBWSetting {
    BWLuminanceSetting bwSetting;
    int nMaskType = 0;
    int nMaskID = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskBWSetting) == 72, "MaskBWSetting layout");

struct MaskColorsplashSetting {
    float fTolerance = 0;
    ColorSpace dropperColor;
    bool bEnableColorsplash = false;
    int nMaskType = 0;
    int nMaskID = 0;
    float fHueShift = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskColorsplashSetting) == 56, "MaskColorsplashSetting layout");

struct MaskAdjustmentSetting {
    double dExposure = 0;
    int nBrightness = 0;
    int nContrast = 0;
    int nSaturation = 0;
    int nVibrance = 0;
    int nClarity = 0;
    int nSharpness = 0;
    float fSharpnessRadius = 0;
    int nTemperature = 0;
    int nTint = 0;
    int nWhitePointTemperature = 0;
    int nWhitePointTint = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskAdjustmentSetting) == 72, "MaskAdjustmentSetting layout");

// ------------------------------------------------ arrays of effects on masks
//
// Up to MAX_MASK_ARRAY_COUNT entries, nCount of them in use; the arrays of
// mask kinds and identities run in parallel with the settings.

struct MaskToneSettingArray {
    ToneSetting toneSetting_g;
    MaskToneSetting toneSettingArray[MAX_MASK_ARRAY_COUNT];
    int nMaskType[MAX_MASK_ARRAY_COUNT] = {};
    int nMaskID[MAX_MASK_ARRAY_COUNT] = {};
    int nCount = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskToneSettingArray) == 1952, "MaskToneSettingArray layout");

struct MaskSaturationSettingArray {
    MaskSaturationSetting saturationSettingArray[MAX_MASK_ARRAY_COUNT];
    int nMaskType[MAX_MASK_ARRAY_COUNT] = {};
    int nMaskID[MAX_MASK_ARRAY_COUNT] = {};
    int nCount = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskSaturationSettingArray) == 1308, "MaskSaturationSettingArray layout");

struct MaskClaritySettingArray {
    MaskClaritySetting claritySettingArray[MAX_MASK_ARRAY_COUNT];
    int nMaskType[MAX_MASK_ARRAY_COUNT] = {};
    int nMaskID[MAX_MASK_ARRAY_COUNT] = {};
    int nCount = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskClaritySettingArray) == 1308, "MaskClaritySettingArray layout");

struct MaskSharpnessSettingArray {
    MaskSharpnessSetting sharpnessSettingArray[MAX_MASK_ARRAY_COUNT];
    int nMaskType[MAX_MASK_ARRAY_COUNT] = {};
    int nMaskID[MAX_MASK_ARRAY_COUNT] = {};
    int nCount = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskSharpnessSettingArray) == 1492, "MaskSharpnessSettingArray layout");

struct MaskWBSettingArray {
    MaskWBSetting wbSettingArray[MAX_MASK_ARRAY_COUNT];
    int nMaskType[MAX_MASK_ARRAY_COUNT] = {};
    int nMaskID[MAX_MASK_ARRAY_COUNT] = {};
    int nCount = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskWBSettingArray) == 1860, "MaskWBSettingArray layout");

struct MaskHSLSettingArray {
    HSLColorSetting hslSettingArray[MAX_MASK_ARRAY_COUNT];
    int nMaskType[MAX_MASK_ARRAY_COUNT] = {};
    int nMaskID[MAX_MASK_ARRAY_COUNT] = {};
    int nCount = 0;
};
static_assert(sizeof(MaskHSLSettingArray) == 5708, "MaskHSLSettingArray layout");

struct MaskColorRepSettingArray {
    ColorReplaceSetting colorReplaceSettingArray[MAX_MASK_ARRAY_COUNT];
    int nMaskType[MAX_MASK_ARRAY_COUNT] = {};
    int nMaskID[MAX_MASK_ARRAY_COUNT] = {};
    int nCount = 0;
};
static_assert(sizeof(MaskColorRepSettingArray) == 2212, "MaskColorRepSettingArray layout");

struct MaskDeNoiseSettingArray {
    DeNoiseSetting noiseSettingArray[MAX_MASK_ARRAY_COUNT];
    int nMaskType[MAX_MASK_ARRAY_COUNT] = {};
    int nMaskID[MAX_MASK_ARRAY_COUNT] = {};
    int nCount = 0;
};
static_assert(sizeof(MaskDeNoiseSettingArray) == 3500, "MaskDeNoiseSettingArray layout");

struct MaskBWTintSettingArray {
    MaskTintSetting tintSettingArray[MAX_MASK_ARRAY_COUNT];
    int nCount = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskBWTintSettingArray) == 1864, "MaskBWTintSettingArray layout");

// ---------------------------------------------------------------------- blur

struct MaskBlurSetting {
    double dBlurLevel = 0;
    int nMaskType = 0;
    int nMaskID = -1;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskBlurSetting) == 32, "MaskBlurSetting layout");

struct MaskBlurSettingArray {
    MaskBlurSetting maskBlurSetting[MAX_MASK_ARRAY_COUNT];
    int nCount = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(MaskBlurSettingArray) == 1496, "MaskBlurSettingArray layout");

struct BlurSettingNormal {
    double dBlurLevel = 0;

    // Exact comparison of every field.
    bool operator==(const BlurSettingNormal& other) const {
        return dBlurLevel == other.dBlurLevel;
    }
    bool operator!=(const BlurSettingNormal& other) const { return !(*this == other); }
};
static_assert(sizeof(BlurSettingNormal) == 8, "BlurSettingNormal layout");

struct BlurSettingBokeh {
    int nStrength = 0;
    BokehProcessingMode mode = BOKEH_PROCESS_PREVIEW;
    BokehShapeType shape = BOKEH_SHAPE_TYPE_CIRCLE;

    // Exact comparison of every field.
    bool operator==(const BlurSettingBokeh& other) const {
        return nStrength == other.nStrength &&
               mode == other.mode &&
               shape == other.shape;
    }
    bool operator!=(const BlurSettingBokeh& other) const { return !(*this == other); }
};
static_assert(sizeof(BlurSettingBokeh) == 12, "BlurSettingBokeh layout");

struct BlurSettingCircular {
    float fCenterX = 0;
    float fCenterY = 0;
    float fStrength = 0;
    float fBlurDirection = 0;

    // Exact comparison of every field.
    bool operator==(const BlurSettingCircular& other) const {
        return fCenterX == other.fCenterX &&
               fCenterY == other.fCenterY &&
               fStrength == other.fStrength &&
               fBlurDirection == other.fBlurDirection;
    }
    bool operator!=(const BlurSettingCircular& other) const { return !(*this == other); }
};
static_assert(sizeof(BlurSettingCircular) == 16, "BlurSettingCircular layout");

struct BlurSettingZoom {
    float fCenterX = 0;
    float fCenterY = 0;
    float fStrength = 0;
    float fBlurDirection = 0;

    // Exact comparison of every field.
    bool operator==(const BlurSettingZoom& other) const {
        return fCenterX == other.fCenterX &&
               fCenterY == other.fCenterY &&
               fStrength == other.fStrength &&
               fBlurDirection == other.fBlurDirection;
    }
    bool operator!=(const BlurSettingZoom& other) const { return !(*this == other); }
};
static_assert(sizeof(BlurSettingZoom) == 16, "BlurSettingZoom layout");

struct BlurSettingMotion {
    UINT32 Strength = 0;
    float Direction = 0;

    // Exact comparison of every field.
    bool operator==(const BlurSettingMotion& other) const {
        return Strength == other.Strength &&
               Direction == other.Direction;
    }
    bool operator!=(const BlurSettingMotion& other) const { return !(*this == other); }
};
static_assert(sizeof(BlurSettingMotion) == 8, "BlurSettingMotion layout");

struct MaskLensBlurSetting {
    int nMaskType = 0;
    int nMaskID = -1;
    // Chooses which one of the settings below applies.
    BLUR_TYPE eBlurType = BLUR_TYPE_NORMAL;
    BlurSettingNormal settingNormal;
    BlurSettingBokeh settingBokeh;
    BlurSettingCircular settingCircular;
    BlurSettingZoom settingZoom;
    BlurSettingMotion settingMotion;
    BYTE bReserved[8] = {};
};
static_assert(sizeof(MaskLensBlurSetting) == 88, "MaskLensBlurSetting layout");

// --------------------------------------------------------------- local tools

struct GradientMaskSetting {
    int nCenterX = 0;
    int nCenterY = 0;
    float fDistance = 0;
    float fAngle = 0;
    BOOL bShowMask = 0;
    ColorSpace maskColor;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(GradientMaskSetting) == 56, "GradientMaskSetting layout");

struct GradientSetting {
    MaskAdjustmentSetting adjustSettingArray[MAX_MASK_COUNT];
    GradientMaskSetting maskSettingArray[MAX_MASK_COUNT];
    int nMaskID[MAX_MASK_COUNT] = {};
    int nCount = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(GradientSetting) == 3056, "GradientSetting layout");

struct EllipseMaskSetting {
    int nCx = 0;
    int nCy = 0;
    int nSemiMajor = 0;
    int nSemiMinor = 0;
    double dFeather = 0;
    double dAngle = 0;
    bool bInverse = false;
    bool bShowMask = false;
    ColorSpace maskColor;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(EllipseMaskSetting) == 72, "EllipseMaskSetting layout");

struct ShowMaskSetting {
    int nMaskType = 0;
    int nMaskID = 0;
    ColorSpace maskColor;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(ShowMaskSetting) == 44, "ShowMaskSetting layout");

struct SkinSmoothSetting {
    int nAmount = 0;
    int nDetail = 0;
    int nMaskType = 0;
    int nMaskID = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(SkinSmoothSetting) == 32, "SkinSmoothSetting layout");

struct MaskCorrectSetting {
    LensCorrectSetting lensCorrectSetting;
    WarpStyle nMode = 0;
};
static_assert(sizeof(MaskCorrectSetting) == 384, "MaskCorrectSetting layout");

struct SpotRemoveSetting {
    int nSrcX = 0;
    int nSrcY = 0;
    int nDstX = 0;
    int nDstY = 0;
    int nRadius = 0;
    int nStyle = 0;
    int nOpacity = 0;
    int nFeather = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(SpotRemoveSetting) == 48, "SpotRemoveSetting layout");

struct ObjectCloneSetting {
    int nMaskType = 0;
    int nMaskID = 0;
    ROI rectSrc;
    ROI rectDst;
    int nMode = 0;
    float fScale = 0;
    CloneBlendType nBlendType = OBJECT_BLENDSTYLE_PRODUCTION;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(ObjectCloneSetting) == 76, "ObjectCloneSetting layout");

struct WrinkleRemovalSetting {
    int nMaskType = 0;
    int nMaskID = 0;
    ROI rectSrc;
    ROI rectDst;
    int nMode = 0;
    float fScale = 0;
    CloneBlendType nBlendType = OBJECT_BLENDSTYLE_PRODUCTION;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(WrinkleRemovalSetting) == 76, "WrinkleRemovalSetting layout");
