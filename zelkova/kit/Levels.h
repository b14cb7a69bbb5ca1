#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The distinct values of a column in order of first appearance, and which of them each element holds.
/// Numbers and places count from 0. Texts compare exactly; -0 equals 0.
class Levels {
 public:
  explicit Levels(std::span<const double> values);
  explicit Levels(std::span<const std::string> texts);

  Index count() const noexcept { return static_cast<Index>(firsts_.size()); }

  /// For each level, the place of its first element.
  const std::vector<Index>& firsts() const noexcept { return firsts_; }

  /// For each element, the number of its level.
  const std::vector<Index>& codes() const noexcept { return codes_; }

  /// The distinct elements of the column that the levels were made of.
  template <class T>
  Array<T> distinct(const Array<T>& column) const {
    std::vector<T> result;
    result.reserve(firsts_.size());
    for (const Index first : firsts_) result.push_back(column(first + 1));
    return Array<T>(std::move(result));
  }

 private:
  template <class T>
  void collect(std::span<const T> values);

  std::vector<Index> firsts_;
  std::vector<Index> codes_;
};

/// As `IsBalanced` for the first `n` rows.
bool isEvenlySpread(Index n, const Levels& factor1, const Levels& factor2, bool equalCounts, bool replicates);

}  // namespace zelkova
