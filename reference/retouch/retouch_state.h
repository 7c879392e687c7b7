// Library-wide state of the reference image engine: the journal, injected
// results, instance numbers and ownership counters, shared by every object
// the library makes. Safe on any thread.
#pragma once

#include <cstdint>
#include <string>

#include "reference/agent/journal_json.h"

namespace pcg {
namespace refretouch {

using pcg::refagent::Json;

enum class Counter {
    InstancesLive,     // engine instances made and not yet destroyed
    BuffersLive,       // image buffers the allocator made that are still alive
    ImagesHeld,        // pictures the live instances keep (SetImage)
    RecordsHeld,       // effect records the live instances keep (Image_PushTask)
    AllocatorsLive,    // buffer allocators made and not yet destroyed
    VideoModeSet,      // SetProperty calls that switched an instance to video mode
    CreatedOnThread,   // thread id that made the last engine instance
    ReleasedOnThread,  // thread id that dropped an engine instance's last reference
    Count
};

class RetouchState {
public:
    static RetouchState& Instance();

    int64_t NextInstance();
    // Appends {"object", "instance", "op", "args"} to the journal.
    void Journal(const char* object, int64_t instance, const char* op, Json args);
    std::string JournalText();
    void Reset();

    // object "*" stands for every object.
    void SetResult(const std::string& object, const std::string& op, double value);
    // The injected answer, else `own`.
    int32_t Answer(const char* object, const char* op, int32_t own);

    void Add(Counter counter, int64_t delta);
    void Set(Counter counter, int64_t value);
    int64_t Get(Counter counter);

private:
    RetouchState() = default;
    struct Impl;
    Impl& State();
};

}  // namespace refretouch
}  // namespace pcg
