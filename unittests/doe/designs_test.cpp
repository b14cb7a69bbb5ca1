#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <bitset>
#include <fstream>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "unittests/support.h"
#include "zelkova/doe/designCatalogue.h"

namespace zelkova::doe {
namespace {

using Signs = std::bitset<128>;  // set where a run is low

Signs lowRuns(const SettingTable& table, Index j) {
  Signs signs;
  for (Index i = 1; i <= table.rows(); ++i) signs[static_cast<std::size_t>(i - 1)] = table(i, j) == -1;
  return signs;
}

Index dot(const SettingTable& table, Index a, Index b) {
  Index sum = 0;
  for (Index i = 1; i <= table.rows(); ++i) sum += Index{table(i, a)} * table(i, b);
  return sum;
}

struct Key {
  int factors, design, runs;
  int resolution;   // 0 for a full factorial
  int blockPowers;  // how many numbers of blocks, from 2 on
};

// The resolutions are those of the published tables of 2^(k-p) designs (Box and Hunter, Technometrics 3,
// 1961; Montgomery, Design and Analysis of Experiments).
const std::vector<Key> keys = {
    {2, 1, 4, 0, 1},    {3, 1, 4, 3, 0},    {3, 2, 8, 0, 2},    {4, 1, 8, 4, 2},    {4, 2, 16, 0, 3},
    {5, 1, 8, 3, 1},    {5, 2, 16, 5, 2},   {5, 3, 32, 0, 4},   {6, 1, 8, 3, 1},    {6, 2, 16, 4, 3},
    {6, 3, 32, 6, 4},   {6, 4, 64, 0, 5},   {7, 1, 8, 3, 0},    {7, 2, 16, 4, 3},   {7, 3, 32, 4, 3},
    {7, 4, 64, 7, 4},   {7, 5, 128, 0, 6},  {8, 1, 16, 4, 3},   {8, 2, 32, 4, 3},   {8, 3, 64, 5, 4},
    {8, 4, 128, 8, 5},  {9, 1, 16, 3, 2},   {9, 2, 32, 4, 3},   {9, 3, 64, 4, 4},   {9, 4, 128, 6, 4},
    {10, 1, 16, 3, 2},  {10, 2, 32, 4, 3},  {10, 3, 64, 4, 4},  {10, 4, 128, 5, 4}, {11, 1, 16, 3, 2},
    {11, 2, 32, 4, 3},  {11, 3, 64, 4, 4},  {11, 4, 128, 5, 4}, {12, 1, 16, 3, 2},  {12, 2, 32, 4, 3},
    {12, 3, 64, 4, 4},  {12, 4, 128, 4, 4}, {13, 1, 16, 3, 1},  {13, 2, 32, 4, 3},  {13, 3, 64, 4, 4},
    {13, 4, 128, 4, 4}, {14, 1, 16, 3, 1},  {14, 2, 32, 4, 3},  {14, 3, 64, 4, 4},  {14, 4, 128, 4, 4},
    {15, 1, 16, 3, 0},  {15, 2, 32, 4, 3},  {15, 3, 64, 4, 4},  {15, 4, 128, 4, 4}};

struct Fetched {
  SettingTable table;
  Array<Index> blocks;
};

Fetched fetch(const Key& key, int power = 0) {
  Fetched result;
  GetDesignTable(key.factors, key.design, power, result.table, result.blocks);
  return result;
}

/// The design as its generators make it: without the high first run of (9, 2) and the repeated factor of
/// (14, 2).
SettingTable regularTable(const Key& key) {
  SettingTable table = fetch(key).table;
  if (key.factors == 9 && key.design == 2) table(1, 1) = -1;
  SettingTable result(table.rows(), key.factors, 0);
  std::copy_n(table.elements().begin(), result.size(), result.elements().begin());
  return result;
}

std::string textOf(Word word) {
  std::string text;
  for (; word != 0; word &= word - 1) text += factorLetters[static_cast<std::size_t>(std::countr_zero(word))];
  return text;
}

// Faults: a mistyped generator, a negative one, base columns in another order, a missing run. All words of up
// to eight letters are tried against the table itself.
TEST(TwoLevelDesigns, HaveTheirResolution) {
  for (const Key& key : keys) {
    SCOPED_TRACE(std::to_string(key.factors) + ", " + std::to_string(key.design));
    const SettingTable table = regularTable(key);
    ASSERT_EQ(table.rows(), key.runs);
    for (Index i = 1; i <= key.runs; ++i) {
      for (Index j = 1; Index{1} << (j - 1) < key.runs; ++j) {
        ASSERT_EQ(table(i, j), ((i - 1) >> (j - 1) & 1) != 0 ? 1 : -1);
      }
    }
    std::vector<Signs> products(std::size_t{1} << key.factors);
    int shortest = 0;
    for (Word word = 1; word < products.size(); ++word) {
      products[word] = products[word & (word - 1)] ^ lowRuns(table, std::countr_zero(word) + 1);
      const auto low = static_cast<int>(products[word].count());
      ASSERT_NE(low, key.runs) << "a negative word";
      const int letters = std::popcount(word);
      if (low == 0 && (shortest == 0 || letters < shortest)) shortest = letters;
    }
    EXPECT_EQ(shortest, key.resolution);
  }
}

// Faults: blocks of other runs than their words make, a wrong order of blocks, a factor confounded with
// blocks that none other shares than M of (13, 4) in 16 blocks.
TEST(TwoLevelDesigns, HaveBalancedBlocks) {
  std::set<std::string> confounded;
  for (const Key& key : keys) {
    const SettingTable table = regularTable(key);
    for (int power = 0; power <= 7; ++power) {
      const Array<Index> blocks = fetch(key, power).blocks;
      ASSERT_EQ(blocks.filled(), power <= key.blockPowers) << key.factors << key.design << power;
      if (!blocks.filled()) continue;
      std::vector<Index> sorted(blocks.elements().begin(), blocks.elements().end());
      const auto size = static_cast<std::ptrdiff_t>(key.runs >> power);
      for (auto block = sorted.begin(); block != sorted.end(); block += size) {
        ASSERT_TRUE(std::is_sorted(block, block + size));
        for (Index j = 1; j <= key.factors; ++j) {
          Index sum = 0;
          for (auto run = block; run != block + size; ++run) sum += table(*run, j);
          if (sum != 0) {
            confounded.insert(std::to_string(key.factors) + "," + std::to_string(key.design) + " " +
                              std::to_string(1 << power) + factorLetters[static_cast<std::size_t>(j - 1)]);
          }
        }
      }
      // The last block is the principal one, which holds the run with all factors high.
      EXPECT_EQ(sorted.back(), key.runs);
      std::sort(sorted.begin(), sorted.end());
      std::vector<Index> all(static_cast<std::size_t>(key.runs));
      std::iota(all.begin(), all.end(), 1);
      EXPECT_EQ(sorted, all);
    }
  }
  EXPECT_EQ(confounded, (std::set<std::string>{"13,4 16M"}));

  // By hand, from the signs of AB, of ABC, and of AB and AC.
  EXPECT_EQ(fetch({2, 7, 4, 0, 1}, 1).blocks, (Array<Index>{2, 3, 1, 4}));
  EXPECT_EQ(fetch({6, 1, 8, 3, 1}, 1).blocks, (Array<Index>{1, 4, 6, 7, 2, 3, 5, 8}));
  EXPECT_EQ(fetch({3, 2, 8, 0, 2}, 2).blocks, (Array<Index>{2, 7, 4, 5, 3, 6, 1, 8}));
}

// Fault: a page of designs that tells of others than are made. Words as the page spells them.
TEST(TwoLevelDesigns, AreThoseOfTheirPage) {
  std::ifstream page(ZELKOVA_SOURCE_DIR "/docs/designs.md");
  std::size_t row = 0;
  for (std::string line; std::getline(page, line);) {
    if (!line.starts_with("| ") || line.starts_with("| Factor")) continue;
    ASSERT_LT(row, keys.size());
    const Key& key = keys[row++];
    const TwoLevelDesign design = twoLevelDesign(key.factors, key.design);
    const std::vector<std::string> roman = {"full", "", "", "III", "IV", "V", "VI", "VII", "VIII"};
    std::string expected = "| " + std::to_string(key.factors) + " | " + std::to_string(key.design) + " | " +
                           std::to_string(key.runs) + " | " +
                           roman[static_cast<std::size_t>(key.resolution)] + " |";
    for (std::size_t j = 0; j < design.columns.size(); ++j) {
      if (std::has_single_bit(design.columns[j])) continue;
      expected += expected.ends_with("|") ? " " : ", ";
      expected += std::string(1, factorLetters[j]) + "=" + textOf(design.columns[j]);
    }
    expected += expected.ends_with("|") ? " - |" : " |";
    for (const std::vector<Word>& words : design.blockWords) {
      if (!expected.ends_with("|")) expected += ";";
      for (const Word word : words) expected += " " + textOf(word);
    }
    expected += expected.ends_with("|") ? " - |" : " |";
    EXPECT_EQ(line, expected);
  }
  EXPECT_EQ(row, keys.size());
}

// Faults: the two odd designs mended, or odd in another cell.
TEST(TwoLevelDesigns, KeepTheirTwoOddOnes) {
  const SettingTable nine = fetch({9, 2, 32, 4, 3}).table;
  for (Index i = 1; i <= 32; ++i) EXPECT_EQ(nine(i, 1), i % 2 == 0 || i == 1 ? 1 : -1);
  const SettingTable fourteen = fetch({14, 2, 32, 4, 3}).table;
  ASSERT_EQ(fourteen.columns(), 15);
  const SettingTable fifteen = fetch({15, 2, 32, 4, 3}).table;
  for (Index i = 1; i <= 32; ++i) {
    EXPECT_EQ(fourteen(i, 15), fourteen(i, 14));
    for (Index j = 1; j <= 14; ++j) ASSERT_EQ(fourteen(i, j), fifteen(i, j));
  }
  const std::vector<Key> missing = {{1, 1, 0, 0, 0}, {3, 3, 0, 0, 0},  {4, 0, 0, 0, 0},
                                    {5, 4, 0, 0, 0}, {6, 5, 0, 0, 0},  {7, 6, 0, 0, 0},
                                    {8, 5, 0, 0, 0}, {15, 5, 0, 0, 0}, {16, 1, 0, 0, 0}};
  for (const Key& key : missing) EXPECT_EQ(failureNumber([&] { fetch(key); }), 9) << key.factors;
}

// Faults: a mistyped sign, a column turned the other way, the doubling or the table of 28 runs gone wrong.
// Any wrong sign breaks the orthogonality of the saturated design.
TEST(PlackettBurmanDesigns, AreOrthogonal) {
  for (const int runs : {12, 16, 20, 24, 28, 32, 36, 40, 44, 48}) {
    const SettingTable table = GetPBTable(runs - 1, runs);
    ASSERT_EQ(table.rows(), runs);
    for (Index a = 1; a < runs; ++a) {
      const auto column = table.column(a);
      ASSERT_EQ(std::accumulate(column.begin(), column.end(), 0), 0);
      for (Index b = 1; b < a; ++b) ASSERT_EQ(dot(table, a, b), 0) << runs << " " << a << " " << b;
      if (runs != 40) {
        EXPECT_EQ(table(runs, a), -1);
      }
    }
    // A design for fewer factors is the first columns of this one.
    const SettingTable few = GetPBTable(5, runs);
    ASSERT_EQ(few.columns(), 5);
    EXPECT_TRUE(std::equal(few.elements().begin(), few.elements().end(), table.elements().begin()));
  }
  // Plackett and Burman (1946): + + - + + + - - - + -, turned down by one run from column to column.
  const SettingTable twelve = GetPBTable(3, 12);
  const std::vector<int> first = {1, 1, -1, 1, 1, 1, -1, -1, -1, 1, -1};
  for (Index i = 1; i <= 11; ++i) {
    EXPECT_EQ(twelve(i, 1), first[static_cast<std::size_t>(i - 1)]);
    EXPECT_EQ(twelve(i % 11 + 1, 2), twelve(i, 1));
  }
  const SettingTable forty = GetPBTable(39, 40);
  EXPECT_EQ(forty(20, 20), 1);
  EXPECT_EQ(forty(21, 20), -1);
  EXPECT_EQ(forty(24, 3), forty(4, 3));
  EXPECT_EQ(forty(24, 23), -forty(4, 3));

  // Factors, runs.
  const std::vector<std::pair<int, int>> missing = {{12, 12}, {0, 12},  {-1, 12}, {3, 8},
                                                    {3, 52},  {28, 28}, {40, 40}};
  for (const std::pair<int, int>& key : missing) {
    EXPECT_EQ(failureNumber([&] { GetPBTable(key.first, key.second); }), 9) << key.first << " " << key.second;
  }
}

}  // namespace
}  // namespace zelkova::doe
