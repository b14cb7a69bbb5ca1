#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "zelkova/frame/Array.h"

/// The two-level designs: full factorials, regular fractions, Plackett-Burman designs. Settings are -1 and
/// +1, tables (run, factor).
namespace zelkova::doe {

using SettingTable = Array<std::int16_t>;

/// The most factors a factorial design has.
inline constexpr int mostFactors = 15;

/// The letters of the factors in column order; I is the identity and names none.
inline constexpr std::string_view factorLetters = "ABCDEFGHJKLMNOP";

/// A product of factors, one bit a letter, A the lowest; 0 is the identity.
using Word = std::uint32_t;

/// The word that `text`, a run of letters, spells; failure 9 for what is no letter of a factor.
Word wordOf(std::string_view text);

/// A full factorial or a regular fraction of one. Words are products of the base factors, the first of the
/// letters, whose columns are a full factorial in standard order.
struct TwoLevelDesign {
  int runs;
  /// For each column the product of base factors that it holds.
  std::vector<Word> columns;
  /// For 2, 4, 8 ... blocks in turn, the words that generate the group confounded with them.
  std::vector<std::vector<Word>> blockWords;
};

/// The design `Design` of `Factor` factors (any of 2 factors); failure 9 where there is none.
TwoLevelDesign twoLevelDesign(int Factor, int Design);

/// Whether there is one.
bool hasTwoLevelDesign(int Factor, int Design);

/// All products of `words`, the identity included.
std::vector<Word> groupOf(const std::vector<Word>& words);

/// The table of a design, and in `blocks` its run numbers, 2^`BlockPower` slices of equal size, each a block
/// in rising order; the last is that where all block words are +1. `blocks` stays unfilled where the design
/// has no such blocks. Failure 9 where there is no such design.
void GetDesignTable(int Factor, int Design, int BlockPower, SettingTable& table, Array<Index>& blocks);

/// The Plackett-Burman design of `Run` runs for `Factor` factors, fewer than runs; failure 9 where there is
/// none.
SettingTable GetPBTable(int Factor, int Run);

/// The full factorial of `Count` factors, 1 to 9, in standard order; failure 9 for another number.
SettingTable GetLevelTable(int Count);

}  // namespace zelkova::doe
