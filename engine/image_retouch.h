// The image engine's interface, IImageRetouch, a COM object of a closed
// library (CLSID_ImageRetouch), and the records that cross it. The engine is
// created and released only on the ImageRetouchMgr's worker; between the two
// the facade calls it directly. The operations stand in the order the closed
// library's table has them; the reference engine in reference/retouch keeps
// the same table.
//
// Result: HRESULT-style int32_t, negative on failure (engine/result_codes.h).
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/com_contract.h"
#include "engine/constants.h"
#include "engine/records/effect_records.h"
#include "engine/records/image_records.h"

namespace pcg {
namespace engine {
struct EffectRecordHeader;

// {58529D7C-751A-47A9-982D-1560342ECB14}
constexpr ComGuid CLSID_ImageRetouch = {0x58529D7C, 0x751A, 0x47A9, {0x98, 0x2D, 0x15, 0x60, 0x34, 0x2E, 0xCB, 0x14}};
// {332BF684-6A2D-4C82-9DA5-49CFADA02864}
constexpr ComGuid IID_IImageRetouch = {0x332BF684, 0x6A2D, 0x4C82, {0x9D, 0xA5, 0x49, 0xCF, 0xAD, 0xA0, 0x28, 0x64}};
}  // namespace engine
}  // namespace pcg

// How a picture handed to SetImage is to be taken: a float 1.0 and zeros in
// every call this program makes.
struct ImageRetouchSetting {
    float fScale = 1.0f;
    int nReserved[7] = {};
};
static_assert(sizeof(ImageRetouchSetting) == 32, "ImageRetouchSetting layout");
static_assert(offsetof(ImageRetouchSetting, nReserved) == 4, "ImageRetouchSetting layout");

// The record of Image_RunAllTask: five 32-bit words, all zero in every call.
struct ImageRunAllTaskSetting {
    int nWord[5] = {};
};
static_assert(sizeof(ImageRunAllTaskSetting) == 20, "ImageRunAllTaskSetting layout");

// One task on a picture, for Image_PushTask and the queries. eFunctionID
// says what it is. A query task carries its parameters in nParam and gets
// its answer written behind them (the white balance drop: nParam[0] and
// nParam[1] in, temperature and tint out in nParam[2] and nParam[3]). A
// render task carries an effect record in pEffect, made as for the render
// agent's PushEffect: Image_PushTask takes it, writes null here, and the
// engine frees it.
struct ImageTaskRecord {
    FUNCTION_ID eFunctionID = {};
    int nEffectVersion = 0;
    int nParam[8] = {};
    pcg::engine::EffectRecordHeader* pEffect = nullptr;
};
static_assert(sizeof(ImageTaskRecord) == 48, "ImageTaskRecord layout");
static_assert(offsetof(ImageTaskRecord, nEffectVersion) == 4 && offsetof(ImageTaskRecord, nParam) == 8 &&
                  offsetof(ImageTaskRecord, pEffect) == 40,
              "ImageTaskRecord layout");

class IImageRetouch : public IComUnknown {
public:
    // A tone curve through the setting's pivots as a mapping table.
    virtual int32_t PCG_WINAPI GetToneCurveInfo(ToneCurveRGBSetting setToneCurve, ToneMappingInfo* mappingInfo) = 0;
    // Keeps a copy of the picture under the image ID.
    virtual int32_t PCG_WINAPI SetImage(int32_t lImageID, BufferData* pBufferData,
                                        ImageRetouchSetting imageSetting) = 0;
    virtual int32_t PCG_WINAPI RegisterImageRatio(int32_t lImageID, int32_t lBufferID, float fRatio,
                                                  BufferData* ratioBuffer) = 0;
    virtual int32_t PCG_WINAPI UnregisterImageRatio(int32_t lImageID, int32_t lBufferID) = 0;
    virtual int32_t PCG_WINAPI ReleaseImage(int32_t lImageID) = 0;
    virtual int32_t PCG_WINAPI Query_WBDropInfo(int32_t lImageID, int32_t lBufferID, int nX, int nY,
                                                ImageTaskRecord* pRecord) = 0;
    virtual int32_t PCG_WINAPI Query_TATMapInfo(int32_t lImageID, int32_t lBufferID, int nX, int nY,
                                                PixelInfo* pInfo) = 0;
    virtual int32_t PCG_WINAPI Query_ToneTATMapInfo(int32_t lImageID, int32_t lBufferID, int nX, int nY,
                                                    PixelInfo* pInfo) = 0;
    virtual int32_t PCG_WINAPI Image_StartRunAllTask(int32_t lImageID, int32_t lBufferID) = 0;
    virtual int32_t PCG_WINAPI Image_RunAllTask(int32_t lImageID, int32_t lBufferID,
                                                ImageRunAllTaskSetting setting) = 0;
    virtual int32_t PCG_WINAPI Image_PushTask(int32_t lImageID, int32_t lBufferID, ImageTaskRecord* pRecord) = 0;
    // RETOUCH_PROPERTY_* with the value's size in bytes.
    virtual int32_t PCG_WINAPI SetProperty(uint32_t nPropertyID, uint32_t nSize, void* pValue) = 0;

protected:
    ~IImageRetouch() = default;
};
static_assert(sizeof(IImageRetouch) == sizeof(void*), "a COM interface is a bare table pointer");
