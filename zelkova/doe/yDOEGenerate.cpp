#include "zelkova/doe/yDOEGenerate.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "zelkova/doe/designCatalogue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/kit/order.h"
#include "zelkova/random/UniformStream.h"

namespace zelkova {

namespace {

using doe::SettingTable;

/// One line of a run sheet; its settings are a row of a table.
struct SheetRun {
  const SettingTable* settings;
  Index row;
  bool isCorner = true;
  Index block = 1;
  Index standardOrder = 0;
};

/// How replicates are put into blocks: `groups` times the same, each of some replicates in some blocks.
struct Division {
  Index groups, replicates, blocks;

  /// The number of blocks as a power of two; 0 where it is none that a design has words for.
  int blockPower() const {
    constexpr Index mostListed = 64;
    const bool isListed = blocks <= mostListed && std::has_single_bit(static_cast<unsigned>(blocks));
    return isListed ? std::countr_zero(static_cast<unsigned>(blocks)) : 0;
  }
};

Division divisionOf(WorksheetFunction& host, Index Replicate, Index Block) {
  const auto divisor =
      static_cast<Index>(host.Gcd(static_cast<double>(Replicate), static_cast<double>(Block)));
  if (Replicate == 0 || Block == 0) {
    raise(FailureNumber::InvalidCall, "an experiment has at least one replicate and one block");
  }
  return {divisor, Replicate / divisor, Block / divisor};
}

/// What the caller tells of the factors.
struct Factors {
  const StringArray &type, &low, &high, &name;

  /// Failure 9 unless there is an entry for each of `count` factors.
  void check(Index count) const {
    const auto covers = [count](const StringArray& texts) { return texts.rows() >= count; };
    if (covers(type) && covers(low) && covers(high) && covers(name)) return;
    raise(FailureNumber::OutOfRange,
          "FType, FLow, FHigh and FName need an entry for each of " + std::to_string(count) + " factors");
  }
};

/// The settings of the centre runs of a block: the middle of the numeric factors with every combination of
/// the levels of the text factors. Never filled where there are none.
SettingTable centreSettings(const Factors& factors, Index count, Index Center) {
  std::vector<Index> textFactors;
  for (Index j = 1; j <= count; ++j) {
    if (factors.type(j) == "Text") textFactors.push_back(j);
  }
  const auto texts = static_cast<Index>(textFactors.size());
  if (Center < 1 || texts == count) return {};
  SettingTable levels;
  if (texts > 0) levels = doe::GetLevelTable(static_cast<int>(texts));
  SettingTable settings(texts > 0 ? levels.rows() : 1, count, 0);
  for (Index t = 1; t <= texts; ++t) {
    const auto level = levels.column(t);
    const auto setting = settings.column(textFactors[static_cast<std::size_t>(t - 1)]);
    std::copy(level.begin(), level.end(), setting.begin());
  }
  return settings;
}

/// Failure 6 for a sheet that is too long: run numbers are small integers.
void checkLength(std::int64_t cornerRuns, std::int64_t blocks, std::int64_t Center,
                 const SettingTable& centre) {
  const std::int64_t centreRuns = centre.filled() ? blocks * Center * centre.rows() : 0;
  constexpr std::int64_t longest = std::numeric_limits<std::int16_t>::max();
  if (cornerRuns + centreRuns > longest) {
    raise(FailureNumber::Overflow, "a run sheet has at most " + std::to_string(longest) + " runs");
  }
}

/// The corner runs block by block; `runsByBlock` is the design in slices of equal size, one for each block of
/// a group. A single slice is the design in its standard order.
std::vector<SheetRun> cornerRuns(const SettingTable& design, const Array<Index>& runsByBlock,
                                 const Division& division) {
  const Index sliceRuns = design.rows() / division.blocks;
  std::vector<SheetRun> runs;
  Index block = 0;
  for (Index group = 1; group <= division.groups; ++group) {
    for (Index slice = 0; slice < division.blocks; ++slice) {
      ++block;
      for (Index replicate = 1; replicate <= division.replicates; ++replicate) {
        for (Index i = 1; i <= sliceRuns; ++i) {
          runs.push_back({&design, runsByBlock(slice * sliceRuns + i), true, block});
        }
      }
    }
  }
  return runs;
}

void appendCentreRuns(std::vector<SheetRun>& runs, const SettingTable& centre, Index Center, Index block) {
  if (!centre.filled()) return;
  for (Index repeat = 1; repeat <= Center; ++repeat) {
    for (Index row = 1; row <= centre.rows(); ++row) runs.push_back({&centre, row, false, block});
  }
}

/// Centre runs close each block.
std::vector<SheetRun> withCentreRuns(const std::vector<SheetRun>& corners, const SettingTable& centre,
                                     Index Center) {
  std::vector<SheetRun> runs;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    runs.push_back(corners[i]);
    const bool isLastOfBlock = i + 1 == corners.size() || corners[i + 1].block != corners[i].block;
    if (isLastOfBlock) appendCentreRuns(runs, centre, Center, corners[i].block);
  }
  return runs;
}

/// Puts the blocks, of equal size, into random order and the runs of each. Deliberate: two blocks that draw
/// the same five digits mingle, once in a hundred thousand pairs.
void shuffle(std::vector<SheetRun>& runs, Index blocks) {
  random::UniformStream& stream = random::UniformStream::get();
  const std::size_t size = runs.size() / static_cast<std::size_t>(blocks);
  std::vector<double> keys;
  while (keys.size() < runs.size()) keys.insert(keys.end(), size, 100000 * roundHalfEven(stream.next(), 5));
  for (double& key : keys) key += stream.next();
  std::vector<order::Row> rows = order::rowsOf(keys);
  order::exchangeSort(rows);
  order::apply(rows, std::span(runs));
}

void numberInOrder(std::vector<SheetRun>& runs) {
  for (std::size_t i = 0; i < runs.size(); ++i) runs[i].standardOrder = static_cast<Index>(i + 1);
}

/// A factor's setting as the sheet shows it.
std::string shownLevel(const Factors& factors, Index factor, std::int16_t setting) {
  const std::string& low = factors.low(factor);
  const std::string& high = factors.high(factor);
  if (setting < 0) return low.empty() ? "-1" : low;
  if (setting > 0) return high.empty() ? "1" : high;
  if (low.empty() || high.empty() || factors.type(factor) != "Numeric") return "0";
  return numberText(checked::finite((toNumber(high) + toNumber(low)) / 2));
}

/// Both outputs, as texts.
void writeSheet(const std::vector<SheetRun>& runs, const Factors& factors, Index count, StringArray& DOE_M,
                StringArray& DOE_F) {
  constexpr Index leading = 4;
  const auto n = static_cast<Index>(runs.size());
  StringArray sheet(n, leading + count, "");
  for (Index i = 1; i <= n; ++i) {
    const SheetRun& run = runs[static_cast<std::size_t>(i - 1)];
    sheet(i, 1) = std::to_string(run.standardOrder);
    sheet(i, 2) = std::to_string(i);
    sheet(i, 3) = run.isCorner ? "1" : "0";
    sheet(i, 4) = std::to_string(run.block);
  }
  std::vector<std::string> headings{"Std Order", "Run Order", "Ct Pt", "Blocks"};
  for (Index j = 1; j <= count; ++j) {
    for (Index i = 1; i <= n; ++i) {
      const SheetRun& run = runs[static_cast<std::size_t>(i - 1)];
      sheet(i, leading + j) = shownLevel(factors, j, (*run.settings)(run.row, j));
    }
    headings.push_back(factors.name(j));
  }
  DOE_M = std::move(sheet);
  DOE_F = StringArray(std::move(headings));
}

}  // namespace

void yDOEGenerate::DOEGenOutput(std::int16_t Factor, std::int16_t Design, std::int16_t Replicate,
                                std::int16_t Block, std::int16_t Center, bool Randomize,
                                const StringArray& FType, const StringArray& FLow, const StringArray& FHigh,
                                const StringArray& FName, StringArray& DOE_M, StringArray& DOE_F) const {
  const Division division = divisionOf(worksheetFunction(), Replicate, Block);
  SettingTable design;
  Array<Index> runsByBlock;
  doe::GetDesignTable(Factor, Design, division.blockPower(), design, runsByBlock);
  const Index designRuns = design.rows();
  const Index count = design.columns();
  if (!runsByBlock.filled() || designRuns % division.blocks != 0) {
    raise(FailureNumber::OutOfRange, "the design of " + std::to_string(designRuns) +
                                         " runs cannot be put into " + std::to_string(division.blocks) +
                                         " blocks");
  }
  const Factors factors{FType, FLow, FHigh, FName};
  factors.check(count);
  const SettingTable centre = centreSettings(factors, count, Center);
  checkLength(std::int64_t{Replicate} * designRuns, Block, Center, centre);

  std::vector<SheetRun> runs = withCentreRuns(cornerRuns(design, runsByBlock, division), centre, Center);
  numberInOrder(runs);
  if (Randomize) shuffle(runs, Block);
  writeSheet(runs, factors, count, DOE_M, DOE_F);
}

void yDOEGenerate::DOEGenPBOutput(std::int16_t Factor, std::int16_t Run, std::int16_t Replicate,
                                  bool Blocking, std::int16_t Center, bool Randomize,
                                  const StringArray& FType, const StringArray& FLow, const StringArray& FHigh,
                                  const StringArray& FName, StringArray& DOE_M, StringArray& DOE_F) const {
  if (Replicate < 1) raise(FailureNumber::InvalidCall, "an experiment has at least one replicate");
  const SettingTable design = doe::GetPBTable(Factor, Run);
  const Factors factors{FType, FLow, FHigh, FName};
  factors.check(Factor);
  const SettingTable centre = centreSettings(factors, Factor, Center);
  checkLength(std::int64_t{Replicate} * Run, Replicate, Center, centre);

  std::vector<SheetRun> runs;
  for (Index replicate = 1; replicate <= Replicate; ++replicate) {
    const Index block = Blocking ? replicate : 1;
    for (Index i = 1; i <= Run; ++i) runs.push_back({&design, i, true, block});
    appendCentreRuns(runs, centre, Center, block);
  }
  numberInOrder(runs);
  if (Randomize) shuffle(runs, Blocking ? Replicate : 1);
  writeSheet(runs, factors, Factor, DOE_M, DOE_F);
}

}  // namespace zelkova
