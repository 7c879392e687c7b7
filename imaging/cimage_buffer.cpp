#include "imaging/cimage_buffer.h"

#include <limits>
#include <new>

#include "platform/fault_injection.h"
#include "runtime/dump_log.h"

CImageBuffer::CImageBuffer()
    : m_nRefCount(1), m_nWidth(0), m_nHeight(0), m_nPixelBytes(0), m_pBuffer(nullptr) {}

CImageBuffer::~CImageBuffer() {
    m_nRefCount.store(-1);
    m_fnFreePixels();
}

int CImageBuffer::AddRef() {
    return m_nRefCount.fetch_add(1) + 1;
}

int CImageBuffer::Release() {
    const int32_t nCount = m_nRefCount.fetch_sub(1) - 1;
    if (nCount <= 0) {
        delete this;
        return 0;
    }
    return nCount;
}

bool CImageBuffer::LockBuffer(uint8_t** ppBuffer, int* pnWidth, int* pnHeight) {
    m_lock.Enter();
    // A null out-pointer is skipped rather than written through.
    if (ppBuffer) *ppBuffer = m_pBuffer;
    else DumpLog("CImageBuffer::LockBuffer Null Pointer : ppBuffer\n");
    if (pnWidth) *pnWidth = m_nWidth;
    else DumpLog("CImageBuffer::LockBuffer Null Pointer : pnWidth\n");
    if (pnHeight) *pnHeight = m_nHeight;
    else DumpLog("CImageBuffer::LockBuffer Null Pointer : pnHeight\n");
    return true;
}

bool CImageBuffer::UnlockBuffer() {
    m_lock.Leave();
    return true;
}

int CImageBuffer::GetWidth() { return m_nWidth; }
int CImageBuffer::GetHeight() { return m_nHeight; }
int CImageBuffer::GetPixelBytes() { return m_nPixelBytes; }

bool CImageBuffer::AllocationSize(uint32_t nWidth, uint32_t nHeight, uint32_t nPixelBytes,
                                  std::size_t* pnBytes) {
    const std::size_t nMax = std::numeric_limits<std::size_t>::max();
    const std::size_t nPixels = static_cast<std::size_t>(nWidth);
    if (nHeight != 0 && nPixels > nMax / nHeight) return false;
    const std::size_t nArea = nPixels * nHeight;
    if (nArea > nMax - kSlackPixels) return false;
    const std::size_t nWithSlack = nArea + kSlackPixels;
    if (nPixelBytes != 0 && nWithSlack > nMax / nPixelBytes) return false;
    *pnBytes = nWithSlack * nPixelBytes;
    return true;
}

bool CImageBuffer::Allocate(uint32_t nWidth, uint32_t nHeight, uint32_t nPixelBytes) {
    m_fnFreePixels();
    m_nWidth = m_nHeight = m_nPixelBytes = 0;
    std::size_t nBytes = 0;
    // Sizes that the int fields cannot hold are refused like a failed allocation.
    const uint32_t nIntMax = static_cast<uint32_t>(std::numeric_limits<int32_t>::max());
    if (!AllocationSize(nWidth, nHeight, nPixelBytes, &nBytes) || nWidth > nIntMax ||
        nHeight > nIntMax || nPixelBytes > nIntMax)
        return false;
    m_pBuffer = static_cast<uint8_t*>(
        ::operator new[](nBytes, std::align_val_t{kAlignment}, std::nothrow));
    if (!m_pBuffer) return false;
    m_nWidth = static_cast<int32_t>(nWidth);
    m_nHeight = static_cast<int32_t>(nHeight);
    m_nPixelBytes = static_cast<int32_t>(nPixelBytes);
    return true;
}

void CImageBuffer::m_fnFreePixels() {
    if (m_pBuffer) ::operator delete[](m_pBuffer, std::align_val_t{kAlignment});
    m_pBuffer = nullptr;
}

IImageBuffer* CreateImageBuffer(uint32_t nWidth, uint32_t nHeight, uint32_t nPixelBytes) {
    // Tests make this creation fail as a full heap would.
    if (pcg::platform::SiteFaultDue("image-buffer")) return nullptr;
    CImageBuffer* pBuffer = new (std::nothrow) CImageBuffer();
    if (!pBuffer) return nullptr;
    if (!pBuffer->Allocate(nWidth, nHeight, nPixelBytes)) {
        pBuffer->Release();
        return nullptr;
    }
    return pBuffer;
}
