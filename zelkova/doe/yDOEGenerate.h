#pragma once

#include <cstdint>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"

namespace zelkova {

/// Run sheets of two-level experiments (Box, Hunter and Hunter, Statistics for Experimenters, 1978; Plackett
/// and Burman, 1946). Binds to the host.
///
/// For each factor `FType` is "Text" or "Numeric", `FLow` and `FHigh` are the levels as the sheet shows them,
/// empty for -1 and 1, and `FName` is its name. `DOE_M` gets a row for each run: standard order, run order, 1
/// for a corner and 0 for a centre run, block, and a column for each factor; `DOE_F` gets their headings.
/// Centre runs stand at the middle of the numeric factors, `Center` of them in every block for each
/// combination of the levels of the text factors; there are none where all factors are text. With `Randomize`
/// the blocks, and the runs within each, are put into random order.
///
/// Failures: 9 for a design that does not exist, for levels and names that are not one a factor, and for
/// centre runs with more than 9 text factors; 6 for more than 32767 runs; 13 for a level of a numeric factor
/// that is no number where its middle is needed.
class yDOEGenerate : public HostBound {
 public:
  /// A full factorial or a fraction: design `Design`, counted by rising number of runs, of `Factor` factors,
  /// 2 to 15. `Replicate` copies of it are put into `Block` blocks in all. Further failures: 9 for a number
  /// of blocks that the design cannot be put into, 5 without replicates or blocks, 1004 where one is
  /// negative.
  void DOEGenOutput(std::int16_t Factor, std::int16_t Design, std::int16_t Replicate, std::int16_t Block,
                    std::int16_t Center, bool Randomize, const StringArray& FType, const StringArray& FLow,
                    const StringArray& FHigh, const StringArray& FName, StringArray& DOE_M,
                    StringArray& DOE_F) const;

  /// A Plackett-Burman design of `Run` runs, 12, 16, ... 48, for `Factor` factors, fewer than runs. With
  /// `Blocking` each replicate is a block. Further failure: 5 without replicates.
  void DOEGenPBOutput(std::int16_t Factor, std::int16_t Run, std::int16_t Replicate, bool Blocking,
                      std::int16_t Center, bool Randomize, const StringArray& FType, const StringArray& FLow,
                      const StringArray& FHigh, const StringArray& FName, StringArray& DOE_M,
                      StringArray& DOE_F) const;
};

}  // namespace zelkova
