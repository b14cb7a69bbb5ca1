#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/SearchUnits.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/modzDist.h"
#include "zelkova/reliability/modzLBFGS.h"
#include "zelkova/reliability/modzRSAP.h"
#include "zelkova/reliability/modzRSGrad.h"
#include "zelkova/reliability/plotPositions.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

/// The points of a probability plot: the regressand (time or its logarithm), its score, and what the plot
/// shows.
struct Points {
  DoubleArray x;
  DoubleArray score;
  DoubleArray time;
  DoubleArray plotted;
};

Points pointsOf(WorksheetFunction& host, LifeDistribution dist, const PlotPositions& positions) {
  std::vector<double> x;
  std::vector<double> score;
  std::vector<double> plotted;
  for (std::size_t k = 0; k < positions.time.size(); ++k) {
    const double p = positions.share[k];
    plotted.push_back(plotScore(host, dist, p));
    score.push_back(dist == LifeDistribution::Exponential ? std::log1p(-p) : plotted.back());
    // The exponential line goes through the origin of time itself.
    const bool logarithmic = worksOnLogarithms(dist) && dist != LifeDistribution::Exponential;
    x.push_back(logarithmic ? logTime(positions.time[k]) : positions.time[k]);
  }
  return {DoubleArray(std::move(x)), DoubleArray(std::move(score)), DoubleArray(positions.time),
          DoubleArray(std::move(plotted))};
}

bool degenerate(const DoubleArray& x) {
  const auto values = x.elements();
  return values.size() < 2 ||
         std::all_of(values.begin(), values.end(), [&](double v) { return v == values[0]; });
}

/// The parameters that the least squares line of x on score gives.
DoubleArray lineParameters(WorksheetFunction& host, LifeDistribution dist, const Points& points,
                           double holdslope) {
  if (dist == LifeDistribution::Exponential) return {-host.LinEst(points.x, points.score, false, true)(1, 1)};
  const bool shape = dist == LifeDistribution::Weibull;
  double slope = 0;
  double intercept = 0;
  if (holdslope == NoValue) {
    slope = host.Slope(points.x, points.score);
    intercept = host.Intercept(points.x, points.score);
  } else {
    slope = shape ? checked::quotient(1, holdslope) : holdslope;
    intercept = checked::finite(host.Average(points.x) - slope * host.Average(points.score));
  }
  if (shape) return {checked::exp(intercept), checked::quotient(1, slope)};
  return {intercept, slope};
}

/// The place of the spread parameter of a model, which a search may turn negative; 0 for none.
Index spreadOf(const std::string& model) {
  const auto dist = lifeDistribution(std::string_view(model).substr(0, model.find('|')));
  if (!dist) return 0;
  if (model.find('|') != std::string::npos) return 1;
  return hasOneParameter(*dist) ? 0 : 2;
}

/// Brings the parameters of a fit into their standard form.
void turnSigns(const std::string& model, DoubleArray& P) {
  const Index spread = spreadOf(model);
  if (spread != 0) P(spread) = std::abs(P(spread));
  if (model == "Weibull") P(1) = std::abs(P(1));
}

}  // namespace

void yReliability::Para_LS(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA, const std::string& pMtd,
                           const std::string& dist, DoubleArray& P, double& corr, DoubleArray& PlotX,
                           DoubleArray& PlotY, double holdslope) const {
  const auto distribution = lifeDistribution(dist);
  if (!distribution) return;
  WorksheetFunction& host = worksheetFunction();
  Points points = pointsOf(host, *distribution, placeFailures(SA, EA, FA, pMtd));

  DoubleArray parameters(hasOneParameter(*distribution) ? 1 : 2, NoValue);
  double correlation = NoValue;
  if (!degenerate(points.x)) {
    parameters = lineParameters(host, *distribution, points, holdslope);
    if (!hasOneParameter(*distribution)) correlation = host.Correl(points.x, points.score);
  }
  P = std::move(parameters);
  corr = correlation;
  PlotX = std::move(points.time);
  PlotY = std::move(points.plotted);
}

void yReliability::Para_ML(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                           const std::string& dist, DoubleArray& P, DoubleArray& MLO, DoubleArray& FM,
                           const DoubleArray& hold) const {
  constexpr double valueTolerance = 1.5000000000000001E-15;
  constexpr int mostIterations = 100;
  const double tolerance = std::sqrt(roundingUnit);
  const int n = static_cast<int>(P.rows());
  const auto objective = negLogLik(SA, EA, FA, dist, hold);

  const SearchUnits units(dist, P, FA, hold);
  InSearchUnits inUnits(*objective, units);
  DoubleArray searched = units.to(P);
  int info = 0;
  int iterations = 0;
  LBFGSMinimize(n, n, searched, tolerance, valueTolerance, tolerance, mostIterations, info, iterations,
                inUnits);
  DoubleArray estimate = units.from(searched);
  turnSigns(dist, estimate);
  searched = units.to(estimate);
  DoubleArray information;
  RSHessian(searched, information, inUnits);
  information = units.secondDerivatives(information);
  DoubleArray fit(LifeFit::size);
  fit(LifeFit::LogLikelihood) = -(*objective)(estimate);
  fit(LifeFit::Iterations) = iterations;
  // The objective does not move with a held parameter; its row of 0 would have no inverse.
  for (Index i = 1; i <= estimate.rows(); ++i) {
    if (information(i, i) == 0) information(i, i) = 1E-8;
  }
  P = std::move(estimate);
  MLO = std::move(fit);
  FM = std::move(information);
}

}  // namespace zelkova
