// From a script's task ID (PY_SET_*) to the engine's FUNCTION_ID.
#pragma once

#include <cstdint>

#include "engine/constants.h"

namespace pcg {
namespace effects {

// 0 with functionID filled, or 0x80070057 (functionID untouched) for a task
// ID that has no mapping.
int32_t MapTaskToFunction(int32_t taskID, FUNCTION_ID& functionID);

}  // namespace effects
}  // namespace pcg
