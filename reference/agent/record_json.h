// What the reference agent writes into the journal for the data its
// operations are given by pointer: effect records, the LUT block, the buffer
// block, rectangles, byte streams and opaque pointers.
#pragma once

#include <cstdint>

#include "engine/buffer_settings.h"
#include "engine/effect_layouts.h"
#include "engine/records/record_types.h"
#include "reference/agent/journal_json.h"

namespace pcg {
namespace refagent {

// true for a non-null pointer, null for a null one.
Json OpaqueJson(const void* pointer);

// RECORD, by the layout of its FUNCTION_ID:
// - a plain record: {"version", "word", "vectors": [VECTOR, ...]}, VECTOR a
//   list of {"time", "value", "interp"} or null for a null element; the value
//   is a number, {"table": null | {"sha256": hex}} for a curve entry, or the
//   setting's fields by name for a colour replacement or colour splash entry;
// - a local adjustment record: {"version", "masks": [{"key",
//   "nEffectVersion", "nMaskID", "nMaskType", "vectors"}, ...]} in the map's
//   own iteration order;
// - the show-mask record: {"version", "nMaskType", "nMaskID", "maskColor":
//   [r, g, b, depth, space]}.
// A record whose FUNCTION_ID has no known layout gives only "version" and
// "word". Null for a null record.
Json RecordJson(uint32_t functionID, const pcg::engine::EffectRecordHeader* record);

// {"size", "min": [3], "max": [3], "table": [...]}; null for a null block.
Json LutJson(const LUTSetting* setting);

// The block's fields by name; the pixel pointers as opaque. Null for a null block.
Json ApplyBufferSettingJson(const ApplyBufferSetting* setting);

// {"left", "top", "right", "bottom"}; null for a null rectangle.
Json RectJson(const RECT* rect);

// Lower-case hex of the bytes; null for a null pointer.
Json BytesJson(const char* bytes, uint32_t size);

}  // namespace refagent
}  // namespace pcg
