#include "zelkova/capability/yCapabilityB.h"

#include <cmath>
#include <optional>
#include <utility>

#include "zelkova/capability/attributeStudy.h"
#include "zelkova/charts/ChartLines.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/kit/order.h"

namespace zelkova {

using capability::DistributionPlot;
using capability::Samples;
using capability::unlessRefused;

namespace {

Samples defectivesOf(const DoubleArray& dy, const DoubleArray& dxN) {
  const Samples samples(dy, dxN);
  for (Index i = 1; i <= samples.rows(); ++i) {
    if (samples.count(i) > samples.size(i)) {
      raise(FailureNumber::InvalidCall, "a sample cannot have more defectives than items");
    }
  }
  return samples;
}

std::optional<double> historicalProportion(const std::string& text) {
  const std::optional<double> p = givenNumber(text, "HistP");
  if (p && !(*p >= 0 && *p <= 1)) raise(FailureNumber::InvalidCall, "a proportion must be from 0 to 1");
  return p;
}

/// The defectives to expect among `n`. A product that is a whole number but for rounding is that number:
/// degrees of freedom are cut to whole ones, and 49.99... would lose one.
double expectedDefectives(double p, double n) {
  const double x = p * n;
  const double whole = roundHalfEven(x);
  return std::fabs(x - whole) <= 1E-9 * whole ? whole : x;
}

struct Limits {
  double lower, upper;
};

/// The limits of the proportion for x defectives among n. Deliberate: quantiles that do not exist, at x = 0
/// and x = n, keep values near 1, which lead to the limits 0 and 1 there.
Limits exactLimits(double x, double n, WorksheetFunction& host) {
  const double f1 = unlessRefused(0.988, [&] { return host.FInv(0.975, 2 * x, 2 * (n - x + 1)); });
  const double f2 = unlessRefused(1.012, [&] { return host.FInv(0.025, 2 * (x + 1), 2 * (n - x)); });
  const double lower = 2 * x * f1;
  const double upper = 2 * (x + 1) * f2;
  return {checked::quotient(lower, lower + 2 * (n - x + 1)), checked::quotient(upper, upper + 2 * (n - x))};
}

/// The Z value of the proportion `q` in a study of proportion `p`. Deliberate: its sign is that of p, also
/// for a limit on the other side of one half.
double zValue(double q, double p, WorksheetFunction& host) {
  if (q <= 0 || q >= 1) return NoValue;
  const double size = std::fabs(host.NormSInv(q));
  // A difference, since the negative of 0 would show as -0.
  return p >= 0.5 ? 0 - size : size;
}

/// The Z values of the limits, the larger one first.
std::pair<double, double> zLimits(double p, const Limits& limits, WorksheetFunction& host) {
  double first = zValue(limits.lower, p, host);
  double second = zValue(limits.upper, p, host);
  // At one half the limits lie symmetrically about it.
  if (p == 0.5 && first != NoValue) second = -first;
  if (first != NoValue && second != NoValue && first < second) std::swap(first, second);
  return {first, second};
}

/// Limits in percent, one pair a point.
struct PercentLimits {
  DoubleArray lower, upper;

  explicit PercentLimits(Index points) : lower(points, NoValue), upper(points, NoValue) {}
  void set(Index i, const Limits& limits) {
    lower(i) = 100 * limits.lower;
    upper(i) = 100 * limits.upper;
  }
};

PercentLimits cumulativeLimits(const Samples& samples, const std::optional<double>& histP,
                               WorksheetFunction& host) {
  PercentLimits result(samples.rows());
  double defectives = 0;
  double inspected = 0;
  for (Index i = 1; i <= samples.rows(); ++i) {
    defectives += samples.count(i);
    inspected += samples.size(i);
    const double x = histP ? expectedDefectives(*histP, inspected) : defectives;
    result.set(i, exactLimits(x, inspected, host));
  }
  return result;
}

PercentLimits limitsBySize(const DoubleArray& ascending, double p, WorksheetFunction& host) {
  PercentLimits result(ascending.rows());
  Limits limits{};
  for (Index i = 1; i <= ascending.rows(); ++i) {
    const double size = ascending(i);
    if (i == 1 || size != ascending(i - 1)) limits = exactLimits(expectedDefectives(p, size), size, host);
    result.set(i, limits);
  }
  return result;
}

}  // namespace

void yCapabilityB::CapabilityBOutput(const DoubleArray& dy, const DoubleArray& dxN, const std::string& Target,
                                     const std::string& HistP, DoubleArray& Capability) const {
  const Samples samples = defectivesOf(dy, dxN);
  const std::optional<double> histP = historicalProportion(HistP);
  const double n = samples.totalSize;
  const double p = histP ? *histP : checked::quotient(samples.totalCount, n);
  const double x = histP ? expectedDefectives(*histP, n) : samples.totalCount;
  const Limits limits = exactLimits(x, n, worksheetFunction());
  const auto [largerZ, smallerZ] = zLimits(p, limits, worksheetFunction());

  using Slot = BinomialCapability;
  DoubleArray result(Slot::size);
  result(Slot::P) = p;
  result(Slot::PLower) = limits.lower;
  result(Slot::PUpper) = limits.upper;
  result(Slot::Percent) = 100 * p;
  result(Slot::PercentLower) = 100 * limits.lower;
  result(Slot::PercentUpper) = 100 * limits.upper;
  result(Slot::PPM) = 1E6 * p;
  result(Slot::PPMLower) = 1E6 * limits.lower;
  result(Slot::PPMUpper) = 1E6 * limits.upper;
  result(Slot::Z) = zValue(p, p, worksheetFunction());
  result(Slot::ZLimitLarger) = largerZ;
  result(Slot::ZLimitSmaller) = smallerZ;
  result(Slot::Target) = givenNumber(Target, "Target").value_or(NoValue);
  checked::leaving(result);
  Capability = std::move(result);
}

void yCapabilityB::CapabilityBPlotOutput(const DoubleArray& dy, const DoubleArray& dxN,
                                         const std::string& Target, const std::string& HistP,
                                         DoubleArray& CumPDefX, DoubleArray& CumPDefY,
                                         DoubleArray& CumPDefAve, DoubleArray& CumPDefLSL,
                                         DoubleArray& CumPDefUSL, DoubleArray& PDef, DoubleArray& RateX1,
                                         DoubleArray& RateX2, DoubleArray& RateYLSL, DoubleArray& RateYUSL,
                                         DoubleArray& BPlotX, DoubleArray& BPlotObs, DoubleArray& BPlotExp,
                                         StringArray& BPlotLabel) const {
  DoubleArray summary;
  CapabilityBOutput(dy, dxN, Target, HistP, summary);
  const double p = summary(BinomialCapability::P);
  const Samples samples(dy, dxN);
  const Index n = samples.rows();
  WorksheetFunction& host = worksheetFunction();

  DoubleArray cumulative = samples.cumulativeRates(100);
  PercentLimits cumulativeBand = cumulativeLimits(samples, historicalProportion(HistP), host);
  DoubleArray rates = samples.rates(100);

  const DoubleArray none(n, NoValue);
  DoubleArray sizes = none;
  DoubleArray ascending = none;
  PercentLimits bySize(n);
  DoubleArray plotX = none;
  DistributionPlot plot{none, none};
  StringArray labels;
  if (samples.sizesDiffer()) {
    sizes = dxN;
    ascending = dxN;
    order::sortValues(ascending.vector());
    bySize = limitsBySize(ascending, p, host);
    labels = {"Rate of Defectives", "% Defectives", "Sample Size"};
  } else {
    const double size = samples.size(1);
    plotX = control::positions(n);
    plot =
        distributionPlot(samples, [&](double k) { return k >= size ? 1 : host.BinomDist(k, size, p, true); });
    labels = {"Binomial Plot", "Expected Defectives", "Observed Defectives"};
  }

  checked::leaving(cumulative, cumulativeBand.lower, cumulativeBand.upper, rates, bySize.lower, bySize.upper);
  CumPDefX = control::positions(n);
  CumPDefY = std::move(cumulative);
  CumPDefAve = DoubleArray(n, 100 * p);
  CumPDefLSL = std::move(cumulativeBand.lower);
  CumPDefUSL = std::move(cumulativeBand.upper);
  PDef = std::move(rates);
  RateX1 = std::move(sizes);
  RateX2 = std::move(ascending);
  RateYLSL = std::move(bySize.lower);
  RateYUSL = std::move(bySize.upper);
  BPlotX = std::move(plotX);
  BPlotObs = std::move(plot.observed);
  BPlotExp = std::move(plot.expected);
  BPlotLabel = std::move(labels);
}

}  // namespace zelkova
