#include <cmath>

#include "zelkova/charts/lineBuilders.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/kit/sums.h"

namespace zelkova::control {

namespace {

/// Attribute charts have no estimate of sigma that could be missing.
constexpr double noSigma = 0;

double sumOf(std::span<const double> values) {
  return checked::finite(laneSum(values, [](double x) { return x; }));
}

/// The sample sizes that the labels of a phase hold.
std::vector<double> sizesOf(const Phase& phase) {
  std::vector<double> sizes;
  sizes.reserve(phase.y.size());
  for (std::size_t i = 0; i < phase.y.size(); ++i) {
    // Sizes are often all alike.
    const bool repeats = i > 0 && phase.x[i] == phase.x[i - 1];
    sizes.push_back(repeats ? sizes.back() : toNumber(phase.x[i], "dx"));
    if (sizes.back() < 0) raise(FailureNumber::InvalidCall, "a sample size must not be negative");
  }
  return sizes;
}

/// Defectives or defects per unit, all samples together, or the historical value.
double rateOf(const Phase& phase, const std::vector<double>& sizes, std::string_view histMean) {
  return histMean.empty() ? checked::quotient(sumOf(phase.y), sumOf(sizes)) : toNumber(histMean, "HistMean");
}

std::vector<double> ratios(std::span<const double> counts, const std::vector<double>& sizes) {
  std::vector<double> result;
  result.reserve(counts.size());
  for (std::size_t i = 0; i < counts.size(); ++i) result.push_back(checked::quotient(counts[i], sizes[i]));
  return result;
}

}  // namespace

void chartP(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const std::vector<double> sizes = sizesOf(phase);
  const double p = rateOf(phase, sizes, options.histMean);
  chart.add(ratios(phase.y, sizes), noSigma, [&](std::size_t i) {
    return LineAt{p, checked::root(p * (1 - p) / sizes[i])};
  });
}

void chartNP(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const std::vector<double> sizes = sizesOf(phase);
  const double p = rateOf(phase, sizes, options.histMean);
  chart.add(phase.y, noSigma, [&](std::size_t i) {
    return LineAt{p * sizes[i], checked::root(p * (1 - p) * sizes[i])};
  });
}

void chartC(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const double c = centreOf(phase, options.histMean);
  const LineAt line{c, checked::root(c)};
  chart.add(phase.y, noSigma, [line](std::size_t) { return line; });
}

void chartU(const Phase& phase, const ChartOptions& options, LineCollector& chart) {
  const std::vector<double> sizes = sizesOf(phase);
  const double u = rateOf(phase, sizes, options.histMean);
  chart.add(ratios(phase.y, sizes), noSigma, [&](std::size_t i) {
    return LineAt{u, checked::root(u / sizes[i])};
  });
}

}  // namespace zelkova::control
