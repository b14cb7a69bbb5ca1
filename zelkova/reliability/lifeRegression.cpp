#include <algorithm>

#include "zelkova/frame/NoValue.h"
#include "zelkova/kit/modzMatrix.h"
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

/// Failure 5 for an element that a row, a share or a time cannot be, by the name of the argument.
void requireWhatIsAsked(const DoubleArray& Percent, const DoubleArray& predictX, const DoubleArray& times) {
  const auto hasNoValue = [](const DoubleArray& asked) {
    const auto elements = asked.elements();
    return std::find(elements.begin(), elements.end(), NoValue) != elements.end();
  };
  for (const double share : Percent.elements()) {
    if (!(share > 0 && share < 100)) {
      raise(FailureNumber::InvalidCall, "Percent must be above 0 and below 100");
    }
  }
  if (hasNoValue(predictX)) raise(FailureNumber::InvalidCall, "predictX has an element without a value");
  if (hasNoValue(times)) raise(FailureNumber::InvalidCall, "times has an element without a value");
}

/// The probability plot of residuals, and why it has no line where it has none.
struct ResidualPlot {
  DoubleArray X;
  DoubleArray Y;
  DoubleArray line;
  std::string missing;
};

/// Leaves the points without an abscissa out.
void leaveOutPointsWithoutPlace(ResidualPlot& plot) {
  for (Index i = 1; plot.X.filled() && i <= plot.X.rows(); ++i) {
    if (plot.X(i) == NoValue) plot.Y(i) = NoValue;
  }
}

/// Residuals fitted as life data of their own, without a word to the user.
ResidualPlot residualPlot(const yReliability& engine, Sample sample, const std::string& dist,
                          const std::string& pMtd, const std::string& estimate, double CLevel) {
  const auto starts = sample.SA.elements();
  const bool lacksStart = std::find(starts.begin(), starts.end(), NoValue) != starts.end();
  ResidualPlot plot;
  if (lacksStart && pMtd != "Turnbull") plot.missing = "only Turnbull places rows without a start";
  try {
    DoubleArray parameters, V;
    double corr = 0;
    engine.Para_LS(sample.SA, sample.EA, sample.FA, pMtd, dist, parameters, corr, plot.X, plot.Y, NoValue);
    leaveOutPointsWithoutPlace(plot);
    if (!plot.missing.empty()) return plot;
    const bool leastSquares = estimate == "Least squares";
    if (leastSquares && parameters(1) == NoValue) {
      plot.missing = "least squares finds no line";
      return plot;
    }
    const DoubleArray held = heldOf(2, {});
    const DoubleArray start = parameters;
    const bool found = searchFrom(start, held, [&](const DoubleArray& from) {
      DoubleArray MLO, FM;
      parameters = from;
      engine.Para_ML(sample.SA, sample.EA, sample.FA, dist, parameters, MLO, FM, held);
      V = MatInverse(FM);
    });
    if (found) {
      if (leastSquares) parameters = start;
      const Index last = parameters.rows();
      engine.ProbPlot(CLevel, parameters(1), parameters(last), dist, V(1, 1), last > 1 ? V(2, 2) : 0,
                      last > 1 ? V(1, 2) : 0, plot.line);
      return plot;
    }
  } catch (const Failure&) {
    // The regression stands without the line.
  }
  if (plot.missing.empty()) plot.missing = "the search finds no maximum";
  return plot;
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
  if (!(CLevel > 0 && CLevel < 1)) raise(FailureNumber::InvalidCall, "CLevel must be above 0 and below 1");
  requireWhatIsAsked(Percent, predictX, times);
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
  ResidualPlot ofStandard = residualPlot(*this, {standard.start, standard.end, weights},
                                         model.residualDistribution(), pMtd, estimate, CLevel);
  ResidualPlot ofCoxSnell =
      residualPlot(*this, {coxSnell.start, coxSnell.end, weights}, "Exponential", pMtd, estimate, CLevel);
  const std::string& missing = ofStandard.missing.empty() ? ofCoxSnell.missing : ofStandard.missing;
  if (!missing.empty()) {
    xlApp->messageBox("The residuals cannot be fitted on their own: " + missing);
  }

  regtable = std::move(parameters);
  modelf = {fit->logLikelihood, units, static_cast<double>(fit->iterations)};
  SResitable = standard.table(SA, EA, locations);
  CSResitable = coxSnell.table(SA, EA, locations);
  ptiletable = std::move(percentiles);
  timestable = std::move(survivals);
  PlotX_RS = std::move(ofStandard.X);
  PlotY_RS = std::move(ofStandard.Y);
  PlotHVLU_RS = std::move(ofStandard.line);
  PlotX_RCS = std::move(ofCoxSnell.X);
  PlotY_RCS = std::move(ofCoxSnell.Y);
  PlotHVLU_RCS = std::move(ofCoxSnell.line);
}

}  // namespace zelkova
