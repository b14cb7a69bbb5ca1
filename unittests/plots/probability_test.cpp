#include <gtest/gtest.h>

#include <cmath>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/plots/yProbability.h"

namespace zelkova {
namespace {

// R's data set `PlantGrowth`: dried weights of 30 plants.
const DoubleArray weight{4.17, 5.58, 5.18, 6.11, 4.50, 4.61, 5.17, 4.53, 5.33, 5.14,
                         4.81, 4.17, 4.41, 3.59, 5.87, 3.83, 6.03, 4.89, 4.32, 4.69,
                         6.31, 5.12, 5.54, 5.50, 5.37, 5.29, 4.92, 6.15, 5.80, 5.26};

class Probability : public WithHost {
 protected:
  void draw(const std::string& dist, const std::string& para1 = "", const std::string& para2 = "",
            const DoubleArray& data = weight) {
    plots.ProbPlotOutput(data, dist, para1, para2, 0.95, pp, p, PlotX, PlotY, line);
  }

  yProbability plots;
  DoubleArray pp, PlotX, PlotY, line;
  std::string p;
};

// Faults: a parameter of another distribution, a tail exchanged in the statistic, bands of the wrong
// variance. Expected: R, survreg(Surv(x) ~ 1) for each distribution and the sum over both tails; p-values
// from the tables by hand.
TEST_F(Probability, AgreesWithR) {
  struct Case {
    const char* dist;
    DoubleArray pp;
    const char* p;
  };
  for (const Case& c :
       {Case{"Weibull", {5.372215860642, 8.403016534052, 30, 0.1961983529041}, ">0.25"},
        Case{"Smallest Extreme Value", {5.41227409753, 0.6252860386684, 30, 0.3225405732071}, ">0.25"},
        Case{"Exponential", {5.073, 5.073, 30, 10.30332199004}, "<0.0025"},
        Case{"Normal", {5.073, 0.6894062662901, 30, 0.1636130426101}, "0.064"},
        Case{"Lognormal", {1.614351866953, 0.1399086256593, 30, 0.2460681317892}, "0.265"},
        Case{"Logistic", {5.084671891806, 0.4044345314053, 30, 0.1903032865506}, ">0.25"},
        Case{"Loglogistic", {1.621390349935, 0.08109823151096, 30, 0.240137377574}, ">0.25"}}) {
    draw(c.dist);
    EXPECT_TRUE(areClose(pp, c.pp, 1e-5)) << c.dist;
    EXPECT_EQ(p, c.p) << c.dist;
  }
  draw("Weibull");
  EXPECT_TRUE(isClose(line(8, ProbabilityLine::Time), 5.142933482684, 1e-6));
  EXPECT_TRUE(isClose(line(8, ProbabilityLine::Lower), 4.891001104554, 1e-4));
  EXPECT_TRUE(isClose(line(8, ProbabilityLine::Upper), 5.40784273851, 1e-4));
  EXPECT_EQ(PlotX(1), 3.59);
  EXPECT_TRUE(isClose(PlotY(1), std::log(-std::log(1 - 0.7 / 30.4))));
}

// Faults: historical parameters in the wrong places, a variance of what is known. Expected: R, survreg(scale
// = 1 / 8) and the sum over both tails; the text of the p-value by hand.
TEST_F(Probability, TakesHistoricalParameters) {
  draw("Weibull", "8");
  EXPECT_TRUE(isClose(pp(1), 5.35864100238, 1e-6));
  EXPECT_EQ(pp(2), 8);
  EXPECT_TRUE(isClose(pp(4), 0.1713450782592, 1e-5));
  draw("Normal", "5", "0.7");
  EXPECT_TRUE(isClose(pp(4), 0.346955895978));
  EXPECT_EQ(p, ">0.25");
  EXPECT_EQ(line(3, ProbabilityLine::Lower), line(3, ProbabilityLine::Time));
  draw("Exponential", "5", "no number");
  EXPECT_EQ(pp(1), 5);
  EXPECT_EQ(failureNumber([&] { draw("Normal", "five"); }), 13);
  EXPECT_EQ(failureNumber([&] { draw("Lognormal", "", "", {1, 0, 3}); }), 5);
  // Equal values have no line to start from, but a mean.
  draw("Exponential", "", "", {3, 3, 3});
  EXPECT_TRUE(isClose(pp(1), 3, 1e-6));
  EXPECT_EQ(failureNumber([&] { draw("Weibull", "", "", {3, 3, 3}); }), 5);
  EXPECT_EQ(failureNumber([&] { draw("Normal", "5", "-1"); }), 5);
  pp = {};
  draw("Gamma");
  EXPECT_EQ(p, "None");
  EXPECT_FALSE(pp.filled());
}

// Faults: a row, a correction or an end of a table taken for another. Expected: by hand.
TEST_F(Probability, ReadsItsTables) {
  struct Case {
    const char* dist;
    double A2, n;
    bool H1, H2;
    const char* p;
  };
  for (const Case& c :
       {Case{"Normal", 0.7, 30, false, false, "0.061"}, Case{"Normal", 0.7, 30, true, false, "0.061"},
        Case{"Lognormal", 0.5, 1e9, false, false, "0.209"}, Case{"Normal", 0.3, 1e9, false, false, "0.417"},
        Case{"Normal", 400, 1e9, false, false, "0"}, Case{"Normal", 0.894, 9, false, true, "0.1"},
        Case{"Normal", 2, 9, true, true, "0.077"}, Case{"Normal", 4.954, 9, true, true, "0.002"},
        Case{"Normal", 4.96, 9, true, true, "<0.0025"}, Case{"Weibull", 1.725, 9, true, true, "0.1"},
        Case{"Weibull", 1, 3, false, true, "0.093"}, Case{"Weibull", 1, 16, false, false, "<0.01"},
        Case{"Smallest Extreme Value", 0.4, 1e9, false, false, ">0.25"},
        Case{"Exponential", 0.8, 6, true, false, "0.168"}, Case{"Logistic", 0.2, 30, true, true, ">0.25"},
        Case{"Logistic", 5, 30, true, true, "<0.005"}, Case{"Loglogistic", 0.6, 3, false, true, "0.241"},
        Case{"Loglogistic", 0.6, 5, true, false, "0.065"}, Case{"Gamma", 1, 5, false, false, "None"}}) {
    EXPECT_EQ(ADPValueText(c.dist, c.A2, c.n, c.H1, c.H2), c.p) << c.dist << " " << c.A2;
  }
}

}  // namespace
}  // namespace zelkova
