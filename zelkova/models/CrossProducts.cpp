#include "zelkova/models/CrossProducts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/matrixSet.h"

namespace zelkova {

namespace {

/// A column and the halves of its elements.
struct SplitColumn {
  explicit SplitColumn(Column column) : values(column), high(column.size()), low(column.size()) {
    for (std::size_t i = 0; i < column.size(); ++i) {
      const DoubleDouble half = halves(column[i]);
      high[i] = half.high;
      low[i] = half.low;
    }
  }

  Column values;
  std::vector<double> high, low;
};

/// The inner product in twice a double's precision (Ogita, Rump and Oishi, SIAM J. Sci. Comput. 26, 2005).
DoubleDouble innerProduct(const SplitColumn& a, const SplitColumn& b) {
  double sum = 0;
  double errors = 0;
  for (std::size_t i = 0; i < a.values.size(); ++i) {
    const DoubleDouble product =
        twoProduct(a.values[i], {a.high[i], a.low[i]}, b.values[i], {b.high[i], b.low[i]});
    const DoubleDouble joined = twoSum(sum, product.high);
    sum = joined.high;
    errors += joined.low + product.low;
  }
  return twoSum(sum, errors);
}

/// Products of long columns, some rows at a time. In each block the elements of a column are cut into a head
/// of 22 bits below the column's largest element and a tail (the slices of Ozaki et al., Numer. Algorithms
/// 59, 2012). A sum of products of heads is then free of rounding in plain arithmetic, and the products with
/// tails are so small that their rounding lies some 20 digits below the result. Columns of codes and other
/// short numbers have no tails, and cost a quarter.
class SlicedProducts {
 public:
  explicit SlicedProducts(const std::vector<Column>& columns)
      : columns_(columns),
        tailSlot_(columns.size()),
        slices_((2 * columns.size() / tile + 1) * tile * blockRows),
        sums_(columns.size() * columns.size()) {
    const std::size_t rows = columns.front().size();
    for (std::size_t first = 0; first < rows; first += blockRows) {
      const std::size_t count = std::min(blockRows, rows - first);
      cut(first, count);
      multiply(count);
      add();
    }
  }

  /// The product of columns i <= j.
  const DoubleDouble& operator()(std::size_t i, std::size_t j) const {
    return sums_[i * columns_.size() + j];
  }

 private:
  static constexpr std::size_t blockRows = 256;
  /// 22 bits twice, and 8 for the sum of 256 products, fit into the 53 of a double.
  static constexpr int headBits = 22;
  static constexpr std::size_t tile = 4;
  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  /// A slot holds a head or a tail of one column; four neighbours lie row by row in a panel.
  double* slot(std::size_t place) { return &slices_[place / tile * tile * blockRows + place % tile]; }

  /// Puts the heads into the first slots, and the tails of the columns that have any behind them.
  void cut(std::size_t first, std::size_t count) {
    slots_ = columns_.size();
    for (std::size_t j = 0; j < columns_.size(); ++j) {
      const Column x = columns_[j].subspan(first, count);
      double largest = 0;
      for (const double value : x) largest = std::max(largest, std::abs(value));
      int exponent = 0;
      std::frexp(largest, &exponent);
      const double cutter = std::ldexp(1.5, exponent + 52 - headBits);
      double* const heads = slot(j);
      double* const tails = slot(slots_);
      bool hasTail = false;
      for (std::size_t i = 0; i < count; ++i) {
        const double head = (x[i] + cutter) - cutter;
        heads[i * tile] = head;
        tails[i * tile] = x[i] - head;
        hasTail = hasTail || x[i] != head;
      }
      tailSlot_[j] = hasTail ? slots_++ : none;
    }
  }

  /// The products of all slots with each other.
  void multiply(std::size_t count) {
    const std::size_t panels = (slots_ + tile - 1) / tile;
    stride_ = panels * tile;
    blockProducts_.resize(stride_ * stride_);
    for (std::size_t p = 0; p < panels; ++p) {
      for (std::size_t q = p; q < panels; ++q) {
        const double* const a = &slices_[p * tile * blockRows];
        const double* const b = &slices_[q * tile * blockRows];
        std::array<double, tile * tile> products{};
        for (std::size_t i = 0; i < count; ++i) {
          for (std::size_t s = 0; s < tile; ++s) {
            for (std::size_t t = 0; t < tile; ++t) {
              products[s * tile + t] += a[i * tile + s] * b[i * tile + t];
            }
          }
        }
        for (std::size_t s = 0; s < tile; ++s) {
          std::copy_n(&products[s * tile], tile, &blockProducts_[(p * tile + s) * stride_ + q * tile]);
        }
      }
    }
  }

  double blockProduct(std::size_t s, std::size_t t) const {
    if (s == none || t == none) return 0;
    return blockProducts_[std::min(s, t) * stride_ + std::max(s, t)];
  }

  void add() {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      for (std::size_t j = i; j < columns_.size(); ++j) {
        const double mixed = blockProduct(i, tailSlot_[j]) + blockProduct(tailSlot_[i], j);
        DoubleDouble& sum = sums_[i * columns_.size() + j];
        sum = sum + twoSum(blockProduct(i, j), mixed + blockProduct(tailSlot_[i], tailSlot_[j]));
      }
    }
  }

  const std::vector<Column>& columns_;
  std::vector<std::size_t> tailSlot_;
  std::vector<double> slices_;
  std::vector<double> blockProducts_;
  std::vector<DoubleDouble> sums_;
  std::size_t slots_ = 0;
  std::size_t stride_ = 0;
};

}  // namespace

std::vector<Column> columnsOf(const DoubleArray& table) {
  if (!table.filled()) matrix::raiseUnusableMatrix();
  if (table.dimensions() == 1) return {table.vector()};
  std::vector<Column> columns;
  for (Index j = 1; j <= table.columns(); ++j) columns.push_back(table.column(j));
  return columns;
}

Column onlyColumnOf(const DoubleArray& table, const char* name) {
  const std::vector<Column> columns = columnsOf(table);
  if (columns.size() != 1) raise(FailureNumber::InvalidCall, std::string(name) + " must have one column");
  return columns.front();
}

CrossProducts::CrossProducts(const std::vector<Column>& columns)
    : rows_(columns.front().size()), columns_(columns.size()), products_(columns_ * columns_) {
  for (const Column& column : columns) {
    if (column.size() != rows_) matrix::raise(MatrixFailure::NotConformable);
  }
  // Ill-conditioned problems are small ones, as a rule, and those can have all digits.
  constexpr std::size_t fewProducts = 300'000;
  if (columns_ * columns_ / 2 <= fewProducts / rows_) {
    noise_ = 0x1p-95;
    const std::vector<SplitColumn> splits(columns.begin(), columns.end());
    fill([&](std::size_t i, std::size_t j) { return innerProduct(splits[i], splits[j]); });
  } else {
    noise_ = 0x1p-66;
    fill(SlicedProducts(columns));
  }
}

template <class Product>
void CrossProducts::fill(const Product& product) {
  for (std::size_t j = 0; j < columns_; ++j) {
    for (std::size_t i = 0; i <= j; ++i) {
      const DoubleDouble value = product(i, j);
      checked::finite(value.high);
      products_[i * columns_ + j] = products_[j * columns_ + i] = value;
    }
  }
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
