#include <algorithm>
#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/logistic/binaryFit.h"
#include "zelkova/logistic/logisticTables.h"
#include "zelkova/logistic/yLogistic.h"

namespace zelkova {

namespace {

std::vector<Index> eventsOf(const std::vector<double>& response) {
  std::vector<Index> events;
  events.reserve(response.size());
  for (const double y : response) {
    if (y != 0 && y != 1) raise(FailureNumber::InvalidCall, "Y must be 0 or 1");
    events.push_back(y == 1 ? 1 : 0);
  }
  if (std::all_of(events.begin(), events.end(), [&](Index event) { return event == events.front(); })) {
    raise(FailureNumber::InvalidCall, events.front() == 1 ? "Y has no non-event" : "Y has no event");
  }
  return events;
}

/// Pairs of an event and a non-event of different patterns.
double pairsAcross(const BinaryModel& model, const LevelCounts& counts) {
  double pairs = pairsOfLevels(counts);
  for (std::size_t g = 0; g < counts.patterns(); ++g) pairs -= model.events(g) * model.others(g);
  return pairs;
}

/// What the removal of each pattern changes; nothing can be said of a pattern that alone determines a
/// coefficient.
struct Influence {
  explicit Influence(const PatternFit& fit)
      : deltacs(fit.leverage.rows(), NoValue), deltadev(deltacs), deltabetas(deltacs), deltabeta(deltacs) {
    constexpr double alone = 1E-10;
    for (Index j = 1; j <= deltacs.rows(); ++j) {
      const double h = fit.leverage(j);
      if (1 - h < alone) continue;
      deltacs(j) = fit.pearson(j) / (1 - h);
      deltadev(j) = fit.deviance(j) + deltacs(j) * h;
      deltabeta(j) = deltacs(j) * h;
      deltabetas(j) = deltacs(j) * h / (1 - h);
    }
  }

  DoubleArray deltacs, deltadev, deltabetas, deltabeta;
};

}  // namespace

void yLogistic::Binary_regression(const VariantArray& Y, const VariantArray& x, const StringArray& /*X_nom*/,
                                  const std::string& link_f, DoubleArray& regtable, double& loglikelihood,
                                  DoubleArray& GOFtable, DoubleArray& Associationtable,
                                  DoubleArray& SumMeasure, DoubleArray& leverage, DoubleArray& probability,
                                  DoubleArray& deltacs, DoubleArray& deltadev, DoubleArray& deltabetas,
                                  DoubleArray& deltabeta) const {
  WorksheetFunction& host = worksheetFunction();
  const std::vector<Index> events = eventsOf(numbersOf(responseOf(Y), "Y"));
  const CovariatePatterns patterns(x, events.size());
  const LevelCounts counts(patterns, events, 2);
  const Link link(host, link_f);
  const BinaryModel model(patterns, counts, link);

  const Maximum maximum = maximise(model, model.start(), 1);
  CoefficientTable coefficients(host, patterns, maximum);
  coefficients.addConstant(0, 1);
  coefficients.addSlopes(1);
  if (link.isLogit()) coefficients.addOddsRatios();

  PatternFit fit(model, maximum);
  const TiedOrder order(fit.probability.vector());
  DoubleArray goodness = goodnessOfFit(host, model, fit, order);
  Association association(counts, order, pairsAcross(model, counts));
  Influence influence(fit);
  checked::leaving(influence.deltacs, influence.deltadev, influence.deltabetas, influence.deltabeta);

  regtable = coefficients.table();
  loglikelihood = maximum.logLikelihood;
  GOFtable = std::move(goodness);
  Associationtable = std::move(association.table);
  SumMeasure = std::move(association.measures);
  leverage = std::move(fit.leverage);
  probability = std::move(fit.probability);
  deltacs = std::move(influence.deltacs);
  deltadev = std::move(influence.deltadev);
  deltabetas = std::move(influence.deltabetas);
  deltabeta = std::move(influence.deltabeta);
}

}  // namespace zelkova
