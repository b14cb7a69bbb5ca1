#include "zelkova/reliability/lifeVariance.h"

#include "zelkova/frame/arithmetic.h"

namespace zelkova {

double percentileVariance(LifeDistribution dist, double para1, double para2, const ParameterVariance& v,
                          double w) {
  switch (dist) {
    case LifeDistribution::Weibull:
      return deltaVariance(v, checked::quotient(1, para1), -checked::quotient(w, para2 * para2));
    case LifeDistribution::Exponential:
      return checked::quotient(v.var1, para1 * para1);
    default:
      return deltaVariance(v, 1, w);
  }
}

double standardisedVariance(LifeDistribution dist, double para1, double para2, const ParameterVariance& v,
                            double u) {
  switch (dist) {
    case LifeDistribution::Weibull:
      return deltaVariance(v, -checked::quotient(para2, para1), checked::quotient(u, para2));
    case LifeDistribution::Exponential:
      return checked::quotient(v.var1, para1 * para1);
    default:
      return checked::quotient(deltaVariance(v, 1, u), para2 * para2);
  }
}

}  // namespace zelkova
