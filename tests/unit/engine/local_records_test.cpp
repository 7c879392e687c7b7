#include "engine/keyed_records/local_records.h"

#include <cstring>

#include <gtest/gtest.h>

#include "engine/effect_layouts.h"

namespace {

using namespace pcg::engine;

struct LocalRow {
    FUNCTION_ID eFunction;
    uint32_t nMaskRecordSize;
    const char* pszVectors;
};

// Per-mask record sizes and vector types of the nine local adjustments.
const LocalRow kLocalRows[] = {
    {FUNCTION_SET_WB_MASK, 64, "ii"},
    {FUNCTION_SET_TONE_MASK, 88, "dii"},
    {FUNCTION_SET_CLARITY_MASK, 40, "i"},
    {FUNCTION_SET_SATURATION_MASK, 40, "i"},
    {FUNCTION_SET_HSLCOLOR_MASK, 616, "iiiiiiiiiiiiiiiiiiiiiiiii"},
    {FUNCTION_SET_COLORREPLACE_MASK, 40, "r"},
    {FUNCTION_SET_BWTINT_MASK, 64, "id"},
    {FUNCTION_SET_MEAN_BLUR_MASK, 40, "i"},
    {FUNCTION_SET_COLORSPLASH_MASK, 40, "s"},
};

TEST(LocalRecords, EveryLocalLayoutHasItsPerMaskSizeAndVectors) {
    for (const LocalRow& expected : kLocalRows) {
        const EffectLayout* layout = FindEffectLayout(static_cast<uint32_t>(expected.eFunction));
        ASSERT_NE(layout, nullptr) << expected.eFunction;
        EXPECT_EQ(layout->eForm, RecordForm::Local) << layout->pszName;
        EXPECT_EQ(layout->nRecordSize, expected.nMaskRecordSize) << layout->pszName;
        EXPECT_STREQ(layout->pszVectors, expected.pszVectors) << layout->pszName;
    }
}

TEST(LocalRecords, TheNineLocalRowsAndTheShowMaskRowAreTheOnlyOnesNotPlain) {
    std::size_t local = 0;
    std::size_t showMask = 0;
    for (const EffectLayout* row = EffectLayoutsBegin(); row != EffectLayoutsEnd(); ++row) {
        local += row->eForm == RecordForm::Local ? 1 : 0;
        showMask += row->eForm == RecordForm::ShowMask ? 1 : 0;
    }
    EXPECT_EQ(local, sizeof(kLocalRows) / sizeof(kLocalRows[0]));
    EXPECT_EQ(showMask, 1u);
}

TEST(LocalRecords, ShowMaskLayoutIsOneBlockOf32Bytes) {
    const EffectLayout* layout = FindEffectLayout(static_cast<uint32_t>(FUNCTION_SET_SHOW_MASK));
    ASSERT_NE(layout, nullptr);
    EXPECT_EQ(layout->eForm, RecordForm::ShowMask);
    EXPECT_EQ(layout->nRecordSize, 32u);
    EXPECT_STREQ(layout->pszVectors, "");
}

TEST(LocalRecords, WholeSettingEntryKindsHaveTheirSizesAndOffsets) {
    const EntryLayout* replace = FindEntryLayout('r');
    const EntryLayout* splash = FindEntryLayout('s');
    ASSERT_NE(replace, nullptr);
    ASSERT_NE(splash, nullptr);
    EXPECT_EQ(replace->nEntrySize, 56u);
    EXPECT_EQ(replace->nValueOffset, 8u);
    EXPECT_EQ(replace->nInterpolationOffset, 48u);
    EXPECT_EQ(splash->nEntrySize, 72u);
    EXPECT_EQ(splash->nValueOffset, 8u);
    EXPECT_EQ(splash->nInterpolationOffset, 64u);
    EXPECT_EQ(splash->nEntrySize, sizeof(KeyframeEntry<MaskColorsplashSetting>));
}

TEST(LocalRecords, LocalRecordIsHeaderThenMapHeadAndCount) {
    EXPECT_EQ(sizeof(LocalEffectRecord), 24u);
    EXPECT_EQ(offsetof(LocalEffectRecord, masks) + offsetof(OrderedMap<MaskRecordHead>, m_pHead), 8u);
    EXPECT_EQ(offsetof(LocalEffectRecord, masks) + offsetof(OrderedMap<MaskRecordHead>, m_nSize), 16u);
}

TEST(LocalRecords, MaskVectorsStartAfterTheSixteenByteHead) {
    auto* mask = static_cast<MaskToneRecord*>(AllocEffectMemory(sizeof(MaskToneRecord)));
    ASSERT_NE(mask, nullptr);
    EXPECT_EQ(static_cast<void*>(&MaskRecordVector(&mask->head, 0)), static_cast<void*>(&mask->exposure));
    EXPECT_EQ(static_cast<void*>(&MaskRecordVector(&mask->head, 2)), static_cast<void*>(&mask->contrast));
    FreeEffectMemory(mask);
}

// A tone adjustment on two masks, with three and one entries.
LocalEffectRecord* TwoToneMasks() {
    auto* local = NewEffectRecord<LocalEffectRecord>(9);
    EXPECT_TRUE(local->masks.Init());
    for (int32_t maskID : {7, 2}) {
        auto* mask = static_cast<MaskToneRecord*>(AllocEffectMemory(sizeof(MaskToneRecord)));
        mask->head.nMaskID = maskID;
        EXPECT_TRUE(AppendKeyframe<double>(mask->exposure, 0, 0.5));
        if (maskID == 7) {
            EXPECT_TRUE(AppendKeyframe<int32_t>(mask->brightness, 0, 1));
            EXPECT_TRUE(AppendKeyframe<int32_t>(mask->contrast, 5, 2));
        }
        local->masks.FindOrInsert(maskID)->m_pair.pValue = &mask->head;
    }
    return local;
}

TEST(LocalRecords, FreeingALocalRecordFreesEveryMaskRecordAndEntry) {
    LocalEffectRecord* local = TwoToneMasks();
    const FreedRecord freed = FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_TONE_MASK), &local->header);
    EXPECT_EQ(freed.nEntries, 4u);
    EXPECT_EQ(freed.nMaskRecords, 2u);
}

TEST(LocalRecords, FreeingOneMaskRecordGivesItsEntryCount) {
    auto* mask = static_cast<MaskColorSplashRecord*>(AllocEffectMemory(sizeof(MaskColorSplashRecord)));
    ASSERT_NE(mask, nullptr);
    MaskColorsplashSetting setting;
    ASSERT_TRUE(AppendKeyframe(mask->colorSplash, 0, setting));
    ASSERT_TRUE(AppendKeyframe(mask->colorSplash, 0, setting));
    const EffectLayout* layout = FindEffectLayout(static_cast<uint32_t>(FUNCTION_SET_COLORSPLASH_MASK));
    ASSERT_NE(layout, nullptr);
    EXPECT_EQ(FreeMaskRecord(*layout, &mask->head), 2u);
    EXPECT_EQ(FreeMaskRecord(*layout, nullptr), 0u);
}

TEST(LocalRecords, NodeWithoutMaskRecordAndMapWithoutHeadAreFreedSafely) {
    auto* local = NewEffectRecord<LocalEffectRecord>(9);
    ASSERT_TRUE(local->masks.Init());
    ASSERT_NE(local->masks.FindOrInsert(3), nullptr);
    FreedRecord freed = FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_CLARITY_MASK), &local->header);
    EXPECT_EQ(freed.nMaskRecords, 0u);

    auto* unmade = NewEffectRecord<LocalEffectRecord>(9);
    freed = FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_CLARITY_MASK), &unmade->header);
    EXPECT_EQ(freed.nEntries, 0u);
    EXPECT_EQ(freed.nMaskRecords, 0u);
}

TEST(LocalRecords, ShowMaskRecordFreesAsOneBlock) {
    auto* show = NewEffectRecord<ShowMaskRecord>(9);
    ASSERT_NE(show, nullptr);
    const FreedRecord freed =
        FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_SHOW_MASK), reinterpret_cast<EffectRecordHeader*>(show));
    EXPECT_EQ(freed.nEntries, 0u);
    EXPECT_EQ(freed.nMaskRecords, 0u);
}

}  // namespace
