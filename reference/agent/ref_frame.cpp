#include "reference/agent/ref_frame.h"

#include <atomic>
#include <mutex>
#include <new>
#include <vector>

#include "platform/platform.h"
#include "reference/agent/agent_registry.h"

namespace pcg {
namespace refagent {

namespace {

// A frame handed to the module may outlive every agent and facade: a script
// can keep a cache frame's handle for the life of the process. Its table of
// operations lives in this library, so the first frame pins the library for
// good, and a later unload never pulls the code out from under a frame.
void PinThisLibrary() {
    static std::once_flag s_pinned;
    std::call_once(s_pinned, [] {
        platform::AcquireModuleOfAddress(reinterpret_cast<const void*>(&MakeSolidFrame));
    });
}

class RefFrame final : public IImageBuffer {
public:
    RefFrame(int32_t width, int32_t height) : m_nWidth(width), m_nHeight(height) {
        AgentRegistry::Instance().Add(Counter::FramesLive, 1);
    }

    bool Allocate() {
        try {
            m_pixels.resize(static_cast<std::size_t>(m_nWidth) * static_cast<std::size_t>(m_nHeight) * 4u);
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    }

    void Fill(int64_t colour) {
        const auto blue = static_cast<uint8_t>(colour & 0xFF);
        const auto green = static_cast<uint8_t>((colour >> 8) & 0xFF);
        const auto red = static_cast<uint8_t>((colour >> 16) & 0xFF);
        for (std::size_t at = 0; at < m_pixels.size(); at += 4) {
            m_pixels[at] = blue;
            m_pixels[at + 1] = green;
            m_pixels[at + 2] = red;
            m_pixels[at + 3] = 255;
        }
    }

    int AddRef() override { return ++m_nRefCount; }

    int Release() override {
        const int refs = --m_nRefCount;
        if (refs <= 0) {
            delete this;
            return 0;
        }
        return refs;
    }

    bool LockBuffer(uint8_t** ppBuffer, int* pnWidth, int* pnHeight) override {
        m_lock.lock();
        if (ppBuffer) *ppBuffer = m_pixels.data();
        if (pnWidth) *pnWidth = m_nWidth;
        if (pnHeight) *pnHeight = m_nHeight;
        return true;
    }

    bool UnlockBuffer() override {
        m_lock.unlock();
        return true;
    }

    int GetWidth() override { return m_nWidth; }
    int GetHeight() override { return m_nHeight; }
    int GetPixelBytes() override { return 4; }

private:
    ~RefFrame() { AgentRegistry::Instance().Add(Counter::FramesLive, -1); }

    std::atomic<int> m_nRefCount{1};
    std::recursive_mutex m_lock;
    const int32_t m_nWidth;
    const int32_t m_nHeight;
    std::vector<uint8_t> m_pixels;
};

}  // namespace

IImageBuffer* MakeSolidFrame(int32_t width, int32_t height, int64_t colour) {
    PinThisLibrary();
    auto* frame = new (std::nothrow) RefFrame(width, height);
    if (frame == nullptr) return nullptr;
    if (!frame->Allocate()) {
        frame->Release();
        return nullptr;
    }
    frame->Fill(colour);
    return frame;
}

}  // namespace refagent
}  // namespace pcg
