#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/layouts.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/models/yANOVA1.h"
#include "zelkova/models/yANOVA2.h"

namespace zelkova {
namespace {

class OneWay : public WithHost {
 protected:
  yANOVA1 anova;
  DoubleArray table, levels;
  StringArray labels;
};

// Faults: a slot in another's place; limits from a level's own spread in place of the pooled one; levels in
// sorted order. Expected: R, anova(lm(weight ~ group)), confint(lm(weight ~ group - 1), level = 0.9), tapply.
TEST_F(OneWay, AgreesWithR) {
  anova.OneANOVAOutput(weight, group, 0.9, table, levels, labels);
  EXPECT_TRUE(areClose(
      table, {2, 3.76634, 1.88317, 4.84608786238014, 0.0159099583256229, 27, 10.49209, 0.388595925925926, 29,
              14.25843, 0.623374627271535, 0.26414829683212, 0.209640763264129}));
  ASSERT_EQ(levels.rows(), 3);
  EXPECT_EQ(labels, (StringArray{"ctrl", "trt1", "trt2"}));
  EXPECT_TRUE(areClose(DoubleArray{levels(1, 1), levels(1, 2), levels(1, 3), levels(1, 4), levels(1, 5)},
                       {10, 5.032, 0.583091378392406, 4.69623353225364, 5.36776646774635}));
  EXPECT_TRUE(isClose(levels(3, OneANOVALevels::SD), 0.442573283322786));
  EXPECT_TRUE(isClose(levels(2, OneANOVALevels::Lower), 4.32523353225364));

  DoubleArray residual, fitted;
  anova.OneANOVAResOutput(DoubleArray{1, 5, 3, 8}, StringArray{"b", "a", "b", "a"}, residual, fitted);
  EXPECT_EQ(fitted, (DoubleArray{2, 6.5, 2, 6.5}));
  EXPECT_EQ(residual, (DoubleArray{-1, -1.5, 1, 1.5}));
}

/// The balanced sets of Simon and Lesage (1989): nine levels around `offset` + 0.4, each with one value at
/// its mean and the rest a tenth above and below in turn. Written in tenths so that each value is the double
/// next to its decimal.
DoubleArray simonLesage(double offset, int replicates) {
  std::vector<double> values;
  for (const int mean : {4, 3, 5, 3, 5, 3, 5, 3, 5}) {
    for (int i = 0; i < replicates; ++i) {
      const int tenths = i == 0 ? mean : i % 2 != 0 ? mean - 1 : mean + 1;
      values.push_back((offset * 10 + tenths) / 10);
    }
  }
  return DoubleArray(values);
}

// Fault: digits lost to data far from 0, or to long sums. NIST's certified sets of analysis of variance;
// those with 7 and 13 constant leading digits reach what the doubles nearest to the data allow.
TEST_F(OneWay, ReachesCertifiedValues) {
  const DoubleArray silver{
      107.8681568, 107.8681465, 107.8681572, 107.8681785, 107.8681446, 107.8681903, 107.8681526, 107.8681494,
      107.8681616, 107.8681587, 107.8681519, 107.8681486, 107.8681419, 107.8681569, 107.8681508, 107.8681672,
      107.8681385, 107.8681518, 107.8681662, 107.8681424, 107.8681360, 107.8681333, 107.8681610, 107.8681477,
      107.8681079, 107.8681344, 107.8681513, 107.8681197, 107.8681604, 107.8681385, 107.8681642, 107.8681365,
      107.8681151, 107.8681082, 107.8681517, 107.8681448, 107.8681198, 107.8681482, 107.8681334, 107.8681609,
      107.8681101, 107.8681512, 107.8681469, 107.8681360, 107.8681254, 107.8681261, 107.8681450, 107.8681368};
  const DoubleArray silicon{196.3052, 196.1240, 196.1890, 196.2569, 196.3403, 196.3042, 196.3825,
                            196.1669, 196.3257, 196.0422, 196.1303, 196.2005, 196.2889, 196.0343,
                            196.1811, 196.2795, 196.1748, 196.1494, 196.1485, 195.9885, 196.2119,
                            196.1051, 196.1850, 196.0052, 196.2090};
  const struct {
    const char* name;
    DoubleArray data;
    std::size_t replicates;
    double ssb, ssw, F, rsq, s, digits;
  } sets[] = {
      {"SiRstv", silicon, 5, 5.11462616000000E-02, 2.16636560000000E-01, 1.18046237440255E+00,
       1.90999039051129E-01, 1.04076068334656E-01, 13},
      {"AtmWtAg", silver, 24, 3.63834187500000E-09, 1.04951729166667E-08, 1.59467335677930E+01,
       2.57426544538321E-01, 1.51048314446410E-05, 10},
      {"SmLs01", simonLesage(1, 21), 21, 1.68, 1.8, 21, 1.68 / 3.48, 0.1, 14},
      {"SmLs02", simonLesage(1, 201), 201, 16.08, 18, 201, 16.08 / 34.08, 0.1, 14},
      {"SmLs03", simonLesage(1, 2001), 2001, 160.08, 180, 2001, 160.08 / 340.08, 0.1, 14},
      {"SmLs04", simonLesage(1000000, 21), 21, 1.68, 1.8, 21, 1.68 / 3.48, 0.1, 9.8},
      {"SmLs05", simonLesage(1000000, 201), 201, 16.08, 18, 201, 16.08 / 34.08, 0.1, 9.8},
      {"SmLs06", simonLesage(1000000, 2001), 2001, 160.08, 180, 2001, 160.08 / 340.08, 0.1, 9.8},
      {"SmLs07", simonLesage(1000000000000, 21), 21, 1.68, 1.8, 21, 1.68 / 3.48, 0.1, 3.8},
      {"SmLs08", simonLesage(1000000000000, 201), 201, 16.08, 18, 201, 16.08 / 34.08, 0.1, 3.8},
      {"SmLs09", simonLesage(1000000000000, 2001), 2001, 160.08, 180, 2001, 160.08 / 340.08, 0.1, 3.8}};
  for (const auto& set : sets) {
    std::vector<std::string> labels9;
    for (std::size_t g = 0; g < static_cast<std::size_t>(set.data.size()) / set.replicates; ++g) {
      labels9.push_back(std::to_string(g + 1));
    }
    anova.OneANOVAOutput(set.data, runsOf(labels9, set.replicates), 0.95, table, levels, labels);
    const double tolerance = std::pow(10, -set.digits);
    EXPECT_TRUE(isClose(table(OneANOVA::SSB), set.ssb, tolerance)) << set.name;
    EXPECT_TRUE(isClose(table(OneANOVA::SSW), set.ssw, tolerance)) << set.name;
    EXPECT_TRUE(isClose(table(OneANOVA::F), set.F, tolerance)) << set.name;
    EXPECT_TRUE(isClose(table(OneANOVA::RSq), set.rsq, tolerance)) << set.name;
    EXPECT_TRUE(isClose(table(OneANOVA::S), set.s, tolerance)) << set.name;
  }
}

// Faults: a test without a denominator that fails the call, or one made of rounding noise. Three times a
// tenth over 3 is no tenth in doubles, so the noise would be there. Hand arithmetic.
TEST_F(OneWay, LeavesOutWhatCannotBeComputed) {
  anova.OneANOVAOutput(DoubleArray{1, 2, 3}, StringArray{"a", "a", "a"}, 0.95, table, levels, labels);
  EXPECT_EQ(table, (DoubleArray{0, 0, NoValue, NoValue, NoValue, 2, 2, 1, 2, 2, 1, 0, 0}));

  const StringArray pairs{"a", "a", "a", "b", "b", "b"};
  anova.OneANOVAOutput(DoubleArray{.1, .1, .1, 4.1, 4.1, 4.1}, pairs, 0.95, table, levels, labels);
  EXPECT_TRUE(areClose(table, {1, 24, 24, NoValue, NoValue, 4, 0, 0, 5, 24, 0, 1, 1}));
  EXPECT_EQ(levels(2, OneANOVALevels::Lower), 4.1);

  anova.OneANOVAOutput(DoubleArray(6, 0.1), pairs, 0.95, table, levels, labels);
  EXPECT_EQ(table, (DoubleArray{1, 0, 0, NoValue, NoValue, 4, 0, 0, 5, 0, 0, NoValue, NoValue}));

  // A level that explains less than its degree of freedom has a negative adjusted R-squared: 1 - 4/(14/3).
  anova.OneANOVAOutput(DoubleArray{1, 5, 2, 5}, StringArray{"a", "a", "b", "b"}, 0.95, table, levels, labels);
  EXPECT_EQ(table(OneANOVA::RSqAdj), 0);
}

// Faults: data without replicates that get limits from nothing, and labels that do not match the data.
TEST_F(OneWay, RefusesWhatHasNoError) {
  const auto number = [&](const DoubleArray& dy, const StringArray& dx) {
    return failureNumber([&] { anova.OneANOVAOutput(dy, dx, 0.95, table, levels, labels); });
  };
  EXPECT_EQ(number({1, 2}, {"a", "b"}), 1004);
  EXPECT_EQ(number({1, 2, 3}, {"a", "a"}), 9);
  EXPECT_EQ(number({1, 2}, {"a", "a", "b"}), 9);
  EXPECT_EQ(number({1e300, -1e300, 1}, {"a", "a", "a"}), 6);
  EXPECT_EQ(number({1, 2}, {}), 9);
  EXPECT_FALSE(table.filled());
}

class TwoWay : public WithHost {
 protected:
  void run(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2, bool additive) {
    anova.TwoANOVAOutput(dy, dx1, dx2, additive, 0.95, table, levels1, levels2, labels1, labels2, error);
  }

  yANOVA2 anova;
  DoubleArray table, levels1, levels2;
  StringArray labels1, labels2;
  std::string error;
};

// Faults: the interaction's variation lost or counted twice when it is pooled; limits with the other factor's
// number of values; a text of the caller's that is cleared. Expected: R, anova(lm(breaks ~ wool * tension))
// and of wool + tension, and the means of the levels with qt(0.975, dfE) sigma / sqrt(values of the level) to
// either side.
TEST_F(TwoWay, AgreesWithR) {
  run(breaks, wool, tension, false);
  EXPECT_TRUE(areClose(table, {1,
                               450.666666666667,
                               450.666666666667,
                               3.76528836111863,
                               0.0582129759595598,
                               2,
                               2034.25925925926,
                               1017.12962962963,
                               8.49804664835802,
                               0.000692620936713445,
                               2,
                               1002.77777777778,
                               501.388888888889,
                               4.18906896685103,
                               0.0210441907278632,
                               48,
                               5745.11111111111,
                               119.689814814815,
                               53,
                               9232.81481481481,
                               10.9402840372092,
                               0.377750856446009}));
  EXPECT_EQ(labels2, (StringArray{"L", "M", "H"}));
  ASSERT_EQ(levels1.rows(), 2);
  ASSERT_EQ(levels2.rows(), 3);
  EXPECT_TRUE(isClose(levels1(2, TwoANOVALevels::Mean), 25.2592592592593));
  EXPECT_TRUE(isClose(levels1(2, TwoANOVALevels::Lower), 21.0259509276233));
  EXPECT_TRUE(isClose(levels1(1, TwoANOVALevels::Upper), 35.2703453686730));
  EXPECT_TRUE(isClose(levels2(3, TwoANOVALevels::Mean), 21.6666666666667));
  EXPECT_TRUE(isClose(levels2(3, TwoANOVALevels::Lower), 16.4819439984762));
  EXPECT_TRUE(isClose(levels2(1, TwoANOVALevels::Upper), 41.5736115570793));

  run(breaks, wool, tension, true);
  EXPECT_TRUE(areClose(table, {1,
                               450.666666666667,
                               450.666666666667,
                               3.33931600006587,
                               0.0736136689806042,
                               2,
                               2034.25925925926,
                               1017.12962962963,
                               7.53665069459309,
                               0.0013777775226285,
                               NoValue,
                               NoValue,
                               NoValue,
                               NoValue,
                               NoValue,
                               50,
                               6747.88888888889,
                               134.957777777778,
                               53,
                               9232.81481481481,
                               11.6171329413835,
                               0.269140665741357}));
  EXPECT_TRUE(isClose(levels2(2, TwoANOVALevels::Lower), 20.8890834736570));
  EXPECT_TRUE(error.empty());
  error = "earlier";
  run(breaks, wool, tension, true);
  EXPECT_EQ(error, "earlier");
}

// Fault: an error of large effects left over from the total, where cancellation leaves nothing of it. The
// errors of a tenth among effects of 1E8 are 4 (0.1 squared), by hand.
TEST_F(TwoWay, KeepsASmallErrorAmongLargeEffects) {
  const StringArray dx1{"a", "a", "a", "a", "b", "b", "b", "b"};
  const StringArray dx2{"x", "x", "y", "y", "x", "x", "y", "y"};
  run({0, 0.2, 1e8, 1e8, 3e8, 3e8, 7e8, 7e8 + 0.25}, dx1, dx2, false);
  EXPECT_TRUE(isClose(table(TwoANOVA::SSE), 0.02 + 0.03125));
}

// Faults: fitted values of the wrong model; a layout refused that only the table must refuse. Expected: R,
// fitted(lm(breaks ~ wool + tension)); by hand for the unbalanced one: cells 1, 5 (mean of 4 and 6), 9; level
// means a 11/3, b 9, x 1, y 19/3, all 5.
TEST_F(TwoWay, FitsCellsOrSumsOfEffects) {
  DoubleArray residual, fitted;
  anova.TwoANOVAResOutput(breaks, wool, tension, true, residual, fitted);
  EXPECT_TRUE(isClose(fitted(1), 39.2777777777778));
  EXPECT_TRUE(isClose(fitted(30), 33.5));
  EXPECT_TRUE(isClose(residual(54), 28 - 18.7777777777778));

  const StringArray dx1{"a", "a", "a", "b"};
  const StringArray dx2{"x", "y", "y", "y"};
  anova.TwoANOVAResOutput({1, 4, 6, 9}, dx1, dx2, false, residual, fitted);
  EXPECT_EQ(fitted, (DoubleArray{1, 5, 5, 9}));
  EXPECT_EQ(residual, (DoubleArray{0, -1, 1, 0}));
  anova.TwoANOVAResOutput({1, 4, 6, 9}, dx1, dx2, true, residual, fitted);
  EXPECT_TRUE(isClose(fitted(1), 11 / 3.0 + 1 - 5));
  EXPECT_TRUE(isClose(fitted(4), 9 + 19 / 3.0 - 5));
  EXPECT_EQ(failureNumber([&] {
              anova.TwoANOVAResOutput({1, 4, 6, 9}, dx1, {"x", "y"}, false, residual, fitted);
            }),
            9);
}

// Faults: a failure, or numbers made of nothing, where no error is left or the error has no spread. Hand
// arithmetic: cells 1, 3, 2, 8 have the effects 1.5 and 2, and the interaction 1.
TEST_F(TwoWay, LeavesOutWhatHasNoError) {
  const StringArray dx1{"a", "a", "b", "b"};
  const StringArray dx2{"x", "y", "x", "y"};
  run({1, 3, 2, 8}, dx1, dx2, false);
  EXPECT_EQ(table, (DoubleArray{1, 9, 9,       NoValue, NoValue, 1, 16,      16, NoValue, NoValue, 1,
                                4, 4, NoValue, NoValue, 0,       0, NoValue, 3,  29,      NoValue, 1}));
  EXPECT_EQ(levels1, DoubleArray::table({{2, NoValue, NoValue}, {5, NoValue, NoValue}}));
  run({1, 3, 2, 8}, dx1, dx2, true);
  EXPECT_EQ(table(TwoANOVA::F1), 2.25);
  EXPECT_EQ(table(TwoANOVA::DFE), 1);
  run(DoubleArray(4, 0.1), dx1, dx2, true);
  EXPECT_EQ(table(TwoANOVA::F1), NoValue);
  EXPECT_EQ(table(TwoANOVA::MSE), 0);
  EXPECT_EQ(table(TwoANOVA::RSq), NoValue);
}

// Faults: an unbalanced layout that gets a table, or the wrong one of two messages.
TEST_F(TwoWay, RefusesUnbalancedLayoutsAndSingleLevels) {
  run({1, 2, 3}, {"a", "a", "b"}, {"x", "y", "x"}, true);
  EXPECT_EQ(error, "Unbalanced design");
  run({1, 2}, {"a", "a"}, {"x", "y"}, true);
  EXPECT_EQ(error, "Factors must have more than 1 distinct value");
  EXPECT_FALSE(table.filled() || levels1.filled() || levels2.filled() || labels1.filled() ||
               labels2.filled());
}

}  // namespace
}  // namespace zelkova
