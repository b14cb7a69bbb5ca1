#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "zelkova/models/CrossProducts.h"

namespace zelkova {

/// A column that keeps no larger share of its squares about its fit on others is explained by them: a
/// distance of 5E-14, what the rounding of its own elements makes of an exact sum of others.
constexpr double explainedShare = 0x1p-88;

/// The normal equations of a choice of predictors, solved: X'X = L D L' with a unit lower triangle L and a
/// diagonal D, in extended arithmetic. Predictors and responses are places in the `CrossProducts`.
class LeastSquares {
 public:
  /// Failure 5012 where X'X is singular: where a factor of its determinant, the product of D, is 0 but for
  /// rounding, because a predictor is no further than that from the span of those before it. Deliberate: the
  /// determinant of the rounded table would be 0 for many an x far from 0 too, such as a date and time.
  LeastSquares(const CrossProducts& products, std::vector<std::size_t> predictors);

  /// What the predictors explain of one response.
  struct Projection {
    /// Element k: what predictor k explains beyond those before it, the sequential sum of squares.
    std::vector<DoubleDouble> sequential;
    /// T = b'X'y, the sum of those.
    DoubleDouble explained;
    /// y'y - T; 0 where the difference is nothing but rounding.
    DoubleDouble unexplained;
    /// L'b, from which `coefficients` come.
    std::vector<DoubleDouble> reduced;
  };

  Projection project(std::size_t response) const;

  /// b, which solves X'X b = X'y.
  std::vector<double> coefficients(const Projection& projection) const;

  /// The diagonal of C, the inverse of X'X.
  std::vector<double> inverseDiagonal() const;

  /// x'Cx for each row x of a table of the same predictors.
  std::vector<double> leverages(const std::vector<Column>& columns) const;

 private:
  std::size_t size() const { return predictors_.size(); }
  DoubleDouble& lower(std::size_t i, std::size_t k) { return lower_[k * size() + i]; }
  const DoubleDouble& lower(std::size_t i, std::size_t k) const { return lower_[k * size() + i]; }
  std::vector<DoubleDouble> inverseOfLower() const;

  const CrossProducts& products_;
  std::vector<std::size_t> predictors_;
  std::vector<DoubleDouble> lower_;
  std::vector<DoubleDouble> diagonal_;
};

/// The places of the columns that those before them do not explain: a column stays where its sum of squares
/// about its fit on the columns that stayed is above its own `limits` element, and above what rounding may
/// leave. The first `fixed` columns stay in any case; failure 5012 where one of them is explained.
std::vector<std::size_t> independentPlaces(const CrossProducts& products, const std::vector<double>& limits,
                                           std::size_t fixed);

/// All places below `count`, in order.
std::vector<std::size_t> firstPlaces(std::size_t count);

}  // namespace zelkova
