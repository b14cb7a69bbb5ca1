#include "zelkova/kit/modzStat.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/summary.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace {

double plainSum(std::span<const double> values) {
  return checked::finite(laneSum(values, [](double x) { return x; }));
}

double meanOf(std::span<const double> values) {
  return plainSum(values) / static_cast<double>(values.size());
}

double squaresAbout(std::span<const double> values, double centre) {
  return checked::finite(laneSum(values, [centre](double x) { return (x - centre) * (x - centre); }));
}

/// The sum of `term` over the lengths of the runs of more than one equal value.
template <class Term>
double overTies(const DoubleArray& data, Term term) {
  const std::vector<double> sorted = summary::sortedCopy(data);
  double sum = 0;
  for (auto first = sorted.begin(); first != sorted.end();) {
    const auto next = std::find_if(first + 1, sorted.end(), [first](double x) { return x != *first; });
    if (next - first > 1) sum += term(static_cast<double>(next - first));
    first = next;
  }
  return sum;
}

}  // namespace

Index GetCount(const DoubleArray& data) { return data.rows(); }

double GetSum(const DoubleArray& data) { return plainSum(data.vector()); }

double GetMean(const DoubleArray& data) { return meanOf(data.vector()); }

double GetMin(const DoubleArray& data) {
  const std::span<const double> values = data.vector();
  return checked::finite(*std::min_element(values.begin(), values.end()));
}

double GetMax(const DoubleArray& data) {
  const std::span<const double> values = data.vector();
  return checked::finite(*std::max_element(values.begin(), values.end()));
}

double GetRange(const DoubleArray& data) {
  const std::span<const double> values = data.vector();
  const auto [smallest, largest] = std::minmax_element(values.begin(), values.end());
  return checked::finite(*largest - *smallest);
}

double GetVariance(const DoubleArray& data) {
  try {
    const std::span<const double> values = data.vector();
    // Equal values have no variance, even where the mean of them is off by a rounding.
    const double first = values.front();
    if (std::all_of(values.begin(), values.end(), [first](double x) { return x == first; })) return 0;
    return squaresAbout(values, meanOf(values)) / static_cast<double>(values.size() - 1);
  } catch (const Failure&) {
    return 0;
  }
}

double GetStdDev(const DoubleArray& data) { return std::sqrt(GetVariance(data)); }

double GetMedian(const DoubleArray& data) {
  DoubleArray copy = data;
  checked::leaving(copy);
  return summary::selectMedian(copy.vector());
}

double GetQ1(const DoubleArray& data) { return summary::lowerQuartile(summary::sortedCopy(data)); }

double GetQ3(const DoubleArray& data) { return summary::upperQuartile(summary::sortedCopy(data)); }

double GetMode(const DoubleArray& data) {
  const std::span<const double> values = data.vector();
  const Levels levels(values);
  std::vector<Index> counts(static_cast<std::size_t>(levels.count()), 0);
  for (const Index level : levels.codes()) ++counts[static_cast<std::size_t>(level)];
  const auto most = static_cast<std::size_t>(std::max_element(counts.begin(), counts.end()) - counts.begin());
  return checked::finite(values[static_cast<std::size_t>(levels.firsts()[most])]);
}

double GetMeanCILower(const DoubleArray& data, double confidence) {
  return checked::finite(
      summary::meanLimits(GetCount(data), GetMean(data), GetStdDev(data), confidence).lower);
}

double GetMeanCIUpper(const DoubleArray& data, double confidence) {
  return checked::finite(
      summary::meanLimits(GetCount(data), GetMean(data), GetStdDev(data), confidence).upper);
}

double GetSDCILower(const DoubleArray& data, double confidence) {
  return summary::sdLowerLimit(GetCount(data), GetVariance(data), confidence);
}

double GetSDCIUpper(const DoubleArray& data, double confidence) {
  return summary::sdUpperLimit(GetCount(data), GetVariance(data), confidence);
}

void GetMedianCI(const DoubleArray& data, double confidence, double& lower, double& upper) {
  const summary::Limits limits = summary::medianLimits(summary::sortedCopy(data), confidence);
  checked::leaving(DoubleArray{limits.lower, limits.upper});
  lower = limits.lower;
  upper = limits.upper;
}

double GetTieCube(const DoubleArray& data) {
  return overTies(data, [](double t) { return t * t * t - t; });
}

double GetTiePairs(const DoubleArray& data) {
  return overTies(data, [](double t) { return t * (t - 1) / 2; });
}

double GetColumnSum(const DoubleArray& data) { return plainSum(data.column(1)); }

double GetColumnSST(const DoubleArray& data) {
  const std::span<const double> values = data.column(1);
  return squaresAbout(values, meanOf(values));
}

}  // namespace zelkova
