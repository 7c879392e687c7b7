#include "reference/agent/writer_lock.h"

namespace pcg {
namespace refagent {

void WriterLock::Lock() {
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock<std::mutex> guard(m_mutex);
    m_released.wait(guard, [&] { return m_nDepth == 0 || m_owner == self; });
    m_owner = self;
    ++m_nDepth;
}

bool WriterLock::Unlock() {
    std::lock_guard<std::mutex> guard(m_mutex);
    if (m_nDepth == 0 || m_owner != std::this_thread::get_id()) {
        return false;
    }
    if (--m_nDepth == 0) {
        m_owner = std::thread::id();
        m_released.notify_all();
    }
    return true;
}

}  // namespace refagent
}  // namespace pcg
