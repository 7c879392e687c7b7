#include "selection/radial_inverse.h"

#include <cmath>

#if PCG_AVX2_KERNELS
#include <immintrin.h>
#endif

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

#if PCG_AVX2_KERNELS
namespace {

// Solve's test of one candidate, per lane: it exists, is not negative, and
// lies on the distortion's side of q; then it replaces the root kept so far.
PCG_TARGET_AVX2 inline __m256d Consider(__m256d res, __m256d q, bool bNegative, __m256d exists, __m256d candidate) {
    const __m256d side = bNegative ? _mm256_cmp_pd(candidate, q, _CMP_GE_OQ) : _mm256_cmp_pd(candidate, q, _CMP_LE_OQ);
    const __m256d take =
        _mm256_and_pd(_mm256_and_pd(exists, _mm256_cmp_pd(candidate, _mm256_setzero_pd(), _CMP_GE_OQ)), side);
    return _mm256_blendv_pd(res, candidate, take);
}

}  // namespace

PCG_TARGET_AVX2 int RadialRootSolver::SolveFour(const double* pq, double* pRoot) const {
    const __m256d q = _mm256_loadu_pd(pq);
    const __m256d vSign = _mm256_set1_pd(-0.0);
    const __m256d vZero = _mm256_setzero_pd();
    const __m256d vHalf = _mm256_set1_pd(0.5);
    const __m256d vTwo = _mm256_set1_pd(2.0);
    const __m256d alpha = _mm256_set1_pd(m_dAlpha);
    const __m256d quarterB = _mm256_set1_pd(m_dQuarterB);
    const __m256d gamma = _mm256_sub_pd(
        _mm256_add_pd(_mm256_sub_pd(_mm256_xor_pd(_mm256_div_pd(q, _mm256_set1_pd(m_dA)), vSign),
                                    _mm256_set1_pd(m_dGammaB4)),
                      _mm256_set1_pd(m_dGammaB2C)),
        _mm256_set1_pd(m_dGammaDB));

    const __m256d P = _mm256_sub_pd(_mm256_set1_pd(-m_dAlpha2Over12), gamma);
    const __m256d Q = _mm256_sub_pd(
        _mm256_sub_pd(_mm256_div_pd(_mm256_mul_pd(gamma, alpha), _mm256_set1_pd(3.0)), _mm256_set1_pd(m_dAlpha3Over108)),
        _mm256_set1_pd(m_dBeta2Over8));
    const __m256d inner = _mm256_sub_pd(
        _mm256_sqrt_pd(_mm256_add_pd(_mm256_div_pd(_mm256_mul_pd(_mm256_mul_pd(P, P), P), _mm256_set1_pd(27.0)),
                                     _mm256_mul_pd(_mm256_mul_pd(Q, Q), _mm256_set1_pd(0.25)))),
        _mm256_mul_pd(Q, vHalf));
    // The cube root is the library's pow, lane by lane.
    alignas(32) double lanes[4];
    _mm256_store_pd(lanes, inner);
    for (double& lane : lanes) lane = std::pow(lane, 1.0 / 3.0);
    const __m256d U = _mm256_load_pd(lanes);
    alignas(32) double cut[4];
    _mm256_store_pd(cut, _mm256_div_pd(P, _mm256_mul_pd(U, _mm256_set1_pd(3.0))));
    for (int k = 0; k < 4; ++k)
        if (lanes[k] == 0.0) {
            alignas(32) double qLanes[4];
            _mm256_store_pd(qLanes, Q);
            cut[k] = std::pow(qLanes[k], 1.0 / 3.0);
        }
    const __m256d Y = _mm256_sub_pd(_mm256_add_pd(_mm256_set1_pd(m_dAlphaY), U), _mm256_load_pd(cut));
    const __m256d lifted = _mm256_add_pd(alpha, _mm256_mul_pd(vTwo, Y));
    const __m256d ok = _mm256_cmp_pd(lifted, vZero, _CMP_GT_OQ);

    const __m256d Wr = _mm256_sqrt_pd(lifted);
    const __m256d E = _mm256_div_pd(_mm256_mul_pd(vTwo, _mm256_set1_pd(m_dBeta)), Wr);
    const __m256d G = _mm256_add_pd(_mm256_mul_pd(_mm256_set1_pd(3.0), alpha), _mm256_mul_pd(vTwo, Y));

    __m256d res = q;
    const bool bNegative = m_nDistortion < 0;
    const __m256d sum = _mm256_add_pd(G, E);
    const __m256d sumExists = _mm256_cmp_pd(sum, vZero, _CMP_LT_OQ);
    const __m256d S1 = _mm256_sqrt_pd(_mm256_xor_pd(sum, vSign));
    res = Consider(res, q, bNegative, sumExists, _mm256_sub_pd(_mm256_mul_pd(_mm256_sub_pd(Wr, S1), vHalf), quarterB));
    res = Consider(res, q, bNegative, sumExists, _mm256_sub_pd(_mm256_mul_pd(_mm256_add_pd(S1, Wr), vHalf), quarterB));
    const __m256d difference = _mm256_sub_pd(G, E);
    const __m256d differenceExists = _mm256_cmp_pd(difference, vZero, _CMP_LT_OQ);
    const __m256d S2 = _mm256_sqrt_pd(_mm256_xor_pd(difference, vSign));
    res = Consider(res, q, bNegative, differenceExists,
                   _mm256_sub_pd(_mm256_mul_pd(_mm256_sub_pd(_mm256_xor_pd(Wr, vSign), S2), vHalf), quarterB));
    res = Consider(res, q, bNegative, differenceExists, _mm256_sub_pd(_mm256_mul_pd(_mm256_sub_pd(S2, Wr), vHalf), quarterB));
    _mm256_storeu_pd(pRoot, res);
    return _mm256_movemask_pd(ok);
}
#endif
