#pragma once

#include <string>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// Control charts (Shewhart, 1931; Montgomery, Introduction to Statistical Quality Control). Binds to no
/// host.
///
/// `dy` are the data in any unit, finite; `dx` and `dp`, label and phase of each row, are at least as long. A
/// subgroup and a phase are runs of adjacent equal labels; nothing crosses a phase. A `dp` that was never
/// filled is a single phase. Historical values, lengths and weights are numbers as texts, empty for none.
/// `LimitPos` are the sigma multipliers of the limits, such as "1,2,3"; `LCL` and `UCL` get a row for each
/// position and a column for each multiplier. `PhaseX` and `PhaseY` get three corners for each divider
/// between phases, as fractions of the axis; with one phase they stay as they are. Failures of all methods: 9
/// for an array that was never filled or is too short, 13 for a text that must be a number and is not, 5 for
/// a negative standard deviation, 6 where a result overflows.
class yControlChart {
 public:
  /// One chart. `DataX` gets the positions 1, 2, ..., `DataY` the plotted points, `CCL` the centre line and
  /// `FailedTest` the tests for special causes that signal, with the parameters `kvar1` to `kvar8` (see
  /// yControlTest). `EstimateType` names the estimate of sigma, ignoring case; for moving averages and the
  /// charts of a between/within study it is two names joined by ">", those of the moving range and of the
  /// subgroups. A name that is none makes sigma 0; so does Sbar on an R chart, and Rbar on an S chart. What
  /// cannot be computed is `NoValue`. Further failures: 5 for an unknown chart type, a negative sample size,
  /// a negative binomial or Poisson variance and a weight outside 0 to 1, 9 for a length below 1 and where
  /// two names are needed and there is one, 11 for a sample size of 0.
  void ControlChartOutput(const std::string& ChartType, const DoubleArray& dy, const StringArray& dx,
                          const StringArray& dp, DoubleArray& DataX, DoubleArray& DataY, DoubleArray& CCL,
                          DoubleArray& LCL, DoubleArray& UCL, DoubleArray& PhaseX, DoubleArray& PhaseY,
                          StringArray& FailedTest, const std::string& LimitPos, const std::string& LCLBound,
                          const std::string& UCLBound, const std::string& EstimateType,
                          const std::string& kvar1, const std::string& kvar2, const std::string& kvar3,
                          const std::string& kvar4, const std::string& kvar5, const std::string& kvar6,
                          const std::string& kvar7, const std::string& kvar8, const std::string& HistMean,
                          const std::string& HistSD, const std::string& MRLength, const std::string& MALength,
                          const std::string& Weight, const std::string& HistSDBetween,
                          const std::string& HistSDWithin) const;

  /// A zone chart (Jaehn, 1987): each subgroup mean is scored by its distance from the centre, `Zone1` to
  /// `Zone4` for 0 to 1, 1 to 2, 2 to 3 and beyond 3 sigma of a mean, and the scores add up until a mean lies
  /// on the other side of the centre; with `ResetScore` also until the sum has reached `Zone4`. `DataY` gets
  /// positions from -3.5 to 3.5, `CumZoneScore` the sums and `DataYFailed` the positions whose sum has
  /// reached `Zone4`. `SigmaType` is two names joined by ">", compared exactly: the moving range estimate for
  /// subgroups of one value, the estimate within subgroups for all others. The lines are those of the
  /// positions: 0 and the multipliers. A phase whose sigma cannot be estimated has no positions and no
  /// scores.
  void ZoneChartOutput(const DoubleArray& dy, const StringArray& dx, const StringArray& dp,
                       const std::string& SigmaType, const std::string& MRLength, bool ResetScore,
                       double Zone1, double Zone2, double Zone3, double Zone4, const std::string& HistMean,
                       const std::string& HistSD, const std::string& LimitPos, DoubleArray& DataX,
                       DoubleArray& DataY, DoubleArray& DataYFailed, DoubleArray& CCL, DoubleArray& LCL,
                       DoubleArray& UCL, DoubleArray& CumZoneScore, DoubleArray& PhaseX,
                       DoubleArray& PhaseY) const;

  /// Charts of a short run of several parts (Montgomery, on Z-MR charts): standardised values, and their
  /// moving ranges of `MRLength` values. `dx` is the part of each row. `GroupType` is "By runs" (each run of
  /// adjacent rows of a part has a mean of its own) or "By parts" (each part has one); `SigmaType` is
  /// "Constant" (one sigma, the mean of the moving ranges of all groups over d2) or "Relative to size" (one
  /// sigma a part, of the logarithms of the values). Moving ranges never cross a group. `HistMean` and
  /// `HistSD` hold a value for each part in order of first appearance, in the units analysed, `NoValue` for a
  /// part without one; they may be left unfilled. The first chart is that of the standardised values, the
  /// second that of their moving ranges; a group of equal values stands at 0, and one whose sigma cannot be
  /// estimated has no values, unless it is a single row at its own mean. Further failures: 5 for any other
  /// `GroupType` or `SigmaType` and for a value without a logarithm, 9 for historical values of too few parts
  /// and a length below 1, 11 for values that differ from their historical mean where sigma is 0.
  void ZMROutput(const DoubleArray& dy, const StringArray& dx, const std::string& GroupType,
                 const std::string& SigmaType, double MRLength, DoubleArray& DataY1, DoubleArray& CCL1,
                 DoubleArray& LCL1, DoubleArray& UCL1, DoubleArray& DataY2, DoubleArray& CCL2,
                 DoubleArray& LCL2, DoubleArray& UCL2, DoubleArray& DataX, DoubleArray& PhaseX,
                 DoubleArray& PhaseY, const std::string& LimitPos, const std::string& LCLBound,
                 const std::string& UCLBound, const DoubleArray& HistMean, const DoubleArray& HistSD) const;
};

}  // namespace zelkova
