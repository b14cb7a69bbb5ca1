#pragma once

#include <array>

namespace zelkova::gammaFunction {

/// The coefficients of Stirling's series: ln Gamma(a) = (a - 1/2) ln a - a + ln(2 pi) / 2 + sum c_k /
/// a^(2k-1).
inline constexpr std::array<double, 10> stirlingCoefficients = {
    1.0 / 12,        -1.0 / 360, 1.0 / 1260,       -1.0 / 1680,      1.0 / 1188,
    -691.0 / 360360, 1.0 / 156,  -3617.0 / 122400, 43867.0 / 244188, -174611.0 / 125400};

/// ln(1 + x) - x without the cancellation, x > -1.
double logDeviation(double x);

/// What Stirling's formula lacks: ln Gamma(a) - (a - 1/2) ln a + a - ln(2 pi) / 2, for a > 0.
double stirlingError(double a);

/// ln Gamma(x), x > 0, with relative accuracy at its zeros 1 and 2 too.
double logGamma(double x);

/// ln Gamma(1 + x), 0 <= x < 1, with relative accuracy for small x.
double logGammaOnePlus(double x);

/// ln(Gamma(a + delta) / Gamma(a)), 0 < delta < 1, with relative accuracy for small delta.
double logGammaRise(double a, double delta);

}  // namespace zelkova::gammaFunction
