#pragma once

#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"

/// What the methods of `yPASS` share.
namespace zelkova::power {

/// The texts of `obj`: what is to be found.
namespace Find {
inline constexpr std::string_view SampleSize = "1";
inline constexpr std::string_view Difference = "2";
inline constexpr std::string_view Power = "3";
}  // namespace Find

/// The numbers of a list with "," between. Failure 13, naming the argument, where one is none.
std::vector<double> numbersOf(std::string_view list, const char* argument);

/// The same for sample sizes: failure 5 for one that is not above 0.
std::vector<double> sampleSizesOf(std::string_view list);

/// Failure 5 for a standard deviation that is negative.
void checkSigma(double dSigma);

/// Whether `difference` (true less tested value) lies on the side of the alternative; never for a text that
/// is none.
bool agrees(double difference, std::string_view testType);

/// Whether `testType` is one of the three alternatives.
bool isAlternative(std::string_view testType);

/// A table with a row for each pair of values; `fill(table, row, outer, inner)` sees rows of `NoValue`.
template <class Fill>
DoubleArray rowForEachPair(Index columns, const std::vector<double>& outer, const std::vector<double>& inner,
                           Fill fill) {
  DoubleArray result(static_cast<Index>(outer.size() * inner.size()), columns, NoValue);
  Index row = 0;
  for (const double o : outer) {
    for (const double i : inner) fill(result, ++row, o, i);
  }
  checked::leaving(result);
  return result;
}

/// Failure 5 for a target that no sample size reaches.
void checkReachable(double difference, double target);

/// Failure 5, telling that no sample size up to `limit` reaches `target`.
[[noreturn]] void refuseWalk(double limit, double target);

/// A size from here on that falls short ends the search. Twice that is within the range of the host's
/// functions, in two groups too.
inline constexpr double largestSampleSize = 1e9;

/// The smallest sample size of at least 2 at which the power reaches `target`, in doubling strides from the
/// last size that fell short. Nothing where the power of a size above 2 is the target to the last bit.
/// `largest` bounds the walk, which looks at sizes below twice that.
template <class PowerAt>
std::optional<double> smallestSampleSize(double target, double largest, PowerAt powerAt) {
  double n = 2;
  double stride = 0.5;
  for (;;) {
    const double power = powerAt(n);
    if (power < target) {
      if (n >= largest) refuseWalk(largest, target);
      stride *= 2;
      n += stride;
    } else if (stride > 1 && power > target) {
      // Back to the last size, which is known to fall short, and on from there.
      n -= stride;
      stride = 1;
      n += stride;
    } else {
      // deliberate: from 3 on the power must be above the target; one that equals it to the last bit may end
      // a longer stride, which need not be the smallest size, so it is not reported.
      if (n > 2 && power == target) return std::nullopt;
      return n;
    }
  }
}

/// How `differenceFor` searches.
struct Bracketing {
  double start;      ///< the first difference, and the first step
  double direction;  ///< 1 where the power grows with the difference, -1 where it falls
  double tolerance;  ///< of the power
  int rounds;
};

/// The difference at which the power is `target`: steps that double while the power is too small, halve once
/// it was too large. Whatever stands after the last round otherwise. Failure 5 for a target above 1.
template <class PowerAt>
double differenceFor(double target, const Bracketing& search, PowerAt powerAt) {
  if (target > 1) raise(FailureNumber::InvalidCall, "Power must be a fraction of at most 1");
  double difference = search.start;
  double step = search.start;
  bool wasTooSmall = true;
  for (int round = 1; round <= search.rounds; ++round) {
    const double power = powerAt(difference);
    if (std::abs(target - power) < search.tolerance) break;
    const bool isTooSmall = power < target;
    step *= isTooSmall && wasTooSmall ? 2 : 0.5;
    difference += (isTooSmall ? step : -step) * search.direction;
    wasTooSmall = isTooSmall;
  }
  return difference;
}

}  // namespace zelkova::power
