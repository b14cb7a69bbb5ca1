#include "zelkova/kit/groups.h"

#include <algorithm>
#include <string>
#include <utility>

#include "zelkova/kit/Levels.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

std::vector<std::vector<double>> gathered(std::span<const double> values, std::span<const Index> codes,
                                          Index count) {
  if (codes.size() < values.size()) raise(FailureNumber::OutOfRange, "there are fewer labels than values");
  const auto groupOf = [codes](std::size_t row) { return static_cast<std::size_t>(codes[row]); };
  std::vector<std::size_t> sizes(static_cast<std::size_t>(count), 0);
  for (std::size_t row = 0; row < values.size(); ++row) ++sizes[groupOf(row)];
  std::vector<std::vector<double>> members(sizes.size());
  for (std::size_t group = 0; group < sizes.size(); ++group) members[group].reserve(sizes[group]);
  for (std::size_t row = 0; row < values.size(); ++row) members[groupOf(row)].push_back(values[row]);
  return members;
}

Groups splitByLabel(const DoubleArray& values, const StringArray& labels) {
  const std::span<const double> rows = values.vector();
  const Levels levels(labels.vector());
  Groups groups{levels.distinct(labels), {}};
  for (std::vector<double>& group : gathered(rows, levels.codes(), levels.count())) {
    groups.values.emplace_back(std::move(group));
  }
  return groups;
}

GroupSummary summaryOf(std::span<const double> values) {
  const auto n = static_cast<double>(values.size());
  const double first = checked::finite(values.front());
  // Equal values have no spread, even where the mean of them would be off by a rounding.
  if (std::all_of(values.begin(), values.end(), [first](double x) { return x == first; })) {
    return {n, first, 0, 0};
  }
  const double centre = checked::finite(laneSum(values, [](double x) { return x; })) / n;
  const double rest = laneSum(values, [centre](double x) { return x - centre; }) / n;
  const double squares = laneSum(values, [centre, rest](double x) {
    const double deviation = (x - centre) - rest;
    return deviation * deviation;
  });
  return {n, centre, checked::finite(rest), checked::finite(squares)};
}

std::vector<GroupSummary> summariesOf(std::span<const double> values, std::span<const Index> codes,
                                      Index count) {
  std::vector<GroupSummary> groups;
  groups.reserve(static_cast<std::size_t>(count));
  for (const std::vector<double>& group : gathered(values, codes, count)) {
    if (group.empty()) raise(FailureNumber::OutOfRange, "a label without a value");
    groups.push_back(summaryOf(group));
  }
  return groups;
}

}  // namespace zelkova
