#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/hypothesis/yNormality.h"
#include "zelkova/hypothesis/yRunTest.h"

namespace zelkova {
namespace {

// R's data sets BOD (demand), trees (height), PlantGrowth (weight), women (height), nhtemp, discoveries.
const DoubleArray demand{8.3, 10.3, 19, 16, 15.6, 19.8};
const DoubleArray treeHeight{70, 65, 63, 72, 81, 83, 66, 75, 80, 75, 79, 76, 76, 69, 75, 74,
                             85, 86, 71, 64, 78, 80, 74, 72, 77, 81, 82, 80, 80, 80, 87};
const DoubleArray growth{4.17, 5.58, 5.18, 6.11, 4.5,  4.61, 5.17, 4.53, 5.33, 5.14,
                         4.81, 4.17, 4.41, 3.59, 5.87, 3.83, 6.03, 4.89, 4.32, 4.69,
                         6.31, 5.12, 5.54, 5.5,  5.37, 5.29, 4.92, 6.15, 5.8,  5.26};
const DoubleArray speed{4,  4,  7,  7,  8,  9,  10, 10, 10, 11, 11, 12, 12, 12, 12, 13, 13,
                        13, 13, 14, 14, 14, 14, 15, 15, 15, 16, 16, 17, 17, 17, 18, 18, 18,
                        18, 19, 19, 19, 20, 20, 20, 20, 20, 22, 23, 24, 24, 24, 24, 25};
const DoubleArray temperature{49.9, 52.3, 49.4, 51.1, 49.4, 47.9, 49.8, 50.9, 49.3, 51.9, 50.8, 49.6,
                              49.3, 50.6, 48.4, 50.7, 50.9, 50.6, 51.5, 52.8, 51.8, 51.1, 49.8, 50.2,
                              50.4, 51.6, 51.8, 50.9, 48.8, 51.7, 51,   50.6, 51.7, 51.5, 52.1, 51.3,
                              51,   54,   51.4, 52.7, 53.1, 54.6, 52,   52,   50.9, 52.6, 50.2, 52.6,
                              51.6, 51.9, 50.5, 50.9, 51.7, 51.4, 51.7, 50.8, 51.9, 51.8, 51.9, 53};
const DoubleArray discoveries{5,  3, 0,  2, 0, 3, 2, 3, 6, 1, 2, 1, 2, 1, 3, 3, 3, 5, 2, 4, 4, 0, 2, 3, 7,
                              12, 3, 10, 9, 2, 3, 7, 7, 2, 3, 3, 6, 2, 4, 3, 5, 2, 2, 4, 0, 4, 2, 5, 2, 3,
                              3,  6, 5,  8, 3, 6, 6, 0, 5, 2, 2, 2, 6, 3, 4, 4, 2, 2, 4, 7, 5, 3, 3, 0, 2,
                              2,  2, 1,  3, 4, 2, 2, 1, 1, 1, 2, 1, 4, 4, 3, 2, 1, 4, 1, 1, 1, 0, 0, 2, 0};

class Normality : public WithHost {
 protected:
  yNormality test;
  DoubleArray result;
};

using RunTests = WithHost;

// Fault: weights of the two tails exchanged, the adjustment left out, a range of the p-value's formula taken
// for another. Expected: R, A squared from pnorm(sort(x), mean(x), sd(x), log.p = TRUE) of both tails, and
// the published formulas (D'Agostino and Stephens, 1986, table 4.9); a data set for each range.
TEST_F(Normality, AndersonDarlingAgreesWithR) {
  const struct {
    const DoubleArray& data;
    double statistic, p;
  } cases[] = {{growth, 0.154803649017812, 0.956745873352191},
               {speed, 0.265582881511197, 0.69265915267729},
               {treeHeight, 0.368797069155872, 0.428237117970877},
               {temperature, 0.454347127277418, 0.269462358966728},
               {discoveries, 2.8645578774261, 3.3557006857477e-07}};
  for (const auto& c : cases) {
    test.NormTestOutput(c.data, result);
    ASSERT_EQ(result.size(), 5);
    EXPECT_EQ(result(NormTest::N), static_cast<double>(c.data.size()));
    EXPECT_TRUE(isClose(result(NormTest::AStar), c.statistic, 1e-11));
    EXPECT_TRUE(isClose(result(NormTest::PValue), c.p, 1e-10));
  }
  EXPECT_TRUE(isClose(result(NormTest::Mean), 3.1));  // of discoveries, as its sd
  EXPECT_TRUE(isClose(result(NormTest::SD), 2.25406479072987));
}

// Fault: an outlier whose tail is 0 in a double and ends in a failure, on one side only or on both. Expected:
// mpmath (40 digits) of 1000 pairs -1, 1 and an outlier; 10^6 lies 44.7 standard deviations from the mean.
TEST_F(Normality, TakesOutliersOnBothSides) {
  DoubleArray data(2001);
  for (Index i = 1; i <= 2000; ++i) data(i) = i % 2 == 0 ? 1 : -1;
  for (const double side : {1, -1}) {
    for (const auto& [outlier, statistic] : {std::pair(1e6, 772.9098939173144), {20, 308.9574360329168}}) {
      data(2001) = side * outlier;
      test.NormTestOutput(data, result);
      EXPECT_TRUE(isClose(result(NormTest::AStar), statistic)) << side * outlier;
      EXPECT_EQ(result(NormTest::PValue), 0);
    }
  }
}

// Fault: plotting positions of another rule, digits lost at the ends. Expected: R, qnorm of Filliben's
// positions, (sort(x) - mean(x)) / sd(x); for the ends of 1e5 values qnorm(-expm1(log(0.5) / 1e5)).
TEST_F(Normality, PlotsScoresAgainstTheSortedData) {
  DoubleArray x;
  DoubleArray line;
  test.NormTestPlotOutput(demand, x, result, line);
  const double scores[] = {-1.2313217140744, -0.630033865633061, -0.198197160374163};
  const double fitted[] = {-1.41089735547151, -0.978990001755739, 0.165564485591044,
                           0.251945956334198, 0.899806986907849,  1.07256992839416};
  EXPECT_EQ(x, (DoubleArray{8.3, 10.3, 15.6, 16, 19, 19.8}));
  for (Index i = 1; i <= 6; ++i) EXPECT_TRUE(isClose(line(i), fitted[i - 1])) << i;
  for (Index i = 1; i <= 3; ++i) {
    EXPECT_TRUE(isClose(result(i), scores[i - 1])) << i;
    EXPECT_EQ(result(7 - i), -result(i));
  }
  DoubleArray many(100000);
  many(1) = 1;
  test.NormTestPlotOutput(many, x, result, line);
  EXPECT_TRUE(isClose(result(1), -4.34602154988481));
  EXPECT_TRUE(isClose(result(99999), 4.14724578276887));
  test.NormTestPlotOutput({3, 1, 2}, x, result, line);
  EXPECT_EQ(result(2), 0);
}

// Fault: data without spread, or none, that end in a number.
TEST_F(Normality, RefusesDataWithoutSpread) {
  DoubleArray x;
  DoubleArray y;
  for (const DoubleArray& data : {DoubleArray{3}, DoubleArray{3, 3, 3}}) {
    EXPECT_EQ(failureNumber([&] { test.NormTestOutput(data, result); }), 1004);
    EXPECT_EQ(failureNumber([&] { test.NormTestPlotOutput(data, x, y, result); }), 11);
  }
  EXPECT_EQ(failureNumber([&] { test.NormTestOutput(DoubleArray(), result); }), 9);
  EXPECT_FALSE(result.filled());
  EXPECT_FALSE(x.filled());
}

// Fault: values on the median counted above it, an equal step counted as up, tails exchanged. Expected: R,
// lengths of rle(x > median(x)) and rle(diff(x) > 0), pnorm.
TEST_F(RunTests, AgreeWithR) {
  const struct {
    const DoubleArray& data;
    double expected[13];
  } cases[] = {
      {temperature,
       {60, 51.2, 30, 30, 22, 31, -2.34373706892985, 0.00954581245842742, 0.990454187541573, 39,
        39.6666666666667, 0.417896014666667, 0.582103985333333}},
      {discoveries,
       {100, 3, 33, 67, 44, 45.22, -0.277667901187029, 0.39063365155898, 0.60936634844102, 65,
        66.3333333333333, 0.374812779029318, 0.625187220970682}},
      // by hand: nothing varies, no value lies above, each step counts as down; pnorm of (1 - 3) /
      // sqrt(51/90)
      {{5, 5, 5, 5, 5}, {5, 5, 0, 5, 1, 1, NoValue, 1, 1, 1, 3, 0.00394378895983654, 0.996056211040164}},
      // by hand: V = 2 (2 - 2) / (4 * 1) = 0, and there are no runs up and down
      {{2, 1}, {2, 1.5, 1, 1, 2, 2, NoValue, 1, 1, NoValue, NoValue, NoValue, NoValue}}};
  DoubleArray result;
  for (const auto& c : cases) {
    yRunTest().RunTestOutput(c.data, result);
    ASSERT_EQ(result.size(), 13);
    for (Index i = 1; i <= 13; ++i) EXPECT_TRUE(isClose(result(i), c.expected[i - 1], 1e-11)) << i;
  }
  EXPECT_EQ(failureNumber([&] { yRunTest().RunTestOutput({1}, result); }), 11);
}

}  // namespace
}  // namespace zelkova
