#pragma once

#include <cmath>
#include <span>

namespace zelkova {

/// The sum with the rounding errors of its steps added back (Neumaier 1974).
inline double compensatedSum(std::span<const double> values) {
  double sum = 0;
  double lost = 0;
  for (const double x : values) {
    const double next = sum + x;
    lost += std::fabs(sum) >= std::fabs(x) ? (sum - next) + x : (x - next) + sum;
    sum = next;
  }
  return sum + lost;
}

}  // namespace zelkova
