#include "facade/selection_buffers.h"

#include <cstring>
#include <new>

#include "events/py_gil_unlock_scope.h"

namespace pcg {
namespace facade {

BYTE* NewMaskArray(int64_t nWidth, int64_t nHeight) {
    if (nWidth < 0 || nHeight < 0) return nullptr;
    if (nHeight != 0 && nWidth > INT64_MAX / nHeight) return nullptr;
    const int64_t bytes = nWidth * nHeight;
    // A mask past 2 GiB is no picture a selection comes from (run lists reach
    // 32767 pixels each way); asked for by a script, it would take the host's
    // memory, so it is refused like an allocation that fails.
    if (bytes > kMaxMaskBytes) return nullptr;
    if (static_cast<uint64_t>(bytes) > SIZE_MAX) return nullptr;
    return new (std::nothrow) BYTE[static_cast<std::size_t>(bytes)]();
}

void FreeMaskArray(BYTE* pBuffer) {
    delete[] pBuffer;
}

BufferData NewMaskData(int nWidth, int nHeight) {
    BufferData data;
    data.pBuffer = NewMaskArray(nWidth, nHeight);
    if (data.pBuffer) {
        data.nWidth = nWidth;
        data.nHeight = nHeight;
        data.nStride = nWidth;
    }
    return data;
}

IImageBuffer* AllocateMaskBuffer(IBufferAllocator* pAllocator, int nWidth, int nHeight) {
    if (!pAllocator) return nullptr;
    IImageBuffer* pOutBuffer = nullptr;
    PyGilUnlockScope unlocked;
    pAllocator->allocateImageBuffer(&pOutBuffer, static_cast<uint32_t>(nWidth), static_cast<uint32_t>(nHeight), 1);
    return pOutBuffer;
}

void CopyIntoBuffer(IImageBuffer* pBuffer, const BYTE* pSource, std::size_t bytes) {
    if (!pBuffer) return;
    PyGilUnlockScope unlocked;
    uint8_t* pPixels = nullptr;
    int width = 0;
    int height = 0;
    pBuffer->LockBuffer(&pPixels, &width, &height);
    const int pixelBytes = pBuffer->GetPixelBytes();
    const std::size_t capacity = (width > 0 && height > 0 && pixelBytes > 0)
                                     ? static_cast<std::size_t>(width) * height * pixelBytes
                                     : 0;
    const std::size_t count = bytes < capacity ? bytes : capacity;
    if (pPixels && pSource && count) std::memcpy(pPixels, pSource, count);
    pBuffer->UnlockBuffer();
}

std::size_t ViewBytes(const BufferData& data) {
    if (data.nStride <= 0 || data.nHeight <= 0) return 0;
    return static_cast<std::size_t>(data.nStride) * data.nHeight;
}

}  // namespace facade
}  // namespace pcg
