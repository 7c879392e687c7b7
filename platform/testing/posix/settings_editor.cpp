// The POSIX settings store for tests: a model of the file in memory, written
// out whole to a private temporary file after every change.
#include "platform/testing/settings_editor.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

#include "platform/platform.h"
#include "platform/posix/settings_file.h"
#include "platform/posix/text.h"
#include "platform/testing/environment.h"

namespace pcg {
namespace platform_testing {

namespace {

using platform::posix::SettingsSection;
using platform::posix::SettingsValue;

struct SettingsStore {
    std::string m_strPath;
    std::vector<SettingsSection> m_sections;
};

SettingsStore& Store() {
    static SettingsStore* s_pStore = [] {
        auto* store = new SettingsStore;
        const char* folder = std::getenv("TMPDIR");
        std::string pattern = std::string(folder != nullptr && folder[0] != '\0' ? folder : "/tmp") +
                              "/pcg-registry-XXXXXX";
        const int fd = mkstemp(&pattern[0]);
        if (fd >= 0) {
            close(fd);
            store->m_strPath = pattern;
            std::atexit([] { unlink(Store().m_strPath.c_str()); });
        }
        return store;
    }();
    return *s_pStore;
}

bool WriteOut() {
    SettingsStore& store = Store();
    if (store.m_strPath.empty()) return false;
    const std::string text = platform::posix::FormatSettingsText(store.m_sections);
    FILE* file = std::fopen(store.m_strPath.c_str(), "wb");
    if (file == nullptr) return false;
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const bool closed = std::fclose(file) == 0;
    return written && closed && SetEnvironmentValue("PYCLIPGRADE_REGISTRY", store.m_strPath.c_str());
}

SettingsSection& SectionOf(const std::wstring& keyPath) {
    const std::wstring path = platform::posix::NormaliseKeyPath(keyPath);
    for (SettingsSection& section : Store().m_sections) {
        if (platform::posix::EqualNoCase(section.m_strPath, path)) return section;
    }
    Store().m_sections.push_back(SettingsSection{path, {}});
    return Store().m_sections.back();
}

void EraseValue(SettingsSection& section, const std::wstring& name) {
    auto& values = section.m_values;
    for (auto it = values.begin(); it != values.end();) {
        it = platform::posix::EqualNoCase(it->first, name) ? values.erase(it) : it + 1;
    }
}

}  // namespace

bool SetSettingsValue(const std::wstring& keyPath, const std::wstring& name, uint32_t type, const void* data,
                      uint32_t size) {
    SettingsSection& section = SectionOf(keyPath);
    EraseValue(section, name);
    SettingsValue value;
    value.m_dwType = type;
    const auto* bytes = static_cast<const uint8_t*>(data);
    if (bytes != nullptr) value.m_data.assign(bytes, bytes + size);
    section.m_values.emplace_back(name, std::move(value));
    return WriteOut();
}

bool SetSettingsDword(const std::wstring& keyPath, const std::wstring& name, uint32_t value) {
    const uint8_t bytes[4] = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                              static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 24)};
    return SetSettingsValue(keyPath, name, platform::kRegDword, bytes, sizeof(bytes));
}

bool DeleteSettingsValue(const std::wstring& keyPath, const std::wstring& name) {
    const std::wstring path = platform::posix::NormaliseKeyPath(keyPath);
    for (SettingsSection& section : Store().m_sections) {
        if (platform::posix::EqualNoCase(section.m_strPath, path)) EraseValue(section, name);
    }
    return WriteOut();
}

bool DeleteSettingsKey(const std::wstring& keyPath) {
    const std::wstring path = platform::posix::NormaliseKeyPath(keyPath);
    auto& sections = Store().m_sections;
    for (auto it = sections.begin(); it != sections.end();) {
        it = platform::posix::IsKeyAtOrBelow(it->m_strPath, path) ? sections.erase(it) : it + 1;
    }
    return WriteOut();
}

}  // namespace platform_testing
}  // namespace pcg

namespace pcg {
namespace platform_testing {

bool RegisteredClassesFollowSettings() { return true; }

}  // namespace platform_testing
}  // namespace pcg
