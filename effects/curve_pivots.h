// The free pivots of one tone curve keyframe: element 1 of the script's item,
// a list of (x, y) tuples, read into a ToneCurveRGBSetting.
#pragma once

#include "binding/py_compat.h"
#include "engine/records/effect_records.h"

namespace pcg {
namespace effects {

// Reads `pivots` into setting.nPivotCount, fPivotX and fPivotY. More than 20
// (FREE_TONECURVE_PIVOT_COUNT) are logged with their full count and cut to
// the first 20. Each pivot is a tuple parsed with "ff"; one that does not
// parse leaves what it did not reach at 0.0 and still counts. False, with the
// setting untouched, when `pivots` is not a list: the item has no pivots.
bool ReadFreePivots(PyObject* pivots, ToneCurveRGBSetting& setting);

}  // namespace effects
}  // namespace pcg
