#include "reference/agent/ref_agent_api.h"

#include <cstring>
#include <string>

#include "reference/agent/agent_registry.h"
#include "reference/agent/event_producer.h"
#include "reference/agent/ref_dsp_agent.h"
#include "reference/agent/ref_frame.h"
#include "reference/agent/track_store.h"

using pcg::refagent::AgentRegistry;
using pcg::refagent::Counter;

namespace {

struct CounterName {
    const char* pszName;
    Counter eCounter;
};

const CounterName kCounterNames[] = {
    {"agentsLive", Counter::AgentsLive},     {"recordsHeld", Counter::RecordsHeld},
    {"recordsFreed", Counter::RecordsFreed}, {"entriesFreed", Counter::EntriesFreed},
    {"masksHeld", Counter::MasksHeld},       {"streamsOut", Counter::StreamsOut},
    {"framesLive", Counter::FramesLive},     {"trackEntriesOut", Counter::TrackEntriesOut},
};

}  // namespace

extern "C" {

IVXHvnDspAgent* CreateHvnDspAgent(const char* name, int32_t reserved, void* context) {
    // A failure injected for the factory itself makes no agent.
    double injected = 0.0;
    if (AgentRegistry::Instance().FindNamedResult(name ? name : "", "CreateHvnDspAgent", &injected) &&
        !(injected >= 0.0)) {
        return nullptr;
    }
    return new pcg::refagent::CRefDspAgent(name, AgentRegistry::Instance().NextInstance());
}

int32_t RefAgent_Journal(char* buffer, int32_t capacity) {
    const std::string text = AgentRegistry::Instance().JournalText();
    const auto length = static_cast<int32_t>(text.size());
    if (buffer && capacity >= length) {
        // The NUL goes along only when there is room for it.
        std::memcpy(buffer, text.c_str(), capacity > length ? text.size() + 1 : text.size());
    }
    return length;
}

void RefAgent_Reset(void) {
    AgentRegistry::Instance().Reset();
    pcg::refagent::TrackStore::Instance().Clear();
}

void RefAgent_SetResult(const char* agentName, const char* op, double value) {
    if (!agentName || !op) {
        return;
    }
    AgentRegistry::Instance().SetResult(agentName, op, value);
}

int64_t RefAgent_Counter(const char* name) {
    if (!name) {
        return -1;
    }
    for (const CounterName& entry : kCounterNames) {
        if (std::strcmp(entry.pszName, name) == 0) {
            return AgentRegistry::Instance().Get(entry.eCounter);
        }
    }
    return -1;
}

int32_t RefAgent_PostEvent(int32_t instance, int32_t command, int32_t value, int64_t llValue, int32_t frameWidth,
                           int32_t frameHeight) {
    std::shared_ptr<pcg::refagent::EventProducer> producer = pcg::refagent::FindProducer(instance);
    if (!producer) {
        return -1;
    }
    DspCallbackItem item{command, value, llValue, nullptr};
    if (frameWidth > 0) {
        item.pFrame = pcg::refagent::MakeSolidFrame(frameWidth, frameHeight > 0 ? frameHeight : 0, llValue);
    }
    if (!producer->Post(item)) {
        if (item.pFrame != nullptr) {
            item.pFrame->Release();
        }
        return -1;
    }
    return 0;
}

int32_t RefAgent_WaitPosted(int32_t instance, int32_t timeoutMs) {
    std::shared_ptr<pcg::refagent::EventProducer> producer = pcg::refagent::FindProducer(instance);
    if (!producer) {
        return -1;
    }
    return producer->WaitPosted(timeoutMs < 0 ? 0u : static_cast<uint32_t>(timeoutMs)) ? 0 : -1;
}

int32_t RefAgent_SeedTrack(int32_t where, int32_t trackingID, int32_t videoID, int32_t maskID, int64_t time,
                           float x, float y, const float* points, int32_t pointCount) {
    if (where != 0 && where != 1) {
        return -1;
    }
    pcg::refagent::TrackResult result{trackingID, videoID, maskID, time, {x, y}, {}};
    if (pointCount < 0) {
        result.bNoList = true;
    } else if (pointCount > 0) {
        if (points == nullptr) {
            return -1;
        }
        for (int32_t at = 0; at < pointCount; ++at) {
            result.points.push_back(TrackPoint{{points[3 * at], points[3 * at + 1], points[3 * at + 2]}});
        }
    }
    pcg::refagent::TrackStore::Instance().Seed(
        where == 0 ? pcg::refagent::TrackPlace::Queue : pcg::refagent::TrackPlace::Database, result);
    return 0;
}

}  // extern "C"
