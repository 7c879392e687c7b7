// Byte searches over one mask row, sixteen bytes at a time where SSE2 is
// there. They never read outside [nFrom, nTo).
#pragma once

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace pcg {
namespace scan {

// Bit i set when byte i of the 16 at p is zero.
#if defined(__SSE2__)
inline unsigned ZeroBits16(const uint8_t* p) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_setzero_si128())));
}
#endif

// Bit i set when byte i of the 64 at p is not 0.
inline uint64_t NonZeroBits64(const uint8_t* p) {
#if defined(__SSE2__)
    uint64_t bits = 0;
    for (int k = 0; k < 4; ++k)
        bits |= static_cast<uint64_t>(~ZeroBits16(p + 16 * k) & 0xFFFFu) << (16 * k);
    return bits;
#else
    uint64_t bits = 0;
    for (int i = 0; i < 64; ++i) bits |= static_cast<uint64_t>(p[i] != 0) << i;
    return bits;
#endif
}

// First index in [nFrom, nTo) whose byte is not 0, or nTo.
inline int FindNonZero(const uint8_t* pRow, int nFrom, int nTo) {
    int i = nFrom;
#if defined(__SSE2__)
    for (; i + 16 <= nTo; i += 16) {
        const unsigned bits = ~ZeroBits16(pRow + i) & 0xFFFFu;
        if (bits) return i + __builtin_ctz(bits);
    }
#endif
    for (; i < nTo; ++i)
        if (pRow[i]) return i;
    return nTo;
}

// Last index in [nFrom, nTo) whose byte is not 0, or nFrom - 1.
inline int FindLastNonZero(const uint8_t* pRow, int nFrom, int nTo) {
    int i = nTo;
#if defined(__SSE2__)
    for (; i - 16 >= nFrom; i -= 16) {
        const unsigned bits = ~ZeroBits16(pRow + i - 16) & 0xFFFFu;
        if (bits) return i - 16 + (31 - __builtin_clz(bits));
    }
#endif
    for (; i > nFrom; --i)
        if (pRow[i - 1]) return i - 1;
    return nFrom - 1;
}

}  // namespace scan
}  // namespace pcg
