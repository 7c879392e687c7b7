// CSelectionTool: the toolbox for 8-bit masks behind the facade's selection
// operations: mask to runs and back, bounding box, and the mask operations.
// No lock: the SelectionMaskToPoint / SelectionGetSelectionLinePoint pair is
// a stateful sequence that the caller keeps in order.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/records/brush_records.h"
#include "engine/records/image_records.h"
#include "selection/mask_lens_correct.h"

class CSelectionTool {
public:
    // Empties the line buffer and fills it with the mask's runs; nLength gets
    // their count. Always 0.
    int32_t SelectionMaskToPoint(const BufferData& mask, int& nLength);
    // Bounding box of the selected bytes; fAngle is left alone.
    int32_t SelectionGetMaskROI(const BufferData& mask, ROI& roi);
    // Copies the line buffer to pslPath and empties it.
    int32_t SelectionGetSelectionLinePoint(SelectionLine* pslPath);
    int32_t SelectionPointToMask(int nListSize, const SelectionLine* pslPath,
                                 const BufferData& mask, bool bInv);
    // MASK_UNION, MASK_INTERSECT, MASK_LENSCORRECT, MASK_CROPROTATE, and the
    // reserved MASK_FEATHER and MASK_SCALE, which succeed without effect.
    int32_t SelectionMaskOperation(const BufferData& mask1, const BufferData& mask2,
                                   int nOperation, void* pSetting, const BufferData& output);

    std::vector<SelectionLine> m_lines;
    MaskLensCorrect m_lensCorrect;
};
