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
    const double F = life.failure(points.time[i]);
    upTo(F, checked::log(F), checked::log(life.survival(points.time[i])));
    share = points.share[i];
  }
  upTo(1 - rest, std::log1p(-rest), std::log(rest));
  return checked::finite(sum * static_cast<double>(points.time.size()));
}

/// Frequencies by kind of row.
void countKinds(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA, bool turnbull,
                DoubleArray& Para) {
  double exact = 0;
  double right = 0;
  double left = 0;
  double interval = 0;
  for (Index i = 1; i <= SA.rows(); ++i) {
    switch (observationOf(SA(i), EA(i))) {
      case Observation::Exact:
        exact += FA(i);
        break;
      case Observation::Right:
        right += FA(i);
        break;
      case Observation::Left:
        left += FA(i);
        break;
      case Observation::Interval:
        interval += FA(i);
        break;
    }
  }
  if (!turnbull) {
    Para(LifeSummary::Failures) = exact + left + interval;
    Para(LifeSummary::RightCensored) = right;
    return;
  }
  Para(LifeSummary::TurnbullExact) = exact;
  Para(LifeSummary::TurnbullRightCensored) = right;
  Para(LifeSummary::TurnbullInterval) = interval;
  Para(LifeSummary::TurnbullLeftCensored) = left;
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
  countKinds(SA, EA, FA, pMtd == "Turnbull", summary);
  try {
    summary(LifeSummary::AD) = andersonDarling(life, points);
  } catch (const Failure&) {
    // A point where the fit has failed surely or surely not has no logarithm: there is no statistic.
  }
  checked::leaving(summary);
  Para = std::move(summary);
}

}  // namespace zelkova
