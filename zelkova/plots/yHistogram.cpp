#include "zelkova/plots/yHistogram.h"

#include <utility>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/binCounts.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/kit/normalCurve.h"

namespace zelkova {

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
