#include "reference/agent/frame_work.h"

#include "reference/renderer/lut3d.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace pcg {
namespace refagent {

namespace {

constexpr int kBlue = 0;
constexpr int kGreen = 1;
constexpr int kRed = 2;

int32_t RowBytes(int32_t stride, int32_t width) {
    return stride > 0 ? stride : width * 4;
}

uint8_t ToByte(float value) {
    const float clamped = std::min(1.0f, std::max(0.0f, std::isnan(value) ? 0.0f : value));
    return static_cast<uint8_t>(std::lround(clamped * 255.0f));
}

// Position of a byte value in a table of `size` points over the domain.
float TablePosition(uint8_t byte, float domainMin, float domainMax, int32_t size) {
    const float span = domainMax - domainMin;
    float t = span != 0.0f ? (byte / 255.0f - domainMin) / span : 0.0f;
    t = std::min(1.0f, std::max(0.0f, std::isnan(t) ? 0.0f : t));
    return t * static_cast<float>(size - 1);
}

void Split(float position, int32_t size, int32_t* low, int32_t* high, float* fraction) {
    *low = std::min(static_cast<int32_t>(position), size - 1);
    *high = std::min(*low + 1, size - 1);
    *fraction = position - static_cast<float>(*low);
}

void ApplyCurves(const LutCopy& lut, uint8_t* pixel) {
    const int32_t size = lut.nSize;
    const int channels[3] = {kRed, kGreen, kBlue};
    for (int component = 0; component < 3; ++component) {
        const int channel = channels[component];
        int32_t low = 0;
        int32_t high = 0;
        float fraction = 0.0f;
        Split(TablePosition(pixel[channel], lut.fDomainMin[component], lut.fDomainMax[component], size), size,
              &low, &high, &fraction);
        const float a = lut.table[static_cast<std::size_t>(low) * 3 + component];
        const float b = lut.table[static_cast<std::size_t>(high) * 3 + component];
        pixel[channel] = ToByte(a + (b - a) * fraction);
    }
}

void ApplyCube(const LutCopy& lut, uint8_t* pixel) {
    const int32_t size = lut.nSize;
    int32_t low[3];
    int32_t high[3];
    float fraction[3];
    const uint8_t rgb[3] = {pixel[kRed], pixel[kGreen], pixel[kBlue]};
    for (int axis = 0; axis < 3; ++axis) {
        Split(TablePosition(rgb[axis], lut.fDomainMin[axis], lut.fDomainMax[axis], size), size, &low[axis],
              &high[axis], &fraction[axis]);
    }
    float out[3] = {0.0f, 0.0f, 0.0f};
    for (int corner = 0; corner < 8; ++corner) {
        float weight = 1.0f;
        std::size_t index[3];
        for (int axis = 0; axis < 3; ++axis) {
            const bool up = (corner >> axis) & 1;
            index[axis] = static_cast<std::size_t>(up ? high[axis] : low[axis]);
            weight *= up ? fraction[axis] : 1.0f - fraction[axis];
        }
        const std::size_t n = static_cast<std::size_t>(size);
        const std::size_t cell = ((index[2] * n + index[1]) * n + index[0]) * 3;
        for (int component = 0; component < 3; ++component) {
            out[component] += weight * lut.table[cell + component];
        }
    }
    pixel[kRed] = ToByte(out[0]);
    pixel[kGreen] = ToByte(out[1]);
    pixel[kBlue] = ToByte(out[2]);
}

}  // namespace

bool RenderFrame(const ApplyBufferSetting& setting) {
    if (!setting.pSrcBuffer || !setting.pDstBuffer) {
        return false;
    }
    const int32_t rows = std::max(0, std::min(setting.nSrcHeight, setting.nDstHeight));
    const int32_t columns = std::max(0, std::min(setting.nSrcWidth, setting.nDstWidth));
    const int32_t srcStride = RowBytes(setting.nSrcStride, setting.nSrcWidth);
    const int32_t dstStride = RowBytes(setting.nDstStride, setting.nDstWidth);
    const std::size_t rowBytes = static_cast<std::size_t>(columns) * 4;
    for (int32_t row = 0; row < rows; ++row) {
        std::memmove(setting.pDstBuffer + static_cast<std::ptrdiff_t>(row) * dstStride,
                     setting.pSrcBuffer + static_cast<std::ptrdiff_t>(row) * srcStride, rowBytes);
    }
    return true;
}

HistogramDist MeasureHistogram(const uint8_t* pixels, int32_t width, int32_t height, int32_t stride) {
    HistogramDist histogram;
    if (!pixels || width <= 0 || height <= 0) {
        return histogram;
    }
    const int32_t rowBytes = RowBytes(stride, width);
    for (int32_t row = 0; row < height; ++row) {
        const uint8_t* pixel = pixels + static_cast<std::ptrdiff_t>(row) * rowBytes;
        for (int32_t column = 0; column < width; ++column, pixel += 4) {
            const int red = pixel[kRed];
            const int green = pixel[kGreen];
            const int blue = pixel[kBlue];
            const int luminance = (299 * red + 587 * green + 114 * blue + 500) / 1000;
            ++histogram.HistogramR[red];
            ++histogram.HistogramG[green];
            ++histogram.HistogramB[blue];
            ++histogram.HistogramL[luminance];
            ++histogram.nTotalCount;
        }
    }
    histogram.nMaxHistogramR = *std::max_element(std::begin(histogram.HistogramR), std::end(histogram.HistogramR));
    histogram.nMaxHistogramG = *std::max_element(std::begin(histogram.HistogramG), std::end(histogram.HistogramG));
    histogram.nMaxHistogramB = *std::max_element(std::begin(histogram.HistogramB), std::end(histogram.HistogramB));
    histogram.nMaxHistogramL = *std::max_element(std::begin(histogram.HistogramL), std::end(histogram.HistogramL));
    return histogram;
}

bool ApplyLut(const LutCopy& lut, uint8_t* pixels, int32_t width, int32_t height, int32_t pixelBytes) {
    if (!pixels || width <= 0 || height <= 0 || (pixelBytes != 3 && pixelBytes != 4) || lut.nSize < 2) {
        return false;
    }
    const std::size_t size = static_cast<std::size_t>(lut.nSize);
    void (*apply)(const LutCopy&, uint8_t*) = nullptr;
    if (lut.table.size() == size * 3) {
        apply = ApplyCurves;
    } else if (size <= 1024 && lut.table.size() == size * size * size * 3) {
        // Four-byte pixels go through the shared renderer's table, the one
        // the clip render uses; three-byte pixels and tables it does not
        // take (a size past 256, an empty domain) are read here.
        pcg::renderer::Lut3D shared;
        shared.nSize = lut.nSize;
        std::copy(std::begin(lut.fDomainMin), std::end(lut.fDomainMin), shared.domainMin);
        std::copy(std::begin(lut.fDomainMax), std::end(lut.fDomainMax), shared.domainMax);
        shared.table = lut.table;
        if (pixelBytes == 4 && pcg::renderer::IsUsable(shared)) {
            return pcg::renderer::ApplyLut3D(pixels, width, height, width * 4, 1, shared);
        }
        apply = ApplyCube;
    } else {
        return false;
    }
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    for (std::size_t index = 0; index < count; ++index) {
        apply(lut, pixels + index * static_cast<std::size_t>(pixelBytes));
    }
    return true;
}

}  // namespace refagent
}  // namespace pcg
