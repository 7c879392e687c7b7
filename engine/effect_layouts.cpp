#include "engine/effect_layouts.h"

#include <cstring>
#include <iterator>

#include "engine/constants.h"
#include "engine/keyed_records/local_records.h"
#include "engine/keyed_records/tone_records.h"

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
    PlainEntry<ColorReplaceSetting>(EntryKind::ColorReplace),
    PlainEntry<ColorsplashSetting>(EntryKind::ColorSplash),
    // The curve entry owns its mapping table.
    EntryLayout{EntryKind::Curve, sizeof(CurveKeyframeEntry), offsetof(CurveKeyframeEntry, value),
                offsetof(CurveKeyframeEntry, nInterpolation),
                [](void* entry) { FreeEffectMemory(static_cast<CurveKeyframeEntry*>(entry)->value); }},
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

// One row per local adjustment: the letters are those of each per-mask
// record's vectors, and the size is the per-mask record's.
constexpr EffectLayout LocalRecord(FUNCTION_ID function, const char* name, const char* vectors) {
    return EffectLayout{static_cast<uint32_t>(function), name, RecordForm::Local, vectors,
                        MaskRecordSize(Length(vectors))};
}

// The HSL adjustment, global or per mask: vibrancy, then one vector per
// colour band for hue, saturation and luminance.
constexpr const char kHSLVectors[] =
    "i"          // vibrancy
    "iiiiiiii"   // hue per band
    "iiiiiiii"   // saturation per band
    "iiiiiiii";  // luminance per band

constexpr EffectLayout kEffectLayouts[] = {
    PlainRecord(FUNCTION_SET_BLACKWHITE, "black and white", "iiiiiiii"),
    PlainRecord(FUNCTION_SET_WB, "white balance", "ii"),
    PlainRecord(FUNCTION_SET_TONE, "tone", "diiiiii"),
    PlainRecord(FUNCTION_SET_HSLCOLOR, "HSL", kHSLVectors),
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
    PlainRecord(FUNCTION_SET_TONECURVE_RGB, "tone curve", "c"),
    PlainRecord(FUNCTION_SET_TONECURVE, "tone curve channel", "ccc"),  // red, green, blue
    PlainRecord(FUNCTION_SET_COLORREPLACE, "colour replacement", "r"),
    PlainRecord(FUNCTION_SET_COLORSPLASH, "colour splash", "s"),
    LocalRecord(FUNCTION_SET_WB_MASK, "white balance per mask", "ii"),
    LocalRecord(FUNCTION_SET_TONE_MASK, "tone per mask", "dii"),
    LocalRecord(FUNCTION_SET_CLARITY_MASK, "clarity per mask", "i"),
    LocalRecord(FUNCTION_SET_SATURATION_MASK, "saturation per mask", "i"),
    LocalRecord(FUNCTION_SET_HSLCOLOR_MASK, "HSL per mask", kHSLVectors),
    LocalRecord(FUNCTION_SET_COLORREPLACE_MASK, "colour replacement per mask", "r"),
    LocalRecord(FUNCTION_SET_BWTINT_MASK, "tint per mask", "id"),
    LocalRecord(FUNCTION_SET_MEAN_BLUR_MASK, "blur per mask", "i"),
    LocalRecord(FUNCTION_SET_COLORSPLASH_MASK, "colour splash per mask", "s"),
    EffectLayout{static_cast<uint32_t>(FUNCTION_SET_SHOW_MASK), "show mask", RecordForm::ShowMask, "",
                 sizeof(ShowMaskRecord)},
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

namespace {

ContractVector<void*>& VectorAt(void* block, std::size_t firstOffset, std::size_t index) {
    auto* base = static_cast<unsigned char*>(block);
    return *reinterpret_cast<ContractVector<void*>*>(base + firstOffset + index * kVectorSize);
}

// Frees the entries of the layout's vectors, which begin at `firstOffset` of
// `block`, and each vector's storage; the block itself stays. Returns the
// number of entries freed.
std::size_t FreeVectors(const EffectLayout& layout, void* block, std::size_t firstOffset) {
    std::size_t entries = 0;
    const std::size_t count = VectorCount(layout);
    for (std::size_t index = 0; index < count; ++index) {
        const EntryLayout* entryLayout = FindEntryLayout(layout.pszVectors[index]);
        ContractVector<void*>& vector = VectorAt(block, firstOffset, index);
        for (void* entry : vector) {
            if (!entry) {
                continue;
            }
            if (entryLayout && entryLayout->fnFreeOwned) {
                entryLayout->fnFreeOwned(entry);
            }
            FreeEffectMemory(entry);
            ++entries;
        }
        vector.Free();
    }
    return entries;
}

}  // namespace

ContractVector<void*>& RecordVector(EffectRecordHeader* record, std::size_t index) {
    return VectorAt(record, kFirstVectorOffset, index);
}

ContractVector<void*>& MaskRecordVector(MaskRecordHead* record, std::size_t index) {
    return VectorAt(record, kFirstMaskVectorOffset, index);
}

std::size_t FreeMaskRecord(const EffectLayout& layout, MaskRecordHead* record) {
    if (!record) {
        return 0;
    }
    const std::size_t entries = FreeVectors(layout, record, kFirstMaskVectorOffset);
    FreeEffectMemory(record);
    return entries;
}

FreedRecord FreeEffectRecord(const EffectLayout& layout, EffectRecordHeader* record) {
    FreedRecord freed{0};
    if (!record) {
        return freed;
    }
    switch (layout.eForm) {
    case RecordForm::Plain:
        freed.nEntries = FreeVectors(layout, record, kFirstVectorOffset);
        break;
    case RecordForm::Local:
        // The map's nodes, each per-mask record with its vectors, the head.
        reinterpret_cast<LocalEffectRecord*>(record)->masks.Free([&](MaskRecordHead* mask) {
            if (mask) {
                freed.nEntries += FreeMaskRecord(layout, mask);
                ++freed.nMaskRecords;
            }
        });
        break;
    case RecordForm::ShowMask:
        break;
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
