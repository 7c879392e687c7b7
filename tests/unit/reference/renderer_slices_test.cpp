// Every pass of the renderer split over threads gives the bytes one thread
// gives. Pictures are large enough for several slices; run under
// ThreadSanitizer too.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "platform/parallel_slices.h"
#include "reference/renderer/filters.h"
#include "reference/renderer/lut3d.h"
#include "reference/renderer/renderer.h"

using pcg::renderer::GlobalSettings;

namespace {

constexpr int kWidth = 409, kHeight = 401;  // 164,009 pixels: three slices' worth

std::vector<uint8_t> Picture(int bytesPerChannel) {
    std::vector<uint8_t> pixels(static_cast<size_t>(kWidth) * kHeight * 4 * bytesPerChannel);
    std::mt19937 random(7);
    for (auto& byte : pixels) byte = static_cast<uint8_t>(random());
    return pixels;
}

// The same work with one thread and with every thread the machine has.
void ExpectSameSlicedAsSerial(int bytesPerChannel, const std::function<bool(uint8_t*)>& work) {
    std::vector<uint8_t> serial = Picture(bytesPerChannel);
    std::vector<uint8_t> sliced = serial;
    const std::vector<uint8_t> before = serial;
    pcg::platform::SetSliceThreadLimit(1);
    ASSERT_TRUE(work(serial.data()));
    pcg::platform::SetSliceThreadLimit(0);
    ASSERT_TRUE(work(sliced.data()));
    EXPECT_NE(serial, before);
    EXPECT_EQ(serial, sliced);
}

std::function<bool(uint8_t*)> Render(int bytesPerChannel, const std::function<void(GlobalSettings&)>& adjust) {
    GlobalSettings s;
    adjust(s);
    return [bytesPerChannel, s](uint8_t* pixels) {
        return pcg::renderer::RenderGlobal(pixels, kWidth, kHeight, kWidth * 4 * bytesPerChannel, bytesPerChannel, s);
    };
}

TEST(RendererSlices, PointTables) {
    for (int depth : {1, 2})
        ExpectSameSlicedAsSerial(depth, Render(depth, [](GlobalSettings& s) {
                                     s.dExposure = 0.5;
                                     s.dBlacks = 20;
                                 }));
}

TEST(RendererSlices, ColourPass) {
    ExpectSameSlicedAsSerial(1, Render(1, [](GlobalSettings& s) {
                                 s.dSaturation = 30;
                                 s.dBandHue[2] = 40;
                                 s.dSplitDarkSaturation = 50;
                             }));
}

TEST(RendererSlices, Filters) {
    if (!pcg::renderer::FiltersAvailable())
        GTEST_SKIP() << "this build has no OpenCV: noise reduction, HDR, clarity, sharpness and blur are left out";
    ExpectSameSlicedAsSerial(1, Render(1, [](GlobalSettings& s) {
                                 s.dNoiseLumaAmount = 40;
                                 s.dNoiseChromaAmount = 40;
                                 s.dGlowStrength = 30;
                                 s.dEdgeStrength = 30;
                                 s.dClarity = 40;
                                 s.dSharpAmount = 40;
                                 s.dBlurLevel = 5;
                             }));
}

TEST(RendererSlices, Vignette) {
    ExpectSameSlicedAsSerial(2, Render(2, [](GlobalSettings& s) {
                                 s.dVignetteAmount = -60;
                                 s.dVignetteRoundness = -30;
                             }));
}

TEST(RendererSlices, LookUpTable) {
    pcg::renderer::Lut3D lut;
    lut.nSize = 17;
    lut.table.resize(3 * 17 * 17 * 17);
    for (int b = 0; b < 17; ++b)
        for (int g = 0; g < 17; ++g)
            for (int r = 0; r < 17; ++r) {
                float* out = &lut.table[3 * (r + g * 17 + b * 17 * 17)];
                out[0] = static_cast<float>(std::sqrt(r / 16.0) * 0.9 + b / 160.0);
                out[1] = static_cast<float>((g / 16.0) * (g / 16.0));
                out[2] = static_cast<float>(0.5 * (b + r) / 16.0);
            }
    for (int depth : {1, 2})
        ExpectSameSlicedAsSerial(depth, [&](uint8_t* pixels) {
            return pcg::renderer::ApplyLut3D(pixels, kWidth, kHeight, kWidth * 4 * depth, depth, lut);
        });
}

}  // namespace
