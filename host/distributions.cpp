#include <cmath>
#include <numbers>

#include "host/EmbeddedWorksheetFunction.h"
#include "host/domain.h"
#include "host/gammaFunction.h"
#include "host/tails.h"

namespace zelkova {

using domain::require;

double EmbeddedWorksheetFunction::NormSDist(double z) {
  require(domain::finite(z), "NormSDist: z must be a finite number");
  return tails::normalLower(z);
}

double EmbeddedWorksheetFunction::NormDist(double x, double mean, double sd, bool cumulative) {
  require(domain::finite(x), "NormDist: x must be a finite number");
  require(domain::finite(mean), "NormDist: mean must be a finite number");
  require(domain::positive(sd), "NormDist: sd must be above 0");
  const double z = (x - mean) / sd;
  if (cumulative) return tails::normalLower(z);
  return domain::result(tails::normalDensity(z) / sd, "NormDist");
}

double EmbeddedWorksheetFunction::LogNormDist(double x, double mean, double sd) {
  require(domain::positive(x), "LogNormDist: x must be above 0");
  require(domain::finite(mean), "LogNormDist: mean must be a finite number");
  require(domain::positive(sd), "LogNormDist: sd must be above 0");
  return tails::normalLower((std::log(x) - mean) / sd);
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
  return tails::beta(alpha, beta, x).lower;
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
  if (!cumulative) return tails::binomialMass(successes, trials, probability);
  if (successes == trials) return 1;
  return tails::beta(successes + 1, trials - successes, probability).upper;
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
  return tails::hypergeometricMass(k, n, m, total);
}

double EmbeddedWorksheetFunction::ExponDist(double x, double lambda, bool cumulative) {
  require(domain::atLeast(x, 0), "ExponDist: x must be at least 0");
  require(domain::positive(lambda), "ExponDist: lambda must be above 0");
  const double time = lambda * x;
  return cumulative ? -std::expm1(-time) : lambda * std::exp(-time);
}

double EmbeddedWorksheetFunction::Weibull(double x, double shape, double scale, bool cumulative) {
  require(domain::atLeast(x, 0), "Weibull: x must be at least 0");
  require(domain::positive(shape), "Weibull: shape must be above 0");
  require(domain::positive(scale), "Weibull: scale must be above 0");
  const double hazard = std::pow(x / scale, shape);
  if (cumulative) return -std::expm1(-hazard);
  const double density = shape / scale * std::pow(x / scale, shape - 1) * std::exp(-hazard);
  return domain::result(density, "Weibull");
}

}  // namespace zelkova
