#pragma once

#include <span>
#include <string>
#include <vector>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The distinct values of a column in order of first appearance, and which of them each element holds.
/// Numbers and places count from 0. Texts compare exactly; -0 equals 0.
class Levels {
 public:
  explicit Levels(std::span<const double> values);
  explicit Levels(std::span<const std::string> texts);

  /// The distinct rows of a table: `columns` are of equal length, and there is at least one.
  explicit Levels(const std::vector<std::span<const double>>& columns);

  Index count() const noexcept { return static_cast<Index>(firsts_.size()); }

  /// For each level, the place of its first element.
  const std::vector<Index>& firsts() const noexcept { return firsts_; }

  /// The distinct values themselves; `values` is the column that was split.
  template <class T>
  Array<T> distinct(const Array<T>& values) const {
    Array<T> result(count());
    for (Index i = 0; i < count(); ++i) result(i + 1) = values(firsts_[static_cast<std::size_t>(i)] + 1);
    return result;
  }

  /// For each element, the number of its level.
  const std::vector<Index>& codes() const noexcept { return codes_; }

 private:
  template <class Hash, class Same>
  void collect(std::size_t n, Hash hashAt, Same sameAt);

  std::vector<Index> firsts_;
  std::vector<Index> codes_;
};

/// As `IsBalanced` for the first `n` rows.
bool isEvenlySpread(Index n, const Levels& factor1, const Levels& factor2, bool equalCounts, bool replicates);

}  // namespace zelkova
