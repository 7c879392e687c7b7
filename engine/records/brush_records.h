// Records of strokes, selections, warps and the mask info family. Field order
// and widths are binding; the sizes below are those of the 64-bit engines.
// Pointer fields never own what they point to.
#pragma once

#include <cstdint>

#include "engine/records/mask_records.h"

// ------------------------------------------------------------------- strokes

struct BrushPointSetting {
    int nMaskID = 0;
    int nPosX = 0;
    int nPosY = 0;
    int nInnerRadius = 0;
    int nOuterRadius = 0;
    int nFlow = 0;
    bool bAutoMask = false;
    bool bErase = false;
    bool bNewStroke = false;
    int nColorType = 0;
    PIXEL CenterColor[3] = {};
    BYTE bReserved[16] = {};
};
static_assert(sizeof(BrushPointSetting) == 56, "BrushPointSetting layout");

struct LiquifyPointSetting {
    int nMaskID = 0;
    int nPosX = 0;
    int nPosY = 0;
    int nRadius = 0;
    int nFlow = 0;
    bool bAutoMask = false;
    bool bNewStroke = false;
    bool bErase = false;
    Liquify_Mode nWarpType = LIQUIFY_WARP;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(LiquifyPointSetting) == 44, "LiquifyPointSetting layout");

struct BrushPointArray {
    BrushPointSetting* pBrushPointSetting = nullptr;
    int nCount = 0;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(BrushPointArray) == 32, "BrushPointArray layout");

struct BrushSetting {
    MaskAdjustmentSetting adjustSettingArray[MAX_MASK_COUNT];
    int nMaskID[MAX_MASK_COUNT] = {};
    int nCount = 0;
    BOOL bShowMask[MAX_MASK_COUNT] = {};
    ColorSpace maskColor[MAX_MASK_COUNT];
    BOOL bInverseMask[MAX_MASK_COUNT] = {};
    BYTE bReserved[16] = {};
};
static_assert(sizeof(BrushSetting) == 2416, "BrushSetting layout");

// One horizontal run of a selection, packed in 6 bytes; arrays of runs are
// contiguous, sorted by row, then column, and (-1, -1, -1) ends a list.
struct SelectionLine {
    short nX = 0;
    short nY = 0;
    short nLength = 0;
};
static_assert(sizeof(SelectionLine) == 6, "SelectionLine layout");

struct SelectionLineSet {
    int nMaskID = 0;
    bool bChanged = false;
    int nLength = 0;
    int nFeather = 0;
    int nScale = 0;
    bool bInverse = false;
    SelectionLine* selectionLine = nullptr;  // nLength runs
};
static_assert(sizeof(SelectionLineSet) == 32, "SelectionLineSet layout");

struct LumiarProertySetting {
    LONGLONG llTimeStamp = 0;
};
static_assert(sizeof(LumiarProertySetting) == 8, "LumiarProertySetting layout");

// --------------------------------------------------------- mask descriptions
//
// Records that name a mask start with nMaskID -1, no mask.

struct tBrushSetting {
    int nMaskID = -1;
    BOOL bInverseMask = 0;
    BOOL bUseInfoMask = 0;
};
static_assert(sizeof(tBrushSetting) == 12, "tBrushSetting layout");

struct tGradientSetting {
    int nMaskID = -1;
    int nCenterX = 0;
    int nCenterY = 0;
    float fDistance = 0;
    float fAngle = 0;
};
static_assert(sizeof(tGradientSetting) == 20, "tGradientSetting layout");

struct tEllipseSetting {
    int nMaskID = -1;
    int nCx = 0;
    int nCy = 0;
    int nSemiMajor = 0;
    int nSemiMinor = 0;
    double dFeather = 0;
    double dAngle = 0;
    bool bInverse = false;
};
static_assert(sizeof(tEllipseSetting) == 48, "tEllipseSetting layout");

struct tRawMaskSetting {
    int nMaskID = -1;
    BufferData mask;  // a default BufferData: ARGB32, all else zero
    ROI rectROI;
    int nFeather = 0;
    int nScale = 0;
    bool bInverse = false;
};
static_assert(sizeof(tRawMaskSetting) == 264, "tRawMaskSetting layout");

struct CircleFocusMaskSetting {
    int nMaskID = -1;
    float fCenterX = 0;
    float fCenterY = 0;
    float fInnerRadius = 0;
    float fOuterRadius = 0;
    float fAspectRatio = 1.0f;
};
static_assert(sizeof(CircleFocusMaskSetting) == 24, "CircleFocusMaskSetting layout");

struct LinearFocusMaskSetting {
    int nMaskID = -1;
    float fCenterX = 0;
    float fCenterY = 0;
    float fAngle = 1.0f;  // 1.0, not 0.0, for a new one
    float fInnerDistance = 0;
    float fOuterDistance = 0;
};
static_assert(sizeof(LinearFocusMaskSetting) == 24, "LinearFocusMaskSetting layout");

// ------------------------------------------------------------- warp settings

struct LiquifySetting {
    int nAmount = 0;
    int nWarpMaskID = 0;
    int nProtectMaskID = 0;
};
static_assert(sizeof(LiquifySetting) == 12, "LiquifySetting layout");

struct MeshPoint {
    int nSrcX = 0;
    int nSrcY = 0;
    int nDstX = 0;
    int nDstY = 0;
};
static_assert(sizeof(MeshPoint) == 16, "MeshPoint layout");

struct MeshWarpSetting {
    int nMeshID[MAX_MASK_ARRAY_COUNT] = {};
    int nCount = 0;
};
static_assert(sizeof(MeshWarpSetting) == 188, "MeshWarpSetting layout");

// --------------------------------------------------------------------- warps
//
// Each of the three families below has a virtual destructor as its only
// virtual operation. The records never own their arrays: a destructor lets go
// of the array pointers without freeing them, and the caller that handed an
// array in frees it.

struct BaseWarpData {
    virtual ~BaseWarpData() {}
};
static_assert(sizeof(BaseWarpData) == 8, "BaseWarpData layout");

struct LiquifyData : BaseWarpData {
    LiquifyPointSetting* pLiquifyPointArray = nullptr;
    int nPointCount = 0;

    ~LiquifyData() override { pLiquifyPointArray = nullptr; }
};
static_assert(sizeof(LiquifyData) == 24, "LiquifyData layout");

struct MeshData : BaseWarpData {
    MeshMode eMeshMode = MESHMODE_REGULAR_UPDATE;
    int nWarpMaskID = 0;
    int nRows = 0;
    int nColumns = 0;
    int nCount = 0;
    MeshPoint* pMeshPoints = nullptr;
    int nRadius = 0;

    ~MeshData() override { pMeshPoints = nullptr; }
};
static_assert(sizeof(MeshData) == 48, "MeshData layout");

struct MeshTable {
    int nWarpMaskID = 0;
    int nRows = 0;
    int nColumns = 0;
    MeshPoint* pMeshPoints = nullptr;
};
static_assert(sizeof(MeshTable) == 24, "MeshTable layout");

// ----------------------------------------------------------------- mask info
//
// One record for each kind of mask; InfoType names the kind.

struct BaseMaskInfo {
    FUNCTION_ID InfoType = FUNCTION_ID_UNKNOWN;

    virtual ~BaseMaskInfo() {}
};
static_assert(sizeof(BaseMaskInfo) == 16, "BaseMaskInfo layout");

struct MeshDataInfo : BaseMaskInfo {
    MeshData meshData;

    MeshDataInfo() { InfoType = FUNCTION_EFFECTINFO_MESHDATA; }
};
static_assert(sizeof(MeshDataInfo) == 64, "MeshDataInfo layout");

struct LiquifyMaskInfo : BaseMaskInfo {
    LiquifyData liquifyData;

    LiquifyMaskInfo() { InfoType = FUNCTION_EFFECTINFO_WARPMASK; }
};
static_assert(sizeof(LiquifyMaskInfo) == 40, "LiquifyMaskInfo layout");

struct BrushMaskInfo : BaseMaskInfo {
    tBrushSetting* pBrushArray = nullptr;
    int nMaskCount = 0;
    BrushPointSetting* pBrushPointArray = nullptr;
    int nPointCount = 0;

    BrushMaskInfo() { InfoType = FUNCTION_EFFECTINFO_BMASK; }
    ~BrushMaskInfo() override {
        pBrushArray = nullptr;
        pBrushPointArray = nullptr;
    }
};
static_assert(sizeof(BrushMaskInfo) == 48, "BrushMaskInfo layout");

struct GradientMaskInfo : BaseMaskInfo {
    tGradientSetting* pGradientArray = nullptr;
    int nMaskCount = 0;

    GradientMaskInfo() { InfoType = FUNCTION_EFFECTINFO_GMASK; }
    ~GradientMaskInfo() override { pGradientArray = nullptr; }
};
static_assert(sizeof(GradientMaskInfo) == 32, "GradientMaskInfo layout");

struct EllipseMaskInfo : BaseMaskInfo {
    tEllipseSetting* pEllipseArray = nullptr;
    int nMaskCount = 0;

    EllipseMaskInfo() { InfoType = FUNCTION_EFFECTINFO_EMASK; }
    ~EllipseMaskInfo() override { pEllipseArray = nullptr; }
};
static_assert(sizeof(EllipseMaskInfo) == 32, "EllipseMaskInfo layout");

struct CompressMaskInfo : BaseMaskInfo {
    SelectionLineSet* pCompArray = nullptr;
    int nMaskCount = 0;

    CompressMaskInfo() { InfoType = FUNCTION_EFFECTINFO_COMPMASK; }
    ~CompressMaskInfo() override { pCompArray = nullptr; }
};
static_assert(sizeof(CompressMaskInfo) == 32, "CompressMaskInfo layout");

struct RawMaskInfo : BaseMaskInfo {
    tRawMaskSetting* pMaskArray = nullptr;
    int nMaskCount = 0;

    RawMaskInfo() { InfoType = FUNCTION_EFFECTINFO_RAWMASK; }
    ~RawMaskInfo() override { pMaskArray = nullptr; }
};
static_assert(sizeof(RawMaskInfo) == 32, "RawMaskInfo layout");

struct FeaturePointsInfo : BaseMaskInfo {
    FeaturePoints* pFeaturePointsArray = nullptr;
    int nArraySize = 0;

    FeaturePointsInfo() { InfoType = FUNCTION_EFFECTINFO_FEATUREPOINTS; }
    ~FeaturePointsInfo() override { pFeaturePointsArray = nullptr; }
};
static_assert(sizeof(FeaturePointsInfo) == 32, "FeaturePointsInfo layout");

struct CircleFocusMaskInfo : BaseMaskInfo {
    CircleFocusMaskSetting* pCircleMaskArray = nullptr;
    int nMaskCount = 0;

    CircleFocusMaskInfo() { InfoType = FUNCTION_EFFECTINFO_CIRCLEMASK; }
    ~CircleFocusMaskInfo() override { pCircleMaskArray = nullptr; }
};
static_assert(sizeof(CircleFocusMaskInfo) == 32, "CircleFocusMaskInfo layout");

struct LinearFocusMaskInfo : BaseMaskInfo {
    LinearFocusMaskSetting* pLinearMaskArray = nullptr;
    int nMaskCount = 0;

    LinearFocusMaskInfo() { InfoType = FUNCTION_EFFECTINFO_LINEARMASK; }
    ~LinearFocusMaskInfo() override { pLinearMaskArray = nullptr; }
};
static_assert(sizeof(LinearFocusMaskInfo) == 32, "LinearFocusMaskInfo layout");

// ----------------------------------------------------------- mask clear info

struct BaseMaskClearInfo {
    FUNCTION_ID effectID = FUNCTION_ID_UNKNOWN;

    virtual ~BaseMaskClearInfo() {}

private:
    // Fills the tail of the base, so that the fields of a derived record start
    // behind the whole base on every compiler, as the engines' compiler lays
    // them out.
    std::int32_t m_nTailPadding = 0;
};
static_assert(sizeof(BaseMaskClearInfo) == 16, "BaseMaskClearInfo layout");

struct MeshMaskClearInfo : BaseMaskClearInfo {
    int nMaskID = -1;
};
static_assert(sizeof(MeshMaskClearInfo) == 24, "MeshMaskClearInfo layout");

struct LiquifyMaskClearInfo : BaseMaskClearInfo {
    LiquifyPointSetting* pLiquifyPointSetting = nullptr;

    ~LiquifyMaskClearInfo() override { pLiquifyPointSetting = nullptr; }
};
static_assert(sizeof(LiquifyMaskClearInfo) == 24, "LiquifyMaskClearInfo layout");

struct BrushMaskClearInfo : BaseMaskClearInfo {
    int nMaskID = -1;
    BOOL bUseInfoMask = 0;
};
static_assert(sizeof(BrushMaskClearInfo) == 24, "BrushMaskClearInfo layout");

struct MaskClearInfo : BaseMaskClearInfo {
    int nMaskID = -1;
};
static_assert(sizeof(MaskClearInfo) == 24, "MaskClearInfo layout");
