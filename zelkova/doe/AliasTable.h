#pragma once

#include <string_view>
#include <vector>

#include "zelkova/doe/designCatalogue.h"

namespace zelkova::doe {

/// Which terms of a design are confounded with each other and with its blocks. A term is a run of factor
/// letters in rising order. Only words of so many letters are listed as anyone selects: of any length up to 7
/// factors, 4 letters for 8 to 10, 3 for more.
class AliasTable {
 public:
  /// Of a design that exists; failure 9 otherwise.
  AliasTable(int Factor, int Design);

  /// The chain of the identity, the defining relation.
  static constexpr Word identity = 0;
  static constexpr Word none = ~Word{0};

  /// The chain that holds a term; `none` where that is confounded with no other listed term.
  Word chainOf(std::string_view term) const;

  /// Whether a term is confounded with the blocks when there are 2^`blockPower` of them.
  bool isBlockTerm(std::string_view term, int blockPower) const;

 private:
  Word baseWord(std::string_view term) const;

  TwoLevelDesign design_;
  std::size_t longest_;
  std::vector<int> membersOf_;  ///< by chain, the number of its listed words
  bool joinsTwoChains_;
};

}  // namespace zelkova::doe
