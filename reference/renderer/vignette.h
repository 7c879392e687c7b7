// The post-crop vignette, the renderer's last step: amount A (-100..100),
// midpoint P (0..100), roundness R (-100..100), feather F (0..100).
//
// Pixel centres are placed on the frame's ellipse scale: u = (x + 0.5 - w/2)
// / ax, v = (y + 0.5 - h/2) / ay. ax = w/2 and ay = h/2, drawn towards
// min(w, h) / 2 by R / 100 when R > 0 (a circle at 100). The distance is
// d = (|u|^p + |v|^p)^(1/p) with p = 2 - 6 R / 100 when R < 0 (squarer, up to
// p = 8) and p = 2 otherwise. The falloff starts at r0 = P / 100 and is whole
// after a width fw = 0.05 + 0.95 F / 100: q = clamp((d - r0) / fw, 0, 1),
// weight = q^2 (3 - 2q). Then, on 0..M:
//   A < 0: c = c * (1 + A / 100 * weight)        (darker towards the corners)
//   A > 0: c = c + (M - c) * A / 100 * weight    (lighter towards the corners)
// rounded to the nearest integer. A = 0 is neutral.
#pragma once

#include <cstdint>

#include "reference/renderer/renderer.h"

namespace pcg {
namespace renderer {

bool VignetteActive(const GlobalSettings& settings);

// Arguments already checked by the caller.
void ApplyVignette(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel,
                   const GlobalSettings& settings);

}  // namespace renderer
}  // namespace pcg
