#include "host/tails.h"

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/binomial.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <cmath>
#include <numbers>

namespace zelkova::tails {

namespace {

namespace bp = boost::math::policies;
using Policy = bp::policy<bp::domain_error<bp::ignore_error>, bp::pole_error<bp::ignore_error>,
                          bp::overflow_error<bp::ignore_error>, bp::underflow_error<bp::ignore_error>,
                          bp::denorm_error<bp::ignore_error>, bp::evaluation_error<bp::ignore_error>,
                          bp::rounding_error<bp::ignore_error>, bp::promote_double<false>>;
constexpr Policy policy;

}  // namespace

Tails normal(double z) {
  const double x = z * (std::numbers::sqrt2 / 2);
  return {std::erfc(-x) / 2, std::erfc(x) / 2};
}

double normalDensity(double z) {
  return std::exp(-z * z / 2) * std::numbers::inv_sqrtpi / std::numbers::sqrt2;
}

Tails student(double t, double df) { return varianceRatio(t * t, 1, df); }

Tails gamma(double shape, double x) {
  return {boost::math::gamma_p(shape, x, policy), boost::math::gamma_q(shape, x, policy)};
}

Tails beta(double a, double b, double x) {
  return {boost::math::ibeta(a, b, x, policy), boost::math::ibetac(a, b, x, policy)};
}

Tails varianceRatio(double x, double df1, double df2) {
  const double ratio = x * df1 / df2;
  if (ratio <= 1) return beta(df1 / 2, df2 / 2, ratio / (1 + ratio));
  const Tails mirrored = beta(df2 / 2, df1 / 2, 1 / (1 + ratio));
  return {mirrored.upper, mirrored.lower};
}

double logGamma(double x) { return boost::math::lgamma(x, policy); }

double binomialMass(double successes, double trials, double probability) {
  if (probability == 0) return successes == 0;
  if (probability == 1) return successes == trials;
  return std::exp(logGamma(trials + 1) - logGamma(successes + 1) - logGamma(trials - successes + 1) +
                  successes * std::log(probability) + (trials - successes) * std::log1p(-probability));
}

double poissonMass(double count, double mean) {
  if (mean == 0) return count == 0;
  return std::exp(count * std::log(mean) - mean - logGamma(count + 1));
}

double hypergeometricMass(double successes, double sample, double populationSuccesses, double population) {
  const auto logChoose = [](double n, double k) {
    return logGamma(n + 1) - logGamma(k + 1) - logGamma(n - k + 1);
  };
  return std::exp(logChoose(populationSuccesses, successes) +
                  logChoose(population - populationSuccesses, sample - successes) -
                  logChoose(population, sample));
}

}  // namespace zelkova::tails
