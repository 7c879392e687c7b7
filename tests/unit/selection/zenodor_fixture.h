// What the stand-in selection library records of the loader's calls; read
// by the tests through its export "ZenodorFixtureGetState".
#pragma once

#include <cstdint>

#include "engine/selection_engine.h"

struct ZenodorFixtureState {
    ZenodorGuid lastIid;
    int32_t nCreates;
    int32_t nReleases;
    void** ppLastReleased;
};
using ZenodorFixtureGetStateFn = ZenodorFixtureState*(PCG_WINAPI*)();
using ZenodorFixtureDeleteFn = void(PCG_WINAPI*)(void* pObject);
