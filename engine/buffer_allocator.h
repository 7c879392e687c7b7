// The buffer allocator of the image engine: a COM object of class
// CLSID_BufferAllocator reached through IID_IBufferAllocator. It hands out
// the engine's own image buffers; consumers use them through IImageBuffer
// only and never assume the module's CImageBuffer.
#pragma once

#include <cstdint>

#include "engine/com_contract.h"

class IImageBuffer;

namespace pcg {
namespace engine {
// {62ECF08B-8B33-4DDB-AF2E-1DA140458C85}
constexpr ComGuid CLSID_BufferAllocator = {0x62ECF08B, 0x8B33, 0x4DDB, {0xAF, 0x2E, 0x1D, 0xA1, 0x40, 0x45, 0x8C, 0x85}};
// {3D770EB3-5033-4E60-9B6B-06229CA25633}
constexpr ComGuid IID_IBufferAllocator = {0x3D770EB3, 0x5033, 0x4E60, {0x9B, 0x6B, 0x06, 0x22, 0x9C, 0xA2, 0x56, 0x33}};
}  // namespace engine
}  // namespace pcg

class IBufferAllocator : public IComUnknown {
public:
    // A new buffer of nWidth x nHeight pixels of nPixelBytes (VX_PIXEL_*)
    // with one reference for the caller in *ppOutBuffer; negative on failure.
    // The caller sets *ppOutBuffer to null first and treats a null buffer as
    // a failure whatever the code.
    virtual int32_t PCG_WINAPI allocateImageBuffer(IImageBuffer** ppOutBuffer, uint32_t nWidth, uint32_t nHeight,
                                                   int nPixelBytes) = 0;

protected:
    ~IBufferAllocator() = default;
};
static_assert(sizeof(IBufferAllocator) == sizeof(void*), "a COM interface is a bare table pointer");
