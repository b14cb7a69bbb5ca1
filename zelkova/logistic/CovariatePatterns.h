#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Variant.h"
#include "zelkova/kit/Levels.h"

namespace zelkova {

/// The elements of `Y`, a vector or a table of one column, as they came; failure 5 where there are more
/// columns, failure 13 for an empty cell.
std::span<const Variant> responseOf(const VariantArray& Y);

/// Their numbers; failure 13 for a text that is none.
std::vector<double> numbersOf(std::span<const Variant> values, const char* name);

/// Failure 5 for more coefficients than can be fitted in reasonable time.
void checkCoefficients(double count);

/// The patterns' places from `first` on that are worked on at a time, so that they stay in the cache.
struct Block {
  static constexpr std::size_t longest = 256;

  std::size_t first;
  std::size_t count;
};

/// A number for each pattern of a block.
using Lane = std::array<double, Block::longest>;

/// The predictors of a model, identical rows gathered into patterns in order of first appearance.
///
/// Columns are kept centred and in units near their spread, so that sums of products keep their digits
/// whatever the unit and the distance from 0. Both are powers of two, or multiples of one: centring codes
/// and other short numbers rounds nothing.
class CovariatePatterns {
 public:
  /// Failures: 9 unless `x` has `n` rows, 5012 for a constant column, those of `numbersOf`.
  CovariatePatterns(const VariantArray& x, std::size_t n);

  std::size_t count() const { return columns_.front().size(); }
  std::size_t predictors() const { return columns_.size() - 1; }

  /// For each row of the data, the number of its pattern.
  const std::vector<Index>& codes() const { return codes_; }

  /// Column 0 is the constant's, the others are the predictors in order.
  std::span<const double> column(std::size_t j) const { return columns_[j]; }
  std::span<const double> column(std::size_t j, const Block& block) const {
    return column(j).subspan(block.first, block.count);
  }

  /// A predictor's column times its scale, plus its centre, is the predictor.
  double centre(std::size_t j) const { return centres_[j]; }
  double scale(std::size_t j) const { return scales_[j]; }

  template <class Work>
  void forBlocks(Work work) const {
    for (std::size_t first = 0; first < count(); first += Block::longest) {
      work(Block{first, std::min(Block::longest, count() - first)});
    }
  }

 private:
  std::vector<Index> codes_;
  std::vector<std::vector<double>> columns_;
  std::vector<double> centres_;
  std::vector<double> scales_;
};

/// How often each level of the response occurs in each pattern; levels that do not occur take no memory.
class LevelCounts {
 public:
  struct Cell {
    std::size_t level;
    double count;
  };

  /// `levels` numbers the level of each row of the data, from 0 to `levelCount` - 1.
  LevelCounts(const CovariatePatterns& patterns, const std::vector<Index>& levels, std::size_t levelCount);

  /// The levels that occur in a pattern, ascending.
  std::span<const Cell> of(std::size_t pattern) const {
    return std::span(cells_).subspan(starts_[pattern], starts_[pattern + 1] - starts_[pattern]);
  }

  /// Calls visit(level, count) for every level, those that do not occur in the pattern too.
  template <class Visit>
  void forLevels(std::size_t pattern, Visit visit) const {
    std::span<const Cell> left = of(pattern);
    for (std::size_t level = 0; level < levels(); ++level) {
      const bool occurs = !left.empty() && left.front().level == level;
      visit(level, occurs ? left.front().count : 0);
      if (occurs) left = left.subspan(1);
    }
  }

  /// Rows of a pattern, of a level, and in all.
  double rowsOfPattern(std::size_t pattern) const { return rows_[pattern]; }
  const std::vector<double>& rowsOfLevels() const { return totals_; }
  double rows() const { return all_; }

  std::size_t levels() const { return totals_.size(); }
  std::size_t patterns() const { return rows_.size(); }

 private:
  std::vector<Cell> cells_;
  std::vector<std::size_t> starts_;
  std::vector<double> rows_;
  std::vector<double> totals_;
  double all_;
};

}  // namespace zelkova
