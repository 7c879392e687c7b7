// Small arithmetic shared by the renderer's passes.
#pragma once

#include <cmath>
#include <cstdint>

namespace pcg {
namespace renderer {

// NaN reads as lo: whatever an overflowing setting computes, no integer
// conversion sees a value it cannot hold.
inline double Clamp(double v, double lo, double hi) { return !(v >= lo) ? lo : (v > hi ? hi : v); }

// A channel worked in double precision back to its integer code on 0..max:
// round half up, then clamp. On the non-negative side truncation is floor,
// one instruction where std::floor is a library call.
inline double ToChannel(double value, double max) {
    const double v = value + 0.5;
    if (!(v >= 0.0)) return 0.0;
    if (v >= max) return max;
    return static_cast<double>(static_cast<int64_t>(v));
}

}  // namespace renderer
}  // namespace pcg
