#include <gtest/gtest.h>

#include <string>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/hypothesis/yHTest.h"

namespace zelkova {
namespace {

class TestsOnProportions : public WithHost {
 protected:
  yHTest test;
  DoubleArray result;
};

// Faults: tails exchanged between the alternatives; the standard errors of test and limits exchanged; a limit
// on the wrong side below a confidence of 0.5. Women admitted to department A in R's data set UCBAdmissions.
// Expected: R, prop.test(89, 108, tested, alternative, correct = FALSE) for p; p +- qnorm() sqrt(p (1 - p) /
// 108) for the limits, with p = 89 / 108.
TEST_F(TestsOnProportions, OnePAgreesWithR) {
  const struct {
    const char* alternative;
    double tested, confidence, z, lower, upper, p;
  } cases[] = {
      {"Less than", 0.7, 0.95, 2.81373552129091, 0, 0.884338833519967, 0.997551525037535},
      {"Less than", 0.9, 0.3, -2.6301512263083, 0, 0.804860892892582, 0.00426734466995523},
      {"Greater than", 0.7, 0.3, 2.81373552129091, 0.843287255255566, 0, 0.00244847496246536},
      {"Greater than", 0.9, 0.95, -2.6301512263083, 0.763809314628181, 0, 0.995732655330045},
      {"Not equals", 0.7, 0.95, 2.81373552129091, 0.752264184053748, 0.8958839640944, 0.00489694992493072},
      {"Not equals", 0.9, 0.3, -2.6301512263083, 0.809956559398517, 0.838191588749632, 0.00853468933991049},
      {"less than", 0.7, 0.95, 2.81373552129091, 0, 0, 0}};  // no alternative
  for (const auto& c : cases) {
    test.OnePOutput(89, 108, c.tested, c.confidence, c.alternative, result);
    const DoubleArray expected{c.tested, c.confidence, 89, 108, 89.0 / 108, c.lower, c.upper, c.z, c.p};
    ASSERT_EQ(result.size(), expected.size());
    for (Index i = 1; i <= 9; ++i) EXPECT_TRUE(isClose(result(i), expected(i), 1e-11)) << c.alternative << i;
  }
}

// Faults: limits beyond what a proportion can be; limits of a sample without spread that look exact, or an
// open limit that loses its 0. Expected: limits
// and tails by R's qnorm and pnorm, z being -2, 0 or 0.6 / sqrt(0.032).
TEST_F(TestsOnProportions, OnePKeepsItsLimitsWithinReason) {
  const struct {
    const char* alternative;
    double events, trials, lower, upper, p;
  } cases[] = {{"Less than", 0, 16, 0, NoValue, 0.0227501319481792},
               {"Greater than", 0, 16, NoValue, 0, 0.977249868051821},
               {"Not equals", 0, 16, NoValue, NoValue, 0.0455002638963584},
               {"", 0, 16, 0, 0, 0},
               {"Not equals", 1, 5, 0, 0.550609016230632, 1},
               {"Not equals", 4, 5, 0.449390983769367, 1, 0.000796230157590812},
               {"Less than", 4, 5, 0, 1, 0.999601884921205}};
  for (const auto& c : cases) {
    test.OnePOutput(c.events, c.trials, 0.2, 0.95, c.alternative, result);
    EXPECT_TRUE(isClose(result(OneP::Lower), c.lower, 1e-12)) << c.alternative;
    EXPECT_TRUE(isClose(result(OneP::Upper), c.upper, 1e-12)) << c.alternative;
    EXPECT_TRUE(isClose(result(OneP::PValue), c.p)) << c.alternative;
  }
}

// Faults: a pooled standard error; the samples exchanged; limits that are not cut at -1. Men and women
// admitted to department A. Expected: R, prop.test(c(512, 89), c(825, 108), alternative, conf.level, correct
// = FALSE) for the limits; pnorm of (p1 - p2 + 0.1) / se.
TEST_F(TestsOnProportions, TwoPAgreesWithR) {
  const struct {
    const char* alternative;
    double confidence, lower, upper, p;
  } cases[] = {{"Less than", 0.9, 0, -0.151763016702897, 0.0051656156007613},
               {"Less than", 0.3, 0, -0.224625279037481, 0.0051656156007613},
               {"Greater than", 0.9, -0.25517301023313, 0, 0.994834384399239},
               {"Greater than", 0.3, -0.182310747898546, 0, 0.994834384399239},
               {"Not equals", 0.9, -0.269830658364377, -0.13710536857165, 0.0103312312015226}};
  for (const auto& c : cases) {
    test.TwoPOutput(512, 825, 89, 108, -0.1, c.confidence, c.alternative, result);
    const double p1 = 512.0 / 825;
    const double p2 = 89.0 / 108;
    const DoubleArray expected{-0.1,    c.confidence,      512, 89, 825, 108, p1, p2, p1 - p2, c.lower,
                               c.upper, -2.56454120374656, c.p};
    ASSERT_EQ(result.size(), expected.size());
    for (Index i = 1; i <= 13; ++i) EXPECT_TRUE(isClose(result(i), expected(i), 1e-11)) << c.alternative << i;
  }
  test.TwoPOutput(1, 4, 4, 5, 0, 0.95, "Not equals", result);
  EXPECT_EQ(result(TwoP::Lower), -1);  // hand arithmetic: -0.55 - 1.96 x 0.28
  for (const char* alternative : {"Less than", "no alternative"}) {
    test.TwoPOutput(4, 4, 0, 5, 0, 7, alternative, result);  // 7 is no confidence, but is not asked for
    EXPECT_EQ(result(TwoP::Difference), 1);
    for (const auto slot : {TwoP::Lower, TwoP::Upper, TwoP::Z, TwoP::PValue})
      EXPECT_EQ(result(slot), NoValue);
  }
}

// Fault: counts that cannot be, which end in a number: of two impossible shares one hides behind the other.
TEST_F(TestsOnProportions, RefuseImpossibleCounts) {
  EXPECT_EQ(failureNumber([&] { test.OnePOutput(1, 0, 0.5, 0.95, "Less than", result); }), 11);
  EXPECT_EQ(failureNumber([&] { test.OnePOutput(1, 2, 1, 0.95, "Less than", result); }), 11);
  EXPECT_EQ(failureNumber([&] { test.OnePOutput(3, 2, 0.5, 0.95, "Less than", result); }), 5);
  EXPECT_EQ(failureNumber([&] { test.OnePOutput(-1, -2, 0.5, 0.95, "Less than", result); }), 5);
  EXPECT_EQ(failureNumber([&] { test.OnePOutput(1, 2, -0.5, 0.95, "Less than", result); }), 5);
  EXPECT_EQ(failureNumber([&] { test.OnePOutput(1, 2, 0.5, 1, "Less than", result); }), 1004);
  EXPECT_EQ(failureText([&] { test.TwoPOutput(50, 100, 11, 10, 0, 0.95, "Less than", result); }),
            "Invalid procedure call or argument: dx2 must be from 0 to dn2");
  EXPECT_EQ(failureNumber([&] { test.TwoPOutput(-1, 10, 50, 100, 0, 0.95, "Less than", result); }), 5);
  EXPECT_FALSE(result.filled());
}

class TestsOnCounts : public TestsOnProportions {
 protected:
  DoubleArray expected, contributions, rowTotals, columnTotals;
  double total = 0;
  std::string error;

  void chiSquare(const DoubleArray& observed) {
    test.ChisquareOutput(observed, expected, contributions, rowTotals, columnTotals, total, result, error);
  }

  StringArray categories;
  DoubleArray counts, proportions;

  void fit(const StringArray& labels, const DoubleArray& byRow, const DoubleArray& tested) {
    test.GOFOutput(labels, byRow, tested, categories, counts, proportions, expected, result, contributions,
                   error);
  }
};

// Faults: rows and columns exchanged; Yates' correction; cells below 5 counted by what was observed. Hair and
// eye colour in R's data set HairEyeColor; cylinders and gears in mtcars. Expected: R, chisq.test.
TEST_F(TestsOnCounts, ChiSquareAgreesWithR) {
  error = "as passed";
  chiSquare(DoubleArray::table({{68, 20, 15, 5}, {119, 84, 54, 29}, {26, 17, 14, 14}, {7, 94, 10, 16}}));
  EXPECT_EQ(error, "as passed");
  EXPECT_TRUE(isClose(result(ChiSquareTest::ChiSquare), 138.289841626008));
  EXPECT_EQ(result(ChiSquareTest::DF), 9);
  EXPECT_TRUE(isClose(result(ChiSquareTest::PValue), 2.32528678709881e-25, 1e-11));
  EXPECT_EQ(result(ChiSquareTest::ExpectedBelow5), 0);
  EXPECT_EQ(rowTotals, (DoubleArray{108, 286, 71, 127}));
  EXPECT_EQ(columnTotals, (DoubleArray{220, 215, 93, 64}));
  EXPECT_EQ(total, 592);
  EXPECT_TRUE(isClose(expected(1, 3), 16.9662162162162));
  EXPECT_TRUE(isClose(contributions(1, 3), 0.22786496173593));
  EXPECT_TRUE(isClose(contributions(3, 4), 5.21088694328131));

  test.ChisquareOutput(DoubleArray::table({{1, 8, 2}, {2, 4, 1}, {12, 0, 2}}), expected, contributions,
                       rowTotals, columnTotals, total, result);
  EXPECT_TRUE(isClose(result(ChiSquareTest::ChiSquare), 18.0363636363636));
  EXPECT_TRUE(isClose(result(ChiSquareTest::PValue), 0.00121406603378516, 1e-11));
  EXPECT_EQ(result(ChiSquareTest::ExpectedBelow5), 6);
}

// Fault: a table refused for the wrong reason, accepted, or with results half written.
TEST_F(TestsOnCounts, ChiSquareSaysWhyItRefuses) {
  const struct {
    DoubleArray counts;
    const char* error;
  } cases[] = {{DoubleArray::table({{1, 2.5}, {3, 4}}), "Invalid data"},
               {DoubleArray::table({{0, 0}, {3, -4}}), "Invalid data"},
               {DoubleArray::table({{0, 0}, {0, 4}}), "Rows all zeros"},
               {DoubleArray::table({{0, 2}, {0, 4}}), "Columns all zeros"}};
  for (const auto& c : cases) {
    error.clear();
    chiSquare(c.counts);
    EXPECT_EQ(error, c.error);
  }
  EXPECT_EQ(failureNumber([&] { chiSquare(DoubleArray::table({{1, 2, 3}})); }), 1004);
  EXPECT_EQ(failureNumber([&] { chiSquare(DoubleArray{1, 2, 3}); }), 9);
  EXPECT_FALSE(result.filled() || expected.filled() || rowTotals.filled() || total != 0);
}

// Faults: rows of one category not added up; proportions taken by row. Eye colours of HairEyeColor, brown in
// two rows. Expected: R, chisq.test(c(220, 215, 93, 64), p = c(0.4, 0.3, 0.2, 0.1)), and without p.
TEST_F(TestsOnCounts, GoodnessOfFitAgreesWithR) {
  const StringArray labels{"Brown", "Blue", "Hazel", "Brown", "Green"};
  fit(labels, {100, 215, 93, 120, 64}, {0.4, 0.3, 0.2, 0.4, 0.1});
  EXPECT_EQ(error, "");
  EXPECT_EQ(categories, (StringArray{"Brown", "Blue", "Hazel", "Green"}));
  EXPECT_EQ(counts, (DoubleArray{220, 215, 93, 64}));
  EXPECT_EQ(proportions, (DoubleArray{0.4, 0.3, 0.2, 0.1}));
  EXPECT_TRUE(isClose(expected(2), 177.6));
  EXPECT_TRUE(isClose(contributions(2), 37.4 * 37.4 / 177.6));
  EXPECT_EQ(result(GoodnessOfFit::Total), 592);
  EXPECT_EQ(result(GoodnessOfFit::DF), 3);
  EXPECT_TRUE(isClose(result(GoodnessOfFit::ChiSquare), 14.9059684684685));
  EXPECT_TRUE(isClose(result(GoodnessOfFit::PValue), 0.00189879426527985, 1e-11));

  fit(labels, {100, 215, 93, 120, 64}, {});
  EXPECT_EQ(proportions, DoubleArray(4, 0.25));
  EXPECT_TRUE(isClose(result(GoodnessOfFit::ChiSquare), 133.472972972973));
  EXPECT_TRUE(isClose(result(GoodnessOfFit::PValue), 9.65087977414824e-29, 1e-11));
}

// Fault: contradicting proportions, or counts and proportions below 0, that end in a chi-square.
TEST_F(TestsOnCounts, GoodnessOfFitSaysWhyItRefuses) {
  const struct {
    DoubleArray counts, tested;
    const char* error;
  } cases[] = {{{1, 2, 3}, {0.2, 0.5, 0.3}, "Invalid Proportions"},
               {{1, 2, 3}, {-0.2, 1.4, -0.2}, "Invalid Proportions"},
               {{-1, 2, 3}, {0.2, 0.5, 0.3}, "Invalid data"}};  // 2 of category "a" in all
  for (const auto& c : cases) {
    error.clear();
    fit({"a", "b", "a"}, c.counts, c.tested);
    EXPECT_EQ(error, c.error);
  }
  EXPECT_EQ(failureText([&] {
              fit({"a", "b", "a"}, {1, 2}, {});
            }),
            "Subscript out of range: dff has fewer elements than dyy");
  EXPECT_EQ(failureText([&] {
              fit({"a", "b", "c"}, {1, 2, 3}, {0.5, 0.5});
            }),
            "Subscript out of range: dPp has fewer elements than dyy");
  EXPECT_EQ(failureNumber([&] { fit({"a", "b"}, {1, 2}, {1, 0}); }), 11);
  EXPECT_EQ(failureNumber([&] { fit({"a", "b"}, {0, 0}, {}); }), 11);
  EXPECT_EQ(failureNumber([&] { fit({"a", "a"}, {1, 2}, {}); }), 1004);
  EXPECT_FALSE(result.filled() || categories.filled());
}

}  // namespace
}  // namespace zelkova
