#include "engine/effect_layouts.h"

#include <cstring>
#include <iterator>

#include "engine/constants.h"

namespace pcg {
namespace engine {

namespace {

template <typename TValue>
constexpr EntryLayout PlainEntry(EntryKind kind) {
    return EntryLayout{kind, sizeof(KeyframeEntry<TValue>), offsetof(KeyframeEntry<TValue>, value),
                       offsetof(KeyframeEntry<TValue>, nInterpolation), nullptr};
}

const EntryLayout kEntryLayouts[] = {
    PlainEntry<int32_t>(EntryKind::Int32),
    PlainEntry<float>(EntryKind::Float),
    PlainEntry<double>(EntryKind::Double),
};

constexpr std::size_t Length(const char* text) {
    return *text ? 1 + Length(text + 1) : 0;
}

// One row per record of keyframe vectors. The letters are the value types of
// the record's keys in record order.
constexpr EffectLayout PlainRecord(FUNCTION_ID function, const char* name, const char* vectors) {
    return EffectLayout{static_cast<uint32_t>(function), name, RecordForm::Plain, vectors,
                        PlainRecordSize(Length(vectors))};
}

constexpr EffectLayout kEffectLayouts[] = {
    PlainRecord(FUNCTION_SET_BLACKWHITE, "black and white", "iiiiiiii"),
    PlainRecord(FUNCTION_SET_WB, "white balance", "ii"),
    PlainRecord(FUNCTION_SET_TONE, "tone", "diiiiii"),
    PlainRecord(FUNCTION_SET_HSLCOLOR, "HSL",
                "i"           // vibrancy
                "iiiiiiii"    // hue per band
                "iiiiiiii"    // saturation per band
                "iiiiiiii"),  // luminance per band
    PlainRecord(FUNCTION_SET_SHARP, "sharpen", "idiii"),
    PlainRecord(FUNCTION_SET_NOISE, "noise", "iiii"),
    PlainRecord(FUNCTION_SET_CLARITY, "clarity", "i"),
    PlainRecord(FUNCTION_SET_SATURATION, "saturation", "i"),
    PlainRecord(FUNCTION_SET_POST_VIGNETTE, "vignette", "iiii"),
    PlainRecord(FUNCTION_SET_BWTINT, "tint", "id"),
    PlainRecord(FUNCTION_SET_BLUR_MASK, "blur", "i"),
    PlainRecord(FUNCTION_SET_SPLITTONE, "split tone", "ddddd"),
    PlainRecord(FUNCTION_SET_HUESHIFT, "hue shift", "f"),
    PlainRecord(FUNCTION_SET_HDR, "HDR", "iiidii"),
};

}  // namespace

const EntryLayout* FindEntryLayout(char letter) {
    for (const EntryLayout& entry : kEntryLayouts) {
        if (static_cast<char>(entry.eKind) == letter) {
            return &entry;
        }
    }
    return nullptr;
}

const EffectLayout* FindEffectLayout(uint32_t functionID) {
    for (const EffectLayout& layout : kEffectLayouts) {
        if (layout.nFunctionID == functionID) {
            return &layout;
        }
    }
    return nullptr;
}

const EffectLayout* EffectLayoutsBegin() {
    return std::begin(kEffectLayouts);
}

const EffectLayout* EffectLayoutsEnd() {
    return std::end(kEffectLayouts);
}

std::size_t VectorCount(const EffectLayout& layout) {
    return std::strlen(layout.pszVectors);
}

ContractVector<void*>& RecordVector(EffectRecordHeader* record, std::size_t index) {
    auto* base = reinterpret_cast<unsigned char*>(record);
    return *reinterpret_cast<ContractVector<void*>*>(base + kFirstVectorOffset + index * kVectorSize);
}

FreedRecord FreeEffectRecord(const EffectLayout& layout, EffectRecordHeader* record) {
    FreedRecord freed{0};
    if (!record) {
        return freed;
    }
    const std::size_t count = VectorCount(layout);
    for (std::size_t index = 0; index < count; ++index) {
        const EntryLayout* entryLayout = FindEntryLayout(layout.pszVectors[index]);
        ContractVector<void*>& vector = RecordVector(record, index);
        for (void* entry : vector) {
            if (!entry) {
                continue;
            }
            if (entryLayout && entryLayout->fnFreeOwned) {
                entryLayout->fnFreeOwned(entry);
            }
            FreeEffectMemory(entry);
            ++freed.nEntries;
        }
        vector.Free();
    }
    FreeEffectMemory(record);
    return freed;
}

FreedRecord FreeEffectRecord(uint32_t functionID, EffectRecordHeader* record) {
    if (const EffectLayout* layout = FindEffectLayout(functionID)) {
        return FreeEffectRecord(*layout, record);
    }
    FreeEffectMemory(record);
    return FreedRecord{0};
}

}  // namespace engine
}  // namespace pcg
