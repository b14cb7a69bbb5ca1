#pragma once

#include "zelkova/reliability/LifeDistribution.h"

namespace zelkova {

/// The covariance matrix of parameters 1 and 2.
struct ParameterVariance {
  double var1;
  double var2;
  double covar12;
};

/// The variance of a function of the parameters with these derivatives, by the delta method.
inline double deltaVariance(const ParameterVariance& v, double by1, double by2) {
  return by1 * by1 * v.var1 + by2 * by2 * v.var2 + 2 * by1 * by2 * v.covar12;
}

/// The variance of the percentile with the score `w`: of its logarithm where the distribution works on
/// logarithms, of the time itself otherwise.
double percentileVariance(LifeDistribution dist, double para1, double para2, const ParameterVariance& v,
                          double w);

/// The variance of the standardised time u.
double standardisedVariance(LifeDistribution dist, double para1, double para2, const ParameterVariance& v,
                            double u);

}  // namespace zelkova
