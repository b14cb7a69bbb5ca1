#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "host/EmbeddedWorksheetFunction.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

EmbeddedWorksheetFunction f;

void expectNear(const DoubleArray& result, const DoubleArray& expected, double tolerance) {
  ASSERT_EQ(result.rows(), expected.rows());
  ASSERT_EQ(result.columns(), expected.columns());
  for (Index i = 1; i <= expected.rows(); ++i) {
    for (Index j = 1; j <= expected.columns(); ++j) {
      EXPECT_NEAR(result(i, j), expected(i, j), tolerance * std::fabs(expected(i, j))) << i << ", " << j;
    }
  }
}

// R's `stackloss` (Brownlee 1960): air flow, water temperature, acid concentration; and the loss.
const DoubleArray stackLoss{42, 37, 37, 28, 18, 18, 19, 20, 15, 14, 14, 13, 11, 12, 8, 7, 8, 8, 9, 15, 15};
const DoubleArray stackConditions = DoubleArray::table(
    {{80, 27, 89}, {80, 27, 88}, {75, 25, 90}, {62, 24, 87}, {62, 22, 87}, {62, 23, 87}, {62, 24, 93},
     {62, 24, 93}, {58, 23, 87}, {58, 18, 80}, {58, 18, 89}, {58, 17, 88}, {58, 18, 82}, {58, 19, 93},
     {50, 18, 89}, {50, 18, 86}, {50, 19, 72}, {50, 19, 79}, {50, 20, 80}, {56, 20, 82}, {70, 20, 91}});

// Fault: the order of the coefficients, a standard error, a sum of squares or its degrees of freedom wrong.
TEST(LinEst, GivesCoefficientsAndStatistics) {
  // R: summary(lm(stack.loss ~ ., stackloss)).
  expectNear(f.LinEst(stackLoss, stackConditions, true, true),
             DoubleArray::table(
                 {{-0.15212251914865260, 1.29528612438857293, 0.71564020048528332, -39.91967442012396106},
                  {0.15629404324862134, 0.36802426527270421, 0.13485818535537247, 11.89599685064426993},
                  {0.91357690446068163, 3.2433639181852292, NoValue, NoValue},
                  {59.902225899656621, 17, NoValue, NoValue},
                  {1890.4081336397362, 178.82996159835932, NoValue, NoValue}}),
             1e-12);
  // R: the same with 0 + air flow + water temperature; sums of squares about 0.
  DoubleArray two(21, 2, 0.0);
  for (Index i = 1; i <= 21; ++i) {
    for (Index j = 1; j <= 2; ++j) two(i, j) = stackConditions(i, j);
  }
  expectNear(f.LinEst(stackLoss, two, false, true),
             DoubleArray::table({{0.057151521052141156, 0.285805705894181639, 0},
                                 {0.84547744998700680, 0.29507262910526993, NoValue},
                                 {0.85956182643384205, 7.9347747702473805, NoValue},
                                 {58.145425447837503, 19, NoValue},
                                 {7321.7476375634651, 1196.2523624365331, NoValue}}),
             1e-12);
  const DoubleArray row = f.LinEst(stackLoss, stackConditions, true, false);
  EXPECT_EQ(row.rows(), 1);
  EXPECT_EQ(row.columns(), 4);
}

// Fault: digits lost to nearly collinear variables, as by the normal equations (R's `longley`, Longley 1967;
// certified by NIST: 1829.15146461355 for the year, employment in thousands).
TEST(LinEst, KeepsDigitsOnLongleysData) {
  const DoubleArray employed{60.323, 61.122, 60.171, 61.187, 63.221, 63.639, 64.989, 63.761,
                             66.019, 67.857, 68.169, 66.513, 68.655, 69.564, 69.331, 70.551};
  const DoubleArray x = DoubleArray::table({{83, 234.289, 235.6, 159, 107.608, 1947},
                                            {88.5, 259.426, 232.5, 145.6, 108.632, 1948},
                                            {88.2, 258.054, 368.2, 161.6, 109.773, 1949},
                                            {89.5, 284.599, 335.1, 165, 110.929, 1950},
                                            {96.2, 328.975, 209.9, 309.9, 112.075, 1951},
                                            {98.1, 346.999, 193.2, 359.4, 113.27, 1952},
                                            {99, 365.385, 187, 354.7, 115.094, 1953},
                                            {100, 363.112, 357.8, 335, 116.219, 1954},
                                            {101.2, 397.469, 290.4, 304.8, 117.388, 1955},
                                            {104.6, 419.18, 282.2, 285.7, 118.734, 1956},
                                            {108.4, 442.769, 293.6, 279.8, 120.445, 1957},
                                            {110.8, 444.546, 468.1, 263.7, 121.95, 1958},
                                            {112.6, 482.704, 381.3, 255.2, 123.366, 1959},
                                            {114.2, 502.601, 393.1, 251.4, 125.368, 1960},
                                            {115.7, 518.173, 480.6, 257.2, 127.852, 1961},
                                            {116.9, 554.894, 400.7, 282.7, 130.081, 1962}});
  const DoubleArray result = f.LinEst(employed, x, true, false);
  EXPECT_NEAR(result(1, 1), 1.82915146461355, 1e-10);
  EXPECT_NEAR(result(1, 5), -0.0358191792925910, 1e-11);
  EXPECT_NEAR(result(1, 7), -3482.25863459582, 1e-7);
}

// Fault: a division by a residual of 0, or rounding taken for one; a collinear variable that ruins the fit.
TEST(LinEst, TakesPerfectAndDegenerateFits) {
  const DoubleArray x{1, 2, 3, 4};
  expectNear(f.LinEst(DoubleArray{0.3, 0.5, 0.7, 0.9}, x, true, true),
             DoubleArray::table({{0.2, 0.1}, {0, 0}, {1, 0}, {NoValue, 2}, {0.2, 0}}), 1e-13);
  expectNear(f.LinEst(DoubleArray{3, 5}, DoubleArray{1, 2}, true, true),
             DoubleArray::table({{2, 1}, {NoValue, NoValue}, {1, NoValue}, {NoValue, 0}, {2, 0}}), 1e-13);
  // The second variable is twice the first: R's lm gives it no coefficient and 2 degrees of freedom.
  const DoubleArray twice = DoubleArray::table({{1, 2}, {2, 4}, {3, 6}, {4, 8}});
  const DoubleArray both = f.LinEst(DoubleArray{1, 3, 2, 5}, twice, true, true);
  const DoubleArray one = f.LinEst(DoubleArray{1, 3, 2, 5}, x, true, true);
  EXPECT_EQ(both(1, 1), 0);
  EXPECT_EQ(both(2, 1), 0);
  EXPECT_EQ(both(1, 2), one(1, 1));
  EXPECT_EQ(both(4, 2), 2);
  // A constant y leaves nothing to explain, a constant x nothing to explain with.
  EXPECT_EQ(f.LinEst(DoubleArray{7, 7, 7, 7}, x, true, true)(3, 1), NoValue);
  EXPECT_EQ(f.LinEst(DoubleArray{1, 3, 2, 6}, DoubleArray(4, 0.1), true, false),
            DoubleArray::table({{0, 3}}));
  EXPECT_EQ(failureNumber([&] { f.LinEst(x, DoubleArray{1, 2, 3}, true, true); }), 1004);
  EXPECT_EQ(failureNumber([&] { f.LinEst(DoubleArray(), x, true, true); }), 1004);
}

// Fault: variables in rows read as columns, or absent known x that are not 1, 2, 3, ...
TEST(LinEst, TakesVariablesInRowsAndCountsWithoutThem) {
  // R: summary(lm(c(1, 3, 2, 5) ~ c(1, 2, 3, 4) + c(2, 1, 5, 3))).
  const DoubleArray rows = DoubleArray::table({{1, 2, 3, 4}, {2, 1, 5, 3}});
  expectNear(f.LinEst(DoubleArray::table({{1, 3, 2, 5}}), rows, true, true),
             DoubleArray::table({{-0.65079365079365079, 1.5555555555555556, 0.65079365079365079},
                                 {0.070986284999993335, 0.093906028303168507, 0.22947352848890418},
                                 {0.99637188208616780, 0.17817416127494962, NoValue},
                                 {137.3125, 1, NoValue},
                                 {8.71825396825397, 0.03174603174603, NoValue}}),
             1e-12);
  // R: summary(lm(c(1, 3, 2, 5) ~ c(1, 2, 3, 4))); the constant is 0 by hand.
  const DoubleArray counted = f.LinEst(DoubleArray{1, 3, 2, 5}, DoubleArray(), true, true);
  EXPECT_NEAR(counted(1, 1), 1.1, 1e-15);
  EXPECT_NEAR(counted(1, 2), 0, 1e-15);
  EXPECT_NEAR(counted(4, 1), 4.4814814814814815, 1e-14);
}

// Fault: residuals of y far from 0 taken for rounding, or squares that leave the range of a double.
TEST(LinEst, KeepsSmallResidualsApartFromRounding) {
  const DoubleArray x{1, 2, 3, 4, 5, 6};
  DoubleArray far(6, 0.0);
  const double noise[] = {1, -1, 2, -2, 1, -1};
  for (Index i = 1; i <= 6; ++i) far(i) = 1e9 + static_cast<double>(i) + noise[i - 1] * 1e-6;
  // Exact fractions of the doubles as stored (python3), R on y - 1e9 agrees.
  const DoubleArray fit = f.LinEst(far, x, true, true);
  EXPECT_NEAR(fit(1, 1), 0.99999977520533970, 1e-15);
  EXPECT_NEAR(fit(2, 1), 3.9582701208577163e-7, 1e-15);
  // R: summary(lm(c(1, 2, 4, 4) ~ c(1, 2, 3, 4))).
  const DoubleArray small =
      f.LinEst(DoubleArray{1e-200, 2e-200, 4e-200, 4e-200}, DoubleArray{1, 2, 3, 4}, true, true);
  EXPECT_NEAR(small(2, 1), 0.26457513110645908e-200, 1e-214);
  EXPECT_NEAR(small(2, 2), 0.72456883730947208e-200, 1e-214);
  EXPECT_NEAR(small(3, 1), 0.89629629629629626, 1e-14);
  EXPECT_NEAR(small(3, 2), 0.59160797830996170e-200, 1e-214);
  EXPECT_NEAR(small(4, 1), 17.285714285714285, 1e-12);
  EXPECT_EQ(small(5, 2), 0);
}

// Fault: digits lost to the length of the columns. Exact fractions of the doubles as stored (python3).
TEST(Lines, KeepDigitsOfAMillionRows) {
  constexpr Index n = 1000000;
  DoubleArray x(n, 0.0);
  DoubleArray y(n, 0.0);
  for (Index i = 1; i <= n; ++i) {
    x(i) = 0.1 * static_cast<double>(i);
    y(i) = 2.3 * x(i) + 1.7;
  }
  EXPECT_NEAR(f.Slope(y, x), 2.3, 3e-15);
  const DoubleArray fit = f.LinEst(y, x, true, true);
  EXPECT_NEAR(fit(1, 1), 2.3, 3e-15);
  EXPECT_EQ(fit(5, 2), 0);
}

// Fault: deviations about a mean that is rounded to a double. The first by hand, the second from exact
// fractions of the doubles as stored (python3, mpmath for the root).
TEST(Lines, KeepDigitsOfValuesFarFromZero) {
  const DoubleArray last{9007199254740990, 9007199254740991};
  EXPECT_EQ(f.Slope(DoubleArray{1, 2}, last), 1);
  EXPECT_EQ(f.Intercept(DoubleArray{1, 2}, last), -9007199254740989);
  const DoubleArray far{1e12, 1e12 + 1e-3, 1e12 + 2e-3, 1e12 + 5e-3};
  const DoubleArray y{1, 2, 4, 4};
  EXPECT_NEAR(f.Slope(y, far), 565.78777454353003, 1e-12);
  EXPECT_NEAR(f.Intercept(y, far), -565787774543528.41, 1);
  EXPECT_NEAR(f.Correl(y, far), 0.81709053414519484, 1e-15);
  EXPECT_NEAR(f.LinEst(y, far, true, true)(2, 1), 282.27652064760110, 1e-11);
}

// Fault: sums of squares that cancel far from 0 or leave the range of a double, a constant column that
// rounding makes vary. R: lm(dist ~ speed, cars) and cor on the same rows.
TEST(Lines, SlopeInterceptAndCorrelation) {
  const DoubleArray speed{4,  4,  7,  7,  8,  9,  10, 10, 10, 11, 11, 12, 12, 12, 12, 13, 13,
                          13, 13, 14, 14, 14, 14, 15, 15, 15, 16, 16, 17, 17, 17, 18, 18, 18,
                          18, 19, 19, 19, 20, 20, 20, 20, 20, 22, 23, 24, 24, 24, 24, 25};
  const DoubleArray distance{2,  10, 4,  22, 16, 10, 18, 26, 34, 17, 28, 14, 20, 24, 28,  26, 34,
                             34, 46, 26, 36, 60, 80, 20, 26, 54, 32, 40, 32, 40, 50, 42,  56, 76,
                             84, 36, 46, 68, 32, 48, 52, 56, 64, 66, 54, 70, 92, 93, 120, 85};
  EXPECT_NEAR(f.Slope(distance, speed), 3.9324087591240855, 1e-14);
  EXPECT_NEAR(f.Intercept(distance, speed), -17.5790948905108948, 1e-13);
  EXPECT_NEAR(f.Correl(distance, speed), 0.80689490068921044, 1e-15);
  EXPECT_EQ(f.Slope(DoubleArray{1e9 + 1, 1e9 + 2, 1e9 + 3}, DoubleArray{1e9, 1e9 + 1, 1e9 + 2}), 1);
  EXPECT_EQ(f.Slope(DoubleArray{2e200, 4e200, 6e200}, DoubleArray{1e200, 2e200, 3e200}), 2);
  EXPECT_EQ(f.Slope(DoubleArray{2e-200, 4e-200, 6e-200}, DoubleArray{1e-200, 2e-200, 3e-200}), 2);
  EXPECT_EQ(f.Slope(DoubleArray(3, 0.1), DoubleArray{1, 2, 4}), 0);
  for (const auto& call : std::initializer_list<std::function<void()>>{
           [] {
             f.Slope(DoubleArray{1, 2, 4}, DoubleArray(3, 0.1));
           },
           [] {
             f.Correl(DoubleArray{1, 2, 4}, DoubleArray(3, 0.1));
           },
           [] {
             f.Intercept(DoubleArray{1, 2}, DoubleArray{1, 2, 3});
           },
           [] { f.Slope(DoubleArray{1}, DoubleArray{1}); }, [] { f.Average(DoubleArray()); },
           [] {
             f.Sum(DoubleArray{1e308, 1e308});
           },
           [] {
             f.Max(DoubleArray{1, std::nan("")});
           }}) {
    EXPECT_EQ(failureNumber(call), 1004);
  }
  const DoubleArray table = DoubleArray::table({{3, -1}, {1e16, 1}});
  EXPECT_EQ(f.Max(table), 1e16);
  EXPECT_EQ(f.Min(table), -1);
  EXPECT_EQ(f.Sum(DoubleArray{1, 1e100, 1, -1e100}), 2);
  EXPECT_EQ(f.Average(DoubleArray{1, 2, 4.5}), 2.5);
}

DoubleArray hilbert(Index n) {
  DoubleArray matrix(n, n, 0.0);
  for (Index i = 1; i <= n; ++i) {
    for (Index j = 1; j <= n; ++j) matrix(i, j) = 1.0 / static_cast<double>(i + j - 1);
  }
  return matrix;
}

// Fault: an inverse without a certain digit, or the refusal of one that has some. The last element of the
// inverse of the Hilbert matrix of order 10, rounded to doubles: exact fractions (python3).
TEST(MInverse, RefusesWhatIsSingularToWorkingPrecision) {
  EXPECT_NEAR(f.MInverse(hilbert(10))(10, 10), 44910271676.752, 44910271676.752 * 1e-4);
  EXPECT_EQ(failureNumber([] { f.MInverse(hilbert(13)); }), 1004);
}

// Fault: rows or columns of the inverse in pivoting order, a singular matrix that passes, a regular one in
// mixed units that does not. The inverse of the Hilbert matrix of order 4 is whole (hand arithmetic).
TEST(MInverse, InvertsOrRefuses) {
  expectNear(f.MInverse(hilbert(4)),
             DoubleArray::table({{16, -120, 240, -140},
                                 {-120, 1200, -2700, 1680},
                                 {240, -2700, 6480, -4200},
                                 {-140, 1680, -4200, 2800}}),
             1e-11);
  expectNear(f.MInverse(DoubleArray::table({{0, 2, 0}, {0, 0, 4}, {1, 0, 3}})),
             DoubleArray::table({{0, -0.75, 1}, {0.5, 0, 0}, {0, 0.25, 0}}), 1e-15);
  expectNear(f.MInverse(DoubleArray::table({{1e-200, 0}, {1, 1e150}})),
             DoubleArray::table({{1e200, 0}, {-1e50, 1e-150}}), 1e-14);
  for (const DoubleArray& bad :
       {DoubleArray::table({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}), DoubleArray::table({{1, 0}, {2, 0}}),
        DoubleArray::table({{1, 2}}), DoubleArray::table({{1, std::nan("")}, {2, 0}}), DoubleArray{1, 2},
        DoubleArray()}) {
    EXPECT_EQ(failureNumber([&] { f.MInverse(bad); }), 1004);
  }
}

}  // namespace
}  // namespace zelkova
