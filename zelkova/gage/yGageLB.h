#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(GageLinearity, Constant, Slope, SEConstant, SESlope, PConstant, PSlope, S, RSquared, Linearity,
              LinearityShare);
ZELKOVA_SLOTS(GageBias, Reference, Bias, BiasShare, PValue);
ZELKOVA_SLOTS(GageBiasPoint, Reference, Bias);

/// Linearity and bias of a gage against parts of known value (AIAG, Measurement Systems Analysis). Binds to
/// the host.
///
/// `dy` holds the n readings, `dpart` and `dstd` the part of each and its reference value, in the units of
/// the readings; the bias of a reading is what it lies above the reference. Failure 9 where these have fewer
/// than n rows.
class yGageLB : public HostBound {
 public:
  /// `Linearity` holds the straight line of bias on reference, fitted as by `yRegression::RegOutput`, its
  /// exact fits without tests included. `Bias` has a row for all readings, without a reference, and then one
  /// for each reference value, ascending; a share is that of `PVar`. p-values are two-sided, from the
  /// standard deviation within parts, with one degree of freedom less than there are readings; `NoValue`
  /// where no part was read twice. `PVar` is the process variation, in the units of the readings; where
  /// empty, linearity and shares are `NoValue`.
  ///
  /// `ErrorCode`, checked in this order; no result is assigned then: "Must have at least 3 parts"; "Reference
  /// value for the same part must be the same". Failures: 13 where `PVar` is no number, 5 where it is
  /// negative, 11 where it is 0 and where readings at a reference value were repeated without any variation,
  /// 5012 where all reference values are the same.
  void GageLBOutput(const DoubleArray& dy, const StringArray& dpart, const DoubleArray& dstd,
                    const std::string& PVar, DoubleArray& Linearity, DoubleArray& Bias,
                    std::string& ErrorCode) const;

  /// The points of the plot: in `BiasArray` the reference and the bias of each reading, in `AverageBias` each
  /// reference value, ascending, and the mean bias there. Data that `GageLBOutput` refuses leave both
  /// unassigned.
  void GageLBPlotOutput(const DoubleArray& dy, const StringArray& dpart, const DoubleArray& dstd,
                        DoubleArray& BiasArray, DoubleArray& AverageBias) const;
};

}  // namespace zelkova
