#pragma once

#include "host/tails.h"

namespace zelkova {

/// The regularised incomplete gamma functions of one shape a > 0, P below and Q above a point.
class IncompleteGamma {
 public:
  explicit IncompleteGamma(double shape);

  double shape() const { return a_; }

  /// x^a e^-x / Gamma(a): the density of the logarithm of a gamma variate. x > 0.
  double density(double x) const;

  /// Both tails at x >= 0, each with its own relative accuracy; `density` is that of x.
  tails::Tails at(double x, double density) const;
  tails::Tails at(double x) const { return at(x, density(x)); }

 private:
  tails::Tails uniform(double x) const;
  tails::Tails nearZero(double x, double density) const;
  double lowerSeries(double x) const;
  double upper(double x, double density) const;

  double a_;
  double scale_;  ///< of the density: in Stirling's form for a >= 1, a / Gamma(1 + a) below
};

}  // namespace zelkova
