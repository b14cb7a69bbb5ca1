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
};

}  // namespace zelkova
