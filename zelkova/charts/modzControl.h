#pragma once

#include <string_view>

#include "zelkova/frame/Array.h"

namespace zelkova {

// What the variables charts and the capability studies share: subgroup statistics, estimators of the process
// standard deviation and unbiasing constants. `Y` is a column of finite data in any unit, `L` the label of
// each row. A subgroup is a run of adjacent rows whose labels are exactly equal; a label that comes back
// later begins a new one. Failures of all routines that take data: 9 for an array that was never filled and
// for fewer labels than values, 6 where a sum overflows.

/// One statistic of each subgroup, in order: `Selector` is "Mean", "Variance", "Stddev", "Range", "N" or
/// "N_1" (N - 1); or "VarPart", one of each row: the square of its distance from the subgroup's mean. A
/// subgroup of one value has no variance, standard deviation or range (`NoValue`); variances that overflow
/// are 0, as those of the kit. Any other selector gives an array that was never filled.
DoubleArray GetSubgroupStat(const DoubleArray& Y, const StringArray& L, std::string_view Selector);

/// The root of the pooled variance of the subgroups, over c4 at its degrees of freedom plus 1; `NoValue`
/// where no subgroup has two values (Burr, 1969).
double SigmaPooled(const DoubleArray& Y, const StringArray& L);

/// The minimum-variance mean of the unbiased standard deviations of the subgroups (Burr, 1969); `NoValue`
/// where none has two values.
double SigmaSbar(const DoubleArray& Y, const StringArray& L);

/// The minimum-variance mean of the unbiased ranges of the subgroups (Burr, 1969); `NoValue` where none has
/// two values.
double SigmaRbar(const DoubleArray& Y, const StringArray& L);

/// The mean of the moving ranges of `w` values, over d2; `NoValue` where there are fewer than `w` values. `w`
/// is rounded to a whole number, a half to the even one; failure 9 where it is below 1.
double SigmaAvgMR(const DoubleArray& Y, double w);

/// The median of the moving ranges of `w` values, over d4; otherwise as `SigmaAvgMR`.
double SigmaMedianMR(const DoubleArray& Y, double w);

/// As `SigmaAvgMR` and `SigmaMedianMR`, of the means of the subgroups. Only subgroups of the most frequent
/// size enter (of several such sizes the one that comes first), and of at least two values: means of
/// subgroups of another size have another variance.
double SigmaAvgMRMeans(const DoubleArray& Y, const StringArray& L, double w);
double SigmaMedianMRMeans(const DoubleArray& Y, const StringArray& L, double w);

// Unbiasing constants of `n` values from a normal distribution, in units of its standard deviation. A size
// inside a table is rounded to a whole number, a half to the even one.

/// c4, the mean of the standard deviation: a table to six decimals from 2 to 100, 1.00005 - 0.257014/n
/// elsewhere. Failure 11 for 0.
double UnbiasC4(double n);

/// The standard deviation of the standard deviation, from 2 to 100; sizes beyond get the value at the end.
double UnbiasC5(double n);

/// d2, the mean of the range, from 1 to 50; sizes above get the value at 50. Deliberate: 1 at a size of 1, so
/// that a subgroup of one value divides by one. Failure 9 below.
double UnbiasD2(double n);

/// d3, the standard deviation of the range: a table to 25, a polynomial from 26 to 50 that stays at its last
/// value; 0 below 1 and strictly between 25 and 26.
double UnbiasD3(double n);

/// d4, the median of the range; table and polynomial as with d3.
double UnbiasD4(double n);

/// d2 for a single range, as gage studies divide by, from 2 to 10; sizes above get the value at 10. Failure 9
/// below.
double UnbiasD2Star(double n);

}  // namespace zelkova
