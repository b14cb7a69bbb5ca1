#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <sstream>
#include <string>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/power/yPASS.h"

namespace zelkova {
namespace {

const char* const less = "Less than";
const char* const greater = "Greater than";
const char* const both = "Not equals";

class PowerAndSampleSize : public WithHost {
 protected:
  yPASS pass;
  DoubleArray one, two;

  /// The plan of both t tests with a standard deviation of 1.25.
  void planT(const char* obj, const std::string& SSize, const std::string& Diff, const std::string& Power,
             const char* testType, double alpha = 0.05) {
    pass.PASSOneTOutput(obj, SSize, Diff, Power, 1.25, testType, alpha, one);
    pass.PASSTwoTOutput(obj, SSize, Diff, Power, 1.25, testType, alpha, two);
  }

  /// The plan of both tests of proportions against 0.3 at a level of 0.05.
  void planP(const char* obj, const std::string& SSize, const std::string& aP, const std::string& Power,
             const char* testType) {
    pass.PASSOnePOutput(obj, SSize, aP, Power, 0.3, testType, 0.05, one);
    pass.PASSTwoPOutput(obj, SSize, aP, Power, 0.3, testType, 0.05, two);
  }
};

// Faults: a tail that is left out or on the wrong side, a critical value for the other number of tails,
// degrees of freedom or noncentrality of the other test. Expected: R, pt at qt, as power.t.test with
// strict = TRUE has it ("Less than" is its mirror image).
TEST_F(PowerAndSampleSize, OfTTestsAgreesWithR) {
  const struct {
    double difference, n, oneSided1, twoSided1, oneSided2, twoSided2;
  } cases[] = {{0.75, 10, 0.54289769962245, 0.395918332075505, 0.361783732533784, 0.245932059879868},
               {1.5, 4, 0.57762626939055, 0.383158117484729, 0.444030331954442, 0.299005128649628},
               {0.2, 150, 0.620132762234177, 0.494856784985109, 0.396522447407404, 0.2817834919436}};
  for (const auto& c : cases) {
    const struct {
      const char* testType;
      double sign, power1, power2;
    } alternatives[] = {{greater, 1, c.oneSided1, c.oneSided2},
                        {less, -1, c.oneSided1, c.oneSided2},
                        {both, 1, c.twoSided1, c.twoSided2},
                        {both, -1, c.twoSided1, c.twoSided2}};
    for (const auto& a : alternatives) {
      planT("3", numberText(c.n), numberText(a.sign * c.difference), "", a.testType);
      EXPECT_TRUE(areClose(one, DoubleArray::table({{a.sign * c.difference, c.n, a.power1}}), 1e-6));
      EXPECT_TRUE(areClose(two, DoubleArray::table({{a.sign * c.difference, c.n, a.power2}}), 1e-6));
    }
  }
  // deliberate: at a level above a half the critical value keeps its positive sign. R: pt(qt(0.7, 9), 9,
  // sqrt(10) * 0.3, lower = FALSE).
  pass.PASSOneTOutput("3", "10", "0.3", "", 1, greater, 0.7, one);
  EXPECT_NEAR(one(1, MeansPower::Power), 0.661596423681724, 1e-6);
}

// Faults: a walk that stops at a stride's end, misses the size of 2, or reports the power of another size; a
// row filled that the test does not admit. Expected: R, the first size in 2, 3, 4, ... whose power reaches
// the target.
TEST_F(PowerAndSampleSize, FindsTheSmallestSampleOfTTests) {
  planT("1", "", " 0.6,2.5 ,-1, 9", "0.6, 0.9,0.05", greater);
  const double none = NoValue;
  EXPECT_TRUE(areClose(one,
                       DoubleArray::table({{0.6, 18, 0.6, 0.621566182098267},
                                           {0.6, 39, 0.9, 0.902976942569829},
                                           {none, none, none, none},
                                           {2.5, 3, 0.6, 0.71215920303344},
                                           {2.5, 4, 0.9, 0.908446662616721},
                                           {none, none, none, none},
                                           {none, none, none, none},
                                           {none, none, none, none},
                                           {none, none, none, none},
                                           {9, 2, 0.6, 0.88881031548979},
                                           {9, 3, 0.9, 0.999999655013913},
                                           {none, none, none, none}}),
                       1e-6));
  planT("1", "", "-0.6,9", "0.6,0.9", both);
  EXPECT_TRUE(areClose(two,
                       DoubleArray::table({{-0.6, 44, 0.6, 0.604988366313944},
                                           {-0.6, 93, 0.9, 0.902524109404637},
                                           {9, 2, 0.6, 0.924111740807921},
                                           {9, 2, 0.9, 0.924111740807921}}),
                       1e-6));
}

// Fault: a power equal to the target to the last bit counted as above it, beyond a size of 2.
TEST_F(PowerAndSampleSize, MustLieAboveTheTarget) {
  for (const char* n : {"2", "17", "18"}) {
    planT("3", n, "1", "", both);
    std::ostringstream target;
    target << std::setprecision(17) << one(1, MeansPower::Power);
    planT("1", "", "1", target.str(), both);
    EXPECT_EQ(one(1, MeansSampleSize::SampleSize), std::string(n) == "2" ? 2 : NoValue) << n;
  }
}

// Faults: steps that grow or shrink at the wrong turn, another start, another stop, the wrong direction below
// 0. Expected: R, the same steps on pt; a tiny sigma leaves what a hundred doublings make of its square.
TEST_F(PowerAndSampleSize, FindsTheDifferenceOfTTestsStepByStep) {
  const struct {
    const char* testType;
    double sign, one9, one30, two9, two30;
  } cases[] = {{greater, 1, 1.1361837387085, 0.76909065246582, 1.53136253356934, 1.07440948486328},
               {less, -1, 1.1361837387085, 0.76909065246582, 1.53136253356934, 1.07440948486328},
               {both, 1, 1.33371353149414, 0.85148811340332, 1.75867080688477, 1.18322372436523}};
  for (const auto& c : cases) {
    planT("2", "9", "", "0.8,0.05", c.testType);
    EXPECT_TRUE(
        areClose(one, DoubleArray::table({{9, 0.8, c.sign * c.one9}, {NoValue, NoValue, NoValue}}), 1e-14));
    EXPECT_TRUE(
        areClose(two, DoubleArray::table({{9, 0.8, c.sign * c.two9}, {NoValue, NoValue, NoValue}}), 1e-14));
    planT("2", "30", "", "0.95", c.testType);
    EXPECT_TRUE(areClose(one, DoubleArray::table({{30, 0.95, c.sign * c.one30}}), 1e-14));
    EXPECT_TRUE(areClose(two, DoubleArray::table({{30, 0.95, c.sign * c.two30}}), 1e-14));
  }
  pass.PASSOneTOutput("2", "9", "", "0.8", 1e-40, greater, 0.05, one);
  EXPECT_TRUE(isClose(one(1, MeansDifference::Difference), 2.53530120045646e-50));
}

// Faults: the far tail counted, a size below 2, a difference of the wrong sign. Expected: R, pnorm and qnorm.
TEST_F(PowerAndSampleSize, OfZTestsIsInClosedForm) {
  pass.PASSOneZOutput("3", "10,150", "-0.75,0.2", "", 1.25, both, 0.05, one);
  EXPECT_TRUE(isClose(one(1, MeansPower::Power), 0.475043554532347));
  EXPECT_TRUE(isClose(one(4, MeansPower::Power), 0.499851517551013));
  pass.PASSOneZOutput("3", "10", "-0.75,0.2", "", 1.25, less, 0.05, one);
  EXPECT_TRUE(
      areClose(one, DoubleArray::table({{-0.75, 10, 0.599677704546438}, {NoValue, NoValue, NoValue}})));

  pass.PASSOneZOutput("1", "", "0.6,9", "0.8,0.95", 1.25, greater, 0.05, one);
  EXPECT_TRUE(areClose(one, DoubleArray::table({{0.6, 27, 0.8, 0.802142680494785},
                                                {0.6, 47, 0.95, 0.950103766900052},
                                                {9, 2, 0.8, 1},
                                                {9, 2, 0.95, 1}})));
  pass.PASSOneZOutput("1", "", "-0.6", "0.95", 1.25, both, 0.05, one);
  EXPECT_TRUE(areClose(one, DoubleArray::table({{-0.6, 57, 0.95, 0.951939443067378}})));

  pass.PASSOneZOutput("2", "9", "", "0.8", 1.25, less, 0.05, one);
  EXPECT_TRUE(areClose(one, DoubleArray::table({{9, 0.8, -1.03603119188516}})));
  pass.PASSOneZOutput("2", "30", "", "0.95,0.05", 1.25, both, 0.05, one);
  EXPECT_TRUE(
      areClose(one, DoubleArray::table({{30, 0.95, 0.822683300627418}, {NoValue, NoValue, NoValue}})));
}

// Faults: spread terms exchanged, a quantile on the wrong side, the wrong list in the outer loop. Expected:
// R, pnorm and qnorm; two proportions, two-sided, as power.prop.test.
TEST_F(PowerAndSampleSize, OfProportionsAgreesWithR) {
  planP("3", "80", "0.45,0.2", "", greater);
  EXPECT_TRUE(
      areClose(one, DoubleArray::table({{0.45, 80, 0.881331969526236}, {NoValue, NoValue, NoValue}})));
  EXPECT_TRUE(
      areClose(two, DoubleArray::table({{0.45, 80, 0.624979156825683}, {NoValue, NoValue, NoValue}})));
  planP("3", "60", "0.2", "", both);
  EXPECT_TRUE(areClose(one, DoubleArray::table({{0.2, 60, 0.378687708597245}})));
  EXPECT_TRUE(areClose(two, DoubleArray::table({{0.2, 60, 0.242046886774766}})));

  planP("1", "", "0.2,0.45", "0.8,0.05", less);
  EXPECT_EQ(one.rows(), 4);
  EXPECT_TRUE(isClose(one(1, ProportionsSampleSize::ActualPower), 0.800319068331022));
  EXPECT_EQ(one(1, ProportionsSampleSize::SampleSize), 119);
  EXPECT_EQ(two(1, ProportionsSampleSize::SampleSize), 231);
  for (Index row = 2; row <= 4; ++row) EXPECT_EQ(two(row, ProportionsSampleSize::SampleSize), NoValue);
  planP("1", "", "0.45", "0.9", both);
  EXPECT_TRUE(areClose(one, DoubleArray::table({{0.45, 105, 0.9, 0.900461493543835}})));
  EXPECT_TRUE(areClose(two, DoubleArray::table({{0.45, 217, 0.9, 0.900237711557111}})));
}

// Faults: a walk that evaluates a proportion of 0 or 1 (a division by zero), ends a step early, or fills the
// side of the other alternative. Expected: R, the same steps on pnorm.
TEST_F(PowerAndSampleSize, FindsProportionsOnBothSides) {
  planP("2", "100,8", "", "0.8,0.9,0.05", both);
  ASSERT_EQ(one.rows(), 6);
  const struct {
    Index row;
    double lower1, upper1, lower2, upper2;
  } cases[] = {{1, 0.17795, 0.43155, 0.13725, 0.49265},
               {3, NoValue, NoValue, NoValue, NoValue},
               {5, NoValue, 0.79905, NoValue, 0.98465}};
  for (const auto& c : cases) {
    EXPECT_TRUE(isClose(one(c.row, ProportionsSolution::LowerP), c.lower1)) << c.row;
    EXPECT_TRUE(isClose(one(c.row, ProportionsSolution::UpperP), c.upper1)) << c.row;
    EXPECT_TRUE(isClose(two(c.row, ProportionsSolution::LowerP), c.lower2)) << c.row;
    EXPECT_TRUE(isClose(two(c.row, ProportionsSolution::UpperP), c.upper2)) << c.row;
  }
  planP("2", "8", "", "0.9", less);
  EXPECT_TRUE(areClose(one, DoubleArray::table({{8, 0.9, 0.00425, NoValue}})));
  planP("2", "8", "", "0.9", greater);
  EXPECT_TRUE(areClose(two, DoubleArray::table({{8, 0.9, NoValue, 0.93535}})));
  for (const double end : {0.0, 1.0}) {
    pass.PASSOnePOutput("2", "5", "", "0.999999", end, both, 0.05, one);
    EXPECT_EQ(one(1, end == 0 ? ProportionsSolution::LowerP : ProportionsSolution::UpperP), NoValue);
  }
}

// Faults: degrees of freedom or noncentrality of another layout, columns exchanged. Expected: R, pf at qf, as
// power.anova.test has it with between.var = Diff^2 / 2 / (groups - 1); the difference by the same steps.
TEST_F(PowerAndSampleSize, OfAnalysisOfVarianceAgreesWithR) {
  pass.PASSOneANOVAOutput("3", "6,7", "-2,0", "", 1.5, 0.05, 4, one);
  EXPECT_TRUE(isClose(one(1, ANOVAPower::Power), 0.391891719996719, 1e-6));
  EXPECT_EQ(one(1, ANOVAPower::SSMeans), 2);
  EXPECT_EQ(one(2, ANOVAPower::SampleSize), 7);
  EXPECT_EQ(one(2, ANOVAPower::Diff), -2);
  EXPECT_EQ(one(3, ANOVAPower::Power), 0.05);
  pass.PASSOneANOVAOutput("1", "", "1", "0.9,0.05", 1.5, 0.05, 3, one);
  EXPECT_TRUE(areClose(
      one, DoubleArray::table({{0.5, 58, 0.9, 0.900244584985331}, {NoValue, NoValue, NoValue, NoValue}}),
      1e-6));
  pass.PASSOneANOVAOutput("1", "", "12", "0.5", 1.5, 0.05, 3, one);
  EXPECT_TRUE(areClose(one, DoubleArray::table({{72, 2, 0.5, 0.97226282371744}}), 1e-6));
  pass.PASSOneANOVAOutput("2", "6", "", "0.8,0.05", 1.5, 0.05, 4, one);
  const double difference = 3.15548801422119;
  EXPECT_TRUE(areClose(one,
                       DoubleArray::table({{6, 0.8, difference, difference * difference / 2},
                                           {NoValue, NoValue, NoValue, NoValue}}),
                       1e-13));
  // Two groups are the two-sided t test of two samples.
  pass.PASSOneANOVAOutput("3", "10", "0.75", "", 1.25, 0.05, 2, one);
  EXPECT_TRUE(isClose(one(1, ANOVAPower::Power), 0.245932059879868, 1e-6));
}

// Fault: a text that no branch takes ends in numbers or in a failure.
TEST_F(PowerAndSampleSize, UnknownOptionsDecideNothing) {
  for (const char* obj : {"1", "2", "3"}) {
    planT(obj, "10", "1", "0.9", "not equals");
    planP(obj, "10", "0.5", "0.9", "");
    for (const double x : one.elements()) EXPECT_EQ(x, NoValue);
    for (const double x : two.elements()) EXPECT_EQ(x, NoValue);
  }
  planT("4", "10", "1", "0.9", both);
  EXPECT_FALSE(one.filled());
  pass.PASSOneANOVAOutput("", "10", "1", "0.9", 1, 0.05, 3, two);
  EXPECT_FALSE(two.filled());
}

// Faults: a walk without end, a power at a difference of 0 that is not the level, a list read that is not
// asked for, bad arguments that end in a number.
TEST_F(PowerAndSampleSize, WalksEndAndBadArgumentsFail) {
  for (const char* testType : {less, greater, both}) {
    planT("3", "12", "0", "none", testType);
    EXPECT_EQ(one(1, MeansPower::Power), 0.05);
    EXPECT_EQ(two(1, MeansPower::Power), 0.05);
  }
  const auto failsWith = [&](const char* text, auto call) {
    EXPECT_NE(failureText(call).find(text), std::string::npos) << text << ": " << failureText(call);
  };
  failsWith("difference of 0", [&] { planT("1", "", "0", "0.9", greater); });
  failsWith("a power of 1 or more", [&] { planT("1", "", "1", "1", both); });
  failsWith("up to 1000000000", [&] { planT("1", "", "1e-6", "0.9", both); });
  failsWith("up to 1000000000", [&] { pass.PASSOneANOVAOutput("1", "", "1e-6", "0.9", 1, 0.05, 2, one); });
  failsWith("at most 1", [&] { planT("2", "10", "", "90", both); });
  failsWith("Diff: \"x\" is not a number", [&] { planT("3", "10", "1,x", "", both); });
  failsWith("SSize: \"\" is not a number", [&] { planT("3", "", "1", "", both); });
  failsWith("SSize must be above 0", [&] { planT("3", "0", "1", "", both); });
  failsWith("TInv", [&] { planT("3", "1", "1", "", both); });
  failsWith("aP must be a proportion", [&] { planP("3", "10", "1.1", "", both); });
  failsWith("whole number", [&] { pass.PASSOneANOVAOutput("3", "5", "1", "", 1, 0.05, 2.5, one); });
  const auto numbers = [&](double sigma, const char* obj, const char* difference) {
    return failureNumber([&] { pass.PASSOneZOutput(obj, "5", difference, "0.9", sigma, both, 0.05, one); });
  };
  EXPECT_EQ(numbers(1, "1", "0"), 11);
  EXPECT_EQ(numbers(0, "3", "1"), 11);
  EXPECT_EQ(numbers(-1, "3", "1"), 5);
  EXPECT_EQ(failureNumber([&] { planT("2", "10", "", "0.9", both, 1.5); }), 0);
  EXPECT_EQ(failureNumber([&] { planT("3", "10", "1", "", both, 1.5); }), 1004);
  EXPECT_EQ(failureNumber([&] { planP("1", "", "0.3", "0.9", both); }), 11);
  EXPECT_EQ(failureNumber([&] { planP("3", "10", "1", "", both); }), 11);
}

}  // namespace
}  // namespace zelkova
