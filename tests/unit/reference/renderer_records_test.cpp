// Effect records as the engines hold them, read into the renderer's settings.
#include "reference/renderer/record_settings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "engine/constants.h"
#include "engine/effect_layouts.h"
#include "engine/effect_record.h"
#include "engine/keyed_records/colour_records.h"
#include "engine/keyed_records/creative_records.h"
#include "engine/keyed_records/detail_records.h"
#include "engine/keyed_records/tone_records.h"

namespace eng = pcg::engine;
using pcg::renderer::GlobalSettings;
using pcg::renderer::HeldRecord;
using pcg::renderer::SettingsAt;

namespace {

// Records made for one test and freed with it, as the agent frees them.
class RecordsToSettings : public ::testing::Test {
protected:
    ~RecordsToSettings() override {
        for (const HeldRecord& held : m_records)
            eng::FreeEffectRecord(held.first, const_cast<eng::EffectRecordHeader*>(held.second));
    }
    template <typename Record>
    Record* Make(uint32_t functionID) {
        auto* record = eng::NewEffectRecord<Record>(9);
        m_records.emplace_back(functionID, reinterpret_cast<eng::EffectRecordHeader*>(record));
        return record;
    }
    GlobalSettings At(int64_t time) const { return SettingsAt(m_records, time); }
    std::vector<HeldRecord> m_records;
};

// A mapping table on the shared heap, every entry `base + i * step`.
int32_t* Table(int32_t base, int32_t step) {
    auto* table = static_cast<int32_t*>(eng::AllocEffectMemory(eng::kCurveTableBytes));
    for (size_t i = 0; i < eng::kCurveTableCount; ++i) table[i] = base + static_cast<int32_t>(i) * step;
    return table;
}

TEST_F(RecordsToSettings, NullRecordsAreSkipped) {
    m_records.emplace_back(FUNCTION_SET_TONE, nullptr);
    m_records.emplace_back(FUNCTION_SET_TONECURVE, nullptr);
    EXPECT_TRUE(pcg::renderer::IsNeutral(At(0)));
    m_records.clear();
}

TEST_F(RecordsToSettings, ToneReadsAllSevenSlidersBetweenKeyframes) {
    auto* tone = Make<eng::ToneRecord>(FUNCTION_SET_TONE);
    ASSERT_TRUE(eng::AppendKeyframe<double>(tone->exposure, 100, 1.0));
    ASSERT_TRUE(eng::AppendKeyframe<double>(tone->exposure, 300, -1.0));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(tone->blacks, 0, 10));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(tone->recovery, 0, 20));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(tone->fillLight, 0, 30));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(tone->brightness, 0, 40));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(tone->contrast, 0, 50));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(tone->whites, 0, -60));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(tone->whites, 1000, 60));
    GlobalSettings s = At(0);
    EXPECT_EQ(s.dExposure, 1.0);  // before the first keyframe: its value
    EXPECT_EQ(s.dBlacks, 10);
    EXPECT_EQ(s.dRecovery, 20);
    EXPECT_EQ(s.dFillLight, 30);
    EXPECT_EQ(s.dBrightness, 40);
    EXPECT_EQ(s.dContrast, 50);
    EXPECT_EQ(s.dWhites, -60);
    s = At(200);
    EXPECT_EQ(s.dExposure, 0.0);
    EXPECT_EQ(s.dWhites, -36);
    s = At(5000);
    EXPECT_EQ(s.dExposure, -1.0);
    EXPECT_EQ(s.dWhites, 60);
}

TEST_F(RecordsToSettings, ColourRecords) {
    auto* wb = Make<eng::WBRecord>(FUNCTION_SET_WB);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(wb->temperature, 0, 7000));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(wb->tint, 0, -20));
    auto* saturation = Make<eng::SaturationRecord>(FUNCTION_SET_SATURATION);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(saturation->saturation, 0, 25));
    auto* hsl = Make<eng::HSLRecord>(FUNCTION_SET_HSLCOLOR);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hsl->vibrancy, 0, 15));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hsl->hue[0], 0, -5));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hsl->saturation[3], 0, 33));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hsl->luminance[7], 0, -44));
    auto* tint = Make<eng::TintRecord>(FUNCTION_SET_BWTINT);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(tint->hue, 0, 210));
    ASSERT_TRUE(eng::AppendKeyframe<double>(tint->amount, 0, 37.5));
    auto* shift = Make<eng::HueShiftRecord>(FUNCTION_SET_HUESHIFT);
    ASSERT_TRUE(eng::AppendKeyframe<float>(shift->hueShift, 0, 0.25f));
    const GlobalSettings s = At(0);
    EXPECT_EQ(s.dTemperature, 7000);
    EXPECT_EQ(s.dTint, -20);
    EXPECT_EQ(s.dSaturation, 25);
    EXPECT_EQ(s.dVibrance, 15);
    EXPECT_EQ(s.dBandHue[0], -5);
    EXPECT_EQ(s.dBandSaturation[3], 33);
    EXPECT_EQ(s.dBandLuminance[7], -44);
    for (int band : {1, 2, 4, 5, 6}) {
        EXPECT_EQ(s.dBandHue[band], 0);
        EXPECT_EQ(s.dBandSaturation[band], 0);
        EXPECT_EQ(s.dBandLuminance[band], 0);
    }
    EXPECT_EQ(s.dTintHue, 210);
    EXPECT_EQ(s.dTintAmount, 37.5);
    EXPECT_EQ(s.dHueShift, 0.25);
}

TEST_F(RecordsToSettings, BlackAndWhiteSwitchIsTheHeaderWord) {
    auto* bw = Make<eng::BlackWhiteRecord>(FUNCTION_SET_BLACKWHITE);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(bw->luminance[2], 0, 70));
    EXPECT_FALSE(At(0).bBlackWhite);
    EXPECT_EQ(At(0).dBlackWhiteMix[2], 70);
    bw->header.nHeaderWord = 1;
    EXPECT_TRUE(At(0).bBlackWhite);
}

TEST_F(RecordsToSettings, DetailAndCreativeRecords) {
    auto* clarity = Make<eng::ClarityRecord>(FUNCTION_SET_CLARITY);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(clarity->clarity, 0, 45));
    auto* sharp = Make<eng::SharpenRecord>(FUNCTION_SET_SHARP);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(sharp->amount, 0, 80));
    ASSERT_TRUE(eng::AppendKeyframe<double>(sharp->radius, 0, 2.5));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(sharp->mask, 0, 12));
    auto* vignette = Make<eng::VignetteRecord>(FUNCTION_SET_POST_VIGNETTE);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(vignette->amount, 0, -30));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(vignette->midPoint, 0, 20));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(vignette->roundness, 0, 40));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(vignette->feather, 0, 60));
    auto* split = Make<eng::SplitToneRecord>(FUNCTION_SET_SPLITTONE);
    ASSERT_TRUE(eng::AppendKeyframe<double>(split->lightHue, 0, 45));
    ASSERT_TRUE(eng::AppendKeyframe<double>(split->lightSaturation, 0, 20));
    ASSERT_TRUE(eng::AppendKeyframe<double>(split->balance, 0, -10));
    ASSERT_TRUE(eng::AppendKeyframe<double>(split->darkHue, 0, 220));
    ASSERT_TRUE(eng::AppendKeyframe<double>(split->darkSaturation, 0, 35));
    auto* blur = Make<eng::BlurRecord>(FUNCTION_SET_BLUR_MASK);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(blur->level, 0, 8));
    const GlobalSettings s = At(0);
    EXPECT_EQ(s.dClarity, 45);
    EXPECT_EQ(s.dSharpAmount, 80);
    EXPECT_EQ(s.dSharpRadius, 2.5);
    EXPECT_EQ(s.dSharpMask, 12);
    EXPECT_EQ(s.dVignetteAmount, -30);
    EXPECT_EQ(s.dVignetteMidPoint, 20);
    EXPECT_EQ(s.dVignetteRoundness, 40);  // the third vector
    EXPECT_EQ(s.dVignetteFeather, 60);    // the fourth
    EXPECT_EQ(s.dSplitLightHue, 45);
    EXPECT_EQ(s.dSplitLightSaturation, 20);
    EXPECT_EQ(s.dSplitBalance, -10);
    EXPECT_EQ(s.dSplitDarkHue, 220);
    EXPECT_EQ(s.dSplitDarkSaturation, 35);
    EXPECT_EQ(s.dBlurLevel, 8);
}

TEST_F(RecordsToSettings, CurveTablesAreTakenWholeAndBlendedBetweenKeyframes) {
    auto* master = Make<eng::ToneCurveRecord>(FUNCTION_SET_TONECURVE_RGB);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t*>(master->curve, 0, Table(0, 1)));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t*>(master->curve, 100, Table(1000, 1)));
    // A master item of the wrong shape: an entry with no table, skipped.
    ASSERT_TRUE(eng::AppendKeyframe<int32_t*>(master->curve, 50, nullptr));
    auto* channels = Make<eng::ToneCurveChannelRecord>(FUNCTION_SET_TONECURVE);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t*>(channels->channels[1], 0, Table(7, 0)));
    GlobalSettings s = At(0);
    ASSERT_EQ(s.masterCurve.size(), 65536u);
    EXPECT_EQ(s.masterCurve[0], 0);
    EXPECT_EQ(s.masterCurve[65535], 65535);
    s = At(25);
    EXPECT_EQ(s.masterCurve[0], 250);
    EXPECT_EQ(s.masterCurve[10], 260);
    s = At(50);
    EXPECT_EQ(s.masterCurve[3], 503);
    s = At(200);
    EXPECT_EQ(s.masterCurve[3], 1003);
    EXPECT_TRUE(s.channelCurves[0].empty());
    ASSERT_EQ(s.channelCurves[1].size(), 65536u);
    EXPECT_EQ(s.channelCurves[1][40000], 7);
    EXPECT_TRUE(s.channelCurves[2].empty());
}

TEST_F(RecordsToSettings, OnlyNullTablesLeaveNoCurve) {
    auto* master = Make<eng::ToneCurveRecord>(FUNCTION_SET_TONECURVE_RGB);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t*>(master->curve, 0, nullptr));
    EXPECT_TRUE(At(0).masterCurve.empty());
    EXPECT_TRUE(pcg::renderer::IsNeutral(At(0)));
}

TEST_F(RecordsToSettings, WholeSettingRecordsTakeTheLatestKeyframe) {
    auto* replace = Make<eng::ColorReplaceRecord>(FUNCTION_SET_COLORREPLACE);
    ColorReplaceSetting first{};
    first.srcColor[0] = 250;
    first.dstColor[2] = 90;
    first.fSrcTolerance = 12.5f;
    ColorReplaceSetting second = first;
    second.srcColor[1] = 7;
    ASSERT_TRUE(eng::AppendKeyframe<ColorReplaceSetting>(replace->replacement, 0, first));
    ASSERT_TRUE(eng::AppendKeyframe<ColorReplaceSetting>(replace->replacement, 100, second));
    auto* splash = Make<eng::ColorSplashRecord>(FUNCTION_SET_COLORSPLASH);
    ColorsplashSetting setting{};
    setting.fTolerance = 30.0f;
    setting.dropperColor.nR = 65535;
    setting.dropperColor.nG = 257;
    setting.dropperColor.eColorDepth = static_cast<COLOR_DEPTH>(65535);
    setting.bEnableColorsplash = true;
    setting.fHueShift = -0.5f;
    ASSERT_TRUE(eng::AppendKeyframe<ColorsplashSetting>(splash->splash, 0, setting));
    GlobalSettings s = At(50);
    EXPECT_TRUE(s.bColourReplace);
    EXPECT_EQ(s.dReplaceFrom[0], 250);
    EXPECT_EQ(s.dReplaceFrom[1], 0);
    EXPECT_EQ(s.dReplaceTo[2], 90);
    EXPECT_EQ(s.dReplaceTolerance, 12.5);
    EXPECT_TRUE(s.bColourSplash);
    EXPECT_EQ(s.dSplashColour[0], 255);
    EXPECT_EQ(s.dSplashColour[1], 1);
    EXPECT_EQ(s.dSplashColour[2], 0);
    EXPECT_EQ(s.dSplashTolerance, 30);
    EXPECT_EQ(s.dSplashHueShift, -0.5);
    s = At(100);
    EXPECT_EQ(s.dReplaceFrom[1], 7);
    s = At(-100);  // before the first: the first
    EXPECT_EQ(s.dReplaceFrom[1], 0);
}

TEST_F(RecordsToSettings, ASplashTurnedOffIsNeutral) {
    auto* splash = Make<eng::ColorSplashRecord>(FUNCTION_SET_COLORSPLASH);
    ColorsplashSetting setting{};  // zeroed by the converter: switched off
    ASSERT_TRUE(eng::AppendKeyframe<ColorsplashSetting>(splash->splash, 0, setting));
    EXPECT_FALSE(At(0).bColourSplash);
    EXPECT_TRUE(pcg::renderer::IsNeutral(At(0)));
}

TEST_F(RecordsToSettings, TheLaterRecordOfAKindWins) {
    auto* first = Make<eng::SaturationRecord>(FUNCTION_SET_SATURATION);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(first->saturation, 0, 10));
    auto* second = Make<eng::SaturationRecord>(FUNCTION_SET_SATURATION);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(second->saturation, 0, -70));
    EXPECT_EQ(At(0).dSaturation, -70);
}

TEST_F(RecordsToSettings, NoiseRecordFillsItsFourSettings) {
    auto* noise = Make<eng::NoiseRecord>(FUNCTION_SET_NOISE);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(noise->lumaAmount, 0, 50));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(noise->lumaDetail, 0, 60));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(noise->chromaAmount, 0, 70));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(noise->chromaDetail, 0, 80));
    const GlobalSettings s = At(0);
    EXPECT_EQ(s.dNoiseLumaAmount, 50);
    EXPECT_EQ(s.dNoiseLumaDetail, 60);
    EXPECT_EQ(s.dNoiseChromaAmount, 70);
    EXPECT_EQ(s.dNoiseChromaDetail, 80);
}

TEST_F(RecordsToSettings, HdrRecordFillsItsSixSettings) {
    auto* hdr = Make<eng::HDRRecord>(FUNCTION_SET_HDR);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hdr->glowStrength, 0, 11));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hdr->glowRadius, 0, 22));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hdr->glowBalance, 0, -33));
    ASSERT_TRUE(eng::AppendKeyframe<double>(hdr->edgeStrength, 0, 44.5));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hdr->edgeRadius, 0, 55));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hdr->edgeBalance, 0, 66));
    const GlobalSettings s = At(0);
    EXPECT_EQ(s.dGlowStrength, 11);
    EXPECT_EQ(s.dGlowRadius, 22);
    EXPECT_EQ(s.dGlowBalance, -33);
    EXPECT_EQ(s.dEdgeStrength, 44.5);
    EXPECT_EQ(s.dEdgeRadius, 55);
    EXPECT_EQ(s.dEdgeBalance, 66);
}

TEST_F(RecordsToSettings, RecordsOfOtherFunctionsChangeNothing) {
    auto* saturation = Make<eng::SaturationRecord>(FUNCTION_SET_SATURATION);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(saturation->saturation, 0, 50));
    // The same record held under a function the renderer does not draw.
    const std::vector<HeldRecord> other = {{FUNCTION_SET_LENSCORRECT, &saturation->header}};
    EXPECT_TRUE(pcg::renderer::IsNeutral(SettingsAt(other, 0)));
    EXPECT_FALSE(pcg::renderer::IsNeutral(At(0)));
}

TEST_F(RecordsToSettings, ARecordChangesRenderedPixelsItsWay) {
    auto* vignette = Make<eng::VignetteRecord>(FUNCTION_SET_POST_VIGNETTE);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(vignette->amount, 0, -100));
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(vignette->midPoint, 0, 30));
    auto* hsl = Make<eng::HSLRecord>(FUNCTION_SET_HSLCOLOR);
    ASSERT_TRUE(eng::AppendKeyframe<int32_t>(hsl->saturation[5], 0, -100));  // blue band to grey
    const int w = 40, h = 30;
    std::vector<uint8_t> pixels(static_cast<size_t>(w) * h * 4);
    for (size_t p = 0; p < pixels.size(); p += 4) {
        pixels[p] = 200;  // blue, hue 240: wholly in the blue band
        pixels[p + 1] = 40;
        pixels[p + 2] = 40;
        pixels[p + 3] = 255;
    }
    ASSERT_TRUE(pcg::renderer::RenderGlobal(pixels.data(), w, h, w * 4, 1, At(0)));
    const uint8_t* centre = &pixels[(static_cast<size_t>(h / 2) * w + w / 2) * 4];
    const uint8_t* corner = &pixels[0];
    // The blue band has no colour left; the corner is darker than the centre.
    EXPECT_EQ(centre[0], centre[1]);
    EXPECT_EQ(centre[1], centre[2]);
    EXPECT_LT(corner[0], centre[0]);
    EXPECT_EQ(corner[3], 255);
}

}  // namespace
