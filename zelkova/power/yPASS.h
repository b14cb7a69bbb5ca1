#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

// The columns of what a method of `yPASS` finds: for the means, for proportions, for the analysis of
// variance.
ZELKOVA_SLOTS(MeansSampleSize, Diff, SampleSize, TargetPower, ActualPower);
ZELKOVA_SLOTS(MeansDifference, SampleSize, TargetPower, Difference);
ZELKOVA_SLOTS(MeansPower, Diff, SampleSize, Power);
ZELKOVA_SLOTS(ProportionsSampleSize, P, SampleSize, TargetPower, ActualPower);
ZELKOVA_SLOTS(ProportionsSolution, SampleSize, TargetPower, LowerP, UpperP);
ZELKOVA_SLOTS(ProportionsPower, P, SampleSize, Power);
ZELKOVA_SLOTS(ANOVASampleSize, SSMeans, SampleSize, TargetPower, ActualPower);
ZELKOVA_SLOTS(ANOVADifference, SampleSize, TargetPower, Difference, SSMeans);
ZELKOVA_SLOTS(ANOVAPower, SSMeans, SampleSize, Power, Diff);

/// Power and sample size of tests: of sample size, difference and power, two are given and the third is
/// found. Binds to the host.
///
/// All methods share these arguments: `obj`, what to find ("1" the sample size, "2" the difference or
/// proportion, "3" the power; any other text leaves the result unfilled); lists of numbers, texts with ","
/// between, of which `obj` reads the two it needs: `SSize`, `Diff` (or the proportions `aP`) and `Power`;
/// `TestType`, the alternative (see TestType.h); `dSLevel`, the significance level alpha. Failure 13 for a
/// text that is no list of numbers.
///
/// The result is a table with a row for each pair of values of the two lists, the first list in the outer
/// loop: for "1" differences and powers, for "2" sizes and powers, for "3" differences and sizes. The
/// columns are named by the slots above. A row that the test does not admit holds `NoValue`: a difference on
/// the other side of the alternative, a target power not above alpha, a text that is no alternative.
///
/// Failure 5 for a sample size not above 0, a negative `dSigma` and a target that no sample size reaches: one
/// of 1 or more, any for a difference of 0 (in the closed forms these are failures 1004 and 11). Failure
/// 1004 where the host refuses the level or the degrees of freedom.
class yPASS : public HostBound {
 public:
  /// One-sample z test. `Diff` is true less tested mean, in the unit of `dSigma`, the known standard
  /// deviation. Only the tail on the side of the difference counts, in the two-sided test too.
  void PASSOneZOutput(const std::string& obj, const std::string& SSize, const std::string& Diff,
                      const std::string& Power, double dSigma, const std::string& TestType, double dSLevel,
                      DoubleArray& PASSOneZValue) const;

  /// One-sample t test, by the noncentral t distribution (Johnson and Welch, 1940), both tails in the
  /// two-sided test. The sample size is the smallest of at least 2 that reaches the target; the difference
  /// reaches it within 1E-5.
  void PASSOneTOutput(const std::string& obj, const std::string& SSize, const std::string& Diff,
                      const std::string& Power, double dSigma, const std::string& TestType, double dSLevel,
                      DoubleArray& PASSOneTValue) const;

  /// Two-sample t test with equal variances and `SSize` values in each of the two groups; as `PASSOneTOutput`
  /// otherwise.
  void PASSTwoTOutput(const std::string& obj, const std::string& SSize, const std::string& Diff,
                      const std::string& Power, double dSigma, const std::string& TestType, double dSLevel,
                      DoubleArray& PASSTwoTValue) const;

  /// Test of one proportion, the true one `aP`, against `dHp`, by the normal approximation (Fleiss, 1981).
  /// Only the tail on the side of the difference counts. Proportions are found in steps of 0.0001, up to
  /// 10000 of them to either side of `dHp`: `NoValue` where none is or the alternative lies on the other
  /// side. Failure 5 for a proportion outside [0, 1], 11 for an `aP` of 0 or 1 and for a sample size where
  /// `aP` is `dHp`.
  void PASSOnePOutput(const std::string& obj, const std::string& SSize, const std::string& aP,
                      const std::string& Power, double dHp, const std::string& TestType, double dSLevel,
                      DoubleArray& PASSOnePValue) const;

  /// Test of two proportions, `aP` in the first group and `dHp` in the second, with `SSize` trials in each;
  /// as `PASSOnePOutput` otherwise, but that failure 11 needs both proportions at an end.
  void PASSTwoPOutput(const std::string& obj, const std::string& SSize, const std::string& aP,
                      const std::string& Power, double dHp, const std::string& TestType, double dSLevel,
                      DoubleArray& PASSTwoPValue) const;

  /// One-way analysis of variance of `dNumLevel` groups of `SSize` values each, standard deviation `dSigma`,
  /// by the noncentral F distribution (Tang, 1938). `Diff` is the largest difference between two means, the
  /// others lying in the middle: the least power that it allows. `SSMeans` is the sum of squares of the means
  /// about their own mean. The difference reaches its target within 1E-6. Failure 5 for a `dNumLevel` that
  /// is not whole.
  void PASSOneANOVAOutput(const std::string& obj, const std::string& SSize, const std::string& Diff,
                          const std::string& Power, double dSigma, double dSLevel, double dNumLevel,
                          DoubleArray& PASSOneANOVAValue) const;
};

}  // namespace zelkova
