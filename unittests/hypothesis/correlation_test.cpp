#include <gtest/gtest.h>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/hypothesis/yHTest.h"

namespace zelkova {
namespace {

// R's data set stackloss: air flow, water temperature, acid concentration and loss of an ammonia plant.
const DoubleArray stackloss = DoubleArray::table(
    {{80, 27, 89, 42}, {80, 27, 88, 37}, {75, 25, 90, 37}, {62, 24, 87, 28}, {62, 22, 87, 18},
     {62, 23, 87, 18}, {62, 24, 93, 19}, {62, 24, 93, 20}, {58, 23, 87, 15}, {58, 18, 80, 14},
     {58, 18, 89, 14}, {58, 17, 88, 13}, {58, 18, 82, 11}, {58, 19, 93, 12}, {50, 18, 89, 8},
     {50, 18, 86, 7},  {50, 19, 72, 8},  {50, 19, 79, 8},  {50, 20, 80, 9},  {56, 20, 82, 15},
     {70, 20, 91, 15}});

class Correlations : public WithHost {
 protected:
  yHTest test;
  DoubleArray r, p, covariances;
};

// Faults: a pair in the wrong place; a one-sided p-value; the divisor n. Expected: R, cor.test of each pair,
// and cov.
TEST_F(Correlations, AgreeWithR) {
  test.CorrelationOutput(stackloss, r, p);
  const double expectedR[][3] = {{0.781852332952155, 0.500142874899459, 0.919663452905855},
                                 {0, 0.39093953782809, 0.875504404419447},
                                 {0, 0, 0.399829587099311}};
  const double expectedP[][3] = {{2.83651573536919e-05, 0.0209490202061792, 3.77429599066647e-09},
                                 {0, 0.0797180285246021, 2.02801701114165e-07},
                                 {0, 0, 0.0725230041493119}};
  ASSERT_EQ(r.rows(), 3);
  ASSERT_EQ(p.columns(), 3);
  for (Index i = 1; i <= 3; ++i) {
    for (Index j = 1; j <= 3; ++j) {
      EXPECT_TRUE(isClose(r(i, j), expectedR[i - 1][j - 1])) << i << j;
      EXPECT_TRUE(isClose(p(i, j), expectedP[i - 1][j - 1], 1e-10)) << i << j;
    }
  }

  test.CovarianceOutput(stackloss, covariances);
  const double expected[][4] = {{84.0571428571429, 22.6571428571429, 24.5714285714286, 85.7642857142857},
                                {0, 9.99047619047619, 6.62142857142857, 28.147619047619},
                                {0, 0, 28.7142857142857, 21.7928571428571},
                                {0, 0, 0, 103.461904761905}};
  ASSERT_EQ(covariances.rows(), 4);
  for (Index i = 1; i <= 4; ++i) {
    for (Index j = 1; j <= 4; ++j) EXPECT_TRUE(isClose(covariances(i, j), expected[i - 1][j - 1])) << i << j;
  }
}

// Fault: rows lost or counted twice where long columns are worked off in stretches. Hand arithmetic: the
// numbers 1 to n have the variance n (n + 1) / 12, and with their squares the covariance n + 1 times that.
TEST_F(Correlations, TakeEveryRowOfLongColumns) {
  constexpr Index n = 1549;  // three stretches and a rest that is no multiple of a lane
  DoubleArray table(n, 2, 0.0);
  for (Index i = 1; i <= n; ++i) {
    table(i, 1) = static_cast<double>(i);
    table(i, 2) = static_cast<double>(i * i);
  }
  test.CovarianceOutput(table, covariances);
  const double variance = n * (n + 1) / 12.0;
  EXPECT_TRUE(isClose(covariances(1, 1), variance));
  EXPECT_TRUE(isClose(covariances(1, 2), variance * (n + 1)));
}

// Faults: a p-value from a division by nearly 0, or a perfect correlation not seen because of rounding.
// Hand arithmetic: (-1, -1, 1, 1) and that plus e (-1, 1, -1, 1) correlate with 1 / sqrt(1 + e^2), and on two
// degrees of freedom p = 1 - r; the columns are -1 times or exactly the first but for e.
TEST_F(Correlations, PerfectOnesHaveNoPValue) {
  const double faint = 8e-5;   // r = 1 - 3.2E-9, which is 1 to 8 decimals
  const double slight = 2e-4;  // r = 1 - 2E-8, which is not
  DoubleArray table(4, 4, 0.0);
  for (Index i = 1; i <= 4; ++i) {
    const double x = i <= 2 ? -1 : 1;
    const double other = i % 2 == 1 ? -1 : 1;
    table(i, 1) = x;
    table(i, 2) = -0.1 * x;
    table(i, 3) = x + faint * other;
    table(i, 4) = x + slight * other;
  }
  test.CorrelationOutput(table, r, p);
  EXPECT_TRUE(isClose(r(1, 1), -1));
  EXPECT_EQ(p(1, 1), NoValue);
  EXPECT_TRUE(isClose(r(1, 2), 1 - 3.2e-9));
  EXPECT_EQ(p(1, 2), NoValue);
  EXPECT_TRUE(isClose(r(1, 3), 1 - 2e-8));
  EXPECT_TRUE(isClose(p(1, 3), 2e-8, 1e-6));
}

// Fault: a correlation or a covariance out of nothing, where a column is constant or rows are missing.
TEST_F(Correlations, NeedSpreadAndRows) {
  // 0.1 has no exact mean: a constant column must not correlate through its rounding.
  test.CorrelationOutput(DoubleArray::table({{0.1, 1, 4}, {0.1, 2, 7}, {0.1, 3, 4}}), r, p);
  for (const Index j : {1, 2}) {
    EXPECT_EQ(r(1, j), NoValue);
    EXPECT_EQ(p(1, j), NoValue);
  }
  EXPECT_EQ(r(2, 2), 0);
  EXPECT_EQ(p(2, 2), 1);
  test.CovarianceOutput(DoubleArray::table({{0.1, 1}, {0.1, 2}, {0.1, 3}}), covariances);
  EXPECT_EQ(covariances, DoubleArray::table({{0, 0}, {0, 1}}));

  test.CorrelationOutput(DoubleArray::table({{1, 5}, {2, 3}}), r, p);
  EXPECT_TRUE(isClose(r(1, 1), -1));
  EXPECT_EQ(p(1, 1), NoValue);
  test.CorrelationOutput(DoubleArray::table({{1, 5}}), r, p);
  EXPECT_EQ(r(1, 1), NoValue);
  EXPECT_EQ(p(1, 1), NoValue);
  test.CorrelationOutput(DoubleArray::table({{1}, {5}}), r, p);
  EXPECT_FALSE(r.filled() || p.filled());

  EXPECT_EQ(failureNumber([&] { test.CovarianceOutput(DoubleArray::table({{1, 5}}), covariances); }), 9);
  EXPECT_EQ(failureNumber([&] { test.CovarianceOutput({1, 5}, covariances); }), 9);
  EXPECT_EQ(failureNumber([&] {
              test.CovarianceOutput(DoubleArray::table({{1e200, 1}, {-1e200, 2}}), covariances);
            }),
            6);
}

}  // namespace
}  // namespace zelkova
