#pragma once

#include <span>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {

/// An interval of the median; without limits until it is known to exist.
struct MedianInterval {
  double coverage = NoValue;
  double lower = NoValue;
  double upper = NoValue;
};

/// The interval of two order statistics s(place), s(n - place + 1).
struct AchievedInterval : MedianInterval {
  double place = NoValue;
};

/// The intervals of the median that the sign test gives: the two neighbouring pairs of order statistics whose
/// coverages enclose the confidence, and the interval between them that has it.
struct SignInterval {
  AchievedInterval inner;
  MedianInterval interpolated;
  AchievedInterval outer;
};

/// Of a sorted column at the confidence `CLevel`, a fraction. Where no two pairs enclose it there is the
/// outermost or the innermost pair alone. Failure 5 for a `CLevel` outside [0, 1].
SignInterval signInterval(WorksheetFunction& host, std::span<const double> sorted, double CLevel);

}  // namespace zelkova
