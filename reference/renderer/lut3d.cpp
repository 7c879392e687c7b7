#include "reference/renderer/lut3d.h"

#include <cmath>
#include <cstring>

#include "platform/parallel_slices.h"

namespace pcg {
namespace renderer {

namespace {

// Where each possible channel value falls along one axis of the table: the
// lower lattice index (0..nSize-2) and the share of the upper one (0..1).
// Computed once per channel for every code value, so the per-pixel work is
// only the blend.
struct Axis {
    std::vector<int32_t> index;
    std::vector<float> share;
};

Axis MakeAxis(int codes, double domainMin, double domainMax, int nSize) {
    Axis axis;
    axis.index.resize(static_cast<size_t>(codes));
    axis.share.resize(static_cast<size_t>(codes));
    const double max = codes - 1;
    for (int c = 0; c < codes; ++c) {
        double v = c / max;
        if (v < domainMin) v = domainMin;
        if (v > domainMax) v = domainMax;
        const double p = (v - domainMin) / (domainMax - domainMin) * (nSize - 1);
        int i = static_cast<int>(std::floor(p));
        if (i > nSize - 2) i = nSize - 2;
        if (i < 0) i = 0;
        axis.index[static_cast<size_t>(c)] = i;
        axis.share[static_cast<size_t>(c)] = static_cast<float>(p - i);
    }
    return axis;
}

template <typename T>
void ApplyRows(uint8_t* pixels, int width, int first, int last, int stride, const Lut3D& lut, const Axis* axes,
               float max) {
    const size_t n = static_cast<size_t>(lut.nSize);
    const size_t stepG = n, stepB = n * n;
    const float* table = lut.table.data();
    for (int y = first; y < last; ++y) {
        uint8_t* row = pixels + static_cast<size_t>(y) * static_cast<size_t>(stride);
        for (int x = 0; x < width; ++x) {
            T px[4];
            std::memcpy(px, row + static_cast<size_t>(x) * sizeof(px), sizeof(px));
            // axes[0] red, [1] green, [2] blue; memory holds b, g, r.
            const size_t ir = static_cast<size_t>(axes[0].index[px[2]]);
            const size_t ig = static_cast<size_t>(axes[1].index[px[1]]);
            const size_t ib = static_cast<size_t>(axes[2].index[px[0]]);
            const float fr = axes[0].share[px[2]], fg = axes[1].share[px[1]], fb = axes[2].share[px[0]];
            const float* c000 = table + 3 * (ir + ig * stepG + ib * stepB);
            const float* c100 = c000 + 3;
            const float* c010 = c000 + 3 * stepG;
            const float* c110 = c010 + 3;
            const float* c001 = c000 + 3 * stepB;
            const float* c101 = c001 + 3;
            const float* c011 = c001 + 3 * stepG;
            const float* c111 = c011 + 3;
            for (int k = 0; k < 3; ++k) {
                const float a00 = c000[k] + (c100[k] - c000[k]) * fr;
                const float a10 = c010[k] + (c110[k] - c010[k]) * fr;
                const float a01 = c001[k] + (c101[k] - c001[k]) * fr;
                const float a11 = c011[k] + (c111[k] - c011[k]) * fr;
                const float b0 = a00 + (a10 - a00) * fg;
                const float b1 = a01 + (a11 - a01) * fg;
                float out = (b0 + (b1 - b0) * fb) * max + 0.5f;
                // NaN in the table reads as black rather than as an undefined conversion.
                if (!(out >= 0.0f)) out = 0.0f;
                if (out > max) out = max;
                px[2 - k] = static_cast<T>(out);
            }
            std::memcpy(row + static_cast<size_t>(x) * sizeof(px), px, sizeof(px));
        }
    }
}

}  // namespace

bool IsUsable(const Lut3D& lut) {
    if (lut.nSize < 2 || lut.nSize > 256) return false;
    const size_t n = static_cast<size_t>(lut.nSize);
    if (lut.table.size() != 3 * n * n * n) return false;
    for (int k = 0; k < 3; ++k) {
        if (!std::isfinite(lut.domainMin[k]) || !std::isfinite(lut.domainMax[k])) return false;
        if (!(lut.domainMax[k] > lut.domainMin[k])) return false;
    }
    return true;
}

bool ApplyLut3D(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel, const Lut3D& lut) {
    if (pixels == nullptr || width < 1 || height < 1) return false;
    if (bytesPerChannel != 1 && bytesPerChannel != 2) return false;
    if (static_cast<int64_t>(stride) < static_cast<int64_t>(width) * 4 * bytesPerChannel) return false;
    if (!IsUsable(lut)) return false;
    const int codes = bytesPerChannel == 1 ? 256 : 65536;
    const Axis axes[3] = {MakeAxis(codes, lut.domainMin[0], lut.domainMax[0], lut.nSize),
                          MakeAxis(codes, lut.domainMin[1], lut.domainMax[1], lut.nSize),
                          MakeAxis(codes, lut.domainMin[2], lut.domainMax[2], lut.nSize)};
    const int minRows = 1 + (1 << 16) / width;
    platform::ForEachSlice(height, minRows, [&](int first, int last) {
        if (bytesPerChannel == 1) ApplyRows<uint8_t>(pixels, width, first, last, stride, lut, axes, 255.0f);
        else ApplyRows<uint16_t>(pixels, width, first, last, stride, lut, axes, 65535.0f);
    });
    return true;
}

}  // namespace renderer
}  // namespace pcg
