#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"

namespace zelkova {

/// The bars of a histogram and the normal curve over them. Binds to the host.
class yHistogram : public HostBound {
 public:
  /// `GI` holds the midpoints of the intervals, ascending, in the units of `dy`; never filled, it gets those
  /// of `GetHistogramBins`. `Interval` is a copy of them, `Frequency` the count of each interval, as
  /// `binCounts` tells, and `Normal` the height there of the normal curve with the mean and standard
  /// deviation of `dy`, scaled so that its heights add up to the number of values; `NoValue` where there is
  /// one midpoint, or where all heights vanish. Failures: 9 for data that were never filled, 5 for midpoints
  /// that are not ascending, 1004 where the data have no spread but there are several midpoints. A failure
  /// leaves the outputs as they came, except that `GI` keeps midpoints that were chosen for it.
  void HistogramOutput(const DoubleArray& dy, DoubleArray& GI, DoubleArray& Interval, DoubleArray& Frequency,
                       DoubleArray& Normal) const;
};

}  // namespace zelkova
