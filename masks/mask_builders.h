// The four builders that turn a script's mask list into an array of
// mask objects for the render agent, and the map from a task ID to its mask
// function and builder.
#pragma once

#include <cstdint>

#include "binding/py_compat.h"
#include "engine/mask_objects.h"

namespace pcg {
namespace masks {

// Each builder returns 0 or 0x80004005 and leaves in `array` either null or
// an array of `count` slots (from NewMaskArray, freed by FreeMaskArray); a
// slot is null when its item gave no mask. The objects in it are the
// receiver's: no code here deletes one.
int32_t m_fnGradientToMaskInfoArray(PyObject* masks, HVN::MaskInfoBase*** array, int32_t* count);
int32_t m_fnEllipseToMaskInfoArray(PyObject* masks, HVN::MaskInfoBase*** array, int32_t* count);
int32_t m_fnMotionTrackMaskToMaskInfoArray(PyObject* masks, uint32_t videoID, HVN::MaskInfoBase*** array,
                                           int32_t* count);
int32_t m_fnSelMaskToMaskInfoArray(PyObject* masks, HVN::MaskInfoBase*** array, int32_t* count);

// The agent's mask function IDs.
constexpr int32_t kMaskFunctionGradient = 16;
constexpr int32_t kMaskFunctionSelection = 32;
constexpr int32_t kMaskFunctionMotionTrack = 48;
constexpr int32_t kMaskFunctionEllipse = 64;

// The mask function of a PY_SET_* task; false for a task that builds no mask.
bool MapTaskToMaskFunction(int32_t taskID, int32_t& maskFunctionID);

// Runs the builder of a mask function. False, with nothing built, for an
// unknown mask function.
bool BuildMaskArray(int32_t maskFunctionID, PyObject* masks, uint32_t videoID, HVN::MaskInfoBase*** array,
                    int32_t* count);

// Slots for `count` mask pointers, all null; the byte size is 8 times the
// count, saturating, so a negative or huge count fails. Null when refused.
HVN::MaskInfoBase** NewMaskArray(int32_t count);
void FreeMaskArray(HVN::MaskInfoBase** array);

}  // namespace masks
}  // namespace pcg
