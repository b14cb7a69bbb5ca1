#include "zelkova/plots/NestedGroups.h"

#include <algorithm>
#include <utility>

#include "zelkova/kit/SortedLevels.h"
#include "zelkova/kit/order.h"

namespace zelkova {

namespace {

FactorGroups outermost(std::span<const std::string> factor) {
  SortedLevels<std::string> levels = sortedLevels(factor);
  const std::span<const std::string> labels = levels.values.vector();
  return {{labels.begin(), labels.end()}, std::vector<Index>(labels.size(), 0), std::move(levels.codes)};
}

FactorGroups within(const FactorGroups& outer, std::span<const std::string> factor) {
  const SortedLevels<std::string> levels = sortedLevels(factor);
  // Two codes in one key: their product might not fit.
  constexpr int half = 32;
  std::vector<order::Row> rows(factor.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i] = {static_cast<order::Key>(outer.codes[i]) << half | static_cast<order::Key>(levels.codes[i]),
               static_cast<Index>(i)};
  }
  order::stableSort(rows);

  FactorGroups groups;
  groups.codes.resize(rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto row = static_cast<std::size_t>(rows[i].place);
    if (i == 0 || rows[i].key != rows[i - 1].key) {
      groups.labels.push_back(factor[row]);
      groups.parents.push_back(outer.codes[row]);
    }
    groups.codes[row] = groups.count() - 1;
  }
  return groups;
}

}  // namespace

std::vector<FactorGroups> nestedGroups(const std::vector<std::span<const std::string>>& factors) {
  std::vector<FactorGroups> nested;
  nested.reserve(factors.size());
  for (const auto& factor : factors) {
    nested.push_back(nested.empty() ? outermost(factor) : within(nested.back(), factor));
  }
  return nested;
}

std::vector<FactorGroups> singleGroup(Index rows) {
  return {{{""}, {0}, std::vector<Index>(static_cast<std::size_t>(rows), 0)}};
}

std::vector<std::vector<double>> placesOf(const std::vector<FactorGroups>& nested) {
  std::vector<std::vector<double>> places(nested.size());
  std::vector<double>& innermost = places.back();
  innermost.assign(nested.back().labels.size(), 1);
  for (std::size_t group = 1; group < innermost.size(); ++group) {
    innermost[group] = innermost[group - 1] + 1;
    std::size_t previous = group - 1;
    std::size_t current = group;
    for (std::size_t factor = nested.size() - 1; factor > 0; --factor) {
      previous = static_cast<std::size_t>(nested[factor].parents[previous]);
      current = static_cast<std::size_t>(nested[factor].parents[current]);
      if (previous == current) break;
      ++innermost[group];
    }
  }
  std::vector<double> starts = innermost;
  std::vector<double> ends = innermost;
  for (std::size_t factor = nested.size() - 1; factor > 0; --factor) {
    const std::vector<Index>& parents = nested[factor].parents;
    std::size_t outer = 0;
    for (std::size_t first = 0; first < parents.size(); ++outer) {
      std::size_t next = first + 1;
      while (next < parents.size() && parents[next] == parents[first]) ++next;
      starts[outer] = starts[first];
      ends[outer] = ends[next - 1];
      places[factor - 1].push_back((starts[outer] + ends[outer]) / 2);
      first = next;
    }
  }
  return places;
}

}  // namespace zelkova
