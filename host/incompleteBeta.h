#pragma once

#include "host/tails.h"

namespace zelkova {

/// The regularised incomplete beta functions of two shapes a, b > 0: the beta distribution, and with it those
/// of the variance ratio, Student's t and the binomial.
class IncompleteBeta {
 public:
  /// x, y = 1 - x, and b x - a y, which tells how far x is from the mean: all three with relative accuracy.
  struct Point {
    double x, y, excess;
  };

  IncompleteBeta(double a, double b);

  double a() const { return a_; }
  double b() const { return b_; }

  /// The point x within [0, 1].
  Point at(double x) const;

  /// The point where x / y is `odds`.
  Point atOdds(double odds) const;

  /// The point where x / y is a / b times `ratio`.
  Point atRatio(double ratio) const;

  /// x^a y^b / B(a, b): the density of ln(x / y).
  double density(const Point& point) const;

  /// Both tails, each with its own relative accuracy; `density` is that of the point.
  tails::Tails tails(const Point& point, double density) const;
  tails::Tails tails(const Point& point) const { return tails(point, density(point)); }

 private:
  double a_, b_;
  double scale_;  ///< of the density, whose rest is 1 at the mean
};

}  // namespace zelkova
