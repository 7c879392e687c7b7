#include "reference/agent/mask_store.h"

namespace pcg {
namespace refagent {
namespace {

using pcg::engine::ContractVector;

template <typename TKey>
void DeleteKeys(ContractVector<TKey*>& keys) {
    for (TKey* key : keys) {
        delete key;
    }
}

}  // namespace

void DeleteHeldMask(HVN::MaskInfoBase* mask) {
    if (mask == nullptr) {
        return;
    }
    switch (mask->nMaskKind) {
        case pcg::engine::MASK_KIND_GRADIENT:
            DeleteKeys(static_cast<HVN::GradientMask*>(mask)->keyFrames);
            break;
        case pcg::engine::MASK_KIND_SELECTION: {
            auto* selection = static_cast<HVN::SelectionMask*>(mask);
            for (pcg::engine::SelectionKey* key : selection->keyFrames) {
                if (key != nullptr) {
                    key->points.Free();
                }
            }
            DeleteKeys(selection->keyFrames);
            DeleteKeys(selection->feathers);
            DeleteKeys(selection->featherShifts);
            break;
        }
        case pcg::engine::MASK_KIND_ELLIPSE: {
            auto* ellipse = static_cast<HVN::EllipseMask*>(mask);
            DeleteKeys(ellipse->keyFrames);
            DeleteKeys(ellipse->feathers);
            break;
        }
        case pcg::engine::MASK_KIND_MOTION_TRACK: {
            auto* track = static_cast<HVN::MotionTrackMask*>(mask);
            DeleteKeys(track->lines);
            DeleteKeys(track->feathers);
            break;
        }
        default:
            break;
    }
    delete mask;
}

namespace {

Json Floats(const float* values, int count) {
    Json list = Json::array();
    for (int index = 0; index < count; ++index) {
        list.push_back(static_cast<double>(values[index]));
    }
    return list;
}

template <typename TKey, typename TWrite>
Json KeyList(const ContractVector<TKey*>& keys, TWrite write) {
    Json list = Json::array();
    for (const TKey* key : keys) {
        list.push_back(key ? write(*key) : Json(nullptr));
    }
    return list;
}

Json ValueKeys(const ContractVector<pcg::engine::MaskValueKey*>& keys) {
    return KeyList(keys, [](const pcg::engine::MaskValueKey& key) {
        Json json = Json::object();
        json["llTime"] = key.llTime;
        json["nValue"] = key.nValue;
        json["nLineStyle"] = key.nLineStyle;
        return json;
    });
}

const char* ClassName(int32_t kind) {
    switch (kind) {
        case pcg::engine::MASK_KIND_GRADIENT:
            return "GradientMask";
        case pcg::engine::MASK_KIND_MOTION_TRACK:
            return "MotionTrackMask";
        case pcg::engine::MASK_KIND_SELECTION:
            return "SelectionMask";
        case pcg::engine::MASK_KIND_ELLIPSE:
            return "EllipseMask";
        default:
            return nullptr;
    }
}

}  // namespace

Json MaskJson(const HVN::MaskInfoBase* mask) {
    if (mask == nullptr) {
        return Json(nullptr);
    }
    Json json = Json::object();
    const char* name = ClassName(mask->nMaskKind);
    json["class"] = name ? Json(name) : Json(nullptr);
    json["nMaskID"] = mask->nMaskID;
    json["nMaskKind"] = mask->nMaskKind;
    json["effectInfoID"] = mask->effectInfoID;
    switch (mask->nMaskKind) {
        case pcg::engine::MASK_KIND_GRADIENT: {
            const auto* gradient = static_cast<const HVN::GradientMask*>(mask);
            json["keyFrames"] = KeyList(gradient->keyFrames, [](const pcg::engine::GradientKey& key) {
                Json entry = Json::object();
                entry["llTime"] = key.llTime;
                entry["llTime2"] = key.llTime2;
                entry["fGeometry"] = Floats(key.fGeometry, 4);
                entry["nLineStyle"] = key.nLineStyle;
                return entry;
            });
            break;
        }
        case pcg::engine::MASK_KIND_SELECTION: {
            const auto* selection = static_cast<const HVN::SelectionMask*>(mask);
            json["keyFrames"] = KeyList(selection->keyFrames, [](const pcg::engine::SelectionKey& key) {
                Json entry = Json::object();
                entry["llDuration"] = key.llDuration;
                Json points = Json::array();
                for (const pcg::engine::SelectionPoint& point : key.points) {
                    points.push_back(Json::array({static_cast<double>(point.fX), static_cast<double>(point.fY)}));
                }
                entry["points"] = std::move(points);
                return entry;
            });
            json["feathers"] = ValueKeys(selection->feathers);
            json["featherShifts"] = ValueKeys(selection->featherShifts);
            json["bInverse"] = selection->bInverse;
            break;
        }
        case pcg::engine::MASK_KIND_ELLIPSE: {
            const auto* ellipse = static_cast<const HVN::EllipseMask*>(mask);
            json["keyFrames"] = KeyList(ellipse->keyFrames, [](const pcg::engine::EllipseKey& key) {
                Json entry = Json::object();
                entry["llTime"] = key.llTime;
                entry["llTime2"] = key.llTime2;
                entry["fFirstPair"] = Floats(key.fFirstPair, 2);
                entry["dAngle"] = key.dAngle;
                entry["fSecondPair"] = Floats(key.fSecondPair, 2);
                entry["nLineStyle"] = key.nLineStyle;
                return entry;
            });
            json["feathers"] = ValueKeys(ellipse->feathers);
            json["bInverse"] = ellipse->bInverse;
            break;
        }
        case pcg::engine::MASK_KIND_MOTION_TRACK: {
            const auto* track = static_cast<const HVN::MotionTrackMask*>(mask);
            json["lines"] = ValueKeys(track->lines);
            json["feathers"] = ValueKeys(track->feathers);
            Json expressions = Json::array();
            for (const pcg::engine::TRExpressEntry& entry : track->trExpress) {
                expressions.push_back(Json::array({entry.llFirst, entry.llSecond, entry.nThird}));
            }
            json["trExpress"] = std::move(expressions);
            json["bInverse"] = track->bInverse;
            json["nVideoID"] = track->nVideoID;
            break;
        }
        default:
            break;
    }
    return json;
}

}  // namespace refagent
}  // namespace pcg
