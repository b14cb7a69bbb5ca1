#include <gtest/gtest.h>

#include <cmath>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/hypothesis/yHTest.h"

namespace zelkova {
namespace {

// R's data set PlantGrowth: dried weights of plants, a control and two treatments, in turn.
const DoubleArray weight{4.17, 4.81, 6.31, 5.58, 4.17, 5.12, 5.18, 4.41, 5.54, 6.11,
                         3.59, 5.50, 4.50, 5.87, 5.37, 4.61, 3.83, 5.29, 5.17, 6.03,
                         4.92, 4.53, 4.89, 6.15, 5.33, 4.32, 5.80, 5.14, 4.69, 5.26};

/// Labels in turn, `n` in all.
StringArray inTurn(Index n, const StringArray& labels) {
  StringArray result(n);
  for (Index i = 1; i <= n; ++i) result(i) = labels((i - 1) % labels.rows() + 1);
  return result;
}

class TestsOnVariances : public WithHost {
 protected:
  yHTest test;
  DoubleArray result;
  StringArray categories;
  const StringArray group = inTurn(30, {"ctrl", "trt1", "trt2"});
};

// Faults: the smaller variance on top; the ratio not rounded, or rounded in its slot too; rows of a third
// group taken in. Expected: R, sd, and 2 pf(round(ratio, 6), 9, 9, lower = FALSE) with the larger variance on
// top.
TEST_F(TestsOnVariances, FTestTakesTheFirstTwoGroups) {
  test.FTestOutput(weight, group, 0.9, result, categories);
  EXPECT_EQ(categories, (StringArray{"ctrl", "trt1"}));
  const DoubleArray expected{10, 10, 0.583091378392406, 0.793675696434703, 0.53974307188378, 0.37189642340547,
                             0.9};
  ASSERT_EQ(result.size(), expected.size());
  for (Index i = 1; i <= 7; ++i) EXPECT_TRUE(isClose(result(i), expected(i), 1e-11)) << i;

  test.FTestOutput_S(0.793675696434703, 10, 0.583091378392406, 10, 0.9, result);
  EXPECT_TRUE(isClose(result(FTest::F), 1.85273336906365));
  EXPECT_TRUE(isClose(result(FTest::PValue), 0.37189642340547, 1e-11));
}

// Faults: degrees of freedom exchanged; a p-value above 1; a variance of 0 below the line that ends in a
// number. Expected: R, 2 pf(1, 3, 9, lower = FALSE), which is below 1, while 2 pf(1, 9, 3, ...) is above.
TEST_F(TestsOnVariances, FTestAtItsEdges) {
  test.FTestOutput_S(2, 4, 2, 10, 0.95, result);
  EXPECT_TRUE(isClose(result(FTest::PValue), 0.872579899302264));
  test.FTestOutput_S(2, 10, 2, 4, 0.95, result);
  EXPECT_EQ(result(FTest::F), 1);
  EXPECT_EQ(result(FTest::PValue), 1);

  test.FTestOutput({1, 2, 5}, {"a", "a", "b"}, 0.95, result, categories);
  EXPECT_EQ(result(FTest::F), NoValue);
  EXPECT_EQ(result(FTest::PValue), NoValue);
  EXPECT_EQ(result(FTest::SD2), 0);

  // Labels beyond the last value do not count where neither group is of them alone.
  test.FTestOutput({1, 2, 5, 6}, {"a", "a", "b", "b", "b", "c"}, 0.95, result, categories);
  EXPECT_EQ(result(FTest::N2), 2);
  EXPECT_EQ(result(FTest::F), 1);

  result = {};
  EXPECT_EQ(failureNumber([&] {
              test.FTestOutput({1, 2, 5}, {"b", "a", "a"}, 0.95, result, categories);
            }),
            11);
  EXPECT_EQ(failureNumber([&] {
              test.FTestOutput({1, 2, 5}, {"a", "a", "a"}, 0.95, result, categories);
            }),
            9);
  EXPECT_EQ(failureNumber([&] { test.FTestOutput({1, 2, 5}, {"a", "b"}, 0.95, result, categories); }), 9);
  EXPECT_EQ(failureNumber([&] { test.FTestOutput({1, 2}, {"a", "a", "b"}, 0.95, result, categories); }), 9);
  EXPECT_EQ(failureNumber([&] { test.FTestOutput_S(-1, 5, 1, 5, 0.95, result); }), 5);
  EXPECT_EQ(failureNumber([&] { test.FTestOutput_S(1, 5, 1, 1, 0.95, result); }), 1004);
  EXPECT_FALSE(result.filled());
}

// Faults: limits without Bonferroni's share, or exchanged; distances from the means in place of the medians;
// results in another row or column. Expected: R, mean, sd, sqrt(9 var / qchisq(c(0.05 / 6, 1 - 0.05 / 6), 9,
// lower = FALSE)); bartlett.test(weight ~ group); anova of the distances from the medians.
TEST_F(TestsOnVariances, EqualVariancesAgreeWithR) {
  const double groups[][5] = {{10, 5.032, 0.583091378392406, 0.371451606031518, 1.240865977064379},
                              {10, 4.661, 0.793675696434703, 0.505601905693850, 1.689006569165775},
                              {10, 5.526, 0.442573283322786, 0.281936181821330, 0.941832018074085}};
  const struct {
    decltype(&yHTest::BarlettOutput) method;
    double expected[2];
  } cases[] = {{&yHTest::BarlettOutput, {2.87857378723609, 0.237096773634558}},
               {&yHTest::LeveneOutput, {1.11918569487037, 0.341226624125474}}};
  for (const auto& c : cases) {
    (test.*c.method)(weight, group, 0.95, result, categories);
    EXPECT_EQ(categories, (StringArray{"ctrl", "trt1", "trt2"}));
    ASSERT_EQ(result.rows(), 3);
    ASSERT_EQ(result.columns(), 7);
    for (Index i = 1; i <= 3; ++i) {
      for (Index j = 1; j <= 5; ++j) EXPECT_TRUE(isClose(result(i, j), groups[i - 1][j - 1])) << i << j;
      for (Index j = 6; j <= 7; ++j) {
        EXPECT_TRUE(isClose(result(i, j), i == 3 ? c.expected[j - 6] : NoValue, 1e-11)) << i << j;
      }
    }
  }
}

// Faults: a group of one value, or of equal ones, that ends the call or gets limits; rounding that turns
// equal spreads into a negative statistic or a tiny p-value. Hand arithmetic.
TEST_F(TestsOnVariances, GroupsWithoutSpread) {
  test.BarlettOutput({1, 2, 3, 7}, {"a", "a", "a", "b"}, 1, result, categories);
  // No quantile exists at a confidence of 1; 1 stands for it: sqrt(2 x 1 / 1) on both sides.
  const DoubleArray expected = DoubleArray::table({{3, 2, 1, std::sqrt(2), std::sqrt(2), NoValue, NoValue},
                                                   {1, 7, 0, NoValue, NoValue, NoValue, NoValue}});
  EXPECT_EQ(result, expected);

  // Levene needs no spread in each group: distances 1, 0, 1 and 0 from the medians, their means 2/3 and 0.
  // Between: 3 (2/3 - 1/2)^2 + (1/2)^2 = 1/3; within 2/3; W = (2 / 3) / (2 / 3).
  test.LeveneOutput({1, 2, 3, 7}, {"a", "a", "a", "b"}, 0.95, result, categories);
  EXPECT_TRUE(isClose(result(2, EqualVariances::Statistic), 1));
  EXPECT_TRUE(isClose(result(2, EqualVariances::PValue), 1 - 1 / std::sqrt(3)));  // F on 1 and 2: a t squared

  // Equal spreads, but for rounding: of the variances, and of the distances from the medians.
  test.BarlettOutput({0.1, 0.4, 0.2, 1.1, 1.4, 1.2, 7.1, 7.4, 7.2},
                     {"a", "a", "a", "b", "b", "b", "c", "c", "c"}, 0.95, result, categories);
  EXPECT_NEAR(result(3, EqualVariances::PValue), 1, 1e-12);
  test.LeveneOutput({0.1, 0.3, 1.1, 1.7}, {"a", "a", "b", "b"}, 0.95, result, categories);
  EXPECT_EQ(result(2, EqualVariances::Statistic), NoValue);
  EXPECT_EQ(result(2, EqualVariances::PValue), NoValue);
}

// Fault: a single group, or a confidence that is none, that ends in a number.
TEST_F(TestsOnVariances, RefuseWhatTheyCannotCompare) {
  const StringArray one{"a", "a", "a"};
  for (const auto method : {&yHTest::BarlettOutput, &yHTest::LeveneOutput}) {
    EXPECT_EQ(failureText([&] {
                (test.*method)({1, 2, 4}, one, 0.95, result, categories);
              }),
              "Division by zero: dx has only one label");
    // At -3 the tail of a limit of three groups is 2/3, at 95 it is negative.
    for (const double confidence : {0.0, -0.5, -3.0, std::nextafter(1.0, 2.0), 95.0, NoValue}) {
      EXPECT_EQ(failureNumber([&] { (test.*method)(weight, group, confidence, result, categories); }), 5);
    }
    const double justBelow = std::nextafter(1.0, 0.0);
    EXPECT_EQ(failureNumber([&] { (test.*method)(weight, group, justBelow, result, categories); }), 1004);
  }
  EXPECT_EQ(failureNumber([&] { test.BarlettOutput(weight, one, 0.95, result, categories); }), 9);
  EXPECT_FALSE(result.filled() || categories.filled());
}

}  // namespace
}  // namespace zelkova
