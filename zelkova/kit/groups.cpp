#include "zelkova/kit/groups.h"

#include <algorithm>

#include "zelkova/kit/sums.h"

namespace zelkova {

Group groupOf(std::span<const double> values) {
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

std::vector<Group> groupsOf(std::span<const double> values, std::span<const Index> codes, Index count) {
  if (codes.size() < values.size()) raise(FailureNumber::OutOfRange, "fewer labels than values");
  std::vector<std::size_t> ends(static_cast<std::size_t>(count), 0);
  for (std::size_t i = 0; i < values.size(); ++i) ++ends[static_cast<std::size_t>(codes[i])];
  std::size_t end = 0;
  for (std::size_t& next : ends) {
    const std::size_t size = next;
    if (size == 0) raise(FailureNumber::OutOfRange, "a label without a value");
    next = end;
    end += size;
  }
  // `ends` holds where each group goes on, and in the end where it ends.
  std::vector<double> gathered(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    gathered[ends[static_cast<std::size_t>(codes[i])]++] = values[i];
  }

  std::vector<Group> groups;
  groups.reserve(ends.size());
  std::size_t start = 0;
  for (const std::size_t next : ends) {
    groups.push_back(groupOf(std::span<const double>(gathered).subspan(start, next - start)));
    start = next;
  }
  return groups;
}

}  // namespace zelkova
