#include <array>
#include <utility>

#include "zelkova/doe/PlottedRuns.h"
#include "zelkova/doe/yFactorial.h"
#include "zelkova/kit/modzStat.h"

namespace zelkova {

void yFactorial::MainEffectsOutput(const DoubleArray& dy, const StringArray& dx, const DoubleArray& dc,
                                   const StringArray& FName, const StringArray& FLow,
                                   const StringArray& FHigh, StringArray& PlotX, DoubleArray& PlotY,
                                   DoubleArray& PlotYC, StringArray& PlotXM, DoubleArray& PlotYM) const {
  const doe::PlottedRuns runs(dy, dx, dc, FName, FLow, FHigh);
  const Index factors = runs.factors();
  StringArray levels = doe::levelLabels(FLow, FHigh, factors);
  DoubleArray corners(3 * factors, NoValue);
  DoubleArray centres(3 * factors, NoValue);
  StringArray names(factors);
  DoubleArray means(factors, GetMean(runs.responses()));
  for (Index j = 1; j <= factors; ++j) {
    // By the setting: low, neither, high.
    std::array<doe::RunMean, 3> corner;
    std::array<doe::RunMean, 3> centre;
    for (Index i = 1; i <= runs.runs(); ++i) {
      const auto place = static_cast<std::size_t>(runs.coded(i, j) + 1);
      (runs.isCorner(i) ? corner : centre)[place].add(runs.response(i));
    }
    const Index low = 3 * j - 2;
    const Index high = 3 * j;
    corners(low) = corner[0].value();
    corners(high) = corner[2].value();
    for (Index slot = low; slot <= high; ++slot) {
      centres(slot) = centre[static_cast<std::size_t>(slot - low)].value();
    }
    names(j) = FName(j);
  }
  PlotX = std::move(levels);
  PlotY = std::move(corners);
  PlotYC = std::move(centres);
  PlotXM = std::move(names);
  PlotYM = std::move(means);
}

}  // namespace zelkova
