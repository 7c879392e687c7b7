#include <cmath>
#include <cstring>
#include <limits>

#include "engine/constants.h"
#include "tests/unit/reference/ref_agent_library.h"

namespace pcg {
namespace reftest {
namespace {

using AgentJournal = RefAgentTest;

TEST_F(AgentJournal, EmptyJournalIsAnEmptyArray) {
    EXPECT_EQ(Library().JournalText(), "[]");
}

TEST_F(AgentJournal, NullBufferStillGivesTheLength) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->SetDspVideoID(7);
    const std::string text = Library().JournalText();
    EXPECT_EQ(Library().JournalInto(nullptr, 0), static_cast<int32_t>(text.size()));
    EXPECT_EQ(Library().JournalInto(nullptr, 1000), static_cast<int32_t>(text.size()));
    agent->Release();
}

TEST_F(AgentJournal, TooSmallACapacityWritesNothing) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->SetDspVideoID(7);
    const int32_t length = Library().JournalInto(nullptr, 0);
    std::string buffer(static_cast<std::size_t>(length), 'x');
    EXPECT_EQ(Library().JournalInto(&buffer[0], length - 1), length);
    EXPECT_EQ(buffer, std::string(static_cast<std::size_t>(length), 'x'));
    agent->Release();
}

TEST_F(AgentJournal, TextIsNulTerminatedWhenTheNulFits) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->SetDspVideoID(7);
    const int32_t length = Library().JournalInto(nullptr, 0);
    std::string buffer(static_cast<std::size_t>(length) + 2, 'x');
    EXPECT_EQ(Library().JournalInto(&buffer[0], length + 2), length);
    EXPECT_EQ(buffer[static_cast<std::size_t>(length)], '\0');
    EXPECT_EQ(std::strlen(buffer.c_str()), static_cast<std::size_t>(length));
    agent->Release();
}

TEST_F(AgentJournal, ExactCapacityGetsTheTextWithoutNul) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->SetDspVideoID(7);
    const std::string text = Library().JournalText();
    std::string buffer(text.size() + 1, 'x');
    EXPECT_EQ(Library().JournalInto(&buffer[0], static_cast<int32_t>(text.size())),
              static_cast<int32_t>(text.size()));
    EXPECT_EQ(buffer, text + "x");
    agent->Release();
}

TEST_F(AgentJournal, ResetEmptiesTheJournal) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->SetDspVideoID(7);
    Library().Reset();
    EXPECT_EQ(Library().JournalText(), "[]");
    agent->Release();
}

TEST_F(AgentJournal, SixtyFourBitExtremesAreExactIntegers) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->AddVideo(4294967295u, std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max(), 1.5);
    EXPECT_NE(Library().JournalText().find(
                  R"("args":[4294967295,-9223372036854775808,9223372036854775807,1.5])"),
              std::string::npos)
        << Library().JournalText();
    agent->Release();
}

TEST_F(AgentJournal, DoublesHaveSeventeenSignificantDigits) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->SetFrameRate(0.1);
    agent->SetFrameRate(2.0);
    agent->SetFrameRate(1e300);
    const std::string text = Library().JournalText();
    EXPECT_NE(text.find(R"("args":[0.10000000000000001])"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("args":[2.0])"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("args":[1.0000000000000001e+300])"), std::string::npos) << text;
    agent->Release();
}

TEST_F(AgentJournal, NonFiniteDoublesAreBareTokens) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    agent->SetFrameRate(std::numeric_limits<double>::quiet_NaN());
    agent->SetFrameRate(std::numeric_limits<double>::infinity());
    agent->SetFrameRate(-std::numeric_limits<double>::infinity());
    const std::string text = Library().JournalText();
    EXPECT_NE(text.find(R"("op":"SetFrameRate","args":[NaN])"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("op":"SetFrameRate","args":[Infinity])"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("op":"SetFrameRate","args":[-Infinity])"), std::string::npos) << text;
    agent->Release();
}

// The hue shift record: the header and one float vector.
struct HueShiftRecord {
    pcg::engine::EffectRecordHeader header;
    pcg::engine::KeyframeVector<float> shift;
};

TEST_F(AgentJournal, FloatIsWrittenAsTheDoubleItWidensTo) {
    IVXHvnDspAgent* agent = Library().Create("DspMain");
    auto* record = pcg::engine::NewEffectRecord<HueShiftRecord>(9);
    ASSERT_TRUE(pcg::engine::AppendKeyframe<float>(record->shift, 0, 0.1f));
    pcg::engine::EffectRecordHeader* header = &record->header;
    agent->PushEffect(1, FUNCTION_SET_HUESHIFT, &header);
    const std::string text = Library().JournalText();
    EXPECT_NE(text.find(R"({"time":0,"value":0.10000000149011612,"interp":2})"), std::string::npos) << text;
    agent->Release();
}

}  // namespace
}  // namespace reftest
}  // namespace pcg
