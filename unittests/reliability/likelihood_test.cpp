#include <gtest/gtest.h>

#include <cmath>

#include "unittests/WithHost.h"
#include "unittests/reliability/lives.h"
#include "unittests/support.h"
#include "zelkova/reliability/modzDist.h"
#include "zelkova/reliability/modzLBFGS.h"
#include "zelkova/reliability/modzRSGrad.h"

namespace zelkova {
namespace {

class Likelihood : public WithHost {
 protected:
  double of(const LifeData& data, const std::string& dist, DoubleArray P, const DoubleArray& hold = {}) {
    return NegLogLik(P, data.SA, data.EA, data.FA, dist, hold);
  }
  double row(double start, double end, const std::string& dist, DoubleArray P, double third = 1) {
    return of({{start}, {end}, {third}}, dist, std::move(P));
  }
};

// Faults: a kind of row taken for another, a frequency left out, a tail on the wrong side, a sign. Expected:
// R, survreg(Surv(s, e, type = "interval2") ~ 1, weights = w) at its optimum; R's loglogistic has the term
// -ln t of exact rows and ours has not (2 ln 5 + ln 12 + ln 7 here).
TEST_F(Likelihood, AgreesWithRForEveryKindOfRow) {
  const LifeData data = everyKind();
  EXPECT_TRUE(
      isClose(of(data, "Weibull", {std::exp(2.4566693593542), 1 / 0.60963456266191}), 25.299697686981));
  EXPECT_TRUE(isClose(of(data, "Exponential", {std::exp(2.462778264787)}), 26.572875396376));
  EXPECT_TRUE(
      isClose(of(data, "Smallest Extreme Value", {12.948655597632, 6.7725924242444}), 27.23559741081));
  EXPECT_TRUE(isClose(of(data, "Normal", {9.9028863200418, 6.5084386364501}), 26.145057911677));
  EXPECT_TRUE(isClose(of(data, "Lognormal", {2.1733923713546, 0.67382830053013}), 24.980437525813));
  EXPECT_TRUE(isClose(of(data, "Logistic", {9.5173879609043, 3.806000534285}), 26.121964209909));
  EXPECT_TRUE(isClose(of(data, "Loglogistic", {2.1711896799592, 0.40934206474987}),
                      25.123064749914 - 2 * std::log(5.0) - std::log(12.0) - std::log(7.0)));
}

// Faults: a parameter that is not read as its absolute value, a held one that is not read, a floor that is
// missing or too many. Expected: what the plain call gives.
TEST_F(Likelihood, ReadsParametersAsTheModelWants) {
  const LifeData data = everyKind();
  for (const char* dist : {"Smallest Extreme Value", "Normal", "Logistic", "Lognormal", "Loglogistic"}) {
    EXPECT_EQ(of(data, dist, {2, -0.9}), of(data, dist, {2, 0.9})) << dist;
    EXPECT_EQ(of(data, dist, {2, 0.3}, {NoValue, 0.9}), of(data, dist, {2, 0.9})) << dist;
  }
  EXPECT_EQ(of(data, "Weibull", {-12, -1.5}), of(data, "Weibull", {12, 1.5}));
  EXPECT_EQ(failureNumber([&] { of(data, "Exponential", {-12}); }), 5);
  EXPECT_EQ(failureNumber([&] { of(data, "Logistic", {9, 0}); }), 11);
  EXPECT_TRUE(isClose(row(4, 4, "Loglogistic", {std::log(4.0), 0}), 2 * std::log(2.0) + std::log(5E-16)));
  EXPECT_EQ(of(data, "Gamma", {1, 1}), 0);
}

// Faults: a zero time that fails where it tells nothing, or tells something where it fails. Expected: by
// hand.
TEST_F(Likelihood, GuardsTimesOfZero) {
  for (const char* dist : {"Lognormal", "Loglogistic"}) {
    EXPECT_EQ(row(0, 0, dist, {1, 0.5}), 0) << dist;
    EXPECT_EQ(row(0, NoValue, dist, {1, 0.5}), 0) << dist;
    EXPECT_EQ(row(NoValue, 0, dist, {1, 0.5}), 0) << dist;
    EXPECT_EQ(row(0, 3, dist, {1, 0.5}), row(NoValue, 3, dist, {1, 0.5})) << dist;
    EXPECT_EQ(failureNumber([&] { row(3, 0, dist, {1, 0.5}); }), 5) << dist;
  }
  EXPECT_EQ(failureNumber([&] { row(0, 0, "Weibull", {1, 0.5}); }), 5);
  EXPECT_TRUE(isClose(row(0, 3, "Weibull", {2, 1}), -std::log(1 - std::exp(-1.5))));
}

// Faults: a search that stops where 1 - F is 0 in doubles. Expected: R, pnorm and plogis with lower.tail =
// FALSE, log.p = TRUE, a difference of two as log(a) + log1p(-exp(log(b) - log(a))).
TEST_F(Likelihood, KeepsDigitsFarFromTheMaximum) {
  EXPECT_TRUE(isClose(row(20, NoValue, "Normal", {0, 1}), 203.917155371078, 1e-10));
  EXPECT_TRUE(isClose(row(20, 21, "Normal", {0, 1}), 203.917155372292, 1e-10));
  EXPECT_TRUE(isClose(row(150, NoValue, "Normal", {0, 1}), 11255.929618267));
  EXPECT_TRUE(isClose(row(NoValue, -150, "Normal", {0, 1}), 11255.929618267));
  EXPECT_TRUE(isClose(row(60, 61, "Normal", {0, 1}), 1805.0135606806));
  EXPECT_TRUE(isClose(row(50, NoValue, "Logistic", {0, 1}), 50, 1e-10));
  EXPECT_TRUE(isClose(row(800, 801, "Logistic", {0, 1}), 800.45867514539));
  EXPECT_TRUE(isClose(row(-801, -800, "Logistic", {0, 1}), 800.45867514539));
}

// Faults: stress on the wrong scale, a frequency where every row counts once. Expected: R,
// survreg(Surv(time, status) ~ x, imotor) with x = 11604.83 / (temp + 273.16), less the terms -ln t of the
// failures.
TEST_F(Likelihood, AgreesWithRForAcceleratedLife) {
  const Motors motors;
  double lnTimes = 0;
  for (Index i = 1; i <= 40; ++i) lnTimes += motors.end(i) == NoValue ? 0 : std::log(motors.hours(i));
  const auto at = [&](const std::string& model, DoubleArray P) {
    return NegLogLik(P, motors.hours, motors.end, motors.temperature, model, {});
  };
  EXPECT_TRUE(isClose(at("Weibull|Arrhenius", {1 / 0.3254444008158, -13.3534560438479, 0.8379527592589}),
                      146.2543174219 - lnTimes));
  EXPECT_TRUE(isClose(at("Lognormal|Arrhenius", {-0.5967880366071, -13.8579697109031, 0.8552722882890}),
                      148.537331031 - lnTimes, 1e-10));
  EXPECT_TRUE(isClose(at("Loglogistic|Arrhenius", {0.2839822667987, -13.2659212817695, 0.8305352879761}),
                      147.0394933201 - lnTimes));
  EXPECT_TRUE(isClose(at("Exponential|Arrhenius", {1, -16.3470553137005, 0.9765176358637}),
                      155.3334085193 - lnTimes));
  // The other relations by hand: one failure at t = e^2 (ln t = 2), Lognormal, sigma 1: 0.5 ln(2 pi) + (2 -
  // m)^2 / 2.
  const auto oneRow = [&](const std::string& relation, double stress) {
    return row(std::exp(2.0), std::exp(2.0), "Lognormal|" + relation, {1, 0.5, 3}, stress) -
           0.5 * std::log(2 * M_PI);
  };
  EXPECT_TRUE(isClose(oneRow("Linear", 0.25), 0.75 * 0.75 / 2, 1e-10));
  EXPECT_TRUE(isClose(oneRow("Inverse Temp", -271.16), 0, 0) ||
              std::abs(oneRow("Inverse Temp", -271.16)) < 1e-12);
  EXPECT_TRUE(isClose(oneRow("Ln(Power)", std::exp(1.0)), 1.5 * 1.5 / 2, 1e-10));
}

// Faults: the two deliberate oddities of the logistic regression mended or spread to its neighbours.
// Expected: by hand.
TEST_F(Likelihood, WeighsCovariates) {
  const auto at = [&](const std::string& model, double start, double end, double frequency, DoubleArray P) {
    return NegLogLik(P, {start}, {end}, DoubleArray::table({{frequency, 1, 2}}), model, {});
  };
  // m = 0.5 + 2 * 0.75 = 2, z = (4 - 2) / 2 = 1.
  const double once = 1 + std::log(2.0) + 2 * std::log1p(std::exp(-1.0));
  EXPECT_TRUE(isClose(at("LDRLogistic", 4, 4, 1, {2, 0.5, 0.75}), once));
  EXPECT_TRUE(isClose(at("LDRLogistic", 4, 4, 3, {2, 0.5, 0.75}), once + 2));
  EXPECT_TRUE(
      isClose(at("LDRNormal", 4, 4, 2, {2, 0.5, 0.75}), 2 * at("LDRNormal", 4, 4, 1, {-2, 0.5, 0.75})));
  EXPECT_EQ(at("LDRLogistic", NoValue, 4, 1, {2, 0.5, 0.75}), 0);
  EXPECT_TRUE(isClose(at("LDRNormal", NoValue, 2, 5, {2, 0.5, 0.75}), 5 * std::log(2.0)));
  DoubleArray P{-2, 0.5, 0.75};
  NegLogLik(P, {4}, {4}, DoubleArray::table({{1, 1, 2}}), "LDRWeibull", {});
  EXPECT_EQ(P(1), 2);
}

// Faults: the wrong constants of the model, P not left as the relative frequencies. Expected: by hand.
TEST_F(Likelihood, LeavesSpanProbabilities) {
  DoubleArray P{0.5, 0.5};
  const DoubleArray start{0, 1}, end{1, 2}, frequency{1, 3};
  EXPECT_TRUE(isClose(NegLogLik(P, start, end, frequency, "ArbTurnbull", {}), 2 * std::log(2.0)));
  EXPECT_EQ(P, (DoubleArray{0.25, 0.75}));
  EXPECT_TRUE(
      isClose(NegLogLik(P, start, end, frequency, "ArbTurnbull", {}), -std::log(0.25) - std::log(0.75)));
  P = {0, 1};
  EXPECT_EQ(failureNumber([&] { NegLogLik(P, start, end, frequency, "ArbTurnbull", {}); }), 11);
}

/// Rosenbrock's valley, whose minimum is at (1, 1).
class Valley : public Objective {
 public:
  double operator()(DoubleArray& x) override {
    ++calls;
    const double across = x(2) - x(1) * x(1);
    return 100 * across * across + (1 - x(1)) * (1 - x(1));
  }
  int calls = 0;
};

// Faults: a line search that creeps or leaps, a correction pair lost from the ring, an ending named wrong.
// Expected: the known minimum; derivatives by hand.
TEST_F(Likelihood, MinimisesAValley) {
  Valley valley;
  DoubleArray x{-1.2, 1}, g, H;
  double f = 0;
  RSGradient(x, f, g, valley);
  EXPECT_TRUE(areClose(g, {-215.6, -88}, 1e-6));
  EXPECT_EQ(valley.calls, 5);
  RSHessian(x, H, valley);
  EXPECT_TRUE(isClose(H(1, 1), 1330, 1e-4));
  EXPECT_TRUE(isClose(H(1, 2), 480, 1e-4));
  EXPECT_TRUE(isClose(H(2, 2), 200, 1e-4));

  int info = 0, iterations = 0;
  const double tolerance = std::sqrt(5E-16);
  LBFGSMinimize(2, 2, x, tolerance, 1.5E-15, tolerance, 100, info, iterations, valley);
  EXPECT_TRUE(areClose(x, {1, 1}, 1e-6));
  EXPECT_TRUE(info == 1 || info == 2 || info == 4) << info;
  EXPECT_LT(iterations, 60);

  DoubleArray start{-1.2, 1};
  LBFGSMinimize(2, 3, start, tolerance, 0, tolerance, 100, info, iterations, valley);
  EXPECT_EQ(info, -1);
  EXPECT_EQ(start, (DoubleArray{-1.2, 1}));
  LBFGSMinimize(2, 2, start, tolerance, 0, tolerance, 0, info, iterations, valley);
  EXPECT_EQ(info, 5);
  EXPECT_EQ(iterations, 1);
  LBFGSMinimize(2, 2, x, 1, 0, 0, 100, info, iterations, valley);
  EXPECT_EQ(info, 4);
  EXPECT_EQ(iterations, 0);
}

}  // namespace
}  // namespace zelkova
