#include "zelkova/models/CrossProducts.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/matrixSet.h"

namespace zelkova {

namespace {

struct SplitColumn {
  std::vector<double> high, low;
};

SplitColumn split(Column column) {
  SplitColumn result{std::vector<double>(column.size()), std::vector<double>(column.size())};
  for (std::size_t i = 0; i < column.size(); ++i) {
    const DoubleDouble half = halves(column[i]);
    result.high[i] = half.high;
    result.low[i] = half.low;
  }
  return result;
}

/// The inner product in twice a double's precision (Ogita, Rump and Oishi 2005).
DoubleDouble innerProduct(Column a, const SplitColumn& halvesOfA, Column b, const SplitColumn& halvesOfB) {
  double sum = 0;
  double errors = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const DoubleDouble product =
        twoProduct(a[i], {halvesOfA.high[i], halvesOfA.low[i]}, b[i], {halvesOfB.high[i], halvesOfB.low[i]});
    const DoubleDouble joined = twoSum(sum, product.high);
    sum = joined.high;
    errors += joined.low + product.low;
  }
  return twoSum(sum, errors);
}

}  // namespace

std::vector<Column> columnsOf(const DoubleArray& table, const char* name) {
  if (!table.filled()) raise(FailureNumber::OutOfRange, std::string(name) + " holds no values");
  if (table.dimensions() == 1) return {table.vector()};
  std::vector<Column> columns;
  for (Index j = 1; j <= table.columns(); ++j) columns.push_back(table.column(j));
  return columns;
}

CrossProducts::CrossProducts(const std::vector<Column>& columns)
    : rows_(columns.front().size()), columns_(columns.size()), products_(columns_ * columns_) {
  for (const Column& column : columns) {
    if (column.size() != rows_) matrix::raise(MatrixFailure::NotConformable);
  }
  std::vector<SplitColumn> splits;
  for (const Column& column : columns) splits.push_back(split(column));
  for (std::size_t j = 0; j < columns_; ++j) {
    for (std::size_t i = 0; i <= j; ++i) {
      const DoubleDouble product = innerProduct(columns[i], splits[i], columns[j], splits[j]);
      checked::finite(product.high);
      products_[i * columns_ + j] = products_[j * columns_ + i] = product;
    }
  }
  noise_ = 0x1p-95;
}

DoubleDouble extendedSum(Column column) {
  double sum = 0;
  double errors = 0;
  for (const double x : column) {
    const DoubleDouble joined = twoSum(sum, x);
    sum = joined.high;
    errors += joined.low;
  }
  return twoSum(checked::finite(sum), errors);
}

}  // namespace zelkova
