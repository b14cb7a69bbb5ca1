#include "zelkova/charts/modzControl.h"

#include <cmath>

#include "zelkova/charts/Subgroups.h"
#include "zelkova/charts/moving.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/summary.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace control {

namespace {

/// The weighted mean of unbiased statistics: each is `statistic` over its mean in sigma units, and weighs as
/// its variance says. Subgroups of one value have no statistic.
template <class Statistic, class Mean, class Variance>
double weightedSigma(const Subgroups& subgroups, Statistic statistic, Mean mean, Variance variance) {
  double weighted = 0;
  double weights = 0;
  for (Index i = 0; i < subgroups.count(); ++i) {
    const double size = subgroups.size(i);
    if (size < 2) continue;
    const double expected = mean(size);
    const double weight = checked::quotient(expected * expected, variance(size, expected));
    weighted += weight * statistic(i) / expected;
    weights += weight;
  }
  return weights == 0 ? NoValue : checked::quotient(weighted, weights);
}

double movingRangeSum(std::span<const double> y, Index w) {
  // The everyday length needs no list of the ranges.
  if (w == 2) return laneSumOver(y.size() - 1, [y](std::size_t i) { return std::fabs(y[i + 1] - y[i]); });
  return laneSum(movingRanges(y, w), [](double x) { return x; });
}

std::vector<double> modalMeans(const Subgroups& subgroups) {
  const double mode = subgroups.modalSize();
  std::vector<double> means;
  if (mode < 2) return means;
  for (Index i = 0; i < subgroups.count(); ++i) {
    if (subgroups.size(i) == mode) means.push_back(subgroups.mean(i));
  }
  return means;
}

}  // namespace

double sigmaPooled(const Subgroups& subgroups) {
  double squares = 0;
  double df = 0;
  for (Index i = 0; i < subgroups.count(); ++i) {
    if (subgroups.size(i) < 2) continue;
    const double centre = subgroups.mean(i);
    squares += laneSum(subgroups.values(i), [centre](double x) { return (x - centre) * (x - centre); });
    df += subgroups.size(i) - 1;
  }
  if (df == 0) return NoValue;
  return checked::root(squares / df) / UnbiasC4(df + 1);
}

double sigmaSbar(const Subgroups& subgroups) {
  // Deliberate: the absolute value. The formula for c4 passes 1 at 5140 values; without it subgroups beyond
  // that would weigh negatively against smaller ones.
  return weightedSigma(
      subgroups, [&](Index i) { return subgroups.sd(i); }, UnbiasC4,
      [](double, double c4) { return std::fabs(1 - c4 * c4); });
}

double sigmaRbar(const Subgroups& subgroups) {
  return weightedSigma(
      subgroups, [&](Index i) { return subgroups.range(i); }, UnbiasD2,
      [](double size, double) { return UnbiasD3(size) * UnbiasD3(size); });
}

double sigmaAvgMR(std::span<const double> y, double w) {
  const Index length = movingLength(w, static_cast<Index>(y.size()));
  if (length > static_cast<Index>(y.size())) return NoValue;
  const double count = static_cast<double>(y.size()) - static_cast<double>(length) + 1;
  return checked::finite(movingRangeSum(y, length)) / count / UnbiasD2(static_cast<double>(length));
}

double sigmaMedianMR(std::span<const double> y, double w) {
  const Index length = movingLength(w, static_cast<Index>(y.size()));
  std::vector<double> ranges = movingRanges(y, length);
  if (ranges.empty()) return NoValue;
  for (const double range : ranges) checked::finite(range);
  return summary::selectMedian(ranges) / UnbiasD4(static_cast<double>(length));
}

double sigmaAvgMRMeans(const Subgroups& subgroups, double w) { return sigmaAvgMR(modalMeans(subgroups), w); }

double sigmaMedianMRMeans(const Subgroups& subgroups, double w) {
  return sigmaMedianMR(modalMeans(subgroups), w);
}

}  // namespace control

namespace {

control::Subgroups split(const DoubleArray& Y, const StringArray& L) { return {Y.vector(), L.vector()}; }

template <class Statistic>
DoubleArray ofEach(const control::Subgroups& subgroups, Statistic statistic) {
  DoubleArray result(subgroups.count());
  for (Index i = 0; i < subgroups.count(); ++i) result(i + 1) = statistic(i);
  return result;
}

DoubleArray squaredDistances(const control::Subgroups& subgroups) {
  std::vector<double> squares;
  squares.reserve(subgroups.column().size());
  for (Index i = 0; i < subgroups.count(); ++i) {
    const double centre = subgroups.mean(i);
    for (const double x : subgroups.values(i)) squares.push_back((x - centre) * (x - centre));
  }
  DoubleArray result(std::move(squares));
  checked::leaving(result);
  return result;
}

}  // namespace

DoubleArray GetSubgroupStat(const DoubleArray& Y, const StringArray& L, std::string_view Selector) {
  const control::Subgroups subgroups = split(Y, L);
  if (Selector == "Mean") return DoubleArray(subgroups.means());
  if (Selector == "Variance") return ofEach(subgroups, [&](Index i) { return subgroups.variance(i); });
  if (Selector == "Stddev") return ofEach(subgroups, [&](Index i) { return subgroups.sd(i); });
  if (Selector == "Range") return ofEach(subgroups, [&](Index i) { return subgroups.range(i); });
  if (Selector == "N") return DoubleArray(subgroups.sizes());
  if (Selector == "N_1") return ofEach(subgroups, [&](Index i) { return subgroups.size(i) - 1; });
  if (Selector == "VarPart") return squaredDistances(subgroups);
  return {};
}

double SigmaPooled(const DoubleArray& Y, const StringArray& L) { return control::sigmaPooled(split(Y, L)); }

double SigmaSbar(const DoubleArray& Y, const StringArray& L) { return control::sigmaSbar(split(Y, L)); }

double SigmaRbar(const DoubleArray& Y, const StringArray& L) { return control::sigmaRbar(split(Y, L)); }

double SigmaAvgMR(const DoubleArray& Y, double w) { return control::sigmaAvgMR(Y.vector(), w); }

double SigmaMedianMR(const DoubleArray& Y, double w) { return control::sigmaMedianMR(Y.vector(), w); }

double SigmaAvgMRMeans(const DoubleArray& Y, const StringArray& L, double w) {
  return control::sigmaAvgMRMeans(split(Y, L), w);
}

double SigmaMedianMRMeans(const DoubleArray& Y, const StringArray& L, double w) {
  return control::sigmaMedianMRMeans(split(Y, L), w);
}

}  // namespace zelkova
