#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(OneANOVA, DFB, SSB, MSB, F, PValue, DFW, SSW, MSW, DFT, SST, S, RSq, RSqAdj);
ZELKOVA_SLOTS(OneANOVALevels, N, Mean, SD, Lower, Upper);

/// One-way analysis of variance (Fisher, 1925) by direct sums of squares. Binds to the host.
///
/// `dy` holds the n values and `dx` the label of each, compared exactly. Failure 9 for fewer labels than
/// values, and for labels beyond the last value that add a level.
class yANOVA1 : public HostBound {
 public:
  /// The table, and for each of the k levels its summary with limits from the pooled standard deviation.
  /// `CLevel` is their confidence as a fraction. `OANVlabel` gets the levels in order of first appearance,
  /// the row order of the k by 5 table `OANVValue_I`. What cannot be computed is `NoValue`: `MSB`, `F` and
  /// `PValue` of a single level, `F` and `PValue` without spread inside the levels, the R-squared without any
  /// spread. Failure 1004 where every level has a single value, or the confidence is not one.
  void OneANOVAOutput(const DoubleArray& dy, const StringArray& dx, double CLevel, DoubleArray& OANVValue,
                      DoubleArray& OANVValue_I, StringArray& OANVlabel) const;

  /// Each value's fitted value, the mean of its level, and its residual, in the order of `dy`.
  void OneANOVAResOutput(const DoubleArray& dy, const StringArray& dx, DoubleArray& Residual,
                         DoubleArray& FittedV) const;
};

}  // namespace zelkova
