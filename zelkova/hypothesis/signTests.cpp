#include <algorithm>
#include <string_view>
#include <utility>

#include "zelkova/frame/TestType.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/hypothesis/chiSquareTerm.h"
#include "zelkova/hypothesis/ranking.h"
#include "zelkova/hypothesis/signInterval.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/kit/groups.h"
#include "zelkova/kit/summary.h"

namespace zelkova {

using hypothesis::chiSquareTerm;

namespace {

/// Of n signs, half of them positive by chance: the probability of `count` or more of one kind.
double signTail(WorksheetFunction& host, Index count, Index n) {
  if (count < 1) return 1;
  // The upper tail is the lower one from the other end, where small probabilities keep their digits.
  return host.BinomDist(static_cast<double>(n - count), static_cast<double>(n), 0.5, true);
}

double signPValue(WorksheetFunction& host, std::string_view testType, Index below, Index above) {
  const Index n = below + above;
  if (n == 0) return 1;
  if (testType == TestType::LessThan) return signTail(host, below, n);
  if (testType == TestType::GreaterThan) return signTail(host, above, n);
  if (testType == TestType::NotEquals) return std::min(1.0, 2 * signTail(host, std::max(below, above), n));
  return NoValue;
}

struct AboutMedian {
  double atOrBelow, above;
};

AboutMedian countsAbout(double median, std::span<const double> sorted) {
  const auto firstAbove = std::upper_bound(sorted.begin(), sorted.end(), median);
  return {static_cast<double>(firstAbove - sorted.begin()), static_cast<double>(sorted.end() - firstAbove)};
}

}  // namespace

void yHTest::OneSignOutput(const DoubleArray& dy, double TestMedian, double CLevel,
                           const std::string& TestType, DoubleArray& OneSignValue) const {
  const std::vector<double> sorted = summary::sortedCopy(dy);
  const auto [firstEqual, firstAbove] = std::equal_range(sorted.begin(), sorted.end(), TestMedian);
  const Index below = firstEqual - sorted.begin();
  const Index above = sorted.end() - firstAbove;
  const auto [inner, interpolated, outer] = signInterval(worksheetFunction(), sorted, CLevel);

  DoubleArray result(OneSign::size);
  result(OneSign::N) = static_cast<double>(sorted.size());
  result(OneSign::Median) = summary::median(sorted);
  result(OneSign::Below) = static_cast<double>(below);
  result(OneSign::Above) = static_cast<double>(above);
  result(OneSign::PValue) = signPValue(worksheetFunction(), TestType, below, above);
  result(OneSign::NonEqual) = static_cast<double>(below + above);
  result(OneSign::InnerCoverage) = inner.coverage;
  result(OneSign::CLevel) = interpolated.coverage;
  result(OneSign::OuterCoverage) = outer.coverage;
  result(OneSign::InnerLower) = inner.lower;
  result(OneSign::InterpolatedLower) = interpolated.lower;
  result(OneSign::OuterLower) = outer.lower;
  result(OneSign::InnerUpper) = inner.upper;
  result(OneSign::InterpolatedUpper) = interpolated.upper;
  result(OneSign::OuterUpper) = outer.upper;
  result(OneSign::InnerPlace) = inner.place;
  result(OneSign::OuterPlace) = outer.place;
  result(OneSign::TestMedian) = TestMedian;
  checked::leaving(result);
  OneSignValue = std::move(result);
}

void yHTest::MoodsMOutput(const DoubleArray& dy, const StringArray& dx, DoubleArray& MoodsMValue_I,
                          DoubleArray& MoodsMValue, StringArray& Category, bool& Lessthan6) const {
  constexpr double confidence = 95.0 / 100;
  constexpr std::size_t enough = 6;
  Groups split = splitByLabel(dy, dx);
  const ranking::PooledGroups groups(split.values);
  const double median = ranking::median(groups.pooled());

  DoubleArray table(groups.count(), MoodsMGroup::size, NoValue);
  AboutMedian totals{0, 0};
  bool someFewer = false;
  for (Index g = 1; g <= groups.count(); ++g) {
    const std::span<const double> sorted = groups.sorted(g - 1);
    const auto [atOrBelow, above] = countsAbout(median, sorted);
    totals.atOrBelow += atOrBelow;
    totals.above += above;
    table(g, MoodsMGroup::AtOrBelow) = atOrBelow;
    table(g, MoodsMGroup::Above) = above;
    table(g, MoodsMGroup::Median) = summary::median(sorted);
    table(g, MoodsMGroup::InterquartileRange) =
        summary::upperQuartile(sorted) - summary::lowerQuartile(sorted);
    if (sorted.size() < enough) {
      someFewer = true;
      continue;
    }
    const auto limits = signInterval(worksheetFunction(), sorted, confidence).interpolated;
    table(g, MoodsMGroup::Lower) = limits.lower;
    table(g, MoodsMGroup::Upper) = limits.upper;
  }

  double chiSquare = 0;
  for (Index g = 1; g <= groups.count(); ++g) {
    const double atOrBelow = table(g, MoodsMGroup::AtOrBelow);
    const double above = table(g, MoodsMGroup::Above);
    const double share = (atOrBelow + above) / (totals.atOrBelow + totals.above);
    chiSquare += chiSquareTerm(atOrBelow, totals.atOrBelow * share);
    chiSquare += chiSquareTerm(above, totals.above * share);
  }
  if (groups.count() == 1) raise(FailureNumber::HostRefused, "ChiDist: dx has only one label");
  const auto df = static_cast<double>(groups.count() - 1);

  DoubleArray result(MoodsM::size);
  result(MoodsM::ChiSquare) = chiSquare;
  result(MoodsM::DF) = df;
  result(MoodsM::PValue) = worksheetFunction().ChiDist(chiSquare, df);
  result(MoodsM::Median) = median;
  checked::leaving(table, result);
  MoodsMValue_I = std::move(table);
  MoodsMValue = std::move(result);
  Category = std::move(split.labels);
  Lessthan6 = someFewer;
}

}  // namespace zelkova
