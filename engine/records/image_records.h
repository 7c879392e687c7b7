// Records of geometry, of the face model, of pixel buffers and their
// descriptions, and of a few engine results. Engines take them by pointer, so
// field order and widths are binding; the sizes below are those of the 64-bit
// engines. Pointer fields never own what they point to.
#pragma once

#include <atomic>
#include <cmath>
#include <cstdint>
#include <new>

#include "engine/records/record_types.h"

struct FeaturePointsInfo;

// ------------------------------------------------------------------ geometry

struct RectD {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    RectD() = default;
    RectD(RectD& other) = default;
    RectD(const RectD& other) = default;
    RectD(double dLeft, double dTop, double dRight, double dBottom)
        : left(dLeft), top(dTop), right(dRight), bottom(dBottom) {}
    RectD& operator=(const RectD& other) = default;

    double Width() const { return right - left; }
    double Height() const { return bottom - top; }
};
static_assert(sizeof(RectD) == 32, "RectD layout");

struct PointD {
    double x = 0;
    double y = 0;

    PointD() = default;
    PointD(PointD& other) = default;
    PointD(const PointD& other) = default;
    PointD(double dX, double dY) : x(dX), y(dY) {}
    PointD& operator=(const PointD& other) = default;

    // Equal within cmpthreashold on each axis; the single-precision tolerance
    // is widened to double before the comparison.
    bool operator==(const PointD& other) const {
        const double tolerance = static_cast<double>(cmpthreashold);
        return std::fabs(x - other.x) < tolerance && std::fabs(y - other.y) < tolerance;
    }
    bool operator!=(const PointD& other) const { return !(*this == other); }
};
static_assert(sizeof(PointD) == 16, "PointD layout");

struct ROI {
    int nLeft = 0;
    int nTop = 0;
    int nWidth = 0;
    int nHeight = 0;
    float fAngle = 0;

    // The angle takes no part in equality.
    bool operator==(const ROI& other) const {
        return nLeft == other.nLeft && nTop == other.nTop && nWidth == other.nWidth &&
               nHeight == other.nHeight;
    }
    bool operator!=(const ROI& other) const { return !(*this == other); }
};
static_assert(sizeof(ROI) == 20, "ROI layout");

// ---------------------------------------------------------------- face model
//
// Each part of a face is made of points and compares point by point, with the
// tolerance of PointD. The value constructors copy the points they are given.

struct Brow {
    PointD left;
    PointD top;
    PointD right;
    PointD bottom;

    Brow() = default;
    Brow(PointD& ptLeft, PointD& ptTop, PointD& ptRight, PointD& ptBottom)
        : left(ptLeft), top(ptTop), right(ptRight), bottom(ptBottom) {}
    Brow(const Brow& other) = default;
    Brow& operator=(const Brow& other) = default;

    bool operator==(const Brow& other) const {
        return left == other.left && top == other.top && right == other.right &&
               bottom == other.bottom;
    }
    bool operator!=(const Brow& other) const { return !(*this == other); }
};
static_assert(sizeof(Brow) == 64, "Brow layout");

struct Eye {
    PointD left;
    PointD top;
    PointD right;
    PointD bottom;
    PointD center;

    Eye() = default;
    Eye(PointD& ptLeft, PointD& ptTop, PointD& ptRight, PointD& ptBottom, PointD& ptCenter)
        : left(ptLeft), top(ptTop), right(ptRight), bottom(ptBottom), center(ptCenter) {}
    Eye(const Eye& other) = default;
    Eye& operator=(const Eye& other) = default;

    bool operator==(const Eye& other) const {
        return left == other.left && top == other.top && right == other.right &&
               bottom == other.bottom && center == other.center;
    }
    bool operator!=(const Eye& other) const { return !(*this == other); }
};
static_assert(sizeof(Eye) == 80, "Eye layout");

struct Nose {
    PointD left;
    PointD top;
    PointD right;
    PointD bottom;

    Nose() = default;
    Nose(PointD& ptLeft, PointD& ptTop, PointD& ptRight, PointD& ptBottom)
        : left(ptLeft), top(ptTop), right(ptRight), bottom(ptBottom) {}
    Nose(const Nose& other) = default;
    Nose& operator=(const Nose& other) = default;

    bool operator==(const Nose& other) const {
        return left == other.left && top == other.top && right == other.right &&
               bottom == other.bottom;
    }
    bool operator!=(const Nose& other) const { return !(*this == other); }
};
static_assert(sizeof(Nose) == 64, "Nose layout");

struct Mouth {
    PointD left;
    PointD right;
    PointD toplip1;
    PointD toplip2;
    PointD bottomlip1;
    PointD bottomlip2;
    PointD interptopleft;
    PointD interptopright;
    PointD interpbottomleft;
    PointD interpbottomright;
    PointD interpupperleft;
    PointD interpupperright;

    Mouth() = default;
    Mouth(PointD& ptLeft, PointD& ptRight, PointD& ptTopLip1, PointD& ptTopLip2,
          PointD& ptBottomLip1, PointD& ptBottomLip2, PointD& ptInterpTopLeft,
          PointD& ptInterpTopRight, PointD& ptInterpBottomLeft, PointD& ptInterpBottomRight,
          PointD& ptInterpUpperLeft, PointD& ptInterpUpperRight)
        : left(ptLeft), right(ptRight), toplip1(ptTopLip1), toplip2(ptTopLip2),
          bottomlip1(ptBottomLip1), bottomlip2(ptBottomLip2), interptopleft(ptInterpTopLeft),
          interptopright(ptInterpTopRight), interpbottomleft(ptInterpBottomLeft),
          interpbottomright(ptInterpBottomRight), interpupperleft(ptInterpUpperLeft),
          interpupperright(ptInterpUpperRight) {}
    Mouth(const Mouth& other) = default;
    Mouth& operator=(const Mouth& other) = default;

    bool operator==(const Mouth& other) const {
        return left == other.left && right == other.right && toplip1 == other.toplip1 &&
               toplip2 == other.toplip2 && bottomlip1 == other.bottomlip1 &&
               bottomlip2 == other.bottomlip2 && interptopleft == other.interptopleft &&
               interptopright == other.interptopright &&
               interpbottomleft == other.interpbottomleft &&
               interpbottomright == other.interpbottomright &&
               interpupperleft == other.interpupperleft &&
               interpupperright == other.interpupperright;
    }
    bool operator!=(const Mouth& other) const { return !(*this == other); }
};
static_assert(sizeof(Mouth) == 192, "Mouth layout");

struct Ear {
    PointD top;
    PointD bottom;

    Ear() = default;
    Ear(PointD& ptTop, PointD& ptBottom) : top(ptTop), bottom(ptBottom) {}
    Ear(const Ear& other) = default;
    Ear& operator=(const Ear& other) = default;

    bool operator==(const Ear& other) const { return top == other.top && bottom == other.bottom; }
    bool operator!=(const Ear& other) const { return !(*this == other); }
};
static_assert(sizeof(Ear) == 32, "Ear layout");

struct FaceOutline {
    PointD chin;
    PointD left1;
    PointD left2;
    PointD right1;
    PointD right2;
    Ear lEar;
    Ear rEar;

    FaceOutline() = default;
    FaceOutline(PointD& ptChin, PointD& ptLeft1, PointD& ptLeft2, PointD& ptRight1,
                PointD& ptRight2, Ear& earLeft, Ear& earRight)
        : chin(ptChin), left1(ptLeft1), left2(ptLeft2), right1(ptRight1), right2(ptRight2),
          lEar(earLeft), rEar(earRight) {}
    FaceOutline(const FaceOutline& other) = default;
    FaceOutline& operator=(const FaceOutline& other) = default;

    bool operator==(const FaceOutline& other) const {
        return chin == other.chin && left1 == other.left1 && left2 == other.left2 &&
               right1 == other.right1 && right2 == other.right2 && lEar == other.lEar &&
               rEar == other.rEar;
    }
    bool operator!=(const FaceOutline& other) const { return !(*this == other); }
};
static_assert(sizeof(FaceOutline) == 144, "FaceOutline layout");

// One face. A new one has every point and nMaskID at 0, so an unset face and a
// face of mask 0 look alike; equality compares the seven parts only.
struct FeaturePoints {
    int nMaskID = 0;
    Brow lBrow;
    Brow rBrow;
    Eye lEye;
    Eye rEye;
    Nose nose;
    Mouth mouth;
    FaceOutline faceOutline;

    bool operator==(const FeaturePoints& other) const {
        return lBrow == other.lBrow && rBrow == other.rBrow && lEye == other.lEye &&
               rEye == other.rEye && nose == other.nose && mouth == other.mouth &&
               faceOutline == other.faceOutline;
    }
    bool operator!=(const FeaturePoints& other) const { return !(*this == other); }
};
static_assert(sizeof(FeaturePoints) == 696, "FeaturePoints layout");

// Per-face settings of the face tools, and the arrays that carry them. The
// arrays are the caller's: a setting's destructor lets go of its array
// without freeing it.

struct SingleFaceEyeEnlargeSetting {
    int nAmount = 0;
    int nMaskID = 0;
};
static_assert(sizeof(SingleFaceEyeEnlargeSetting) == 8, "SingleFaceEyeEnlargeSetting layout");

struct SingleFaceThinningSetting {
    int nAmount = 0;
    int nMaskID = 0;
};
static_assert(sizeof(SingleFaceThinningSetting) == 8, "SingleFaceThinningSetting layout");

struct SingleFaceEyeBagRemovalSetting {
    int nAmount = 0;
    int nMaskID = 0;
};
static_assert(sizeof(SingleFaceEyeBagRemovalSetting) == 8, "SingleFaceEyeBagRemovalSetting layout");

struct EyeEnlargeSetting {
    SingleFaceEyeEnlargeSetting* pSettingArray = nullptr;
    int nArraySize = 0;

    virtual ~EyeEnlargeSetting() { pSettingArray = nullptr; }
};
static_assert(sizeof(EyeEnlargeSetting) == 24, "EyeEnlargeSetting layout");

struct FaceThinningSetting {
    SingleFaceThinningSetting* pSettingArray = nullptr;
    int nArraySize = 0;

    virtual ~FaceThinningSetting() { pSettingArray = nullptr; }
};
static_assert(sizeof(FaceThinningSetting) == 24, "FaceThinningSetting layout");

struct EyeBagRemovalSetting {
    SingleFaceEyeBagRemovalSetting* pSettingArray = nullptr;
    int nArraySize = 0;

    virtual ~EyeBagRemovalSetting() { pSettingArray = nullptr; }
};
static_assert(sizeof(EyeBagRemovalSetting) == 24, "EyeBagRemovalSetting layout");

struct QueryOriFeaturePointSetting {
    EyeEnlargeSetting* pEyeEnlargeSetting = nullptr;
    FaceThinningSetting* pFaceThinningSetting = nullptr;
    FeaturePointsInfo* pFeaturePointsInfo = nullptr;
    PointD* pPt_InOut = nullptr;

    virtual ~QueryOriFeaturePointSetting() {
        pEyeEnlargeSetting = nullptr;
        pFaceThinningSetting = nullptr;
        pFeaturePointsInfo = nullptr;
        pPt_InOut = nullptr;
    }
};
static_assert(sizeof(QueryOriFeaturePointSetting) == 40, "QueryOriFeaturePointSetting layout");

// ------------------------------------------------- pixels and their descriptions

struct RawInfo {
    RAWDATA_SRCTYPE eRawDataSrcType = RAWDATA_SRC_JPEG;
    unsigned int nBlackPoint = 0;
    unsigned int nWhitePoint = 0;
    float fCameraXYZMatrix[4][3] = {};
    float fDaylightMultiplyMatrix[4] = {};
    float fCameraMultiplyMatrix[4] = {};
    float fScaleMultiplyMatrix[4] = {};
    BYTE bReserved[32] = {};
};
static_assert(sizeof(RawInfo) == 140, "RawInfo layout");

// A view of pixels that does not own them. A new one is all 0 but for
// ePixelFormat, PIXEL_ARGB32.
struct BufferData {
    BYTE* pBuffer = nullptr;
    int nWidth = 0;
    int nHeight = 0;
    int nStride = 0;
    int nColorDepth = 0;
    int nChannelBoundary = 0;
    PIXEL_FORMAT ePixelFormat = PIXEL_ARGB32;
    COLOR_SPACE eColorSpace = sRGB_SPACE;
    RawInfo rawInfo;
    RECT rectROI;
    BYTE bReserved[32] = {};
};
static_assert(sizeof(BufferData) == 224, "BufferData layout");

struct BufferDataChunk {
    BYTE** ppBuffer = nullptr;
    int nWidth = 0;
    int nHeight = 0;
    int nStride = 0;
    int nColorDepth = 0;
    int nChannelBoundary = 0;
    PIXEL_FORMAT ePixelFormat = PIXEL_RGB24;
    COLOR_SPACE eColorSpace = sRGB_SPACE;
    RawInfo rawInfo;
    RECT rectROI;
    BYTE bReserved[32] = {};
};
static_assert(sizeof(BufferDataChunk) == 224, "BufferDataChunk layout");

struct PixelBuffer {
    PIXEL* pBuffer = nullptr;
    PIXEL* pSrcBuffer = nullptr;
    PIXEL* pOclBuffer = nullptr;
    cl_mem pSrcOclMem = nullptr;
    cl_mem pOclMem = nullptr;
    int nWidth = 0;
    int nHeight = 0;
    int nStride = 0;
    int nColorDepth = 0;
    int nChannelBoundary = 0;
    int nChannelNumber = 0;
    RECT rectROI;
    COLOR_SPACE eColorSpace = sRGB_SPACE;
    RawInfo rawInfo;
    BYTE bReserved[32] = {};
};
static_assert(sizeof(PixelBuffer) == 256, "PixelBuffer layout");

struct IntPixelBuffer {
    int* pBuffer = nullptr;
    int* pOclBuffer = nullptr;
    int nWidth = 0;
    int nHeight = 0;
    int nStride = 0;
    int nColorDepth = 0;
    int nChannelBoundary = 0;
    RECT rectROI;
    BYTE bReserved[32] = {};
};
static_assert(sizeof(IntPixelBuffer) == 88, "IntPixelBuffer layout");

struct ColorSpace {
    int nR = 0;
    int nG = 0;
    int nB = 0;
    COLOR_DEPTH eColorDepth = {};
    COLOR_SPACE eColorSpace = sRGB_SPACE;
};
static_assert(sizeof(ColorSpace) == 20, "ColorSpace layout");

struct PixelInfo {
    HUE_COLOR_DEF hueColor1 = Hue_Red;
    HUE_COLOR_DEF hueColor2 = Hue_Red;
    double dWeight1 = 0;
    double dWeight2 = 0;
    PIXEL RGB[3] = {};
    INT HSV[3] = {};
    BOOL bGetROMMRGB = 0;
    BOOL bGetHSV = 0;
    PIXEL ROMMRGB[3] = {};
    double dToneWeight[4] = {};
    BYTE bReserved[16] = {};
};
static_assert(sizeof(PixelInfo) == 112, "PixelInfo layout");

struct OutputBufferSetting {
    BYTE* pBuffer = nullptr;
    BYTE** ppBuffer = nullptr;
    BOOL bBufferChunk = 0;
    int nWidth = 0;
    int nHeight = 0;
    int nStride = 0;
    PIXEL_FORMAT ePixelFormat = PIXEL_RGB24;
    COLOR_SPACE eColorSpace = sRGB_SPACE;
    BYTE bReserved[16] = {};
};
static_assert(sizeof(OutputBufferSetting) == 56, "OutputBufferSetting layout");

// ------------------------------------------------------------------- results

struct HistogramDist {
    int HistogramR[256] = {};
    int HistogramG[256] = {};
    int HistogramB[256] = {};
    int HistogramL[256] = {};
    int nTotalCount = 0;
    int nMaxHistogramR = 0;
    int nMaxHistogramG = 0;
    int nMaxHistogramB = 0;
    int nMaxHistogramL = 0;
    int nUnderExposureNumber = 0;
    int nOverExposureNumber = 0;
    int nOverThreshold = 0;
    int nUnderThreshold = 0;
    bool bGammaEncode = true;
    BYTE bReserved[32] = {};
};
static_assert(sizeof(HistogramDist) == 4168, "HistogramDist layout");

// The one reference-counted record: what scripts receive from the histogram
// queries. It owns its HistogramDist. The count starts at 1; the release that
// takes it under 1 frees the histogram and the object itself.
class CHistogramDist {
public:
    CHistogramDist() : m_nRefCount(1), m_pHisdist(new (std::nothrow) HistogramDist) {}
    ~CHistogramDist() {
        delete m_pHisdist;
        m_pHisdist = nullptr;
    }
    CHistogramDist(const CHistogramDist&) = delete;
    CHistogramDist& operator=(const CHistogramDist&) = delete;

    int AddRef() { return ++m_nRefCount; }
    int Release() {
        const int count = --m_nRefCount;
        if (count < 1) {
            delete m_pHisdist;
            m_pHisdist = nullptr;
            m_nRefCount = -1;
            delete this;
            return 0;
        }
        return count;
    }

private:
    std::atomic<std::int32_t> m_nRefCount;

public:
    HistogramDist* m_pHisdist;
};
static_assert(sizeof(CHistogramDist) == 16, "CHistogramDist layout");

struct PerformanceResult {
    char pPerfName[64] = {};
    double dPerfTime = 0;
    PerfLevel ePerfLavel = PERF_LEVEL_RUN_ALL_TASK_BLOCK;
};
static_assert(sizeof(PerformanceResult) == 80, "PerformanceResult layout");

struct oclDevInfo {
    unsigned int nDeviceIdx = 0;
    unsigned long long llDeviceType = 0;
    int nDeviceVer = 0;
    char szDeviceName[1024] = {};
};
static_assert(sizeof(oclDevInfo) == 1048, "oclDevInfo layout");

struct VXHSLInfo {
    int nHueColor1 = 0;
    int nHueColor2 = 0;
    double dWeight1 = 0;
    double dWeight2 = 0;
};
static_assert(sizeof(VXHSLInfo) == 24, "VXHSLInfo layout");

struct VXPixelInfo {
    WORD nAlpha = 0;
    WORD nRed = 0;
    WORD nGreen = 0;
    WORD nBlue = 0;
};
static_assert(sizeof(VXPixelInfo) == 8, "VXPixelInfo layout");

struct VXWhiteBalanceInfo {
    int nTemp = 0;
    int nTint = 0;
};
static_assert(sizeof(VXWhiteBalanceInfo) == 8, "VXWhiteBalanceInfo layout");
