// The reference image engine: keeps a copy of each picture it is given, the
// ratio buffers registered for it and the effect records pushed for each
// buffer (owning and freeing them as the render agent does), and renders
// those records into the registered buffer on Image_RunAllTask. Every call is
// journaled under "ImageRetouch".
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "engine/image_retouch.h"
#include "reference/agent/journal_json.h"
#include "reference/retouch/retouch_questions.h"

namespace pcg {
namespace refretouch {

class CRefImageRetouch final : public IImageRetouch {
public:
    CRefImageRetouch();

    int32_t PCG_WINAPI QueryInterface(const pcg::engine::ComGuid& riid, void** ppvObject) override;
    uint32_t PCG_WINAPI AddRef() override;
    uint32_t PCG_WINAPI Release() override;

    int32_t PCG_WINAPI GetToneCurveInfo(ToneCurveRGBSetting setToneCurve, ToneMappingInfo* mappingInfo) override;
    int32_t PCG_WINAPI SetImage(int32_t lImageID, BufferData* pBufferData, ImageRetouchSetting imageSetting) override;
    int32_t PCG_WINAPI RegisterImageRatio(int32_t lImageID, int32_t lBufferID, float fRatio,
                                          BufferData* ratioBuffer) override;
    int32_t PCG_WINAPI UnregisterImageRatio(int32_t lImageID, int32_t lBufferID) override;
    int32_t PCG_WINAPI ReleaseImage(int32_t lImageID) override;
    int32_t PCG_WINAPI Query_WBDropInfo(int32_t lImageID, int32_t lBufferID, int nX, int nY,
                                        ImageTaskRecord* pRecord) override;
    int32_t PCG_WINAPI Query_TATMapInfo(int32_t lImageID, int32_t lBufferID, int nX, int nY,
                                        PixelInfo* pInfo) override;
    int32_t PCG_WINAPI Query_ToneTATMapInfo(int32_t lImageID, int32_t lBufferID, int nX, int nY,
                                            PixelInfo* pInfo) override;
    int32_t PCG_WINAPI Image_StartRunAllTask(int32_t lImageID, int32_t lBufferID) override;
    int32_t PCG_WINAPI Image_RunAllTask(int32_t lImageID, int32_t lBufferID, ImageRunAllTaskSetting setting) override;
    int32_t PCG_WINAPI Image_PushTask(int32_t lImageID, int32_t lBufferID, ImageTaskRecord* pRecord) override;
    int32_t PCG_WINAPI SetProperty(uint32_t nPropertyID, uint32_t nSize, void* pValue) override;

private:
    ~CRefImageRetouch();

    struct Picture {
        int m_nWidth = 0;
        int m_nHeight = 0;
        int m_nPixelBytes = 0;
        PIXEL_FORMAT m_eFormat = PIXEL_ARGB32;
        std::vector<uint8_t> m_pixels;  // rows packed
    };
    struct Task {
        FUNCTION_ID m_eFunctionID;
        int m_nParam[8];
        pcg::engine::EffectRecordHeader* m_pEffect;  // owned
    };
    using BufferKey = std::pair<int32_t, int32_t>;

    int32_t m_fnAnswer(const char* op, int32_t own);
    void m_fnJournal(const char* op, pcg::refagent::Json args);
    void m_fnFreeTasks(std::vector<Task>& tasks);
    // The picture kept under the image ID; the lock is held by the caller.
    bool m_fnPicture(int32_t lImageID, PictureView* view);
    // The TAT map questions: hue bands, or tonal ranges when `tones`.
    int32_t m_fnPixelQuestion(const char* op, int32_t lImageID, int32_t lBufferID, int nX, int nY, PixelInfo* pInfo,
                              bool tones);
    // Everything kept for the image; the lock is held by the caller.
    void m_fnForgetImage(int32_t lImageID);

    std::atomic<uint32_t> m_nRefs{1};
    int64_t m_nInstance;
    std::mutex m_lock;
    std::map<int32_t, Picture> m_pictures;
    std::map<BufferKey, BufferData> m_ratioBuffers;
    std::map<BufferKey, std::vector<Task>> m_tasks;
    std::map<uint32_t, std::vector<uint8_t>> m_properties;
};

}  // namespace refretouch
}  // namespace pcg
