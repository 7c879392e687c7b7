#include "selection/radial_inverse.h"

#include <cmath>

RadialRootSolver::RadialRootSolver(const RadialPolynomial& poly, int nDistortion)
    : m_nDistortion(nDistortion) {
    const double a = poly.dA;
    m_dA = a;
    m_dB = poly.dB / a;
    m_dC = poly.dC / a;
    m_dD = poly.dD / a;
    const double B = m_dB, C = m_dC, D = m_dD;
    const double B2 = B * B;
    // Depressed quartic y^4 + alpha y^2 + beta y + gamma, with r = y - B / 4.
    m_dAlpha = C - B2 * 0.375;
    m_dBeta = B2 * B * 0.125 + D - C * B * 0.5;
    m_dGammaB4 = B2 * B * B * 3.0 * 0.00390625;
    m_dGammaB2C = B2 * C * 0.0625;
    m_dGammaDB = D * B * 0.25;
    const double alpha2 = m_dAlpha * m_dAlpha;
    m_dAlpha2Over12 = alpha2 / 12.0;
    m_dAlpha3Over108 = alpha2 * m_dAlpha / 108.0;
    m_dBeta2Over8 = m_dBeta * m_dBeta * 0.125;
    m_dAlphaY = m_dAlpha * -5.0 / 6.0;
    m_dQuarterB = B * 0.25;
}

bool RadialRootSolver::Solve(double q, double* pRoot) const {
    const double alpha = m_dAlpha;
    const double beta = m_dBeta;
    const double gamma = -(q / m_dA) - m_dGammaB4 + m_dGammaB2C - m_dGammaDB;

    // One real root of the resolvent cubic.
    const double P = -m_dAlpha2Over12 - gamma;
    const double Q = gamma * alpha / 3.0 - m_dAlpha3Over108 - m_dBeta2Over8;
    const double U = std::pow(std::sqrt(P * P * P / 27.0 + Q * Q * 0.25) - Q * 0.5, 1.0 / 3.0);
    const double Y = U == 0.0 ? m_dAlphaY + U - std::pow(Q, 1.0 / 3.0) : m_dAlphaY + U - P / (U * 3.0);
    if (!(alpha + 2 * Y > 0)) return false;

    const double Wr = std::sqrt(alpha + 2 * Y);
    const double E = 2 * beta / Wr;
    const double G = 3 * alpha + 2 * Y;

    // Candidates in a fixed order; each accepted one is compared with q, not
    // with the root kept so far, so the last accepted candidate wins.
    double res = q;
    auto consider = [&](double candidate) {
        if (!(candidate >= 0)) return;
        if (m_nDistortion < 0 ? candidate >= q : candidate <= q) res = candidate;
    };
    if (G + E < 0) {
        const double S = std::sqrt(-(G + E));
        consider((Wr - S) * 0.5 - m_dQuarterB);
        consider((S + Wr) * 0.5 - m_dQuarterB);
    }
    if (G - E < 0) {
        const double S = std::sqrt(-(G - E));
        consider((-Wr - S) * 0.5 - m_dQuarterB);
        consider((S - Wr) * 0.5 - m_dQuarterB);
    }
    *pRoot = res;
    return true;
}
