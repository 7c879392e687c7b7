// CImageBuffer: the module's own IImageBuffer. Pixels are 16-byte aligned
// and carry eight pixels of slack behind the image, for vector loops that
// read a little past the last pixel.
#pragma once

#include <atomic>
#include <cstdint>

#include "imaging/image_buffer.h"
#include "platform/platform.h"

class CImageBuffer final : public IImageBuffer {
public:
    static constexpr std::size_t kAlignment = 16;
    static constexpr uint32_t kSlackPixels = 8;

    CImageBuffer();
    CImageBuffer(const CImageBuffer&) = delete;
    CImageBuffer& operator=(const CImageBuffer&) = delete;

    int AddRef() override;
    int Release() override;
    bool LockBuffer(uint8_t** ppBuffer, int* pnWidth, int* pnHeight) override;
    bool UnlockBuffer() override;
    int GetWidth() override;
    int GetHeight() override;
    int GetPixelBytes() override;

    // Replaces the pixels with (width * height + 8) * pixelBytes fresh,
    // uncleared bytes. On failure the buffer is left with zero size and no
    // pixels, and false comes back.
    bool Allocate(uint32_t nWidth, uint32_t nHeight, uint32_t nPixelBytes);

    // Bytes that Allocate asks for; false when the product does not fit in size_t.
    static bool AllocationSize(uint32_t nWidth, uint32_t nHeight, uint32_t nPixelBytes,
                               std::size_t* pnBytes);

private:
    ~CImageBuffer();
    void m_fnFreePixels();

    pcg::platform::CriticalSection m_lock;
    std::atomic<int32_t> m_nRefCount;
    int32_t m_nWidth;
    int32_t m_nHeight;
    int32_t m_nPixelBytes;
    uint8_t* m_pBuffer;
};

// Makes a buffer with one reference, or null when the pixels cannot be had.
IImageBuffer* CreateImageBuffer(uint32_t nWidth, uint32_t nHeight, uint32_t nPixelBytes);
