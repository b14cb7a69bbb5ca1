#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace zelkova {

/// The sum of term(i) for i from 0 to n - 1, unchecked. Eight fixed lanes, joined in order: the same digits
/// in every build, and for up to eight terms those of the plain sum.
template <class Term>
double laneSumOver(std::size_t n, Term term) {
  constexpr std::size_t width = 8;
  std::array<double, width> lanes{};
  std::size_t i = 0;
  for (; i + width <= n; i += width) {
    for (std::size_t lane = 0; lane < width; ++lane) lanes[lane] += term(i + lane);
  }
  for (std::size_t lane = 0; i < n; ++i, ++lane) lanes[lane] += term(i);
  double sum = 0;
  for (const double lane : lanes) sum += lane;
  return sum;
}

/// The sum of term(x) over `values`, in lanes.
template <class Term>
double laneSum(std::span<const double> values, Term term) {
  return laneSumOver(values.size(), [values, term](std::size_t i) { return term(values[i]); });
}

/// The sum of the products of `a` and `b`, in lanes; `b` has at least the length of `a`.
inline double laneProduct(std::span<const double> a, std::span<const double> b) {
  return laneSumOver(a.size(), [a, b](std::size_t i) { return a[i] * b[i]; });
}

}  // namespace zelkova
