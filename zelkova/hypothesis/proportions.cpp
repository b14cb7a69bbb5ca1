#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/TestType.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/hypothesis/chiSquareTerm.h"
#include "zelkova/hypothesis/verdict.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/modzSupport.h"

namespace zelkova {

using hypothesis::chiSquareTerm;
using hypothesis::judge;
using hypothesis::Verdict;
using hypothesis::zReference;

namespace {

/// The share of events in a sample, arguments of these names. A share outside 0 to 1 would spoil the standard
/// error, and of two such samples one could hide behind the other.
double share(double events, const char* nameOfEvents, double trials, const char* nameOfTrials) {
  const double p = checked::quotient(events, trials);
  if (events < 0 || trials < 0 || events > trials) {
    raise(FailureNumber::InvalidCall, std::string(nameOfEvents) + " must be from 0 to " + nameOfTrials);
  }
  return p;
}

/// The verdict on a share, or on a difference of shares, which cannot be below `lowest` nor above 1.
Verdict judgeShare(WorksheetFunction& host, std::string_view testType, double z, double centre, double se,
                   double lowest, double CLevel) {
  Verdict verdict = judge(host, testType, z, centre, se, CLevel, zReference(host, z, CLevel));
  if (se != 0) {
    verdict.lower = host.Max(lowest, verdict.lower);
    verdict.upper = host.Min(1, verdict.upper);
    return verdict;
  }
  // deliberate: a sample without spread says nothing of its precision; the limit that the alternative leaves
  // open stays 0.
  const bool twoSided = testType == TestType::NotEquals;
  if (twoSided || testType == TestType::GreaterThan) verdict.lower = NoValue;
  if (twoSided || testType == TestType::LessThan) verdict.upper = NoValue;
  return verdict;
}

bool isCount(double x) { return x >= 0 && x == roundHalfEven(x); }

bool areCounts(std::span<const double> cells) { return std::all_of(cells.begin(), cells.end(), isCount); }

bool haveZero(std::span<const double> totals) {
  return std::find(totals.begin(), totals.end(), 0) != totals.end();
}

/// Refuses a column of that name that ends before the categories `dyy` do.
void checkReaches(const DoubleArray& column, const char* name, const Levels& categories) {
  if (column.rows() < static_cast<Index>(categories.codes().size())) {
    raise(FailureNumber::OutOfRange, std::string(name) + " has fewer elements than dyy");
  }
}

/// The proportion that the rows of each category agree on; never filled where they do not, or where one is
/// negative.
DoubleArray agreedProportions(const Levels& categories, const DoubleArray& byRow) {
  DoubleArray proportions(categories.count());
  for (Index i = 1; i <= categories.count(); ++i) {
    proportions(i) = byRow(categories.firsts()[static_cast<std::size_t>(i - 1)] + 1);
  }
  Index row = 0;
  for (const Index category : categories.codes()) {
    const double proportion = byRow(++row);
    if (proportion < 0 || proportion != proportions(category + 1)) return {};
  }
  return proportions;
}

}  // namespace

void yHTest::OnePOutput(double dx, double dn, double TestP, double CLevel, const std::string& TestType,
                        DoubleArray& OnePValue) const {
  const double p = share(dx, "dx", dn, "dn");
  if (TestP < 0 || TestP > 1) raise(FailureNumber::InvalidCall, "TestP must be above 0 and below 1");
  const double se = checked::root(checked::quotient(p * (1 - p), dn));
  // deliberate: the test takes the spread under the tested proportion, the limits that of the sample.
  const double z = checked::quotient(p - TestP, checked::root(checked::quotient(TestP * (1 - TestP), dn)));
  const Verdict verdict = judgeShare(worksheetFunction(), TestType, z, p, se, 0, CLevel);

  DoubleArray result(OneP::size);
  result(OneP::TestP) = TestP;
  result(OneP::CLevel) = CLevel;
  result(OneP::Events) = dx;
  result(OneP::Trials) = dn;
  result(OneP::P) = p;
  result(OneP::Lower) = verdict.lower;
  result(OneP::Upper) = verdict.upper;
  result(OneP::Z) = z;
  result(OneP::PValue) = verdict.p;
  checked::leaving(result);
  OnePValue = std::move(result);
}

void yHTest::TwoPOutput(double dx1, double dn1, double dx2, double dn2, double TestP, double CLevel,
                        const std::string& TestType, DoubleArray& TwoPValue) const {
  const double p1 = share(dx1, "dx1", dn1, "dn1");
  const double p2 = share(dx2, "dx2", dn2, "dn2");
  const double difference = p1 - p2;
  // deliberate: not pooled, so that any difference can be tested, and test and limits agree.
  const double se =
      checked::root(checked::quotient(p1 * (1 - p1), dn1) + checked::quotient(p2 * (1 - p2), dn2));
  Verdict verdict{NoValue, NoValue, NoValue};
  double z = NoValue;
  if (se != 0) {
    z = checked::quotient(difference - TestP, se);
    verdict = judgeShare(worksheetFunction(), TestType, z, difference, se, -1, CLevel);
  }

  DoubleArray result(TwoP::size);
  result(TwoP::TestP) = TestP;
  result(TwoP::CLevel) = CLevel;
  result(TwoP::Events1) = dx1;
  result(TwoP::Events2) = dx2;
  result(TwoP::Trials1) = dn1;
  result(TwoP::Trials2) = dn2;
  result(TwoP::P1) = p1;
  result(TwoP::P2) = p2;
  result(TwoP::Difference) = difference;
  result(TwoP::Lower) = verdict.lower;
  result(TwoP::Upper) = verdict.upper;
  result(TwoP::Z) = z;
  result(TwoP::PValue) = verdict.p;
  checked::leaving(result);
  TwoPValue = std::move(result);
}

void yHTest::ChisquareOutput(const DoubleArray& OFreq, DoubleArray& EFreq, DoubleArray& ChiTable,
                             DoubleArray& rowtotal, DoubleArray& coltotal, double& Obstotal,
                             DoubleArray& ChisquareValue, std::string& ErrorCode) const {
  const Index rows = OFreq.rows();
  const Index columns = OFreq.columns();
  if (!areCounts(OFreq.elements())) {
    ErrorCode = "Invalid data";
    return;
  }
  DoubleArray rowTotals(rows);
  DoubleArray columnTotals(columns);
  for (Index j = 1; j <= columns; ++j) {
    for (Index i = 1; i <= rows; ++i) {
      rowTotals(i) += OFreq(i, j);
      columnTotals(j) += OFreq(i, j);
    }
  }
  if (haveZero(rowTotals.vector())) {
    ErrorCode = "Rows all zeros";
    return;
  }
  if (haveZero(columnTotals.vector())) {
    ErrorCode = "Columns all zeros";
    return;
  }

  const double total = GetSum(rowTotals);
  DoubleArray expected(rows, columns, 0.0);
  DoubleArray contributions(rows, columns, 0.0);
  DoubleArray result(ChiSquareTest::size);
  for (Index j = 1; j <= columns; ++j) {
    for (Index i = 1; i <= rows; ++i) {
      const double e = checked::quotient(rowTotals(i) * columnTotals(j), total);
      expected(i, j) = e;
      contributions(i, j) = chiSquareTerm(OFreq(i, j), e);
      result(ChiSquareTest::ChiSquare) += contributions(i, j);
      if (e < 5) ++result(ChiSquareTest::ExpectedBelow5);
    }
  }
  result(ChiSquareTest::DF) = static_cast<double>((rows - 1) * (columns - 1));
  result(ChiSquareTest::PValue) =
      worksheetFunction().ChiDist(result(ChiSquareTest::ChiSquare), result(ChiSquareTest::DF));

  checked::leaving(expected, contributions, rowTotals, columnTotals, result);
  EFreq = std::move(expected);
  ChiTable = std::move(contributions);
  rowtotal = std::move(rowTotals);
  coltotal = std::move(columnTotals);
  Obstotal = total;
  ChisquareValue = std::move(result);
}

void yHTest::GOFOutput(const StringArray& dyy, const DoubleArray& dff, const DoubleArray& dPp,
                       StringArray& dy, DoubleArray& df, DoubleArray& dp, DoubleArray& dExp,
                       DoubleArray& ChiS, DoubleArray& Ctable, std::string& ErrorCode) const {
  const Levels levels(dyy.vector());
  StringArray categories = levels.distinct(dyy);
  const Index k = levels.count();

  checkReaches(dff, "dff", levels);
  if (IsFilledD(dPp)) checkReaches(dPp, "dPp", levels);
  DoubleArray observed(k);
  Index row = 0;
  for (const Index level : levels.codes()) {
    const double count = dff(++row);
    // Counts of other rows of the category could hide it.
    if (count < 0) {
      ErrorCode = "Invalid data";
      return;
    }
    observed(level + 1) += count;
  }
  const DoubleArray proportions =
      IsFilledD(dPp) ? agreedProportions(levels, dPp) : DoubleArray(k, 1 / static_cast<double>(k));
  if (!IsFilledD(proportions)) {
    ErrorCode = "Invalid Proportions";
    return;
  }

  const double total = GetSum(observed);
  DoubleArray expected(k);
  DoubleArray contributions(k);
  for (Index i = 1; i <= k; ++i) {
    expected(i) = total * proportions(i);
    contributions(i) = chiSquareTerm(observed(i), expected(i));
  }
  DoubleArray result(GoodnessOfFit::size);
  result(GoodnessOfFit::Total) = total;
  result(GoodnessOfFit::DF) = static_cast<double>(k - 1);
  result(GoodnessOfFit::ChiSquare) = GetSum(contributions);
  result(GoodnessOfFit::PValue) =
      worksheetFunction().ChiDist(result(GoodnessOfFit::ChiSquare), result(GoodnessOfFit::DF));

  checked::leaving(observed, proportions, expected, contributions, result);
  dy = std::move(categories);
  df = std::move(observed);
  dp = proportions;
  dExp = std::move(expected);
  ChiS = std::move(result);
  Ctable = std::move(contributions);
}

}  // namespace zelkova
