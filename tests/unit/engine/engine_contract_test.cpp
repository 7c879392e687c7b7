#include "engine/engine_contract.h"

#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

namespace {

// The table slot a virtual operation occupies. Both builds use GCC, whose C++
// ABI (the Itanium one, also under mingw-w64) stores a pointer to a virtual
// member as 1 + the slot's byte offset in the table.
template <typename TMember>
std::size_t Slot(TMember member) {
    static_assert(sizeof(TMember) == 2 * sizeof(void*), "pointer to member: address word and adjustment");
    std::uintptr_t words[2];
    std::memcpy(words, &member, sizeof(words));
    EXPECT_EQ(words[0] % sizeof(void*), 1u) << "not a virtual operation";
    return static_cast<std::size_t>((words[0] - 1) / sizeof(void*));
}

TEST(EngineContract, RenderAgentOperationsStandInContractOrder) {
    std::size_t slot = 0;
    EXPECT_EQ(Slot(&IVXHvnDspAgent::AddRef), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::Release), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::LockEffectDataWriter), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::UnlockEffectDataWriter), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::SetFrameRate), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::PushEffect), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::ClearTask), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::AddMaskInfo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::ClearMaskInfo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::AddVideo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::UpdateVideo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::GetVideoAspectRatio), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::RemoveVideo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::RemoveAllVideo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::AdjustBufferRect), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::SetLUT), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::ClearLUT), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::NeedsSourceCopy), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::ApplyLUTOnBuffer), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::SetCacheFrameOnDspAgent), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::EnableCacheFramePlaying), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::ResetCacheFramePlaying), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::ApplyEffectOnBuffer), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::GetInterpolatedToneMapInfo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::QueryTrackResultInQueue), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::CopyMTMaskInfoDB), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::FlushQueue2DBUntilPos), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::ClearTrackResultQueue), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::GetMaxTrackingID), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::QueryMotionTrackingMaskInfo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::QueryLatestMotionTrackingMaskInfo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::DeleteMotionTrackingMaskInfoRange), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::DeleteMotionTrackingMaskInfoInterval), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::DumpTask), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::GetTrackHistoryStream), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::FreeTrackHistoryStream), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::SetTrackHistoryStream), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::ClearCurTrackHistoryStream), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::DeleteTrackingKeyFrame), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::SetCallbackQueue), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::GetCurrentTrackingID), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::SetDBMgr), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::SetOverUnderExposureImage), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::GetHistogramInfo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::GetToneCurveHistogramInfo), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::SetImageRetouchMgr), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::SetDspVideoID), slot++);
    EXPECT_EQ(Slot(&IVXHvnDspAgent::GetDspVideoID), slot++);
    EXPECT_EQ(slot, 48u);
}

}  // namespace
