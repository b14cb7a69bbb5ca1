#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(OneANOM, Alpha, Levels, N, Mean, S, DF, CriticalValue, Signals);
ZELKOVA_SLOTS(TwoANOM, Alpha, N, Mean, S, DF, CriticalValue1, Signals1, CriticalValue2, Signals2,
              CriticalValue12, Signals12);
ZELKOVA_SLOTS(RateANOM, Alpha, Levels, N, Mean, CriticalValue, Signals, SmallLevels);
ZELKOVA_SLOTS(ANOMLevels, N, Point, Centre, Lower, Upper, Signal);
ZELKOVA_SLOTS(RateANOMLevels, N, Point, Centre, Lower, Upper, Signal, Small);

/// Analysis of means (Ott, 1967; Nelson, 1983): which levels differ from the mean of all. Binds to the host.
///
/// `alpha`, between 0 and 1, is the probability that any point of a chart signals where the levels do not
/// differ: at most, and exactly where the critical value is exact. A chart is a table with a row for each
/// level: the number of values or the size, the point, the centre line and the two decision limits, all in
/// the unit of the points, and the signal, 1 for a point above its upper limit, -1 for one below its lower
/// limit and 0 for all others, a point on a limit too.
///
/// Failures of all methods: 5 for an `alpha` outside (0, 1) and for a single level, 9 for an array that was
/// never filled and for lengths that do not match, 6 where a result overflows.
class yANOM : public HostBound {
 public:
  /// Means of the values `dy` by the labels `dx`, compared exactly, against the mean of all values.
  /// `ANOMValue_I` gets a row for each level in order of first appearance, `ANOMlabel` the levels.
  /// `CriticalValue` is exact for levels of equal size and for two levels, else Sidak's bound (1967). Values
  /// that do not vary within their levels, but for a rounding, have the `S` 0, the limits `NoValue` and no
  /// signals. Failure 5 where every level has a single value.
  void ANOMOneOutput(const DoubleArray& dy, const StringArray& dx, double alpha, DoubleArray& ANOMValue,
                     DoubleArray& ANOMValue_I, StringArray& ANOMlabel) const;

  /// The levels of two factors, `dx1` and `dx2`, in a balanced layout of the values `dy`: a chart of the
  /// means of each factor, and one of the effects of the interaction, the cell means less what both factors
  /// explain. `UniX1` and `UniX2` get the levels in order of first appearance: the rows of `ANOMValue_I1` and
  /// `ANOMValue_I2`. `UniX12` gets "level of factor 1*level of factor 2", those of factor 2 within each of
  /// factor 1: the rows of `ANOMValue_I12`. `Additive` true leaves out the interaction: its variation counts
  /// as error, its slots are `NoValue`, its two arrays are not filled.
  ///
  /// Critical values are exact for the factors, and for the interaction where a factor has two levels; else
  /// Sidak's bound for all cells. An error without spread, but for a rounding, has the `S` 0 and leaves the
  /// limits at `NoValue`. Failure 5 for an unbalanced layout, for a factor with a single level, and where no
  /// degrees of freedom are left for the error, as without replicates unless `Additive` is true.
  void ANOMTwoOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2, bool Additive,
                     double alpha, DoubleArray& ANOMValue, DoubleArray& ANOMValue_I1,
                     DoubleArray& ANOMValue_I2, DoubleArray& ANOMValue_I12, StringArray& UniX1,
                     StringArray& UniX2, StringArray& UniX12) const;

  // Counts by the normal approximation, with the spread that the common rate implies and the normal quantile
  // at Sidak's level (1967). Each row is a level of its own. Further failures: 11 for a size of 0, 5 for a
  // negative count or size.

  /// Proportions of the defectives `dy` among the items `dxN` against that of all together. Limits are kept
  /// from 0 to 1. A level is small where its expected defectives or its expected good items are at most 5,
  /// too few for the approximation; `TooSmall` tells whether any level is. Failure 5 for more defectives than
  /// items.
  void ANOMBinomialOutput(const DoubleArray& dy, const DoubleArray& dxN, double alpha, DoubleArray& ANOMValue,
                          DoubleArray& ANOMValue_I, bool& TooSmall) const;

  /// Defects per unit, `dy` defects on `dxN` units, against those of all together. Lower limits are kept from
  /// falling below 0. A level is small where at most 5 defects are to be expected.
  void ANOMPoissonOutput(const DoubleArray& dy, const DoubleArray& dxN, double alpha, DoubleArray& ANOMValue,
                         DoubleArray& ANOMValue_I, bool& TooSmall) const;
};

}  // namespace zelkova
