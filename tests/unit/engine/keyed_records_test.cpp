#include <gtest/gtest.h>

#include "engine/effect_layouts.h"
#include "engine/keyed_records/colour_records.h"
#include "engine/keyed_records/creative_records.h"
#include "engine/keyed_records/detail_records.h"
#include "engine/keyed_records/tone_records.h"

namespace {

using namespace pcg::engine;

TEST(KeyedRecords, LargerEntryKindsHaveTheirSizesAndOffsets) {
    const EntryLayout* curve = FindEntryLayout('c');
    const EntryLayout* replace = FindEntryLayout('r');
    const EntryLayout* splash = FindEntryLayout('s');
    ASSERT_NE(curve, nullptr);
    ASSERT_NE(replace, nullptr);
    ASSERT_NE(splash, nullptr);
    EXPECT_EQ(curve->nEntrySize, 24u);
    EXPECT_EQ(curve->nValueOffset, 8u);
    EXPECT_EQ(curve->nInterpolationOffset, 16u);
    EXPECT_NE(curve->fnFreeOwned, nullptr);
    EXPECT_EQ(replace->nEntrySize, 56u);
    EXPECT_EQ(replace->nValueOffset, 8u);
    EXPECT_EQ(replace->nInterpolationOffset, 48u);
    EXPECT_EQ(replace->fnFreeOwned, nullptr);
    EXPECT_EQ(splash->nEntrySize, 72u);
    EXPECT_EQ(splash->nValueOffset, 8u);
    EXPECT_EQ(splash->nInterpolationOffset, 64u);
    EXPECT_EQ(splash->fnFreeOwned, nullptr);
}

// Each record's size is the one its layout row gives, so the agent frees
// exactly what the converter allocated.
TEST(KeyedRecords, RecordTypesMatchTheirLayoutRows) {
    const struct {
        FUNCTION_ID eFunction;
        std::size_t nSize;
    } records[] = {
        {FUNCTION_SET_TONE, sizeof(ToneRecord)},
        {FUNCTION_SET_TONECURVE_RGB, sizeof(ToneCurveRecord)},
        {FUNCTION_SET_TONECURVE, sizeof(ToneCurveChannelRecord)},
        {FUNCTION_SET_WB, sizeof(WBRecord)},
        {FUNCTION_SET_SATURATION, sizeof(SaturationRecord)},
        {FUNCTION_SET_BWTINT, sizeof(TintRecord)},
        {FUNCTION_SET_HUESHIFT, sizeof(HueShiftRecord)},
        {FUNCTION_SET_HSLCOLOR, sizeof(HSLRecord)},
        {FUNCTION_SET_BLACKWHITE, sizeof(BlackWhiteRecord)},
        {FUNCTION_SET_COLORREPLACE, sizeof(ColorReplaceRecord)},
        {FUNCTION_SET_COLORSPLASH, sizeof(ColorSplashRecord)},
        {FUNCTION_SET_SHARP, sizeof(SharpenRecord)},
        {FUNCTION_SET_NOISE, sizeof(NoiseRecord)},
        {FUNCTION_SET_POST_VIGNETTE, sizeof(VignetteRecord)},
        {FUNCTION_SET_BLUR_MASK, sizeof(BlurRecord)},
        {FUNCTION_SET_HDR, sizeof(HDRRecord)},
        {FUNCTION_SET_SPLITTONE, sizeof(SplitToneRecord)},
    };
    for (const auto& record : records) {
        const EffectLayout* layout = FindEffectLayout(static_cast<uint32_t>(record.eFunction));
        ASSERT_NE(layout, nullptr) << record.eFunction;
        EXPECT_EQ(layout->nRecordSize, record.nSize) << layout->pszName;
    }
}

// Run under a leak checker, this also shows each table went with its entry.
TEST(KeyedRecords, FreeingACurveRecordFreesEveryEntryWithItsTable) {
    auto* record = NewEffectRecord<ToneCurveChannelRecord>(9);
    ASSERT_NE(record, nullptr);
    for (int channel = 0; channel < 3; ++channel) {
        auto* table = static_cast<int32_t*>(AllocEffectMemory(kCurveTableBytes));
        ASSERT_NE(table, nullptr);
        ASSERT_TRUE(AppendKeyframe<int32_t*>(record->channels[channel], channel, table, 2));
    }
    ASSERT_TRUE(AppendKeyframe<int32_t*>(record->channels[1], 9, nullptr, 2));
    const FreedRecord freed = FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_TONECURVE), &record->header);
    EXPECT_EQ(freed.nEntries, 4u);
}

TEST(KeyedRecords, FreeingASettingRecordCountsItsEntries) {
    auto* record = NewEffectRecord<ColorSplashRecord>(9);
    ASSERT_NE(record, nullptr);
    ColorsplashSetting setting;
    setting.nMaskType = 22;
    ASSERT_TRUE(AppendKeyframe(record->splash, 0, setting, 2));
    EXPECT_EQ(record->splash[0]->value.nMaskType, 22);
    const FreedRecord freed = FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_COLORSPLASH), &record->header);
    EXPECT_EQ(freed.nEntries, 1u);
}

}  // namespace
