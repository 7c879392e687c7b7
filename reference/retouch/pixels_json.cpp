#include "reference/retouch/pixels_json.h"

#include "reference/agent/record_json.h"
#include "reference/agent/sha256.h"

namespace pcg {
namespace refretouch {

int PixelBytesOf(PIXEL_FORMAT format) {
    switch (format) {
    case PIXEL_RGB24: return 3;
    case PIXEL_RGB48: return 6;
    case PIXEL_ARGB32: return 4;
    case PIXEL_ARGB64: return 8;
    case PIXEL_GRAY8: return 1;
    case PIXEL_GRAY16: return 2;
    default: return 0;
    }
}

pcg::refagent::Json PixelsJson(const BufferData* data) {
    using pcg::refagent::Json;
    if (data == nullptr) return nullptr;
    Json out = Json::object();
    out["width"] = data->nWidth;
    out["height"] = data->nHeight;
    out["stride"] = data->nStride;
    const int row = data->nWidth * PixelBytesOf(data->ePixelFormat);
    if (data->pBuffer == nullptr || row <= 0 || data->nHeight <= 0 || data->nStride < row) {
        out["sha256"] = nullptr;
        return out;
    }
    pcg::refagent::CSha256 hash;
    for (int y = 0; y < data->nHeight; ++y) hash.Update(data->pBuffer + static_cast<size_t>(y) * data->nStride, row);
    out["sha256"] = hash.FinishHex();
    return out;
}

pcg::refagent::Json TaskJson(const ImageTaskRecord* task) {
    using pcg::refagent::Json;
    if (task == nullptr) return nullptr;
    Json out = Json::object();
    out["function"] = static_cast<uint32_t>(task->eFunctionID);
    out["version"] = task->nEffectVersion;
    Json params = Json::array();
    for (int value : task->nParam) params.push_back(value);
    out["param"] = params;
    out["effect"] = task->pEffect != nullptr
                        ? pcg::refagent::RecordJson(static_cast<uint32_t>(task->eFunctionID), task->pEffect)
                        : Json(nullptr);
    return out;
}

}  // namespace refretouch
}  // namespace pcg
