#pragma once

#include <cstdint>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The columns in which the dots of a dot plot stand: no more than 4 root n of them (Wilkinson, 1999: dots of
/// 0.25 over root n of the axis) and no more than 200, numbered from 0.
///
/// Where the data are whole steps apart, as recorded values are, a column is a whole number of the greatest
/// common step wide, so that all columns take in equally many of the values that can occur, and stands in the
/// middle of these. Its width or its number of steps is the smallest of 1, 2, 2.5 and 5 times a power of ten
/// that serves. Otherwise its width is, and columns stand at the multiples of it. Steps below about a
/// thousandth of the width or below 1E-12 of the data do not count.
class DotColumns {
 public:
  /// Failures: 9 for data that were never filled, 6 where their range overflows.
  explicit DotColumns(const DoubleArray& data);

  /// 0 for the single column of data that agree in all the digits an axis can show.
  double width() const { return width_; }

  Index count() const { return count_; }

  /// The column of `x`, a value of the data. One on the boundary of two columns, but for the rounding of
  /// decimals, counts in the upper one.
  Index numberOf(double x) const { return static_cast<Index>(placeInAll(x) - first_); }

  /// Where a column stands; failure 6 beyond the range of a double.
  double placeOf(Index number) const;

 private:
  void chooseSteps(std::int64_t stepDigits, Index stepExponent, Index most);
  void chooseWidth(double least, Index most);
  bool fits(Index most);
  std::int64_t placeInAll(double x) const;

  double smallest_, largest_;
  double width_ = 0;
  double step_ = 0;               ///< the common step; 0 where there is none
  std::int64_t stepsWide_ = 0;    ///< how many steps a column takes in
  std::int64_t stepsBefore_ = 0;  ///< how many lie between 0 and the smallest value
  std::int64_t first_ = 0;        ///< the number of the first column, counted from 0 on the axis
  Index count_ = 1;
};

}  // namespace zelkova
