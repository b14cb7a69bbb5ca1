#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "unittests/charts/chartData.h"
#include "unittests/support.h"
#include "zelkova/charts/yControlChart.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

struct ZoneChart {
  DoubleArray x, y, failed, centre, lower, upper, sums, phaseX{7}, phaseY{7};

  ZoneChart(const DoubleArray& dy, const StringArray& dx, const StringArray& dp, const std::string& sigma,
            bool resets, const std::string& mean, const std::string& sd, double zone1 = 0) {
    yControlChart().ZoneChartOutput(dy, dx, dp, sigma, "2", resets, zone1, 2, 4, 8, mean, sd, "1, 2,3", x, y,
                                    failed, centre, lower, upper, sums, phaseX, phaseY);
  }
};

const std::string estimates = "Average Moving Range>Pooled Std Dev";

// Faults: a border in the outer zone; the centre on the upper side, or taken for a crossing; a sum that
// starts from the wrong score or goes on after a reset; a reset at the point that signals. Expected: by hand,
// with mean 0 and sigma 1 and the scores 1, 2, 4, 8.
TEST(ZoneChart, ScoresMeansByZone) {
  const DoubleArray y{1, 2, 2.1, 3.1, 0, -1, -3, -3.1, 0.5};
  const ZoneChart chart(y, inSamples(9, 1), StringArray(9), "", false, "0", "1", 1);
  EXPECT_EQ(chart.y, (DoubleArray{0.5, 1.5, 2.5, 3.5, -0.5, -0.5, -2.5, -3.5, 0.5}));
  EXPECT_EQ(chart.sums, (DoubleArray{1, 3, 7, 15, 16, 17, 21, 29, 1}));
  EXPECT_EQ(chart.lower(9, 2), -2);
  EXPECT_EQ(chart.upper(1, 3), 3);
  EXPECT_EQ(chart.centre, DoubleArray(9, 0));
  EXPECT_EQ(chart.phaseX, DoubleArray{7});

  // Subgroups of four: sigma of a mean is half.
  const ZoneChart means({1.2, 1.2, 1.2, 1.2, -0.5, -0.5, -0.5, -0.5}, inSamples(2, 4), StringArray(8), "",
                        false, "0", "1");
  EXPECT_EQ(means.y, (DoubleArray{2.5, -0.5}));

  const DoubleArray level(8, 1.1);
  const ZoneChart on(level, inSamples(8, 1), StringArray(8), "", false, "0", "1");
  EXPECT_EQ(on.sums, (DoubleArray{2, 4, 6, 8, 10, 12, 14, 16}));
  EXPECT_EQ(on.failed, (DoubleArray{NoValue, NoValue, NoValue, 1.5, 1.5, 1.5, 1.5, 1.5}));
  const ZoneChart reset(level, inSamples(8, 1), StringArray(8), "", true, "0", "1");
  EXPECT_EQ(reset.sums, (DoubleArray{2, 4, 6, 8, 2, 4, 6, 8}));
}

// Faults: the wrong one of the two estimates; sums across a phase; positions for a phase without sigma; names
// that ignore case. Expected: R, the zones of Nile[1:30] by mean(abs(diff(x))) / 1.128.
TEST(ZoneChart, EstimatesSigma) {
  const ZoneChart chart(nile, inSamples(30, 1), StringArray(30), estimates, false, "", "");
  EXPECT_EQ(chart.sums, (DoubleArray{0, 0, 0, 2, 2, 2, 4, 2, 6, 6, 0, 2, 0, 0, 0,
                                     0, 0, 4, 4, 0, 0, 2, 2, 4, 6, 8, 0, 0, 4, 6}));
  for (Index i = 1; i <= 30; ++i) EXPECT_EQ(chart.failed(i), i == 26 ? 1.5 : NoValue) << i;

  const ZoneChart phases({1.1, 1.1, 1.1, 5}, inSamples(4, 1), {"a", "a", "b", "c"}, estimates, false, "0",
                         "");
  EXPECT_EQ(phases.phaseX, (DoubleArray{0.5, 0.5, 0.5, 0.75, 0.75, 0.75}));
  EXPECT_EQ(phases.y, (DoubleArray{3.5, 3.5, NoValue, NoValue}));
  EXPECT_EQ(phases.sums, (DoubleArray{8, 16, NoValue, NoValue}));
  EXPECT_EQ(phases.failed(3), NoValue);

  // Pooled sigma 1.5811 over c4(9): means 1 and 4 lie at 2.1 sigma of a mean from 2.5.
  const DoubleArray y{-1, 0, 1, 2, 3, 2, 3, 4, 5, 6};
  const ZoneChart means(y, inSamples(2, 5), StringArray(10), estimates, false, "", "");
  EXPECT_EQ(means.y, (DoubleArray{-2.5, 2.5}));
  EXPECT_EQ(ZoneChart(y, inSamples(2, 5), StringArray(10), "x>rbar", false, "", "").y,
            (DoubleArray{-3.5, 3.5}));
  EXPECT_EQ(failureNumber([&] { ZoneChart(y, inSamples(2, 5), StringArray(10), "Rbar", false, "", ""); }), 9);
  EXPECT_EQ(failureNumber([&] { ZoneChart(y, {"1"}, StringArray(10), estimates, false, "", ""); }), 9);
}

struct ShortRun {
  DoubleArray z, centre, lower, upper, ranges, centre2, lower2, upper2, x, phaseX, phaseY;

  ShortRun(const DoubleArray& dy, const StringArray& dx, const std::string& group, const std::string& sigma,
           const DoubleArray& means = {}, const DoubleArray& sds = {}, double length = 2) {
    yControlChart().ZMROutput(dy, dx, group, sigma, length, z, centre, lower, upper, ranges, centre2, lower2,
                              upper2, x, phaseX, phaseY, "3", "-2.5", "", means, sds);
  }
};

// A run of three parts; the last has a single row.
const DoubleArray sizes{10.1, 10.4, 9.9, 10.6, 50.2, 51.0, 49.5, 9.7, 10.3, 80};
const StringArray parts{"A", "A", "A", "A", "B", "B", "B", "A", "A", "C"};

// Faults: moving ranges across groups; a part's sigma from all parts; values instead of logarithms; groups by
// the wrong rule; lines not those of a sigma of 1; a bound for one chart only. Expected: R, (y - ave(y, g)) /
// s with s the mean of abs(diff()) within the groups over 1.128, of all groups or of the part's.
TEST(ShortRuns, AreStandardised) {
  const auto expectChart = [](const char* group, const char* sigma, const std::vector<double>& z) {
    const ShortRun chart(sizes, parts, group, sigma);
    for (Index i = 1; i <= 10; ++i) EXPECT_NEAR(chart.z(i), z[static_cast<std::size_t>(i - 1)], 1e-9) << i;
    for (const Index first : {1, 5, 10}) EXPECT_EQ(chart.ranges(first), NoValue);
    EXPECT_TRUE(isClose(chart.ranges(6), chart.z(6) - chart.z(5)));
    // By parts the moving range of row 8 reaches back to row 4.
    const bool byParts = group == std::string("By parts");
    EXPECT_EQ(chart.ranges(8), byParts ? std::abs(chart.z(8) - chart.z(4)) : NoValue);
    EXPECT_EQ(chart.phaseX, (DoubleArray{0.4, 0.4, 0.4, 0.7, 0.7, 0.7, 0.9, 0.9, 0.9}));
  };
  expectChart("By runs", "Constant",
              {-0.2307272727, 0.2307272727, -0.5383636364, 0.5383636364, -0.0512727273, 1.1792727273, -1.128,
               -0.4614545455, 0.4614545455, 0});
  expectChart("By parts", "Constant",
              {-0.0993207547, 0.3476226415, -0.3972830189, 0.6455849057, -0.0496603774, 1.1421886792,
               -1.0925283019, -0.6952452830, 0.1986415094, 0});
  expectChart("By runs", "Relative to size",
              {-0.3139984883, 0.3243851370, -0.7502106973, 0.7398240485, -0.0291200009, 0.752, -0.7228799991,
               -0.6544928973, 0.6544928973, 0});
  expectChart("By parts", "Relative to size",
              {-0.1169796916, 0.4414816017, -0.4985803854, 0.8049097076, -0.0291200009, 0.752, -0.7228799991,
               -0.8879693838, 0.2571381515, 0});
  // The lines are those of a sigma of 1: d2 = 1.128, d3 = 0.8525; the bound of -2.5 is for both charts.
  const ShortRun chart(sizes, parts, "By runs", "Constant");
  EXPECT_EQ(chart.x(10), 10);
  EXPECT_EQ(chart.centre(1), 0);
  EXPECT_EQ(chart.lower(10, 1), -2.5);
  EXPECT_EQ(chart.upper(10, 1), 3);
  EXPECT_EQ(chart.centre2(5), 1.128);
  EXPECT_TRUE(isClose(chart.lower2(1, 1), 1.128 - 3 * 0.8525));
  EXPECT_TRUE(isClose(chart.upper2(1, 1), 1.128 + 3 * 0.8525));
}

// Faults: historical values indexed by row or by run, or all or none; a division by a sigma that is not
// there. Expected: by hand.
TEST(ShortRuns, TakeHistoricalValuesOfEachPart) {
  const ShortRun both(sizes, parts, "By runs", "Constant", {10, 50, 78}, {0.5, 2, 4});
  EXPECT_TRUE(isClose(both.z(1), 0.2));
  EXPECT_TRUE(isClose(both.z(7), -0.25));
  EXPECT_TRUE(isClose(both.z(9), 0.6));
  EXPECT_EQ(both.z(10), 0.5);
  const ShortRun some(sizes, parts, "By parts", "Relative to size", {NoValue, NoValue, 4},
                      {NoValue, 0.1, NoValue});
  EXPECT_NEAR(some.z(1), -0.1169796915613, 1e-11);
  EXPECT_TRUE(isClose(some.ranges(6), std::log(51.0 / 50.2) / 0.1));
  EXPECT_EQ(some.z(10), NoValue);

  const ShortRun alike({2, 2, 3, 3}, {"a", "a", "b", "b"}, "By runs", "Constant");
  EXPECT_EQ(alike.z, DoubleArray(4, 0));
  EXPECT_EQ(alike.ranges, (DoubleArray{NoValue, 0, NoValue, 0}));
  const ShortRun few({1, 2, 3, 3}, {"a", "a", "a", "b"}, "By runs", "Constant", {}, {}, 4);
  EXPECT_EQ(few.z, (DoubleArray{NoValue, NoValue, NoValue, 0}));
}

// Faults: bad data that end in a chart.
TEST(ShortRuns, RefuseBadData) {
  const auto number = [](const DoubleArray& y, const StringArray& x, const char* group, const char* sigma,
                         const DoubleArray& means = {}, const DoubleArray& sds = {}, double length = 2) {
    return failureNumber([&] { ShortRun(y, x, group, sigma, means, sds, length); });
  };
  EXPECT_EQ(number(sizes, parts, "by runs", "Constant"), 5);
  EXPECT_EQ(number(sizes, parts, "By runs", ""), 5);
  EXPECT_EQ(number({1, 0}, {"a", "a"}, "By runs", "Relative to size"), 5);
  EXPECT_EQ(number({1, 2}, {"a"}, "By runs", "Constant"), 9);
  EXPECT_EQ(number(sizes, parts, "By runs", "Constant", {1, 2}), 9);
  EXPECT_EQ(number(sizes, parts, "By runs", "Constant", {}, {1, -1, 1}), 5);
  EXPECT_EQ(number(sizes, parts, "By runs", "Constant", {}, {}, 0), 9);
  EXPECT_EQ(number({1, 1}, {"a", "a"}, "By runs", "Constant", {2}), 11);
}

}  // namespace
}  // namespace zelkova
