#include "effects/curve_pivots.h"

#include "runtime/dump_log.h"

namespace pcg {
namespace effects {

bool ReadFreePivots(PyObject* pivots, ToneCurveRGBSetting& setting) {
    // Pivots come as a list; anything else counts as no pivots at all.
    if (pivots == nullptr || !PyList_Check(pivots)) {
        return false;
    }
    int pivotCount = static_cast<int>(PyList_Size(pivots));
    if (pivotCount > FREE_TONECURVE_PIVOT_COUNT) {
        DumpLog("free pivot count(%d) exceed the limit, reduce to max", pivotCount);
        pivotCount = FREE_TONECURVE_PIVOT_COUNT;
    }
    setting.nPivotCount = pivotCount;
    for (int index = 0; index < pivotCount; ++index) {
        PyObject* pivot = PyList_GetItem(pivots, index);
        if (pivot == nullptr) {
            continue;
        }
        // "ff" takes the two elements of the tuple; the old-style single
        // object parse refuses a format of two units, so it is the tuple
        // parse. A pivot that is not a pair of numbers keeps 0.0 where the
        // parse did not reach, and still counts.
        float x = 0.0f;
        float y = 0.0f;
        if (!PyArg_ParseTuple(pivot, "ff", &x, &y)) {
            PyErr_Clear();
        }
        setting.fPivotX[index] = x;
        setting.fPivotY[index] = y;
    }
    return true;
}

}  // namespace effects
}  // namespace pcg
