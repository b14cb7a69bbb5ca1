#pragma once

#include <array>
#include <cmath>
#include <concepts>
#include <limits>
#include <span>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Failure.h"

namespace zelkova {

/// Arithmetic that raises where its result would not be finite.
///
/// Divisions, logarithms, exponentials, roots and powers raise at once, for arguments that are not finite
/// too. Sums and products run unchecked where they stand and pass through `finite` when they leave, which
/// costs one test instead of one a term; an infinity or a not-a-number born on the way cannot turn finite
/// again by adding or multiplying, and these functions do not let it pass.
namespace checked {

/// `x` itself; failure 6 where it is not finite.
inline double finite(double x) {
  if (!std::isfinite(x)) raise(FailureNumber::Overflow);
  return x;
}

/// a / b; failure 11 for b = 0, failure 6 for a quotient that is too large.
inline double quotient(double a, double b) {
  if (b == 0) raise(FailureNumber::DivisionByZero);
  return finite(a / finite(b));
}

/// The square root; failure 5 for a negative x.
inline double root(double x) {
  if (x < 0) raise(FailureNumber::InvalidCall);
  return finite(std::sqrt(x));
}

/// The natural logarithm; failure 5 unless x > 0.
inline double log(double x) {
  if (x <= 0) raise(FailureNumber::InvalidCall);
  return finite(std::log(x));
}

inline double exp(double x) { return finite(std::exp(finite(x))); }

/// x to the power y; failure 5 for 0 to a negative power and for a negative x to a power that is not whole.
inline double power(double x, double y) {
  if ((x == 0 && y < 0) || (x < 0 && y != std::trunc(y))) raise(FailureNumber::InvalidCall);
  return finite(std::pow(finite(x), finite(y)));
}

/// Failure 6 unless every value is finite.
inline void allFinite(std::span<const double> values) {
  // x - x is 0 for a finite x and a not-a-number otherwise, so sums tell for all of them; several, since each
  // addition waits for the one before.
  constexpr std::size_t width = 8;
  std::array<double, width> sums{};
  std::size_t i = 0;
  for (; i + width <= values.size(); i += width) {
    for (std::size_t lane = 0; lane < width; ++lane) sums[lane] += values[i + lane] - values[i + lane];
  }
  for (; i < values.size(); ++i) sums[0] += values[i] - values[i];
  for (const double sum : sums) finite(sum);
}

/// Failure 6 unless every element of every array is finite: what a method does before it hands results over.
template <class... Arrays>
void leaving(const Arrays&... arrays) {
  (allFinite(arrays.elements()), ...);
}

}  // namespace checked

/// `x` rounded to the nearest whole number, a half to the even one.
inline double roundHalfEven(double x) { return std::nearbyint(x); }

/// `x` rounded to `decimals` places, a half to the even digit; numbers too large to have such places stay.
inline double roundHalfEven(double x, int decimals) {
  const double scale = std::pow(10.0, decimals);
  const double scaled = x * scale;
  return std::abs(scaled) < 0x1p53 ? roundHalfEven(scaled) / scale : x;
}

/// The integer nearest to `x`, a half to the even one; failure 6 where `T` cannot hold it.
template <std::signed_integral T>
T toInteger(double x) {
  const double rounded = roundHalfEven(x);
  // The lowest is a power of two, so it is exact as a double, and so is its opposite, one past the largest.
  constexpr double lowest = static_cast<double>(std::numeric_limits<T>::min());
  if (!(rounded >= lowest && rounded < -lowest)) raise(FailureNumber::Overflow);
  return static_cast<T>(rounded);
}

}  // namespace zelkova
