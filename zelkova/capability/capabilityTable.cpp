#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>

#include "zelkova/capability/specifications.h"
#include "zelkova/capability/yCapability.h"
#include "zelkova/charts/ChartLines.h"
#include "zelkova/charts/Subgroups.h"
#include "zelkova/charts/modzControl.h"
#include "zelkova/charts/sigmaByName.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace {

using namespace capability;

/// What the estimates of sigma need of a call.
struct SigmaOptions {
  std::string_view movingRange, within;
  double rangeLength;
  std::string_view histSD, histBetween, histWithin;
};

/// The historical sigma where there is one.
std::optional<double> historical(std::string_view text) {
  if (trimmed(text).empty()) return std::nullopt;
  return control::historicalSigma(text);
}

double individualsSigma(std::string_view name, std::span<const double> y, double w) {
  if (sameIgnoringCase(name, "Average Moving Range")) return control::sigmaAvgMR(y, w);
  if (sameIgnoringCase(name, "Median Moving Range")) return control::sigmaMedianMR(y, w);
  return 0;
}

double meansSigma(std::string_view name, const control::Subgroups& subgroups, double w) {
  if (sameIgnoringCase(name, "Average Moving Range")) return control::sigmaAvgMRMeans(subgroups, w);
  if (sameIgnoringCase(name, "Median Moving Range")) return control::sigmaMedianMRMeans(subgroups, w);
  return 0;
}

/// The sigma of a study without a between-subgroup component.
double shortTermSigma(const control::Subgroups& subgroups, const SigmaOptions& options) {
  if (const auto sigma = historical(options.histSD)) return *sigma;
  if (subgroups.modalSize() > 1) return control::withinSigma(options.within, subgroups);
  return individualsSigma(options.movingRange, subgroups.column(), options.rangeLength);
}

struct Components {
  double between, within;

  /// The sigma of a single value. Deliberate: the within component is not divided by the subgroup size, as it
  /// is on a chart of subgroup means; a study is about single values.
  double combined() const {
    return between == NoValue ? NoValue : checked::root(between * between + within * within);
  }
};

double betweenSigma(const control::Subgroups& subgroups, double within, const SigmaOptions& options,
                    WorksheetFunction& host) {
  const double ofMeans = meansSigma(options.movingRange, subgroups, options.rangeLength);
  if (ofMeans == NoValue) return NoValue;
  const double size = subgroups.modalSize();
  return checked::root(host.Max(checked::finite(ofMeans * ofMeans - within * within / size), 0));
}

Components componentsOf(const control::Subgroups& subgroups, const SigmaOptions& options,
                        WorksheetFunction& host) {
  const auto histBetween = historical(options.histBetween);
  // Deliberate: a historical within-subgroup sigma on its own leaves nothing between subgroups; the data's
  // would belong to another within-subgroup sigma.
  if (const auto within = historical(options.histWithin)) return {histBetween.value_or(0), *within};
  const double within = subgroups.modalSize() > 1 ? control::withinSigma(options.within, subgroups) : 0;
  if (histBetween) return {*histBetween, within};
  return {betweenSigma(subgroups, within, options, host), within};
}

/// What one sigma says about the process; fractions in parts per million.
struct Indices {
  double cp = NoValue, cpu = NoValue, cpl = NoValue, cpk = NoValue;
  double zBench = NoValue, zUpper = NoValue, zLower = NoValue;
  double below = NoValue, above = NoValue;
};

/// The expected fraction beyond a specification `z` sigmas away: the upper tail as the lower one of -z, which
/// keeps its digits however far out.
double tail(double z, WorksheetFunction& host) { return million * host.NormSDist(-z); }

/// The Z value of both sides together.
double benchmark(double zUpper, double zLower, WorksheetFunction& host) {
  const double yield = host.NormSDist(zUpper) + host.NormSDist(zLower) - 1;
  return yield == 0 || yield == 1 ? NoValue : host.NormSInv(yield);
}

Indices indicesOf(const Specifications& given, double mean, double sigma, double tolerance,
                  WorksheetFunction& host) {
  Indices result;
  if (sigma == NoValue || !(given.upper || given.lower)) return result;
  if (sigma == 0) raise(FailureNumber::DivisionByZero, "a sigma is 0");
  const double halfSpread = tolerance / 2 * sigma;
  if (given.upper) {
    result.cpu = checked::quotient(*given.upper - mean, halfSpread);
    result.zUpper = checked::quotient(*given.upper - mean, sigma);
    result.above = tail(result.zUpper, host);
  }
  if (given.lower) {
    result.cpl = checked::quotient(mean - *given.lower, halfSpread);
    result.zLower = checked::quotient(mean - *given.lower, sigma);
    result.below = tail(result.zLower, host);
  }
  if (!given.upper || !given.lower) {
    result.cpk = given.upper ? result.cpu : result.cpl;
    result.zBench = given.upper ? result.zUpper : result.zLower;
    return result;
  }
  result.cp = checked::quotient(*given.upper - *given.lower, tolerance * sigma);
  result.cpk = host.Min(result.cpu, result.cpl);
  result.zBench = benchmark(result.zUpper, result.zLower, host);
  return result;
}

/// Taguchi's index: the spread is that about the target (Chan, Cheng and Spiring, 1988). Deliberate: divisor
/// n - 1, so that it compares with the standard deviation.
double cpmOf(std::span<const double> y, const Specifications& given, double tolerance,
             WorksheetFunction& host) {
  if (!given.target || !(given.upper || given.lower)) return NoValue;
  const double target = *given.target;
  const double squares = laneSum(y, [target](double x) { return (x - target) * (x - target); });
  const double spread = checked::root(checked::quotient(squares, static_cast<double>(y.size()) - 1));
  const double halfSpread = tolerance / 2 * spread;
  if (!given.lower) return checked::quotient(*given.upper - target, halfSpread);
  if (!given.upper) return checked::quotient(target - *given.lower, halfSpread);
  if (target == (*given.upper + *given.lower) / 2) {
    return checked::quotient(*given.upper - *given.lower, tolerance * spread);
  }
  return checked::quotient(host.Min(target - *given.lower, *given.upper - target), halfSpread);
}

void putIndices(const Indices& within, const Indices& overall, double cpm, std::string_view display,
                DoubleArray& result) {
  using Slot = NormalCapability;
  const bool asZ = display == "Z & Sigma";
  if (!asZ && display != "Cp & Pp") return;
  result(Slot::CpOrZBenchWithin) = asZ ? within.zBench : within.cp;
  result(Slot::CPUOrZUSLWithin) = asZ ? within.zUpper : within.cpu;
  result(Slot::CPLOrZLSLWithin) = asZ ? within.zLower : within.cpl;
  result(Slot::Cpk) = within.cpk;
  result(Slot::Cpm) = cpm;
  result(Slot::PpOrZBenchOverall) = asZ ? overall.zBench : overall.cp;
  result(Slot::PPUOrZUSLOverall) = asZ ? overall.zUpper : overall.cpu;
  result(Slot::PPLOrZLSLOverall) = asZ ? overall.zLower : overall.cpl;
  result(Slot::Ppk) = overall.cpk;
}

/// Fractions in parts per million, as `observed`, `within` and `overall`, each below, above and in total.
using Fractions = std::array<double, 9>;

Fractions fractionsOf(std::span<const double> y, const Specifications& given, const Indices& within,
                      const Indices& overall) {
  const double below =
      given.lower ? observed(y, [limit = *given.lower](double x) { return x < limit; }) : NoValue;
  const double above =
      given.upper ? observed(y, [limit = *given.upper](double x) { return x > limit; }) : NoValue;
  return {below,         above,         total(below, above),
          within.below,  within.above,  total(within.below, within.above),
          overall.below, overall.above, total(overall.below, overall.above)};
}

void putFractions(const Fractions& fractions, std::string_view display, DoubleArray& result) {
  const bool percent = display == "Percentage";
  if (!percent && display != "Parts per million") return;
  Index slot = NormalCapability::ObservedBelow;
  for (const double fraction : fractions) {
    result(slot++) = percent && fraction != NoValue ? fraction / 10000 : fraction;
  }
}

}  // namespace

void yCapability::CapabilityOutput(const DoubleArray& dy, const StringArray& dx, const std::string& estimate1,
                                   const std::string& estimate2, const std::string& MRLength,
                                   const std::string& USL, const std::string& LSL, const std::string& Target,
                                   const std::string& Tolerance, const std::string& HistMean,
                                   const std::string& HistSD, const std::string& HistSDB,
                                   const std::string& HistSDW, const std::string& DisplayC,
                                   const std::string& DisplayP, DoubleArray& Capability, bool BW) const {
  const Specifications given{givenNumber(USL, "USL"), givenNumber(LSL, "LSL"), givenNumber(Target, "Target")};
  const double tolerance = givenWidth(Tolerance, "Tolerance").value_or(6);
  const SigmaOptions options{estimate1, estimate2, givenNumber(MRLength, "MRLength").value_or(2),
                             HistSD,    HistSDB,   HistSDW};
  WorksheetFunction& host = worksheetFunction();

  const std::span<const double> y = dy.vector();
  const control::Subgroups subgroups(y, dx.vector());
  const double n = static_cast<double>(y.size());
  const double mean = givenNumber(HistMean, "HistMean").value_or(control::meanOf(y));
  const double overallSigma = GetStdDev(dy) / UnbiasC4(n);

  using Slot = NormalCapability;
  DoubleArray result(Slot::size);
  result(Slot::USL) = given.upper.value_or(NoValue);
  result(Slot::Target) = given.target.value_or(NoValue);
  result(Slot::LSL) = given.lower.value_or(NoValue);
  result(Slot::Mean) = mean;
  result(Slot::N) = n;

  double sigma = 0;
  if (BW) {
    const Components components = componentsOf(subgroups, options, host);
    sigma = components.combined();
    result(Slot::SDWithinOrBetween) = components.between;
    result(Slot::SDOverallOrWithin) = components.within;
    result(Slot::SDBetweenWithin) = sigma;
    result(Slot::SDOverall) = overallSigma;
  } else {
    sigma = shortTermSigma(subgroups, options);
    result(Slot::SDWithinOrBetween) = sigma;
    result(Slot::SDOverallOrWithin) = overallSigma;
  }

  const Indices within = indicesOf(given, mean, sigma, tolerance, host);
  const Indices overall = indicesOf(given, mean, overallSigma, tolerance, host);
  putIndices(within, overall, cpmOf(y, given, tolerance, host), textOr(DisplayC, "Cp & Pp"), result);
  putFractions(fractionsOf(y, given, within, overall), textOr(DisplayP, "Parts per million"), result);
  checked::leaving(result);
  Capability = std::move(result);
}

}  // namespace zelkova
