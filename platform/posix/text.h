// Text conversions of the POSIX side: the system speaks UTF-8, the interface
// speaks wchar_t (UTF-32 here), and registry strings are UTF-16LE as on Windows.
#pragma once

#include <string>
#include <vector>
#include <cstdint>

namespace pcg {
namespace platform {
namespace posix {

std::string Utf8FromWide(const std::wstring& text);
// Invalid UTF-8 bytes are taken one by one as Latin-1, so nothing is lost.
std::wstring WideFromUtf8(const std::string& text);
// UTF-16LE bytes of the text and its terminator, as REG_SZ data.
std::vector<uint8_t> Utf16LeFromWide(const std::wstring& text);
// Case-insensitive comparison as the registry does it for key and value names.
bool EqualNoCase(const std::wstring& a, const std::wstring& b);

}  // namespace posix
}  // namespace platform
}  // namespace pcg
