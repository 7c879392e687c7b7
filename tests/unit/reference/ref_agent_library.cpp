#include "tests/unit/reference/ref_agent_library.h"

#include "platform/platform.h"
#include "engine/keyed_records/detail_records.h"

namespace pcg {
namespace reftest {

RefAgentLibrary& RefAgentLibrary::Get() {
    static RefAgentLibrary library;
    return library;
}

RefAgentLibrary::RefAgentLibrary() {
    const std::wstring path =
        pcg::platform::JoinHostPath(pcg::platform::HostDirectory(), L"KESdlls\\VXHvnDspAgent.dll");
    m_pModule = pcg::platform::LoadModule(path.c_str());
    m_fnCreate = reinterpret_cast<CreateHvnDspAgentFn>(pcg::platform::FindSymbol(m_pModule, kCreateHvnDspAgentName));
    m_fnJournal = reinterpret_cast<int32_t (*)(char*, int32_t)>(pcg::platform::FindSymbol(m_pModule, "RefAgent_Journal"));
    m_fnReset = reinterpret_cast<void (*)()>(pcg::platform::FindSymbol(m_pModule, "RefAgent_Reset"));
    m_fnSetResult = reinterpret_cast<void (*)(const char*, const char*, double)>(
        pcg::platform::FindSymbol(m_pModule, "RefAgent_SetResult"));
    m_fnCounter = reinterpret_cast<int64_t (*)(const char*)>(pcg::platform::FindSymbol(m_pModule, "RefAgent_Counter"));
    m_fnPostEvent = reinterpret_cast<decltype(m_fnPostEvent)>(pcg::platform::FindSymbol(m_pModule, "RefAgent_PostEvent"));
    m_fnWaitPosted =
        reinterpret_cast<decltype(m_fnWaitPosted)>(pcg::platform::FindSymbol(m_pModule, "RefAgent_WaitPosted"));
    m_fnSeedTrack = reinterpret_cast<decltype(m_fnSeedTrack)>(pcg::platform::FindSymbol(m_pModule, "RefAgent_SeedTrack"));
}

bool RefAgentLibrary::Loaded() const {
    return m_fnCreate && m_fnJournal && m_fnReset && m_fnSetResult && m_fnCounter && m_fnPostEvent &&
           m_fnWaitPosted && m_fnSeedTrack;
}

IVXHvnDspAgent* RefAgentLibrary::Create(const char* name) {
    return m_fnCreate(name, 0, nullptr);
}

int32_t RefAgentLibrary::JournalInto(char* buffer, int32_t capacity) {
    return m_fnJournal(buffer, capacity);
}

std::string RefAgentLibrary::JournalText() {
    const int32_t length = m_fnJournal(nullptr, 0);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    m_fnJournal(&text[0], length + 1);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

Json RefAgentLibrary::JournalJson() {
    return Json::parse(JournalText());
}

void RefAgentLibrary::Reset() {
    m_fnReset();
}

void RefAgentLibrary::SetResult(const char* agentName, const char* op, double value) {
    m_fnSetResult(agentName, op, value);
}

int64_t RefAgentLibrary::Counter(const char* name) {
    return m_fnCounter(name);
}

void RefAgentTest::SetUp() {
    ASSERT_TRUE(Library().Loaded()) << "the reference agent library did not load from the host folder";
    Library().Reset();
}

std::vector<Json> RefAgentTest::Entries(const char* op) {
    std::vector<Json> found;
    for (const Json& entry : Library().JournalJson()) {
        if (entry.at("op") == op) {
            found.push_back(entry);
        }
    }
    return found;
}

Json RefAgentTest::Entry(const char* op) {
    const std::vector<Json> found = Entries(op);
    EXPECT_EQ(found.size(), 1u) << op;
    return found.empty() ? Json() : found.front();
}

pcg::engine::EffectRecordHeader* MakeClarityRecord(const std::vector<std::pair<int64_t, int32_t>>& keys) {
    auto* record = pcg::engine::NewEffectRecord<pcg::engine::ClarityRecord>(9);
    for (const auto& key : keys) {
        pcg::engine::AppendKeyframe<int32_t>(record->clarity, key.first, key.second);
    }
    return &record->header;
}

int32_t RefAgentLibrary::PostEvent(int32_t instance, int32_t command, int32_t value, int64_t llValue,
                                   int32_t frameWidth, int32_t frameHeight) {
    return m_fnPostEvent(instance, command, value, llValue, frameWidth, frameHeight);
}

int32_t RefAgentLibrary::WaitPosted(int32_t instance, int32_t timeoutMs) {
    return m_fnWaitPosted(instance, timeoutMs);
}

int32_t RefAgentLibrary::SeedTrack(int32_t where, int32_t trackingID, int32_t videoID, int32_t maskID,
                                   int64_t time, float x, float y, const float* points, int32_t pointCount) {
    return m_fnSeedTrack(where, trackingID, videoID, maskID, time, x, y, points, pointCount);
}

}  // namespace reftest
}  // namespace pcg
