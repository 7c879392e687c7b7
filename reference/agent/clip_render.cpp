// The render agent's frames through the shared reference renderer.
#include "reference/agent/clip_store.h"

#include "reference/renderer/record_settings.h"

namespace pcg {
namespace refagent {

void ClipStore::RenderEffects(uint32_t videoID, int64_t time, uint8_t* pixels, int32_t width, int32_t height,
                              int32_t stride) {
    // The records are read under the store's lock; the pixels are drawn
    // after it, so a long render (filters on a large frame) holds up no other
    // call on the store.
    pcg::renderer::GlobalSettings settings;
    {
        std::lock_guard<std::mutex> guard(m_lock);
        auto clip = m_records.find(videoID);
        if (clip == m_records.end()) return;
        std::vector<pcg::renderer::HeldRecord> records;
        for (const auto& held : clip->second) records.emplace_back(held.second.nFunctionID, held.second.pRecord);
        settings = pcg::renderer::SettingsAt(records, time);
    }
    pcg::renderer::RenderGlobal(pixels, width, height, stride, 1, settings);
}

}  // namespace refagent
}  // namespace pcg
