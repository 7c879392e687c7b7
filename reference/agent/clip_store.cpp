#include "reference/agent/clip_store.h"

#include "engine/effect_layouts.h"
#include "reference/agent/agent_registry.h"
#include "reference/agent/mask_store.h"

namespace pcg {
namespace refagent {

ClipStore::~ClipStore() {
    RemoveAll();
}

void ClipStore::m_fnFreeRecord(const HeldRecord& held) {
    const pcg::engine::FreedRecord freed = pcg::engine::FreeEffectRecord(held.nFunctionID, held.pRecord);
    AgentRegistry& registry = AgentRegistry::Instance();
    registry.Add(Counter::RecordsHeld, -1);
    registry.Add(Counter::RecordsFreed, 1);
    registry.Add(Counter::EntriesFreed, static_cast<int64_t>(freed.nEntries));
}

void ClipStore::m_fnDropMasks(MaskMap& masks) {
    AgentRegistry::Instance().Add(Counter::MasksHeld, -static_cast<int64_t>(masks.size()));
    for (const auto& held : masks) {
        DeleteHeldMask(held.second);
    }
    masks.clear();
}

void ClipStore::m_fnForget(uint32_t videoID) {
    m_clips.erase(videoID);
    const auto records = m_records.find(videoID);
    if (records != m_records.end()) {
        for (const auto& held : records->second) {
            m_fnFreeRecord(held.second);
        }
        m_records.erase(records);
    }
    const auto masks = m_masks.find(videoID);
    if (masks != m_masks.end()) {
        m_fnDropMasks(masks->second);
        m_masks.erase(masks);
    }
    m_luts.erase(videoID);
}

void ClipStore::AddClip(uint32_t videoID, const ClipInfo& info) {
    std::lock_guard<std::mutex> guard(m_lock);
    m_clips[videoID] = info;
}

bool ClipStore::UpdateClip(uint32_t videoID, const ClipInfo& info) {
    std::lock_guard<std::mutex> guard(m_lock);
    const auto it = m_clips.find(videoID);
    if (it == m_clips.end()) {
        return false;
    }
    it->second = info;
    return true;
}

bool ClipStore::FindClip(uint32_t videoID, ClipInfo* info) {
    std::lock_guard<std::mutex> guard(m_lock);
    const auto it = m_clips.find(videoID);
    if (it == m_clips.end()) {
        return false;
    }
    *info = it->second;
    return true;
}

bool ClipStore::RemoveClip(uint32_t videoID) {
    std::lock_guard<std::mutex> guard(m_lock);
    const bool known = m_clips.count(videoID) != 0;
    m_fnForget(videoID);
    return known;
}

void ClipStore::RemoveAll() {
    std::lock_guard<std::mutex> guard(m_lock);
    std::vector<uint32_t> ids;
    for (const auto& clip : m_clips) {
        ids.push_back(clip.first);
    }
    for (const auto& records : m_records) {
        ids.push_back(records.first);
    }
    for (const auto& masks : m_masks) {
        ids.push_back(masks.first);
    }
    for (const auto& lut : m_luts) {
        ids.push_back(lut.first);
    }
    for (uint32_t videoID : ids) {
        m_fnForget(videoID);
    }
}

void ClipStore::PutRecord(uint32_t videoID, uint32_t functionID, pcg::engine::EffectRecordHeader* record) {
    std::lock_guard<std::mutex> guard(m_lock);
    AgentRegistry::Instance().Add(Counter::RecordsHeld, 1);
    RecordMap& records = m_records[videoID];
    const auto it = records.find(functionID);
    if (it != records.end() && it->second.pRecord == record) {
        // The same block pushed twice is still one record.
        AgentRegistry::Instance().Add(Counter::RecordsHeld, -1);
    } else if (it != records.end()) {
        m_fnFreeRecord(it->second);
        it->second = HeldRecord{functionID, record};
    } else {
        records.emplace(functionID, HeldRecord{functionID, record});
    }
}

void ClipStore::ClearRecords(uint32_t videoID) {
    std::lock_guard<std::mutex> guard(m_lock);
    const auto it = m_records.find(videoID);
    if (it == m_records.end()) {
        return;
    }
    for (const auto& held : it->second) {
        m_fnFreeRecord(held.second);
    }
    m_records.erase(it);
}

std::vector<std::pair<uint32_t, uint32_t>> ClipStore::Tasks() {
    std::lock_guard<std::mutex> guard(m_lock);
    std::vector<std::pair<uint32_t, uint32_t>> tasks;
    for (const auto& records : m_records) {
        for (const auto& held : records.second) {
            tasks.emplace_back(records.first, held.first);
        }
    }
    return tasks;
}

void ClipStore::PutMask(uint32_t videoID, uint32_t maskID, HVN::MaskInfoBase* mask) {
    std::lock_guard<std::mutex> guard(m_lock);
    MaskMap& masks = m_masks[videoID];
    const auto it = masks.find(maskID);
    if (it == masks.end()) {
        AgentRegistry::Instance().Add(Counter::MasksHeld, 1);
        masks.emplace(maskID, mask);
    } else if (it->second != mask) {
        // The later object replaces the earlier, which nothing can reach now.
        DeleteHeldMask(it->second);
        it->second = mask;
    }
}

void ClipStore::ClearMasks(uint32_t videoID) {
    std::lock_guard<std::mutex> guard(m_lock);
    const auto it = m_masks.find(videoID);
    if (it == m_masks.end()) {
        return;
    }
    m_fnDropMasks(it->second);
    m_masks.erase(it);
}

void ClipStore::PutLut(uint32_t videoID, LutCopy lut) {
    std::lock_guard<std::mutex> guard(m_lock);
    m_luts[videoID] = std::move(lut);
}

void ClipStore::ClearLut(uint32_t videoID) {
    std::lock_guard<std::mutex> guard(m_lock);
    m_luts.erase(videoID);
}

bool ClipStore::FindLut(uint32_t videoID, LutCopy* lut) {
    std::lock_guard<std::mutex> guard(m_lock);
    const auto it = m_luts.find(videoID);
    if (it == m_luts.end()) {
        return false;
    }
    *lut = it->second;
    return true;
}

}  // namespace refagent
}  // namespace pcg
