#include "zelkova/kit/modzSupport.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/order.h"

namespace zelkova {

namespace {

DoubleArray distinctRanks(const std::vector<order::Row>& sorted) {
  DoubleArray ranks(static_cast<Index>(sorted.size()));
  double rank = 0;
  for (const order::Row& row : sorted) ranks(row.place + 1) = ++rank;
  return ranks;
}

/// The whole number that an argument holds; nothing where it is not numeric or shows a decimal point.
std::optional<double> wholeNumber(const Variant& argument) {
  const std::string text = argument.toText();
  const std::optional<double> value = numberOf(text);
  if (!value || text.find('.') != std::string::npos || *value != std::trunc(*value)) return std::nullopt;
  return value;
}

}  // namespace

void GetUniqueD(const DoubleArray& data, DoubleArray& result) {
  result = Levels(data.vector()).distinct(data);
}

void GetUniqueS(const StringArray& labels, StringArray& result) {
  result = Levels(labels.vector()).distinct(labels);
}

bool IsFilledD(const DoubleArray& array) { return array.filled(); }

bool IsFilledS(const StringArray& array) { return array.filled(); }

void GetRanks(const DoubleArray& data, DoubleArray& ranks, bool averageTies) {
  std::vector<order::Row> rows = order::rowsOf(data.vector());
  if (averageTies) {
    order::stableSort(rows);
    DoubleArray averaged(static_cast<Index>(rows.size()));
    order::addRanks(rows, averaged.vector());
    ranks = std::move(averaged);
  } else {
    order::quickSort(rows);
    ranks = distinctRanks(rows);
  }
}

bool IsBalanced(const DoubleArray& data, const StringArray& factor1, const StringArray& factor2,
                bool equalCounts, bool replicates) {
  return isEvenlySpread(data.rows(), Levels(factor1.vector()), Levels(factor2.vector()), equalCounts,
                        replicates);
}

bool IsBalancedS(const StringArray& data, const StringArray& factor1, const StringArray& factor2,
                 bool equalCounts, bool replicates) {
  return isEvenlySpread(data.rows(), Levels(factor1.vector()), Levels(factor2.vector()), equalCounts,
                        replicates);
}

Variant GetGCD(const Variant& a, const Variant& b) {
  const std::optional<double> first = wholeNumber(a);
  const std::optional<double> second = wholeNumber(b);
  if (!first || !second) return "ERROR: Invalid numeric argument(s)";
  if (*first == 0 || *second == 0) return "ERROR: Argument(s) must be non-zero";
  double larger = std::max(std::abs(*first), std::abs(*second));
  double smaller = std::min(std::abs(*first), std::abs(*second));
  while (smaller != 0) larger = std::exchange(smaller, std::fmod(larger, smaller));
  return static_cast<double>(toInteger<std::int16_t>(larger));
}

}  // namespace zelkova
