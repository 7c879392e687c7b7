#include "platform/platform.h"

#include <windows.h>

namespace pcg {
namespace platform {

struct Event::Impl {
    HANDLE m_hEvent;
};

Event::Event(bool manualReset, bool initialState, const wchar_t* name)
    : m_pImpl(new Impl{CreateEventW(nullptr, manualReset ? TRUE : FALSE, initialState ? TRUE : FALSE, name)}) {}

Event::~Event() {
    if (m_pImpl->m_hEvent != nullptr) CloseHandle(m_pImpl->m_hEvent);
}

void Event::Set() { SetEvent(m_pImpl->m_hEvent); }

void Event::Reset() { ResetEvent(m_pImpl->m_hEvent); }

uint32_t Event::Wait(uint32_t timeoutMs) { return WaitForSingleObject(m_pImpl->m_hEvent, timeoutMs); }

}  // namespace platform
}  // namespace pcg
