#include <gtest/gtest.h>

#include <cmath>

#include "unittests/WithHost.h"
#include "unittests/reliability/lives.h"
#include "unittests/support.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {
namespace {

class LifeRegression : public WithHost {
 protected:
  void regress(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA, const std::string& dist,
               const DoubleArray& predictX = {}, const DoubleArray& hold = {},
               const std::string& pMtd = "Median rank") {
    engine.LDROutput(SA, EA, FA, 0.95, dist, pMtd, "Maximum likelihood", {10, 50}, predictX, {300}, hold,
                     regtable, modelf, SResitable, CSResitable, ptiletable, timestable, PlotX_RS, PlotY_RS,
                     PlotHVLU_RS, PlotX_RCS, PlotY_RCS, PlotHVLU_RCS);
  }

  /// Whether the fit has this log-likelihood, these parameters (to a hundred thousandth of their standard
  /// errors) and these standard errors.
  void expectFit(double logLikelihood, const DoubleArray& P, const DoubleArray& se) {
    ASSERT_TRUE(regtable.filled());
    EXPECT_TRUE(isClose(modelf(RelationFit::LogLikelihood), logLikelihood, 1e-10));
    for (Index k = 1; k <= P.rows(); ++k) {
      const double reach = se(k) == NoValue ? 1e-12 : 1e-5 * se(k);
      EXPECT_NEAR(regtable(k, RelationCoefficient::Coefficient), P(k), reach) << "parameter " << k;
      EXPECT_TRUE(isClose(regtable(k, RelationCoefficient::SE), se(k), 1e-5)) << "parameter " << k;
    }
  }

  DoubleArray columnOf(const DoubleArray& table, Index j) {
    return DoubleArray({table.column(j).begin(), table.column(j).end()});
  }

  yReliability engine;
  DoubleArray regtable, modelf, SResitable, CSResitable, ptiletable, timestable, PlotX_RS, PlotY_RS,
      PlotHVLU_RS, PlotX_RCS, PlotY_RCS, PlotHVLU_RCS;
};

struct Reference {
  const char* dist;
  double logLikelihood;
  DoubleArray P;
  DoubleArray se;
};

// Of R's lung, as told below.
const Reference lungSEV{"Smallest Extreme Value",
                        -1198.99308967,
                        {253.963803412, 571.822621728, -1.78060488275, 117.019327613, -126.216601542},
                        {13.3806202512, 157.863463589, 2.34959430582, 42.8727827439, 28.7015580938}};
const Reference lungNormal{"Normal",
                           -1163.98765875,
                           {232.799217767, 424.503720651, -1.97789816273, 114.522936533, -94.7687006352},
                           {12.9117187694, 132.490068311, 1.89257233727, 34.8704135841, 23.5306211013}};
const Reference lungLogistic{"Logistic",
                             -1163.0287761,
                             {130.928026037, 344.716643699, -1.25370245309, 127.085096162, -99.3005124699},
                             {8.43881984628, 128.83826058, 1.85325321564, 34.4818110429, 22.9336293601}};

// Faults: a search in the caller's units, which ages or temperatures far from 0 lead astray; a spread read
// the wrong way round; an exponential spread that is estimated. Expected: R, survreg(Surv(time, status == 2)
// ~ age
// + sex + ph.ecog, lung, dist) and survreg(Surv(time, status) ~ temperature, imotor, dist), rel.tolerance
// 1e-14; without the terms -ln t of the exact times, the standard error of a shape by the delta method.
TEST_F(LifeRegression, FitsEveryDistributionAsReferenceDoes) {
  const LungPatients lung;
  for (const auto& [dist, logLikelihood, P, se] : {
           Reference{"Weibull",
                     -262.473042245,
                     {1.36778511921, 6.273435252, -0.00747543940914, 0.401090541193, -0.339638098309},
                     {0.0839087686226, 0.453577710811, 0.00676350766753, 0.123732566515, 0.0834784150301}},
           lungSEV,
           Reference{"Exponential",
                     -273.597447676,
                     {1, 6.37342319823, -0.0102173605937, 0.509061399784, -0.40501698998},
                     {NoValue, 0.620755101309, 0.00917689478207, 0.167161189277, 0.112697455096}},
           lungNormal,
           Reference{"Lognormal",
                     -276.916127449,
                     {1.02863458189, 6.49478672655, -0.0191818680868, 0.521952878521, -0.355566670332},
                     {0.0575630336352, 0.582756276147, 0.00832785746307, 0.152775382448, 0.103308253019}},
           lungLogistic,
           Reference{"Loglogistic",
                     -267.523908632,
                     {0.536141504276, 5.93668692064, -0.00807991943085, 0.486623570899, -0.404615511572},
                     {0.0352852767153, 0.512072660152, 0.00747790705755, 0.134894147834, 0.0930137194021}},
       }) {
    SCOPED_TRACE(dist);
    regress(lung.days, lung.end, lung.design, dist);
    expectFit(logLikelihood, P, se);
  }
  EXPECT_EQ(modelf(RelationFit::N), 227);

  const Motors motors;
  for (const auto& [dist, logLikelihood, P, se] : {
           Reference{"Weibull",
                     -25.9716375765,
                     {2.9910990474, 16.3185193824, -0.0453070534788},
                     {0.642478035562, 0.622963863426, 0.00318582106052}},
           Reference{"Normal",
                     -167.887953479,
                     {2181.52728443, 26115.0330876, -117.324228772},
                     {414.330499196, 3029.06965626, 15.9471132209}},
           Reference{"Loglogistic",
                     -26.8356186608,
                     {0.296009289473, 16.1951684977, -0.045160485381},
                     {0.0646254965507, 0.703339131952, 0.00364530121448}},
       }) {
    SCOPED_TRACE(dist);
    DoubleArray design(40, 3, 1.0);
    for (Index i = 1; i <= 40; ++i) design(i, 3) = motors.temperature(i);
    regress(motors.hours, motors.end, design, dist);
    expectFit(logLikelihood, P, se);
    // The same temperatures in other units, far from 0.
    DoubleArray microdegrees = design;
    for (Index i = 1; i <= 40; ++i) microdegrees(i, 3) = 1e9 + 1e6 * motors.temperature(i);
    regress(motors.hours, motors.end, microdegrees, dist);
    expectFit(logLikelihood, {P(1), P(2) - 1000 * P(3), 1e-6 * P(3)},
              {se(1), regtable(2, RelationCoefficient::SE), 1e-6 * se(3)});
  }
}

// Faults: times or covariates far from 0 whose digits go into the differences: standard errors that are
// noise, and a finite maximum where there is none. Expected: R as above; an offset moves the constant alone,
// and times in units of 256 days add ln 256 for each of the 164 deaths.
TEST_F(LifeRegression, KeepsItsDigitsFarFromZero) {
  const LungPatients lung;
  // A million standard deviations.
  constexpr double offset = 9e6;
  DoubleArray design = lung.design;
  for (Index i = 1; i <= 227; ++i) design(i, 3) += offset;
  regress(lung.days, lung.end, design, "Weibull",
          DoubleArray::table({{1, offset + 50, 2, 0}, {1, offset + 70, 1, 2}}));
  const double seOfConstant = regtable(2, RelationCoefficient::SE);
  expectFit(-262.473042245,
            {1.36778511921, 6.273435252 + offset * 0.00747543940914, -0.00747543940914, 0.401090541193,
             -0.339638098309},
            {0.0839087686226, seOfConstant, 0.00676350766753, 0.123732566515, 0.0834784150301});
  EXPECT_TRUE(areClose(columnOf(ptiletable, LifeRegressionPercentile::SE),
                       {26.7636365105, 96.0925748155, 7.6453320159, 21.2944324363}, 1e-5));

  constexpr double later = 1 << 20, unit = 256;
  DoubleArray starts = lung.days, ends = lung.end;
  for (Index i = 1; i <= 227; ++i) {
    starts(i) = later + starts(i) / unit;
    if (ends(i) != NoValue) ends(i) = starts(i);
  }
  for (const auto& [dist, logLikelihood, P, se] : {lungSEV, lungNormal, lungLogistic}) {
    SCOPED_TRACE(dist);
    DoubleArray inUnits = P, seInUnits = se;
    for (double& p : inUnits.elements()) p /= unit;
    for (double& e : seInUnits.elements()) e /= unit;
    inUnits(2) += later;
    regress(starts, ends, lung.design, dist);
    expectFit(logLikelihood + 164 * std::log(unit), inUnits, seInUnits);
  }
}

// Fault: the probability of an interval from ends that agree but for their last digits. Expected: R as above
// for exact times; an interval this narrow adds the logarithm of its width.
TEST_F(LifeRegression, TakesNarrowIntervalsAsExactTimes) {
  const Motors motors;
  DoubleArray design(40, 3, 1.0);
  for (Index i = 1; i <= 40; ++i) design(i, 3) = motors.temperature(i);
  for (const auto& [dist, logLikelihood, P, se] :
       {Reference{"Weibull",
                  -25.9716375765,
                  {2.9910990474, 16.3185193824, -0.0453070534788},
                  {0.642478035562, 0.622963863426, 0.00318582106052}},
        Reference{"Normal",
                  -167.887953479,
                  {2181.52728443, 26115.0330876, -117.324228772},
                  {414.330499196, 3029.06965626, 15.9471132209}},
        Reference{"Loglogistic",
                  -26.8356186608,
                  {0.296009289473, 16.1951684977, -0.045160485381},
                  {0.0646254965507, 0.703339131952, 0.00364530121448}}}) {
    for (const double h : {1e-7, 1e-11}) {
      SCOPED_TRACE(dist);
      DoubleArray starts = motors.hours, ends = motors.end;
      double lnWidths = 0;
      for (Index i = 1; i <= 40; ++i) {
        if (ends(i) == NoValue) continue;
        starts(i) *= 1 - h;
        ends(i) *= 1 + h;
        const double width = ends(i) - starts(i);
        lnWidths += std::log(dist == std::string("Normal") ? width : std::log1p(width / starts(i)));
      }
      regress(starts, ends, design, dist);
      expectFit(logLikelihood + lnWidths, P, se);
    }
  }
}

// Faults: a kind of row read at the wrong end, frequencies left out or, for the logistic family, made to
// count as elsewhere. Expected: R, survreg(Surv(SA, EA, type = "interval2") ~ x, weights = FA, dist), for the
// logistic family without weights and without the two left-censored rows, which tell it nothing.
TEST_F(LifeRegression, TakesEveryKindOfRow) {
  const LifeData kinds = everyKind();
  DoubleArray design(10, 3, 1.0);
  Index row = 0;
  for (const double x : {1, 4, 1, 3, 2, 3, 2, 5, 2, 4}) design(++row, 3) = x;
  for (const auto& [dist, logLikelihood, P, se] : {
           Reference{"Weibull",
                     0.106811812183,
                     {10.3808792034, 1.09269295723, 0.457724344834},
                     {3.63014620939, 0.0834743558155, 0.0406724045438}},
           Reference{"Normal",
                     -10.2816357287,
                     {1.24505842742, -0.931354122792, 4.30792073446},
                     {0.378330494419, 1.06879384706, 0.428869406948}},
           Reference{"Logistic",
                     -7.46063784649,
                     {0.788953200261, -1.53750214268, 4.51861663753},
                     {0.323046736035, 1.78198510802, 0.617545676838}},
           Reference{"Loglogistic",
                     0.215938150304,
                     {0.0668498780022, 1.06547461889, 0.453581859284},
                     {0.0267075307558, 0.151481950142, 0.0610579051514}},
       }) {
    SCOPED_TRACE(dist);
    const bool logistic = std::string(dist).find("ogistic") != std::string::npos;
    for (Index i = 1; i <= 10; ++i) design(i, 1) = logistic ? 1 : kinds.FA(i);
    regress(kinds.SA, kinds.EA, design, dist, {}, {}, "Turnbull");
    expectFit(logLikelihood, P, se);
    EXPECT_TRUE(PlotHVLU_RS.filled());
  }
  EXPECT_TRUE(messages.empty());
}

// Faults: limits of a location's standard error without the spread's part, residuals at another scale, a plot
// of residuals that are not those of the table, tests and limits of the wrong parameter. Expected: R,
// predict(type = "uquantile", se.fit = TRUE), the delta method on vcov, pnorm and exp of its summary.
TEST_F(LifeRegression, PredictsAndLeavesResiduals) {
  const LungPatients lung;
  regress(lung.days, lung.end, lung.design, "Weibull", DoubleArray::table({{1, 50, 2, 0}, {1, 70, 1, 2}}));
  constexpr double precision = 2e-6;
  EXPECT_TRUE(isClose(regtable(4, RelationCoefficient::PValue), 0.00118863914604, 1e-5));
  EXPECT_TRUE(isClose(regtable(4, RelationCoefficient::Lower), 0.158579167109, precision));
  EXPECT_TRUE(isClose(regtable(1, RelationCoefficient::Upper), 1.54253871161, precision));
  using Percentile = LifeRegressionPercentile;
  EXPECT_EQ(columnOf(ptiletable, Percentile::Row), (DoubleArray{1, 1, 2, 2}));
  EXPECT_TRUE(areClose(columnOf(ptiletable, Percentile::Percentile),
                       {157.052567674, 622.587058733, 45.9110142091, 182.000229116}, precision));
  EXPECT_TRUE(areClose(columnOf(ptiletable, Percentile::SE),
                       {26.7636365105, 96.0925748155, 7.6453320159, 21.2944324363}, precision));
  EXPECT_TRUE(areClose(columnOf(ptiletable, Percentile::Lower),
                       {112.45793754686, 460.06822678, 33.12611786947, 144.7036403923}, precision));
  using Survival = LifeRegressionSurvival;
  EXPECT_TRUE(
      areClose(columnOf(timestable, Survival::Survival), {0.7746481086076, 0.2533203484324}, precision));
  EXPECT_TRUE(areClose(columnOf(timestable, Survival::SE), {0.2154420325925, 0.150611778697}, precision));
  EXPECT_TRUE(
      areClose(columnOf(timestable, Survival::AtUpperU), {0.677391308745, 0.1580878283978}, precision));

  using Residual = LifeRegressionResidual;
  EXPECT_TRUE(isClose(SResitable(3, Residual::Location), 6.25590118627981, precision));
  EXPECT_TRUE(isClose(SResitable(3, Residual::AtStart), 0.90520624236348, precision));
  EXPECT_EQ(SResitable(3, Residual::AtEnd), NoValue);
  EXPECT_TRUE(isClose(CSResitable(1, Residual::AtEnd), 0.92358192119397, precision));
  // At the maximum standardised residuals have location 0 and spread 1, and Cox-Snell ones the mean 1.
  for (Index i = 1; i <= 15; ++i) {
    const double hazard = -std::log1p(-PlotHVLU_RS(i, ProbabilityLine::Share));
    EXPECT_NEAR(PlotHVLU_RS(i, ProbabilityLine::Time), std::log(hazard), 1e-4);
    EXPECT_TRUE(isClose(PlotHVLU_RCS(i, ProbabilityLine::Time), hazard, 1e-4));
  }
  EXPECT_EQ(PlotX_RS.rows(), 164);
}

// Faults: a message that says nothing of the residuals, twice or not at all; the sentinel drawn as a
// residual. Expected by hand: the third row has no start, so its residual has no place among the starts.
TEST_F(LifeRegression, SaysWhyResidualsHaveNoLine) {
  const LifeData kinds = everyKind();
  DoubleArray design(10, 2, 1.0);
  regress(kinds.SA, kinds.EA, design, "Weibull");
  EXPECT_EQ(messages, std::vector<std::string>{"The residuals cannot be fitted on their own: only Turnbull "
                                               "places rows without a start"});
  EXPECT_TRUE(regtable.filled());
  EXPECT_FALSE(PlotHVLU_RS.filled() || PlotHVLU_RCS.filled());
  Index without = 0;
  for (Index i = 1; i <= PlotX_RS.rows(); ++i) {
    EXPECT_EQ(PlotX_RS(i) == NoValue, PlotY_RS(i) == NoValue);
    if (PlotX_RS(i) == NoValue) ++without;
  }
  EXPECT_EQ(without, 2);
}

// Faults: a held value that moves, or that leaves its uncertainty in the others. Expected: R, survreg(~ age +
// offset(0.4 sex), scale = 0.7).
TEST_F(LifeRegression, HoldsParameters) {
  const LungPatients lung;
  regress(lung.days, lung.end, lung.design, "Weibull", {}, {1 / 0.7, NoValue, NoValue, 0.4, 0});
  expectFit(-271.5338824684, {1 / 0.7, 6.21607402624515, -0.01156332454004, 0.4, 0},
            {NoValue, 0.41264542933825, 0.00646094131375, NoValue, NoValue});
}

// Faults: numbers where the likelihood has no finite maximum, a crash or a search without end instead of a
// failure that names what is wrong.
TEST_F(LifeRegression, RefusesWhatHasNoAnswer) {
  const Motors motors;
  DoubleArray coldGroup(40, 3, 1.0);  // its ten units all live on
  for (Index i = 11; i <= 40; ++i) coldGroup(i, 3) = 0;
  const DoubleArray pairs = DoubleArray::table({{1, 1, 1}, {1, 1, 2}});
  // Each exact logistic row of frequency 3 gains as the location moves away.
  const DoubleArray thrice = DoubleArray::table({{3, 1}, {3, 1}, {3, 1}});
  regress(motors.hours, DoubleArray(40, NoValue), coldGroup, "Weibull");
  for (const char* dist : {"Weibull", "Normal", "Loglogistic"}) {
    regress(motors.hours, motors.end, coldGroup, dist);
    regress({3, 5}, {3, 5}, pairs, dist);
    DoubleArray farGroup = coldGroup;
    for (Index i = 1; i <= 40; ++i) farGroup(i, 3) += 1e6;
    regress(motors.hours, motors.end, farGroup, dist);
  }
  regress({3, 5, 6}, {3, 5, 6}, thrice, "Logistic");
  EXPECT_EQ(messages, std::vector<std::string>(11, "Cannot Find solution"));
  EXPECT_FALSE(regtable.filled());
  regress({3, 5, 6}, {3, 5, 6}, thrice, "weibull");
  EXPECT_FALSE(regtable.filled());

  const DoubleArray plain = DoubleArray::table({{1, 1}, {1, 1}, {1, 1}});
  const auto failureAsking = [&](double CLevel, const DoubleArray& Percent, const DoubleArray& predictX,
                                 const DoubleArray& times) {
    return failureNumber([&] {
      engine.LDROutput({3, 5, 6}, {3, 5, 6}, plain, CLevel, "Weibull", "Median rank", "Maximum likelihood",
                       Percent, predictX, times, {}, regtable, modelf, SResitable, CSResitable, ptiletable,
                       timestable, PlotX_RS, PlotY_RS, PlotHVLU_RS, PlotX_RCS, PlotY_RCS, PlotHVLU_RCS);
    });
  };
  const DoubleArray one = DoubleArray::table({{1}});
  for (const double CLevel : {0.0, 1.0, 95.0}) EXPECT_EQ(failureAsking(CLevel, {50}, one, {4}), 5) << CLevel;
  for (const double share : {0.0, 100.0, NoValue}) EXPECT_EQ(failureAsking(0.95, {share}, one, {4}), 5);
  EXPECT_EQ(failureAsking(0.95, {50}, DoubleArray::table({{NoValue}}), {4}), 5);
  EXPECT_EQ(failureAsking(0.95, {50}, one, {NoValue}), 5);

  const auto failureOf = [&](const DoubleArray& times, const DoubleArray& design,
                             const DoubleArray& predictX = {}) {
    return failureNumber([&] { regress(times, times, design, "Weibull", predictX); });
  };
  EXPECT_EQ(failureOf({3, 5, 6}, {1, 1, 1}), 9);
  EXPECT_EQ(failureOf({3, 5, 6}, pairs), 9);
  EXPECT_EQ(failureOf({3, 5}, pairs, DoubleArray::table({{1, 2, 3}})), 9);
  EXPECT_EQ(failureOf({3, -5}, pairs), 5);
  EXPECT_EQ(failureOf({3, NoValue}, pairs), 5);
  EXPECT_EQ(failureNumber([&] { regress({3, 5}, {3, 4}, pairs, "Weibull"); }), 5);
  EXPECT_EQ(failureOf({3, 5}, DoubleArray::table({{1, 2, 4}, {1, 1, 2}})), 5);
  EXPECT_EQ(failureOf({3, 5}, DoubleArray::table({{1, 2}, {-1, 1}})), 5);
  EXPECT_EQ(failureOf({3, 5}, DoubleArray::table({{1, 2}, {1, NoValue}})), 5);
}

}  // namespace
}  // namespace zelkova
