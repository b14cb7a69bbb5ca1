#include "host/tails.h"

#include <cmath>
#include <numbers>

#include "host/gammaFunction.h"
#include "host/incompleteBeta.h"
#include "host/incompleteGamma.h"

namespace zelkova::tails {

namespace {

// The root of 1/2 in two parts.
constexpr double rootHalf = std::numbers::sqrt2 / 2;
constexpr double rootHalfRest = -4.833646656726456726e-17;

}  // namespace

double normalLower(double z) {
  const double x = -z * rootHalf;
  const double lost = std::fma(-z, rootHalf, -x) - z * rootHalfRest;
  // Near the middle erf has digits to spare; its slope there is that of its series.
  if (std::fabs(z) < 0.67) return 0.5 - (std::erf(x) / 2 + std::numbers::inv_sqrtpi * (1 - x * x) * lost);
  if (z > 0) return 1 - normalLower(-z);
  const double lower = std::erfc(x) / 2;
  if (lower == 0) return 0;
  // The rounding of x shows: erfc changes by a factor of 1 - (x + sqrt(x^2 + 4 / pi)) lost, nearly
  // (Abramowitz and Stegun 7.1.13).
  return lower * (1 - (x + std::sqrt(x * x + 4 * std::numbers::inv_pi)) * lost);
}

Tails student(double t, double df) {
  // The two distributions whose t may be larger than a root of the largest double.
  if (df == 1) {
    constexpr double scale = 2 * std::numbers::inv_pi;
    return {scale * std::atan(t), t > 0 ? scale * std::atan(1 / t) : 1};
  }
  if (df == 2) {
    const double hypotenuse = std::hypot(t, std::numbers::sqrt2);
    return {t / hypotenuse, 2 / hypotenuse / (hypotenuse + t)};
  }
  const IncompleteBeta beta(0.5, df / 2);
  return beta.tails(beta.atRatio(t * t));
}

Tails gamma(double shape, double x) { return IncompleteGamma(shape).at(x); }

Tails beta(double a, double b, double x) {
  const IncompleteBeta distribution(a, b);
  return distribution.tails(distribution.at(x));
}

Tails varianceRatio(double x, double df1, double df2) {
  const IncompleteBeta beta(df1 / 2, df2 / 2);
  return beta.tails(beta.atRatio(x));
}

double binomialMass(double successes, double trials, double probability) {
  const double failures = trials - successes;
  if (probability == 0) return successes == 0;
  if (probability == 1) return failures == 0;
  if (successes == 0) return std::exp(trials * std::log1p(-probability));
  if (failures == 0) return std::exp(trials * std::log(probability));
  const IncompleteBeta beta(successes, failures);
  return beta.density(beta.at(probability)) / successes * (trials / failures);
}

double poissonMass(double count, double mean) {
  if (mean == 0) return count == 0;
  if (count == 0) return std::exp(-mean);
  return IncompleteGamma(count).density(mean) / count;
}

/// The probability of the successes, given those of sample and rest, all for one success probability (Loader
/// 2000): every factor stays within the range of a double.
double hypergeometricMass(double successes, double sample, double populationSuccesses, double population) {
  const double p = sample / population;
  return binomialMass(successes, populationSuccesses, p) *
         binomialMass(sample - successes, population - populationSuccesses, p) /
         binomialMass(sample, population, p);
}

}  // namespace zelkova::tails
