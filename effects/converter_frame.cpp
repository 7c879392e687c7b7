#include "effects/converter_frame.h"

#include "effects/keyframe_reader.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace effects {

void LogKeyedListSize(PyObject* effect, const char* key) {
    PyObject* list = nullptr;
    int32_t size = 0;
    if (FindKeyedList(effect, key, list, size)) {
        DumpLog("List Size: %d", size);
    }
}

}  // namespace effects
}  // namespace pcg
