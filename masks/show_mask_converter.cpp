// The show-mask effect: one dictionary that tells the engine to draw a mask
// as an overlay, in a plain record with no keyframes.
#include "effects/converters.h"
#include "effects/effect_keys.h"
#include "engine/keyed_records/local_records.h"
#include "masks/local_adjustment_frame.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace effects {

int32_t m_fnShowMaskToEffect(PyClipGrade*, FUNCTION_ID, PyObject* effect, engine::EffectRecordHeader*& record) {
    auto* show = engine::NewEffectRecord<engine::ShowMaskRecord>(EFFECT_VERSION_LATEST);
    if (show == nullptr) {
        DumpLog("PyClipGrade::m_fnShowMaskToEffect, Error. no memory for the record\n");
        record = nullptr;
        return 0;
    }
    show->maskColor.eColorDepth = COLOR_DEPTH_16BIT;
    show->maskColor.eColorSpace = ROMMRGB_SPACE;

    // Mask type and ID have no preset: without their keys they stay 0.
    int32_t maskType = 0;
    masks::ReadMaskScalar(effect, STR_SHOW_MASK_TYPE, maskType);
    show->nMaskType = maskType;
    if (!masks::ReadMaskScalar(effect, STR_SHOW_MASK_ID, show->nMaskID)) {
        DumpLog("PyClipGrade::m_fnShowMaskToEffect, Error. no \"%s\"; mask ID 0 is used\n", STR_SHOW_MASK_ID);
    }

    PyObject* color =
        (effect != nullptr && PyDict_Check(effect)) ? PyDict_GetItemString(effect, STR_SHOW_MASK_COLOR) : nullptr;
    if (color != nullptr) {
        int red = 0;
        int green = 0;
        int blue = 0;
        if (!PyArg_ParseTuple(color, "iii", &red, &green, &blue)) {
            PyErr_Clear();
        }
        show->maskColor.nR = red;
        show->maskColor.nG = green;
        show->maskColor.nB = blue;
        show->maskColor.eColorDepth = COLOR_DEPTH_8BIT;
        show->maskColor.eColorSpace = sRGB_SPACE;
    }
    record = reinterpret_cast<engine::EffectRecordHeader*>(show);
    return 0;
}

}  // namespace effects
}  // namespace pcg
