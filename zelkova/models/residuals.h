#pragma once

#include <cmath>
#include <span>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova {

/// The response less its fitted values.
inline DoubleArray residuals(std::span<const double> y, const DoubleArray& fitted) {
  DoubleArray result(fitted.rows());
  const std::span<double> residual = result.vector();
  const std::span<const double> fit = fitted.vector();
  for (std::size_t i = 0; i < residual.size(); ++i) residual[i] = y[i] - fit[i];
  return result;
}

/// To 7 decimals; numbers too large to have as many are left as they are. Deliberate where it is used:
/// callers show these residuals as they come.
inline void roundForDisplay(DoubleArray& values) {
  constexpr double scale = 1E+7;
  constexpr double withoutDecimals = 0x1p52 / scale;
  for (double& x : values.elements()) {
    if (std::abs(x) < withoutDecimals) x = roundHalfEven(x * scale) / scale;
  }
}

}  // namespace zelkova
