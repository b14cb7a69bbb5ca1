#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(GageAnova, DFPart, DFOperator, DFInteraction, DFError, DFTotal, SSPart, SSOperator,
              SSInteraction, SSError, SSTotal, MSPart, MSOperator, MSInteraction, MSError, FPart, FOperator,
              FInteraction, PPart, POperator, PInteraction, DistinctCategories);
ZELKOVA_SLOTS(GageSource, GageRR, Repeatability, Reproducibility, Operator, OperatorByPart, PartToPart,
              TotalVariation);
ZELKOVA_SLOTS(GageComponent, Variance, Contribution, SD, StudyVariation, StudyShare, ToleranceShare);

/// Crossed gage repeatability and reproducibility studies: every operator measures every part equally often.
/// Binds to the host.
///
/// `dy` holds the n readings, `dpart` and `dop` the part and the operator of each, compared exactly. Failure
/// 9 where these have fewer than n rows.
class yGage : public HostBound {
 public:
  /// The analysis of variance (`GageAnova`) and the variance components, a row for each `GageSource` and the
  /// columns of `GageComponent`; shares are fractions.
  ///
  /// With an `AMethod` of "ANOVA" the components come from the mean squares (Montgomery and Runger, 1993).
  /// The interaction always stays in the model. Negative estimates are cut at 0, but for that of the parts
  /// in a study of one operator. With any other text they come from average and range (AIAG, Measurement
  /// Systems Analysis): of the analysis of variance only `DistinctCategories` is filled, `Operator` and
  /// `OperatorByPart` have no values, and a negative `Reproducibility` stays, without a standard deviation.
  ///
  /// `StudyV` is the multiplier of the study variation, 5 where empty; `PTol` the process tolerance, in the
  /// units of `dy`, without which `ToleranceShare` has no values. F and p have none against a mean square
  /// below 1E-7, nor has `DistinctCategories` for a gage standard deviation below 1E-7. What does not apply
  /// to a single operator is `NoValue`.
  ///
  /// `ErrorCode`, checked in this order; no result is assigned then: "Design must be balanced and with
  /// replicates"; "At least 2 operator values required" but for "ANOVA"; "At least 2 part values required".
  /// Failures: 13 where a text is no number, 5 where it is negative, 11 for a tolerance of 0.
  void GageCrossedOutput(const DoubleArray& dy, const StringArray& dpart, const StringArray& dop,
                         const std::string& StudyV, const std::string& PTol, const std::string& AMethod,
                         DoubleArray& GCrossed_AN, DoubleArray& GCrossed_VC, std::string& ErrorCode) const;

  /// The data of the plots by part, by operator and of both; any layout serves. `PartMX` gets the a parts and
  /// `OpMX` the b operators in the numeric-aware order of `ExchangeSortS`; `PartX` and `OpX` for each row the
  /// middle of its label's place on an axis from 0 to 1; `PartMY` and `OpMY` the means, `NoValue` where there
  /// is only one; `OpPartY` (a by b) the means of the cells, `NoValue` for an empty one. `newy`, `newpart`
  /// and `newop` are the rows again, operator by operator, within it part by part, within a cell as they
  /// came. Failure 7 for more than 1E8 cells.
  void GageCrossedPlotOutput(const DoubleArray& dy, const StringArray& dpart, const StringArray& dop,
                             DoubleArray& PartX, StringArray& PartMX, DoubleArray& PartMY, DoubleArray& OpX,
                             StringArray& OpMX, DoubleArray& OpMY, DoubleArray& OpPartY, DoubleArray& newy,
                             StringArray& newpart, StringArray& newop) const;
};

}  // namespace zelkova
