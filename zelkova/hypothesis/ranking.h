#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"
#include "zelkova/kit/order.h"

/// What the tests on ranks share.
namespace zelkova::ranking {

/// The values of several groups, sorted together and each group for itself.
class PooledGroups {
 public:
  /// Failure 9 where a group is empty, 6 where a value is not finite.
  explicit PooledGroups(std::span<const DoubleArray> groups);

  Index count() const noexcept { return static_cast<Index>(starts_.size()) - 1; }

  /// All rows in ascending order; the place of each is the number of its group, from 0.
  const std::vector<order::Row>& pooled() const noexcept { return pooled_; }

  /// The values of group `g`, from 0, ascending.
  std::span<const double> sorted(Index g) const;

 private:
  std::vector<order::Row> pooled_;
  std::vector<double> values_;
  std::vector<std::size_t> starts_{0};
};

/// The median of the values that the keys of sorted rows stand for.
double median(std::span<const order::Row> sorted);

/// The p-value of a sum of ranks that lies `deviation` from its mean, by the normal approximation with
/// continuity correction; `NoValue` where `testType` is no alternative.
double normalTail(WorksheetFunction& host, std::string_view testType, double deviation, double sd);

}  // namespace zelkova::ranking
