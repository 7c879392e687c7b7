// The HRESULT-style 32-bit codes that cross every engine boundary and reach
// scripts as plain integers, negative on failure. Names carry a k prefix so
// they never meet the system headers' macros of the same meaning.
#pragma once

#include <cstdint>

namespace pcg {
constexpr int32_t kResultOk = 0;                                          // S_OK
constexpr int32_t kResultFalse = 1;                                       // S_FALSE
constexpr int32_t kResultPointer = static_cast<int32_t>(0x80004003u);     // E_POINTER
constexpr int32_t kResultFail = static_cast<int32_t>(0x80004005u);        // E_FAIL
constexpr int32_t kResultInvalidArg = static_cast<int32_t>(0x80070057u);  // E_INVALIDARG
}  // namespace pcg
