#pragma once

#include <string_view>

#include "zelkova/charts/Subgroups.h"
#include "zelkova/frame/numberText.h"

/// Estimates of sigma by their option texts, ignoring case or (`exact...`) not. Deliberate: a name that is
/// none makes sigma 0, so that a chart shows its centre line and nothing else.
namespace zelkova::control {

inline double movingRangeSigma(std::string_view name, std::span<const double> y, std::string_view mrLength) {
  if (sameIgnoringCase(name, "Average Moving Range")) return sigmaAvgMR(y, toNumber(mrLength, "MRLength"));
  if (sameIgnoringCase(name, "Median Moving Range")) return sigmaMedianMR(y, toNumber(mrLength, "MRLength"));
  return 0;
}

inline double withinSigma(std::string_view name, const Subgroups& subgroups) {
  if (sameIgnoringCase(name, "Pooled Std Dev")) return sigmaPooled(subgroups);
  if (sameIgnoringCase(name, "Sbar")) return sigmaSbar(subgroups);
  if (sameIgnoringCase(name, "Rbar")) return sigmaRbar(subgroups);
  return 0;
}

inline double exactMovingRangeSigma(std::string_view name, std::span<const double> y,
                                    std::string_view mrLength) {
  const bool known = name == "Average Moving Range" || name == "Median Moving Range";
  return known ? movingRangeSigma(name, y, mrLength) : 0;
}

inline double exactWithinSigma(std::string_view name, const Subgroups& subgroups) {
  const bool known = name == "Pooled Std Dev" || name == "Sbar" || name == "Rbar";
  return known ? withinSigma(name, subgroups) : 0;
}

}  // namespace zelkova::control
