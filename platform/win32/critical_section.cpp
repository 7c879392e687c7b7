// CRITICAL_SECTION, with a Leave by a thread that does not own it refused
// instead of corrupting the lock.
#include "platform/platform.h"

#include <windows.h>

namespace pcg {
namespace platform {

struct CriticalSection::Impl {
    CRITICAL_SECTION m_cs;
};

CriticalSection::CriticalSection() : m_pImpl(new Impl) { InitializeCriticalSection(&m_pImpl->m_cs); }

CriticalSection::~CriticalSection() { DeleteCriticalSection(&m_pImpl->m_cs); }

void CriticalSection::Enter() { EnterCriticalSection(&m_pImpl->m_cs); }

bool CriticalSection::TryEnter() { return TryEnterCriticalSection(&m_pImpl->m_cs) != FALSE; }

void CriticalSection::Leave() {
    if (m_pImpl->m_cs.OwningThread != reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(GetCurrentThreadId()))) {
        DebugOutputA("CriticalSection::Leave() refused: the calling thread does not own the lock\n");
        return;
    }
    LeaveCriticalSection(&m_pImpl->m_cs);
}

}  // namespace platform
}  // namespace pcg
