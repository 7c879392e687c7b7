#include "effects/colour_bands.h"

#include "effects/keyframe_reader.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace effects {

void ReadColourBands(const char* converterName, PyObject* effect, const char* key, engine::BandVectors& bands) {
    PyObject* list = nullptr;
    int32_t count = 0;
    if (!FindKeyedList(effect, key, list, count) || count <= 0) {
        return;
    }
    if (count > Hue_COLOR_COUNT) {
        DumpLog("PyClipGrade::%s, Error. %d band lists under \"%s\", only %d bands: the rest is ignored",
                converterName, count, key, static_cast<int>(Hue_COLOR_COUNT));
        count = Hue_COLOR_COUNT;
    }
    for (int32_t band = 0; band < count; ++band) {
        ReadKeyframeList(PyList_GetItem(list, band), key, bands[band]);
    }
}

}  // namespace effects
}  // namespace pcg
