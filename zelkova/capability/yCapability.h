#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

// A slot with two names holds the one or the other, as the options of the study say.
ZELKOVA_SLOTS(NormalCapability, USL, Target, LSL, Mean, N, SDWithinOrBetween, SDOverallOrWithin,
              CpOrZBenchWithin, CPUOrZUSLWithin, CPLOrZLSLWithin, Cpk, Cpm, PpOrZBenchOverall,
              PPUOrZUSLOverall, PPLOrZLSLOverall, Ppk, ObservedBelow, ObservedAbove, ObservedTotal,
              ExpectedWithinBelow, ExpectedWithinAbove, ExpectedWithinTotal, ExpectedOverallBelow,
              ExpectedOverallAbove, ExpectedOverallTotal, SDBetweenWithin, SDOverall);

/// Capability of a normally distributed characteristic (Kane, 1986; Montgomery, Introduction to Statistical
/// Quality Control). Binds to the host.
///
/// `dy` are the measurements in any unit, `dx` the label of each row, at least as many; a subgroup is a run
/// of adjacent equal labels. `USL`, `LSL` and `Target` are numbers as texts, empty for none. Failures: 9 for
/// an array that was never filled and for too few labels, 13 for a text that must be a number and is not, 6
/// where a result overflows.
class yCapability : public HostBound {
 public:
  /// Sigma, indices and the fractions beyond specification.
  ///
  /// `estimate1`, "Average Moving Range" or "Median Moving Range", of `MRLength` values (2 where empty),
  /// gives the sigma of individual values; `estimate2`, "Pooled Std Dev", "SBar" or "RBar", the one within
  /// subgroups where the most frequent size is above 1. Both ignore case; a name that is none makes its sigma
  /// 0. With `BW`, `estimate1` of the subgroup means gives the between-subgroup component. The overall sigma
  /// is the standard deviation of all values over c4. `Tolerance` is the process spread in sigmas, 6 where
  /// empty. Historical values are numbers as texts, empty for none: `HistSD` without `BW`, `HistSDB` and
  /// `HistSDW` with it.
  ///
  /// `DisplayC`, "Cp & Pp" (also where empty) or "Z & Sigma", chooses what the slots with two names hold, and
  /// `DisplayP`, "Parts per million" (also where empty) or "Percentage", the unit of the fractions; any other
  /// text leaves its slots 0. `NoValue` marks what the specifications given, or a sigma without a value, do
  /// not yield. Further failures: 11 where a sigma is 0, 5 for a negative sigma or tolerance, 9 for a moving
  /// range length below 1, 1004 where `USL` lies below `LSL`, unless Z.Bench has no value.
  void CapabilityOutput(const DoubleArray& dy, const StringArray& dx, const std::string& estimate1,
                        const std::string& estimate2, const std::string& MRLength, const std::string& USL,
                        const std::string& LSL, const std::string& Target, const std::string& Tolerance,
                        const std::string& HistMean, const std::string& HistSD, const std::string& HistSDB,
                        const std::string& HistSDW, const std::string& DisplayC, const std::string& DisplayP,
                        DoubleArray& Capability, bool BW = false) const;

  /// The capability histogram: midpoints and counts of its bins, the normal curves of mean `dMean` and
  /// standard deviations `dSD1` (within) and `dSD2` (overall) on the scale of the counts, and two points,
  /// from `PlotLimitY` 0 to 1, for a line at each specification, as fractions of the axis. `NoValue` where a
  /// curve is below 0.000005 of a count, where its standard deviation is 0 or has no value, and for a
  /// specification that is not given; in curves and lines on an axis of a single bin. `dx` is not read.
  /// Further failures: 5 where the data differ by less than their size can resolve, 1004 for a negative
  /// standard deviation.
  void CapabilityChartoutput(const DoubleArray& dy, const StringArray& dx, const std::string& USL,
                             const std::string& LSL, const std::string& Target, double dMean, double dSD1,
                             double dSD2, DoubleArray& PlotX, DoubleArray& PlotY, DoubleArray& PlotWithin,
                             DoubleArray& PlotOverall, DoubleArray& PlotLimitY, DoubleArray& PlotLSLX,
                             DoubleArray& PlotUSLX, DoubleArray& PlotTargetX) const;
};

}  // namespace zelkova
