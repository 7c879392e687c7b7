// A stand-in selection library for the loader's tests, built in variants:
// complete, without one of the two exports, or with a factory that hands
// out nothing. It records what the loader passes it.
#include <cstdint>
#include <cstring>

#include "engine/selection_engine.h"
#include "tests/unit/selection/zenodor_fixture.h"

#define FIXTURE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

ZenodorFixtureState g_state = {};

class FixtureSelection final : public IMagicSelection {
public:
    int32_t Reserved1() override { return 0; }
    int32_t Reserved2() override { return 0; }
    int32_t Reserved3() override { return 0; }
    int32_t Initialize(const MagicImage*, void*) override { return 0; }
    int32_t Uninitialize() override { return 0; }
    int32_t MagicSelect(const MagicStroke*, const MagicMask*, SelectionResult*) override { return 0; }
    int32_t ClearStrokeHistory() override { return 0; }
    int32_t GetCurrentTimeStamp(int64_t* p) override {
        if (p) *p = 42;
        return 0;
    }
    int32_t Undo(int) override { return 0; }
    int32_t Redo(int) override { return 0; }
    ~FixtureSelection() = default;
};

}  // namespace

FIXTURE_EXPORT ZenodorFixtureState* PCG_WINAPI ZenodorFixtureGetState() { return &g_state; }

// Deletes an object that a variant without the release entry handed out.
FIXTURE_EXPORT void PCG_WINAPI ZenodorFixtureDelete(void* pObject) {
    delete static_cast<FixtureSelection*>(static_cast<IMagicSelection*>(pObject));
}

#if !defined(FIXTURE_NO_CREATE)
FIXTURE_EXPORT int32_t PCG_WINAPI CreateZenodorObject(const ZenodorGuid* pIid, void** ppObject) {
    ++g_state.nCreates;
    if (pIid) std::memcpy(&g_state.lastIid, pIid, sizeof(ZenodorGuid));
#if defined(FIXTURE_NULL_OBJECT)
    *ppObject = nullptr;
    return 1;
#else
    *ppObject = static_cast<IMagicSelection*>(new FixtureSelection());
    return 0;
#endif
}
#endif

#if !defined(FIXTURE_NO_RELEASE)
FIXTURE_EXPORT int32_t PCG_WINAPI ReleaseZenodorObject(void** ppObject) {
    ++g_state.nReleases;
    g_state.ppLastReleased = ppObject;
    if (ppObject && *ppObject) {
        delete static_cast<FixtureSelection*>(static_cast<IMagicSelection*>(*ppObject));
        *ppObject = nullptr;
    }
    return 0;
}
#endif
