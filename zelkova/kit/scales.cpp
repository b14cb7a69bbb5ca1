#include "zelkova/kit/scales.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>
#include <optional>

#include "zelkova/frame/RunningObjects.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/modzSupport.h"

namespace zelkova {

double powerOfTen(Index exponent) {
  const std::optional<double> power = numberOf("1E" + std::to_string(exponent));
  if (!power || *power == 0) raise(FailureNumber::Overflow, "the data leave no room for intervals");
  return *power;
}

namespace {

/// The multiples of a magnitude that make readable steps.
constexpr std::array<double, 5> ladder = {1, 2, 2.5, 5, 10};

constexpr int mostIntervals = 90;

/// Below it an axis would leave the range of a double.
constexpr double smallestRange = 1E-290;

/// The multiple of `step` next to `x`, away from 0. The host's function takes one sign only.
double ceilingAwayFromZero(double x, double step) {
  if (x == 0) return 0;
  checked::finite(std::abs(x) + step);
  const double size = runningHost()->worksheetFunction().Ceiling(std::abs(x), step);
  return x < 0 ? -size : size;
}

/// The digits of a positive number rounded to a whole one.
Index digitsOfRounded(double x) {
  std::array<char, 400> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), roundHalfEven(x),
                                          std::chars_format::fixed, 0);
  return end - buffer.data();
}

bool isWhole(double x) { return x == std::trunc(x); }

/// The cube root of 16 n and a half more, rounded up, at most 90.
double targetIntervals(Index n) {
  const double target = std::ceil(checked::power(16 * static_cast<double>(n), 1.0 / 3) + 0.5);
  return std::min<double>(target, mostIntervals);
}

/// The five widths from which a histogram chooses, ascending. `q` is the width that would give the target.
std::array<double, ladder.size()> candidateWidths(double q) {
  std::array<double, ladder.size()> widths{};
  if (q >= 1) {
    const double magnitude = powerOfTen(digitsOfRounded(q) - 1);
    std::transform(ladder.begin(), ladder.end(), widths.begin(),
                   [magnitude](double step) { return step * magnitude; });
  } else {
    const double magnitude = powerOfTen(digitsOfRounded(checked::quotient(1, q)));
    std::transform(ladder.begin(), ladder.end(), widths.begin(),
                   [magnitude](double step) { return step / magnitude; });
  }
  return widths;
}

double chooseWidth(double range, double target, bool wholeData) {
  const auto widths = candidateWidths(range / target);
  std::optional<double> chosen;
  double nearest = 0;
  for (std::size_t i = widths.size(); i-- > 0;) {
    const double width = widths[i];
    const double intervals = range / width;
    const double distance = std::abs(intervals - target);
    if (intervals > mostIntervals || (wholeData && !isWhole(width))) continue;
    // Equally near in decimals may differ by a rounding in doubles; of two such widths the wider stays.
    constexpr double rounding = 1E-9;
    if (chosen && distance >= nearest - rounding * target) continue;
    chosen = width;
    nearest = distance;
  }
  if (chosen) return *chosen;
  // No width fits where whole numbers ask for parts of 1, or where the widest just misses the target's bound.
  return wholeData ? 1 : widths.back();
}

/// The width of the intervals of a histogram; the smallest and the largest value differ.
double histogramWidth(std::span<const double> values, double smallest, double largest) {
  const double range = checked::finite(largest - smallest);
  const double width = chooseWidth(range, targetIntervals(static_cast<Index>(values.size())),
                                   std::all_of(values.begin(), values.end(), isWhole));
  const double size = std::max(std::abs(smallest), std::abs(largest));
  const double spacing = std::nextafter(size, 2 * size) - size;
  if (width < 2 * spacing) {
    raise(FailureNumber::InvalidCall, "the data differ too little for their size");
  }
  return width;
}

/// The values from a multiple of `step` at or below `low` up to the first at or above `high`; a step too many
/// where there would be more than 10 steps.
std::vector<double> axisValues(double low, double high, double step) {
  constexpr std::size_t mostValues = 11;
  double start = ceilingAwayFromZero(low, step);
  if (readable(start) > low) start -= step;
  std::vector<double> values{readable(start)};
  while (values.back() < high && values.size() <= mostValues) {
    values.push_back(readable(start + static_cast<double>(values.size()) * step));
  }
  return values;
}

}  // namespace

double readable(double x) { return toNumber(numberText(checked::finite(x))); }

bool agreeOnAxis(double low, double high) {
  const double size = std::max(std::abs(low), std::abs(high));
  return high - low <= std::max(1E-12 * size, smallestRange);
}

DoubleArray GetHistogramBins(const DoubleArray& data) {
  checked::leaving(data);
  const double smallest = GetMin(data);
  const double largest = GetMax(data);
  if (smallest == largest) return {smallest};

  const double width = histogramWidth(data.vector(), smallest, largest);
  double midpoint = ceilingAwayFromZero(smallest, width);
  for (int round = 0; round < 100 && midpoint - width / 2 > smallest; ++round) midpoint -= width;
  std::vector<double> midpoints{midpoint};
  while (midpoints.size() < 100 && midpoints.back() + width / 2 < largest) {
    midpoints.push_back(midpoints.back() + width);
  }
  DoubleArray result(std::move(midpoints));
  checked::leaving(result);
  return result;
}

DoubleArray GetAxisScale(const DoubleArray& data, bool keepZero) {
  checked::leaving(data);
  double low = GetMin(data);
  double high = GetMax(data);
  if (keepZero) {
    low = std::min(low, 0.0);
    high = std::max(high, 0.0);
  }
  // Data that look the same stand in the middle of the axis.
  if (agreeOnAxis(low, high)) {
    const double size = std::max(std::abs(low), std::abs(high));
    const double margin = size > smallestRange ? size / 10 : 1;
    low -= margin;
    high += margin;
  }
  const double range = checked::finite(high - low);

  // From a tenth of the range on, the first step that needs no more than 10 intervals needs at least 4.
  for (Index exponent = static_cast<Index>(std::floor(std::log10(range / 10)));; ++exponent) {
    const double magnitude = powerOfTen(exponent);
    for (const double step : ladder) {
      std::vector<double> values = axisValues(low, high, step * magnitude);
      if (values.size() <= 11 && values.back() >= high) return DoubleArray(std::move(values));
    }
  }
}

}  // namespace zelkova
