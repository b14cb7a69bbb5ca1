#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unittests/charts/chartData.h"
#include "unittests/support.h"
#include "zelkova/charts/yControlChart.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

struct Options {
  std::string limits = "1";
  std::string lowerBound = "", upperBound = "", test1 = "", test2 = "", test3 = "";
  std::string mean = "", sd = "", rangeLength = "2", averageLength = "", weight = "", between = "",
              within = "";
};

struct Chart {
  DoubleArray x, y, centre, lower, upper, phaseX{7}, phaseY{7};
  StringArray failed;

  Chart(const std::string& type, const DoubleArray& dy, const StringArray& dx, const StringArray& dp,
        const std::string& estimate, const Options& o = {}) {
    yControlChart().ControlChartOutput(type, dy, dx, dp, x, y, centre, lower, upper, phaseX, phaseY, failed,
                                       o.limits, o.lowerBound, o.upperBound, estimate, o.test1, o.test2,
                                       o.test3, "", "", "", "", "", o.mean, o.sd, o.rangeLength,
                                       o.averageLength, o.weight, o.between, o.within);
  }
};

struct Case {
  const char* type;
  const char* estimate;
  Options options;
  Index place;
  double plotted, centre, sigma;
};

void expectPoints(const DoubleArray& dy, const StringArray& dx, const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    const Chart chart(c.type, dy, dx, StringArray(dy.rows()), c.estimate, c.options);
    const double centre = chart.centre(c.place);
    const DoubleArray actual{chart.y(c.place), centre, chart.upper(c.place, 1) - centre,
                             centre - chart.lower(c.place, 1)};
    EXPECT_TRUE(areClose(actual, {c.plotted, c.centre, c.sigma, c.sigma}, 1e-9)) << c.type << " " << c.place;
  }
}

// Faults: limits that do not follow a subgroup's size; a subgroup's mean weighed by its size in a moving
// average; the power of an EWMA paired with the oldest size; moving ranges of means of all sizes in a
// between/within sigma, or divided by sqrt(N) again; a name matched in the wrong case. Expected: R, each
// chart by its definition.
TEST(ControlCharts, OfSubgroupsOfUnequalSizes) {
  const LostRings rings;
  const char* const both = "Average Moving Range>Pooled Std Dev";
  const char* const sbar = "Average Moving Range>Sbar";
  const Options average{.averageLength = "3"};
  const Options weighted{.weight = "0.2"};
  const Options between{.between = " 0.004"};
  const double mean = 74.0011293103448;
  const std::vector<Case> cases{
      {"XBAR", "pooled std dev", {}, 1, 74.01075, mean, 0.0049589771587595},
      {"XBAR", "pooled std dev", {}, 5, 73.9995, mean, 0.00701305275341608},
      {"RCHART", "RBar", {}, 1, 0.038, 0.0203525863298555, 0.00869260049464543},
      {"RCHART", "RBar", {}, 8, NoValue, 0.00988469467210079, 0.00810544963112265},
      {"SCHART", "SBar", {}, 5, 0.0106066017177986, 0.00782960566095508, 0.00591534442743043},
      {"INDIVIDUAL", "Median Moving Range", {}, 116, 74.013, mean, 0.00838574423479619},
      {"MA", "x>sbar", average, 2, 74.005675, mean, 0.0032913635100759},
      {"MA", "x>sbar", average, 6, 73.9993666666667, mean, 0.00310312727643283},
      {"MA", "x>sbar", average, 9, 73.9974, mean, 0.00387027969865487},
      {"EWMA", "x>RBAR", weighted, 1, 74.0030534482759, mean, 0.000988469467210079},
      {"EWMA", "x>RBAR", weighted, 2, 74.0025627586207, mean, 0.00121545575569872},
      {"EWMA", "x>RBAR", weighted, 25, 74.0016152434644, mean, 0.00164348114359483},
      {"IMRRS1", both, {}, 8, 73.988, mean, 0.00597517730496573},
      {"IMRRS1", both, between, 1, 74.01075, mean, 0.00597270153020212},
      {"IMRRS2", both, {}, 1, NoValue, 0.00674, 0.00509383865248329},
      {"IMRRS2", both, {}, 8, 0.012, 0.00674, 0.00509383865248329},
      {"IMRRS3", both, {}, 1, 0.038, 0.0204210679397716, 0.00872184902682621},
      {"IMRRS3", sbar, {}, 1, 0.0169975488428974, 0.00904084752607182, 0.00381537311396498},
  };
  expectPoints(rings.y, rings.sample, cases);
}

// Faults: a window lost at the end of a block or while it fills; individual values taken for one subgroup.
// Expected: R, by the definitions.
TEST(ControlCharts, OfIndividualValues) {
  const Options average{.averageLength = "4"};
  const Options weighted{.rangeLength = "3", .weight = "0.4"};
  const char* const range = "Average Moving Range>x";
  const double mean = 1078.36666666667;
  const std::vector<Case> cases{
      {"MA", range, average, 2, 1140, mean, 90.8742023755272},
      {"MA", range, average, 3, 1081, mean, 74.1984755341522},
      {"MA", range, average, 30, 936, mean, 64.2577647346539},
      {"EWMA", "Median Moving Range", weighted, 2, 1121.012, mean, 62.4220291009887},
      {"EWMA", "Median Moving Range", weighted, 30, 926.601559086773, mean, 66.9080604533989},
  };
  expectPoints(nile, inSamples(30, 1), cases);
  const Chart ranges("MR", nile, {}, StringArray(30), "Average Moving Range", {.rangeLength = "3"});
  EXPECT_EQ(ranges.y(2), NoValue);
  EXPECT_EQ(ranges.y(3), 197);
  EXPECT_NE(ranges.upper(1, 1), NoValue);
}

// Faults: limits of a published chart missed. Expected: Montgomery's X-bar chart of the piston rings (limits
// 74.014 and 73.988) and P chart of the orange juice cans (0.2313, 0.0524, 0.4102).
TEST(ControlCharts, AgreeWithPublishedCharts) {
  Options three;
  three.limits = "3";
  three.test1 = "3";
  const Chart rings("XBAR", pistonRings, inSamples(25, 5), StringArray(125), "Rbar", three);
  EXPECT_NEAR(rings.centre(1), 74.001, 0.0005);
  EXPECT_NEAR(rings.upper(1, 1), 74.014, 0.0007);
  EXPECT_NEAR(rings.lower(25, 1), 73.988, 0.0005);
  EXPECT_EQ(rings.failed, StringArray(25));

  const DoubleArray cans{12, 15, 8, 10, 4,  7,  16, 9,  14, 10, 5,  6, 17, 12, 22,
                         8,  10, 5, 13, 11, 20, 18, 24, 15, 9,  12, 7, 13, 9,  6};
  const Chart juice("PChart", cans, StringArray(30, "50"), StringArray(30), "", three);
  EXPECT_NEAR(juice.centre(1), 0.2313, 5e-5);
  EXPECT_NEAR(juice.lower(1, 1), 0.0524, 5e-5);
  EXPECT_NEAR(juice.upper(1, 1), 0.4102, 5e-5);
  for (Index i = 1; i <= 30; ++i) EXPECT_EQ(juice.failed(i), i == 15 || i == 23 ? "#1#" : "") << i;
}

// Faults: rates averaged over samples instead of pooled; standard errors at the wrong size; a historical
// value for one phase only. Expected: by hand.
TEST(ControlCharts, OfAttributes) {
  const DoubleArray counts{2, 4, 3};
  const StringArray sizes{"16", " 25", "4E1"};
  const StringArray phase(3);
  // p = 9/81 = 1/9, sqrt(p (1 - p)) = sqrt(8)/9.
  const double spread = std::sqrt(8.0) / 9;
  const Chart p("PChart", counts, sizes, phase, "");
  EXPECT_TRUE(isClose(p.y(2), 0.16));
  EXPECT_TRUE(isClose(p.upper(2, 1), 1.0 / 9 + spread / 5));
  const Chart np("NPChart", counts, sizes, phase, "");
  EXPECT_EQ(np.y(2), 4);
  EXPECT_TRUE(isClose(np.lower(1, 1), 16.0 / 9 - 4 * spread));
  const Chart c("CChart", counts, {}, phase, "");
  EXPECT_TRUE(isClose(c.upper(3, 1), 3 + std::sqrt(3.0)));
  const Chart u("UChart", counts, sizes, phase, "");
  EXPECT_TRUE(isClose(u.upper(1, 1), 1.0 / 9 + 1.0 / 12));

  Options historical;
  historical.mean = "0.05";
  const Chart phases("PChart", counts, sizes, {"a", "b", "b"}, "", historical);
  EXPECT_EQ(phases.centre, DoubleArray(3, 0.05));
  for (const char* size : {"0", "-1", "x", ""}) {
    const int expected = size == std::string("0") ? 11 : size == std::string("-1") ? 5 : 13;
    EXPECT_EQ(failureNumber([&] { Chart("UChart", counts, {"5", size, "5"}, phase, ""); }), expected) << size;
  }
  EXPECT_EQ(failureNumber([&] { Chart("PChart", {20}, {"5"}, {""}, ""); }), 5);
}

// Faults: something that crosses a phase; dividers in positions; PhaseX emptied where there is one phase;
// tests that see drawn limits or bounds. Expected: by hand.
TEST(ControlCharts, CutIntoPhases) {
  Options options;
  options.limits = "1, 2,3";
  options.lowerBound = " 0 ";
  options.test1 = "1";
  options.test2 = "2";
  const Chart chart("INDIVIDUAL", {1, 3, 10, 2}, {}, {"A", "A", "B", "A"}, "Average Moving Range", options);
  EXPECT_EQ(chart.x, (DoubleArray{1, 2, 3, 4}));
  EXPECT_EQ(chart.phaseX, (DoubleArray{0.5, 0.5, 0.5, 0.75, 0.75, 0.75}));
  EXPECT_EQ(chart.phaseY, (DoubleArray{0, 1, 0, 0, 1, 0}));
  ASSERT_EQ(chart.lower.columns(), 3);
  EXPECT_TRUE(isClose(chart.lower(1, 1), 2 - 2 / 1.128));
  EXPECT_EQ(chart.lower(1, 2), 0);
  EXPECT_TRUE(isClose(chart.upper(2, 3), 2 + 6 / 1.128));
  // One point has no sigma.
  EXPECT_EQ(chart.centre(3), NoValue);
  EXPECT_EQ(chart.lower(3, 1), NoValue);
  EXPECT_EQ(chart.y(3), 10);
  EXPECT_EQ(chart.failed, StringArray(4));

  options.sd = "0.5";
  options.mean = "2";
  const Chart historical("INDIVIDUAL", {1, 3, 10, 2.4}, {}, StringArray(4), "", options);
  EXPECT_EQ(historical.phaseX, DoubleArray{7});
  EXPECT_EQ(historical.failed, (StringArray{"#1#", "#1#", "#1##2#", "#2#"}));
}

// Faults: a chart of subgroups of one value that fails or has lines; a name that is none taken for another;
// constant data that part from their centre by a rounding. Expected: by hand.
TEST(ControlCharts, WithoutSpread) {
  const DoubleArray y{3, 5, 4};
  const StringArray single{"1", "2", "3"};
  const Chart ranges("RCHART", y, single, StringArray(3), "Rbar", {.test1 = "1", .test2 = "2"});
  EXPECT_EQ(ranges.y, DoubleArray(3, NoValue));
  EXPECT_EQ(ranges.centre, DoubleArray(3, NoValue));
  EXPECT_EQ(ranges.failed, StringArray(3));
  const Chart means("XBAR", y, single, StringArray(3), "Rbar");
  EXPECT_TRUE(isClose(means.upper(1, 1), 4 + 1.5 / 1.128));
  const Chart unnamed("SCHART", y, StringArray(3), StringArray(3), "Rbar");
  EXPECT_EQ(unnamed.upper(1, 1), 0);

  const DoubleArray constant(30, 0.1);
  for (const char* type : {"XBAR", "INDIVIDUAL", "EWMA"}) {
    const Chart chart(type, constant, inSamples(10, 3), StringArray(30), "Average Moving Range>Rbar",
                      {.test1 = "1", .test3 = "1", .weight = "0.3"});
    EXPECT_EQ(chart.failed, StringArray(chart.y.rows())) << type;
  }
}

// Faults: bad options that end in a chart; results half assigned.
TEST(ControlCharts, RefuseBadOptions) {
  const DoubleArray y{1, 2, 3, 5};
  const StringArray x{"1", "1", "2", "2"};
  const StringArray p(4);
  const auto number = [&](const char* type, const char* estimate, const Options& options) {
    return failureNumber([&] { Chart(type, y, x, p, estimate, options); });
  };
  EXPECT_EQ(number("xbar", "Rbar", {}), 5);
  EXPECT_EQ(number("XBAR", "Rbar", {.limits = ""}), 13);
  EXPECT_EQ(number("XBAR", "Rbar", {.limits = "1,,3"}), 13);
  EXPECT_EQ(number("XBAR", "Rbar", {.upperBound = "x"}), 13);
  EXPECT_EQ(number("XBAR", "Rbar", {.mean = " "}), 13);
  EXPECT_EQ(number("XBAR", "Rbar", {.sd = "-1"}), 5);
  EXPECT_EQ(number("MR", "Average Moving Range", {.rangeLength = ""}), 13);
  EXPECT_EQ(number("MR", "Average Moving Range", {.rangeLength = "0"}), 9);
  EXPECT_EQ(number("EWMA", "Rbar", {.weight = "0.2"}), 9);
  EXPECT_EQ(number("EWMA", "x>Rbar", {.weight = "1.5"}), 5);
  EXPECT_EQ(failureNumber([&] { Chart("XBAR", y, {"1"}, p, "Rbar"); }), 9);
  EXPECT_EQ(failureNumber([&] { Chart("INDIVIDUAL", y, {}, {"1"}, ""); }), 9);
  EXPECT_EQ(failureNumber([&] { Chart("CChart", {}, {}, {}, ""); }), 9);
}

// Fault: data without phases that need a column of labels for their only one. Expected: the chart with the
// labels.
TEST(ControlCharts, NeedNoLabelsForASinglePhase) {
  const Options tests{.test1 = "1", .rangeLength = "2"};
  const Chart labelled("INDIVIDUAL", nile, {}, StringArray(30, "1"), "Average Moving Range", tests);
  const Chart unlabelled("INDIVIDUAL", nile, {}, {}, "Average Moving Range", tests);
  EXPECT_EQ(unlabelled.lower, labelled.lower);
  EXPECT_EQ(unlabelled.failed, labelled.failed);
}

}  // namespace
}  // namespace zelkova
