#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/doe/yDOEGenerate.h"
#include "zelkova/random/UniformStream.h"

namespace zelkova {
namespace {

/// The cells of a row with blanks between.
std::string rowText(const StringArray& sheet, Index i) {
  std::string text = sheet(i, 1);
  for (Index j = 2; j <= sheet.columns(); ++j) text += " " + sheet(i, j);
  return text;
}

std::vector<std::string> rowsOf(const StringArray& sheet) {
  std::vector<std::string> rows;
  for (Index i = 1; i <= sheet.rows(); ++i) rows.push_back(rowText(sheet, i));
  return rows;
}

/// Standard order 1, 2, ... of the runs of the plain design, in the order of the sheet.
std::vector<int> runsOf(const StringArray& sheet) {
  std::vector<int> runs;
  for (Index i = 1; i <= sheet.rows(); ++i) {
    int run = 1;
    for (Index j = 5; j <= 7; ++j) run += sheet(i, j) == "1" ? 1 << (j - 5) : 0;
    runs.push_back(run);
  }
  return runs;
}

class RunSheet : public WithHost {
 protected:
  ~RunSheet() override { random::UniformStream::get().unset(); }

  void factorial(int Factor, int Design, int Replicate, int Block, int Center, bool Randomize = false) {
    const auto small = [](int x) { return static_cast<std::int16_t>(x); };
    generator.DOEGenOutput(small(Factor), small(Design), small(Replicate), small(Block), small(Center),
                           Randomize, type, low, high, name, sheet, headings);
  }

  void plain(Index factors) {
    type = StringArray(factors, "Numeric");
    low = high = StringArray(factors, "");
    name = StringArray(factors, "x");
  }

  yDOEGenerate generator;
  StringArray type, low, high, name, sheet, headings;
};

// Faults: runs of another block, replicates within blocks in another order, blocks numbered by something else
// than position. By hand: ABC = -1 in runs 1 4 6 7, which are the first block.
TEST_F(RunSheet, PutsReplicatesIntoBlocks) {
  plain(3);
  struct Case {
    int replicates, blocks;
    std::vector<int> runs;
  };
  const std::vector<Case> cases = {
      {1, 1, {1, 2, 3, 4, 5, 6, 7, 8}},
      {2, 4, {1, 4, 6, 7, 2, 3, 5, 8, 1, 4, 6, 7, 2, 3, 5, 8}},
      {3, 2, {1, 4, 6, 7, 1, 4, 6, 7, 1, 4, 6, 7, 2, 3, 5, 8, 2, 3, 5, 8, 2, 3, 5, 8}},
      {2, 2, {1, 2, 3, 4, 5, 6, 7, 8, 1, 2, 3, 4, 5, 6, 7, 8}},
      {4, 2, {1, 2, 3, 4, 5, 6, 7, 8, 1, 2, 3, 4, 5, 6, 7, 8,
              1, 2, 3, 4, 5, 6, 7, 8, 1, 2, 3, 4, 5, 6, 7, 8}},
  };
  for (const Case& c : cases) {
    factorial(3, 2, c.replicates, c.blocks, 0);
    EXPECT_EQ(runsOf(sheet), c.runs) << c.replicates << " in " << c.blocks;
    const Index size = sheet.rows() / c.blocks;
    for (Index i = 1; i <= sheet.rows(); ++i) EXPECT_EQ(sheet(i, 4), std::to_string((i - 1) / size + 1));
  }
}

// Faults: centre runs elsewhere than at the end of each block, too few for the levels of a text factor, a
// middle that is not the levels' mean, a level shown in place of a code or the reverse.
TEST_F(RunSheet, ShowsLevelsAndCentreRuns) {
  type = {"Numeric", "Text", ""};
  low = {"10", "thin", "5"};
  high = {"15", "thick", ""};
  name = {"Time", "Coat", "Odd"};
  factorial(3, 1, 2, 2, 1);
  EXPECT_EQ(rowsOf(sheet), (std::vector<std::string>{
                               "1 1 1 1 10 thin 1", "2 2 1 1 15 thin 5", "3 3 1 1 10 thick 5",
                               "4 4 1 1 15 thick 1", "5 5 0 1 12.5 thin 0", "6 6 0 1 12.5 thick 0",
                               "7 7 1 2 10 thin 1", "8 8 1 2 15 thin 5", "9 9 1 2 10 thick 5",
                               "10 10 1 2 15 thick 1", "11 11 0 2 12.5 thin 0", "12 12 0 2 12.5 thick 0"}));
  EXPECT_EQ(headings, (StringArray{"Std Order", "Run Order", "Ct Pt", "Blocks", "Time", "Coat", "Odd"}));

  plain(3);
  factorial(3, 1, 3, 3, 2);
  ASSERT_EQ(sheet.rows(), 18);
  for (Index i = 1; i <= 18; ++i) EXPECT_EQ(sheet(i, 3), (i - 1) % 6 < 4 ? "1" : "0");
  type = {"Text", "Text", "Text"};
  factorial(3, 1, 1, 1, 2);
  EXPECT_EQ(sheet.rows(), 4);
}

// Faults: a Plackett-Burman sheet whose centre runs close all replicates together, or whose blocks stand
// without `Blocking`.
TEST_F(RunSheet, RepeatsPlackettBurmanDesigns) {
  type = {"Numeric", "Text"};
  low = {"1", "a"};
  high = {"2", "b"};
  name = {"x", "y"};
  for (const bool blocking : {false, true}) {
    generator.DOEGenPBOutput(2, 12, 2, blocking, 1, false, type, low, high, name, sheet, headings);
    ASSERT_EQ(sheet.rows(), 28);
    const std::string block = blocking ? "2" : "1";
    EXPECT_EQ(rowText(sheet, 1), "1 1 1 1 2 a");
    EXPECT_EQ(rowText(sheet, 12), "12 12 1 1 1 a");
    EXPECT_EQ(rowText(sheet, 14), "14 14 0 1 1.5 b");
    EXPECT_EQ(rowText(sheet, 15), "15 15 1 " + block + " 2 a");
    EXPECT_EQ(rowText(sheet, 27), "27 27 0 " + block + " 1.5 a");
  }
}

// Faults: an order that is not random, runs that leave their block, settings that part from their standard
// order, a stream that is started anew by the call.
TEST_F(RunSheet, IsPutIntoRandomOrder) {
  plain(3);
  random::UniformStream::get().set(7);
  factorial(3, 2, 2, 4, 0, true);
  const std::vector<std::string> first = rowsOf(sheet);
  std::set<std::string> blocks;
  std::set<int> standard;
  for (Index i = 1; i <= 16; ++i) {
    EXPECT_EQ(sheet(i, 2), std::to_string(i));
    EXPECT_EQ(sheet(i, 4), sheet((i - 1) / 4 * 4 + 1, 4));
    blocks.insert(sheet(i, 4));
    const int order = std::stoi(sheet(i, 1));
    standard.insert(order);
    constexpr std::array<int, 8> byBlock = {1, 4, 6, 7, 2, 3, 5, 8};
    EXPECT_EQ(runsOf(sheet)[static_cast<std::size_t>(i - 1)],
              byBlock[static_cast<std::size_t>((order - 1) % 8)]);
  }
  EXPECT_EQ(blocks.size(), 4U);
  EXPECT_EQ(standard.size(), 16U);
  factorial(3, 2, 2, 4, 0, true);
  EXPECT_NE(rowsOf(sheet), first);
  random::UniformStream::get().set(7);
  factorial(3, 2, 2, 4, 0, true);
  EXPECT_EQ(rowsOf(sheet), first);

  // Each of 4 blocks should come first in 1000 of 4000 orders, with a standard deviation of 27.4.
  std::array<int, 5> firsts{};
  for (int i = 0; i < 4000; ++i) {
    factorial(3, 2, 2, 4, 0, true);
    ++firsts[std::stoul(sheet(1, 4))];
  }
  for (std::size_t block = 1; block <= 4; ++block) EXPECT_NEAR(firsts[block], 1000, 137);
}

// Faults: a wrong sheet, a crash or a vague failure where a choice cannot be met; a failure for one that can.
TEST_F(RunSheet, RefusesWhatCannotBeDone) {
  struct Case {
    int factors, design, replicates, blocks, centre, given, failure;
  };
  const std::vector<Case> cases = {
      {3, 3, 1, 1, 0, 3, 9},    {3, 2, 1, 3, 0, 3, 9},         {3, 2, 4, 6, 0, 3, 9},
      {3, 1, 1, 2, 0, 3, 9},    {15, 1, 1, 2, 0, 15, 9},       {3, 2, 1, 8, 0, 3, 9},
      {3, 2, 0, 1, 0, 3, 5},    {3, 2, 1, 0, 0, 3, 5},         {3, 2, -1, 1, 0, 3, 1004},
      {3, 2, 1, 1, 0, 2, 9},    {14, 2, 1, 1, 0, 14, 9},       {14, 2, 1, 1, 0, 15, 0},
      {7, 1, 2, 2, 0, 7, 0},    {7, 5, 1, 128, 0, 7, 0},       {7, 5, 1, 64, 0, 7, 0},
      {3, 2, 4096, 1, 0, 3, 6}, {3, 2, 1, 1, 32767, 3, 6},     {3, 2, 32767, 32767, 32767, 3, 6},
      {2, -9, 1, 1, -1, 2, 0},  {3, 2, 32767 / 8, 1, 0, 3, 0},
  };
  for (const Case& c : cases) {
    plain(c.given);
    EXPECT_EQ(failureNumber([&] { factorial(c.factors, c.design, c.replicates, c.blocks, c.centre); }),
              c.failure)
        << c.factors << " " << c.design << " " << c.replicates << " " << c.blocks << " " << c.centre;
  }
  plain(11);
  for (Index j = 1; j <= 10; ++j) type(j) = "Text";
  EXPECT_EQ(failureNumber([&] { factorial(11, 1, 1, 1, 1); }), 9);
  EXPECT_EQ(failureNumber([&] { factorial(11, 1, 1, 1, 0); }), 0);
  plain(3);
  low = {"cold", "1", "1"};
  high = {"hot", "2", "2"};
  EXPECT_EQ(failureNumber([&] { factorial(3, 2, 1, 1, 0); }), 0);
  sheet = {};
  EXPECT_EQ(failureNumber([&] { factorial(3, 2, 1, 1, 1); }), 13);
  EXPECT_FALSE(sheet.filled());
}

}  // namespace
}  // namespace zelkova
