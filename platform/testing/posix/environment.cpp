#include "platform/testing/environment.h"

#include <cstdlib>

namespace pcg {
namespace platform_testing {

bool SetEnvironmentValue(const char* name, const char* value) { return setenv(name, value, 1) == 0; }

bool UnsetEnvironmentValue(const char* name) { return unsetenv(name) == 0; }

bool GetEnvironmentValue(const char* name, std::string* value) {
    const char* found = std::getenv(name);
    if (found == nullptr) return false;
    *value = found;
    return true;
}

}  // namespace platform_testing
}  // namespace pcg
