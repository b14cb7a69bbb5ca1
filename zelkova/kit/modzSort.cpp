#include "zelkova/kit/modzSort.h"

#include <algorithm>

#include "zelkova/kit/labelOrder.h"
#include "zelkova/kit/order.h"

namespace zelkova {

namespace {

/// The elements from `low` to `high` of an array, from 0, after the check of both bounds.
struct Range {
  std::size_t first;
  std::size_t count;
};

Range rangeOf(Index n, Index low, Index high) {
  if (high == 0) return {0, static_cast<std::size_t>(n)};
  if (low < 1 || high < 1 || low > n || high > n) raise(FailureNumber::OutOfRange);
  return {static_cast<std::size_t>(low - 1), static_cast<std::size_t>(std::max<Index>(high - low + 1, 0))};
}

template <class T>
std::span<T> companionOf(Array<T>& companion, Index n) {
  if (companion.vector().size() < static_cast<std::size_t>(n)) raise(FailureNumber::OutOfRange);
  return companion.vector().first(static_cast<std::size_t>(n));
}

/// Puts the range of each array into the order of `rows`, then turns the arrays round for descending order.
template <class... T>
void rearrange(const std::vector<order::Row>& rows, Range range, bool ascending, std::span<T>... arrays) {
  (order::apply(rows, arrays.subspan(range.first, range.count)), ...);
  if (!ascending) (std::reverse(arrays.begin(), arrays.end()), ...);
}

template <class... Companion>
void quickSort(DoubleArray& array, Index low, Index high, bool ascending, Companion&... companions) {
  const Index n = array.rows();
  const Range range = rangeOf(n, low, high);
  std::vector<order::Row> rows = order::rowsOf(array.vector().subspan(range.first, range.count));
  const auto moveAlong = [&](auto... spans) {
    order::quickSort(rows);
    rearrange(rows, range, ascending, array.vector(), spans...);
  };
  moveAlong(companionOf(companions, n)...);
}

template <class... Companion>
void exchangeSort(DoubleArray& array, bool ascending, Companion&... companions) {
  std::vector<order::Row> rows = order::rowsOf(array.vector());
  // Descending order is this sort's own comparison turned round, not a reversal at the end.
  if (!ascending) {
    for (order::Row& row : rows) row.key = ~row.key;
  }
  const auto moveAlong = [&](auto... spans) {
    order::exchangeSort(rows);
    (order::apply(rows, spans), ...);
  };
  moveAlong(array.vector(), companionOf(companions, array.rows())...);
}

std::vector<order::Row> rowsInOrder(const std::vector<order::Label>& labels) {
  std::vector<order::Row> rows;
  rows.reserve(labels.size());
  for (const order::Label& label : labels) rows.push_back({0, label.place});
  return rows;
}

/// The order of a list that mixes numbers and texts in circles.
std::vector<order::Row> quickSortMixed(std::vector<order::Label> labels) {
  std::vector<order::Label> steps = labels;
  if (order::quickSortSteps(std::span(steps), order::less)) return rowsInOrder(steps);
  order::sortNumbersFirst(labels);
  return rowsInOrder(labels);
}

/// The order of a list that mixes numbers and texts in circles. Deliberate: a list that is no longer one of
/// levels gets the numbers first and then the texts, which takes a bounded time.
std::vector<order::Row> exchangeSortMixed(std::vector<order::Label> labels, bool ascending) {
  constexpr std::size_t longestList = 5000;
  if (labels.size() <= longestList) {
    order::exchangeSortSteps(std::span(labels), [ascending](const order::Label& a, const order::Label& b) {
      return ascending ? order::less(a, b) : order::less(b, a);
    });
    return rowsInOrder(labels);
  }
  order::sortNumbersFirst(labels);
  if (!ascending) std::reverse(labels.begin(), labels.end());
  return rowsInOrder(labels);
}

}  // namespace

void QuickSortD(DoubleArray& array, Index low, Index high, bool ascending) {
  const Range range = rangeOf(array.rows(), low, high);
  order::sortValues(array.vector().subspan(range.first, range.count));
  if (!ascending) std::reverse(array.vector().begin(), array.vector().end());
}

void QuickSortD2(DoubleArray& array, DoubleArray& companion, Index low, Index high, bool ascending) {
  quickSort(array, low, high, ascending, companion);
}

void QuickSortD3(DoubleArray& array, DoubleArray& companion1, DoubleArray& companion2, Index low, Index high,
                 bool ascending) {
  quickSort(array, low, high, ascending, companion1, companion2);
}

void QuickSortSD(StringArray& array, DoubleArray& companion, Index low, Index high, bool ascending) {
  const Range range = rangeOf(array.rows(), low, high);
  const std::span<double> moved = companionOf(companion, array.rows());
  std::vector<order::Label> labels = order::labelsOf(array.vector().subspan(range.first, range.count));
  std::optional<std::vector<order::Row>> rows = order::rowsOf(labels);
  if (rows) {
    order::quickSort(*rows);
  } else {
    rows = quickSortMixed(std::move(labels));
  }
  rearrange(*rows, range, ascending, array.vector(), moved);
}

void ExchangeSortD(DoubleArray& array, bool ascending) { QuickSortD(array, 1, 0, ascending); }

void ExchangeSortS(StringArray& array, bool ascending) {
  std::vector<order::Label> labels = order::labelsOf(array.vector());
  std::optional<std::vector<order::Row>> rows = order::rowsOf(labels);
  if (rows) {
    if (!ascending) {
      for (order::Row& row : *rows) row.key = ~row.key;
    }
    order::exchangeSort(*rows);
  } else {
    rows = exchangeSortMixed(std::move(labels), ascending);
  }
  order::apply(*rows, array.vector());
}

void ExchangeSortDS(DoubleArray& array, StringArray& companion, bool ascending) {
  exchangeSort(array, ascending, companion);
}

void ExchangeSortD3(DoubleArray& array, DoubleArray& companion1, DoubleArray& companion2, bool ascending) {
  exchangeSort(array, ascending, companion1, companion2);
}

}  // namespace zelkova
