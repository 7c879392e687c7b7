// Any settings file text: parsed without fault, and every value it holds
// reads back as the same type and bytes from the text it is written as.
#include <cstdlib>
#include <string>

#include "platform/posix/settings_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    using namespace pcg::platform::posix;
    const std::vector<SettingsSection> sections = ParseSettingsText(text);
    for (const SettingsSection& section : sections) {
        for (const auto& entry : section.m_values) {
            const SettingsValue again = ParseSettingsValue(FormatSettingsValue(entry.second));
            if (again.m_dwType != entry.second.m_dwType || again.m_data != entry.second.m_data) std::abort();
        }
    }
    ParseSettingsText(FormatSettingsText(sections));
    return 0;
}
