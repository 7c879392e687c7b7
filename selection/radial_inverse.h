// Closed-form inverse of the radial lens polynomial
//   t = a r^4 + b r^3 + c r^2 + d r
// by Ferrari's method, with the root choice that follows the distortion's
// sign. Shared by MaskLensCorrect's per-point solver and its mask loop.
#pragma once

#include "selection/simd_dispatch.h"

struct RadialPolynomial {
    double dA;
    double dB;
    double dC;
    double dD;
};

// The parts of the solve that do not depend on the radius, worked out once
// per polynomial; the per-radius part then does exactly the remaining steps.
class RadialRootSolver {
public:
    RadialRootSolver(const RadialPolynomial& poly, int nDistortion);
    // Radius r whose image under the polynomial is q (0 < q <= 1). False,
    // with *pRoot untouched, when the resolvent has no usable real root.
    bool Solve(double q, double* pRoot) const;
#if PCG_AVX2_KERNELS
    // Solve for q[0..3] at once, each lane by Solve's operations in Solve's
    // order. Returns a bit per lane with a root, written to pRoot[lane];
    // lanes without one leave garbage there.
    PCG_TARGET_AVX2 int SolveFour(const double* q, double* pRoot) const;
#endif

private:
    double m_dA;
    double m_dB;
    double m_dC;
    double m_dD;
    double m_dAlpha;
    double m_dBeta;
    double m_dGammaB4;      // B^4 * 3.0 * 0.00390625
    double m_dGammaB2C;     // B^2 * C * 0.0625
    double m_dGammaDB;      // D * B * 0.25
    double m_dAlpha2Over12;
    double m_dAlpha3Over108;
    double m_dBeta2Over8;
    double m_dAlphaY;       // alpha * -5.0 / 6.0
    double m_dQuarterB;     // B * 0.25
    int m_nDistortion;
};
