#pragma once

#include "zelkova/frame/Host.h"

namespace zelkova::power {

/// P(T <= t) of the noncentral t distribution with `df` degrees of freedom and noncentrality `delta`, within
/// 1E-6: the Poisson mixture of incomplete beta functions (Lenth 1989), summed from where its weights peak
/// (Benton and Krishnamoorthy 2003). Failure 6 where the square of an argument is too large for a double.
double GetNCTDist(WorksheetFunction& host, double t, double df, double delta);

/// P(F <= x) of the noncentral F distribution with noncentrality `lambda` >= 0, within 1E-6, in the same way.
double GetNCFDist(WorksheetFunction& host, double x, double df1, double df2, double lambda);

/// Whether a term of the series of `GetNCFDist` adds no more to the sum so far that counts.
bool GetConverged(double term, double sum);

}  // namespace zelkova::power
