#include "platform/testing/environment.h"

namespace pcg {
namespace platform_testing {

ScopedEnvironmentValue::ScopedEnvironmentValue(const char* name, const char* value)
    : m_strName(name), m_bHadValue(false), m_bApplied(false) {
    m_bHadValue = GetEnvironmentValue(name, &m_strSaved);
    m_bApplied = value != nullptr ? SetEnvironmentValue(name, value) : UnsetEnvironmentValue(name);
}

ScopedEnvironmentValue::~ScopedEnvironmentValue() {
    if (m_bHadValue) SetEnvironmentValue(m_strName.c_str(), m_strSaved.c_str());
    else UnsetEnvironmentValue(m_strName.c_str());
}

}  // namespace platform_testing
}  // namespace pcg
