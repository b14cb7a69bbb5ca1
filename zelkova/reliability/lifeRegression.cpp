#include "zelkova/frame/NoValue.h"
#include "zelkova/kit/sums.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/lifeRegressionFit.h"
#include "zelkova/reliability/locationModel.h"
#include "zelkova/reliability/retry.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

/// The life at each row of covariates that is asked for.
std::vector<PredictedLife> livesAt(const DoubleArray& predictX, const LocationModel& model,
                                   const LifeRegressionFit& fit) {
  std::vector<PredictedLife> lives;
  if (!predictX.filled()) return lives;
  for (Index i = 1; i <= predictX.rows(); ++i) {
    lives.push_back({static_cast<double>(i), model.lifeAt(fit.location(predictX, i, 1), fit.P(1),
                                                          fit.locationVariance(predictX, i, 1), fit.V(1, 1),
                                                          fit.spreadCovariance(predictX, i, 1))});
  }
  return lives;
}

}  // namespace

void yReliability::LDROutput(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                             double CLevel, const std::string& dist, const std::string& pMtd,
                             const std::string& estimate, const DoubleArray& Percent,
                             const DoubleArray& predictX, const DoubleArray& times, const DoubleArray& hold,
                             DoubleArray& regtable, DoubleArray& modelf, DoubleArray& SResitable,
                             DoubleArray& CSResitable, DoubleArray& ptiletable, DoubleArray& timestable,
                             DoubleArray& PlotX_RS, DoubleArray& PlotY_RS, DoubleArray& PlotHVLU_RS,
                             DoubleArray& PlotX_RCS, DoubleArray& PlotY_RCS,
                             DoubleArray& PlotHVLU_RCS) const {
  const auto distribution = lifeDistribution(dist);
  if (!distribution) return;
  WorksheetFunction& host = worksheetFunction();
  const double z = host.NormSInv((1 + CLevel) / 2);
  if (predictX.filled() && predictX.columns() != FA.columns() - 1) {
    raise(FailureNumber::OutOfRange, "the rows asked for have another number of covariates than the data");
  }
  DoubleArray held = heldOf(FA.columns(), hold);
  if (*distribution == LifeDistribution::Exponential) held(1) = 1;
  if (held(1) != NoValue && !(held(1) > 0)) {
    raise(FailureNumber::InvalidCall, "the spread is held at a value that is not positive");
  }
  const auto fit = fitLifeRegression(SA, EA, FA, dist, held);
  if (!fit) {
    xlApp->messageBox("Cannot Find solution");
    return;
  }

  const LocationModel model(host, *distribution);
  std::vector<double> locations, frequencies;
  for (Index i = 1; i <= SA.rows(); ++i) {
    locations.push_back(fit->location(FA, i, 2));
    frequencies.push_back(FA(i, 1));
  }
  const auto standardised = [&](Index i, double t) {
    return model.standardised(t, locations[static_cast<std::size_t>(i - 1)], fit->P(1));
  };
  const Residuals standard = residualsOf(SA, EA, standardised);
  const Residuals coxSnell =
      residualsOf(SA, EA, [&](Index i, double t) { return model.coxSnell(standardised(i, t)); });
  const std::vector<PredictedLife> lives = livesAt(predictX, model, *fit);
  DoubleArray parameters = coefficientTable(host, fit->P, fit->V, held, z);
  DoubleArray percentiles = percentilesOf(lives, Percent, z);
  DoubleArray survivals = survivalsOf(lives, times, z);
  const double units = laneSum(frequencies, [](double f) { return f; });
  const DoubleArray weights(std::move(frequencies));
  SingleFit ofStandard = fitAlone(*this, {standard.start, standard.end, weights},
                                  model.residualDistribution(), pMtd, estimate, CLevel);
  SingleFit ofCoxSnell =
      fitAlone(*this, {coxSnell.start, coxSnell.end, weights}, "Exponential", pMtd, estimate, CLevel);

  regtable = std::move(parameters);
  modelf = {fit->logLikelihood, units, static_cast<double>(fit->iterations)};
  SResitable = standard.table(SA, EA, locations);
  CSResitable = coxSnell.table(SA, EA, locations);
  ptiletable = std::move(percentiles);
  timestable = std::move(survivals);
  PlotX_RS = std::move(ofStandard.PlotX);
  PlotY_RS = std::move(ofStandard.PlotY);
  PlotHVLU_RS = std::move(ofStandard.PlotHVLU);
  PlotX_RCS = std::move(ofCoxSnell.PlotX);
  PlotY_RCS = std::move(ofCoxSnell.PlotY);
  PlotHVLU_RCS = std::move(ofCoxSnell.PlotHVLU);
}

}  // namespace zelkova
