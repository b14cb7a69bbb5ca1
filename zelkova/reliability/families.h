#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

#include "zelkova/frame/Host.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/modzRSAP.h"

/// The log-likelihood of a single row in its standardised value z = (y - m) / sigma, for each family of
/// location and scale. Probabilities are taken from the tail that keeps their digits, so that a search far
/// from the maximum goes on where 1 - F is 0 in doubles.
namespace zelkova::families {

/// ln(1 + exp(z)) without overflow.
inline double softplus(double z) { return std::max(z, 0.0) + std::log1p(std::exp(-std::abs(z))); }

/// ln(exp(-a) - exp(-a - growth)), for the survivals at a cumulative hazard and after its growth.
inline double logSurvivalDifference(double a, double growth) {
  return checked::log(-std::expm1(-growth)) - a;
}

/// exp(zEnd) - exp(zEnd - width), the growth of a cumulative hazard that ends at exp(zEnd).
inline double hazardGrowth(double hazardAtEnd, double width) { return hazardAtEnd * -std::expm1(-width); }

/// ln(1 - exp(-a)), the logarithm of the failure probability at a cumulative hazard.
inline double logFailure(double a) { return checked::log(-std::expm1(-a)); }

/// The smallest extreme value distribution, and the Weibull in ln t.
class ExtremeValue {
 public:
  explicit ExtremeValue(double lnScale) : lnScale_(lnScale) {}

  double exact(double z) const {
    const double hazard = checked::exp(z);
    // Its logarithm is z; where it has none, it is 0.
    if (hazard == 0) raise(FailureNumber::InvalidCall);
    return z - hazard - lnScale_;
  }
  double right(double z) const { return -checked::exp(z); }
  double left(double z) const { return logFailure(checked::exp(z)); }
  double interval(double zStart, double zEnd, double width) const {
    return logSurvivalDifference(checked::exp(zStart), hazardGrowth(checked::exp(zEnd), width));
  }

 private:
  double lnScale_;
};

/// The normal distribution; its probabilities come from the host.
class NormalFamily {
 public:
  NormalFamily(WorksheetFunction& host, double lnScale)
      : host_(&host), constant_(0.5 * std::log(2 * RSPi()) + lnScale) {}

  double exact(double z) const { return -constant_ - z * z / 2; }
  double right(double z) const { return logUpperTail(z); }
  double left(double z) const { return logUpperTail(-z); }
  double interval(double zStart, double zEnd, double width) const {
    const double middle = zStart + (zEnd - zStart) / 2;
    // From here on the two forms agree to some 1E-14.
    constexpr double narrow = 0.03;
    if (width * (1 + std::abs(middle)) < narrow) return logNarrow(middle, width);
    return zStart > 0 ? logTailDifference(zStart, zEnd) : logTailDifference(-zEnd, -zStart);
  }

 private:
  /// ln P(|Z - z| < w / 2), by the series of the density around z.
  static double logNarrow(double z, double w) {
    const double z2 = z * z;
    const double w2 = w * w;
    return checked::log(w) - 0.5 * (std::log(2 * std::numbers::pi) + z2) +
           std::log1p(w2 / 24 * (z2 - 1 + w2 / 80 * (z2 * (z2 - 6) + 3)));
  }

  /// From here on the tail itself would soon be 0 in doubles.
  static constexpr double far = 37;

  /// ln P(Z > z); far out by the asymptotic series of Mills' ratio (Abramowitz and Stegun 1964, 26.2.12).
  double logUpperTail(double z) const {
    if (z < far) return checked::log(host_->NormSDist(-z));
    const double r = checked::quotient(1, z * z);
    return checked::finite(-z * z / 2 - std::log(z * std::sqrt(2 * RSPi())) +
                           std::log1p(r * (-1 + r * (3 + r * (-15 + r * 105)))));
  }

  /// ln P(from < Z <= to).
  double logTailDifference(double from, double to) const {
    if (from >= far) {
      const double start = logUpperTail(from);
      return logSurvivalDifference(-start, start - logUpperTail(to));
    }
    return checked::log(host_->NormSDist(-from) - host_->NormSDist(-to));
  }

  WorksheetFunction* host_;
  double constant_;
};

/// The logistic distribution.
class LogisticFamily {
 public:
  explicit LogisticFamily(double lnScale) : lnScale_(lnScale) {}

  double exact(double z) const { return z - lnScale_ - 2 * softplus(z); }
  double right(double z) const { return -softplus(z); }
  double left(double z) const { return -softplus(-z); }
  double interval(double zStart, double zEnd, double width) const {
    return checked::log(-std::expm1(-width)) - softplus(zStart) - softplus(-zEnd);
  }

 private:
  double lnScale_;
};

}  // namespace zelkova::families
