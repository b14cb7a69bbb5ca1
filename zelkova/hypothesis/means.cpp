#include <cmath>
#include <string_view>
#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/hypothesis/checkSummary.h"
#include "zelkova/hypothesis/verdict.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/kit/modzStat.h"

namespace zelkova {

using hypothesis::checkSummary;
using hypothesis::judge;
using hypothesis::Reference;
using hypothesis::Verdict;
using hypothesis::zReference;

namespace {

struct Sample {
  double n, mean, sd;

  double se() const { return checked::quotient(sd, checked::root(n)); }
};

/// A summary that the caller made, in the arguments of these names.
Sample given(double n, const char* nameOfN, double mean, double sd, const char* nameOfSD) {
  checkSummary(n, nameOfN, sd, nameOfSD);
  return {n, mean, sd};
}

Sample summary(const DoubleArray& dy) {
  return {static_cast<double>(GetCount(dy)), GetMean(dy), GetStdDev(dy)};
}

Reference tReference(WorksheetFunction& host, double t, double df, double CLevel) {
  const double upperTail = host.TDist(std::abs(t), df, 1);
  double alpha = 1 - CLevel;
  const double half = alpha / 2;
  // deliberate: with a confidence below 0.5 the one-sided limit is taken on the other side of the mean, where
  // its quantile exists.
  if (2 * alpha > 1) alpha = 1 - alpha;
  const double twoSided = host.TInv(2 * half, df);
  const double oneSided = host.TInv(2 * alpha, df);
  return {1 - upperTail, upperTail, oneSided, twoSided};
}

DoubleArray oneZ(WorksheetFunction& host, const Sample& sample, double Sigma, double TestMean, double CLevel,
                 std::string_view testType) {
  if (Sigma < 0) raise(FailureNumber::InvalidCall, "Sigma must not be negative");
  const double se = checked::quotient(Sigma, checked::root(sample.n));
  const double z = checked::quotient(sample.mean - TestMean, se);
  const Verdict verdict = judge(host, testType, z, sample.mean, se, CLevel, zReference(host, z, CLevel));

  DoubleArray result(OneZ::size);
  result(OneZ::Sigma) = Sigma;
  result(OneZ::TestMean) = TestMean;
  result(OneZ::CLevel) = CLevel;
  result(OneZ::N) = sample.n;
  result(OneZ::Mean) = sample.mean;
  result(OneZ::SD) = sample.sd;
  result(OneZ::SE) = se;
  result(OneZ::Lower) = verdict.lower;
  result(OneZ::Upper) = verdict.upper;
  result(OneZ::Z) = z;
  result(OneZ::PValue) = verdict.p;
  checked::leaving(result);
  return result;
}

DoubleArray oneT(WorksheetFunction& host, const Sample& sample, double TestMean, double CLevel,
                 std::string_view testType) {
  const double se = sample.se();
  const double t = checked::quotient(sample.mean - TestMean, se);
  const Verdict verdict =
      judge(host, testType, t, sample.mean, se, CLevel, tReference(host, t, sample.n - 1, CLevel));

  DoubleArray result(OneT::size);
  result(OneT::TestMean) = TestMean;
  result(OneT::CLevel) = CLevel;
  result(OneT::N) = sample.n;
  result(OneT::Mean) = sample.mean;
  result(OneT::SD) = sample.sd;
  result(OneT::SE) = se;
  result(OneT::Lower) = verdict.lower;
  result(OneT::Upper) = verdict.upper;
  result(OneT::T) = t;
  result(OneT::PValue) = verdict.p;
  checked::leaving(result);
  return result;
}

/// Degrees of freedom, and the standard error of the difference of two means.
struct Spread {
  double df, se;
};

Spread pooledSpread(const Sample& one, const Sample& two) {
  const double df = one.n + two.n - 2;
  const double variance =
      checked::quotient(one.sd * one.sd * (one.n - 1) + two.sd * two.sd * (two.n - 1), df);
  return {df, checked::root(variance * (checked::quotient(1, one.n) + checked::quotient(1, two.n)))};
}

Spread welchSpread(const Sample& one, const Sample& two) {
  const double v1 = one.se() * one.se();
  const double v2 = two.se() * two.se();
  // In shares of the sum, so that the fourth powers of a small spread do not underflow.
  const double share1 = checked::quotient(v1, v1 + v2);
  const double share2 = checked::quotient(v2, v1 + v2);
  const double df = checked::quotient(
      1, checked::quotient(share1 * share1, one.n - 1) + checked::quotient(share2 * share2, two.n - 1));
  // The rule means exact arithmetic: equal spreads and sizes give a whole number, which rounding must not
  // push below itself before it is rounded down.
  const double whole = roundHalfEven(df);
  const bool isWhole = std::abs(df - whole) <= 1e-9 * whole;
  return {isWhole ? whole : std::floor(df), checked::root(v1 + v2)};
}

/// The slots that the results of two samples begin with.
template <class Slots>
void putSamples(DoubleArray& result, const Sample& one, const Sample& two) {
  result(Slots::N1) = one.n;
  result(Slots::Mean1) = one.mean;
  result(Slots::SD1) = one.sd;
  result(Slots::SE1) = one.se();
  result(Slots::N2) = two.n;
  result(Slots::Mean2) = two.mean;
  result(Slots::SD2) = two.sd;
  result(Slots::SE2) = two.se();
}

DoubleArray twoT(WorksheetFunction& host, const Sample& one, const Sample& two, double TestMeanD,
                 double CLevel, std::string_view testType, bool equalVariance) {
  const double difference = one.mean - two.mean;
  const Spread spread = equalVariance ? pooledSpread(one, two) : welchSpread(one, two);
  const double t = checked::quotient(difference - TestMeanD, spread.se);
  const Verdict verdict =
      judge(host, testType, t, difference, spread.se, CLevel, tReference(host, t, spread.df, CLevel));

  DoubleArray result(TwoT::size);
  putSamples<TwoT>(result, one, two);
  result(TwoT::Difference) = difference;
  result(TwoT::Lower) = verdict.lower;
  result(TwoT::Upper) = verdict.upper;
  result(TwoT::TestMeanD) = TestMeanD;
  result(TwoT::DF) = spread.df;
  result(TwoT::T) = t;
  result(TwoT::PValue) = verdict.p;
  result(TwoT::CLevel) = CLevel;
  checked::leaving(result);
  return result;
}

}  // namespace

void yHTest::OneZOutput(const DoubleArray& dy, double Sigma, double TestMean, double CLevel,
                        const std::string& TestType, DoubleArray& OneZValue) const {
  OneZValue = oneZ(worksheetFunction(), summary(dy), Sigma, TestMean, CLevel, TestType);
}

void yHTest::OneZOutput_S(double dn, double dMean, double dSD, double Sigma, double TestMean, double CLevel,
                          const std::string& TestType, DoubleArray& OneZValue) const {
  OneZValue =
      oneZ(worksheetFunction(), given(dn, "dn", dMean, dSD, "dSD"), Sigma, TestMean, CLevel, TestType);
}

void yHTest::OneTOutput(const DoubleArray& dy, double TestMean, double CLevel, const std::string& TestType,
                        DoubleArray& OneTValue) const {
  OneTValue = oneT(worksheetFunction(), summary(dy), TestMean, CLevel, TestType);
}

void yHTest::OneTOutput_S(double dn, double dMean, double dSD, double TestMean, double CLevel,
                          const std::string& TestType, DoubleArray& OneTValue) const {
  OneTValue = oneT(worksheetFunction(), given(dn, "dn", dMean, dSD, "dSD"), TestMean, CLevel, TestType);
}

void yHTest::TwoTOutput(const DoubleArray& dy1, const DoubleArray& dy2, double TestMeanD, double CLevel,
                        const std::string& TestType, bool EqualVariance, DoubleArray& TwoTValue) const {
  TwoTValue =
      twoT(worksheetFunction(), summary(dy1), summary(dy2), TestMeanD, CLevel, TestType, EqualVariance);
}

void yHTest::TwoTOutput_S(double dMean1, double dSD1, double dn1, double dMean2, double dSD2, double dn2,
                          double TestMeanD, double CLevel, const std::string& TestType, bool EqualVariance,
                          DoubleArray& TwoTValue) const {
  TwoTValue = twoT(worksheetFunction(), given(dn1, "dn1", dMean1, dSD1, "dSD1"),
                   given(dn2, "dn2", dMean2, dSD2, "dSD2"), TestMeanD, CLevel, TestType, EqualVariance);
}

void yHTest::PairedTOutput(const DoubleArray& dy1, const DoubleArray& dy2, double TestMeanD, double CLevel,
                           const std::string& TestType, DoubleArray& PTValue, DoubleArray& Difference) const {
  DoubleArray d(dy1.rows());
  for (Index i = 1; i <= d.rows(); ++i) d(i) = dy1(i) - dy2(i);
  checked::leaving(d);

  const Sample one = summary(dy1);
  const Sample two = summary(dy2);
  const Sample pairs = summary(d);
  const double se = pairs.se();
  const double df = pairs.n - 1;
  Verdict verdict{NoValue, NoValue, NoValue};
  double t = NoValue;
  if (pairs.sd != 0) {
    t = checked::quotient(pairs.mean - TestMeanD, se);
    verdict = judge(worksheetFunction(), TestType, t, pairs.mean, se, CLevel,
                    tReference(worksheetFunction(), t, df, CLevel));
  }

  DoubleArray result(PairedT::size);
  putSamples<PairedT>(result, one, two);
  result(PairedT::NDifference) = pairs.n;
  result(PairedT::MeanDifference) = pairs.mean;
  result(PairedT::SDDifference) = pairs.sd;
  result(PairedT::SEDifference) = se;
  result(PairedT::Lower) = verdict.lower;
  result(PairedT::Upper) = verdict.upper;
  result(PairedT::TestMeanD) = TestMeanD;
  result(PairedT::DF) = df;
  result(PairedT::T) = t;
  result(PairedT::PValue) = verdict.p;
  result(PairedT::CLevel) = CLevel;
  checked::leaving(result);
  PTValue = std::move(result);
  Difference = std::move(d);
}

}  // namespace zelkova
