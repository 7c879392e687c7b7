// The keyed settings of local adjustments that are not plain keyframe lists:
// the whole-setting tuples of colour replacement and colour splash. (The
// colour band blocks of the HSL adjustment are read by ReadColourBands.)
#pragma once

#include "binding/py_compat.h"
#include "engine/constants.h"
#include "engine/keyed_records/colour_records.h"
#include "engine/keyed_records/local_records.h"

namespace pcg {
namespace masks {

// Under `key`, a list of 7-tuples (source r, g, b, destination r, g, b,
// tolerance); each becomes one entry of time 0 and interpolation 2. Items of
// another shape are skipped; a setting with a channel above 255 is zeroed
// and kept.
void ReadColorReplaceList(PyObject* dictionary, const char* key, engine::KeyframeVector<ColorReplaceSetting>& vector);

// Under `key`, a list of 5-tuples (r, g, b, tolerance, hue shift); each
// becomes one entry of time 0 and interpolation 2 that names the per-mask
// record's mask. Items of another shape are skipped; a setting with a
// channel above 255 is zeroed and kept.
void ReadColorSplashList(PyObject* dictionary, const char* key, const engine::MaskRecordHead& mask,
                         engine::KeyframeVector<MaskColorsplashSetting>& vector);

}  // namespace masks
}  // namespace pcg
