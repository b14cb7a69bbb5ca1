#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/models/CrossProducts.h"
#include "zelkova/models/ModelTerms.h"

namespace zelkova::glm {

/// A factor's levels in the numeric-aware order of `ExchangeSortS`, and which of them each row holds, from 0.
struct Factor {
  StringArray levels;
  std::vector<Index> codes;
};

/// The factors in the columns of `df`. Refuses one of a single level with "Factors must have more than 1
/// level".
std::vector<Factor> factorsOf(const StringArray& df);

/// The columns of one term in effect coding. A column is never written out: the rows of a term fall into
/// groups by the levels of its factors, and on a row a column is the coding of that row's group, -1, 0 or 1,
/// times the product of the term's covariates.
struct CodedTerm {
  /// A group in which a column is not 0, and its sign there.
  using Coding = std::vector<std::pair<Index, double>>;

  struct Column {
    std::string label;
    Coding coding;
  };

  Index groupCount = 1;
  std::vector<Index> groups;   ///< for each row its group, from 0; empty where there is only one
  std::vector<double> factor;  ///< for each row the product of the covariates; empty where there are none
  std::vector<Column> columns;
  double units = 0;  ///< how many combinations of the factors' levels occur; 0 for a term with covariates

  Index groupOf(std::size_t row) const { return groups.empty() ? 0 : groups[row]; }
  double factorOf(std::size_t row) const { return factor.empty() ? 1 : factor[row]; }
};

/// The column of ones.
CodedTerm constantTerm();

/// The coded columns of the terms, in their order. Columns of an interaction are all combinations of those of
/// its parts, the last part's changing fastest; those of a nested term stand together for each combination of
/// levels of the enclosing factors that occurs, and code the inner levels present there.
///
/// Refuses with "Insufficient data points" where they and the constant are more columns than rows.
std::vector<CodedTerm> codedTerms(const std::vector<Term>& terms, const std::vector<Factor>& factors,
                                  const DoubleArray& dc, Index rows);

/// The inner products of all columns of all terms, and behind them `y`, with each other, from the sums of the
/// groups alone.
CrossProducts crossProducts(const std::vector<CodedTerm>& design, std::span<const double> y);

/// X b, row by row; `coef` has an element for each column of the design, from 1.
DoubleArray fittedValues(const std::vector<CodedTerm>& design, const DoubleArray& coef, Index rows);

}  // namespace zelkova::glm
