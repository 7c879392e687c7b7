#include "platform/platform.h"

#include <cstdlib>

#include "platform/posix/text.h"

namespace pcg {
namespace platform {

bool ReadEnvironmentVariable(const wchar_t* name, std::wstring* value) {
    if (name == nullptr || value == nullptr) return false;
    const char* found = std::getenv(posix::Utf8FromWide(name).c_str());
    if (found == nullptr) return false;
    *value = posix::WideFromUtf8(found);
    return true;
}

}  // namespace platform
}  // namespace pcg
