#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Variant.h"

namespace zelkova {

/// The maths of the host spreadsheet. Every function raises failure 1004, with a text that names the function
/// and the argument, for an argument outside its domain.
class WorksheetFunction {
 public:
  virtual ~WorksheetFunction() = default;

  // Distributions. `df`, `tails` and counts are truncated to whole numbers by the function itself. `TDist`,
  // `ChiDist` and `FDist` give the upper tail and `ChiInv` and `FInv` take it; `TInv` takes both tails
  // together; all others are about the lower tail. `mean` and `sd` of the lognormal are those of ln x.
  virtual double NormSDist(double z) = 0;
  virtual double NormSInv(double p) = 0;
  virtual double NormDist(double x, double mean, double sd, bool cumulative) = 0;
  virtual double NormInv(double p, double mean, double sd) = 0;
  virtual double LogNormDist(double x, double mean, double sd) = 0;
  virtual double LogInv(double p, double mean, double sd) = 0;
  virtual double TDist(double x, double df, double tails) = 0;
  virtual double TInv(double p, double df) = 0;
  virtual double ChiDist(double x, double df) = 0;
  virtual double ChiInv(double p, double df) = 0;
  virtual double FDist(double x, double df1, double df2) = 0;
  virtual double FInv(double p, double df1, double df2) = 0;
  virtual double BetaDist(double x, double alpha, double beta) = 0;
  virtual double BetaInv(double p, double alpha, double beta) = 0;
  virtual double GammaInv(double p, double alpha, double beta) = 0;
  virtual double GammaLn(double x) = 0;
  virtual double BinomDist(double successes, double trials, double probability, bool cumulative) = 0;
  virtual double Poisson(double x, double mean, bool cumulative) = 0;
  virtual double HypGeomDist(double sampleSuccesses, double sampleSize, double populationSuccesses,
                             double populationSize) = 0;
  virtual double ExponDist(double x, double lambda, bool cumulative) = 0;
  virtual double Weibull(double x, double shape, double scale, bool cumulative) = 0;

  // Plain mathematics.
  virtual double Max(const DoubleArray& values) = 0;
  virtual double Max(double a, double b) = 0;
  virtual double Min(const DoubleArray& values) = 0;
  virtual double Min(double a, double b) = 0;

  /// The multiple of `significance` that is nearest to x from x on away from 0; 0 where either is 0. Both
  /// must have the same sign. A quotient within a few units in the last place of a whole number counts as
  /// that number of steps; one of 2^53 or more leaves x as it is.
  virtual double Ceiling(double x, double significance) = 0;

  /// x rounded away from 0 to `digits` decimal places (truncated to a whole number), or to tens, hundreds,
  /// ... where `digits` is negative. What is within a few units in the last place of a rounded number counts
  /// as that number; x that has no such digit any more is left as it is.
  virtual double RoundUp(double x, double digits) = 0;

  /// The greatest common divisor of the truncated arguments, each at least 0 and below 2^53; Gcd(0, 0) is 0.
  virtual double Gcd(double a, double b) = 0;

  /// Sum and mean of all elements, of any shape, by compensated summation (Neumaier 1974). Failure 1004 for
  /// an array without elements, for elements that are not finite and where the result is not a double.
  virtual double Sum(const DoubleArray& values) = 0;
  virtual double Average(const DoubleArray& values) = 0;
  virtual double Pi() = 0;

  // Lines and matrices.

  /// The least squares line of y on x, and the correlation of a and b. Arrays of any shape, taken element by
  /// element in storage order. Failure 1004 for different lengths, fewer than two elements, elements that are
  /// not finite, a constant x, and in `Correl` a constant a or b.
  virtual double Slope(const DoubleArray& knownY, const DoubleArray& knownX) = 0;
  virtual double Intercept(const DoubleArray& knownY, const DoubleArray& knownX) = 0;
  virtual double Correl(const DoubleArray& a, const DoubleArray& b) = 0;

  /// Least squares of y on one or more variables by Householder reflections (Golub 1965). `knownY` is a
  /// column or a row of n values; the variables are the columns of an n x k `knownX` in the first case and
  /// the rows of a k x n one in the second; where both have the same shape it is a single variable. An
  /// unfilled `knownX` stands for 1, 2, 3, ...
  ///
  /// The result has k + 1 columns: a row with the coefficients in reverse order, the constant last (0 where
  /// it is not fitted). With `stats`, four more rows: the standard errors of the first; R squared and the
  /// standard error of y; F and its residual degrees of freedom; the sums of squares of regression and
  /// residuals, 0 where those are too small for a double. A variable that the constant and the variables
  /// before it explain already gets the coefficient 0 and the standard error 0 and takes no degree of
  /// freedom. Cells without a value hold `NoValue`, as F of a perfect fit does.
  ///
  /// Failure 1004 for shapes that do not match, elements that are not finite and results that are no double.
  virtual DoubleArray LinEst(const DoubleArray& knownY, const DoubleArray& knownX, bool constant,
                             bool stats) = 0;

  /// The inverse of a square matrix by Gaussian elimination with partial pivoting, after rows and columns are
  /// brought to units of powers of two. Failure 1004 for a matrix that is not square, has elements that are
  /// not finite, or is singular to working precision: its 1-norm times that of the inverse, in those units,
  /// is more than 2^52.
  virtual DoubleArray MInverse(const DoubleArray& matrix) = 0;
};

/// A rectangle of cells of a sheet.
class Range {
 public:
  virtual ~Range() = default;

  /// What the upper left cell holds: a number, a text (a formula begins with "="), a flag or nothing.
  virtual Variant value() const = 0;

  /// Puts `value` into every cell of the range.
  virtual void setValue(const Variant& value) = 0;
};

/// A worksheet of the host.
class Sheet {
 public:
  virtual ~Sheet() = default;

  virtual std::string name() const = 0;

  /// The cells that `address` names as the host names them, "B2" or "A1:C3"; failure 1004 where it names
  /// none.
  virtual std::unique_ptr<Range> range(std::string_view address) = 0;
};

/// A running spreadsheet application, or what stands in for one.
class Host {
 public:
  virtual ~Host() = default;

  virtual WorksheetFunction& worksheetFunction() = 0;

  /// The sheet in front.
  virtual std::shared_ptr<Sheet> activeSheet() = 0;

  /// Shows a plain box with an OK button and returns when it is answered.
  virtual void messageBox(const std::string& text) = 0;
};

}  // namespace zelkova
