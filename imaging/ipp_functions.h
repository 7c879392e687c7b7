// The table of resampling entry points, bound by name at run time from the
// library beside the host. Every entry stays null until Load finds it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "imaging/ipp_contract.h"

struct IppFunctions {
    PFN_ippiCopy_8u_C4MR m_pIppiCopy_8u_C4MR = nullptr;
    PFN_ippiSet_8u_C1R m_pIppiSet_8u_C1R = nullptr;
    PFN_ippiSet_8u_C4MR m_pIppiSet_8u_C4MR = nullptr;
    PFN_ippiErode_8u_C1R m_pIppiErode_8u_C1R = nullptr;
    PFN_ippiXor_8u_C1IR m_pIppiXor_8u_C1IR = nullptr;
    PFN_ippiThreshold_LTVal_8u_C1R m_pIppiThreshold_LTVal_8u_C1R = nullptr;
    PFN_ippiThreshold_GTVal_8u_C1IR m_pIppiThreshold_GTVal_8u_C1IR = nullptr;
    PFN_ippiResizeGetBufferSize_8u m_pIppiResizeGetBufferSize_8u = nullptr;
    PFN_ippiResizeGetBufSize m_pIppiResizeGetBufSize = nullptr;
    PFN_ippiResizeGetSize_8u m_pIppiResizeGetSize_8u = nullptr;
    PFN_ippiResizeInit_8u m_pIppiResizeLinearInit_8u = nullptr;
    PFN_ippiResizeLinear_8u m_pIppiResizeLinear_8u_C1R = nullptr;
    PFN_ippiResizeLinear_8u m_pIppiResizeLinear_8u_C3R = nullptr;
    PFN_ippiResizeLinear_8u m_pIppiResizeLinear_8u_C4R = nullptr;
    PFN_ippiResizeInit_8u m_pIppiResizeSuperInit_8u = nullptr;
    PFN_ippiResizeSuper_8u m_pIppiResizeSuper_8u_C1R = nullptr;
    PFN_ippiResizeSuper_8u m_pIppiResizeSuper_8u_C3R = nullptr;
    PFN_ippiResizeSuper_8u m_pIppiResizeSuper_8u_C4R = nullptr;
    PFN_ippMalloc m_pIppMalloc = nullptr;
    PFN_ippFree m_pIppFree = nullptr;
    PFN_ippsMalloc_8u m_pIppsMalloc_8u = nullptr;
    PFN_ippsFree m_pIppsFree = nullptr;
    pcg::platform::ModuleHandle m_hLibrary = nullptr;

    IppFunctions() = default;
    IppFunctions(const IppFunctions&) = delete;
    IppFunctions& operator=(const IppFunctions&) = delete;
    ~IppFunctions() { Unload(); }

    // Binds the library at pszPath, or at "Kernel\Photo\IPPDLL.dll" beside the
    // host when pszPath is null. Does nothing once a library is held; a
    // library that cannot be loaded leaves the table empty, silently.
    void Load(const wchar_t* pszPath);
    // Frees the library and empties the table; nothing without a library.
    void Unload();

    static constexpr std::size_t kEntryCount = 22;
    // The names in table order, as the library exports them.
    static const char* const kEntryNames[kEntryCount];

private:
    // Calls visit(name, entry) for each entry in table order.
    template <typename Visit>
    void m_fnForEachEntry(Visit visit);
};

// The table is 22 entry pointers in a fixed order followed by the handle.
static_assert(offsetof(IppFunctions, m_pIppiCopy_8u_C4MR) == 0, "table order");
static_assert(offsetof(IppFunctions, m_pIppiResizeGetBufferSize_8u) == 7 * sizeof(void*), "table order");
static_assert(offsetof(IppFunctions, m_pIppiResizeSuper_8u_C4R) == 17 * sizeof(void*), "table order");
static_assert(offsetof(IppFunctions, m_pIppsFree) == 21 * sizeof(void*), "table order");
static_assert(offsetof(IppFunctions, m_hLibrary) == 22 * sizeof(void*), "handle follows the entries");

// Resizes nChannels-channel 8-bit pixels: super-sampling by area when
// nInterpolation is 8 (ippSuper), linear with edge replication otherwise.
// Answers an IPP status: -118 without the library, -5 for a channel count
// other than 1, 3 or 4, -4 when the work buffer cannot be had.
IppStatus ResizeBuffer_8u(const IppFunctions& functions, uint32_t nInterpolation, int nChannels,
                          const Ipp8u* pSrc, IppiSize srcSize, int nSrcStep, Ipp8u* pDst,
                          IppiSize dstSize, IppiPoint dstOffset, int nDstStep);
