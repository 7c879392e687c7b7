// Small arithmetic shared by the renderer's passes.
#pragma once

#include <cmath>

namespace pcg {
namespace renderer {

// NaN reads as lo: whatever an overflowing setting computes, no integer
// conversion sees a value it cannot hold.
inline double Clamp(double v, double lo, double hi) { return !(v >= lo) ? lo : (v > hi ? hi : v); }

// A channel worked in double precision back to its integer code on 0..max.
inline double ToChannel(double value, double max) { return Clamp(std::floor(value + 0.5), 0.0, max); }

}  // namespace renderer
}  // namespace pcg
