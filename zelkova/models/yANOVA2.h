#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(TwoANOVA, DF1, SS1, MS1, F1, PValue1, DF2, SS2, MS2, F2, PValue2, DF12, SS12, MS12, F12,
              PValue12, DFE, SSE, MSE, DFT, SST, S, RSq);
ZELKOVA_SLOTS(TwoANOVALevels, Mean, Lower, Upper);

/// Two-way analysis of variance (Fisher, 1925) by direct sums of squares. Binds to the host.
///
/// `dy` holds the n values, `dx1` and `dx2` the labels of each, compared exactly. `Additive` true leaves out
/// the interaction: its variation counts as error. Failure 9 for fewer labels than values.
class yANOVA2 : public HostBound {
 public:
  /// The table of a balanced layout, and for each level of either factor its mean with limits from the error
  /// standard deviation; `dCLevel` is their confidence as a fraction. `UniX1` and `UniX2` get the levels in
  /// order of first appearance, the row order of the tables `TANVValue_I1` (a by 3) and `TANVValue_I2` (b by
  /// 3). The interaction's slots are `NoValue` with `Additive` true. Without replicates and `Additive` false
  /// no error is left: `MSE`, `S`, every F, p-value and limit is `NoValue`. Without spread in the error F and
  /// p-values are `NoValue`.
  ///
  /// `ErrorCode`: "Unbalanced design" unless every pair of levels has the same number of values; "Factors
  /// must have more than 1 distinct value". No result is assigned then. Failure 1004 where the confidence is
  /// not one.
  void TwoANOVAOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2, bool Additive,
                      double dCLevel, DoubleArray& TANVValue, DoubleArray& TANVValue_I1,
                      DoubleArray& TANVValue_I2, StringArray& UniX1, StringArray& UniX2,
                      std::string& ErrorCode) const;

  /// Each value's fitted value and residual, in the order of `dy`: the mean of its cell, or with `Additive`
  /// true the sum of the means of its two levels less the mean of all. Any layout serves.
  void TwoANOVAResOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2, bool Additive,
                         DoubleArray& Residual, DoubleArray& FittedV) const;
};

}  // namespace zelkova
