#include "masks/mask_builders.h"

#include <climits>
#include <cstddef>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <new>

#include "effects/effect_keys.h"
#include "engine/constants.h"
#include "engine/result_codes.h"
#include "masks/script_reading.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace masks {

using engine::ContractVector;
using engine::MaskValueKey;

HVN::MaskInfoBase** NewMaskArray(int32_t count) {
    // The size as the signed count widens to: a negative count is all ones.
    const std::size_t slots = static_cast<std::size_t>(static_cast<int64_t>(count));
    const std::size_t limit = std::numeric_limits<std::size_t>::max() / sizeof(HVN::MaskInfoBase*);
    const std::size_t bytes = slots > limit ? std::numeric_limits<std::size_t>::max() : slots * sizeof(void*);
    // A block larger than the address space can hold is refused without
    // asking the heap.
    if (bytes > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max())) {
        return nullptr;
    }
    void* block = ::operator new[](bytes, std::nothrow);
    if (block == nullptr) {
        return nullptr;
    }
    // Cleared, so a slot whose item made no mask is a null the caller skips.
    std::memset(block, 0, bytes);
    return static_cast<HVN::MaskInfoBase**>(block);
}

void FreeMaskArray(HVN::MaskInfoBase** array) {
    ::operator delete[](array);
}

namespace {

constexpr int32_t kLinearStyle = LINESTYLE_LINEAR;

// Appends a key pointer. A key the list cannot take is freed here: nothing
// else could ever reach it.
template <typename TKey>
void AppendKey(ContractVector<TKey*>& list, TKey* key, const char* builder) {
    if (!list.push_back(key)) {
        DumpLog("PyClipGrade::%s, Error. no memory to grow a key list; the key is dropped\n", builder);
        delete key;
    }
}

// A float narrowed to single precision and then truncated toward zero.
// NaN and values outside the 32-bit range have no integer: they read as
// INT32_MIN, what the host's conversion instruction gives them.
int32_t TruncatedFeather(double value) {
    const float narrowed = static_cast<float>(value);
    if (std::isnan(narrowed) || narrowed >= 2147483648.0f || narrowed < -2147483648.0f) {
        DumpLog("PyClipGrade::m_fnEllipseToMaskInfoArray, Error. feather %g has no 32-bit integer; it reads as %d\n",
                static_cast<double>(narrowed), INT32_MIN);
        return INT32_MIN;
    }
    return static_cast<int32_t>(narrowed);
}

// The value of a [time, value, optional style] item.
using ValueReader = int32_t (*)(PyObject* element);

int32_t IntegerValue(PyObject* element) {
    int value = 0;
    ParseInto(element, "i", &value);
    return value;
}

int32_t TruncatedFeatherValue(PyObject* element) {
    return TruncatedFeather(FloatOf(element));
}

// [time, value, optional style] items: time "L", the value by `readValue`,
// the style from a third entry only when there are exactly three.
void ReadValueKeys(PyObject* list, const char* label, const char* builder, ValueReader readValue,
                   ContractVector<MaskValueKey*>& keys) {
    const int32_t count = ScriptListSize(list);
    for (int32_t index = 0; index < count; ++index) {
        ScriptRef item = ListItem(list, index);
        if (!item || !PyList_Check(item.get())) {
            DumpLog("PyClipGrade::%s, Error. item %d of \"%s\" is not a list; skipped\n", builder, index, label);
            continue;
        }
        long long time = 0;
        int style = kLinearStyle;
        ParseInto(ListItem(item.get(), 0).get(), "L", &time);
        const int32_t value = readValue(ListItem(item.get(), 1).get());
        if (ScriptListSize(item.get()) == 3) {
            ParseInto(ListItem(item.get(), 2).get(), "i", &style);
        }
        auto* key = new MaskValueKey;
        if (key != nullptr) {
            key->llTime = time;
            key->nValue = value;
            key->nLineStyle = style;
        }
        AppendKey(keys, key, builder);
    }
}

// Steps 1 and 2 of every list builder: the count, then the array.
bool BeginArray(const char* name, const char* countLine, const char* arrayLine, PyObject* masks,
                HVN::MaskInfoBase*** array, int32_t* count, int32_t& result) {
    if (count == nullptr) {
        DumpLog("PyClipGrade::%s, Error. count is NULL", name);
        result = kResultFail;
        return false;
    }
    const int32_t size = ScriptListSize(masks);
    DumpLog(countLine, size);
    result = kResultOk;
    if (size == 0) {
        return false;
    }
    *count = size;
    *array = NewMaskArray(size);
    if (*array == nullptr) {
        DumpLog(arrayLine);
        result = kResultFail;
        return false;
    }
    return true;
}

// The gradient's key: [time, four floats].
void ReadGradientKeys(PyObject* list, HVN::GradientMask* mask) {
    const int32_t count = ScriptListSize(list);
    for (int32_t index = 0; index < count; ++index) {
        ScriptRef item = ListItem(list, index);
        if (!item || !PyList_Check(item.get())) {
            DumpLog("PyClipGrade::m_fnGradientToMaskInfoArray, Error. item %d of \"%s\" is not a list; skipped\n",
                    index, STR_GRADIENT_MASK_MASKINFO);
            continue;
        }
        const int64_t time = LongLongOf(ListItem(item.get(), 0).get());
        float geometry[4];
        for (int32_t value = 0; value < 4; ++value) {
            geometry[value] = static_cast<float>(FloatOf(ListItem(item.get(), value + 1).get()));
        }
        auto* key = new engine::GradientKey;
        if (key != nullptr) {
            key->llTime = time;
            key->llTime2 = time;
            std::memcpy(key->fGeometry, geometry, sizeof(geometry));
            key->nLineStyle = kLinearStyle;
        }
        AppendKey(mask->keyFrames, key, "m_fnGradientToMaskInfoArray");
    }
}

// The ellipse's key: [time, (x, y), (x, y), angle].
void ReadEllipseKeys(PyObject* list, HVN::EllipseMask* mask) {
    const int32_t count = ScriptListSize(list);
    for (int32_t index = 0; index < count; ++index) {
        ScriptRef item = ListItem(list, index);
        if (!item || !PyList_Check(item.get())) {
            DumpLog("PyClipGrade::m_fnEllipseToMaskInfoArray, Error. item %d of \"%s\" is not a list; skipped\n",
                    index, STR_ELLIPSE_INFO);
            continue;
        }
        const int64_t time = LongLongOf(ListItem(item.get(), 0).get());
        float pairs[2][2];
        for (int32_t pair = 0; pair < 2; ++pair) {
            ScriptRef tuple = ListItem(item.get(), pair + 1);
            for (int32_t value = 0; value < 2; ++value) {
                pairs[pair][value] = static_cast<float>(FloatOf(TupleItem(tuple.get(), value).get()));
            }
        }
        const float angle = static_cast<float>(FloatOf(ListItem(item.get(), 3).get()));
        auto* key = new engine::EllipseKey;
        if (key != nullptr) {
            key->llTime = time;
            key->llTime2 = time;
            key->fFirstPair[0] = pairs[0][0];
            key->fFirstPair[1] = pairs[0][1];
            key->dAngle = static_cast<double>(angle);
            key->fSecondPair[0] = pairs[1][0];
            key->fSecondPair[1] = pairs[1][1];
            key->nLineStyle = kLinearStyle;
        }
        AppendKey(mask->keyFrames, key, "m_fnEllipseToMaskInfoArray");
    }
}

// The motion track's lines: items of two entries or more, style always 2.
void ReadTrackLines(PyObject* list, HVN::MotionTrackMask* mask) {
    const int32_t count = ScriptListSize(list);
    for (int32_t index = 0; index < count; ++index) {
        ScriptRef item = ListItem(list, index);
        if (ScriptListSize(item.get()) < 2) {
            continue;
        }
        long long time = 0;
        int value = 0;
        ParseInto(ListItem(item.get(), 0).get(), "L", &time);
        ParseInto(ListItem(item.get(), 1).get(), "i", &value);
        auto* key = new MaskValueKey;
        if (key != nullptr) {
            key->llTime = time;
            key->nValue = value;
            key->nLineStyle = kLinearStyle;
        }
        AppendKey(mask->lines, key, "m_fnMotionTrackMaskToMaskInfoArray");
    }
}

// The motion track's expressions: tuples parsed with "LLi" over -1 defaults;
// an item that is no tuple is an entry of defaults.
void ReadTrackExpressions(PyObject* list, HVN::MotionTrackMask* mask) {
    const int32_t count = ScriptListSize(list);
    for (int32_t index = 0; index < count; ++index) {
        ScriptRef item = ListItem(list, index);
        long long first = -1;
        long long second = -1;
        int third = -1;
        // Entries parsed before a failing one keep their values.
        if (item && !PyArg_ParseTuple(item.get(), "LLi", &first, &second, &third)) {
            PyErr_Clear();
        }
        engine::TRExpressEntry entry{first, second, third};
        if (!mask->trExpress.push_back(entry)) {
            DumpLog("PyClipGrade::m_fnMotionTrackMaskToMaskInfoArray, Error. no memory to grow a key list; the key is "
                    "dropped\n");
        }
    }
}

// A selection key frame: {ESM_MASK_KEYFRAME_DURATION: n, ESM_MASK_KEYFRAME_POINTS: [(x, y), ...]}.
void ReadSelectionKey(PyObject* keyFrame, PyObject* durationKey, PyObject* pointsKey, HVN::SelectionMask* mask) {
    ScriptRef duration = DictValue(keyFrame, durationKey);
    ScriptRef points = DictValue(keyFrame, pointsKey);
    if (!duration || !points || !PyList_Check(points.get())) {
        return;
    }
    auto* key = new engine::SelectionKey;
    if (key == nullptr) {
        AppendKey<engine::SelectionKey>(mask->keyFrames, nullptr, "m_fnSelMaskToMaskInfoArray");
        return;
    }
    const int32_t count = ScriptListSize(points.get());
    key->points.reserve(static_cast<std::size_t>(count));
    for (int32_t index = 0; index < count; ++index) {
        ScriptRef point = ListItem(points.get(), index);
        if (!point || !PyTuple_Check(point.get()) || PyTuple_GET_SIZE(point.get()) != 2) {
            continue;
        }
        engine::SelectionPoint xy;
        xy.fX = static_cast<float>(FloatOf(TupleItem(point.get(), 0).get()));
        xy.fY = static_cast<float>(FloatOf(TupleItem(point.get(), 1).get()));
        key->points.push_back(xy);
    }
    key->llDuration = LongLongOf(duration.get());
    AppendKey(mask->keyFrames, key, "m_fnSelMaskToMaskInfoArray");
}

}  // namespace

namespace {

// The item loop of the list builders: for each dictionary with its ID key,
// a new TMask with that ID in the item's slot, then `fill` reads the rest of
// the item into it. An item without the key is skipped with the builder's
// line; a refused object stops the loop with `refusedLine`.
template <typename TMask, typename TFill>
int32_t BuildEachMask(const char* builder, const char* idKey, const char* refusedLine, PyObject* masks,
                      HVN::MaskInfoBase** array, int32_t count, TFill fill) {
    for (int32_t index = 0; index < count; ++index) {
        ScriptRef item = ListItem(masks, index);
        if (!item) {
            continue;
        }
        ScriptRef id = DictValue(item.get(), idKey);
        if (!id) {
            DumpLog("PyClipGrade::%s, Error. No mask id!", builder);
            continue;
        }
        int maskID = 0;
        ParseInto(id.get(), "i", &maskID);
        auto* mask = new TMask;
        if (mask == nullptr) {
            DumpLog(refusedLine);
            return kResultFail;
        }
        mask->nMaskID = maskID;
        array[index] = mask;
        fill(mask, item.get());
    }
    return kResultOk;
}

}  // namespace

int32_t m_fnGradientToMaskInfoArray(PyObject* masks, HVN::MaskInfoBase*** array, int32_t* count) {
    int32_t result = kResultOk;
    if (!BeginArray("m_fnGradientToMaskInfoArray", "PyClipGrade::m_fnGradientToMaskInfoArray, Info. nMaskCount=%d",
                    "PyClipGrade::m_fnGradientToMaskInfoArray, Error. Can't allocate GradientMask array", masks, array,
                    count, result)) {
        return result;
    }
    return BuildEachMask<HVN::GradientMask>(
        "m_fnGradientToMaskInfoArray", STR_GRADIENT_MASK_ID,
        "PyClipGrade::m_fnGradientToMaskInfoArray, Error. Can't allocate GradientMask", masks, *array, *count,
        [](HVN::GradientMask* mask, PyObject* item) {
            mask->nMaskKind = engine::MASK_KIND_GRADIENT;
            mask->effectInfoID = FUNCTION_EFFECTINFO_GMASK;
            ScriptRef keys = DictValue(item, STR_GRADIENT_MASK_MASKINFO);
            ReadGradientKeys(keys.get(), mask);
        });
}

int32_t m_fnEllipseToMaskInfoArray(PyObject* masks, HVN::MaskInfoBase*** array, int32_t* count) {
    DumpLog("PyClipGrade::m_fnEllipseToMaskInfoArray() enter\n");
    int32_t result = kResultOk;
    if (!BeginArray("m_fnEllipseToMaskInfoArray", "PyClipGrade:m_fnEllipseToMaskInfoArray, Info. nMaskCount=%d",
                    "PyClipGrade::m_fnEllipseToMaskInfoArray, Error. Can't allocate EllipseMask array", masks, array,
                    count, result)) {
        return result;
    }
    result = BuildEachMask<HVN::EllipseMask>(
        "m_fnEllipseToMaskInfoArray", STR_ELLIPSE_MASK_ID,
        "PyClipGrade::m_fnEllipseToMaskInfoArray, Error. Can't allocate MortionTrackMask", masks, *array, *count,
        [](HVN::EllipseMask* mask, PyObject* item) {
            mask->nMaskKind = engine::MASK_KIND_ELLIPSE;
            mask->effectInfoID = FUNCTION_EFFECTINFO_EMASK;
            ScriptRef feathers = DictValue(item, STR_ELLIPSE_FEATHER);
            if (ScriptListSize(feathers.get()) > 0) {
                ReadValueKeys(feathers.get(), STR_ELLIPSE_FEATHER, "m_fnEllipseToMaskInfoArray", TruncatedFeatherValue,
                              mask->feathers);
            }
            ScriptRef inverse = DictValue(item, STR_ELLIPSE_INVERSE);
            if (inverse && PyBool_Check(inverse.get())) {
                mask->bInverse = IsTrue(inverse.get());
            }
            ScriptRef keys = DictValue(item, STR_ELLIPSE_INFO);
            if (ScriptListSize(keys.get()) > 0) {
                ReadEllipseKeys(keys.get(), mask);
            }
        });
    if (result == kResultOk) {
        DumpLog("PyClipGrade::m_fnEllipseToMaskInfoArray() end\n");
    }
    return result;
}

int32_t m_fnMotionTrackMaskToMaskInfoArray(PyObject* masks, uint32_t videoID, HVN::MaskInfoBase*** array,
                                           int32_t* count) {
    int32_t result = kResultOk;
    if (!BeginArray("m_fnMotionTrackMaskToMaskInfoArray",
                    "PyClipGrade::m_fnMotionTrackMaskToMaskInfoArray, Info. nMaskCount=%d",
                    "PyClipGrade::m_fnMotionTrackMaskToMaskInfoArray, Error. Can't allocate GradientMask array", masks,
                    array, count, result)) {
        return result;
    }
    return BuildEachMask<HVN::MotionTrackMask>(
        "m_fnMotionTrackMaskToMaskInfoArray", STR_MAGIC_SELECTION_MASK_ID,
        "PyClipGrade::m_fnMotionTrackMaskToMaskInfoArray, Error. Can't allocate MortionTrackMask", masks, *array,
        *count, [videoID](HVN::MotionTrackMask* mask, PyObject* item) {
            mask->nMaskKind = engine::MASK_KIND_MOTION_TRACK;
            mask->effectInfoID = FUNCTION_EFFECTINFO_COMPMASK;
            mask->nVideoID = static_cast<int32_t>(videoID);
            ScriptRef feathers = DictValue(item, STR_MAGIC_SELECTION_FEATHER);
            if (ScriptListSize(feathers.get()) > 0) {
                ReadValueKeys(feathers.get(), STR_MAGIC_SELECTION_FEATHER, "m_fnMotionTrackMaskToMaskInfoArray",
                              IntegerValue, mask->feathers);
            }
            ScriptRef lines = DictValue(item, STR_MAGIC_SELECTION_LINES);
            if (ScriptListSize(lines.get()) > 0) {
                ReadTrackLines(lines.get(), mask);
            }
            ScriptRef inverse = DictValue(item, STR_MAGIC_SELECTION_INVERSE);
            if (!inverse) {
                // Every motion track mask is expected to say; without the key
                // the mask is not inverted.
                DumpLog("PyClipGrade::m_fnMotionTrackMaskToMaskInfoArray, Error. No \"%s\" in mask %d; not "
                        "inverted\n",
                        STR_MAGIC_SELECTION_INVERSE, mask->nMaskID);
            } else if (PyBool_Check(inverse.get())) {
                mask->bInverse = IsTrue(inverse.get());
            }
            ScriptRef expressions = DictValue(item, STR_MAGIC_SELECTION_TREXPRESS);
            if (ScriptListSize(expressions.get()) > 0) {
                ReadTrackExpressions(expressions.get(), mask);
            }
        });
}

int32_t m_fnSelMaskToMaskInfoArray(PyObject* masks, HVN::MaskInfoBase*** array, int32_t* count) {
    if (masks == nullptr || !PyDict_Check(masks) || count == nullptr) {
        return kResultFail;
    }
    ScriptRef maskID = DictValue(masks, STR_SELMASK_MASK_ID);
    ScriptRef pointInfo = DictValue(masks, STR_SELMASK_POINT_INFO);
    // The ESM_* keys as script integers; key 7 is never read, key 2 is made
    // and not read.
    ScriptRef keys[9];
    for (int32_t key : {ESM_IS_MASK, ESM_IS_INVERSE, ESM_NONMASK_POINTS, ESM_MASK_KEYFRAME_LIST,
                        ESM_MASK_KEYFRAME_DURATION, ESM_MASK_KEYFRAME_POINTS, ESM_MASK_KEYFRAME_FEATHERS,
                        ESM_MASK_KEYFRAME_FEATHER_SHIFTS}) {
        keys[key] = ScriptRef(PyInt_FromLong(key));
        if (!keys[key]) {
            PyErr_Clear();
        }
    }

    ScriptRef isMask = DictValue(pointInfo.get(), keys[ESM_IS_MASK].get());
    if (!IsTrue(isMask.get())) {
        return kResultOk;
    }
    ScriptRef keyFrames = DictValue(pointInfo.get(), keys[ESM_MASK_KEYFRAME_LIST].get());
    const int32_t id = HostLongOf(maskID.get());
    *count = 1;
    *array = NewMaskArray(1);
    if (*array == nullptr) {
        DumpLog("PyClipGrade::m_fnSelMaskToMaskInfoArray, Error. no memory for the mask array\n");
        return kResultFail;
    }
    auto* mask = new HVN::SelectionMask;
    if (mask == nullptr) {
        // The slot stays null: nothing reaches the agent.
        DumpLog("PyClipGrade::m_fnSelMaskToMaskInfoArray, Error. no memory for the SelectionMask; no mask\n");
        return kResultFail;
    }
    mask->nMaskID = id;
    mask->nMaskKind = engine::MASK_KIND_SELECTION;
    mask->effectInfoID = FUNCTION_EFFECTINFO_COMPMASK;
    (*array)[0] = mask;

    ScriptRef inverse = DictValue(pointInfo.get(), keys[ESM_IS_INVERSE].get());
    mask->bInverse = IsTrue(inverse.get());

    if (keyFrames && PyList_Check(keyFrames.get())) {
        const int32_t frames = ScriptListSize(keyFrames.get());
        for (int32_t index = 0; index < frames; ++index) {
            ScriptRef keyFrame = ListItem(keyFrames.get(), index);
            if (keyFrame && PyDict_Check(keyFrame.get())) {
                ReadSelectionKey(keyFrame.get(), keys[ESM_MASK_KEYFRAME_DURATION].get(),
                                 keys[ESM_MASK_KEYFRAME_POINTS].get(), mask);
            }
        }
    }
    ScriptRef feathers = DictValue(pointInfo.get(), keys[ESM_MASK_KEYFRAME_FEATHERS].get());
    if (ScriptListSize(feathers.get()) > 0) {
        ReadValueKeys(feathers.get(), "ESM_MASK_KEYFRAME_FEATHERS", "m_fnSelMaskToMaskInfoArray", IntegerValue,
                      mask->feathers);
    }
    ScriptRef shifts = DictValue(pointInfo.get(), keys[ESM_MASK_KEYFRAME_FEATHER_SHIFTS].get());
    if (ScriptListSize(shifts.get()) > 0) {
        ReadValueKeys(shifts.get(), "ESM_MASK_KEYFRAME_FEATHER_SHIFTS", "m_fnSelMaskToMaskInfoArray", IntegerValue,
                      mask->featherShifts);
    }
    return kResultOk;
}

bool MapTaskToMaskFunction(int32_t taskID, int32_t& maskFunctionID) {
    switch (taskID) {
        case PY_SET_GRADIENT_MASK:
            maskFunctionID = kMaskFunctionGradient;
            return true;
        case PY_SET_MAGIC_SELECTION:
        case PY_SET_MOTIONTRACK_MASK:
            maskFunctionID = kMaskFunctionMotionTrack;
            return true;
        case PY_SET_SELMASK_MASK:
            maskFunctionID = kMaskFunctionSelection;
            return true;
        case PY_SET_ELLIPSE_MASK:
            maskFunctionID = kMaskFunctionEllipse;
            return true;
        default:
            return false;
    }
}

bool BuildMaskArray(int32_t maskFunctionID, PyObject* masks, uint32_t videoID, HVN::MaskInfoBase*** array,
                    int32_t* count) {
    switch (maskFunctionID) {
        case kMaskFunctionGradient:
            m_fnGradientToMaskInfoArray(masks, array, count);
            return true;
        case kMaskFunctionMotionTrack:
            m_fnMotionTrackMaskToMaskInfoArray(masks, videoID, array, count);
            return true;
        case kMaskFunctionSelection:
            m_fnSelMaskToMaskInfoArray(masks, array, count);
            return true;
        case kMaskFunctionEllipse:
            m_fnEllipseToMaskInfoArray(masks, array, count);
            return true;
        default:
            return false;
    }
}

}  // namespace masks
}  // namespace pcg
