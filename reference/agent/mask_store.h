// How the reference agent reads and frees the mask objects it is given:
// the object's kind says which class it is, and so which lists it has.
#pragma once

#include "engine/mask_objects.h"
#include "reference/agent/journal_json.h"

namespace pcg {
namespace refagent {

// Frees a mask the agent holds: the key records its lists point to (with a
// selection key's point storage), then the object itself through its
// virtual destructor, which frees the lists. A kind this agent does not
// know loses only what its destructor frees. Null is ignored.
void DeleteHeldMask(HVN::MaskInfoBase* mask);

// MASK: {"class", "nMaskID", "nMaskKind", "effectInfoID", the class's lists
// with their key records' fields by name, "bInverse", and "nVideoID" for a
// motion track mask}. A null key pointer is null; a kind this agent does not
// know has "class": null and the head fields only. Null for a null object.
Json MaskJson(const HVN::MaskInfoBase* mask);

}  // namespace refagent
}  // namespace pcg
