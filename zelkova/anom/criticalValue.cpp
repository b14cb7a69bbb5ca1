#include "zelkova/anom/criticalValue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <unordered_map>

#include "zelkova/frame/arithmetic.h"

namespace zelkova::anom {

namespace {

using std::numbers::pi;

/// The nodes and weights of Gauss and Legendre's rule on 0 to 1. So many that the fastest cosine that the
/// integrals below meet, some 60 periods, is integrated to the last digits.
class GaussLegendre {
 public:
  static constexpr std::size_t size = 128;

  static const GaussLegendre& get() {
    static const GaussLegendre rule;
    return rule;
  }

  double node(std::size_t i) const { return nodes_[i]; }
  double weight(std::size_t i) const { return weights_[i]; }

  /// The integral of f from 0 to `end`.
  template <class F>
  double integral(double end, F f) const {
    double sum = 0;
    for (std::size_t i = 0; i < size; ++i) sum += weights_[i] * f(end * nodes_[i]);
    return end * sum;
  }

 private:
  GaussLegendre() {
    for (std::size_t i = 0; i < size; ++i) {
      double x = std::cos(pi * (static_cast<double>(i) + 0.75) / (size + 0.5));
      double slope = 0;
      // Newton's method on the Legendre polynomial doubles the digits of a start that has three.
      for (int round = 0; round < 5; ++round) {
        double p = 1;
        double before = 0;
        for (std::size_t degree = 1; degree <= size; ++degree) {
          const auto d = static_cast<double>(degree);
          const double next = ((2 * d - 1) * x * p - (d - 1) * before) / d;
          before = p;
          p = next;
        }
        slope = size * (x * p - before) / (x * x - 1);
        x -= p / slope;
      }
      nodes_[i] = (1 + x) / 2;
      weights_[i] = 1 / ((1 - x * x) * slope * slope);
    }
  }

  std::array<double, size> nodes_{}, weights_{};
};

/// The largest deviation |Z - mean Z| among `k` >= 3 standard normal variables.
class LargestDeviation {
 public:
  explicit LargestDeviation(Index k) : k_(static_cast<double>(k)) {}

  /// The probability that it exceeds c.
  double upperTail(double c) const {
    if (k_ == 3) return tailOfThree(c);
    if (k_ == 4) return tailOfFour(c);
    // So far out two deviations at once are rarer than the rounding of 1 less a sum, and the probabilities of
    // each add up.
    const double sumOfTails = k_ * std::erfc(c * std::sqrt(k_ / (k_ - 1) / 2));
    if (sumOfTails < 1e-9) return sumOfTails;
    return std::clamp(1 - lowerTail(c), 0.0, 1.0);
  }

 private:
  // Of three or four, the deviations sum to 0 and two of them are normal given their sum x: both are within c
  // where the first is within c - x/2 of x/2. Sums of positive terms keep the digits of small tails.

  static double tailOfThree(double c) {
    const double beyond = std::erfc(c * std::sqrt(0.75));
    return beyond + GaussLegendre::get().integral(c, [c](double x) {
      return std::sqrt(3 / pi) * std::exp(-0.75 * x * x) * std::erfc(c - x / 2);
    });
  }

  static double tailOfFour(double c) {
    const double beyond = std::erfc(c * std::numbers::sqrt2);
    return beyond + GaussLegendre::get().integral(2 * c, [c](double x) {
      const double onePairBeyond = std::erfc(c - x / 2);
      return std::sqrt(2 / pi) * std::exp(-x * x / 2) * onePairBeyond * (2 - onePairBeyond);
    });
  }

  /// The deviations do not depend on the mean, so P(all within c) is the density at 0 of a sum of k normal
  /// variables cut at c to either side, over that of the uncut sum. The density is an integral of
  /// characteristic functions; its trapezoidal sum adds the densities at all multiples of `period`, and there
  /// the sum does not get, or as good as never.
  double lowerTail(double c) const {
    const GaussLegendre& rule = GaussLegendre::get();
    const double period = std::min(k_ * c, 9 * std::sqrt(k_));
    const double step = 2 * pi / period;

    // Each node's share in 1 - cos(t x) = 2 sin(t x / 2)^2, and the rotation that takes t x / 2 a step on.
    constexpr std::size_t size = GaussLegendre::size;
    std::array<double, size> share, sine, cosine, sineStep, cosineStep;
    for (std::size_t i = 0; i < size; ++i) {
      const double x = c * rule.node(i);
      share[i] = 4 * c * rule.weight(i) * density(x);
      sine[i] = 0;
      cosine[i] = 1;
      sineStep[i] = std::sin(step * x / 2);
      cosineStep[i] = std::cos(step * x / 2);
    }

    const double outside = std::erfc(c / std::numbers::sqrt2);
    double sum = powerOfRest(outside) / 2;
    for (double t = step; canCount(t, c); t += step) {
      std::array<double, 4> lanes{};
      for (std::size_t i = 0; i < size; ++i) {
        const double s = sine[i] * cosineStep[i] + cosine[i] * sineStep[i];
        cosine[i] = cosine[i] * cosineStep[i] - sine[i] * sineStep[i];
        sine[i] = s;
        lanes[i % lanes.size()] += share[i] * (s * s);
      }
      sum += powerOfRest(outside + ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])));
    }
    return 2 * std::sqrt(2 * pi * k_) / period * sum;
  }

  static double density(double x) { return std::exp(-x * x / 2) / std::sqrt(2 * pi); }

  /// (1 - x)^k, with the digits of a small x where k is large.
  double powerOfRest(double x) const { return x < 0.5 ? std::exp(k_ * std::log1p(-x)) : std::pow(1 - x, k_); }

  /// Whether the k-th power of the characteristic function can still add to the sum at t: it is no larger
  /// than that of the whole density and, by parts, what is cut off, nor than the height in the middle allows.
  bool canCount(double t, double c) const {
    constexpr double negligible = 1e-13;
    const double bound = std::min(std::exp(-t * t / 2) + 4 * density(c) / t, 2 * density(0) / t);
    return bound >= 1 || k_ * std::log(bound) > std::log(negligible);
  }

  double k_;
};

/// P(largest deviation > h s) as a function of ln h, s being the estimate of the standard deviation on `df`
/// degrees of freedom: the trapezoidal sum over ln s, which gains digits in proportion to its terms. It runs
/// over fixed places of ln c, where c is the deviation that h s stands for, so that another h finds most
/// tails known.
class StudentisedDeviation {
 public:
  StudentisedDeviation(Index k, double df)
      : deviation_(k),
        scale_(std::sqrt(static_cast<double>(k - 1) / static_cast<double>(k))),
        halfDf_(df / 2),
        step_(stepOf(static_cast<double>(k), df / 2)) {}

  struct Tail {
    double probability, slope;
  };

  Tail upperTail(double logH) {
    const double centre = logH + std::log(scale_);
    double total = 0;
    double beyond = 0;
    double slope = 0;
    for (Index place = lastPlace(centre);; --place) {
      const double v = static_cast<double>(place) * step_ - centre;
      const double weight = std::exp(logWeight(v));
      const double tail = weight * tailAt(place);
      total += weight;
      beyond += tail;
      slope += tail * 2 * halfDf_ * std::expm1(2 * v);
      if (v < 0 && weight <= negligible * step_ * std::min(beyond, total)) break;
    }
    return {beyond / total, slope / total};
  }

 private:
  static constexpr double negligible = 1e-17;

  /// Fine enough for the curve of the weights, whose width is that of ln s, and for the tail, which falls
  /// from 1 to 0 the more steeply the more deviations there are.
  static double stepOf(double k, double halfDf) {
    return std::min({0.08, 0.33 / std::log(k), 0.35 / std::sqrt(halfDf)});
  }

  /// The logarithm of the density of v = ln s, but for a constant.
  double logWeight(double v) const { return -halfDf_ * (std::expm1(2 * v) - 2 * v); }

  /// The place from which on the weights count for nothing.
  Index lastPlace(double centre) const {
    double v = step_;
    while (logWeight(v) > std::log(negligible)) v += step_;
    return static_cast<Index>(std::floor((centre + v) / step_));
  }

  double tailAt(Index place) {
    const double c = std::exp(static_cast<double>(place) * step_);
    constexpr double farthest = 40;
    if (c > farthest) return 0;
    if (place <= certainUpTo_) return 1;
    const auto known = tails_.find(place);
    if (known != tails_.end()) return known->second;
    const double tail = deviation_.upperTail(c);
    if (tail > 1 - 1e-15) certainUpTo_ = place;
    return tails_[place] = tail;
  }

  LargestDeviation deviation_;
  double scale_, halfDf_, step_;
  Index certainUpTo_ = std::numeric_limits<Index>::min();
  std::unordered_map<Index, double> tails_;
};

/// The scale on which a tail p is close to a line over the logarithm of its critical value, wherever it is.
double straightened(double p) { return std::log(-std::log1p(-p)); }

/// The logarithm of the critical value for infinite degrees of freedom, to some six digits, by the secant
/// method; `high` where that leaves the bracket of `low` and `high`, or the digits that a tail has.
double roughLimit(Index k, double alpha, double low, double high) {
  const LargestDeviation deviation(k);
  const double scale = std::sqrt(static_cast<double>(k - 1) / static_cast<double>(k));
  const auto excess = [&](double logH) {
    return straightened(deviation.upperTail(scale * std::exp(logH))) - straightened(alpha);
  };
  double before = high;
  double excessBefore = excess(before);
  double logH = high - 0.01;
  for (int round = 0; round < 10; ++round) {
    const double excessNow = excess(logH);
    const double next = logH - excessNow * (logH - before) / (excessNow - excessBefore);
    if (!(next >= low && next <= high)) return high;
    if (std::fabs(next - logH) < 1e-4) return next;
    before = logH;
    excessBefore = excessNow;
    logH = next;
  }
  return high;
}

/// The level of each of k deviations at which all together keep `alpha`, were they independent. Deliberate:
/// two deviations are one and the same but for the sign, and need no allowance for a second.
double levelOfEach(double alpha, Index k) {
  return k == 2 ? alpha : -std::expm1(std::log1p(-alpha) / static_cast<double>(k));
}

}  // namespace

double exactCriticalValue(WorksheetFunction& host, double alpha, Index k, double df) {
  const double bound = boundedCriticalValue(host, alpha, k, df);
  if (k == 2) return bound;

  // Newton's method, held between the critical values of a single deviation and of independent ones.
  StudentisedDeviation deviation(k, df);
  double low = checked::log(host.TInv(alpha, df));
  double high = checked::log(bound);
  // With many degrees of freedom the places lie close together, and every stop on the way costs the tails of
  // its own: start near the end.
  constexpr double many = 1000;
  double logH = df > many ? roughLimit(k, alpha, low, high) : high;
  for (int round = 0; round < 60; ++round) {
    const auto [p, slope] = deviation.upperTail(logH);
    (p > alpha ? low : high) = logH;
    double next = (low + high) / 2;
    if (p > 0 && p < 1 && slope < 0) {
      const double rise = slope / ((1 - p) * -std::log1p(-p));
      const double newton = logH + (straightened(alpha) - straightened(p)) / rise;
      if (newton >= low && newton <= high) next = newton;
    }
    const double change = std::fabs(next - logH);
    logH = next;
    if (change < 1e-12) break;
  }
  return checked::exp(logH);
}

double boundedCriticalValue(WorksheetFunction& host, double alpha, Index k, double df) {
  return host.TInv(levelOfEach(alpha, k), df);
}

double boundedCriticalValue(WorksheetFunction& host, double alpha, Index k) {
  return -host.NormSInv(levelOfEach(alpha, k) / 2);
}

}  // namespace zelkova::anom
