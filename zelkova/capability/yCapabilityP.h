#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(PoissonCapability, DPU, Lower, Upper, Smallest, Largest, Target);

/// Capability of a process that is judged by its defects per unit (Montgomery, Introduction to Statistical
/// Quality Control). Binds to the host.
///
/// `dy` are the defects of each sample, `dxN` its number of units. `HistMu`, a historical rate, takes the
/// place of the observed one, but not in the limits, which are those of the defects observed; `Target` is
/// handed through. Both are numbers as texts, empty for none. Limits are exact at 95 percent (Garwood, 1936).
///
/// Failures: 9 for an array that was never filled and for arrays of different lengths, 11 for a sample size
/// of 0, 5 for a negative size, count or rate, 13 for a text that must be a number and is not, 6 where a
/// result overflows.
class yCapabilityP : public HostBound {
 public:
  /// Defects per unit with limits, and the smallest and largest rate of a sample.
  void CapabilityPOutput(const DoubleArray& dy, const DoubleArray& dxN, const std::string& Target,
                         const std::string& HistMu, DoubleArray& Capability) const;

  /// The charts of a study: defects per unit so far, sample by sample, with the overall rate and its limits;
  /// the rate of each sample; and, where the sample sizes differ, the rates against the sizes, or, where they
  /// are equal, a plot of the distinct counts against the Poisson quantiles that stand for them. The other of
  /// the two is `NoValue`, and so is the plot after its last count. `PPlotLabel` gets the title and
  /// the labels of the vertical and the horizontal axis.
  void CapabilityPPlotOutput(const DoubleArray& dy, const DoubleArray& dxN, const std::string& Target,
                             const std::string& HistMu, DoubleArray& CumDPUX, DoubleArray& CumDPUY,
                             DoubleArray& CumDPUAve, DoubleArray& CumDPULSL, DoubleArray& CumDPUUSL,
                             DoubleArray& DPU, DoubleArray& DRateX, DoubleArray& DRateY,
                             DoubleArray& DRateAve, DoubleArray& PPlotObs, DoubleArray& PPlotExp,
                             StringArray& PPlotLabel) const;
};

}  // namespace zelkova
