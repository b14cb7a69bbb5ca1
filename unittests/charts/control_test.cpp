#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "unittests/charts/chartData.h"
#include "unittests/support.h"
#include "zelkova/charts/modzControl.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

double normal(double x) { return std::erfc(-x / std::numbers::sqrt2) / 2; }

/// The mean of the range of n standard normal values, by Simpson's rule (Tippett, 1925).
double meanRange(int n) {
  constexpr int steps = 2000;
  constexpr double end = 9;
  constexpr double width = 2 * end / steps;
  double sum = 0;
  for (int i = 0; i <= steps; ++i) {
    const double x = -end + i * width;
    const double weight = i == 0 || i == steps ? 1 : i % 2 == 1 ? 4 : 2;
    sum += weight * (1 - std::pow(normal(x), n) - std::pow(normal(-x), n));
  }
  return sum * width / 3;
}

// Faults: a digit or a place of a table wrong; a table begun at the wrong size. Expected: c4 by the gamma
// function, d2 by its integral (mpmath agrees with both), c5 from c4; the d2 table is good to 0.0011.
TEST(UnbiasingConstants, FollowTheirDefinitions) {
  for (int n = 2; n <= 100; ++n) {
    const double exact =
        std::sqrt(2.0 / (n - 1)) * std::exp(std::lgamma(n / 2.0) - std::lgamma((n - 1) / 2.0));
    EXPECT_NEAR(UnbiasC4(n), exact, 5.001e-7) << n;
    EXPECT_NEAR(UnbiasC5(n), std::sqrt(1 - UnbiasC4(n) * UnbiasC4(n)), 6e-7) << n;
  }
  for (int n = 2; n <= 50; ++n) {
    EXPECT_NEAR(UnbiasD2(n), meanRange(n), 0.0011) << n;
  }
}

// Fault: as above. Expected: d2 and d3 of Montgomery's table of factors (d3(4), which is kept as 0.8794, is
// 0.880 there); d4 from R, qtukey(0.5, n, Inf).
TEST(UnbiasingConstants, AgreeWithPublishedTables) {
  const std::vector<double> d2{1.128, 1.693, 2.059, 2.326, 2.534, 2.704, 2.847, 2.970,
                               3.078, 3.173, 3.258, 3.336, 3.407, 3.472, 3.532, 3.588,
                               3.640, 3.689, 3.735, 3.778, 3.819, 3.858, 3.895, 3.931};
  const std::vector<double> d3{0.853, 0.888, 0.880, 0.864, 0.848, 0.833, 0.820, 0.808,
                               0.797, 0.787, 0.778, 0.770, 0.763, 0.756, 0.750, 0.744,
                               0.739, 0.734, 0.729, 0.724, 0.720, 0.716, 0.712, 0.708};
  const std::vector<double> d4{0.95387, 1.58779, 1.97832, 2.25688, 2.47165, 2.64545, 2.79084, 2.91544,
                               3.02420, 3.12053, 3.20685, 3.28496, 3.35621, 3.42165, 3.48212, 3.53828,
                               3.59068, 3.63977, 3.68591, 3.72944, 3.77061, 3.80966, 3.84678, 3.88214};
  for (std::size_t i = 0; i < d2.size(); ++i) {
    const auto n = static_cast<double>(i + 2);
    EXPECT_EQ(UnbiasD2(n), d2[i]) << n;
    EXPECT_NEAR(UnbiasD3(n), d3[i], 0.000601) << n;
    EXPECT_NEAR(UnbiasD4(n), d4[i], 0.0014) << n;
  }
  EXPECT_EQ(UnbiasD3(4), 0.8794);
}

// Faults: a size beyond a table that takes the wrong branch or reads outside; rounding half up. Expected:
// hand arithmetic with the formulas (AIAG's 1.41 at 2 and 3.18 at 10 for a single range).
TEST(UnbiasingConstants, BeyondTheirTables) {
  EXPECT_TRUE(isClose(UnbiasC4(1), 0.743036));
  EXPECT_TRUE(isClose(UnbiasC4(101), 1.00005 - 0.257014 / 101));
  EXPECT_EQ(UnbiasC5(1), 0.602810);
  EXPECT_EQ(UnbiasC5(500), 0.070976);
  EXPECT_EQ(UnbiasD2(1), 1);
  EXPECT_EQ(UnbiasD2(51), 4.498);
  // 0.80818 - 0.259355 + 0.12745 - 0.02375 and 2.88606 + 2.56565 - 1.231075 + 0.235.
  EXPECT_TRUE(isClose(UnbiasD3(60), 0.652525));
  EXPECT_TRUE(isClose(UnbiasD4(60), 4.455635));
  EXPECT_EQ(UnbiasD3(25.5), 0);
  EXPECT_EQ(UnbiasD4(0.9), 0);
  EXPECT_EQ(UnbiasD2Star(2), 1.411);
  EXPECT_EQ(UnbiasD2Star(12), 3.179);
  EXPECT_EQ(UnbiasD2(2.5), UnbiasD2(2));
  EXPECT_EQ(UnbiasD2(3.5), UnbiasD2(4));
  EXPECT_EQ(failureNumber([] { UnbiasC4(0); }), 11);
  EXPECT_EQ(failureNumber([] { UnbiasD2(0); }), 9);
  EXPECT_EQ(failureNumber([] { UnbiasD2Star(1); }), 9);
  EXPECT_EQ(failureNumber([] { UnbiasD2(std::nan("")); }), 6);
}

// Faults: labels that return merged into one subgroup; a statistic of one value.
TEST(SubgroupStatistics, OfRunsOfLabels) {
  const DoubleArray y{1, 4, 7, 9};
  const StringArray labels{"A", "A", "B", "A"};
  EXPECT_EQ(GetSubgroupStat(y, labels, "N"), (DoubleArray{2, 1, 1}));
  EXPECT_EQ(GetSubgroupStat(y, labels, "N_1"), (DoubleArray{1, 0, 0}));
  EXPECT_EQ(GetSubgroupStat(y, labels, "Mean"), (DoubleArray{2.5, 7, 9}));
  EXPECT_EQ(GetSubgroupStat(y, labels, "Variance"), (DoubleArray{4.5, NoValue, NoValue}));
  EXPECT_EQ(GetSubgroupStat(y, labels, "Stddev"), (DoubleArray{std::sqrt(4.5), NoValue, NoValue}));
  EXPECT_EQ(GetSubgroupStat(y, labels, "Range"), (DoubleArray{3, NoValue, NoValue}));
  EXPECT_EQ(GetSubgroupStat(y, labels, "VarPart"), (DoubleArray{2.25, 2.25, 0, 0}));
  EXPECT_FALSE(GetSubgroupStat(y, labels, "mean").filled());
  EXPECT_EQ(failureNumber([&] { GetSubgroupStat(y, {"A", "A", "B"}, "N"); }), 9);
}

void expectEstimates(const DoubleArray& y, const StringArray& labels, const DoubleArray& expected) {
  const DoubleArray estimates{SigmaPooled(y, labels),
                              SigmaSbar(y, labels),
                              SigmaRbar(y, labels),
                              SigmaAvgMR(y, 2),
                              SigmaAvgMR(y, 3),
                              SigmaMedianMR(y, 2),
                              SigmaMedianMR(y, 5),
                              SigmaAvgMRMeans(y, labels, 2),
                              SigmaMedianMRMeans(y, labels, 3)};
  EXPECT_TRUE(areClose(estimates, expected, 1e-11));
}

// Faults: c4 at a subgroup's size in the pooled estimate; subgroups weighed alike; a subgroup of one in a sum
// or a moving range; means of other sizes in a moving range; a window lost at a block's end. Expected: R, by
// the definitions (sd, diff(range(x)), weights c4^2 / (1 - c4^2) and d2^2 / d3^2, means of the 5s only).
TEST(SigmaEstimators, OfPistonRings) {
  expectEstimates(pistonRings, inSamples(25, 5),
                  {0.01005084056589244, 0.00999959987248473, 0.00999140154772146, 0.00974462365591438,
                   0.00999332497755039, 0.00943396226415130, 0.00974745237040566, 0.00559988179669143,
                   0.00491183879093397});
  const LostRings left;
  expectEstimates(left.y, left.sample,
                  {0.00991795431751900, 0.00981295006292270, 0.00988469467210079, 0.00918131359852057,
                   0.00964238712552277, 0.00838574423479619, 0.00952591936198635, 0.00597517730496573,
                   0.00591939546600354});
}

// Faults: a window longer than the data; a length that counts downward; data without subgroups; a weight that
// turns negative (c4's formula passes 1 at 5140 values); a spread where all values are equal. Expected: hand.
TEST(SigmaEstimators, AtTheirEdges) {
  const DoubleArray y{1, 4, 2};
  EXPECT_TRUE(isClose(SigmaAvgMR(y, 3), 3 / 1.693));
  EXPECT_TRUE(isClose(SigmaMedianMR(y, 3), 3 / 1.588));
  EXPECT_EQ(SigmaAvgMR(y, 4), NoValue);
  EXPECT_EQ(SigmaMedianMR(y, 1e15), NoValue);
  EXPECT_EQ(SigmaAvgMR(y, 1), 0);
  EXPECT_EQ(failureNumber([&] { SigmaAvgMR(y, 0); }), 9);
  for (const auto estimate : {SigmaPooled, SigmaSbar, SigmaRbar}) {
    EXPECT_EQ(estimate(y, {"1", "2", "3"}), NoValue);
    EXPECT_EQ(estimate({0.1, 0.1, 0.1}, {"1", "1", "1"}), 0);
    EXPECT_EQ(failureNumber([&] { estimate(y, {}); }), 9);
  }
  EXPECT_EQ(SigmaAvgMRMeans(y, {"1", "1", "2"}, 2), NoValue);

  // 6000 values of sd near 1 and 2 of sd 3: the weighted mean lies between the two.
  DoubleArray wide(6002);
  StringArray labels(6002, "a");
  for (Index i = 1; i <= 6000; ++i) wide(i) = i % 2 == 0 ? 1 : -1;
  wide(6001) = 0;
  wide(6002) = 3 * std::numbers::sqrt2;
  labels(6001) = labels(6002) = "b";
  EXPECT_GT(SigmaSbar(wide, labels), 1);
  EXPECT_LT(SigmaSbar(wide, labels), 1.01);
}

}  // namespace
}  // namespace zelkova
