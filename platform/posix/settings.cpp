// Registry calls on POSIX over the settings file: an opened key is a snapshot
// of the file at the time of the open, so each reader sees the file afresh.
#include "platform/platform.h"

#include <cstring>
#include <fstream>
#include <sstream>

#include "platform/posix/settings_file.h"
#include "platform/posix/text.h"

namespace pcg {
namespace platform {

namespace {

constexpr uint32_t kKeyMagic = 0x4B455931;   // "KEY1": tells an open key from garbage

struct OpenKey {
    uint32_t m_dwMagic = kKeyMagic;
    std::wstring m_strPath;   // below HKEY_LOCAL_MACHINE, normalised
    std::vector<std::pair<std::wstring, posix::SettingsValue>> m_values;
};

char g_localMachine;   // its address is the predefined root key

bool ReadSettingsFile(std::string* text) {
    std::ifstream file(posix::SettingsFilePath(), std::ios::binary);
    if (!file) return false;
    std::ostringstream content;
    content << file.rdbuf();
    *text = content.str();
    return true;
}

const OpenKey* AsOpenKey(SettingsKey key) {
    const auto* open = static_cast<const OpenKey*>(key);
    return (open != nullptr && open->m_dwMagic == kKeyMagic) ? open : nullptr;
}

}  // namespace

SettingsKey LocalMachineKey() { return &g_localMachine; }

long OpenSettingsKey(SettingsKey root, const wchar_t* path, uint32_t access, SettingsKey* result) {
    if (result == nullptr) return kErrorInvalidParameter;
    *result = nullptr;
    std::wstring base;
    if (root != LocalMachineKey()) {
        const OpenKey* parent = AsOpenKey(root);
        if (parent == nullptr) return kErrorInvalidHandle;
        base = parent->m_strPath;
    }
    std::wstring full = base;
    const std::wstring relative = posix::NormaliseKeyPath(path != nullptr ? path : L"");
    if (!relative.empty()) full = base.empty() ? relative : base + L"\\" + relative;

    std::string text;
    if (!ReadSettingsFile(&text)) return kErrorFileNotFound;
    bool exists = full.empty();
    auto key = std::make_unique<OpenKey>();
    key->m_strPath = full;
    for (posix::SettingsSection& section : posix::ParseSettingsText(text)) {
        if (!posix::IsKeyAtOrBelow(section.m_strPath, full)) continue;
        exists = true;
        if (section.m_strPath.size() != full.size()) continue;
        for (auto& entry : section.m_values) key->m_values.push_back(std::move(entry));
    }
    if (!exists) return kErrorFileNotFound;
    *result = key.release();
    return kErrorSuccess;
}

long QuerySettingsValue(SettingsKey key, const wchar_t* name, uint32_t* type, void* data, uint32_t* size) {
    if (key == LocalMachineKey()) return kErrorFileNotFound;   // the root holds no values
    const OpenKey* open = AsOpenKey(key);
    if (open == nullptr) return kErrorInvalidHandle;
    if (data != nullptr && size == nullptr) return kErrorInvalidParameter;
    const std::wstring wanted = name != nullptr ? name : L"";
    const posix::SettingsValue* found = nullptr;
    for (const auto& entry : open->m_values) {
        if (posix::EqualNoCase(entry.first, wanted)) found = &entry.second;   // the later line wins
    }
    if (found == nullptr) return kErrorFileNotFound;
    const auto needed = static_cast<uint32_t>(found->m_data.size());
    if (type != nullptr) *type = found->m_dwType;
    if (data == nullptr) {
        if (size != nullptr) *size = needed;
        return kErrorSuccess;
    }
    if (*size < needed) {
        *size = needed;
        return kErrorMoreData;
    }
    if (needed > 0) std::memcpy(data, found->m_data.data(), needed);
    *size = needed;
    return kErrorSuccess;
}

long CloseSettingsKey(SettingsKey key) {
    if (key == LocalMachineKey()) return kErrorSuccess;
    auto* open = const_cast<OpenKey*>(AsOpenKey(key));
    if (open == nullptr) return kErrorInvalidHandle;
    open->m_dwMagic = 0;
    delete open;
    return kErrorSuccess;
}

}  // namespace platform
}  // namespace pcg
