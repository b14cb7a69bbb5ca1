#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"
#include "zelkova/logistic/CovariatePatterns.h"
#include "zelkova/logistic/newton.h"

namespace zelkova {

/// Writes the rows of `regtable`, in the units of the data.
class CoefficientTable {
 public:
  CoefficientTable(WorksheetFunction& host, const CovariatePatterns& patterns, const Maximum& maximum);

  /// The row of a constant: `place` is its coefficient, `firstSlope` that of the slopes that go with it.
  void addConstant(std::size_t place, std::size_t firstSlope);

  /// The rows of the slopes from `firstSlope` on.
  void addSlopes(std::size_t firstSlope);

  /// Odds ratios and their limits for the rows of the slopes added last. An exponent above 700 is not
  /// evaluated.
  void addOddsRatios();

  DoubleArray table() const { return table_; }

 private:
  void add(double coefficient, double variance);
  double covariance(std::size_t i, std::size_t j) const {
    return maximum_.covariance(static_cast<Index>(i + 1), static_cast<Index>(j + 1));
  }

  WorksheetFunction& host_;
  const CovariatePatterns& patterns_;
  const Maximum& maximum_;
  DoubleArray table_;
  Index rows_ = 0;
};

/// A row of `GOFtable`. A chi-square below 0 is rounding and counts as 0; without degrees of freedom it has
/// no p-value.
void setGoodnessRow(WorksheetFunction& host, DoubleArray& table, Index row, double chiSquare, double df);

/// Chi-squares over all patterns and levels.
struct LevelFitness {
  double pearson = 0;
  double deviance = 0;

  void add(double observed, double expected);

  /// `GOFtable` of a model of `coefficients` for `counts`.
  DoubleArray table(WorksheetFunction& host, const LevelCounts& counts, std::size_t coefficients) const;
};

/// The squared Pearson residual of a count: (observed - expected) squared over expected. Failure 11 for what
/// is observed and cannot be.
double pearsonTerm(double observed, double expected);

/// observed ln(observed/expected); nothing observed is 0.
double devianceTerm(double observed, double expected);

/// Patterns by a fitted score, ascending. Scores within 1E-9 of each other, relative to them, are tied, and
/// tied patterns keep their order: so rounding decides about nothing.
struct TiedOrder {
  explicit TiedOrder(std::span<const double> scores);

  std::vector<std::size_t> patterns;
  std::vector<std::size_t> starts;  ///< where each class of tied patterns begins, and the end
};

/// Pairs of observations of different levels, and their measures of association.
struct Association {
  /// Pairs are concordant where the higher level has the higher score. `pairs` is how many there are in all.
  Association(const LevelCounts& counts, const TiedOrder& order, double pairs);

  DoubleArray table;
  DoubleArray measures;
};

/// How many pairs of observations of different levels there are.
double pairsOfLevels(const LevelCounts& counts);

}  // namespace zelkova
