// Colour replacement and colour splash: each keyframe is one whole setting
// read from a tuple, and only the first well-formed item of the list is ever
// taken. Its entry has time 0 and interpolation 2 whatever the item says.
#include "effects/colour_bands.h"
#include "effects/converter_frame.h"
#include "effects/converters.h"
#include "effects/effect_keys.h"
#include "effects/keyframe_reader.h"
#include "engine/keyed_records/colour_records.h"

namespace pcg {
namespace effects {
namespace {

// The tuple of the first item of `key`'s list that is a list of exactly
// three elements whose element 1 is a tuple of `tupleSize` elements; null
// when there is none. Element 0, the time, is parsed and dropped; element 2
// is not read.
PyObject* FirstSettingTuple(PyObject* effect, const char* key, Py_ssize_t tupleSize) {
    PyObject* list = nullptr;
    int32_t size = 0;
    if (!FindKeyedList(effect, key, list, size)) {
        return nullptr;
    }
    for (int32_t index = 0; index < size; ++index) {
        PyObject* item = PyList_GetItem(list, index);
        if (item == nullptr || !PyList_Check(item) || PyList_Size(item) != 3) {
            continue;
        }
        long long droppedTime = 0;
        ParseScalar(PyList_GetItem(item, 0), "L", &droppedTime);
        PyObject* tuple = PyList_GetItem(item, 1);
        if (tuple != nullptr && PyTuple_Check(tuple) && PyTuple_Size(tuple) == tupleSize) {
            return tuple;
        }
    }
    return nullptr;
}

int32_t TupleInt(PyObject* tuple, Py_ssize_t index) {
    int value = 0;
    ParseScalar(PyTuple_GetItem(tuple, index), "i", &value);
    return value;
}

float TupleFloat(PyObject* tuple, Py_ssize_t index) {
    float value = 0.0f;
    ParseScalar(PyTuple_GetItem(tuple, index), "f", &value);
    return value;
}

}  // namespace

// (r, g, b, r2, g2, b2, tolerance). Each channel lands in a 16-bit field; a
// channel above 255 there zeroes the whole setting, which is still appended.
int32_t m_fnColorReplaceToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::ColorReplaceRecord>(record, [effect](engine::ColorReplaceRecord& replace) {
        PyObject* tuple = FirstSettingTuple(effect, STR_COLOR_REPLACEMENT, 7);
        if (tuple == nullptr) {
            return;
        }
        ColorReplaceSetting setting;
        ZeroSetting(setting);
        bool eightBit = true;
        for (int channel = 0; channel < 6; ++channel) {
            const auto pixel = static_cast<PIXEL>(TupleInt(tuple, channel));
            (channel < 3 ? setting.srcColor[channel] : setting.dstColor[channel - 3]) = pixel;
            eightBit = eightBit && FitsEightBits(pixel);
        }
        setting.fSrcTolerance = TupleFloat(tuple, 6);
        if (!eightBit) {
            ZeroSetting(setting);
        }
        engine::AppendKeyframe(replace.replacement, 0, setting);
    });
}

// (r, g, b, tolerance, hue shift). The setting is always an enabled 8-bit
// sRGB splash on the effect-info mask 0, unless a channel, read as unsigned,
// is above 255: then the whole setting is zero and so disabled.
int32_t m_fnColorSplashToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    return BuildEffectRecord<engine::ColorSplashRecord>(record, [effect](engine::ColorSplashRecord& splash) {
        PyObject* tuple = FirstSettingTuple(effect, STR_COLOR_SPLASH, 5);
        if (tuple == nullptr) {
            return;
        }
        ColorsplashSetting setting;
        ZeroSetting(setting);
        setting.dropperColor.nR = TupleInt(tuple, 0);
        setting.dropperColor.nG = TupleInt(tuple, 1);
        setting.dropperColor.nB = TupleInt(tuple, 2);
        setting.fTolerance = TupleFloat(tuple, 3);
        setting.fHueShift = TupleFloat(tuple, 4);
        setting.dropperColor.eColorDepth = COLOR_DEPTH_8BIT;
        setting.dropperColor.eColorSpace = sRGB_SPACE;
        setting.bEnableColorsplash = true;
        setting.nMaskType = FUNCTION_EFFECTINFO_BMASK;
        setting.nMaskID = 0;
        if (!FitsEightBits(setting.dropperColor.nR) || !FitsEightBits(setting.dropperColor.nG) ||
            !FitsEightBits(setting.dropperColor.nB)) {
            ZeroSetting(setting);
        }
        engine::AppendKeyframe(splash.splash, 0, setting);
    });
}

}  // namespace effects
}  // namespace pcg
