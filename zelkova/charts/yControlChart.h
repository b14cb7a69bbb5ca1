#pragma once

#include <string>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// Control charts (Shewhart, 1931; Montgomery, Introduction to Statistical Quality Control). Binds to no
/// host.
///
/// `dy` are the data in any unit, finite; `dx` and `dp`, label and phase of each row, are at least as long. A
/// subgroup and a phase are runs of adjacent equal labels; nothing crosses a phase. Historical values,
/// lengths and weights are numbers as texts, empty for none. `LimitPos` are the sigma multipliers of the
/// limits, such as "1,2,3"; `LCL` and `UCL` get a row for each position and a column for each multiplier.
/// `PhaseX` and `PhaseY` get three corners for each divider between phases, as fractions of the axis; with
/// one phase they stay as they are. Failures of all methods: 9 for an array that was never filled or is too
/// short, 13 for a text that must be a number and is not, 5 for a negative standard deviation, 6 where a
/// result overflows.
class yControlChart {
 public:
  /// One chart. `DataX` gets the positions 1, 2, ..., `DataY` the plotted points, `CCL` the centre line and
  /// `FailedTest` the tests for special causes that signal, with the parameters `kvar1` to `kvar8` (see
  /// yControlTest). `EstimateType` names the estimate of sigma, ignoring case; for moving averages and the
  /// charts of a between/within study it is two names joined by ">", those of the moving range and of the
  /// subgroups. A name that is none makes sigma 0. What cannot be computed is `NoValue`. Further failures: 5
  /// for an unknown chart type, a negative sample size and a negative binomial or Poisson variance, 11 for a
  /// sample size of 0.
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
};

}  // namespace zelkova
