#pragma once

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/numberText.h"

/// What the studies of a measured characteristic share.
namespace zelkova::capability {

/// A fraction is reported in parts of this, or in percent.
inline constexpr double million = 1E6;

/// What is asked of a characteristic; nothing where it is not given.
struct Specifications {
  std::optional<double> upper, lower, target;
};

/// The share of the values for which `beyond` holds, in parts per million.
template <class Beyond>
double observed(std::span<const double> y, Beyond beyond) {
  const auto count = static_cast<double>(std::count_if(y.begin(), y.end(), beyond));
  return million * count / static_cast<double>(y.size());
}

/// Both sides together, or the one that has a value.
inline double total(double below, double above) {
  if (below == NoValue) return above;
  return above == NoValue ? below : below + above;
}

/// An option, or what it means where it is blank.
inline std::string_view textOr(std::string_view text, std::string_view ifBlank) {
  const std::string_view given = trimmed(text);
  return given.empty() ? ifBlank : given;
}

}  // namespace zelkova::capability
