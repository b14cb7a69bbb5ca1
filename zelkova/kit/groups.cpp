#include "zelkova/kit/groups.h"

#include <string>
#include <utility>

#include "zelkova/kit/Levels.h"

namespace zelkova {

Groups splitByLabel(const DoubleArray& values, const StringArray& labels) {
  const std::span<const double> rows = values.vector();
  const std::span<const std::string> texts = labels.vector();
  if (texts.size() < rows.size()) raise(FailureNumber::OutOfRange, "there are fewer labels than values");
  const Levels levels(texts);
  const auto levelOf = [&levels](std::size_t row) { return static_cast<std::size_t>(levels.codes()[row]); };

  std::vector<std::size_t> counts(static_cast<std::size_t>(levels.count()), 0);
  for (std::size_t row = 0; row < rows.size(); ++row) ++counts[levelOf(row)];
  std::vector<std::vector<double>> members(counts.size());
  for (std::size_t level = 0; level < counts.size(); ++level) members[level].reserve(counts[level]);
  for (std::size_t row = 0; row < rows.size(); ++row) members[levelOf(row)].push_back(rows[row]);

  Groups groups{levels.distinct(labels), {}};
  for (std::vector<double>& group : members) groups.values.emplace_back(std::move(group));
  return groups;
}

}  // namespace zelkova
