#include "reference/select/ref_magic_selection.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "engine/result_codes.h"
#include "engine/selection_result.h"
#include "reference/agent/sha256.h"
#include "reference/select/select_state.h"

namespace pcg {
namespace refselect {

using pcg::refagent::Json;

namespace {

// An injected double as a 32-bit result code; NaN, infinities and values
// out of range read as E_FAIL.
int32_t ToCode(double value) {
    if (!std::isfinite(value) || value <= -9.2e18 || value >= 9.2e18) return kResultFail;
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<int64_t>(value)));
}

// Digest of the visible bytes of rows of `rowBytes` each.
std::string VisibleDigest(const uint8_t* pBytes, int nRows, size_t rowBytes, int nStride) {
    pcg::refagent::CSha256 digest;
    for (int y = 0; y < nRows; ++y) digest.Update(pBytes + static_cast<size_t>(y) * nStride, rowBytes);
    return digest.FinishHex();
}

Json ImageJson(const MagicImage* pImage) {
    if (!pImage) return nullptr;
    Json image = Json::object();
    image["width"] = pImage->nWidth;
    image["height"] = pImage->nHeight;
    image["channels"] = pImage->nChannels;
    image["stride"] = pImage->nStride;
    const bool readable = pImage->pPixels && pImage->nWidth > 0 && pImage->nHeight > 0 &&
                          pImage->nChannels == 3 && pImage->nStride >= pImage->nWidth * 3;
    image["sha256"] = readable ? Json(VisibleDigest(pImage->pPixels, pImage->nHeight,
                                                    static_cast<size_t>(pImage->nWidth) * 3, pImage->nStride))
                               : Json(nullptr);
    return image;
}

Json MaskJson(const MagicMask* pMask) {
    if (!pMask) return nullptr;
    Json mask = Json::object();
    mask["width"] = pMask->nWidth;
    mask["height"] = pMask->nHeight;
    mask["stride"] = pMask->nStride;
    const bool readable = pMask->pMask && pMask->nWidth > 0 && pMask->nHeight > 0 && pMask->nStride >= pMask->nWidth;
    mask["sha256"] = readable ? Json(VisibleDigest(pMask->pMask, pMask->nHeight, pMask->nWidth, pMask->nStride))
                              : Json(nullptr);
    return mask;
}

Json StrokeJson(const MagicStroke* pStroke) {
    if (!pStroke) return nullptr;
    Json stroke = Json::object();
    stroke["nX"] = pStroke->nX;
    stroke["nY"] = pStroke->nY;
    stroke["nRadius"] = pStroke->nRadius;
    stroke["bFirstFlag"] = pStroke->bFirstFlag;
    stroke["bSecondFlag"] = pStroke->bSecondFlag;
    stroke["bThirdFlag"] = pStroke->bThirdFlag;
    stroke["llTimeStamp"] = pStroke->llTimeStamp;
    return stroke;
}

}  // namespace

CRefMagicSelection::CRefMagicSelection(int64_t nInstance)
    : m_nInstance(nInstance),
      m_bHasPicture(false),
      m_bHasBase(false),
      m_nCursor(0),
      m_llNextStamp(1) {
    ++ObjectsLive();
}

CRefMagicSelection::~CRefMagicSelection() {
    m_fnDropHistory();
    --ObjectsLive();
}

Json CRefMagicSelection::m_fnEntry(const char* op, Json args) const {
    Json entry = Json::object();
    entry["object"] = kObjectName;
    entry["instance"] = m_nInstance;
    entry["op"] = op;
    entry["args"] = std::move(args);
    return entry;
}

int32_t CRefMagicSelection::m_fnAnswer(const char* op, int32_t own) const {
    double value = 0.0;
    return Registry().FindResult(kObjectName, op, &value) ? ToCode(value) : own;
}

void CRefMagicSelection::JournalRelease() {
    Registry().Append(m_fnEntry("Release", Json::array()));
}

int32_t CRefMagicSelection::Reserved1() { return kResultOk; }
int32_t CRefMagicSelection::Reserved2() { return kResultOk; }
int32_t CRefMagicSelection::Reserved3() { return kResultOk; }

int32_t CRefMagicSelection::Initialize(const MagicImage* pImage, void* pReserved) {
    Registry().Append(m_fnEntry("Initialize", Json::array({ImageJson(pImage), pReserved ? Json(true) : Json(nullptr)})));
    int32_t own = kResultOk;
    if (!pImage || !pImage->pPixels) {
        own = kResultPointer;
    } else if (pImage->nChannels != 3 || pImage->nWidth <= 0 || pImage->nHeight <= 0 ||
               static_cast<int64_t>(pImage->nStride) < static_cast<int64_t>(pImage->nWidth) * 3) {
        own = kResultInvalidArg;
    } else {
        // A picture replaces the one before, with its history. The pixels are
        // read here once and not kept.
        m_fnDropHistory();
        ConvertToLab(pImage->pPixels, pImage->nWidth, pImage->nHeight, pImage->nStride, m_picture);
        m_bHasPicture = true;
    }
    return m_fnAnswer("Initialize", own);
}

int32_t CRefMagicSelection::Uninitialize() {
    Registry().Append(m_fnEntry("Uninitialize", Json::array()));
    m_fnDropHistory();
    m_picture = LabPicture();
    m_bHasPicture = false;
    return m_fnAnswer("Uninitialize", kResultOk);
}

int32_t CRefMagicSelection::ClearStrokeHistory() {
    Registry().Append(m_fnEntry("ClearStrokeHistory", Json::array()));
    // The selection stays as it is; only the steps back to it are forgotten.
    m_fnDropHistory();
    return m_fnAnswer("ClearStrokeHistory", kResultOk);
}

int32_t CRefMagicSelection::GetCurrentTimeStamp(int64_t* pllTimeStamp) {
    Registry().Append(m_fnEntry("GetCurrentTimeStamp", Json::array()));
    if (!pllTimeStamp) return m_fnAnswer("GetCurrentTimeStamp", kResultPointer);
    *pllTimeStamp = m_llNextStamp;
    return m_fnAnswer("GetCurrentTimeStamp", kResultOk);
}

int32_t CRefMagicSelection::Undo(int nStep) {
    Registry().Append(m_fnEntry("Undo", Json::array({nStep})));
    int32_t own = kResultOk;
    if (nStep < 0) {
        own = kResultInvalidArg;
    } else if (nStep == 0 || m_nCursor == 0) {
        own = kResultFalse;
    } else {
        m_nCursor -= std::min(static_cast<size_t>(nStep), m_nCursor);
        m_fnLoadCursor();
    }
    return m_fnAnswer("Undo", own);
}

int32_t CRefMagicSelection::Redo(int nStep) {
    Registry().Append(m_fnEntry("Redo", Json::array({nStep})));
    int32_t own = kResultOk;
    if (nStep < 0) {
        own = kResultInvalidArg;
    } else if (nStep == 0 || m_nCursor == m_steps.size()) {
        own = kResultFalse;
    } else {
        m_nCursor += std::min(static_cast<size_t>(nStep), m_steps.size() - m_nCursor);
        m_fnLoadCursor();
    }
    return m_fnAnswer("Redo", own);
}

int32_t CRefMagicSelection::MagicSelect(const MagicStroke* pStroke, const MagicMask* pMask,
                                        SelectionResult* pResult) {
    Registry().Append(m_fnEntry("MagicSelect", Json::array({StrokeJson(pStroke), MaskJson(pMask),
                                                            pResult ? Json(true) : Json(nullptr)})));
    if (!pStroke || !pMask || !pMask->pMask) return m_fnAnswer("MagicSelect", kResultPointer);
    if (!m_bHasPicture) return m_fnAnswer("MagicSelect", kResultFail);
    const int width = m_picture.nWidth;
    const int height = m_picture.nHeight;
    if (pMask->nWidth != width || pMask->nHeight != height || pMask->nStride < width) {
        return m_fnAnswer("MagicSelect", kResultInvalidArg);
    }

    const size_t total = static_cast<size_t>(width) * height;
    if (!m_bHasBase) {
        // The first stroke after Initialize or ClearStrokeHistory starts from
        // the selection the caller holds.
        m_current.assign(total, 0);
        for (int y = 0; y < height; ++y) {
            const uint8_t* row = pMask->pMask + static_cast<size_t>(y) * pMask->nStride;
            for (int x = 0; x < width; ++x) m_current[static_cast<size_t>(y) * width + x] = row[x] ? 1 : 0;
        }
        m_base = m_fnEncode(m_current);
        m_bHasBase = true;
    }

    std::vector<uint8_t> region;
    const int64_t seeds = GrowRegion(m_picture, pStroke->nX, pStroke->nY, pStroke->nRadius,
                                     pStroke->bSecondFlag, region);
    int64_t changed = 0;
    if (seeds > 0) {
        const uint8_t value = pStroke->bFirstFlag ? 0 : 1;
        for (size_t index = 0; index < total; ++index) {
            if (region[index] && m_current[index] != value) {
                m_current[index] = value;
                ++changed;
            }
        }
        // A stroke is a step even when it changed nothing: the user made it.
        m_fnTruncateRedo();
        m_steps.push_back(m_fnEncode(m_current));
        ++m_nCursor;
        ++StrokesHeld();
        ++m_llNextStamp;
    }

    int64_t selected = 0;
    for (int y = 0; y < height; ++y) {
        uint8_t* row = pMask->pMask + static_cast<size_t>(y) * pMask->nStride;
        const uint8_t* state = m_current.data() + static_cast<size_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            row[x] = state[x] ? 255 : 0;
            selected += state[x];
        }
    }
    if (pResult) {
        pResult->llTimeStamp = pStroke->llTimeStamp;
        pResult->nSelectedPixels = static_cast<int32_t>(selected);
        pResult->nChangedPixels = static_cast<int32_t>(changed);
    }
    // A stroke wholly outside the picture seeds nothing and is no step.
    return m_fnAnswer("MagicSelect", seeds > 0 ? kResultOk : kResultFalse);
}

void CRefMagicSelection::m_fnDropHistory() {
    StrokesHeld() -= static_cast<int64_t>(m_steps.size());
    m_steps.clear();
    m_nCursor = 0;
    m_base.clear();
    m_bHasBase = false;
}

void CRefMagicSelection::m_fnTruncateRedo() {
    StrokesHeld() -= static_cast<int64_t>(m_steps.size() - m_nCursor);
    m_steps.resize(m_nCursor);
}

void CRefMagicSelection::m_fnLoadCursor() {
    m_fnDecode(m_nCursor == 0 ? m_base : m_steps[m_nCursor - 1], m_current);
}

CRefMagicSelection::Runs CRefMagicSelection::m_fnEncode(const std::vector<uint8_t>& state) {
    Runs runs;
    const size_t total = state.size();
    size_t index = 0;
    while (index < total) {
        if (!state[index]) {
            ++index;
            continue;
        }
        const size_t start = index;
        while (index < total && state[index]) ++index;
        runs.push_back(static_cast<uint32_t>(start));
        runs.push_back(static_cast<uint32_t>(index - start));
    }
    return runs;
}

void CRefMagicSelection::m_fnDecode(const Runs& runs, std::vector<uint8_t>& state) {
    std::fill(state.begin(), state.end(), 0);
    for (size_t i = 0; i + 1 < runs.size(); i += 2) {
        std::fill_n(state.begin() + runs[i], runs[i + 1], 1);
    }
}

}  // namespace refselect
}  // namespace pcg
