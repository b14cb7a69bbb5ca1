#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/capability/yCapabilityB.h"
#include "zelkova/capability/yCapabilityP.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

// Published data of Montgomery, Introduction to Statistical Quality Control: nonconforming cans of orange
// juice concentrate in 30 samples of 50 (347 in all), nonconforming purchase orders in 25 samples (234 of
// 2450), nonconformities of 26 samples of 100 printed circuit boards (516), and of 10 rolls of dyed cloth
// (153 on 107.5 units of 50 square metres).
const DoubleArray cans{12, 15, 8, 10, 4,  7,  16, 9,  14, 10, 5,  6, 17, 12, 22,
                       8,  10, 5, 13, 11, 20, 18, 24, 15, 9,  12, 7, 13, 9,  6};
const DoubleArray orders{12, 8, 6, 9, 10, 12, 11, 16, 10, 6, 20, 15, 9, 8, 6, 8, 10, 7, 5, 8, 5, 8, 10, 6, 9};
const DoubleArray orderSizes{100, 80,  80, 100, 110, 110, 100, 100, 90,  90,  110, 120, 120,
                             120, 110, 80, 80,  80,  90,  100, 100, 100, 100, 90,  90};
const DoubleArray boards{21, 24, 16, 12, 15, 5,  28, 20, 31, 25, 20, 24, 16,
                         19, 10, 17, 13, 22, 18, 39, 30, 24, 16, 19, 17, 15};
const DoubleArray cloth{14, 12, 20, 11, 7, 10, 21, 16, 19, 23};
const DoubleArray clothUnits{10, 8, 13, 10, 9.5, 10, 12, 10.5, 12, 12.5};

DoubleArray binomial(const DoubleArray& dy, const DoubleArray& dxN, const std::string& target = "",
                     const std::string& histP = "") {
  DoubleArray result;
  yCapabilityB().CapabilityBOutput(dy, dxN, target, histP, result);
  return result;
}

struct BinomialPlots {
  DoubleArray cumX, cum, cumAverage, cumLower, cumUpper, rate, sizes, ascending, lower, upper, x, observed,
      expected;
  StringArray label;

  BinomialPlots(const DoubleArray& dy, const DoubleArray& dxN, const std::string& histP) {
    yCapabilityB().CapabilityBPlotOutput(dy, dxN, "", histP, cumX, cum, cumAverage, cumLower, cumUpper, rate,
                                         sizes, ascending, lower, upper, x, observed, expected, label);
  }
};

struct PoissonPlots {
  DoubleArray cumX, cum, cumAverage, cumLower, cumUpper, rate, sizes, rates, average, observed, expected;
  StringArray label;

  PoissonPlots(const DoubleArray& dy, const DoubleArray& dxN, const std::string& histMu) {
    yCapabilityP().CapabilityPPlotOutput(dy, dxN, "", histMu, cumX, cum, cumAverage, cumLower, cumUpper, rate,
                                         sizes, rates, average, observed, expected, label);
  }
};

/// `values` and `NoValue` after them, `n` in all.
DoubleArray padded(const std::vector<double>& values, Index n) {
  DoubleArray result(n, NoValue);
  std::copy(values.begin(), values.end(), result.vector().begin());
  return result;
}

class AttributeCapability : public WithHost {};

// Faults: one of the two quantiles with the degrees of freedom of the other; x that ignores a historical
// proportion, or loses one to rounding (0.29 of 1500 is 434.99... in doubles); Z of the wrong sign (-0 at one
// half), or in the order of the limits instead of their size. Expected: R's binom.test and qnorm.
TEST_F(AttributeCapability, OfDefectivesAgreesWithR) {
  struct Case {
    const char* histP;
    double p, lower, upper, z, zLarger, zSmaller;
  };
  for (const Case& c : std::vector<Case>{
           {"", 347.0 / 1500, 0.210202844590001, 0.253520913022585, 0.734462894680302, 0.805717617036121,
            0.663450884193974},
           {" .25", 0.25, 0.228260329601057, 0.272722802929867, 0.674489750196082, 0.744588273343819,
            0.604598797501882},
           {"0.29", 0.29, 0.267133146727155, 0.313691950682793, 0.553384719555673, 0.621506691015105,
            0.485412310854854},
           {"0.5", 0.5, 0.474384689604042, 0.525615310395958, 0, 0.0642522432382303, -0.0642522432382303},
           {"0.6", 0.6, 0.574698873553719, 0.62490876151602, -0.2533471031358, -0.188350050326227,
            -0.318398762349902},
           {"0", 0, 0, 0.00245623148419853, NoValue, NoValue, 2.81271853857609},
           {"1", 1, 0.997543768515802, 1, NoValue, -2.81271853857609, NoValue}}) {
    const DoubleArray expected{
        c.p,       c.lower,       c.upper,       100 * c.p, 100 * c.lower, 100 * c.upper,
        1E6 * c.p, 1E6 * c.lower, 1E6 * c.upper, c.z,       c.zLarger,     c.zSmaller,
        20};
    EXPECT_TRUE(areClose(binomial(cans, DoubleArray(30, 50), " 20 ", c.histP), expected, 1e-10)) << c.histP;
  }
  EXPECT_FALSE(std::signbit(binomial({1}, {2})(BinomialCapability::Z)));
  EXPECT_EQ(binomial(cans, DoubleArray(30, 50))(BinomialCapability::Target), NoValue);
  // The same without a historical value: everyday data that have no defectives, or nothing else.
  EXPECT_TRUE(isClose(binomial({0, 0}, {700, 800})(BinomialCapability::PUpper), 0.00245623148419853, 1e-10));
  EXPECT_TRUE(isClose(binomial({7, 8}, {7, 8})(BinomialCapability::PUpper), 1));
}

// Faults: limits of the rate plot in the order of the samples, or of the observed counts; cumulative limits
// of the whole study, or of observed counts where a historical proportion stands. Expected: R's binom.test,
// and for counts that are not whole the same quantiles of F with whole degrees of freedom.
TEST_F(AttributeCapability, ChartsOfDefectivesOfUnequalSamples) {
  const BinomialPlots observed(orders, orderSizes, "");
  const DoubleArray none(25, NoValue);
  EXPECT_EQ(observed.cumX(25), 25);
  EXPECT_EQ(observed.rate(2), 10);
  EXPECT_EQ(observed.sizes, orderSizes);
  EXPECT_EQ(observed.x, none);
  EXPECT_EQ(observed.observed, none);
  EXPECT_EQ(observed.expected, none);
  EXPECT_EQ(observed.label, (StringArray{"Rate of Defectives", "% Defectives", "Sample Size"}));
  EXPECT_TRUE(isClose(observed.cumAverage(1), 9.55102040816327));
  struct Point {
    Index i;
    double middle, lower, upper;
  };
  for (const Point& p : std::vector<Point>{{1, 12, 6.35689025611593, 20.0235683619969},
                                           {2, 100.0 / 9, 6.92048586038292, 16.6377112407433},
                                           {25, 9.55102040816327, 8.41564839864949, 10.7841051039128}}) {
    EXPECT_TRUE(isClose(observed.cum(p.i), p.middle)) << p.i;
    EXPECT_TRUE(isClose(observed.cumLower(p.i), p.lower, 1e-10)) << p.i;
    EXPECT_TRUE(isClose(observed.cumUpper(p.i), p.upper, 1e-10)) << p.i;
  }
  for (const Point& p : std::vector<Point>{{1, 80, 4.07852493847231, 18.2602670745765},
                                           {5, 80, 4.07852493847231, 18.2602670745765},
                                           {15, 100, 4.57222922092578, 17.0924005091714},
                                           {25, 120, 4.87037032325873, 16.3787753498856}}) {
    EXPECT_EQ(observed.ascending(p.i), p.middle) << p.i;
    EXPECT_TRUE(isClose(observed.lower(p.i), p.lower, 1e-10)) << p.i;
    EXPECT_TRUE(isClose(observed.upper(p.i), p.upper, 1e-10)) << p.i;
  }

  const BinomialPlots historical(orders, orderSizes, "0.1");
  EXPECT_EQ(historical.cumAverage(1), 10);
  EXPECT_TRUE(isClose(historical.cumLower(1), 4.90046892214859, 1e-10));
  EXPECT_TRUE(isClose(historical.cumUpper(2), 15.3435031652835, 1e-10));
  EXPECT_TRUE(isClose(historical.upper(15), 17.6222597740023, 1e-10));
  // A first sample without defectives.
  EXPECT_EQ(BinomialPlots({0, 1}, {10, 20}, "").cumLower(1), 0);
}

// Faults: ranks of equal counts not averaged, counts in the order of the samples, a quantile off by one, a
// plot that ignores the historical value. Expected: R's qbinom and qpois at (mean rank - 0.375)/(n + 0.25).
TEST_F(AttributeCapability, PlotsOfEqualSamples) {
  const std::vector<double> distinctCans{4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 20, 22, 24};
  const DoubleArray fifty(30, 50);
  const BinomialPlots plots(cans, fifty, "");
  const DoubleArray none(30, NoValue);
  EXPECT_EQ(plots.x(30), 30);
  EXPECT_EQ(plots.observed, padded(distinctCans, 30));
  EXPECT_EQ(plots.expected, padded({6, 7, 8, 9, 10, 10, 11, 12, 12, 13, 13, 14, 14, 15, 15, 16, 16, 18}, 30));
  EXPECT_EQ(BinomialPlots(cans, fifty, "0.25").expected,
            padded({7, 8, 9, 10, 11, 11, 12, 13, 13, 14, 14, 15, 15, 16, 16, 17, 18, 19}, 30));
  for (const DoubleArray* empty : {&plots.sizes, &plots.ascending, &plots.lower, &plots.upper}) {
    EXPECT_EQ(*empty, none);
  }
  EXPECT_EQ(plots.label, (StringArray{"Binomial Plot", "Expected Defectives", "Observed Defectives"}));
  EXPECT_EQ(BinomialPlots({3, 3, 3}, {3, 3, 3}, "").expected, padded({3}, 3)) << "nothing but defectives";

  const DoubleArray hundred(26, 100);
  const PoissonPlots defects(boards, hundred, "");
  EXPECT_EQ(defects.observed,
            padded({5, 10, 12, 13, 15, 16, 17, 18, 19, 20, 21, 22, 24, 25, 28, 30, 31, 39}, 26));
  EXPECT_EQ(defects.expected,
            padded({12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 21, 22, 23, 24, 25, 26, 27, 29}, 26));
  EXPECT_EQ(PoissonPlots(boards, hundred, "0.22").expected,
            padded({13, 15, 16, 17, 18, 19, 20, 21, 22, 23, 23, 24, 25, 26, 27, 28, 29, 32}, 26));
  EXPECT_EQ(defects.average, DoubleArray(26, NoValue));
  EXPECT_EQ(defects.label, (StringArray{"Poisson Plot", "Expected Defects", "Observed Defects"}));
  EXPECT_EQ(PoissonPlots({0, 0, 0, 1, 0, 2, 0, 0, 1, 0}, DoubleArray(10, 1), "").expected,
            padded({0, 1, 2}, 10));
}

// Faults: limits that follow a historical rate, or lose the one more defect of the upper limit; a cumulative
// rate of means. Expected: R's poisson.test; 0 and qchisq(0.975, 2)/2/10 without a defect on 10 units.
TEST_F(AttributeCapability, OfDefectsAgreesWithR) {
  DoubleArray result;
  const yCapabilityP study;
  study.CapabilityPOutput(cloth, clothUnits, "", "", result);
  EXPECT_TRUE(
      areClose(result, {153 / 107.5, 1.20667139769051, 1.66749194514775, 7 / 9.5, 1.84, NoValue}, 1e-10));
  study.CapabilityPOutput(boards, DoubleArray(26, 100), " 0.15", " 0.2 ", result);
  EXPECT_TRUE(areClose(result, {0.2, 0.181704909543665, 0.216347848047671, 0.05, 0.39, 0.15}, 1e-10));
  study.CapabilityPOutput({0, 0}, {4, 6}, "", "", result);
  EXPECT_TRUE(areClose(result, {0, 0, 0.368887945411394, 0, 0, NoValue}, 1e-10));

  const PoissonPlots plots(cloth, clothUnits, "1.5");
  EXPECT_EQ(plots.cumX(10), 10);
  EXPECT_TRUE(isClose(plots.cum(2), 26.0 / 18));
  EXPECT_EQ(plots.cumAverage(10), 1.5);
  EXPECT_TRUE(isClose(plots.cumLower(1), 1.20667139769051, 1e-10));
  EXPECT_TRUE(isClose(plots.cumUpper(10), 1.66749194514775, 1e-10));
  EXPECT_EQ(plots.rate(1), 1.4);
  EXPECT_EQ(plots.sizes, clothUnits);
  EXPECT_EQ(plots.rates, plots.rate);
  EXPECT_EQ(plots.average, DoubleArray(10, 1.5));
  EXPECT_EQ(plots.observed, DoubleArray(10, NoValue));
  EXPECT_EQ(plots.label, (StringArray{"Defect Rate", "DPU", "Sample"}));
}

// Faults: data that are no counts, or historical values that are no rates, judged all the same; results
// assigned by a call that fails.
TEST_F(AttributeCapability, RefusesWhatIsNoStudy) {
  struct Refusal {
    DoubleArray dy, dxN;
    const char* historical;
    int ofDefectives, ofDefects;
  };
  for (const Refusal& r : std::vector<Refusal>{{{1, 2}, {10, 0}, "", 11, 11},
                                               {{1, 2}, {10, -10}, "", 5, 5},
                                               {{1, -2}, {10, 10}, "", 5, 5},
                                               {{1, 11}, {10, 10}, "", 5, 0},
                                               {{1, 2}, {10}, "", 9, 9},
                                               {{1, 2}, {10, 10, 10}, "", 9, 9},
                                               {{}, {}, "", 9, 9},
                                               {{1, 2}, {10, 10}, "1.5", 5, 0},
                                               {{1, 2}, {10, 10}, "-0.1", 5, 5},
                                               {{1, 2}, {10, 10}, "few", 13, 13}}) {
    DoubleArray result{1};
    EXPECT_EQ(failureNumber([&] { yCapabilityB().CapabilityBOutput(r.dy, r.dxN, "", r.historical, result); }),
              r.ofDefectives);
    EXPECT_EQ(failureNumber([&] { BinomialPlots(r.dy, r.dxN, r.historical); }), r.ofDefectives);
    EXPECT_EQ(result, DoubleArray{1});
    EXPECT_EQ(failureNumber([&] { yCapabilityP().CapabilityPOutput(r.dy, r.dxN, "", r.historical, result); }),
              r.ofDefects);
  }
}

}  // namespace
}  // namespace zelkova
