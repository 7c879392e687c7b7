// The lens correction and crop-with-rotation operations on masks of any
// geometry with any parameters (NaN and infinite angles, corners and sides
// at the integer limits): no access outside the buffers, and the answer is
// one of the operation's codes.
#include <cstdlib>
#include <vector>

#include "engine/constants.h"
#include "engine/records/mask_records.h"
#include "mask_geometry.h"
#include "selection/selection_tool.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const uint8_t operation = input.Take<uint8_t>();
    FuzzMask source(input);
    // The whole buffer is the mask here, its ROI plays no part, and it holds
    // every row whole: the bilinear reads take the byte after a row's last
    // pixel from the next row's start or the padding.
    source.mask.nWidth = source.width;
    source.mask.nHeight = source.height;
    source.mask.rectROI = RECT();
    source.bytes.resize(static_cast<std::size_t>(source.height) * source.mask.nStride);
    source.mask.pBuffer = source.bytes.data();
    for (uint8_t& byte : source.bytes) byte = input.Take<uint8_t>();
    CSelectionTool tool;
    int32_t result = 0;
    if (operation & 1) {
        MaskCorrectSetting setting;
        setting.lensCorrectSetting.nDistortion = input.Take<int32_t>();
        setting.lensCorrectSetting.nVertical = input.Take<int32_t>();
        setting.lensCorrectSetting.nHorizontal = input.Take<int32_t>();
        setting.nMode = input.Take<int32_t>();
        // Output rows advance by the input's stride.
        std::vector<uint8_t> out(source.bytes.size());
        BufferData output = source.mask;
        output.pBuffer = out.data();
        result = tool.SelectionMaskOperation(source.mask, source.mask, MASK_LENSCORRECT, &setting, output);
        if (result != 0) std::abort();
    } else {
        CropRotateSetting setting;
        setting.fAngle = input.Take<float>();
        setting.nLeft = input.Take<int32_t>();
        setting.nTop = input.Take<int32_t>();
        setting.nWidth = input.Take<uint8_t>() % 160;
        setting.nHeight = input.Take<uint8_t>() % 100;
        const int stride = setting.nWidth + input.Take<uint8_t>() % 8;
        std::vector<uint8_t> out(setting.nHeight > 0 && setting.nWidth > 0
                                     ? static_cast<std::size_t>((setting.nHeight - 1) * stride + setting.nWidth)
                                     : 1);
        BufferData output;
        output.pBuffer = out.data();
        output.nWidth = setting.nWidth;
        output.nHeight = setting.nHeight;
        output.nStride = stride;
        result = tool.SelectionMaskOperation(source.mask, source.mask, MASK_CROPROTATE, &setting, output);
        if (result != 0 && result != static_cast<int32_t>(0x80070057)) std::abort();
    }
    return 0;
}
