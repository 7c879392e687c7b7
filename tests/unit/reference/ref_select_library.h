// The reference selection engine as tests reach it: loaded through the
// module's own loader from <host>/Kernel/ImageRetouch/Zenodor, with the
// inspection entries looked up in the same library.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/platform.h"
#include "reference/select/ref_select_api.h"
#include "selection/zenodor_loader.h"

namespace pcg {
namespace reftest {

class RefSelectEntries {
public:
    explicit RefSelectEntries(const ZenodorLoader& loader) {
        m_fnJournal = reinterpret_cast<RefSelectJournalFn>(
            pcg::platform::FindSymbol(loader.m_hZenodorLibrary, "RefSelect_Journal"));
        m_fnReset = reinterpret_cast<RefSelectResetFn>(
            pcg::platform::FindSymbol(loader.m_hZenodorLibrary, "RefSelect_Reset"));
        m_fnSetResult = reinterpret_cast<RefSelectSetResultFn>(
            pcg::platform::FindSymbol(loader.m_hZenodorLibrary, "RefSelect_SetResult"));
        m_fnCounter = reinterpret_cast<RefSelectCounterFn>(
            pcg::platform::FindSymbol(loader.m_hZenodorLibrary, "RefSelect_Counter"));
    }
    bool Bound() const { return m_fnJournal && m_fnReset && m_fnSetResult && m_fnCounter; }
    std::string JournalText() const {
        const int32_t length = m_fnJournal(nullptr, 0);
        std::string text(static_cast<size_t>(length) + 1, '\0');
        m_fnJournal(&text[0], length + 1);
        text.resize(static_cast<size_t>(length));
        return text;
    }
    nlohmann::ordered_json Journal() const { return nlohmann::ordered_json::parse(JournalText()); }
    // Journal entries with this op, in order.
    std::vector<nlohmann::ordered_json> Entries(const char* op) const {
        std::vector<nlohmann::ordered_json> found;
        for (const auto& entry : Journal()) {
            if (entry["op"] == op) found.push_back(entry);
        }
        return found;
    }
    void Reset() const { m_fnReset(); }
    void SetResult(const char* name, const char* op, double value) const { m_fnSetResult(name, op, value); }
    int64_t Counter(const char* name) const { return m_fnCounter(name); }
    RefSelectJournalFn m_fnJournal = nullptr;

private:
    RefSelectResetFn m_fnReset = nullptr;
    RefSelectSetResultFn m_fnSetResult = nullptr;
    RefSelectCounterFn m_fnCounter = nullptr;
};

}  // namespace reftest
}  // namespace pcg
