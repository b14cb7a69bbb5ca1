#pragma once

#include <vector>

#include "zelkova/doe/codedRuns.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/models/CrossProducts.h"

namespace zelkova::doe {

/// The mean of responses that come one by one.
class RunMean {
 public:
  void add(double y) {
    sum_ += y;
    ++count_;
  }

  /// `NoValue` of no run.
  double value() const { return count_ == 0 ? NoValue : checked::finite(sum_ / static_cast<double>(count_)); }

 private:
  double sum_ = 0;
  Index count_ = 0;
};

/// What the plots read of a run sheet.
struct PlottedRuns {
  PlottedRuns(const DoubleArray& dy, const StringArray& dx, const DoubleArray& dc, const StringArray& FName,
              const StringArray& FLow, const StringArray& FHigh)
      : y(onlyColumnOf(dy, "dy")), coded(codedSettings(dx, FLow, FHigh, runs())), marks(dc) {
    checkCovers(dc.size(), runs(), "dc");
    checkCovers(FName.size(), factors(), "FName");
  }

  Index runs() const { return static_cast<Index>(y.size()); }
  Index factors() const { return coded.columns(); }
  /// As a vector, whatever they came as.
  DoubleArray responses() const { return DoubleArray(std::vector<double>(y.begin(), y.end())); }
  double response(Index run) const { return y[static_cast<std::size_t>(run - 1)]; }
  bool isCorner(Index run) const { return marks(run) == 1; }

  Column y;
  DoubleArray coded;  ///< -1, 0 and 1, (run, factor)
  const DoubleArray& marks;
};

/// Under an axis of `factors` factors, three slots each: low level, empty, high level.
inline StringArray levelLabels(const StringArray& FLow, const StringArray& FHigh, Index factors) {
  StringArray labels(3 * factors);
  for (Index j = 1; j <= factors; ++j) {
    labels(3 * j - 2) = FLow(j);
    labels(3 * j) = FHigh(j);
  }
  return labels;
}

}  // namespace zelkova::doe
