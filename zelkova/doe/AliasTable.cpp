#include "zelkova/doe/AliasTable.h"

#include <algorithm>
#include <bit>

namespace zelkova::doe {

namespace {

std::size_t longestListed(int Factor) { return Factor <= 7 ? 7 : Factor <= 10 ? 4 : 3; }

/// The product of the columns that `letters` selects, in base factors.
Word productOf(const std::vector<Word>& columns, Word letters) {
  Word product = 0;
  for (; letters != 0; letters &= letters - 1) {
    product ^= columns[static_cast<std::size_t>(std::countr_zero(letters))];
  }
  return product;
}

}  // namespace

AliasTable::AliasTable(int Factor, int Design)
    : design_(twoLevelDesign(Factor, Design)),
      longest_(longestListed(Factor)),
      membersOf_(static_cast<std::size_t>(design_.runs)),
      joinsTwoChains_(Factor == 6 && Design == 3) {
  membersOf_[identity] = 1;
  const Word all = (Word{1} << design_.columns.size()) - 1;
  for (Word letters = 1; letters <= all; ++letters) {
    if (static_cast<std::size_t>(std::popcount(letters)) > longest_) continue;
    ++membersOf_[productOf(design_.columns, letters)];
  }
}

Word AliasTable::baseWord(std::string_view term) const {
  if (term == "I") return identity;
  if (term.empty() || term.size() > longest_) return none;
  Word letters = 0;
  for (const char letter : term) {
    const std::size_t place = factorLetters.find(letter);
    const bool isRising = place < design_.columns.size() && letters >> place == 0;
    if (!isRising) return none;
    letters |= Word{1} << place;
  }
  return productOf(design_.columns, letters);
}

Word AliasTable::chainOf(std::string_view term) const {
  const Word chain = baseWord(term);
  if (chain == none || membersOf_[chain] < 2) return none;
  // Deliberate: in this one table BE = ACDF and BF = ACDE have always been one chain.
  if (joinsTwoChains_ && chain == wordOf("ACDE")) return wordOf("BE");
  return chain;
}

bool AliasTable::isBlockTerm(std::string_view term, int blockPower) const {
  const auto power = static_cast<std::size_t>(blockPower);
  if (power == 0 || power > design_.blockWords.size()) return false;
  const Word word = baseWord(term);
  if (word == none || word == identity) return false;
  const std::vector<Word> group = groupOf(design_.blockWords[power - 1]);
  return std::find(group.begin(), group.end(), word) != group.end();
}

}  // namespace zelkova::doe
