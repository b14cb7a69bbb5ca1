#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(MatrixLine, YColumn, XColumn, Group, N, Constant, Slope, RSquared);

/// Matrix plots, the scatter plots of all pairs of columns (Chambers, Cleveland, Kleiner and Tukey, 1983), as
/// series of one chart. Binds to no host itself: an instance can be created where none runs.
class yMatrix {
 public:
  /// The panels of the k columns of `M_X`, two or more of n rows. Column i of the data is the y of the panels
  /// in row i from the top and the x of those in column i from the left. A panel is 10 units wide and high,
  /// and a scale runs from 1 to 9 in it; each column has one scale in all its panels. `MatrixType` is "Full"
  /// or "Lower left", the panels below the diagonal; any other text counts as "Full".
  ///
  /// `PlotX` holds the points panel by panel along the rows, n + 1 slots each, the last a gap (`NoValue`).
  /// `PlotY` has a column for each label of `dx`, in the numeric-aware order of `ExchangeSortS` that
  /// `GroupLabel` gets, with `NoValue` at points of other groups; `dx` may be left unfilled for one group,
  /// whose label is the empty text.
  ///
  /// With `FitLine`, `LineX` and `LineY` are the least squares lines of each panel over the range of x, cut
  /// off at the border of the scale, 3 slots a panel and a column a group, and `LineValue` has a row for each
  /// panel and group: line in the units of the data, by the values of the group alone, R squared as a
  /// fraction. Without spread in x there is no line, without spread in y no R squared. Without `FitLine` the
  /// three stay unfilled.
  ///
  /// `GridX` and `GridY` are the borders of the panels, 6 slots each, the last a gap. `LabelX` and `LabelY`
  /// are the middle of the panels on the diagonal, for `Label`: `XName`, or the numbers of the columns where
  /// it is unfilled. `XAxisX`, `XAxisY` and `XAxis` are place and value of the scale below each column of
  /// panels, `YAxisX`, `YAxisY` and `YAxis` those left of each row, each with a gap behind it; of a scale
  /// of more than 6 values the multiples of twice its step are shown.
  ///
  /// Failures: 5 for fewer than two columns, 9 for data that were never filled, fewer names than columns and
  /// a `dx` with fewer rows, 7 for more than 1E8 elements in points, lines and borders together, 429 where no
  /// host runs, 6 where a scale or a line overflows. A failure leaves the outputs as they came.
  void MatrixOutput(const DoubleArray& M_X, const StringArray& XName, const StringArray& dx,
                    DoubleArray& PlotX, DoubleArray& PlotY, StringArray& GroupLabel, DoubleArray& LineX,
                    DoubleArray& LineY, DoubleArray& LineValue, DoubleArray& GridX, DoubleArray& GridY,
                    DoubleArray& LabelX, DoubleArray& LabelY, StringArray& Label, DoubleArray& XAxisX,
                    DoubleArray& XAxisY, DoubleArray& XAxis, DoubleArray& YAxisX, DoubleArray& YAxisY,
                    DoubleArray& YAxis, const std::string& MatrixType = "Full", bool FitLine = false) const;
};

}  // namespace zelkova
