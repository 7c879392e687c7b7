#include "engine/records/mask_records.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(MaskWBSetting, WhitePointAndTemperatureStartUnlike) {
    MaskWBSetting s;
    EXPECT_EQ(0, s.nTemperature);
    EXPECT_EQ(5000, s.nWhitePointTemperature);
    EXPECT_EQ(0, s.nWhitePointTint);
    EXPECT_EQ(0, s.nTint);
}

TEST(MaskToothSetting, StartsWithNoMaskAndNoThreshold) {
    MaskToothSetting s;
    EXPECT_EQ(-1, s.nMaskID);
    EXPECT_EQ(-1, s.nToothThreshold);
    EXPECT_EQ(0, s.nToothBrightness);
    EXPECT_EQ(0, s.nMaskType);
}

TEST(MaskDodgeBurnSetting, StartsWithNoMasks) {
    MaskDodgeBurnSetting s;
    EXPECT_EQ(-1, s.nDodgeMaskID);
    EXPECT_EQ(-1, s.nBurnMaskID);
    EXPECT_EQ(0.0, s.dDodgeExposure);
    EXPECT_EQ(0, s.nBurnMaskType);
}

TEST(MaskSharpnessSetting, StartsWithTheMaskSharpnessRadius) {
    MaskSharpnessSetting s;
    EXPECT_EQ(12.0f, s.fSharpnessRadius);
    EXPECT_EQ(static_cast<float>(MASK_SHARPNESS_RADIUS), s.fSharpnessRadius);
    EXPECT_EQ(0, s.nSharpness);
}

TEST(MaskGrainSetting, StartsWithRadius25AndStrength50) {
    MaskGrainSetting s;
    EXPECT_EQ(0.0, s.dAmount);
    EXPECT_EQ(25.0, s.dRadius);
    EXPECT_EQ(50.0, s.dStrength);
    EXPECT_EQ(-1, s.nMaskID);
    EXPECT_EQ(0, s.nMaskType);
}

TEST(MaskGrainSetting, ExtendsTheGrainSetting) {
    MaskGrainSetting s;
    GrainSetting* grain = &s;
    EXPECT_EQ(25.0, grain->dRadius);
    EXPECT_EQ(80u, sizeof(MaskGrainSetting));
}

TEST(MaskRecords, RecordsNamingAMaskStartWithNoMask) {
    EXPECT_EQ(-1, MaskTintSetting().nMaskID);
    EXPECT_EQ(-1, MaskBlurSetting().nMaskID);
    EXPECT_EQ(-1, MaskLensBlurSetting().nMaskID);
}

TEST(MaskRecords, OtherMaskSettingsStartAtZero) {
    MaskToneSetting tone;
    EXPECT_EQ(0.0, tone.dExposure);
    EXPECT_EQ(0, tone.nContrast);
    EXPECT_EQ(0, MaskSaturationSetting().nSaturation);
    EXPECT_EQ(0, MaskClaritySetting().nClarity);
    MaskLensBlurSetting lens;
    EXPECT_EQ(BLUR_TYPE_NORMAL, lens.eBlurType);
    EXPECT_EQ(0.0, lens.settingNormal.dBlurLevel);
    EXPECT_EQ(0u, lens.settingMotion.Strength);
}

TEST(BlurSettingCircular, DifferingInDirectionAloneIsNotEqual) {
    BlurSettingCircular a;
    a.fCenterX = 0.5f;
    BlurSettingCircular b = a;
    EXPECT_TRUE(a == b);
    b.fBlurDirection = 1.0f;
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
}

TEST(BlurSettings, EveryFieldCountsExactly) {
    BlurSettingNormal n1, n2;
    n2.dBlurLevel = std::nextafter(0.0, 1.0);
    EXPECT_FALSE(n1 == n2);
    EXPECT_TRUE(n1 != n2);

    BlurSettingBokeh k1, k2;
    k2.shape = BOKEH_SHAPE_TYPE_STAR;
    EXPECT_FALSE(k1 == k2);
    k2 = k1;
    k2.mode = BOKEH_PROCESS_PRODUCTION;
    EXPECT_FALSE(k1 == k2);
    k2 = k1;
    k2.nStrength = 1;
    EXPECT_TRUE(k1 != k2);

    BlurSettingZoom z1, z2;
    z2.fStrength = 0.0001f;
    EXPECT_FALSE(z1 == z2);
    z2 = z1;
    z2.fCenterY = -0.0001f;
    EXPECT_TRUE(z1 != z2);

    BlurSettingMotion m1, m2;
    m2.Strength = 1u;
    EXPECT_FALSE(m1 == m2);
    m2 = m1;
    m2.Direction = 90.0f;
    EXPECT_TRUE(m1 != m2);
}

TEST(BlurSettings, EqualWhenAllFieldsMatch) {
    BlurSettingMotion a, b;
    a.Strength = b.Strength = 7u;
    a.Direction = b.Direction = 45.0f;
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
}

TEST(MaskSettingArrays, StartEmpty) {
    MaskToneSettingArray* tone = new MaskToneSettingArray;
    EXPECT_EQ(0, tone->nCount);
    EXPECT_EQ(0, tone->nMaskID[MAX_MASK_ARRAY_COUNT - 1]);
    EXPECT_EQ(0.0, tone->toneSetting_g.dExposure);
    delete tone;
}

}  // namespace
