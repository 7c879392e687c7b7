// Track results as the render agent hands them out. The agent allocates; the
// module frees what it is given with the operators named below, so both sides
// must use the same ones.
#pragma once

#include <cstddef>
#include <cstdint>

// One tracked point: three floats whose meaning is the agent's.
struct TrackPoint {
    float fValue[3];
};

static_assert(sizeof(TrackPoint) == 12, "TrackPoint");

struct TrackPointList {
    uint32_t nCount;
    uint32_t nPadding;
    TrackPoint* pPoints;   // new[] of nCount points; null when empty
};

static_assert(sizeof(TrackPointList) == 16, "TrackPointList");
static_assert(offsetof(TrackPointList, nCount) == 0, "nCount");
static_assert(offsetof(TrackPointList, pPoints) == 8, "pPoints");

// A heap record (operator new) of the agent's result queue.
struct TrackQueueEntry {
    int64_t llReserved0;   // not read by the module
    TrackPointList* pList;
    int64_t llReserved16;  // not read by the module
    float position[2];
};

static_assert(sizeof(TrackQueueEntry) == 32, "TrackQueueEntry");
static_assert(offsetof(TrackQueueEntry, pList) == 8, "pList");
static_assert(offsetof(TrackQueueEntry, position) == 24, "position");

// Empties a list: frees the points with delete[] and zeroes both fields.
inline void EmptyTrackPointList(TrackPointList* list) {
    if (!list) {
        return;
    }
    delete[] list->pPoints;
    list->pPoints = nullptr;
    list->nCount = 0;
}

// Empties a list and frees the list itself with delete.
inline void FreeTrackPointList(TrackPointList* list) {
    EmptyTrackPointList(list);
    delete list;
}
