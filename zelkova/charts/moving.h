#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "zelkova/frame/Array.h"

/// Windows that move along a column.
namespace zelkova::control {

/// A moving length as a number of places among `n`: rounded, and n + 1 for all that are longer than the
/// column. Failure 9 where it is below 1.
Index movingLength(double w, Index n);

/// The ranges of each `w` adjacent values, n - w + 1 of them; none where w > n.
std::vector<double> movingRanges(std::span<const double> y, Index w);

/// Calls visit(i, joined) for each place i from 0, `joined` being `join` over the window of up to `w` values
/// that ends there, each value lifted first.
///
/// In blocks of w places a window is the end of one block and the start of the next (van Herk, 1992), so long
/// windows take as many steps as short ones, and nothing is ever taken away from a sum.
template <class Lift, class Join, class Visit>
void overWindows(std::span<const double> y, Index w, Lift lift, Join join, Visit visit) {
  using Item = decltype(lift(0.0));
  std::vector<Item> ends(std::min(static_cast<std::size_t>(w), y.size()));
  const auto block = static_cast<std::size_t>(w);
  Item head{};
  for (std::size_t i = 0, place = 0; i < y.size(); ++i) {
    head = place == 0 ? lift(y[i]) : join(head, lift(y[i]));
    const bool reachesBack = i >= block && place + 1 < block;
    visit(i, reachesBack ? join(ends[place + 1], head) : head);
    if (++place < block) continue;
    Item end = lift(y[i]);
    ends[place - 1] = end;
    for (std::size_t before = 1; before < block; ++before) {
      end = join(lift(y[i - before]), end);
      ends[place - 1 - before] = end;
    }
    place = 0;
  }
}

}  // namespace zelkova::control
