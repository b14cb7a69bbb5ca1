#pragma once

#include <cmath>
#include <limits>
#include <string>

#include "zelkova/frame/Failure.h"

namespace zelkova::domain {

/// Refuses the call with failure 1004 unless `holds`; `text` names the function, the argument and its domain.
inline void require(bool holds, const char* text) {
  if (!holds) raise(FailureNumber::HostRefused, text);
}

// Each of these is false for an infinity and for a not-a-number.
inline bool finite(double x) { return std::isfinite(x); }
inline bool within(double x, double low, double high) { return x >= low && x <= high; }
inline bool atLeast(double x, double low) { return within(x, low, std::numeric_limits<double>::max()); }
inline bool positive(double x) { return x > 0 && atLeast(x, 0); }
inline bool openUnit(double p) { return p > 0 && p < 1; }

/// Degrees of freedom, which are whole by then. One upper bound serves all functions: it lies far above the
/// size of any sample, so that none of them needs one of its own.
inline bool degreesOfFreedom(double df) { return within(df, 1, 1e10); }

/// A result that leaves: refused unless it is finite.
inline double result(double x, const char* function) {
  if (!std::isfinite(x)) {
    raise(FailureNumber::HostRefused, std::string(function) + ": the result is not a finite number");
  }
  return x;
}

}  // namespace zelkova::domain
