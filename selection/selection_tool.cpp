#include "selection/selection_tool.h"

#include <algorithm>

#include "engine/constants.h"
#include "engine/records/mask_records.h"
#include "runtime/dump_log.h"
#include "selection/byte_scan.h"
#include "selection/mask_operations.h"
#include "engine/result_codes.h"
#include "selection/selection_lines.h"

int32_t CSelectionTool::SelectionMaskToPoint(const BufferData& mask, int& nLength) {
    m_lines.clear();
    // A failed scan leaves the buffer empty and is reported as no runs.
    MaskToPoint(mask, m_lines);
    nLength = static_cast<int>(m_lines.size());
    return pcg::kResultOk;
}

int32_t CSelectionTool::SelectionGetMaskROI(const BufferData& mask, ROI& roi) {
    roi.nLeft = mask.nWidth;
    roi.nTop = mask.nHeight;
    int nMaxX = 0;
    int nMaxY = 0;
    if (mask.nHeight < 1) {
        if (roi.nLeft > 0 || roi.nTop > 0) return pcg::kResultFail;
        roi.nWidth = 1 - roi.nLeft;
        roi.nHeight = 1 - roi.nTop;
        return pcg::kResultOk;
    }
    if (!mask.pBuffer) {
        // Nothing to scan: reads as a mask with no selected byte.
        DumpLog("CSelectionTool::SelectionGetMaskROI Null Pointer : mask.pBuffer\n");
        return pcg::kResultFail;
    }
    for (int y = 0; y < mask.nHeight; ++y) {
        const uint8_t* pRow = mask.pBuffer + static_cast<int64_t>(y) * mask.nStride;
        const int nFirst = pcg::scan::FindNonZero(pRow, 0, mask.nWidth);
        if (nFirst >= mask.nWidth) continue;
        roi.nLeft = std::min(roi.nLeft, nFirst);
        roi.nTop = std::min(roi.nTop, y);
        nMaxY = y;
        // Only a selected byte right of the running maximum can raise it.
        const int nFrom = std::max(nFirst, nMaxX + 1);
        const int nLast = pcg::scan::FindLastNonZero(pRow, nFrom, mask.nWidth);
        nMaxX = std::max(nMaxX, std::max(nFirst, nLast));
    }
    if (roi.nLeft > nMaxX || roi.nTop > nMaxY) return pcg::kResultFail;
    roi.nWidth = nMaxX - roi.nLeft + 1;
    roi.nHeight = nMaxY - roi.nTop + 1;
    return pcg::kResultOk;
}

int32_t CSelectionTool::SelectionGetSelectionLinePoint(SelectionLine* pslPath) {
    if (!pslPath) {
        DumpLog("CSelectionTool::SelectionGetSelectionLinePoint Null Pointer : pslPath\n");
        return pcg::kResultPointer;
    }
    std::copy(m_lines.begin(), m_lines.end(), pslPath);
    m_lines.clear();
    return pcg::kResultOk;
}

int32_t CSelectionTool::SelectionPointToMask(int nListSize, const SelectionLine* pslPath,
                                             const BufferData& mask, bool bInv) {
    if (!pslPath) {
        DumpLog("CSelectionTool::SelectionPointToMask Null Pointer : pslPath\n");
        return pcg::kResultPointer;
    }
    const std::vector<SelectionLine> lines(pslPath, pslPath + std::max(0, nListSize));
    return PointToMask(lines.data(), static_cast<int>(lines.size()), mask, bInv);
}

int32_t CSelectionTool::SelectionMaskOperation(const BufferData& mask1, const BufferData& mask2,
                                               int nOperation, void* pSetting,
                                               const BufferData& output) {
    if (!mask1.pBuffer) {
        DumpLog("CSelectionTool::SelectionMaskOperation Null Pointer : mask1.pBuffer\n");
        return pcg::kResultPointer;
    }
    if (!mask2.pBuffer) {
        DumpLog("CSelectionTool::SelectionMaskOperation Null Pointer : mask2.pBuffer\n");
        return pcg::kResultPointer;
    }
    if (!output.pBuffer) {
        DumpLog("CSelectionTool::SelectionMaskOperation Null Pointer : output.pBuffer\n");
        return pcg::kResultPointer;
    }
    switch (nOperation) {
    case MASK_UNION:
    case MASK_INTERSECT:
        CombineMasks(mask1, mask2, nOperation == MASK_UNION, output);
        return pcg::kResultOk;
    case MASK_LENSCORRECT:
    case MASK_CROPROTATE:
    case MASK_FEATHER:
    case MASK_SCALE:
        break;
    default:
        return pcg::kResultInvalidArg;
    }
    if (!pSetting) {
        DumpLog("CSelectionTool::SelectionMaskOperation Null Pointer : pSetting\n");
        return pcg::kResultPointer;
    }
    if (nOperation == MASK_LENSCORRECT) {
        const MaskCorrectSetting setting = *static_cast<const MaskCorrectSetting*>(pSetting);
        return m_lensCorrect.TransformMask(mask1, setting.lensCorrectSetting, setting.nMode,
                                           output);
    }
    if (nOperation == MASK_CROPROTATE)
        return CropRotateMask(mask1, *static_cast<const CropRotateSetting*>(pSetting), output);
    // Feathering and scaling are reserved codes: accepted, no pixel work.
    return pcg::kResultOk;
}
