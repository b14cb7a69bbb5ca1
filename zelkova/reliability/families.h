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
    return checked::log(hazard) - hazard - lnScale_;
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
  double right(double z) const { return checked::log(host_->NormSDist(-z)); }
  double left(double z) const { return checked::log(host_->NormSDist(z)); }
  double interval(double zStart, double zEnd) const {
    return checked::log(zStart > 0 ? host_->NormSDist(-zStart) - host_->NormSDist(-zEnd)
                                   : host_->NormSDist(zEnd) - host_->NormSDist(zStart));
  }

 private:
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
    return checked::log(zStart > 0 ? upper(zStart) - upper(zEnd) : upper(-zEnd) - upper(-zStart));
  }

 private:
  static double upper(double z) { return std::exp(-softplus(z)); }

  double lnScale_;
};

}  // namespace zelkova::families
