#include <gtest/gtest.h>

#include <cmath>

#include "unittests/WithHost.h"
#include "unittests/logistic/expand.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/logistic/yLogistic.h"

namespace zelkova {
namespace {

using Coefficients = LogisticCoefficients;

class OrdinalRegression : public WithHost {
 protected:
  void fit(const Observations& data, const std::string& link = "Logit") {
    model.Ordinal_regression(data.Y, data.x, {}, link, table, logLikelihood, goodness, pairs, measures, k);
  }

  yLogistic model;
  DoubleArray table, goodness, pairs, measures;
  double logLikelihood = 0;
  std::int16_t k = -7;
};

// Faults: slopes of the wrong sign; standard errors of the observed information; cut points in the units of
// the fit; ties between levels left out of the pairs. Expected: R, Fisher scoring on MASS::housing written
// out with plogis, pnorm and 1 - exp(-exp()); MASS::polr gives the same coefficients (slopes negated) to its
// 8 digits. Pairs by a loop over pairs of patterns and levels.
TEST_F(OrdinalRegression, FitsAllLinksAsRDoes) {
  struct Expected {
    const char* link;
    DoubleArray coefficients, se;
    double logLikelihood;
    DoubleArray chiSquares;
  };
  const std::vector<Expected> all{
      {"Logit",
       {-0.496135138197093, 0.690708259263148, -0.566393737905927, -1.28881911037226, 0.572350002041979,
        0.36618637068895, 1.0910146589696, -0.36028400456913},
       {0.124540776614816, 0.125212141122643, 0.104963006485376, 0.12670485022899, 0.118747368521136,
        0.156765857185153, 0.151513706089554, 0.0953574596710688},
       -1739.57464952947,
       {47.886777598508, 47.7276374382904}},
      {"Normit",
       {-0.299827919547548, 0.426720836216199, -0.346422760645764, -0.782914641873771, 0.347536745223986,
        0.217887532891855, 0.664173494083668, -0.222385828475714},
       {0.076161405478876, 0.076399139913893, 0.0641795872928345, 0.0762644803819053, 0.0722115604962938,
        0.0955740941294345, 0.0919294449761782, 0.0581214343741849},
       -1739.84442128207,
       {48.4651884484633, 48.2671809434842}},
      {"Gompit",
       {-0.796208217822446, 0.0553758145145998, -0.382046981567849, -0.915374790645177, 0.407197035462169,
        0.280527684209296, 0.742454743053788, -0.209225284496603},
       {0.0904734377926421, 0.086665739525774, 0.070121796563422, 0.0924964114793384, 0.0861325353906434,
        0.112948360727356, 0.102083797140296, 0.0653755476353425},
       -1742.02658518026,
       {53.7557264051841, 52.6315087398703}}};
  for (const Expected& expected : all) {
    SCOPED_TRACE(expected.link);
    fit(Observations(housing, 1), expected.link);
    EXPECT_TRUE(areClose(columnFrom(table, Coefficients::Coefficient), expected.coefficients, 1e-7));
    EXPECT_TRUE(areClose(columnFrom(table, Coefficients::SECoefficient), expected.se, 1e-7));
    EXPECT_TRUE(isClose(logLikelihood, expected.logLikelihood));
    EXPECT_TRUE(areClose(columnFrom(goodness, GoodnessOfFit::ChiSquare), expected.chiSquares, 1e-7));
    EXPECT_EQ(table(2, Coefficients::OddsRatio), NoValue);
    const bool isLogit = std::string(expected.link) == "Logit";
    EXPECT_EQ(table(3, Coefficients::OddsRatio) != NoValue, isLogit);
  }
  fit(Observations(housing, 1));
  EXPECT_EQ(k, 3);
  EXPECT_TRUE(
      areClose(columnFrom(goodness, GoodnessOfFit::PValue), {0.183220636372526, 0.187440099690328}, 1e-7));
  EXPECT_EQ(columnFrom(pairs, PairColumns::Number), (DoubleArray{579050, 301019, 49497, 929566}));
  EXPECT_TRUE(areClose(measures, {0.29909764341639, 0.31591954721732, 0.196900229455256}));
  EXPECT_TRUE(isClose(table(3, Coefficients::OddsRatio), std::exp(-0.566393737905927), 1e-7));

  // Levels are places in a range: where it begins is nothing to the fit.
  const DoubleArray plain = table;
  fit(Observations(housing, -1));
  EXPECT_EQ(table, plain);
}

// Faults: a predictor with single rows throughout; the steps of scoring ended too early, where they gain
// little at a time. Expected: R, 200 steps of Fisher scoring on mtcars, gear on mpg.
TEST_F(OrdinalRegression, SettlesOnSmallSamples) {
  const std::vector<double> mpg{21,   21,   22.8, 21.4, 18.7, 18.1, 14.3, 24.4, 22.8, 19.2, 17.8,
                                16.4, 17.3, 15.2, 10.4, 10.4, 14.7, 32.4, 30.4, 33.9, 21.5, 15.5,
                                15.2, 13.3, 19.2, 27.3, 26,   30.4, 15.8, 19.7, 15,   21.4};
  const std::vector<double> gear{4, 4, 4, 3, 3, 3, 3, 4, 4, 4, 4, 3, 3, 3, 3, 3,
                                 3, 4, 4, 4, 3, 3, 3, 3, 3, 4, 5, 5, 5, 5, 5, 4};
  Observations cars({{{0}, {32}}});
  std::copy(mpg.begin(), mpg.end(), cars.x.elements().begin());
  std::copy(gear.begin(), gear.end(), cars.Y.elements().begin());
  fit(cars);
  EXPECT_TRUE(areClose(columnFrom(table, Coefficients::Coefficient),
                       {3.70937451526838, 6.01192485346086, -0.188011299030669}, 1e-6));
  EXPECT_TRUE(areClose(columnFrom(table, Coefficients::SECoefficient),
                       {1.41648577228503, 1.71586364257646, 0.0687171261652762}, 1e-6));
  EXPECT_TRUE(isClose(logLikelihood, -27.6700149591742, 1e-11));
}

// Faults: a fit that ends beside the maximum where one observation is all but impossible. Expected: mpmath,
// the root of the score at 40 digits.
TEST_F(OrdinalRegression, ReachesTheMaximumDespiteAnOutlier) {
  fit(Observations({{{-2}, {500, 80, 20}},
                    {{-1}, {400, 150, 50}},
                    {{0}, {200, 250, 150}},
                    {{1}, {60, 200, 340}},
                    {{2}, {20, 80, 500}},
                    {{30}, {1, 0, 0}}}),
      "Normit");
  EXPECT_TRUE(areClose(columnFrom(table, Coefficients::Coefficient),
                       {-0.3746080889459312, 0.5330045943059714, -0.5683121563058569}, 1e-4));
  EXPECT_TRUE(isClose(logLikelihood, -2545.314676384225, 1e-10));
}

// Faults: a message that is an error or fills something; a gap between levels taken for a smaller model.
TEST_F(OrdinalRegression, RefusesWhatItCannotFit) {
  fit(Observations(beetles, 1));
  EXPECT_EQ(messages, std::vector<std::string>{"The response variable has less than 3 distinct values"});
  EXPECT_FALSE(table.filled() || goodness.filled() || pairs.filled() || measures.filled());
  EXPECT_EQ(k, -7);

  const auto failureOf = [&](const Observations& data, const std::string& link = "Logit") {
    return failureNumber([&] { fit(data, link); });
  };
  EXPECT_EQ(failureOf(Observations({{{1}, {2, 0, 3}}, {{2}, {1, 0, 2}}})), 5) << "no observation of level 1";
  EXPECT_EQ(failureOf(Observations({{{1}, {2, 2, 3}}, {{2}, {1, 3, 2}}}, 0.5)), 5) << "fractions";
  EXPECT_EQ(failureOf(Observations({{{1}, {2, 0, 0}}, {{2}, {0, 3, 0}}, {{3}, {0, 0, 2}}})), 5012);
  EXPECT_EQ(failureOf(Observations({{{4}, {2, 3, 1}}, {{4}, {1, 3, 2}}})), 5012) << "constant predictor";
  EXPECT_EQ(failureOf(Observations(housing), "Cauchit"), 11);
  Observations far(housing);
  far.Y(1, 1) = 1E+308;
  far.Y(2, 1) = -1E+308;
  EXPECT_EQ(failureOf(far), 5) << "a range without end";
  EXPECT_EQ(messages.size(), 1U);
}

class NominalRegression : public WithHost {
 protected:
  void fit(const Observations& data, const std::string& reference) {
    model.Nominal_regression(data.Y, data.x, {}, reference, table, logLikelihood, goodness, names);
  }

  yLogistic model;
  DoubleArray table, goodness;
  StringArray names;
  double logLikelihood = 0;
};

// Faults: blocks of the information exchanged; odds ratios of constants. Expected: R, Newton's method on
// MASS::housing written out; nnet::multinom gives the same to its 7 digits.
TEST_F(NominalRegression, FitsAsRDoes) {
  fit(Observations(housing, 1), "1");
  EXPECT_EQ(names, (StringArray{"2", "3"}));
  EXPECT_TRUE(areClose(
      columnFrom(table, Coefficients::Coefficient),
      {-0.419228741179258, 0.446395892821583, 0.664935327711437, -0.435688699088006, 0.131370302469821,
       -0.666570457635314, 0.360851882643292, -0.138742758995362, 0.734863219262884, 1.612631066117856,
       -0.735631740100151, -0.407978086327931, -1.412327684207215, 0.481827002622118},
      1e-8));
  EXPECT_TRUE(
      areClose(columnFrom(table, Coefficients::SECoefficient),
               {0.172934532849832, 0.141557310271145, 0.186337524841630, 0.172532867487839, 0.223106712144935,
                0.206253329228166, 0.132397552667150, 0.159229568467300, 0.136937975874708, 0.167131709557612,
                0.155271430411459, 0.211496621679088, 0.200149438491627, 0.124137065397059},
               1e-8));
  EXPECT_TRUE(isClose(table(14, Coefficients::LowerLimit), 1.269372679514651, 1e-8));
  EXPECT_TRUE(isClose(table(14, Coefficients::UpperLimit), 2.065001969048340, 1e-8));
  EXPECT_EQ(table(8, Coefficients::OddsRatio), NoValue);
  EXPECT_TRUE(isClose(logLikelihood, -1735.04193317056));
  EXPECT_TRUE(areClose(goodness,
                       DoubleArray::table({{38.9104260550055, 34, 0.258157439424666},
                                           {38.6622047204636, 34, 0.267136301093573}}),
                       1e-8));
}

// Faults: the reference counted among the blocks; a level's order by name; numbers that do not match their
// texts; a logarithm of 0 for a level that a pattern does not have. Expected: by hand, logarithms of ratios
// of counts and the roots of sums of their inverses.
TEST_F(NominalRegression, TellsLevelsByTheirTexts) {
  Observations data({{{0}, {5, 4, 1}}, {{1}, {3, 6, 2}}});
  fit(data, "1");
  EXPECT_EQ(names, (StringArray{"0", "2"}));
  EXPECT_TRUE(areClose(
      columnFrom(table, Coefficients::Coefficient),
      {std::log(5.0 / 4), std::log(3.0 * 4 / (6 * 5)), std::log(1.0 / 4), std::log(2.0 * 4 / (6 * 1))},
      1e-9));
  EXPECT_TRUE(isClose(table(3, Coefficients::SECoefficient), std::sqrt(1 + 1.0 / 4), 1e-9));
  EXPECT_EQ(goodness(2, GoodnessOfFit::DF), 0);
  EXPECT_EQ(goodness(2, GoodnessOfFit::PValue), NoValue);

  const DoubleArray plain = table;
  for (Index i = 1; i <= data.Y.rows(); i += 2) data.Y(i, 1) = data.Y(i, 1).toText();
  fit(data, "1");
  EXPECT_EQ(table, plain);

  // A single row of a level, in a pattern without another: its slope has no end, the others stand.
  fit(Observations({{{0}, {5, 4, 0}}, {{1}, {3, 6, 1}}}), "0");
  EXPECT_TRUE(isClose(table(2, Coefficients::Coefficient), std::log(6.0 * 5 / (3 * 4)), 1e-6));
  EXPECT_GT(table(4, Coefficients::Coefficient), 10);
  EXPECT_GT(table(4, Coefficients::PValue), 0.9);
}

// Faults: another likelihood than that of the binary model. Expected: its own agreement with R.
TEST_F(NominalRegression, IsTheBinaryModelForTwoLevels) {
  fit(Observations(beetles), "0");
  EXPECT_EQ(names, StringArray{"1"});
  EXPECT_TRUE(
      areClose(columnFrom(table, Coefficients::Coefficient), {-60.7174545616353, 34.2703257341469}, 1e-9));
  EXPECT_TRUE(isClose(goodness(2, GoodnessOfFit::ChiSquare), 11.2322310974193, 1e-9));
  fit(Observations(beetles), "1");
  EXPECT_TRUE(isClose(table(2, Coefficients::Coefficient), -34.2703257341469, 1e-9));
}

// Faults: a fit without a reference; a model of more coefficients than anyone waits for.
TEST_F(NominalRegression, RefusesWhatItCannotFit) {
  const auto failureOf = [&](const Observations& data, const std::string& reference) {
    return failureNumber([&] { fit(data, reference); });
  };
  EXPECT_EQ(failureOf(Observations(housing), "3"), 5012);
  EXPECT_EQ(failureOf(Observations({{{1}, {3}}, {{2}, {4}}}), "0"), 5);
  EXPECT_EQ(failureOf(Observations({{{1}, {2, 0, 0}}, {{2}, {0, 3, 0}}, {{3}, {0, 0, 2}}}), "0"), 5012);
  EXPECT_EQ(failureOf(Observations({{{1}, {2, 1, 3}}, {{1}, {2, 3, 1}}}), "0"), 5012);
  Observations many({{{1}, std::vector<int>(1200, 1)}});
  for (Index i = 1; i <= 1200; ++i) many.x(i, 1) = static_cast<double>(i % 7);
  EXPECT_EQ(failureOf(many, "0"), 5);
  EXPECT_FALSE(table.filled() || names.filled());
}

}  // namespace
}  // namespace zelkova
