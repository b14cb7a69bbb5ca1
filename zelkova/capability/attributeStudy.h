#pragma once

#include <span>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Failure.h"
#include "zelkova/frame/NoValue.h"

/// What the capability studies of defectives and of defects share.
namespace zelkova::capability {

/// A count and a size for each sample, as the caller has them, with their totals.
struct Samples {
  std::span<const double> counts, sizes;
  double totalCount, totalSize;

  /// Failures: 9 for an array that was never filled and for arrays of different lengths, 5 for a negative
  /// element, 11 for a size of 0, 6 where a sum overflows.
  Samples(const DoubleArray& dy, const DoubleArray& dxN);

  Index rows() const noexcept { return static_cast<Index>(counts.size()); }
  double count(Index i) const { return counts[static_cast<std::size_t>(i - 1)]; }
  double size(Index i) const { return sizes[static_cast<std::size_t>(i - 1)]; }
  bool sizesDiffer() const;

  /// Each count over its size, times `scale`.
  DoubleArray rates(double scale) const;

  /// The same of the samples up to and including each.
  DoubleArray cumulativeRates(double scale) const;
};

/// call(), or `fallback` where the host refuses it.
template <class Call>
double unlessRefused(double fallback, Call call) {
  try {
    return call();
  } catch (const Failure&) {
    return fallback;
  }
}

/// A plot of observed counts against the expected ones: as many places as there are samples, `NoValue` after
/// the last distinct count.
struct DistributionPlot {
  DoubleArray observed, expected;
};

/// The distinct counts, and the probability that stands for each: (R - 0.375) / (n + 0.25) of its mid-rank R
/// (Blom, 1958). Both ascend.
struct PlottedCounts {
  std::vector<double> counts, positions;
};
PlottedCounts plottedCounts(const Samples& samples);

/// The smallest whole k >= first at which cdf(k) >= p; `cdf` must get there.
template <class Cdf>
double smallestCount(double p, double first, Cdf cdf) {
  if (cdf(first) >= p) return first;
  double below = first;
  double step = 1;
  for (; cdf(below + step) < p; step *= 2) below += step;
  double reached = below + step;
  // What is sought lies above reached - step and not above reached.
  while (step > 1) {
    step /= 2;
    if (cdf(reached - step) >= p) reached -= step;
  }
  return reached;
}

/// The counts of `samples` against the quantiles of the distribution with lower tail `cdf`. Since the
/// probabilities ascend, each search starts from the last quantile.
template <class Cdf>
DistributionPlot distributionPlot(const Samples& samples, Cdf cdf) {
  DistributionPlot plot{DoubleArray(samples.rows(), NoValue), DoubleArray(samples.rows(), NoValue)};
  const PlottedCounts plotted = plottedCounts(samples);
  double quantile = 0;
  for (std::size_t i = 0; i < plotted.counts.size(); ++i) {
    quantile = smallestCount(plotted.positions[i], quantile, cdf);
    plot.observed(static_cast<Index>(i) + 1) = plotted.counts[i];
    plot.expected(static_cast<Index>(i) + 1) = quantile;
  }
  return plot;
}

}  // namespace zelkova::capability
