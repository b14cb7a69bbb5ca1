#pragma once

#include <string>

#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

ZELKOVA_SLOTS(ProbabilityFit, Para1, Para2, N, AD);

/// Probability plots of complete data against one of seven distributions. Binds to the host.
class yProbability : public HostBound {
 public:
  /// The plotted points, the fitted line with its bands and the Anderson-Darling statistic of the n values.
  ///
  /// `Distribution` and the parameters of `pp` are those of `yReliability`. `HistPara1` and `HistPara2` are
  /// historical parameters as texts, empty for an estimate by maximum likelihood; "Exponential" looks at the
  /// first only. deliberate: for "Weibull" the two change places, as users name its shape first: `HistPara1`
  /// is the shape and `HistPara2` the scale. `CLevel` is the confidence of the bands as a fraction.
  ///
  /// `Pvalue` is the p-value of the statistic as a text of three decimals, or beyond the table ">0.25",
  /// "<0.0025" and the like (D'Agostino and Stephens 1986, chapter 4, by which parameters are given).
  /// deliberate: below a corrected statistic of 0.34 the normal family's p is the exponential itself, not its
  /// complement, so that a very close fit has a small one. `PlotX` are the sorted values, `PlotY` their
  /// scores at median ranks, `PlotHVLU` the table of `yReliability.ProbPlot`.
  ///
  /// An unknown distribution gives the text "None" and nothing else. Failures: 5 for values that the
  /// distribution cannot have, for data without spread where parameter 2 is to be estimated and for a
  /// standard deviation that is not positive, 13 for a parameter that is no number.
  void ProbPlotOutput(const DoubleArray& dataarrayY, const std::string& Distribution,
                      const std::string& HistPara1, const std::string& HistPara2, double CLevel,
                      DoubleArray& pp, std::string& Pvalue, DoubleArray& PlotX, DoubleArray& PlotY,
                      DoubleArray& PlotHVLU) const;

 private:
  yReliability reliability_;
};

/// The p-value of an Anderson-Darling statistic `A2` of n values, as a text; `H1` and `H2` tell whether
/// parameters 1 and 2 are given. "None" for an unknown distribution.
std::string ADPValueText(const std::string& Distribution, double A2, double n, bool H1, bool H2);

}  // namespace zelkova
