#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {
namespace {

// Brownlee's stack loss of an ammonia plant (R's data set `stackloss`): 21 days of air flow, water
// temperature, acid concentration and loss.
const std::vector<double> air{80, 80, 75, 62, 62, 62, 62, 62, 58, 58, 58,
                              58, 58, 58, 50, 50, 50, 50, 50, 56, 70};
const std::vector<double> water{27, 27, 25, 24, 22, 23, 24, 24, 23, 18, 18,
                                17, 18, 19, 18, 18, 19, 19, 20, 20, 20};
const std::vector<double> acid{89, 88, 90, 87, 87, 87, 93, 93, 87, 80, 89,
                               88, 82, 93, 89, 86, 72, 79, 80, 82, 91};
const DoubleArray loss{42, 37, 37, 28, 18, 18, 19, 20, 15, 14, 14, 13, 11, 12, 8, 7, 8, 8, 9, 15, 15};

// Ezekiel's stopping distances (R's data set `cars`): speed and distance.
const std::vector<double> speed{4,  4,  7,  7,  8,  9,  10, 10, 10, 11, 11, 12, 12, 12, 12, 13, 13,
                                13, 13, 14, 14, 14, 14, 15, 15, 15, 16, 16, 17, 17, 17, 18, 18, 18,
                                18, 19, 19, 19, 20, 20, 20, 20, 20, 22, 23, 24, 24, 24, 24, 25};
const DoubleArray distance{2,  10, 4,  22, 16, 10, 18, 26, 34, 17, 28, 14, 20, 24, 28,  26, 34,
                           34, 46, 26, 36, 60, 80, 20, 26, 54, 32, 40, 32, 40, 50, 42,  56, 76,
                           84, 36, 46, 68, 32, 48, 52, 56, 64, 66, 54, 70, 92, 93, 120, 85};

DoubleArray tableOf(const std::vector<std::vector<double>>& columns) {
  DoubleArray table(static_cast<Index>(columns.front().size()), static_cast<Index>(columns.size()), 0.0);
  for (Index j = 1; j <= table.columns(); ++j) {
    std::copy(columns[static_cast<std::size_t>(j - 1)].begin(),
              columns[static_cast<std::size_t>(j - 1)].end(), table.column(j).begin());
  }
  return table;
}

std::vector<double> ones(std::size_t n) {
  std::vector<double> column(n, 1.0);
  return column;
}

class Regression : public WithHost {
 protected:
  void fit(const DoubleArray& Y, const DoubleArray& X, bool intercept) {
    model.RegOutput(Y, X, coef, se, t, p, fitted, residual, main, intercept, true);
  }

  const DoubleArray withConstant = tableOf({ones(21), air, water, acid});
  const DoubleArray withoutConstant = tableOf({air, water, acid});
  yRegression model;
  DoubleArray coef, se, t, p, fitted, residual, main, result;
};

// Faults: uncorrected sums with an intercept or corrected ones without; adjusted R squared on the wrong
// degrees of freedom; one-sided p-values. Expected: R, summary(lm(stack.loss ~ ., stackloss)) and the same
// with - 1; pf(F, 3, dfError, lower = FALSE).
TEST_F(Regression, AgreesWithRWithAndWithoutIntercept) {
  fit(loss, withConstant, true);
  EXPECT_TRUE(
      areClose(coef, {-39.919674420123961, 0.715640200485283, 1.295286124388573, -0.152122519148653}));
  EXPECT_TRUE(areClose(se, {11.895996850644270, 0.134858185355372, 0.368024265272704, 0.156294043248621}));
  EXPECT_TRUE(areClose(t, {-3.355723351419849, 5.306613006837213, 3.519567176987018, -0.973309769116837}));
  EXPECT_TRUE(
      areClose(p, {3.75030683226027e-03, 5.79902472425288e-05, 2.63005439648897e-03, 3.44046096696437e-01}));
  EXPECT_TRUE(areClose(main, {3, 17, 20, 1890.408133639735, 178.829961598359, 2069.238095238095,
                              1890.408133639735 / 3, 178.829961598359 / 17, 59.9022258996566,
                              3.01632724342126e-09, 3.24336391818523, 0.913576904460682, 0.898325769953743}));

  fit(loss, withoutConstant, false);
  EXPECT_TRUE(areClose(coef, {0.79676520229442, 1.11142245907610, -0.62499326000319}));
  EXPECT_TRUE(areClose(se, {0.1662421764585374, 0.4560010449965826, 0.0847142170630575}));
  EXPECT_TRUE(areClose(t, {4.79279818917158, 2.43732436859751, -7.37766672078163}));
  EXPECT_TRUE(areClose(p, {1.45669988536427e-04, 2.53994234614308e-02, 7.61325467182034e-07}));
  EXPECT_TRUE(areClose(main, {3, 18, 21, 8220.712238583160, 297.287761416840, 8518, 8220.712238583160 / 3,
                              297.287761416840 / 18, 165.914241462296, 2.66472488375428e-13, 4.06398655821842,
                              0.965098877504480, 0.959282023755226}));
}

// Faults: rounding in the wrong place, or in both methods, or to a "-0"; fits where none were asked for.
// Expected: R, fitted and resid of the same model.
TEST_F(Regression, RoundsResidualsForDisplayOnly) {
  fit(loss, withConstant, true);
  EXPECT_EQ(residual.size(), 21);
  EXPECT_EQ(residual(1), 3.2346372);
  EXPECT_EQ(residual(21), -7.2377129);
  EXPECT_TRUE(isClose(fitted(4), 22.3022258293566));

  DoubleArray order;
  model.RegResiOutput(loss, withConstant, true, coef, fitted, residual, order);
  EXPECT_TRUE(isClose(residual(1), 3.23463722704003));
  EXPECT_TRUE(isClose(fitted(21), 22.2377128590899));
  EXPECT_TRUE(isClose(coef(2), 0.715640200485283));
  EXPECT_EQ(order(1), 1);
  EXPECT_EQ(order(21), 21);

  model.RegOutput(loss, withConstant, coef, se, t, p, fitted, residual, main, true);
  EXPECT_EQ(fitted, DoubleArray(21));
  EXPECT_EQ(residual, DoubleArray(21));

  fit({0.1, 0.2, 0.3, 0.4, 0.7},
      DoubleArray::table({{1, 1, 0.3}, {1, 2, 0.2}, {1, 3, 0.7}, {1, 4, -0.1}, {1, 7, 0.4}}), true);
  for (const double e : residual.elements()) EXPECT_FALSE(e != 0 || std::signbit(e));
}

// Faults: the constant's own entry among the results; differences of the wrong pair of fits. Expected: R,
// anova(m)[, 2] and drop1(m)[, 2].
TEST_F(Regression, SumsOfSquaresAgreeWithR) {
  model.GetSSSeq(loss, withConstant, true, result);
  EXPECT_TRUE(areClose(result, {1750.12198941439033, 130.32077196130956, 9.96537226403524}, 1e-11));
  model.GetSSAdj(loss, withConstant, true, result);
  EXPECT_TRUE(areClose(result, {296.22806127690558, 130.30764009183019, 9.96537226403521}, 1e-11));
  model.GetSSSeq(loss, withoutConstant, false, result);
  EXPECT_TRUE(areClose(result, {7321.459950232876508, 0.287687330580737, 898.964601019693077}, 1e-11));
  model.GetSSAdj(loss, withoutConstant, false, result);
  EXPECT_TRUE(areClose(result, {379.3873191160579, 98.1140463445377, 898.9646010196927}, 1e-11));
  model.GetSSAdj(loss, tableOf({ones(21)}), true, result);
  EXPECT_FALSE(result.filled());  // no regressor
}

// Faults: R squared about 0 with an intercept; a collinear set that fails though each column has a fit on the
// others, or that gets a number. Expected: R, 1/(1 - summary(lm(air ~ water + acid))$r.squared) and so on;
// the rest by the definition.
TEST_F(Regression, VarianceInflationFactors) {
  model.GetVIF(withConstant, true, result);
  EXPECT_TRUE(areClose(result, {2.90648362743051, 2.57263238031817, 1.33358746209765}));
  model.GetVIF(withoutConstant, false, result);
  EXPECT_TRUE(areClose(result, {131.129391053944, 120.171942939023, 68.1863505565466}));
  model.GetVIF(tableOf({ones(21), air}), true, result);
  EXPECT_EQ(result, DoubleArray{1});
  model.GetVIF(tableOf({air}), false, result);
  EXPECT_EQ(result, DoubleArray{1});

  std::vector<double> sum;
  for (std::size_t i = 0; i < 21; ++i) sum.push_back(air[i] + water[i]);
  model.GetVIF(tableOf({ones(21), air, water, sum}), true, result);
  EXPECT_EQ(result, DoubleArray(3, NoValue));
  EXPECT_EQ(failureNumber([&] {
              model.GetVIF(tableOf({ones(21), air, water, sum, acid}), true, result);
            }),
            5012);

  // Four columns whose sizes dwarf a difference of 1 between the last two: their fit on each other has an
  // error sum of squares of 3/4, not exact, and an R squared that rounds to 1, which counts as none.
  model.GetVIF(DoubleArray::table({{1, 1e9, 1e9}, {1, 3e9, 3e9}, {1, -4e9, -4e9}, {1, 8e9, 8e9 + 1}}), true,
               result);
  EXPECT_EQ(result, (DoubleArray{1, 1}));
}

// Faults: the sum over n rather than n - 1 steps; raw instead of deleted residuals. Expected: R, with
// e = resid(m): sum(diff(e)^2)/sum(e^2), sum((e/(1 - hatvalues(m)))^2); 1 - PRESS/SST.
TEST_F(Regression, ResidualStatisticsAgreeWithR) {
  DoubleArray order;
  model.RegResiOutput(loss, withConstant, true, coef, fitted, residual, order);
  EXPECT_TRUE(isClose(model.GetDurbinWatson(residual), 1.48513103434134));
  EXPECT_TRUE(isClose(model.GetPRESS(residual, withConstant, true), 291.868931729693));
  EXPECT_TRUE(isClose(model.GetPreRsq(291.868931729693, 2069.238095238095), 0.858948599292964));

  EXPECT_EQ(model.GetDurbinWatson({0, 0, 0}), NoValue);
  EXPECT_EQ(model.GetPreRsq(5, 0), 1);
  EXPECT_EQ(model.GetPreRsq(NoValue, 0), NoValue);
  // A row with a column of its own has leverage 1. The others by hand: mean 2, residuals -1, 0, 1, leverages
  // 1/3, so PRESS is 2 (3/2)^2.
  const DoubleArray ownColumn = DoubleArray::table({{1, 0}, {1, 0}, {1, 0}, {1, 0.3}});
  EXPECT_TRUE(isClose(model.GetPRESS({-1, 0, 1, 1e-7}, ownColumn, true), 4.5));
  EXPECT_EQ(model.GetPRESS({0, 0, 0, 1}, ownColumn, true), NoValue);
}

// Faults: prediction and confidence limits exchanged; one-tailed quantiles; leverages of the old rows.
// Expected: R, predict(m, data.frame(air = c(60, 80), water = c(20, 30), acid = c(90, 70)), interval,
// level = 0.9, se.fit = TRUE), also for the model without a constant.
TEST_F(Regression, PredictionsAgreeWithR) {
  DoubleArray newFit, newSE, lcl, ucl, lpl, upl;
  fit(loss, withConstant, true);
  const auto predict = [&](double mse) {
    model.GetPredictNew(withConstant, DoubleArray::table({{1, 60, 20, 90}, {1, 80, 30, 70}}), coef,
                        main(Reg::DFRegression), main(Reg::DFTotal), mse, true, 0.9, newFit, newSE, lcl, ucl,
                        lpl, upl);
  };
  predict(main(Reg::MSE));
  EXPECT_TRUE(areClose(newFit, {15.2334333733858, 45.5415490099502}));
  EXPECT_TRUE(areClose(newSE, {0.996052148118165, 4.063315369818421}));
  EXPECT_TRUE(areClose(lcl, {13.5006943569979, 38.4729782624499}));
  EXPECT_TRUE(areClose(ucl, {16.9661723897736, 52.6101197574506}));
  EXPECT_TRUE(areClose(lpl, {9.33118350128848, 36.49727670831216}));
  EXPECT_TRUE(areClose(upl, {21.1356832454830, 54.5858213115883}));

  predict(NoValue);
  EXPECT_TRUE(areClose(newFit, {15.2334333733858, 45.5415490099502}));
  for (const DoubleArray* column : {&newSE, &lcl, &ucl, &lpl, &upl})
    EXPECT_EQ(*column, DoubleArray(2, NoValue));

  fit(loss, withoutConstant, false);
  model.GetPredictNew(withoutConstant, DoubleArray::table({{60, 20, 90}, {80, 30, 70}}), coef, 3, 21,
                      main(Reg::MSE), false, 0.9, newFit, newSE, lcl, ucl, lpl, upl);
  EXPECT_TRUE(areClose(lcl, {11.8345081526128, 46.0895142410175}));
  EXPECT_TRUE(areClose(ucl, {15.7354276851874, 60.5792092702090}));
}

// Fault: the limits of the straight line on wrong degrees of freedom. Expected: R,
// predict(lm(dist ~ speed, cars), interval, level = 0.99)[c(1, 27, 50), ].
TEST_F(Regression, StraightLineHasLimitsAtItsOwnRows) {
  DoubleArray order, lcl, ucl, lpl, upl;
  model.RegSOutput(distance, tableOf({ones(50), speed}), 0.99, fitted, residual, order, lcl, ucl, lpl, upl);
  const auto picked = [](const DoubleArray& a) { return DoubleArray{a(1), a(27), a(50)}; };
  EXPECT_TRUE(areClose(picked(fitted), {-1.84945985401455, 45.33944525547447, 80.73112408759124}, 1e-11));
  EXPECT_TRUE(areClose(picked(residual), {3.84945985401475, -13.33944525547445, 4.26887591240877}, 1e-11));
  EXPECT_TRUE(areClose(picked(lcl), {-15.8299811752380, 39.4674469226556, 68.5449003937903}));
  EXPECT_TRUE(areClose(picked(ucl), {12.1310614672089, 51.2114435882933, 92.9173477813922}));
  EXPECT_TRUE(areClose(picked(lpl), {-45.40535052847558, 3.67241991824834, 37.71758338297392}));
  EXPECT_TRUE(areClose(picked(upl), {41.7064308204465, 87.0064705927006, 123.7446647922086}));
  EXPECT_EQ(picked(order), (DoubleArray{1, 27, 50}));

  model.RegSOutput({1, 2, 3}, DoubleArray::table({{1, 2}, {1, 4}, {1, 6}}), 0.95, fitted, residual, order,
                   lcl, ucl, lpl, upl);
  EXPECT_EQ(lcl, DoubleArray(3, NoValue));  // an exact line
}

// Faults: the constant removed with the constant columns; collinear columns kept, of negative and of zero sum
// among them; the wrong one of two removed; names out of step.
TEST_F(Regression, CheckRemovesConstantAndCollinearColumns) {
  std::vector<double> decimals, lowered, centred, mixture;
  for (std::size_t i = 0; i < 21; ++i) {
    decimals.push_back(0.1 * air[i]);
    lowered.push_back(-3 * water[i]);
    centred.push_back(speed[i] - speed[20 - i]);
    mixture.push_back(0.3 * air[i] - 0.7 * acid[i] + 1.1);
  }
  const DoubleArray full = tableOf(
      {ones(21), air, std::vector<double>(21, 7), decimals, water, lowered, centred, centred, acid, mixture});
  const StringArray fullNames{"Constant", "air",     "seven", "tenths", "water",
                              "lowered",  "centred", "again", "acid",   "mixture"};
  DoubleArray X = full;
  StringArray names = fullNames;
  model.RegressionCheck(X, names, true);
  EXPECT_EQ(names, (StringArray{"Constant", "air", "water", "centred", "acid"}));
  EXPECT_EQ(X, tableOf({ones(21), air, water, centred, acid}));

  X = tableOf({ones(21), air, acid, mixture});
  names = {"one", "air", "acid", "mixture"};
  model.RegressionCheck(X, names, false);  // without the constant the mixture is no combination of the others
  EXPECT_EQ(names, (StringArray{"air", "acid", "mixture"}));

  X = tableOf({ones(21)});
  names = {"one"};
  model.RegressionCheck(X, names, false);
  EXPECT_FALSE(X.filled());
  EXPECT_FALSE(names.filled());

  X = full;
  names = {"too", "few"};
  EXPECT_EQ(failureNumber([&] { model.RegressionCheck(X, names, true); }), 9);
  EXPECT_EQ(X, full);
}

// Fault: powers that another option text adds, or names out of order. Hand arithmetic.
TEST_F(Regression, PolynomialColumnsByModelType) {
  StringArray names;
  model.GetNonLinear({2, -3}, "T", "Cubic", result, names);
  EXPECT_EQ(result, DoubleArray::table({{1, 2, 4, 8}, {1, -3, 9, -27}}));
  EXPECT_EQ(names, (StringArray{"Constant", "T", "T^2", "T^3"}));
  model.GetNonLinear(DoubleArray::table({{2}, {-3}}), "T", "Quadratic", result, names);
  EXPECT_EQ(result, DoubleArray::table({{1, 2, 4}, {1, -3, 9}}));
  model.GetNonLinear({2, -3}, "T", "quadratic", result, names);
  EXPECT_EQ(result, DoubleArray::table({{1, 2}, {1, -3}}));
  EXPECT_EQ(names, (StringArray{"Constant", "T"}));
}

// Faults: errors out of no degrees of freedom, where large numbers leave more rounding than the limit of an
// exact fit; a response that the model cannot follow, with F and R squared out of range.
TEST_F(Regression, FitsAtTheEndOfTheirErrors) {
  fit({1e12 + 1, 3e12, 7e13 / 3}, DoubleArray::table({{1, 0.1, 5}, {1, 0.2, 1 / 3.0}, {1, 0.7, 2}}), true);
  EXPECT_EQ(main(Reg::DFError), 0);
  EXPECT_EQ(main(Reg::MSE), NoValue);
  EXPECT_EQ(se, DoubleArray(3, NoValue));
  EXPECT_NE(main(Reg::MSR), NoValue);

  // About the mean of y, 5/3, a line through 0 explains 25/2 - 25/3 less than nothing here: F below 0 has no
  // p-value, and R squared is cut at 0. By hand: T = 4^2/8, SSE = 9 - 2, SSR = 2 - 25/3.
  fit({0, 3, 2}, DoubleArray::table({{2, 0}, {0, 0}, {2, 1e-3}}), true);
  EXPECT_LT(main(Reg::F), 0);
  EXPECT_EQ(main(Reg::PValue), NoValue);
  EXPECT_EQ(main(Reg::RSquared), 0);

  // A response that has nothing to do with x, by symmetry: F is 0, which rounding must not push below.
  fit({0.7, 0.1, 0.2, 0.1, 0.7}, DoubleArray::table({{1, -0.2}, {1, -0.1}, {1, 0}, {1, 0.1}, {1, 0.2}}),
      true);
  EXPECT_EQ(main(Reg::F), 0);
  EXPECT_EQ(main(Reg::PValue), 1);
}

// Fault: an x that hardly varies beside its distance from 0, such as the seconds of a time of day, refused as
// collinear with the constant or fitted without digits. Expected: R, summary(lm(y ~ i)) for i from 0 to 5,
// with the intercept carried to x by hand.
TEST_F(Regression, FitsTimesFarFromZero) {
  const DoubleArray response{1, 2.1, 2.9, 4.2, 5, 6.1};
  std::vector<double> times;
  for (int i = 0; i < 6; ++i) times.push_back(1.7e9 + i);
  fit(response, tableOf({ones(6), times}), true);
  EXPECT_TRUE(areClose(coef, {-1724285713.27142857143, 1.01428571428571429}));
  EXPECT_TRUE(areClose(se, {46078903.1159309, 0.0271052370871575}));
  EXPECT_TRUE(isClose(main(Reg::SSE), 0.0514285714285714));
  EXPECT_TRUE(isClose(main(Reg::F), 1400.27777777778));

  StringArray names{"Constant", "time"};
  DoubleArray X = tableOf({ones(6), times});
  model.RegressionCheck(X, names, true);
  EXPECT_EQ(names.size(), 2);
}

// Fault: bad data that end in a number or in another failure than the one told, or change a result.
TEST_F(Regression, BadDataEndInAFailureAndChangeNothing) {
  coef = {7};
  const auto failureOf = [&](const DoubleArray& Y, const DoubleArray& X, bool intercept) {
    return failureNumber([&] { fit(Y, X, intercept); });
  };
  std::vector<double> mixture;
  for (std::size_t i = 0; i < 21; ++i) mixture.push_back(0.3 * air[i] - 0.7 * acid[i]);
  EXPECT_EQ(failureOf(loss, tableOf({ones(21), air, air}), true), 5012);
  EXPECT_EQ(failureOf(loss, tableOf({ones(21), air, acid, mixture}), true), 5012);
  EXPECT_EQ(failureOf(loss, tableOf({air, std::vector<double>(21, 0)}), false), 5012);
  EXPECT_EQ(failureOf({1, 2}, DoubleArray::table({{1, 2, 5}, {1, 3, 4}}), true), 5012);
  EXPECT_EQ(failureOf({1, 2, 3}, withConstant, true), 5009);
  EXPECT_EQ(failureOf(DoubleArray(), withConstant, true), 5022);
  EXPECT_EQ(failureOf(loss, DoubleArray(), true), 5022);
  EXPECT_EQ(failureOf(withConstant, withConstant, true), 5);
  EXPECT_EQ(failureOf({1e200, 2, 3}, DoubleArray::table({{1}, {2}, {4}}), false), 6);
  EXPECT_EQ(failureOf(loss, tableOf({ones(21)}), true), 11);  // no regression degrees of freedom
  EXPECT_EQ(coef, DoubleArray{7});

  DoubleArray a, b, c, d, e, f;
  const auto predict = [&](const DoubleArray& X, double dfTotal, double confidence) {
    return failureNumber([&] {
      model.GetPredictNew(withConstant, X, {1, 2, 3, 4}, 3, dfTotal, 2, true, confidence, a, b, c, d, e, f);
    });
  };
  EXPECT_EQ(predict(withConstant, 3, 0.9), 1004);
  EXPECT_EQ(predict(withConstant, 20, 95), 1004);
  EXPECT_EQ(predict(withoutConstant, 20, 0.9), 5009);
  EXPECT_EQ(failureNumber([&] { model.GetPRESS({1, 2}, withConstant, true); }), 5009);
  EXPECT_EQ(failureNumber([&] { model.RegSOutput(loss, withConstant, 0.9, a, b, c, d, e, f, result); }), 5);
}

}  // namespace
}  // namespace zelkova
