// Masks of any content and geometry into runs: every run lies inside the
// scanned rectangle, and painting the runs back gives the mask's selection.
#include <cstdlib>
#include <vector>

#include "mask_geometry.h"
#include "selection/selection_lines.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    FuzzMask source(input);
    for (std::size_t i = 0; i < source.bytes.size(); ++i) {
        source.bytes[i] = input.Take<uint8_t>() & 1 ? 0x80 : 0;
    }
    std::vector<SelectionLine> lines;
    if (MaskToPoint(source.mask, lines) != 0) std::abort();
    const RECT& roi = source.mask.rectROI;
    for (const SelectionLine& line : lines) {
        if (line.nLength < 1 || line.nX < roi.left || line.nY < roi.top ||
            line.nX + line.nLength > roi.left + source.width || line.nY >= roi.top + source.height)
            std::abort();
    }
    FuzzMask painted = source;
    painted.mask.pBuffer = painted.bytes.data();
    if (PointToMask(lines.data(), static_cast<int>(lines.size()), painted.mask, false) != 0) std::abort();
    for (int r = 0; r < source.height; ++r) {
        for (int c = 0; c < source.width; ++c) {
            const std::size_t at = static_cast<std::size_t>(r * source.mask.nStride + c);
            if ((source.bytes[at] != 0) != (painted.bytes[at] == 0xFF)) std::abort();
        }
    }
    return 0;
}
