#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "unittests/WithHost.h"
#include "unittests/logistic/expand.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/logistic/yLogistic.h"

namespace zelkova {
namespace {

using Coefficients = LogisticCoefficients;

/// Low birth weights (R's MASS::birthwt; Hosmer and Lemeshow, Applied Logistic Regression, 1989).
struct BirthWeights {
  /// Columns of the file by their number, from 0; race, column 3, becomes two dummies.
  explicit BirthWeights(const std::vector<std::size_t>& columns) {
    std::ifstream file(ZELKOVA_SOURCE_DIR "/unittests/logistic/birthwt.csv");
    std::string line;
    std::getline(file, line);
    std::vector<Variant> response;
    std::vector<std::vector<double>> rows;
    while (std::getline(file, line)) {
      std::vector<double> cells;
      std::istringstream stream(line);
      for (std::string cell; std::getline(stream, cell, ',');) cells.push_back(std::stod(cell));
      response.emplace_back(cells[0]);
      std::vector<double>& row = rows.emplace_back();
      for (const std::size_t column : columns) {
        if (column == 3) row.insert(row.end(), {cells[3] == 2 ? 1.0 : 0, cells[3] == 3 ? 1.0 : 0});
        if (column != 3) row.push_back(cells[column]);
      }
    }
    Y = VariantArray(response);
    x = VariantArray(Y.rows(), static_cast<Index>(rows.front().size()), Variant());
    for (Index i = 1; i <= x.rows(); ++i) {
      for (Index j = 1; j <= x.columns(); ++j) {
        x(i, j) = rows[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(j - 1)];
      }
    }
  }

  VariantArray Y, x;
};

class BinaryRegression : public WithHost {
 protected:
  void fit(const VariantArray& Y, const VariantArray& x, const std::string& link = "Logit") {
    model.Binary_regression(Y, x, {}, link, table, logLikelihood, goodness, pairs, measures, leverage,
                            probability, deltacs, deltadev, deltabetas, deltabeta);
  }
  void fit(const std::vector<Observations::Pattern>& patterns, const std::string& link = "Logit") {
    const Observations data(patterns);
    fit(data.Y, data.x, link);
  }
  int failureOf(const std::vector<Observations::Pattern>& patterns, const std::string& link = "Logit") {
    return failureNumber([&] { fit(patterns, link); });
  }

  yLogistic model;
  DoubleArray table, goodness, pairs, measures, leverage, probability, deltacs, deltadev, deltabetas,
      deltabeta;
  double logLikelihood = 0;
};

// Faults: a derivative or tail of one link in another; standard errors from the step before last; odds ratios
// of a link that has none, or of the constant; wrong degrees of freedom. Expected: R, glm(cbind(dead, alive)
// ~ dose) with the three links, and sums over its residuals; with eight patterns the Hosmer-Lemeshow groups
// are the patterns, so its value is Pearson's.
TEST_F(BinaryRegression, FitsAllLinksAsRDoes) {
  struct Expected {
    const char* link;
    DoubleArray coefficients, se, p;
    double logLikelihood;
    DoubleArray chiSquares, pValues;
  };
  const std::vector<Expected> all{
      {"Logit",
       {-60.7174545616353, 34.2703257341469},
       {5.18071146334080, 2.91214007063573},
       {1.00783029321637e-31, 5.70006081568647e-32},
       -186.235403271768,
       {10.0268175856375, 11.2322310974193, 10.0268175856375, 7.92592999900101, 0.85980269874454},
       {0.123527206272969, 0.0814588099273361, 0.123527206272969, 0.0190066758785391, 0.353793910815467}},
      {"Normit",
       {-34.9352588991780, 19.7279342113223},
       {2.64791779861790, 1.48723504090278},
       {9.56610118828813e-40, 3.70212314649246e-40},
       -185.679166779559,
       {9.51342696308496, 10.1197581130015, 9.51342696308496},
       {0.146695207310364, 0.119698499574708, 0.146695207310364}},
      {"Gompit",
       {-39.5723106061374, 22.0411698207577},
       {3.24027261967246, 1.79935519098107},
       {2.66083993924721e-34, 1.69071439529658e-34},
       -182.342507089571,
       {3.2946938337339, 3.44643873302442, 3.2946938337339},
       {0.771053590279099, 0.75108161725069, 0.771053590279099}}};
  for (const Expected& expected : all) {
    SCOPED_TRACE(expected.link);
    fit(beetles, expected.link);
    EXPECT_TRUE(areClose(columnFrom(table, Coefficients::Coefficient), expected.coefficients, 1e-9));
    EXPECT_TRUE(areClose(columnFrom(table, Coefficients::SECoefficient), expected.se, 1e-8));
    EXPECT_TRUE(areClose(columnFrom(table, Coefficients::PValue), expected.p, 1e-6));
    EXPECT_TRUE(isClose(logLikelihood, expected.logLikelihood));
    EXPECT_TRUE(areClose(columnFrom(goodness, GoodnessOfFit::ChiSquare), expected.chiSquares, 1e-8));
    EXPECT_TRUE(areClose(columnFrom(goodness, GoodnessOfFit::PValue), expected.pValues, 1e-8));
    EXPECT_EQ(goodness(1, GoodnessOfFit::DF), 6);
    EXPECT_EQ(goodness(3, GoodnessOfFit::DF), 6);
    EXPECT_EQ(table(1, Coefficients::OddsRatio), NoValue);
    EXPECT_EQ(table(2, Coefficients::UpperLimit) == NoValue, std::string(expected.link) != "Logit");
  }
  fit(beetles);
  EXPECT_EQ(goodness(4, GoodnessOfFit::DF), 2);
  EXPECT_EQ(goodness(5, GoodnessOfFit::DF), 1);
  EXPECT_TRUE(isClose(table(2, Coefficients::OddsRatio), 764563144840872, 1e-6));
  EXPECT_TRUE(isClose(table(2, Coefficients::LowerLimit), 2538605620122.58, 1e-6));
  EXPECT_TRUE(isClose(table(2, Coefficients::UpperLimit), 230266882660071616, 1e-6));
}

// Faults: influence of rows in place of patterns; standardised and plain exchanged; pairs inside a pattern
// counted. Expected: R, hatvalues and residuals of the same glm; pairs by a loop over pairs of patterns.
TEST_F(BinaryRegression, MeasuresInfluenceAndAssociation) {
  fit(beetles);
  EXPECT_TRUE(areClose(leverage,
                       {0.268140489963253, 0.345932231611487, 0.310460691675361, 0.232527596737504,
                        0.269422123992028, 0.237636037075172, 0.198754425364990, 0.137126403580205},
                       1e-8));
  EXPECT_TRUE(areClose(probability,
                       {0.0586010255159142, 0.1640278689000915, 0.3621190058724275, 0.6053149063330511,
                        0.7951717719347335, 0.9032358193757736, 0.9551961068089292, 0.9790493440767000},
                       1e-9));
  EXPECT_TRUE(isClose(deltacs(1), 2.7137931769032027, 1e-8));
  EXPECT_TRUE(isClose(deltadev(8), 2.7448295785086509, 1e-8));
  EXPECT_TRUE(isClose(deltabetas(4), 1.02632425398955629, 1e-8));
  EXPECT_TRUE(isClose(deltabeta(4), 0.78767554173595344, 1e-8));
  EXPECT_EQ(columnFrom(pairs, PairColumns::Number), (DoubleArray{48093, 3741, 0, 51834}));
  EXPECT_TRUE(isClose(pairs(PairRows::Discordant, PairColumns::Percent), 100.0 * 3741 / 51834));
  EXPECT_TRUE(areClose(measures, {0.85565458965158, 0.85565458965158, 0.384199584199584}));
}

// Faults: coefficients in the units of the fit; a constant not moved back; groups of other sizes than tenths.
// Expected: the published table 2.2 of Hosmer and Lemeshow (three decimals, log-likelihood -111.286), and R:
// glm, the groups by cut(fitted, quantile(fitted, 0:10/10)), Brown's tests from the model matrix.
TEST_F(BinaryRegression, AgreesWithHosmerAndLemeshow) {
  const BirthWeights published({1, 2, 3, 8});
  fit(published.Y, published.x);
  const std::vector<double> printed{1.295, -0.024, -0.014, 1.004, 0.433, -0.049};
  for (Index i = 1; i <= 6; ++i) {
    EXPECT_NEAR(table(i, Coefficients::Coefficient), printed[static_cast<std::size_t>(i - 1)], 0.0005);
  }
  EXPECT_NEAR(logLikelihood, -111.286, 0.0005);

  const BirthWeights full({1, 2, 3, 4, 5, 6, 7});
  fit(full.Y, full.x);
  EXPECT_TRUE(areClose(
      columnFrom(table, Coefficients::Coefficient),
      {0.4644032826508950, -0.0270697792989585, -0.0151825628625812, 1.2632193755484122, 0.8616351075343484,
       0.9233491572287835, 0.5417551194890698, 1.8336956099129780, 0.7585965042111498},
      1e-8));
  EXPECT_TRUE(isClose(table(1, Coefficients::SECoefficient), 1.20470210966998503, 1e-8));
  EXPECT_TRUE(isClose(table(8, Coefficients::Z), 2.650730215784391, 1e-8));
  EXPECT_TRUE(isClose(logLikelihood, -100.713475601906));
  EXPECT_EQ(leverage.rows(), 182);
  EXPECT_EQ(goodness(1, GoodnessOfFit::DF), 173);
  EXPECT_EQ(goodness(3, GoodnessOfFit::DF), 8);
  EXPECT_TRUE(areClose(
      columnFrom(goodness, GoodnessOfFit::ChiSquare),
      {179.249933201752, 198.654362481572, 10.3983356008047, 0.562938599884001, 0.512045335783403}, 1e-8));
  EXPECT_EQ(columnFrom(pairs, PairColumns::Number), (DoubleArray{5722, 1947, 0, 7669}));
}

// Faults: results that depend on the unit or the origin of a predictor; an odds ratio beyond the numbers.
TEST_F(BinaryRegression, FollowsUnitsAndOrigins) {
  fit(beetles);
  const DoubleArray plain = table;
  Observations data(beetles);
  for (Variant& x : data.x.elements()) x = (x.toNumber() + 1E+5) / 1000;
  fit(data.Y, data.x);
  EXPECT_TRUE(isClose(table(2, Coefficients::Coefficient), 1000 * plain(2, Coefficients::Coefficient), 1e-8));
  EXPECT_TRUE(isClose(table(2, Coefficients::Z), plain(2, Coefficients::Z), 1e-8));
  EXPECT_EQ(table(2, Coefficients::OddsRatio), NoValue);
  EXPECT_EQ(table(2, Coefficients::LowerLimit), NoValue);
}

// Faults: a division by the degrees of freedom, the leverage or the untied pairs that are not there; a
// deviance of -0. Expected: by hand, logarithms of the odds 3/7 and 7/5 and their standard errors.
TEST_F(BinaryRegression, AnswersSaturatedModelsAndTies) {
  fit({{{0}, {7, 3}}, {{1}, {5, 7}}});
  EXPECT_TRUE(
      areClose(columnFrom(table, Coefficients::Coefficient), {std::log(3.0 / 7), std::log(49.0 / 15)}, 1e-9));
  EXPECT_TRUE(areClose(columnFrom(table, Coefficients::SECoefficient),
                       {std::sqrt(1.0 / 3 + 1.0 / 7), std::sqrt(1.0 / 3 + 2.0 / 7 + 1.0 / 5)}, 1e-9));
  for (Index row = 1; row <= 5; ++row) {
    EXPECT_GE(goodness(row, GoodnessOfFit::ChiSquare), 0);
    EXPECT_LT(goodness(row, GoodnessOfFit::ChiSquare), 1e-9);
    EXPECT_EQ(goodness(row, GoodnessOfFit::DF), 0);
    EXPECT_EQ(goodness(row, GoodnessOfFit::PValue), NoValue);
  }
  EXPECT_NEAR(leverage(1), 1, 1e-9);
  EXPECT_EQ(deltacs, DoubleArray(2, NoValue));
  EXPECT_EQ(deltabeta, DoubleArray(2, NoValue));
  EXPECT_EQ(columnFrom(pairs, PairColumns::Number), (DoubleArray{49, 15, 0, 64}));

  // Both patterns have even odds: every pair is tied, whatever rounding leaves.
  fit({{{0.1}, {2, 2}}, {{0.7}, {3, 3}}});
  EXPECT_EQ(columnFrom(pairs, PairColumns::Number), (DoubleArray{0, 0, 12, 12}));
  EXPECT_EQ(measures, (DoubleArray{0, NoValue, 0}));

  // A third pattern between two: one direction of the general alternative is left, by symmetry of 0 effect.
  fit({{{-1}, {6, 2}}, {{0}, {4, 4}}, {{1}, {2, 6}}});
  EXPECT_EQ(goodness(4, GoodnessOfFit::DF), 1);
}

// Faults: a loop without end or a table of noise where the maximum is at infinity; what can be estimated lost
// with what cannot. Expected: by hand, the first pattern's logarithm of the odds 4/6 and its standard error.
TEST_F(BinaryRegression, EndsWhereTheDataAreSeparated) {
  for (const char* link : {"Logit", "Normit", "Gompit"}) {
    SCOPED_TRACE(link);
    EXPECT_EQ(failureOf({{{1}, {3, 0}}, {{2}, {2, 0}}, {{3}, {0, 4}}}, link), 5012);
    EXPECT_FALSE(table.filled());
  }
  fit({{{1}, {1, 0}}, {{2}, {1, 1}}, {{3}, {0, 1}}});
  EXPECT_NEAR(logLikelihood, -2 * std::log(2), 1e-6) << "the highest there is without perfect separation";

  fit({{{0}, {6, 4}}, {{1}, {5, 0}}});
  EXPECT_TRUE(isClose(table(1, Coefficients::Coefficient), std::log(4.0 / 6), 1e-6));
  EXPECT_TRUE(isClose(table(1, Coefficients::SECoefficient), std::sqrt(1 / 2.4), 1e-6));
  EXPECT_LT(table(2, Coefficients::Coefficient), -15);
  EXPECT_GT(table(2, Coefficients::PValue), 0.9);
  EXPECT_NEAR(logLikelihood, 4 * std::log(0.4) + 6 * std::log(0.6), 1e-7);
}

// Faults: a fit that ends beside the maximum, or before it begins, where one observation is all but
// impossible. Expected: mpmath, the root of the score at 40 digits.
TEST_F(BinaryRegression, ReachesTheMaximumDespiteAnOutlier) {
  struct Expected {
    const char* link;
    DoubleArray coefficients;
    double logLikelihood;
  };
  const std::vector<Expected> all{{"Normit", {-0.2705242136340325, 0.7247007609087607}, -1340.921598207178},
                                  {"Gompit", {-0.6265808694970644, 0.41151873344183}, -1581.52641805555}};
  for (const Expected& expected : all) {
    SCOPED_TRACE(expected.link);
    fit({{{-2}, {570, 30}},
         {{-1}, {510, 90}},
         {{0}, {390, 210}},
         {{1}, {200, 400}},
         {{2}, {40, 560}},
         {{12}, {1, 0}}},
        expected.link);
    EXPECT_TRUE(areClose(columnFrom(table, Coefficients::Coefficient), expected.coefficients, 1e-4));
    EXPECT_TRUE(isClose(logLikelihood, expected.logLikelihood, 1e-10));
  }
}

// Faults: fits of what cannot be fitted. Numbers as documented.
TEST_F(BinaryRegression, RefusesWhatItCannotFit) {
  EXPECT_EQ(failureOf({{{1}, {3, 0}}, {{2}, {2, 0}}}), 5) << "no event";
  EXPECT_EQ(failureOf({{{1}, {0, 3}}, {{2}, {0, 2}}}), 5) << "no non-event";
  EXPECT_EQ(failureOf({{{1}, {1, 1, 1}}, {{2}, {2, 2}}}), 5) << "a Y of 2";
  EXPECT_EQ(failureOf({{{7}, {3, 2}}, {{7}, {2, 2}}}), 5012) << "constant predictor";
  EXPECT_EQ(failureOf({{{1, 0}, {3, 2}}, {{0, 1}, {2, 2}}}), 5012) << "a dummy for each of two levels";
  EXPECT_EQ(failureOf(beetles, "logit"), 11);
  std::vector<Observations::Pattern> sums;
  for (int i = 0; i < 40; ++i) {
    const double a = std::sin(i);
    const double b = std::cos(3 * i) / 7;
    sums.push_back({{a, b, a + b}, {1 + i % 2, 1 + i % 3}});
  }
  EXPECT_EQ(failureOf(sums), 5012) << "a predictor that is the sum of others";

  Observations data(beetles);
  const VariantArray good = data.x;
  data.x(3, 1) = Variant();
  EXPECT_EQ(failureNumber([&] { fit(data.Y, data.x); }), 13);
  data.x(3, 1) = "high";
  EXPECT_EQ(failureNumber([&] { fit(data.Y, data.x); }), 13);
  data.Y(2, 1) = Variant();
  EXPECT_EQ(failureNumber([&] { fit(data.Y, good); }), 13);
  EXPECT_EQ(failureNumber([&] { fit(VariantArray(3, Variant(1.0)), good); }), 5);
  EXPECT_EQ(failureNumber([&] { fit(VariantArray{0.0, 1.0, 1.0}, good); }), 9);
  EXPECT_EQ(failureNumber([&] { fit(good, VariantArray()); }), 5);
  EXPECT_EQ(failureNumber([&] { fit(VariantArray{0.0, 1.0, 1.0}, VariantArray()); }), 9);
  EXPECT_EQ(failureNumber([&] { fit(VariantArray(3, 2, Variant(1.0)), good); }), 5);
  EXPECT_FALSE(table.filled());
}

}  // namespace
}  // namespace zelkova
