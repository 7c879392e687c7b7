#include "reference/agent/record_json.h"

#include <cstring>

#include "engine/keyed_records/local_records.h"
#include "engine/keyed_records/tone_records.h"
#include "reference/agent/sha256.h"

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

Json PixelsJson(const PIXEL* pixels) {
    return Json::array({pixels[0], pixels[1], pixels[2]});
}

Json ColorSpaceJson(const ColorSpace& color) {
    Json json = Json::object();
    json["nR"] = color.nR;
    json["nG"] = color.nG;
    json["nB"] = color.nB;
    json["eColorDepth"] = static_cast<int32_t>(color.eColorDepth);
    json["eColorSpace"] = static_cast<int32_t>(color.eColorSpace);
    return json;
}

Json ColorReplaceJson(const void* value) {
    const auto setting = ReadField<ColorReplaceSetting>(value, 0);
    Json json = Json::object();
    json["srcColor"] = PixelsJson(setting.srcColor);
    json["dstColor"] = PixelsJson(setting.dstColor);
    json["fSrcTolerance"] = static_cast<double>(setting.fSrcTolerance);
    json["fDstTolerance"] = static_cast<double>(setting.fDstTolerance);
    json["eColorSpace"] = static_cast<int32_t>(setting.eColorSpace);
    return json;
}

// Global and local splash settings share one layout.
Json ColorSplashJson(const void* value) {
    const auto setting = ReadField<ColorsplashSetting>(value, 0);
    Json json = Json::object();
    json["fTolerance"] = static_cast<double>(setting.fTolerance);
    json["dropperColor"] = ColorSpaceJson(setting.dropperColor);
    json["bEnableColorsplash"] = ReadField<unsigned char>(value, offsetof(ColorsplashSetting, bEnableColorsplash)) != 0;
    json["nMaskType"] = setting.nMaskType;
    json["nMaskID"] = setting.nMaskID;
    json["fHueShift"] = static_cast<double>(setting.fHueShift);
    return json;
}

// {"table": null}, or {"table": {"sha256": ...}} over the table's values as
// little-endian 32-bit words, whatever the host's byte order.
Json CurveJson(const void* value) {
    const auto* table = ReadField<const int32_t*>(value, 0);
    Json json = Json::object();
    if (!table) {
        json["table"] = nullptr;
        return json;
    }
    CSha256 hash;
    uint8_t bytes[4096];
    std::size_t used = 0;
    for (std::size_t index = 0; index < pcg::engine::kCurveTableCount; ++index) {
        const auto word = static_cast<uint32_t>(table[index]);
        for (int shift = 0; shift < 32; shift += 8) {
            bytes[used++] = static_cast<uint8_t>(word >> shift);
        }
        if (used == sizeof(bytes)) {
            hash.Update(bytes, used);
            used = 0;
        }
    }
    hash.Update(bytes, used);
    json["table"] = Json{{"sha256", hash.FinishHex()}};
    return json;
}

const ValueWriter kValueWriters[] = {
    {EntryKind::Int32, [](const void* value) { return Json(ReadField<int32_t>(value, 0)); }},
    {EntryKind::Float, [](const void* value) { return Json(static_cast<double>(ReadField<float>(value, 0))); }},
    {EntryKind::Double, [](const void* value) { return Json(ReadField<double>(value, 0)); }},
    {EntryKind::ColorReplace, ColorReplaceJson},
    {EntryKind::ColorSplash, ColorSplashJson},
    {EntryKind::Curve, CurveJson},
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

// The layout's vectors of one record, `vectorAt` giving each by index.
template <typename TVectorAt>
Json VectorsJson(const pcg::engine::EffectLayout& layout, TVectorAt vectorAt) {
    Json vectors = Json::array();
    const std::size_t count = pcg::engine::VectorCount(layout);
    for (std::size_t index = 0; index < count; ++index) {
        vectors.push_back(VectorJson(pcg::engine::FindEntryLayout(layout.pszVectors[index]), vectorAt(index)));
    }
    return vectors;
}

// {"version", "masks": [...]} with one element per map node, in the map's own
// order; a null per-mask record shows as its key and nulls.
Json LocalRecordJson(const pcg::engine::EffectLayout& layout, const pcg::engine::EffectRecordHeader* record) {
    const auto* local = reinterpret_cast<const pcg::engine::LocalEffectRecord*>(record);
    Json masks = Json::array();
    local->masks.ForEach([&](int32_t key, pcg::engine::MaskRecordHead* mask) {
        Json item = Json::object();
        item["key"] = key;
        if (!mask) {
            item["nEffectVersion"] = item["nMaskID"] = item["nMaskType"] = item["vectors"] = nullptr;
        } else {
            item["nEffectVersion"] = mask->nEffectVersion;
            item["nMaskID"] = mask->nMaskID;
            item["nMaskType"] = mask->nMaskType;
            item["vectors"] =
                VectorsJson(layout, [&](std::size_t index) -> const pcg::engine::ContractVector<void*>& {
                    return pcg::engine::MaskRecordVector(mask, index);
                });
        }
        masks.push_back(std::move(item));
    });
    Json json = Json::object();
    json["version"] = local->header.nEffectVersion;
    json["masks"] = std::move(masks);
    return json;
}

Json ShowMaskJson(const pcg::engine::EffectRecordHeader* record) {
    const auto* show = reinterpret_cast<const pcg::engine::ShowMaskRecord*>(record);
    const ColorSpace& color = show->maskColor;
    Json json = Json::object();
    json["version"] = show->nEffectVersion;
    json["nMaskType"] = show->nMaskType;
    json["nMaskID"] = show->nMaskID;
    json["maskColor"] = Json::array({color.nR, color.nG, color.nB, static_cast<int32_t>(color.eColorDepth),
                                     static_cast<int32_t>(color.eColorSpace)});
    return json;
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
    const pcg::engine::EffectLayout* layout = pcg::engine::FindEffectLayout(functionID);
    if (layout && layout->eForm == pcg::engine::RecordForm::Local) {
        return LocalRecordJson(*layout, record);
    }
    if (layout && layout->eForm == pcg::engine::RecordForm::ShowMask) {
        return ShowMaskJson(record);
    }
    Json json = Json::object();
    json["version"] = record->nEffectVersion;
    json["word"] = record->nHeaderWord;
    if (!layout) {
        return json;
    }
    auto* writable = const_cast<pcg::engine::EffectRecordHeader*>(record);
    json["vectors"] = VectorsJson(*layout, [&](std::size_t index) -> const pcg::engine::ContractVector<void*>& {
        return pcg::engine::RecordVector(writable, index);
    });
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
