#include "zelkova/kit/Levels.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>

#include "zelkova/kit/order.h"

namespace zelkova {

namespace {

/// A table with open addressing that doubles before it is half full.
class LevelTable {
 public:
  static constexpr Index none = -1;

  /// The level under `hash` that `same` knows again; where there is none, `none`, and `next` enters.
  template <class Same>
  Index findOrEnter(std::uint64_t hash, Index next, Same same) {
    if (2 * static_cast<std::size_t>(next) >= slots_.size()) grow();
    std::size_t at = hash & (slots_.size() - 1);
    for (; slots_[at].level != none; at = (at + 1) & (slots_.size() - 1)) {
      if (slots_[at].hash == hash && same(slots_[at].level)) return slots_[at].level;
    }
    slots_[at] = {hash, next};
    return none;
  }

 private:
  struct Slot {
    std::uint64_t hash = 0;
    Index level = none;
  };

  void grow() {
    std::vector<Slot> larger(2 * slots_.size());
    for (const Slot& slot : slots_) {
      if (slot.level == none) continue;
      std::size_t at = slot.hash & (larger.size() - 1);
      while (larger[at].level != none) at = (at + 1) & (larger.size() - 1);
      larger[at] = slot;
    }
    slots_ = std::move(larger);
  }

  std::vector<Slot> slots_ = std::vector<Slot>(64);
};

std::uint64_t mixed(std::uint64_t bits) {
  // The bits of round numbers differ in a few high places only: mix them down (finalizer of MurmurHash3).
  bits = (bits ^ (bits >> 33)) * 0xFF51AFD7ED558CCDULL;
  bits = (bits ^ (bits >> 33)) * 0xC4CEB9FE1A85EC53ULL;
  return bits ^ (bits >> 33);
}

std::uint64_t hashOf(double x) { return mixed(order::keyOf(x)); }

std::uint64_t hashOf(const std::string& text) { return std::hash<std::string_view>()(text); }

bool same(double a, double b) { return order::keyOf(a) == order::keyOf(b); }

bool same(const std::string& a, const std::string& b) { return a == b; }

}  // namespace

template <class Hash, class Same>
void Levels::collect(std::size_t n, Hash hashAt, Same sameAt) {
  LevelTable table;
  codes_.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    Index level = table.findOrEnter(hashAt(i), count(), [&](Index known) {
      return sameAt(static_cast<std::size_t>(firsts_[static_cast<std::size_t>(known)]), i);
    });
    if (level == LevelTable::none) {
      level = count();
      firsts_.push_back(static_cast<Index>(i));
    }
    codes_.push_back(level);
  }
}

Levels::Levels(std::span<const double> values) {
  collect(
      values.size(), [&](std::size_t i) { return hashOf(values[i]); },
      [&](std::size_t i, std::size_t j) { return same(values[i], values[j]); });
}

Levels::Levels(std::span<const std::string> texts) {
  collect(
      texts.size(), [&](std::size_t i) { return hashOf(texts[i]); },
      [&](std::size_t i, std::size_t j) { return same(texts[i], texts[j]); });
}

Levels::Levels(const std::vector<std::span<const double>>& columns) {
  std::vector<std::uint64_t> hashes(columns.front().size());
  for (const auto& column : columns) {
    for (std::size_t i = 0; i < hashes.size(); ++i) hashes[i] = mixed(hashes[i] ^ order::keyOf(column[i]));
  }
  const auto sameRow = [&](std::size_t i, std::size_t j) {
    return std::all_of(columns.begin(), columns.end(),
                       [&](const auto& column) { return same(column[i], column[j]); });
  };
  collect(
      hashes.size(), [&](std::size_t i) { return hashes[i]; }, sameRow);
}

bool isEvenlySpread(Index n, const Levels& factor1, const Levels& factor2, bool equalCounts,
                    bool replicates) {
  const auto rows = static_cast<std::size_t>(n);
  if (factor1.codes().size() < rows || factor2.codes().size() < rows) raise(FailureNumber::OutOfRange);
  const auto even = [&](const std::vector<Index>& counts) {
    const auto cells = static_cast<Index>(counts.size());
    return std::all_of(counts.begin(), counts.end(), [&](Index count) {
      return (!equalCounts || count * cells == n) && (!replicates || count >= 2);
    });
  };
  if (!equalCounts && !replicates) return true;
  // More cells than rows: some are empty, and neither condition lets that pass.
  if (factor1.count() > n / factor2.count()) return false;

  std::vector<Index> counts1(static_cast<std::size_t>(factor1.count()));
  std::vector<Index> counts2(static_cast<std::size_t>(factor2.count()));
  std::vector<Index> pairs(counts1.size() * counts2.size());
  for (std::size_t i = 0; i < rows; ++i) {
    const auto level1 = static_cast<std::size_t>(factor1.codes()[i]);
    const auto level2 = static_cast<std::size_t>(factor2.codes()[i]);
    ++counts1[level1];
    ++counts2[level2];
    ++pairs[level1 * counts2.size() + level2];
  }
  return even(counts1) && even(counts2) && even(pairs);
}

}  // namespace zelkova
