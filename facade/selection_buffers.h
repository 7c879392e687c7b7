// Plain mask arrays and the allocator's buffers, as the facade's selection
// members use them. Mask arrays are owned by whoever allocated them and
// freed with FreeMaskArray.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/buffer_allocator.h"
#include "engine/records/image_records.h"
#include "imaging/image_buffer.h"

namespace pcg {
namespace facade {

// width * height bytes, all 0, or null when the size is negative or the
// memory cannot be had. A size of 0 gives a valid empty array.
constexpr int64_t kMaxMaskBytes = int64_t(1) << 31;
BYTE* NewMaskArray(int64_t nWidth, int64_t nHeight);
void FreeMaskArray(BYTE* pBuffer);
// A view over a new array of width x height with the stride equal to the
// width; pBuffer null when NewMaskArray refuses.
BufferData NewMaskData(int nWidth, int nHeight);

// A new 1-byte buffer from the allocator, with the interpreter lock given
// up around the call; null when the allocator gives none, whatever its code.
IImageBuffer* AllocateMaskBuffer(IBufferAllocator* pAllocator, int nWidth, int nHeight);
// Copies up to `bytes` bytes into the buffer's pixels (never past them),
// with the buffer locked and the interpreter lock given up.
void CopyIntoBuffer(IImageBuffer* pBuffer, const BYTE* pSource, std::size_t bytes);

// The bytes a view covers: nStride * nHeight, 0 for anything negative.
std::size_t ViewBytes(const BufferData& data);

}  // namespace facade
}  // namespace pcg
