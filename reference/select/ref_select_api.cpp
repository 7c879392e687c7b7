#include "reference/select/ref_select_api.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "engine/result_codes.h"
#include "reference/select/ref_magic_selection.h"
#include "reference/select/select_state.h"

namespace pcg {
namespace refselect {

std::atomic<int64_t>& ObjectsLive() {
    static std::atomic<int64_t> count{0};
    return count;
}

std::atomic<int64_t>& StrokesHeld() {
    static std::atomic<int64_t> count{0};
    return count;
}

namespace {

constexpr int32_t kNoInterface = static_cast<int32_t>(0x80004002u);

std::string GuidText(const ZenodorGuid& guid) {
    char text[40];
    std::snprintf(text, sizeof(text), "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                  static_cast<unsigned>(guid.Data1), guid.Data2, guid.Data3, guid.Data4[0], guid.Data4[1],
                  guid.Data4[2], guid.Data4[3], guid.Data4[4], guid.Data4[5], guid.Data4[6], guid.Data4[7]);
    return text;
}

int64_t NextInstance() {
    static std::atomic<int64_t> last{0};
    return ++last;
}

}  // namespace
}  // namespace refselect
}  // namespace pcg

using pcg::refagent::Json;
using namespace pcg::refselect;

extern "C" {

int32_t PCG_WINAPI CreateZenodorObject(const ZenodorGuid* pIid, void** ppObject) {
    Json entry = Json::object();
    entry["object"] = kObjectName;
    entry["op"] = "Create";
    entry["args"] = Json::array({pIid ? Json(GuidText(*pIid)) : Json(nullptr)});
    if (!ppObject || !pIid) {
        Registry().Append(std::move(entry));
        return pcg::kResultPointer;
    }
    *ppObject = nullptr;
    if (std::memcmp(pIid, &IID_IMagicSelection, sizeof(ZenodorGuid)) != 0) {
        Registry().Append(std::move(entry));
        return kNoInterface;
    }
    const int64_t instance = NextInstance();
    entry["instance"] = instance;
    Registry().Append(std::move(entry));
    *ppObject = static_cast<IMagicSelection*>(new CRefMagicSelection(instance));
    return pcg::kResultOk;
}

int32_t PCG_WINAPI ReleaseZenodorObject(void** ppObject) {
    if (!ppObject) return pcg::kResultPointer;
    if (!*ppObject) return pcg::kResultFalse;
    auto* object = static_cast<CRefMagicSelection*>(static_cast<IMagicSelection*>(*ppObject));
    object->JournalRelease();
    delete object;
    *ppObject = nullptr;
    return pcg::kResultOk;
}

int32_t RefSelect_Journal(char* buffer, int32_t capacity) {
    const std::string text = Registry().JournalText();
    const auto length = static_cast<int32_t>(text.size());
    if (buffer && capacity >= length) {
        std::memcpy(buffer, text.c_str(), capacity > length ? text.size() + 1 : text.size());
    }
    return length;
}

void RefSelect_Reset(void) {
    Registry().Reset();
}

void RefSelect_SetResult(const char* objectName, const char* op, double value) {
    if (!objectName || !op) return;
    Registry().SetResult(objectName, op, value);
}

int64_t RefSelect_Counter(const char* name) {
    if (!name) return -1;
    if (std::strcmp(name, "objectsLive") == 0) return ObjectsLive().load();
    if (std::strcmp(name, "strokesHeld") == 0) return StrokesHeld().load();
    return -1;
}

}  // extern "C"
