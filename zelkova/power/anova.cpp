#include <algorithm>
#include <cmath>

#include "zelkova/power/noncentral.h"
#include "zelkova/power/planning.h"
#include "zelkova/power/yPASS.h"

namespace zelkova {

using power::numbersOf;
using power::rowForEachPair;
using power::sampleSizesOf;
namespace Find = power::Find;

namespace {

/// One-way analysis of variance, two groups `difference` apart and the others in the middle.
struct OneWay {
  WorksheetFunction& host;
  double sigma, alpha, groups;

  /// Sum of squares of the means about their own mean.
  static double sumOfSquares(double difference) { return 2 * (difference / 2) * (difference / 2); }

  double power(double difference, double n) const {
    const double df1 = groups - 1;
    const double df2 = (n - 1) * groups;
    const double critical = host.FInv(alpha, df1, df2);
    const double effect = checked::quotient(difference, sigma);
    if (difference == 0) return alpha;
    const double lambda = checked::finite(n * (effect * effect / 2));
    return 1 - power::GetNCFDist(host, critical, df1, df2, lambda);
  }

  std::optional<double> sampleSize(double difference, double target) const {
    power::checkReachable(difference, target);
    // The residual degrees of freedom leave the range of the host's functions sooner the more groups there
    // are.
    const double largest = std::min(power::largestSampleSize, 5 * power::largestSampleSize / groups);
    return power::smallestSampleSize(target, largest, [&](double n) { return power(difference, n); });
  }

  double difference(double n, double target) const {
    // deliberate: the start is the square of sigma; it only decides how many rounds there are.
    const power::Bracketing search{checked::finite(sigma * sigma), 1, 1e-6, 10000};
    return power::differenceFor(target, search, [&](double d) { return power(d, n); });
  }
};

}  // namespace

void yPASS::PASSOneANOVAOutput(const std::string& obj, const std::string& SSize, const std::string& Diff,
                               const std::string& Power, double dSigma, double dSLevel, double dNumLevel,
                               DoubleArray& PASSOneANOVAValue) const {
  power::checkSigma(dSigma);
  if (dNumLevel != std::trunc(dNumLevel)) {
    raise(FailureNumber::InvalidCall, "dNumLevel must be a whole number");
  }
  const OneWay test{worksheetFunction(), dSigma, dSLevel, dNumLevel};
  DoubleArray result;
  if (obj == Find::SampleSize) {
    result = rowForEachPair(ANOVASampleSize::size, numbersOf(Diff, "Diff"), numbersOf(Power, "Power"),
                            [&](DoubleArray& table, Index row, double difference, double target) {
                              if (target <= dSLevel) return;
                              const std::optional<double> n = test.sampleSize(difference, target);
                              if (!n) return;
                              table(row, ANOVASampleSize::SSMeans) = OneWay::sumOfSquares(difference);
                              table(row, ANOVASampleSize::SampleSize) = *n;
                              table(row, ANOVASampleSize::TargetPower) = target;
                              table(row, ANOVASampleSize::ActualPower) = test.power(difference, *n);
                            });
  } else if (obj == Find::Difference) {
    result = rowForEachPair(ANOVADifference::size, sampleSizesOf(SSize), numbersOf(Power, "Power"),
                            [&](DoubleArray& table, Index row, double n, double target) {
                              if (target <= dSLevel) return;
                              const double difference = test.difference(n, target);
                              table(row, ANOVADifference::SampleSize) = n;
                              table(row, ANOVADifference::TargetPower) = target;
                              table(row, ANOVADifference::Difference) = difference;
                              table(row, ANOVADifference::SSMeans) = OneWay::sumOfSquares(difference);
                            });
  } else if (obj == Find::Power) {
    result = rowForEachPair(ANOVAPower::size, numbersOf(Diff, "Diff"), sampleSizesOf(SSize),
                            [&](DoubleArray& table, Index row, double difference, double n) {
                              table(row, ANOVAPower::SSMeans) = OneWay::sumOfSquares(difference);
                              table(row, ANOVAPower::SampleSize) = n;
                              table(row, ANOVAPower::Power) = test.power(difference, n);
                              table(row, ANOVAPower::Diff) = difference;
                            });
  }
  PASSOneANOVAValue = std::move(result);
}

}  // namespace zelkova
