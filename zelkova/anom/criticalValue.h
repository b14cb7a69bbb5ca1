#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"

/// How far, in standard errors of its deviation, one of several means may lie from the mean of all before it
/// signals at the joint level `alpha`, a number between 0 and 1. `df` are the degrees of freedom of the error
/// standard deviation.
namespace zelkova::anom {

/// For `k` >= 2 means of equal size, exact (Nelson, 1983): to 8 digits or more for an `alpha` from 1E-8 on,
/// to 6 below.
double exactCriticalValue(WorksheetFunction& host, double alpha, Index k, double df);

/// For `k` >= 2 deviations of any correlation (Sidak, 1967): never less than exact. It is exact for k = 2:
/// the deviations of two means from the mean of all are one contrast but for the sign.
double boundedCriticalValue(WorksheetFunction& host, double alpha, Index k, double df);

/// The same where the standard deviation is known.
double boundedCriticalValue(WorksheetFunction& host, double alpha, Index k);

}  // namespace zelkova::anom
