#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(OneZ, Sigma, TestMean, CLevel, N, Mean, SD, SE, Lower, Upper, Z, PValue);
ZELKOVA_SLOTS(OneT, TestMean, CLevel, N, Mean, SD, SE, Lower, Upper, T, PValue);
ZELKOVA_SLOTS(TwoT, N1, Mean1, SD1, SE1, N2, Mean2, SD2, SE2, Difference, Lower, Upper, TestMeanD, DF, T,
              PValue, CLevel);
ZELKOVA_SLOTS(PairedT, N1, Mean1, SD1, SE1, N2, Mean2, SD2, SE2, NDifference, MeanDifference, SDDifference,
              SEDifference, Lower, Upper, TestMeanD, DF, T, PValue, CLevel);

// The tests on ranks and medians. The slots of an interval that is interpolated between two others name the
// one of smaller coverage `Inner`, the one of larger coverage `Outer`.
ZELKOVA_SLOTS(OneWilcoxon, N, NonZero, W, PValue, EstimatedMedian, AchievedConfidence, Lower, Upper,
              TestMedian);
ZELKOVA_SLOTS(OneSign, N, Median, Below, Above, PValue, NonEqual, InnerCoverage, CLevel, OuterCoverage,
              InnerLower, InterpolatedLower, OuterLower, InnerUpper, InterpolatedUpper, OuterUpper,
              InnerPlace, OuterPlace, Reserved, TestMedian);
ZELKOVA_SLOTS(TwoMannW, N1, N2, Median1, Median2, EstimatedDifference, W, PValue, PValueTies);
ZELKOVA_SLOTS(KruskalWGroup, N, Median, MeanRank, Z);
ZELKOVA_SLOTS(KruskalW, N, Median, MeanRank, H, DF, PValue, HTies, PValueTies);
ZELKOVA_SLOTS(MoodsMGroup, AtOrBelow, Above, Median, InterquartileRange, Lower, Upper);
ZELKOVA_SLOTS(MoodsM, ChiSquare, DF, PValue, Median);
ZELKOVA_SLOTS(FriedmanTreatment, Blocks, EstimatedMedian, RankSum);
ZELKOVA_SLOTS(Friedman, S, DF, PValue, STies, PValueTies, GrandMedian, Blocks);

/// Hypothesis tests. Binds to the host.
///
/// The tests on means share these arguments: `CLevel`, the confidence of the limits as a fraction such as
/// 0.95, and `TestType`, the alternative (see TestType.h). A text that is no alternative leaves p-value and
/// limits at 0; the limit that a one-sided test does not produce is 0 as well. They raise failure 11 where
/// there is no spread, and failure 1004 where the host refuses a confidence outside (0, 1) or fewer than one
/// degree of freedom.
class yHTest : public HostBound {
 public:
  /// One-sample z test (Neyman and Pearson, 1928): the mean of `dy` against `TestMean` where the standard
  /// deviation `Sigma` is known. A negative `Sigma` is failure 5.
  void OneZOutput(const DoubleArray& dy, double Sigma, double TestMean, double CLevel,
                  const std::string& TestType, DoubleArray& OneZValue) const;

  /// The same from a summary: number of values, mean and standard deviation.
  void OneZOutput_S(double dn, double dMean, double dSD, double Sigma, double TestMean, double CLevel,
                    const std::string& TestType, DoubleArray& OneZValue) const;

  /// One-sample t test (Student, 1908): the mean of `dy` against `TestMean`.
  void OneTOutput(const DoubleArray& dy, double TestMean, double CLevel, const std::string& TestType,
                  DoubleArray& OneTValue) const;

  /// The same from a summary: number of values, mean and standard deviation.
  void OneTOutput_S(double dn, double dMean, double dSD, double TestMean, double CLevel,
                    const std::string& TestType, DoubleArray& OneTValue) const;

  /// Two-sample t test: the difference of the means of `dy1` and `dy2` against `TestMeanD`; with the pooled
  /// variance where `EqualVariance` is true, else with Welch's degrees of freedom (Welch, 1947), rounded
  /// down.
  void TwoTOutput(const DoubleArray& dy1, const DoubleArray& dy2, double TestMeanD, double CLevel,
                  const std::string& TestType, bool EqualVariance, DoubleArray& TwoTValue) const;

  /// The same from two summaries.
  void TwoTOutput_S(double dMean1, double dSD1, double dn1, double dMean2, double dSD2, double dn2,
                    double TestMeanD, double CLevel, const std::string& TestType, bool EqualVariance,
                    DoubleArray& TwoTValue) const;

  /// Paired t test: the mean of `dy1` - `dy2` against `TestMeanD`. `Difference` gets the pairwise
  /// differences, as many as `dy1` has values. Differences without spread give `NoValue` in limits, t and
  /// p-value.
  void PairedTOutput(const DoubleArray& dy1, const DoubleArray& dy2, double TestMeanD, double CLevel,
                     const std::string& TestType, DoubleArray& PTValue, DoubleArray& Difference) const;

  // The tests on ranks and medians. A result that a test does not give is `NoValue`: the p-value where
  // `TestType` is no alternative, too. Failure 9 where there are fewer labels than values, or where a label
  // beyond the last value makes a group of its own (an unbalanced layout in Friedman's test); other labels
  // beyond it do not count. Failure 6 where a result overflows.

  /// Wilcoxon's signed rank test (Wilcoxon, 1945) of the median of `dy` against `TestMedian`, by the normal
  /// approximation with continuity correction and tie term. The estimate is the median of the Walsh averages
  /// of all values (Hodges and Lehmann, 1963), the limits are two of them: those whose confidence by the
  /// approximation is nearest to `CLevel`. Failure 1004 for a `CLevel` outside (0, 1).
  void OneWilcoxonOutput(const DoubleArray& dy, double TestMedian, double CLevel, const std::string& TestType,
                         DoubleArray& OneWilcoxonValue) const;

  /// Sign test (Arbuthnot, 1710) of the median of `dy` against `TestMedian`, exact, with the limits of the
  /// two pairs of order statistics around `CLevel` and those interpolated between them (Hettmansperger and
  /// Sheather, 1986). Failure 5 for a `CLevel` outside (0, 1).
  void OneSignOutput(const DoubleArray& dy, double TestMedian, double CLevel, const std::string& TestType,
                     DoubleArray& OneSignValue) const;

  /// Mann and Whitney's test (1947) of the medians of `dy1` and `dy2`, by the normal approximation with
  /// continuity correction, without and with a correction for ties. The median of all differences between
  /// the samples (Hodges and Lehmann, 1963) is estimated for fewer than 100000 pairs.
  void TwoMannWOutput(const DoubleArray& dy1, const DoubleArray& dy2, const std::string& TestType,
                      DoubleArray& TwoMannWValue) const;

  /// Kruskal and Wallis' test (1952) that the groups of `dy` by the labels `dx` have one median, without and
  /// with correction for ties. `KruskalWValue_I` gets a row for each group, in the order of `Category`.
  /// Failure 11 for a single group.
  void KruskalWOutput(const DoubleArray& dy, const StringArray& dx, DoubleArray& KruskalWValue_I,
                      DoubleArray& KruskalWValue, StringArray& Category) const;

  /// Mood's median test (Mood, 1950) that the groups of `dy` by the labels `dx` have one median.
  /// `MoodsMValue_I` gets a row for each group, in the order of `Category`, with 95 percent limits of its
  /// median. Failures: 11 where no value lies above the overall median, 1004 for a single group.
  void MoodsMOutput(const DoubleArray& dy, const StringArray& dx, DoubleArray& MoodsMValue_I,
                    DoubleArray& MoodsMValue, StringArray& Category, bool& Lessthan6) const;

  /// Friedman's test (1937) that the treatments `dx1` have one median, the responses `dy` being ranked within
  /// the blocks `dx2`, without and with correction for ties. `FriedmanValue_I` gets a row for each treatment,
  /// in the order of `Category`; neither is assigned where the layout has not one response for each
  /// treatment and block. Failure 1004 for a single treatment.
  void FriedmanOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2,
                      DoubleArray& FriedmanValue_I, DoubleArray& FriedmanValue, StringArray& Category) const;
};

}  // namespace zelkova
