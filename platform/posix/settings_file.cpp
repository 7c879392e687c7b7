// The settings file, the POSIX stand-in for the registry below
// HKEY_LOCAL_MACHINE. It is read afresh at every key open; nothing is cached.
//
// File format (UTF-8, lines ending in LF or CRLF):
//
//   ; a comment (also '#')
//   [SoftWare\Verimont\Huevane5]      a key path below HKEY_LOCAL_MACHINE,
//                                      matched without regard to case
//   DumpMsg=1                          REG_DWORD, decimal (a leading '-' wraps
//   Use16bitsColorDepth=0x2            to 32 bits) or 0x hexadecimal
//   Other=dword:0000002a               REG_DWORD, 8 hex digits as in .reg files
//   Big=qword:0x100000000              REG_QWORD, 8 bytes, decimal or 0x hex
//   Blob=hex:01,02,03                  REG_BINARY, bytes in hex
//   Typed=hex(b):01,00,00,00,00,00,00,00   any type number (hex) with its bytes
//   Name="text"                        REG_SZ: UTF-16LE with its terminator;
//                                      \\ and \" are the only escapes
//   {CLSID}=relative/path.so           anything else: REG_SZ of the text as is
//   @=...                              the key's default (unnamed) value
//
// Names and values are trimmed of surrounding blanks; a name may be quoted.
// A key exists when a section names it or a key below it. Lines outside any
// section, and lines without '=', are ignored. A key in several sections has
// the values of all of them, the later line winning. A missing file, key or
// value reads as missing.
#include "platform/posix/settings_file.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cerrno>

#include "platform/platform.h"
#include "platform/posix/text.h"

namespace pcg {
namespace platform {
namespace posix {

namespace {

std::string Trim(const std::string& s) {
    const char* blanks = " \t\r\n";
    const size_t first = s.find_first_not_of(blanks);
    if (first == std::string::npos) return std::string();
    const size_t last = s.find_last_not_of(blanks);
    return s.substr(first, last - first + 1);
}

bool StartsWith(const std::string& s, const char* prefix) {
    return s.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

bool IsHexDigits(const std::string& s) {
    if (s.empty()) return false;
    for (char c : s) {
        if (!std::isxdigit(static_cast<unsigned char>(c))) return false;
    }
    return true;
}

bool IsDecimalDigits(const std::string& s) {
    if (s.empty()) return false;
    for (char c : s) {
        if (c < '0' || c > '9') return false;
    }
    return true;
}

// Decimal, or 0x hexadecimal, unsigned, no larger than maximum.
bool ParseUnsigned(const std::string& s, uint64_t maximum, uint64_t* out) {
    std::string digits = s;
    int base = 10;
    if (StartsWith(s, "0x") || StartsWith(s, "0X")) {
        digits = s.substr(2);
        base = 16;
        if (!IsHexDigits(digits)) return false;
    } else if (!IsDecimalDigits(digits)) {
        return false;
    }
    errno = 0;
    const unsigned long long value = std::strtoull(digits.c_str(), nullptr, base);
    if (errno == ERANGE || value > maximum) return false;
    *out = value;
    return true;
}

bool ParseDword(const std::string& s, uint32_t* out) {
    uint64_t value = 0;
    if (!s.empty() && s[0] == '-') {
        if (!IsDecimalDigits(s.substr(1)) || !ParseUnsigned(s.substr(1), 0x80000000ull, &value)) return false;
        *out = static_cast<uint32_t>(0u - static_cast<uint32_t>(value));
        return true;
    }
    if (!ParseUnsigned(s, 0xFFFFFFFFull, &value)) return false;
    *out = static_cast<uint32_t>(value);
    return true;
}

bool ParseByteList(const std::string& s, std::vector<uint8_t>* out) {
    std::vector<uint8_t> bytes;
    size_t start = 0;
    const std::string list = Trim(s);
    if (list.empty()) {
        out->clear();
        return true;
    }
    while (start <= list.size()) {
        size_t comma = list.find(',', start);
        if (comma == std::string::npos) comma = list.size();
        const std::string item = Trim(list.substr(start, comma - start));
        if (item.size() > 2 || !IsHexDigits(item)) return false;
        bytes.push_back(static_cast<uint8_t>(std::strtoul(item.c_str(), nullptr, 16)));
        start = comma + 1;
    }
    *out = std::move(bytes);
    return true;
}

std::vector<uint8_t> LittleEndian(uint64_t value, size_t size) {
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>(value >> (8 * i));
    return bytes;
}

SettingsValue TextValue(const std::wstring& text) {
    SettingsValue value;
    value.m_dwType = kRegSz;
    value.m_data = Utf16LeFromWide(text);
    return value;
}

std::string Unquote(const std::string& s) {
    std::string out;
    for (size_t i = 1; i + 1 < s.size(); ++i) {
        if (s[i] == '\\' && i + 2 < s.size() && (s[i + 1] == '\\' || s[i + 1] == '"')) ++i;
        out += s[i];
    }
    return out;
}

std::string HexList(const std::vector<uint8_t>& data) {
    std::string out;
    char byte[4];
    for (size_t i = 0; i < data.size(); ++i) {
        std::snprintf(byte, sizeof(byte), i == 0 ? "%02x" : ",%02x", data[i]);
        out += byte;
    }
    return out;
}

}  // namespace

std::string SettingsFilePath() {
    const char* named = std::getenv("PYCLIPGRADE_REGISTRY");
    if (named != nullptr && named[0] != '\0') return named;
    return "/etc/PyClipGrade/registry.ini";
}

std::wstring NormaliseKeyPath(const std::wstring& path) {
    const wchar_t* strip = L" \t\\";
    const size_t first = path.find_first_not_of(strip);
    if (first == std::wstring::npos) return std::wstring();
    const size_t last = path.find_last_not_of(strip);
    return path.substr(first, last - first + 1);
}

bool IsKeyAtOrBelow(const std::wstring& key, const std::wstring& path) {
    if (path.empty()) return true;
    if (key.size() < path.size() || !EqualNoCase(key.substr(0, path.size()), path)) return false;
    return key.size() == path.size() || key[path.size()] == L'\\';
}

SettingsValue ParseSettingsValue(const std::string& raw) {
    const std::string text = Trim(raw);
    SettingsValue value;
    uint32_t dword = 0;
    uint64_t qword = 0;
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        return TextValue(WideFromUtf8(Unquote(text)));
    }
    if (StartsWith(text, "dword:") && text.size() <= 14 && IsHexDigits(text.substr(6))) {
        value.m_dwType = kRegDword;
        value.m_data = LittleEndian(std::strtoull(text.c_str() + 6, nullptr, 16), 4);
        return value;
    }
    if (StartsWith(text, "qword:") && ParseUnsigned(text.substr(6), ~0ull, &qword)) {
        value.m_dwType = kRegQword;
        value.m_data = LittleEndian(qword, 8);
        return value;
    }
    if (StartsWith(text, "hex:") && ParseByteList(text.substr(4), &value.m_data)) {
        value.m_dwType = kRegBinary;
        return value;
    }
    if (StartsWith(text, "hex(")) {
        const size_t close = text.find("):");
        const std::string type = close == std::string::npos ? std::string() : text.substr(4, close - 4);
        if (type.size() <= 8 && IsHexDigits(type) && ParseByteList(text.substr(close + 2), &value.m_data)) {
            value.m_dwType = static_cast<uint32_t>(std::strtoul(type.c_str(), nullptr, 16));
            return value;
        }
        value.m_data.clear();
    }
    if (ParseDword(text, &dword)) {
        value.m_dwType = kRegDword;
        value.m_data = LittleEndian(dword, 4);
        return value;
    }
    return TextValue(WideFromUtf8(text));
}

std::vector<SettingsSection> ParseSettingsText(const std::string& text) {
    std::vector<SettingsSection> sections;
    size_t start = 0;
    if (StartsWith(text, "\xEF\xBB\xBF")) start = 3;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::string line = Trim(text.substr(start, end - start));
        start = end + 1;
        if (line.empty() || line[0] == ';' || line[0] == '#') continue;
        if (line.front() == '[' && line.back() == ']') {
            SettingsSection section;
            section.m_strPath = NormaliseKeyPath(WideFromUtf8(line.substr(1, line.size() - 2)));
            sections.push_back(std::move(section));
            continue;
        }
        const size_t equals = line.find('=');
        if (equals == std::string::npos || sections.empty()) continue;
        std::string name = Trim(line.substr(0, equals));
        if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
        else if (name == "@") name.clear();
        sections.back().m_values.emplace_back(WideFromUtf8(name), ParseSettingsValue(line.substr(equals + 1)));
    }
    return sections;
}

std::string FormatSettingsValue(const SettingsValue& value) {
    if (value.m_dwType == kRegDword && value.m_data.size() == 4) {
        uint32_t dword = 0;
        for (size_t i = 0; i < 4; ++i) dword |= static_cast<uint32_t>(value.m_data[i]) << (8 * i);
        return std::to_string(dword);
    }
    if (value.m_dwType == kRegBinary) return "hex:" + HexList(value.m_data);
    char type[16];
    std::snprintf(type, sizeof(type), "hex(%x):", value.m_dwType);
    return type + HexList(value.m_data);
}

std::string FormatSettingsText(const std::vector<SettingsSection>& sections) {
    std::string text;
    for (const SettingsSection& section : sections) {
        text += "[" + Utf8FromWide(section.m_strPath) + "]\n";
        for (const auto& entry : section.m_values) {
            const std::string name = entry.first.empty() ? std::string("@") : "\"" + Utf8FromWide(entry.first) + "\"";
            text += name + "=" + FormatSettingsValue(entry.second) + "\n";
        }
        text += "\n";
    }
    return text;
}

}  // namespace posix
}  // namespace platform
}  // namespace pcg
