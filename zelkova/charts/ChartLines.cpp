#include "zelkova/charts/ChartLines.h"

#include <algorithm>
#include <array>
#include <limits>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::control {

namespace {

/// The number of a bound's text; a blank one binds nowhere.
double boundOf(std::string_view text, double nowhere) {
  text = trimmed(text);
  return text.empty() ? nowhere : toNumber(text, "a bound of the limits");
}

/// Each line at its multiple of the one-sigma distance; `cut` keeps it within a bound.
template <class Cut>
DoubleArray drawnLimits(std::span<const double> centre, std::span<const double> oneSigma,
                        const std::vector<double>& multipliers, Cut cut) {
  // In pieces that stay in the cache until they have been checked: a chart has many more limits than points.
  std::array<double, 1024> piece{};
  std::vector<double> limits;
  limits.reserve(centre.size() * multipliers.size());
  for (const double k : multipliers) {
    for (std::size_t first = 0; first < centre.size(); first += piece.size()) {
      const std::size_t count = std::min(piece.size(), centre.size() - first);
      for (std::size_t i = 0; i < count; ++i) {
        const double line = oneSigma[first + i];
        const double limit = cut(centre[first + i] + k * (line - centre[first + i]));
        piece[i] = line == NoValue ? NoValue : limit;
      }
      checked::allFinite(std::span(piece).first(count));
      limits.insert(limits.end(), piece.data(), piece.data() + count);
    }
  }
  return {static_cast<Index>(centre.size()), static_cast<Index>(multipliers.size()), std::move(limits)};
}

}  // namespace

LineCollector::LineCollector(std::size_t points) {
  for (std::vector<double>* column : {&plotted_, &centre_, &lower_, &upper_}) column->reserve(points);
}

std::vector<double> multipliersOf(std::string_view limitPos) {
  std::vector<double> multipliers;
  while (true) {
    const std::size_t comma = limitPos.find(',');
    multipliers.push_back(toNumber(limitPos.substr(0, comma), "LimitPos"));
    if (comma == std::string_view::npos) return multipliers;
    limitPos.remove_prefix(comma + 1);
  }
}

DrawnLimits drawn(const ChartLines& lines, const std::vector<double>& multipliers,
                  std::string_view lowerBound, std::string_view upperBound) {
  constexpr double farAway = std::numeric_limits<double>::infinity();
  const double floor = boundOf(lowerBound, -farAway);
  const double ceiling = boundOf(upperBound, farAway);
  return {
      drawnLimits(lines.centre, lines.lower, multipliers, [=](double v) { return std::max(v, floor); }),
      drawnLimits(lines.centre, lines.upper, multipliers, [=](double v) { return std::min(v, ceiling); })};
}

PhaseDividers dividers(const std::vector<Index>& phaseStarts, Index points) {
  PhaseDividers result;
  const auto count = static_cast<Index>(phaseStarts.size()) - 1;
  result.x = DoubleArray(3 * count);
  result.y = DoubleArray(3 * count);
  for (Index i = 1; i <= count; ++i) {
    const Index last = phaseStarts[static_cast<std::size_t>(i)];
    const double x = static_cast<double>(last) / static_cast<double>(points);
    for (const Index corner : {3 * i - 2, 3 * i - 1, 3 * i}) result.x(corner) = x;
    result.y(3 * i - 1) = 1;
  }
  return result;
}

DoubleArray positions(Index points) {
  DoubleArray result(points);
  double position = 0;
  for (double& x : result.elements()) x = ++position;
  return result;
}

double historicalSigma(std::string_view text) {
  const double sigma = toNumber(text, "a historical sigma");
  if (sigma < 0) raise(FailureNumber::InvalidCall, "a standard deviation must not be negative");
  return sigma;
}

EstimateNames namesOf(std::string_view estimateType) {
  const std::size_t end = estimateType.find('>');
  if (end == std::string_view::npos) {
    raise(FailureNumber::OutOfRange, "the estimate needs two names joined by >");
  }
  const std::string_view rest = estimateType.substr(end + 1);
  return {estimateType.substr(0, end), rest.substr(0, rest.find('>'))};
}

}  // namespace zelkova::control
