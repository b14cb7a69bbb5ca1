#include <array>
#include <utility>

#include "zelkova/charts/lineBuilders.h"
#include "zelkova/charts/yControlChart.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova {

namespace {

using control::LineBuilder;

struct ChartKind {
  std::string_view name;
  LineBuilder build;
  bool readsLabels = true;
};

constexpr std::string_view withinChart = "IMRRS3";

constexpr std::array<ChartKind, 13> kinds{{
    {"INDIVIDUAL", control::chartIndividual, false},
    {"MR", control::chartMovingRange, false},
    {"XBAR", control::chartXbar},
    {"RCHART", control::chartRange},
    {"SCHART", control::chartStdDev},
    {"MA", control::chartMovingAverage},
    {"EWMA", control::chartEWMA},
    {"PChart", control::chartP},
    {"NPChart", control::chartNP},
    {"CChart", control::chartC, false},
    {"UChart", control::chartU},
    {"IMRRS1", control::chartBWMeans},
    {"IMRRS2", control::chartBWMovingRange},
}};

/// The chart of the within-subgroup spread, one for all phases: ranges lose too much in large subgroups.
ChartKind withinKind(const control::Subgroups& subgroups, std::string_view estimate) {
  const std::string_view within = control::namesOf(estimate).within;
  const bool large = subgroups.modalSize() >= 10;
  const bool standardDeviations = within == "Sbar" || (within == "Pooled Std Dev" && large);
  return {withinChart, standardDeviations ? control::chartBWStdDev : control::chartBWRange};
}

ChartKind kindOf(std::string_view chartType, const DoubleArray& dy, const StringArray& dx,
                 std::string_view estimate) {
  if (chartType == withinChart) return withinKind(control::Subgroups(dy.vector(), dx.vector()), estimate);
  for (const ChartKind& kind : kinds) {
    if (kind.name == chartType) return kind;
  }
  raise(FailureNumber::InvalidCall, "there is no such chart type");
}

}  // namespace

void yControlChart::ControlChartOutput(
    const std::string& ChartType, const DoubleArray& dy, const StringArray& dx, const StringArray& dp,
    DoubleArray& DataX, DoubleArray& DataY, DoubleArray& CCL, DoubleArray& LCL, DoubleArray& UCL,
    DoubleArray& PhaseX, DoubleArray& PhaseY, StringArray& FailedTest, const std::string& LimitPos,
    const std::string& LCLBound, const std::string& UCLBound, const std::string& EstimateType,
    const std::string& kvar1, const std::string& kvar2, const std::string& kvar3, const std::string& kvar4,
    const std::string& kvar5, const std::string& kvar6, const std::string& kvar7, const std::string& kvar8,
    const std::string& HistMean, const std::string& HistSD, const std::string& MRLength,
    const std::string& MALength, const std::string& Weight, const std::string& HistSDBetween,
    const std::string& HistSDWithin) const {
  const control::ChartOptions options{EstimateType, HistMean, HistSD,        MRLength,
                                      MALength,     Weight,   HistSDBetween, HistSDWithin};
  const ChartKind kind = kindOf(ChartType, dy, dx, EstimateType);
  const control::Phase all =
      kind.readsLabels ? control::Phase{dy.vector(), dx.vector()} : control::Phase{dy.vector(), {}};
  if (kind.readsLabels && all.x.size() < all.y.size()) {
    raise(FailureNumber::OutOfRange, "there are fewer labels than values");
  }

  control::LineCollector chart(all.y.size());
  control::forEachPhase(all, dp, chart,
                        [&](const control::Phase& phase) { kind.build(phase, options, chart); });

  control::DrawnLimits limits =
      control::drawn(chart.lines(), control::multipliersOf(LimitPos), LCLBound, UCLBound);
  control::PhaseDividers phases = control::dividers(chart.phaseStarts(), chart.points());
  DoubleArray x = control::positions(chart.points());
  checked::allFinite(chart.lines().plotted);
  checked::allFinite(chart.lines().centre);
  control::markFailedTests(chart.lines(), chart.phaseStarts(),
                           {kvar1, kvar2, kvar3, kvar4, kvar5, kvar6, kvar7, kvar8}, FailedTest);

  DataX = std::move(x);
  DataY = chart.takePlotted();
  CCL = chart.takeCentre();
  LCL = std::move(limits.lower);
  UCL = std::move(limits.upper);
  if (phases.x.filled()) {
    PhaseX = std::move(phases.x);
    PhaseY = std::move(phases.y);
  }
}

}  // namespace zelkova
