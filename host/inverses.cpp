#include <cmath>

#include "host/EmbeddedWorksheetFunction.h"
#include "host/domain.h"
#include "host/quantiles.h"

namespace zelkova {

using domain::require;

double EmbeddedWorksheetFunction::NormSInv(double p) {
  require(domain::openUnit(p), "NormSInv: p must be above 0 and below 1");
  return quantiles::normal(p);
}

double EmbeddedWorksheetFunction::NormInv(double p, double mean, double sd) {
  require(domain::openUnit(p), "NormInv: p must be above 0 and below 1");
  require(domain::finite(mean), "NormInv: mean must be a finite number");
  require(domain::positive(sd), "NormInv: sd must be above 0");
  return domain::result(mean + sd * quantiles::normal(p), "NormInv");
}

double EmbeddedWorksheetFunction::LogInv(double p, double mean, double sd) {
  require(domain::openUnit(p), "LogInv: p must be above 0 and below 1");
  require(domain::finite(mean), "LogInv: mean must be a finite number");
  require(domain::positive(sd), "LogInv: sd must be above 0");
  return domain::result(std::exp(mean + sd * quantiles::normal(p)), "LogInv");
}

double EmbeddedWorksheetFunction::TInv(double p, double df) {
  df = std::trunc(df);
  require(p > 0 && p <= 1, "TInv: p must be above 0 and at most 1");
  require(domain::degreesOfFreedom(df), "TInv: df must be from 1 to 10^10");
  return domain::result(quantiles::studentBothTails(p, df), "TInv");
}

double EmbeddedWorksheetFunction::ChiInv(double p, double df) {
  df = std::trunc(df);
  require(p > 0 && p <= 1, "ChiInv: p must be above 0 and at most 1");
  require(domain::degreesOfFreedom(df), "ChiInv: df must be from 1 to 10^10");
  return domain::result(2 * quantiles::gammaUpper(p, df / 2), "ChiInv");
}

double EmbeddedWorksheetFunction::FInv(double p, double df1, double df2) {
  df1 = std::trunc(df1);
  df2 = std::trunc(df2);
  require(p > 0 && p <= 1, "FInv: p must be above 0 and at most 1");
  require(domain::degreesOfFreedom(df1), "FInv: df1 must be from 1 to 10^10");
  require(domain::degreesOfFreedom(df2), "FInv: df2 must be from 1 to 10^10");
  return domain::result(quantiles::varianceRatioUpper(p, df1, df2), "FInv");
}

double EmbeddedWorksheetFunction::BetaInv(double p, double alpha, double beta) {
  require(domain::within(p, 0, 1), "BetaInv: p must be from 0 to 1");
  require(domain::positive(alpha), "BetaInv: alpha must be above 0");
  require(domain::positive(beta), "BetaInv: beta must be above 0");
  return domain::result(quantiles::betaLower(p, alpha, beta), "BetaInv");
}

double EmbeddedWorksheetFunction::GammaInv(double p, double alpha, double beta) {
  require(p >= 0 && p < 1, "GammaInv: p must be at least 0 and below 1");
  require(domain::positive(alpha), "GammaInv: alpha must be above 0");
  require(domain::positive(beta), "GammaInv: beta must be above 0");
  return domain::result(quantiles::gammaLower(p, alpha, beta), "GammaInv");
}

}  // namespace zelkova
