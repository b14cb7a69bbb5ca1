#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(NormTest, Mean, SD, N, AStar, PValue);

/// Whether a column of data is normal. Binds to the host.
class yNormality : public HostBound {
 public:
  /// Anderson and Darling's test (1952) of `dataarray` against a normal distribution with the sample's mean
  /// and standard deviation. `NormTestValue` holds the statistic with the small-sample adjustment and its
  /// p-value (D'Agostino and Stephens, 1986), which is 0 from 13 on. Failures: 1004 where there is no spread,
  /// 9 for an array that was never filled.
  void NormTestOutput(const DoubleArray& dataarray, DoubleArray& NormTestValue) const;

  /// The normal plot of `dataarray`: the sorted data in `NTNormPlotX`, the normal scores of Filliben's
  /// plotting positions (1975) in `NTNormPlotY`, and in `NTRealPlotY` the scores of the fitted line.
  /// Failures: 11 where there is no spread, 9 for an array that was never filled.
  void NormTestPlotOutput(const DoubleArray& dataarray, DoubleArray& NTNormPlotX, DoubleArray& NTNormPlotY,
                          DoubleArray& NTRealPlotY) const;
};

}  // namespace zelkova
