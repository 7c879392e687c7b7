// The shapes of the effect records by FUNCTION_ID: which keyframe vectors a
// record holds and what kind of entry each points to. The render agent uses
// this table to read a record it was given and to free it with everything
// that hangs on it. A new record kind is a new row in kEffectLayouts
// (effect_layouts.cpp); a new kind of entry is a new row in the entry table.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/effect_record.h"

namespace pcg {
namespace engine {

// Entry kinds are named by the letter the keyframe reader parses the value
// with, so a record's vectors read as a short word: "diiiiii" is the tone
// record. Larger entries (curve, colour replacement, colour splash) have
// letters of their own.
enum class EntryKind : char {
    Int32 = 'i',
    Float = 'f',
    Double = 'd',
    ColorReplace = 'r',  // a whole ColorReplaceSetting, 56-byte entry
    ColorSplash = 's',   // a whole colour splash setting, 72-byte entry
    Curve = 'c',         // a tone curve's mapping table, 24-byte entry owning its table
};

struct EntryLayout {
    EntryKind eKind;
    uint32_t nEntrySize;
    uint32_t nValueOffset;
    uint32_t nInterpolationOffset;
    // Frees what the entry owns besides itself; null when it owns nothing.
    void (*fnFreeOwned)(void* entry);
};

// Null for a letter that names no entry kind.
const EntryLayout* FindEntryLayout(char letter);

// How a record is built after its header.
enum class RecordForm {
    Plain,     // keyframe vectors back to back from offset 8
    Local,     // an ordered map of per-mask records, each with its vectors from offset 16
    ShowMask,  // the show-mask record: plain fields, nothing hangs on it
};

struct EffectLayout {
    uint32_t nFunctionID;
    const char* pszName;     // the record's name, for logs and the journal
    RecordForm eForm;
    const char* pszVectors;  // one entry-kind letter per vector, in record order
    uint32_t nRecordSize;    // for a local record: the size of each per-mask record
};

// Size of a plain record with `vectorCount` vectors.
constexpr uint32_t PlainRecordSize(std::size_t vectorCount) {
    return static_cast<uint32_t>(kFirstVectorOffset + vectorCount * kVectorSize);
}

// Null for a FUNCTION_ID without a known record.
const EffectLayout* FindEffectLayout(uint32_t functionID);

// Every row, for tests and tools.
const EffectLayout* EffectLayoutsBegin();
const EffectLayout* EffectLayoutsEnd();

// Number of vectors of a plain record.
std::size_t VectorCount(const EffectLayout& layout);

// The vector at `index` of a plain record, viewed with untyped element pointers.
ContractVector<void*>& RecordVector(EffectRecordHeader* record, std::size_t index);

struct MaskRecordHead;

// The vector at `index` of a per-mask record of a local record.
ContractVector<void*>& MaskRecordVector(MaskRecordHead* record, std::size_t index);

// Frees one per-mask record of a local layout with its entries and vector
// storage; returns the number of entries freed. A null record frees nothing.
std::size_t FreeMaskRecord(const EffectLayout& layout, MaskRecordHead* record);

// What freeing a record gave back, for the agent's accounting.
struct FreedRecord {
    std::size_t nEntries;          // keyframe entries freed
    std::size_t nMaskRecords = 0;  // per-mask records freed with a local record
};

// Frees a record by its layout: every entry with what it owns, each vector's
// storage, then the record. A null record frees nothing.
FreedRecord FreeEffectRecord(const EffectLayout& layout, EffectRecordHeader* record);

// Frees a record by its FUNCTION_ID. Without a known layout only the record's
// own block can be freed safely: whatever hangs on it cannot be found.
FreedRecord FreeEffectRecord(uint32_t functionID, EffectRecordHeader* record);

}  // namespace engine
}  // namespace pcg
