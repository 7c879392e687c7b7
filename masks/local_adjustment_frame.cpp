#include "masks/local_adjustment_frame.h"

#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"
#include "engine/effect_layouts.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace masks {

bool ReadMaskScalar(PyObject* dictionary, const char* key, int32_t& field) {
    if (dictionary == nullptr || !PyDict_Check(dictionary)) {
        return false;
    }
    PyObject* value = PyDict_GetItemString(dictionary, key);
    if (value == nullptr) {
        return false;
    }
    int parsed = field;
    if (effects::ParseScalar(value, "i", &parsed)) {
        field = parsed;
    }
    return true;
}

namespace {

// Puts `mask` under its mask ID. The earlier record under that ID loses its
// place; it is freed here, since nothing else could reach it again.
void PutMask(const char* converterName, const engine::EffectLayout* layout, engine::LocalEffectRecord& local,
             engine::MaskRecordHead* mask) {
    engine::OrderedMapNode<engine::MaskRecordHead>* node = local.masks.FindOrInsert(mask->nMaskID);
    if (node == nullptr) {
        DumpLog("PyClipGrade::%s, Error. no memory for the map node of mask %d; the mask is dropped\n", converterName,
                mask->nMaskID);
        if (layout) {
            engine::FreeMaskRecord(*layout, mask);
        }
        return;
    }
    if (node->m_pair.pValue != nullptr) {
        DumpLog("PyClipGrade::%s, Info. mask %d given again; the later dictionary replaces the earlier\n",
                converterName, mask->nMaskID);
        if (layout) {
            engine::FreeMaskRecord(*layout, node->m_pair.pValue);
        }
    }
    node->m_pair.pValue = mask;
}

}  // namespace

engine::EffectRecordHeader* BuildLocalEffect(const char* converterName, FUNCTION_ID functionID, PyObject* effect,
                                             std::size_t maskRecordSize, MaskKeysReader readKeys) {
    auto* local = engine::NewEffectRecord<engine::LocalEffectRecord>(EFFECT_VERSION_LATEST);
    if (local == nullptr) {
        DumpLog("PyClipGrade::%s, Error. no memory for the record\n", converterName);
        return nullptr;
    }
    if (!local->masks.Init()) {
        // A map without its head node reads as empty on the agent's side.
        DumpLog("PyClipGrade::%s, Error. no memory for the mask map\n", converterName);
        return &local->header;
    }
    // The layout frees a per-mask record that a later one replaces.
    const engine::EffectLayout* layout = engine::FindEffectLayout(static_cast<uint32_t>(functionID));

    // A value that is not a list has no size: the same as an empty list.
    const int32_t count = (effect != nullptr && PyList_Check(effect)) ? static_cast<int32_t>(PyList_Size(effect)) : 0;
    for (int32_t index = 0; index < count; ++index) {
        auto* mask = static_cast<engine::MaskRecordHead*>(engine::AllocEffectMemory(maskRecordSize));
        if (mask == nullptr) {
            DumpLog("PyClipGrade::%s, Error. no memory for the record of item %d; the item is skipped\n", converterName,
                    index);
            continue;
        }
        mask->nEffectVersion = EFFECT_VERSION_LATEST;

        PyObject* dictionary = PyList_GetItem(effect, index);
        if (dictionary == nullptr || !PyDict_Check(dictionary)) {
            DumpLog("PyClipGrade::%s, Error. item %d is not a dictionary; read as one without keys\n", converterName,
                    index);
        }
        // Mask ID and type have no preset: without their keys they stay 0,
        // and mask ID 0 is the key in the map.
        if (!ReadMaskScalar(dictionary, STR_MASK_ID, mask->nMaskID)) {
            DumpLog("PyClipGrade::%s, Error. item %d has no \"%s\"; mask ID 0 is used\n", converterName, index,
                    STR_MASK_ID);
        }
        ReadMaskScalar(dictionary, STR_MASK_TYPE, mask->nMaskType);
        // The raw number: the version table of global effects does not apply.
        ReadMaskScalar(dictionary, STR_EFFECT_VER, mask->nEffectVersion);
        readKeys(dictionary, mask);
        PutMask(converterName, layout, *local, mask);
    }
    return &local->header;
}

}  // namespace masks
}  // namespace pcg
