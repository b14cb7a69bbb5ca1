#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/EmbeddedWorksheetFunction.h"
#include "host/domain.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/kit/compensatedSum.h"

namespace zelkova {

using domain::require;

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

double largestMagnitude(std::span<const double> values) {
  double largest = 0;
  for (const double x : values) largest = std::fmax(largest, std::fabs(x));
  return largest;
}

double sumOfMagnitudes(std::span<const double> values) {
  double sum = 0;
  for (const double x : values) sum += std::fabs(x);
  return sum;
}

/// The power of two that brings the largest of `values` into [1, 2), so that no square of them leaves the
/// range of a double; 0 where all are 0.
int exponentOf(std::span<const double> values) {
  const double largest = largestMagnitude(values);
  return largest == 0 ? 0 : std::ilogb(largest);
}

/// The sum of products of two spans of one length. Halves and then eight fixed lanes keep the error at a few
/// units in the last place for any length, and the digits the same in every build.
double innerProduct(std::span<const double> a, std::span<const double> b) {
  constexpr std::size_t width = 8;
  constexpr std::size_t block = 128;
  if (a.size() > block) {
    const std::size_t half = a.size() / 2;
    return innerProduct(a.first(half), b.first(half)) + innerProduct(a.subspan(half), b.subspan(half));
  }
  std::array<double, width> lanes{};
  for (std::size_t i = 0; i < a.size(); ++i) lanes[i % width] += a[i] * b[i];
  return std::accumulate(lanes.begin(), lanes.end(), 0.0);
}

double sumOfSquares(std::span<const double> values) { return innerProduct(values, values); }

double meanOf(std::span<const double> values) {
  return compensatedSum(values) / static_cast<double>(values.size());
}

/// A mean as the sum of a double and what its rounding lost.
struct Mean {
  double rounded = 0;
  double rest = 0;
};

/// Subtracts the mean, also what its rounding loses: that is as large as the deviations of values far from 0.
Mean centre(std::span<double> values) {
  Mean mean;
  mean.rounded = meanOf(values);
  for (double& v : values) v -= mean.rounded;
  mean.rest = meanOf(values);
  for (double& v : values) v -= mean.rest;
  return mean;
}

/// A variable about its mean, in units of a power of two.
struct Centred {
  std::vector<double> deviations;
  Mean mean;
  int exponent;
};

/// Nothing where all values are equal: the mean of such values need not be one of them, so deviations cannot
/// tell.
std::optional<Centred> centred(std::span<const double> values) {
  const auto [low, high] = std::minmax_element(values.begin(), values.end());
  if (*low == *high) return std::nullopt;
  Centred result;
  const int exponent = exponentOf(values);
  result.deviations.reserve(values.size());
  for (const double x : values) result.deviations.push_back(std::ldexp(x, -exponent));
  const Mean mean = centre(result.deviations);
  result.mean = {std::ldexp(mean.rounded, exponent), std::ldexp(mean.rest, exponent)};
  const int rest = exponentOf(result.deviations);
  for (double& d : result.deviations) d = std::ldexp(d, -rest);
  result.exponent = exponent + rest;
  return result;
}

void requireNumbers(const DoubleArray& values, const std::string& name) {
  const auto x = values.elements();
  require(values.filled() && std::all_of(x.begin(), x.end(), domain::finite),
          (name + " must hold finite numbers").c_str());
}

void requirePairs(const DoubleArray& a, const DoubleArray& b, const std::string& function,
                  const std::string& nameA, const std::string& nameB) {
  requireNumbers(a, function + ": " + nameA);
  requireNumbers(b, function + ": " + nameB);
  require(a.size() == b.size(),
          (function + ": " + nameA + " and " + nameB + " must be of the same length").c_str());
  require(a.size() >= 2, (function + ": " + nameA + " must hold at least 2 numbers").c_str());
}

struct Line {
  double intercept, slope;
};

Line leastSquaresLine(const DoubleArray& knownY, const DoubleArray& knownX, const std::string& function) {
  requirePairs(knownY, knownX, function, "knownY", "knownX");
  const auto x = centred(knownX.elements());
  require(x.has_value(), (function + ": knownX must not be constant").c_str());
  const auto y = centred(knownY.elements());
  if (!y) return {knownY.elements().front(), 0};
  const double products = innerProduct(x->deviations, y->deviations);
  const double slope = std::ldexp(products / sumOfSquares(x->deviations), y->exponent - x->exponent);
  // Far from 0 the intercept is what is left of two large numbers: their roundings count.
  const double product = slope * x->mean.rounded;
  const std::array parts = {y->mean.rounded, -product, -std::fma(slope, x->mean.rounded, -product),
                            y->mean.rest, -slope * x->mean.rest};
  return {compensatedSum(parts), slope};
}

/// The variables of a regression, one a column, in the orientation of `knownY`.
struct Regression {
  std::vector<double> y;
  std::vector<std::vector<double>> x;
};

Regression readRegression(const DoubleArray& knownY, const DoubleArray& knownX) {
  requireNumbers(knownY, "LinEst: knownY");
  Regression data{{knownY.elements().begin(), knownY.elements().end()}, {}};
  const std::size_t n = data.y.size();
  // Published: without known x, they are 1, 2, 3, ...
  if (!knownX.filled()) {
    std::vector<double> count(n);
    std::iota(count.begin(), count.end(), 1.0);
    data.x.push_back(std::move(count));
    return data;
  }
  requireNumbers(knownX, "LinEst: knownX");
  const auto shape = [](const DoubleArray& a) {
    return std::pair(a.rows(), a.dimensions() == 2 ? a.columns() : Index(1));
  };
  const auto [rowsY, columnsY] = shape(knownY);
  const auto [rowsX, columnsX] = shape(knownX);
  const auto elements = knownX.elements();
  if (columnsY == 1 && rowsX == rowsY) {
    for (Index j = 0; j < columnsX; ++j) {
      const auto first = elements.begin() + j * rowsX;
      data.x.emplace_back(first, first + rowsX);
    }
  } else if (rowsY == 1 && columnsX == columnsY) {
    for (Index i = 1; i <= rowsX; ++i) {
      std::vector<double> variable;
      for (Index j = 1; j <= columnsX; ++j) variable.push_back(knownX(i, j));
      data.x.push_back(std::move(variable));
    }
  } else if (rowsX == rowsY && columnsX == columnsY) {
    data.x.emplace_back(elements.begin(), elements.end());
  } else {
    require(false, "LinEst: knownY and knownX must be of the same length");
  }
  return data;
}

/// Least squares by Householder reflections (Golub 1965). Variables are taken in their order; one that the
/// earlier ones and the constant explain already gets no part in the fit.
class LeastSquares {
 public:
  LeastSquares(Regression data, bool constant) : x_(std::move(data.x)), y_(std::move(data.y)) {
    prepare(constant);
    for (std::size_t j = 0; j < x_.size(); ++j) take(j);
    solve();
  }

  std::size_t rank() const { return used_.size(); }
  double coefficient(std::size_t j) const { return coefficients_[j]; }
  double constantTerm() const { return constant_; }

  /// Sums of squares in units of the square of a power of two, so that ratios of them neither overflow nor
  /// vanish; and in those of y.
  double regressionSquares() const { return regressionSquares_; }
  double residualSquares() const { return residualSquares_; }
  double inSquaresOfY(double squares) const { return std::ldexp(squares, 2 * exponentOfY_); }

  /// Standard errors for `df` residual degrees of freedom: of y, of coefficient `j` and of the constant.
  double error(double df) const { return std::ldexp(unitError(df), exponentOfY_); }
  double errorOf(std::size_t j, double df) const {
    return std::ldexp(unitError(df) * leverageRoots_[j], exponentOfY_ - exponents_[j]);
  }
  double errorOfConstant(double df) const {
    return std::ldexp(unitError(df) * leverageRootOfConstant_, exponentOfY_);
  }

 private:
  double unitError(double df) const { return std::sqrt(residualSquares_ / df); }

  void prepare(bool constant) {
    exponentOfY_ = exponentOf(y_);
    for (double& v : y_) v = std::ldexp(v, -exponentOfY_);
    normOfY_ = std::sqrt(sumOfSquares(y_));
    for (auto& column : x_) {
      exponents_.push_back(exponentOf(column));
      for (double& v : column) v = std::ldexp(v, -exponents_.back());
      norms_.push_back(std::sqrt(sumOfSquares(column)));
    }
    means_.resize(x_.size());
    if (constant) {
      for (std::size_t j = 0; j < x_.size(); ++j) means_[j] = centre(x_[j]);
      meanOfY_ = centre(y_);
    }
    centredNormOfY_ = std::sqrt(sumOfSquares(y_));
    for (const auto& column : x_) centredNorms_.push_back(std::sqrt(sumOfSquares(column)));
  }

  void take(std::size_t j) {
    const std::size_t row = rank();
    if (row >= y_.size()) return;
    const std::span<double> pivot = std::span(x_[j]).subspan(row);
    const double norm = std::sqrt(sumOfSquares(pivot));
    if (norm <= 1e-14 * centredNorms_[j] || norm <= 8 * epsilon * norms_[j]) return;
    const double diagonal = pivot[0] > 0 ? -norm : norm;
    pivot[0] -= diagonal;
    const double scale = -1 / (diagonal * pivot[0]);
    const auto reflect = [&](std::vector<double>& column) {
      const std::span<double> rest = std::span(column).subspan(row);
      const double factor = scale * innerProduct(rest, pivot);
      for (std::size_t i = 0; i < rest.size(); ++i) rest[i] -= factor * pivot[i];
    };
    for (std::size_t k = j + 1; k < x_.size(); ++k) reflect(x_[k]);
    reflect(y_);
    pivot[0] = diagonal;
    used_.push_back(j);
  }

  double triangle(std::size_t row, std::size_t position) const { return x_[used_[position]][row]; }

  void solve() {
    coefficients_.assign(x_.size(), 0);
    leverageRoots_.assign(x_.size(), 0);
    std::vector<double> scaled(rank());
    for (std::size_t i = rank(); i-- > 0;) {
      double sum = y_[i];
      for (std::size_t k = i + 1; k < rank(); ++k) sum -= triangle(i, k) * scaled[k];
      scaled[i] = sum / triangle(i, i);
    }
    std::vector<double> parts{meanOfY_.rounded, meanOfY_.rest};
    for (std::size_t i = 0; i < rank(); ++i) {
      const std::size_t j = used_[i];
      coefficients_[j] = std::ldexp(scaled[i], exponentOfY_ - exponents_[j]);
      leverageRoots_[j] = std::sqrt(inverseRowSquares(i));
      const double product = scaled[i] * means_[j].rounded;
      parts.insert(parts.end(), {-product, -std::fma(scaled[i], means_[j].rounded, -product),
                                 -scaled[i] * means_[j].rest});
    }
    constant_ = std::ldexp(compensatedSum(parts), exponentOfY_);
    leverageRootOfConstant_ = std::sqrt(1 / static_cast<double>(y_.size()) + meanLeverage());

    const auto fitted = std::span(y_).first(rank());
    const auto residuals = std::span(y_).subspan(rank());
    regressionSquares_ = sumOfSquares(fitted);
    residualSquares_ = sumOfSquares(residuals);
    // Residuals that are nothing but rounding, of y as given and of the reflections, are none: the fit is
    // perfect.
    const double rounding = epsilon * (normOfY_ + 4 * centredNormOfY_);
    if (std::sqrt(residualSquares_) <= rounding) residualSquares_ = 0;
  }

  /// Sum of the squares of row `i` of the inverse of the triangle R: the solution of (row) R = e_i, which
  /// begins at place i.
  double inverseRowSquares(std::size_t i) const {
    std::vector<double> row{1 / triangle(i, i)};
    for (std::size_t k = i + 1; k < rank(); ++k) {
      double sum = 0;
      for (std::size_t m = i; m < k; ++m) sum -= row[m - i] * triangle(m, k);
      row.push_back(sum / triangle(k, k));
    }
    return sumOfSquares(row);
  }

  /// The leverage of the point where all variables have the value 0.
  double meanLeverage() const {
    std::vector<double> solution(rank());
    for (std::size_t k = 0; k < rank(); ++k) {
      double sum = means_[used_[k]].rounded + means_[used_[k]].rest;
      for (std::size_t m = 0; m < k; ++m) sum -= triangle(m, k) * solution[m];
      solution[k] = sum / triangle(k, k);
    }
    return sumOfSquares(solution);
  }

  std::vector<std::vector<double>> x_;
  std::vector<double> y_;
  std::vector<double> norms_, centredNorms_;
  std::vector<Mean> means_;
  std::vector<int> exponents_;
  std::vector<std::size_t> used_;
  double normOfY_ = 0;
  double centredNormOfY_ = 0;
  Mean meanOfY_;
  int exponentOfY_ = 0;

  std::vector<double> coefficients_, leverageRoots_;
  double constant_ = 0;
  double leverageRootOfConstant_ = 0;
  double regressionSquares_ = 0;
  double residualSquares_ = 0;
};

void putStatistics(DoubleArray& table, const LeastSquares& fit, Index n, bool constant) {
  const Index columns = table.columns();
  const double df = static_cast<double>(n) - static_cast<double>(fit.rank()) - (constant ? 1 : 0);
  const double total = fit.regressionSquares() + fit.residualSquares();
  if (total > 0) table(3, 1) = fit.regressionSquares() / total;
  table(4, 2) = df;
  table(5, 1) = fit.inSquaresOfY(fit.regressionSquares());
  table(5, 2) = fit.inSquaresOfY(fit.residualSquares());
  if (df <= 0) return;
  for (Index j = 1; j < columns; ++j) {
    table(2, columns - j) = fit.errorOf(static_cast<std::size_t>(j - 1), df);
  }
  if (constant) table(2, columns) = fit.errorOfConstant(df);
  table(3, 2) = fit.error(df);
  if (fit.rank() == 0 || fit.residualSquares() == 0) return;
  table(4, 1) = fit.regressionSquares() / static_cast<double>(fit.rank()) / (fit.residualSquares() / df);
}

/// A square matrix as the product of a lower and an upper triangle, with partial pivoting. Rows and then
/// columns are taken in units of powers of two first, so that pivots of matrices in mixed units compare.
class Triangles {
 public:
  explicit Triangles(const DoubleArray& matrix) : n_(matrix.rows()), lu_(n_, n_, 0.0), order_(size()) {
    std::copy(matrix.elements().begin(), matrix.elements().end(), lu_.elements().begin());
    balance();
    std::iota(order_.begin(), order_.end(), Index(1));
    for (Index k = 1; k <= n_; ++k) eliminate(k);
  }

  DoubleArray inverse() const {
    DoubleArray result(n_, n_, 0.0);
    double norm = 0;
    for (Index j = 1; j <= n_; ++j) {
      // The row that pivoting moved to place j has its column of the inverse where it came from.
      const Index row = order_[place(j)];
      const std::span<double> x = result.column(row);
      x[place(j)] = 1;
      substitute(x);
      norm = std::fmax(norm, sumOfMagnitudes(x));
      for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = std::ldexp(x[i], -columnExponents_[i] - rowExponents_[place(row)]);
      }
    }
    // Of such an inverse no digit would be certain.
    requireRegular(norm_ * norm * epsilon <= 1);
    return result;
  }

 private:
  static std::size_t place(Index i) { return static_cast<std::size_t>(i - 1); }
  std::size_t size() const { return static_cast<std::size_t>(n_); }

  static void requireRegular(bool holds) { require(holds, "MInverse: matrix must not be singular"); }

  void balance() {
    for (Index i = 1; i <= n_; ++i) {
      double largest = 0;
      for (Index j = 1; j <= n_; ++j) largest = std::fmax(largest, std::fabs(lu_(i, j)));
      requireRegular(largest > 0);
      rowExponents_.push_back(std::ilogb(largest));
      for (Index j = 1; j <= n_; ++j) lu_(i, j) = std::ldexp(lu_(i, j), -rowExponents_.back());
    }
    for (Index j = 1; j <= n_; ++j) {
      const std::span<double> column = lu_.column(j);
      requireRegular(largestMagnitude(column) > 0);
      columnExponents_.push_back(exponentOf(column));
      for (double& v : column) v = std::ldexp(v, -columnExponents_.back());
      norm_ = std::fmax(norm_, sumOfMagnitudes(column));
    }
  }

  void eliminate(Index k) {
    const std::span<double> multipliers = lu_.column(k);
    Index pivot = k;
    for (Index i = k + 1; i <= n_; ++i) {
      if (std::fabs(multipliers[place(i)]) > std::fabs(multipliers[place(pivot)])) pivot = i;
    }
    // A pivot that is nothing but rounding is none.
    requireRegular(std::fabs(multipliers[place(pivot)]) > static_cast<double>(n_) * epsilon);
    if (pivot != k) {
      std::swap(order_[place(k)], order_[place(pivot)]);
      for (Index j = 1; j <= n_; ++j) std::swap(lu_(k, j), lu_(pivot, j));
    }
    const std::size_t below = static_cast<std::size_t>(k);
    for (std::size_t i = below; i < size(); ++i) multipliers[i] /= multipliers[below - 1];
    for (Index j = k + 1; j <= n_; ++j) {
      const std::span<double> column = lu_.column(j);
      const double factor = column[below - 1];
      for (std::size_t i = below; i < size(); ++i) column[i] -= factor * multipliers[i];
    }
  }

  /// Solves for the right side in `x`, in place.
  void substitute(std::span<double> x) const {
    for (std::size_t k = 0; k < x.size(); ++k) {
      const std::span<const double> multipliers = lu_.column(static_cast<Index>(k) + 1);
      for (std::size_t i = k + 1; i < x.size(); ++i) x[i] -= x[k] * multipliers[i];
    }
    for (std::size_t k = x.size(); k-- > 0;) {
      const std::span<const double> column = lu_.column(static_cast<Index>(k) + 1);
      x[k] /= column[k];
      for (std::size_t i = 0; i < k; ++i) x[i] -= x[k] * column[i];
    }
  }

  Index n_;
  double norm_ = 0;  ///< the largest sum of magnitudes of a column, in the units taken
  DoubleArray lu_;
  std::vector<Index> order_;
  std::vector<int> rowExponents_, columnExponents_;
};

}  // namespace

double EmbeddedWorksheetFunction::Slope(const DoubleArray& knownY, const DoubleArray& knownX) {
  return domain::result(leastSquaresLine(knownY, knownX, "Slope").slope, "Slope");
}

double EmbeddedWorksheetFunction::Intercept(const DoubleArray& knownY, const DoubleArray& knownX) {
  return domain::result(leastSquaresLine(knownY, knownX, "Intercept").intercept, "Intercept");
}

double EmbeddedWorksheetFunction::Correl(const DoubleArray& a, const DoubleArray& b) {
  requirePairs(a, b, "Correl", "a", "b");
  const auto x = centred(a.elements());
  const auto y = centred(b.elements());
  require(x && y, "Correl: neither a nor b may be constant");
  const double products = innerProduct(x->deviations, y->deviations);
  const double r =
      products / (std::sqrt(sumOfSquares(x->deviations)) * std::sqrt(sumOfSquares(y->deviations)));
  return std::clamp(r, -1.0, 1.0);
}

DoubleArray EmbeddedWorksheetFunction::LinEst(const DoubleArray& knownY, const DoubleArray& knownX,
                                              bool constant, bool stats) {
  Regression data = readRegression(knownY, knownX);
  const Index n = static_cast<Index>(data.y.size());
  const Index columns = static_cast<Index>(data.x.size()) + 1;
  const LeastSquares fit(std::move(data), constant);
  DoubleArray table(stats ? 5 : 1, columns, NoValue);
  for (Index j = 1; j < columns; ++j) {
    table(1, columns - j) = fit.coefficient(static_cast<std::size_t>(j - 1));
  }
  table(1, columns) = constant ? fit.constantTerm() : 0;
  if (stats) putStatistics(table, fit, n, constant);
  for (const double cell : table.elements()) domain::result(cell, "LinEst");
  return table;
}

DoubleArray EmbeddedWorksheetFunction::MInverse(const DoubleArray& matrix) {
  requireNumbers(matrix, "MInverse: matrix");
  require(matrix.dimensions() == 2 ? matrix.rows() == matrix.columns() : matrix.size() == 1,
          "MInverse: matrix must be square");
  DoubleArray inverse = Triangles(matrix).inverse();
  for (const double cell : inverse.elements()) domain::result(cell, "MInverse");
  return inverse;
}

}  // namespace zelkova
