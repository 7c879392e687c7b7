#include "engine/effect_layouts.h"

#include <cstring>
#include <set>

#include <gtest/gtest.h>

#include "engine/constants.h"
#include "engine/keyed_records/detail_records.h"

namespace {

using namespace pcg::engine;

struct RecordSize {
    FUNCTION_ID eFunction;
    uint32_t nSize;
    const char* pszVectors;
};

// Sizes and vector types as the records are described, one per record kind.
const RecordSize kRecordSizes[] = {
    {FUNCTION_SET_CLARITY, 32, "i"},
    {FUNCTION_SET_TONE, 176, "diiiiii"},
    {FUNCTION_SET_WB, 56, "ii"},
    {FUNCTION_SET_SATURATION, 32, "i"},
    {FUNCTION_SET_BWTINT, 56, "id"},
    {FUNCTION_SET_HUESHIFT, 32, "f"},
    {FUNCTION_SET_HSLCOLOR, 608, "iiiiiiiiiiiiiiiiiiiiiiiii"},
    {FUNCTION_SET_BLACKWHITE, 200, "iiiiiiii"},
    {FUNCTION_SET_SHARP, 128, "idiii"},
    {FUNCTION_SET_NOISE, 104, "iiii"},
    {FUNCTION_SET_POST_VIGNETTE, 104, "iiii"},
    {FUNCTION_SET_BLUR_MASK, 32, "i"},
    {FUNCTION_SET_HDR, 152, "iiidii"},
    {FUNCTION_SET_SPLITTONE, 128, "ddddd"},
    {FUNCTION_SET_TONECURVE_RGB, 32, "c"},
    {FUNCTION_SET_TONECURVE, 80, "ccc"},
    {FUNCTION_SET_COLORREPLACE, 32, "r"},
    {FUNCTION_SET_COLORSPLASH, 32, "s"},
};

TEST(EffectLayouts, EveryPlainRecordHasItsSizeAndVectorTypes) {
    for (const RecordSize& expected : kRecordSizes) {
        const EffectLayout* layout = FindEffectLayout(static_cast<uint32_t>(expected.eFunction));
        ASSERT_NE(layout, nullptr) << expected.eFunction;
        EXPECT_EQ(layout->nRecordSize, expected.nSize) << layout->pszName;
        EXPECT_STREQ(layout->pszVectors, expected.pszVectors) << layout->pszName;
        EXPECT_EQ(layout->eForm, RecordForm::Plain) << layout->pszName;
    }
}

// The plain rows are exactly those above; the other forms are checked with
// their records.
TEST(EffectLayouts, TableHasOneRowPerFunction) {
    std::set<uint32_t> functions;
    std::size_t plainRows = 0;
    for (const EffectLayout* row = EffectLayoutsBegin(); row != EffectLayoutsEnd(); ++row) {
        EXPECT_TRUE(functions.insert(row->nFunctionID).second) << row->pszName;
        plainRows += row->eForm == RecordForm::Plain ? 1 : 0;
    }
    EXPECT_EQ(plainRows, sizeof(kRecordSizes) / sizeof(kRecordSizes[0]));
}

TEST(EffectLayouts, FunctionWithoutRecordHasNoLayout) {
    EXPECT_EQ(FindEffectLayout(static_cast<uint32_t>(FUNCTION_SET_LEVEL)), nullptr);
    EXPECT_EQ(FindEffectLayout(0), nullptr);
}

TEST(EffectLayouts, EntryKindsHaveTheirSizesAndOffsets) {
    const EntryLayout* integer = FindEntryLayout('i');
    const EntryLayout* single = FindEntryLayout('f');
    const EntryLayout* dbl = FindEntryLayout('d');
    ASSERT_NE(integer, nullptr);
    ASSERT_NE(single, nullptr);
    ASSERT_NE(dbl, nullptr);
    EXPECT_EQ(integer->nEntrySize, 16u);
    EXPECT_EQ(integer->nInterpolationOffset, 12u);
    EXPECT_EQ(single->nEntrySize, 16u);
    EXPECT_EQ(single->nValueOffset, 8u);
    EXPECT_EQ(dbl->nEntrySize, 24u);
    EXPECT_EQ(dbl->nValueOffset, 8u);
    EXPECT_EQ(dbl->nInterpolationOffset, 16u);
    EXPECT_EQ(FindEntryLayout('x'), nullptr);
}

TEST(EffectLayouts, RecordVectorIsAtItsOffset) {
    auto* record = static_cast<EffectRecordHeader*>(AllocEffectMemory(PlainRecordSize(7)));
    ASSERT_NE(record, nullptr);
    auto* base = reinterpret_cast<unsigned char*>(record);
    EXPECT_EQ(reinterpret_cast<unsigned char*>(&RecordVector(record, 0)), base + 8);
    EXPECT_EQ(reinterpret_cast<unsigned char*>(&RecordVector(record, 6)), base + 152);
    FreeEffectMemory(record);
}

// A tone record: exposure double entries, then six integer vectors.
struct ToneLike {
    EffectRecordHeader header;
    KeyframeVector<double> exposure;
    KeyframeVector<int32_t> others[6];
};

TEST(EffectLayouts, FreeingARecordFreesEveryEntryAndCountsThem) {
    auto* record = NewEffectRecord<ToneLike>(9);
    ASSERT_NE(record, nullptr);
    ASSERT_TRUE(AppendKeyframe<double>(record->exposure, 0, 1.5));
    ASSERT_TRUE(AppendKeyframe<double>(record->exposure, 10, -1.5));
    ASSERT_TRUE(AppendKeyframe<int32_t>(record->others[5], 0, 20));
    const FreedRecord freed =
        FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_TONE), &record->header);
    EXPECT_EQ(freed.nEntries, 3u);
}

TEST(EffectLayouts, NullElementPointersAreSkipped) {
    auto* record = NewEffectRecord<ClarityRecord>(9);
    ASSERT_NE(record, nullptr);
    ASSERT_TRUE(AppendKeyframe<int32_t>(record->clarity, 0, 1));
    ASSERT_TRUE(record->clarity.push_back(nullptr));
    const FreedRecord freed = FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_CLARITY), &record->header);
    EXPECT_EQ(freed.nEntries, 1u);
}

TEST(EffectLayouts, RecordOfUnknownFunctionFreesOnlyItsBlock) {
    auto* record = static_cast<EffectRecordHeader*>(AllocEffectMemory(sizeof(EffectRecordHeader)));
    ASSERT_NE(record, nullptr);
    const FreedRecord freed = FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_LEVEL), record);
    EXPECT_EQ(freed.nEntries, 0u);
}

TEST(EffectLayouts, NullRecordFreesNothing) {
    const FreedRecord freed = FreeEffectRecord(static_cast<uint32_t>(FUNCTION_SET_CLARITY), nullptr);
    EXPECT_EQ(freed.nEntries, 0u);
}

}  // namespace
