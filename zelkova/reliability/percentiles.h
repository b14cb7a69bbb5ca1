#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/lifeVariance.h"

namespace zelkova {

/// A fitted life distribution with the covariance of its parameters.
struct LifeFitted {
  WorksheetFunction& host;
  LifeDistribution dist;
  double para1;
  double para2;
  ParameterVariance variance;

  Life life() const { return {host, dist, para1, para2}; }

  /// The standard error of the percentile of the share `p`: of its logarithm where the distribution works on
  /// logarithms.
  double percentileError(double p) const {
    return checked::root(percentileVariance(dist, para1, para2, variance, life().score(p)));
  }

  /// The standard error of the standardised time `u`.
  double standardisedError(double u) const {
    return checked::root(standardisedVariance(dist, para1, para2, variance, u));
  }
};

/// A row for each share of `Percent`, in percent: percentile, standard error and limits at `z` standard
/// errors, of the logarithm where the distribution works on logarithms.
DoubleArray percentileTable(const LifeFitted& fit, const DoubleArray& Percent, double z);

}  // namespace zelkova
