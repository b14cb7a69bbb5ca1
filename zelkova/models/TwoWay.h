#pragma once

#include <span>
#include <vector>

#include "zelkova/kit/Levels.h"

namespace zelkova {

/// What a balanced layout of a by b cells with r values each consists of. Effects are deviations of the
/// levels' means from the mean of all; those of the interaction, the second factor's levels within each of
/// the first, are what the two leave of a cell's deviation. The sums of squares are those of the two factors,
/// of the interaction and within the cells; they are finite.
struct TwoWay {
  double a = 0;
  double b = 0;
  double r = 0;
  std::vector<double> effects1, effects2, effects12;
  double ss1 = 0;
  double ss2 = 0;
  double ss12 = 0;
  double within = 0;

  /// The sum of squares about the mean of all. Each part is summed as such, and nothing is left over from
  /// this: cancellation cannot touch a small error among large effects.
  double total() const { return ss1 + ss2 + ss12 + within; }
};

/// The layout of `values`, which `isEvenlySpread` with equal counts has found balanced.
TwoWay analyseTwoWay(std::span<const double> values, const Levels& levels1, const Levels& levels2);

}  // namespace zelkova
