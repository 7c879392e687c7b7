// The image buffers the reference buffer allocator hands out: reference
// counted, rows packed, pixels freed on the last release, locked by a
// recursive lock from LockBuffer to UnlockBuffer.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "imaging/image_buffer.h"

namespace pcg {
namespace refretouch {

class CRefImageBuffer final : public IImageBuffer {
public:
    // Null when the size overflows or the memory is refused.
    static CRefImageBuffer* Create(uint32_t width, uint32_t height, int pixelBytes);

    int AddRef() override;
    int Release() override;
    bool LockBuffer(uint8_t** ppBuffer, int* pnWidth, int* pnHeight) override;
    bool UnlockBuffer() override;
    int GetWidth() override { return m_nWidth; }
    int GetHeight() override { return m_nHeight; }
    int GetPixelBytes() override { return m_nPixelBytes; }

private:
    CRefImageBuffer(int width, int height, int pixelBytes);
    ~CRefImageBuffer();

    std::atomic<int> m_nRefs{1};
    int m_nWidth;
    int m_nHeight;
    int m_nPixelBytes;
    std::vector<uint8_t> m_pixels;
    std::recursive_mutex m_lock;
};

}  // namespace refretouch
}  // namespace pcg
