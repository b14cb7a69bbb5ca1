#pragma once

#include <memory>
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

ZELKOVA_SLOTS(OneP, TestP, CLevel, Events, Trials, P, Lower, Upper, Z, PValue);
ZELKOVA_SLOTS(TwoP, TestP, CLevel, Events1, Events2, Trials1, Trials2, P1, P2, Difference, Lower, Upper, Z,
              PValue);
ZELKOVA_SLOTS(ChiSquareTest, ChiSquare, DF, PValue, ExpectedBelow5);
ZELKOVA_SLOTS(GoodnessOfFit, Total, DF, ChiSquare, PValue);
ZELKOVA_SLOTS(FTest, N1, N2, SD1, SD2, F, PValue, CLevel);
ZELKOVA_SLOTS(EqualVariances, N, Mean, SD, Lower, Upper, Statistic, PValue);

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

  // Proportions and counts; `CLevel` and `TestType` are those of the tests on means. Failure 11 where there
  // are no trials or no counts, 5 where events are not from 0 to the trials. `ErrorCode` is set where the
  // data are refused, and all results are left as they came; otherwise it stays.

  /// One-sample test of a proportion by the normal approximation: `dx` events in `dn` trials against `TestP`
  /// (failure 11 at 0 and 1), with the standard error under `TestP`; the limits are Wald's. A sample of
  /// nothing but events, or of none, has `NoValue` for the limits of its alternative.
  void OnePOutput(double dx, double dn, double TestP, double CLevel, const std::string& TestType,
                  DoubleArray& OnePValue) const;

  /// Two-sample test of proportions by the normal approximation, not pooled: the difference of the shares
  /// `dx1` of `dn1` and `dx2` of `dn2` against `TestP`. Samples without spread have `NoValue` in limits, z
  /// and p-value.
  void TwoPOutput(double dx1, double dn1, double dx2, double dn2, double TestP, double CLevel,
                  const std::string& TestType, DoubleArray& TwoPValue) const;

  /// Chi-square test of the table of counts `OFreq` for association (Pearson, 1900), without correction for
  /// continuity. `EFreq` and `ChiTable`, of its shape, get the expected counts and what each cell adds to
  /// chi-square; `rowtotal`, `coltotal` and `Obstotal` the totals. `ErrorCode`: "Invalid data" (a cell is no
  /// count), "Rows all zeros", "Columns all zeros"; a caller who passes none has it in a text of the call's
  /// own, and sees a refusal by results left as they came. Failure 1004 for a table of one row or column.
  void ChisquareOutput(const DoubleArray& OFreq, DoubleArray& EFreq, DoubleArray& ChiTable,
                       DoubleArray& rowtotal, DoubleArray& coltotal, double& Obstotal,
                       DoubleArray& ChisquareValue,
                       std::string& ErrorCode = *std::make_unique<std::string>()) const;

  /// Chi-square test of goodness of fit (Pearson, 1900): the counts `dff` of the categories `dyy`, row by
  /// row, against the proportions `dPp` of their rows, or equal ones where that was never filled. By category
  /// in order of first appearance: `dy` gets the labels, `df` the counts, `dp` the proportions, `dExp` the
  /// expected counts, `Ctable` what each adds to chi-square. `ErrorCode`: "Invalid data" (a negative count),
  /// "Invalid Proportions" (rows of one category differ, or one is negative). Failure 9 where `dff` or `dPp`
  /// is shorter than `dyy`, 11 for a proportion of 0, 1004 for a single category.
  void GOFOutput(const StringArray& dyy, const DoubleArray& dff, const DoubleArray& dPp, StringArray& dy,
                 DoubleArray& df, DoubleArray& dp, DoubleArray& dExp, DoubleArray& ChiS, DoubleArray& Ctable,
                 std::string& ErrorCode) const;

  // Variances of the groups that the labels `dx` make of the values `dy`; `Category` gets the labels in order
  // of first appearance. A group of one value has the variance 0. Failure 9 where there are fewer labels than
  // values, or where a label beyond the last value makes a group of its own; other labels beyond it do not
  // count.

  /// F test of the variance of the first group against that of the second, two-sided; further groups are
  /// left out. `NoValue` in F and p-value where the second variance is 0, failure 11 where only the first is,
  /// 9 for a single group.
  void FTestOutput(const DoubleArray& dy, const StringArray& dx, double CLevel, DoubleArray& FTestValue,
                   StringArray& Category) const;

  /// The same from two summaries. Failure 5 for a negative standard deviation or a number of values not above
  /// 0, 1004 for one of 1.
  void FTestOutput_S(double dSD1, double dn1, double dSD2, double dn2, double CLevel,
                     DoubleArray& FTestValue) const;

  /// Bartlett's test of equal variances (Bartlett, 1937), with limits of the standard deviations at a joint
  /// confidence `CLevel` (Bonferroni). `BarlettValue` is a row a group, the test in the last row; `NoValue`
  /// in the limits of a group without variance and then in the test too. Failure 5 for a `CLevel` not above 0
  /// or above 1, 11 for a single group.
  void BarlettOutput(const DoubleArray& dy, const StringArray& dx, double CLevel, DoubleArray& BarlettValue,
                     StringArray& Category) const;

  /// Levene's test about the medians (Brown and Forsythe, 1974), with the limits of `BarlettOutput` in a
  /// table like its own. `NoValue` in the test where the values of each group are equally far from their
  /// median. Failure 5 as there, 11 for a single group of others.
  void LeveneOutput(const DoubleArray& dy, const StringArray& dx, double CLevel, DoubleArray& LeveneValue,
                    StringArray& Category) const;

  /// Pearson's correlation (1895) of each pair of columns i < j of the table `dym`, at (i, j - 1) of `corr`,
  /// and its two-sided p-value in `Pvalue`; both are (k - 1) x (k - 1), 0 elsewhere, and not filled for a
  /// single column. `NoValue` in both for a column without spread; in the p-value alone for a perfect
  /// correlation and for two rows.
  void CorrelationOutput(const DoubleArray& dym, DoubleArray& corr, DoubleArray& Pvalue) const;

  /// The covariance, divisor n - 1, of each pair of columns i <= j of the table `dym`, at (i, j) of the k x k
  /// table `Cov`, 0 below the diagonal. Failure 9 for a single row.
  void CovarianceOutput(const DoubleArray& dym, DoubleArray& Cov) const;

  // The tests on ranks and medians. A result that a test does not give is `NoValue`: the p-value where
  // `TestType` is no alternative, too. Failure 9 where there are fewer labels than values, or where a label
  // beyond the last value makes a group of its own (an unbalanced layout in Friedman's test); other labels
  // beyond it do not count. Failure 6 where a result overflows.

  /// Wilcoxon's signed rank test (Wilcoxon, 1945) of the median of `dy` against `TestMedian`, by the normal
  /// approximation with continuity correction and tie term. The estimate is the median of the Walsh averages
  /// of all values (Hodges and Lehmann, 1963), the limits are two of them: those whose confidence by the
  /// approximation is nearest to `CLevel`. Failure 5 for a negative `CLevel`, 1004 for one of 1 or more.
  void OneWilcoxonOutput(const DoubleArray& dy, double TestMedian, double CLevel, const std::string& TestType,
                         DoubleArray& OneWilcoxonValue) const;

  /// Sign test (Arbuthnot, 1710) of the median of `dy` against `TestMedian`, exact, with the limits of the
  /// two pairs of order statistics around `CLevel` and those interpolated between them (Hettmansperger and
  /// Sheather, 1986). Failure 5 for a `CLevel` outside [0, 1].
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
