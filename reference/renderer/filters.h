// The renderer's neighbourhood filters: noise reduction, HDR, clarity,
// sharpness and blur. They
// rest on OpenCV's imgproc; a build without it (the Windows cross-build)
// leaves them out: FiltersAvailable() is false there and these settings
// change nothing. Order: noise reduction, then HDR, clarity and sharpness,
// then blur.
//
// Luma L = 0.299 r + 0.587 g + 0.114 b on 0..M, in single precision, and
// Gauss(X, sigma) a Gaussian low-pass with mirrored borders. A large sigma
// (above 8 pixels) is taken on a copy shrunk by sigma / 4 (area average),
// blurred with the matching sigma and grown back (linear): the same low-pass
// at a fraction of the cost.
//
//   luminance noise, amount A (0..100), detail D (0..100): S = Gauss(L, 1.5),
//       e = S - L; th = (1 - 0.9 D / 100) * M / 10; where the difference is
//       small against th (noise) it is taken, where large (an edge) it is
//       kept: dN = A / 100 * e * th^2 / (th^2 + e^2), added to each channel
//   colour noise, amount A, detail D: each channel's colour u = c - L is
//       smoothed, u' = Gauss(u, 3 (1 - 0.8 D / 100)), and c = c + A / 100 *
//       (u' - u), rounded and clamped
//   HDR glow, strength G (0..100), radius R (0..100), balance B (-100..100):
//       large areas are drawn towards a pivot, as a tone-mapped picture is:
//       S = Gauss(L, 2 + R / 100 * min(width, height) / 20); pivot P = M (1/2 +
//       B / 200); dG = G / 100 * (P - S) / 2
//   HDR edge, strength E (0..100), radius R (0..100), balance B (-100..100):
//       D = L - Gauss(L, 1 + R / 10); dE = E / 100 * D * (1 + B / 100 * (2 L / M
//       - 1)) (a positive balance favours the light edges)
//   clarity K (-100..100): sigma = max(2, min(width, height) / 50);
//       D = L - Gauss(L, sigma); midtone weight m = 1 - (2 L / M - 1)^2, so
//       blacks and whites stay; dC = K / 100 * D * m
//   sharpness, amount A (0..100), radius R (1..15), masking T (0..100):
//       sigma = R / 2; D = L - Gauss(L, sigma); where |D| < T / 100 * M / 10
//       (flat areas, noise) nothing; elsewhere dS = 2 A / 100 * D
//   HDR, clarity and sharpness read the same L; each colour channel moves by
//   dG + dE + dC + dS, rounded and clamped once.
//   blur level V (0..100): each colour channel becomes Gauss(c, V / 10),
//       rounded by OpenCV; alpha kept.
#pragma once

#include <cstdint>

#include "reference/renderer/renderer.h"

namespace pcg {
namespace renderer {

bool FiltersAvailable();

// True when noise reduction, HDR, clarity, sharpness or blur asks for work.
bool FiltersActive(const GlobalSettings& settings);

// Arguments already checked by the caller.
void ApplyFilters(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel,
                  const GlobalSettings& settings);

}  // namespace renderer
}  // namespace pcg
