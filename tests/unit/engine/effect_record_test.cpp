#include "engine/effect_record.h"
#include "engine/keyed_records/detail_records.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

namespace {

using pcg::engine::AllocEffectMemory;
using pcg::engine::AppendKeyframe;
using pcg::engine::ClarityRecord;
using pcg::engine::ContractVector;
using pcg::engine::EffectRecordHeader;
using pcg::engine::FreeEffectMemory;
using pcg::engine::FreeEntryVector;
using pcg::engine::KeyframeEntry;
using pcg::engine::KeyframeVector;
using pcg::engine::NewEffectRecord;
using pcg::engine::ReadField;

TEST(ContractVector, ZeroFilledMemoryIsAnEmptyVector) {
    auto* vector = static_cast<ContractVector<int*>*>(AllocEffectMemory(sizeof(ContractVector<int*>)));
    ASSERT_NE(vector, nullptr);
    EXPECT_EQ(vector->size(), 0u);
    EXPECT_TRUE(vector->empty());
    EXPECT_EQ(vector->begin(), vector->end());
    FreeEffectMemory(vector);
}

TEST(ContractVector, InMemoryFormIsFirstLastAndEndOfStorage) {
    ContractVector<int32_t> vector;
    ASSERT_TRUE(vector.reserve(5));
    ASSERT_TRUE(vector.push_back(10));
    ASSERT_TRUE(vector.push_back(20));
    const auto* first = ReadField<const int32_t*>(&vector, 0);
    const auto* last = ReadField<const int32_t*>(&vector, 8);
    const auto* end = ReadField<const int32_t*>(&vector, 16);
    EXPECT_EQ(last - first, 2);
    EXPECT_EQ(end - first, 5);
    EXPECT_EQ(first[0], 10);
    EXPECT_EQ(first[1], 20);
    vector.Free();
}

TEST(ContractVector, FreeLeavesThreeNullPointers) {
    ContractVector<int32_t> vector;
    ASSERT_TRUE(vector.push_back(1));
    vector.Free();
    EXPECT_EQ(ReadField<const void*>(&vector, 0), nullptr);
    EXPECT_EQ(ReadField<const void*>(&vector, 8), nullptr);
    EXPECT_EQ(ReadField<const void*>(&vector, 16), nullptr);
}

TEST(ContractVector, GrowingKeepsOrder) {
    ContractVector<int32_t> vector;
    for (int32_t value = 0; value < 100; ++value) {
        ASSERT_TRUE(vector.push_back(100 - value));
    }
    ASSERT_EQ(vector.size(), 100u);
    EXPECT_GE(vector.capacity(), 100u);
    for (int32_t index = 0; index < 100; ++index) {
        EXPECT_EQ(vector[index], 100 - index);
    }
    vector.Free();
}

TEST(KeyframeEntry, IntegerEntryHasTimeValueAndInterpolationAt0And8And12) {
    KeyframeVector<int32_t> vector;
    ASSERT_TRUE(AppendKeyframe<int32_t>(vector, -1200, 35, 7));
    ASSERT_EQ(vector.size(), 1u);
    const void* entry = vector[0];
    EXPECT_EQ(ReadField<int64_t>(entry, 0), -1200);
    EXPECT_EQ(ReadField<int32_t>(entry, 8), 35);
    EXPECT_EQ(ReadField<int32_t>(entry, 12), 7);
    FreeEntryVector(vector);
}

TEST(KeyframeEntry, FloatEntryHasValueAt8AndInterpolationAt12) {
    KeyframeVector<float> vector;
    ASSERT_TRUE(AppendKeyframe<float>(vector, 5, 0.25f, 3));
    const void* entry = vector[0];
    EXPECT_EQ(ReadField<float>(entry, 8), 0.25f);
    EXPECT_EQ(ReadField<int32_t>(entry, 12), 3);
    FreeEntryVector(vector);
}

TEST(KeyframeEntry, DoubleEntryHasValueAt8AndInterpolationAt16) {
    KeyframeVector<double> vector;
    ASSERT_TRUE(AppendKeyframe<double>(vector, INT64_MAX, -4.75, 1));
    const void* entry = vector[0];
    EXPECT_EQ(ReadField<int64_t>(entry, 0), INT64_MAX);
    EXPECT_EQ(ReadField<double>(entry, 8), -4.75);
    EXPECT_EQ(ReadField<int32_t>(entry, 16), 1);
    FreeEntryVector(vector);
}

TEST(KeyframeEntry, InterpolationDefaultsTo2) {
    KeyframeVector<int32_t> vector;
    ASSERT_TRUE(AppendKeyframe<int32_t>(vector, 1200, 35));
    EXPECT_EQ(vector[0]->nInterpolation, 2);
    FreeEntryVector(vector);
}

TEST(KeyframeVector, EachEntryIsItsOwnAllocationInListOrder) {
    KeyframeVector<int32_t> vector;
    ASSERT_TRUE(AppendKeyframe<int32_t>(vector, 2400, 50));
    ASSERT_TRUE(AppendKeyframe<int32_t>(vector, 1200, 35));
    ASSERT_EQ(vector.size(), 2u);
    EXPECT_NE(vector[0], vector[1]);
    EXPECT_EQ(vector[0]->llTime, 2400);
    EXPECT_EQ(vector[1]->llTime, 1200);
    FreeEntryVector(vector);
    EXPECT_TRUE(vector.empty());
}

TEST(EffectRecord, NewRecordHasVersionZeroWordAndEmptyVectors) {
    ClarityRecord* record = NewEffectRecord<ClarityRecord>(9);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(ReadField<uint32_t>(record, 0), 9u);
    EXPECT_EQ(ReadField<uint32_t>(record, 4), 0u);
    EXPECT_EQ(ReadField<const void*>(record, 8), nullptr);
    EXPECT_EQ(ReadField<const void*>(record, 16), nullptr);
    EXPECT_EQ(ReadField<const void*>(record, 24), nullptr);
    FreeEffectMemory(record);
}

TEST(EffectRecord, ClarityVectorFollowsTheHeader) {
    ClarityRecord* record = NewEffectRecord<ClarityRecord>(9);
    ASSERT_NE(record, nullptr);
    ASSERT_TRUE(AppendKeyframe<int32_t>(record->clarity, 1200, 35));
    const auto* first = ReadField<KeyframeEntry<int32_t>* const*>(record, 8);
    EXPECT_EQ(first[0]->value, 35);
    FreeEntryVector(record->clarity);
    FreeEffectMemory(record);
}

TEST(EffectRecord, AllocationOfZeroBytesGivesNull) {
    EXPECT_EQ(AllocEffectMemory(0), nullptr);
}

}  // namespace
