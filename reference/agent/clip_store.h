// What a reference agent knows about its clips: the registered clips, the
// latest effect record per clip and FUNCTION_ID, the mask objects per clip
// and mask ID, and the LUT per clip. It owns the records it holds and frees
// each, with everything that hangs on it, when a newer one replaces it, when
// the clip's effects are cleared, and when the store goes. Safe on any thread.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "engine/effect_record.h"

namespace HVN {
class MaskInfoBase;
}

namespace pcg {
namespace refagent {

// AddVideo's three values: the clip's start, its duration (frame times) and
// its display aspect ratio, width over height.
struct ClipInfo {
    int64_t llStart = 0;
    int64_t llDuration = 0;
    double dAspectRatio = 0.0;
};

// The agent's own copy of a SetLUT block.
struct LutCopy {
    int32_t nSize = 0;
    float fDomainMin[3] = {0.0f, 0.0f, 0.0f};
    float fDomainMax[3] = {1.0f, 1.0f, 1.0f};
    std::vector<float> table;
};

class ClipStore {
public:
    ClipStore() = default;
    ~ClipStore();
    ClipStore(const ClipStore&) = delete;
    ClipStore& operator=(const ClipStore&) = delete;

    // Registers the clip or overwrites what was registered.
    void AddClip(uint32_t videoID, const ClipInfo& info);
    // False, with nothing changed, for a clip never registered.
    bool UpdateClip(uint32_t videoID, const ClipInfo& info);
    bool FindClip(uint32_t videoID, ClipInfo* info);
    // Forgets the clip and everything held under its ID. True when the clip
    // was registered.
    bool RemoveClip(uint32_t videoID);
    void RemoveAll();

    // Takes the record; a record held for the same clip and FUNCTION_ID is freed.
    void PutRecord(uint32_t videoID, uint32_t functionID, pcg::engine::EffectRecordHeader* record);
    void ClearRecords(uint32_t videoID);
    // (video ID, FUNCTION_ID) of every record held, in ascending order.
    std::vector<std::pair<uint32_t, uint32_t>> Tasks();

    // Takes the mask object; one held for the same clip and mask ID is
    // deleted with its keys.
    void PutMask(uint32_t videoID, uint32_t maskID, HVN::MaskInfoBase* mask);
    void ClearMasks(uint32_t videoID);

    void PutLut(uint32_t videoID, LutCopy lut);
    void ClearLut(uint32_t videoID);
    bool FindLut(uint32_t videoID, LutCopy* lut);

    // Renders the clip's held effects at `time` onto four-byte pixels with
    // the shared reference renderer; the records are read under the store's
    // lock, the pixels drawn after it (clip_render.cpp).
    void RenderEffects(uint32_t videoID, int64_t time, uint8_t* pixels, int32_t width, int32_t height,
                       int32_t stride);

private:
    struct HeldRecord {
        uint32_t nFunctionID;
        pcg::engine::EffectRecordHeader* pRecord;
    };
    using RecordMap = std::map<uint32_t, HeldRecord>;
    using MaskMap = std::map<uint32_t, HVN::MaskInfoBase*>;

    static void m_fnFreeRecord(const HeldRecord& held);
    static void m_fnDropMasks(MaskMap& masks);
    void m_fnForget(uint32_t videoID);

    std::mutex m_lock;
    std::map<uint32_t, ClipInfo> m_clips;
    std::map<uint32_t, RecordMap> m_records;
    std::map<uint32_t, MaskMap> m_masks;
    std::map<uint32_t, LutCopy> m_luts;
};

}  // namespace refagent
}  // namespace pcg
