// ZenodorLoader: binds the smart selection library beside the host and makes
// and releases its magic selection objects. The library stays loaded until
// the loader dies.
#pragma once

#include <cstdint>

#include "engine/selection_engine.h"
#include "platform/platform.h"

class ZenodorLoader {
public:
    ZenodorLoader();
    ~ZenodorLoader();
    ZenodorLoader(const ZenodorLoader&) = delete;
    ZenodorLoader& operator=(const ZenodorLoader&) = delete;

    // m_fnLoadZenodor, with a log line on failure.
    int32_t LoadZenodor();
    // Loads the library if needed and makes an object into *ppMagicSelection.
    int32_t CreateMagicSelection(void** ppMagicSelection);
    // Hands the object back; the library takes the address of the pointer.
    int32_t ReleaseMagicSelection(void** ppMagicSelection);

    // Loads "Kernel\ImageRetouch\Zenodor.dll" below the host's directory and
    // binds its two exports; 0 at once when the library is already held.
    int32_t m_fnLoadZenodor();

    pcg::platform::ModuleHandle m_hZenodorLibrary;
    PFN_CreateZenodorObject m_pZenodorCreateZenodorObject;
    PFN_ReleaseZenodorObject m_pZenodorReleaseZenodorObject;
};
