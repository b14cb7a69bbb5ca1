#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(GageAttribute, N, Intercept, Slope, Tolerance, ReferenceAtHalf, Bias, Repeatability, T, PValue);

/// Bias and repeatability of a gage that accepts or rejects, from its performance curve: the share of
/// acceptances of parts of known value (AIAG, Measurement Systems Analysis; McCaslin and Gruska, 1976). Binds
/// to the host.
class yGageAtt : public HostBound {
 public:
  /// `dstd` holds the reference value of each row, `dy` how often it was accepted and `dtrial` how often it
  /// was tried; rows of one reference value count together. `dpart` is not read. `Tolerance` is the limit, in
  /// the units of the reference values; it is a lower one unless `Tolerance_Type` is "Upper limit".
  ///
  /// The line is fitted by least squares to the normal scores of the n reference values that are neither
  /// always nor never accepted; ascending, they stand in `Refarray`, their scores in `Zarray`, the line in
  /// `Fittedarray` and their probabilities of acceptance in `Probarray`. The bias is the reference value
  /// where the line gives a probability of 0.5, less the limit; its test has n - 2 degrees of freedom.
  ///
  /// `Method` "AIAG method": before scores are taken, probabilities other than 0.5 move 0.025 towards it;
  /// repeatability is the width between the fitted probabilities 0.005 and 0.995, over 1.08; t is 31.3 times
  /// the absolute bias over that. "Regression method": repeatability is the standard deviation of the curve,
  /// 1 over the absolute slope, and the standard error of the bias comes from that of the line by the delta
  /// method; t has the sign of the bias. Another text fits the line as the latter does, and leaves
  /// repeatability, t and p-value `NoValue`.
  ///
  /// `ErrorCode`, checked in this order; no result is assigned then: "Tolerance limit not provided"; "No. of
  /// trials must be >= no. of acceptances"; "Requires 2 extreme probabilities of acceptance (0 and 1) at the
  /// smallest and largest reference values"; "Requires at least 8 distinct reference values"; "Requires at
  /// exactly 6 other distinct probabilities of acceptance in between the extremes" for the AIAG method,
  /// "Requires at least 6 other distinct probabilities of acceptance in between the extremes" for others; "To
  /// use the upper limit, the probability of acceptance should decrease as reference value increases." or "To
  /// use the lower limit, the probability of acceptance should increase as reference value increases.", where
  /// only reference values always or never accepted may share a probability.
  ///
  /// Failures: 5 for negative acceptances, 9 for columns of fewer rows than `dy`, 11 for a reference value
  /// without a trial and for a line without a slope or, by regression, without an error, 13 for a limit that
  /// is no number.
  void GageAttributeOutput(const StringArray& dpart, const DoubleArray& dstd, const DoubleArray& dy,
                           const DoubleArray& dtrial, const std::string& Tolerance_Type,
                           const std::string& Tolerance, const std::string& Method,
                           DoubleArray& AttributeValue, DoubleArray& Refarray, DoubleArray& Zarray,
                           DoubleArray& Fittedarray, DoubleArray& Probarray, std::string& ErrorCode) const;
};

}  // namespace zelkova
