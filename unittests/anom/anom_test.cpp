#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/layouts.h"
#include "unittests/support.h"
#include "zelkova/anom/criticalValue.h"
#include "zelkova/anom/yANOM.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

DoubleArray rowOf(const DoubleArray& table, Index i) {
  DoubleArray row(table.columns());
  for (Index j = 1; j <= table.columns(); ++j) row(j) = table(i, j);
  return row;
}

DoubleArray columnOf(const DoubleArray& table, Index j) {
  const auto column = table.column(j);
  return DoubleArray(std::vector<double>(column.begin(), column.end()));
}

class ANOM : public WithHost {
 protected:
  void one(const DoubleArray& dy, const StringArray& dx, double alpha) {
    anom.ANOMOneOutput(dy, dx, alpha, summary, chart, labels);
  }
  void two(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2, bool additive,
           double alpha = 0.05) {
    anom.ANOMTwoOutput(dy, dx1, dx2, additive, alpha, summary, chart, chart2, chart12, labels, labels2,
                       labels12);
  }

  yANOM anom;
  DoubleArray summary, chart, chart2, chart12;
  StringArray labels, labels2, labels12;
  bool tooSmall = false;
};

// Faults: a wrong integral, too few nodes or terms, a wrong mixing over s. Expected values do without the
// cosine integral where they can. Three levels: the deviations fill a regular hexagon, and alpha is
// 6/pi times the integral over 0 < t < pi/6 of (1 + h^2/(df cos^2 t))^(-df/2), or exp(-h^2/(2 cos^2 t)) for
// an infinite df, solved in mpmath. Four to eight: R, the density of the cut sum convolved by Gauss-Legendre
// on the real line, mixed over dchisq. Ten and more: mpmath, the characteristic function by its complex erf.
TEST_F(ANOM, CriticalValuesAreExact) {
  // The largest the host takes; h is then about (h^2 + 1)/(4 df) of itself larger than at the limit.
  const double infinite = 1e10;
  const struct {
    double alpha;
    Index k;
    double df, expected;
  } cases[] = {{0.05, 3, 1, 19.0745800968238},
               {0.05, 3, 3, 4.17871714048407},
               {0.05, 3, 10, 2.74129512908067},
               {0.05, 3, 60, 2.40321641023236},
               {0.05, 3, infinite, 2.34370058637841},
               {0.3, 3, 1e6, 1.48109973906294},
               {1e-9, 3, 10, 23.9654458690490},
               {1e-12, 3, infinite, 7.28019424541266},
               {0.05, 4, 4, 3.8871198015},
               {0.05, 5, 5, 3.723418691284},
               {0.01, 6, 12, 3.975918799551},
               {0.05, 8, 30, 2.908947586484},
               {0.05, 10, infinite, 2.79596011567196},
               {0.05, 50, infinite, 3.28327751122793},
               {0.01, 1000, infinite, 4.41608848104306},
               {0.05, 500000, infinite, 5.32208151094174}};
  WorksheetFunction& functions = host->worksheetFunction();
  for (const auto& c : cases) {
    EXPECT_TRUE(isClose(anom::exactCriticalValue(functions, c.alpha, c.k, c.df), c.expected,
                        c.df < infinite ? 2e-11 : 2e-9))
        << c.k << " levels, df " << c.df;
  }
}

// Fault: values that differ from the tables users check against. Nelson (1983), Journal of Quality Technology
// 15, critical values at 0.05: three to six levels, from few degrees of freedom to infinitely many.
TEST_F(ANOM, CriticalValuesMeetThePublishedTable) {
  const struct {
    Index k;
    double df;
    const char* published;
  } cases[] = {{3, 3, "4.18"}, {4, 4, "3.89"},  {5, 5, "3.72"},   {6, 6, "3.62"},
               {3, 4, "3.56"}, {3, 10, "2.74"}, {3, 1e10, "2.34"}};
  for (const auto& c : cases) {
    char text[16];
    std::snprintf(text, sizeof text, "%.2f",
                  anom::exactCriticalValue(host->worksheetFunction(), 0.05, c.k, c.df));
    EXPECT_STREQ(text, c.published) << c.k << " levels";
  }
}

// Faults: a search that hangs, leaves its bracket or ends in a number that is none, at the ends of what a
// caller may ask for. Any exact value lies between that of a single deviation and Sidak's bound.
TEST_F(ANOM, CriticalValuesStayInTheirBracket) {
  WorksheetFunction& functions = host->worksheetFunction();
  for (const double alpha : {1e-200, 1e-14, 0.3, 0.9999, 1 - 1e-15}) {
    for (const Index k : {2, 3, 4, 5, 1000, 1000000}) {
      for (const double df : {1.0, 7.0, 1e6}) {
        const double h = anom::exactCriticalValue(functions, alpha, k, df);
        const double single = functions.TInv(alpha, df);
        const double bound = anom::boundedCriticalValue(functions, alpha, k, df);
        EXPECT_TRUE(h >= single * (1 - 1e-9) && h <= bound * (1 + 1e-9))
            << alpha << ", " << k << " levels, df " << df << ": " << h;
        if (k == 2) {
          EXPECT_EQ(h, single);
        }
      }
    }
  }
}

// Faults: a critical value of the wrong kind, limits with the wrong standard error, a signal on the wrong
// side. R: aov, the hexagon's critical value by uniroot and integrate; for the unequal sizes
// qt(1 - (1 - 0.9^(1/3))/2, 22) and the standard errors S sqrt((N - n)/(N n)).
TEST_F(ANOM, OneFactorAgreesWithR) {
  one(weight, group, 0.05);
  EXPECT_TRUE(areClose(summary, {0.05, 3, 30, 5.073, 0.6233746272715, 27, 2.479417689553, 2}, 1e-11));
  EXPECT_TRUE(areClose(rowOf(chart, 2), {10, 4.661, 5.073, 4.673926226654, 5.472073773346, -1}, 1e-11));
  EXPECT_EQ(columnOf(chart, ANOMLevels::Signal), (DoubleArray{0, -1, 1}));
  EXPECT_EQ(labels, (StringArray{"ctrl", "trt1", "trt2"}));

  const auto first = [](const auto& column, std::size_t n) {
    return std::vector(column.elements().begin(), column.elements().begin() + static_cast<Index>(n));
  };
  one(DoubleArray(first(weight, 25)), StringArray(first(group, 25)), 0.1);
  EXPECT_TRUE(areClose(summary, {0.1, 3, 25, 4.9908, 0.6579973058801, 22, 2.253755872647, 0}, 1e-11));
  EXPECT_TRUE(
      areClose(columnOf(chart, ANOMLevels::Lower), {4.627549172758, 4.627549172758, 4.397613883075}, 1e-11));
  EXPECT_TRUE(isClose(chart(3, ANOMLevels::Upper), 5.583986116925, 1e-11));
  EXPECT_EQ(columnOf(chart, ANOMLevels::Signal), (DoubleArray{0, 0, 0}));
}

// Fault: two levels of unequal size that decide otherwise than their t test. R,
// t.test(weight ~ group, var.equal = TRUE) of ctrl against the first six of trt2: p = 0.0948, so the points
// signal at 0.095 and not at 0.0945.
TEST_F(ANOM, TwoLevelsDecideLikeTheirTTest) {
  const DoubleArray dy{4.17, 5.58, 5.18, 6.11, 4.50, 4.61, 5.17, 4.53,
                       5.33, 5.14, 6.31, 5.12, 5.54, 5.50, 5.37, 5.29};
  std::vector<std::string> dx(10, "ctrl");
  dx.resize(16, "trt2");
  one(dy, StringArray(dx), 0.095);
  EXPECT_EQ(columnOf(chart, ANOMLevels::Signal), (DoubleArray{-1, 1}));
  one(dy, StringArray(dx), 0.0945);
  EXPECT_EQ(columnOf(chart, ANOMLevels::Signal), (DoubleArray{0, 0}));
}

// Faults: signals read off limits that have no digits left, a spread of few roundings taken for none. Whole
// numbers about 2^52, where no half can be told: the deviations are -0.5 and 0.5, S is 8.004 and the limits
// are t(1998) S / sqrt(2000) = 0.35 away, by hand.
TEST_F(ANOM, SignalsFarFromZero) {
  DoubleArray dy(2000);
  for (Index i = 1; i <= 2000; ++i) dy(i) = 0x1p52 + (i % 2 == 0 ? 8 : -8) + (i > 1000 ? 1 : 0);
  one(dy, runsOf({"a", "b"}, 1000), 0.05);
  EXPECT_EQ(columnOf(chart, ANOMLevels::Signal), (DoubleArray{-1, 1}));
}

// Faults: limits on the centre line, or a division by 0, where levels do not vary; a chart without an error.
TEST_F(ANOM, OneFactorWithoutSpreadOrData) {
  one({0.1, 0.1, 0.1, 4.1, 4.1, 4.1}, runsOf({"a", "b"}, 3), 0.05);
  EXPECT_EQ(rowOf(chart, 2), (DoubleArray{3, 4.1, summary(OneANOM::Mean), NoValue, NoValue, 0}));
  EXPECT_EQ(summary(OneANOM::S), 0);
  one({0.1 + 0.2, 0.3, 0.7, 0.7}, runsOf({"a", "b"}, 2), 0.05);
  EXPECT_EQ(columnOf(chart, ANOMLevels::Upper), (DoubleArray{NoValue, NoValue}));

  chart = {};
  const auto number = [&](const DoubleArray& dy, const StringArray& dx, double alpha = 0.05) {
    return failureNumber([&] { one(dy, dx, alpha); });
  };
  EXPECT_EQ(number({1, 2}, {"a", "a"}), 5);
  EXPECT_EQ(number({1, 2}, {"a", "b"}), 5);
  EXPECT_EQ(number({1, 2, 3}, {"a", "b"}), 9);
  EXPECT_EQ(number({1, 2}, {"a", "a", "b"}), 9);
  EXPECT_EQ(number({1, 2, 3, 4}, {"a", "a", "b", "b", "b"}, 0.0), 9);
  EXPECT_EQ(number({}, {"a", "b"}), 9);
  EXPECT_EQ(number({1, 2, 3}, {}), 9);
  EXPECT_EQ(number({1e300, -1e300, 1, 2}, {"a", "a", "b", "b"}), 6);
  for (const double alpha : {0.0, 1.0, -0.05, 1.5, std::nan("")}) {
    EXPECT_EQ(number({1, 2, 3, 4}, {"a", "a", "b", "b"}, alpha), 5) << alpha;
  }
  EXPECT_FALSE(chart.filled());
}

// Faults: factors or cells in each other's rows, the wrong standard error or critical value of any of the
// three charts, an interaction that is not pooled. R: aov(breaks ~ wool * tension) and
// model.tables(type = "effects"), and qt(0.975, 48) for the two wools, the hexagon's value for the tensions
// and, one factor having two levels, the interaction.
TEST_F(ANOM, TwoFactorsAgreeWithR) {
  two(breaks, wool, tension, false);
  EXPECT_TRUE(areClose(
      summary,
      {0.05, 54, 28.14814814815, 10.94028403721, 48, 2.010634757624, 0, 2.418487616905, 2, 2.418487616905, 4},
      1e-11));
  EXPECT_TRUE(areClose(rowOf(chart, 1),
                       {27, 31.03703703704, 28.14814814815, 25.15474711999, 31.1415491763, 0}, 1e-11));
  EXPECT_TRUE(areClose(rowOf(chart2, 3),
                       {18, 21.66666666667, 28.14814814815, 23.0561224882, 33.24017380809, -1}, 1e-11));
  EXPECT_TRUE(
      areClose(rowOf(chart12, 2), {9, -5.277777777778, 0, -5.092025659945, 5.092025659945, -1}, 1e-11));
  EXPECT_EQ(columnOf(chart12, ANOMLevels::Signal), (DoubleArray{1, -1, 0, -1, 1, 0}));
  EXPECT_EQ(labels2, (StringArray{"L", "M", "H"}));
  EXPECT_EQ(labels12, (StringArray{"A*L", "A*M", "A*H", "B*L", "B*M", "B*H"}));

  two(breaks, wool, tension, true);
  EXPECT_TRUE(isClose(summary(TwoANOM::S), 11.61713294138, 1e-11));
  EXPECT_TRUE(isClose(chart2(1, ANOMLevels::Lower), 22.74794817399, 1e-11));
  EXPECT_EQ(summary(TwoANOM::CriticalValue12), NoValue);
  EXPECT_FALSE(chart12.filled() || labels12.filled());
}

// Fault: an interaction of larger factors at the exact value of something else, or with too few comparisons.
// Box and Cox's (1964) survival times under three poisons and four treatments; R's boot::poisons with
// qt(1 - (1 - 0.95^(1/12))/2, 36).
TEST_F(ANOM, LargerInteractionsTakeSidaksBound) {
  const DoubleArray time{0.31, 0.45, 0.46, 0.43, 0.36, 0.29, 0.40, 0.23, 0.22, 0.21, 0.18, 0.23,
                         0.82, 1.10, 0.88, 0.72, 0.92, 0.61, 0.49, 1.24, 0.30, 0.37, 0.38, 0.29,
                         0.43, 0.45, 0.63, 0.76, 0.44, 0.35, 0.31, 0.40, 0.23, 0.25, 0.24, 0.22,
                         0.45, 0.71, 0.66, 0.62, 0.56, 1.02, 0.71, 0.38, 0.30, 0.36, 0.31, 0.33};
  const StringArray poison = runsOf({"1", "2", "3", "1", "2", "3", "1", "2", "3", "1", "2", "3"}, 4);
  two(time, poison, runsOf({"A", "B", "C", "D"}, 12), false);
  EXPECT_TRUE(isClose(summary(TwoANOM::CriticalValue12), 3.051007705668, 1e-11));
  EXPECT_TRUE(
      areClose(rowOf(chart12, 10), {4, -0.1385416666667, 0, -0.1608750721515, 0.1608750721515, 0}, 1e-11));
}

// Faults: the roundings of decimals taken for an error to judge by, or a true remainder, however small, for
// roundings. By hand: the decimals are a sum of a row and a column; 9E-12 more in a cell leave a sum of
// squares of (9E-12)^2 4/9, on 4 degrees of freedom.
TEST_F(ANOM, RoundedSumsLeaveNoError) {
  DoubleArray dy{0.1, 0.2, 0.3, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7};
  const StringArray rows = runsOf({"a", "b", "c"}, 3);
  const StringArray columns{"x", "y", "z", "x", "y", "z", "x", "y", "z"};
  two(dy, rows, columns, true);
  for (const DoubleArray* table : {&chart, &chart2}) {
    EXPECT_EQ(columnOf(*table, ANOMLevels::Lower), DoubleArray(3, NoValue));
    EXPECT_EQ(columnOf(*table, ANOMLevels::Signal), DoubleArray(3, 0.0));
  }
  dy(5) += 9e-12;
  two(dy, rows, columns, true);
  EXPECT_TRUE(isClose(summary(TwoANOM::S), 3e-12, 1e-4));
  EXPECT_EQ(columnOf(chart, ANOMLevels::Signal), (DoubleArray{-1, -1, 1}));
}

// Faults: layouts that have no such chart get one.
TEST_F(ANOM, TwoFactorsRefuse) {
  const StringArray dx1{"a", "a", "b", "b"};
  const auto number = [&](const DoubleArray& dy, const StringArray& f1, const StringArray& f2,
                          bool additive) { return failureNumber([&] { two(dy, f1, f2, additive); }); };
  EXPECT_EQ(number({1, 3, 2, 8}, dx1, {"x", "y", "x", "y"}, false), 5);
  EXPECT_EQ(number({1, 3, 2, 8}, dx1, {"x", "y", "x", "y"}, true), 0);
  EXPECT_EQ(number({1, 3, 2, 8}, dx1, {"x", "y", "x", "x"}, true), 5);
  EXPECT_EQ(number({1, 3, 2, 8}, dx1, {"x", "x", "x", "x"}, true), 5);
  EXPECT_EQ(number({1, 3, 2, 8}, dx1, {"x", "y", "x"}, true), 9);
  EXPECT_EQ(number({1, 3, 2, 8}, dx1, {"x", "y", "x", "y", "x"}, true), 9);
  EXPECT_EQ(number({1, 3, 2, 8}, {"a", "a", "b", "b", "b"}, {"x", "y", "x", "y"}, true), 9);
  EXPECT_EQ(number({1, 1, 1, 1}, dx1, {"x", "y", "x", "y"}, true), 0);
  EXPECT_EQ(chart(1, ANOMLevels::Upper), NoValue);
}

// Faults: a level's own spread in place of the common one, a standard error without the level's share in the
// centre, Student's quantile. R's UCBAdmissions (Bickel and others, 1975), admitted among applicants of six
// departments, and the sums of R's InsectSprays over twelve plots each; qnorm(1 - (1 - 0.95^(1/6))/2), 0.99
// for the sprays, and arithmetic.
TEST_F(ANOM, CountsAgreeWithR) {
  anom.ANOMBinomialOutput({601, 370, 322, 269, 147, 46}, {933, 585, 918, 792, 584, 714}, 0.05, summary, chart,
                          tooSmall);
  EXPECT_TRUE(areClose(summary, {0.05, 6, 4526, 0.3877596111357, 2.631038284537, 5, 0}, 1e-11));
  EXPECT_TRUE(areClose(rowOf(chart, 3),
                       {918, 0.3507625272331, 0.3877596111357, 0.3499829047825, 0.4255363174888, 0, 0},
                       1e-11));
  EXPECT_EQ(columnOf(chart, ANOMLevels::Signal), (DoubleArray{1, 1, 0, -1, -1, -1}));
  EXPECT_FALSE(tooSmall);

  anom.ANOMPoissonOutput({174, 184, 25, 59, 42, 200}, DoubleArray(6, 12.0), 0.01, summary, chart, tooSmall);
  EXPECT_TRUE(areClose(rowOf(chart, 4), {12, 59 / 12.0, 9.5, 6.947350434647, 12.05264956535, -1, 0}, 1e-11));
  EXPECT_EQ(columnOf(chart, ANOMLevels::Signal), (DoubleArray{1, 1, -1, -1, -1, 1}));
}

// Faults: limits that no rate can reach, "at most 5" taken as "below 5", the flag for good items forgotten or
// left over from the call before. Hand arithmetic: shares 0.1 and 0.9; 5 defects a unit, the limit by R,
// 5 - qnorm(1 - (1 - 0.95^(1/3))/2) sqrt(5 (1 - 1/6)).
TEST_F(ANOM, CountsClampAndFlag) {
  anom.ANOMBinomialOutput({10, 5, 0}, {100, 30, 20}, 0.05, summary, chart, tooSmall);
  EXPECT_EQ(columnOf(chart, RateANOMLevels::Small), (DoubleArray{0, 1, 1}));
  EXPECT_EQ(chart(3, ANOMLevels::Lower), 0);
  EXPECT_EQ(chart(3, ANOMLevels::Signal), 0);
  EXPECT_TRUE(tooSmall);
  anom.ANOMBinomialOutput({90, 45}, {100, 50}, 0.05, summary, chart, tooSmall);
  EXPECT_EQ(columnOf(chart, RateANOMLevels::Small), (DoubleArray{0, 1}));
  EXPECT_EQ(summary(RateANOM::SmallLevels), 1);
  anom.ANOMBinomialOutput({20, 19, 15}, {20, 20, 20}, 0.05, summary, chart, tooSmall);
  EXPECT_EQ(chart(2, ANOMLevels::Upper), 1);
  anom.ANOMPoissonOutput({5, 10, 15}, {1, 2, 3}, 0.05, summary, chart, tooSmall);
  EXPECT_EQ(columnOf(chart, RateANOMLevels::Small), (DoubleArray{1, 0, 0}));
  EXPECT_TRUE(isClose(chart(1, ANOMLevels::Lower), 0.1260504476377));
  anom.ANOMPoissonOutput({50, 60}, {1, 1}, 0.05, summary, chart, tooSmall);
  EXPECT_FALSE(tooSmall);
  anom.ANOMBinomialOutput({0, 0}, {100, 200}, 0.05, summary, chart, tooSmall);
  EXPECT_EQ(rowOf(chart, 1), (DoubleArray{100, 0, 0, 0, 0, 0, 1}));
}

// Faults: counts that are none, or rows that do not match, in a chart.
TEST_F(ANOM, CountsRefuse) {
  const struct {
    DoubleArray counts, sizes;
    int binomial, poisson;
  } cases[] = {{{3, 2}, {2, 5}, 5, 0},  {{-1, 2}, {5, 5}, 5, 5}, {{1, 2}, {0, 5}, 11, 11},
               {{1, 2}, {5, -5}, 5, 5}, {{1, 2}, {5}, 9, 9},     {{1}, {5}, 5, 5},
               {{}, {5, 5}, 9, 9}};
  for (const auto& c : cases) {
    EXPECT_EQ(
        failureNumber([&] { anom.ANOMBinomialOutput(c.counts, c.sizes, 0.05, summary, chart, tooSmall); }),
        c.binomial);
    EXPECT_EQ(
        failureNumber([&] { anom.ANOMPoissonOutput(c.counts, c.sizes, 0.05, summary, chart, tooSmall); }),
        c.poisson);
  }
}

}  // namespace
}  // namespace zelkova
