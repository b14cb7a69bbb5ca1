#include "zelkova/plots/yHistogram.h"

#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/binCounts.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/modzSupport.h"

namespace zelkova {

namespace {

/// The normal density at each midpoint, scaled by the sum of its own heights: bars of unequal width then
/// still compare with it in counts.
DoubleArray normalCurve(WorksheetFunction& host, const DoubleArray& midpoints, double n, double mean,
                        double sd) {
  DoubleArray heights(midpoints.rows(), NoValue);
  if (midpoints.rows() == 1) return heights;
  double sum = 0;
  for (Index j = 1; j <= midpoints.rows(); ++j) {
    heights(j) = host.NormDist(midpoints(j), mean, sd, false);
    sum += heights(j);
  }
  if (sum == 0) return DoubleArray(midpoints.rows(), NoValue);
  for (double& height : heights.elements()) height = checked::quotient(n * height, sum);
  return heights;
}

}  // namespace

void yHistogram::HistogramOutput(const DoubleArray& dy, DoubleArray& GI, DoubleArray& Interval,
                                 DoubleArray& Frequency, DoubleArray& Normal) const {
  if (!IsFilledD(GI)) GI = GetHistogramBins(dy);
  const double mean = GetMean(dy);
  const double sd = GetStdDev(dy);
  DoubleArray midpoints = GI;
  DoubleArray counts(binCounts(midpoints.vector(), dy.vector()));
  DoubleArray curve = normalCurve(worksheetFunction(), midpoints, static_cast<double>(dy.rows()), mean, sd);
  checked::leaving(midpoints, counts, curve);
  Interval = std::move(midpoints);
  Frequency = std::move(counts);
  Normal = std::move(curve);
}

}  // namespace zelkova
