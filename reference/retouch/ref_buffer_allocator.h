// The reference buffer allocator: real image buffers of the asked size and
// depth, each with one reference for the caller.
#pragma once

#include <atomic>
#include <cstdint>

#include "engine/buffer_allocator.h"

namespace pcg {
namespace refretouch {

class CRefBufferAllocator final : public IBufferAllocator {
public:
    CRefBufferAllocator();

    int32_t PCG_WINAPI QueryInterface(const pcg::engine::ComGuid& riid, void** ppvObject) override;
    uint32_t PCG_WINAPI AddRef() override;
    uint32_t PCG_WINAPI Release() override;
    int32_t PCG_WINAPI allocateImageBuffer(IImageBuffer** ppOutBuffer, uint32_t nWidth, uint32_t nHeight,
                                           int nPixelBytes) override;

private:
    ~CRefBufferAllocator();
    std::atomic<uint32_t> m_nRefs{1};
    int64_t m_nInstance;
};

}  // namespace refretouch
}  // namespace pcg
