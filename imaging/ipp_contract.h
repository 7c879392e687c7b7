// The resampling library's binary contract: its scalar types, status codes
// and the signatures of the 22 entry points that the module binds by name
// from "Kernel\Photo\IPPDLL.dll". The reference resampler implements the
// same declarations.
#pragma once

#include <cstdint>

#include "platform/platform.h"

#define PCG_IPPAPI PCG_WINAPI

using Ipp8u = uint8_t;
using Ipp32s = int32_t;
using Ipp32u = uint32_t;
using IppStatus = int;

struct IppiSize {
    int width;
    int height;
};
struct IppiPoint {
    int x;
    int y;
};
struct IppiRect {
    int x;
    int y;
    int width;
    int height;
};
static_assert(sizeof(IppiSize) == 8 && sizeof(IppiPoint) == 8 && sizeof(IppiRect) == 16,
              "IPP geometry records are plain ints");

// The resize state that the init routines fill in; opaque to the module,
// which only sizes and allocates it.
struct IppiResizeState;

// Status values that the module reads or produces.
constexpr IppStatus ippStsNoErr = 0;
constexpr IppStatus ippStsNoMemErr = -4;
constexpr IppStatus ippStsBadArgErr = -5;
constexpr IppStatus ippStsSizeErr = -6;
constexpr IppStatus ippStsNullPtrErr = -8;
constexpr IppStatus ippStsRectErr = -57;
constexpr IppStatus ippStsCoeffErr = -58;
// What ResizeBuffer_8u answers when the library or an entry it needs is missing.
constexpr IppStatus ippStsLibraryMissing = -118;

// Interpolation codes of the resize family.
constexpr uint32_t ippLinear = 2;
constexpr uint32_t ippSuper = 8;
// Border type of the linear routines: repeat the edge pixel.
constexpr int ippBorderRepl = 1;

using IppiBorderType = int;

using PFN_ippiCopy_8u_C4MR = IppStatus(PCG_IPPAPI*)(const Ipp8u* pSrc, int srcStep, Ipp8u* pDst,
                                                    int dstStep, IppiSize roiSize,
                                                    const Ipp8u* pMask, int maskStep);
using PFN_ippiSet_8u_C1R = IppStatus(PCG_IPPAPI*)(Ipp8u value, Ipp8u* pDst, int dstStep,
                                                  IppiSize roiSize);
using PFN_ippiSet_8u_C4MR = IppStatus(PCG_IPPAPI*)(const Ipp8u value[4], Ipp8u* pDst, int dstStep,
                                                   IppiSize roiSize, const Ipp8u* pMask,
                                                   int maskStep);
using PFN_ippiErode_8u_C1R = IppStatus(PCG_IPPAPI*)(const Ipp8u* pSrc, int srcStep, Ipp8u* pDst,
                                                    int dstStep, IppiSize dstRoiSize,
                                                    const Ipp8u* pMask, IppiSize maskSize,
                                                    IppiPoint anchor);
using PFN_ippiXor_8u_C1IR = IppStatus(PCG_IPPAPI*)(const Ipp8u* pSrc, int srcStep,
                                                   Ipp8u* pSrcDst, int srcDstStep,
                                                   IppiSize roiSize);
using PFN_ippiThreshold_LTVal_8u_C1R = IppStatus(PCG_IPPAPI*)(const Ipp8u* pSrc, int srcStep,
                                                              Ipp8u* pDst, int dstStep,
                                                              IppiSize roiSize, Ipp8u threshold,
                                                              Ipp8u value);
using PFN_ippiThreshold_GTVal_8u_C1IR = IppStatus(PCG_IPPAPI*)(Ipp8u* pSrcDst, int srcDstStep,
                                                               IppiSize roiSize, Ipp8u threshold,
                                                               Ipp8u value);
using PFN_ippiResizeGetBufferSize_8u = IppStatus(PCG_IPPAPI*)(const IppiResizeState* pState,
                                                              IppiSize dstSize, Ipp32u numChannels,
                                                              int* pBufSize);
using PFN_ippiResizeGetBufSize = IppStatus(PCG_IPPAPI*)(IppiRect srcRoi, IppiRect dstRoi,
                                                        int nChannel, int interpolation,
                                                        int* pSize);
using PFN_ippiResizeGetSize_8u = IppStatus(PCG_IPPAPI*)(IppiSize srcSize, IppiSize dstSize,
                                                        uint32_t interpolation,
                                                        Ipp32u antialiasing, int* pStateSize,
                                                        int* pInitBufSize);
using PFN_ippiResizeInit_8u = IppStatus(PCG_IPPAPI*)(IppiSize srcSize, IppiSize dstSize,
                                                     IppiResizeState* pState);
using PFN_ippiResizeLinear_8u = IppStatus(PCG_IPPAPI*)(const Ipp8u* pSrc, Ipp32s srcStep,
                                                       Ipp8u* pDst, Ipp32s dstStep,
                                                       IppiPoint dstOffset, IppiSize dstSize,
                                                       IppiBorderType border,
                                                       const Ipp8u* pBorderValue,
                                                       const IppiResizeState* pState,
                                                       Ipp8u* pBuffer);
using PFN_ippiResizeSuper_8u = IppStatus(PCG_IPPAPI*)(const Ipp8u* pSrc, Ipp32s srcStep,
                                                      Ipp8u* pDst, Ipp32s dstStep,
                                                      IppiPoint dstOffset, IppiSize dstSize,
                                                      const IppiResizeState* pState,
                                                      Ipp8u* pBuffer);
using PFN_ippMalloc = void*(PCG_IPPAPI*)(int length);
using PFN_ippFree = void(PCG_IPPAPI*)(void* ptr);
using PFN_ippsMalloc_8u = Ipp8u*(PCG_IPPAPI*)(int len);
using PFN_ippsFree = void(PCG_IPPAPI*)(void* ptr);
