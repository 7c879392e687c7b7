// The small part of COM that the image engine and the buffer allocator are
// reached through: class and interface identities, the three operations every
// COM interface starts with, the class factory, and the entry a COM library
// exports to serve its classes. The layouts are those of the system's own
// GUID, IUnknown and IClassFactory, so a table built here is a table the
// system can call and the other way round. Kept free of OS headers: the
// names differ from the system's so that both can meet in one translation
// unit of the platform layer.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/platform.h"

namespace pcg {
namespace engine {

// A class or interface identity, in the system GUID's form.
struct ComGuid {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
static_assert(sizeof(ComGuid) == 16, "ComGuid is the system's GUID");
static_assert(offsetof(ComGuid, Data2) == 4 && offsetof(ComGuid, Data3) == 6 && offsetof(ComGuid, Data4) == 8,
              "ComGuid is the system's GUID");

inline bool SameGuid(const ComGuid& a, const ComGuid& b) {
    if (a.Data1 != b.Data1 || a.Data2 != b.Data2 || a.Data3 != b.Data3) return false;
    for (int i = 0; i < 8; ++i) {
        if (a.Data4[i] != b.Data4[i]) return false;
    }
    return true;
}

// {00000000-0000-0000-C000-000000000046}
constexpr ComGuid IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
// {00000001-0000-0000-C000-000000000046}
constexpr ComGuid IID_IClassFactory = {0x00000001, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

// CLSCTX_INPROC_SERVER: the only context this program asks for.
constexpr uint32_t kClassContextInprocServer = 1;

// Codes of the COM runtime that the registered-class lookup gives back.
constexpr int32_t kResultNoInterface = static_cast<int32_t>(0x80004002u);       // E_NOINTERFACE
constexpr int32_t kResultClassNotRegistered = static_cast<int32_t>(0x80040154u); // REGDB_E_CLASSNOTREG
constexpr int32_t kResultClassNotAvailable = static_cast<int32_t>(0x80040111u);  // CLASS_E_CLASSNOTAVAILABLE
constexpr int32_t kResultNoAggregation = static_cast<int32_t>(0x80040110u);      // CLASS_E_NOAGGREGATION
constexpr int32_t kResultComNotInitialized = static_cast<int32_t>(0x800401F0u);  // CO_E_NOTINITIALIZED

}  // namespace engine
}  // namespace pcg

// The three operations every COM interface begins with.
class IComUnknown {
public:
    virtual int32_t PCG_WINAPI QueryInterface(const pcg::engine::ComGuid& riid, void** ppvObject) = 0;
    virtual uint32_t PCG_WINAPI AddRef() = 0;
    virtual uint32_t PCG_WINAPI Release() = 0;

protected:
    ~IComUnknown() = default;
};
static_assert(sizeof(IComUnknown) == sizeof(void*), "a COM interface is a bare table pointer");

// IClassFactory: what DllGetClassObject hands out for a class.
class IComClassFactory : public IComUnknown {
public:
    virtual int32_t PCG_WINAPI CreateInstance(IComUnknown* pUnkOuter, const pcg::engine::ComGuid& riid,
                                              void** ppvObject) = 0;
    virtual int32_t PCG_WINAPI LockServer(int32_t bLock) = 0;

protected:
    ~IComClassFactory() = default;
};
static_assert(sizeof(IComClassFactory) == sizeof(void*), "a COM interface is a bare table pointer");

// The entry a COM library exports by the name "DllGetClassObject".
using DllGetClassObjectFn = int32_t(PCG_WINAPI*)(const pcg::engine::ComGuid& rclsid,
                                                 const pcg::engine::ComGuid& riid, void** ppv);
constexpr const char kDllGetClassObjectName[] = "DllGetClassObject";
