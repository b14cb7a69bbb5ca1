#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/random/UniformStream.h"
#include "zelkova/random/yRandom.h"

namespace zelkova {
namespace {

using random::UniformStream;

/// Draws of one distribution from a stream that is set, two hundred thousand unless less is said.
class RandomData : public WithHost {
 protected:
  RandomData() { UniformStream::get().set(20261121); }
  ~RandomData() override { UniformStream::get().unset(); }

  void draw(const char* distribution, const char* para1, const char* para2 = "", const char* para3 = "",
            const char* rows = "10000") {
    random.RandomOutput(distribution, "20", rows, para1, para2, para3, {}, {}, values);
  }

  double n() const { return static_cast<double>(values.size()); }

  double mean() const {
    double sum = 0;
    for (const double x : values.elements()) sum += x;
    return sum / n();
  }

  double variance() const {
    const double centre = mean();
    double sum = 0;
    for (const double x : values.elements()) sum += (x - centre) * (x - centre);
    return sum / n();
  }

  /// The share of the values up to `x`.
  double shareUpTo(double x) const {
    const auto elements = values.elements();
    return static_cast<double>(
               std::count_if(elements.begin(), elements.end(), [=](double value) { return value <= x; })) /
           n();
  }

  /// Whether a share of the values is `expected`, within 4.5 standard errors.
  testing::AssertionResult isShare(double share, double expected) const {
    const double error = 4.5 * std::sqrt(expected * (1 - expected) / n());
    if (std::abs(share - expected) <= error) return testing::AssertionSuccess();
    return testing::AssertionFailure() << share << " is not " << expected << " within " << error;
  }

  yRandom random;
  DoubleArray values;
};

// Faults: parameters exchanged, a rate for a mean, the wrong tail (the share below a quantile tells), draws
// used twice. Moments by hand from the textbook's formulas (the kurtosis gives the standard error of the
// variance), within 4.5 standard errors; the 10 percent quantile from R, qnorm(0.1, 10, 2) and so on.
TEST_F(RandomData, HasTheMomentsOfItsDistribution) {
  const double e = std::exp(0.16);  // the lognormal's, sd^2 = 0.16
  const double g1 = std::tgamma(1 + 1 / 1.8), g2 = std::tgamma(1 + 2 / 1.8), g3 = std::tgamma(1 + 3 / 1.8),
               g4 = std::tgamma(1 + 4 / 1.8), v = g2 - g1 * g1;
  const struct {
    const char *name, *para1, *para2, *para3;
    double mean, variance, kurtosis, tenth;
  } cases[] = {{"Normal", "10", " 2 ", "x", 10, 4, 3, 7.43689686891},
               {"Lognormal", "0.5", "0.4", "", std::exp(0.58), (e - 1) * std::exp(1.16),
                e * e * e * e + 2 * e * e * e + 3 * e * e - 3, 0.987458679904},
               {"Uniform", "-1", "3", "", 1, 16.0 / 12, 1.8, -0.6},
               {"Exponential", "3", "", "", 3, 9, 9, 0.316081546973},
               {"Weibull", "1.8", "2.5", "", 2.5 * g1, 6.25 * v,
                (g4 - 4 * g3 * g1 + 6 * g2 * g1 * g1 - 3 * g1 * g1 * g1 * g1) / (v * v), 0.716115838957},
               {"Gamma", "2.5", "3", "", 7.5, 22.5, 3 + 6 / 2.5, 2.41546198044},
               {"Beta", "2", "3.5", "", 2 / 5.5, 7 / (5.5 * 5.5 * 6.5),
                3 + 6 * (1.5 * 1.5 * 6.5 - 7 * 7.5) / (7 * 7.5 * 8.5), 0.125577800308},
               {"t", "10", "", "", 0, 10.0 / 8, 4, -1.37218364111},
               {"Chi-square", "5", "", "", 5, 10, 3 + 12.0 / 5, 1.61030798696},
               {"F", "5", "20", "", 20.0 / 18, 2 * 400 * 23.0 / (5 * 324 * 16),
                3 + 12 * (5 * 98.0 * 23 + 16 * 18 * 18) / (5 * 14 * 12 * 23.0), 0.311851898945},
               {"Triangular", "1", "2", "5", 8.0 / 3, 26.0 / 36, 2.4, 1 + std::sqrt(0.4)},
               {"Triangular", "1", "1", "5", 7.0 / 3, 16.0 / 18, 2.4, 5 - std::sqrt(0.9 * 16)},
               {"Binomial", "20", "0.3", "", 6, 4.2, 3 + (1 - 6 * 0.21) / 4.2, 0}};
  for (const auto& c : cases) {
    draw(c.name, c.para1, c.para2, c.para3);
    EXPECT_NEAR(mean(), c.mean, 4.5 * std::sqrt(c.variance / n())) << c.name;
    EXPECT_NEAR(variance(), c.variance, 4.5 * c.variance * std::sqrt((c.kurtosis - 1) / n())) << c.name;
    if (c.tenth != 0) {
      EXPECT_TRUE(isShare(shareUpTo(c.tenth), 0.1)) << c.name;
    }
  }
}

// Fault: many trials whose split halves do not fit. Moments by hand.
TEST_F(RandomData, CountsManyTrialsByHalves) {
  draw("Binomial", "1000001", "0.3", "", "200");
  EXPECT_NEAR(mean(), 300000.3, 4.5 * std::sqrt(210000.21 / n()));
  EXPECT_NEAR(variance(), 210000.21, 4.5 * 210000.21 * std::sqrt(2 / n()));
}

// Faults: the nearer cumulated probability not taken, the end of the support walked past, probabilities below
// the support asked of the host. Expected: R, the intervals of the uniform draw that the steps send to each
// count, from dpois and dhyper. So a Poisson mean of 4 gives 4 + P(0) + (1 - P(0) - P(1)) / 2 = 4.4725.
TEST_F(RandomData, CountsGoToTheNearerCumulatedProbability) {
  const struct {
    const char *name, *para1, *para2, *para3;
    double mean, variance;
    std::map<double, double> shares;
  } cases[] = {
      {"Poisson",
       "4",
       "",
       "",
       4.47252654167,
       3.48734851464,
       {{0, 0}, {1, 0.0183156388887}, {2, 0.1221042592582}, {4, 0.2149034962945}, {8, 0.0380396761118}}},
      {"Poisson",
       "0.5",
       "",
       "",
       0.696734670144,
       0.567826129276,
       {{0, 0.4548979947845}, {1, 0.4169898285524}, {3, 0.0181643296529}}},
      {"Hypergeometric",
       "10",
       "7",
       "5",
       3.79166666667,
       0.331597222222,
       {{2, 0}, {3, 0.29166666667}, {4, 0.625}, {5, 0.08333333333}}},
      {"Hypergeometric",
       "20.9",
       "7",
       "12",
       4.62162022704,
       0.744909242769,
       {{2, 0.0043343653251}, {6, 0.1430340557276}, {7, 0.0102167182663}}}};
  for (const auto& c : cases) {
    draw(c.name, c.para1, c.para2, c.para3);
    EXPECT_NEAR(mean(), c.mean, 4.5 * std::sqrt(c.variance / n())) << c.name << c.para1;
    for (const auto& [count, share] : c.shares) {
      EXPECT_TRUE(isShare(shareUpTo(count) - shareUpTo(count - 1), share)) << c.name << c.para1 << count;
    }
  }
  // A mean of 0 leaves nothing to the next count, which is as near then.
  draw("Poisson", "");
  EXPECT_EQ(shareUpTo(1) - shareUpTo(0), 1);
  // A mean far above 1000 stops there; nothing drawn is 0.
  draw("Poisson", "2000");
  EXPECT_EQ(mean(), 1000);
  EXPECT_EQ(variance(), 0);
  draw("Hypergeometric", "10", "7", "0");
  EXPECT_EQ(shareUpTo(0), 1);
  EXPECT_EQ(shareUpTo(-1), 0);
}

// Faults: the ends of a range missed or passed, "Bernoulli" by its first parameter, weights not divided by
// their sum, a row of weight 0 drawn. Expected by hand.
TEST_F(RandomData, ChoosesAmongValues) {
  draw("Integer", "1", "6");
  for (int face = 1; face <= 6; ++face) {
    EXPECT_TRUE(isShare(shareUpTo(face), face / 6.0));
  }
  draw("Integer", "-2", "-1");
  EXPECT_TRUE(isShare(shareUpTo(-2), 0.5));
  EXPECT_EQ(shareUpTo(-1) - shareUpTo(-3), 1);
  draw("Bernoulli", "not read", "0.3");
  EXPECT_TRUE(isShare(1 - shareUpTo(0), 0.3));
  EXPECT_EQ(shareUpTo(1) - shareUpTo(-1), 1);
  draw("Binomial", "5", "1");
  EXPECT_EQ(mean(), 5);
  draw("Binomial", "2147483647", "1");
  EXPECT_EQ(values(1, 1), 2147483647);
  random.RandomOutput("Discrete", "20", "10000", "?", "?", "?", {7, 3, 5, 1}, {1, 0, 2, 1}, values);
  EXPECT_TRUE(isShare(shareUpTo(1), 0.25));
  EXPECT_EQ(shareUpTo(4), shareUpTo(1));
  EXPECT_TRUE(isShare(shareUpTo(5), 0.75));
  EXPECT_EQ(shareUpTo(7), 1);
}

// Faults: another order than down the columns, sizes rounded a half up, a stream that starts anew while it
// is set. Expected: the stream's own draws.
TEST_F(RandomData, FillsTheTableColumnByColumn) {
  for (const char* rows : {"2.5", "1.5", " 2"}) {
    UniformStream::get().set(3);
    DoubleArray expected(2, 4, 0.0);
    for (double& x : expected.elements()) x = UniformStream::get().next();
    UniformStream::get().set(3);
    random.RandomOutput("Uniform", "3.5", rows, "", "1", "", {}, {}, values);
    EXPECT_EQ(values, expected) << rows;
  }
  random.RandomOutput("normal", "2", "3", "x", "", "", {}, {}, values);
  EXPECT_EQ(values, DoubleArray(3, 2, 0.0));
}

// Faults: bad arguments that end in numbers, or a result half written.
TEST_F(RandomData, BadArgumentsFailAndChangeNothing) {
  const struct {
    const char *name, *columns, *para1, *para2, *para3;
    int failure;
  } cases[] = {{"Normal", "x", "0", "1", "", 13},
               {"Normal", "0.5", "0", "1", "", 9},
               {"Normal", "32768", "0", "1", "", 6},
               {"Normal", "1", "0", "one", "", 13},
               {"Normal", "1", "0", "-1", "", 5},
               {"Normal", "1", "0", "1e308", "", 6},
               {"Beta", "1", "", "", "", 1004},
               {"t", "1", "0.5", "", "", 1004},
               {"Lognormal", "1", "0", "0", "", 1004},
               {"Integer", "1", "6", "1", "", 5},
               {"Triangular", "1", "1", "5", "3", 5},
               {"Triangular", "1", "1", "0", "3", 5},
               {"Weibull", "1", "0", "1", "", 5},
               {"Exponential", "1", "-1", "", "", 5},
               {"Bernoulli", "1", "", "1.01", "", 5},
               {"Binomial", "1", "1e10", "0.5", "", 6},
               {"Binomial", "1", "5", "-0.01", "", 5},
               {"Poisson", "1", "-1", "", "", 1004},
               {"Hypergeometric", "1", "10", "7", "11", 1004},
               {"Hypergeometric", "1", "10", "11", "7", 1004},
               {"Hypergeometric", "1", "10", "5", "-7", 1004},
               {"Hypergeometric", "1", "10", "0", "11", 1004},
               {"Discrete", "1", "", "", "", 9}};
  const DoubleArray untouched{7};
  values = untouched;
  for (const auto& c : cases) {
    EXPECT_EQ(failureNumber([&] {
                random.RandomOutput(c.name, c.columns, "1000", c.para1, c.para2, c.para3, {}, {}, values);
              }),
              c.failure)
        << c.name << " " << c.columns << " " << c.para1;
  }
  const auto discrete = [&](const DoubleArray& dValue, const DoubleArray& dProb) {
    return failureNumber(
        [&] { random.RandomOutput("Discrete", "1", "5", "", "", "", dValue, dProb, values); });
  };
  EXPECT_EQ(discrete({1, 2}, {0, 0}), 11);
  EXPECT_EQ(discrete({1, 2}, {1, 1, 0}), 9);
  EXPECT_EQ(discrete({1, 2}, {2, -1}), 5);
  EXPECT_EQ(values, untouched);
}

}  // namespace
}  // namespace zelkova
