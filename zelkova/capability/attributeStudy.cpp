#include "zelkova/capability/attributeStudy.h"

#include <algorithm>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/order.h"

namespace zelkova::capability {

Samples::Samples(const DoubleArray& dy, const DoubleArray& dxN)
    : counts(dy.vector()), sizes(dxN.vector()), totalCount(GetSum(dy)), totalSize(GetSum(dxN)) {
  if (counts.size() != sizes.size()) {
    raise(FailureNumber::OutOfRange, "there must be a sample size for each count");
  }
  const auto negative = [](double x) { return x < 0; };
  if (std::any_of(counts.begin(), counts.end(), negative)) {
    raise(FailureNumber::InvalidCall, "a count must not be negative");
  }
  if (std::any_of(sizes.begin(), sizes.end(), negative)) {
    raise(FailureNumber::InvalidCall, "a sample size must not be negative");
  }
  if (std::find(sizes.begin(), sizes.end(), 0) != sizes.end()) {
    raise(FailureNumber::DivisionByZero, "a sample size must not be 0");
  }
}

bool Samples::sizesDiffer() const {
  return std::any_of(sizes.begin(), sizes.end(), [this](double size) { return size != sizes.front(); });
}

DoubleArray Samples::rates(double scale) const {
  DoubleArray result(rows());
  for (Index i = 1; i <= rows(); ++i) result(i) = checked::quotient(scale * count(i), size(i));
  return result;
}

DoubleArray Samples::cumulativeRates(double scale) const {
  DoubleArray result(rows());
  double counted = 0;
  double inspected = 0;
  for (Index i = 1; i <= rows(); ++i) {
    counted += count(i);
    inspected += size(i);
    result(i) = checked::quotient(scale * counted, inspected);
  }
  return result;
}

PlottedCounts plottedCounts(const Samples& samples) {
  std::vector<double> sorted(samples.counts.begin(), samples.counts.end());
  order::sortValues(sorted);
  const double n = static_cast<double>(sorted.size());
  PlottedCounts result;
  for (auto first = sorted.begin(); first != sorted.end();) {
    const auto next = std::find_if(first, sorted.end(), [first](double x) { return x != *first; });
    // The places of equal counts, from 1, have this mean.
    const auto before = static_cast<double>(first - sorted.begin());
    const auto equal = static_cast<double>(next - first);
    const double midRank = (2 * (before + 1) + equal - 1) / 2;
    result.counts.push_back(*first);
    result.positions.push_back((midRank - 0.375) / (n + 0.25));
    first = next;
  }
  return result;
}

}  // namespace zelkova::capability
