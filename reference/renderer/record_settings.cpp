#include "reference/renderer/record_settings.h"

#include "engine/constants.h"
#include "engine/effect_record.h"
#include "engine/keyed_records/colour_records.h"
#include "engine/keyed_records/tone_records.h"

namespace pcg {
namespace renderer {

namespace {

template <typename T>
bool ValueAt(const pcg::engine::KeyframeVector<T>& vector, int64_t time, double* value) {
    const pcg::engine::KeyframeEntry<T>* before = nullptr;
    const pcg::engine::KeyframeEntry<T>* after = nullptr;
    for (auto* const* it = vector.m_pFirst; it != nullptr && it != vector.m_pLast; ++it) {
        const auto* entry = *it;
        if (entry == nullptr) continue;
        if (entry->llTime <= time && (before == nullptr || entry->llTime >= before->llTime)) before = entry;
        if (entry->llTime >= time && (after == nullptr || entry->llTime < after->llTime)) after = entry;
    }
    if (before == nullptr && after == nullptr) return false;
    if (before == nullptr) *value = static_cast<double>(after->value);
    else if (after == nullptr || after->llTime == before->llTime) *value = static_cast<double>(before->value);
    else {
        const double share = static_cast<double>(time - before->llTime) / static_cast<double>(after->llTime - before->llTime);
        *value = static_cast<double>(before->value) + (static_cast<double>(after->value) - before->value) * share;
    }
    return true;
}

}  // namespace

GlobalSettings SettingsAt(const std::vector<HeldRecord>& records, int64_t time) {
    GlobalSettings settings;
    for (const HeldRecord& held : records) {
        if (held.second == nullptr) continue;
        switch (held.first) {
        case FUNCTION_SET_TONE: {
            const auto* tone = reinterpret_cast<const pcg::engine::ToneRecord*>(held.second);
            ValueAt(tone->exposure, time, &settings.dExposure);
            ValueAt(tone->brightness, time, &settings.dBrightness);
            ValueAt(tone->contrast, time, &settings.dContrast);
            break;
        }
        case FUNCTION_SET_WB: {
            const auto* wb = reinterpret_cast<const pcg::engine::WBRecord*>(held.second);
            ValueAt(wb->temperature, time, &settings.dTemperature);
            ValueAt(wb->tint, time, &settings.dTint);
            break;
        }
        case FUNCTION_SET_SATURATION: {
            const auto* saturation = reinterpret_cast<const pcg::engine::SaturationRecord*>(held.second);
            ValueAt(saturation->saturation, time, &settings.dSaturation);
            break;
        }
        default:
            break;
        }
    }
    return settings;
}

}  // namespace renderer
}  // namespace pcg
