#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(BinomialCapability, P, PLower, PUpper, Percent, PercentLower, PercentUpper, PPM, PPMLower,
              PPMUpper, Z, ZLimitLarger, ZLimitSmaller, Target);

/// Capability of a process whose items are good or defective (Montgomery, Introduction to Statistical Quality
/// Control). Binds to the host.
///
/// `dy` are the defectives of each sample, `dxN` the sample sizes. `HistP`, a historical proportion from 0 to
/// 1, takes the place of the observed one, in the counts behind all limits too; `Target` is handed through.
/// Both are numbers as texts, empty for none. Limits are exact at 95 percent (Clopper and Pearson, 1934).
///
/// Failures: 9 for an array that was never filled and for arrays of different lengths, 11 for a sample size
/// of 0, 5 for a negative one, for defectives that are not from 0 to the sample size and for a proportion
/// outside 0 to 1, 13 for a text that must be a number and is not, 6 where a sum overflows.
class yCapabilityB : public HostBound {
 public:
  /// The proportion of defectives with its limits, as it is, in percent and in parts per million, and as Z
  /// values: the normal quantile that cuts off as much, positive where the proportion is below one half. A Z
  /// value that is not finite is `NoValue`.
  void CapabilityBOutput(const DoubleArray& dy, const DoubleArray& dxN, const std::string& Target,
                         const std::string& HistP, DoubleArray& Capability) const;

  /// The charts of a study: percent of defectives so far with its limits, sample by sample; percent of each
  /// sample; and, where the sample sizes differ, the limits of the percentage at each size in ascending order
  /// (`RateX1` holds the sizes as they come), or, where they are equal, a plot of the distinct counts against
  /// the binomial quantiles that stand for them. The other of the two is `NoValue`, and so is the plot after
  /// its last count. `BPlotLabel` gets the title and the labels of the vertical and the horizontal axis.
  void CapabilityBPlotOutput(const DoubleArray& dy, const DoubleArray& dxN, const std::string& Target,
                             const std::string& HistP, DoubleArray& CumPDefX, DoubleArray& CumPDefY,
                             DoubleArray& CumPDefAve, DoubleArray& CumPDefLSL, DoubleArray& CumPDefUSL,
                             DoubleArray& PDef, DoubleArray& RateX1, DoubleArray& RateX2,
                             DoubleArray& RateYLSL, DoubleArray& RateYUSL, DoubleArray& BPlotX,
                             DoubleArray& BPlotObs, DoubleArray& BPlotExp, StringArray& BPlotLabel) const;
};

}  // namespace zelkova
