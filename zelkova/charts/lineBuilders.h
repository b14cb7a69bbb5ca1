#pragma once

#include <span>
#include <string>
#include <string_view>

#include "zelkova/charts/ChartLines.h"
#include "zelkova/charts/Subgroups.h"

/// The builders of points and one-sigma lines, one for each kind of chart; each works on one phase.
namespace zelkova::control {

struct Phase {
  std::span<const double> y;
  std::span<const std::string> x;

  Subgroups subgroups() const { return {y, x}; }
};

/// The options of a chart, as the caller's texts: a chart reads, and refuses, only those that it needs.
struct ChartOptions {
  std::string_view estimate, histMean, histSD, mrLength, maLength, weight, histSDBetween, histSDWithin;
};

using LineBuilder = void (*)(const Phase&, const ChartOptions&, LineCollector&);

void chartIndividual(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartMovingRange(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartXbar(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartRange(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartStdDev(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartMovingAverage(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartEWMA(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartP(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartNP(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartC(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartU(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartBWMeans(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartBWMovingRange(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartBWRange(const Phase& phase, const ChartOptions& options, LineCollector& chart);
void chartBWStdDev(const Phase& phase, const ChartOptions& options, LineCollector& chart);

/// Begins each phase of `dp` in `chart` and calls build(phase). A `dp` that was never filled is a single
/// phase; failure 9 where it is shorter than the data. Labels may be missing.
template <class Build>
void forEachPhase(const Phase& all, const StringArray& dp, LineCollector& chart, Build build) {
  std::vector<Index> bounds{0};
  if (dp.filled()) bounds = runStarts(dp.vector(), all.y.size());
  bounds.push_back(static_cast<Index>(all.y.size()));
  for (std::size_t i = 0; i + 1 < bounds.size(); ++i) {
    const auto first = static_cast<std::size_t>(bounds[i]);
    const std::size_t rows = static_cast<std::size_t>(bounds[i + 1]) - first;
    chart.beginPhase();
    build(Phase{all.y.subspan(first, rows), all.x.empty() ? all.x : all.x.subspan(first, rows)});
  }
}

/// The mean of the phase's values, or the historical one.
double centreOf(const Phase& phase, std::string_view histMean);

}  // namespace zelkova::control
