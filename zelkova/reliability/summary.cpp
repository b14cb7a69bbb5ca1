#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/plotPositions.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

/// The integral of (p - F)^2 / (F (1 - F)) over F while the plotted share p stands still.
double stepDistance(double p, double lnBelow, double lnAbove, double lnRestBelow, double lnRestAbove,
                    double width) {
  // (p - F)^2 / (F (1 - F)) = p^2 / F + (1 - p)^2 / (1 - F) - 1; the first vanishes with p, where ln F has no
  // start.
  const double left = p == 0 ? 0 : p * p * (lnAbove - lnBelow);
  return left - (1 - p) * (1 - p) * (lnRestAbove - lnRestBelow) - width;
}

/// The adjusted Anderson-Darling statistic of the plotted points against the fit.
double andersonDarling(const Life& life, const PlotPositions& points) {
  if (points.time.empty()) return NoValue;
  constexpr double rest = 1E-12;
  double share = 0;
  double below = 0;
  double lnBelow = 0;
  double lnRestBelow = 0;
  double sum = 0;
  const auto upTo = [&](double F, double lnF, double lnRest) {
    sum += stepDistance(share, lnBelow, lnF, lnRestBelow, lnRest, F - below);
    below = F;
    lnBelow = lnF;
    lnRestBelow = lnRest;
  };
  for (std::size_t i = 0; i < points.time.size(); ++i) {
    const double F = std::min(life.failure(points.time[i]), 1 - rest);
    upTo(F, checked::log(F), checked::log(std::max(life.survival(points.time[i]), rest)));
    share = points.share[i];
  }
  upTo(1 - rest, std::log1p(-rest), std::log(rest));
  return checked::finite(sum * static_cast<double>(points.time.size()));
}

}  // namespace

void yReliability::CalPara(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA, const std::string& pMtd,
                           const std::string& dist, double Para1, double Para2, DoubleArray& Para) const {
  const auto distribution = lifeDistribution(dist);
  if (!distribution) return;
  const PlotPositions points = placeFailures(SA, EA, FA, pMtd);
  const Life life(worksheetFunction(), *distribution, Para1, Para2);

  DoubleArray summary(LifeSummary::size, NoValue);
  summary(LifeSummary::Para1) = Para1;
  summary(LifeSummary::Para2) = Para2;
  summary(LifeSummary::Mean) = life.mean();
  summary(LifeSummary::SD) = life.standardDeviation();
  summary(LifeSummary::Median) = life.quantile(50.0 / 100);
  summary(LifeSummary::IQR) = life.quantile(75.0 / 100) - life.quantile(25.0 / 100);
  const KindTotals totals = frequenciesByKind(SA, EA, FA);
  if (pMtd == "Turnbull") {
    summary(LifeSummary::TurnbullExact) = totals.exact;
    summary(LifeSummary::TurnbullRightCensored) = totals.right;
    summary(LifeSummary::TurnbullInterval) = totals.interval;
    summary(LifeSummary::TurnbullLeftCensored) = totals.left;
  } else {
    summary(LifeSummary::Failures) = totals.exact + totals.left + totals.interval;
    summary(LifeSummary::RightCensored) = totals.right;
  }
  try {
    summary(LifeSummary::AD) = andersonDarling(life, points);
  } catch (const Failure&) {
    // A point where the fit has failed surely or surely not has no logarithm: there is no statistic.
  }
  checked::leaving(summary);
  Para = std::move(summary);
}

}  // namespace zelkova
