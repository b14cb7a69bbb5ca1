#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/gage/yGageLB.h"

namespace zelkova {
namespace {

// The linearity study of the Automotive Industry Action Group's manual "Measurement Systems Analysis" (4th
// edition, 2010): five parts of reference values 2 to 10, read twelve times each. Published with it: bias =
// 0.736667 - 0.131667 reference, R squared 0.714, mean biases 0.491667, 0.125, 0.025, -0.291667, -0.616667.
const DoubleArray manualReadings{2.7, 2.5, 2.4, 2.5, 2.7, 2.3, 2.5, 2.5, 2.4, 2.4, 2.6, 2.4, 5.1, 3.9, 4.2,
                                 5.0, 3.8, 3.9, 3.9, 3.9, 3.9, 4.0, 4.1, 3.8, 5.8, 5.7, 5.9, 5.9, 6.0, 6.1,
                                 6.0, 6.1, 6.4, 6.3, 6.0, 6.1, 7.6, 7.7, 7.8, 7.7, 7.8, 7.8, 7.8, 7.7, 7.8,
                                 7.5, 7.6, 7.7, 9.1, 9.3, 9.5, 9.3, 9.4, 9.5, 9.5, 9.5, 9.6, 9.2, 9.3, 9.4};

class LinearityAndBias : public WithHost {
 protected:
  LinearityAndBias() : parts(60), references(60) {
    for (Index i = 1; i <= 60; ++i) {
      const Index part = (i - 1) / 12 + 1;
      parts(i) = std::to_string(part);
      references(i) = static_cast<double>(2 * part);
    }
  }

  void run(const DoubleArray& dy, const StringArray& dpart, const DoubleArray& dstd,
           const std::string& variation = "") {
    gage.GageLBOutput(dy, dpart, dstd, variation, linearity, bias, error);
  }

  DoubleArray biasRow(Index i) const { return {bias(i, 1), bias(i, 2), bias(i, 3), bias(i, 4)}; }

  StringArray parts;
  DoubleArray references;
  yGageLB gage;
  DoubleArray linearity, bias;
  std::string error;
};

// Faults: a slot in another's place; pooled degrees of freedom (55 for all readings) in place of one less
// than the readings; a share or a linearity of the wrong scale or sign. Expected: R, summary(lm(bias ~
// reference)); 2 pt(-t, n - 1) with t from the pooled standard deviation within parts.
TEST_F(LinearityAndBias, AgreesWithRAndTheManual) {
  run(manualReadings, parts, references, " 0.5 ");
  EXPECT_TRUE(error.empty());
  EXPECT_TRUE(areClose(
      linearity,
      {0.736666666666666, -0.131666666666667, 0.0725242725916125, 0.0109334454718107, 1.73379959546227e-14,
       2.03771558228573e-17, 0.239539788646537, 0.714318415932242, 0.0658333333333333, 0.131666666666667},
      1e-10));
  ASSERT_EQ(bias.rows(), 6);
  EXPECT_TRUE(
      areClose(biasRow(1), {NoValue, -0.0533333333333334, 0.106666666666667, 0.0890418417187238}, 1e-11));
  EXPECT_TRUE(areClose(biasRow(2), {2, 0.491666666666667, 0.983333333333333, 2.87233310444284e-08}, 1e-11));
  EXPECT_TRUE(areClose(biasRow(6), {10, -0.616666666666667, 1.23333333333333, 1.55444480038029e-08}, 1e-11));
}

// Faults: rows of parts rather than of reference values; the variation between two parts of one reference
// value counted as the gage's; values that need a process variation given without one. Expected: R, the
// first part's readings split into parts of 5 and 7.
TEST_F(LinearityAndBias, PoolsPartsOfOneReference) {
  for (Index i = 1; i <= 5; ++i) parts(i) = "0";
  run(manualReadings, parts, references);
  ASSERT_EQ(bias.rows(), 6);
  EXPECT_TRUE(areClose(biasRow(2), {2, 0.491666666666667, NoValue, 1.14978741526667e-08}, 1e-11));
  EXPECT_TRUE(isClose(bias(1, GageBias::PValue), 0.0899048868451034, 1e-11));
  EXPECT_EQ(linearity(GageLinearity::Linearity), NoValue);
  EXPECT_EQ(linearity(GageLinearity::LinearityShare), NoValue);
}

// Fault: a division by no degrees of freedom, or p-values in spite of it. By hand: biases 0, 2, 1 at 1, 2, 3,
// mean 1, slope (1 * 1 + 0 * 1 + 1 * 0) / 2, residuals -0.5, 1, -0.5.
TEST_F(LinearityAndBias, TakesSingleReadings) {
  run({4, 1, 4}, {"a", "b", "c"}, {3, 1, 2});
  EXPECT_TRUE(isClose(linearity(GageLinearity::Slope), 0.5));
  EXPECT_TRUE(isClose(linearity(GageLinearity::S), std::sqrt(1.5)));
  const DoubleArray expected = DoubleArray::table({{NoValue, 1, NoValue, NoValue},
                                                   {1, 0, NoValue, NoValue},
                                                   {2, 2, NoValue, NoValue},
                                                   {3, 1, NoValue, NoValue}});
  EXPECT_EQ(bias, expected);
}

// Faults: a check left out or in another order; results or plot points of refused data; bad numbers that end
// in anything but their failure.
TEST_F(LinearityAndBias, RefusesBadDesigns) {
  const char* const reference = "Reference value for the same part must be the same";
  DoubleArray points, averages;
  run({1, 2, 3, 4}, {"a", "a", "b", "b"}, {1, 2, 1, 2}, "x");
  EXPECT_EQ(error, "Must have at least 3 parts");
  run({1, 2, 3, 4}, {"a", "b", "c", "a"}, {1, 2, 3, 1.5}, "x");
  EXPECT_EQ(error, reference);
  gage.GageLBPlotOutput({1, 2, 3, 4}, {"a", "b", "c", "a"}, {1, 2, 3, 1.5}, points, averages);
  gage.GageLBPlotOutput({1, 2}, {"a", "b"}, {1, 2}, points, averages);
  EXPECT_FALSE(linearity.filled() || bias.filled() || points.filled() || averages.filled());

  const StringArray abc{"a", "b", "c"};
  EXPECT_EQ(failureNumber([&] { run({1, 2, 4}, abc, {1, 2, 3}, "x"); }), 13);
  EXPECT_EQ(failureNumber([&] { run({1, 2, 4}, abc, {1, 2, 3}, "0"); }), 11);
  EXPECT_EQ(failureNumber([&] { run({1, 2, 4}, abc, {2, 2, 2}); }), 5012);
  EXPECT_EQ(failureNumber([&] { run({1, 2, 4}, abc, {1, 2}); }), 9);
  EXPECT_EQ(failureNumber([&] { run({1, 2, 4}, {"a", "b"}, {1, 2, 3}); }), 9);
  EXPECT_EQ(failureNumber([&] { run({1, 1, 4, 5, 2}, {"a", "a", "b", "b", "c"}, {1.5, 1.5, 2, 2, 3}); }), 11);
}

// Faults: points in the order of the reference values; averages in order of appearance. By hand.
TEST_F(LinearityAndBias, LaysOutThePlot) {
  DoubleArray points, averages;
  gage.GageLBPlotOutput({10.5, 5, 11, 4, 2.25}, {"a", "b", "c", "b", "d"}, {10, 4, 10, 4, 2}, points,
                        averages);
  EXPECT_EQ(points, DoubleArray::table({{10, 0.5}, {4, 1}, {10, 1}, {4, 0}, {2, 0.25}}));
  EXPECT_EQ(averages, DoubleArray::table({{2, 0.25}, {4, 0.5}, {10, 0.75}}));
}

}  // namespace
}  // namespace zelkova
