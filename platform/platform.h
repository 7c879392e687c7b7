// The only door to the operating system. Everything outside platform/ reaches
// libraries, threads, synchronisation, settings and trace output through here;
// win32/ and posix/ implement it with the same observable semantics.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#if defined(_WIN32)
#define PCG_WINAPI __stdcall
#else
#define PCG_WINAPI
#endif

namespace pcg {
namespace platform {

// ---------------------------------------------------------------- libraries

using ModuleHandle = void*;

// Directory of the host executable, without a trailing separator. On POSIX the
// host is the folder of the binary that carries this layer (inside the Python
// extension: the extension's folder). On both sides the environment variable
// PYCLIPGRADE_HOST_DIR names another; under Wine a Unix path there is taken
// as the matching DOS path.
std::wstring HostDirectory();

// Joins a folder and a Windows-style relative path with the platform's
// separator ("%s\\%s" on Windows).
std::wstring JoinHostPath(const std::wstring& folder, const std::wstring& relative);

// LoadLibraryW. On POSIX a Windows-style path is taken with '\\' read as '/'
// and a ".dll" suffix replaced by ".so"; loaded RTLD_NOW | RTLD_LOCAL.
ModuleHandle LoadModule(const wchar_t* path);

// LoadLibraryExW with LOAD_WITH_ALTERED_SEARCH_PATH: the libraries that the
// loaded one depends on are looked for in its own folder first. On POSIX the
// same as LoadModule (the dynamic loader has no such search order to alter).
ModuleHandle LoadModuleFromItsFolder(const wchar_t* path);

// LoadLibraryA by a bare system library name. On POSIX the system trace
// library "advapi32.dll" is built in: the handle is a pseudo module whose
// symbols "EventRegister", "EventWriteString" and "EventUnregister" write to
// syslog. Any other name is dlopen'ed as LoadModule would.
ModuleHandle LoadModuleNarrow(const char* name);

// GetProcAddress; null for a null handle or a missing symbol.
void* FindSymbol(ModuleHandle module, const char* name);

// FreeLibrary: 1 on success, 0 on failure (a null handle fails).
int UnloadModule(ModuleHandle module);

// A further reference on the already loaded library that contains `address`
// (GetModuleHandleExW from an address), released with UnloadModule. Null when
// no loaded library contains it. Keeps an object's code mapped while the
// object lives, whoever loaded the library first.
ModuleHandle AcquireModuleOfAddress(const void* address);

// -------------------------------------------------------------- environment

// GetEnvironmentVariableW: false when the variable is not set. On Windows
// this reads the process's environment block.
bool ReadEnvironmentVariable(const wchar_t* name, std::wstring* value);

// ------------------------------------------------------------------ threads

constexpr uint32_t kInfinite = 0xFFFFFFFFu;
constexpr uint32_t kWaitObject0 = 0;        // WAIT_OBJECT_0
constexpr uint32_t kWaitTimeout = 0x102;    // WAIT_TIMEOUT
constexpr uint32_t kWaitFailed = 0xFFFFFFFFu; // WAIT_FAILED: the object could not be made

// Recursive lock (CRITICAL_SECTION).
class CriticalSection {
public:
    CriticalSection();
    ~CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;
    void Enter();
    void Leave();
    bool TryEnter();
private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

class CriticalSectionScope {
public:
    explicit CriticalSectionScope(CriticalSection& cs) : m_cs(cs) { m_cs.Enter(); }
    ~CriticalSectionScope() { m_cs.Leave(); }
    CriticalSectionScope(const CriticalSectionScope&) = delete;
    CriticalSectionScope& operator=(const CriticalSectionScope&) = delete;
private:
    CriticalSection& m_cs;
};

// CreateEventW: manual-reset stays signalled until Reset; auto-reset releases
// one waiter and falls back to non-signalled.
class Event {
public:
    Event(bool manualReset, bool initialState, const wchar_t* name = nullptr);
    ~Event();
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    void Set();
    void Reset();
    // kWaitObject0 when signalled, kWaitTimeout otherwise.
    uint32_t Wait(uint32_t timeoutMs = kInfinite);
private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

// CreateSemaphoreW. An initial count below 0 or above the maximum, or a
// maximum below 1, makes no semaphore: Release fails and Wait gives kWaitFailed.
class Semaphore {
public:
    Semaphore(int32_t initialCount, int32_t maximumCount);
    ~Semaphore();
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;
    // ReleaseSemaphore: false, and no change, when the count would pass the maximum.
    bool Release(int32_t count = 1, int32_t* previousCount = nullptr);
    uint32_t Wait(uint32_t timeoutMs = kInfinite);
private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

// CreateThread: a joinable thread with an exit code.
class Thread {
public:
    using Routine = uint32_t (*)(void* argument);
    // Null when the thread could not be started.
    static std::unique_ptr<Thread> Start(Routine routine, void* argument);
    ~Thread();   // waits for the thread when it still runs
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    uint32_t Wait(uint32_t timeoutMs = kInfinite);
    // GetExitCodeThread: false while the thread still runs.
    bool GetExitCode(uint32_t* exitCode) const;
private:
    Thread();
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

// _beginthread: a detached thread; false when it could not be started.
bool BeginDetachedThread(void (*routine)(void* argument), void* argument);

uint32_t CurrentThreadId();

// -------------------------------------------------------- component objects

// CoInitialize(NULL): the calling thread enters a single-threaded apartment.
// 0 (S_OK) for the first entry on a thread, 1 (S_FALSE) for a further one;
// each success is matched by one LeaveApartment. On POSIX the apartment is a
// per-thread count that the registered-class lookup below requires.
int32_t EnterApartment();
// CoUninitialize.
void LeaveApartment();
// True while the calling thread is inside an apartment.
bool InApartment();

// CoCreateInstance(clsid, no outer object, CLSCTX_INPROC_SERVER, iid, ppv).
// Both identities point to 16 bytes in the system GUID's form. On POSIX the
// class is looked up in the settings file's [Classes] section, a value named
// by the class in braces and capitals ("{58529D7C-751A-...}") holding a path
// relative to the host folder; a class without such a value falls back to
// the reference image engine's library, "Kernel\ImageRetouch\ImageRetouch"
// below the host folder; an empty value means the class is not registered.
// The library's DllGetClassObject serves the class; a library once loaded
// stays loaded, as COM keeps it. Results as COM's: 0x800401F0 outside an
// apartment, 0x80040154 for a class nobody serves, 0x8007007E for a library
// that does not load, else what the class factory answered.
int32_t CreateRegisteredInstance(const void* clsid, const void* iid, void** ppv);

// MessageBoxW(no owner, text, caption, MB_ICONSTOP | MB_OK): blocks until
// answered. On POSIX nothing can answer, so the caption and text go to the
// system trace and to standard error (through DebugOutputW, so the hook below
// sees them) and the call returns as if OK had been pressed (1).
int32_t ShowStopMessage(const wchar_t* text, const wchar_t* caption);

// GdiplusStartup (version 1, no debug callback, background thread and
// external codecs not suppressed) and GdiplusShutdown. POSIX has no GDI+:
// Start gives false and a zero token, Stop does nothing.
bool StartGdiplus(uintptr_t* token);
void StopGdiplus(uintptr_t token);
// ------------------------------------------------ ring synchronisation objects

// The event ring that the render agent writes into holds its lock in place,
// in the 40 bytes of a CRITICAL_SECTION, and its semaphores as handles, so a
// closed agent can enter and release them itself. These work on that raw
// storage: InitializeCriticalSection and friends on Windows; on POSIX a
// recursive mutex built in the same bytes.
constexpr std::size_t kRawLockBytes = 40;
void RawLockInit(void* storage);
void RawLockEnter(void* storage);
void RawLockLeave(void* storage);
void RawLockDelete(void* storage);

using SemaphoreHandle = void*;
// CreateSemaphoreW; null when refused (the counts of Semaphore's rules).
SemaphoreHandle CreateSemaphoreHandle(int32_t initialCount, int32_t maximumCount);
// WaitForSingleObject; kWaitFailed for a null handle.
uint32_t WaitSemaphoreHandle(SemaphoreHandle semaphore, uint32_t timeoutMs = kInfinite);
// ReleaseSemaphore; false, and no change, past the maximum or for a null handle.
bool ReleaseSemaphoreHandle(SemaphoreHandle semaphore, int32_t count = 1);
// CloseHandle; a null handle is ignored.
void CloseSemaphoreHandle(SemaphoreHandle semaphore);

// ---------------------------------------------------------- message window

// A hidden top-level window that does no work. On Windows a real window of a
// registered class; on POSIX an object with the same user-data slot, style
// word and procedure, reached only through SendWindowMessage.
using WindowHandle = void*;
using WindowProcedure = intptr_t(PCG_WINAPI*)(WindowHandle window, uint32_t message, uintptr_t wParam,
                                              intptr_t lParam);

constexpr uint32_t kWindowClassBytes = 80;            // sizeof(WNDCLASSEXW)
constexpr uint32_t kWindowClassStyle = 11;            // CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS
constexpr uint32_t kNullBrush = 5;                    // GetStockObject(NULL_BRUSH)
constexpr uint32_t kHiddenWindowStyle = 0x6000000;    // WS_CLIPSIBLINGS | WS_CLIPCHILDREN
constexpr uint32_t kWindowCaption = 0xC00000;         // WS_CAPTION

// RegisterClassExW with the class structure above (no extra bytes, no icon,
// cursor or menu, the null brush). False when refused, for instance because
// the class exists already.
bool RegisterHiddenWindowClass(const wchar_t* className, WindowProcedure procedure);
// CreateWindowExW(0, class, title, kHiddenWindowStyle, 0, 0, 10, 10, no
// parent), then WS_CAPTION taken out of the style. Null on failure.
WindowHandle CreateHiddenWindow(const wchar_t* className, const wchar_t* title);
// GWLP_USERDATA; the setter answers the previous value.
void* SetWindowUserData(WindowHandle window, void* data);
void* GetWindowUserData(WindowHandle window);
// GWL_STYLE as it stands.
uint32_t GetWindowStyleBits(WindowHandle window);
// The window's class name and title; empty for a null handle.
std::wstring GetWindowClassName(WindowHandle window);
std::wstring GetWindowTitle(WindowHandle window);
// DefWindowProcW.
intptr_t DefaultWindowProcedure(WindowHandle window, uint32_t message, uintptr_t wParam, intptr_t lParam);
// SendMessageW: runs the window's procedure on this thread.
intptr_t SendWindowMessage(WindowHandle window, uint32_t message, uintptr_t wParam, intptr_t lParam);
// DestroyWindow; false for a null or already destroyed handle.
bool DestroyHiddenWindow(WindowHandle window);

// ----------------------------------------------------------- settings store

// The registry below HKEY_LOCAL_MACHINE. On POSIX a settings file: by default
// /etc/PyClipGrade/registry.ini, or the file named by PYCLIPGRADE_REGISTRY;
// sections named by key path, "Name=number" lines (see posix/settings_file.cpp
// for the file format). Results are Win32 error codes: 0 success,
// 2 not found, 234 more data.
using SettingsKey = void*;
SettingsKey LocalMachineKey();

constexpr uint32_t kKeyQueryValue = 0x0001;   // KEY_QUERY_VALUE
constexpr uint32_t kKeyRead = 0x20019;        // KEY_READ
constexpr uint32_t kKeyAllAccess = 0xF003F;   // KEY_ALL_ACCESS

constexpr uint32_t kRegSz = 1;
constexpr uint32_t kRegBinary = 3;
constexpr uint32_t kRegDword = 4;
constexpr uint32_t kRegQword = 11;

constexpr long kErrorSuccess = 0;
constexpr long kErrorFileNotFound = 2;
constexpr long kErrorInvalidHandle = 6;
constexpr long kErrorInvalidParameter = 87;
constexpr long kErrorMoreData = 234;

// RegOpenKeyExW.
long OpenSettingsKey(SettingsKey root, const wchar_t* path, uint32_t access, SettingsKey* result);
// RegQueryValueExW: *size holds the room on entry and the value's size on return.
// Null data gives the size only; too little room gives kErrorMoreData, the
// needed size, and leaves the data untouched. A missing value leaves *type and
// *size untouched.
long QuerySettingsValue(SettingsKey key, const wchar_t* name, uint32_t* type, void* data, uint32_t* size);
// RegCloseKey; closing the predefined root is harmless.
long CloseSettingsKey(SettingsKey key);

// -------------------------------------------------------------- trace output

// OutputDebugStringA/W. On POSIX: standard error.
void DebugOutputA(const char* text);
void DebugOutputW(const wchar_t* text);

// Tests watch the debugger stream through this hook; while one is set the
// text goes to the hook instead of the stream. Exactly one of the two texts is
// non-null per call.
using DebugOutputHook = void (*)(const char* narrow, const wchar_t* wide);
void SetDebugOutputHook(DebugOutputHook hook);

// Event Tracing for Windows, as bound by name from the system trace library.
struct TraceGuid {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
static_assert(sizeof(TraceGuid) == 16, "TraceGuid is the system's GUID");
static_assert(offsetof(TraceGuid, Data2) == 4 && offsetof(TraceGuid, Data3) == 6 && offsetof(TraceGuid, Data4) == 8,
              "TraceGuid is the system's GUID");
using TraceRegHandle = uint64_t;
using EventRegisterFn = uint32_t(PCG_WINAPI*)(const TraceGuid* provider, void* enableCallback,
                                              void* callbackContext, TraceRegHandle* regHandle);
using EventWriteStringFn = uint32_t(PCG_WINAPI*)(TraceRegHandle regHandle, uint8_t level,
                                                 uint64_t keyword, const wchar_t* text);
using EventUnregisterFn = uint32_t(PCG_WINAPI*)(TraceRegHandle regHandle);

}  // namespace platform
}  // namespace pcg
