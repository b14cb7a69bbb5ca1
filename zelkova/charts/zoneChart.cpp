#include <array>
#include <cmath>
#include <utility>

#include "zelkova/charts/lineBuilders.h"
#include "zelkova/charts/sigmaByName.h"
#include "zelkova/charts/yControlChart.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova {

namespace {

using control::Phase;
using control::Subgroups;

struct Scoring {
  std::array<double, 4> scores;  ///< of the zones, from the centre outward
  bool resets;
};

/// What becomes of the points of a chart, phase after phase.
struct ZonePoints {
  std::vector<double> positions, sums;
};

double sigmaOf(const Phase& phase, const Subgroups& subgroups, std::string_view sigmaType,
               std::string_view mrLength) {
  const control::EstimateNames names = control::namesOf(sigmaType);
  return subgroups.largestSize() == 1 ? control::exactMovingRangeSigma(names.movingRange, phase.y, mrLength)
                                      : control::exactWithinSigma(names.within, subgroups);
}

/// The zone of a mean, from 0. A border belongs to the zone inside it.
std::size_t zoneOf(double mean, double mu, double s) {
  for (std::size_t zone = 0; zone < 3; ++zone) {
    const double border = static_cast<double>(zone + 1) * s;
    if (mean <= mu ? mean >= mu - border : mean <= mu + border) return zone;
  }
  return 3;
}

void addPoints(const Subgroups& subgroups, double mu, double sigma, const Scoring& scoring,
               ZonePoints& points) {
  const auto count = static_cast<std::size_t>(subgroups.count());
  if (sigma == NoValue) {
    points.positions.insert(points.positions.end(), count, NoValue);
    points.sums.insert(points.sums.end(), count, NoValue);
    return;
  }
  double sum = 0;
  double before = mu;
  for (Index i = 0; i < subgroups.count(); ++i) {
    const double mean = subgroups.mean(i);
    const std::size_t zone = zoneOf(mean, mu, sigma / std::sqrt(subgroups.size(i)));
    const double position = static_cast<double>(zone) + 0.5;
    const bool crosses = (before < mu && mean > mu) || (before > mu && mean < mu);
    const bool restarts = i == 0 || crosses || (scoring.resets && sum >= scoring.scores[3]);
    sum = scoring.scores[zone] + (restarts ? 0 : sum);
    points.positions.push_back(mean <= mu ? -position : position);
    points.sums.push_back(sum);
    before = mean;
  }
}

}  // namespace

void yControlChart::ZoneChartOutput(const DoubleArray& dy, const StringArray& dx, const StringArray& dp,
                                    const std::string& SigmaType, const std::string& MRLength,
                                    bool ResetScore, double Zone1, double Zone2, double Zone3, double Zone4,
                                    const std::string& HistMean, const std::string& HistSD,
                                    const std::string& LimitPos, DoubleArray& DataX, DoubleArray& DataY,
                                    DoubleArray& DataYFailed, DoubleArray& CCL, DoubleArray& LCL,
                                    DoubleArray& UCL, DoubleArray& CumZoneScore, DoubleArray& PhaseX,
                                    DoubleArray& PhaseY) const {
  const Phase all{dy.vector(), dx.vector()};
  if (all.x.size() < all.y.size()) raise(FailureNumber::OutOfRange, "there are fewer labels than values");
  const Scoring scoring{{Zone1, Zone2, Zone3, Zone4}, ResetScore};

  control::LineCollector chart(all.y.size());
  ZonePoints points;
  control::forEachPhase(all, dp, chart, [&](const Phase& phase) {
    const Subgroups subgroups = phase.subgroups();
    const double mu = control::centreOf(phase, HistMean);
    const double sigma =
        HistSD.empty() ? sigmaOf(phase, subgroups, SigmaType, MRLength) : control::historicalSigma(HistSD);
    const std::size_t first = points.positions.size();
    addPoints(subgroups, mu, sigma, scoring, points);
    constexpr double inSigma = 1;
    chart.add(std::span(points.positions).subspan(first), inSigma, [](std::size_t) {
      return control::LineAt{0, 1};
    });
  });

  control::DrawnLimits limits = control::drawn(chart.lines(), control::multipliersOf(LimitPos), "", "");
  control::PhaseDividers phases = control::dividers(chart.phaseStarts(), chart.points());
  DoubleArray x = control::positions(chart.points());
  DoubleArray y = chart.takePlotted();
  DoubleArray sums(std::move(points.sums));
  checked::leaving(sums);
  DoubleArray failed(y.rows(), NoValue);
  for (Index i = 1; i <= y.rows(); ++i) {
    if (y(i) != NoValue && sums(i) >= Zone4) failed(i) = y(i);
  }

  DataX = std::move(x);
  DataY = std::move(y);
  DataYFailed = std::move(failed);
  CCL = chart.takeCentre();
  LCL = std::move(limits.lower);
  UCL = std::move(limits.upper);
  CumZoneScore = std::move(sums);
  if (phases.x.filled()) {
    PhaseX = std::move(phases.x);
    PhaseY = std::move(phases.y);
  }
}

}  // namespace zelkova
