#include <gtest/gtest.h>

#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/plots/yMultiVari.h"

namespace zelkova {
namespace {

class MultiVari : public WithHost {
 protected:
  void run(const DoubleArray& data, const StringArray& dx1, const StringArray& dx2, const StringArray& dx3,
           const StringArray& dx4, bool showValues) {
    chart.MultiVariOutput(data, dx1, dx2, dx3, dx4, x, y, n, label, meanX, meanY, dividerX, dividerY, valueX,
                          valueY, axis, showValues);
  }

  yMultiVari chart;
  DoubleArray x, y, n, meanX, meanY, dividerX, dividerY, valueX, valueY, axis;
  StringArray label;
};

template <class T>
std::vector<T> columnOf(const Array<T>& table, Index j) {
  const std::span<const T> column = table.column(j);
  return {column.begin(), column.end()};
}

// R's mtcars: mpg by vs, gear and cyl.
const DoubleArray mpg = {21,   21,   22.8, 21.4, 18.7, 18.1, 14.3, 24.4, 22.8, 19.2, 17.8,
                         16.4, 17.3, 15.2, 10.4, 10.4, 14.7, 32.4, 30.4, 33.9, 21.5, 15.5,
                         15.2, 13.3, 19.2, 27.3, 26,   30.4, 15.8, 19.7, 15,   21.4};
const StringArray vs = {"0", "0", "1", "1", "0", "1", "0", "1", "1", "1", "1", "0", "0", "0", "0", "0",
                        "0", "1", "1", "1", "1", "0", "0", "0", "0", "1", "0", "1", "0", "0", "0", "1"};
const StringArray gear = {"4", "4", "4", "3", "3", "3", "3", "4", "4", "4", "4", "3", "3", "3", "3", "3",
                          "3", "4", "4", "4", "3", "3", "3", "3", "3", "4", "5", "5", "5", "5", "5", "4"};
const StringArray cyl = {"6", "6", "4", "6", "8", "6", "8", "4", "4", "6", "6", "8", "8", "8", "8", "8",
                         "8", "4", "4", "4", "4", "8", "8", "8", "8", "4", "4", "4", "8", "6", "8", "4"};
constexpr double no = NoValue;

// Faults: means of means where groups are of unequal size; lines joined across groups, or broken within; a
// group not above the middle of its span, as above the mean of places within; places kept for combinations
// without data. Expected: R's aggregate(mpg ~ vs + gear + cyl, mtcars, mean), ~ vs + gear and ~ vs; places by
// hand: a step more for each factor whose group ends.
TEST_F(MultiVari, JoinsMeansWithinAndAcross) {
  run(mpg, vs, gear, cyl, {}, true);
  const std::vector<double> places{1, no, 3, no, 5, 6, 7, no, 10, 11, no, 13, 14, no, 16};
  EXPECT_EQ(columnOf(x, 3), places);
  EXPECT_TRUE(areClose(DoubleArray(columnOf(y, 3)),
                       {15.05, no, 21, no, 26, 19.7, 15.4, no, 21.5, 19.75, no, 26.925, 18.5, no, 30.4}));
  EXPECT_EQ(columnOf(label, 3),
            (std::vector<std::string>{"8", "", "6", "", "4", "6", "8", "", "4", "6", "", "4", "6", "", "4"}));
  const std::vector<double> middles{1, 3, 6, no, 10.5, 13.5, 16};
  std::vector<double> second = columnOf(x, 2);
  EXPECT_EQ(second[7], no);
  second.resize(middles.size());
  EXPECT_EQ(second, middles);
  const double means[] = {15.05, 21, 19.125, no, 20.3333333333333, 25.24, 30.4};
  for (Index i = 1; i <= 7; ++i) EXPECT_TRUE(isClose(y(i, 2), means[i - 1], 1e-13)) << i;
  EXPECT_EQ(x(1, 1), 4);
  EXPECT_EQ(x(2, 1), 13);
  EXPECT_TRUE(isClose(y(1, 1), 16.6166666666667, 1e-13));
  EXPECT_TRUE(isClose(y(2, 1), 24.5571428571429, 1e-13));
  EXPECT_EQ(n(2, 1), 14);
}

// Faults: an axis that leaves values out, or is stretched to values that are not shown; single values beside
// their groups; a divider through a group. By hand, and mean(mpg) of R.
TEST_F(MultiVari, ShowsValuesOnDemand) {
  run(mpg, vs, gear, cyl, {}, true);
  EXPECT_EQ(valueY, mpg);
  EXPECT_EQ(valueX(1), 3);
  EXPECT_EQ(valueX(27), 5);
  EXPECT_EQ(axis(1), 10);
  EXPECT_EQ(dividerX, (DoubleArray{8.5, 8.5, no}));
  EXPECT_EQ(dividerY, (DoubleArray{10, 35, no}));
  EXPECT_TRUE(areClose(meanY, {20.090625, 20.090625}));
  run(mpg, vs, gear, cyl, {}, false);
  EXPECT_FALSE(valueX.filled() || valueY.filled());
  EXPECT_EQ(axis(1), 14);
}

// Faults: a fourth factor taken for the third; a factor that is missing or too short; a refused call that
// assigns.
TEST_F(MultiVari, TakesTwoToFourFactors) {
  EXPECT_EQ(failureNumber([&] { run(mpg, vs, {}, {}, {}, true); }), 9);
  EXPECT_EQ(failureNumber([&] { run(mpg, vs, gear, {}, cyl, true); }), 5);
  EXPECT_EQ(failureNumber([&] { run(mpg, vs, gear, {"a"}, {}, true); }), 9);
  EXPECT_FALSE(x.filled() || axis.filled());
  run({1, 2, 3, 5}, {"a", "a", "a", "b"}, {"a", "a", "b", "a"}, {"a", "b", "a", "a"}, {"a", "b", "b", "a"},
      false);
  EXPECT_EQ(columnOf(x, 4), (std::vector<double>{1, no, 3, no, 6, no, 10}));
  EXPECT_EQ(columnOf(y, 4), (std::vector<double>{1, no, 2, no, 3, no, 5}));
  EXPECT_EQ(x(1, 1), 3.5);
}

}  // namespace
}  // namespace zelkova
