#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/yDStat.h"

namespace zelkova {
namespace {

/// The flow of the Nile at Aswan 1871 to 1970, in 10^8 cubic metres (Cobb, 1978; data set Nile of R).
const DoubleArray nile{
    1120, 1160, 963,  1210, 1160, 1160, 813,  1230, 1370, 1140, 995,  935,  1110, 994, 1020, 960,  1180,
    799,  958,  1140, 1100, 1210, 1150, 1250, 1260, 1220, 1030, 1100, 774,  840,  874, 694,  940,  833,
    701,  916,  692,  1020, 1050, 969,  831,  726,  456,  824,  702,  1120, 1100, 832, 764,  821,  768,
    845,  864,  862,  698,  845,  744,  796,  1040, 759,  781,  865,  845,  944,  984, 897,  822,  1010,
    771,  676,  649,  846,  812,  742,  801,  1040, 860,  874,  848,  890,  744,  749, 838,  1050, 918,
    986,  797,  923,  975,  815,  1020, 906,  901,  1170, 912,  746,  919,  718,  714, 740};

using DescriptiveStatisticsTest = WithHost;
using SummaryTest = WithHost;

// Fault: a slot that holds another statistic or a wrong one. Values from R 4.2: mean, sd, t.test, qchisq; the
// quartiles by hand from the ordered values 797, 799 (places 25, 26) and 1030, 1040 (75, 76); the interval of
// the median from pbinom and the interpolation of Hettmansperger and Sheather.
TEST_F(DescriptiveStatisticsTest, DescribeTheNile) {
  DoubleArray result;
  yDStat().DesStatOutput(nile, result);
  const double expected[] = {919.35,
                             169.227500630651,
                             28637.946969697,
                             100,
                             91935,
                             456,
                             798.5,
                             893.5,
                             1032.5,
                             1370,
                             914,
                             885.771592457406,
                             952.928407542594,
                             148.582903984299,
                             196.587399997982,
                             845,
                             940.94719753464};
  ASSERT_EQ(result.rows(), 17);
  for (Index i = 1; i <= 17; ++i) EXPECT_NEAR(result(i) / expected[i - 1], 1, 1e-12) << i;
}

// Fault: a result handed out in spite of a failure; small samples that differ from what is laid down for
// them.
TEST_F(DescriptiveStatisticsTest, HandleTheSmallestSamples) {
  DoubleArray result;
  EXPECT_EQ(failureNumber([&] { yDStat().DesStatOutput(DoubleArray(), result); }), 9);
  EXPECT_EQ(failureNumber([&] { yDStat().DesStatOutput({5}, result); }), 1004);
  EXPECT_FALSE(result.filled());
  yDStat().DesStatOutput({4, 1}, result);
  EXPECT_EQ(result(DescriptiveStatistics::Q1), 1);
  EXPECT_EQ(result(DescriptiveStatistics::Median), 2.5);
  EXPECT_EQ(result(DescriptiveStatistics::Q3), 4);
  yDStat().DesStatOutput(DoubleArray(10, 0.1), result);
  EXPECT_EQ(result(DescriptiveStatistics::StandardDeviation), 0);
  EXPECT_EQ(result(DescriptiveStatistics::MeanUpper), result(DescriptiveStatistics::Mean));
  yDStat().DesStatOutput({NoValue, 0, NoValue}, result);
  EXPECT_EQ(result(DescriptiveStatistics::Median), NoValue);
}

// Fault: quartiles whose weight follows the fraction. By hand from the rule.
TEST_F(SummaryTest, KeepsTheFixedWeightsOfTheQuartiles) {
  const struct {
    DoubleArray data;
    double q1, median, q3;
  } cases[] = {{{7}, 7, 7, 7},
               {{9, 5}, 5, 7, 9},
               {{1, 3, 2}, 1, 2, 3},
               {{4, 3, 2, 1}, 1.75, 2.5, 3.25},
               {{5, 1, 4, 2, 3}, 1.75, 3, 4.25},
               {{6, 5, 4, 3, 2, 1}, 1.75, 3.5, 5.25},
               {{7, 6, 5, 4, 3, 2, 1}, 2, 4, 6}};
  for (const auto& [data, q1, median, q3] : cases) {
    EXPECT_EQ(GetQ1(data), q1);
    EXPECT_EQ(GetMedian(data), median);
    EXPECT_EQ(GetQ3(data), q3);
  }
}

// Fault: ties miscounted, a mode that is not the first of several, -0 and 0 kept apart. The sums for the Nile
// from R's table(); 845, 1020, 1100 and 1160 come three times each.
TEST_F(SummaryTest, CountsTies) {
  EXPECT_EQ(GetTieCube(nile), 138);
  EXPECT_EQ(GetTiePairs(nile), 19);
  EXPECT_EQ(GetMode(nile), 1160);
  EXPECT_EQ(GetMode({2, -0.0, 0, 1}), 0);
  EXPECT_EQ(GetTiePairs({-0.0, 1, 0}), 1);
  const DoubleArray table = DoubleArray::table({{1, 9}, {2, 9}, {6, 9}});
  EXPECT_EQ(GetColumnSum(table), 9);
  EXPECT_EQ(GetColumnSST(table), 14);
}

/// The walk of the median's interval, as it is written down.
std::pair<double, double> plainMedianInterval(WorksheetFunction& worksheet, DoubleArray s,
                                              double confidence) {
  std::sort(s.vector().begin(), s.vector().end());
  const double c = confidence / 100;
  const Index n = s.rows();
  const auto b = [&](Index k) {
    return worksheet.BinomDist(static_cast<double>(k), static_cast<double>(n), 0.5, true);
  };
  double p1 = 0;
  double p2 = 0;
  Index d = n % 2 == 0 ? n / 2 : (n + 1) / 2;
  for (; d >= 1; --d) {
    p2 = b(n - d - 1) - b(d);
    p1 = b(n - d) - b(d - 1);
    if (d == 1 && p1 < c) return {s(1), s(n)};
    if (p1 >= c && p2 <= c) break;
  }
  const double i = (p1 - c) / (p1 - p2);
  const double x = static_cast<double>(d);
  const double m = static_cast<double>(n);
  const double lambda = (m - x) * i / ((m - 2 * x) * i + x);
  return {(1 - lambda) * s(d) + lambda * s(d + 1), lambda * s(n - d) + (1 - lambda) * s(n - d + 1)};
}

// Fault: a bisection that stops at another pair of order statistics than the walk does.
TEST_F(SummaryTest, FindsTheIntervalOfTheMedianThatTheWalkFinds) {
  std::mt19937 random(5);
  for (const Index n : {1, 2, 3, 4, 5, 8, 9, 31, 64, 501}) {
    DoubleArray data(n);
    for (double& x : data.elements()) x = static_cast<double>(random() % 1000);
    for (const double confidence : {-150.0, -10.0, 0.0, 0.5, 30.0, 50.0, 90.0, 95.0, 99.9, 110.0}) {
      double lower = 0;
      double upper = 0;
      std::pair<double, double> expected;
      const int number =
          failureNumber([&] { expected = plainMedianInterval(host->worksheetFunction(), data, confidence); });
      ASSERT_EQ(failureNumber([&] { GetMedianCI(data, confidence, lower, upper); }), number);
      EXPECT_EQ(std::pair(lower, upper), expected) << n << ' ' << confidence;
    }
  }
}

// Fault: an overflow that escapes, or a variance that fails where it is laid down to be 0; a failing `ChiInv`
// that ends the call.
TEST_F(SummaryTest, FailsWhereItIsLaidDown) {
  const DoubleArray never;
  EXPECT_EQ(failureNumber([&] { GetMean(never); }), 9);
  EXPECT_EQ(failureNumber([&] { GetMin(DoubleArray::table({{1}})); }), 9);
  EXPECT_EQ(failureNumber([&] { GetSum({1e308, 1e308}); }), 6);
  EXPECT_EQ(failureNumber([&] { GetRange({-1e308, 1e308}); }), 6);
  EXPECT_EQ(GetVariance(never), 0);
  EXPECT_EQ(GetStdDev({1e300, -1e300}), 0);
  EXPECT_EQ(GetStdDev({5}), 0);
  EXPECT_EQ(failureNumber([&] { GetMeanCILower({5}, 95); }), 1004);
  EXPECT_EQ(failureNumber([&] { GetSDCILower({5}, 95); }), 11);
  RunningObjects::remove(hostName);
  EXPECT_EQ(failureNumber([&] { GetMeanCILower({5, 6}, 95); }), 429);
}

// Fault: a variance that loses its digits where the values lie far from 0. The sets NumAcc3 and NumAcc4 of
// NIST's Statistical Reference Datasets, with their certified mean and standard deviation; the data
// themselves are rounded to doubles, which leaves 9 and 8 digits.
TEST(Variance, KeepsItsDigitsFarFromZero) {
  for (const auto& [centre, tolerance] : {std::pair(1000000.2, 1e-9), std::pair(10000000.2, 1e-8)}) {
    DoubleArray data(1001, centre);
    for (Index i = 2; i <= 1001; ++i) data(i) = std::floor(centre) + (i % 2 == 0 ? 0.1 : 0.3);
    // 126 additions in a lane, each rounded by half a unit of 2.2E-16.
    EXPECT_TRUE(isClose(GetMean(data), centre, 1.4e-14));
    EXPECT_TRUE(isClose(GetStdDev(data), 0.1, tolerance));
  }
}

// Fault: sums in lanes that lose elements at the end. Sums of 1 to n and of squared deviations, n(n^2 -
// 1)/12, in closed form.
TEST(Sums, TakeEveryElement) {
  for (Index n = 2; n <= 40; ++n) {
    DoubleArray data(n);
    for (Index i = 1; i <= n; ++i) data(i) = static_cast<double>(i);
    const double count = static_cast<double>(n);
    EXPECT_EQ(GetSum(data), count * (count + 1) / 2);
    EXPECT_NEAR(GetVariance(data), count * (count + 1) / 12, 1e-12 * count * count);
  }
}

}  // namespace
}  // namespace zelkova
