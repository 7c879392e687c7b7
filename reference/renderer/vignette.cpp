#include "reference/renderer/vignette.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "platform/parallel_slices.h"
#include "reference/renderer/pixel_math.h"

namespace pcg {
namespace renderer {

namespace {

template <typename T>
void Rows(uint8_t* pixels, int width, int first, int last, int stride, const std::vector<double>& columnTerm,
          const std::vector<double>& rowTerm, double power, double r0, double feather, double amount, double max) {
    for (int y = first; y < last; ++y) {
        uint8_t* row = pixels + static_cast<size_t>(y) * static_cast<size_t>(stride);
        for (int x = 0; x < width; ++x) {
            const double sum = columnTerm[static_cast<size_t>(x)] + rowTerm[static_cast<size_t>(y)];
            const double d = power == 2.0 ? std::sqrt(sum) : std::pow(sum, 1.0 / power);
            const double q = Clamp((d - r0) / feather, 0.0, 1.0);
            const double weight = q * q * (3.0 - 2.0 * q);
            if (weight <= 0.0) continue;
            T px[4];
            std::memcpy(px, row + static_cast<size_t>(x) * sizeof(px), sizeof(px));
            for (int i = 0; i < 3; ++i) {
                const double c = px[i];
                const double out = amount < 0.0 ? c * (1.0 + amount * weight) : c + (max - c) * amount * weight;
                px[i] = static_cast<T>(ToChannel(out, max));
            }
            std::memcpy(row + static_cast<size_t>(x) * sizeof(px), px, sizeof(px));
        }
    }
}

}  // namespace

bool VignetteActive(const GlobalSettings& s) { return s.dVignetteAmount != 0.0 && std::isfinite(s.dVignetteAmount); }

void ApplyVignette(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel, const GlobalSettings& s) {
    // Values past their ranges are held to them; a non-finite one reads as its neutral middle.
    auto held = [](double v, double lo, double hi, double otherwise) {
        return std::isfinite(v) ? Clamp(v, lo, hi) : otherwise;
    };
    const double amount = held(s.dVignetteAmount, -100.0, 100.0, 0.0) / 100.0;
    const double midPoint = held(s.dVignetteMidPoint, 0.0, 100.0, 50.0);
    const double roundness = held(s.dVignetteRoundness, -100.0, 100.0, 0.0);
    const double feather = 0.05 + 0.95 * held(s.dVignetteFeather, 0.0, 100.0, 50.0) / 100.0;
    const double toCircle = roundness > 0.0 ? roundness / 100.0 : 0.0;
    const double power = roundness < 0.0 ? 2.0 - 6.0 * roundness / 100.0 : 2.0;
    const double shortHalf = std::min(width, height) / 2.0;
    const double ax = width / 2.0 + (shortHalf - width / 2.0) * toCircle;
    const double ay = height / 2.0 + (shortHalf - height / 2.0) * toCircle;
    std::vector<double> columnTerm(static_cast<size_t>(width)), rowTerm(static_cast<size_t>(height));
    for (int x = 0; x < width; ++x) columnTerm[static_cast<size_t>(x)] = std::pow(std::fabs((x + 0.5 - width / 2.0) / ax), power);
    for (int y = 0; y < height; ++y) rowTerm[static_cast<size_t>(y)] = std::pow(std::fabs((y + 0.5 - height / 2.0) / ay), power);
    const double r0 = midPoint / 100.0;
    platform::ForEachSlice(height, 1 + (1 << 16) / width, [&](int first, int last) {
        if (bytesPerChannel == 1)
            Rows<uint8_t>(pixels, width, first, last, stride, columnTerm, rowTerm, power, r0, feather, amount, 255.0);
        else
            Rows<uint16_t>(pixels, width, first, last, stride, columnTerm, rowTerm, power, r0, feather, amount, 65535.0);
    });
}

}  // namespace renderer
}  // namespace pcg
