// The settings file that stands in for the registry below HKEY_LOCAL_MACHINE
// on POSIX. Its format is described at the top of settings_file.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace pcg {
namespace platform {
namespace posix {

struct SettingsValue {
    uint32_t m_dwType = 0;
    std::vector<uint8_t> m_data;
};

// One "[Key\Path]" section. Value names keep their spelling; the default
// value has the empty name.
struct SettingsSection {
    std::wstring m_strPath;
    std::vector<std::pair<std::wstring, SettingsValue>> m_values;
};

// The file named by PYCLIPGRADE_REGISTRY, else /etc/PyClipGrade/registry.ini.
std::string SettingsFilePath();

// Sections in file order; a key may appear in several sections.
std::vector<SettingsSection> ParseSettingsText(const std::string& text);

// One value's text, right of the '='.
SettingsValue ParseSettingsValue(const std::string& text);

// The text that ParseSettingsValue reads back as the same type and bytes.
std::string FormatSettingsValue(const SettingsValue& value);

// The whole file for these sections, readable by ParseSettingsText.
std::string FormatSettingsText(const std::vector<SettingsSection>& sections);

// A key path with surrounding blanks and backslashes removed.
std::wstring NormaliseKeyPath(const std::wstring& path);

// True when key names path itself or a key below it (both normalised).
bool IsKeyAtOrBelow(const std::wstring& key, const std::wstring& path);

}  // namespace posix
}  // namespace platform
}  // namespace pcg
