#include "zelkova/capability/specificationAxis.h"

#include <vector>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzSupport.h"

namespace zelkova::capability {

DoubleArray binsOf(std::span<const double> y, double low, double high, const Specifications& given) {
  if (given.lower) low = std::min(low, *given.lower);
  if (given.upper) high = std::max(high, *given.upper);
  if (given.target) {
    low = std::min(low, *given.target);
    high = std::max(high, *given.target);
  }
  std::vector<double> covered(y.begin(), y.end());
  covered.push_back(low);
  covered.push_back(high);
  return GetHistogramBins(DoubleArray(std::move(covered)));
}

DoubleArray markerOf(const std::optional<double>& specification, const DoubleArray& bins) {
  if (!specification || bins.rows() == 1) return {NoValue, NoValue};
  const double category = checked::quotient(*specification - bins(1), bins(2) - bins(1)) + 0.5;
  const double x = category / static_cast<double>(bins.rows());
  return {x, x};
}

DoubleArray nearTheData(DoubleArray curve) {
  for (double& height : curve.elements()) {
    if (roundHalfEven(height, 5) == 0) height = NoValue;
  }
  return curve;
}

}  // namespace zelkova::capability
