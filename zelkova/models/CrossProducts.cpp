#include "zelkova/models/CrossProducts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/matrixSet.h"

namespace zelkova {

namespace {

/// The products of columns, some rows at a time. In each block the elements of a column are cut into slices:
/// the first holds 22 bits below the column's largest element, the next 22 more, the last what is left
/// (Ozaki, Ogita, Oishi and Rump, Numerical Algorithms 59, 2012). Products of all but the last slices then
/// sum up without rounding in plain arithmetic, and those of the last are small. Codes and other short
/// numbers have a first slice only, and cost accordingly.
class SlicedProducts {
 public:
  SlicedProducts(const std::vector<Column>& columns, std::size_t slices)
      : columns_(columns),
        slots_(columns.size(), std::vector<std::size_t>(slices, none)),
        elements_((slices * columns.size() / tile + 1) * tile * blockRows),
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

  /// A bound of the rounding in a product, relative to the lengths of its columns.
  static double noise(std::size_t slices) {
    constexpr double ofDoubleDouble = 0x1p-98;
    return std::max(ofDoubleDouble, std::ldexp(1.0, -44 - bitsOfSlice * (static_cast<int>(slices) - 1)));
  }

 private:
  static constexpr std::size_t blockRows = 256;
  /// 22 bits twice, and 8 for the sum of 256 products, fit into the 53 of a double.
  static constexpr int bitsOfSlice = 22;
  static constexpr std::size_t tile = 4;
  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  /// A slot holds one slice of one column; four neighbours lie row by row in a panel.
  double* slot(std::size_t place) { return &elements_[place / tile * tile * blockRows + place % tile]; }

  /// Gives a slot to every slice that is not 0 throughout.
  void cut(std::size_t first, std::size_t count) {
    usedSlots_ = 0;
    std::array<double, blockRows> rest{};
    for (std::size_t j = 0; j < columns_.size(); ++j) {
      const Column x = columns_[j].subspan(first, count);
      std::copy(x.begin(), x.end(), rest.begin());
      double largest = 0;
      for (const double value : x) largest = std::max(largest, std::abs(value));
      int exponent = 0;
      std::frexp(largest, &exponent);
      for (std::size_t s = 0; s < slots_[j].size(); ++s) {
        exponent -= bitsOfSlice;
        // Adding and taking away a number whose last bit is that of the slice rounds to it.
        const bool isLast = s + 1 == slots_[j].size();
        const double cutter = isLast ? 0 : std::ldexp(1.5, exponent + 52);
        double* const slice = slot(usedSlots_);
        bool isZero = true;
        for (std::size_t i = 0; i < count; ++i) {
          const double part = (rest[i] + cutter) - cutter;
          slice[i * tile] = part;
          rest[i] -= part;
          isZero = isZero && part == 0;
        }
        slots_[j][s] = isZero ? none : usedSlots_++;
      }
    }
  }

  /// The products of all slots with each other.
  void multiply(std::size_t count) {
    const std::size_t panels = (usedSlots_ + tile - 1) / tile;
    stride_ = panels * tile;
    blockProducts_.resize(stride_ * stride_);
    for (std::size_t p = 0; p < panels; ++p) {
      for (std::size_t q = p; q < panels; ++q) {
        const double* const a = &elements_[p * tile * blockRows];
        const double* const b = &elements_[q * tile * blockRows];
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

  double blockProduct(std::size_t a, std::size_t b) const {
    if (a == none || b == none) return 0;
    return blockProducts_[std::min(a, b) * stride_ + std::max(a, b)];
  }

  void add() {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      for (std::size_t j = i; j < columns_.size(); ++j) {
        DoubleDouble& sum = sums_[i * columns_.size() + j];
        for (std::size_t s = 0; s < slots_[i].size(); ++s) {
          sum = sum + DoubleDouble{blockProduct(slots_[i][s], slots_[j][s])};
          for (std::size_t t = s + 1; t < slots_[i].size(); ++t) {
            // In pairs, so that equal columns have equal products whichever of them stands first.
            sum = sum +
                  twoSum(blockProduct(slots_[i][s], slots_[j][t]), blockProduct(slots_[i][t], slots_[j][s]));
          }
        }
      }
    }
  }

  const std::vector<Column>& columns_;
  std::vector<std::vector<std::size_t>> slots_;
  std::vector<double> elements_;
  std::vector<double> blockProducts_;
  std::vector<DoubleDouble> sums_;
  std::size_t usedSlots_ = 0;
  std::size_t stride_ = 0;
};

/// How far the differences that a regression takes of these products cancel: the smallest share of a column's
/// squares that is left about its fit on the columns before it.
double smallestShare(const CrossProducts& products) {
  const std::size_t count = products.columns();
  std::vector<double> rest(count * count);
  for (std::size_t k = 0; k < count; ++k) {
    for (std::size_t i = k; i < count; ++i) rest[k * count + i] = products(i, k).rounded();
  }
  double smallest = 1;
  for (std::size_t k = 0; k < count; ++k) {
    const double* const source = &rest[k * count];
    const double whole = products(k, k).rounded();
    if (!(source[k] > 0)) return 0;
    smallest = std::min(smallest, source[k] / whole);
    for (std::size_t j = k + 1; j < count; ++j) {
      const double factor = source[j] / source[k];
      for (std::size_t i = j; i < count; ++i) rest[j * count + i] -= factor * source[i];
    }
  }
  return smallest;
}

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
  // Two slices serve unless ten digits beyond the cancellation are in doubt; four leave nothing to wish for.
  form(columns, 2);
  if (smallestShare(*this) < 1E+10 * noise_) form(columns, 4);
}

void CrossProducts::form(const std::vector<Column>& columns, std::size_t slices) {
  const SlicedProducts sliced(columns, slices);
  noise_ = SlicedProducts::noise(slices);
  for (std::size_t j = 0; j < columns_; ++j) {
    for (std::size_t i = 0; i <= j; ++i) {
      checked::finite(sliced(i, j).high);
      products_[i * columns_ + j] = products_[j * columns_ + i] = sliced(i, j);
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
