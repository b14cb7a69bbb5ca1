#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/doe/yDOEAnalyse.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

/// The settings of a full factorial in standard order, -1 and 1, a column for each generator: a letter, or a
/// product of letters.
StringArray settings(Index runs, const std::vector<std::string>& generators) {
  StringArray dx(runs, static_cast<Index>(generators.size()), "");
  for (Index i = 0; i < runs; ++i) {
    for (std::size_t j = 0; j < generators.size(); ++j) {
      int sign = 1;
      for (const char letter : generators[j]) sign *= (i >> (letter - 'A') & 1) != 0 ? 1 : -1;
      dx(i + 1, static_cast<Index>(j + 1)) = sign > 0 ? "1" : "-1";
    }
  }
  return dx;
}

// Filtration rate of a chemical product, gallons an hour (Montgomery, Design and Analysis of Experiments):
// temperature, pressure, concentration of formaldehyde, stirring rate.
const DoubleArray filtration{45, 71, 48, 65, 68, 60, 80, 65, 43, 100, 45, 104, 75, 86, 70, 96};

// Percent reacted of a chemical, five factors (Box, Hunter and Hunter, Statistics for Experimenters, 1978).
const DoubleArray reacted{61, 53, 63, 61, 53, 56, 54, 61, 69, 61, 94, 93, 66, 60, 95, 98,
                          56, 63, 70, 65, 59, 55, 67, 65, 44, 45, 78, 77, 49, 42, 81, 82};

class Factorial : public WithHost {
 protected:
  /// Coded levels, names as letters, no blocks, no centre.
  void prepare(const DoubleArray& responses, const StringArray& levels) {
    dy = responses;
    dx = levels;
    const Index factors = dx.columns();
    dc = db = DoubleArray(dy.rows(), 1);
    name = StringArray(factors, "name");
    type = StringArray(factors, "Numeric");
    low = StringArray(factors, "-1");
    high = StringArray(factors, "1");
    centre = 0.0;
    block = 1.0;
    analyseBlock = analyseCentre = Variant::flag(false);
  }

  void analyse(double designType, double factors, double design, double replicates, const StringArray& terms,
               const std::string& output = "") {
    analysis.DOEAnaOutput(dy, dx, dc, db, terms, name, type, low, high, designType, factors, design, centre,
                          replicates, block, analyseBlock, analyseCentre, labels, effect, coef, se, t, p,
                          sources, df, seq, adj, F, pF, uncoded, others, fit, residual, output);
  }

  yDOEAnalyse analysis;
  StringArray dx, name, type, low, high, labels, sources;
  DoubleArray dy, dc, db, effect, coef, se, t, p, df, seq, adj, F, pF, uncoded, others, fit, residual;
  Variant centre, block, analyseBlock, analyseCentre;
};

// Faults: an effect that is not high less low, a term in another's place, a saturated fit that is judged by
// its rounding. Effects as published.
TEST_F(Factorial, FindsPublishedEffects) {
  prepare(filtration, settings(16, {"A", "B", "C", "D"}));
  analyse(1, 4, 2, 1,
          {"A", "B", "C", "D", "AB", "AC", "AD", "BC", "BD", "CD", "ABC", "ABD", "ACD", "BCD", "ABCD"});
  EXPECT_TRUE(areClose(effect, {NoValue, 21.625, 3.125, 9.875, 14.625, 0.125, -18.125, 16.625, 2.375, -0.375,
                                -1.125, 1.875, 4.125, -1.625, -2.625, 1.375}));
  EXPECT_EQ(labels(2), "A: name");
  EXPECT_EQ(labels(6), "AB");
  EXPECT_EQ(sources, (StringArray{"Main Effects", "2-Way Interactions", "3-Way Interactions",
                                  "4-Way Interactions", "Residual Error", "Total"}));
  EXPECT_EQ(df, (DoubleArray{4, 6, 4, 1, 0, 15}));
  EXPECT_EQ(se, DoubleArray(16, NoValue));
  EXPECT_EQ(pF, DoubleArray(4, NoValue));
  EXPECT_EQ(others, DoubleArray(5, NoValue));
  EXPECT_FALSE(uncoded.filled());

  // The half fraction with D = ABC.
  prepare({45, 100, 45, 65, 75, 60, 80, 96}, settings(8, {"A", "B", "C", "ABC"}));
  analyse(1, 4, 1, 1, {"A", "B", "C", "D", "AB", "AC", "AD", "BC", "BD", "CD", "ABC", "BCD"});
  EXPECT_EQ(labels.rows(), 8);
  EXPECT_TRUE(areClose(effect, {NoValue, 19, 1.5, 14, 16.5, -1, -18.5, 19}));

  // Catalyst and temperature, concentration and temperature.
  prepare(reacted, settings(32, {"A", "B", "C", "D", "E"}));
  analyse(1, 5, 3, 1, {"A", "B", "C", "D", "E", "BD", "DE"});
  EXPECT_TRUE(areClose(effect, {NoValue, -1.375, 19.5, -0.625, 10.75, -6.25, 13.25, -11}));
  DoubleArray half(16);
  // The runs of the half fraction E = ABCD in its own standard order.
  for (Index i = 1; i <= 16; ++i) {
    const Index bits = i - 1;
    const bool isOdd = ((bits ^ bits >> 1 ^ bits >> 2 ^ bits >> 3) & 1) != 0;
    half(i) = reacted(isOdd ? i : i + 16);
  }
  prepare(half, settings(16, {"A", "B", "C", "D", "ABCD"}));
  analyse(1, 5, 2, 1,
          {"A", "B", "C", "D", "E", "AB", "AC", "AD", "AE", "BC", "BD", "BE", "CD", "CE", "DE", "ABC"});
  EXPECT_TRUE(areClose(
      effect, {NoValue, -2, 20.5, 0, 12.25, -6.25, 1.5, 0.5, -0.75, 1.25, 1.5, 10.75, 1.25, 0.25, 2.25, -9.5},
      1e-11));

  // Cycles to failure of repaired castings, log, in a Plackett-Burman design of 12 runs (Hunter, Hodi and
  // Eager, 1982): the published effects.
  const std::string generator = "++-+++---+-";
  StringArray twelve(12, 7, "-1");
  for (Index i = 0; i < 11; ++i) {
    for (Index j = 0; j < 7; ++j) {
      if (generator[static_cast<std::size_t>((i + j) % 11)] == '+') twelve(i + 1, j + 1) = "1";
    }
  }
  prepare({6.058, 4.733, 4.625, 5.899, 7.000, 5.752, 5.682, 6.607, 5.818, 5.917, 5.863, 4.809}, twelve);
  block = Variant::flag(false);
  analyse(2, 7, 12, 1, {"A", "B", "C", "D", "E", "F", "G"});
  EXPECT_EQ(block, Variant(1.0));
  const DoubleArray published{0.326, 0.294, -0.246, -0.516, 0.150, 0.915, 0.183};
  for (Index i = 1; i <= 7; ++i) EXPECT_NEAR(effect(i + 1), published(i), 0.0005);
  EXPECT_EQ(sources, (StringArray{"Main Effects", "Residual Error", "Total"}));
  // R: anova(lm(y ~ X)), summary
  EXPECT_TRUE(areClose(seq, {4.238692583333, 1.405945666667, 5.64463825}, 1e-11));
  EXPECT_TRUE(areClose(adj, {4.238692583333, 1.405945666667, NoValue}, 1e-11));
  EXPECT_TRUE(isClose(p(7), 5.55937236209214e-02));
  EXPECT_TRUE(isClose(others(DOEOthers::S), 0.592862898709867));
}

// Faults: a constant that stays at the centre, an error of it taken from the fit, curvature of the wrong
// sign, coefficients in units of the codes. Montgomery's yield with five centre runs: 1.55, 0.65, -0.05, and
// 0.0027 for curvature; the digits are R's, lm(y ~ a + b + a:b + k) with k = -1 at corners, the constant's
// error from the four corners.
TEST_F(Factorial, AnalysesCentreRuns) {
  prepare({39.3, 40.9, 40.0, 41.5, 40.3, 40.5, 40.7, 40.2, 40.6}, StringArray(9, 2, "x"));
  low = {"30", "150"};
  high = {"40", "160"};
  for (Index i = 1; i <= 9; ++i) {
    dc(i) = i <= 4 ? 1 : 0;
    dx(i, 1) = i > 4 ? "35" : i % 2 == 0 ? "40" : "30";
    dx(i, 2) = i > 4 ? "155" : i > 2 ? "160" : "150";
  }
  centre = 5.0;
  analyseCentre = Variant::flag(true);
  analyse(1, 2, 1, 1, {"A", "B", "AB"});
  EXPECT_EQ(labels, (StringArray{"Constant", "A: name", "B: name", "AB", "Ct Pt"}));
  EXPECT_TRUE(areClose(effect, {NoValue, 1.55, 0.65, -0.05, NoValue}, 1e-11));
  EXPECT_TRUE(areClose(coef, {40.425, 0.775, 0.325, -0.025, 0.035}, 1e-11));
  EXPECT_TRUE(areClose(
      se, {0.103682206766639, 0.103682206766639, 0.103682206766639, 0.103682206766639, 0.139104277432436}));
  EXPECT_TRUE(areClose(
      t, {389.893321724777, 7.474763743641375, 3.134578344107687, -0.241121411085218, 0.251609804141375},
      1e-11));
  EXPECT_TRUE(areClose(p,
                       {2.59626500128568e-10, 0.00171253670334733, 0.03503025330152539, 0.82131644473918042,
                        0.81374084877806552},
                       1e-10));
  EXPECT_EQ(sources,
            (StringArray{"Main Effects", "2-Way Interactions", "Curvature", "Residual Error", "Total"}));
  EXPECT_EQ(df, (DoubleArray{2, 1, 1, 4, 8}));
  EXPECT_TRUE(
      areClose(seq, {2.825, 0.0025, 0.0049 / 1.8, 0.172, 2.825 + 0.0025 + 0.0049 / 1.8 + 0.172}, 1e-11));
  EXPECT_TRUE(areClose(F, {32.84883720930225, 0.05813953488372661, 0.06330749354006127}, 1e-11));
  EXPECT_TRUE(areClose(pF, {0.00329369520783158, 0.82131644473918042, 0.81374084877806552}, 1e-11));
  EXPECT_TRUE(areClose(uncoded, {19.5, 0.31, 0.1, -0.001, 0.035}, 1e-9));
  EXPECT_TRUE(areClose(
      others, {0.207364413533278, 0.942709104367135, 0.885418208734271, 0.26875, 0.9104829755736492}, 1e-8));

  // Without the term the constant is that of all runs, and centre runs count as data.
  analyseCentre = Variant::flag(false);
  analyse(1, 2, 1, 1, {"A", "B", "AB"});
  EXPECT_EQ(labels.rows(), 4);
  EXPECT_TRUE(isClose(coef(1), 364.0 / 9));

  // Without centre runs there is nothing to ask for.
  dc = DoubleArray(9, 1);
  analyseCentre = 1.0;
  analyse(1, 2, 1, 1, {"A", "B"});
  EXPECT_EQ(centre, Variant(0.0));
  EXPECT_EQ(analyseCentre, Variant::flag(false));
  EXPECT_EQ(labels.rows(), 3);
}

// Faults: blocks coded by another scheme, the interaction that stands for blocks kept, blocks in the model
// unasked. R's data set npk, where NPK is confounded with six blocks in three replicates: contr.sum for
// blocks, lm(yield ~ block + N*P*K - N:P:K), anova.
TEST_F(Factorial, AnalysesBlocks) {
  const std::string n = "010111000110110010101100";
  const std::string k = "100101100101011000111010";
  const std::string ph = "110001011100010110010110";
  prepare({49.5, 62.8, 46.8, 57.0, 59.8, 58.5, 55.5, 56.0, 62.8, 55.8, 69.5, 55.0,
           62.0, 48.8, 45.5, 44.2, 52.0, 51.5, 49.8, 48.8, 57.2, 59.0, 53.2, 56.0},
          StringArray(24, 3, "-1"));
  for (Index i = 1; i <= 24; ++i) {
    const auto at = static_cast<std::size_t>(i - 1);
    if (n[at] == '1') dx(i, 1) = "1";
    if (ph[at] == '1') dx(i, 2) = "1";
    if (k[at] == '1') dx(i, 3) = "1";
    const Index blockOfRun = (i + 3) / 4;
    db(i) = static_cast<double>(blockOfRun);
  }
  const StringArray terms{"A", "B", "C", "AB", "AC", "BC", "ABC"};
  block = 6.0;
  analyseBlock = Variant::flag(true);
  analyse(1, 3, 2, 3, terms);
  EXPECT_EQ(labels, (StringArray{"Constant", "Blk1", "Blk2", "Blk3", "Blk4", "Blk5", "A: name", "B: name",
                                 "C: name", "AB", "AC", "BC"}));
  EXPECT_TRUE(areClose(coef,
                       {54.875, -0.85, 2.575, 5.9, -4.75, -4.35, 2.808333333333333, -0.591666666666667,
                        -1.991666666666667, -0.941666666666667, -1.175, 0.141666666666667},
                       1e-11));
  EXPECT_TRUE(isClose(se(2), 1.793539073287060));
  EXPECT_TRUE(isClose(p(4), 6.46427931105813e-03, 1e-11));
  EXPECT_EQ(effect(2), NoValue);
  EXPECT_EQ(sources,
            (StringArray{"Blocks", "Main Effects", "2-Way Interactions", "Residual Error", "Total"}));
  EXPECT_EQ(df, (DoubleArray{5, 3, 3, 12, 23}));
  EXPECT_TRUE(areClose(adj, {343.295, 292.885, 54.8983333333334, 185.286666666667, NoValue}));
  EXPECT_TRUE(areClose(F, {4.44666642679811, 6.32285107760946, 1.18515453531465}, 1e-11));
  EXPECT_TRUE(areClose(pF, {0.01593879020819392, 0.00810761714920001, 0.35655037520225674}, 1e-11));
  EXPECT_TRUE(areClose(
      others,
      {3.929447232824937, 0.788573634653750, 0.594766133086353, 741.146666666666533, 0.154294538614998},
      1e-7));

  analyseBlock = Variant::flag(false);
  analyse(1, 3, 2, 3, terms);
  EXPECT_EQ(labels.rows(), 8);
  EXPECT_EQ(sources(1), "Main Effects");

  // As a Plackett-Burman design in six blocks: terms are factors only, and Block is a flag that comes back as
  // their number.
  analyseBlock = Variant::flag(true);
  for (const Variant& yes : {Variant::flag(true), Variant(-1.0)}) {
    block = yes;
    analyse(2, 3, 12, 6, {"A", "B", "C"});
    EXPECT_EQ(block, Variant(6.0));
    EXPECT_TRUE(areClose(seq, {343.295, 292.885, 240.185, 876.365}));
  }
  analyse(2, 3, 12, 6, {"A", "B", "C"});
  EXPECT_EQ(block, Variant(1.0));
  EXPECT_EQ(sources(1), "Main Effects");
}

// Faults: sums of squares that hold only for orthogonal columns, or only for terms in the order of their
// letters; sequential and adjusted ones mixed up; text factors in place of codes. The filtration without its
// first run, R: lm(y ~ A:C + D + A + C + A:D), and the models without a group.
TEST_F(Factorial, AnalysesUnbalancedRuns) {
  prepare(DoubleArray(15), StringArray(15, 4, ""));
  low = {"10", "-1", "5", "slow"};
  high = {"20", "1", "9", "fast"};
  type(4) = "Text";
  const StringArray codes = settings(16, {"A", "B", "C", "D"});
  for (Index i = 1; i <= 15; ++i) {
    dy(i) = filtration(i + 1);
    for (Index j = 1; j <= 4; ++j) dx(i, j) = codes(i + 1, j) == "1" ? high(j) : low(j);
  }
  analyse(1, 4, 2, 1, {"AC", "D", "A", "C", "AD"});
  EXPECT_TRUE(areClose(coef, {70.1875, -8.9375, 7.1875, 10.6875, 4.8125, 8.4375}));
  EXPECT_TRUE(isClose(se(3), 1.21302966667028));
  EXPECT_TRUE(areClose(seq, {2451.51666666667, 2416.79166666667, 192.625, 5060.93333333333}));
  EXPECT_TRUE(areClose(adj, {2391.18269230769, 2416.79166666667, 192.625, NoValue}));
  EXPECT_TRUE(areClose(
      others,
      {4.626313627260665, 0.961938838685881, 0.940793749066927, 515.974444444443520, 0.898047571374626},
      1e-7));
  EXPECT_TRUE(areClose(uncoded, {-72.5625, -0.89375, -18.125, 8.39375, 15.8125, 1.6875}, 1e-11));
  const DoubleArray fits = fit;
  EXPECT_TRUE(isClose(fit(1) + residual(1), 71));

  // Fits and residuals alone leave the rest as it was.
  labels = {};
  fit = residual = {};
  analyse(1, 4, 2, 1, {"AC", "D", "A", "C", "AD"}, "Residual");
  EXPECT_EQ(fit, fits);
  EXPECT_EQ(residual.rows(), 15);
  EXPECT_FALSE(labels.filled());
}

// Fault: gigabytes and hours on block terms that too few blocks in the data cannot fill. A block without runs
// is made up for by runs that are in none.
TEST_F(Factorial, CountsTheBlocksOfTheRuns) {
  const Index runs = 32000;
  prepare(DoubleArray(runs, 1), StringArray(runs, 1, "1"));
  for (Index i = 1; i <= runs; i += 2) dx(i, 1) = "-1";
  block = 30000.0;
  analyseBlock = Variant::flag(true);
  EXPECT_EQ(failureNumber([&] { analyse(1, 1, 1, 1, {"A"}); }), 5012);

  prepare({1, 3, 5, 7, 9, 11}, StringArray(6, 1, "1"));
  for (Index i = 1; i <= 6; i += 2) dx(i, 1) = "-1";
  db = {1, 1, 3, 3, 0, 0};
  block = 3.0;
  analyseBlock = Variant::flag(true);
  analyse(1, 1, 1, 1, {"A"});
  // By hand: runs of block 1 are at (1, 0), of block 3 at (-1, -1), of none at (0, 0); their means are 2,
  // 6, 10.
  EXPECT_TRUE(areClose(coef, {10, -8, 12, 1}));
}

// Faults: a vague failure or a wrong number where the terms or the data do not serve.
TEST_F(Factorial, RefusesWhatItCannotFit) {
  const auto failure = [this](const StringArray& terms, double designType = 1, double design = 2) {
    prepare(filtration, settings(16, {"A", "B", "C", "D"}));
    return failureNumber([&] { analyse(designType, 4, design, 1, terms); });
  };
  EXPECT_EQ(failure({"A", "A"}), 5012);
  EXPECT_EQ(failure({"A", "E"}), 9);
  EXPECT_EQ(failure({"A", "b"}), 9);
  EXPECT_EQ(failure({"A", ""}), 9);
  EXPECT_EQ(failure({"A", "AB"}, 2), 9);
  EXPECT_EQ(failure({"ABCDABCD"}), 5);
  EXPECT_EQ(failure({"A"}, 3), 5);
  EXPECT_EQ(failure({}), 11);
  EXPECT_EQ(failure({"A"}, 1, 9), 0);

  prepare(filtration, settings(16, {"A", "B", "C", "D"}));
  block = 30000.0;
  analyseBlock = Variant::flag(true);
  EXPECT_EQ(failureNumber([&] { analyse(1, 4, 2, 1, {"A"}); }), 5012);
  block = 2.0;
  EXPECT_EQ(failureNumber([&] { analyse(1, 4, 2, 1, {"A"}); }), 5012);
  db = {};
  EXPECT_EQ(failureNumber([&] { analyse(1, 4, 2, 1, {"A"}); }), 9);
  analyseBlock = Variant::flag(false);
  block = 0.0;
  EXPECT_EQ(failureNumber([&] { analyse(1, 4, 2, 1, {"A"}); }), 11);
  block = 1.0;
  low(1) = "minus one";
  dx(1, 1) = "middling";
  EXPECT_EQ(failureNumber([&] { analyse(1, 4, 2, 1, {"B"}); }), 0);
  EXPECT_EQ(failureNumber([&] { analyse(1, 4, 2, 1, {"A"}); }), 13);
}

}  // namespace
}  // namespace zelkova
