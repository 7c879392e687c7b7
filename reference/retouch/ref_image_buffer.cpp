#include "reference/retouch/ref_image_buffer.h"

#include <limits>
#include <new>

#include "reference/retouch/retouch_state.h"

namespace pcg {
namespace refretouch {

namespace {
// The allocator's largest buffer, 4 GiB: a 16-bit 16K x 16K frame fits, and
// a script's absurd size is refused before it takes the host's memory.
constexpr uint64_t kMaxBufferBytes = uint64_t{1} << 32;
}  // namespace

CRefImageBuffer* CRefImageBuffer::Create(uint32_t width, uint32_t height, int pixelBytes) {
    const uint64_t bytes = static_cast<uint64_t>(width) * height * static_cast<uint64_t>(pixelBytes);
    if (width > static_cast<uint32_t>(std::numeric_limits<int>::max()) ||
        height > static_cast<uint32_t>(std::numeric_limits<int>::max()) || bytes > kMaxBufferBytes) {
        return nullptr;
    }
    try {
        return new CRefImageBuffer(static_cast<int>(width), static_cast<int>(height), pixelBytes);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

CRefImageBuffer::CRefImageBuffer(int width, int height, int pixelBytes)
    : m_nWidth(width),
      m_nHeight(height),
      m_nPixelBytes(pixelBytes),
      m_pixels(static_cast<size_t>(width) * height * pixelBytes, 0) {
    RetouchState::Instance().Add(Counter::BuffersLive, 1);
}

CRefImageBuffer::~CRefImageBuffer() { RetouchState::Instance().Add(Counter::BuffersLive, -1); }

int CRefImageBuffer::AddRef() { return ++m_nRefs; }

int CRefImageBuffer::Release() {
    const int refs = --m_nRefs;
    if (refs <= 0) {
        delete this;
        return 0;
    }
    return refs;
}

bool CRefImageBuffer::LockBuffer(uint8_t** ppBuffer, int* pnWidth, int* pnHeight) {
    m_lock.lock();
    if (ppBuffer != nullptr) *ppBuffer = m_pixels.empty() ? nullptr : m_pixels.data();
    if (pnWidth != nullptr) *pnWidth = m_nWidth;
    if (pnHeight != nullptr) *pnHeight = m_nHeight;
    return true;
}

bool CRefImageBuffer::UnlockBuffer() {
    m_lock.unlock();
    return true;
}

}  // namespace refretouch
}  // namespace pcg
