// Conversions between a raster mask and its boundary runs (SelectionLine):
// one run per maximal stretch of selected bytes in a row, sorted by row and
// then column, in whole-mask coordinates.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/records/brush_records.h"
#include "engine/records/image_records.h"

// Runs of the mask, or of mask.rectROI when it is not empty; pBuffer is the
// rectangle's top-left pixel. 0x80004003 for null pixels.
int32_t MaskToPoint(const BufferData& mask, std::vector<SelectionLine>& lines);

// How MaskToPoint builds its list. By default it judges from a few rows: a
// list short beside the mask is built in one pass over the mask, a long one
// in two (count, then write in place). Tests force 1 or 2; 0 restores the
// choice.
void SetRunListPasses(int nPasses);

// Paints nCount runs into the mask (or its rectROI) over a background of 0,
// or 255 with bInv; a run paints 255, or 0 with bInv. (-1, -1, -1) ends the
// list; any other negative position fails with 0x80004005.
int32_t PointToMask(const SelectionLine* pLines, int nCount, const BufferData& mask, bool bInv);
