#include "zelkova/kit/yDStat.h"

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/summary.h"

namespace zelkova {

void yDStat::DesStatOutput(const DoubleArray& dy, DoubleArray& DSO) const {
  using Slot = DescriptiveStatistics;
  constexpr double confidence = 95;
  const std::vector<double> sorted = summary::sortedCopy(dy);
  const Index n = GetCount(dy);
  const double mean = GetMean(dy);
  const double variance = GetVariance(dy);
  const double sd = std::sqrt(variance);

  DoubleArray result(Slot::size, NoValue);
  result(Slot::Mean) = mean;
  result(Slot::StandardDeviation) = sd;
  result(Slot::Variance) = sd * sd;
  result(Slot::N) = static_cast<double>(n);
  result(Slot::Sum) = GetSum(dy);
  result(Slot::Minimum) = GetMin(dy);
  result(Slot::Q1) = summary::lowerQuartile(sorted);
  result(Slot::Median) = summary::median(sorted);
  result(Slot::Q3) = summary::upperQuartile(sorted);
  result(Slot::Maximum) = GetMax(dy);
  result(Slot::Range) = result(Slot::Maximum) - result(Slot::Minimum);

  const summary::Limits meanLimits = summary::meanLimits(n, mean, sd, confidence);
  result(Slot::MeanLower) = meanLimits.lower;
  result(Slot::MeanUpper) = meanLimits.upper;
  result(Slot::SDLower) = summary::sdLowerLimit(n, variance, confidence);
  result(Slot::SDUpper) = summary::sdUpperLimit(n, variance, confidence);
  const summary::Limits medianLimits = summary::medianLimits(sorted, confidence);
  result(Slot::MedianLower) = medianLimits.lower;
  result(Slot::MedianUpper) = medianLimits.upper;

  checked::leaving(result);
  DSO = std::move(result);
}

}  // namespace zelkova
