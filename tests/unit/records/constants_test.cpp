#include "engine/constants.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

TEST(FunctionIds, SequencedFunctionsCarryBit20) {
    const int sequenced[] = {FUNCTION_SET_NOISE, FUNCTION_SET_NOISE_MASK, FUNCTION_SET_HDR,
                             FUNCTION_SET_NEW_SEGMENT};
    for (int id : sequenced) EXPECT_EQ(0x100000, id & VIDEOSPEC_SEQUENCED) << id;
    EXPECT_EQ(0, FUNCTION_SET_CLARITY & VIDEOSPEC_SEQUENCED);
}

TEST(FunctionIds, MaskingOffTheSequencingBitLeavesIndexAndScope) {
    EXPECT_EQ(0xA1, FUNCTION_SET_NOISE & ~VIDEOSPEC_SEQUENCED);
    EXPECT_EQ(0x1F1, FUNCTION_SET_NOISE_MASK & ~VIDEOSPEC_SEQUENCED);
    EXPECT_EQ(0x241, FUNCTION_SET_HDR & ~VIDEOSPEC_SEQUENCED);
    EXPECT_EQ(0x17, FUNCTION_SET_NEW_SEGMENT & ~VIDEOSPEC_SEQUENCED);
}

TEST(FunctionIds, CreateNoiseAndHdrSitInTheStateScope) {
    EXPECT_EQ(FUNCTION_SET_STATE, FUNCTION_INTERNAL_CREATE_NOISE & 0xF);
    EXPECT_EQ(FUNCTION_SET_STATE, FUNCTION_INTERNAL_CREATE_HDR & 0xF);
    EXPECT_EQ(55, FUNCTION_INTERNAL_CREATE_NOISE);
    EXPECT_EQ(71, FUNCTION_INTERNAL_CREATE_HDR);
}

TEST(Constants, NegativeMarkersAreMinusOne) {
    EXPECT_EQ(-1, Hue_None);
    EXPECT_EQ(-1, LIQUIFY_NONE);
    EXPECT_EQ(-1, OCL_DEVICE_TYPE_ALL);
}

TEST(Constants, ToleranceIsSinglePrecision) {
    static_assert(std::is_same<const float, decltype(cmpthreashold)>::value, "float tolerance");
    EXPECT_EQ(0.001f, cmpthreashold);
}

TEST(Constants, MaskArrayHoldsTwiceTheMasks) {
    EXPECT_EQ(2 * MAX_MASK_COUNT, MAX_MASK_ARRAY_COUNT);
    EXPECT_EQ(1 << 16, TONE_MAX_TABLE_SIZE);
}

TEST(Constants, EnumeratedFieldTypesAre32Bit) {
    EXPECT_EQ(4u, sizeof(FUNCTION_ID));
    EXPECT_EQ(4u, sizeof(PIXEL_FORMAT));
    EXPECT_EQ(4u, sizeof(COLOR_DEPTH));
    EXPECT_EQ(4u, sizeof(HUE_COLOR_DEF));
}

}  // namespace
