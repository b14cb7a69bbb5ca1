#pragma once

#include <span>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova {

/// The values of a column by their labels, groups in order of first appearance.
struct Groups {
  StringArray labels;
  std::vector<DoubleArray> values;  ///< one array a label; never filled where a label has no value

  Index count() const noexcept { return labels.size(); }
};

/// Splits `values` by the label beside each. The rows are those of `values`; failure 9 where there are fewer
/// labels.
Groups splitByLabel(const DoubleArray& values, const StringArray& labels);

/// The values of each of `count` groups, in their order. `codes` holds the number of each value's group, 0 to
/// `count` - 1; codes beyond the last value are not read. Failure 9 where there are fewer codes than values.
std::vector<std::vector<double>> gathered(std::span<const double> values, std::span<const Index> codes,
                                          Index count);

/// One group of values: how many, their mean as the unevaluated sum `centre` + `rest`, and the sum of
/// their squared deviations from it. The mean in two parts keeps the digits of differences of means that lie
/// far from 0 (the corrected two-pass algorithm; Chan, Golub and LeVeque, 1983).
struct GroupSummary {
  double n = 0;
  double centre = 0;
  double rest = 0;
  double squares = 0;

  double mean() const { return centre + rest; }

  /// The standard deviation, divisor n - 1; 0 for one value.
  double sd() const { return n == 1 ? 0 : checked::root(squares / (n - 1)); }
};

/// The mean of `a` less that of `b`.
inline double difference(const GroupSummary& a, const GroupSummary& b) {
  return (a.centre - b.centre) + (a.rest - b.rest);
}

/// The summary of all `values`; they are not empty. Failure 6 where the sums overflow.
GroupSummary summaryOf(std::span<const double> values);

/// The summaries of `values` by the numbers in `codes`, 0 to `count` - 1, each group's values taken in order.
/// Codes beyond the last value are not read. Failure 9 where there are fewer codes than values, or a group
/// without a value.
std::vector<GroupSummary> summariesOf(std::span<const double> values, std::span<const Index> codes,
                                      Index count);

}  // namespace zelkova
