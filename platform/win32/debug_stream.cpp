#include "platform/debug_stream.h"

#include <windows.h>

namespace pcg {
namespace platform {

void WriteDebugStreamA(const char* text) { OutputDebugStringA(text); }

void WriteDebugStreamW(const wchar_t* text) { OutputDebugStringW(text); }

}  // namespace platform
}  // namespace pcg
