#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/gage/yGageAtt.h"

namespace zelkova {
namespace {

// Nine parts tried twenty times each, against a lower limit of -0.010.
const DoubleArray references{-0.016, -0.015, -0.014, -0.013, -0.012, -0.011, -0.0105, -0.010, -0.008};
const DoubleArray acceptances{0, 1, 3, 5, 8, 16, 18, 20, 20};
const DoubleArray twenty(9, 20.0);

class AttributeGage : public WithHost {
 protected:
  void run(const DoubleArray& dstd, const DoubleArray& dy, const DoubleArray& dtrial,
           const std::string& method, const std::string& limit = "-0.01",
           const std::string& type = "Lower limit") {
    gage.GageAttributeOutput(StringArray(), dstd, dy, dtrial, type, limit, method, result, x, z, fitted, p,
                             error);
  }

  yGageAtt gage;
  DoubleArray result, x, z, fitted, p;
  std::string error;
};

// Faults: a probability moved the wrong way, or extremes in the fit; one method's repeatability or test under
// the other; a standard error without the covariance of the coefficients; a sign lost or invented. Expected:
// R, lm(qnorm(p) ~ reference), for the regression with the delta method on vcov.
TEST_F(AttributeGage, AgreesWithR) {
  run(references, acceptances, twenty, "AIAG method", " -0.010 ");
  EXPECT_TRUE(error.empty());
  EXPECT_TRUE(areClose(result,
                       {6, 6.85201078552231, 561.156286367213, -0.01, -0.012210521296804,
                        -0.00221052129680402, 0.00850040243995385, 8.13953422543387, 0.00123956201036931},
                       1e-11));
  EXPECT_EQ(x, (DoubleArray{-0.015, -0.014, -0.013, -0.012, -0.011, -0.0105}));
  EXPECT_TRUE(areClose(z, {-1.43953147093846, -0.93458929107348, -0.597760126042478, -0.189118426272792,
                           0.755415026360469, 1.15034938037601}));
  EXPECT_TRUE(areClose(fitted, {-1.56533350998589, -1.00417722361867, -0.44302093725146, 0.118135349115752,
                                0.679291635482966, 0.959869778666571}));
  EXPECT_EQ(p, (DoubleArray{0.05, 0.15, 0.25, 0.4, 0.8, 0.9}));

  run(references, acceptances, twenty, "Regression method");
  EXPECT_TRUE(areClose(result,
                       {6, 7.67803048168738, 629.85607895078, -0.01, -0.012190134759797, -0.00219013475979705,
                        0.00158766428303083, -13.1713180004426, 0.000191922899062587},
                       1e-11));
  EXPECT_TRUE(isClose(fitted(1), -1.76981070257432));

  const DoubleArray regression = result;
  run(references, acceptances, twenty, "regression");
  for (Index slot = 1; slot <= GageAttribute::Bias; ++slot) EXPECT_EQ(result(slot), regression(slot));
  for (Index slot = GageAttribute::Repeatability; slot <= GageAttribute::size; ++slot) {
    EXPECT_EQ(result(slot), NoValue);
  }
}

// Faults: rows taken for reference values; the order of the rows followed; an upper limit that wants a rising
// probability. Expected: the mirror image of the study, its rows split and shuffled, has the mirrored result.
TEST_F(AttributeGage, PoolsRowsAndMirrors) {
  run(references, acceptances, twenty, "Regression method");
  const DoubleArray lower = result;
  run({0.010, 0.008, 0.0105, 0.011, 0.012, 0.013, 0.014, 0.015, 0.012, 0.016},
      {20, 20, 18, 16, 7, 5, 3, 1, 1, 0}, {20, 20, 20, 20, 11, 20, 20, 20, 9, 20}, "Regression method",
      "0.01", "Upper limit");
  EXPECT_TRUE(error.empty());
  EXPECT_EQ(x, (DoubleArray{0.0105, 0.011, 0.012, 0.013, 0.014, 0.015}));
  EXPECT_TRUE(isClose(result(GageAttribute::Slope), -lower(GageAttribute::Slope)));
  EXPECT_TRUE(isClose(result(GageAttribute::Bias), -lower(GageAttribute::Bias)));
  EXPECT_TRUE(isClose(result(GageAttribute::Repeatability), lower(GageAttribute::Repeatability)));
  EXPECT_TRUE(isClose(result(GageAttribute::T), -lower(GageAttribute::T)));
}

// Fault: a probability of 0.5 moved, whose score is 0.
TEST_F(AttributeGage, LeavesAHalfWhereItIs) {
  run({1, 2, 3, 4, 5, 6, 7, 8}, {0, 2, 4, 6, 10, 16, 18, 20}, DoubleArray(8, 20.0), "AIAG method", "4.5");
  EXPECT_EQ(z(4), 0);
}

// Fault: a check left out, in another order, or with the bounds of the other method; results in spite of it.
TEST_F(AttributeGage, RefusesBadDesignsInOrder) {
  const DoubleArray rising{1, 2, 3, 4, 5, 6, 7, 8, 9};
  const char* const tolerance = "Tolerance limit not provided";
  const char* const extremes =
      "Requires 2 extreme probabilities of acceptance (0 and 1) at the smallest and largest reference values";
  const char* const exactly =
      "Requires at exactly 6 other distinct probabilities of acceptance in between the extremes";
  const char* const atLeast =
      "Requires at least 6 other distinct probabilities of acceptance in between the extremes";
  const char* const increase =
      "To use the lower limit, the probability of acceptance should increase as reference value increases.";
  const char* const decrease =
      "To use the upper limit, the probability of acceptance should decrease as reference value increases.";
  const struct {
    DoubleArray acceptances;
    const char* method;
    const char* limit;
    const char* type;
    const char* text;
  } cases[] = {
      {{99}, "AIAG method", " ", "Lower limit", tolerance},
      {{99}, "AIAG method", "1", " ", tolerance},
      {{21, 1}, "AIAG method", "1", "Lower limit", "No. of trials must be >= no. of acceptances"},
      {{1, 2, 20}, "AIAG method", "1", "Lower limit", extremes},
      {{0, 2, 19}, "AIAG method", "1", "Lower limit", extremes},
      {{0, 1, 2, 3, 4, 5, 20},
       "Regression method",
       "1",
       "Lower limit",
       "Requires at least 8 distinct reference values"},
      {{0, 0, 1, 2, 3, 4, 5, 20}, "AIAG method", "1", "Lower limit", exactly},
      {{0, 1, 2, 3, 4, 5, 6, 7, 20}, "AIAG method", "1", "Lower limit", exactly},
      {{0, 0, 1, 2, 3, 4, 5, 20}, "Regression method", "1", "Lower limit", atLeast},
      {{0, 1, 2, 3, 4, 5, 6, 20}, "AIAG method", "1", "Upper limit", decrease},
      {{20, 6, 5, 4, 3, 2, 1, 0}, "Regression method", "1", "upper limit", increase},
      {{0, 1, 2, 3, 3, 5, 6, 20}, "AIAG method", "1", "Lower limit", increase},
      {{0, 1, 2, 3, 4, 5, 6, 20, 19}, "Regression method", "1", "Lower limit", increase},
  };
  for (const auto& test : cases) {
    error.clear();
    const std::span<const double> all = rising.vector();
    const Index n = test.acceptances.rows();
    run(DoubleArray(std::vector<double>(all.begin(), all.begin() + n)), test.acceptances,
        DoubleArray(n, 20.0), test.method, test.limit, test.type);
    EXPECT_EQ(error, test.text);
  }
  EXPECT_FALSE(result.filled() || x.filled() || z.filled() || fitted.filled() || p.filled());

  error.clear();
  run(rising, {0, 1, 2, 3, 4, 5, 6, 7, 20}, twenty, "Regression method");
  EXPECT_TRUE(error.empty());
}

// Fault: a wrong number out of data that make no sense, or a crash.
TEST_F(AttributeGage, FailsOnImpossibleData) {
  const auto number = [&](const DoubleArray& dy, const DoubleArray& dtrial, const std::string& limit = "1") {
    return failureNumber([&] { run(references, dy, dtrial, "AIAG method", limit); });
  };
  EXPECT_EQ(number(acceptances, twenty, "low"), 13);
  EXPECT_EQ(number(acceptances, {20, 20}), 9);
  EXPECT_EQ(number({0, -1, 3, 5, 8, 16, 18, 20, 20}, twenty), 5);
  EXPECT_EQ(number({0, 1, 3, 5, 8, 16, 18, 20, 0}, {20, 20, 20, 20, 20, 20, 20, 20, 0}), 11);
  EXPECT_FALSE(result.filled());
}

}  // namespace
}  // namespace zelkova
