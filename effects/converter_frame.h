// The frame every converter shares: allocate the record zero-filled with the
// latest effect version, fill it, and hand it back through the reference on
// every path, so a converter whose keys are all absent still yields a record
// of empty vectors.
#pragma once

#include <cstdint>

#include "binding/py_compat.h"
#include "engine/constants.h"
#include "engine/effect_record.h"

namespace pcg {
namespace effects {

template <typename TRecord, typename TFill>
int32_t BuildEffectRecord(engine::EffectRecordHeader*& record, TFill fill) {
    auto* built = engine::NewEffectRecord<TRecord>(EFFECT_VERSION_LATEST);
    if (built != nullptr) {
        fill(*built);
    }
    record = reinterpret_cast<engine::EffectRecordHeader*>(built);
    return 0;
}

// "List Size: %d" when `key` is in the effect, with the length as the reader
// takes it; nothing when the key is absent. The converters that trace their
// keyframes start with it.
void LogKeyedListSize(PyObject* effect, const char* key);

}  // namespace effects
}  // namespace pcg
