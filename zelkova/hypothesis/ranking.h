#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"
#include "zelkova/kit/order.h"

/// What the tests on ranks share. Sorted rows carry in `place` the number of their group, from 0.
namespace zelkova::ranking {

/// Adds each row's rank, ties averaged, to the sum of its group, and returns the sum over the ties of t cubed
/// minus t (as `GetTieCube`). The sums are exact up to some millions of rows.
double addRanks(std::span<const order::Row> sorted, std::span<double> rankSums);

/// The median of the values that the keys of sorted rows stand for.
double median(std::span<const order::Row> sorted);

/// Values of several groups, sorted together and each group for itself.
class Groups {
 public:
  /// `count` groups; `groups[i]` is that of `values[i]`. Failure 9 where a group is empty, 6 where a value is
  /// not finite.
  Groups(std::span<const double> values, std::span<const Index> groups, Index count);

  Index count() const noexcept { return static_cast<Index>(starts_.size()) - 1; }
  const std::vector<order::Row>& pooled() const noexcept { return pooled_; }

  /// The values of group `g`, from 0, ascending.
  std::span<const double> sorted(Index g) const;

 private:
  std::vector<order::Row> pooled_;
  std::vector<double> values_;
  std::vector<std::size_t> starts_;
};

/// Groups by label, and the label of each in order of first appearance.
struct Labelled {
  Groups groups;
  StringArray category;
};

/// Splits `dy` by the labels `dx`; failure 9 where they are fewer.
Labelled byLabel(const DoubleArray& dy, const StringArray& dx);

/// The p-value of a sum of ranks that lies `deviation` from its mean, by the normal approximation with
/// continuity correction; `NoValue` where `testType` is no alternative.
double normalTail(WorksheetFunction& host, std::string_view testType, double deviation, double sd);

}  // namespace zelkova::ranking
