#include "engine/records/effect_records.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(ToneCurveRGBSetting, NewCurveHasQuarterPivotsAndFullRange) {
    ToneCurveRGBSetting c;
    EXPECT_EQ(0.25f, c.fQ1Pivot);
    EXPECT_EQ(0.5f, c.fQ2Pivot);
    EXPECT_EQ(0.75f, c.fQ3Pivot);
    EXPECT_EQ(65535, c.nMaxValue);
}

TEST(ToneCurveRGBSetting, NewCurveIsOtherwiseZeroOrNull) {
    ToneCurveRGBSetting c;
    EXPECT_EQ(0, c.nHighlights);
    EXPECT_EQ(0, c.nLights);
    EXPECT_EQ(0, c.nDarks);
    EXPECT_EQ(0, c.nShadows);
    EXPECT_EQ(0, c.nPivotCount);
    EXPECT_EQ(0.0f, c.fPivotX[19]);
    EXPECT_EQ(0.0f, c.fPivotY[0]);
    EXPECT_FALSE(c.bManualMode);
    EXPECT_EQ(0, c.nTableBoundary);
    EXPECT_EQ(0, c.nTableSize);
    EXPECT_EQ(nullptr, c.pnMappingTable);
}

TEST(ToneCurveSetting, HoldsOneDefaultCurvePerChannel) {
    ToneCurveSetting s;
    ASSERT_EQ(3u, sizeof s.ChannelSetting / sizeof s.ChannelSetting[0]);
    for (const ToneCurveRGBSetting& c : s.ChannelSetting) {
        EXPECT_EQ(0.25f, c.fQ1Pivot);
        EXPECT_EQ(65535, c.nMaxValue);
    }
}

TEST(ToneLevelSetting, NewChannelPivotIsAllZero) {
    ToneLevelSetting_ChannelPivot p;
    for (int i = 0; i < TONE_LEVEL_MAX_PIVOT; ++i) {
        EXPECT_EQ(0, p.nPivotX[i]);
        EXPECT_EQ(0, p.nPivotY[i]);
    }
}

TEST(LensCorrectParams, ZeroParametersWithUnitScaleAreZero) {
    LensCorrectParams p;
    p.dScale = 1.0;
    EXPECT_TRUE(p.bIsZeroParams());
}

TEST(LensCorrectParams, ScaleAndWeightDoNotCountForZero) {
    LensCorrectParams p;
    p.dScale = 3.0;
    p.dWeight = -1.0;
    EXPECT_TRUE(p.bIsZeroParams());
}

TEST(LensCorrectParams, AnyPolynomialParameterMakesItNonZero) {
    for (int i = 0; i < 3; ++i) {
        LensCorrectParams p;
        double* params[] = {&p.dParam1, &p.dParam2, &p.dParam3};
        *params[i] = 1e-300;
        EXPECT_FALSE(p.bIsZeroParams()) << i;
    }
}

TEST(LensCorrectParams, EqualityIsExactOnAllFiveValues) {
    LensCorrectParams a;
    a.dParam1 = 0.5;
    a.dScale = 1.0;
    for (int i = 0; i < 5; ++i) {
        LensCorrectParams b = a;
        EXPECT_TRUE(a == b);
        double* values[] = {&b.dParam1, &b.dParam2, &b.dParam3, &b.dScale, &b.dWeight};
        *values[i] = std::nextafter(*values[i], 2.0);
        EXPECT_FALSE(a == b) << i;
    }
}

TEST(SplitToneEffectSetting, ValuesDifferingInTheLastBitAreNotEqual) {
    SplitToneEffectSetting a;
    a.fLightHue = 0.3f;
    a.fLightSaturation = 0.4f;
    a.fBalance = -0.2f;
    a.fDarkHue = 0.7f;
    a.fDarkSaturation = 0.1f;
    EXPECT_TRUE(a == a);
    for (int i = 0; i < 5; ++i) {
        SplitToneEffectSetting b = a;
        float* values[] = {&b.fLightHue, &b.fLightSaturation, &b.fBalance, &b.fDarkHue,
                           &b.fDarkSaturation};
        *values[i] = std::nextafter(*values[i], 1.0f);
        EXPECT_FALSE(a == b) << i;
    }
}

TEST(ColorRecords, ReplaceAndSplashKeepTheirEngineSizes) {
    // The colour keyframe entries embed these whole: 40 and 56 bytes.
    EXPECT_EQ(40u, sizeof(ColorReplaceSetting));
    EXPECT_EQ(56u, sizeof(ColorsplashSetting));
    EXPECT_EQ(232u, sizeof(ToneCurveRGBSetting));
}

}  // namespace
