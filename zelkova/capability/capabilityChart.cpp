#include <algorithm>
#include <optional>
#include <vector>

#include "zelkova/capability/specificationAxis.h"
#include "zelkova/capability/yCapability.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/kit/binCounts.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/kit/normalCurve.h"

namespace zelkova {

namespace {

using namespace capability;

DoubleArray curveOf(const DoubleArray& bins, double n, double mean, double sd, WorksheetFunction& host) {
  if (sd == 0 || sd == NoValue) return DoubleArray(bins.rows(), NoValue);
  return nearTheData(normalCurve(host, bins, n, mean, sd));
}

double withoutValueAs0(double sd) { return sd == NoValue ? 0 : sd; }

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

  // Three sigmas to each side.
  const double spread = 3 * std::max(withoutValueAs0(dSD1), withoutValueAs0(dSD2));
  double low = dMean - spread;
  double high = dMean + spread;
  DoubleArray bins = binsOf(y, low, high, {upper, lower, target});

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
