#include "selection/magic_selection.h"

#include "engine/result_codes.h"
#include "runtime/dump_log.h"

CMagicSelection::CMagicSelection() : m_pMagicSelection(nullptr) {}

int32_t CMagicSelection::Initialize(ZenodorLoader* pZenodorLoader, BufferData bufferData) {
    if (!pZenodorLoader) {
        DumpLog("CMagicSelection::Initialize Null Pointer : pZenodorLoader\n");
        return pcg::kResultPointer;
    }
    void* pObject = nullptr;
    const int32_t hr = pZenodorLoader->CreateMagicSelection(&pObject);
    if (!pObject) return hr < 0 ? hr : pcg::kResultPointer;
    m_pMagicSelection = static_cast<IMagicSelection*>(pObject);

    MagicImage image = {};
    image.nWidth = bufferData.nWidth;
    image.nHeight = bufferData.nHeight;
    image.nChannels = 3;
    image.nStride = bufferData.nStride;
    image.nReserved = 0;
    image.pPixels = bufferData.pBuffer;
    return m_pMagicSelection->Initialize(&image, nullptr);
}

int32_t CMagicSelection::Uninitialize(ZenodorLoader* pZenodorLoader) {
    if (!pZenodorLoader) {
        DumpLog("CMagicSelection::Uninitialize Null Pointer : pZenodorLoader\n");
        return pcg::kResultPointer;
    }
    if (!m_pMagicSelection) {
        DumpLog("CMagicSelection::Uninitialize Null Pointer : m_pMagicSelection\n");
        return pcg::kResultPointer;
    }
    m_pMagicSelection->Uninitialize();
    void* pObject = m_pMagicSelection;
    // The loader logs a missing release entry; the object is then left to
    // the library, and the pointer is let go all the same.
    pZenodorLoader->ReleaseMagicSelection(&pObject);
    m_pMagicSelection = nullptr;
    return pcg::kResultOk;
}

int32_t CMagicSelection::MagicSelect(MagicStroke stroke, SelectionResult& result) {
    if (!m_pMagicSelection) {
        DumpLog("CMagicSelection::MagicSelect Null Pointer : m_pMagicSelection\n");
        return pcg::kResultPointer;
    }
    if (!result.mask.pBuffer) {
        DumpLog("CMagicSelection::MagicSelect Null Pointer : result.mask.pBuffer\n");
        return pcg::kResultPointer;
    }
    MagicMask mask = {};
    mask.nWidth = result.mask.nWidth;
    mask.nHeight = result.mask.nHeight;
    mask.nStride = result.mask.nStride;
    mask.nReserved = 0;
    mask.pMask = result.mask.pBuffer;
    mask.llReserved = 0;
    return m_pMagicSelection->MagicSelect(&stroke, &mask, &result);
}

int32_t CMagicSelection::ClearStrokeHistory() {
    if (!m_pMagicSelection) {
        DumpLog("CMagicSelection::ClearStrokeHistory Null Pointer : m_pMagicSelection\n");
        return pcg::kResultPointer;
    }
    return m_pMagicSelection->ClearStrokeHistory();
}

int32_t CMagicSelection::GetCurrentTimeStamp(int64_t& nTimeStamp) {
    if (!m_pMagicSelection) {
        DumpLog("CMagicSelection::GetCurrentTimeStamp Null Pointer : m_pMagicSelection\n");
        return pcg::kResultPointer;
    }
    return m_pMagicSelection->GetCurrentTimeStamp(&nTimeStamp);
}

int32_t CMagicSelection::Undo(int nStep) {
    if (!m_pMagicSelection) {
        DumpLog("CMagicSelection::Undo Null Pointer : m_pMagicSelection\n");
        return pcg::kResultPointer;
    }
    return m_pMagicSelection->Undo(nStep);
}

int32_t CMagicSelection::Redo(int nStep) {
    if (!m_pMagicSelection) {
        DumpLog("CMagicSelection::Redo Null Pointer : m_pMagicSelection\n");
        return pcg::kResultPointer;
    }
    return m_pMagicSelection->Redo(nStep);
}
