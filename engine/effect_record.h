// The effect record envelope: what every effect record that crosses to the
// render agent starts with, the three-pointer vector the records are made of,
// and the keyframe entries those vectors point to.
//
// Records, entries and vector storage are allocated by the module and freed by
// the agent, so both sides go through one heap: the C runtime's, through
// AllocEffectMemory / FreeEffectMemory below, on every platform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "platform/fault_injection.h"

namespace pcg {
namespace engine {

// ------------------------------------------------------------ shared heap

// Zero-filled block from the heap that the agent frees from. Null when the
// size is 0 or the heap is exhausted (or a test says it is).
inline void* AllocEffectMemory(std::size_t size) {
    return size == 0 || platform::AllocationFaultDue() ? nullptr : std::calloc(1, size);
}

inline void FreeEffectMemory(void* block) {
    std::free(block);
}

// A field of a contract record read at its byte offset, whatever the
// record's alignment.
template <typename T>
T ReadField(const void* record, std::size_t offset) {
    T value;
    std::memcpy(&value, static_cast<const unsigned char*>(record) + offset, sizeof(T));
    return value;
}

// ------------------------------------------------------- contract vector

// A growable array whose in-memory form is exactly three pointers: first
// element, one past the last element, one past the end of the storage; all
// null when empty. Zero-filled memory is an empty vector, so a record from
// AllocEffectMemory needs no construction. There is no destructor: whoever
// owns the vector calls Free (the agent for records, the caller for blocks
// passed for one call). Copying is refused because two copies would free the
// same storage.
template <typename T>
struct ContractVector {
    static_assert(std::is_trivially_copyable<T>::value, "storage is moved with memcpy");

    T* m_pFirst = nullptr;
    T* m_pLast = nullptr;
    T* m_pEnd = nullptr;

    ContractVector() = default;
    ContractVector(const ContractVector&) = delete;
    ContractVector& operator=(const ContractVector&) = delete;

    std::size_t size() const { return m_pFirst ? static_cast<std::size_t>(m_pLast - m_pFirst) : 0; }
    std::size_t capacity() const { return m_pFirst ? static_cast<std::size_t>(m_pEnd - m_pFirst) : 0; }
    bool empty() const { return size() == 0; }
    T* begin() const { return m_pFirst; }
    T* end() const { return m_pLast; }
    T& operator[](std::size_t index) const { return m_pFirst[index]; }

    // Makes room for at least `count` elements. False, with the vector
    // unchanged, when the heap refuses.
    bool reserve(std::size_t count) {
        if (count <= capacity()) {
            return true;
        }
        const std::size_t used = size();
        T* storage = static_cast<T*>(AllocEffectMemory(count * sizeof(T)));
        if (!storage) {
            return false;
        }
        if (used != 0) {
            std::memcpy(storage, m_pFirst, used * sizeof(T));
        }
        FreeEffectMemory(m_pFirst);
        m_pFirst = storage;
        m_pLast = storage + used;
        m_pEnd = storage + count;
        return true;
    }

    // False, with the vector unchanged, when the heap refuses.
    bool push_back(const T& value) {
        if (size() == capacity() && !reserve(capacity() == 0 ? 4 : capacity() * 2)) {
            return false;
        }
        *m_pLast++ = value;
        return true;
    }

    // Gives the storage back; the vector is empty afterwards. Elements that
    // own memory of their own are the owner's to free first.
    void Free() {
        FreeEffectMemory(m_pFirst);
        m_pFirst = m_pLast = m_pEnd = nullptr;
    }
};

static_assert(sizeof(ContractVector<void*>) == 24, "three pointers");
static_assert(offsetof(ContractVector<void*>, m_pFirst) == 0, "first element");
static_assert(offsetof(ContractVector<void*>, m_pLast) == 8, "one past the last element");
static_assert(offsetof(ContractVector<void*>, m_pEnd) == 16, "one past the end of storage");
static_assert(std::is_standard_layout<ContractVector<void*>>::value, "binary contract");

// -------------------------------------------------------- keyframe entry

// One point in time of a keyed setting. The interpolation follows the value
// and the entry is padded to eight bytes: 16 bytes for a 32-bit value, 24 for
// a double.
template <typename TValue>
struct KeyframeEntry {
    int64_t llTime;
    TValue value;
    int32_t nInterpolation;
};

// What the engine does between keyframes when the script does not say.
constexpr int32_t kDefaultInterpolation = 2;

static_assert(sizeof(KeyframeEntry<int32_t>) == 16, "integer entry");
static_assert(offsetof(KeyframeEntry<int32_t>, llTime) == 0, "integer entry time");
static_assert(offsetof(KeyframeEntry<int32_t>, value) == 8, "integer entry value");
static_assert(offsetof(KeyframeEntry<int32_t>, nInterpolation) == 12, "integer entry interpolation");
static_assert(sizeof(KeyframeEntry<float>) == 16, "float entry");
static_assert(offsetof(KeyframeEntry<float>, value) == 8, "float entry value");
static_assert(offsetof(KeyframeEntry<float>, nInterpolation) == 12, "float entry interpolation");
static_assert(sizeof(KeyframeEntry<double>) == 24, "double entry");
static_assert(offsetof(KeyframeEntry<double>, llTime) == 0, "double entry time");
static_assert(offsetof(KeyframeEntry<double>, value) == 8, "double entry value");
static_assert(offsetof(KeyframeEntry<double>, nInterpolation) == 16, "double entry interpolation");

// A keyframe vector: pointers to single entries, each from its own allocation.
template <typename TValue>
using KeyframeVector = ContractVector<KeyframeEntry<TValue>*>;

static_assert(sizeof(KeyframeVector<int32_t>) == 24, "three pointers");
static_assert(sizeof(KeyframeVector<double>) == 24, "three pointers");

// Allocates one entry and appends it. False, with nothing allocated and the
// vector unchanged, when the heap refuses.
template <typename TValue>
bool AppendKeyframe(KeyframeVector<TValue>& vector, int64_t time, TValue value,
                    int32_t interpolation = kDefaultInterpolation) {
    auto* entry = static_cast<KeyframeEntry<TValue>*>(AllocEffectMemory(sizeof(KeyframeEntry<TValue>)));
    if (!entry) {
        return false;
    }
    entry->llTime = time;
    entry->value = value;
    entry->nInterpolation = interpolation;
    if (!vector.push_back(entry)) {
        FreeEffectMemory(entry);
        return false;
    }
    return true;
}

// Frees every entry of a vector of plain entries and then its storage.
// Entries that own memory of their own are freed through the layout table
// (effect_layouts.h) instead.
template <typename TEntry>
void FreeEntryVector(ContractVector<TEntry*>& vector) {
    for (TEntry* entry : vector) {
        FreeEffectMemory(entry);
    }
    vector.Free();
}

// ---------------------------------------------------------------- header

// The head of every effect record. The second word is zero in every record
// except the black and white one, which keeps its switch there.
struct EffectRecordHeader {
    uint32_t nEffectVersion;
    uint32_t nHeaderWord;
};

static_assert(sizeof(EffectRecordHeader) == 8, "record header");
static_assert(offsetof(EffectRecordHeader, nEffectVersion) == 0, "effect version");
static_assert(offsetof(EffectRecordHeader, nHeaderWord) == 4, "header word");

// Where the keyframe vectors of a plain record begin, and the stride between them.
constexpr std::size_t kFirstVectorOffset = sizeof(EffectRecordHeader);
constexpr std::size_t kVectorSize = sizeof(ContractVector<void*>);

// Allocates a record of type TRecord (which starts with EffectRecordHeader)
// zero-filled, so every vector is empty, and writes the effect version.
template <typename TRecord>
TRecord* NewEffectRecord(uint32_t effectVersion) {
    static_assert(std::is_standard_layout<TRecord>::value, "records cross to the engine as they are");
    auto* record = static_cast<TRecord*>(AllocEffectMemory(sizeof(TRecord)));
    if (record) {
        reinterpret_cast<EffectRecordHeader*>(record)->nEffectVersion = effectVersion;
    }
    return record;
}

}  // namespace engine
}  // namespace pcg
