// MaskLensCorrect: moves an 8-bit mask through the geometric correction of
// the lens correction effect (radial distortion, keystone tilt), so that a
// selection keeps fitting the corrected picture. Every member is scratch for
// one call.
#pragma once

#include <cstdint>

#include "engine/records/effect_records.h"
#include "engine/records/image_records.h"
#include "selection/radial_inverse.h"

class MaskLensCorrect {
public:
    MaskLensCorrect();

    // Null pixels on either side are refused with 0x80004003; otherwise the
    // mask is warped and 0 comes back, whatever the inner steps reported.
    int32_t TransformMask(const BufferData& inputMask, const LensCorrectSetting& setting,
                          int nMode, const BufferData& outputMask);
    // The per-pixel loop. nMode 1 is the reverse direction, every other value
    // the direct one. Output rows advance by the input's stride.
    void WarpMask(const BufferData& inputMask, const LensCorrectSetting& setting, int nMode,
                  const BufferData& outputMask);
    // Fills m_dForward from the perspective solve and m_dInverse from it.
    int32_t ComputePerspective(int nWidth, int nHeight, int nVertical, int nHorizontal);
    // Moves (x, y) by the inverse of the radial polynomial about (cx, cy).
    int32_t SolveRadialInverse(double& x, double& y, double cx, double cy, int nDistortion);

    double m_dForward[3][3];
    double m_dInverse[3][3];
    double m_dRadius;
    double m_dPolyA;
    double m_dPolyB;
    double m_dPolyC;
    double m_dPolyD;

private:
    RadialPolynomial m_fnPolynomial() const;
};
