// The reference image engine draws a picture's records through the shared
// renderer, on 16-bit pixels too.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "engine/effect_record.h"
#include "engine/image_retouch.h"
#include "engine/keyed_records/tone_records.h"
#include "tests/unit/runtime/retouch_library.h"

namespace {

TEST(EngineRendersRecords, AToneCurveRecordBrightensASixteenBitPicture) {
    pcg::reftest::RetouchLibrary library;
    ASSERT_TRUE(library.Loaded());
    auto getClassObject =
        reinterpret_cast<DllGetClassObjectFn>(pcg::platform::FindSymbol(library.m_hModule, kDllGetClassObjectName));
    ASSERT_NE(getClassObject, nullptr);
    IComClassFactory* factory = nullptr;
    ASSERT_EQ(getClassObject(pcg::engine::CLSID_ImageRetouch, pcg::engine::IID_IClassFactory,
                             reinterpret_cast<void**>(&factory)),
              0);
    IImageRetouch* engine = nullptr;
    ASSERT_EQ(factory->CreateInstance(nullptr, pcg::engine::IID_IImageRetouch, reinterpret_cast<void**>(&engine)), 0);
    factory->Release();

    // Four pixels of 16-bit b, g, r, a.
    const uint16_t channels[16] = {0, 0, 0, 65535, 10000, 20000, 30000, 65535,
                                   40000, 40000, 40000, 1234, 65535, 65535, 65535, 0};
    std::vector<uint8_t> source(sizeof(channels)), target(sizeof(channels), 0);
    std::memcpy(source.data(), channels, sizeof(channels));
    BufferData in;
    in.pBuffer = source.data();
    in.nWidth = 4;
    in.nHeight = 1;
    in.nStride = 32;
    in.ePixelFormat = PIXEL_ARGB64;
    BufferData out = in;
    out.pBuffer = target.data();
    ASSERT_EQ(engine->SetImage(2, &in, ImageRetouchSetting()), 0);
    ASSERT_EQ(engine->RegisterImageRatio(2, 1, 1.0f, &out), 0);

    // Square root curve: every code but the ends goes up.
    auto* record = pcg::engine::NewEffectRecord<pcg::engine::ToneCurveRecord>(9);
    auto* table = static_cast<int32_t*>(pcg::engine::AllocEffectMemory(pcg::engine::kCurveTableBytes));
    ASSERT_NE(table, nullptr);
    for (size_t i = 0; i < pcg::engine::kCurveTableCount; ++i)
        table[i] = static_cast<int32_t>(std::lround(65535.0 * std::sqrt(i / 65535.0)));
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t*>(record->curve, 0, table));
    ImageTaskRecord task;
    task.eFunctionID = FUNCTION_SET_TONECURVE_RGB;
    task.pEffect = &record->header;
    ASSERT_EQ(engine->Image_PushTask(2, 1, &task), 0);
    ASSERT_EQ(engine->Image_RunAllTask(2, 1, ImageRunAllTaskSetting()), 0);

    uint16_t rendered[16];
    std::memcpy(rendered, target.data(), sizeof(rendered));
    for (int pixel = 0; pixel < 4; ++pixel) {
        for (int i = 0; i < 3; ++i) {
            const uint16_t before = channels[pixel * 4 + i];
            EXPECT_EQ(rendered[pixel * 4 + i], table[before]) << pixel << " " << i;
            if (before != 0 && before != 65535) {
                EXPECT_GT(rendered[pixel * 4 + i], before);
            }
        }
        EXPECT_EQ(rendered[pixel * 4 + 3], channels[pixel * 4 + 3]);
    }
    EXPECT_EQ(engine->ReleaseImage(2), 0);
    engine->Release();
    EXPECT_EQ(library.Counter("recordsHeld"), 0);
    EXPECT_EQ(library.Counter("instancesLive"), 0);
}

}  // namespace
