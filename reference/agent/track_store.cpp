#include "reference/agent/track_store.h"

#include <algorithm>
#include <mutex>

namespace pcg {
namespace refagent {

namespace {

struct StoreState {
    std::mutex m_mutex;
    std::vector<TrackResult> m_queue;
    std::vector<TrackResult> m_database;
    int32_t m_nCurrentTrackingID = 0;
};

StoreState& State() {
    static StoreState state;
    return state;
}

bool SameKeys(const TrackResult& a, const TrackResult& b) {
    return a.nTrackingID == b.nTrackingID && a.nVideoID == b.nVideoID && a.nMaskID == b.nMaskID &&
           a.llTime == b.llTime;
}

void Put(std::vector<TrackResult>& place, const TrackResult& result) {
    for (TrackResult& held : place) {
        if (SameKeys(held, result)) {
            held = result;
            return;
        }
    }
    place.push_back(result);
}

}  // namespace

TrackStore& TrackStore::Instance() {
    static TrackStore store;
    return store;
}

void TrackStore::Seed(TrackPlace place, const TrackResult& result) {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    if (place == TrackPlace::Queue) {
        Put(s.m_queue, result);
        s.m_nCurrentTrackingID = result.nTrackingID;
    } else {
        Put(s.m_database, result);
    }
}

void TrackStore::Clear() {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    s.m_queue.clear();
    s.m_database.clear();
    s.m_nCurrentTrackingID = 0;
}

bool TrackStore::FindInQueue(int32_t videoID, int32_t maskID, int64_t time, TrackResult* result) {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    for (const TrackResult& held : s.m_queue) {
        if (held.nVideoID == videoID && held.nMaskID == maskID && held.llTime == time) {
            *result = held;
            return true;
        }
    }
    return false;
}

bool TrackStore::FindInDatabase(int32_t trackingID, int32_t videoID, int32_t maskID, int64_t time,
                                TrackResult* result) {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    for (const TrackResult& held : s.m_database) {
        if (held.nTrackingID == trackingID && held.nVideoID == videoID && held.nMaskID == maskID &&
            held.llTime == time) {
            *result = held;
            return true;
        }
    }
    return false;
}

bool TrackStore::FindLatest(int32_t videoID, int32_t maskID, int32_t trackingID, TrackResult* result) {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    const TrackResult* latest = nullptr;
    for (const TrackResult& held : s.m_database) {
        if (held.nTrackingID == trackingID && held.nVideoID == videoID && held.nMaskID == maskID &&
            (latest == nullptr || held.llTime > latest->llTime)) {
            latest = &held;
        }
    }
    if (latest == nullptr) return false;
    *result = *latest;
    return true;
}

int32_t TrackStore::MaxTrackingID() {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    int32_t highest = 0;
    bool any = false;
    for (const auto* place : {&s.m_queue, &s.m_database}) {
        for (const TrackResult& held : *place) {
            if (!any || held.nTrackingID > highest) highest = held.nTrackingID;
            any = true;
        }
    }
    return highest;
}

int32_t TrackStore::CurrentTrackingID() {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    return s.m_nCurrentTrackingID;
}

void TrackStore::Flush(int32_t trackingID, int32_t videoID, int32_t maskID, int64_t position) {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    auto moves = [&](const TrackResult& held) {
        return held.nTrackingID == trackingID && held.nVideoID == videoID && held.nMaskID == maskID &&
               held.llTime <= position;
    };
    for (const TrackResult& held : s.m_queue) {
        if (moves(held)) Put(s.m_database, held);
    }
    s.m_queue.erase(std::remove_if(s.m_queue.begin(), s.m_queue.end(), moves), s.m_queue.end());
}

void TrackStore::ClearQueue() {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    s.m_queue.clear();
}

void TrackStore::DeleteFrom(int32_t videoID, int32_t maskID, int64_t from) {
    DeleteWithin(videoID, maskID, from, INT64_MAX);
}

void TrackStore::DeleteWithin(int32_t videoID, int32_t maskID, int64_t from, int64_t to) {
    StoreState& s = State();
    std::lock_guard<std::mutex> lock(s.m_mutex);
    auto goes = [&](const TrackResult& held) {
        return held.nVideoID == videoID && held.nMaskID == maskID && held.llTime >= from && held.llTime <= to;
    };
    s.m_database.erase(std::remove_if(s.m_database.begin(), s.m_database.end(), goes), s.m_database.end());
}

void FillTrackPointList(const TrackResult& result, TrackPointList* list) {
    EmptyTrackPointList(list);
    list->nCount = static_cast<uint32_t>(result.points.size());
    if (!result.points.empty()) {
        list->pPoints = new TrackPoint[result.points.size()];
        std::copy(result.points.begin(), result.points.end(), list->pPoints);
    }
}

}  // namespace refagent
}  // namespace pcg
