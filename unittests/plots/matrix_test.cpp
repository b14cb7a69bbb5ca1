#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/plots/yMatrix.h"

namespace zelkova {
namespace {

class MatrixPlot : public WithHost {
 protected:
  void run(const DoubleArray& data, const StringArray& names, const StringArray& dx,
           const std::string& type) {
    plot.MatrixOutput(data, names, dx, plotX, plotY, groupLabel, lineX, lineY, lineValue, gridX, gridY,
                      labelX, labelY, label, xAxisX, xAxisY, xAxis, yAxisX, yAxisY, yAxis, type, true);
  }

  yMatrix plot;
  DoubleArray plotX, plotY, lineX, lineY, lineValue, gridX, gridY, labelX, labelY, xAxisX, xAxisY, xAxis,
      yAxisX, yAxisY, yAxis;
  StringArray groupLabel, label;
};

// Columns mpg, wt and hp of R's mtcars, one after the other, and its am.
const DoubleArray cars(32, 3,
                       std::vector<double>{
                           21,    21,   22.8,  21.4,  18.7,  18.1, 14.3,  24.4, 22.8,  19.2,  17.8, 16.4,
                           17.3,  15.2, 10.4,  10.4,  14.7,  32.4, 30.4,  33.9, 21.5,  15.5,  15.2, 13.3,
                           19.2,  27.3, 26,    30.4,  15.8,  19.7, 15,    21.4, 2.62,  2.875, 2.32, 3.215,
                           3.44,  3.46, 3.57,  3.19,  3.15,  3.44, 3.44,  4.07, 3.73,  3.78,  5.25, 5.424,
                           5.345, 2.2,  1.615, 1.835, 2.465, 3.52, 3.435, 3.84, 3.845, 1.935, 2.14, 1.513,
                           3.17,  2.77, 3.57,  2.78,  110,   110,  93,    110,  175,   105,   245,  62,
                           95,    123,  123,   180,   180,   180,  205,   215,  230,   66,    52,   65,
                           97,    150,  150,   245,   175,   66,   91,    113,  264,   175,   335,  109});
const StringArray gear = {"1", "1", "1", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0",
                          "0", "1", "1", "1", "0", "0", "0", "0", "0", "1", "1", "1", "1", "1", "1", "1"};

// Faults: x and y exchanged, a panel in another's place, a panel on a scale of its own, a group's points or
// line in another's column. Expected: R's lm and summary()$r.squared by am; positions by hand: wt runs from
// 1.5 to 5.5 and stands in the second column of panels, mpg from 10 to 35 in the top row.
TEST_F(MatrixPlot, PairsColumns) {
  run(cars, {"mpg", "wt", "hp"}, gear, "Full");
  EXPECT_EQ(groupLabel, (StringArray{"0", "1"}));
  ASSERT_EQ(plotY.rows(), 6 * 33);
  EXPECT_TRUE(isClose(plotX(1), 11 + 8 * (2.62 - 1.5) / 4));
  EXPECT_TRUE(isClose(plotY(1, 2), 21 + 8 * (21.0 - 10) / 25));
  EXPECT_EQ(plotY(1, 1), NoValue);
  EXPECT_EQ(plotX(33), NoValue);
  const struct {
    Index row;
    DoubleArray values;
  } lines[] = {
      {1, {1, 2, 1, 19, 31.416055395523159, -3.785907532781358, 0.589294842224034}},
      {2, {1, 2, 2, 13, 46.294477899987399, -9.084268024753086, 0.826126092520405}},
      {7, {2, 3, 1, 19, 2.19788496343637618, 0.00980268824128369, 0.46207315501462659}},
      {8, {2, 3, 2, 13, 1.65267720003265750, 0.00597828768925134, 0.66345571507232504}},
  };
  for (const auto& [row, expected] : lines) {
    DoubleArray actual(MatrixLine::size);
    for (Index slot = 1; slot <= MatrixLine::size; ++slot) actual(slot) = lineValue(row, slot);
    EXPECT_TRUE(areClose(actual, expected)) << row;
  }
  // From the lightest to the heaviest car of the group.
  EXPECT_TRUE(isClose(lineX(1, 1), 11 + 8 * (2.465 - 1.5) / 4));
  EXPECT_TRUE(isClose(lineY(2, 1), 21 + 8 * (31.416055395523159 - 3.785907532781358 * 5.424 - 10) / 25));
  EXPECT_EQ(lineX(3, 1), NoValue);
  EXPECT_EQ(labelX, (DoubleArray{5, 15, 25}));
  EXPECT_EQ(labelY, (DoubleArray{25, 15, 5}));
}

// Faults: a line drawn into the neighbouring panel; a line or an R squared of a column without spread; scale
// values below a column that has no panel, or too many of them. Expected by hand: y = 10/3 + 5 (x - 1) meets
// 0 at x = 1/3, ends at 25/3 and has an R squared of 10^2/(2 x 200/3); x runs from 0 to 2, y from 0 to 10.
TEST_F(MatrixPlot, EndsLinesAtTheBorder) {
  run(DoubleArray::table({{0, 0, 4}, {1, 0, 4}, {2, 10, 4}}), {}, {}, "Lower left");
  constexpr double no = NoValue;
  const std::vector<double> ends{1 + 8.0 / 6, 9, no, 1, 9, no, 11, 19, no};
  const std::vector<double> heights{11, 11 + 8 * 2.5 / 3, no, 5, 5, no, 5, 5, no};
  EXPECT_TRUE(areClose(lineX, DoubleArray(9, 1, ends)));
  EXPECT_TRUE(areClose(lineY, DoubleArray(9, 1, heights)));
  EXPECT_TRUE(isClose(lineValue(1, MatrixLine::RSquared), 0.75));
  EXPECT_EQ(lineValue(2, MatrixLine::RSquared), no);
  EXPECT_EQ(label, (StringArray{"1", "2", "3"}));
  EXPECT_EQ(xAxis, (DoubleArray{0, 0.4, 0.8, 1.2, 1.6, 2, no, 0, 2, 4, 6, 8, 10, no}));
  EXPECT_EQ(gridX.size(), 6 * 6);
  run(DoubleArray::table({{4, 0}, {4, 1}}), {}, {}, "Lower left");
  EXPECT_EQ(lineX(1, 1), no);
  EXPECT_EQ(lineValue(1, MatrixLine::Slope), no);
}

// Faults: a line through the positions of a narrow group on a wide scale, in which its digits are lost;
// spread where all values round to one; sums of squares that vanish, overflow or are those of the column. By
// hand: for x of 1, 2, 4, 5 and y of 2, 4, 3, 7 the slope is 9 / 10, the constant 4 - 0.9 x 3, R squared 9^2
// / (10 x 14). For x of 1, 1 + d, 1 and y of 1, 2, 1 the line goes through (1, 1) with slope 1 / d.
TEST_F(MatrixPlot, FitsANarrowGroupBesideAWideOne) {
  constexpr double d = 0x1p-52;
  const struct {
    std::vector<double> x, y;
    double wide, constant, slope, rSquared;
  } cases[] = {
      {{1e-6, 2e-6, 4e-6, 5e-6}, {2, 4, 3, 7}, 1000, 1.3, 9e5, 81.0 / 140},
      {{1e-13, 2e-13, 4e-13, 5e-13}, {2, 4, 3, 7}, 1000, 1.3, 9e12, 81.0 / 140},
      {{1e-200, 2e-200, 4e-200, 5e-200}, {2e90, 4e90, 3e90, 7e90}, 1, 1.3e90, 9e289, 81.0 / 140},
      {{1, 1 + d, 1, 1}, {1, 2, 1, 1}, 5e6, 1 - 1 / d, 1 / d, 1},
  };
  for (const auto& [x, y, wide, constant, slope, rSquared] : cases) {
    DoubleArray data(6, 2, 0.0);
    for (Index i = 1; i <= 4; ++i) {
      data(i, 1) = x[static_cast<std::size_t>(i - 1)];
      data(i, 2) = y[static_cast<std::size_t>(i - 1)];
    }
    data(5, 1) = -wide;
    data(6, 1) = wide;
    run(data, {}, {"a", "a", "a", "a", "b", "b"}, "Lower left");
    EXPECT_TRUE(isClose(lineValue(1, MatrixLine::Constant), constant)) << slope;
    EXPECT_TRUE(isClose(lineValue(1, MatrixLine::Slope), slope)) << slope;
    EXPECT_TRUE(isClose(lineValue(1, MatrixLine::RSquared), rSquared)) << slope;
  }
}

// Fault: scale values between the round ones shown, and 0 left out. By hand: from -9 to 9 a step of 2 makes
// eleven values.
TEST_F(MatrixPlot, ShowsRoundScaleValues) {
  run(DoubleArray::table({{-9, 0}, {9, 1}}), {}, {}, "Lower left");
  EXPECT_EQ(xAxis, (DoubleArray{-8, -4, 0, 4, 8, NoValue}));
}

// Faults: one column paired with nothing; a vector read as a table; names read past the end; panels made
// before their number is looked at.
TEST_F(MatrixPlot, Refuses) {
  EXPECT_EQ(failureNumber([&] { run({1, 2, 3}, {}, {}, "Full"); }), 5);
  EXPECT_EQ(failureNumber([&] { run(DoubleArray(3, 1, 1.0), {}, {}, "Full"); }), 5);
  EXPECT_EQ(failureNumber([&] { run({}, {}, {}, "Full"); }), 9);
  EXPECT_EQ(failureNumber([&] { run(cars, {"a", "b"}, {}, "Full"); }), 9);
  EXPECT_EQ(failureNumber([&] { run(cars, {}, {"a", "b"}, "Full"); }), 9);
  EXPECT_EQ(failureNumber([&] { run(DoubleArray(2, 50'000, 1.0), {}, {}, "Full"); }), 7);
  EXPECT_EQ(failureNumber([&] { run(DoubleArray(2, 2000, 1.0), {}, {"a", "b"}, "Full"); }), 7);
  EXPECT_FALSE(plotX.filled() || gridX.filled());
}

}  // namespace
}  // namespace zelkova
