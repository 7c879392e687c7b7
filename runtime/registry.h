// Reader of 32-bit settings below HKEY_LOCAL_MACHINE. It never writes. An
// object lives on its caller's stack for one reading; nothing is cached.
#pragma once

#include <cstdint>
#include <string>

#include "platform/platform.h"

class CRegistry {
public:
    explicit CRegistry(pcg::platform::SettingsKey rootKey);
    virtual ~CRegistry();
    CRegistry(const CRegistry&) = delete;
    CRegistry& operator=(const CRegistry&) = delete;

    // Closes the key held (at first the root itself, which is harmless), then
    // opens path below rootKey with KEY_READ, or KEY_ALL_ACCESS when readOnly is 0.
    bool m_fnOpen(pcg::platform::SettingsKey rootKey, const wchar_t* path, int readOnly);
    // Reads with room for 4 bytes; on failure *value is left as it was. The
    // reported type is not tested.
    bool m_fnQueryDWORD(const wchar_t* name, uint32_t* value);

    int32_t m_lLastResult;
    uint32_t m_dwLastType;
    uint32_t m_dwLastSize;
    pcg::platform::SettingsKey m_hKey;
    std::wstring m_strKeyPath;
};

// Working depth switch: the stored value, or 1 when it cannot be read (a
// machine without the key works in 16 bits per channel). Callers compare with 1.
uint32_t Use16bitsColorDepth();
