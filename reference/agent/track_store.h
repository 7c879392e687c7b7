// Track results held by the reference agent library: the running track's
// queue and the database it is flushed into, shared by every agent of the
// library (tests seed them with RefAgent_SeedTrack). Safe on any thread.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/track_results.h"

namespace pcg {
namespace refagent {

struct TrackResult {
    int32_t nTrackingID;
    int32_t nVideoID;
    int32_t nMaskID;
    int64_t llTime;
    float position[2];
    std::vector<TrackPoint> points;
    bool bNoList = false;   // a queue entry handed out without a list
};

enum class TrackPlace { Queue = 0, Database = 1 };

class TrackStore {
public:
    static TrackStore& Instance();

    // A result with the same four keys in the same place is replaced. A queue
    // result makes its tracking ID the current one.
    void Seed(TrackPlace place, const TrackResult& result);
    // Forgets everything; the current tracking ID goes back to 0.
    void Clear();

    // A queue result for the video, mask and time; false on a miss.
    bool FindInQueue(int32_t videoID, int32_t maskID, int64_t time, TrackResult* result);
    // A database result for all four keys; false on a miss.
    bool FindInDatabase(int32_t trackingID, int32_t videoID, int32_t maskID, int64_t time, TrackResult* result);
    // The database result of the three keys with the highest time; false when none.
    bool FindLatest(int32_t videoID, int32_t maskID, int32_t trackingID, TrackResult* result);

    // The highest tracking ID held anywhere, 0 when none.
    int32_t MaxTrackingID();
    int32_t CurrentTrackingID();

    // Moves the queue results of the three keys up to and including `position` to the database.
    void Flush(int32_t trackingID, int32_t videoID, int32_t maskID, int64_t position);
    void ClearQueue();
    // Database results of the video and mask from `from` on, or within [from, to].
    void DeleteFrom(int32_t videoID, int32_t maskID, int64_t from);
    void DeleteWithin(int32_t videoID, int32_t maskID, int64_t from, int64_t to);

private:
    TrackStore() = default;
};

// A list of the result's points on the heap (new / new[]), as the module frees it.
void FillTrackPointList(const TrackResult& result, TrackPointList* list);

}  // namespace refagent
}  // namespace pcg
