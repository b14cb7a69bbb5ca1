#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "zelkova/frame/Failure.h"

namespace zelkova {

/// Counts and subscripts. Signed, so that n - 1 of an n of 0 is -1.
using Index = std::ptrdiff_t;

/// A run-time sized array of one or two dimensions, each based at 1; tables are stored column by column.
///
/// An array that was never filled has 0 dimensions; asking it for a bound or an element raises failure 9.
/// An array without elements is the same thing: there is no filled array of size 0.
template <class T>
class Array {
 public:
  using value_type = T;

  Array() = default;
  Array(const Array&) = default;
  Array& operator=(const Array&) = default;
  ~Array() = default;

  /// An array that was moved from is one that was never filled.
  Array(Array&& other) noexcept
      : values_(std::exchange(other.values_, {})),
        rows_(std::exchange(other.rows_, 0)),
        columns_(std::exchange(other.columns_, 0)),
        dimensions_(std::exchange(other.dimensions_, 0)) {}
  Array& operator=(Array&& other) noexcept {
    if (this == &other) return *this;
    values_ = std::exchange(other.values_, {});
    rows_ = std::exchange(other.rows_, 0);
    columns_ = std::exchange(other.columns_, 0);
    dimensions_ = std::exchange(other.dimensions_, 0);
    return *this;
  }

  /// A vector of `n` elements; an `n` of 0 gives an array that was never filled, a negative one failure 9.
  explicit Array(Index n, const T& value = T()) : Array(n, 1, 1, value) {}

  /// A table of `rows` by `columns`.
  Array(Index rows, Index columns, const T& value) : Array(rows, columns, 2, value) {}

  Array(std::initializer_list<T> values) : Array(std::vector<T>(values)) {}

  /// A vector that takes over `values`.
  explicit Array(std::vector<T> values)
      : values_(std::move(values)), rows_(static_cast<Index>(values_.size())) {
    dimensions_ = values_.empty() ? 0 : 1;
    columns_ = values_.empty() ? 0 : 1;
  }

  /// A table that takes over `values`, which stand column by column; failure 9 where they do not fill it.
  Array(Index rows, Index columns, std::vector<T> values) : Array(std::move(values)) {
    if (rows < 0 || columns < 0 || (columns > 0 && rows > size() / columns) || rows * columns != size()) {
      raise(FailureNumber::OutOfRange);
    }
    if (!filled()) return;
    rows_ = rows;
    columns_ = columns;
    dimensions_ = 2;
  }

  /// A table written row by row: `DoubleArray::table({{1, 2}, {3, 4}})`. Rows of unequal length raise
  /// failure 9.
  static Array table(std::initializer_list<std::initializer_list<T>> rows) {
    if (rows.size() == 0) return Array();
    Array result(static_cast<Index>(rows.size()), static_cast<Index>(rows.begin()->size()), T());
    Index i = 0;
    for (const auto& row : rows) {
      ++i;
      if (static_cast<Index>(row.size()) != result.columns_) raise(FailureNumber::OutOfRange);
      Index j = 0;
      for (const T& value : row) result(i, ++j) = value;
    }
    return result;
  }

  bool filled() const noexcept { return dimensions_ != 0; }

  /// 0 for an array that was never filled, else 1 or 2.
  int dimensions() const noexcept { return dimensions_; }

  /// Upper bound of the first dimension; failure 9 where the array was never filled.
  Index rows() const {
    if (dimensions_ == 0) raise(FailureNumber::OutOfRange);
    return rows_;
  }

  /// Upper bound of the second dimension; failure 9 where there is none.
  Index columns() const {
    if (dimensions_ != 2) raise(FailureNumber::OutOfRange);
    return columns_;
  }

  /// Number of elements in all; 0 where the array was never filled.
  Index size() const noexcept { return static_cast<Index>(values_.size()); }

  const T& operator()(Index i) const { return values_[vectorPlace(i)]; }
  T& operator()(Index i) { return values_[vectorPlace(i)]; }
  const T& operator()(Index i, Index j) const { return values_[tablePlace(i, j)]; }
  T& operator()(Index i, Index j) { return values_[tablePlace(i, j)]; }

  /// The elements of a vector, for loops that have checked their sizes; failure 9 where this is no vector.
  std::span<const T> vector() const {
    if (dimensions_ != 1) raise(FailureNumber::OutOfRange);
    return values_;
  }
  std::span<T> vector() {
    if (dimensions_ != 1) raise(FailureNumber::OutOfRange);
    return values_;
  }

  /// The elements of column `j` of a table.
  std::span<const T> column(Index j) const {
    return {&values_[tablePlace(1, j)], static_cast<std::size_t>(rows_)};
  }
  std::span<T> column(Index j) { return {&values_[tablePlace(1, j)], static_cast<std::size_t>(rows_)}; }

  /// Every element, a table's column by column.
  std::span<const T> elements() const noexcept { return values_; }
  std::span<T> elements() noexcept { return values_; }

  friend bool operator==(const Array&, const Array&) = default;

 private:
  Array(Index rows, Index columns, int dimensions, const T& value) {
    if (rows < 0 || columns < 0) raise(FailureNumber::OutOfRange);
    if (rows == 0 || columns == 0) return;
    if (rows > static_cast<Index>(values_.max_size()) / columns) raise(FailureNumber::Overflow);
    values_.assign(static_cast<std::size_t>(rows * columns), value);
    rows_ = rows;
    columns_ = columns;
    dimensions_ = dimensions;
  }

  std::size_t vectorPlace(Index i) const {
    if (dimensions_ != 1 || i < 1 || i > rows_) raise(FailureNumber::OutOfRange);
    return static_cast<std::size_t>(i - 1);
  }

  std::size_t tablePlace(Index i, Index j) const {
    if (dimensions_ != 2 || i < 1 || i > rows_ || j < 1 || j > columns_) raise(FailureNumber::OutOfRange);
    return static_cast<std::size_t>((j - 1) * rows_ + (i - 1));
  }

  std::vector<T> values_;
  Index rows_ = 0;
  Index columns_ = 0;
  int dimensions_ = 0;
};

using DoubleArray = Array<double>;
using StringArray = Array<std::string>;

}  // namespace zelkova
