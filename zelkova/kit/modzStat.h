#pragma once

#include "zelkova/frame/Array.h"

namespace zelkova {

// Plain summary routines. Each takes a column of data (a vector of finite numbers, in any unit) and leaves it
// unchanged; a `confidence` is in percent, above 0 and below 100.

/// The upper bound of the first dimension. Failure 9 for an array that was never filled, here and in all
/// below.
Index GetCount(const DoubleArray& data);

/// The sum. Failure 6 where it overflows, here and in all that build on it.
double GetSum(const DoubleArray& data);

/// The sum divided by the number of elements.
double GetMean(const DoubleArray& data);

/// The smallest and the largest element.
double GetMin(const DoubleArray& data);
double GetMax(const DoubleArray& data);

/// The largest element minus the smallest.
double GetRange(const DoubleArray& data);

/// The sample variance, divisor n - 1; 0 for one value. Deliberate: any failure inside gives 0 as well.
double GetVariance(const DoubleArray& data);

/// The square root of `GetVariance`.
double GetStdDev(const DoubleArray& data);

/// The middle element of the sorted data, or the mean of the two in the middle.
double GetMedian(const DoubleArray& data);

/// The first quartile: the element at (n + 1)/4, or, where that is no whole number, 0.75 of the way from the
/// element below it to the one above. Deliberate: the weight does not depend on the fraction. The smaller of
/// two values.
double GetQ1(const DoubleArray& data);

/// The third quartile: as the first at 3(n + 1)/4 with the weight 0.25; the larger of two values.
double GetQ3(const DoubleArray& data);

/// The most frequent value; of several the one that appears first.
double GetMode(const DoubleArray& data);

/// Student's limits of the mean. Failures: 429 without a host, 1004 for one value and where the confidence is
/// not one.
double GetMeanCILower(const DoubleArray& data, double confidence);
double GetMeanCIUpper(const DoubleArray& data, double confidence);

/// Chi-square limits of the standard deviation; where the host's `ChiInv` fails, the normal approximation to
/// its quantile stands in. Failures: 429 without a host, 11 for one value, 1004 where the
/// confidence is not one. Where `GetVariance` gives 0 for a failure, so do these.
double GetSDCILower(const DoubleArray& data, double confidence);
double GetSDCIUpper(const DoubleArray& data, double confidence);

/// The interval of the median by non-linear interpolation between order statistics (Hettmansperger and
/// Sheather, 1986). Failures: 429 without a host, 1004 for one value, 9 for a confidence of 0 or less unless
/// the innermost pair of order statistics serves.
void GetMedianCI(const DoubleArray& data, double confidence, double& lower, double& upper);

/// The sum over the groups of t tied values of t cubed minus t.
double GetTieCube(const DoubleArray& data);

/// The sum over the groups of t tied values of t(t - 1)/2.
double GetTiePairs(const DoubleArray& data);

/// The sum of column 1 of a table.
double GetColumnSum(const DoubleArray& data);

/// The sum of the squared deviations of column 1 of a table from its mean.
double GetColumnSST(const DoubleArray& data);

}  // namespace zelkova
