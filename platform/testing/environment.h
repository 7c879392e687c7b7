// Test-only: sets and removes environment variables of this process, where
// the platform layer reads them (the Windows environment block on Windows).
#pragma once

#include <string>

namespace pcg {
namespace platform_testing {

bool SetEnvironmentValue(const char* name, const char* value);
bool UnsetEnvironmentValue(const char* name);
// False when the variable is not set.
bool GetEnvironmentValue(const char* name, std::string* value);

// Sets a variable (removes it when value is null) for the life of the object,
// then puts back what was there before.
class ScopedEnvironmentValue {
public:
    ScopedEnvironmentValue(const char* name, const char* value);
    ~ScopedEnvironmentValue();
    ScopedEnvironmentValue(const ScopedEnvironmentValue&) = delete;
    ScopedEnvironmentValue& operator=(const ScopedEnvironmentValue&) = delete;
    // Whether the change itself succeeded.
    bool Applied() const { return m_bApplied; }

private:
    std::string m_strName;
    bool m_bHadValue;
    std::string m_strSaved;
    bool m_bApplied;
};

}  // namespace platform_testing
}  // namespace pcg
