#include <algorithm>
#include <utility>

#include "zelkova/anom/criticalValue.h"
#include "zelkova/anom/decisionLimits.h"
#include "zelkova/anom/yANOM.h"
#include "zelkova/capability/attributeStudy.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova {

using capability::Samples;

namespace {

/// Expected counts up to this are too few for the normal approximation.
constexpr double tooFew = 5;

struct RateChart {
  DoubleArray summary, levels;

  bool hasSmallLevels() const { return summary(RateANOM::SmallLevels) > 0; }
};

/// The chart of the rates of `samples`, whose counts have a variance of `unitVariance` times their size.
/// `scarce` is the total that must not be too small in the share of any sample.
RateChart rateChart(WorksheetFunction& host, const Samples& samples, double alpha, double unitVariance,
                    double scarce) {
  const double rate = checked::quotient(samples.totalCount, samples.totalSize);
  const double critical = anom::boundedCriticalValue(host, alpha, samples.rows());
  const double unitReach = critical * checked::root(unitVariance);
  DoubleArray levels(samples.rows(), RateANOMLevels::size, 0.0);
  double smallLevels = 0;
  for (Index i = 1; i <= samples.rows(); ++i) {
    const double size = samples.size(i);
    const double point = checked::quotient(samples.count(i), size);
    const double reach = checked::finite(unitReach * anom::deviationError(size, samples.totalSize));
    anom::putRow(levels, i, {size, point, rate, point - rate, reach});
    levels(i, RateANOMLevels::Lower) = std::max(0.0, rate - reach);
    if (size * scarce > tooFew * samples.totalSize) continue;
    levels(i, RateANOMLevels::Small) = 1;
    ++smallLevels;
  }

  DoubleArray summary(RateANOM::size);
  summary(RateANOM::Alpha) = alpha;
  summary(RateANOM::Levels) = static_cast<double>(samples.rows());
  summary(RateANOM::N) = samples.totalSize;
  summary(RateANOM::Mean) = rate;
  summary(RateANOM::CriticalValue) = critical;
  summary(RateANOM::Signals) = anom::signalsOf(levels);
  summary(RateANOM::SmallLevels) = smallLevels;
  checked::leaving(summary, levels);
  return {std::move(summary), std::move(levels)};
}

}  // namespace

void yANOM::ANOMBinomialOutput(const DoubleArray& dy, const DoubleArray& dxN, double alpha,
                               DoubleArray& ANOMValue, DoubleArray& ANOMValue_I, bool& TooSmall) const {
  const Samples samples(dy, dxN);
  anom::checkComparison(alpha, samples.rows());
  for (Index i = 1; i <= samples.rows(); ++i) {
    if (samples.count(i) > samples.size(i)) {
      raise(FailureNumber::InvalidCall, "a level cannot have more defectives than items");
    }
  }
  const double good = samples.totalSize - samples.totalCount;
  const double variance =
      checked::quotient(samples.totalCount, samples.totalSize) * checked::quotient(good, samples.totalSize);
  RateChart chart =
      rateChart(worksheetFunction(), samples, alpha, variance, std::min(samples.totalCount, good));
  for (double& upper : chart.levels.column(RateANOMLevels::Upper)) upper = std::min(1.0, upper);
  TooSmall = chart.hasSmallLevels();
  ANOMValue = std::move(chart.summary);
  ANOMValue_I = std::move(chart.levels);
}

void yANOM::ANOMPoissonOutput(const DoubleArray& dy, const DoubleArray& dxN, double alpha,
                              DoubleArray& ANOMValue, DoubleArray& ANOMValue_I, bool& TooSmall) const {
  const Samples samples(dy, dxN);
  anom::checkComparison(alpha, samples.rows());
  const double variance = checked::quotient(samples.totalCount, samples.totalSize);
  RateChart chart = rateChart(worksheetFunction(), samples, alpha, variance, samples.totalCount);
  TooSmall = chart.hasSmallLevels();
  ANOMValue = std::move(chart.summary);
  ANOMValue_I = std::move(chart.levels);
}

}  // namespace zelkova
