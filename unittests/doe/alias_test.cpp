#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/doe/designCatalogue.h"
#include "zelkova/doe/yDOEAnalyse.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

class Aliases : public WithHost {
 protected:
  StringArray kept(int factors, int design, StringArray terms, double replicates = 1, double blocks = 1,
                   bool analyseBlock = true) {
    analysis.RemoveAlias(static_cast<double>(factors), static_cast<double>(design), replicates, blocks,
                         Variant::flag(analyseBlock), terms);
    return terms;
  }

  yDOEAnalyse analysis;
};

/// Every word of the factors of a design that has at most `longest` letters, by letters, and its column.
std::vector<std::pair<std::string, std::vector<int>>> wordsOf(const doe::SettingTable& table, Index factors,
                                                              std::size_t longest) {
  std::vector<std::pair<std::string, std::vector<int>>> words{
      {"", std::vector<int>(static_cast<std::size_t>(table.rows()), 1)}};
  for (Index j = 1; j <= factors; ++j) {
    const std::size_t known = words.size();
    for (std::size_t w = 0; w < known; ++w) {
      if (words[w].first.size() == longest) continue;
      auto next = words[w];
      next.first += doe::factorLetters[static_cast<std::size_t>(j - 1)];
      for (Index i = 1; i <= table.rows(); ++i) next.second[static_cast<std::size_t>(i - 1)] *= table(i, j);
      words.push_back(std::move(next));
    }
  }
  return words;
}

// Faults: a pair of aliases missed, terms dropped that are none, words of the wrong length. For every design
// the terms with equal columns of its own table are aliases, but for the odd table of (9, 2), whose aliases
// are those of the regular fraction, and the odd chain of (6, 3), which is pinned below.
TEST_F(Aliases, AreTermsWithEqualColumns) {
  for (int factors = 2; factors <= 15; ++factors) {
    for (int design = 1; doe::hasTwoLevelDesign(factors, design) && design <= 5; ++design) {
      doe::SettingTable table;
      Array<Index> blocks;
      doe::GetDesignTable(factors, design, 0, table, blocks);
      if (factors == 9 && design == 2) table(1, 1) = -1;
      const std::size_t longest = factors <= 7 ? 7 : factors <= 10 ? 4 : 3;
      std::map<std::vector<int>, std::string> firsts;
      std::vector<std::string> all;
      std::vector<std::string> expected;
      // A main effect in front, so that no word of the defining relation stands first.
      auto words = wordsOf(table, table.columns(), longest);
      words.erase(words.begin());
      std::stable_sort(words.begin(), words.end(),
                       [](const auto& a, const auto& b) { return a.first.size() < b.first.size(); });
      firsts[std::vector<int>(static_cast<std::size_t>(table.rows()), 1)] = "I";
      for (const auto& [word, column] : words) {
        all.push_back(word);
        const bool isJoined = factors == 6 && design == 3 && word == "BF";
        if (firsts.emplace(column, word).second && !isJoined) expected.push_back(word);
      }
      EXPECT_EQ(kept(factors, design, StringArray(all)), StringArray(expected)) << factors << " " << design;
    }
  }
}

// Faults: the later of two aliases kept, the defining relation dropped in the first place or kept in a later
// one, the odd chain of (6, 3) mended, a word spelled in another order taken for a word.
TEST_F(Aliases, OfTermsTheFirstStays) {
  EXPECT_EQ(kept(3, 1, {"A", "BC"}), StringArray{"A"});
  EXPECT_EQ(kept(3, 1, {"BC", "A"}), StringArray{"BC"});
  EXPECT_EQ(kept(3, 1, {"ABC", "A"}), (StringArray{"ABC", "A"}));
  EXPECT_EQ(kept(3, 1, {"A", "ABC", "B"}), (StringArray{"A", "B"}));
  EXPECT_EQ(kept(3, 1, {"ABC"}), StringArray{"ABC"});
  EXPECT_EQ(kept(3, 1, {"A", "CB", "x"}), (StringArray{"A", "CB", "x"}));
  EXPECT_EQ(kept(6, 3, {"BE", "BF", "ACDE", "AE", "AF"}), (StringArray{"BE", "AE", "AF"}));
  EXPECT_EQ(kept(8, 4, {"A", "ABCDEFGH", "ABCD", "EFGH", "BCDEFGH"}),
            (StringArray{"A", "ABCDEFGH", "ABCD", "BCDEFGH"}));
  EXPECT_EQ(kept(14, 2, {"O", "P", "OP"}), StringArray{"O"});
  EXPECT_EQ(kept(4, 9, {"A", "A"}), (StringArray{"A", "A"}));
}

// Faults: block terms dropped unasked or from another number of blocks, a fraction of a replicate above one
// half that is seen, whole replicates that drop something.
TEST_F(Aliases, GoWithTheBlocks) {
  struct Case {
    int factors, design;
    double replicates, blocks;
    StringArray dropped;
  };
  const StringArray terms{"A", "B", "AB", "BC", "ABC", "ABD", "ACD", "ABCD"};
  const std::vector<Case> cases = {
      {4, 2, 1, 2, {"ABCD"}},
      {4, 2, 2, 4, {"ABCD"}},
      {4, 2, 1, 4, {"BC", "ABD", "ACD"}},
      {4, 2, 2, 2, {}},
      {4, 2, 3, 4, {}},
      {4, 2, 3, 2, {}},
      {4, 2, 5, 2, {"ABCD"}},
      {4, 2, 1, 8, {"AB", "BC", "ABCD"}},
      {4, 2, 1, 16, {}},
      {4, 2, 3, 8, {"AB", "BC", "ABCD"}},
      {2, 5, 1, 2, {"AB"}},
      {2, 1, 1, 4, {}},
  };
  for (const Case& c : cases) {
    std::vector<std::string> expected;
    for (const std::string& term : terms.elements()) {
      const auto gone = c.dropped.elements();
      if (std::find(gone.begin(), gone.end(), term) == gone.end()) expected.push_back(term);
    }
    EXPECT_EQ(kept(c.factors, c.design, terms, c.replicates, c.blocks), StringArray(expected))
        << c.replicates << " in " << c.blocks;
    EXPECT_EQ(kept(c.factors, c.design, terms, c.replicates, c.blocks, false), terms);
  }
  EXPECT_EQ(kept(5, 1, {"BC", "DE", "ABE", "ACD", "BD"}, 1, 2), StringArray{"BD"});
  EXPECT_FALSE(kept(2, 1, {"AB"}, 1, 2).filled());
  EXPECT_EQ(kept(13, 4, {"L", "M"}, 1, 16), StringArray{"L"});
  EXPECT_EQ(failureNumber([&] { kept(2, 1, {"AB"}, 1, 0); }), 11);
}

// Faults: Lenth's error taken of all effects, a limit for another number of degrees of freedom, terms that
// are no factors among the effects. The effects of Montgomery's filtration rate and of Lenth (1989), whose
// example they are: PSE 2.625, limit 6.748; the digits of t are R's, qt(0.975, 5) and qt(0.95, 10).
TEST_F(Aliases, EffectsPlotHasLenthsLimit) {
  const StringArray terms{"Constant", "Blk1", "A: T", "B: P", "C: F", "D: S", "AB",  "AC",   "AD",
                          "BC",       "BD",   "CD",   "ABC",  "ABD",  "ACD",  "BCD", "ABCD", "Ct Pt"};
  const DoubleArray effects{NoValue, NoValue, 21.625, 3.125, 9.875, 14.625, 0.125,  -18.125, 16.625,
                            2.375,   -0.375,  -1.125, 1.875, 4.125, -1.625, -2.625, 1.375,   NoValue};
  StringArray labels;
  DoubleArray sizes, x, y;
  analysis.DOEAnaEPOutput(0.05, terms, effects, {}, 0, labels, sizes, x, y);
  ASSERT_EQ(labels.rows(), 15);
  EXPECT_EQ(labels(1), "AB");
  EXPECT_EQ(labels(14), "AC");
  EXPECT_EQ(sizes(14), 18.125);
  EXPECT_EQ(labels(15), "A: T");
  EXPECT_EQ(x, (DoubleArray{0, 1}));
  EXPECT_TRUE(areClose(y, {2.625 * 2.570581835636314, 2.625 * 2.570581835636314}));

  analysis.DOEAnaEPOutput(0.1, {"Constant", "A", "B"}, {}, {50, -3, 2}, 10, labels, sizes, x, y);
  EXPECT_EQ(labels, (StringArray{"B", "A"}));
  EXPECT_EQ(sizes, (DoubleArray{2, 3}));
  EXPECT_TRUE(isClose(y(2), 1.812461122811676));

  const auto failure = [&](const StringArray& some, const DoubleArray& of) {
    return failureNumber([&] { analysis.DOEAnaEPOutput(0.05, some, of, {}, 0, labels, sizes, x, y); });
  };
  EXPECT_EQ(failure({"Constant"}, {1}), 9);
  EXPECT_EQ(failure({"A", "B"}, {1, 2}), 1004);
  EXPECT_EQ(failure({"A", "B", "C"}, {0, 0, 2}), 9);
  EXPECT_EQ(failure({"A", "B", "C"}, {1, 2}), 9);
}

}  // namespace
}  // namespace zelkova
