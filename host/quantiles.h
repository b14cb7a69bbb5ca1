#pragma once

namespace zelkova::quantiles {

/// Standard normal quantile, 0 < p < 1.
double normal(double p);

/// t >= 0 with probability `p`, 0 < p <= 1, that the absolute value of Student's t exceeds it.
double studentBothTails(double p, double df);

/// x with `p` below in the gamma distribution, 0 <= p < 1.
double gammaLower(double p, double shape, double scale);

/// x with `p` above in the gamma distribution of scale 1, 0 < p <= 1.
double gammaUpper(double p, double shape);

/// x with `p` above in the F distribution, 0 < p <= 1.
double varianceRatioUpper(double p, double df1, double df2);

/// x with `p` below in the beta distribution, 0 <= p <= 1.
double betaLower(double p, double a, double b);

}  // namespace zelkova::quantiles
