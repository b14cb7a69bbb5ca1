#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/Variant.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(DOEOthers, S, RSquared, AdjustedRSquared, PRESS, PredictedRSquared);

/// Analysis of two-level experiments (Box, Hunter and Hunter, Statistics for Experimenters, 1978; Montgomery,
/// Design and Analysis of Experiments). Binds to the host.
class yDOEAnalyse : public HostBound {
 public:
  /// The least squares fit of the terms `TSel` to the responses `dy`, a vector or a table of one column, of a
  /// run sheet: its settings `dx` (run, factor), its marks `dc`, 1 for a corner and 0 for a centre run, and
  /// its blocks `db`, 1, 2, ... Levels are compared with `FLow` and `FHigh` as texts; a setting that is
  /// neither counts as the middle. With `DesignType` 1, a factorial, a term is a run of factor letters and
  /// the terms that the design `Design` of `Factor` factors cannot estimate are left out (`RemoveAlias`);
  /// with 2, a Plackett-Burman design, it is the code of one factor, and `Block` tells whether each replicate
  /// is a block: it becomes their number. `Center` and `AnalyseCenter` become 0 and false where `dc` marks no
  /// centre run.
  ///
  /// Tables of terms have the constant, the blocks but for the last, the terms, and `Ct Pt`, the centre less
  /// the corners; those of sources the groups of terms present, "Residual Error" and "Total". With
  /// `OutputType` "Residual" only `fyfitO` and `fresidualO`, to 7 decimals, are filled. What an exact or
  /// saturated fit cannot tell is `NoValue`. `UcoefO` stays unfilled where all levels are -1 and 1.
  ///
  /// Failures: 5012 where terms cannot be told apart, 9 for a term that is none and for arrays that are too
  /// short, 5 for another `DesignType` and for terms of more than seven factors, 13 for a setting of a
  /// numeric factor that is no number, 11 without a term, 6 where sums of squares overflow.
  void DOEAnaOutput(const DoubleArray& dy, const StringArray& dx, const DoubleArray& dc,
                    const DoubleArray& db, const StringArray& TSel, const StringArray& FName,
                    const StringArray& FType, const StringArray& FLow, const StringArray& FHigh,
                    const Variant& DesignType, const Variant& Factor, const Variant& Design, Variant& Center,
                    const Variant& Replicate, Variant& Block, const Variant& AnalyseBlock,
                    Variant& AnalyseCenter, StringArray& TermsO, DoubleArray& CeffectO, DoubleArray& CcoefO,
                    DoubleArray& CSECoefO, DoubleArray& CtStatO, DoubleArray& CPvalueO, StringArray& SourcesO,
                    DoubleArray& DoFO, DoubleArray& SeqSSO, DoubleArray& AdjSSO, DoubleArray& SSFstatO,
                    DoubleArray& SSPvalueO, DoubleArray& UcoefO, DoubleArray& DOEothers, DoubleArray& fyfitO,
                    DoubleArray& fresidualO, const std::string& OutputType = "") const;

  /// Takes out of `TSel` the terms that the design `Design` of `Factor` factors cannot estimate: of terms
  /// confounded with each other all but the first, words of the defining relation but for a first term, and,
  /// with `AnalyseBlock`, what is confounded with blocks when `Replicate` replicates stand in `Block` blocks.
  /// A term is a run of factor letters in rising order; of another kind, and of a design that does not exist,
  /// it stays. Failure 11 for a `Block` of 0.
  void RemoveAlias(const Variant& Factor, const Variant& Design, const Variant& Replicate,
                   const Variant& Block, const Variant& AnalyseBlock, StringArray& TSel) const;

  /// The effects plot of an analysis: the terms but for constant, blocks and centre, in rising order of their
  /// t values (plain effects where `DoFR`, the residual degrees of freedom, is 0), without sign, and the line
  /// beyond which they are significant at `alpha`: the t quantile, or that of Lenth's pseudo standard error
  /// (Lenth, Technometrics 31, 1989). Failures: 9 without a term, and without residual degrees of freedom
  /// where more than half of the effects are 0; 1004 there for fewer than three effects.
  void DOEAnaEPOutput(double alpha, const StringArray& Terms, const DoubleArray& Ceffect,
                      const DoubleArray& CtStat, double DoFR, StringArray& EP_X, DoubleArray& EP_Y,
                      DoubleArray& EPL_X, DoubleArray& EPL_Y) const;
};

}  // namespace zelkova
