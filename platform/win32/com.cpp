// Component objects on Windows: the COM runtime itself, and the stop message
// box, which blocks until someone answers it.
#include "platform/platform.h"

#include <windows.h>
#include <objbase.h>

namespace pcg {
namespace platform {

namespace {
thread_local int t_nApartmentDepth = 0;
}

int32_t EnterApartment() {
    const HRESULT hr = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (SUCCEEDED(hr)) ++t_nApartmentDepth;
    return static_cast<int32_t>(hr);
}

void LeaveApartment() {
    if (t_nApartmentDepth > 0) --t_nApartmentDepth;
    CoUninitialize();
}

bool InApartment() { return t_nApartmentDepth > 0; }

int32_t CreateRegisteredInstance(const void* clsid, const void* iid, void** ppv) {
    if (ppv == nullptr) return static_cast<int32_t>(E_POINTER);
    *ppv = nullptr;
    if (clsid == nullptr || iid == nullptr) return static_cast<int32_t>(E_INVALIDARG);
    return static_cast<int32_t>(CoCreateInstance(*static_cast<const CLSID*>(clsid), nullptr, CLSCTX_INPROC_SERVER,
                                                 *static_cast<const IID*>(iid), ppv));
}

int32_t ShowStopMessage(const wchar_t* text, const wchar_t* caption) {
    return MessageBoxW(nullptr, text, caption, MB_ICONSTOP | MB_OK);
}

}  // namespace platform
}  // namespace pcg

namespace pcg {
namespace platform {

namespace {
// GdiplusStartupInput, version 1.
struct GdiplusStartupInput {
    UINT32 GdiplusVersion;
    void* DebugEventCallback;
    BOOL SuppressBackgroundThread;
    BOOL SuppressExternalCodecs;
};
using GdiplusStartupFn = int(WINAPI*)(ULONG_PTR*, const GdiplusStartupInput*, void*);
using GdiplusShutdownFn = void(WINAPI*)(ULONG_PTR);
}  // namespace

bool StartGdiplus(uintptr_t* token) {
    if (token != nullptr) *token = 0;
    HMODULE gdiplus = LoadLibraryW(L"gdiplus.dll");
    if (gdiplus == nullptr || token == nullptr) return false;
    auto startup = reinterpret_cast<GdiplusStartupFn>(reinterpret_cast<void*>(GetProcAddress(gdiplus, "GdiplusStartup")));
    if (startup == nullptr) return false;
    GdiplusStartupInput input = {1, nullptr, FALSE, FALSE};
    ULONG_PTR value = 0;
    const bool started = startup(&value, &input, nullptr) == 0;
    *token = static_cast<uintptr_t>(value);
    return started;
}

void StopGdiplus(uintptr_t token) {
    HMODULE gdiplus = GetModuleHandleW(L"gdiplus.dll");
    if (gdiplus == nullptr) return;
    auto shutdown = reinterpret_cast<GdiplusShutdownFn>(reinterpret_cast<void*>(GetProcAddress(gdiplus, "GdiplusShutdown")));
    if (shutdown != nullptr) shutdown(static_cast<ULONG_PTR>(token));
}

}  // namespace platform
}  // namespace pcg
