#include "zelkova/kit/order.h"

#include <algorithm>
#include <array>

namespace zelkova::order {

namespace {

/// Sorts each run of rows that `same` cannot tell apart by key, stably.
template <class T, class KeyOf, class Same>
void sortRuns(std::vector<T>& rows, KeyOf key, Same same) {
  const auto less = [key](const T& a, const T& b) { return key(a) < key(b); };
  for (auto first = rows.begin(); first != rows.end();) {
    auto next = first + 1;
    bool sorted = true;
    for (; next != rows.end() && same(*first, *next); ++next) sorted = sorted && !less(*next, next[-1]);
    if (!sorted) std::stable_sort(first, next, less);
    first = next;
  }
}

/// Counting passes over the digits of the keys, counted from the smallest key on, from the lowest digit up.
/// Where the keys spread over more bits than four passes take, those sort the leading bits, which tell most
/// keys of ordinary data apart, and the few runs left are sorted by comparison.
template <class T, class KeyOf>
void radixSort(std::vector<T>& rows, KeyOf key) {
  constexpr int digitBits = 11;
  constexpr std::size_t digits = std::size_t{1} << digitBits;
  constexpr int mostPasses = 4;

  Key smallest = key(rows.front());
  Key largest = smallest;
  for (const T& row : rows) {
    smallest = std::min(smallest, key(row));
    largest = std::max(largest, key(row));
  }
  const auto bits = static_cast<int>(std::bit_width(largest - smallest));
  const int shift = std::max(0, bits - mostPasses * digitBits);
  const int passes = (bits - shift + digitBits - 1) / digitBits;
  const auto digit = [=](const T& row, int pass) {
    return static_cast<std::size_t>((key(row) - smallest) >> (shift + pass * digitBits)) & (digits - 1);
  };

  std::vector<std::array<std::size_t, digits>> counts(static_cast<std::size_t>(passes));
  for (const T& row : rows) {
    for (int pass = 0; pass < passes; ++pass) ++counts[static_cast<std::size_t>(pass)][digit(row, pass)];
  }
  std::vector<T> other(rows.size());
  for (int pass = 0; pass < passes; ++pass) {
    auto& start = counts[static_cast<std::size_t>(pass)];
    std::size_t place = 0;
    for (std::size_t& count : start) place += std::exchange(count, place);
    for (const T& row : rows) other[start[digit(row, pass)]++] = row;
    rows.swap(other);
  }
  if (shift == 0) return;
  sortRuns(rows, key, [=](const T& a, const T& b) {
    return (key(a) - smallest) >> shift == (key(b) - smallest) >> shift;
  });
}

/// From here on counting passes beat comparisons.
constexpr std::size_t radixPays = 1500;

/// Counts of places 0 to n - 1, with the sum of a leading stretch in log n steps (Fenwick, 1994).
class PrefixCounts {
 public:
  explicit PrefixCounts(Index n, Index each = 0) : sums_(static_cast<std::size_t>(n) + 1, 0) {
    for (std::size_t i = 1; i < sums_.size(); ++i) sums_[i] = each * static_cast<Index>(i & (~i + 1));
  }

  void add(Index place, Index count) {
    for (auto i = static_cast<std::size_t>(place) + 1; i < sums_.size(); i += i & (~i + 1)) sums_[i] += count;
  }

  /// How many lie before `place`.
  Index before(Index place) const {
    Index sum = 0;
    for (auto i = static_cast<std::size_t>(place); i > 0; i &= i - 1) sum += sums_[i];
    return sum;
  }

  /// The place of the count that has `rank` others before it.
  Index find(Index rank) const {
    std::size_t place = 0;
    for (std::size_t step = std::bit_floor(sums_.size()); step > 0; step /= 2) {
      if (place + step < sums_.size() && sums_[place + step] <= rank) {
        place += step;
        rank -= sums_[place];
      }
    }
    return static_cast<Index>(place);
  }

 private:
  std::vector<Index> sums_;
};

/// For each row, by place, how many rows with a smaller key come before it.
std::vector<Index> smallerBefore(const std::vector<Row>& sorted) {
  const auto n = static_cast<Index>(sorted.size());
  std::vector<Index> groupStart(sorted.size());
  std::vector<Index> sortedPlace(sorted.size());
  Index start = 0;
  for (Index i = 0; i < n; ++i) {
    const Row& row = sorted[static_cast<std::size_t>(i)];
    if (row.key != sorted[static_cast<std::size_t>(start)].key) start = i;
    groupStart[static_cast<std::size_t>(row.place)] = start;
    sortedPlace[static_cast<std::size_t>(row.place)] = i;
  }
  PrefixCounts arrived(n);
  std::vector<Index> result(sorted.size());
  for (std::size_t place = 0; place < sorted.size(); ++place) {
    result[place] = arrived.before(groupStart[place]);
    arrived.add(sortedPlace[place], 1);
  }
  return result;
}

/// Orders one group of equal keys, given in the order of arrival, as the exchange sort leaves it: the group
/// is a ring, a new row joins behind the last one, and each smaller key that arrives turns the ring by one.
/// The last arrival's final place follows from the turns after it; it is taken out, and so on backwards.
void turnRing(std::span<Row> group, Index smaller, const std::vector<Index>& smallerAt) {
  const std::vector<Row> arrivals(group.begin(), group.end());
  PrefixCounts freePlaces(static_cast<Index>(arrivals.size()), 1);
  Index head = 0;
  for (auto m = static_cast<Index>(arrivals.size()); m > 0; --m) {
    const Row& row = arrivals[static_cast<std::size_t>(m - 1)];
    const Index turns = (smaller - smallerAt[static_cast<std::size_t>(row.place)]) % m;
    smaller = smallerAt[static_cast<std::size_t>(row.place)];
    const Index last = (head - turns + 2 * m - 1) % m;
    const Index place = freePlaces.find(last);
    freePlaces.add(place, -1);
    group[static_cast<std::size_t>(place)] = row;
    head = m > 1 ? last % (m - 1) : 0;
  }
}

}  // namespace

std::vector<Row> rowsOf(std::span<const double> values) {
  std::vector<Row> rows;
  rows.reserve(values.size());
  for (const double x : values) rows.push_back({keyOf(x), static_cast<Index>(rows.size())});
  return rows;
}

void sortValues(std::span<double> values) {
  std::vector<Key> keys(values.size());
  std::transform(values.begin(), values.end(), keys.begin(), orderedBits);
  if (keys.size() < radixPays) {
    std::sort(keys.begin(), keys.end());
  } else {
    radixSort(keys, [](Key key) { return key; });
  }
  std::transform(keys.begin(), keys.end(), values.begin(), fromOrderedBits);
}

void stableSort(std::vector<Row>& rows) {
  if (rows.size() < radixPays) {
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.key < b.key; });
  } else {
    radixSort(rows, [](const Row& row) { return row.key; });
  }
}

bool haveTies(const std::vector<Row>& sorted) {
  return std::adjacent_find(sorted.begin(), sorted.end(),
                            [](const Row& a, const Row& b) { return a.key == b.key; }) != sorted.end();
}

double addRanks(const std::vector<Row>& sorted, std::span<double> sums) {
  double tieCube = 0;
  for (std::size_t first = 0, next = 0; first < sorted.size(); first = next) {
    while (next < sorted.size() && sorted[next].key == sorted[first].key) ++next;
    const double rank = static_cast<double>(first + 1 + next) / 2;
    for (std::size_t i = first; i < next; ++i) sums[static_cast<std::size_t>(sorted[i].place)] += rank;
    const auto t = static_cast<double>(next - first);
    tieCube += t * t * t - t;
  }
  return tieCube;
}

void quickSort(std::vector<Row>& rows) {
  std::vector<Row> sorted = rows;
  stableSort(sorted);
  // Without ties every sort gives the same order.
  if (!haveTies(sorted) ||
      !quickSortSteps(std::span(rows), [](const Row& a, const Row& b) { return a.key < b.key; })) {
    rows = std::move(sorted);
  }
}

void exchangeSort(std::vector<Row>& rows) {
  stableSort(rows);
  if (!haveTies(rows)) return;
  const std::vector<Index> smallerAt = smallerBefore(rows);
  for (std::size_t first = 0, next = 0; first < rows.size(); first = next) {
    while (next < rows.size() && rows[next].key == rows[first].key) ++next;
    if (next - first > 1) {
      turnRing(std::span(rows).subspan(first, next - first), static_cast<Index>(first), smallerAt);
    }
  }
}

}  // namespace zelkova::order
