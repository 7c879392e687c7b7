// The pixel work of CSelectionTool's mask operations.
#pragma once

#include <cstdint>

#include "engine/records/effect_records.h"
#include "engine/records/image_records.h"

// output = mask1 OR mask2 (bOr) or mask1 AND mask2, bytewise, over
// output.nHeight rows of output.nWidth bytes, each through its own stride.
// The output may be one of the inputs, but not overlap one partially.
void CombineMasks(const BufferData& mask1, const BufferData& mask2, bool bOr,
                  const BufferData& output);

// Crops mask1 to the setting's rectangle, rotated by fAngle degrees about its
// top-left corner with bilinear weights; output is nWidth x nHeight.
int32_t CropRotateMask(const BufferData& mask1, const CropRotateSetting& setting,
                       const BufferData& output);
