// The debugger stream as the program sees it: the test hook, when set, takes
// the text instead of the stream.
#include "platform/platform.h"

#include <atomic>

#include "platform/debug_stream.h"

namespace pcg {
namespace platform {

namespace {
std::atomic<DebugOutputHook> g_fnHook{nullptr};
}

void SetDebugOutputHook(DebugOutputHook hook) { g_fnHook.store(hook); }

void DebugOutputA(const char* text) {
    if (text == nullptr) return;
    if (DebugOutputHook hook = g_fnHook.load()) {
        hook(text, nullptr);
        return;
    }
    WriteDebugStreamA(text);
}

void DebugOutputW(const wchar_t* text) {
    if (text == nullptr) return;
    if (DebugOutputHook hook = g_fnHook.load()) {
        hook(nullptr, text);
        return;
    }
    WriteDebugStreamW(text);
}

}  // namespace platform
}  // namespace pcg
