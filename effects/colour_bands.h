// What the global and the per-mask colour converters share: the band lists
// of HSL and black and white, and the whole-setting colour entries with
// their eight-bit rule.
#pragma once

#include <cstdint>
#include <cstring>

#include "binding/py_compat.h"
#include "engine/keyed_records/colour_records.h"

namespace pcg {
namespace effects {

// Under `key`, one keyframe list per colour band in band order, band c read
// into bands[c] as any keyframe list is. An absent key or an empty list
// leaves every band empty. Bands past the eighth have no vector and are
// refused with a log line naming `converterName`, never written past the
// record.
void ReadColourBands(const char* converterName, PyObject* effect, const char* key, engine::BandVectors& bands);

// A colour setting whose channel does not fit eight bits is zeroed whole.
constexpr uint32_t kMaxEightBitChannel = 255;

// A channel value read as unsigned, so that a negative one is above 255 too.
inline bool FitsEightBits(int32_t channel) {
    return static_cast<uint32_t>(channel) <= kMaxEightBitChannel;
}

template <typename TSetting>
void ZeroSetting(TSetting& setting) {
    std::memset(static_cast<void*>(&setting), 0, sizeof(setting));
}

}  // namespace effects
}  // namespace pcg
