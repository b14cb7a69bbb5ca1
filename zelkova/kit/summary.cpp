#include "zelkova/kit/summary.h"

#include <algorithm>

#include "zelkova/frame/RunningObjects.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/order.h"

namespace zelkova::summary {

namespace {

/// The element at place `i`, from 1.
double element(std::span<const double> sorted, Index i) {
  if (i < 1 || i > static_cast<Index>(sorted.size())) raise(FailureNumber::OutOfRange);
  return sorted[static_cast<std::size_t>(i - 1)];
}

/// The element `quarters` (n + 1)/4 of the way up, or between two elements the fixed part `weight` of the way
/// from the one to the other.
double quartile(std::span<const double> sorted, Index quarters, double weight) {
  const Index fourfold = quarters * (static_cast<Index>(sorted.size()) + 1);
  const Index k = fourfold / 4;
  const double below = element(sorted, k);
  if (fourfold % 4 == 0) return below;
  return checked::finite(below + weight * (element(sorted, k + 1) - below));
}

/// sqrt(df variance / chi), chi being the point with the probability `upperTail` above it.
double sdLimit(Index n, double variance, double upperTail) {
  const std::shared_ptr<Host> host = runningHost();
  WorksheetFunction& worksheet = host->worksheetFunction();
  const auto df = static_cast<double>(n - 1);
  double chi = df + checked::root(2 * df) * worksheet.NormSInv(1 - upperTail);
  try {
    chi = worksheet.ChiInv(upperTail, df);
  } catch (const Failure&) {
    // Deliberate: the normal approximation stands, so that limits exist where the host has no quantile.
  }
  return checked::root(checked::quotient(df * variance, chi));
}

/// The coverage of pairs of order statistics of a sample of n: the signs of the deviations from the median
/// are binomial.
class MedianCoverage {
 public:
  explicit MedianCoverage(Index n) : host_(runningHost()), n_(n) {}

  /// Of the pair s(d), s(n - d + 1).
  double outer(Index d) const { return below(n_ - d) - below(d - 1); }

  /// Of the pair s(d + 1), s(n - d).
  double inner(Index d) const { return below(n_ - d - 1) - below(d); }

 private:
  double below(Index k) const {
    return host_->worksheetFunction().BinomDist(static_cast<double>(k), static_cast<double>(n_), 0.5, true);
  }

  std::shared_ptr<Host> host_;
  Index n_;
};

/// The largest d from 1 to `innermost` whose pair covers at least `c`; 0 where none does. The coverage falls
/// as d rises.
Index largestCovering(const MedianCoverage& coverage, Index innermost, double c) {
  Index covering = 0;
  Index lacking = innermost + 1;
  while (lacking - covering > 1) {
    const Index d = (covering + lacking) / 2;
    (coverage.outer(d) >= c ? covering : lacking) = d;
  }
  return covering;
}

}  // namespace

std::vector<double> sortedCopy(const DoubleArray& data) {
  const std::span<const double> values = data.vector();
  std::vector<double> sorted(values.begin(), values.end());
  order::sortValues(sorted);
  // What is not finite has come to stand at an end.
  checked::finite(sorted.front());
  checked::finite(sorted.back());
  return sorted;
}

double selectMedian(std::span<double> values) {
  const auto middle = values.begin() + static_cast<Index>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  // Adding 0 keeps the sign of a zero from depending on how the values were selected.
  if (values.size() % 2 != 0) return *middle + 0.0;
  return checked::finite((*std::max_element(values.begin(), middle) + *middle) / 2);
}

double median(std::span<const double> sorted) {
  const auto n = static_cast<Index>(sorted.size());
  if (n % 2 != 0) return element(sorted, n / 2 + 1);
  return checked::finite((element(sorted, n / 2) + element(sorted, n / 2 + 1)) / 2);
}

double lowerQuartile(std::span<const double> sorted) {
  if (sorted.size() <= 2) return element(sorted, 1);
  return quartile(sorted, 1, 0.75);
}

double upperQuartile(std::span<const double> sorted) {
  if (sorted.size() <= 2) return element(sorted, static_cast<Index>(sorted.size()));
  return quartile(sorted, 3, 0.25);
}

Limits meanLimits(Index n, double mean, double sd, double confidence) {
  const double alpha = 1 - confidence / 100;
  const double se = sd / std::sqrt(static_cast<double>(n));
  const double width = se * runningHost()->worksheetFunction().TInv(alpha, static_cast<double>(n - 1));
  return {mean - width, mean + width};
}

double sdLowerLimit(Index n, double variance, double confidence) {
  return sdLimit(n, variance, (1 - confidence / 100) / 2);
}

double sdUpperLimit(Index n, double variance, double confidence) {
  return sdLimit(n, variance, 1 - (1 - confidence / 100) / 2);
}

Limits medianLimits(std::span<const double> sorted, double confidence) {
  const double c = checked::finite(confidence) / 100;
  const auto n = static_cast<Index>(sorted.size());
  const MedianCoverage coverage(n);
  const Index innermost = (n + 1) / 2;
  // The pair inside the innermost one has crossed over: its coverage is negative. A confidence below even
  // that fits no pair, and neither does one of 0 or less further out.
  if (c < coverage.inner(innermost)) raise(FailureNumber::OutOfRange);
  const Index d = largestCovering(coverage, innermost, c);
  if (d == 0) return {element(sorted, 1), element(sorted, n)};

  const double outer = coverage.outer(d);
  return limitsBetween(sorted, d, checked::quotient(outer - c, outer - coverage.inner(d)));
}

Limits limitsBetween(std::span<const double> sorted, Index d, double share) {
  const auto n = static_cast<Index>(sorted.size());
  const double count = static_cast<double>(n);
  const double depth = static_cast<double>(d);
  const double lambda = checked::quotient((count - depth) * share, (count - 2 * depth) * share + depth);
  return {(1 - lambda) * element(sorted, d) + lambda * element(sorted, d + 1),
          lambda * element(sorted, n - d) + (1 - lambda) * element(sorted, n - d + 1)};
}

}  // namespace zelkova::summary
