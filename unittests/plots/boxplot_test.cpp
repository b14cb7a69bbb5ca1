#include <gtest/gtest.h>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/plots/yBoxplot.h"

namespace zelkova {
namespace {

using Slot = BoxplotGroup;

class Boxplot : public WithHost {
 protected:
  void run(const DoubleArray& data, const StringArray& dx1, const StringArray& dx2,
           double confidence = 0.95) {
    plot.BoxplotOutput(data, dx1, dx2, confidence, values, boxX, boxY, medianX, medianY, limitX, limitY,
                       whiskerX, whiskerY, outlierX, outlierY, outlierBox, outlierRow, mean, axisX, axis1,
                       axis2, groupX, group, axis);
  }

  DoubleArray row(Index box) const {
    DoubleArray result(Slot::size);
    for (Index slot = 1; slot <= Slot::size; ++slot) result(slot) = values(box, slot);
    return result;
  }

  yBoxplot plot;
  DoubleArray values, boxX, boxY, medianX, medianY, limitX, limitY, whiskerX, whiskerY, outlierX, outlierY,
      outlierBox, outlierRow, mean, axisX, groupX, axis;
  StringArray axis1, axis2, group;
};

// Faults: whiskers that end at the fences or extremes; an outlier that is lost, or shown without its row;
// quartiles of another rule. Expected: R for v = precip, whose 70 values put the quartiles of this kit on
// quantile(v, c(.25, .5, .75), type = 6); fences and outliers of these; the limits by pbinom(k, 70, 0.5) and
// Hettmansperger and Sheather's interpolation.
TEST_F(Boxplot, SummarisesRainfall) {
  run({67,   54.7, 7,    48.5, 14,   17.2, 20.7, 13,   43.4, 40.2, 38.9, 54.5, 59.8, 48.3,
       22.9, 11.5, 34.4, 35.1, 38.7, 30.8, 30.6, 43.1, 56.8, 40.8, 41.8, 42.5, 31,   31.7,
       30.2, 25.9, 49.2, 37,   35.9, 15,   30.2, 7.2,  36.2, 45.5, 7.8,  33.4, 36.1, 40.2,
       42.7, 42.5, 16.2, 39,   35,   37,   31.4, 37.6, 39.9, 36.2, 42.8, 46.4, 24.7, 49.1,
       46,   35.9, 7.8,  48.2, 15.2, 32.5, 44.7, 42.6, 38.8, 17.4, 40.8, 29.1, 14.6, 59.2},
      {}, {});
  EXPECT_TRUE(areClose(row(1), {70, 34.8857142857143, 7, 7, 28.3, 36.6, 42.875, 59.8, 67, 33.7813840807814,
                                40.0855847757656, 1}));
  EXPECT_EQ(outlierY, DoubleArray{67});
  EXPECT_EQ(outlierRow, DoubleArray{1});
  EXPECT_EQ(axis1, StringArray{""});
}

// Faults: lines or outliers drawn at another group's place; points of two groups joined for want of a gap.
// Expected: R's boxplot.stats for sprays C and D of InsectSprays. Its hinges and this kit's quartiles are the
// same where neighbouring values are, so all of C agrees, and of D all but Q1, by hand 3 + 0.75 (4 - 3).
TEST_F(Boxplot, DrawsGroupsAtTheirPlaces) {
  run({0, 1, 7, 2, 3, 1, 2, 1, 3, 0, 1, 4, 3, 5, 12, 6, 4, 3, 5, 5, 5, 5, 2, 4},
      {"C", "C", "C", "C", "C", "C", "C", "C", "C", "C", "C", "C",
       "D", "D", "D", "D", "D", "D", "D", "D", "D", "D", "D", "D"},
      {});
  constexpr double no = NoValue;
  EXPECT_EQ(whiskerY, (DoubleArray{1, 0, no, 3, 4, no, 3.75, 2, no, 5, 6, no}));
  EXPECT_EQ(whiskerX, (DoubleArray{1, 1, no, 1, 1, no, 2, 2, no, 2, 2, no}));
  EXPECT_EQ(medianY, (DoubleArray{1.5, 1.5, no, 5, 5, no}));
  EXPECT_EQ(boxY, (DoubleArray{1, 1, 3, 3, 1, no, 3.75, 3.75, 5, 5, 3.75, no}));
  EXPECT_EQ(outlierY, (DoubleArray{7, 12}));
  EXPECT_EQ(outlierX, (DoubleArray{1, 2}));
  EXPECT_EQ(outlierBox, outlierX);
  EXPECT_EQ(outlierRow, (DoubleArray{3, 15}));
  EXPECT_EQ(axis, (DoubleArray{0, 2, 4, 6, 8, 10, 12}));
}

// Faults: boxes for pairs without data; levels in the order of texts, or as they come; the axis of levels not
// above their boxes; a single value that ends in a failure of the limits; a whisker that points into its box.
// Expected by hand: for 1, 2, 3, 4, 1000 Q1 is 1 + 0.75, Q3 is 4 + 0.25 (1000 - 4) and only 1000 lies outside
// the fences; the last value within, 4, lies inside the box.
TEST_F(Boxplot, SetsTwoFactorsWithinEachOther) {
  run({5, 1, 2, 3, 4, 1000, 6, 8}, {"10", "9", "9", "9", "9", "9", "9", "10"},
      {"b", "a", "a", "a", "a", "a", "B2", "a"});
  EXPECT_EQ(axis1, (StringArray{"9", "9", "10", "10"}));
  EXPECT_EQ(axis2, (StringArray{"a", "B2", "a", "b"}));
  EXPECT_EQ(axisX, (DoubleArray{1, 2, 4, 5}));
  EXPECT_EQ(group, (StringArray{"9", "10"}));
  EXPECT_EQ(groupX, (DoubleArray{1.5, 4.5}));
  EXPECT_EQ(mean, (DoubleArray{202, 6, 8, 5}));
  EXPECT_EQ(row(1), (DoubleArray{5, 202, 1, 1, 1.75, 3, 253, 253, 1000, 1, 1000, 1}));
  EXPECT_EQ(row(2), (DoubleArray{1, 6, 6, 6, 6, 6, 6, 6, 6, NoValue, NoValue, 0}));
  EXPECT_EQ(limitX.size(), boxX.size());
  EXPECT_EQ(limitX(7), NoValue);
}

// Fault: a value on the fence an outlier by the rounding of decimals. By hand: Q1 is the third of 11, 1.6, Q3
// the ninth, 2, and 1.6 - 1.5 x 0.4 is 1.
TEST_F(Boxplot, CountsTheFenceAsInside) {
  run({1.0, 1.3, 1.6, 1.6, 1.8, 1.9, 1.9, 1.9, 2, 2, 2}, {}, {});
  EXPECT_EQ(values(1, Slot::Outliers), 0);
  EXPECT_EQ(values(1, Slot::LowerWhisker), 1);
  EXPECT_FALSE(outlierY.filled());
}

// Faults: a confidence that is none taken for one; a label too few read past the end; outputs of a refused
// call half assigned.
TEST_F(Boxplot, Refuses) {
  const DoubleArray two{1, 2};
  EXPECT_EQ(failureNumber([&] { run(two, {}, {}, 1); }), 5);
  EXPECT_EQ(failureNumber([&] { run(two, {}, {"a", "b"}); }), 5);
  EXPECT_EQ(failureNumber([&] { run(two, {"a"}, {}); }), 9);
  EXPECT_EQ(failureNumber([&] { run({}, {}, {}); }), 9);
  EXPECT_EQ(failureNumber([&] { run({-1e308, 1e308}, {}, {}); }), 6);
  EXPECT_FALSE(values.filled() || boxX.filled() || axis.filled());
}

}  // namespace
}  // namespace zelkova
