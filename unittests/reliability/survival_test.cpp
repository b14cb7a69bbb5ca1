#include <gtest/gtest.h>

#include <cmath>

#include "unittests/WithHost.h"
#include "unittests/reliability/lives.h"
#include "unittests/support.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {
namespace {

class Survival : public WithHost {
 protected:
  void productLimit(LifeData data, double CLevel = 0.95) {
    engine.NonParaR(data.SA, data.EA, data.FA, CLevel, table, hazard, summary, SX, SY, SL, SU, FX, FY, FL, FU,
                    HX, HY);
  }
  void spans(const LifeData& data, double CLevel = 0.95) {
    engine.NonParaA(data.SA, data.EA, data.FA, CLevel, weights, table, kinds, {}, SX, SY, SL, SU, FX, FY, FL,
                    FU);
  }

  yReliability engine;
  DoubleArray table, hazard, summary, weights, kinds, SX, SY, SL, SU, FX, FY, FL, FU, HX, HY;
};

// Faults: censored rows in the wrong risk set, Greenwood's sum of another row, the last step of the area
// lost. Expected: R, survfit(Surv(futime, fustat) ~ 1, ovarian); its rmean up to the last time, its se(rmean)
// times sqrt(12 / 11).
TEST_F(Survival, AgreesWithRForRightCensoredData) {
  productLimit(ovarian());
  ASSERT_EQ(table.rows(), 12);
  EXPECT_EQ(table(8, ProductLimit::AtRisk), 17);
  EXPECT_TRUE(isClose(table(8, ProductLimit::F), 1 - 0.68778280543, 1e-11));
  EXPECT_TRUE(isClose(table(12, ProductLimit::F), 1 - 0.496732026144, 1e-11));
  EXPECT_TRUE(isClose(table(12, ProductLimit::SE), 0.1051026606696, 1e-11));
  EXPECT_EQ(table(1, ProductLimit::Lower), 0);
  EXPECT_TRUE(isClose(table(12, ProductLimit::Upper),
                      1 - 0.496732026144 + 1.959963984540054 * 0.1051026606696, 1e-11));
  EXPECT_TRUE(isClose(hazard(12), 1.0 / 11));
  EXPECT_TRUE(isClose(summary(ProductLimitSummary::MTTF), 793.9992961287, 1e-11));
  EXPECT_TRUE(isClose(summary(ProductLimitSummary::SE), 91.5178766145 * std::sqrt(12.0 / 11), 1e-11));
  EXPECT_EQ(summary(ProductLimitSummary::Median), 638);
  EXPECT_EQ(summary(ProductLimitSummary::Q1), 365);
  EXPECT_EQ(summary(ProductLimitSummary::Q3), NoValue);
  EXPECT_EQ(summary(ProductLimitSummary::IQR), NoValue);
  ASSERT_EQ(SX.rows(), 25);
  EXPECT_EQ(SX(1), 0);
  EXPECT_EQ(SX(2), 59);
  EXPECT_EQ(SY(2), 1);
  EXPECT_EQ(SX(3), 59);
  EXPECT_TRUE(isClose(SY(3), 0.96153846154, 1e-11));
  EXPECT_TRUE(isClose(SL(25), 1 - table(12, ProductLimit::Upper)));
  EXPECT_EQ(FU(25), table(12, ProductLimit::Upper));
  EXPECT_EQ(HY(25), hazard(12));
}

// Faults: frequencies read as rows, a plain mean of rows, a survival just above one half by rounding.
// Expected: by hand.
TEST_F(Survival, CountsFrequenciesWithoutCensoring) {
  EXPECT_EQ(failureNumber([&] { productLimit({{NoValue, 4}, {3, 4}, {1, 1}}); }), 5);
  productLimit({{30, 10, 20}, {30, 10, 20}, {1, 2, 1}}, 0.9);
  EXPECT_EQ(table(1, ProductLimit::Failures), 2);
  EXPECT_EQ(summary(ProductLimitSummary::Failures), 4);
  EXPECT_TRUE(isClose(summary(ProductLimitSummary::MTTF), 17.5));
  // Squares about 17.5: 56.25 * 2 + 6.25 + 156.25 = 275; 275 / 16 * 4 / 3.
  EXPECT_TRUE(isClose(summary(ProductLimitSummary::SE), std::sqrt(275.0 / 12)));
  EXPECT_EQ(summary(ProductLimitSummary::Median), 10);
  EXPECT_EQ(summary(ProductLimitSummary::Q3), 20);
  EXPECT_EQ(table(3, ProductLimit::F), 1);
  EXPECT_EQ(hazard(3), 1);
  // A third of nine: 1 - 1/9 - ... is 2/3, 1/3 only but for rounding; the ninth of twelve leaves a quarter.
  LifeData twelve{DoubleArray(12), DoubleArray(12), DoubleArray(12, 1.0)};
  for (Index i = 1; i <= 12; ++i) twelve.SA(i) = twelve.EA(i) = static_cast<double>(i);
  productLimit(twelve);
  EXPECT_EQ(summary(ProductLimitSummary::Q1), 3);
  EXPECT_EQ(summary(ProductLimitSummary::Median), 6);
  EXPECT_EQ(summary(ProductLimitSummary::Q3), 9);
  EXPECT_EQ(failureNumber([&] { productLimit({{3, 4}, {3, NoValue}, {1, 1}}); }), 11);
  EXPECT_EQ(failureNumber([&] { productLimit({{3, 4}, {NoValue, NoValue}, {1, 1}}); }), 5);
}

// Faults: rows in the order of their starts, standard errors of single weights, limits exchanged. Expected:
// by hand; the information is 1 / w^2 on the diagonal, so the variance of a cumulated weight is the sum of
// the squares.
TEST_F(Survival, WeighsSpans) {
  spans({{10, 0, NoValue, 20, 20}, {20, 10, 5, NoValue, 30}, {4, 3, 1, 1, 1}});
  EXPECT_EQ(kinds, (DoubleArray{1, 8, 1, 0}));
  ASSERT_EQ(weights.rows(), 5);
  EXPECT_EQ(weights(1, SpanWeight::Start), NoValue);
  EXPECT_TRUE(isClose(weights(3, SpanWeight::Weight), 0.4));
  ASSERT_EQ(table.rows(), 4);
  EXPECT_EQ(table(3, SpanSurvival::End), 20);
  EXPECT_TRUE(isClose(table(3, SpanSurvival::Survival), 0.2));
  const double se = std::sqrt(0.1 * 0.1 + 0.3 * 0.3 + 0.4 * 0.4);
  EXPECT_TRUE(isClose(table(3, SpanSurvival::SE), se, 1e-5));
  EXPECT_EQ(table(3, SpanSurvival::Lower), 0);
  EXPECT_EQ(table(3, SpanSurvival::Upper), 1);
  EXPECT_TRUE(isClose(table(1, SpanSurvival::Lower), 0.9 - 1.959963984540054 * 0.1, 1e-5));
  EXPECT_EQ(SX, (DoubleArray{0, 0, 5, 0, 10, 10, 20, 20, 30}));
  EXPECT_TRUE(areClose(SY, {1, 1, 0.9, 0.9, 0.6, 0.6, 0.2, 0.2, 0.1}));
  EXPECT_EQ(FU(7), 1 - SL(7));
  EXPECT_EQ(failureNumber([&] { spans({{0, 10}, {10, 20}, {0, 1}}); }), 11);

  // Work that grows with the square of the spans would not end here, and its differences would be noise.
  constexpr Index n = 20000;
  LifeData many{DoubleArray(n), DoubleArray(n), DoubleArray(n, 1.0)};
  for (Index i = 1; i <= n; ++i) many.SA(i) = (many.EA(i) = static_cast<double>(i)) - 1;
  spans(many);
  EXPECT_TRUE(isClose(table(10000, SpanSurvival::SE), 100.0 / n, 1e-6));
}

class Accelerated : public WithHost {
 protected:
  void test(const std::string& dist, const std::string& accf, const DoubleArray& hold = {}) {
    engine.ALTOutput(motors.hours, motors.end, motors.one, motors.temperature, 0.95, dist, "Median rank",
                     "Maximum likelihood", accf, {10, 50}, 50, {130}, {10000}, hold, idvl, regtable, modelf,
                     SResitable, CSResitable, ptiletable, timestable, PlotXi, PlotYi, PlotHi, PlotVi, PlotLi,
                     PlotUi, PlotLinei, LineXYm, PlotX_RS, PlotY_RS, PlotHVLU_RS, PlotX_RCS, PlotY_RCS,
                     PlotHVLU_RCS, RelX, RelA, RelACIL, RelACIU);
  }

  Motors motors;
  yReliability engine;
  DoubleArray idvl, regtable, modelf, SResitable, CSResitable, ptiletable, timestable, PlotXi, PlotYi, PlotHi,
      PlotVi, PlotLi, PlotUi, PlotLinei, LineXYm, PlotX_RS, PlotY_RS, PlotHVLU_RS, PlotX_RCS, PlotY_RCS,
      PlotHVLU_RCS, RelX, RelA, RelACIL, RelACIU;
};

// Faults: stress on the wrong scale, a variance of the location without its covariance, residuals of another
// row. Expected: R, survreg(Surv(time, status) ~ x, imotor, dist = "lognormal") with predict(type =
// "uquantile", se = TRUE); published (Schmee and Hahn 1979): sigma 0.259 of log10 t, b0 -6.019 and b1 4311 of
// log10 t on 1 / kelvin.
TEST_F(Accelerated, AgreesWithRAndThePublishedMotors) {
  test("Lognormal", "Arrhenius");
  EXPECT_EQ(idvl, (DoubleArray{150, 170, 190, 220}));
  const DoubleArray estimate{0.5967880366071, -13.8579697109031, 0.855272288289};
  for (Index k = 1; k <= 3; ++k) EXPECT_TRUE(isClose(regtable(k, 1), estimate(k), 1e-5));
  EXPECT_TRUE(isClose(regtable(1, 1) / std::log(10.0), 0.259, 1e-3));
  EXPECT_TRUE(isClose(regtable(2, 1) / std::log(10.0), -6.019, 1e-3));
  EXPECT_TRUE(isClose(regtable(3, 1) * 11604.83 / std::log(10.0), 4311, 1e-3));
  EXPECT_TRUE(isClose(regtable(1, 2), 0.5967880366071 * 0.18267207539, 1e-5));
  EXPECT_TRUE(isClose(regtable(2, 2), 2.17987950252, 1e-5));
  EXPECT_TRUE(isClose(regtable(3, 2), 0.08662661287, 1e-5));
  EXPECT_TRUE(isClose(regtable(3, 5), 0.855272288289 - 1.959963984540054 * 0.08662661287, 1e-5));
  EXPECT_TRUE(isClose(regtable(1, 6), 0.5967880366071 * std::exp(1.959963984540054 * 0.18267207539), 1e-3));
  EXPECT_EQ(modelf(RelationFit::N), 40);
  EXPECT_TRUE(isClose(ptiletable(1, RelationPercentile::Percentile), 21937.4698804358, 1e-4));
  EXPECT_TRUE(isClose(ptiletable(1, RelationPercentile::SE), 6959.07674977634, 1e-3));
  EXPECT_TRUE(isClose(ptiletable(2, RelationPercentile::Upper),
                      std::exp(10.76076604984785 + 1.959963984540054 * 0.342112493756694), 1e-3));
  const double u = (std::log(10000) - 10.76076604984785) / 0.5967880366071;
  EXPECT_TRUE(isClose(timestable(1, RelationSurvival::Survival), std::erfc(u / std::sqrt(2.0)) / 2, 1e-5));
  EXPECT_GT(timestable(1, RelationSurvival::AtLowerU), timestable(1, RelationSurvival::AtUpperU));

  // Row 11 failed at 1764 hours and 170 degrees; row 1 was alive.
  const double m = -13.8579697109031 + 0.855272288289 * 11604.83 / (170 + 273.16);
  const double z = (std::log(1764) - m) / 0.5967880366071;
  EXPECT_TRUE(isClose(SResitable(11, RelationResidual::AtEnd), z, 1e-4));
  EXPECT_TRUE(isClose(CSResitable(11, RelationResidual::AtStart),
                      -std::log(std::erfc(z / std::sqrt(2.0)) / 2), 1e-4));
  EXPECT_EQ(CSResitable(1, RelationResidual::AtEnd), NoValue);
  EXPECT_EQ(PlotX_RS.rows(), 17);
  EXPECT_EQ(PlotHVLU_RCS.rows(), 15);
  // Standardised residuals lie about 0 at the maximum, where differences relative to their location see
  // nothing.
  ASSERT_TRUE(PlotHVLU_RS.filled());
  EXPECT_NEAR(PlotHVLU_RS(8, ProbabilityLine::Time), 0, 1e-4);

  // No motor failed at 150 degrees: its message is shown and its column empty.
  EXPECT_EQ(messages, (std::vector<std::string>{"Cannot Find solution"}));
  EXPECT_EQ(PlotXi.columns(), 4);
  EXPECT_EQ(PlotXi(1, 1), NoValue);
  EXPECT_EQ(PlotXi(7, 2), 5196);
  EXPECT_EQ(PlotXi(6, 3), NoValue);
  EXPECT_EQ(PlotHi(8, 4), 0.5);
  ASSERT_EQ(RelX.rows(), 50);
  EXPECT_TRUE(isClose(RelX(1), 130));
  EXPECT_TRUE(isClose(RelX(50), 220));
  EXPECT_TRUE(isClose(RelA(1), 47134.7617811413, 1e-4));
  EXPECT_TRUE(isClose(LineXYm(1, RelationLine::M), 10.76076604984785, 1e-6));
}

// Faults: a scale taken for a location, a held spread with a variance. Expected: R, survreg on `imotor`.
TEST_F(Accelerated, FitsOtherDistributions) {
  test("Weibull", "Arrhenius");
  EXPECT_TRUE(isClose(regtable(1, 1), 1 / 0.3254444008158, 1e-5));
  EXPECT_TRUE(isClose(regtable(2, 1), -13.3534560438479, 1e-5));
  EXPECT_TRUE(isClose(regtable(3, 2), 0.05999878077, 1e-5));
  test("Exponential", "Arrhenius");
  EXPECT_EQ(regtable(1, 1), 1);
  EXPECT_EQ(regtable(1, 2), NoValue);
  EXPECT_TRUE(isClose(regtable(3, 1), 0.9765176358637, 1e-5));
  EXPECT_TRUE(isClose(regtable(2, 2), 4.3210431394, 1e-5));
  test("Loglogistic", "Inverse Temp");
  EXPECT_TRUE(isClose(regtable(3, 1), 0.8305352879761 * 11604.83, 1e-5));
  idvl = {};
  test("Weibull", "Power");
  EXPECT_FALSE(idvl.filled());
}

}  // namespace
}  // namespace zelkova
