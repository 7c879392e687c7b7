#include "engine/records/brush_records.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

TEST(MaskInfo, EachKindStampsItsInfoType) {
    EXPECT_EQ(FUNCTION_ID_UNKNOWN, BaseMaskInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_BMASK, BrushMaskInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_GMASK, GradientMaskInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_COMPMASK, CompressMaskInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_RAWMASK, RawMaskInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_WARPMASK, LiquifyMaskInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_MESHDATA, MeshDataInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_EMASK, EllipseMaskInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_FEATUREPOINTS, FeaturePointsInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_CIRCLEMASK, CircleFocusMaskInfo().InfoType);
    EXPECT_EQ(FUNCTION_EFFECTINFO_LINEARMASK, LinearFocusMaskInfo().InfoType);
}

TEST(MaskInfo, LiquifyReports86AndTheBaseReports0) {
    EXPECT_EQ(86, LiquifyMaskInfo().InfoType);
    EXPECT_EQ(0, BaseMaskInfo().InfoType);
}

TEST(MaskInfo, DeletingABrushMaskInfoLeavesItsArraysAlive) {
    tBrushSetting* masks = new tBrushSetting[2];
    BrushPointSetting* points = new BrushPointSetting[3];
    masks[1].nMaskID = 12;
    points[2].nPosX = 34;
    BaseMaskInfo* info = new BrushMaskInfo;
    static_cast<BrushMaskInfo*>(info)->pBrushArray = masks;
    static_cast<BrushMaskInfo*>(info)->nMaskCount = 2;
    static_cast<BrushMaskInfo*>(info)->pBrushPointArray = points;
    static_cast<BrushMaskInfo*>(info)->nPointCount = 3;
    delete info;  // through the base, as the destructor is virtual
    EXPECT_EQ(12, masks[1].nMaskID);
    EXPECT_EQ(34, points[2].nPosX);
    delete[] masks;
    delete[] points;
}

TEST(MaskInfo, DeletingAnyArrayHolderLeavesItsArrayAlive) {
    SelectionLine* lines = new SelectionLine[1];
    SelectionLineSet* sets = new SelectionLineSet[1];
    sets[0].selectionLine = lines;
    sets[0].nLength = 1;
    CompressMaskInfo* compressed = new CompressMaskInfo;
    compressed->pCompArray = sets;
    delete compressed;
    EXPECT_EQ(lines, sets[0].selectionLine);

    LiquifyPointSetting* liquify = new LiquifyPointSetting[1];
    liquify[0].nRadius = 9;
    BaseWarpData* warp = new LiquifyData;
    static_cast<LiquifyData*>(warp)->pLiquifyPointArray = liquify;
    delete warp;
    BaseMaskClearInfo* clear = new LiquifyMaskClearInfo;
    static_cast<LiquifyMaskClearInfo*>(clear)->pLiquifyPointSetting = liquify;
    delete clear;
    EXPECT_EQ(9, liquify[0].nRadius);

    delete[] liquify;
    delete[] sets;
    delete[] lines;
}

TEST(MaskDescriptions, StartWithNoMask) {
    EXPECT_EQ(-1, tBrushSetting().nMaskID);
    EXPECT_EQ(-1, tGradientSetting().nMaskID);
    EXPECT_EQ(-1, tEllipseSetting().nMaskID);
    EXPECT_EQ(-1, tRawMaskSetting().nMaskID);
    EXPECT_EQ(-1, CircleFocusMaskSetting().nMaskID);
    EXPECT_EQ(-1, LinearFocusMaskSetting().nMaskID);
    EXPECT_EQ(-1, MeshMaskClearInfo().nMaskID);
    EXPECT_EQ(-1, BrushMaskClearInfo().nMaskID);
    EXPECT_EQ(-1, MaskClearInfo().nMaskID);
}

TEST(LinearFocusMaskSetting, NewOneHasAngleOne) {
    LinearFocusMaskSetting s;
    EXPECT_EQ(1.0f, s.fAngle);
    EXPECT_EQ(0.0f, s.fCenterX);
    EXPECT_EQ(0.0f, s.fInnerDistance);
}

TEST(CircleFocusMaskSetting, NewOneHasAspectRatioOne) {
    CircleFocusMaskSetting s;
    EXPECT_EQ(1.0f, s.fAspectRatio);
    EXPECT_EQ(0.0f, s.fOuterRadius);
}

TEST(MeshData, StartsInRegularUpdateModeAlsoWhenEmbedded) {
    EXPECT_EQ(MESHMODE_REGULAR_UPDATE, MeshData().eMeshMode);
    EXPECT_EQ(MESHMODE_REGULAR_UPDATE, MeshDataInfo().meshData.eMeshMode);
    EXPECT_EQ(nullptr, MeshData().pMeshPoints);
}

TEST(MeshTable, StartsAllZero) {
    MeshTable t;
    EXPECT_EQ(0, t.nWarpMaskID);
    EXPECT_EQ(0, t.nRows);
    EXPECT_EQ(0, t.nColumns);
    EXPECT_EQ(nullptr, t.pMeshPoints);
}

TEST(tRawMaskSetting, MaskStartsAsADefaultBufferView) {
    tRawMaskSetting s;
    EXPECT_EQ(PIXEL_ARGB32, s.mask.ePixelFormat);
    EXPECT_EQ(nullptr, s.mask.pBuffer);
    EXPECT_EQ(0, s.mask.nWidth);
    EXPECT_EQ(0, s.rectROI.nWidth);
    EXPECT_FALSE(s.bInverse);
}

TEST(SelectionLine, IsSixPackedBytes) {
    SelectionLine lines[2] = {{1, 2, 3}, {-1, -1, -1}};
    EXPECT_EQ(6u, sizeof(SelectionLine));
    EXPECT_EQ(12u, sizeof lines);
    EXPECT_EQ(-1, lines[1].nLength);
}

TEST(MaskClearInfo, FieldsFollowTheWholeBase) {
    MaskClearInfo info;
    info.nMaskID = 0x01020304;
    std::int32_t at16 = 0;
    std::memcpy(&at16, reinterpret_cast<const unsigned char*>(&info) + 16, sizeof at16);
    EXPECT_EQ(0x01020304, at16);
}

}  // namespace
