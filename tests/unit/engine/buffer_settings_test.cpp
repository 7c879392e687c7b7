#include "engine/buffer_settings.h"

#include <cstring>

#include <gtest/gtest.h>

namespace {

using pcg::engine::ReadField;

TEST(LUTSetting, DefaultIsSizeZeroDomainZeroToOneAndEmptyTable) {
    LUTSetting setting;
    EXPECT_EQ(ReadField<int32_t>(&setting, 0), 0);
    for (int channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(ReadField<float>(&setting, 4 + 4 * channel), 0.0f);
        EXPECT_EQ(ReadField<float>(&setting, 16 + 4 * channel), 1.0f);
    }
    EXPECT_EQ(ReadField<const void*>(&setting, 32), nullptr);
    EXPECT_EQ(ReadField<const void*>(&setting, 40), nullptr);
    EXPECT_EQ(ReadField<const void*>(&setting, 48), nullptr);
}

TEST(LUTSetting, TableKeepsTheScriptsOrder) {
    LUTSetting setting;
    ASSERT_TRUE(setting.table.reserve(3));
    for (float value : {0.5f, 0.25f, 1.0f}) {
        ASSERT_TRUE(setting.table.push_back(value));
    }
    const auto* first = ReadField<const float*>(&setting, 32);
    EXPECT_EQ(first[0], 0.5f);
    EXPECT_EQ(first[1], 0.25f);
    EXPECT_EQ(first[2], 1.0f);
    setting.table.Free();
}

TEST(ApplyBufferSetting, RoiSitsAt64AndTheTailWordsAfterIt) {
    ApplyBufferSetting setting{};
    setting.roi.nLeft = 1;
    setting.roi.nTop = 2;
    setting.roi.nWidth = 640;
    setting.roi.nHeight = 480;
    setting.nFlags = 0xABCD;
    setting.nReserved100 = 1;
    EXPECT_EQ(ReadField<int32_t>(&setting, 64), 1);
    EXPECT_EQ(ReadField<int32_t>(&setting, 68), 2);
    EXPECT_EQ(ReadField<int32_t>(&setting, 72), 640);
    EXPECT_EQ(ReadField<int32_t>(&setting, 76), 480);
    EXPECT_EQ(ReadField<float>(&setting, 80), 0.0f);
    EXPECT_EQ(ReadField<uint32_t>(&setting, 88), 0xABCDu);
    EXPECT_EQ(ReadField<uint64_t>(&setting, 92), 0u);
    EXPECT_EQ(ReadField<int32_t>(&setting, 100), 1);
}

}  // namespace
