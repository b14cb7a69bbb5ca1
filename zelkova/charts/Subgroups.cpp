#include "zelkova/charts/Subgroups.h"

#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/sums.h"

namespace zelkova::control {

namespace {

/// Whether two labels are equal. Most have a few letters, which are compared sooner than a call is made.
bool isSame(const std::string& a, const std::string& b) {
  constexpr std::size_t few = 8;
  if (a.size() != b.size()) return false;
  if (a.size() > few) return a == b;
  std::size_t i = 0;
  while (i < a.size() && a[i] == b[i]) ++i;
  return i == a.size();
}

}  // namespace

Subgroups::Subgroups(std::span<const double> y, std::span<const std::string> labels)
    : y_(y), starts_(runStarts(labels, y.size())) {
  const auto groups = static_cast<Index>(starts_.size());
  starts_.push_back(static_cast<Index>(y.size()));
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

std::vector<Index> runStarts(std::span<const std::string> labels, std::size_t n) {
  if (labels.size() < n) raise(FailureNumber::OutOfRange, "there are fewer labels than values");
  std::vector<Index> starts;
  for (std::size_t row = 0; row < n; ++row) {
    if (row == 0 || !isSame(labels[row], labels[row - 1])) starts.push_back(static_cast<Index>(row));
  }
  return starts;
}

double meanOf(std::span<const double> values) {
  const double first = values.front();
  if (std::all_of(values.begin(), values.end(), [first](double x) { return x == first; })) {
    return checked::finite(first);
  }
  return checked::finite(laneSum(values, [](double x) { return x; })) / static_cast<double>(values.size());
}

}  // namespace zelkova::control
