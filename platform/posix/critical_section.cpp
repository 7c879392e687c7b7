// CRITICAL_SECTION on POSIX: a recursive mutex that knows its owner, so that a
// Leave by a thread that does not hold it is refused instead of corrupting it.
#include "platform/platform.h"

#include <atomic>
#include <mutex>
#include <thread>

namespace pcg {
namespace platform {

struct CriticalSection::Impl {
    std::recursive_mutex m_mutex;
    std::atomic<std::thread::id> m_owner{};
    int m_nDepth = 0;   // touched only by the owner
};

CriticalSection::CriticalSection() : m_pImpl(new Impl) {}
CriticalSection::~CriticalSection() = default;

void CriticalSection::Enter() {
    m_pImpl->m_mutex.lock();
    m_pImpl->m_owner.store(std::this_thread::get_id());
    ++m_pImpl->m_nDepth;
}

bool CriticalSection::TryEnter() {
    if (!m_pImpl->m_mutex.try_lock()) return false;
    m_pImpl->m_owner.store(std::this_thread::get_id());
    ++m_pImpl->m_nDepth;
    return true;
}

void CriticalSection::Leave() {
    if (m_pImpl->m_owner.load() != std::this_thread::get_id()) {
        DebugOutputA("CriticalSection::Leave() refused: the calling thread does not own the lock\n");
        return;
    }
    if (--m_pImpl->m_nDepth == 0) m_pImpl->m_owner.store(std::thread::id());
    m_pImpl->m_mutex.unlock();
}

}  // namespace platform
}  // namespace pcg
