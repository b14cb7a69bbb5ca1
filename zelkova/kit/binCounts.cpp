#include "zelkova/kit/binCounts.h"

#include <algorithm>
#include <cstddef>

#include "zelkova/frame/arithmetic.h"

namespace zelkova {

namespace {

std::vector<double> boundariesBetween(std::span<const double> midpoints) {
  if (midpoints.empty()) raise(FailureNumber::OutOfRange);
  if (!std::is_sorted(midpoints.begin(), midpoints.end())) {
    raise(FailureNumber::InvalidCall, "the midpoints are not ascending");
  }
  std::vector<double> boundaries;
  boundaries.reserve(midpoints.size() - 1);
  for (std::size_t i = 1; i < midpoints.size(); ++i) {
    const double width = checked::finite(midpoints[i] - midpoints[i - 1]);
    boundaries.push_back(midpoints[i - 1] + width / 2);
  }
  return boundaries;
}

/// As `std::upper_bound`, by additions in place of jumps: which half a value falls into cannot be predicted.
std::size_t countAtOrBelow(std::span<const double> boundaries, double x) {
  const double* base = boundaries.data();
  std::size_t length = boundaries.size();
  while (length > 1) {
    const std::size_t half = length / 2;
    base += static_cast<std::size_t>(base[half - 1] <= x) * half;
    length -= half;
  }
  return static_cast<std::size_t>(base - boundaries.data()) + static_cast<std::size_t>(*base <= x);
}

}  // namespace

std::vector<double> binCounts(std::span<const double> midpoints, std::span<const double> values) {
  const std::vector<double> boundaries = boundariesBetween(midpoints);
  std::vector<double> counts(midpoints.size());
  if (boundaries.empty()) {
    counts.front() = static_cast<double>(values.size());
    return counts;
  }
  for (const double x : values) ++counts[countAtOrBelow(boundaries, x)];
  return counts;
}

}  // namespace zelkova
