// Inside the platform layer only: the raw debugger stream of each side, behind
// the test hook that DebugOutputA/W apply (platform/debug_output.cpp).
#pragma once

namespace pcg {
namespace platform {

void WriteDebugStreamA(const char* text);
void WriteDebugStreamW(const wchar_t* text);

}  // namespace platform
}  // namespace pcg
