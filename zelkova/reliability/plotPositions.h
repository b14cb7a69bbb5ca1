#pragma once

#include <string_view>
#include <vector>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The failures of a life data set in order of time, with the share that has failed by each.
struct PlotPositions {
  std::vector<double> time;
  std::vector<double> share;
};

/// Sorts the rows by `SA` (by `EA` for "Turnbull") and places the failures by the method `pMtd`: "Median
/// rank" (Benard and Bos-Levenbach 1953, with adjusted ranks of Johnson 1964), "Kaplan-Meier" (Kaplan and
/// Meier 1958, the last step shortened), "Modified Kaplan-Meier" (the middle of each step), "Herd-Johnson"
/// (Herd 1960, Johnson 1964), or "Turnbull" (the share of the frequencies; a last point at 1 is dropped).
/// Shares are 0 for an unknown method.
PlotPositions placeFailures(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA, std::string_view pMtd);

}  // namespace zelkova
