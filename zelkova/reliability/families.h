#pragma once

#include <algorithm>
#include <cmath>

#include "zelkova/frame/Host.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/modzRSAP.h"

/// The log-likelihood of a single row in its standardised value z = (y - m) / sigma, for each family of
/// location and scale. Probabilities are taken from the tail that keeps their digits, so that a search far
/// from the maximum goes on where 1 - F is 0 in doubles.
namespace zelkova::families {

/// ln(1 + exp(z)) without overflow.
inline double softplus(double z) { return std::max(z, 0.0) + std::log1p(std::exp(-std::abs(z))); }

/// ln(exp(-a) - exp(-b)), for the survivals of two cumulative hazards a < b.
inline double logSurvivalDifference(double a, double b) { return checked::log(-std::expm1(a - b)) - a; }

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
  double interval(double zStart, double zEnd) const {
    return logSurvivalDifference(checked::exp(zStart), checked::exp(zEnd));
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
  double interval(double zStart, double zEnd) const {
    return zStart > 0 ? logTailDifference(zStart, zEnd) : logTailDifference(-zEnd, -zStart);
  }

 private:
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
    if (from >= far) return logSurvivalDifference(-logUpperTail(from), -logUpperTail(to));
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
  double interval(double zStart, double zEnd) const {
    return zStart > 0 ? logSurvivalDifference(softplus(zStart), softplus(zEnd))
                      : logSurvivalDifference(softplus(-zEnd), softplus(-zStart));
  }

 private:
  double lnScale_;
};

}  // namespace zelkova::families
