#include "zelkova/doe/designCatalogue.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>

#include "zelkova/frame/Failure.h"

namespace zelkova::doe {

namespace {

/// A design as its table writes it: the generators, and for 2, 4, 8 ... blocks, parted by "|", the
/// words that are confounded with them.
struct Entry {
  int factors, design, runs;
  std::string_view generators, blockWords;
};

constexpr Entry entries[] = {
    {2, 1, 4, "", "AB"},
    {3, 1, 4, "C=AB", ""},
    {3, 2, 8, "", "ABC|AB AC"},
    {4, 1, 8, "D=ABC", "AB|AB AC"},
    {4, 2, 16, "", "ABCD|BC ABD|AB AC AD"},
    {5, 1, 8, "D=AB E=AC", "BC"},
    {5, 2, 16, "E=ABCD", "AB|AB AC"},
    {5, 3, 32, "", "ABCDE|ABC CDE|AC BD ABE|AB AC AD AE"},
    {6, 1, 8, "D=AB E=AC F=BC", "ABC"},
    {6, 2, 16, "E=ABC F=BCD", "ACD|BC ABD|AB AC AD"},
    {6, 3, 32, "F=ABCDE", "CDE|BC BDE|AD BC ABE|AB AC AD AE"},
    {6, 4, 64, "", "ABCDEF|ABCF ABDE|ACE ADF BCF|AD BC BE ABF|AB AC AD AE AF"},
    {7, 1, 8, "D=AB E=AC F=BC G=ABC", ""},
    {7, 2, 16, "E=ABC F=BCD G=ACD", "ABD|AB AC|AB AC AD"},
    {7, 3, 32, "F=ABCD G=ABDE", "CDE|ABD CDE|AB AD ACE"},
    {7, 4, 64, "G=ABCDEF", "CDE|ACF CDE|ABE ACF BDF|AB AC EF ADE"},
    {7, 5, 128, "", "ABCDEFG|ABDE ABCFG|ABC AFG DEF|ABE ACF ADG BCG|AC AE BD BF ABG|AB AC AD AE AF AG"},
    {8, 1, 16, "E=BCD F=ACD G=ABC H=ABD", "AB|AB AC|AB AC AD"},
    {8, 2, 32, "F=ABC G=ABD H=BCDE", "ABE|ABE BCD|AB AC AD"},
    {8, 3, 64, "G=ABCD H=ABEF", "ACE|ACE BDF|BC ABE BDF|AF BC DE ABD"},
    {8, 4, 128, "H=ABCDEFG", "ABCD|ABCD ABEF|ABCD ABEF ACFG|BF DE ABG CDG|AC BD BE BF ABG"},
    {9, 1, 16, "E=ABC F=BCD G=ACD H=ABD J=ABCD", "AB|AB AC"},
    {9, 2, 32, "F=BCDE G=ACDE H=ABDE J=ABCE", "ABCD|AB CD|AB AC AD"},
    {9, 3, 64, "G=ABCD H=ACEF J=CDEF", "BCE|ABF BDE|AD ABE CEF|AC AD BF ABE"},
    {9, 4, 128, "H=ACDFG J=BCEFG", "BDFG|ACEG BDFG|ACF BDE EFG|AE CG ABD ACF"},
    {10, 1, 16, "E=ABC F=BCD G=ACD H=ABD J=ABCD K=AB", "AC|AC AD"},
    {10, 2, 32, "F=ABCD G=ABCE H=ABDE J=ACDE K=BCDE", "AB|AB AC|AB AC ADE"},
    {10, 3, 64, "G=BCDF H=ACDF J=ABDE K=ABCE", "CEF|CD CEF|CD EF ABE|AC AD EF ABE"},
    {10, 4, 128, "H=ABCG J=BCDE K=ACDF", "ADG|ADG BDF|ABCF ABDG ACDE|CD EG ACE BCF"},
    {11, 1, 16, "E=ABC F=BCD G=ACD H=ABD J=ABCD K=AB L=AC", "AD|BC BD"},
    {11, 2, 32, "F=ABC G=BCD H=CDE J=ACD K=ADE L=BDE", "ABD|DE ABD|AB AC AD"},
    {11, 3, 64, "G=CDE H=ABCD J=ABF K=BDEF L=ADEF", "ACDF|ADE CEF|CD CE ACF|AB AC AE AF"},
    {11, 4, 128, "H=ABCG J=BCDE K=ACDF L=ABCDEFG", "ABCE|ABCE ACFG|ABCE ABDG ACFG|AE BC DF ABDG"},
    {12, 1, 16, "E=ABC F=ABD G=ACD H=BCD J=ABCD K=AB L=AC M=AD", "CD|BC BD"},
    {12, 2, 32, "F=ACE G=ACD H=ABD J=ABE K=CDE L=ABCDE M=ADE", "ABC|AB AC|AB AC AD"},
    {12, 3, 64, "G=DEF H=ABC J=BCDE K=BCDF L=ABEF M=ACEF", "BCEF|AB AC|AB AC AEF|AB AD AE ACF"},
    {12, 4, 128, "H=ACDG J=ABCD K=BCFG L=ABDEFG M=CDEF", "ACF|BG ACD|BG ACD BEF|AE BG ABF ACD"},
    {13, 1, 16, "E=ABC F=ABD G=ACD H=BCD J=ABCD K=AB L=AC M=AD N=BC", "CD"},
    {13, 2, 32, "F=ACE G=BCE H=ABC J=CDE K=ABCDE L=ABE M=ACD N=ADE", "ABD|AB AE|AB AC AD"},
    {13, 3, 64, "G=ABC H=DEF J=BCDF K=BCDE L=ABEF M=ACEF N=BCEF", "AB|AB AC|AB AC AEF|AB AD AE ACF"},
    {13, 4, 128, "H=DEFG J=BCEG K=BCDFG L=ABDEF M=ACEF N=ABC", "ADE|AB AC|AB AC ADF|AB AC EF ADE"},
    {14, 1, 16, "E=ABC F=ABD G=ACD H=BCD J=ABCD K=AB L=AC M=AD N=BC O=BD", "CD"},
    {14, 2, 32, "F=ABC G=ABD H=ABE J=ACD K=ACE L=ADE M=BCD N=BCE O=BDE P=BDE", "CDE|AB CDE|AB AC DE"},
    {14, 3, 64, "G=BEF H=BCF J=DEF K=CEF L=BCE M=CDF N=ACDE O=BCDEF", "ABC|BC BE|BC BE BF|AB AC AE AF"},
    {14, 4, 128, "H=EFG J=BCFG K=BCEG L=ABEF M=ACEF N=BCDEF O=ABC", "ADE|AB AC|AB AC AEF|AB AC DG AEF"},
    {15, 1, 16, "E=ABC F=ABD G=ACD H=BCD J=ABCD K=AB L=AC M=AD N=BC O=BD P=CD", ""},
    {15, 2, 32, "F=ABC G=ABD H=ABE J=ACD K=ACE L=ADE M=BCD N=BCE O=BDE P=CDE", "ABCDE|AB ACDE|AB AD CE"},
    {15, 3, 64, "G=ABC H=ABD J=ABE K=ABF L=ACD M=ACE N=ACF O=ADE P=ADF", "BCD|CE BCD|AB AC AD|AB AC AD AE"},
    {15, 4, 128, "H=ABFG J=ACDEF K=BEF L=ABCEG M=CDFG N=ACDEG O=EFG P=ABDEFG",
     "ADE|EG ABDEF|EF EG ABD|BE BF BG ABD"},
};

/// The first column of a cyclic design, its last run aside (Plackett and Burman, 1946).
struct GeneratingRow {
  int runs;
  std::string_view signs;
};

constexpr GeneratingRow generatingRows[] = {
    {12, "++-+++---+-"},
    {16, "++++-+-++--+---"},
    {20, "++--++++-+-+----++-"},
    {24, "+++++-+-++--++--+-+----"},
    {32, "----+-+-+++-++---+++++--++-+--+"},
    {36, "-+-+++---+++++-+++--+----+-+-++--+-"},
    {44, "++--+-+--+++-+++++---+-+++-----+---++-+-++-"},
    {48, "+++++-++++--+-+-+++--+--++-++---+-+-++----+----"},
};

/// The columns of the design of 28 runs, which is not cyclic; their last run, all at the low level, aside.
constexpr std::array<std::string_view, 27> columnsOf28 = {
    "++----++++-+++-++---+-+--+-", "-++---+++++--++-+++----+--+", "+-+---+++-+++-++-+-+-+--+--",
    "+++++----++-+-+++--+---+-+-", "+++-++----++++--++--++----+", "++++-+---+-+-+++-++---+-+--",
    "---+++++-++-++-+-+-+--+---+", "---+++-++-++-++++---+--++--", "---++++-++-++-+-+++--+---+-",
    "--+-+--+-++----++++-+++-++-", "+----+--+-++---+++++--++-++", "-+-+--+--+-+---+++-+++-++-+",
    "-+---+-+-+++++----++-+-+++-", "--++----++++-++----++++--++", "+---+-+--++++-+---+-+-+++-+",
    "-+--+---+---+++++-++-++-+-+", "--+--++-----+++-++-++-++++-", "+--+---+----++++-++-++-+-++",
    "+-+++-++---+-+--+-++----+++", "++--++-+++----+--+-++---+++", "-+++-++-+-+-+--+--+-+---+++",
    "++-+-+++--+---+-+-+++++----", "-++++--++--++----++++-++---", "+-+-+++-++---+-+--++++-+---",
    "++-++-+-+-+--+---+---+++++-", "-++-++++---+--++-----+++-++", "+-++-+-+++--+---+----++++-+",
};

const Entry* find(int Factor, int Design) {
  const auto* const found = std::find_if(std::begin(entries), std::end(entries), [=](const Entry& entry) {
    return entry.factors == Factor && (entry.design == Design || Factor == 2);
  });
  return found == std::end(entries) ? nullptr : found;
}

/// The parts of `text` between `separator`; none of an empty text.
std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(separator), text.size());
    parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

std::int16_t signOf(char c) { return c == '+' ? 1 : -1; }

/// The sign of a product of base factors in run `run` of the standard order, counted from 0.
std::int16_t signIn(Index run, Word word) {
  const Word low = word & ~static_cast<Word>(run);
  return std::popcount(low) % 2 == 0 ? 1 : -1;
}

SettingTable settingsOf(const TwoLevelDesign& design) {
  SettingTable settings(design.runs, static_cast<Index>(design.columns.size()), 0);
  for (Index j = 1; j <= settings.columns(); ++j) {
    for (Index i = 1; i <= design.runs; ++i) {
      settings(i, j) = signIn(i - 1, design.columns[static_cast<std::size_t>(j - 1)]);
    }
  }
  return settings;
}

/// The run numbers block by block, blocks in the standard order of the signs of their words.
Array<Index> runsByBlock(Index runs, const std::vector<Word>& words) {
  std::vector<std::vector<Index>> blocks(std::size_t{1} << words.size());
  for (Index i = 0; i < runs; ++i) {
    std::size_t block = 0;
    for (std::size_t w = 0; w < words.size(); ++w) {
      if (signIn(i, words[w]) == 1) block |= std::size_t{1} << w;
    }
    blocks[block].push_back(i + 1);
  }
  std::vector<Index> ordered;
  for (const std::vector<Index>& block : blocks) ordered.insert(ordered.end(), block.begin(), block.end());
  return Array<Index>(std::move(ordered));
}

SettingTable cyclicTable(int Factor, std::string_view generatingRow) {
  const auto turns = static_cast<Index>(generatingRow.size());
  SettingTable table(turns + 1, Factor, -1);
  for (Index j = 1; j <= Factor; ++j) {
    for (Index i = 1; i <= turns; ++i) {
      table(i, j) = signOf(generatingRow[static_cast<std::size_t>((i - j + turns) % turns)]);
    }
  }
  return table;
}

SettingTable tableOf28(int Factor) {
  SettingTable table(28, Factor, -1);
  for (Index j = 1; j <= Factor; ++j) {
    for (Index i = 1; i <= 27; ++i) {
      table(i, j) = signOf(columnsOf28[static_cast<std::size_t>(j - 1)][static_cast<std::size_t>(i - 1)]);
    }
  }
  return table;
}

/// The design of 40 runs is that of 20 twice: repeated, and beside it repeated with the signs turned.
SettingTable doubled(const SettingTable& half, int Factor) {
  const Index runs = half.rows();
  SettingTable table(2 * runs, Factor, 0);
  for (Index j = 1; j <= Factor; ++j) {
    for (Index i = 1; i <= runs; ++i) {
      const bool isTurned = j >= runs;
      const std::int16_t upper = j < runs ? half(i, j) : j == runs ? std::int16_t{1} : half(i, j - runs);
      table(i, j) = upper;
      table(i + runs, j) = static_cast<std::int16_t>(isTurned ? -upper : upper);
    }
  }
  return table;
}

std::string_view generatingRowOf(int Run) {
  for (const GeneratingRow& row : generatingRows) {
    if (row.runs == Run) return row.signs;
  }
  raise(FailureNumber::OutOfRange, "there is no Plackett-Burman design of " + std::to_string(Run) + " runs");
}

}  // namespace

Word wordOf(std::string_view text) {
  Word word = 0;
  for (const char letter : text) {
    const std::size_t place = factorLetters.find(letter);
    if (place == std::string_view::npos) {
      raise(FailureNumber::OutOfRange, "\"" + std::string(text) + "\" names no factors");
    }
    word ^= Word{1} << place;
  }
  return word;
}

bool hasTwoLevelDesign(int Factor, int Design) { return find(Factor, Design) != nullptr; }

TwoLevelDesign twoLevelDesign(int Factor, int Design) {
  const Entry* const entry = find(Factor, Design);
  if (entry == nullptr) {
    raise(FailureNumber::OutOfRange,
          "there is no design " + std::to_string(Design) + " of " + std::to_string(Factor) + " factors");
  }
  TwoLevelDesign design{entry->runs, {}, {}};
  for (Word base = 1; base < static_cast<Word>(entry->runs); base *= 2) design.columns.push_back(base);
  // A generator is a letter, "=" and the word of base factors that its column holds.
  for (const std::string_view generator : split(entry->generators, ' ')) {
    design.columns.push_back(wordOf(generator.substr(2)));
  }
  for (const std::string_view words : split(entry->blockWords, '|')) {
    design.blockWords.emplace_back();
    for (const std::string_view word : split(words, ' ')) design.blockWords.back().push_back(wordOf(word));
  }
  return design;
}

std::vector<Word> groupOf(const std::vector<Word>& words) {
  std::vector<Word> group{0};
  for (const Word word : words) {
    const std::size_t size = group.size();
    for (std::size_t i = 0; i < size; ++i) group.push_back(group[i] ^ word);
  }
  return group;
}

void GetDesignTable(int Factor, int Design, int BlockPower, SettingTable& table, Array<Index>& blocks) {
  TwoLevelDesign design = twoLevelDesign(Factor, Design);
  table = settingsOf(design);
  // Deliberate: this design has always had a first run that is like its second in factor A. Its aliases and
  // blocks are those of the regular fraction.
  if (Factor == 9 && Design == 2) table(1, 1) = 1;

  const auto power = static_cast<std::size_t>(std::max(BlockPower, 0));
  // One block is confounded with nothing.
  design.blockWords.insert(design.blockWords.begin(), std::vector<Word>());
  blocks =
      power < design.blockWords.size() ? runsByBlock(design.runs, design.blockWords[power]) : Array<Index>();
}

SettingTable GetPBTable(int Factor, int Run) {
  if (Factor < 1 || Factor >= Run) {
    raise(FailureNumber::OutOfRange,
          "a design of " + std::to_string(Run) + " runs has no " + std::to_string(Factor) + " factors");
  }
  if (Run == 28) return tableOf28(Factor);
  if (Run == 40) return doubled(cyclicTable(std::min(Factor, 19), generatingRowOf(20)), Factor);
  return cyclicTable(Factor, generatingRowOf(Run));
}

SettingTable GetLevelTable(int Count) {
  constexpr int mostCount = 9;
  if (Count < 1 || Count > mostCount) {
    raise(FailureNumber::OutOfRange,
          "there is no table of the levels of " + std::to_string(Count) + " factors");
  }
  SettingTable table(Index{1} << Count, Count, 0);
  for (Index j = 1; j <= Count; ++j) {
    for (Index i = 1; i <= table.rows(); ++i) table(i, j) = signIn(i - 1, Word{1} << (j - 1));
  }
  return table;
}

}  // namespace zelkova::doe
