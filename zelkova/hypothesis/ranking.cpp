#include "zelkova/hypothesis/ranking.h"

#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/TestType.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/Levels.h"

namespace zelkova::ranking {

double addRanks(std::span<const order::Row> sorted, std::span<double> rankSums) {
  double tieCube = 0;
  for (std::size_t first = 0, next = 0; first < sorted.size(); first = next) {
    while (next < sorted.size() && sorted[next].key == sorted[first].key) ++next;
    const double rank = static_cast<double>(first + 1 + next) / 2;
    for (std::size_t i = first; i < next; ++i) rankSums[static_cast<std::size_t>(sorted[i].place)] += rank;
    const auto t = static_cast<double>(next - first);
    tieCube += t * t * t - t;
  }
  return tieCube;
}

double median(std::span<const order::Row> sorted) {
  const auto value = [sorted](std::size_t i) { return order::fromOrderedBits(sorted[i].key); };
  const std::size_t n = sorted.size();
  if (n % 2 != 0) return value(n / 2);
  return checked::finite((value(n / 2 - 1) + value(n / 2)) / 2);
}

Groups::Groups(std::span<const double> values, std::span<const Index> groups, Index count)
    : values_(values.size()), starts_(static_cast<std::size_t>(count) + 1) {
  pooled_.reserve(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    pooled_.push_back({order::keyOf(checked::finite(values[i])), groups[i]});
    ++starts_[static_cast<std::size_t>(groups[i]) + 1];
  }
  if (std::find(starts_.begin() + 1, starts_.end(), 0) != starts_.end()) {
    raise(FailureNumber::OutOfRange, "a group has no value");
  }
  for (std::size_t g = 1; g < starts_.size(); ++g) starts_[g] += starts_[g - 1];

  order::stableSort(pooled_);
  std::vector<std::size_t> next(starts_.begin(), starts_.end() - 1);
  for (const order::Row& row : pooled_) {
    values_[next[static_cast<std::size_t>(row.place)]++] = order::fromOrderedBits(row.key);
  }
}

std::span<const double> Groups::sorted(Index g) const {
  const auto group = static_cast<std::size_t>(g);
  return std::span(values_).subspan(starts_[group], starts_[group + 1] - starts_[group]);
}

Labelled byLabel(const DoubleArray& dy, const StringArray& dx) {
  const std::span<const double> values = dy.vector();
  const std::span<const std::string> labels = dx.vector();
  if (labels.size() < values.size()) raise(FailureNumber::OutOfRange, "there are fewer labels than values");
  const Levels levels(labels);
  return {Groups(values, levels.codes(), levels.count()), levels.distinct(dx)};
}

double normalTail(WorksheetFunction& host, std::string_view testType, double deviation, double sd) {
  if (testType == TestType::LessThan) return host.NormSDist((deviation + 0.5) / sd);
  if (testType == TestType::GreaterThan) return host.NormSDist(-(deviation - 0.5) / sd);
  if (testType == TestType::NotEquals) {
    // deliberate: a sum of ranks less than 0.5 from its mean is taken as far on the other side of the
    // correction, so p stays a little below 1.
    return 2 * host.NormSDist(-std::abs((std::abs(deviation) - 0.5) / sd));
  }
  return NoValue;
}

}  // namespace zelkova::ranking
