#include "reference/renderer/renderer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

using pcg::renderer::GlobalSettings;
using pcg::renderer::RenderGlobal;

namespace {

// A picture of random channels with a padded stride; the padding is random too.
struct Picture {
    Picture(int w, int h, int bytesPerChannel, unsigned seed)
        : width(w), height(h), channel(bytesPerChannel), stride(w * 4 * bytesPerChannel + 12),
          pixels(static_cast<size_t>(stride) * h) {
        std::mt19937 random(seed);
        for (auto& byte : pixels) byte = static_cast<uint8_t>(random());
    }
    // Channel i (0 blue, 1 green, 2 red, 3 alpha) of pixel (x, y).
    int At(int x, int y, int i) const {
        const uint8_t* p = pixels.data() + static_cast<size_t>(y) * stride + (static_cast<size_t>(x) * 4 + i) * channel;
        if (channel == 1) return p[0];
        uint16_t v;
        std::memcpy(&v, p, 2);
        return v;
    }
    double Mean(int i) const {
        double sum = 0;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) sum += At(x, y, i);
        return sum / (width * height);
    }
    bool Render(const GlobalSettings& s) { return RenderGlobal(pixels.data(), width, height, stride, channel, s); }
    int width, height, channel, stride;
    std::vector<uint8_t> pixels;
};

class RendererTest : public ::testing::TestWithParam<int> {};

TEST_P(RendererTest, NeutralSettingsLeaveEveryByteAsItWas) {
    Picture picture(17, 9, GetParam(), 1);
    const std::vector<uint8_t> before = picture.pixels;
    ASSERT_TRUE(picture.Render(GlobalSettings()));
    EXPECT_EQ(picture.pixels, before);
}

TEST_P(RendererTest, ExposureUpBrightensAndAlphaStays) {
    Picture picture(16, 8, GetParam(), 2);
    const Picture before = picture;
    GlobalSettings s;
    s.dExposure = 1.0;
    ASSERT_TRUE(picture.Render(s));
    for (int i = 0; i < 3; ++i) EXPECT_GT(picture.Mean(i), before.Mean(i));
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 16; ++x) {
            EXPECT_EQ(picture.At(x, y, 3), before.At(x, y, 3));
            const int max = GetParam() == 1 ? 255 : 65535;
            EXPECT_EQ(picture.At(x, y, 0), std::min(max, before.At(x, y, 0) * 2));
        }
}

TEST_P(RendererTest, BrightnessDownDarkens) {
    Picture picture(16, 8, GetParam(), 3);
    const Picture before = picture;
    GlobalSettings s;
    s.dBrightness = -40;
    ASSERT_TRUE(picture.Render(s));
    for (int i = 0; i < 3; ++i) EXPECT_LT(picture.Mean(i), before.Mean(i));
}

TEST_P(RendererTest, ContrastUpSpreadsAboutTheMiddle) {
    Picture picture(16, 8, GetParam(), 4);
    const Picture before = picture;
    GlobalSettings s;
    s.dContrast = 50;
    ASSERT_TRUE(picture.Render(s));
    const double mid = GetParam() == 1 ? 127.5 : 32767.5;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 16; ++x) EXPECT_GE(std::abs(picture.At(x, y, 1) - mid), std::abs(before.At(x, y, 1) - mid));
}

TEST_P(RendererTest, WarmerTemperatureRaisesRedAndLowersBlue) {
    Picture picture(16, 8, GetParam(), 5);
    const Picture before = picture;
    GlobalSettings s;
    s.dTemperature = 9000;
    ASSERT_TRUE(picture.Render(s));
    EXPECT_GT(picture.Mean(2), before.Mean(2));
    EXPECT_LT(picture.Mean(0), before.Mean(0));
    EXPECT_EQ(picture.Mean(1), before.Mean(1));
}

TEST_P(RendererTest, PositiveTintLowersGreen) {
    Picture picture(16, 8, GetParam(), 6);
    const Picture before = picture;
    GlobalSettings s;
    s.dTint = 100;
    ASSERT_TRUE(picture.Render(s));
    EXPECT_LT(picture.Mean(1), before.Mean(1));
    EXPECT_EQ(picture.Mean(2), before.Mean(2));
}

TEST_P(RendererTest, SaturationOffMakesGrey) {
    Picture picture(16, 8, GetParam(), 7);
    GlobalSettings s;
    s.dSaturation = -100;
    ASSERT_TRUE(picture.Render(s));
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 16; ++x) {
            EXPECT_EQ(picture.At(x, y, 0), picture.At(x, y, 1));
            EXPECT_EQ(picture.At(x, y, 1), picture.At(x, y, 2));
        }
}

TEST_P(RendererTest, PaddingBeyondTheRowIsNotTouched) {
    Picture picture(5, 3, GetParam(), 8);
    const std::vector<uint8_t> before = picture.pixels;
    GlobalSettings s;
    s.dSaturation = 60;
    s.dExposure = -0.5;
    ASSERT_TRUE(picture.Render(s));
    const int row = 5 * 4 * GetParam();
    for (int y = 0; y < 3; ++y)
        for (int b = row; b < picture.stride; ++b)
            EXPECT_EQ(picture.pixels[y * picture.stride + b], before[y * picture.stride + b]);
}

INSTANTIATE_TEST_SUITE_P(EightAndSixteenBits, RendererTest, ::testing::Values(1, 2));

TEST(Renderer, RefusesWhatItCannotRender) {
    std::vector<uint8_t> pixels(64, 7);
    GlobalSettings s;
    s.dExposure = 1;
    EXPECT_FALSE(RenderGlobal(nullptr, 2, 2, 8, 1, s));
    EXPECT_FALSE(RenderGlobal(pixels.data(), 0, 2, 8, 1, s));
    EXPECT_FALSE(RenderGlobal(pixels.data(), 2, 2, 7, 1, s));
    EXPECT_FALSE(RenderGlobal(pixels.data(), 2, 2, 8, 3, s));
    s.dTemperature = 0;
    EXPECT_FALSE(RenderGlobal(pixels.data(), 2, 2, 8, 1, s));
    EXPECT_EQ(pixels, std::vector<uint8_t>(64, 7));
}

}  // namespace

#include "engine/keyed_records/colour_records.h"
#include "engine/keyed_records/tone_records.h"
#include "reference/renderer/record_settings.h"

namespace {

using pcg::renderer::HeldRecord;
using pcg::renderer::SettingsAt;

TEST(RecordSettings, NoRecordsAreNeutral) {
    EXPECT_TRUE(pcg::renderer::IsNeutral(SettingsAt({}, 0)));
}

TEST(RecordSettings, KeyframesAreHeldOutsideAndLinearBetween) {
    pcg::engine::SaturationRecord record{};
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(record.saturation, 1000, 20));
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(record.saturation, 2000, 60));
    const std::vector<HeldRecord> held = {{FUNCTION_SET_SATURATION, &record.header}};
    EXPECT_EQ(SettingsAt(held, 0).dSaturation, 20.0);
    EXPECT_EQ(SettingsAt(held, 1500).dSaturation, 40.0);
    EXPECT_EQ(SettingsAt(held, 2000).dSaturation, 60.0);
    EXPECT_EQ(SettingsAt(held, 9000).dSaturation, 60.0);
    pcg::engine::FreeEntryVector(record.saturation);
}

TEST(RecordSettings, ToneAndWhiteBalanceFieldsAreRead) {
    pcg::engine::ToneRecord tone{};
    ASSERT_TRUE(pcg::engine::AppendKeyframe<double>(tone.exposure, 0, 1.5));
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(tone.brightness, 0, -10));
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(tone.contrast, 0, 30));
    pcg::engine::WBRecord wb{};
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(wb.temperature, 0, 6500));
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(wb.tint, 0, -20));
    const GlobalSettings s = SettingsAt({{FUNCTION_SET_TONE, &tone.header}, {FUNCTION_SET_WB, &wb.header}}, 0);
    EXPECT_EQ(s.dExposure, 1.5);
    EXPECT_EQ(s.dBrightness, -10.0);
    EXPECT_EQ(s.dContrast, 30.0);
    EXPECT_EQ(s.dTemperature, 6500.0);
    EXPECT_EQ(s.dTint, -20.0);
    EXPECT_EQ(s.dSaturation, 0.0);
    pcg::engine::FreeEntryVector(tone.exposure);
    pcg::engine::FreeEntryVector(tone.brightness);
    pcg::engine::FreeEntryVector(tone.contrast);
    pcg::engine::FreeEntryVector(wb.temperature);
    pcg::engine::FreeEntryVector(wb.tint);
}

}  // namespace
