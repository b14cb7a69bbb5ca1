#include <cmath>
#include <numbers>

#include "host/EmbeddedWorksheetFunction.h"
#include "host/domain.h"
#include "host/gammaFunction.h"
#include "host/tails.h"

namespace zelkova {

using domain::require;

namespace {

/// (x - mean) / sd, where x - mean may be too large for a double.
double score(double x, double mean, double sd) {
  const double distance = x - mean;
  return std::isfinite(distance) ? distance / sd : x / sd - mean / sd;
}

/// factor / divisor * exp(exponent), where the exponential alone may be too small for a double.
double scaledExp(double exponent, double factor, double divisor) {
  const double half = std::exp(exponent / 2);
  return half == 0 ? 0 : half * factor / divisor * half;
}

/// x / scale as a logarithm and to a power. Large shapes multiply the rounding of a quotient near 1, so that
/// there its distance from 1 counts; and the quotient may leave the range of a double where the power does
/// not.
class Ratio {
 public:
  Ratio(double x, double scale) : quotient_(x / scale) {
    const double excess = (x - scale) / scale;
    byLog_ = std::fabs(excess) < 0.5 || !std::isnormal(quotient_);
    log_ = std::fabs(excess) < 0.5    ? std::log1p(excess)
           : std::isnormal(quotient_) ? std::log(quotient_)
                                      : std::log(x) - std::log(scale);
  }

  double log() const { return log_; }
  double power(double exponent) const {
    return byLog_ ? std::exp(exponent * log_) : std::pow(quotient_, exponent);
  }

 private:
  double quotient_, log_;
  bool byLog_;
};

}  // namespace

double EmbeddedWorksheetFunction::NormSDist(double z) {
  require(domain::finite(z), "NormSDist: z must be a finite number");
  return tails::normalLower(z);
}

double EmbeddedWorksheetFunction::NormDist(double x, double mean, double sd, bool cumulative) {
  require(domain::finite(x), "NormDist: x must be a finite number");
  require(domain::finite(mean), "NormDist: mean must be a finite number");
  require(domain::positive(sd), "NormDist: sd must be above 0");
  const double z = score(x, mean, sd);
  if (cumulative) return tails::normalLower(z);
  constexpr double inverseRootTwoPi = std::numbers::inv_sqrtpi / std::numbers::sqrt2;
  return domain::result(scaledExp(-z * z / 2, inverseRootTwoPi, sd), "NormDist");
}

double EmbeddedWorksheetFunction::LogNormDist(double x, double mean, double sd) {
  require(domain::positive(x), "LogNormDist: x must be above 0");
  require(domain::finite(mean), "LogNormDist: mean must be a finite number");
  require(domain::positive(sd), "LogNormDist: sd must be above 0");
  return tails::normalLower(score(std::log(x), mean, sd));
}

double EmbeddedWorksheetFunction::TDist(double x, double df, double tails) {
  df = std::trunc(df);
  tails = std::trunc(tails);
  require(domain::atLeast(x, 0), "TDist: x must be at least 0");
  require(domain::degreesOfFreedom(df), "TDist: df must be from 1 to 10^10");
  require(tails == 1 || tails == 2, "TDist: tails must be 1 or 2");
  const double both = tails::student(x, df).upper;
  return tails == 1 ? both / 2 : both;
}

double EmbeddedWorksheetFunction::ChiDist(double x, double df) {
  df = std::trunc(df);
  require(domain::atLeast(x, 0), "ChiDist: x must be at least 0");
  require(domain::degreesOfFreedom(df), "ChiDist: df must be from 1 to 10^10");
  return tails::gamma(df / 2, x / 2).upper;
}

double EmbeddedWorksheetFunction::FDist(double x, double df1, double df2) {
  df1 = std::trunc(df1);
  df2 = std::trunc(df2);
  require(domain::atLeast(x, 0), "FDist: x must be at least 0");
  require(domain::degreesOfFreedom(df1), "FDist: df1 must be from 1 to 10^10");
  require(domain::degreesOfFreedom(df2), "FDist: df2 must be from 1 to 10^10");
  return tails::varianceRatio(x, df1, df2).upper;
}

double EmbeddedWorksheetFunction::BetaDist(double x, double alpha, double beta) {
  require(domain::within(x, 0, 1), "BetaDist: x must be from 0 to 1");
  require(domain::positive(alpha), "BetaDist: alpha must be above 0");
  require(domain::positive(beta), "BetaDist: beta must be above 0");
  return domain::result(tails::beta(alpha, beta, x).lower, "BetaDist");
}

double EmbeddedWorksheetFunction::GammaLn(double x) {
  require(domain::positive(x), "GammaLn: x must be above 0");
  return domain::result(gammaFunction::logGamma(x), "GammaLn");
}

double EmbeddedWorksheetFunction::BinomDist(double successes, double trials, double probability,
                                            bool cumulative) {
  successes = std::trunc(successes);
  trials = std::trunc(trials);
  require(domain::atLeast(trials, 0), "BinomDist: trials must be at least 0");
  require(domain::within(successes, 0, trials), "BinomDist: successes must be from 0 to the trials");
  require(domain::within(probability, 0, 1), "BinomDist: probability must be from 0 to 1");
  if (!cumulative) return domain::result(tails::binomialMass(successes, trials, probability), "BinomDist");
  if (successes == trials) return 1;
  return domain::result(tails::beta(successes + 1, trials - successes, probability).upper, "BinomDist");
}

double EmbeddedWorksheetFunction::Poisson(double x, double mean, bool cumulative) {
  x = std::trunc(x);
  require(domain::atLeast(x, 0), "Poisson: x must be at least 0");
  require(domain::atLeast(mean, 0), "Poisson: mean must be at least 0");
  if (cumulative) return tails::gamma(x + 1, mean).upper;
  return tails::poissonMass(x, mean);
}

double EmbeddedWorksheetFunction::HypGeomDist(double sampleSuccesses, double sampleSize,
                                              double populationSuccesses, double populationSize) {
  const double k = std::trunc(sampleSuccesses);
  const double n = std::trunc(sampleSize);
  const double m = std::trunc(populationSuccesses);
  const double total = std::trunc(populationSize);
  require(domain::atLeast(total, 1), "HypGeomDist: populationSize must be at least 1");
  require(domain::within(n, 1, total), "HypGeomDist: sampleSize must be from 1 to the population size");
  require(domain::within(m, 1, total),
          "HypGeomDist: populationSuccesses must be from 1 to the population size");
  require(domain::within(k, std::fmax(0, n - (total - m)), std::fmin(n, m)),
          "HypGeomDist: sampleSuccesses must be a number of successes that such a sample can have");
  return domain::result(tails::hypergeometricMass(k, n, m, total), "HypGeomDist");
}

double EmbeddedWorksheetFunction::ExponDist(double x, double lambda, bool cumulative) {
  require(domain::atLeast(x, 0), "ExponDist: x must be at least 0");
  require(domain::positive(lambda), "ExponDist: lambda must be above 0");
  const double time = lambda * x;
  return cumulative ? -std::expm1(-time) : scaledExp(-time, lambda, 1);
}

double EmbeddedWorksheetFunction::Weibull(double x, double shape, double scale, bool cumulative) {
  require(domain::atLeast(x, 0), "Weibull: x must be at least 0");
  require(domain::positive(shape), "Weibull: shape must be above 0");
  require(domain::positive(scale), "Weibull: scale must be above 0");
  if (x == 0) {
    require(cumulative || shape >= 1,
            "Weibull: x must be above 0 where the density of a shape below 1 is asked for");
    return !cumulative && shape == 1 ? domain::result(1 / scale, "Weibull") : 0;
  }
  const Ratio ratio(x, scale);
  const double hazard = ratio.power(shape);
  if (cumulative) return -std::expm1(-hazard);
  if (std::isinf(hazard)) return 0;
  return domain::result(scaledExp((shape - 1) * ratio.log() - hazard, shape, scale), "Weibull");
}

}  // namespace zelkova
