// The smart selection engine's contract. The closed library
// "Kernel\ImageRetouch\Zenodor.dll" exports CreateZenodorObject and
// ReleaseZenodorObject; the object they hand out is reached through the
// table below, whose order is binding. The records are taken by pointer, so
// their layout is the library's.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/platform.h"

// The result slot that the facade keeps for the engine: engine/selection_result.h.
struct SelectionResult;

// A GUID, laid out as the library reads it.
struct ZenodorGuid {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
static_assert(sizeof(ZenodorGuid) == 16, "ZenodorGuid layout");

// Interface identity of the magic selection object:
// 2b3357f9-601e-474d-80bf-60d2a37ecd6f.
constexpr ZenodorGuid IID_IMagicSelection = {
    0x2b3357f9u, 0x601eu, 0x474du, {0x80, 0xbf, 0x60, 0xd2, 0xa3, 0x7e, 0xcd, 0x6f}};

// Picture description given to Initialize: 3 bytes per pixel in the byte
// order of the source, rows top first.
struct MagicImage {
    int32_t nWidth;
    int32_t nHeight;
    int32_t nChannels;  // always 3
    int32_t nStride;
    int32_t nReserved;  // always 0
    uint8_t* pPixels;
};
static_assert(offsetof(MagicImage, nWidth) == 0 && offsetof(MagicImage, nHeight) == 4 &&
                  offsetof(MagicImage, nChannels) == 8 && offsetof(MagicImage, nStride) == 12 &&
                  offsetof(MagicImage, nReserved) == 16 && offsetof(MagicImage, pPixels) == 24,
              "MagicImage layout");
static_assert(sizeof(MagicImage) == 32, "MagicImage size");

// One position of a smart selection stroke. The three flags are the
// engine's; the module passes them through unchanged.
struct MagicStroke {
    int32_t nX;
    int32_t nY;
    int32_t nRadius;
    bool bFirstFlag;
    bool bSecondFlag;
    bool bThirdFlag;
    int64_t llTimeStamp;
};
static_assert(offsetof(MagicStroke, nX) == 0 && offsetof(MagicStroke, nY) == 4 &&
                  offsetof(MagicStroke, nRadius) == 8 && offsetof(MagicStroke, bFirstFlag) == 12 &&
                  offsetof(MagicStroke, bSecondFlag) == 13 &&
                  offsetof(MagicStroke, bThirdFlag) == 14 &&
                  offsetof(MagicStroke, llTimeStamp) == 16,
              "MagicStroke layout");
static_assert(sizeof(MagicStroke) == 24, "MagicStroke size");

// Mask description given to MagicSelect: one byte per pixel, 0 unselected.
struct MagicMask {
    int32_t nWidth;
    int32_t nHeight;
    int32_t nStride;
    int32_t nReserved;      // always 0
    uint8_t* pMask;
    uint8_t bReserved[16];  // not read by the module
    int64_t llReserved;     // always 0
};
static_assert(offsetof(MagicMask, nWidth) == 0 && offsetof(MagicMask, nHeight) == 4 &&
                  offsetof(MagicMask, nStride) == 8 && offsetof(MagicMask, nReserved) == 12 &&
                  offsetof(MagicMask, pMask) == 16 && offsetof(MagicMask, llReserved) == 40,
              "MagicMask layout");
static_assert(sizeof(MagicMask) == 48, "MagicMask size");

// The magic selection object. Results are HRESULT-style, negative on failure.
class IMagicSelection {
public:
    // Three leading entries that the module never calls.
    virtual int32_t Reserved1() = 0;
    virtual int32_t Reserved2() = 0;
    virtual int32_t Reserved3() = 0;
    // Takes the picture; its pixels stay valid until Uninitialize.
    virtual int32_t Initialize(const MagicImage* pImage, void* pReserved) = 0;
    // Drops the picture and the stroke history.
    virtual int32_t Uninitialize() = 0;
    // Applies one stroke and writes the new selection into the mask bytes.
    virtual int32_t MagicSelect(const MagicStroke* pStroke, const MagicMask* pMask,
                                SelectionResult* pResult) = 0;
    virtual int32_t ClearStrokeHistory() = 0;
    // The stamp to put into the next stroke.
    virtual int32_t GetCurrentTimeStamp(int64_t* pllTimeStamp) = 0;
    virtual int32_t Undo(int nStep) = 0;
    virtual int32_t Redo(int nStep) = 0;

protected:
    ~IMagicSelection() = default;
};

// Exports of the selection library.
using PFN_CreateZenodorObject = int32_t(PCG_WINAPI*)(const ZenodorGuid* pIid, void** ppObject);
// Takes the address of the object pointer.
using PFN_ReleaseZenodorObject = int32_t(PCG_WINAPI*)(void** ppObject);
