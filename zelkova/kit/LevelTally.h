#pragma once

#include <cstddef>
#include <vector>

namespace zelkova {

/// Counts by level, numbered from 0, and how many lie below one (Fenwick, Software: Practice and Experience
/// 24, 1994).
class LevelTally {
 public:
  explicit LevelTally(std::size_t levels) : sums_(levels + 1) {}

  void add(std::size_t level, double count) {
    for (std::size_t i = level + 1; i < sums_.size(); i += i & -i) sums_[i] += count;
  }

  double below(std::size_t level) const {
    double sum = 0;
    for (std::size_t i = level; i > 0; i -= i & -i) sum += sums_[i];
    return sum;
  }

  double all() const { return below(sums_.size() - 1); }

 private:
  std::vector<double> sums_;
};

}  // namespace zelkova
