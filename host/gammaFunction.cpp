#include "host/gammaFunction.h"

#include <boost/math/special_functions/gamma.hpp>
#include <cmath>
#include <cstddef>

namespace zelkova::gammaFunction {

namespace {

namespace policies = boost::math::policies;
// Results are checked where they leave, and double is enough: its own rounding is all that is lost.
constexpr policies::policy<
    policies::domain_error<policies::ignore_error>, policies::pole_error<policies::ignore_error>,
    policies::overflow_error<policies::ignore_error>, policies::underflow_error<policies::ignore_error>,
    policies::denorm_error<policies::ignore_error>, policies::evaluation_error<policies::ignore_error>,
    policies::rounding_error<policies::ignore_error>, policies::promote_double<false>>
    boostPolicy;

constexpr double halfLogTwoPi = 0.918938533204672742;

/// From here on eight terms of Stirling's series are exact to a double.
constexpr double stirlingBound = 10;
constexpr int stirlingTerms = 8;

double stirlingSeries(double a) {
  const double square = 1 / (a * a);
  double sum = 0;
  for (int k = stirlingTerms - 1; k >= 0; --k) {
    sum = sum * square + stirlingCoefficients[static_cast<std::size_t>(k)];
  }
  return sum / a;
}

/// stirlingError at 1/2, 1, 3/2, ..., 19/2: degrees of freedom are whole (values from mpmath).
constexpr double stirlingAtHalves[] = {
    0.153426409720027345,  0.0810614667953272582,  0.0548141210519176539, 0.0413406959554092941,
    0.0331628735199362875, 0.0276779256849983391,  0.023746163656297496,  0.0207906721037650931,
    0.0184884505326731852, 0.0166446911898211922,  0.0151349732219173789, 0.013876128823070748,
    0.0128104652429202269, 0.0118967099458917701,  0.0111045597582069173, 0.0104112652619720965,
    0.0097994161261588033, 0.00925546218271273292, 0.00876870013413938546};

}  // namespace

double logDeviation(double x) {
  if (x < -0.3 || x > 0.3) return std::log1p(x) - x;
  // ln(1 + x) = 2 artanh(s): with s = x / (2 + x) the part linear in x drops out exactly.
  const double s = x / (2 + x);
  const double q = s * s;
  const double q2 = q * q;
  const double q4 = q2 * q2;
  const double tail = ((1.0 / 3 + q / 5) + q2 * (1.0 / 7 + q / 9)) +
                      q4 * (((1.0 / 11 + q / 13) + q2 * (1.0 / 15 + q / 17)) + q4 * (1.0 / 19 + q / 21));
  return s * (2 * q * tail - x);
}

double stirlingError(double a) {
  if (a >= stirlingBound) return stirlingSeries(a);
  const double twice = 2 * a;
  if (twice >= 1 && twice == std::trunc(twice)) return stirlingAtHalves[static_cast<int>(twice) - 1];
  if (a < 1) return logGammaOnePlus(a) - (a + 0.5) * std::log(a) + a - halfLogTwoPi;
  double product = 1;
  double b = a;
  while (b < stirlingBound) {
    product *= b;
    b += 1;
  }
  return stirlingSeries(b) + (b - 0.5) * std::log(b) - (b - a) - std::log(product) - (a - 0.5) * std::log(a);
}

double logGamma(double x) {
  if (x < stirlingBound) return boost::math::lgamma(x, boostPolicy);
  const double logX = std::log(x);
  return x * (logX - 1) - logX / 2 + (halfLogTwoPi + stirlingSeries(x));
}

double logGammaOnePlus(double x) { return std::log1p(boost::math::tgamma1pm1(x, boostPolicy)); }

double logGammaRise(double a, double delta) {
  double steps = 0;
  while (a < stirlingBound) {
    steps -= std::log1p(delta / a);
    a += 1;
  }
  // The difference of the two Stirling series is -delta / (a (a + delta)) times their divided difference.
  const double r = 1 / (a + delta);
  const double s = 1 / a;
  double value = 0;
  double difference = 0;
  for (int k = stirlingTerms - 1; k >= 0; --k) {
    difference = difference * r + value;
    value = value * s + stirlingCoefficients[static_cast<std::size_t>(k)];
    difference = difference * r + value;
    value *= s;
  }
  return (a - 0.5) * std::log1p(delta / a) + delta * (std::log(a + delta) - 1) - delta * r * s * difference +
         steps;
}

}  // namespace zelkova::gammaFunction
