#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/doubleDouble.h"

namespace zelkova {

using Column = std::span<const double>;

/// The columns of a table one by one; a vector counts as a table of one column. Failure 5022 where the array
/// was never filled.
std::vector<Column> columnsOf(const DoubleArray& table);

/// The column of a vector or a table of one column; failure 5 where there are more, which names the argument.
Column onlyColumnOf(const DoubleArray& table, const char* name);

/// The inner products of columns of equal length with each other: X'X, X'y and y'y in one table, formed once
/// for all the models of a call. They are summed to well beyond a double's digits, because the differences
/// that a regression takes of them (its sums of squares) cancel most of those digits.
class CrossProducts {
 public:
  /// Failure 5009 for columns of unequal length, failure 6 where a product overflows.
  explicit CrossProducts(const std::vector<Column>& columns);

  /// Products of `columns` columns of `rows` elements, row by row, that were formed to the same precision
  /// elsewhere. Failure 6 where one is not finite.
  CrossProducts(std::size_t rows, std::size_t columns, std::vector<DoubleDouble> products)
      : rows_(rows), columns_(columns), noise_(0x1p-95), products_(std::move(products)) {
    for (const DoubleDouble& product : products_) checked::finite(product.high);
  }

  std::size_t rows() const { return rows_; }
  std::size_t columns() const { return columns_; }

  /// The product of columns i and j, counted from 0.
  const DoubleDouble& operator()(std::size_t i, std::size_t j) const { return products_[i * columns_ + j]; }

  /// What rounding may have left in a product, relative to the lengths of the two columns.
  double noise() const { return noise_; }

 private:
  void form(const std::vector<Column>& columns, std::size_t slices);

  std::size_t rows_;
  std::size_t columns_;
  double noise_;
  std::vector<DoubleDouble> products_;
};

/// The sum of a column, in the same arithmetic.
DoubleDouble extendedSum(Column column);

}  // namespace zelkova
