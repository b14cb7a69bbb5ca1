#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace zelkova {

/// The sum of term(x) over `values`, unchecked. Eight fixed lanes, joined in order: the same digits in every
/// build, and for up to eight values those of the plain sum.
template <class Term>
double laneSum(std::span<const double> values, Term term) {
  constexpr std::size_t width = 8;
  std::array<double, width> lanes{};
  std::size_t i = 0;
  for (; i + width <= values.size(); i += width) {
    for (std::size_t lane = 0; lane < width; ++lane) lanes[lane] += term(values[i + lane]);
  }
  for (std::size_t lane = 0; i < values.size(); ++i, ++lane) lanes[lane] += term(values[i]);
  double sum = 0;
  for (const double lane : lanes) sum += lane;
  return sum;
}

}  // namespace zelkova
