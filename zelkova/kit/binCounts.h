#pragma once

#include <span>
#include <vector>

namespace zelkova {

/// How many of `values`, which are finite, fall into the interval around each of `midpoints`. Neighbouring
/// intervals meet halfway between their midpoints; a value on that boundary belongs to the upper one. The
/// outer intervals are open, so the counts add up to all values. Failures: 9 without midpoints, 5 where they
/// are not ascending, 6 where two neighbours lie further apart than a double can tell.
std::vector<double> binCounts(std::span<const double> midpoints, std::span<const double> values);

}  // namespace zelkova
