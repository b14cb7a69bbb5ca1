#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <set>

#include "unittests/support.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/kit/modzSort.h"
#include "zelkova/kit/order.h"

namespace zelkova {
namespace {

/// The numeric-aware comparison, as it is written down.
bool labelLess(const std::string& a, const std::string& b) {
  const auto x = numberOf(a);
  const auto y = numberOf(b);
  return x && y ? *x < *y : upperCase(a) < upperCase(b);
}

/// The quick sort as it is written down: recursive, bounds from 1, companions swapped with the key.
template <class T, class Less>
void plainQuickSort(Array<T>& a, DoubleArray& companion, Index low, Index high, Less less) {
  const T pivot = a((low + high) / 2);
  Index i = low;
  Index j = high;
  while (true) {
    while (less(a(i), pivot) && i < high) ++i;
    while (less(pivot, a(j)) && j > low) --j;
    if (i > j) break;
    std::swap(a(i), a(j));
    std::swap(companion(i), companion(j));
    ++i;
    --j;
    if (i > j) break;
  }
  if (low < j) plainQuickSort(a, companion, low, j, less);
  if (i < high) plainQuickSort(a, companion, i, high, less);
}

template <class T, class Companion, class Less>
void plainExchangeSort(Array<T>& a, Companion& companion, Less less) {
  for (Index i = 1; i <= a.rows(); ++i) {
    for (Index j = i; j <= a.rows(); ++j) {
      if (!less(a(j), a(i))) continue;
      std::swap(a(i), a(j));
      std::swap(companion(i), companion(j));
    }
  }
}

template <class T>
void turnRound(Array<T>& a) {
  std::reverse(a.vector().begin(), a.vector().end());
}

DoubleArray places(Index n) {
  DoubleArray result(n);
  std::iota(result.vector().begin(), result.vector().end(), 1.0);
  return result;
}

DoubleArray randomValues(std::mt19937& random, Index n, int levels) {
  DoubleArray result(n);
  for (double& x : result.elements()) x = static_cast<double>(random() % static_cast<unsigned>(levels)) - 3;
  return result;
}

/// Labels of which many compare equal without being the same; with `texts`, some are no numbers.
StringArray randomLabels(std::mt19937& random, Index n, const std::vector<std::string>& texts) {
  StringArray result(n);
  for (std::string& label : result.elements()) label = texts[random() % texts.size()];
  return result;
}

const std::vector<std::string> numericLabels = {"1", "1.0", " 1", "2", "10", "-3", "1E1", "0", "-0"};
const std::vector<std::string> textLabels = {"a", "A", "b", "B", "aa", "Ab", "C", "", "c"};
const std::vector<std::string> tameMix = {"1", "2", "10", "2.0", "Ctrl", "ctrl", "A"};
const std::vector<std::string> circularMix = {"9", "10", "9A", "9a", "1A", "(none)", "1", "1.0", "-", "0.5"};

// Fault: another order among equal keys than the middle-pivot quick sort leaves, in sizes above and below the
// one where counting passes take over; a part of the array that is sorted or reversed as if it were the
// whole.
TEST(QuickSort, LeavesEqualKeysAsTheRecursionDoes) {
  std::mt19937 random(7);
  for (const Index n : {1, 2, 3, 10, 100, 2000}) {
    for (const int levels : {1, 2, 7, 1000000}) {
      const DoubleArray keys = randomValues(random, n, levels);
      const Index low = n > 5 ? 3 : 1;
      const Index high = n > 5 ? n - 2 : n;
      DoubleArray expected = keys;
      DoubleArray order = places(n);
      plainQuickSort(expected, order, low, high, std::less<>());

      DoubleArray array = keys;
      DoubleArray companion = places(n);
      QuickSortD2(array, companion, low, high, true);
      EXPECT_EQ(array, expected);
      EXPECT_EQ(companion, order);

      DoubleArray second = places(n);
      companion = places(n);
      array = keys;
      QuickSortD3(array, companion, second, low, high, false);
      turnRound(expected);
      turnRound(order);
      EXPECT_EQ(array, expected);
      EXPECT_EQ(companion, order);
      EXPECT_EQ(second, order);

      array = keys;
      QuickSortD(array, low, high, false);
      EXPECT_EQ(array, expected);
    }
  }
}

// Fault: a label order that differs from the written comparison, circles included, or that never ends on
// them.
TEST(QuickSort, FollowsTheNumericAwareOrderThroughCircles) {
  std::mt19937 random(8);
  for (const auto& texts : {numericLabels, textLabels, tameMix, circularMix}) {
    for (const Index n : {1, 5, 40, 400}) {
      StringArray array = randomLabels(random, n, texts);
      StringArray expected = array;
      DoubleArray companion = places(n);
      DoubleArray order = places(n);
      plainQuickSort(expected, order, 1, n, labelLess);
      QuickSortSD(array, companion, 1, 0, true);
      EXPECT_EQ(array, expected);
      EXPECT_EQ(companion, order);
    }
  }
}

/// Keys on which the middle-pivot quick sort takes quadratic time: values are fixed only as it compares them
/// (McIlroy, A killer adversary for quicksort, 1999).
DoubleArray killerKeys(Index n) {
  DoubleArray keys(n, std::numeric_limits<double>::infinity());
  DoubleArray position = places(n);
  double next = 0;
  Index candidate = 0;
  const auto key = [&](double i) -> double& { return keys(static_cast<Index>(i)); };
  const auto less = [&](double a, double b) {
    if (key(a) == key(b)) key(static_cast<Index>(a) == candidate ? a : b) = next++;
    if (std::isinf(key(a))) candidate = static_cast<Index>(a);
    if (std::isinf(key(b))) candidate = static_cast<Index>(b);
    return a != b && key(a) < key(b);
  };
  DoubleArray unused(n);
  plainQuickSort(position, unused, 1, n, less);
  std::replace_if(
      keys.vector().begin(), keys.vector().end(), [](double x) { return std::isinf(x); }, next);
  return keys;
}

// Fault: quadratic time, or a wrong result, on a pattern that defeats the middle pivot.
TEST(QuickSort, FinishesPatternsThatDefeatThePivot) {
  const Index n = 8000;
  DoubleArray keys = killerKeys(n);
  const double largest = *std::max_element(keys.vector().begin(), keys.vector().end());
  for (double& x : keys.elements()) x = std::min(x, largest - 1);  // a tie, so that the steps show
  std::vector<order::Row> rows = order::rowsOf(keys.vector());
  EXPECT_FALSE(order::quickSortSteps(std::span(rows),
                                     [](const order::Row& a, const order::Row& b) { return a.key < b.key; }));

  DoubleArray sorted = keys;
  DoubleArray companion = places(n);
  QuickSortD2(sorted, companion);
  EXPECT_TRUE(std::is_sorted(sorted.vector().begin(), sorted.vector().end()));
  for (Index i = 1; i <= n; ++i) ASSERT_EQ(sorted(i), keys(static_cast<Index>(companion(i))));
}

// Fault: another order among equal keys than comparing and swapping all pairs leaves.
TEST(ExchangeSort, LeavesEqualKeysAsThePairwiseSwapsDo) {
  std::mt19937 random(9);
  for (const Index n : {1, 2, 5, 17, 120, 1700}) {
    for (const int levels : {1, 2, 4, 60}) {
      for (const bool ascending : {true, false}) {
        const DoubleArray keys = randomValues(random, n, levels);
        DoubleArray expected = keys;
        DoubleArray order = places(n);
        const auto less = [&](double a, double b) { return ascending ? a < b : b < a; };
        plainExchangeSort(expected, order, less);

        DoubleArray array = keys;
        DoubleArray companion = places(n);
        DoubleArray second = places(n);
        ExchangeSortD3(array, companion, second, ascending);
        EXPECT_EQ(array, expected);
        EXPECT_EQ(companion, order);
        EXPECT_EQ(second, order);

        array = keys;
        ExchangeSortD(array, ascending);
        EXPECT_EQ(array, expected);
      }
    }
  }
  for (const auto& texts : {numericLabels, textLabels, tameMix, circularMix}) {
    for (const bool ascending : {true, false}) {
      StringArray array = randomLabels(random, 60, texts);
      StringArray expected = array;
      DoubleArray unused(60);
      plainExchangeSort(expected, unused, [&](const std::string& a, const std::string& b) {
        return ascending ? labelLess(a, b) : labelLess(b, a);
      });
      ExchangeSortS(array, ascending);
      EXPECT_EQ(array, expected);
    }
  }
}

// Fault: labels sorted as plain texts; a text companion left behind.
TEST(ExchangeSort, OrdersLevelsAsPeopleDo) {
  StringArray numbers{"10", "2", "1"};
  StringArray letters{"C", "A", "b"};
  ExchangeSortS(numbers);
  ExchangeSortS(letters);
  EXPECT_EQ(numbers, (StringArray{"1", "2", "10"}));
  EXPECT_EQ(letters, (StringArray{"A", "b", "C"}));
  DoubleArray effects{3, -1, 2};
  StringArray terms{"A", "B", "AB"};
  ExchangeSortDS(effects, terms, false);
  EXPECT_EQ(terms, (StringArray{"A", "AB", "B"}));
}

// Fault: counting passes that miss digits: keys of one octave, of all sizes and signs, and with one stray
// among many that share their leading digits.
TEST(Sorts, OrderKeysOfEverySpread) {
  std::mt19937_64 random(11);
  const auto anyBits = [&] { return std::bit_cast<double>(random() & ~(std::uint64_t{1} << 62)); };
  const auto unit = [&] { return 1 + std::ldexp(static_cast<double>(random() >> 12), -52); };
  const auto near = [&] {
    return random() % 1000 == 0 ? -1e300 : 1 + std::ldexp(static_cast<double>(random() % 4096), -52);
  };
  for (const std::function<double()>& draw :
       std::initializer_list<std::function<double()>>{anyBits, unit, near}) {
    DoubleArray keys(20000);
    for (double& x : keys.elements()) x = draw();
    std::vector<double> expected(keys.vector().begin(), keys.vector().end());
    std::sort(expected.begin(), expected.end());
    DoubleArray sorted = keys;
    QuickSortD(sorted);
    EXPECT_EQ(sorted, DoubleArray(expected));
    std::vector<order::Row> rows = order::rowsOf(keys.vector());
    order::stableSort(rows);
    EXPECT_TRUE(std::is_sorted(rows.begin(), rows.end(), [](const order::Row& a, const order::Row& b) {
      return std::pair(a.key, a.place) < std::pair(b.key, b.place);
    }));
  }
}

// Fault: a data-sized list in quadratic time, which here would take minutes; a key that is no number.
TEST(Sorts, TakeDataSizedListsAndStrayKeys) {
  std::mt19937 random(10);
  const Index n = 300'000;
  DoubleArray array = randomValues(random, n, 1000);
  StringArray companion(n, "x");
  ExchangeSortDS(array, companion);
  EXPECT_TRUE(std::is_sorted(array.vector().begin(), array.vector().end()));
  StringArray labels = randomLabels(random, n, circularMix);
  std::multiset<std::string> before(labels.elements().begin(), labels.elements().end());
  ExchangeSortS(labels);
  EXPECT_EQ(std::multiset<std::string>(labels.elements().begin(), labels.elements().end()), before);
  const auto isText = [](const std::string& label) { return !numberOf(label); };
  const auto firstText = std::find_if(labels.elements().begin(), labels.elements().end(), isText);
  EXPECT_TRUE(std::all_of(firstText, labels.elements().end(), isText));
  EXPECT_TRUE(
      std::is_sorted(labels.elements().begin(), firstText,
                     [](const std::string& a, const std::string& b) { return toNumber(a) < toNumber(b); }));
  DoubleArray stray{2, std::nan(""), 1, std::numeric_limits<double>::infinity(), -0.0};
  DoubleArray moved = places(5);
  QuickSortD2(stray, moved);
  EXPECT_EQ(stray(1), 0);
  QuickSortD(moved);
  EXPECT_EQ(moved, places(5));
}

// Fault: a range or a companion that is followed past its end, or an array half sorted by then.
TEST(Sorts, RefuseWhatDoesNotFit) {
  DoubleArray never;
  DoubleArray array{3, 1, 2};
  DoubleArray brief{1, 2};
  StringArray texts{"b", "a"};
  for (const auto& call : std::initializer_list<std::function<void()>>{
           [&] { QuickSortD(never); }, [&] { QuickSortD(array, 0, 2); }, [&] { QuickSortD(array, 1, 4); },
           [&] { QuickSortD(array, -1, -1); }, [&] { QuickSortD2(array, brief); },
           [&] { QuickSortSD(texts, never); }, [&] { ExchangeSortDS(array, texts); },
           [&] { ExchangeSortD3(array, array, brief); }}) {
    EXPECT_EQ(failureNumber(call), 9);
  }
  EXPECT_EQ(array, (DoubleArray{3, 1, 2}));
}

}  // namespace
}  // namespace zelkova
