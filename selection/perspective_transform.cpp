#include "selection/perspective_transform.h"

#include <cmath>

namespace {

double Cross(double ax, double ay, double bx, double by) { return ax * by - ay * bx; }

// A strictly convex quad: every turn along p0 -> p1 -> p2 -> p3 -> p0 has
// the same sign, none is zero, and the edges wind round once.
bool IsConvexQuad(const double quad[4][2]) {
    int nPositive = 0;
    int nNegative = 0;
    for (int i = 0; i < 4; ++i) {
        const double* p = quad[i];
        const double* q = quad[(i + 1) % 4];
        const double* r = quad[(i + 2) % 4];
        const double turn = Cross(q[0] - p[0], q[1] - p[1], r[0] - q[0], r[1] - q[1]);
        if (!std::isfinite(turn)) return false;
        if (turn > 0) ++nPositive;
        else if (turn < 0) ++nNegative;
    }
    return nPositive == 4 || nNegative == 4;
}

void Multiply(const double a[3][3], const double b[3][3], double out[3][3]) {
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) out[r][c] = a[r][0] * b[0][c] + a[r][1] * b[1][c] + a[r][2] * b[2][c];
}

}  // namespace

IppStatus GetPerspectiveTransform(IppiRect srcRoi, const double quad[4][2], double coeffs[3][3]) {
    if (!quad || !coeffs) return ippStsNullPtrErr;
    if (srcRoi.x < 0 || srcRoi.y < 0 || srcRoi.width <= 0 || srcRoi.height <= 0)
        return ippStsSizeErr;
    if (srcRoi.width == 1 || srcRoi.height == 1) return ippStsRectErr;
    if (!IsConvexQuad(quad)) return ippStsCoeffErr;

    // Unit square onto the quad, in closed form: (0,0) (1,0) (1,1) (0,1) go
    // to quad[0] .. quad[3].
    const double x0 = quad[0][0], y0 = quad[0][1];
    const double x1 = quad[1][0], y1 = quad[1][1];
    const double x2 = quad[2][0], y2 = quad[2][1];
    const double x3 = quad[3][0], y3 = quad[3][1];
    const double sx = x0 - x1 + x2 - x3;
    const double sy = y0 - y1 + y2 - y3;
    const double dx1 = x1 - x2, dx2 = x3 - x2;
    const double dy1 = y1 - y2, dy2 = y3 - y2;
    const double den = Cross(dx1, dy1, dx2, dy2);
    if (den == 0.0) return ippStsCoeffErr;
    const double g = Cross(sx, sy, dx2, dy2) / den;
    const double h = Cross(dx1, dy1, sx, sy) / den;
    const double square[3][3] = {
        {x1 - x0 + g * x1, x3 - x0 + h * x3, x0},
        {y1 - y0 + g * y1, y3 - y0 + h * y3, y0},
        {g, h, 1.0},
    };

    // The rectangle's corners onto the unit square.
    const double w = srcRoi.width - 1.0;
    const double ht = srcRoi.height - 1.0;
    const double toSquare[3][3] = {
        {1.0 / w, 0.0, -srcRoi.x / w},
        {0.0, 1.0 / ht, -srcRoi.y / ht},
        {0.0, 0.0, 1.0},
    };
    double m[3][3];
    Multiply(square, toSquare, m);
    // c22 = 1 unless the origin itself lies on the vanishing line.
    const double scale = m[2][2] != 0.0 ? m[2][2] : 1.0;
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) coeffs[r][c] = m[r][c] / scale;
    return ippStsNoErr;
}
