// The tone curves: each keyframe carries a finished 65536-entry mapping table
// computed from the item's free pivots at the moment of the push, rather than
// the pivots themselves. The master and channel forms read an item alike and
// differ in what a malformed item gives.
#include "effects/converter_frame.h"
#include "effects/converters.h"
#include "effects/curve_pivots.h"
#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"
#include "engine/keyed_records/tone_records.h"
#include "engine/records/effect_records.h"
#include "facade/clipgrade.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace effects {
namespace {

// How a curve item of the wrong shape is met: the master curve still
// appends an entry, the channel curves skip the item.
enum class CurveForm { Master, Channel };

constexpr int kNoChannel = -1;

struct CurveChannel {
    int nTaskID;          // the outer key of the channel form
    const char* pszKey;   // the pivot key inside it
};

constexpr CurveChannel kChannels[COLOR_CHANNEL_COUNT] = {
    {PY_SET_TONE_CURVE_R, STR_TONE_CURVE_CHANNEL_R_PIVOTS},
    {PY_SET_TONE_CURVE_G, STR_TONE_CURVE_CHANNEL_G_PIVOTS},
    {PY_SET_TONE_CURVE_B, STR_TONE_CURVE_CHANNEL_B_PIVOTS},
};

void AppendCurveEntry(engine::CurveKeyframeVector& curve, int64_t time, int32_t* table, int32_t interpolation) {
    if (!engine::AppendKeyframe(curve, time, table, interpolation)) {
        engine::FreeEffectMemory(table);
    }
}

// Reads one item [time, [(x, y), ...], interpolation] and appends its entry.
// `channel` is the channel index for the channel form's log line.
void ReadCurveItem(PyClipGrade* facade, PyObject* item, CurveForm form, int channel,
                   engine::CurveKeyframeVector& curve) {
    long long time = 0;
    int interpolation = engine::kDefaultInterpolation;
    const Py_ssize_t itemSize = (item != nullptr && PyList_Check(item)) ? PyList_Size(item) : -1;
    if (itemSize != 3) {
        if (form == CurveForm::Master) {
            // The script's time is lost with the table: time 0, no table.
            AppendCurveEntry(curve, 0, nullptr, engine::kDefaultInterpolation);
        }
        return;
    }
    ParseScalar(PyList_GetItem(item, 0), "L", &time);
    ParseScalar(PyList_GetItem(item, 2), "i", &interpolation);

    ToneCurveRGBSetting setting;
    if (!ReadFreePivots(PyList_GetItem(item, 1), setting)) {
        if (form == CurveForm::Channel) {
            DumpLog("[Err] tone curve channel %d, keyframe %lld: the pivots are not a list; the keyframe is skipped\n",
                    channel, time);
            return;
        }
        DumpLog("[Err] tone curve keyframe %lld: the pivots are not a list; the curve has none\n", time);
    }
    if (form == CurveForm::Channel) {
        DumpLog("[ToneCurveChannel][%d]nPivotCount = %d", channel, setting.nPivotCount);
    }

    int32_t* table = nullptr;
    if (facade != nullptr) {
        table = facade->Query_ToneMapInfoForEngine(setting);
    } else {
        DumpLog("[Err] tone curve without a facade: keyframe %lld has no table\n", time);
    }
    AppendCurveEntry(curve, static_cast<int64_t>(time), table, static_cast<int32_t>(interpolation));
}

// Every item of the list under `key` of `dictionary`, in order.
void ReadCurveList(PyClipGrade* facade, PyObject* dictionary, const char* key, CurveForm form, int channel,
                   engine::CurveKeyframeVector& curve) {
    PyObject* list = nullptr;
    int32_t size = 0;
    if (!FindKeyedList(dictionary, key, list, size)) {
        return;
    }
    for (int32_t index = 0; index < size; ++index) {
        ReadCurveItem(facade, PyList_GetItem(list, index), form, channel, curve);
    }
}

}  // namespace

int32_t m_fnToneCurveToEffect(PyClipGrade* facade, FUNCTION_ID, PyObject* effect,
                              engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::ToneCurveRecord>(record, [facade, effect](engine::ToneCurveRecord& master) {
        ReadCurveList(facade, effect, STR_TONE_CURVE_PIVOTS, CurveForm::Master, kNoChannel, master.curve);
    });
}

// The effect maps each channel's task ID to a dictionary holding that
// channel's pivot list. A channel whose dictionary is missing stays empty.
int32_t m_fnToneCurveChannelToEffect(PyClipGrade* facade, FUNCTION_ID, PyObject* effect,
                                     engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::ToneCurveChannelRecord>(
        record, [facade, effect](engine::ToneCurveChannelRecord& channels) {
            if (effect == nullptr || !PyDict_Check(effect)) {
                return;
            }
            for (int channel = 0; channel < COLOR_CHANNEL_COUNT; ++channel) {
                PyObject* taskID = PyInt_FromLong(kChannels[channel].nTaskID);
                PyObject* inner = taskID != nullptr ? PyDict_GetItem(effect, taskID) : nullptr;
                Py_XDECREF(taskID);
                if (inner == nullptr || !PyDict_Check(inner)) {
                    DumpLog("[Err] tone curve channel %d: no dictionary under %d; the channel stays empty\n",
                            channel, kChannels[channel].nTaskID);
                    continue;
                }
                ReadCurveList(facade, inner, kChannels[channel].pszKey, CurveForm::Channel, channel,
                              channels.channels[channel]);
            }
        });
}

}  // namespace effects
}  // namespace pcg
