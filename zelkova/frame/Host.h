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

// The sheet object model. What can be set keeps the host's own numbers, which travel through automation as
// they are; every member raises failure 1004 where the host refuses, on a protected sheet for one.

enum class HorizontalAlignment { Left = -4131, Center = -4108, Right = -4152 };
enum class VerticalAlignment { Top = -4160, Center = -4108, Bottom = -4107 };

/// The lines at a range: across each cell, around the range, and between its cells.
enum class BorderItem {
  DiagonalDown = 5,
  DiagonalUp = 6,
  EdgeLeft = 7,
  EdgeTop = 8,
  EdgeBottom = 9,
  EdgeRight = 10,
  InsideVertical = 11,
  InsideHorizontal = 12,
};

enum class LineStyle {
  Continuous = 1,
  DashDot = 4,
  DashDotDot = 5,
  None = -4142,
  Dash = -4115,
  Dot = -4118,
  Double = -4119,
};
enum class BorderWeight { Hairline = 1, Thin = 2, Medium = -4138, Thick = 4 };

/// Where the cells go that stand behind deleted ones.
enum class Shift { Left = -4159, Up = -4162 };

/// Colours are places in the host's palette of 56, from 1, or one of these.
constexpr int noColor = -4142;
constexpr int automaticColor = -4105;

class Font {
 public:
  virtual ~Font() = default;

  virtual void setName(std::string_view name) = 0;
  virtual void setSize(double points) = 0;
  virtual void setBold(bool bold) = 0;
  virtual void setColorIndex(int color) = 0;
};

class Border {
 public:
  virtual ~Border() = default;

  virtual void setLineStyle(LineStyle style) = 0;
  virtual void setWeight(BorderWeight weight) = 0;
  virtual void setColorIndex(int color) = 0;
};

/// What cells accept: here always one of a list, of which the user picks.
class Validation {
 public:
  virtual ~Validation() = default;

  /// Takes the rule away, if there is one.
  virtual void erase() = 0;

  /// The rule "one of `list`", entries with commas between, that stops any other input. There must be none.
  virtual void addList(std::string_view list) = 0;

  // Of the rule that stands.
  virtual void setIgnoreBlank(bool ignore) = 0;
  virtual void setInCellDropdown(bool dropdown) = 0;
  virtual void setInputTitle(std::string_view title) = 0;
  virtual void setInputMessage(std::string_view message) = 0;
  virtual void setErrorTitle(std::string_view title) = 0;
  virtual void setErrorMessage(std::string_view message) = 0;
  virtual void setShowInput(bool show) = 0;
  virtual void setShowError(bool show) = 0;
};

/// The note that pops up at a cell.
class Comment {
 public:
  virtual ~Comment() = default;

  virtual std::unique_ptr<Font> font() = 0;

  /// Size of its box, in points.
  virtual void setWidth(double points) = 0;
  virtual void setHeight(double points) = 0;
};

/// A rectangle of cells of a sheet.
class Range {
 public:
  virtual ~Range() = default;

  /// What the upper left cell holds: a number, a text (a formula begins with "="), a flag or nothing.
  virtual Variant value() const = 0;

  /// Puts `value` into every cell of the range.
  virtual void setValue(const Variant& value) = 0;

  virtual std::unique_ptr<Font> font() = 0;

  /// The lines of that kind; failure 1004 where they are set inside a range that has none.
  virtual std::unique_ptr<Border> border(BorderItem item) = 0;
  virtual std::unique_ptr<Validation> validation() = 0;

  virtual void setInteriorColorIndex(int color) = 0;
  virtual void setHorizontalAlignment(HorizontalAlignment alignment) = 0;
  virtual void setVerticalAlignment(VerticalAlignment alignment) = 0;
  virtual void setWrapText(bool wrap) = 0;
  virtual void setNumberFormat(std::string_view format) = 0;

  /// Turns texts by that many degrees, from -90 to 90, counter-clockwise.
  virtual void setOrientation(int degrees) = 0;

  /// Makes one cell of the range, or separate cells again.
  virtual void setMergeCells(bool merge) = 0;

  /// Width of its columns in characters of the standard font, and height of its rows in points.
  virtual void setColumnWidth(double characters) = 0;
  virtual void setRowHeight(double points) = 0;

  /// A new comment at the upper left cell; failure 1004 where one stands.
  virtual std::unique_ptr<Comment> addComment(std::string_view text) = 0;

  /// Takes the cells out of the sheet; those behind them close up, and references follow.
  virtual void deleteCells(Shift shift) = 0;
};

/// A worksheet of the host.
class Sheet {
 public:
  virtual ~Sheet() = default;

  virtual std::string name() const = 0;

  /// The cells that `address` names as the host names them, "B2" or "A1:C3"; failure 1004 where it names
  /// none.
  virtual std::unique_ptr<Range> range(std::string_view address) = 0;

  /// Whole rows, "2:5", and whole columns, "B:D".
  virtual std::unique_ptr<Range> rows(std::string_view address) = 0;
  virtual std::unique_ptr<Range> columns(std::string_view address) = 0;
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
