// The frame that every local adjustment converter shares. A local effect is a
// script list with one dictionary per mask; the record is the local effect
// record, whose ordered map takes each mask ID to one per-mask record. Each
// converter only says how big its per-mask record is and which keys it
// reads into it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "binding/py_compat.h"
#include "engine/constants.h"
#include "engine/keyed_records/local_records.h"

namespace pcg {
namespace masks {

// Reads one dictionary's own keys into its per-mask record; "MskID",
// "MskTyp" and "EffVer" have been read into the head before.
using MaskKeysReader = void (*)(PyObject* dictionary, engine::MaskRecordHead* mask);

// Builds the local effect record of `functionID` from the script list
// `effect`: for each item, in order, a per-mask record of `maskRecordSize`
// bytes with version 9, the head keys, then readKeys. The last dictionary
// with a given mask ID wins; the record of an earlier one is freed. A value
// that is not a list, or an empty one, gives an empty map. Null only when
// the heap refuses the record itself.
engine::EffectRecordHeader* BuildLocalEffect(const char* converterName, FUNCTION_ID functionID, PyObject* effect,
                                             std::size_t maskRecordSize, MaskKeysReader readKeys);

// The converter body of every local adjustment, typed by its per-mask record
// (whose first member is its head) and its key reader: builds the record and
// stores it through `record`. Its result, 0, is not looked at.
template <typename TMaskRecord, void (*ReadKeys)(PyObject*, TMaskRecord&)>
int32_t ConvertLocalEffect(const char* converterName, FUNCTION_ID functionID, PyObject* effect,
                           engine::EffectRecordHeader*& record) {
    static_assert(offsetof(TMaskRecord, head) == 0, "per-mask records start with their head");
    record = BuildLocalEffect(converterName, functionID, effect, sizeof(TMaskRecord),
                              [](PyObject* dictionary, engine::MaskRecordHead* mask) {
                                  ReadKeys(dictionary, *reinterpret_cast<TMaskRecord*>(mask));
                              });
    return 0;
}

// Parses the value under `key` with "i" into `field` when the key is there.
// A parse failure leaves the field as it was. True when the key is there.
bool ReadMaskScalar(PyObject* dictionary, const char* key, int32_t& field);

}  // namespace masks
}  // namespace pcg
