#pragma once

#include <vector>

#include "zelkova/frame/Variant.h"

namespace zelkova {

/// The rows of a table of counts: one for each observation of level `lowest`, `lowest` + 1, ...
struct Observations {
  struct Pattern {
    std::vector<double> x;
    std::vector<int> counts;
  };

  explicit Observations(const std::vector<Pattern>& patterns, double lowest = 0) {
    Index n = 0;
    for (const Pattern& pattern : patterns) {
      for (const int count : pattern.counts) n += count;
    }
    Y = VariantArray(n, 1, Variant());
    x = VariantArray(n, static_cast<Index>(patterns.front().x.size()), Variant());
    Index row = 0;
    for (const Pattern& pattern : patterns) {
      for (std::size_t level = 0; level < pattern.counts.size(); ++level) {
        for (int i = 0; i < pattern.counts[level]; ++i) {
          Y(++row, 1) = lowest + static_cast<double>(level);
          for (Index j = 1; j <= x.columns(); ++j) x(row, j) = pattern.x[static_cast<std::size_t>(j - 1)];
        }
      }
    }
  }

  VariantArray Y, x;
};

/// Column `j` of a table, from row `first` on.
inline DoubleArray columnFrom(const DoubleArray& table, Index j, Index first = 1) {
  const auto column = table.column(j).subspan(static_cast<std::size_t>(first - 1));
  return DoubleArray(std::vector<double>(column.begin(), column.end()));
}

/// Bliss's beetles under carbon disulphide (Annals of Applied Biology 22, 1935): log10 of the dose, alive and
/// dead.
inline const std::vector<Observations::Pattern> beetles{
    {{1.6907}, {53, 6}},  {{1.7242}, {47, 13}}, {{1.7552}, {44, 18}}, {{1.7842}, {28, 28}},
    {{1.8113}, {11, 52}}, {{1.8369}, {6, 53}},  {{1.8610}, {1, 61}},  {{1.8839}, {0, 60}}};

/// Satisfaction (low, medium, high) of householders in Copenhagen (Madsen 1976; R's MASS::housing): medium
/// and high influence, apartments, atria, terraces (against towers), high contact.
inline const std::vector<Observations::Pattern> housing{
    {{0, 0, 0, 0, 0, 0}, {21, 21, 28}}, {{1, 0, 0, 0, 0, 0}, {34, 22, 36}},
    {{0, 1, 0, 0, 0, 0}, {10, 11, 36}}, {{0, 0, 1, 0, 0, 0}, {61, 23, 17}},
    {{1, 0, 1, 0, 0, 0}, {43, 35, 40}}, {{0, 1, 1, 0, 0, 0}, {26, 18, 54}},
    {{0, 0, 0, 1, 0, 0}, {13, 9, 10}},  {{1, 0, 0, 1, 0, 0}, {8, 8, 12}},
    {{0, 1, 0, 1, 0, 0}, {6, 7, 9}},    {{0, 0, 0, 0, 1, 0}, {18, 6, 7}},
    {{1, 0, 0, 0, 1, 0}, {15, 13, 13}}, {{0, 1, 0, 0, 1, 0}, {7, 5, 11}},
    {{0, 0, 0, 0, 0, 1}, {14, 19, 37}}, {{1, 0, 0, 0, 0, 1}, {17, 23, 40}},
    {{0, 1, 0, 0, 0, 1}, {3, 5, 23}},   {{0, 0, 1, 0, 0, 1}, {78, 46, 43}},
    {{1, 0, 1, 0, 0, 1}, {48, 45, 86}}, {{0, 1, 1, 0, 0, 1}, {15, 25, 62}},
    {{0, 0, 0, 1, 0, 1}, {20, 23, 20}}, {{1, 0, 0, 1, 0, 1}, {10, 22, 24}},
    {{0, 1, 0, 1, 0, 1}, {7, 10, 21}},  {{0, 0, 0, 0, 1, 1}, {57, 23, 13}},
    {{1, 0, 0, 0, 1, 1}, {31, 21, 13}}, {{0, 1, 0, 0, 1, 1}, {5, 6, 13}}};

}  // namespace zelkova
