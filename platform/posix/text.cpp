#include "platform/posix/text.h"

#include <cwctype>

namespace pcg {
namespace platform {
namespace posix {

namespace {

void AppendUtf8(std::string& out, uint32_t cp) {
    if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) cp = 0xFFFD;
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

// Length of the valid UTF-8 sequence at s[i], 0 when there is none.
size_t DecodeUtf8(const std::string& s, size_t i, uint32_t* cp) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    size_t len;
    uint32_t value;
    if (b0 < 0x80) { *cp = b0; return 1; }
    if ((b0 & 0xE0) == 0xC0) { len = 2; value = b0 & 0x1F; }
    else if ((b0 & 0xF0) == 0xE0) { len = 3; value = b0 & 0x0F; }
    else if ((b0 & 0xF8) == 0xF0) { len = 4; value = b0 & 0x07; }
    else return 0;
    if (i + len > s.size()) return 0;
    for (size_t k = 1; k < len; ++k) {
        const auto b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80) return 0;
        value = (value << 6) | (b & 0x3F);
    }
    static const uint32_t kMinimum[5] = {0, 0, 0x80, 0x800, 0x10000};
    if (value < kMinimum[len] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return 0;
    *cp = value;
    return len;
}

}  // namespace

std::string Utf8FromWide(const std::wstring& text) {
    std::string out;
    out.reserve(text.size());
    for (wchar_t c : text) AppendUtf8(out, static_cast<uint32_t>(c));
    return out;
}

std::wstring WideFromUtf8(const std::string& text) {
    std::wstring out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        uint32_t cp = 0;
        const size_t len = DecodeUtf8(text, i, &cp);
        if (len == 0) {
            out += static_cast<wchar_t>(static_cast<unsigned char>(text[i]));
            ++i;
        } else {
            out += static_cast<wchar_t>(cp);
            i += len;
        }
    }
    return out;
}

std::vector<uint8_t> Utf16LeFromWide(const std::wstring& text) {
    std::vector<uint8_t> out;
    auto put = [&out](uint32_t unit) {
        out.push_back(static_cast<uint8_t>(unit & 0xFF));
        out.push_back(static_cast<uint8_t>(unit >> 8));
    };
    for (wchar_t c : text) {
        auto cp = static_cast<uint32_t>(c);
        if (cp > 0x10FFFF) cp = 0xFFFD;
        if (cp >= 0x10000) {
            cp -= 0x10000;
            put(0xD800 | (cp >> 10));
            put(0xDC00 | (cp & 0x3FF));
        } else {
            put(cp);
        }
    }
    put(0);
    return out;
}

bool EqualNoCase(const std::wstring& a, const std::wstring& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (std::towupper(static_cast<wint_t>(a[i])) != std::towupper(static_cast<wint_t>(b[i]))) return false;
    }
    return true;
}

}  // namespace posix
}  // namespace platform
}  // namespace pcg
