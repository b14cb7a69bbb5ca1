#include "zelkova/anom/decisionLimits.h"

#include <algorithm>
#include <cmath>

#include "zelkova/anom/yANOM.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova::anom {

void checkComparison(double alpha, Index levels) {
  if (!(alpha > 0 && alpha < 1)) raise(FailureNumber::InvalidCall, "alpha must be between 0 and 1");
  if (levels < 2) raise(FailureNumber::InvalidCall, "there must be two levels or more to compare");
}

double deviationError(double n, double N) {
  return checked::root(checked::quotient(checked::quotient(N - n, N), n));
}

void putRow(DoubleArray& table, Index row, const Decision& decision) {
  const auto [n, point, centre, deviation, reach] = decision;
  table(row, ANOMLevels::N) = n;
  table(row, ANOMLevels::Point) = point;
  table(row, ANOMLevels::Centre) = centre;
  table(row, ANOMLevels::Lower) = reach == NoValue ? NoValue : centre - reach;
  table(row, ANOMLevels::Upper) = reach == NoValue ? NoValue : centre + reach;
  // Judged by the deviation itself: far from 0 the limits have lost digits that it still has.
  const bool signals = reach != NoValue && std::fabs(deviation) > reach;
  table(row, ANOMLevels::Signal) = !signals ? 0 : deviation > 0 ? 1 : -1;
}

double signalsOf(const DoubleArray& table) {
  const auto column = table.column(ANOMLevels::Signal);
  return static_cast<double>(
      std::count_if(column.begin(), column.end(), [](double signal) { return signal != 0; }));
}

}  // namespace zelkova::anom
