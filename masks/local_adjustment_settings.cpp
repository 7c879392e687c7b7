#include "masks/local_adjustment_settings.h"

#include "effects/colour_bands.h"
#include "effects/keyframe_reader.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace masks {
namespace {

// The list under `key` with its length as the reader takes it; null (and a
// count of 0) when the key is absent or its value is not a list.
PyObject* SettingList(PyObject* dictionary, const char* key, int32_t& count) {
    PyObject* list = nullptr;
    if (!effects::FindKeyedList(dictionary, key, list, count) || count <= 0) {
        count = 0;
        return nullptr;
    }
    return list;
}

// A list or any other object has no tuple size, so it never matches.
bool IsTupleOfSize(PyObject* item, Py_ssize_t size) {
    return item != nullptr && PyTuple_Check(item) && PyTuple_Size(item) == size;
}

void ParseTupleElement(PyObject* tuple, Py_ssize_t index, const char* format, void* out) {
    effects::ParseScalar(PyTuple_GetItem(tuple, index), format, out);
}

// Calls read(item) for each item of the list under `key` that is a tuple of
// `tupleSize` elements, in list order; other items are skipped.
template <typename TRead>
void ForEachSettingTuple(PyObject* dictionary, const char* key, Py_ssize_t tupleSize, TRead read) {
    int32_t count = 0;
    PyObject* items = SettingList(dictionary, key, count);
    for (int32_t index = 0; index < count; ++index) {
        PyObject* item = PyList_GetItem(items, index);
        if (IsTupleOfSize(item, tupleSize)) {
            read(item);
        }
    }
}

// One entry of time 0 and interpolation 2 holding the whole setting.
template <typename TSetting>
void AppendSetting(engine::KeyframeVector<TSetting>& vector, const TSetting& setting, const char* converterName) {
    if (!engine::AppendKeyframe(vector, 0, setting)) {
        DumpLog("PyClipGrade::%s, Error. no memory for a setting entry; it is dropped\n", converterName);
    }
}

}  // namespace

void ReadColorReplaceList(PyObject* dictionary, const char* key, engine::KeyframeVector<ColorReplaceSetting>& vector) {
    ForEachSettingTuple(dictionary, key, 7, [&](PyObject* item) {
        ColorReplaceSetting setting;
        effects::ZeroSetting(setting);
        PIXEL* channels[6] = {&setting.srcColor[0], &setting.srcColor[1], &setting.srcColor[2],
                              &setting.dstColor[0], &setting.dstColor[1], &setting.dstColor[2]};
        bool outOfRange = false;
        for (int channel = 0; channel < 6; ++channel) {
            int value = 0;
            ParseTupleElement(item, channel, "i", &value);
            // Each channel is 16 bits wide: the low 16 bits of the number.
            *channels[channel] = static_cast<PIXEL>(value & 0xFFFF);
            outOfRange = outOfRange || !effects::FitsEightBits(*channels[channel]);
        }
        ParseTupleElement(item, 6, "f", &setting.fSrcTolerance);
        if (outOfRange) {
            effects::ZeroSetting(setting);
        }
        AppendSetting(vector, setting, "m_fnMaskColorReplaceToEffect");
    });
}

void ReadColorSplashList(PyObject* dictionary, const char* key, const engine::MaskRecordHead& mask,
                         engine::KeyframeVector<MaskColorsplashSetting>& vector) {
    ForEachSettingTuple(dictionary, key, 5, [&](PyObject* item) {
        // The setting's start values for depth, space and mask (16-bit,
        // ROMM RGB, -1) are all overwritten below, so only the zeros remain.
        MaskColorsplashSetting setting;
        effects::ZeroSetting(setting);
        ColorSpace& color = setting.dropperColor;
        ParseTupleElement(item, 0, "i", &color.nR);
        ParseTupleElement(item, 1, "i", &color.nG);
        ParseTupleElement(item, 2, "i", &color.nB);
        ParseTupleElement(item, 3, "f", &setting.fTolerance);
        ParseTupleElement(item, 4, "f", &setting.fHueShift);
        setting.nMaskType = mask.nMaskType;
        setting.nMaskID = mask.nMaskID;
        color.eColorDepth = COLOR_DEPTH_8BIT;
        color.eColorSpace = sRGB_SPACE;
        setting.bEnableColorsplash = true;
        if (!effects::FitsEightBits(color.nR) || !effects::FitsEightBits(color.nG) ||
            !effects::FitsEightBits(color.nB)) {
            effects::ZeroSetting(setting);
        }
        AppendSetting(vector, setting, "m_fnMaskColorSplashToEffect");
    });
}

}  // namespace masks
}  // namespace pcg
