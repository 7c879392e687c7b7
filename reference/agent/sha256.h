// SHA-256, for the journal's digest of a curve's mapping table: a table of
// 65536 values is written as one short hex text rather than as numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace pcg {
namespace refagent {

class CSha256 {
public:
    CSha256();

    // Adds `size` bytes; may be called any number of times.
    void Update(const void* data, std::size_t size);

    // The digest of everything added, as 64 lower-case hex digits. The
    // object is spent afterwards.
    std::string FinishHex();

private:
    void m_fnCompress(const uint8_t* block);

    uint32_t m_state[8];
    uint8_t m_block[64];
    std::size_t m_nBlockUsed;
    uint64_t m_nTotalBytes;
};

// Digest of one block of bytes, as 64 lower-case hex digits.
std::string Sha256Hex(const void* data, std::size_t size);

}  // namespace refagent
}  // namespace pcg
