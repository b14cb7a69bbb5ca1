#pragma once

#include <algorithm>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Failure.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {

/// `hold` with an element for each of n parameters; what it lacks is free.
inline DoubleArray heldOf(Index n, const DoubleArray& hold) {
  DoubleArray result(n, NoValue);
  if (!hold.filled()) return result;
  for (Index k = 1; k <= std::min(n, hold.rows()); ++k) result(k) = hold(k);
  return result;
}

/// The start of a search after so many failed ones: the held values, nine tenths of `first` for each failure,
/// and 2 where `first` has no value.
inline DoubleArray startAfter(int failed, const DoubleArray& first, const DoubleArray& hold) {
  DoubleArray start = first;
  for (Index k = 1; k <= start.rows(); ++k) {
    for (int i = 0; i < failed && start(k) != NoValue; ++i) start(k) *= 0.9;
    if (start(k) == NoValue) start(k) = 2;
    if (hold(k) != NoValue) start(k) = hold(k);
  }
  return start;
}

/// Calls `search` from `first`, and again from nine tenths of the start before while it ends in a failure (a
/// logarithm of 0, an overflow, a singular matrix). False after ten failures.
template <class Search>
bool searchFrom(const DoubleArray& first, const DoubleArray& hold, Search search) {
  constexpr int mostSearches = 10;
  for (int failed = 0; failed < mostSearches; ++failed) {
    try {
      search(startAfter(failed, first, hold));
      return true;
    } catch (const Failure&) {
      continue;
    }
  }
  return false;
}

}  // namespace zelkova
