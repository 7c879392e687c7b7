#include "reference/renderer/record_settings.h"

#include <cmath>

#include "engine/constants.h"
#include "engine/effect_record.h"
#include "engine/keyed_records/colour_records.h"
#include "engine/keyed_records/creative_records.h"
#include "engine/keyed_records/detail_records.h"
#include "engine/keyed_records/tone_records.h"

namespace pcg {
namespace renderer {

namespace {

using pcg::engine::KeyframeEntry;
using pcg::engine::KeyframeVector;

// The entries at or before `time` (latest) and at or after it (earliest).
template <typename T>
bool Neighbours(const KeyframeVector<T>& vector, int64_t time, const KeyframeEntry<T>** before,
                const KeyframeEntry<T>** after) {
    *before = nullptr;
    *after = nullptr;
    for (auto* const* it = vector.m_pFirst; it != nullptr && it != vector.m_pLast; ++it) {
        const auto* entry = *it;
        if (entry == nullptr) continue;
        if (entry->llTime <= time && (*before == nullptr || entry->llTime >= (*before)->llTime)) *before = entry;
        if (entry->llTime >= time && (*after == nullptr || entry->llTime < (*after)->llTime)) *after = entry;
    }
    return *before != nullptr || *after != nullptr;
}

template <typename T>
bool ValueAt(const KeyframeVector<T>& vector, int64_t time, double* value) {
    const KeyframeEntry<T>* before;
    const KeyframeEntry<T>* after;
    if (!Neighbours(vector, time, &before, &after)) return false;
    if (before == nullptr) *value = static_cast<double>(after->value);
    else if (after == nullptr || after->llTime == before->llTime) *value = static_cast<double>(before->value);
    else {
        const double share = static_cast<double>(time - before->llTime) / static_cast<double>(after->llTime - before->llTime);
        *value = static_cast<double>(before->value) + (static_cast<double>(after->value) - before->value) * share;
    }
    return true;
}

template <typename T, size_t N>
void BandsAt(const KeyframeVector<T> (&vectors)[N], int64_t time, double (&values)[N]) {
    for (size_t i = 0; i < N; ++i) ValueAt(vectors[i], time, &values[i]);
}

// A curve vector without its null-table entries: those are skipped as null entries are.
bool CurveAt(const pcg::engine::CurveKeyframeVector& vector, int64_t time, std::vector<int32_t>* table) {
    const pcg::engine::CurveKeyframeEntry* before = nullptr;
    const pcg::engine::CurveKeyframeEntry* after = nullptr;
    for (auto* const* it = vector.m_pFirst; it != nullptr && it != vector.m_pLast; ++it) {
        const auto* entry = *it;
        if (entry == nullptr || entry->value == nullptr) continue;
        if (entry->llTime <= time && (before == nullptr || entry->llTime >= before->llTime)) before = entry;
        if (entry->llTime >= time && (after == nullptr || entry->llTime < after->llTime)) after = entry;
    }
    if (before == nullptr && after == nullptr) return false;
    const size_t count = pcg::engine::kCurveTableCount;
    if (before == nullptr || after == nullptr || after->llTime == before->llTime) {
        const int32_t* only = before != nullptr ? before->value : after->value;
        table->assign(only, only + count);
        return true;
    }
    const double share = static_cast<double>(time - before->llTime) / static_cast<double>(after->llTime - before->llTime);
    table->resize(count);
    for (size_t i = 0; i < count; ++i) {
        const double a = before->value[i], b = after->value[i];
        (*table)[i] = static_cast<int32_t>(std::floor(a + (b - a) * share + 0.5));
    }
    return true;
}

// A whole-setting keyframe: the latest entry at or before `time`, else the
// first after it. Settings are not blended.
template <typename T>
const T* SettingAt(const KeyframeVector<T>& vector, int64_t time) {
    const KeyframeEntry<T>* before;
    const KeyframeEntry<T>* after;
    if (!Neighbours(vector, time, &before, &after)) return nullptr;
    return before != nullptr ? &before->value : &after->value;
}

template <typename Record>
const Record* As(const HeldRecord& held) {
    return reinterpret_cast<const Record*>(held.second);
}

}  // namespace

GlobalSettings SettingsAt(const std::vector<HeldRecord>& records, int64_t time) {
    namespace eng = pcg::engine;
    GlobalSettings s;
    for (const HeldRecord& held : records) {
        if (held.second == nullptr) continue;
        switch (held.first) {
        case FUNCTION_SET_TONE: {
            const auto* tone = As<eng::ToneRecord>(held);
            ValueAt(tone->exposure, time, &s.dExposure);
            ValueAt(tone->blacks, time, &s.dBlacks);
            ValueAt(tone->recovery, time, &s.dRecovery);
            ValueAt(tone->fillLight, time, &s.dFillLight);
            ValueAt(tone->brightness, time, &s.dBrightness);
            ValueAt(tone->contrast, time, &s.dContrast);
            ValueAt(tone->whites, time, &s.dWhites);
            break;
        }
        case FUNCTION_SET_WB: {
            const auto* wb = As<eng::WBRecord>(held);
            ValueAt(wb->temperature, time, &s.dTemperature);
            ValueAt(wb->tint, time, &s.dTint);
            break;
        }
        case FUNCTION_SET_SATURATION:
            ValueAt(As<eng::SaturationRecord>(held)->saturation, time, &s.dSaturation);
            break;
        case FUNCTION_SET_HSLCOLOR: {
            const auto* hsl = As<eng::HSLRecord>(held);
            ValueAt(hsl->vibrancy, time, &s.dVibrance);
            BandsAt(hsl->hue, time, s.dBandHue);
            BandsAt(hsl->saturation, time, s.dBandSaturation);
            BandsAt(hsl->luminance, time, s.dBandLuminance);
            break;
        }
        case FUNCTION_SET_BLACKWHITE: {
            const auto* bw = As<eng::BlackWhiteRecord>(held);
            s.bBlackWhite = bw->header.nHeaderWord != 0;
            BandsAt(bw->luminance, time, s.dBlackWhiteMix);
            break;
        }
        case FUNCTION_SET_BWTINT: {
            const auto* tint = As<eng::TintRecord>(held);
            ValueAt(tint->hue, time, &s.dTintHue);
            ValueAt(tint->amount, time, &s.dTintAmount);
            break;
        }
        case FUNCTION_SET_HUESHIFT:
            ValueAt(As<eng::HueShiftRecord>(held)->hueShift, time, &s.dHueShift);
            break;
        case FUNCTION_SET_TONECURVE_RGB:
            CurveAt(As<eng::ToneCurveRecord>(held)->curve, time, &s.masterCurve);
            break;
        case FUNCTION_SET_TONECURVE: {
            const auto* curves = As<eng::ToneCurveChannelRecord>(held);
            for (int i = 0; i < 3; ++i) CurveAt(curves->channels[i], time, &s.channelCurves[i]);
            break;
        }
        case FUNCTION_SET_CLARITY:
            ValueAt(As<eng::ClarityRecord>(held)->clarity, time, &s.dClarity);
            break;
        case FUNCTION_SET_SHARP: {
            // Detail and output mode have no part in the reference sharpening.
            const auto* sharp = As<eng::SharpenRecord>(held);
            ValueAt(sharp->amount, time, &s.dSharpAmount);
            ValueAt(sharp->radius, time, &s.dSharpRadius);
            ValueAt(sharp->mask, time, &s.dSharpMask);
            break;
        }
        case FUNCTION_SET_POST_VIGNETTE: {
            const auto* vignette = As<eng::VignetteRecord>(held);
            ValueAt(vignette->amount, time, &s.dVignetteAmount);
            ValueAt(vignette->midPoint, time, &s.dVignetteMidPoint);
            ValueAt(vignette->roundness, time, &s.dVignetteRoundness);
            ValueAt(vignette->feather, time, &s.dVignetteFeather);
            break;
        }
        case FUNCTION_SET_SPLITTONE: {
            const auto* split = As<eng::SplitToneRecord>(held);
            ValueAt(split->lightHue, time, &s.dSplitLightHue);
            ValueAt(split->lightSaturation, time, &s.dSplitLightSaturation);
            ValueAt(split->balance, time, &s.dSplitBalance);
            ValueAt(split->darkHue, time, &s.dSplitDarkHue);
            ValueAt(split->darkSaturation, time, &s.dSplitDarkSaturation);
            break;
        }
        case FUNCTION_SET_COLORREPLACE:
            if (const auto* replace = SettingAt(As<eng::ColorReplaceRecord>(held)->replacement, time)) {
                s.bColourReplace = true;
                for (int i = 0; i < 3; ++i) {
                    s.dReplaceFrom[i] = replace->srcColor[i];
                    s.dReplaceTo[i] = replace->dstColor[i];
                }
                s.dReplaceTolerance = replace->fSrcTolerance;
            }
            break;
        case FUNCTION_SET_COLORSPLASH:
            if (const auto* splash = SettingAt(As<eng::ColorSplashRecord>(held)->splash, time)) {
                // The dropper colour on its own depth's scale, brought to 0..255.
                const double depth = splash->dropperColor.eColorDepth == 65535 ? 65535.0 : 255.0;
                s.bColourSplash = splash->bEnableColorsplash;
                s.dSplashColour[0] = splash->dropperColor.nR * 255.0 / depth;
                s.dSplashColour[1] = splash->dropperColor.nG * 255.0 / depth;
                s.dSplashColour[2] = splash->dropperColor.nB * 255.0 / depth;
                s.dSplashTolerance = splash->fTolerance;
                s.dSplashHueShift = splash->fHueShift;
            }
            break;
        case FUNCTION_SET_HDR: {
            const auto* hdr = As<eng::HDRRecord>(held);
            ValueAt(hdr->glowStrength, time, &s.dGlowStrength);
            ValueAt(hdr->glowRadius, time, &s.dGlowRadius);
            ValueAt(hdr->glowBalance, time, &s.dGlowBalance);
            ValueAt(hdr->edgeStrength, time, &s.dEdgeStrength);
            ValueAt(hdr->edgeRadius, time, &s.dEdgeRadius);
            ValueAt(hdr->edgeBalance, time, &s.dEdgeBalance);
            break;
        }
        case FUNCTION_SET_NOISE: {
            const auto* noise = As<eng::NoiseRecord>(held);
            ValueAt(noise->lumaAmount, time, &s.dNoiseLumaAmount);
            ValueAt(noise->lumaDetail, time, &s.dNoiseLumaDetail);
            ValueAt(noise->chromaAmount, time, &s.dNoiseChromaAmount);
            ValueAt(noise->chromaDetail, time, &s.dNoiseChromaDetail);
            break;
        }
        case FUNCTION_SET_BLUR_MASK:
            ValueAt(As<eng::BlurRecord>(held)->level, time, &s.dBlurLevel);
            break;
        default:
            break;
        }
    }
    return s;
}

}  // namespace renderer
}  // namespace pcg
