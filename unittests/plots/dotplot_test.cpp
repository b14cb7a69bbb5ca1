#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/kit/dotColumns.h"
#include "zelkova/plots/yDotplot.h"

namespace zelkova {
namespace {

class Dotplot : public WithHost {
 protected:
  void run(const DoubleArray& data, const StringArray& dx, const std::string& most) {
    plot.DotplotOutput(data, dx, width, scale, x, y, n, group, baseX, baseY, xAxis, yAxisY, label, most);
  }

  yDotplot plot;
  double width = 0, scale = 0;
  DoubleArray x, y, n, group, baseX, baseY, xAxis, yAxisY;
  StringArray label;
};

// R's trees$Girth, sorted.
const DoubleArray girth = {8.3,  8.6,  8.8,  10.5, 10.7, 10.8, 11,   11,   11.1, 11.2, 11.3,
                           11.4, 11.4, 11.7, 12,   12.9, 12.9, 13.3, 13.7, 13.8, 14,   14.2,
                           14.5, 16,   16.3, 17.3, 17.5, 17.9, 18,   18,   20.6};

/// `low`, `low` + `step`, ... as decimals give them.
DoubleArray steps(Index count, double low, double step, double perUnit) {
  DoubleArray data(count);
  for (Index i = 1; i <= count; ++i) data(i) = (low + step * static_cast<double>(i - 1)) / perUnit;
  return data;
}

// Faults: columns as coarse as a histogram's; columns of a quarter over data in tenths, which take in two and
// three possible values by turns; whole data in parts of 1; more columns than 4 root n where they start and
// end within the data, or where few widths are whole numbers of the step; a dot beside all values of its
// column. Expected by hand, with the number of steps, 4 root n, and the first width that serves. Girth: 123
// of 0.1, 22: 1, from 7.5 to 8.4 on. Tenths from 4.3 to 7.9: 36, 24: 0.2, from 4.3 and 4.4 on. From 4.3
// to 12.8: 85, 37: 0.5, from 4.3 to 4.7 on. Odd numbers: 10 of 2, 13. Quarters: 8, 12. Fours from 0 to 80:
// 20, 18: 5 is no whole number of 4, two steps are 8, from -4 and 0 on. Fifths of 7: 10 steps of 1.4, 13. The
// last power of ten.
TEST_F(Dotplot, ChoosesColumns) {
  const struct {
    DoubleArray data;
    double width, first;
    Index count;
  } cases[] = {
      {girth, 1, 7.95, 14},
      {steps(37, 43, 1, 10), 0.2, 4.35, 19},
      {steps(86, 43, 1, 10), 0.5, 4.5, 18},
      {steps(11, 0, 1, 1), 1, 0, 11},
      {steps(11, 1, 2, 1), 2, 1, 11},
      {steps(9, -4, 1, 4), 0.25, -1, 9},
      {steps(21, 0, 4, 1), 8, -2, 11},
      {steps(11, 0, 7, 5), 1.4, 0, 11},
      {{0, 1e308}, 1e308, 0, 2},
  };
  for (const auto& [data, columnWidth, first, count] : cases) {
    const DotColumns columns(data);
    EXPECT_EQ(columns.width(), columnWidth);
    EXPECT_EQ(columns.placeOf(0), first) << columnWidth;
    EXPECT_EQ(columns.count(), count) << columnWidth;
    EXPECT_EQ(columns.numberOf(data(data.rows())), count - 1) << columnWidth;
  }
}

// Faults: data without a step in columns off the multiples of their width, or in too many: 4 root 4 is 8, and
// columns of 0.5 from 1.5 to 6 would be 10.
TEST_F(Dotplot, TakesDataWithoutStep) {
  run({1.41421356237, 2.2360679775, 3.14159265359, 6.02214076}, {}, "");
  EXPECT_EQ(width, 1);
  EXPECT_EQ(x, (DoubleArray{1, 2, 3, 6}));
}

// Faults: dots in the wrong column, or one too many or too few on a column; a scale that lets a column grow
// past the limit, or is coarser than it must be. Expected: R's table(floor(trees$Girth + 0.5)) less
// 0.05, the middle of 7.5 to 8.4 being 7.95, and by hand ceiling(10 / 4) = 3 values a dot.
TEST_F(Dotplot, StacksDots) {
  run(girth, {}, "");
  EXPECT_EQ(width, 1);
  EXPECT_EQ(scale, 1);
  EXPECT_EQ(x, (DoubleArray{7.95,  8.95,  8.95,  10.95, 10.95, 10.95, 10.95, 10.95, 10.95, 10.95, 10.95,
                            10.95, 10.95, 11.95, 11.95, 12.95, 12.95, 12.95, 13.95, 13.95, 13.95, 13.95,
                            14.95, 15.95, 15.95, 16.95, 17.95, 17.95, 17.95, 17.95, 20.95}));
  EXPECT_EQ(y(13), 9.5);
  run(girth, {}, "4.9");
  EXPECT_EQ(scale, 3);
  EXPECT_EQ(n, (DoubleArray{1, 2, 3, 3, 3, 1, 2, 3, 3, 1, 1, 2, 1, 3, 1, 1}));
  EXPECT_EQ(xAxis, (DoubleArray{6, 8, 10, 12, 14, 16, 18, 20, 22}));
  run(girth, {}, "1E300");
  EXPECT_EQ(scale, 1);
}

// Faults: groups on scales of their own, or over each other; the first label at the bottom. By hand.
TEST_F(Dotplot, SetsGroupsInStrips) {
  run({3, 1, 1, 3, 1, 1, 2}, {"10", "10", "10", "9", "9", "9", "9"}, "1");
  constexpr double no = NoValue;
  EXPECT_EQ(scale, 2);
  EXPECT_EQ(label, (StringArray{"9", "10"}));
  EXPECT_EQ(yAxisY, (DoubleArray{2, 0}));
  EXPECT_EQ(baseY, (DoubleArray{2, 2, no, 0, 0, no}));
  EXPECT_EQ(x, (DoubleArray{1, 2, 3, 1, 3}));
  EXPECT_EQ(y, (DoubleArray{2.5, 2.5, 2.5, 0.5, 0.5}));
  EXPECT_EQ(n, (DoubleArray{2, 1, 1, 2, 1}));
  EXPECT_EQ(group, (DoubleArray{1, 1, 1, 2, 2}));
  EXPECT_EQ(baseX(1), xAxis(1));
}

// Faults: data without spread divided by a width of 0, or with too little of it refused; a stack of no dots;
// outputs of a refused call assigned.
TEST_F(Dotplot, TakesConstantDataAndRefuses) {
  EXPECT_EQ(failureNumber([&] { run({1, 2}, {}, "0"); }), 5);
  EXPECT_EQ(failureNumber([&] { run({1, 2}, {}, "few"); }), 13);
  EXPECT_EQ(failureNumber([&] { run({1, 2}, {"a"}, ""); }), 9);
  EXPECT_FALSE(x.filled() || xAxis.filled());
  run({7.3, 7.3}, {}, "");
  EXPECT_EQ(width, NoValue);
  EXPECT_EQ(x, (DoubleArray{7.3, 7.3}));
  EXPECT_EQ(label, StringArray{""});
  for (const double low : {0.0, 1.0, 1e300}) {
    run({low, std::nextafter(low, 2e300)}, {}, "");
    EXPECT_EQ(width, NoValue);
    EXPECT_EQ(x(1), x(2));
  }
}

}  // namespace
}  // namespace zelkova
