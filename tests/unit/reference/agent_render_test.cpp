#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "engine/buffer_settings.h"
#include "engine/effect_record.h"
#include "engine/keyed_records/colour_records.h"
#include "engine/result_codes.h"
#include "tests/unit/reference/ref_agent_library.h"

namespace {

using AgentRender = pcg::reftest::RefAgentTest;

TEST_F(AgentRender, ApplyEffectOnBufferRendersTheClipsRecordsAtTheBlocksTime) {
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    auto* record = static_cast<pcg::engine::SaturationRecord*>(
        pcg::engine::AllocEffectMemory(sizeof(pcg::engine::SaturationRecord)));
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(record->saturation, 1000, 0));
    ASSERT_TRUE(pcg::engine::AppendKeyframe<int32_t>(record->saturation, 2000, -100));
    auto* header = &record->header;
    agent->PushEffect(7, FUNCTION_SET_SATURATION, &header);
    std::vector<uint8_t> source = {10, 200, 30, 255};
    std::vector<uint8_t> destination(4, 0);
    ApplyBufferSetting setting{};
    setting.nVideoID = 7;
    setting.pSrcBuffer = source.data();
    setting.pDstBuffer = destination.data();
    setting.nSrcWidth = setting.nDstWidth = 1;
    setting.nSrcHeight = setting.nDstHeight = 1;
    setting.nSrcStride = setting.nDstStride = 4;
    // Before the change starts: neutral, the pixel as it was.
    setting.llTime = 500;
    EXPECT_EQ(agent->ApplyEffectOnBuffer(nullptr, &setting), pcg::kResultOk);
    EXPECT_EQ(destination, source);
    // At its end: grey at the pixel's luma, alpha kept.
    setting.llTime = 2000;
    EXPECT_EQ(agent->ApplyEffectOnBuffer(nullptr, &setting), pcg::kResultOk);
    EXPECT_EQ(destination, (std::vector<uint8_t>{128, 128, 128, 255}));
    // Another clip has no records: copied as it is.
    setting.nVideoID = 8;
    EXPECT_EQ(agent->ApplyEffectOnBuffer(nullptr, &setting), pcg::kResultOk);
    EXPECT_EQ(destination, source);
    agent->Release();
}

}  // namespace
