// Records that carry one global effect's settings to the render agent, and
// the lens, crop and red-eye records they build on. Engines take them by
// pointer, so field order and widths are binding; the sizes below are those of
// the 64-bit engines. Pointer fields never own what they point to.
#pragma once

#include "engine/records/image_records.h"

// ---------------------------------------------------- white balance and tone

struct WBSetting {
    int nWhitePointTemperature = 0;
    int nWhitePointTint = 0;
    int nTemperature = 0;
    int nTint = 0;
    bool bSimd = false;
    RawInfo rawInfo;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(WBSetting) == 176, "WBSetting layout");

struct ToneSetting {
    double dExposure = 0;
    int nRecovery = 0;
    int nFillLight = 0;
    int nWhites = 0;
    int nBlacks = 0;
    int nBrightness = 0;
    int nContrast = 0;
    bool bUsePivotPoint = false;
    int nPivotPointX[4] = {};
    int nPivotPointY[4] = {};
    BYTE bReserved[16] = {};
};
static_assert(sizeof(ToneSetting) == 88, "ToneSetting layout");

struct HDRSetting {
    int nGlow_strength = 0;
    int nGlow_radius = 0;
    int nGlow_balance = 0;
    float fEdge_strength = 0;
    int nEdge_radius = 0;
    int nEdge_balance = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(HDRSetting) == 40, "HDRSetting layout");

struct ToneMappingInfo {
    int* MappingTable = nullptr;
    int nMappingTableSize = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(ToneMappingInfo) == 32, "ToneMappingInfo layout");

struct ToneLevelSetting_ChannelPivot {
    int nPivotX[5] = {};
    int nPivotY[5] = {};
};
static_assert(sizeof(ToneLevelSetting_ChannelPivot) == 40, "ToneLevelSetting_ChannelPivot layout");

struct ToneLevelSetting {
    int nPivotCount = 0;
    BYTE bReserved[16] = {};
    // Scripts read the pivots in place and never assign the whole array.
    ToneLevelSetting_ChannelPivot ChannelPivot[TONE_LEVEL_CHANNEL_COUNT];
};
static_assert(sizeof(ToneLevelSetting) == 180, "ToneLevelSetting layout");

struct ToneLevelRGBSetting {
    int nPivotCount = 0;
    int nPivotX[5] = {};
    int nPivotY[5] = {};
    BYTE bReserved[16] = {};
};
static_assert(sizeof(ToneLevelRGBSetting) == 60, "ToneLevelRGBSetting layout");

// One tone curve. A new curve has its quarter pivots at 0.25, 0.5 and 0.75
// and tops out at 65535.
struct ToneCurveRGBSetting {
    int nHighlights = 0;
    int nLights = 0;
    int nDarks = 0;
    int nShadows = 0;
    float fQ1Pivot = 0.25f;
    float fQ2Pivot = 0.5f;
    float fQ3Pivot = 0.75f;
    int nMaxValue = MAX_16BITS_VALUE;
    int nPivotCount = 0;
    float fPivotX[20] = {};
    float fPivotY[20] = {};
    bool bManualMode = false;
    int nTableBoundary = 0;
    int nTableSize = 0;
    int* pnMappingTable = nullptr;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(ToneCurveRGBSetting) == 232, "ToneCurveRGBSetting layout");

struct ToneCurveSetting {
    ToneCurveRGBSetting ChannelSetting[COLOR_CHANNEL_COUNT];
};
static_assert(sizeof(ToneCurveSetting) == 696, "ToneCurveSetting layout");

struct ClaritySetting {
    int nClarity = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(ClaritySetting) == 20, "ClaritySetting layout");

struct SaturationSetting {
    int nSaturation = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(SaturationSetting) == 20, "SaturationSetting layout");

struct VibranceSetting {
    int nVibrance = 0;
    int nSaturation = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(VibranceSetting) == 24, "VibranceSetting layout");

// -------------------------------------------------------------------- detail

struct SharpenSetting {
    int nAmount = 0;
    float fRadius = 0;
    float fMidRadius = 0;
    int nDetail = 0;
    int nMask = 0;
    int nOutputMode = 0;
    int nOutputDiffGrayLevel = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(SharpenSetting) == 44, "SharpenSetting layout");

struct DeNoiseSetting {
    int nLAmount = 0;
    int nLRadius = 0;
    int nLDetail = 0;
    int nLMask = 0;
    int nLContrast = 0;
    eNoiseReductionMode eLMode = NONE;
    int nCAmount = 0;
    int nCRadius = 0;
    int nCDetail = 0;
    int nCMask = 0;
    eNoiseReductionMode eCMode = NONE;
    float fResizeRatio = 0;
    int nISO = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(DeNoiseSetting) == 68, "DeNoiseSetting layout");

struct GrainSetting {
    double dAmount = 0;
    double dRadius = 0;
    double dStrength = 0;
    BYTE bReserved[32] = {};
};
static_assert(sizeof(GrainSetting) == 56, "GrainSetting layout");

// -------------------------------------------------------------------- colour

struct HSLColorSetting {
    int nColorHue[Hue_COLOR_COUNT] = {};
    int nColorSaturation[Hue_COLOR_COUNT] = {};
    int nColorLuminance[Hue_COLOR_COUNT] = {};
    int nVibrancy = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(HSLColorSetting) == 116, "HSLColorSetting layout");

struct BWLuminanceSetting {
    int nBWLuminance[Hue_COLOR_COUNT] = {};
    BYTE bReserved[16] = {};
};
static_assert(sizeof(BWLuminanceSetting) == 48, "BWLuminanceSetting layout");

struct ColorReplaceSetting {
    PIXEL srcColor[3] = {};
    PIXEL dstColor[3] = {};
    float fSrcTolerance = 0;
    float fDstTolerance = 0;
    COLOR_SPACE eColorSpace = sRGB_SPACE;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(ColorReplaceSetting) == 40, "ColorReplaceSetting layout");

struct ColorsplashSetting {
    float fTolerance = 0;
    ColorSpace dropperColor;
    bool bEnableColorsplash = false;
    int nMaskType = 0;
    int nMaskID = 0;
    float fHueShift = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(ColorsplashSetting) == 56, "ColorsplashSetting layout");

struct HueShiftSetting {
    float fHueShift = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(HueShiftSetting) == 20, "HueShiftSetting layout");

struct SplitToneEffectSetting {
    float fLightHue = 0;
    float fLightSaturation = 0;
    float fBalance = 0;
    float fDarkHue = 0;
    float fDarkSaturation = 0;

    // Exact comparison of all five values.
    bool operator==(const SplitToneEffectSetting& other) const {
        return fLightHue == other.fLightHue && fLightSaturation == other.fLightSaturation &&
               fBalance == other.fBalance && fDarkHue == other.fDarkHue &&
               fDarkSaturation == other.fDarkSaturation;
    }
};
static_assert(sizeof(SplitToneEffectSetting) == 20, "SplitToneEffectSetting layout");

struct SkinToneSetting {
    PIXEL srcRGB[3] = {};
    PIXEL dstRGB[3] = {};
    float fThreshold = 0;
    float fAmount = 0;
    float fWarnth = 0;
    float fTint = 0;
    float fWhiten = 0;
    int nMaskType = 0;
    int nMaskID = 0;
    int nDropperX = 0;
    int nDropperY = 0;
    BOOL bShowMask = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(SkinToneSetting) == 68, "SkinToneSetting layout");

struct OvUdExposureSetting {
    int nOverThreshold = 0;
    int nUnderThreshold = 0;
    ColorSpace overColor;
    ColorSpace underColor;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(OvUdExposureSetting) == 64, "OvUdExposureSetting layout");

// --------------------------------------------------------- lens and geometry

struct VignetteSetting {
    int nAmount = 0;
    int nMidPoint = 0;
    int nFeather = 0;
    int nRoundness = 0;
    Vignette_MODE nMode = VIGNETTE_NO_CROP;
    INT nCropWidth = 0;
    INT nCropHeight = 0;
    INT nROILeft = 0;
    INT nROITop = 0;
    INT nROIRight = 0;
    INT nROIBottom = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(VignetteSetting) == 60, "VignetteSetting layout");

struct LensCorrectParams {
    double dParam1 = 0;
    double dParam2 = 0;
    double dParam3 = 0;
    double dScale = 0;
    double dWeight = 0;

    // Exact comparison of all five values.
    bool operator==(const LensCorrectParams& other) const {
        return dParam1 == other.dParam1 && dParam2 == other.dParam2 &&
               dParam3 == other.dParam3 && dScale == other.dScale && dWeight == other.dWeight;
    }
    // No correction: the three polynomial parameters are zero, whatever the
    // scale and weight hold.
    bool bIsZeroParams() const { return dParam1 == 0.0 && dParam2 == 0.0 && dParam3 == 0.0; }
};
static_assert(sizeof(LensCorrectParams) == 40, "LensCorrectParams layout");

struct AutoLensCorrectSetting {
    double dSrcSensorFactor = 0;
    double dDstSensorFactor = 0;
    LensCorrectParams DistortParams;
    LensCorrectParams CARedParams;
    LensCorrectParams CABlueParams;
    LensCorrectParams VignetteParams;
};
static_assert(sizeof(AutoLensCorrectSetting) == 176, "AutoLensCorrectSetting layout");

struct LensCorrectSetting {
    int nDistortion = 0;
    int nVertical = 0;
    int nHorizontal = 0;
    int nCARed = 0;
    int nCABlue = 0;
    AutoLensCorrectSetting autoSetting1;
    AutoLensCorrectSetting autoSetting2;
};
static_assert(sizeof(LensCorrectSetting) == 376, "LensCorrectSetting layout");

struct WarppedPointSetting {
    int nX = 0;
    int nY = 0;
    int nRadius = 0;
    float fDistance = 0;
    float fAngle = 0;
};
static_assert(sizeof(WarppedPointSetting) == 20, "WarppedPointSetting layout");

struct CameraCorrectSetting {
    int nHueDiv = 0;
    int nSatDiv = 0;
    int nValDiv = 0;
    int nHueShift = 0;
    double dSatScale = 0;
    double dValScale = 0;
};
static_assert(sizeof(CameraCorrectSetting) == 32, "CameraCorrectSetting layout");

struct CameraCorrectTable {
    int nHueDivisions = 0;
    int nSatDivisions = 0;
    int nValDivisions = 0;
    double dExposure = 0;
    int nBlacks = 0;
    int nBrightness = 0;
    int nContrast = 0;
    CameraCorrectSetting* pTable = nullptr;
};
static_assert(sizeof(CameraCorrectTable) == 48, "CameraCorrectTable layout");

struct CropRotateSetting {
    float fAngle = 0;
    int nLeft = 0;
    int nTop = 0;
    int nWidth = 0;
    int nHeight = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(CropRotateSetting) == 36, "CropRotateSetting layout");

// A histogram request: where to write, and the crop it applies to.
struct OutputHistogramSetting {
    HistogramDist* pHistogram = nullptr;
    CropRotateSetting cropRotate;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(OutputHistogramSetting) == 64, "OutputHistogramSetting layout");

struct RedEyeRecoverySetting {
    int nCx = 0;
    int nCy = 0;
    int nSemiMajor = 0;
    int nSemiMinor = 0;
    float fAngle = 0;
    double dThreshold = 0;
    double dStepunit = 0;
    int nOuterSemiMajor = 0;
    int nOuterSemiMinor = 0;
    int nDarkenLevel = 0;
    double dAveLumi = 0;
    int nConfidenceLevel = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(RedEyeRecoverySetting) == 88, "RedEyeRecoverySetting layout");

struct RedEyeDetectionSetting {
    CropRotateSetting cropRotateSetting;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(RedEyeDetectionSetting) == 52, "RedEyeDetectionSetting layout");
