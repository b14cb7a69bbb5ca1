#pragma once

#include "zelkova/frame/Host.h"

namespace zelkova {

/// The worksheet functions as the classic spreadsheet functions of the same names are published: their
/// truncations, their domains (an argument outside is failure 1004), their values to the last few bits.
///
/// An end of a domain is given where the result is finite there (`TInv` of 1 is 0) and refused where it is
/// not. A result too small for a double is 0; one too large is failure 1004. No state: calls may run in
/// parallel.
class EmbeddedWorksheetFunction final : public WorksheetFunction {
 public:
  double NormSDist(double z) override;
  double NormSInv(double p) override;
  double NormDist(double x, double mean, double sd, bool cumulative) override;
  double NormInv(double p, double mean, double sd) override;
  double LogNormDist(double x, double mean, double sd) override;
  double LogInv(double p, double mean, double sd) override;
  double TDist(double x, double df, double tails) override;
  double TInv(double p, double df) override;
  double ChiDist(double x, double df) override;
  double ChiInv(double p, double df) override;
  double FDist(double x, double df1, double df2) override;
  double FInv(double p, double df1, double df2) override;
  double BetaDist(double x, double alpha, double beta) override;
  double BetaInv(double p, double alpha, double beta) override;
  double GammaInv(double p, double alpha, double beta) override;
  double GammaLn(double x) override;
  double BinomDist(double successes, double trials, double probability, bool cumulative) override;
  double Poisson(double x, double mean, bool cumulative) override;
  double HypGeomDist(double sampleSuccesses, double sampleSize, double populationSuccesses,
                     double populationSize) override;
  double ExponDist(double x, double lambda, bool cumulative) override;
  double Weibull(double x, double shape, double scale, bool cumulative) override;

  double Max(const DoubleArray& values) override;
  double Max(double a, double b) override;
  double Min(const DoubleArray& values) override;
  double Min(double a, double b) override;
  double Ceiling(double x, double significance) override;
  double RoundUp(double x, double digits) override;
  double Gcd(double a, double b) override;
  double Sum(const DoubleArray& values) override;
  double Average(const DoubleArray& values) override;
  double Pi() override;

  double Slope(const DoubleArray& knownY, const DoubleArray& knownX) override;
  double Intercept(const DoubleArray& knownY, const DoubleArray& knownX) override;
  double Correl(const DoubleArray& a, const DoubleArray& b) override;
  DoubleArray LinEst(const DoubleArray& knownY, const DoubleArray& knownX, bool constant,
                     bool stats) override;
  DoubleArray MInverse(const DoubleArray& matrix) override;
};

}  // namespace zelkova
