// The perspective solve that the mask lens correction asks for: the 3x3
// projective matrix that carries a rectangle's corners onto a quad, with the
// contract and status values of the imaging library's GetPerspectiveTransform.
#pragma once

#include "imaging/ipp_contract.h"

// Corners of srcRoi, in this order: top left (x, y), top right
// (x + width - 1, y), bottom right (x + width - 1, y + height - 1), bottom
// left (x, y + height - 1), go to quad[0] .. quad[3] under
//   w = c20 x + c21 y + c22,  u = (c00 x + c01 y + c02) / w,
//   v = (c10 x + c11 y + c12) / w.
// The matrix is scaled so that c22 is 1.
// Status: 0; -6 (ippStsSizeErr) for a negative origin or an empty
// rectangle; -57 (ippStsRectErr) for a rectangle one pixel wide or high;
// -58 (ippStsCoeffErr) for a quad that is not a convex quadrilateral.
IppStatus GetPerspectiveTransform(IppiRect srcRoi, const double quad[4][2], double coeffs[3][3]);
