#include "reference/agent/sha256.h"

#include <algorithm>
#include <cstring>

namespace pcg {
namespace refagent {
namespace {

constexpr uint32_t kRoundConstants[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2,
};

constexpr uint32_t kInitialState[8] = {
    0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a, 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19,
};

inline uint32_t RotateRight(uint32_t value, unsigned bits) {
    return (value >> bits) | (value << (32 - bits));
}

}  // namespace

CSha256::CSha256() : m_block{}, m_nBlockUsed(0), m_nTotalBytes(0) {
    std::memcpy(m_state, kInitialState, sizeof(m_state));
}

void CSha256::m_fnCompress(const uint8_t* block) {
    uint32_t schedule[64];
    for (int index = 0; index < 16; ++index) {
        schedule[index] = (uint32_t{block[index * 4]} << 24) | (uint32_t{block[index * 4 + 1]} << 16) |
                          (uint32_t{block[index * 4 + 2]} << 8) | uint32_t{block[index * 4 + 3]};
    }
    for (int index = 16; index < 64; ++index) {
        const uint32_t s0 = RotateRight(schedule[index - 15], 7) ^ RotateRight(schedule[index - 15], 18) ^
                            (schedule[index - 15] >> 3);
        const uint32_t s1 = RotateRight(schedule[index - 2], 17) ^ RotateRight(schedule[index - 2], 19) ^
                            (schedule[index - 2] >> 10);
        schedule[index] = schedule[index - 16] + s0 + schedule[index - 7] + s1;
    }
    uint32_t a = m_state[0], b = m_state[1], c = m_state[2], d = m_state[3];
    uint32_t e = m_state[4], f = m_state[5], g = m_state[6], h = m_state[7];
    for (int index = 0; index < 64; ++index) {
        const uint32_t s1 = RotateRight(e, 6) ^ RotateRight(e, 11) ^ RotateRight(e, 25);
        const uint32_t choose = (e & f) ^ (~e & g);
        const uint32_t t1 = h + s1 + choose + kRoundConstants[index] + schedule[index];
        const uint32_t s0 = RotateRight(a, 2) ^ RotateRight(a, 13) ^ RotateRight(a, 22);
        const uint32_t majority = (a & b) ^ (a & c) ^ (b & c);
        const uint32_t t2 = s0 + majority;
        h = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    m_state[0] += a;
    m_state[1] += b;
    m_state[2] += c;
    m_state[3] += d;
    m_state[4] += e;
    m_state[5] += f;
    m_state[6] += g;
    m_state[7] += h;
}

void CSha256::Update(const void* data, std::size_t size) {
    const auto* bytes = static_cast<const uint8_t*>(data);
    m_nTotalBytes += size;
    while (size > 0) {
        const std::size_t take = std::min(size, sizeof(m_block) - m_nBlockUsed);
        std::memcpy(m_block + m_nBlockUsed, bytes, take);
        m_nBlockUsed += take;
        bytes += take;
        size -= take;
        if (m_nBlockUsed == sizeof(m_block)) {
            m_fnCompress(m_block);
            m_nBlockUsed = 0;
        }
    }
}

std::string CSha256::FinishHex() {
    const uint64_t totalBits = m_nTotalBytes * 8;
    // A one bit, zeros up to 56 bytes into a block, then the length in bits,
    // big-endian.
    static const uint8_t kPadding[64] = {0x80};
    const std::size_t padding = m_nBlockUsed < 56 ? 56 - m_nBlockUsed : 120 - m_nBlockUsed;
    Update(kPadding, padding);
    uint8_t length[8];
    for (int index = 0; index < 8; ++index) {
        length[index] = static_cast<uint8_t>(totalBits >> (56 - 8 * index));
    }
    Update(length, sizeof(length));

    static const char kHex[] = "0123456789abcdef";
    std::string text;
    text.reserve(64);
    for (uint32_t word : m_state) {
        for (int shift = 28; shift >= 0; shift -= 4) {
            text += kHex[(word >> shift) & 0x0F];
        }
    }
    return text;
}

std::string Sha256Hex(const void* data, std::size_t size) {
    CSha256 hash;
    hash.Update(data, size);
    return hash.FinishHex();
}

}  // namespace refagent
}  // namespace pcg
