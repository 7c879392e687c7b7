// Reads typed values off the front of a fuzzer's input; past the end every
// value is 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

class FuzzInput {
public:
    FuzzInput(const uint8_t* data, std::size_t size) : m_pData(data), m_nSize(size) {}

    template <typename T>
    T Take() {
        T value{};
        const std::size_t count = m_nSize < sizeof(T) ? m_nSize : sizeof(T);
        std::memcpy(&value, m_pData, count);
        m_pData += count;
        m_nSize -= count;
        return value;
    }

    const uint8_t* Rest() const { return m_pData; }
    std::size_t RestSize() const { return m_nSize; }

private:
    const uint8_t* m_pData;
    std::size_t m_nSize;
};
