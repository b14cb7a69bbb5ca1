#include <algorithm>
#include <optional>
#include <vector>

#include "zelkova/capability/yCapability.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/kit/binCounts.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/kit/normalCurve.h"

namespace zelkova {

namespace {

/// The bins of the values, and of an axis from `low` to `high`.
DoubleArray binsOf(std::span<const double> y, double low, double high) {
  std::vector<double> covered(y.begin(), y.end());
  covered.push_back(low);
  covered.push_back(high);
  return GetHistogramBins(DoubleArray(std::move(covered)));
}

/// The curve of one sigma. Deliberate: no value where it would be drawn along the axis, far from the data.
DoubleArray curveOf(const DoubleArray& bins, double n, double mean, double sd, WorksheetFunction& host) {
  if (sd == 0 || sd == NoValue) return DoubleArray(bins.rows(), NoValue);
  DoubleArray curve = normalCurve(host, bins, n, mean, sd);
  for (double& height : curve.elements()) {
    if (roundHalfEven(height, 5) == 0) height = NoValue;
  }
  return curve;
}

double withoutValueAs0(double sd) { return sd == NoValue ? 0 : sd; }

/// Both ends of the line at a specification, as fractions of an axis with a category for each bin.
DoubleArray markerOf(const std::optional<double>& specification, const DoubleArray& bins) {
  if (!specification || bins.rows() == 1) return {NoValue, NoValue};
  const double category = checked::quotient(*specification - bins(1), bins(2) - bins(1)) + 0.5;
  const double x = category / static_cast<double>(bins.rows());
  return {x, x};
}

}  // namespace

void yCapability::CapabilityChartoutput(const DoubleArray& dy, const StringArray& /*dx*/,
                                        const std::string& USL, const std::string& LSL,
                                        const std::string& Target, double dMean, double dSD1, double dSD2,
                                        DoubleArray& PlotX, DoubleArray& PlotY, DoubleArray& PlotWithin,
                                        DoubleArray& PlotOverall, DoubleArray& PlotLimitY,
                                        DoubleArray& PlotLSLX, DoubleArray& PlotUSLX,
                                        DoubleArray& PlotTargetX) const {
  const auto upper = givenNumber(USL, "USL");
  const auto lower = givenNumber(LSL, "LSL");
  const auto target = givenNumber(Target, "Target");
  const std::span<const double> y = dy.vector();
  const double n = static_cast<double>(y.size());

  // Three sigmas to each side, and what is specified on that side; a target may lie on either.
  const double spread = 3 * std::max(withoutValueAs0(dSD1), withoutValueAs0(dSD2));
  double low = dMean - spread;
  double high = dMean + spread;
  if (lower) low = std::min(low, *lower);
  if (upper) high = std::max(high, *upper);
  if (target) {
    low = std::min(low, *target);
    high = std::max(high, *target);
  }
  DoubleArray bins = binsOf(y, low, high);

  DoubleArray counts(binCounts(bins.elements(), y));
  DoubleArray within = curveOf(bins, n, dMean, dSD1, worksheetFunction());
  DoubleArray overall = curveOf(bins, n, dMean, dSD2, worksheetFunction());
  DoubleArray lowerX = markerOf(lower, bins);
  DoubleArray upperX = markerOf(upper, bins);
  DoubleArray targetX = markerOf(target, bins);
  checked::leaving(bins, counts, within, overall, lowerX, upperX, targetX);
  PlotX = std::move(bins);
  PlotY = std::move(counts);
  PlotWithin = std::move(within);
  PlotOverall = std::move(overall);
  PlotLimitY = {0, 1};
  PlotLSLX = std::move(lowerX);
  PlotUSLX = std::move(upperX);
  PlotTargetX = std::move(targetX);
}

}  // namespace zelkova
