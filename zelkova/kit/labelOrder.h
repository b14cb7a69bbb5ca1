#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "zelkova/kit/order.h"

namespace zelkova::order {

/// A text as the numeric-aware sorts see it, and where it stood, from 0.
struct Label {
  std::optional<double> number;
  std::string upper;
  Index place;
};

std::vector<Label> labelsOf(std::span<const std::string> texts);

/// The numeric-aware order: two numbers compare as numbers, any other pair as upper-cased texts. A mixed list
/// can hold a circle ("10" before "1A" before "9" as texts, "9" before "10" as numbers), so this is no order
/// that the standard sorts may be given.
inline bool less(const Label& a, const Label& b) {
  return a.number && b.number ? *a.number < *b.number : a.upper < b.upper;
}

/// Labels in an order without circles: numbers by size, then the other texts; equal ones in the order they
/// come.
void sortNumbersFirst(std::vector<Label>& labels);

/// The labels as rows, in the order they stand, whose keys compare as the labels do; nothing where the list
/// mixes numbers and texts that do not all come after the numbers.
std::optional<std::vector<Row>> rowsOf(const std::vector<Label>& labels);

}  // namespace zelkova::order
