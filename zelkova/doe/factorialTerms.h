#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "zelkova/frame/Array.h"

/// The terms of a factorial model.
namespace zelkova::doe {

/// The rows of the analysis of variance by their numbers; interactions of k factors are k.
namespace group {
inline constexpr Index blocks = 0;
inline constexpr Index mainEffects = 1;
inline constexpr Index mostFactors = 7;
inline constexpr Index curvature = 8;
}  // namespace group

inline constexpr std::string_view constantLabel = "Constant";
inline constexpr std::string_view centreLabel = "Ct Pt";
inline constexpr std::string_view blockPrefix = "Blk";

/// Whether a term's label is that of factors: neither constant, nor block, nor centre.
inline bool isFactorTerm(std::string_view label) {
  return label != constantLabel && label != centreLabel && !label.starts_with(blockPrefix);
}

struct Term {
  std::string label;
  Index group;
  std::vector<Index> factors;  ///< whose settings are multiplied
  Index block = 0;             ///< of a block term
};

}  // namespace zelkova::doe
