#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/hypothesis/checkSummary.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/kit/groups.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace {

struct Spread {
  double n, variance, sd;
};

Spread spreadOf(const DoubleArray& values) {
  const double variance = GetVariance(values);
  return {static_cast<double>(GetCount(values)), variance, std::sqrt(variance)};
}

/// A summary that the caller made, in the arguments of these names.
Spread given(double sd, const char* nameOfSD, double n, const char* nameOfN) {
  hypothesis::checkSummary(n, nameOfN, sd, nameOfSD);
  return {n, sd * sd, sd};
}

DoubleArray fTest(WorksheetFunction& host, const Spread& one, const Spread& two, double CLevel) {
  double ratio = NoValue;
  double p = NoValue;
  if (two.variance != 0) {
    ratio = checked::quotient(one.variance, two.variance);
    // deliberate: the larger variance stands on top, and six decimals keep equal variances equal.
    const double tail = ratio >= 1
                            ? host.FDist(roundHalfEven(ratio, 6), one.n - 1, two.n - 1)
                            : host.FDist(roundHalfEven(checked::quotient(1, ratio), 6), two.n - 1, one.n - 1);
    p = std::min(1.0, 2 * tail);
  }
  DoubleArray result(FTest::size);
  result(FTest::N1) = one.n;
  result(FTest::N2) = two.n;
  result(FTest::SD1) = one.sd;
  result(FTest::SD2) = two.sd;
  result(FTest::F) = ratio;
  result(FTest::PValue) = p;
  result(FTest::CLevel) = CLevel;
  checked::leaving(result);
  return result;
}

std::vector<Spread> spreadsOf(const Groups& groups) {
  std::vector<Spread> spreads;
  for (const DoubleArray& values : groups.values) spreads.push_back(spreadOf(values));
  return spreads;
}

double totalCount(const std::vector<Spread>& spreads) {
  double n = 0;
  for (const Spread& spread : spreads) n += spread.n;
  return n;
}

/// deliberate: 1 is a confidence here, see `chiSquareQuantile`.
void checkConfidence(double CLevel) {
  if (!(CLevel > 0 && CLevel <= 1)) {
    raise(FailureNumber::InvalidCall, "CLevel must be above 0 and not above 1");
  }
}

double chiSquareQuantile(WorksheetFunction& host, double upperTail, double df) {
  // deliberate: 1 stands for the quantiles that do not exist, at a confidence of 1 for instance.
  if (upperTail == 0 || upperTail == 1) return 1;
  // The opposite limit, whose tail rounds to 1, would be taken for one at a confidence of 1.
  if (1 - upperTail == 1) raise(FailureNumber::HostRefused, "ChiInv: CLevel is too close to 1");
  return host.ChiInv(upperTail, df);
}

/// sqrt(df variance / chi), chi being the point with the probability `upperTail` above it.
double sdLimit(WorksheetFunction& host, const Spread& spread, double upperTail) {
  const double df = spread.n - 1;
  const double chi = chiSquareQuantile(host, upperTail, df);
  return checked::root(checked::quotient(df * spread.variance, chi));
}

struct Statistic {
  double value = NoValue, p = NoValue;
};

/// The table of a test of equal variances: a row a group, the test in the last.
DoubleArray groupTable(WorksheetFunction& host, const Groups& groups, const std::vector<Spread>& spreads,
                       double CLevel, const Statistic& statistic) {
  const Index k = groups.count();
  const double oneSide = (1 - CLevel) / (2 * static_cast<double>(k));
  DoubleArray table(k, EqualVariances::size, NoValue);
  for (Index i = 1; i <= k; ++i) {
    const Spread& spread = spreads[static_cast<std::size_t>(i - 1)];
    table(i, EqualVariances::N) = spread.n;
    table(i, EqualVariances::Mean) = GetMean(groups.values[static_cast<std::size_t>(i - 1)]);
    table(i, EqualVariances::SD) = spread.sd;
    if (spread.variance == 0) continue;
    table(i, EqualVariances::Lower) = sdLimit(host, spread, oneSide);
    table(i, EqualVariances::Upper) = sdLimit(host, spread, 1 - oneSide);
  }
  table(k, EqualVariances::Statistic) = statistic.value;
  table(k, EqualVariances::PValue) = statistic.p;
  checked::leaving(table);
  return table;
}

Statistic bartlett(WorksheetFunction& host, const std::vector<Spread>& spreads) {
  const auto k = static_cast<double>(spreads.size());
  const double residualDF = totalCount(spreads) - k;
  double squares = 0;
  double inverseDF = 0;
  for (const Spread& spread : spreads) {
    if (spread.variance == 0) return {};
    squares += (spread.n - 1) * spread.variance;
    inverseDF += checked::quotient(1, spread.n - 1);
  }
  if (spreads.size() == 1) raise(FailureNumber::DivisionByZero, "dx has only one label");
  const double logPooled = checked::log(checked::quotient(checked::finite(squares), residualDF));
  double m = 0;
  // Taken together group by group: the two sums apart would cancel.
  for (const Spread& spread : spreads) m += (spread.n - 1) * (logPooled - checked::log(spread.variance));
  const double correction = 1 + checked::quotient(inverseDF - 1 / residualDF, 3 * (k - 1));
  const double value = checked::quotient(m, correction);
  // Rounding can leave equal variances a statistic just below 0.
  return {value, value < 0 ? 1 : host.ChiDist(value, k - 1)};
}

/// The distances of a group's values from their median.
struct Distances {
  double n, mean, squares;
};

Distances distancesOf(const DoubleArray& values) {
  const double median = GetMedian(values);
  DoubleArray distances = values;
  for (double& z : distances.elements()) z = std::abs(z - median);
  const double mean = GetMean(distances);
  const double squares = laneSum(distances.elements(), [mean](double z) { return (z - mean) * (z - mean); });
  // Two values, or two halves of equal ones, are equally far from their median. The rounding of median and
  // distance must not turn that into a spread, which would make any difference between groups significant.
  const double largest = std::max(std::abs(GetMin(values)), std::abs(GetMax(values)));
  const bool equal = GetRange(distances) <= 4 * std::numeric_limits<double>::epsilon() * largest;
  return {static_cast<double>(GetCount(values)), mean, equal ? 0 : checked::finite(squares)};
}

Statistic levene(WorksheetFunction& host, const Groups& groups) {
  std::vector<Distances> distances;
  double n = 0;
  double sum = 0;
  double within = 0;
  for (const DoubleArray& values : groups.values) {
    const Distances& group = distances.emplace_back(distancesOf(values));
    n += group.n;
    sum += group.n * group.mean;
    within += group.squares;
  }
  if (within == 0) return {};
  if (groups.count() == 1) raise(FailureNumber::DivisionByZero, "dx has only one label");
  const double grandMean = sum / n;
  double between = 0;
  for (const Distances& group : distances) {
    between += group.n * (group.mean - grandMean) * (group.mean - grandMean);
  }
  const auto k = static_cast<double>(groups.count());
  const double w = checked::quotient((n - k) * between, (k - 1) * within);
  return {w, host.FDist(w, k - 1, n - k)};
}

}  // namespace

void yHTest::FTestOutput(const DoubleArray& dy, const StringArray& dx, double CLevel, DoubleArray& FTestValue,
                         StringArray& Category) const {
  const Groups groups = splitByLabel(dy, dx);
  if (groups.count() < 2) raise(FailureNumber::OutOfRange, "dx has only one label");
  DoubleArray result =
      fTest(worksheetFunction(), spreadOf(groups.values[0]), spreadOf(groups.values[1]), CLevel);
  FTestValue = std::move(result);
  Category = {groups.labels(1), groups.labels(2)};
}

void yHTest::FTestOutput_S(double dSD1, double dn1, double dSD2, double dn2, double CLevel,
                           DoubleArray& FTestValue) const {
  FTestValue =
      fTest(worksheetFunction(), given(dSD1, "dSD1", dn1, "dn1"), given(dSD2, "dSD2", dn2, "dn2"), CLevel);
}

void yHTest::BarlettOutput(const DoubleArray& dy, const StringArray& dx, double CLevel,
                           DoubleArray& BarlettValue, StringArray& Category) const {
  checkConfidence(CLevel);
  Groups groups = splitByLabel(dy, dx);
  const std::vector<Spread> spreads = spreadsOf(groups);
  BarlettValue =
      groupTable(worksheetFunction(), groups, spreads, CLevel, bartlett(worksheetFunction(), spreads));
  Category = std::move(groups.labels);
}

void yHTest::LeveneOutput(const DoubleArray& dy, const StringArray& dx, double CLevel,
                          DoubleArray& LeveneValue, StringArray& Category) const {
  checkConfidence(CLevel);
  Groups groups = splitByLabel(dy, dx);
  const Statistic statistic = levene(worksheetFunction(), groups);
  LeveneValue = groupTable(worksheetFunction(), groups, spreadsOf(groups), CLevel, statistic);
  Category = std::move(groups.labels);
}

}  // namespace zelkova
