#pragma once

#include <string>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The run chart of a crossed gage study: a panel a part, in it the trials in their order, a series an
/// operator. Binds to no host.
class yGageRun {
 public:
  /// `dy` holds the readings, `dpart`, `dop` and `dtrial` the part, operator and trial of each. `PartLabel`
  /// and `OpLabel` get the a parts and b operators in the numeric-aware order of `ExchangeSortS`. Each part
  /// has m slots, which its operators share: the trials of a cell in the order of `QuickSortSD`, the first
  /// ten of them. `RunX` holds the a m positions as fractions of an axis of a equal panels, `RunY` (a m by b)
  /// the readings, and `MeanY` at each slot the mean line: `HistMean` where that text holds a number, else
  /// the mean of `dy`.
  ///
  /// `ErrorCode`, checked in this order; no result is assigned then: "Design unbalanced" unless every part
  /// was measured by every operator equally often; "Limited to 10 parts"; "Limited to 10 operators". Failure
  /// 9 where a column has fewer rows than `dy`.
  void GageRunOutput(const DoubleArray& dy, const StringArray& dpart, const StringArray& dop,
                     const StringArray& dtrial, const std::string& HistMean, DoubleArray& RunX,
                     DoubleArray& RunY, DoubleArray& MeanY, StringArray& PartLabel, StringArray& OpLabel,
                     std::string& ErrorCode) const;
};

}  // namespace zelkova
