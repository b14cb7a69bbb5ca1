#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/kit/binCounts.h"
#include "zelkova/kit/modzSort.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/modzSupport.h"

namespace zelkova {
namespace {

// Fault: labels that are told apart by value instead of by text, or a result out of the order of appearance;
// a table that loses levels as it grows.
TEST(Unique, KeepsTheOrderOfAppearance) {
  StringArray labels;
  GetUniqueS({"b", "a", "A", "1", "b", "1.0", ""}, labels);
  EXPECT_EQ(labels, (StringArray{"b", "a", "A", "1", "1.0", ""}));
  DoubleArray values;
  GetUniqueD({3, -0.0, 1, 0, 3}, values);
  EXPECT_EQ(values, (DoubleArray{3, 0, 1}));
  DoubleArray many(20000);
  for (Index i = 1; i <= 20000; ++i) many(i) = static_cast<double>((i * 7919) % 9973);
  GetUniqueD(many, values);
  EXPECT_EQ(values, DoubleArray(std::vector<double>(many.vector().begin(), many.vector().begin() + 9973)));
  EXPECT_EQ(failureNumber([&] { GetUniqueD(DoubleArray(), values); }), 9);
  EXPECT_TRUE(IsFilledD(values));
  EXPECT_FALSE(IsFilledS(StringArray()));
}

// Fault: ties not averaged, or averaged over the wrong places. rank(c(3, 1, 3, 2, 2, 2, 5)) of R.
TEST(Ranks, AverageTiesOrFollowTheSort) {
  DoubleArray ranks;
  GetRanks({3, 1, 3, 2, 2, 2, 5}, ranks, true);
  EXPECT_EQ(ranks, (DoubleArray{5.5, 1, 5.5, 3, 3, 3, 7}));

  std::mt19937 random(2);
  for (const Index n : {1, 30, 3000}) {
    DoubleArray data(n);
    for (double& x : data.elements()) x = static_cast<double>(random() % 50) - 20.5;
    // Twice the average rank of x is the number of values below it, plus that of values not above it, plus 1.
    GetRanks(data, ranks, true);
    for (Index i = 1; i <= n; ++i) {
      const auto count = [&](auto keeps) {
        return static_cast<double>(std::count_if(data.vector().begin(), data.vector().end(), keeps));
      };
      const double below = count([&](double x) { return x < data(i); });
      const double notAbove = count([&](double x) { return x <= data(i); });
      ASSERT_EQ(2 * ranks(i), below + notAbove + 1);
    }

    DoubleArray sorted = data;
    DoubleArray places(n);
    for (Index i = 1; i <= n; ++i) places(i) = static_cast<double>(i);
    QuickSortD2(sorted, places);
    GetRanks(data, ranks, false);
    for (Index i = 1; i <= n; ++i) ASSERT_EQ(ranks(static_cast<Index>(places(i))), static_cast<double>(i));
  }
}

// Fault: an empty cell that passes because every level of each factor is equally frequent; a condition that
// is tested though its flag is off.
TEST(Balance, LooksAtEveryCell) {
  const DoubleArray four{1, 2, 3, 4};
  const StringArray halves{"a", "a", "b", "b"};
  EXPECT_FALSE(IsBalanced(four, halves, halves, true, false));
  EXPECT_TRUE(IsBalanced(four, halves, {"x", "y", "x", "y"}, true, false));
  EXPECT_FALSE(IsBalancedS(halves, halves, {"x", "y", "x", "y"}, false, true));
  EXPECT_TRUE(IsBalanced(four, {"a", "b", "c", "d"}, halves, false, false));
  EXPECT_EQ(failureNumber([&] { IsBalanced(four, halves, {"x", "y"}, true, false); }), 9);
  // Levels as frequent as they should be, but the cells are not: 3 and 1 rows, 1 and 3 rows.
  EXPECT_FALSE(IsBalanced(DoubleArray(8), {"a", "a", "a", "a", "b", "b", "b", "b"},
                          {"x", "x", "x", "y", "x", "y", "y", "y"}, true, false));
  EXPECT_TRUE(IsBalanced(DoubleArray(8), {"a", "a", "a", "a", "b", "b", "b", "b"},
                         {"x", "x", "y", "y", "x", "y", "x", "y"}, true, true));
}

// Fault: arguments that are no whole numbers taken for such, signs that show, a result past a small integer.
TEST(GreatestCommonDivisor, ChecksItsArguments) {
  const Variant notNumeric = "ERROR: Invalid numeric argument(s)";
  const Variant zero = "ERROR: Argument(s) must be non-zero";
  EXPECT_EQ(GetGCD(48.0, -18.0), Variant(6.0));
  EXPECT_EQ(GetGCD("17", " 5 "), Variant(1.0));
  EXPECT_EQ(GetGCD(7.0, 7.0), Variant(7.0));
  for (const Variant& bad : {Variant("x"), Variant(2.5), Variant("4.0"), Variant(), Variant("1E-05")}) {
    EXPECT_EQ(GetGCD(bad, 4.0), notNumeric);
    EXPECT_EQ(GetGCD(0.0, bad), notNumeric);
  }
  EXPECT_EQ(GetGCD(4.0, 0.0), zero);
  EXPECT_EQ(failureNumber([] { GetGCD(65536.0, 131072.0); }), 6);
}

using ScalesTest = WithHost;

/// `n` values: `smallest`, `largest` and further ones of `smallest` between them.
DoubleArray spread(Index n, double smallest, double largest) {
  DoubleArray data(n, smallest);
  data(n) = largest;
  return data;
}

// Fault: another width or another first midpoint than the rule gives. Worked by hand: the target is 13 for
// n = 100, 5 for n = 4, 6 for n = 8.
TEST_F(ScalesTest, HistogramBinsFollowTheRule) {
  const struct {
    DoubleArray data;
    std::vector<double> midpoints;
  } cases[] = {
      {{3, 3, 3}, {3}},
      // 914/13 = 70: widths 10 to 100; 100 gives 9.1 intervals, 50 gives 18.3.
      {spread(100, 456, 1370), {500, 600, 700, 800, 900, 1000, 1100, 1200, 1300, 1400}},
      // 0.095/5: widths 0.01 to 0.1; 0.02 gives 4.75 intervals.
      {spread(4, 0.02, 0.115), {0.02, 0.04, 0.06, 0.08, 0.1, 0.12}},
      // 10 gives 4 intervals, 5 gives 8: equally near to 6, the wider stays.
      {spread(8, 0, 40), {0, 10, 20, 30, 40}},
      {spread(8, -25, 15), {-30, -20, -10, 0, 10}},
      // Whole numbers are not split, however many of them there are: no width from 0.01 to 0.1 will do.
      {spread(1000, 0, 1), {0, 1}},
      // The width 2.5 gives 4.8 intervals, nearest to 5, but is no whole number: 2 gives 6.
      {spread(4, 0, 12), {0, 2, 4, 6, 8, 10, 12}},
      // The target is 9: 0.1 gives 6 intervals and 0.05 gives 12, equally near but for the rounding of
      // 0.6/0.1.
      {spread(30, 0, 0.6), {0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6}},
      {spread(4, 0, 11.25), {0, 2.5, 5, 7.5, 10}},
  };
  for (const auto& [data, midpoints] : cases) {
    const DoubleArray bins = GetHistogramBins(data);
    ASSERT_EQ(bins.rows(), static_cast<Index>(midpoints.size())) << data(data.rows());
    for (Index i = 1; i <= bins.rows(); ++i) {
      EXPECT_NEAR(bins(i), midpoints[static_cast<std::size_t>(i - 1)], 1e-12);
    }
  }
}

// Fault: a hang, an infinity, or intervals that leave data out, at the ends of the range of a double or where
// the widest candidate just misses the target.
TEST_F(ScalesTest, HistogramBinsHoldTheDataOrFail) {
  for (const auto& [n, smallest, largest] :
       std::initializer_list<std::tuple<Index, double, double>>{{5, 0, 1e-300},
                                                                {5, 0, 1e300},
                                                                {50, -1e307, 1e307},
                                                                {50000, 0, 9.2},
                                                                {50000, -3.7, 5.513},
                                                                {1000000, 1e-5, 99.5},
                                                                {20, -7e-8, -6e-8},
                                                                {3, 1e15, 1e15 + 3}}) {
    const DoubleArray bins = GetHistogramBins(spread(n, smallest, largest));
    const double half = (bins(2) - bins(1)) / 2;
    EXPECT_LE(bins(1) - half, smallest);
    EXPECT_GE(bins(bins.rows()) + half, largest);
    EXPECT_LE(bins.rows(), 100);
  }
  EXPECT_EQ(failureNumber([] { GetHistogramBins({-1e308, 1e308}); }), 6);
  EXPECT_EQ(failureNumber([] { GetHistogramBins({0, 1e-310}); }), 6);
  // Data next to each other in doubles, with an even and an odd last place.
  EXPECT_EQ(failureNumber([] { GetHistogramBins({1e16, 1e16 + 2}); }), 5);
  EXPECT_EQ(failureNumber([] { GetHistogramBins({9007199254740994, 9007199254740998}); }), 5);
  EXPECT_EQ(failureNumber([] { GetHistogramBins({-1.79e308, -1e308}); }), 6);
  EXPECT_EQ(failureNumber([] { GetHistogramBins({1, std::nan(""), 2}); }), 6);
  EXPECT_EQ(failureNumber([] { GetHistogramBins(DoubleArray()); }), 9);
}

// Fault: a value on a boundary in the lower interval; a search that misses an interval at some number of
// them. Expected: by hand.
TEST(BinCounts, GiveBoundariesToTheUpperInterval) {
  std::vector<double> midpoints, values, expected;
  for (double n = 1; n <= 20; ++n) {
    midpoints.push_back(n * n);
    values.insert(values.end(), static_cast<std::size_t>(n), n * n - n + 0.5);
    expected.push_back(n);
    EXPECT_EQ(binCounts(midpoints, values), expected);
  }
  EXPECT_EQ(failureNumber([&] { binCounts(std::vector<double>{2, 1}, values); }), 5);
  EXPECT_EQ(failureNumber([&] { binCounts(std::vector<double>{-1e308, 1e308}, values); }), 6);
  EXPECT_EQ(failureNumber([&] { binCounts({}, values); }), 9);
}

// Fault: an axis that leaves data out, has too few or too many steps, or steps that nobody can read; a zero
// that falls off.
TEST_F(ScalesTest, AxisScalesCoverTheDataInReadableSteps) {
  EXPECT_EQ(GetAxisScale({456, 1370}, false),
            (DoubleArray{400, 500, 600, 700, 800, 900, 1000, 1100, 1200, 1300, 1400}));
  EXPECT_EQ(GetAxisScale({0.12, 0.61}, true), (DoubleArray{0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7}));

  std::mt19937 random(6);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<DoubleArray> columns{{5, 5},           {0, 0},           {-3e-7, -3e-7},  {1e-310, 2e-310},
                                   {1e300, 3e300},   {1e16, 1e16 + 2}, {0.3, 0.1, 0.2}, {-1e-300, 1e-300},
                                   {1, 1 + 2.3e-13}, {1, 1 + 2.3e-12}};
  for (int round = 0; round < 300; ++round) {
    const double scale = std::pow(10, 100 * uniform(random));
    columns.push_back({scale * uniform(random), scale * uniform(random)});
  }
  for (const DoubleArray& data : columns) {
    for (const bool keepZero : {false, true}) {
      const DoubleArray axis = GetAxisScale(data, keepZero);
      const Index n = axis.rows();
      EXPECT_LE(axis(1), keepZero ? std::min(0.0, GetMin(data)) : GetMin(data));
      EXPECT_GE(axis(n), keepZero ? std::max(0.0, GetMax(data)) : GetMax(data));
      EXPECT_GE(n, 5);
      EXPECT_LE(n, 11);
      const double step = (axis(n) - axis(1)) / static_cast<double>(n - 1);
      const double leading = step / std::pow(10, std::floor(std::log10(step) + 1e-9));
      EXPECT_LT(std::min({std::abs(leading - 1), std::abs(leading - 2), std::abs(leading - 2.5),
                          std::abs(leading - 5)}),
                1e-6)
          << step;
      const double resolution = 4e-16 * std::max(std::abs(axis(1)), std::abs(axis(n)));
      for (Index i = 2; i <= n; ++i) EXPECT_NEAR(axis(i) - axis(i - 1), step, 1e-6 * step + resolution);
    }
  }
  EXPECT_EQ(failureNumber([] { GetAxisScale({-1e308, 1e308}, false); }), 6);
}

}  // namespace
}  // namespace zelkova
