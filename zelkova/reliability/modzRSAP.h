#pragma once

#include <cmath>

#include "zelkova/frame/arithmetic.h"

namespace zelkova {

inline double RSMax(double a, double b) { return a > b ? a : b; }
inline double RSMin(double a, double b) { return a < b ? a : b; }
inline double RSPow(double x, double y) { return checked::power(x, y); }
inline double RSSqr(double x) { return x * x; }

/// deliberate: cut at its fifteenth digit; every likelihood of the normal family is on this footing.
inline double RSPi() { return 3.14159265358979; }

/// The relative error that the step lengths and stopping rules of a fit assume of a double.
inline constexpr double roundingUnit = 5E-16;

}  // namespace zelkova
