#include <gtest/gtest.h>

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
    plot.DotplotOutput(data, dx, most, width, scale, x, y, n, group, baseX, baseY, xAxis, yAxisY, yAxis);
  }

  yDotplot plot;
  double width = 0, scale = 0;
  DoubleArray x, y, n, group, baseX, baseY, xAxis, yAxisY;
  StringArray yAxis;
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
// three possible values by turns; whole data in parts of 1; a boundary missed by the rounding of tenths.
// Expected by hand. Girth: intervals of 2 (range 12.3, 9 aimed at), 12.3 over 4 root 31 is 0.55, next is 1.
// Tenths from 4.3 to 7.9: intervals of 0.5 (range 3.6, 9 aimed at), 3.6 over 4 root 37 is 0.148, next is 0.2.
// Tenths from 4.3 to 12.8: intervals of 1 (8.5, 12 aimed at), 8.5 over 4 root 86 is 0.229; next is 0.25, and
// 0.5 the first that is a whole number of tenths.
TEST_F(Dotplot, ChoosesColumns) {
  EXPECT_EQ(dotColumnWidth(girth), 1);
  EXPECT_EQ(dotColumnWidth(steps(37, 43, 1, 10)), 0.2);
  EXPECT_EQ(dotColumnWidth(steps(86, 43, 1, 10)), 0.5);
  EXPECT_EQ(dotColumnWidth(steps(11, 0, 1, 1)), 1);
  EXPECT_EQ(dotColumnWidth({7, 7}), 0);
  EXPECT_EQ(dotColumnPlace(0.3, 0.2), 2);
  EXPECT_EQ(dotColumnPlace(0.7, 0.2), 4);
  EXPECT_EQ(dotColumnPlace(-0.1, 0.2), 0);
}

// Faults: dots in the wrong column, or one too many or too few on a column; a scale that lets a column grow
// past the limit, or is coarser than it must be. Expected: R's table(floor(trees$Girth + 0.5)), and by hand
// ceiling(10 / 4) = 3 values a dot.
TEST_F(Dotplot, StacksDots) {
  run(girth, {}, "");
  EXPECT_EQ(width, 1);
  EXPECT_EQ(scale, 1);
  EXPECT_EQ(x, (DoubleArray{8,  9,  9,  11, 11, 11, 11, 11, 11, 11, 11, 11, 11, 12, 12, 13,
                            13, 13, 14, 14, 14, 14, 15, 16, 16, 17, 18, 18, 18, 18, 21}));
  EXPECT_EQ(y(13), 9.5);
  run(girth, {}, "4");
  EXPECT_EQ(scale, 3);
  EXPECT_EQ(x, (DoubleArray{8, 9, 11, 11, 11, 11, 12, 13, 14, 14, 15, 16, 17, 18, 18, 21}));
  EXPECT_EQ(n, (DoubleArray{1, 2, 3, 3, 3, 1, 2, 3, 3, 1, 1, 2, 1, 3, 1, 1}));
  EXPECT_EQ(xAxis, (DoubleArray{8, 10, 12, 14, 16, 18, 20, 22}));
}

// Faults: groups on scales of their own, or over each other; the first label at the bottom. By hand.
TEST_F(Dotplot, SetsGroupsInStrips) {
  run({3, 1, 1, 3, 1, 1, 2}, {"10", "10", "10", "9", "9", "9", "9"}, "1");
  constexpr double no = NoValue;
  EXPECT_EQ(scale, 2);
  EXPECT_EQ(yAxis, (StringArray{"9", "10"}));
  EXPECT_EQ(yAxisY, (DoubleArray{2, 0}));
  EXPECT_EQ(baseY, (DoubleArray{2, 2, no, 0, 0, no}));
  EXPECT_EQ(x, (DoubleArray{1, 2, 3, 1, 3}));
  EXPECT_EQ(y, (DoubleArray{2.5, 2.5, 2.5, 0.5, 0.5}));
  EXPECT_EQ(n, (DoubleArray{2, 1, 1, 2, 1}));
  EXPECT_EQ(group, (DoubleArray{1, 1, 1, 2, 2}));
  EXPECT_EQ(baseX(1), xAxis(1));
}

// Faults: data without spread divided by a width of 0; a stack of no dots; outputs of a refused call
// assigned.
TEST_F(Dotplot, TakesConstantDataAndRefuses) {
  EXPECT_EQ(failureNumber([&] { run({1, 2}, {}, "0"); }), 5);
  EXPECT_EQ(failureNumber([&] { run({1, 2}, {}, "few"); }), 13);
  EXPECT_EQ(failureNumber([&] { run({1, 2}, {"a"}, ""); }), 9);
  EXPECT_FALSE(x.filled() || xAxis.filled());
  run({7.3, 7.3}, {}, "");
  EXPECT_EQ(width, NoValue);
  EXPECT_EQ(x, (DoubleArray{7.3, 7.3}));
}

}  // namespace
}  // namespace zelkova
