#include <cmath>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "zelkova/doe/AliasTable.h"
#include "zelkova/doe/yDOEAnalyse.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova {

namespace {

/// k where a replicate is cut into 2^k blocks, else 0. Deliberate: what is left of `replicates` / `blocks`
/// when it is rounded is negative above one half, and then no blocks are seen, as with 3 replicates in 4
/// blocks.
int blockPowerOf(double replicates, double blocks) {
  const double share = checked::quotient(replicates, blocks);
  const double fraction = share - roundHalfEven(share);
  constexpr int mostPower = 6;
  for (int power = 1; power <= mostPower; ++power) {
    const double parts = std::ldexp(fraction, power);
    if (parts > 0 && std::fmod(parts, 2) == 1) return power;
  }
  return 0;
}

}  // namespace

void yDOEAnalyse::RemoveAlias(const Variant& Factor, const Variant& Design, const Variant& Replicate,
                              const Variant& Block, const Variant& AnalyseBlock, StringArray& TSel) const {
  const int blockPower = blockPowerOf(Replicate.toNumber(), Block.toNumber());
  const int factors = toInteger<std::int16_t>(Factor.toNumber());
  const int design = toInteger<std::int16_t>(Design.toNumber());
  const bool blocksEnter = AnalyseBlock.toFlag();
  if (!doe::hasTwoLevelDesign(factors, design)) return;

  const doe::AliasTable aliases(factors, design);
  std::set<doe::Word> chainsSeen;
  std::vector<std::string> kept;
  bool isFirst = true;
  for (const std::string& term : TSel.elements()) {
    const doe::Word chain = aliases.chainOf(term);
    const bool isSeen = chain != doe::AliasTable::none && !chainsSeen.insert(chain).second;
    // Deliberate: a word of the defining relation stays where it comes first; no earlier term speaks for it.
    const bool isIdentity = chain == doe::AliasTable::identity && !isFirst;
    isFirst = false;
    const bool isBlock = blocksEnter && aliases.isBlockTerm(term, blockPower);
    if (!isSeen && !isIdentity && !isBlock) kept.push_back(term);
  }
  TSel = StringArray(std::move(kept));
}

}  // namespace zelkova
