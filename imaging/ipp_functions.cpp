#include "imaging/ipp_functions.h"

#include <initializer_list>
#include <string>
#include <type_traits>

#include "runtime/dump_log.h"

const char* const IppFunctions::kEntryNames[IppFunctions::kEntryCount] = {
    "ippiCopy_8u_C4MR",           "ippiSet_8u_C1R",
    "ippiSet_8u_C4MR",            "ippiErode_8u_C1R",
    "ippiXor_8u_C1IR",            "ippiThreshold_LTVal_8u_C1R",
    "ippiThreshold_GTVal_8u_C1IR", "ippiResizeGetBufferSize_8u",
    "ippiResizeGetBufSize",       "ippiResizeGetSize_8u",
    "ippiResizeLinearInit_8u",    "ippiResizeLinear_8u_C1R",
    "ippiResizeLinear_8u_C3R",    "ippiResizeLinear_8u_C4R",
    "ippiResizeSuperInit_8u",     "ippiResizeSuper_8u_C1R",
    "ippiResizeSuper_8u_C3R",     "ippiResizeSuper_8u_C4R",
    "ippMalloc",                  "ippFree",
    "ippsMalloc_8u",              "ippsFree",
};

template <typename Visit>
void IppFunctions::m_fnForEachEntry(Visit visit) {
    const char* const* ppName = kEntryNames;
    visit(*ppName++, m_pIppiCopy_8u_C4MR);
    visit(*ppName++, m_pIppiSet_8u_C1R);
    visit(*ppName++, m_pIppiSet_8u_C4MR);
    visit(*ppName++, m_pIppiErode_8u_C1R);
    visit(*ppName++, m_pIppiXor_8u_C1IR);
    visit(*ppName++, m_pIppiThreshold_LTVal_8u_C1R);
    visit(*ppName++, m_pIppiThreshold_GTVal_8u_C1IR);
    visit(*ppName++, m_pIppiResizeGetBufferSize_8u);
    visit(*ppName++, m_pIppiResizeGetBufSize);
    visit(*ppName++, m_pIppiResizeGetSize_8u);
    visit(*ppName++, m_pIppiResizeLinearInit_8u);
    visit(*ppName++, m_pIppiResizeLinear_8u_C1R);
    visit(*ppName++, m_pIppiResizeLinear_8u_C3R);
    visit(*ppName++, m_pIppiResizeLinear_8u_C4R);
    visit(*ppName++, m_pIppiResizeSuperInit_8u);
    visit(*ppName++, m_pIppiResizeSuper_8u_C1R);
    visit(*ppName++, m_pIppiResizeSuper_8u_C3R);
    visit(*ppName++, m_pIppiResizeSuper_8u_C4R);
    visit(*ppName++, m_pIppMalloc);
    visit(*ppName++, m_pIppFree);
    visit(*ppName++, m_pIppsMalloc_8u);
    visit(*ppName++, m_pIppsFree);
}

void IppFunctions::Load(const wchar_t* pszPath) {
    if (m_hLibrary) return;
    std::wstring path;
    if (pszPath) {
        path = pszPath;
    } else {
        path = pcg::platform::JoinHostPath(pcg::platform::HostDirectory(),
                                           L"Kernel\\Photo\\IPPDLL.dll");
    }
    m_hLibrary = pcg::platform::LoadModule(path.c_str());
    if (!m_hLibrary) return;
    pcg::platform::ModuleHandle hLibrary = m_hLibrary;
    m_fnForEachEntry([hLibrary](const char* pszName, auto& entry) {
        entry = reinterpret_cast<std::decay_t<decltype(entry)>>(
            pcg::platform::FindSymbol(hLibrary, pszName));
    });
}

void IppFunctions::Unload() {
    if (!m_hLibrary) return;
    pcg::platform::UnloadModule(m_hLibrary);
    m_hLibrary = nullptr;
    m_fnForEachEntry([](const char*, auto& entry) { entry = nullptr; });
}

IppStatus ResizeBuffer_8u(const IppFunctions& f, uint32_t nInterpolation, int nChannels,
                          const Ipp8u* pSrc, IppiSize srcSize, int nSrcStep, Ipp8u* pDst,
                          IppiSize dstSize, IppiPoint dstOffset, int nDstStep) {
    if (!f.m_hLibrary || !f.m_pIppiResizeGetSize_8u || !f.m_pIppsMalloc_8u ||
        !f.m_pIppiResizeSuperInit_8u || !f.m_pIppiResizeLinearInit_8u ||
        !f.m_pIppiResizeGetBufferSize_8u || !f.m_pIppsFree)
        return ippStsLibraryMissing;
    if (nChannels != 1 && nChannels != 3 && nChannels != 4) return ippStsBadArgErr;

    int nStateSize = 0;
    int nInitSize = 0;
    IppStatus status = f.m_pIppiResizeGetSize_8u(srcSize, dstSize, nInterpolation, 0,
                                                 &nStateSize, &nInitSize);
    if (status != ippStsNoErr) return status;

    const bool bSuper = nInterpolation == ippSuper;
    Ipp8u* pState = f.m_pIppsMalloc_8u(nStateSize);
    // Neither method reads the init buffer; it is had and given back all the same.
    Ipp8u* pInit = f.m_pIppsMalloc_8u(nInitSize);
    Ipp8u* pWork = nullptr;
    if (pState && pInit) {
        IppiResizeState* pResize = reinterpret_cast<IppiResizeState*>(pState);
        status = bSuper ? f.m_pIppiResizeSuperInit_8u(srcSize, dstSize, pResize)
                        : f.m_pIppiResizeLinearInit_8u(srcSize, dstSize, pResize);
        int nWorkSize = 0;
        if (status == ippStsNoErr)
            status = f.m_pIppiResizeGetBufferSize_8u(pResize, dstSize,
                                                     static_cast<Ipp32u>(nChannels), &nWorkSize);
        if (status == ippStsNoErr) {
            pWork = f.m_pIppsMalloc_8u(nWorkSize);
            if (!pWork) status = ippStsNoMemErr;
        }
        if (status == ippStsNoErr) {
            const PFN_ippiResizeSuper_8u superRoutines[] = {
                f.m_pIppiResizeSuper_8u_C1R, f.m_pIppiResizeSuper_8u_C3R,
                f.m_pIppiResizeSuper_8u_C4R};
            const PFN_ippiResizeLinear_8u linearRoutines[] = {
                f.m_pIppiResizeLinear_8u_C1R, f.m_pIppiResizeLinear_8u_C3R,
                f.m_pIppiResizeLinear_8u_C4R};
            const int nSlot = nChannels == 1 ? 0 : nChannels == 3 ? 1 : 2;
            if (bSuper && superRoutines[nSlot]) {
                status = superRoutines[nSlot](pSrc, nSrcStep, pDst, nDstStep, dstOffset, dstSize,
                                              pResize, pWork);
            } else if (!bSuper && linearRoutines[nSlot]) {
                status = linearRoutines[nSlot](pSrc, nSrcStep, pDst, nDstStep, dstOffset, dstSize,
                                               ippBorderRepl, nullptr, pResize, pWork);
            } else {
                // The routine itself was not exported: refuse rather than call through null.
                DumpLog("ResizeBuffer_8u Null Pointer : %s\n",
                        IppFunctions::kEntryNames[(bSuper ? 15 : 11) + nSlot]);
                status = ippStsLibraryMissing;
            }
        }
    }
    for (Ipp8u* pBlock : {pInit, pState, pWork})
        if (pBlock) f.m_pIppsFree(pBlock);
    return status;
}
