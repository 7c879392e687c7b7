#include "reference/retouch/ref_buffer_allocator.h"

#include "engine/result_codes.h"
#include "reference/retouch/ref_image_buffer.h"
#include "reference/retouch/retouch_state.h"

namespace pcg {
namespace refretouch {

namespace {
const char kObject[] = "BufferAllocator";

bool IsPixelBytes(int bytes) { return bytes == 1 || bytes == 3 || bytes == 4 || bytes == 6 || bytes == 8; }
}  // namespace

CRefBufferAllocator::CRefBufferAllocator() : m_nInstance(RetouchState::Instance().NextInstance()) {
    RetouchState::Instance().Add(Counter::AllocatorsLive, 1);
}

CRefBufferAllocator::~CRefBufferAllocator() { RetouchState::Instance().Add(Counter::AllocatorsLive, -1); }

int32_t CRefBufferAllocator::QueryInterface(const pcg::engine::ComGuid& riid, void** ppvObject) {
    if (ppvObject == nullptr) return kResultPointer;
    *ppvObject = nullptr;
    if (!pcg::engine::SameGuid(riid, pcg::engine::IID_IUnknown) &&
        !pcg::engine::SameGuid(riid, pcg::engine::IID_IBufferAllocator)) {
        return pcg::engine::kResultNoInterface;
    }
    AddRef();
    *ppvObject = static_cast<IBufferAllocator*>(this);
    return kResultOk;
}

uint32_t CRefBufferAllocator::AddRef() {
    const uint32_t refs = ++m_nRefs;
    Json args = Json::array();
    RetouchState::Instance().Journal(kObject, m_nInstance, "AddRef", args);
    return refs;
}

uint32_t CRefBufferAllocator::Release() {
    const uint32_t refs = --m_nRefs;
    RetouchState::Instance().Journal(kObject, m_nInstance, "Release", Json::array());
    if (refs == 0) {
        RetouchState::Instance().Journal(kObject, m_nInstance, "Destroyed", Json::array());
        delete this;
    }
    return refs;
}

int32_t CRefBufferAllocator::allocateImageBuffer(IImageBuffer** ppOutBuffer, uint32_t nWidth, uint32_t nHeight,
                                                 int nPixelBytes) {
    RetouchState::Instance().Journal(kObject, m_nInstance, "allocateImageBuffer",
                                     Json::array({nWidth, nHeight, nPixelBytes}));
    if (ppOutBuffer == nullptr) return kResultPointer;
    *ppOutBuffer = nullptr;
    int32_t result = kResultOk;
    if (!IsPixelBytes(nPixelBytes)) result = kResultInvalidArg;
    result = RetouchState::Instance().Answer(kObject, "allocateImageBuffer", result);
    if (result < 0) return result;
    *ppOutBuffer = CRefImageBuffer::Create(nWidth, nHeight, nPixelBytes);
    return *ppOutBuffer != nullptr ? result : static_cast<int32_t>(0x8007000Eu);  // E_OUTOFMEMORY
}

}  // namespace refretouch
}  // namespace pcg
