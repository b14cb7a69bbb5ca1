#include "zelkova/hypothesis/ranking.h"

#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/TestType.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova::ranking {

PooledGroups::PooledGroups(std::span<const DoubleArray> groups) {
  Index n = 0;
  for (const DoubleArray& group : groups) n += group.size();
  pooled_.reserve(static_cast<std::size_t>(n));
  for (const DoubleArray& group : groups) {
    for (const double x : group.vector()) pooled_.push_back({order::keyOf(checked::finite(x)), count()});
    starts_.push_back(pooled_.size());
  }
  order::stableSort(pooled_);
  values_.resize(pooled_.size());
  std::vector<std::size_t> next(starts_.begin(), starts_.end() - 1);
  for (const order::Row& row : pooled_) {
    values_[next[static_cast<std::size_t>(row.place)]++] = order::fromOrderedBits(row.key);
  }
}

std::span<const double> PooledGroups::sorted(Index g) const {
  const auto group = static_cast<std::size_t>(g);
  return std::span(values_).subspan(starts_[group], starts_[group + 1] - starts_[group]);
}

double median(std::span<const order::Row> sorted) {
  const auto value = [sorted](std::size_t i) { return order::fromOrderedBits(sorted[i].key); };
  const std::size_t n = sorted.size();
  if (n % 2 != 0) return value(n / 2);
  return checked::finite((value(n / 2 - 1) + value(n / 2)) / 2);
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
