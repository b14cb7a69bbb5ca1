#pragma once

namespace zelkova::tails {

/// Both tails of a distribution at one point, each with its own relative accuracy.
struct Tails {
  double lower, upper;
};

/// Lower tail of the standard normal distribution, the probability of at most `z`, with relative accuracy
/// however far out.
double normalLower(double z);

/// The absolute value of Student's t: below and above `t` >= 0, df >= 1.
Tails student(double t, double df);

/// Gamma distribution of `shape` > 0 and scale 1 at x >= 0: the regularised incomplete gamma functions P and
/// Q.
Tails gamma(double shape, double x);

/// Beta distribution at x within [0, 1]: the regularised incomplete beta function and its complement.
Tails beta(double a, double b, double x);

/// F distribution at x >= 0.
Tails varianceRatio(double x, double df1, double df2);

// Probabilities of single counts; the counts are whole and within the support.
double binomialMass(double successes, double trials, double probability);
double poissonMass(double count, double mean);
double hypergeometricMass(double successes, double sample, double populationSuccesses, double population);

}  // namespace zelkova::tails
