#include "engine/track_results.h"

#include <gtest/gtest.h>

namespace {

TEST(TrackPointList, EmptyingFreesThePointsAndZeroesBothFields) {
    auto* list = new TrackPointList{3, 0, new TrackPoint[3]};
    EmptyTrackPointList(list);
    EXPECT_EQ(list->nCount, 0u);
    EXPECT_EQ(list->pPoints, nullptr);
    FreeTrackPointList(list);
}

}  // namespace
