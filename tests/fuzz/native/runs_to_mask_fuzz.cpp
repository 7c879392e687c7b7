// Any run list painted into masks of any geometry: nothing is written
// outside the buffer (the sanitizer sees it), a list ended by (-1, -1, -1) or
// running out succeeds, and a negative position fails with 0x80004005.
#include <cstdlib>
#include <vector>

#include "mask_geometry.h"
#include "selection/selection_lines.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    FuzzMask target(input);
    const bool inverse = input.Take<uint8_t>() & 1;
    std::vector<SelectionLine> lines(input.RestSize() / sizeof(SelectionLine));
    for (SelectionLine& line : lines) {
        line.nX = input.Take<int16_t>();
        line.nY = input.Take<int16_t>();
        line.nLength = input.Take<int16_t>();
    }
    const int32_t result = PointToMask(lines.data(), static_cast<int>(lines.size()), target.mask, inverse);
    int32_t expected = 0;
    for (const SelectionLine& line : lines) {
        if (line.nX == -1 && line.nY == -1) {
            expected = line.nLength == -1 ? 0 : static_cast<int32_t>(0x80004005);
            break;
        }
        if (line.nX < 0 || line.nY < 0) {
            expected = static_cast<int32_t>(0x80004005);
            break;
        }
    }
    if (result != expected) std::abort();
    return 0;
}
