#pragma once

#include <span>

#include "zelkova/frame/Array.h"

/// Order statistics of the values that pairs of elements form. They are selected, not sorted: memory stays
/// that of the columns, and the result is, bit for bit, the element that sorting all pairs would give.
/// Columns are in ascending order, finite and not empty; a place `k` counts from 1. Failure 6 where the
/// element asked for overflows.
namespace zelkova::pairs {

/// How many Walsh averages (x(i) + x(j)) / 2, i <= j, a column of n has.
inline Index walshCount(Index n) { return n * (n + 1) / 2; }

/// The k-th smallest Walsh average, and the median of all of them.
double walshAverage(std::span<const double> sorted, Index k);
double walshMedian(std::span<const double> sorted);

/// The median of all differences x(i) - y(j).
double medianDifference(std::span<const double> sortedX, std::span<const double> sortedY);

}  // namespace zelkova::pairs
