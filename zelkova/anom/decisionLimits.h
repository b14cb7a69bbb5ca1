#pragma once

#include "zelkova/frame/Array.h"

/// The charts of yANOM, row by row.
namespace zelkova::anom {

/// Failure 5 for an `alpha` outside (0, 1), and for fewer than two `levels`.
void checkComparison(double alpha, Index levels);

/// The standard error of the deviation of the mean of `n` of `N` values from the mean of all, in standard
/// deviations of a value.
double deviationError(double n, double N);

/// A point of a chart, and how far from its centre line it and its limits lie; a `reach` of `NoValue` where
/// there are no limits.
struct Decision {
  double n, point, centre, deviation, reach;
};

/// Fills a row of a table that begins with the columns of `ANOMLevels`.
void putRow(DoubleArray& table, Index row, const Decision& decision);

/// How many rows of `table` signal.
double signalsOf(const DoubleArray& table);

}  // namespace zelkova::anom
