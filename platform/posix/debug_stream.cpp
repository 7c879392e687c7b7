// The debugger stream on POSIX is standard error. Each text goes out in one
// write so that lines from several threads do not interleave.
#include "platform/debug_stream.h"

#include <cstring>
#include <string>
#include <unistd.h>

#include "platform/posix/text.h"

namespace pcg {
namespace platform {

namespace {
void WriteAll(const char* data, size_t size) {
    while (size > 0) {
        const ssize_t written = write(STDERR_FILENO, data, size);
        if (written <= 0) return;
        data += written;
        size -= static_cast<size_t>(written);
    }
}
}  // namespace

void WriteDebugStreamA(const char* text) { WriteAll(text, std::strlen(text)); }

void WriteDebugStreamW(const wchar_t* text) {
    const std::string utf8 = posix::Utf8FromWide(text);
    WriteAll(utf8.data(), utf8.size());
}

}  // namespace platform
}  // namespace pcg
