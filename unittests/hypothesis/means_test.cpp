#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/hypothesis/yHTest.h"

namespace zelkova {
namespace {

// Cavendish's 29 determinations of the density of the earth (1798).
const DoubleArray density{5.50, 5.61, 4.88, 5.07, 5.26, 5.55, 5.36, 5.29, 5.58, 5.65,
                          5.57, 5.53, 5.62, 5.29, 5.44, 5.34, 5.79, 5.10, 5.27, 5.39,
                          5.42, 5.47, 5.63, 5.34, 5.46, 5.30, 5.75, 5.68, 5.85};

// Series 1 and the first 15 of series 5 of Michelson's speeds of light (R's data set `morley`), km/s -
// 299000.
const DoubleArray series1{850,  740, 900, 1070, 930, 850, 950,  980,  980, 880,
                          1000, 980, 930, 650,  760, 810, 1000, 1000, 960, 960};
const DoubleArray series5{890, 840, 780, 810, 760, 810, 790, 810, 820, 850, 870, 870, 810, 740, 810};

// Student's sleep data (R's data set `sleep`): hours gained under the second and the first drug.
const DoubleArray laevo{1.9, 0.8, 1.1, 0.1, -0.1, 4.4, 5.5, 1.6, 4.6, 3.4};
const DoubleArray dextro{0.7, -1.6, -0.2, -1.2, -0.1, 3.4, 3.7, 0.8, 0.0, 2.0};

class TestsOnMeans : public WithHost {
 protected:
  yHTest test;
  DoubleArray result;
};

// Faults: tails exchanged between the alternatives; a limit on the wrong side of the mean below a confidence
// of 0.5; an open limit that is not 0. Expected: R, t.test(density, mu = 5.514, alternative, conf.level).
TEST_F(TestsOnMeans, OneTAgreesWithR) {
  const struct {
    const char* alternative;
    double confidence, lower, upper, p;
  } cases[] = {{"Less than", 0.95, 0, 5.5177260269332, 0.0592733287912347},
               {"Less than", 0.3, 0, 5.42616849469352, 0.0592733287912347},
               {"Greater than", 0.95, 5.37813604203232, 0, 0.940726671208765},
               {"Greater than", 0.3, 5.46969357427199, 0, 0.940726671208765},
               {"Not equals", 0.95, 5.36388779118079, 5.53197427778473, 0.118546657582469},
               {"Not equals", 0.3, 5.43195864176058, 5.46390342720494, 0.118546657582469},
               {"not equals", 0.95, 0, 0, 0}};  // a text that is no alternative decides nothing
  for (const auto& c : cases) {
    test.OneTOutput(density, 5.514, c.confidence, c.alternative, result);
    EXPECT_EQ(result.size(), 10);
    EXPECT_EQ(result(OneT::TestMean), 5.514);
    EXPECT_EQ(result(OneT::CLevel), c.confidence);
    EXPECT_EQ(result(OneT::N), 29);
    EXPECT_TRUE(isClose(result(OneT::Mean), 5.44793103448276));
    EXPECT_TRUE(isClose(result(OneT::SD), 0.220945683537587));
    EXPECT_TRUE(isClose(result(OneT::SE), 0.0410285834232721));
    EXPECT_TRUE(isClose(result(OneT::T), -1.61031554113482, 1e-11));
    EXPECT_TRUE(isClose(result(OneT::Lower), c.lower)) << c.alternative << c.confidence;
    EXPECT_TRUE(isClose(result(OneT::Upper), c.upper)) << c.alternative << c.confidence;
    EXPECT_TRUE(isClose(result(OneT::PValue), c.p, 1e-11)) << c.alternative;
  }
}

// Faults: the sample's spread in place of Sigma; tails exchanged for a negative z; a limit on the wrong side
// of the mean below a confidence of 0.5. Expected: R, pnorm and qnorm on (mean - tested) / (0.2 / sqrt(29)).
TEST_F(TestsOnMeans, OneZTakesTheKnownSigma) {
  const struct {
    const char* alternative;
    double tested, confidence, z, lower, upper, p;
  } cases[] = {
      {"Less than", 5.4, 0.9, 1.2905826003305, 0, 5.49552666475379, 0.901575773674159},
      {"Greater than", 5.4, 0.9, 1.2905826003305, 5.40033540421173, 0, 0.0984242263258409},
      {"Not equals", 5.4, 0.9, 1.2905826003305, 5.38684270438106, 5.50901936458446, 0.196848452651682},
      {"Less than", 5.4, 0.3, 1.2905826003305, 0, 5.42845528837325, 0.901575773674159},
      {"Greater than", 5.4, 0.3, 1.2905826003305, 5.46740678059227, 0, 0.0984242263258409},
      {"Not equals", 5.4, 0.3, 1.2905826003305, 5.43362059161954, 5.46224147734598, 0.196848452651682},
      {"Less than", 5.514, 0.9, -1.77896133973617, 0, 5.49552666475379, 0.0376230502076247},
      {"Greater than", 5.514, 0.9, -1.77896133973617, 5.40033540421173, 0, 0.962376949792375},
      {"Not equals", 5.514, 0.9, -1.77896133973617, 5.38684270438106, 5.50901936458446, 0.0752461004152494},
      {"Less than", 5.514, 0.3, -1.77896133973617, 0, 5.42845528837325, 0.0376230502076247},
      {"Greater than", 5.514, 0.3, -1.77896133973617, 5.46740678059227, 0, 0.962376949792375},
      {"Not equals", 5.514, 0.3, -1.77896133973617, 5.43362059161954, 5.46224147734598, 0.0752461004152494}};
  for (const auto& c : cases) {
    test.OneZOutput(density, 0.2, c.tested, c.confidence, c.alternative, result);
    EXPECT_EQ(result.size(), 11);
    EXPECT_EQ(result(OneZ::Sigma), 0.2);
    EXPECT_TRUE(isClose(result(OneZ::SD), 0.220945683537587));
    EXPECT_TRUE(isClose(result(OneZ::SE), 0.2 / std::sqrt(29)));
    EXPECT_TRUE(isClose(result(OneZ::Z), c.z));
    EXPECT_TRUE(isClose(result(OneZ::Lower), c.lower)) << c.alternative << c.confidence;
    EXPECT_TRUE(isClose(result(OneZ::Upper), c.upper)) << c.alternative << c.confidence;
    EXPECT_TRUE(isClose(result(OneZ::PValue), c.p));
  }
}

// Faults: the two variances weighted wrongly, or Welch's degrees of freedom left with their fraction.
// Expected: R, t.test(series1, series5, mu = 20, var.equal); for Welch's test pt and qt at floor(26.2007...)
// degrees of freedom.
TEST_F(TestsOnMeans, TwoTPoolsOrFollowsWelch) {
  test.TwoTOutput(series1, series5, 20, 0.95, "Greater than", true, result);
  EXPECT_EQ(result.size(), 16);
  EXPECT_EQ(result(TwoT::N1), 20);
  EXPECT_EQ(result(TwoT::Mean1), 909);
  EXPECT_TRUE(isClose(result(TwoT::SD1), 104.926039114276));
  EXPECT_TRUE(isClose(result(TwoT::SE1), 104.926039114276 / std::sqrt(20)));
  EXPECT_EQ(result(TwoT::N2), 15);
  EXPECT_TRUE(isClose(result(TwoT::Mean2), 817.333333333333));
  EXPECT_TRUE(isClose(result(TwoT::SD2), 41.4843630896315));
  EXPECT_TRUE(isClose(result(TwoT::SE2), 41.4843630896315 / std::sqrt(15)));
  EXPECT_TRUE(isClose(result(TwoT::Difference), 909 - 817.333333333333));
  EXPECT_TRUE(isClose(result(TwoT::Lower), 43.0660473234295));
  EXPECT_EQ(result(TwoT::Upper), 0);
  EXPECT_EQ(result(TwoT::TestMeanD), 20);
  EXPECT_EQ(result(TwoT::DF), 33);
  EXPECT_TRUE(isClose(result(TwoT::T), 2.49556124564186));
  EXPECT_TRUE(isClose(result(TwoT::PValue), 0.00887594913779335));
  EXPECT_EQ(result(TwoT::CLevel), 0.95);

  test.TwoTOutput(series1, series5, 20, 0.95, "Not equals", false, result);
  EXPECT_EQ(result(TwoT::DF), 26);
  EXPECT_TRUE(isClose(result(TwoT::T), 2.77868828729287));
  EXPECT_TRUE(isClose(result(TwoT::PValue), 0.0100006198427706));
  EXPECT_TRUE(isClose(result(TwoT::Lower), 38.6513846804103));
  EXPECT_TRUE(isClose(result(TwoT::Upper), 144.681948652923));

  test.TwoTOutput(series1, series5, 20, 0.95, "Less than", false, result);
  EXPECT_TRUE(isClose(result(TwoT::PValue), 0.994999690078615));
  EXPECT_TRUE(isClose(result(TwoT::Upper), 135.657189632152));
}

// Fault: degrees of freedom that are whole in exact arithmetic, floored one too low because of rounding, or
// that underflow. Hand arithmetic: equal sizes and spreads give 2(n - 1), whatever the spread.
TEST_F(TestsOnMeans, WelchKeepsWholeDegreesOfFreedom) {
  for (const double sd : {0.1, 0.3, 1 / 3.0, 7e-120, 1e80}) {
    for (double n = 2; n <= 60; ++n) {
      test.TwoTOutput_S(1 + sd, sd, n, 1, sd, n, 0, 0.95, "Not equals", false, result);
      EXPECT_EQ(result(TwoT::DF), 2 * (n - 1)) << sd;
    }
  }
}

// Fault: the spread of one sample in place of that of the differences. Expected: R, t.test(laevo, dextro,
// paired = TRUE, alternative = "greater", conf.level = 0.9).
TEST_F(TestsOnMeans, PairedTTestsTheDifferences) {
  DoubleArray difference;
  test.PairedTOutput(laevo, dextro, 0, 0.9, "Greater than", result, difference);
  EXPECT_EQ(result.size(), 19);
  EXPECT_TRUE(isClose(result(PairedT::Mean1), 2.33));
  EXPECT_TRUE(isClose(result(PairedT::SD1), 2.00224873579683));
  EXPECT_TRUE(isClose(result(PairedT::SE2), 1.78900965775916 / std::sqrt(10)));
  EXPECT_EQ(result(PairedT::NDifference), 10);
  EXPECT_TRUE(isClose(result(PairedT::MeanDifference), 1.58));
  EXPECT_TRUE(isClose(result(PairedT::SDDifference), 1.22999548327987));
  EXPECT_TRUE(isClose(result(PairedT::SEDifference), 1.22999548327987 / std::sqrt(10)));
  EXPECT_TRUE(isClose(result(PairedT::Lower), 1.04205890681227));
  EXPECT_EQ(result(PairedT::Upper), 0);
  EXPECT_EQ(result(PairedT::DF), 9);
  EXPECT_TRUE(isClose(result(PairedT::T), 4.06212768338204));
  EXPECT_TRUE(isClose(result(PairedT::PValue), 0.00141644509869214));
  EXPECT_EQ(result(PairedT::CLevel), 0.9);
  EXPECT_EQ(difference.size(), 10);
  EXPECT_EQ(difference(5), 0);
  EXPECT_TRUE(isClose(difference(9), 4.6));

  // Differences without spread have no test, but everything else; a binary fraction keeps them exactly equal.
  test.PairedTOutput({1.5, 2.5, 4.5}, {1, 2, 4}, 0, 0.95, "Not equals", result, difference);
  EXPECT_EQ(result(PairedT::MeanDifference), 0.5);
  for (const auto slot : {PairedT::Lower, PairedT::Upper, PairedT::T, PairedT::PValue}) {
    EXPECT_EQ(result(slot), NoValue);
  }
  EXPECT_EQ(result(PairedT::DF), 2);
}

// Fault: the forms on summaries that mix up their arguments.
TEST_F(TestsOnMeans, SummariesGiveWhatTheirDataGive) {
  DoubleArray fromData;
  test.OneTOutput(density, 5.5, 0.9, "Less than", fromData);
  test.OneTOutput_S(29, fromData(OneT::Mean), fromData(OneT::SD), 5.5, 0.9, "Less than", result);
  EXPECT_EQ(result, fromData);
  test.OneZOutput(density, 0.3, 5.5, 0.9, "Greater than", fromData);
  test.OneZOutput_S(29, fromData(OneZ::Mean), fromData(OneZ::SD), 0.3, 5.5, 0.9, "Greater than", result);
  EXPECT_EQ(result, fromData);
  for (const bool equalVariance : {false, true}) {
    test.TwoTOutput(series1, series5, 5, 0.8, "Not equals", equalVariance, fromData);
    test.TwoTOutput_S(909, fromData(TwoT::SD1), 20, fromData(TwoT::Mean2), fromData(TwoT::SD2), 15, 5, 0.8,
                      "Not equals", equalVariance, result);
    EXPECT_EQ(result, fromData);
  }
}

// Fault: bad data that end in a number, in the wrong failure, or with a result half written.
TEST_F(TestsOnMeans, BadDataEndInAFailureAndChangeNothing) {
  DoubleArray difference;
  const DoubleArray untouched{7};
  result = untouched;
  const DoubleArray flat{2, 2, 2};
  EXPECT_EQ(failureNumber([&] { test.OneTOutput(flat, 1, 0.95, "Less than", result); }), 11);
  EXPECT_EQ(failureNumber([&] { test.OneTOutput({5}, 1, 0.95, "Less than", result); }), 11);
  EXPECT_EQ(failureNumber([&] { test.OneTOutput(DoubleArray(), 1, 0.95, "Less than", result); }), 9);
  EXPECT_EQ(failureNumber([&] {
              test.OneTOutput({1e308, -1e308, 1e308, 1e308}, 0, 0.95, "Less than", result);
            }),
            6);
  EXPECT_EQ(failureNumber([&] { test.OneTOutput(density, 5, 1, "Less than", result); }), 1004);
  EXPECT_EQ(failureNumber([&] { test.OneTOutput(density, 5, 95, "Not equals", result); }), 1004);
  EXPECT_EQ(failureNumber([&] { test.OneTOutput_S(1, 5, 2, 4, 0.95, "Less than", result); }), 1004);
  EXPECT_EQ(failureNumber([&] { test.OneTOutput_S(-4, 5, 2, 4, 0.95, "Less than", result); }), 5);
  EXPECT_EQ(failureText([&] { test.OneTOutput_S(4, 5, -2, 4, 0.95, "Less than", result); }),
            "Invalid procedure call or argument: dSD must not be negative");
  EXPECT_EQ(failureNumber([&] { test.OneZOutput(density, -1, 5, 0.95, "Less than", result); }), 5);
  EXPECT_EQ(failureNumber([&] { test.OneZOutput(density, 0, 5, 0.95, "Less than", result); }), 11);
  EXPECT_EQ(failureNumber([&] { test.TwoTOutput(flat, flat, 0, 0.95, "Less than", true, result); }), 11);
  EXPECT_EQ(failureNumber([&] { test.TwoTOutput(flat, flat, 0, 0.95, "Less than", false, result); }), 11);
  EXPECT_EQ(failureNumber([&] { test.TwoTOutput({1}, density, 0, 0.95, "Less than", false, result); }), 11);
  EXPECT_EQ(
      failureNumber([&] { test.PairedTOutput(density, flat, 0, 0.95, "Less than", result, difference); }), 9);
  EXPECT_EQ(result, untouched);
  EXPECT_FALSE(difference.filled());
}

// Fault: a class that binds and can be created without a host, or that loses its host while it lives.
TEST(HostBinding, IsTakenAtCreationAndHeld) {
  EXPECT_EQ(failureNumber([] { yHTest unbound; }), 429);
  EXPECT_NE(failureText([] { yHTest unbound; }).find("Excel.Application"), std::string::npos);
  startEmbeddedHost();
  const yHTest bound;
  RunningObjects::remove(hostName);
  EXPECT_EQ(failureNumber([] { yHTest unbound; }), 429);
  DoubleArray result;
  bound.OneZOutput_S(4, 1, 1, 2, 0, 0.95, "Less than", result);
  EXPECT_EQ(result(OneZ::Z), 1);  // hand arithmetic: (1 - 0) / (2 / sqrt(4))
}

}  // namespace
}  // namespace zelkova
