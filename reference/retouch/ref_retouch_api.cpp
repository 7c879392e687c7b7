#include "reference/retouch/ref_retouch_api.h"

#include <atomic>
#include <cstring>
#include <string>

#include "engine/result_codes.h"
#include "reference/retouch/ref_buffer_allocator.h"
#include "reference/retouch/ref_image_retouch.h"
#include "reference/retouch/retouch_state.h"

using namespace pcg;
using namespace pcg::refretouch;

namespace {

// One factory object per DllGetClassObject call, freed on its last release.
class CRefClassFactory final : public IComClassFactory {
public:
    explicit CRefClassFactory(bool imageRetouch) : m_bImageRetouch(imageRetouch) {}

    int32_t PCG_WINAPI QueryInterface(const engine::ComGuid& riid, void** ppvObject) override {
        if (ppvObject == nullptr) return kResultPointer;
        *ppvObject = nullptr;
        if (!engine::SameGuid(riid, engine::IID_IUnknown) && !engine::SameGuid(riid, engine::IID_IClassFactory)) {
            return engine::kResultNoInterface;
        }
        AddRef();
        *ppvObject = static_cast<IComClassFactory*>(this);
        return kResultOk;
    }
    uint32_t PCG_WINAPI AddRef() override { return ++m_nRefs; }
    uint32_t PCG_WINAPI Release() override {
        const uint32_t refs = --m_nRefs;
        if (refs == 0) delete this;
        return refs;
    }
    int32_t PCG_WINAPI CreateInstance(IComUnknown* pUnkOuter, const engine::ComGuid& riid, void** ppvObject) override {
        if (ppvObject == nullptr) return kResultPointer;
        *ppvObject = nullptr;
        if (pUnkOuter != nullptr) return engine::kResultNoAggregation;
        const char* object = m_bImageRetouch ? "ImageRetouchFactory" : "BufferAllocatorFactory";
        const int32_t injected = RetouchState::Instance().Answer(object, "CreateInstance", kResultOk);
        if (injected < 0) return injected;
        IComUnknown* made = m_bImageRetouch ? static_cast<IComUnknown*>(new CRefImageRetouch())
                                            : static_cast<IComUnknown*>(new CRefBufferAllocator());
        const int32_t hr = made->QueryInterface(riid, ppvObject);
        made->Release();  // the caller's reference, if any, is the one left
        return hr;
    }
    int32_t PCG_WINAPI LockServer(int32_t) override { return kResultOk; }

private:
    ~CRefClassFactory() = default;
    std::atomic<uint32_t> m_nRefs{1};
    bool m_bImageRetouch;
};

}  // namespace

int32_t PCG_WINAPI DllGetClassObject(const engine::ComGuid& clsid, const engine::ComGuid& iid, void** ppv) {
    if (ppv == nullptr) return kResultPointer;
    *ppv = nullptr;
    const int32_t injected = RetouchState::Instance().Answer("Library", "DllGetClassObject", kResultOk);
    if (injected < 0) return injected;
    bool imageRetouch = false;
    if (engine::SameGuid(clsid, engine::CLSID_ImageRetouch)) imageRetouch = true;
    else if (!engine::SameGuid(clsid, engine::CLSID_BufferAllocator)) return engine::kResultClassNotAvailable;
    auto* factory = new CRefClassFactory(imageRetouch);
    const int32_t hr = factory->QueryInterface(iid, ppv);
    factory->Release();
    return hr;
}

int32_t RefRetouch_Journal(char* buffer, int32_t capacity) {
    const std::string text = RetouchState::Instance().JournalText();
    const auto length = static_cast<int32_t>(text.size());
    if (buffer && capacity >= length) {
        // The NUL goes along only when there is room for it.
        std::memcpy(buffer, text.c_str(), capacity > length ? text.size() + 1 : text.size());
    }
    return length;
}

void RefRetouch_Reset(void) { RetouchState::Instance().Reset(); }

void RefRetouch_SetResult(const char* object, const char* op, double value) {
    if (object == nullptr || op == nullptr) return;
    RetouchState::Instance().SetResult(object, op, value);
}

int64_t RefRetouch_Counter(const char* name) {
    if (name == nullptr) return -1;
    static const struct {
        const char* m_name;
        Counter m_counter;
    } kCounters[] = {
        {"instancesLive", Counter::InstancesLive},     {"buffersLive", Counter::BuffersLive},
        {"imagesHeld", Counter::ImagesHeld},           {"recordsHeld", Counter::RecordsHeld},
        {"allocatorsLive", Counter::AllocatorsLive},   {"videoModeSet", Counter::VideoModeSet},
        {"createdOnThread", Counter::CreatedOnThread}, {"releasedOnThread", Counter::ReleasedOnThread},
    };
    for (const auto& entry : kCounters) {
        if (std::strcmp(entry.m_name, name) == 0) return RetouchState::Instance().Get(entry.m_counter);
    }
    return -1;
}
