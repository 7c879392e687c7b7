// Parameter blocks the module lays out for one render agent call. Both are
// built by the caller, passed by pointer and stay the caller's: the agent
// copies what it wants to keep before it returns.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/effect_record.h"
#include "engine/records/image_records.h"

// The block of ApplyEffectOnBuffer: the clip, the time, the two pixel areas
// and the region the agent asked for through AdjustBufferRect. The 64-bit
// word at offset 92 is not 8-byte aligned, so it is held as two halves.
struct ApplyBufferSetting {
    uint32_t nVideoID;
    int32_t nParam;             // the operation's second argument, handed through
    int64_t llTime;             // the operation's fourth argument, handed through
    uint8_t* pSrcBuffer;
    uint8_t* pDstBuffer;
    int32_t nSrcWidth;
    int32_t nSrcHeight;
    int32_t nSrcStride;         // bytes: width times 4
    int32_t nDstWidth;
    int32_t nDstHeight;
    int32_t nDstStride;         // bytes: width times 4
    int32_t nAspectNumerator;   // 4 or 16
    int32_t nAspectDenominator; // 3 or 9
    ROI roi;
    int32_t nReserved84;        // 0
    uint32_t nFlags;            // the operation's fifth argument, handed through
    uint32_t nReserved92[2];    // 0
    int32_t nReserved100;       // 1
};

static_assert(sizeof(ROI) == 20, "ROI");
static_assert(sizeof(ApplyBufferSetting) == 104, "ApplyBufferSetting");
static_assert(offsetof(ApplyBufferSetting, nVideoID) == 0, "nVideoID");
static_assert(offsetof(ApplyBufferSetting, nParam) == 4, "nParam");
static_assert(offsetof(ApplyBufferSetting, llTime) == 8, "llTime");
static_assert(offsetof(ApplyBufferSetting, pSrcBuffer) == 16, "pSrcBuffer");
static_assert(offsetof(ApplyBufferSetting, pDstBuffer) == 24, "pDstBuffer");
static_assert(offsetof(ApplyBufferSetting, nSrcWidth) == 32, "nSrcWidth");
static_assert(offsetof(ApplyBufferSetting, nSrcHeight) == 36, "nSrcHeight");
static_assert(offsetof(ApplyBufferSetting, nSrcStride) == 40, "nSrcStride");
static_assert(offsetof(ApplyBufferSetting, nDstWidth) == 44, "nDstWidth");
static_assert(offsetof(ApplyBufferSetting, nDstHeight) == 48, "nDstHeight");
static_assert(offsetof(ApplyBufferSetting, nDstStride) == 52, "nDstStride");
static_assert(offsetof(ApplyBufferSetting, nAspectNumerator) == 56, "nAspectNumerator");
static_assert(offsetof(ApplyBufferSetting, nAspectDenominator) == 60, "nAspectDenominator");
static_assert(offsetof(ApplyBufferSetting, roi) == 64, "roi");
static_assert(offsetof(ApplyBufferSetting, nReserved84) == 84, "nReserved84");
static_assert(offsetof(ApplyBufferSetting, nFlags) == 88, "nFlags");
static_assert(offsetof(ApplyBufferSetting, nReserved92) == 92, "nReserved92");
static_assert(offsetof(ApplyBufferSetting, nReserved100) == 100, "nReserved100");

// The block of SetLUT, built once and passed for each clip in turn. The
// table's storage is the caller's and is freed after the last clip.
struct LUTSetting {
    int32_t nSize = 0;                              // table size as the script gives it
    float fDomainMin[3] = {0.0f, 0.0f, 0.0f};
    float fDomainMax[3] = {1.0f, 1.0f, 1.0f};
    pcg::engine::ContractVector<float> table;       // values in the script's order
};

static_assert(sizeof(LUTSetting) == 56, "LUTSetting");
static_assert(offsetof(LUTSetting, nSize) == 0, "nSize");
static_assert(offsetof(LUTSetting, fDomainMin) == 4, "fDomainMin");
static_assert(offsetof(LUTSetting, fDomainMax) == 16, "fDomainMax");
static_assert(offsetof(LUTSetting, table) == 32, "table");
