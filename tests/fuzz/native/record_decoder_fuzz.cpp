// The agent's record decoder over records of every layout built from fuzzed
// bytes: any version words, entry values and interpolations, vectors of
// 0..5 entries with null elements among them, curve tables present or not,
// per-mask records under any keys (repeated ones replace). The decoder reads
// every record without fault and the layout table frees all of it.
#include <cstdlib>
#include <cstring>
#include <string>

#include "engine/effect_layouts.h"
#include "engine/keyed_records/local_records.h"
#include "engine/keyed_records/tone_records.h"
#include "fuzz_input.h"
#include "reference/agent/record_json.h"

namespace {

using namespace pcg::engine;

void FillVector(FuzzInput& input, const EntryLayout& entry, ContractVector<void*>& vector) {
    const int count = input.Take<uint8_t>() % 6;
    for (int index = 0; index < count; ++index) {
        void* element = nullptr;
        if (input.Take<uint8_t>() % 8 != 0) {
            auto* bytes = static_cast<uint8_t*>(AllocEffectMemory(entry.nEntrySize));
            if (bytes == nullptr) std::abort();
            for (uint32_t at = 0; at < entry.nEntrySize; ++at) bytes[at] = input.Take<uint8_t>();
            if (entry.eKind == EntryKind::Curve) {
                void* table = input.Take<uint8_t>() & 1 ? AllocEffectMemory(kCurveTableBytes) : nullptr;
                std::memcpy(bytes + entry.nValueOffset, &table, sizeof(table));
            }
            element = bytes;
        }
        if (!vector.push_back(element)) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const std::size_t rows = static_cast<std::size_t>(EffectLayoutsEnd() - EffectLayoutsBegin());
    const EffectLayout& layout = EffectLayoutsBegin()[input.Take<uint8_t>() % rows];
    EffectRecordHeader* record = nullptr;
    if (layout.eForm == RecordForm::Plain) {
        const std::size_t vectors = VectorCount(layout);
        record = static_cast<EffectRecordHeader*>(AllocEffectMemory(PlainRecordSize(vectors)));
        record->nEffectVersion = input.Take<uint32_t>();
        for (std::size_t index = 0; index < vectors; ++index) {
            FillVector(input, *FindEntryLayout(layout.pszVectors[index]), RecordVector(record, index));
        }
    } else if (layout.eForm == RecordForm::Local) {
        auto* local = static_cast<LocalEffectRecord*>(AllocEffectMemory(sizeof(LocalEffectRecord)));
        local->header.nEffectVersion = input.Take<uint32_t>();
        if (!local->masks.Init()) std::abort();
        const int masks = input.Take<uint8_t>() % 5;
        for (int index = 0; index < masks; ++index) {
            auto* mask = static_cast<MaskRecordHead*>(AllocEffectMemory(layout.nRecordSize));
            mask->nEffectVersion = input.Take<int32_t>();
            mask->nMaskID = input.Take<int8_t>();
            mask->nMaskType = input.Take<int32_t>();
            for (std::size_t v = 0; layout.pszVectors[v] != '\0'; ++v) {
                FillVector(input, *FindEntryLayout(layout.pszVectors[v]), MaskRecordVector(mask, v));
            }
            auto* node = local->masks.FindOrInsert(mask->nMaskID);
            if (node->m_pair.pValue != nullptr) FreeMaskRecord(layout, node->m_pair.pValue);
            node->m_pair.pValue = mask;
        }
        record = &local->header;
    } else {
        record = static_cast<EffectRecordHeader*>(AllocEffectMemory(layout.nRecordSize));
        auto* bytes = reinterpret_cast<uint8_t*>(record);
        for (uint32_t at = 0; at < layout.nRecordSize; ++at) bytes[at] = input.Take<uint8_t>();
    }
    std::string text;
    pcg::refagent::AppendJson(text, pcg::refagent::RecordJson(layout.nFunctionID, record));
    if (text.empty()) std::abort();
    FreeEffectRecord(layout, record);
    return 0;
}
