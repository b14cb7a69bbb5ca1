#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "zelkova/frame/Array.h"

/// What the sorts, the ranks and the quantiles are made of: rows reduced to a whole-number key and a place.
namespace zelkova::order {

using Key = std::uint64_t;

/// A row of a column that is to be ordered: its key, and where it stood, from 0.
struct Row {
  Key key;
  Index place;
};

/// The bits of a double as a whole number that orders as the double does; -0 comes before 0.
inline Key orderedBits(double x) {
  constexpr Key sign = Key{1} << 63;
  const Key bits = std::bit_cast<Key>(x);
  return (bits & sign) != 0 ? ~bits : bits | sign;
}

inline double fromOrderedBits(Key key) {
  constexpr Key sign = Key{1} << 63;
  return std::bit_cast<double>((key & sign) != 0 ? key & ~sign : ~key);
}

/// As `orderedBits`, but -0 and 0 have one key, since they compare equal.
inline Key keyOf(double x) { return orderedBits(x + 0.0); }

/// The rows of a column in the order they stand.
std::vector<Row> rowsOf(std::span<const double> values);

/// Sorts plain values ascending.
void sortValues(std::span<double> values);

/// Sorts rows by key, equal keys in the order they come.
void stableSort(std::vector<Row>& rows);

/// Whether any two neighbours of sorted rows have one key.
bool haveTies(const std::vector<Row>& sorted);

/// Adds each row's rank, ties averaged, to the sum that its place numbers, and returns the sum over the ties
/// of t cubed minus t (as `GetTieCube`). With the number of a group for a place these are sums of ranks,
/// exact up to some millions of rows.
double addRanks(const std::vector<Row>& sorted, std::span<double> sums);

/// The order in which the family's quick sort leaves rows that come in the order they stand.
void quickSort(std::vector<Row>& rows);

/// The order in which the family's exchange sort leaves rows that come in the order they stand.
void exchangeSort(std::vector<Row>& rows);

/// The quick sort of the family, step by step: pivot from the middle, equal keys swapped as well. The order
/// in which it leaves equal keys shows wherever companions move along. False, with the rows half sorted,
/// where it has used up its work.
///
/// Deliberate: the middle pivot takes quadratic time on some patterns (values that rise and then fall, for
/// one), so the work is bounded by 64 n log2 n comparisons; ordinary data need 2 n log2 n. Callers fall back
/// on a stable sort. Below a thousand rows the bound cannot be reached.
///
/// `less` need not be transitive: the pivot stands between the two ends, so both scans stop inside and each
/// part is smaller than the whole.
template <class T, class Less>
bool quickSortSteps(std::span<T> rows, Less less) {
  const auto n = static_cast<Index>(rows.size());
  double work = 64.0 * static_cast<double>(n) * std::bit_width(rows.size());
  const auto at = [rows](Index i) -> T& { return rows[static_cast<std::size_t>(i)]; };
  std::vector<std::pair<Index, Index>> waiting{{0, n - 1}};
  while (!waiting.empty()) {
    auto [low, high] = waiting.back();
    waiting.pop_back();
    while (low < high) {
      work -= static_cast<double>(high - low + 1);
      if (work < 0) return false;
      const T pivot = at((low + high) / 2);
      Index i = low;
      Index j = high;
      while (true) {
        while (less(at(i), pivot) && i < high) ++i;
        while (less(pivot, at(j)) && j > low) --j;
        if (i > j) break;
        std::swap(at(i), at(j));
        ++i;
        --j;
        if (i > j) break;
      }
      // The smaller part first, so that the waiting parts stay few; the result is the same.
      if (j - low < high - i) {
        waiting.emplace_back(i, high);
        high = j;
      } else {
        waiting.emplace_back(low, j);
        low = i;
      }
    }
  }
  return true;
}

/// The exchange sort of the family, step by step; quadratic, for short lists.
template <class T, class Less>
void exchangeSortSteps(std::span<T> rows, Less less) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t j = i; j < rows.size(); ++j) {
      if (less(rows[j], rows[i])) std::swap(rows[i], rows[j]);
    }
  }
}

/// Puts `values` into the order of `rows`.
template <class T>
void apply(const std::vector<Row>& rows, std::span<T> values) {
  std::vector<T> ordered;
  ordered.reserve(rows.size());
  for (const Row& row : rows) ordered.push_back(std::move(values[static_cast<std::size_t>(row.place)]));
  std::move(ordered.begin(), ordered.end(), values.begin());
}

}  // namespace zelkova::order
