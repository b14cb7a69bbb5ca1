#pragma once

#include <span>
#include <vector>

#include "zelkova/frame/Array.h"

/// The summary routines in parts, for callers that need several of one column: they sort it, and sum it,
/// once. `sorted` is a column in ascending order, never empty.
namespace zelkova::summary {

struct Limits {
  double lower;
  double upper;
};

/// A sorted copy of a column; failure 9 where the array was never filled.
std::vector<double> sortedCopy(const DoubleArray& data);

/// As `GetMedian`, of finite values in any order, which it changes: selected, not sorted.
double selectMedian(std::span<double> values);

/// As `GetMedian`, `GetQ1` and `GetQ3`.
double median(std::span<const double> sorted);
double lowerQuartile(std::span<const double> sorted);
double upperQuartile(std::span<const double> sorted);

/// As `GetMeanCILower` and `GetMeanCIUpper`.
Limits meanLimits(Index n, double mean, double sd, double confidence);

/// As `GetSDCILower` and `GetSDCIUpper`.
double sdLowerLimit(Index n, double variance, double confidence);
double sdUpperLimit(Index n, double variance, double confidence);

/// As `GetMedianCI`.
Limits medianLimits(std::span<const double> sorted, double confidence);

/// Non-linear interpolation (Hettmansperger and Sheather, 1986) between the pair of order statistics d and
/// n - d + 1 and the pair one place further in; `share` is the part of the way from the coverage of the first
/// to that of the second.
Limits limitsBetween(std::span<const double> sorted, Index d, double share);

}  // namespace zelkova::summary
