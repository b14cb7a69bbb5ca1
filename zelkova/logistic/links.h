#pragma once

#include <algorithm>
#include <cmath>
#include <string>

#include "zelkova/frame/Host.h"

namespace zelkova {

/// Fitted probabilities are held off 0 and 1 by this much in the weights of a fit.
inline constexpr double probabilityGuard = 1E-10;

/// A probability and its complement, each to its own full precision.
struct Probability {
  double p = 0;
  double complement = 1;

  Probability opposite() const { return {complement, p}; }

  /// p (1 - p), p held off 0 and 1.
  double guardedVariance() const {
    return std::max(p, probabilityGuard) * std::max(complement, probabilityGuard);
  }
};

/// Logarithm of a probability; minus infinity for 0, which the caller does not let pass.
inline double logOf(const Probability& value) {
  return value.p < 0.5 ? std::log(value.p) : std::log1p(-value.complement);
}

/// The link between a linear predictor eta and a probability.
class Link {
 public:
  /// Failure 11 for a name other than "Logit", "Normit" and "Gompit".
  Link(WorksheetFunction& host, const std::string& link_f);

  bool isLogit() const { return kind_ == Kind::Logit; }

  /// The probability at `eta`.
  Probability LinkCDF(double eta) const;

  /// Its derivative; `fitted` is the probability at `eta`.
  double density(double eta, const Probability& fitted) const;

  /// The same held off 0, so that no weight vanishes and no division by it overflows.
  double LinkPDF(double eta, const Probability& fitted) const { return offZero(density(eta, fitted)); }

  static double offZero(double density) {
    constexpr double floor = 1E-10;
    return std::max(density, floor);
  }

  /// The linear predictor of a probability, which is held 1E-10 off 0 and 1.
  double LinkInverse(double p) const;

 private:
  enum class Kind { Logit, Normit, Gompit };

  static Kind kindOf(const std::string& link_f);

  WorksheetFunction& host_;
  Kind kind_;
  double normalPeak_;
};

}  // namespace zelkova
