#include "host/incompleteGamma.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

#include "host/gammaFunction.h"

namespace zelkova {

using tails::Tails;

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

/// The expansion in `uniform` holds from here on, within `uniformReach` of x = a on a relative scale.
constexpr double uniformBound = 20;
constexpr double uniformReach = 0.4;

/// The coefficients d(k, n) of Temme's expansion (1979; DLMF 8.12.9 to 8.12.14), for each power -k of a a
/// polynomial in eta. Lengths are what a >= 20 and the reach above need for a double.
class UniformCoefficients {
 public:
  static constexpr std::size_t orders = 11;
  static constexpr std::array<std::size_t, orders> lengths = {18, 17, 16, 15, 13, 12, 10, 9, 7, 4, 2};

  constexpr UniformCoefficients() {
    // mu = sum alpha_n eta^n inverts eta^2 / 2 = mu - ln(1 + mu).
    constexpr std::size_t size = 48;
    std::array<double, size> alpha = {0, 1};
    for (std::size_t n = 2; n < size; ++n) {
      double sum = alpha[n - 1];
      for (std::size_t k = 2; k < n; ++k) sum -= alpha[k] * static_cast<double>(n + 1 - k) * alpha[n + 1 - k];
      alpha[n] = sum / static_cast<double>(n + 1);
    }
    // Gamma(a) exp(a) a^(1/2 - a) / sqrt(2 pi) = sum g_k / a^k, the exponential of Stirling's series.
    std::array<double, orders> g = {1};
    for (std::size_t n = 1; n < orders; ++n) {
      for (std::size_t j = 1; j <= n; j += 2) {
        g[n] += static_cast<double>(j) * gammaFunction::stirlingCoefficients[j / 2] * g[n - j];
      }
      g[n] /= static_cast<double>(n);
    }
    std::array<double, size - 2> inverseOfMu{};
    for (std::size_t n = 0; n + 2 < size; ++n) inverseOfMu[n] = static_cast<double>(n + 2) * alpha[n + 2];
    inverseOfMu[0] -= 1;
    std::array<double, size - 2> d = inverseOfMu;
    for (std::size_t k = 0; k < orders; ++k) {
      if (k > 0) {
        const double sign = k % 2 == 0 ? 1 : -1;
        for (std::size_t n = 0; n + 2 < d.size(); ++n) {
          d[n] = sign * g[k] * inverseOfMu[n] + static_cast<double>(n + 2) * d[n + 2];
        }
      }
      for (std::size_t n = 0; n < lengths[k]; ++n) d_[k][n] = d[n];
    }
  }

  /// The sum over both powers.
  double at(double eta, double a) const {
    const double inverse = 1 / a;
    // Later orders are below the last bit of what is left.
    std::size_t k = a < 50 ? orders : a < 200 ? 8 : a < 2000 ? 6 : 4;
    double sum = 0;
    while (k-- > 0) {
      const auto& d = d_[k];
      double polynomial = 0;
      for (std::size_t n = lengths[k]; n-- > 0;) polynomial = polynomial * eta + d[n];
      sum = sum * inverse + polynomial;
    }
    return sum;
  }

 private:
  std::array<std::array<double, lengths[0]>, orders> d_{};
};

constexpr UniformCoefficients uniformCoefficients;

/// Q(a, x) Gamma(a) e^x / x^a by Legendre's continued fraction, evaluated as Lentz 1976 does. x >= 1, a <= 1.
double legendreFraction(double a, double x) {
  double partial = x + 1 - a;
  double d = 1 / partial;
  double c = std::numeric_limits<double>::max();
  double value = d;
  for (int n = 1; n < 10000; ++n) {
    const double numerator = -n * (n - a);
    partial += 2;
    d = 1 / (partial + numerator * d);
    c = partial + numerator / c;
    const double factor = c * d;
    value *= factor;
    if (std::fabs(factor - 1) < epsilon) break;
  }
  return value;
}

}  // namespace

IncompleteGamma::IncompleteGamma(double shape) : a_(shape) {
  if (a_ < 1) {
    scale_ = std::exp(-gammaFunction::logGammaOnePlus(a_)) * a_;
  } else {
    scale_ = std::sqrt(a_) * std::exp(-gammaFunction::stirlingError(a_)) * std::numbers::inv_sqrtpi /
             std::numbers::sqrt2;
  }
}

double IncompleteGamma::density(double x) const {
  if (a_ < 1) return scale_ * std::exp(a_ * std::log(x) - x);
  const double u = (x - a_) / a_;
  const double deviation = u > -0.9 ? gammaFunction::logDeviation(u) : std::log(x / a_) - u;
  return scale_ * std::exp(a_ * deviation);
}

Tails IncompleteGamma::at(double x, double density) const {
  if (x == 0) return {0, 1};
  if (a_ == 0.5) return {std::erf(std::sqrt(x)), std::erfc(std::sqrt(x))};
  if (a_ == 1) return {-std::expm1(-x), std::exp(-x)};
  if (a_ >= uniformBound && std::fabs(x - a_) < uniformReach * a_) return uniform(x);
  if (a_ < 1 && x < 1) return nearZero(x, density);
  if (x < a_) {
    const double lower = density / a_ * lowerSeries(x);
    return {lower, 1 - lower};
  }
  const double above = upper(x, density);
  return {1 - above, above};
}

/// Temme's expansion, uniform in x around a: a normal tail and a correction.
Tails IncompleteGamma::uniform(double x) const {
  const double deviation = -gammaFunction::logDeviation((x - a_) / a_);
  const double eta = std::copysign(std::sqrt(2 * deviation), x - a_);
  const double y = a_ * deviation;
  const double correction =
      std::exp(-y) / std::sqrt(2 * std::numbers::pi * a_) * uniformCoefficients.at(eta, a_);
  const double root = std::sqrt(y);
  const double tail = std::erfc(root) / 2;
  if (x < a_) {
    const double lower = tail - correction;
    return {lower, 1 - lower};
  }
  const double upper = tail + correction;
  return {1 - upper, upper};
}

/// Where a small shape puts nearly everything below x, Q has its own series: P = exp(l) (1 + a s).
Tails IncompleteGamma::nearZero(double x, double density) const {
  const double lower = density / a_ * lowerSeries(x);
  if (lower < 0.7) return {lower, 1 - lower};
  const double l = a_ * std::log(x) - gammaFunction::logGammaOnePlus(a_);
  double s = 0;
  double power = 1;
  for (int n = 1; n < 40; ++n) {
    power *= -x / n;
    const double term = power / (a_ + n);
    s += term;
    if (std::fabs(term) < epsilon * std::fabs(s)) break;
  }
  const double upper = -std::expm1(l) - a_ * std::exp(l) * s;
  return {1 - upper, upper};
}

/// 1 + x / (a + 1) + x^2 / ((a + 1) (a + 2)) + ..., for x < a, or both below 1.
double IncompleteGamma::lowerSeries(double x) const {
  double sum = 1;
  double term = 1;
  for (double n = a_ + 1; term > epsilon / 4 * sum; n += 1) {
    term *= x / n;
    sum += term;
  }
  return sum;
}

/// Q for x >= a, or x >= 1 where a is below: steps down to a shape of at most 1, all terms positive.
double IncompleteGamma::upper(double x, double density) const {
  const double inverse = 1 / x;
  double sum = 0;
  double product = 1;
  double shape = a_;
  while (shape > 1) {
    sum += product;
    shape -= 1;
    product *= shape * inverse;
    if (product < epsilon / 4 * sum) return density * inverse * sum;
  }
  if (shape == 1) return density * inverse * (sum + product);
  if (shape == 0.5) return density * inverse * sum + std::erfc(std::sqrt(x));
  return density * (sum * inverse + product * legendreFraction(shape, x));
}

}  // namespace zelkova
