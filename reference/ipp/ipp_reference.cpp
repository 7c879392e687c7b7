// Reference resampling library: the 22 entry points of the module's
// primitives table, exported by name. The resize family runs on OpenCV
// (INTER_LINEAR for the linear method, INTER_AREA for super-sampling);
// the small helpers are plain loops.
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "imaging/ipp_contract.h"

#define PCG_IPP_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr uint32_t kStateMagic = 0x52534950u;  // "PISR"
constexpr int kInitBufferBytes = 16;
constexpr int kWorkBufferBytes = 64;
constexpr IppStatus kStsBorderErr = -225;
constexpr IppStatus kStsContextMatchErr = -13;

// What the init routines leave in the caller's resize block.
struct ResizeState {
    uint32_t nMagic;
    uint32_t bSuper;
    IppiSize srcSize;
    IppiSize dstSize;
};

bool Positive(IppiSize size) { return size.width > 0 && size.height > 0; }

IppStatus InitState(IppiSize srcSize, IppiSize dstSize, IppiResizeState* pState, bool bSuper) {
    if (!pState) return ippStsNullPtrErr;
    if (!Positive(srcSize) || !Positive(dstSize)) return ippStsSizeErr;
    ResizeState* pResize = reinterpret_cast<ResizeState*>(pState);
    pResize->nMagic = kStateMagic;
    pResize->bSuper = bSuper ? 1u : 0u;
    pResize->srcSize = srcSize;
    pResize->dstSize = dstSize;
    return ippStsNoErr;
}

// Resizes the whole source to the size given at init and writes the tile
// [dstOffset, dstOffset + dstSize) of that result to pDst.
IppStatus Resize(const Ipp8u* pSrc, int srcStep, Ipp8u* pDst, int dstStep, IppiPoint dstOffset,
                 IppiSize dstSize, const IppiResizeState* pState, const Ipp8u* pBuffer,
                 int nChannels, bool bSuper) {
    if (!pSrc || !pDst || !pState || !pBuffer) return ippStsNullPtrErr;
    const ResizeState* pResize = reinterpret_cast<const ResizeState*>(pState);
    if (pResize->nMagic != kStateMagic || (pResize->bSuper != 0) != bSuper)
        return kStsContextMatchErr;
    if (!Positive(dstSize) || dstOffset.x < 0 || dstOffset.y < 0 ||
        dstOffset.x + dstSize.width > pResize->dstSize.width ||
        dstOffset.y + dstSize.height > pResize->dstSize.height)
        return ippStsSizeErr;
    const int nType = CV_8UC(nChannels);
    const IppiSize src = pResize->srcSize;
    const IppiSize full = pResize->dstSize;
    if (srcStep < src.width * nChannels || dstStep < dstSize.width * nChannels)
        return ippStsSizeErr;
    const cv::Mat source(src.height, src.width, nType, const_cast<Ipp8u*>(pSrc),
                         static_cast<size_t>(srcStep));
    cv::Mat target(dstSize.height, dstSize.width, nType, pDst, static_cast<size_t>(dstStep));
    const int nMethod = bSuper ? cv::INTER_AREA : cv::INTER_LINEAR;
    const bool bWhole = dstOffset.x == 0 && dstOffset.y == 0 && dstSize.width == full.width &&
                        dstSize.height == full.height;
    try {
        if (bWhole) {
            // Same size and type: OpenCV writes straight into the caller's pixels.
            cv::resize(source, target, target.size(), 0, 0, nMethod);
        } else {
            cv::Mat whole;
            cv::resize(source, whole, cv::Size(full.width, full.height), 0, 0, nMethod);
            whole(cv::Rect(dstOffset.x, dstOffset.y, dstSize.width, dstSize.height)).copyTo(target);
        }
    } catch (const std::exception&) {
        return ippStsNoMemErr;
    }
    return ippStsNoErr;
}

bool ValidRoi(IppiSize roi) { return roi.width > 0 && roi.height > 0; }

}  // namespace

// ------------------------------------------------------------------ memory

PCG_IPP_EXPORT void* PCG_IPPAPI ippMalloc(int length) {
    if (length <= 0) return nullptr;
    return ::operator new[](static_cast<size_t>(length), std::align_val_t{64}, std::nothrow);
}

PCG_IPP_EXPORT void PCG_IPPAPI ippFree(void* ptr) {
    if (ptr) ::operator delete[](ptr, std::align_val_t{64});
}

PCG_IPP_EXPORT Ipp8u* PCG_IPPAPI ippsMalloc_8u(int len) {
    return static_cast<Ipp8u*>(ippMalloc(len));
}

PCG_IPP_EXPORT void PCG_IPPAPI ippsFree(void* ptr) { ippFree(ptr); }

// ------------------------------------------------------------------ resize

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiResizeGetSize_8u(IppiSize srcSize, IppiSize dstSize,
                                                         uint32_t interpolation,
                                                         Ipp32u antialiasing, int* pStateSize,
                                                         int* pInitBufSize) {
    if (!pStateSize || !pInitBufSize) return ippStsNullPtrErr;
    if (!Positive(srcSize) || !Positive(dstSize)) return ippStsSizeErr;
    // Every code other than super-sampling is served by the linear method.
    (void)interpolation;
    (void)antialiasing;
    *pStateSize = static_cast<int>(sizeof(ResizeState));
    *pInitBufSize = kInitBufferBytes;
    return ippStsNoErr;
}

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiResizeLinearInit_8u(IppiSize srcSize, IppiSize dstSize,
                                                            IppiResizeState* pState) {
    return InitState(srcSize, dstSize, pState, false);
}

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiResizeSuperInit_8u(IppiSize srcSize, IppiSize dstSize,
                                                           IppiResizeState* pState) {
    return InitState(srcSize, dstSize, pState, true);
}

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiResizeGetBufferSize_8u(const IppiResizeState* pState,
                                                               IppiSize dstSize,
                                                               Ipp32u numChannels, int* pBufSize) {
    if (!pState || !pBufSize) return ippStsNullPtrErr;
    if (reinterpret_cast<const ResizeState*>(pState)->nMagic != kStateMagic)
        return kStsContextMatchErr;
    if (!Positive(dstSize)) return ippStsSizeErr;
    if (numChannels != 1 && numChannels != 3 && numChannels != 4) return ippStsBadArgErr;
    *pBufSize = kWorkBufferBytes;
    return ippStsNoErr;
}

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiResizeGetBufSize(IppiRect srcRoi, IppiRect dstRoi,
                                                         int nChannel, int interpolation,
                                                         int* pSize) {
    if (!pSize) return ippStsNullPtrErr;
    if (srcRoi.width <= 0 || srcRoi.height <= 0 || dstRoi.width <= 0 || dstRoi.height <= 0)
        return ippStsSizeErr;
    if (nChannel != 1 && nChannel != 3 && nChannel != 4) return ippStsBadArgErr;
    (void)interpolation;
    *pSize = kWorkBufferBytes;
    return ippStsNoErr;
}

#define PCG_IPP_RESIZE_ENTRIES(channels)                                                           \
    PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiResizeLinear_8u_C##channels##R(                        \
        const Ipp8u* pSrc, Ipp32s srcStep, Ipp8u* pDst, Ipp32s dstStep, IppiPoint dstOffset,       \
        IppiSize dstSize, IppiBorderType border, const Ipp8u* pBorderValue,                        \
        const IppiResizeState* pState, Ipp8u* pBuffer) {                                           \
        (void)pBorderValue;                                                                        \
        if (border != ippBorderRepl) return kStsBorderErr;                                         \
        return Resize(pSrc, srcStep, pDst, dstStep, dstOffset, dstSize, pState, pBuffer, channels, \
                      false);                                                                      \
    }                                                                                              \
    PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiResizeSuper_8u_C##channels##R(                         \
        const Ipp8u* pSrc, Ipp32s srcStep, Ipp8u* pDst, Ipp32s dstStep, IppiPoint dstOffset,       \
        IppiSize dstSize, const IppiResizeState* pState, Ipp8u* pBuffer) {                         \
        return Resize(pSrc, srcStep, pDst, dstStep, dstOffset, dstSize, pState, pBuffer, channels, \
                      true);                                                                       \
    }

PCG_IPP_RESIZE_ENTRIES(1)
PCG_IPP_RESIZE_ENTRIES(3)
PCG_IPP_RESIZE_ENTRIES(4)

// ---------------------------------------------------------- plain helpers

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiCopy_8u_C4MR(const Ipp8u* pSrc, int srcStep, Ipp8u* pDst,
                                                     int dstStep, IppiSize roiSize,
                                                     const Ipp8u* pMask, int maskStep) {
    if (!pSrc || !pDst || !pMask) return ippStsNullPtrErr;
    if (!ValidRoi(roiSize)) return ippStsSizeErr;
    for (int y = 0; y < roiSize.height; ++y)
        for (int x = 0; x < roiSize.width; ++x)
            if (pMask[y * maskStep + x])
                std::memcpy(pDst + y * dstStep + 4 * x, pSrc + y * srcStep + 4 * x, 4);
    return ippStsNoErr;
}

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiSet_8u_C1R(Ipp8u value, Ipp8u* pDst, int dstStep,
                                                   IppiSize roiSize) {
    if (!pDst) return ippStsNullPtrErr;
    if (!ValidRoi(roiSize)) return ippStsSizeErr;
    for (int y = 0; y < roiSize.height; ++y)
        std::memset(pDst + y * dstStep, value, static_cast<size_t>(roiSize.width));
    return ippStsNoErr;
}

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiSet_8u_C4MR(const Ipp8u value[4], Ipp8u* pDst,
                                                    int dstStep, IppiSize roiSize,
                                                    const Ipp8u* pMask, int maskStep) {
    if (!value || !pDst || !pMask) return ippStsNullPtrErr;
    if (!ValidRoi(roiSize)) return ippStsSizeErr;
    for (int y = 0; y < roiSize.height; ++y)
        for (int x = 0; x < roiSize.width; ++x)
            if (pMask[y * maskStep + x]) std::memcpy(pDst + y * dstStep + 4 * x, value, 4);
    return ippStsNoErr;
}

// The caller provides the border around the ROI that the structuring element reaches.
PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiErode_8u_C1R(const Ipp8u* pSrc, int srcStep, Ipp8u* pDst,
                                                     int dstStep, IppiSize dstRoiSize,
                                                     const Ipp8u* pMask, IppiSize maskSize,
                                                     IppiPoint anchor) {
    if (!pSrc || !pDst || !pMask) return ippStsNullPtrErr;
    if (!ValidRoi(dstRoiSize) || !ValidRoi(maskSize)) return ippStsSizeErr;
    for (int y = 0; y < dstRoiSize.height; ++y) {
        for (int x = 0; x < dstRoiSize.width; ++x) {
            Ipp8u nMin = 255;
            for (int my = 0; my < maskSize.height; ++my)
                for (int mx = 0; mx < maskSize.width; ++mx)
                    if (pMask[my * maskSize.width + mx])
                        nMin = std::min(nMin, pSrc[(y + my - anchor.y) * srcStep + x + mx - anchor.x]);
            pDst[y * dstStep + x] = nMin;
        }
    }
    return ippStsNoErr;
}

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiXor_8u_C1IR(const Ipp8u* pSrc, int srcStep,
                                                    Ipp8u* pSrcDst, int srcDstStep,
                                                    IppiSize roiSize) {
    if (!pSrc || !pSrcDst) return ippStsNullPtrErr;
    if (!ValidRoi(roiSize)) return ippStsSizeErr;
    for (int y = 0; y < roiSize.height; ++y)
        for (int x = 0; x < roiSize.width; ++x) pSrcDst[y * srcDstStep + x] ^= pSrc[y * srcStep + x];
    return ippStsNoErr;
}

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiThreshold_LTVal_8u_C1R(const Ipp8u* pSrc, int srcStep,
                                                               Ipp8u* pDst, int dstStep,
                                                               IppiSize roiSize, Ipp8u threshold,
                                                               Ipp8u value) {
    if (!pSrc || !pDst) return ippStsNullPtrErr;
    if (!ValidRoi(roiSize)) return ippStsSizeErr;
    for (int y = 0; y < roiSize.height; ++y)
        for (int x = 0; x < roiSize.width; ++x) {
            const Ipp8u v = pSrc[y * srcStep + x];
            pDst[y * dstStep + x] = v < threshold ? value : v;
        }
    return ippStsNoErr;
}

PCG_IPP_EXPORT IppStatus PCG_IPPAPI ippiThreshold_GTVal_8u_C1IR(Ipp8u* pSrcDst, int srcDstStep,
                                                                IppiSize roiSize, Ipp8u threshold,
                                                                Ipp8u value) {
    if (!pSrcDst) return ippStsNullPtrErr;
    if (!ValidRoi(roiSize)) return ippStsSizeErr;
    for (int y = 0; y < roiSize.height; ++y)
        for (int x = 0; x < roiSize.width; ++x) {
            Ipp8u& v = pSrcDst[y * srcDstStep + x];
            if (v > threshold) v = value;
        }
    return ippStsNoErr;
}
