// The agent's lock on its effect data, taken from outside by
// LockEffectDataWriter / UnlockEffectDataWriter and from inside by every
// operation that changes effect data. Recursive on one thread; unlike a
// plain recursive mutex an unlock from a thread that does not hold it is
// refused instead of corrupting the lock.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

namespace pcg {
namespace refagent {

class WriterLock {
public:
    void Lock();
    // False, with nothing changed, when this thread does not hold the lock.
    bool Unlock();

private:
    std::mutex m_mutex;
    std::condition_variable m_released;
    std::thread::id m_owner;
    int m_nDepth = 0;
};

class WriterLockScope {
public:
    explicit WriterLockScope(WriterLock& lock) : m_lock(lock) { m_lock.Lock(); }
    ~WriterLockScope() { m_lock.Unlock(); }
    WriterLockScope(const WriterLockScope&) = delete;
    WriterLockScope& operator=(const WriterLockScope&) = delete;

private:
    WriterLock& m_lock;
};

}  // namespace refagent
}  // namespace pcg
