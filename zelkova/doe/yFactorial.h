#pragma once

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The plots of a two-level experiment, straight from its run sheet (Box, Hunter and Hunter, Statistics for
/// Experimenters, 1978). Binds to no host.
///
/// `dy` are the responses, a vector or a table of one column; `dx` the settings (run, factor), `dc` 1 for a
/// corner and any other number for a centre run. `FName`, `FLow` and `FHigh` have an entry a factor; levels
/// are compared as texts. A mean over no run is `NoValue`. Failures: 9 for arrays that are too short, 5 for a
/// response of several columns, 6 where sums overflow.
class yFactorial {
 public:
  /// Means at the low and the high level of each factor, three slots a factor: low, middle, high. `PlotY` are
  /// those of the corner runs, its middle empty so that a line breaks there; `PlotYC` those of the centre
  /// runs, in the middle where the factor is at neither level. `PlotXM` and `PlotYM` have one point a factor:
  /// its name and the mean of all runs.
  void MainEffectsOutput(const DoubleArray& dy, const StringArray& dx, const DoubleArray& dc,
                         const StringArray& FName, const StringArray& FLow, const StringArray& FHigh,
                         StringArray& PlotX, DoubleArray& PlotY, DoubleArray& PlotYC, StringArray& PlotXM,
                         DoubleArray& PlotYM) const;

  /// A triangle of panels, one for each pair of 2 to 16 factors, drawn as one chart whose axes start at 0.
  /// Column c and row r, counted from below, take the units 10(c - 1) to 10c and 10(r - 1) to 10r. The panel
  /// of the pair (j, k), j < k, stands in column j and row k: its x axis is the first factor.
  ///
  /// The first five outputs have 363 slots, three a panel, panels (1, 2), (1, 3), ..., (2, 3), ...: low, high
  /// and middle of the first factor. `PlotY1` and `PlotY2`, lines of the corner runs at the low and the high
  /// level of the second factor, break in the middle; `PlotY1C` and `PlotY2C`, points, are the centre runs,
  /// those at neither level of the second factor in `PlotY1C`. `GridX` and `GridY` are the lines of the
  /// panels' borders. `YAxisX`, `YAxisY` and `YAxis` are the ticks of the common scale of y, for each row,
  /// and `XAxisX`, `XAxisY` and `XAxis` the levels under each column. Slots without a point are `NoValue`.
  /// Failures: 5 for another number of factors, 429 where no host runs.
  void InteractionsOutput(const DoubleArray& dy, const StringArray& dx, const DoubleArray& dc,
                          const StringArray& FName, const StringArray& FLow, const StringArray& FHigh,
                          DoubleArray& PlotX, DoubleArray& PlotY1, DoubleArray& PlotY2, DoubleArray& PlotY1C,
                          DoubleArray& PlotY2C, DoubleArray& GridY, DoubleArray& GridX, DoubleArray& YAxisX,
                          DoubleArray& YAxisY, DoubleArray& YAxis, DoubleArray& XAxisX, DoubleArray& XAxisY,
                          StringArray& XAxis) const;

  /// A square, a cube, or two or four cubes of 2 to 5 factors, all as texts. `CubeCageX` and `CubeCageY` are
  /// one line along all edges, 5, 16, 32 or 64 points; `CubePointX`, `CubePointY` and `CubePointL` the
  /// corners in standard order, labelled by the mean of their corner runs (empty without one), and where
  /// there are centre runs their mean at the centre; `CubeLabelX`, `CubeLabelY` and `CubeLabelL`, three a
  /// factor, its low level, name and high level along an edge. Failure 5 for another number of factors.
  void CubeOutput(const DoubleArray& dy, const StringArray& dx, const DoubleArray& dc,
                  const StringArray& FName, const StringArray& FLow, const StringArray& FHigh,
                  StringArray& CubeCageX, StringArray& CubeCageY, StringArray& CubePointX,
                  StringArray& CubePointY, StringArray& CubePointL, StringArray& CubeLabelX,
                  StringArray& CubeLabelY, StringArray& CubeLabelL) const;
};

}  // namespace zelkova
