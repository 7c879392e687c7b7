#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "engine/effect_record.h"
#include "engine/image_retouch.h"
#include "engine/keyed_records/colour_records.h"
#include "tests/unit/runtime/retouch_library.h"

namespace {

using pcg::reftest::RetouchLibrary;

class RetouchEngineTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_library.Loaded());
        auto getClassObject = reinterpret_cast<DllGetClassObjectFn>(
            pcg::platform::FindSymbol(m_library.m_hModule, kDllGetClassObjectName));
        ASSERT_NE(getClassObject, nullptr);
        IComClassFactory* factory = nullptr;
        ASSERT_EQ(getClassObject(pcg::engine::CLSID_ImageRetouch, pcg::engine::IID_IClassFactory,
                                 reinterpret_cast<void**>(&factory)),
                  0);
        ASSERT_EQ(factory->CreateInstance(nullptr, pcg::engine::IID_IImageRetouch, reinterpret_cast<void**>(&m_pEngine)),
                  0);
        factory->Release();
    }
    void TearDown() override {
        if (m_pEngine != nullptr) m_pEngine->Release();
        EXPECT_EQ(m_library.Counter("instancesLive"), 0);
        EXPECT_EQ(m_library.Counter("imagesHeld"), 0);
        EXPECT_EQ(m_library.Counter("recordsHeld"), 0);
    }
    static BufferData View(std::vector<uint8_t>& pixels, int width, int height) {
        BufferData data;
        data.pBuffer = pixels.data();
        data.nWidth = width;
        data.nHeight = height;
        data.nStride = width * 4;
        data.ePixelFormat = PIXEL_ARGB32;
        return data;
    }
    RetouchLibrary m_library;
    IImageRetouch* m_pEngine = nullptr;
};

TEST_F(RetouchEngineTest, WithoutRecordsTheRunDrawsThePictureAsItIs) {
    std::vector<uint8_t> source = {10, 20, 30, 255, 40, 50, 60, 128, 70, 80, 90, 0, 1, 2, 3, 4};
    std::vector<uint8_t> target(16, 0xEE);
    BufferData in = View(source, 2, 2);
    BufferData out = View(target, 2, 2);
    ASSERT_EQ(m_pEngine->SetImage(5, &in, ImageRetouchSetting()), 0);
    EXPECT_EQ(m_library.Counter("imagesHeld"), 1);
    ASSERT_EQ(m_pEngine->RegisterImageRatio(5, 1, 1.0f, &out), 0);
    ASSERT_EQ(m_pEngine->Image_StartRunAllTask(5, 1), 0);
    ASSERT_EQ(m_pEngine->Image_RunAllTask(5, 1, ImageRunAllTaskSetting()), 0);
    EXPECT_EQ(target, source);
    EXPECT_EQ(m_pEngine->UnregisterImageRatio(5, 1), 0);
    EXPECT_EQ(m_pEngine->ReleaseImage(5), 0);
    EXPECT_EQ(m_pEngine->ReleaseImage(5), static_cast<int32_t>(0x80070057u));
}

TEST_F(RetouchEngineTest, APushedSaturationRecordIsRenderedAndFreedWithTheImage) {
    std::vector<uint8_t> source = {10, 200, 30, 255, 250, 5, 60, 128};
    std::vector<uint8_t> target(8, 0);
    BufferData in = View(source, 2, 1);
    BufferData out = View(target, 2, 1);
    ASSERT_EQ(m_pEngine->SetImage(1, &in, ImageRetouchSetting()), 0);
    ASSERT_EQ(m_pEngine->RegisterImageRatio(1, 1, 1.0f, &out), 0);
    auto* record = static_cast<pcg::engine::SaturationRecord*>(
        pcg::engine::AllocEffectMemory(sizeof(pcg::engine::SaturationRecord)));
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(record->saturation, 0, -100));
    ImageTaskRecord task;
    task.eFunctionID = FUNCTION_SET_SATURATION;
    task.pEffect = &record->header;
    ASSERT_EQ(m_pEngine->Image_PushTask(1, 1, &task), 0);
    EXPECT_EQ(task.pEffect, nullptr);
    EXPECT_EQ(m_library.Counter("recordsHeld"), 1);
    ASSERT_EQ(m_pEngine->Image_RunAllTask(1, 1, ImageRunAllTaskSetting()), 0);
    for (int pixel = 0; pixel < 2; ++pixel) {
        EXPECT_EQ(target[pixel * 4], target[pixel * 4 + 1]);
        EXPECT_EQ(target[pixel * 4 + 1], target[pixel * 4 + 2]);
        EXPECT_EQ(target[pixel * 4 + 3], source[pixel * 4 + 3]);
    }
    // Luma of (r 30, g 200, b 10): 0.299*30 + 0.587*200 + 0.114*10 = 127.91.
    EXPECT_EQ(target[0], 128);
    EXPECT_EQ(m_pEngine->ReleaseImage(1), 0);
    EXPECT_EQ(m_library.Counter("recordsHeld"), 0);
}

TEST_F(RetouchEngineTest, TheVideoModePropertyIsCounted) {
    const int64_t before = m_library.Counter("videoModeSet");
    int32_t one = 1;
    EXPECT_EQ(m_pEngine->SetProperty(RETOUCH_PROPERTY_SET_VIDEO_MODE, 4, &one), 0);
    int32_t zero = 0;
    EXPECT_EQ(m_pEngine->SetProperty(RETOUCH_PROPERTY_SET_VIDEO_MODE, 4, &zero), 0);
    EXPECT_EQ(m_library.Counter("videoModeSet"), before + 1);
}

}  // namespace
