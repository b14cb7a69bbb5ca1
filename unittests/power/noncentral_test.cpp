#include "zelkova/power/noncentral.h"

#include <gtest/gtest.h>

#include "host/EmbeddedWorksheetFunction.h"

namespace zelkova::power {
namespace {

// Faults: a series that stops before it has its 6 digits (for a large noncentrality its terms are small, but
// many), that takes starting terms near 0 or 1 for the whole, that loses the sign of delta or of t, or that
// runs out of the range of a double. Expected: R, pt(t, df, delta); from a delta of 2000 on, beyond R's
// reach, mpmath's quadrature of the normal distribution over that of the standard deviation; t = 40 with
// delta 37 likewise, as R is off there. A delta of 1e30 leaves P(chi-square / 2 >= 1) = exp(-1), by hand.
TEST(Noncentral, TAgreesWithR) {
  EmbeddedWorksheetFunction host;
  const struct {
    double t, df, delta, p;
  } cases[] = {{2, 5, 1.5, 0.631449247255621},      {-2, 5, 1.5, 0.00151658545247324},
               {2, 5, -1.5, 0.998483414547527},     {-2.5, 8, -3, 0.690120650043726},
               {0.3, 3, 4, 0.000109120588853089},   {0, 12, 1.2, 0.115069670221708},
               {1e-11, 7, 1, 0.158655253933792},    {-1e-11, 7, 1, 0.158655253929122},
               {3, 20, 0, 0.996462050604394},       {-3, 20, 0, 0.00353794939960555},
               {2.5, 9, 1e-11, 0.983069086158135},  {-2.5, 9, 1e-11, 0.016930913841121},
               {1, 1, 0.5, 0.59274773643996},       {1000, 5, 1, 0.999999999999729},
               {-1000, 2, 5, 2.54130050336698e-13}, {5, 7, 10, 0.00150225525457491},
               {15, 3, 20, 0.151777680518062},      {33, 200, 30, 0.938393541446548},
               {4, 1e6, 2, 0.977249382131556},      {40, 1e5, 37, 0.998595832962685},
               {2500, 1, 2000, 0.423710834247309},  {-2010, 10000, -2000, 1 - 0.757327429180033},
               {1.1e6, 20, 1e6, 0.683316293499921}, {1e30, 2, 1e30, 0.367879441171442}};
  for (const auto& c : cases) {
    EXPECT_NEAR(GetNCTDist(host, c.t, c.df, c.delta), c.p, 5e-7) << c.t << " " << c.df << " " << c.delta;
  }
}

// Faults as above. Expected: R, pf(x, df1, df2, lambda).
TEST(Noncentral, FAgreesWithR) {
  EmbeddedWorksheetFunction host;
  const struct {
    double x, df1, df2, lambda, p;
  } cases[] = {{2, 3, 10, 4, 0.466364215969664},         {0.5, 3, 10, 4, 0.0768267558088046},
               {2.8, 4, 40, 12.5, 0.271168760779125},    {5, 1, 8, 0.3, 0.914748446907141},
               {0.5, 1, 1000, 30, 9.22191252716987e-07}, {40, 5, 1000, 100, 0.999923289785841},
               {60, 30, 4, 2000, 0.341885519818727},     {3, 2, 12, 0, 0.912208504801097},
               {4, 2, 12, 1e-11, 0.95334399999944},      {-1, 2, 3, 4, 0}};
  for (const auto& c : cases) {
    EXPECT_NEAR(GetNCFDist(host, c.x, c.df1, c.df2, c.lambda), c.p, 5e-7) << c.x << " " << c.lambda;
  }
  EXPECT_LT(GetNCFDist(host, 0.5, 1, 1000, 30), 2e-6);
  // Hand: with one degree of freedom above, F is the square of t, so P(F <= 4e6) is P(-2000 <= T <= 2000).
  EXPECT_NEAR(GetNCFDist(host, 4e6, 1, 100, 4e6), 0.481192388555598, 1e-9);
}

// Fault: the bound of either rule lost.
TEST(Noncentral, ConvergesByTermOrByNothing) {
  EXPECT_TRUE(GetConverged(2e-6, 2));
  EXPECT_FALSE(GetConverged(2.1e-6, 2));
  EXPECT_TRUE(GetConverged(1, 0.9e-20));
  EXPECT_FALSE(GetConverged(1, 1e-20));
}

}  // namespace
}  // namespace zelkova::power
