#pragma once

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

#include "zelkova/charts/specialCauses.h"
#include "zelkova/frame/Array.h"
#include "zelkova/frame/NoValue.h"

/// What all chart methods share: points and one-sigma lines collected phase by phase, and the way from there
/// to the limits that are drawn.
namespace zelkova::control {

/// The centre line and how far the one-sigma lines lie from it.
struct LineAt {
  double centre, distance;
};

/// The points of a chart and its lines at one sigma, phase after phase.
class LineCollector {
 public:
  explicit LineCollector(std::size_t points);

  /// What is added from here on belongs to a new phase.
  void beginPhase() { phaseStarts_.push_back(static_cast<Index>(plotted_.size())); }

  /// Adds the points of a phase, with lineAt(i) for the lines of each; a `sigma` of `NoValue` leaves all
  /// lines without a value.
  template <class At>
  void add(std::span<const double> plotted, double sigma, At lineAt) {
    plotted_.insert(plotted_.end(), plotted.begin(), plotted.end());
    addLines(sigma, lineAt);
  }

  /// The same for `count` points that next() gives one by one.
  template <class Next, class At>
  void add(std::size_t count, Next next, double sigma, At lineAt) {
    for (std::size_t i = 0; i < count; ++i) plotted_.push_back(next());
    addLines(sigma, lineAt);
  }

  Index points() const noexcept { return static_cast<Index>(plotted_.size()); }
  ChartLines lines() const { return {centre_, lower_, upper_, plotted_}; }
  const std::vector<Index>& phaseStarts() const noexcept { return phaseStarts_; }

  /// The plotted points and the centre line, which leave the collector.
  DoubleArray takePlotted() { return DoubleArray(std::move(plotted_)); }
  DoubleArray takeCentre() { return DoubleArray(std::move(centre_)); }

 private:
  /// The lines of all points that have none yet.
  template <class At>
  void addLines(double sigma, At lineAt) {
    const std::size_t first = centre_.size();
    const auto lengthen = [this](std::size_t points) {
      for (std::vector<double>* line : {&centre_, &lower_, &upper_}) line->resize(points, NoValue);
    };
    if (sigma == NoValue) return lengthen(plotted_.size());
    // In pieces that are still in the cache when they get their values.
    constexpr std::size_t piece = 512;
    for (std::size_t begin = first; begin < plotted_.size(); begin += piece) {
      const std::size_t end = std::min(begin + piece, plotted_.size());
      lengthen(end);
      for (std::size_t i = begin; i < end; ++i) {
        const LineAt line = lineAt(i - first);
        centre_[i] = line.centre;
        lower_[i] = line.centre - line.distance;
        upper_[i] = line.centre + line.distance;
      }
    }
  }

  std::vector<double> plotted_, centre_, lower_, upper_;
  std::vector<Index> phaseStarts_;
};

/// The sigma multipliers of a text such as "1, 2,3"; failure 13 where an item is no number.
std::vector<double> multipliersOf(std::string_view limitPos);

/// Limits as they are drawn: tables with a column for each multiplier.
struct DrawnLimits {
  DoubleArray lower, upper;
};

/// The limits at each multiplier, none below `lowerBound` or above `upperBound`, which are numbers as texts
/// or blank; failure 13 for any other text.
DrawnLimits drawn(const ChartLines& lines, const std::vector<double>& multipliers,
                  std::string_view lowerBound, std::string_view upperBound);

/// The lines that part phases, three corners each, as fractions of the axis; never filled for one phase.
struct PhaseDividers {
  DoubleArray x, y;
};

PhaseDividers dividers(const std::vector<Index>& phaseStarts, Index points);

/// 1, 2, ..., `points`.
DoubleArray positions(Index points);

/// The number of a historical standard deviation; failure 13 for a text that is none, 5 for a negative one.
double historicalSigma(std::string_view text);

/// The names of `estimateType`, which are joined by ">"; failure 9 where there are not two.
struct EstimateNames {
  std::string_view movingRange, within;
};
EstimateNames namesOf(std::string_view estimateType);

}  // namespace zelkova::control
