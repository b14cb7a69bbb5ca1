#include <cmath>

#include "zelkova/charts/lineBuilders.h"
#include "zelkova/charts/modzControl.h"
#include "zelkova/charts/moving.h"
#include "zelkova/charts/sigmaByName.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::control {

namespace {

/// `NoValue` for the first w - 1 values, then the range of each and the w - 1 before it.
std::vector<double> plottedMovingRanges(std::span<const double> y, double w) {
  const Index length = movingLength(w, static_cast<Index>(y.size()));
  std::vector<double> plotted(y.size(), NoValue);
  const std::vector<double> ranges = movingRanges(y, length);
  std::copy(ranges.begin(), ranges.end(), plotted.end() - static_cast<Index>(ranges.size()));
  return plotted;
}

void addMovingRanges(std::span<const double> y, double sigma, double w, LineCollector& chart) {
  const std::vector<double> plotted = plottedMovingRanges(y, w);
  const LineAt line{sigma * UnbiasD2(w), sigma * UnbiasD3(w)};
  chart.add(plotted, sigma, [line](std::size_t) { return line; });
}

/// Ranges or standard deviations; `mean` and `spread` are their unbiasing constants.
template <class Statistic>
void addSpreads(const Subgroups& subgroups, double sigma, Statistic statistic, double (*mean)(double),
                double (*spread)(double), LineCollector& chart) {
  std::vector<double> plotted;
  plotted.reserve(subgroups.means().size());
  for (Index i = 0; i < subgroups.count(); ++i) plotted.push_back(statistic(i));
  chart.add(plotted, sigma, [&](std::size_t i) {
    const double n = subgroups.sizes()[i];
    return LineAt{sigma * mean(n), sigma * spread(n)};
  });
}

void addRanges(const Subgroups& subgroups, double sigma, LineCollector& chart) {
  addSpreads(
      subgroups, sigma, [&](Index i) { return subgroups.range(i); }, UnbiasD2, UnbiasD3, chart);
}

void addStdDevs(const Subgroups& subgroups, double sigma, LineCollector& chart) {
  addSpreads(
      subgroups, sigma, [&](Index i) { return subgroups.sd(i); }, UnbiasC4, UnbiasC5, chart);
}

double individualsSigma(const Phase& phase, const ChartOptions& options) {
  if (!options.histSD.empty()) return historicalSigma(options.histSD);
  return movingRangeSigma(options.estimate, phase.y, options.mrLength);
}

/// Deliberate: sigma passes through its text, so that the three charts of a study agree to the digits that a
/// caller can hand back as a historical value.
double throughText(double sigma) { return toNumber(numberText(sigma)); }

double withinSigmaOf(const Subgroups& subgroups, const ChartOptions& options) {
  if (!options.histSDWithin.empty()) return historicalSigma(options.histSDWithin);
  return exactWithinSigma(namesOf(options.estimate).within, subgroups);
}

/// The sigma of a subgroup mean. Deliberate: the moving ranges of the means stand as they are, a historical
/// within-subgroup sigma notwithstanding, unless a between-subgroup sigma is given.
double meansSigmaOf(const Subgroups& subgroups, const ChartOptions& options) {
  if (options.histSDBetween.empty()) {
    const std::string_view name = namesOf(options.estimate).movingRange;
    if (name == "Average Moving Range")
      return sigmaAvgMRMeans(subgroups, toNumber(options.mrLength, "MRLength"));
    if (name == "Median Moving Range")
      return sigmaMedianMRMeans(subgroups, toNumber(options.mrLength, "MRLength"));
    return 0;
  }
  const double between = historicalSigma(options.histSDBetween);
  const double within = withinSigmaOf(subgroups, options);
  if (within == NoValue) return NoValue;
  return std::sqrt(within * within / subgroups.modalSize() + between * between);
}

/// The sigma of a chart of the spread within subgroups. Deliberate: an R chart knows no Sbar and an S chart
/// no Rbar, so that name, `unknown`, makes sigma 0 as any other that is none.
double spreadSigma(const Subgroups& subgroups, const ChartOptions& options, std::string_view unknown) {
  if (!options.histSD.empty()) return historicalSigma(options.histSD);
  if (subgroups.largestSize() == 1) return NoValue;
  return sameIgnoringCase(options.estimate, unknown) ? 0 : withinSigma(options.estimate, subgroups);
}

}  // namespace

double centreOf(const Phase& phase, std::string_view histMean) {
  return histMean.empty() ? meanOf(phase.y) : toNumber(histMean, "HistMean");
}

void chartIndividual(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const LineAt line{centreOf(phase, options.histMean), individualsSigma(phase, options)};
  chart.add(phase.y, line.distance, [line](std::size_t) { return line; });
}

void chartMovingRange(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  addMovingRanges(phase.y, individualsSigma(phase, options), toNumber(options.mrLength, "MRLength"), chart);
}

void chartXbar(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const Subgroups subgroups = phase.subgroups();
  const double mu = centreOf(phase, options.histMean);
  double sigma = 0;
  if (!options.histSD.empty()) {
    sigma = historicalSigma(options.histSD);
  } else if (subgroups.largestSize() == 1) {
    sigma = sigmaAvgMR(phase.y, 2);
  } else {
    sigma = withinSigma(options.estimate, subgroups);
  }
  chart.add(subgroups.means(), sigma, [&](std::size_t i) {
    return LineAt{mu, sigma / std::sqrt(subgroups.sizes()[i])};
  });
}

void chartRange(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const Subgroups subgroups = phase.subgroups();
  const double sigma = spreadSigma(subgroups, options, "Sbar");
  addRanges(subgroups, sigma, chart);
}

void chartStdDev(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const Subgroups subgroups = phase.subgroups();
  const double sigma = spreadSigma(subgroups, options, "Rbar");
  addStdDevs(subgroups, sigma, chart);
}

void chartBWMeans(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const Subgroups subgroups = phase.subgroups();
  const LineAt line{centreOf(phase, options.histMean), throughText(meansSigmaOf(subgroups, options))};
  chart.add(subgroups.means(), line.distance, [line](std::size_t) { return line; });
}

void chartBWMovingRange(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const Subgroups subgroups = phase.subgroups();
  const double sigma = throughText(meansSigmaOf(subgroups, options));
  addMovingRanges(subgroups.means(), sigma, toNumber(options.mrLength, "MRLength"), chart);
}

void chartBWRange(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const Subgroups subgroups = phase.subgroups();
  addRanges(subgroups, throughText(withinSigmaOf(subgroups, options)), chart);
}

void chartBWStdDev(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const Subgroups subgroups = phase.subgroups();
  addStdDevs(subgroups, throughText(withinSigmaOf(subgroups, options)), chart);
}

}  // namespace zelkova::control
