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
  /// `BinWidth` is the width of the columns, that of a histogram's intervals refined to no more than 4 root n
  /// columns nor 200 (after Wilkinson, 1999), and their centres are its multiples; a value on a boundary
  /// counts in the upper column. Data without spread stand in one column, and `BinWidth` is `NoValue`. No
  /// column is taller than `MaxStack`, a number as text, by default 50 over the number of strips, but at
  /// least 10: where one would be, each dot stands for up to `DotScale` values, the smallest whole number
  /// that serves.
  ///
  /// `DotX` and `DotY` are the dots, strip by strip, by column and from the bottom; a unit of height is a
  /// dot. `DotN` is how many values each stands for, `DotGroup` the number of its strip. `BaseX` and `BaseY`
  /// are the lines on which the strips stand, 3 slots each, the last a gap (`NoValue`); `YAxisY` is the
  /// height and `YAxis` the label of each. `XAxis` holds the values of the scale.
  ///
  /// Failures: 5 for a `MaxStack` below 1 and for data that differ by less than their size can resolve, 13
  /// for one that is no number, 9 for data that were never filled and a `dx` with fewer rows, 429 where no
  /// host runs, 6 where the scale overflows. A failure leaves the outputs as they came.
  void DotplotOutput(const DoubleArray& dy, const StringArray& dx, const std::string& MaxStack,
                     double& BinWidth, double& DotScale, DoubleArray& DotX, DoubleArray& DotY,
                     DoubleArray& DotN, DoubleArray& DotGroup, DoubleArray& BaseX, DoubleArray& BaseY,
                     DoubleArray& XAxis, DoubleArray& YAxisY, StringArray& YAxis) const;
};

}  // namespace zelkova
