#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {

/// What is known of a unit's failure.
enum class Observation {
  Exact,     ///< it failed at the start of its span, which is also the end
  Right,     ///< it was alive at the start of its span; nothing is known of its end
  Left,      ///< it had failed by the end of its span; nothing is known of its start
  Interval,  ///< it failed within its span
};

/// How a row of life data reads, by exact comparison.
inline Observation observationOf(double start, double end) {
  if (start == end) return Observation::Exact;
  if (end == NoValue) return Observation::Right;
  if (start == NoValue) return Observation::Left;
  return Observation::Interval;
}

/// Failure 9 where `EA` or `FA` has no element for some element of `SA`.
void requireWholeRows(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA);

/// ln t; failure 5 for a time that has none.
double logTime(double t);

/// ln(end / start), with the digits of a short span.
double logRatio(double start, double end);

/// How many units stand in the rows of each kind.
struct KindTotals {
  double exact = 0;
  double right = 0;
  double left = 0;
  double interval = 0;
};

KindTotals frequenciesByKind(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA);

/// Times with the sum of the frequencies of the rows that share each, ascending.
struct WeightedTimes {
  std::vector<double> time;
  std::vector<double> frequency;
};

/// Spans with the sum of the frequencies of the rows that share each.
struct WeightedSpans {
  std::vector<double> start;
  std::vector<double> end;
  std::vector<double> frequency;
};

/// A life data set by kind of observation, equal rows summed.
struct LifeRows {
  WeightedTimes exact;
  WeightedTimes right;
  WeightedTimes left;
  WeightedSpans interval;
};

/// The rows of the life data `SA`, `EA` with the frequencies `FA`. Failure 9 for arrays that were never
/// filled and for fewer ends or frequencies than starts.
LifeRows lifeRows(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA);

}  // namespace zelkova
