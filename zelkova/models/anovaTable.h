#pragma once

#include <algorithm>

#include "zelkova/frame/Host.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"

/// The cells that analysis of variance tables have in common.
namespace zelkova::anova {

/// The sum of squares over its degrees of freedom; `NoValue` where there are none.
inline double meanSquare(double ss, double df) { return df == 0 ? NoValue : checked::finite(ss / df); }

struct FTest {
  double F = NoValue;
  double p = NoValue;
};

/// The mean square `ms` of `df` against the error mean square `mse` of `dfE`; without a value where either
/// mean square has none or the error has no spread.
inline FTest fTest(WorksheetFunction& host, double ms, double df, double mse, double dfE) {
  if (ms == NoValue || mse == NoValue || mse == 0) return {};
  const double F = checked::quotient(ms, mse);
  return {F, host.FDist(F, df, dfE)};
}

/// A share of the variation, kept between 0 and 1.
inline double clampedShare(double share) { return std::clamp(share, 0.0, 1.0); }

}  // namespace zelkova::anova
