#include "reference/agent/record_json.h"

#include <cstring>

namespace pcg {
namespace refagent {

namespace {

using pcg::engine::EntryKind;
using pcg::engine::EntryLayout;
using pcg::engine::ReadField;

// The journal's form of an entry's value, one row per entry kind.
struct ValueWriter {
    EntryKind eKind;
    Json (*fnWrite)(const void* value);
};

const ValueWriter kValueWriters[] = {
    {EntryKind::Int32, [](const void* value) { return Json(ReadField<int32_t>(value, 0)); }},
    {EntryKind::Float, [](const void* value) { return Json(static_cast<double>(ReadField<float>(value, 0))); }},
    {EntryKind::Double, [](const void* value) { return Json(ReadField<double>(value, 0)); }},
};

Json ValueJson(const EntryLayout& layout, const void* entry) {
    const void* value = static_cast<const unsigned char*>(entry) + layout.nValueOffset;
    for (const ValueWriter& writer : kValueWriters) {
        if (writer.eKind == layout.eKind) {
            return writer.fnWrite(value);
        }
    }
    return Json(nullptr);
}

Json VectorJson(const EntryLayout* layout, const pcg::engine::ContractVector<void*>& vector) {
    Json entries = Json::array();
    for (const void* entry : vector) {
        if (!entry || !layout) {
            entries.push_back(nullptr);
            continue;
        }
        Json item = Json::object();
        item["time"] = ReadField<int64_t>(entry, 0);
        item["value"] = ValueJson(*layout, entry);
        item["interp"] = ReadField<int32_t>(entry, layout->nInterpolationOffset);
        entries.push_back(std::move(item));
    }
    return entries;
}

Json FloatsJson(const float* values, std::size_t count) {
    Json list = Json::array();
    for (std::size_t index = 0; index < count; ++index) {
        list.push_back(static_cast<double>(values[index]));
    }
    return list;
}

}  // namespace

Json OpaqueJson(const void* pointer) {
    return pointer ? Json(true) : Json(nullptr);
}

Json RecordJson(uint32_t functionID, const pcg::engine::EffectRecordHeader* record) {
    if (!record) {
        return Json(nullptr);
    }
    Json json = Json::object();
    json["version"] = record->nEffectVersion;
    json["word"] = record->nHeaderWord;
    const pcg::engine::EffectLayout* layout = pcg::engine::FindEffectLayout(functionID);
    if (!layout) {
        return json;
    }
    auto* writable = const_cast<pcg::engine::EffectRecordHeader*>(record);
    Json vectors = Json::array();
    const std::size_t count = pcg::engine::VectorCount(*layout);
    for (std::size_t index = 0; index < count; ++index) {
        vectors.push_back(VectorJson(pcg::engine::FindEntryLayout(layout->pszVectors[index]),
                                     pcg::engine::RecordVector(writable, index)));
    }
    json["vectors"] = std::move(vectors);
    return json;
}

Json LutJson(const LUTSetting* setting) {
    if (!setting) {
        return Json(nullptr);
    }
    Json json = Json::object();
    json["size"] = setting->nSize;
    json["min"] = FloatsJson(setting->fDomainMin, 3);
    json["max"] = FloatsJson(setting->fDomainMax, 3);
    json["table"] = FloatsJson(setting->table.begin(), setting->table.size());
    return json;
}

Json ApplyBufferSettingJson(const ApplyBufferSetting* setting) {
    if (!setting) {
        return Json(nullptr);
    }
    Json roi = Json::object();
    roi["nLeft"] = setting->roi.nLeft;
    roi["nTop"] = setting->roi.nTop;
    roi["nWidth"] = setting->roi.nWidth;
    roi["nHeight"] = setting->roi.nHeight;
    roi["fAngle"] = static_cast<double>(setting->roi.fAngle);

    Json json = Json::object();
    json["nVideoID"] = setting->nVideoID;
    json["nParam"] = setting->nParam;
    json["llTime"] = setting->llTime;
    json["pSrcBuffer"] = OpaqueJson(setting->pSrcBuffer);
    json["pDstBuffer"] = OpaqueJson(setting->pDstBuffer);
    json["nSrcWidth"] = setting->nSrcWidth;
    json["nSrcHeight"] = setting->nSrcHeight;
    json["nSrcStride"] = setting->nSrcStride;
    json["nDstWidth"] = setting->nDstWidth;
    json["nDstHeight"] = setting->nDstHeight;
    json["nDstStride"] = setting->nDstStride;
    json["nAspectNumerator"] = setting->nAspectNumerator;
    json["nAspectDenominator"] = setting->nAspectDenominator;
    json["roi"] = std::move(roi);
    json["nReserved84"] = setting->nReserved84;
    json["nFlags"] = setting->nFlags;
    json["nReserved92"] = Json::array({setting->nReserved92[0], setting->nReserved92[1]});
    json["nReserved100"] = setting->nReserved100;
    return json;
}

Json RectJson(const RECT* rect) {
    if (!rect) {
        return Json(nullptr);
    }
    Json json = Json::object();
    json["left"] = rect->left;
    json["top"] = rect->top;
    json["right"] = rect->right;
    json["bottom"] = rect->bottom;
    return json;
}

Json BytesJson(const char* bytes, uint32_t size) {
    if (!bytes) {
        return Json(nullptr);
    }
    static const char kHex[] = "0123456789abcdef";
    std::string text;
    text.reserve(static_cast<std::size_t>(size) * 2);
    for (uint32_t index = 0; index < size; ++index) {
        const auto byte = static_cast<unsigned char>(bytes[index]);
        text += kHex[byte >> 4];
        text += kHex[byte & 0x0F];
    }
    return Json(std::move(text));
}

}  // namespace refagent
}  // namespace pcg
