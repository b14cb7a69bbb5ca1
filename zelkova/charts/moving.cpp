#include "zelkova/charts/moving.h"

#include <cmath>

#include "zelkova/frame/arithmetic.h"

namespace zelkova::control {

Index movingLength(double w, Index n) {
  const double length = roundHalfEven(checked::finite(w));
  if (length < 1) raise(FailureNumber::OutOfRange, "a moving length must be 1 or more");
  return length > static_cast<double>(n) ? n + 1 : static_cast<Index>(length);
}

std::vector<double> movingRanges(std::span<const double> y, Index w) {
  const auto length = static_cast<std::size_t>(w);
  if (length > y.size()) return {};
  std::vector<double> ranges(y.size() - length + 1);
  if (w == 2) {
    for (std::size_t i = 1; i < y.size(); ++i) ranges[i - 1] = std::fabs(y[i] - y[i - 1]);
    return ranges;
  }
  struct Extremes {
    double smallest, largest;
  };
  overWindows(
      y, w,
      [](double x) {
        return Extremes{x, x};
      },
      [](const Extremes& a, const Extremes& b) {
        return Extremes{std::min(a.smallest, b.smallest), std::max(a.largest, b.largest)};
      },
      [&](std::size_t i, const Extremes& window) {
        if (i + 1 >= length) ranges[i + 1 - length] = window.largest - window.smallest;
      });
  return ranges;
}

}  // namespace zelkova::control
