#include "zelkova/capability/yCapabilityW.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "zelkova/capability/specificationAxis.h"
#include "zelkova/capability/specifications.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/kit/binCounts.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/sums.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/lifeRegressionFit.h"

namespace zelkova {

namespace {

using namespace capability;

/// What three standard deviations of a normal distribution cut off, to the digits of the standard.
constexpr double lowerShare = 0.00135;
constexpr double upperShare = 0.99865;

Specifications givenSpecifications(const std::string& USL, const std::string& LSL,
                                   const std::string& Target) {
  const Specifications given{givenNumber(USL, "USL"), givenNumber(LSL, "LSL"), givenNumber(Target, "Target")};
  if (given.upper && given.lower && *given.upper < *given.lower) {
    raise(FailureNumber::InvalidCall, "USL lies below LSL");
  }
  return given;
}

void requireMeasurements(std::span<const double> y) {
  for (const double x : y) {
    if (!(x > 0)) raise(FailureNumber::InvalidCall, "a measurement is not above 0");
    if (x == NoValue) raise(FailureNumber::InvalidCall, "a measurement has no value");
  }
}

double positive(double parameter, const char* argument) {
  if (!(parameter > 0)) raise(FailureNumber::InvalidCall, std::string(argument) + " is not above 0");
  return parameter;
}

/// A parameter, and limits where it is an estimate.
struct Parameter {
  double value;
  double lower = NoValue;
  double upper = NoValue;
};

Parameter estimated(double value, double logarithmicReach) {
  const double factor = checked::exp(logarithmicReach);
  return {value, checked::quotient(value, factor), checked::finite(value * factor)};
}

/// Both parameters of the distribution.
struct Parameters {
  Parameter shape;
  Parameter scale;
};

/// The scale of a given shape: its likelihood has the maximum in closed form, and the information about its
/// logarithm is n shape^2. Powers are of the ratio to the largest measurement, which cannot overflow, and
/// less 1, which a small shape leaves its digits.
Parameter scaleOfShape(std::span<const double> y, double shape, double z) {
  const double n = static_cast<double>(y.size());
  const double largest = *std::max_element(y.begin(), y.end());
  const double excess = laneSum(y, [=](double x) { return std::expm1(shape * std::log(x / largest)); }) / n;
  const double reach = checked::quotient(z, shape * std::sqrt(n));
  return estimated(largest * checked::exp(checked::quotient(std::log1p(excess), shape)), reach);
}

/// The distribution of the measurements, which are lives that all ended, with the logarithm of the scale as
/// their location.
Parameters distributionOf(const DoubleArray& dy, const std::optional<double>& histShape,
                          const std::optional<double>& histScale, double z) {
  if (histShape && histScale) return {{*histShape}, {*histScale}};
  const auto y = dy.vector();
  if (histShape) return {{*histShape}, scaleOfShape(y, *histShape, z)};
  const double only = histScale.value_or(y[0]);
  if (std::all_of(y.begin(), y.end(), [only](double x) { return x == only; })) {
    raise(FailureNumber::InvalidCall, "the measurements do not differ: there is no shape to estimate");
  }
  const DoubleArray hold{NoValue, histScale ? checked::log(*histScale) : NoValue};
  const auto fit = fitLifeRegression(dy, dy, DoubleArray(dy.rows(), 2, 1.0), "Weibull", hold);
  if (!fit) raise(FailureNumber::InvalidCall, "no Weibull distribution fits the measurements");
  const double shape = fit->P(1);
  const Parameter estimate = estimated(shape, z * checked::quotient(checked::root(fit->V(1, 1)), shape));
  if (histScale) return {estimate, {*histScale}};
  return {estimate, estimated(checked::exp(fit->P(2)), z * checked::root(fit->V(2, 2)))};
}

/// A fraction beyond specification with what it leaves, each from its own side.
struct Tail {
  double beyond;
  double within;

  /// The normal quantile that cuts off as much.
  double z(WorksheetFunction& host) const {
    if (!(beyond > 0 && within > 0)) return NoValue;
    return beyond < within ? -host.NormSInv(beyond) : host.NormSInv(within);
  }
};

Tail above(const Life& life, double limit) {
  if (limit <= 0) return {1, 0};
  return {life.survival(limit), life.failure(limit)};
}

Tail below(const Life& life, double limit) {
  if (limit <= 0) return {0, 1};
  return {life.failure(limit), life.survival(limit)};
}

void putIndices(const Life& life, const Specifications& given, WorksheetFunction& host, DoubleArray& result) {
  using Slot = WeibullCapability;
  const double lower = result(Slot::LowerQuantile) = life.quantile(lowerShare);
  const double median = result(Slot::Median) = life.quantile(0.5);
  const double upper = result(Slot::UpperQuantile) = life.quantile(upperShare);
  if (given.upper) {
    result(Slot::PPU) = result(Slot::Ppk) = checked::quotient(*given.upper - median, upper - median);
    result(Slot::ZUSL) = result(Slot::ZBench) = above(life, *given.upper).z(host);
  }
  if (given.lower) {
    result(Slot::PPL) = result(Slot::Ppk) = checked::quotient(median - *given.lower, median - lower);
    result(Slot::ZLSL) = result(Slot::ZBench) = below(life, *given.lower).z(host);
  }
  if (!given.upper || !given.lower) return;
  result(Slot::Pp) = checked::quotient(*given.upper - *given.lower, upper - lower);
  result(Slot::Ppk) = std::min(result(Slot::PPU), result(Slot::PPL));
  const Tail aboveUpper = above(life, *given.upper);
  const Tail belowLower = below(life, *given.lower);
  // What lies between, from the tail that both limits share.
  const bool inUpperTail = belowLower.beyond > 0.5;
  const double within =
      inUpperTail ? belowLower.within - aboveUpper.beyond : aboveUpper.within - belowLower.beyond;
  const Tail both{aboveUpper.beyond + belowLower.beyond, within};
  result(Slot::ZBench) = both.z(host);
}

void putFractions(std::span<const double> y, const Life& life, const Specifications& given,
                  std::string_view display, DoubleArray& result) {
  using Slot = WeibullCapability;
  const bool percent = display == "Percentage";
  const bool known = percent || display == "Parts per million";
  const auto put = [&](Index slot, double fraction) {
    if (!known) fraction = 0;
    result(slot) = percent && fraction != NoValue ? fraction / 10000 : fraction;
  };
  double observedBelow = NoValue, observedAbove = NoValue, expectedBelow = NoValue, expectedAbove = NoValue;
  if (given.lower) {
    observedBelow = observed(y, [limit = *given.lower](double x) { return x < limit; });
    expectedBelow = million * below(life, *given.lower).beyond;
  }
  if (given.upper) {
    observedAbove = observed(y, [limit = *given.upper](double x) { return x > limit; });
    expectedAbove = million * above(life, *given.upper).beyond;
  }
  put(Slot::ObservedBelow, observedBelow);
  put(Slot::ObservedAbove, observedAbove);
  put(Slot::ObservedTotal, total(observedBelow, observedAbove));
  put(Slot::ExpectedBelow, expectedBelow);
  put(Slot::ExpectedAbove, expectedAbove);
  put(Slot::ExpectedTotal, total(expectedBelow, expectedAbove));
}

/// The bins of an axis on which the data, the distribution and every line have a place: all that is specified
/// may lie on one side of the data.
DoubleArray axisOf(std::span<const double> y, const std::optional<Life>& life, const Specifications& given) {
  auto [low, high] = std::minmax({y.front(), life ? life->quantile(lowerShare) : y.front(),
                                  life ? life->quantile(upperShare) : y.front()});
  for (const auto& specification : {given.upper, given.lower}) {
    if (!specification) continue;
    low = std::min(low, *specification);
    high = std::max(high, *specification);
  }
  return binsOf(y, low, high, given);
}

/// The counts that the distribution expects in the bins: unlike a density, finite for any shape, and of the
/// right sum where most of the distribution lies in one bin.
DoubleArray curveOf(const Life& life, const DoubleArray& bins, double n) {
  if (bins.rows() == 1) return DoubleArray(1, NoValue);
  DoubleArray curve(bins.rows());
  Tail before{0, 1};
  for (Index j = 1; j <= bins.rows(); ++j) {
    const Tail upTo = j == bins.rows() ? Tail{1, 0} : below(life, bins(j) + (bins(j + 1) - bins(j)) / 2);
    const bool upperHalf = before.beyond > 0.5;
    curve(j) = n * (upperHalf ? before.within - upTo.within : upTo.beyond - before.beyond);
    before = upTo;
  }
  return nearTheData(std::move(curve));
}

}  // namespace

void yCapabilityW::CapabilityWOutput(const DoubleArray& dy, const std::string& USL, const std::string& LSL,
                                     const std::string& Target, const std::string& HistShape,
                                     const std::string& HistScale, double CLevel, const std::string& DisplayP,
                                     DoubleArray& Capability) const {
  const Specifications given = givenSpecifications(USL, LSL, Target);
  const auto histShape = givenNumber(HistShape, "HistShape");
  const auto histScale = givenNumber(HistScale, "HistScale");
  if (histShape) positive(*histShape, "HistShape");
  if (histScale) positive(*histScale, "HistScale");
  if (!(CLevel > 0 && CLevel < 1)) raise(FailureNumber::InvalidCall, "CLevel must be above 0 and below 1");
  WorksheetFunction& host = worksheetFunction();
  const double z = host.NormSInv((1 + CLevel) / 2);
  const std::span<const double> y = dy.vector();
  requireMeasurements(y);
  const auto [shape, scale] = distributionOf(dy, histShape, histScale, z);
  const Life life(host, LifeDistribution::Weibull, scale.value, shape.value);

  using Slot = WeibullCapability;
  DoubleArray result(Slot::size, NoValue);
  result(Slot::USL) = given.upper.value_or(NoValue);
  result(Slot::Target) = given.target.value_or(NoValue);
  result(Slot::LSL) = given.lower.value_or(NoValue);
  result(Slot::Mean) = GetMean(dy);
  result(Slot::N) = static_cast<double>(y.size());
  result(Slot::Shape) = shape.value;
  result(Slot::ShapeLower) = shape.lower;
  result(Slot::ShapeUpper) = shape.upper;
  result(Slot::Scale) = scale.value;
  result(Slot::ScaleLower) = scale.lower;
  result(Slot::ScaleUpper) = scale.upper;
  putIndices(life, given, host, result);
  putFractions(y, life, given, textOr(DisplayP, "Parts per million"), result);
  checked::leaving(result);
  Capability = std::move(result);
}

void yCapabilityW::CapabilityWChartOutput(const DoubleArray& dy, const std::string& USL,
                                          const std::string& LSL, const std::string& Target, double dShape,
                                          double dScale, DoubleArray& PlotX, DoubleArray& PlotY,
                                          DoubleArray& PlotOverall, DoubleArray& PlotLimitY,
                                          DoubleArray& PlotLSLX, DoubleArray& PlotUSLX,
                                          DoubleArray& PlotTargetX) const {
  const Specifications given = givenSpecifications(USL, LSL, Target);
  const std::span<const double> y = dy.vector();
  requireMeasurements(y);
  std::optional<Life> life;
  if (dShape != NoValue && dScale != NoValue) {
    life.emplace(worksheetFunction(), LifeDistribution::Weibull, positive(dScale, "dScale"),
                 positive(dShape, "dShape"));
  }
  DoubleArray bins = axisOf(y, life, given);

  DoubleArray counts(binCounts(bins.elements(), y));
  DoubleArray curve =
      life ? curveOf(*life, bins, static_cast<double>(y.size())) : DoubleArray(bins.rows(), NoValue);
  DoubleArray lowerX = markerOf(given.lower, bins);
  DoubleArray upperX = markerOf(given.upper, bins);
  DoubleArray targetX = markerOf(given.target, bins);
  checked::leaving(bins, counts, curve, lowerX, upperX, targetX);
  PlotX = std::move(bins);
  PlotY = std::move(counts);
  PlotOverall = std::move(curve);
  PlotLimitY = {0, 1};
  PlotLSLX = std::move(lowerX);
  PlotUSLX = std::move(upperX);
  PlotTargetX = std::move(targetX);
}

}  // namespace zelkova
