#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(BoxplotGroup, N, Mean, Minimum, LowerWhisker, Q1, Median, Q3, UpperWhisker, Maximum,
              MedianLower, MedianUpper, Outliers);

/// Box plots (Tukey, 1977) as series of a chart. Binds to no host itself: an instance can be created where
/// none runs.
class yBoxplot {
 public:
  /// A box for each group of `dy`, by the labels of `dx1` and, within its levels, of `dx2`; either may be
  /// left unfilled, `dx2` alone may not be given. Groups stand in the numeric-aware order of
  /// `ExchangeSortS`; pairs of levels without a value have no box.
  ///
  /// `BoxValue` has a row a box. Quartiles and median are those of `GetQ1`, `GetMedian` and `GetQ3`, the
  /// whiskers reach to the last values within 1.5 interquartile ranges of the box, a value at just that
  /// distance but for the rounding of decimals included, and the limits of the median are distribution-free
  /// (`GetMedianCI`: Hettmansperger and Sheather, 1986) at confidence `CLevel`, a fraction; `NoValue` of one
  /// value. A whisker of which no such value lies outside the box has the length 0.
  ///
  /// `BoxX` and `BoxY` are the outlines of the boxes, 6 slots each, the last a gap (`NoValue`); `LimitX` and
  /// `LimitY` narrower ones from limit to limit of the median; `MedianX` and `MedianY` the lines of the
  /// medians, 3 slots each; `WhiskerX` and `WhiskerY` the lower and the upper whisker, 6 slots. Outliers have
  /// their place in `OutlierX`, `OutlierY`, the number of their box in `OutlierBox` and of their row in
  /// `OutlierRow`; these stay unfilled where there is none. `XAxisX` is the place of each box, at which
  /// `MeanY` and the labels `XAxis1` and `XAxis2` belong, one empty text and unfilled without factors;
  /// `XGroupX` and `XGroup` are the middle and label of each level of `dx1` where there are two factors,
  /// otherwise unfilled. `YAxis` holds the values of the axis.
  ///
  /// Failures: 5 for a confidence outside 0 to 1 and for `dx2` without `dx1`, 9 for data that were never
  /// filled and a factor with fewer rows, 429 where no host runs, 6 where a sum, a range or the axis
  /// overflows. A failure leaves the outputs as they came.
  void BoxplotOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2, double CLevel,
                     DoubleArray& BoxValue, DoubleArray& BoxX, DoubleArray& BoxY, DoubleArray& MedianX,
                     DoubleArray& MedianY, DoubleArray& LimitX, DoubleArray& LimitY, DoubleArray& WhiskerX,
                     DoubleArray& WhiskerY, DoubleArray& OutlierX, DoubleArray& OutlierY,
                     DoubleArray& OutlierBox, DoubleArray& OutlierRow, DoubleArray& MeanY,
                     DoubleArray& XAxisX, StringArray& XAxis1, StringArray& XAxis2, DoubleArray& XGroupX,
                     StringArray& XGroup, DoubleArray& YAxis) const;
};

}  // namespace zelkova
