#include "zelkova/kit/labelOrder.h"

#include <algorithm>

#include "zelkova/frame/numberText.h"

namespace zelkova::order {

namespace {

bool numbersFirst(const Label* a, const Label* b) {
  if (a->number.has_value() != b->number.has_value()) return a->number.has_value();
  return less(*a, *b);
}

std::vector<const Label*> inNumbersFirst(const std::vector<Label>& labels) {
  std::vector<const Label*> sorted;
  sorted.reserve(labels.size());
  for (const Label& label : labels) sorted.push_back(&label);
  std::stable_sort(sorted.begin(), sorted.end(), numbersFirst);
  return sorted;
}

}  // namespace

std::vector<Label> labelsOf(std::span<const std::string> texts) {
  std::vector<Label> labels;
  labels.reserve(texts.size());
  for (const std::string& text : texts) {
    labels.push_back({numberOf(text), upperCase(text), static_cast<Index>(labels.size())});
  }
  return labels;
}

void sortNumbersFirst(std::vector<Label>& labels) {
  std::vector<Label> result;
  result.reserve(labels.size());
  for (const Label* label : inNumbersFirst(labels)) result.push_back(*label);
  labels = std::move(result);
}

std::optional<std::vector<Row>> rowsOf(const std::vector<Label>& labels) {
  const std::vector<const Label*> sorted = inNumbersFirst(labels);
  const auto text =
      std::find_if(sorted.begin(), sorted.end(), [](const Label* label) { return !label->number; });
  if (text != sorted.end() &&
      std::any_of(sorted.begin(), text, [&](const Label* number) { return !less(*number, **text); })) {
    return std::nullopt;
  }

  std::vector<Row> rows(labels.size());
  Key key = 0;
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    if (i > 0 && numbersFirst(sorted[i - 1], sorted[i])) ++key;
    rows[static_cast<std::size_t>(sorted[i]->place)] = {key, sorted[i]->place};
  }
  return rows;
}

}  // namespace zelkova::order
