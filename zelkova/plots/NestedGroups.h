#pragma once

#include <span>
#include <string>
#include <vector>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The levels of one factor within the groups of the factors before it. Only those exist that hold a value.
struct FactorGroups {
  std::vector<std::string> labels;  ///< of each group, in the order in which they stand on the axis
  std::vector<Index> parents;       ///< of each group, the number from 0 of that of the factor before; else 0
  std::vector<Index> codes;         ///< of each row, the number from 0 of its group

  Index count() const noexcept { return static_cast<Index>(labels.size()); }
};

/// The groups of rows by `factors`, which are of equal length, the outermost first: an element a factor, each
/// in the numeric-aware order of `ExchangeSortS` within the groups before.
std::vector<FactorGroups> nestedGroups(const std::vector<std::span<const std::string>>& factors);

/// One group of `rows` rows without a label, as nested groups of no factor are.
std::vector<FactorGroups> singleGroup(Index rows);

/// The places of the groups of each factor on an axis. Those of the last one stand at steps of 1, with a step
/// more for each factor before it whose group ends there; the others halfway between the first and the last
/// of these that they hold.
std::vector<std::vector<double>> placesOf(const std::vector<FactorGroups>& nested);

}  // namespace zelkova
