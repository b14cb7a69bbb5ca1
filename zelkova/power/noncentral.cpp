#include "zelkova/power/noncentral.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "zelkova/frame/arithmetic.h"

namespace zelkova::power {

namespace {

/// Below this a noncentrality or a t counts as 0.
constexpr double negligible = 1e-10;

const double rootTwoPi = std::sqrt(2 * std::numbers::pi);

/// What Stirling's formula lacks: ln Gamma(a) - (a - 1/2) ln a + a - ln(2 pi) / 2. Densities built from it
/// keep their digits where differences of large logarithms of the gamma function would lose them.
double stirlingError(WorksheetFunction& host, double a) {
  if (a < 15) return host.GammaLn(a) - (a - 0.5) * std::log(a) + a - std::log(rootTwoPi);
  const double square = a * a;
  return (1.0 / 12 - (1.0 / 360 - (1.0 / 1260 - 1.0 / 1680 / square) / square) / square) / a;
}

/// A point of the beta distribution and its complement, each with its own accuracy.
struct Point {
  double x, y;

  /// x = odds / (1 + odds).
  static Point atOdds(double odds) { return {odds / (1 + odds), 1 / (1 + odds)}; }

  double lowerTail(WorksheetFunction& host, double a, double b) const {
    return x <= 0.5 ? host.BetaDist(x, a, b) : 1 - host.BetaDist(y, b, a);
  }

  /// x^a y^b / (a B(a, b)): what the lower tail loses where a grows by 1.
  double loss(WorksheetFunction& host, double a, double b) const {
    const double sum = a + b;
    const double excess = x * b - y * a;
    const double stirling = stirlingError(host, sum) - stirlingError(host, a) - stirlingError(host, b);
    return std::sqrt(b / sum / a) / rootTwoPi *
           std::exp(stirling + a * std::log1p(excess / a) + b * std::log1p(-excess / b));
  }
};

/// The weight rate^i exp(-rate) / Gamma(i + 1) of a place i >= 0, which need not be whole.
double poissonWeight(WorksheetFunction& host, double rate, double i) {
  if (i == 0) return std::exp(-rate);
  const double excess = rate - i;
  return std::exp(i * std::log1p(excess / i) - excess - stirlingError(host, i)) / std::sqrt(i) / rootTwoPi;
}

/// The sum over j = 0, 1, ... of the Poisson weights at `offset` + j times the lower tails of the beta
/// distributions of shapes `shape` + j and `b`.
struct Mixture {
  double rate, offset, shape, b;
  Point point;

  /// Sums from place `peak` to both ends. `converged(left, sum)` tells whether an end adds nothing more: at
  /// most `left`, as the weights fall at least as fast as a geometric series from their peak on.
  template <class Converged>
  double sum(WorksheetFunction& host, double peak, Converged converged) const {
    const double startWeight = poissonWeight(host, rate, offset + peak);
    const double startTail = point.lowerTail(host, shape + peak, b);
    const double startLoss = point.loss(host, shape + peak, b);

    double sum = startWeight * startTail;
    double weight = startWeight;
    double tail = startTail;
    double loss = startLoss;
    for (double j = peak; j > 0; --j) {
      const double ratio = (offset + j) / rate;
      // The tails grow on this way, but not above 1.
      if (ratio < 1 && converged(weight * ratio / (1 - ratio), sum)) break;
      weight *= ratio;
      loss *= (shape + j) / (point.x * (shape + j - 1 + b));
      tail += loss;
      sum += weight * tail;
    }

    weight = startWeight;
    tail = startTail;
    loss = startLoss;
    for (double j = peak;; ++j) {
      const double ratio = rate / (offset + j + 1);
      if (ratio < 1 && converged(weight * tail * ratio / (1 - ratio), sum)) return sum;
      weight *= ratio;
      tail = std::max(tail - loss, 0.0);
      loss *= point.x * (shape + j + b) / (shape + j + 1);
      sum += weight * tail;
    }
  }

  /// The same for a large rate, in strides of a sixteenth of the weights' standard deviation: their terms are
  /// so smooth that the ones between follow (the trapezoidal rule on a bell curve).
  double sumInStrides(WorksheetFunction& host) const {
    constexpr int perDeviation = 16;
    constexpr int reach = 8 * perDeviation;
    const double stride = std::sqrt(rate) / perDeviation;
    double sum = 0;
    for (int k = -reach; k <= reach; ++k) {
      const double j = rate + k * stride;
      sum += poissonWeight(host, rate, offset + j) * point.lowerTail(host, shape + j, b);
    }
    return stride * sum;
  }

  template <class Converged>
  double total(WorksheetFunction& host, double peak, Converged converged) const {
    constexpr double largeRate = 1e6;
    // From there on the weights are a spike beside which no tail changes.
    constexpr double hugeRate = 1e18;
    if (rate > hugeRate) return point.lowerTail(host, shape + rate, b);
    return rate > largeRate ? sumInStrides(host) : sum(host, peak, converged);
  }
};

/// P(T <= t) for t >= 0: the mass below 0, and half the sum of an even and an odd mixture.
double lowerTailOfPositive(WorksheetFunction& host, double t, double df, double delta) {
  if (std::abs(delta) <= negligible && t > 0) return 1 - host.TDist(t, df, 1);
  const double below0 = host.NormSDist(-delta);
  if (t <= negligible) return below0;
  const double rate = checked::finite(delta * delta) / 2;
  const double peak = std::trunc(rate);
  const Point point = Point::atOdds(checked::quotient(checked::finite(t * t), df));
  const auto converged = [](double left, double sum) { return left <= 1e-7 * sum; };
  const double even = Mixture{rate, 0, 0.5, df / 2, point}.total(host, peak, converged);
  const double odd = Mixture{rate, 0.5, 1, df / 2, point}.total(host, peak, converged);
  return below0 + (even + std::copysign(odd, delta)) / 2;
}

}  // namespace

double GetNCTDist(WorksheetFunction& host, double t, double df, double delta) {
  const double lower =
      t < 0 ? 1 - lowerTailOfPositive(host, -t, df, -delta) : lowerTailOfPositive(host, t, df, delta);
  return std::clamp(lower, 0.0, 1.0);
}

double GetNCFDist(WorksheetFunction& host, double x, double df1, double df2, double lambda) {
  if (x <= 0) return 0;
  if (lambda < negligible) return 1 - host.FDist(x, df1, df2);
  const Point point = Point::atOdds(checked::finite(df1 * x / df2));
  if (point.x == 0) return 0;
  const double rate = lambda / 2;
  const double peak = std::max(std::trunc(rate), 1.0);
  const Mixture mixture{rate, 0, df1 / 2, df2 / 2, point};
  // Each end may leave out a tenth of the tolerance, so that the result keeps it. What is left belongs to the
  // sum that it is compared with: where both are nothing the series ends, but not before its terms have come.
  const double lower =
      mixture.total(host, peak, [](double left, double sum) { return GetConverged(10 * left, sum + left); });
  return std::clamp(lower, 0.0, 1.0);
}

bool GetConverged(double term, double sum) { return term <= 1e-6 * sum || sum < 1e-20; }

}  // namespace zelkova::power
