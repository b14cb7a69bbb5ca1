#include "zelkova/charts/Subgroups.h"

#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/sums.h"

namespace zelkova::control {

Subgroups::Subgroups(std::span<const double> y, std::span<const std::string> labels) : y_(y) {
  if (labels.size() < y.size()) raise(FailureNumber::OutOfRange, "there are fewer labels than values");
  for (std::size_t row = 0; row < y.size(); ++row) {
    if (row == 0 || labels[row] != labels[row - 1]) starts_.push_back(row);
  }
  const auto groups = static_cast<Index>(starts_.size());
  starts_.push_back(y.size());
  sizes_.reserve(starts_.size());
  means_.reserve(starts_.size());
  for (Index i = 0; i < groups; ++i) {
    sizes_.push_back(static_cast<double>(values(i).size()));
    means_.push_back(meanOf(values(i)));
  }
}

double Subgroups::variance(Index i) const {
  const std::span<const double> members = values(i);
  if (members.size() == 1) return NoValue;
  const double centre = mean(i);
  const double squares = laneSum(members, [centre](double x) { return (x - centre) * (x - centre); });
  // Deliberate: a variance that overflows is 0, as that of the kit.
  return std::isfinite(squares) ? squares / (size(i) - 1) : 0;
}

double Subgroups::sd(Index i) const {
  const double square = variance(i);
  return square == NoValue ? NoValue : std::sqrt(square);
}

double Subgroups::range(Index i) const {
  const std::span<const double> members = values(i);
  if (members.size() == 1) return NoValue;
  const auto [smallest, largest] = std::minmax_element(members.begin(), members.end());
  return checked::finite(*largest - *smallest);
}

double Subgroups::largestSize() const { return *std::max_element(sizes_.begin(), sizes_.end()); }

double Subgroups::modalSize() const { return GetMode(DoubleArray(sizes_)); }

double meanOf(std::span<const double> values) {
  const double first = values.front();
  if (std::all_of(values.begin(), values.end(), [first](double x) { return x == first; })) {
    return checked::finite(first);
  }
  return checked::finite(laneSum(values, [](double x) { return x; })) / static_cast<double>(values.size());
}

Index movingLength(double w, Index n) {
  const double length = roundHalfEven(checked::finite(w));
  if (length < 1) raise(FailureNumber::OutOfRange, "a moving length must be 1 or more");
  return length > static_cast<double>(n) ? n + 1 : static_cast<Index>(length);
}

std::vector<double> movingRanges(std::span<const double> y, Index w) {
  const auto n = static_cast<Index>(y.size());
  if (w > n) return {};
  const auto at = [y](Index i) { return y[static_cast<std::size_t>(i)]; };
  std::vector<double> ranges(static_cast<std::size_t>(n - w + 1));
  if (w == 2) {
    for (Index i = 1; i < n; ++i) ranges[static_cast<std::size_t>(i - 1)] = std::fabs(at(i) - at(i - 1));
    return ranges;
  }
  // In blocks of w places a window is the end of one block and the start of the next, so its extremes are
  // those of the two pieces (van Herk, 1992): as many steps for long windows as for short ones.
  std::vector<double> endSmallest(static_cast<std::size_t>(w));
  std::vector<double> endLargest(static_cast<std::size_t>(w));
  for (Index block = 0; block + w <= n; block += w) {
    double smallest = at(block + w - 1);
    double largest = smallest;
    for (Index i = w - 1; i >= 0; --i) {
      smallest = std::min(smallest, at(block + i));
      largest = std::max(largest, at(block + i));
      endSmallest[static_cast<std::size_t>(i)] = smallest;
      endLargest[static_cast<std::size_t>(i)] = largest;
    }
    ranges[static_cast<std::size_t>(block)] = largest - smallest;
    if (block + w == n) break;
    smallest = largest = at(block + w);
    for (Index i = 1; i < w && block + i + w <= n; ++i) {
      smallest = std::min(smallest, at(block + i + w - 1));
      largest = std::max(largest, at(block + i + w - 1));
      const auto end = static_cast<std::size_t>(i);
      ranges[static_cast<std::size_t>(block + i)] =
          std::max(largest, endLargest[end]) - std::min(smallest, endSmallest[end]);
    }
  }
  return ranges;
}

}  // namespace zelkova::control
