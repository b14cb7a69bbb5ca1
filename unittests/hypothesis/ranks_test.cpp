#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/hypothesis/yHTest.h"

namespace zelkova {
namespace {

// Breaks of yarn (R's warpbreaks), many of them tied.
const DoubleArray breaks{26, 30, 54, 25, 70, 52, 51, 26, 67, 18, 21, 29, 17, 12, 18, 35, 30, 36,
                         36, 21, 24, 18, 10, 43, 28, 15, 26, 27, 14, 29, 19, 29, 31, 41, 20, 44,
                         42, 26, 19, 16, 39, 28, 21, 39, 29, 20, 21, 24, 17, 13, 15, 15, 16, 28};

// Annual rain of 70 cities, inches (R's precip).
const DoubleArray rain{67,   54.7, 7,    48.5, 14,   17.2, 20.7, 13,   43.4, 40.2, 38.9, 54.5, 59.8, 48.3,
                       22.9, 11.5, 34.4, 35.1, 38.7, 30.8, 30.6, 43.1, 56.8, 40.8, 41.8, 42.5, 31,   31.7,
                       30.2, 25.9, 49.2, 37,   35.9, 15,   30.2, 7.2,  36.2, 45.5, 7.8,  33.4, 36.1, 40.2,
                       42.7, 42.5, 16.2, 39,   35,   37,   31.4, 37.6, 39.9, 36.2, 42.8, 46.4, 24.7, 49.1,
                       46,   35.9, 7.8,  48.2, 15.2, 32.5, 44.7, 42.6, 38.8, 17.4, 40.8, 29.1, 14.6, 59.2};

// Insects under six sprays, 12 plots each (R's InsectSprays).
const DoubleArray insects{10, 7,  20, 14, 14, 12, 10, 23, 17, 20, 14, 13, 11, 17, 21, 11, 16, 14,
                          17, 17, 19, 21, 7,  13, 0,  1,  7,  2,  3,  1,  2,  1,  3,  0,  1,  4,
                          3,  5,  12, 6,  4,  3,  5,  5,  5,  5,  2,  4,  3,  5,  3,  5,  3,  6,
                          1,  1,  3,  2,  6,  4,  11, 9,  15, 22, 15, 16, 13, 10, 26, 26, 24, 13};

StringArray sprays() {
  StringArray labels(72);
  for (Index i = 0; i < 72; ++i) labels(i + 1) = std::string(1, static_cast<char>('A' + i / 12));
  return labels;
}

DoubleArray firstOf(const DoubleArray& data, Index n) {
  DoubleArray result(n);
  std::copy_n(data.elements().begin(), n, result.elements().begin());
  return result;
}

class TestsOnRanks : public WithHost {
 protected:
  yHTest test;
  DoubleArray result;
  DoubleArray table;
  StringArray category;
};

// Faults: values equal to the tested median ranked along; a missing tie term or continuity correction; tails
// exchanged. Expected: R, wilcox.test(x, mu, alternative, exact = FALSE), and sort() of all Walsh averages at
// the place whose 1 - 2 pnorm((d - 0.5 - M/2) / sd) is nearest to the confidence.
TEST_F(TestsOnRanks, OneWilcoxonAgreesWithR) {
  const struct {
    const DoubleArray& data;
    double tested;
    const char* alternative;
    double confidence, nonZero, w, p, estimate, achieved, lower, upper;
  } cases[] = {
      {breaks, 26, "Less than", 0.3, 50, 672, 0.632327545257702, 26.5, 0.301584167127806, 26, 27.5},
      {breaks, 26, "Greater than", 0.9, 50, 672, 0.371317315040915, 26.5, 0.899937692753349, 23.5, 29.5},
      {breaks, 26, "Not equals", 0.999, 50, 672, 0.74263463008183, 26.5, 0.998994928626956, 21, 33.5},
      {rain, 33, "Less than", 0.9, 70, 1504.5, 0.937759513504993, 35.9, 0.899919464368709, 32.7, 38.4},
      {rain, 33, "Greater than", 0.95, 70, 1504.5, 0.062961126904759, 35.9, 0.950060424221961, 31.85, 38.9},
      {rain, 33, "Not equals", 0.99, 70, 1504.5, 0.125922253809518, 35.9, 0.989974842273997, 30.5, 39.75},
      {rain, 33, "not equals", 0.95, 70, 1504.5, NoValue, 35.9, 0.950060424221961, 31.85, 38.9}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.alternative);
    test.OneWilcoxonOutput(c.data, c.tested, c.confidence, c.alternative, result);
    EXPECT_TRUE(areClose(result, {static_cast<double>(c.data.size()), c.nonZero, c.w, c.p, c.estimate,
                                  c.achieved, c.lower, c.upper, c.tested}));
  }
}

// Fault: limits from too few values, a division by zero where nothing differs, limits that have crossed.
// Expected: R as above; 4 values have no limits, since a place 0 would be nearer to 0.95 (0.955) than place 1
// (0.900).
TEST_F(TestsOnRanks, OneWilcoxonOfFewValues) {
  test.OneWilcoxonOutput(firstOf(rain, 5), 33, 0.95, "Less than", result);
  EXPECT_TRUE(isClose(result(OneWilcoxon::AchievedConfidence), 0.940941770909463));
  EXPECT_EQ(result(OneWilcoxon::Lower), 7);
  EXPECT_EQ(result(OneWilcoxon::Upper), 67);
  test.OneWilcoxonOutput(firstOf(rain, 4), 33, 0.95, "Less than", result);
  for (const auto slot : {OneWilcoxon::AchievedConfidence, OneWilcoxon::Lower, OneWilcoxon::Upper}) {
    EXPECT_EQ(result(slot), NoValue);
  }
  test.OneWilcoxonOutput({5, 5, 5, 5, 5, 5, 5}, 5, 0.95, "Less than", result);
  EXPECT_TRUE(areClose(result, {7, 0, 0, 1, 5, NoValue, NoValue, NoValue, 5}));
  EXPECT_EQ(failureNumber([&] { test.OneWilcoxonOutput(rain, 33, 1, "Less than", result); }), 1004);
  EXPECT_EQ(failureNumber([&] { test.OneWilcoxonOutput(rain, 33, -0.5, "Less than", result); }), 5);
}

// Faults: a tail off by one, the two-sided p above 1, the rows of larger and smaller coverage exchanged.
// Expected: R, binom.test(above, below + above, alternative), and the walk over 1 - 2 pbinom(j - 1, n, 0.5)
// from j = 1 upwards.
TEST_F(TestsOnRanks, OneSignAgreesWithR) {
  const struct {
    double tested;
    const char* alternative;
    double below, above, p;
  } cases[] = {{30, "Less than", 18, 52, 0.9999904001538},
               {30, "Greater than", 18, 52, 2.92477365934793e-05},
               {30, "Not equals", 18, 52, 5.84954731869587e-05},
               {35, "Less than", 28, 41, 0.954406754716494},
               {35, "Greater than", 28, 41, 0.0740160903463795},
               {35, "Not equals", 28, 41, 0.148032180692759},
               {36.6, "Not equals", 35, 35, 1},
               {35, "not equals", 28, 41, NoValue}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.alternative);
    test.OneSignOutput(rain, c.tested, 0.95, c.alternative, result);
    EXPECT_TRUE(areClose(result, {70, 36.6, c.below, c.above, c.p, c.below + c.above, 0.927762072808237, 0.95,
                                  0.958608571326085, 34.4, 33.7813840807814, 33.4, 39.9, 40.0855847757656,
                                  40.2, 28, 27, 0, c.tested}));
  }
  for (const char* alternative : {"Less than", "Greater than", "Not equals"}) {
    test.OneSignOutput({2, 2, 2}, 2, 0.5, alternative, result);
    EXPECT_EQ(result(OneSign::NonEqual), 0);
    EXPECT_EQ(result(OneSign::PValue), 1);
  }
}

// Fault: an interval made up where the data end, or one too many or too few steps to the middle. Hand
// arithmetic: of 4 values the outer pair covers 1 - 2/16, the middle two 1 - 10/16; of 3 values 1 - 2/8, and
// the middle one covers nothing.
TEST_F(TestsOnRanks, SignIntervalsAtTheEnds) {
  const auto rows = [&](const DoubleArray& data, double confidence) {
    test.OneSignOutput(data, 0, confidence, "Less than", result);
    const std::span<const double> slots = result.vector().subspan(6, 11);
    return DoubleArray(std::vector<double>(slots.begin(), slots.end()));
  };
  constexpr double none = NoValue;
  EXPECT_TRUE(areClose(rows({7, 1, 3, 2}, 0.95), {0.875, none, none, 1, none, none, 7, none, none, 1, none}));
  EXPECT_TRUE(areClose(rows({7, 1, 3, 2}, 0.25), {none, none, 0.375, none, none, 2, none, none, 3, none, 2}));
  EXPECT_TRUE(areClose(rows({7, 1, 3, 2}, 0.875), {0.375, 0.875, 0.875, 2, 1, 1, 3, 7, 7, 2, 1}));
  EXPECT_TRUE(areClose(rows({7, 1, 3, 2}, 0.375), {0.375, 0.375, 0.875, 2, 2, 1, 3, 3, 7, 2, 1}));
  // share = (0.75 - 0.25) / 0.75, lambda = 2 (2/3) / (1 + 2/3) = 0.8
  test.OneSignOutput({1, 11, 31}, 0, 0.25, "Less than", result);
  EXPECT_EQ(result(OneSign::InnerCoverage), 0);
  EXPECT_TRUE(isClose(result(OneSign::InterpolatedLower), 9));
  EXPECT_TRUE(isClose(result(OneSign::InterpolatedUpper), 15));
  // Nothing covers everything, not even where what is missing, 2 / 2^1100, is 0 in a double.
  EXPECT_TRUE(areClose(rows({7, 1, 3, 2}, 1), {0.875, none, none, 1, none, none, 7, none, none, 1, none}));
  DoubleArray many(1100);
  many(1) = -8;
  EXPECT_TRUE(areClose(rows(many, 1), {1, none, none, -8, none, none, 0, none, none, 1, none}));
  for (const double confidence : {-0.1, 95.0}) {
    EXPECT_EQ(failureNumber([&] { test.OneSignOutput(rain, 0, confidence, "Less than", result); }), 5);
  }
}

// Faults: tails exchanged; the deliberate divisor of the tie term changed. Expected: R, wilcox.test(ctrl,
// trt2, alternative, exact = FALSE) of PlantGrowth, which has no ties; for the sprays C and D pnorm with the
// tie term 294 / (N (N + 1)); median(outer(x, y, "-")).
TEST_F(TestsOnRanks, TwoMannWAgreesWithR) {
  const DoubleArray control{4.17, 5.58, 5.18, 6.11, 4.5, 4.61, 5.17, 4.53, 5.33, 5.14};
  const DoubleArray treated{6.31, 5.12, 5.54, 5.5, 5.37, 5.29, 4.92, 6.15, 5.8, 5.26};
  const DoubleArray sprayC{0, 1, 7, 2, 3, 1, 2, 1, 3, 0, 1, 4};
  const DoubleArray sprayD{3, 5, 12, 6, 4, 3, 5, 5, 5, 5, 2, 4};
  const struct {
    const char* alternative;
    double growth, sprays, spraysTies;
  } cases[] = {{"Less than", 0.0320110506415135, 0.00147282307526649, 0.00133697748316484},
               {"Greater than", 0.973048721415306, 0.998781632595505, 0.998897879121962},
               {"Not equals", 0.0640221012830269, 0.00294564615053299, 0.00267395496632968},
               {"", NoValue, NoValue, NoValue}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.alternative);
    test.TwoMannWOutput(control, treated, c.alternative, result);
    EXPECT_TRUE(areClose(result, {10, 10, 5.155, 5.435, -0.49, 80, c.growth, c.growth}));
    test.TwoMannWOutput(sprayC, sprayD, c.alternative, result);
    EXPECT_TRUE(areClose(result, {12, 12, 1.5, 5, -3, 98, c.sprays, c.spraysTies}));
  }
  // W = E = 5: z = -0.5 / sqrt(5/3) is taken as 0.5 / sqrt(5/3); R, 2 * pnorm(-0.5 / sqrt(5 / 3)).
  test.TwoMannWOutput({1, 4}, {2, 3}, "Not equals", result);
  EXPECT_TRUE(isClose(result(TwoMannW::PValue), 0.698535358303339));
}

// Fault: the estimate formed of too many pairs, or left out for one too few. Hand arithmetic: 1 to 316 lie
// 0.5 above 0.5 to 315.5, pair by pair.
TEST_F(TestsOnRanks, TwoMannWEstimatesBelow100000Pairs) {
  DoubleArray x(316);
  DoubleArray y(317);
  for (Index i = 1; i <= 316; ++i) x(i) = static_cast<double>(i);
  for (Index i = 1; i <= 317; ++i) y(i) = static_cast<double>(i) - 0.5;
  test.TwoMannWOutput(x, firstOf(y, 316), "Less than", result);
  EXPECT_EQ(result(TwoMannW::EstimatedDifference), 0.5);
  test.TwoMannWOutput(x, y, "Less than", result);
  EXPECT_EQ(result(TwoMannW::EstimatedDifference), NoValue);
  EXPECT_NE(result(TwoMannW::PValue), NoValue);
}

// Fault: ranks or ties miscounted, groups out of order. Expected: R, kruskal.test(count ~ spray,
// InsectSprays), H undone of its tie correction; rank, tapply.
TEST_F(TestsOnRanks, KruskalWAgreesWithR) {
  test.KruskalWOutput(insects, sprays(), table, result, category);
  EXPECT_EQ(category, (StringArray{"A", "B", "C", "D", "E", "F"}));
  EXPECT_TRUE(areClose(
      result,
      {72, 7, 36.5, 54.4732686453577, 5, 1.67519412152109e-10, 54.6913446223714, 1.51084443941851e-10},
      1e-11));
  EXPECT_TRUE(areClose(table,
                       DoubleArray::table({{12, 14, 52.1666666666667, 2.84067006051285},
                                           {12, 16.5, 54.8333333333333, 3.32418836868525},
                                           {12, 1.5, 11.4583333333333, -4.54053911268144},
                                           {12, 5, 25.5833333333333, -1.97940307408076},
                                           {12, 3, 19.3333333333333, -3.11264910885982},
                                           {12, 15, 55.625, 3.46773286642393}}),
                       1e-11));
}

// Fault: a division by zero, or H' of 0, where all values tie; labels compared as numbers or in another
// order. Hand arithmetic: without ties, ranks 1, 2 and 3, 4 give H = 12 (2 + 2) / 20 = 2.4.
TEST_F(TestsOnRanks, KruskalWWithoutAndWithNothingButTies) {
  test.KruskalWOutput({1, 2, 7, 9}, {"1.0", "1.0", "1", "1"}, table, result, category);
  EXPECT_EQ(category, (StringArray{"1.0", "1"}));
  EXPECT_TRUE(isClose(result(KruskalW::H), 2.4));
  EXPECT_EQ(result(KruskalW::HTies), result(KruskalW::H));
  EXPECT_EQ(result(KruskalW::PValueTies), result(KruskalW::PValue));
  test.KruskalWOutput({3, 3, 3}, {"a", "b", "b"}, table, result, category);
  EXPECT_TRUE(areClose(result, {3, 3, 2, 0, 1, 1, NoValue, NoValue}));
}

// Fault: values on the overall median counted above it, limits of another rule. Expected: R,
// chisq.test(table(count > 7, spray), correct = FALSE); limits by the walk over 1 - 2 pbinom as in the sign
// test; the quartiles by hand from the sorted counts at places 3, 4 and 9, 10.
TEST_F(TestsOnRanks, MoodsMAgreesWithR) {
  bool fewer = true;
  test.MoodsMOutput(insects, sprays(), table, result, category, fewer);
  EXPECT_FALSE(fewer);
  EXPECT_EQ(category, (StringArray{"A", "B", "C", "D", "E", "F"}));
  EXPECT_TRUE(areClose(result, {60.9915057915058, 5, 7.5817085082089e-12, 7}, 1e-11));
  EXPECT_TRUE(areClose(table,
                       DoubleArray::table({{1, 11, 14, 6.25, 10.5262368815592, 19.2106446777612},
                                           {1, 11, 16.5, 5, 11.5262368815592, 18.4737631184408},
                                           {12, 0, 1.5, 2, 1, 3},
                                           {11, 1, 5, 1.25, 3.26311844077961, 5},
                                           {12, 0, 3, 2.25, 2.26311844077961, 5},
                                           {0, 12, 15, 10, 11.5262368815592, 23.4737631184408}}),
                       1e-11));

  const StringArray labels{"z", "z", "z", "z", "z", "a", "a", "a", "a", "a", "a"};
  test.MoodsMOutput(firstOf(insects, 11), labels, table, result, category, fewer);
  EXPECT_TRUE(fewer);
  EXPECT_EQ(category, (StringArray{"z", "a"}));
  EXPECT_EQ(table(1, MoodsMGroup::Lower), NoValue);
  EXPECT_EQ(table(1, MoodsMGroup::Upper), NoValue);
  EXPECT_NE(table(2, MoodsMGroup::Lower), NoValue);
}

// Times to round first base by three methods, 22 players (Hollander and Wolfe, 1973, page 140).
const DoubleArray rounding{5.40, 5.50, 5.55, 5.85, 5.70, 5.75, 5.20, 5.60, 5.50, 5.55, 5.50, 5.40, 5.90, 5.85,
                           5.70, 5.45, 5.55, 5.60, 5.40, 5.40, 5.35, 5.45, 5.50, 5.35, 5.25, 5.15, 5.00, 5.85,
                           5.80, 5.70, 5.25, 5.20, 5.10, 5.65, 5.55, 5.45, 5.60, 5.35, 5.45, 5.05, 5.00, 4.95,
                           5.50, 5.50, 5.40, 5.45, 5.55, 5.50, 5.55, 5.55, 5.35, 5.45, 5.50, 5.55, 5.50, 5.45,
                           5.25, 5.65, 5.60, 5.40, 5.70, 5.65, 5.55, 6.30, 6.30, 6.25};

// Fault: ranks over all data in place of within blocks; a tie correction over all data; treatments in another
// order than their labels'. Expected: R, friedman.test of these data gives S'; S by its formula from
// colSums(rank by row); medians by apply.
TEST_F(TestsOnRanks, FriedmanAgreesWithR) {
  StringArray methods(66);
  StringArray players(66);
  const char* const labels[] = {"9", "10", "wide"};
  for (Index i = 0; i < 66; ++i) {
    methods(i + 1) = labels[i % 3];
    players(i + 1) = std::to_string(i / 3);
  }
  test.FriedmanOutput(rounding, methods, players, table, result, category);
  const DoubleArray inBlockOrder = table;
  EXPECT_EQ(category, (StringArray{"9", "10", "wide"}));
  EXPECT_TRUE(areClose(
      result, {10.6363636363636, 2, 0.00490165773320337, 11.1428571428571, 0.00380504077551136, 5.5, 22}));
  EXPECT_TRUE(areClose(table, DoubleArray::table({{22, 5.55, 53}, {22, 5.5, 47}, {22, 5.4, 32}})));

  // Rows in any order: the last first.
  DoubleArray dy = rounding;
  for (const auto turn : {&methods, &players}) std::reverse(turn->elements().begin(), turn->elements().end());
  std::reverse(dy.elements().begin(), dy.elements().end());
  test.FriedmanOutput(dy, methods, players, table, result, category);
  EXPECT_EQ(category, (StringArray{"9", "10", "wide"}));
  EXPECT_EQ(table, inBlockOrder);
}

// Fault: a failure or a number where the layout is not balanced or where all responses tie.
TEST_F(TestsOnRanks, FriedmanOfLayoutsWithoutATest) {
  const StringArray treatments{"a", "b", "a", "b"};
  for (const StringArray& blocks : {StringArray{"1", "1", "2", "3"}, StringArray{"1", "1", "1", "2"}}) {
    test.FriedmanOutput({1, 2, 3, 4}, treatments, blocks, table, result, category);
    EXPECT_TRUE(areClose(result, DoubleArray(7, NoValue)));
    EXPECT_FALSE(table.filled());
    EXPECT_FALSE(category.filled());
  }
  test.FriedmanOutput({1, 1, 2, 2}, treatments, {"1", "1", "2", "2"}, table, result, category);
  EXPECT_TRUE(areClose(result, {0, 1, 1, NoValue, NoValue, 1.5, 2}));
}

// Fault: labels that do not match the data taken for data, failures that leave a result half written.
TEST_F(TestsOnRanks, BadDataEndInAFailureAndChangeNothing) {
  const DoubleArray untouched{7};
  result = untouched;
  bool fewer = false;
  const auto kruskal = [&](const DoubleArray& dy, const StringArray& dx) {
    return failureNumber([&] { test.KruskalWOutput(dy, dx, table, result, category); });
  };
  const StringArray one{"a", "a"};
  const StringArray blocks{"1", "2"};
  EXPECT_EQ(failureText([&] {
              test.KruskalWOutput({1, 2}, one, table, result, category);
            }),
            "Division by zero: dx has only one label");
  EXPECT_EQ(failureText([&] {
              test.MoodsMOutput({1, 2}, one, table, result, category, fewer);
            }),
            "Unable to evaluate the worksheet function: ChiDist: dx has only one label");
  EXPECT_EQ(failureText([&] {
              test.FriedmanOutput({1, 2}, one, blocks, table, result, category);
            }),
            "Unable to evaluate the worksheet function: ChiDist: dx1 has only one label");
  const auto mood = [&](const DoubleArray& dy, const StringArray& dx) {
    return failureNumber([&] { test.MoodsMOutput(dy, dx, table, result, category, fewer); });
  };
  EXPECT_EQ(kruskal({1, 2, 3}, {"a", "b"}), 9);
  EXPECT_EQ(kruskal({1, 2}, {"a", "b", "c"}), 9);
  EXPECT_EQ(kruskal(DoubleArray(), {"a"}), 9);
  EXPECT_EQ(mood({2, 2}, {"a", "b"}), 11);
  EXPECT_EQ(failureNumber([&] {
              test.FriedmanOutput({1, 2}, {"a", "b"}, {"1"}, table, result, category);
            }),
            9);
  EXPECT_EQ(failureNumber([&] { test.OneWilcoxonOutput({1e308}, -1e308, 0.95, "Less than", result); }), 6);
  EXPECT_EQ(failureNumber([&] { test.TwoMannWOutput({1}, DoubleArray(), "Less than", result); }), 9);
  EXPECT_EQ(result, untouched);
  EXPECT_FALSE(table.filled());

  // Labels beyond the last value do not count where their group has values.
  EXPECT_EQ(kruskal({1, 2}, {"a", "b", "a"}), 0);
  EXPECT_EQ(result(KruskalW::N), 2);
}

}  // namespace
}  // namespace zelkova
