#pragma once

#include <span>
#include <string>
#include <vector>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The distinct values of a column in ascending order, and the place in it of each element, from 0.
template <class T>
struct SortedLevels {
  Array<T> values;
  std::vector<Index> codes;

  Index count() const noexcept { return values.size(); }
};

/// Numbers by size; -0 equals 0.
SortedLevels<double> sortedLevels(std::span<const double> column);

/// Texts in the numeric-aware order of `ExchangeSortS`. Distinct means exactly: "a" and "A" both stay.
SortedLevels<std::string> sortedLevels(std::span<const std::string> column);

}  // namespace zelkova
