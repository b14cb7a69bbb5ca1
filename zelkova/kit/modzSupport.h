#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Variant.h"

namespace zelkova {

// What the calculation classes need beyond statistics proper. Failure 9 for an array that was never filled.

/// The distinct values in order of first appearance.
void GetUniqueD(const DoubleArray& data, DoubleArray& result);

/// The distinct texts in order of first appearance; compared exactly, case included.
void GetUniqueS(const StringArray& labels, StringArray& result);

/// Whether an array has been dimensioned.
bool IsFilledD(const DoubleArray& array);
bool IsFilledS(const StringArray& array);

/// Ranks from 1 to n, in the order of the data. Tied values get the mean of their places where `averageTies`
/// is true; otherwise each its own place, in the order in which `QuickSortD2` leaves them.
void GetRanks(const DoubleArray& data, DoubleArray& ranks, bool averageTies);

/// Whether the rows of a two-factor layout are spread evenly: with `equalCounts`, every level of each factor
/// and every pair of levels has the same number of rows; with `replicates`, at least 2. The rows are those of
/// `data`; failure 9 where a factor has fewer.
bool IsBalanced(const DoubleArray& data, const StringArray& factor1, const StringArray& factor2,
                bool equalCounts, bool replicates);
bool IsBalancedS(const StringArray& data, const StringArray& factor1, const StringArray& factor2,
                 bool equalCounts, bool replicates);

/// The midpoints of the intervals of a histogram, at most 100 of them; a constant column has a single one.
/// Failures: 429 where a host is needed and none runs, 6 where the range leaves no room for widths in a
/// double, 5 where the data differ by less than their size can resolve.
DoubleArray GetHistogramBins(const DoubleArray& data);

/// The values of a readable axis that covers the data: 4 to 10 steps of 1, 2, 2.5 or 5 times a power of ten.
/// With `keepZero` the axis reaches to 0. Failures: 429 where a host is needed and none runs, 6 where the
/// axis would leave the range of a double.
DoubleArray GetAxisScale(const DoubleArray& data, bool keepZero);

/// The greatest common divisor of two whole numbers, a number; or a text, "ERROR: " and what is wrong with
/// the arguments. Failure 6 where it is above 32767: it is a small integer.
Variant GetGCD(const Variant& a, const Variant& b);

}  // namespace zelkova
