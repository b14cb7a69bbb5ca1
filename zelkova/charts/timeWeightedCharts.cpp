#include <cmath>

#include "zelkova/charts/lineBuilders.h"
#include "zelkova/charts/moving.h"
#include "zelkova/charts/sigmaByName.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::control {

namespace {

/// Values that are averaged over time: a phase's rows or the means of its subgroups.
struct Series {
  std::span<const double> values;
  std::span<const double> sizes;  ///< of the subgroups; none for rows
  double centre, sigma;
};

/// Whether the labels number the rows: 1, 2, 3, ...
bool isIndividuals(const Phase& phase) {
  return toNumber(phase.x.back()) - toNumber(phase.x.front()) + 1 == static_cast<double>(phase.y.size());
}

/// The sum of 1/N over each window, of N = 1 where there are no sizes.
std::vector<double> inverseSizes(const Series& series, Index length) {
  std::vector<double> sums(series.values.size());
  if (series.sizes.empty()) {
    const auto longest = static_cast<std::size_t>(length);
    for (std::size_t i = 0; i < sums.size(); ++i) sums[i] = static_cast<double>(std::min(i + 1, longest));
    return sums;
  }
  overWindows(
      series.sizes, length, [](double n) { return 1 / n; }, [](double a, double b) { return a + b; },
      [&](std::size_t i, double sum) { sums[i] = sum; });
  return sums;
}

void addMovingAverages(const Series& series, double length, LineCollector& chart) {
  const Index window = movingLength(length, static_cast<Index>(series.values.size()));
  const auto longest = static_cast<std::size_t>(window);
  const auto countAt = [longest](std::size_t i) { return static_cast<double>(std::min(i + 1, longest)); };
  std::vector<double> plotted(series.values.size());
  overWindows(
      series.values, window, [](double x) { return x; }, [](double a, double b) { return a + b; },
      [&](std::size_t i, double sum) { plotted[i] = sum / countAt(i); });
  const std::vector<double> inverses = inverseSizes(series, window);
  chart.add(plotted, series.sigma, [&](std::size_t i) {
    return LineAt{series.centre, series.sigma / countAt(i) * std::sqrt(inverses[i])};
  });
}

void addEWMA(const Series& series, double weight, LineCollector& chart) {
  if (!(weight >= 0 && weight <= 1)) raise(FailureNumber::InvalidCall, "a weight must lie from 0 to 1");
  double z = series.centre;
  const auto average = [&, value = series.values.begin()]() mutable {
    z += weight * (*value++ - z);
    return z;
  };

  const double decay = (1 - weight) * (1 - weight);
  double power = 1;
  double sum = 0;
  LineAt line{series.centre, 0};
  const auto lineAt = [&](std::size_t i) {
    if (power == 0) return line;
    // Deliberate: the latest power goes with the latest size, although the oldest point weighs least.
    sum += series.sizes.empty() ? power : power / series.sizes[i];
    line.distance = series.sigma * weight * std::sqrt(sum);
    power *= decay;
    // Numbers this small change no sum, and the processor is slow on those smaller still.
    if (power < 1e-300) power = 0;
    return line;
  };
  chart.add(series.values.size(), average, series.sigma, lineAt);
}

/// Builds the series of a phase and hands it to `add`.
template <class Add>
void withSeries(const Phase& phase, const ChartOptions& options, Add add) {
  const double centre = centreOf(phase, options.histMean);
  const bool historical = !options.histSD.empty();
  if (isIndividuals(phase)) {
    const std::string_view name = options.estimate.substr(0, options.estimate.find('>'));
    const double sigma =
        historical ? historicalSigma(options.histSD) : movingRangeSigma(name, phase.y, options.mrLength);
    return add(Series{phase.y, {}, centre, sigma});
  }
  const Subgroups subgroups = phase.subgroups();
  const double sigma =
      historical ? historicalSigma(options.histSD) : withinSigma(namesOf(options.estimate).within, subgroups);
  add(Series{subgroups.means(), subgroups.sizes(), centre, sigma});
}

}  // namespace

void chartMovingAverage(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  withSeries(phase, options, [&](const Series& series) {
    addMovingAverages(series, toNumber(options.maLength, "MALength"), chart);
  });
}

void chartEWMA(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  withSeries(phase, options,
             [&](const Series& series) { addEWMA(series, toNumber(options.weight, "Weight"), chart); });
}

}  // namespace zelkova::control
