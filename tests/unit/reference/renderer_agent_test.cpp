// The render agent draws a clip's records through the shared renderer.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "engine/buffer_settings.h"
#include "engine/effect_record.h"
#include "engine/keyed_records/creative_records.h"
#include "engine/keyed_records/detail_records.h"
#include "engine/result_codes.h"
#include "tests/unit/reference/ref_agent_library.h"

namespace {

using AgentRendersRecords = pcg::reftest::RefAgentTest;

TEST_F(AgentRendersRecords, SplitToneAndVignetteRecordsMoveTheFrameTheirWay) {
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    auto* split = pcg::engine::NewEffectRecord<pcg::engine::SplitToneRecord>(9);
    ASSERT_TRUE(pcg::engine::AppendKeyframe<double>(split->lightHue, 0, 240.0));
    ASSERT_TRUE(pcg::engine::AppendKeyframe<double>(split->lightSaturation, 0, 80.0));
    auto* header = &split->header;
    agent->PushEffect(3, FUNCTION_SET_SPLITTONE, &header);
    auto* vignette = pcg::engine::NewEffectRecord<pcg::engine::VignetteRecord>(9);
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(vignette->amount, 0, -80));
    header = &vignette->header;
    agent->PushEffect(3, FUNCTION_SET_POST_VIGNETTE, &header);

    const int w = 32, h = 24;
    std::vector<uint8_t> source(static_cast<size_t>(w) * h * 4);
    for (size_t p = 0; p < source.size(); p += 4) {
        source[p] = source[p + 1] = source[p + 2] = 200;  // a light grey
        source[p + 3] = 255;
    }
    std::vector<uint8_t> destination(source.size(), 0);
    ApplyBufferSetting setting{};
    setting.nVideoID = 3;
    setting.pSrcBuffer = source.data();
    setting.pDstBuffer = destination.data();
    setting.nSrcWidth = setting.nDstWidth = w;
    setting.nSrcHeight = setting.nDstHeight = h;
    setting.nSrcStride = setting.nDstStride = w * 4;
    setting.llTime = 0;
    ASSERT_EQ(agent->ApplyEffectOnBuffer(nullptr, &setting), pcg::kResultOk);
    const uint8_t* centre = &destination[(static_cast<size_t>(h / 2) * w + w / 2) * 4];
    const uint8_t* corner = &destination[0];
    // The lights turn blue; the corner is darker than the centre; alpha stays.
    EXPECT_GT(centre[0], centre[2]);
    EXPECT_LT(corner[1], centre[1]);
    EXPECT_EQ(corner[3], 255);
    agent->Release();
}

}  // namespace
