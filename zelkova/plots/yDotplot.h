#pragma once

#include <string>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// Dot plots as series of a chart. Binds to no host itself: an instance can be created where none runs.
class yDotplot {
 public:
  /// Dots for the values of `dy`, in columns on one scale; a strip for each label of `dx`, which may be left
  /// unfilled, in the numeric-aware order of `ExchangeSortS` from the top.
  ///
  /// There are no more than 4 root n columns nor 200 (after Wilkinson, 1999), `BinWidth` wide: 1, 2, 2.5 or 5
  /// times a power of ten, or as many of the greatest common steps of the data. Where there is such a step,
  /// a column takes in a whole number of it and stands in the middle of the values that it can hold, else at
  /// a multiple of its width; a value on a boundary counts in the upper column. Data that agree in the
  /// digits of the scale stand in one column, and `BinWidth` is `NoValue`. No column is taller than
  /// `MaxStack`, a number as text, of which the whole part counts, by default 50 over the number of strips,
  /// but at least 10: where one would be, each dot stands for up to `DotScale` values, the smallest whole
  /// number that serves.
  ///
  /// `DotX` and `DotY` are the dots, strip by strip, by column and from the bottom; a unit of height is a
  /// dot. `DotN` is how many values each stands for, `DotGroup` the number of its strip. `BaseX` and `BaseY`
  /// are the lines on which the strips stand, 3 slots each, the last a gap (`NoValue`); `YAxisY` is the
  /// height and `GroupLabel` the label of each, one empty text without `dx`. `XAxis` holds the values of the
  /// scale.
  ///
  /// Failures: 5 for a `MaxStack` below 1, 13 for one that is no number, 9 for data that were never filled
  /// and a `dx` with fewer rows, 429 where no host runs, 6 where the scale overflows. A failure leaves the
  /// outputs as they came.
  void DotplotOutput(const DoubleArray& dy, const StringArray& dx, double& BinWidth, double& DotScale,
                     DoubleArray& DotX, DoubleArray& DotY, DoubleArray& DotN, DoubleArray& DotGroup,
                     DoubleArray& BaseX, DoubleArray& BaseY, DoubleArray& XAxis, DoubleArray& YAxisY,
                     StringArray& GroupLabel, const std::string& MaxStack = {}) const;
};

}  // namespace zelkova
