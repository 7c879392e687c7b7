#include <vector>

#include "engine/buffer_settings.h"
#include "engine/constants.h"
#include "imaging/image_buffer.h"
#include "engine/result_codes.h"
#include "tests/unit/reference/ref_agent_library.h"

namespace pcg {
namespace reftest {
namespace {

// A pixel object over a vector, for the agent to lock; it lives on the stack.
class VectorImageBuffer final : public IImageBuffer {
public:
    VectorImageBuffer(int width, int height, int pixelBytes)
        : m_nWidth(width), m_nHeight(height), m_nPixelBytes(pixelBytes),
          m_pixels(static_cast<std::size_t>(width * height * pixelBytes)) {}
    int AddRef() override { return 1; }
    int Release() override { return 1; }
    bool LockBuffer(uint8_t** ppBuffer, int* pnWidth, int* pnHeight) override {
        ++m_nLocks;
        *ppBuffer = m_pixels.data();
        *pnWidth = m_nWidth;
        *pnHeight = m_nHeight;
        return true;
    }
    bool UnlockBuffer() override {
        --m_nLocks;
        return true;
    }
    int GetWidth() override { return m_nWidth; }
    int GetHeight() override { return m_nHeight; }
    int GetPixelBytes() override { return m_nPixelBytes; }

    int m_nWidth;
    int m_nHeight;
    int m_nPixelBytes;
    int m_nLocks = 0;
    std::vector<uint8_t> m_pixels;
};

using AgentFrames = RefAgentTest;

// A block rendering a packed area of width x height from source to destination.
ApplyBufferSetting RenderBlock(std::vector<uint8_t>& source, std::vector<uint8_t>& destination, int32_t width,
                               int32_t height) {
    ApplyBufferSetting setting{};
    setting.pSrcBuffer = source.data();
    setting.pDstBuffer = destination.data();
    setting.nSrcWidth = setting.nDstWidth = width;
    setting.nSrcHeight = setting.nDstHeight = height;
    setting.nSrcStride = setting.nDstStride = width * 4;
    return setting;
}

TEST_F(AgentFrames, NeedsSourceCopyAnswersFalse) {
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    EXPECT_FALSE(agent->NeedsSourceCopy(7));
    agent->Release();
}

TEST_F(AgentFrames, AdjustBufferRectLeavesTheRectangle) {
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    RECT rect;
    rect.right = 640;
    rect.bottom = 480;
    EXPECT_EQ(agent->AdjustBufferRect(7, 640, 480, 640.0 / 480.0, &rect), kResultOk);
    EXPECT_EQ(rect.left, 0);
    EXPECT_EQ(rect.top, 0);
    EXPECT_EQ(rect.right, 640);
    EXPECT_EQ(rect.bottom, 480);
    EXPECT_EQ(agent->AdjustBufferRect(7, 640, 480, 1.0, nullptr), kResultPointer);
    agent->Release();
}

TEST_F(AgentFrames, ApplyEffectOnBufferRendersTheSourceIntoTheDestination) {
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    std::vector<uint8_t> source = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    std::vector<uint8_t> destination(16, 0);
    ApplyBufferSetting setting = RenderBlock(source, destination, 2, 2);
    EXPECT_EQ(agent->ApplyEffectOnBuffer(nullptr, &setting), kResultOk);
    EXPECT_EQ(destination, source);
    agent->Release();
}

TEST_F(AgentFrames, ApplyEffectOnBufferJournalsTheBlockByName) {
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    uint8_t pixels[4] = {0, 0, 0, 0};
    ApplyBufferSetting setting{};
    setting.nVideoID = 7;
    setting.nParam = -2;
    setting.llTime = 1200;
    setting.pSrcBuffer = pixels;
    setting.nSrcWidth = 1;
    setting.nSrcHeight = 1;
    setting.nSrcStride = 4;
    setting.nAspectNumerator = 16;
    setting.nAspectDenominator = 9;
    setting.roi.nWidth = 1;
    setting.roi.nHeight = 1;
    setting.nFlags = 5;
    setting.nReserved100 = 1;
    EXPECT_EQ(agent->ApplyEffectOnBuffer(nullptr, &setting), kResultPointer);
    EXPECT_EQ(Entry("ApplyEffectOnBuffer").at("args"),
              Json::parse(R"([null,{"nVideoID":7,"nParam":-2,"llTime":1200,"pSrcBuffer":true,"pDstBuffer":null,)"
                          R"("nSrcWidth":1,"nSrcHeight":1,"nSrcStride":4,"nDstWidth":0,"nDstHeight":0,)"
                          R"("nDstStride":0,"nAspectNumerator":16,"nAspectDenominator":9,)"
                          R"("roi":{"nLeft":0,"nTop":0,"nWidth":1,"nHeight":1,"fAngle":0.0},)"
                          R"("nReserved84":0,"nFlags":5,"nReserved92":[0,0],"nReserved100":1}])"));
    agent->Release();
}

TEST_F(AgentFrames, HistogramIsOfTheLastRender) {
    IVXHvnDspAgent* agent = Library().Create("DspBuf");
    EXPECT_EQ(agent->GetHistogramInfo().nTotalCount, 0);
    EXPECT_TRUE(agent->GetHistogramInfo().bGammaEncode);
    // Two pixels, blue-green-red-alpha: pure red and mid grey.
    std::vector<uint8_t> source = {0, 0, 255, 255, 128, 128, 128, 255};
    std::vector<uint8_t> destination(8, 0);
    ApplyBufferSetting setting = RenderBlock(source, destination, 2, 1);
    agent->ApplyEffectOnBuffer(nullptr, &setting);
    const HistogramDist histogram = agent->GetHistogramInfo();
    EXPECT_EQ(histogram.nTotalCount, 2);
    EXPECT_EQ(histogram.HistogramR[255], 1);
    EXPECT_EQ(histogram.HistogramR[128], 1);
    EXPECT_EQ(histogram.HistogramG[0], 1);
    EXPECT_EQ(histogram.HistogramB[128], 1);
    EXPECT_EQ(histogram.HistogramL[76], 1);
    EXPECT_EQ(histogram.HistogramL[128], 1);
    EXPECT_EQ(histogram.nMaxHistogramR, 1);
    EXPECT_EQ(agent->GetToneCurveHistogramInfo().nTotalCount, 2);
    agent->Release();
}

TEST_F(AgentFrames, LutIsCopiedAndAppliedAsThreeCurves) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    LUTSetting setting;
    setting.nSize = 2;
    // Red inverted, green kept, blue to zero.
    for (float value : {1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f}) {
        setting.table.push_back(value);
    }
    agent->SetLUT(7, &setting);
    setting.table.Free();
    VectorImageBuffer buffer(1, 1, 4);
    buffer.m_pixels = {200, 100, 51, 255};
    EXPECT_TRUE(agent->ApplyLUTOnBuffer(7, &buffer));
    EXPECT_EQ(buffer.m_pixels, (std::vector<uint8_t>{0, 100, 204, 255}));
    EXPECT_EQ(buffer.m_nLocks, 0);
    agent->Release();
}

TEST_F(AgentFrames, LutIsAppliedAsACube) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    LUTSetting setting;
    setting.nSize = 2;
    // A 2x2x2 cube, red fastest, whose output swaps red and blue.
    for (int b = 0; b < 2; ++b) {
        for (int g = 0; g < 2; ++g) {
            for (int r = 0; r < 2; ++r) {
                setting.table.push_back(static_cast<float>(b));
                setting.table.push_back(static_cast<float>(g));
                setting.table.push_back(static_cast<float>(r));
            }
        }
    }
    agent->SetLUT(7, &setting);
    setting.table.Free();
    VectorImageBuffer buffer(1, 1, 4);
    buffer.m_pixels = {51, 102, 255, 9};
    EXPECT_TRUE(agent->ApplyLUTOnBuffer(7, &buffer));
    EXPECT_EQ(buffer.m_pixels, (std::vector<uint8_t>{255, 102, 51, 9}));
    agent->Release();
}

TEST_F(AgentFrames, LutOfAnotherShapeOrNoLutIsNotApplied) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    VectorImageBuffer buffer(1, 1, 4);
    buffer.m_pixels = {1, 2, 3, 4};
    EXPECT_FALSE(agent->ApplyLUTOnBuffer(7, &buffer));
    LUTSetting setting;
    setting.nSize = 4;
    setting.table.push_back(0.5f);
    agent->SetLUT(7, &setting);
    setting.table.Free();
    EXPECT_FALSE(agent->ApplyLUTOnBuffer(7, &buffer));
    EXPECT_EQ(buffer.m_pixels, (std::vector<uint8_t>{1, 2, 3, 4}));
    agent->ClearLUT(7);
    EXPECT_FALSE(agent->ApplyLUTOnBuffer(7, nullptr));
    agent->Release();
}

TEST_F(AgentFrames, ToneMapsOfAKnownClipAreFourIdentityTables) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->AddVideo(7, 0, 100, 1.5);
    pcg::engine::ContractVector<int32_t*> tables;
    EXPECT_EQ(agent->GetInterpolatedToneMapInfo(7, 50, tables), 0);
    ASSERT_EQ(tables.size(), 4u);
    for (int32_t* table : tables) {
        ASSERT_NE(table, nullptr);
        EXPECT_EQ(table[0], 0);
        EXPECT_EQ(table[1000], 1000);
        EXPECT_EQ(table[TONE_MAX_TABLE_SIZE - 1], TONE_MAX_TABLE_SIZE - 1);
    }
    pcg::engine::FreeEntryVector(tables);
    agent->Release();
}

TEST_F(AgentFrames, ToneMapsOfAnUnknownClipFail) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    pcg::engine::ContractVector<int32_t*> tables;
    EXPECT_EQ(agent->GetInterpolatedToneMapInfo(7, 50, tables), kResultFail);
    EXPECT_TRUE(tables.empty());
    agent->Release();
}

}  // namespace
}  // namespace reftest
}  // namespace pcg
