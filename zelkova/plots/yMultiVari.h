#pragma once

#include "zelkova/frame/Array.h"

namespace zelkova {

/// Multi-vari charts (Seder, 1950) as series of a chart. Binds to no host itself: an instance can be created
/// where none runs.
class yMultiVari {
 public:
  /// The means of `dy` by two to four factors, each within those before it: the levels of `dx1` are the
  /// panels, those of the last factor stand side by side. `dx3`, or `dx4` alone, may be left unfilled. Levels
  /// stand in the numeric-aware order of `ExchangeSortS`; combinations without a value have no place.
  ///
  /// `PlotX`, `PlotY`, `PlotN` and `PlotLabel` are tables with a column a factor: place, mean, number of
  /// values and label of each of its groups. The means are joined within the group of the factor before; a
  /// gap (`NoValue` and the empty label) ends each line, and fills a column that is shorter than the longest.
  /// A mean is that of all values in the group, each counting alike, and stands halfway between the first and
  /// the last place of the last factor in it. `GrandMeanX` and `GrandMeanY` are the two ends of the line of
  /// the grand mean, `DividerX` and `DividerY` lines between the levels of `dx1`, 3 slots each, the last a
  /// gap; unfilled for one level.
  ///
  /// With `ShowValues`, `ValueX` and `ValueY` are the place and value of each row, and `YAxis`, the values of
  /// the axis, covers them; otherwise they stay unfilled and it covers the means.
  ///
  /// Failures: 5 for `dx4` without `dx3`, 9 for data, a `dx1` or a `dx2` that were never filled and a factor
  /// with fewer rows, 429 where no host runs, 6 where a sum or the axis overflows. A failure leaves the
  /// outputs as they came.
  void MultiVariOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2,
                       const StringArray& dx3, const StringArray& dx4, DoubleArray& PlotX, DoubleArray& PlotY,
                       DoubleArray& PlotN, StringArray& PlotLabel, DoubleArray& GrandMeanX,
                       DoubleArray& GrandMeanY, DoubleArray& DividerX, DoubleArray& DividerY,
                       DoubleArray& ValueX, DoubleArray& ValueY, DoubleArray& YAxis,
                       bool ShowValues = false) const;
};

}  // namespace zelkova
