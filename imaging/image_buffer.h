// IImageBuffer: the reference-counted pixel object that the module, the
// engines and the scripts pass to one another. Rows are always packed: the
// stride is GetWidth() * GetPixelBytes(). The table order below is binding,
// since engine-made buffers are used through it.
#pragma once

#include <cstdint>

class IImageBuffer {
public:
    virtual int AddRef() = 0;
    // At a count of zero or below the object destroys itself and 0 comes back.
    virtual int Release() = 0;
    // Enters the buffer's recursive lock and hands out the pixels and size.
    virtual bool LockBuffer(uint8_t** ppBuffer, int* pnWidth, int* pnHeight) = 0;
    virtual bool UnlockBuffer() = 0;
    virtual int GetWidth() = 0;
    virtual int GetHeight() = 0;
    virtual int GetPixelBytes() = 0;

protected:
    // Lifetime goes through Release only.
    ~IImageBuffer() = default;
};

static_assert(sizeof(IImageBuffer) == sizeof(void*), "IImageBuffer is a bare table pointer");
