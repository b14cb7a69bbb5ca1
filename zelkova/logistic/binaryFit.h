#pragma once

#include <cstddef>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"
#include "zelkova/logistic/CovariatePatterns.h"
#include "zelkova/logistic/links.h"
#include "zelkova/logistic/logisticTables.h"
#include "zelkova/logistic/newton.h"

namespace zelkova {

/// The likelihood of events and non-events.
class BinaryModel {
 public:
  /// Level 1 of `counts` is the event.
  BinaryModel(const CovariatePatterns& patterns, const LevelCounts& counts, const Link& link);

  /// The first step of reweighted least squares, from fitted probabilities of (y + 0.5)/2; shortened where a
  /// linear predictor would come to lie so far out that its observation has no likelihood.
  std::vector<double> start() const;

  Evaluation evaluate(const std::vector<double>& b) const;

  /// The linear predictor of every pattern.
  std::vector<double> linearPredictors(const std::vector<double>& b) const;

  const CovariatePatterns& patterns() const { return patterns_; }
  const Link& link() const { return link_; }

  /// Rows of a pattern, and its events and non-events.
  double rows(std::size_t pattern) const { return events_[pattern] + others_[pattern]; }
  double events(std::size_t pattern) const { return events_[pattern]; }
  double others(std::size_t pattern) const { return others_[pattern]; }

 private:
  void linearPredictors(const std::vector<double>& b, const Block& block, std::span<double> eta) const;

  const CovariatePatterns& patterns_;
  const Link& link_;
  std::vector<double> events_;
  std::vector<double> others_;
};

/// What is computed for each pattern of a fit.
struct PatternFit {
  PatternFit(const BinaryModel& model, const Maximum& maximum);

  std::vector<Probability> fitted;
  DoubleArray probability;

  DoubleArray pearson;   ///< squared residual of Pearson
  DoubleArray deviance;  ///< squared deviance residual
  DoubleArray leverage;
};

/// `GOFtable`; `order` is that of the fitted probabilities.
DoubleArray goodnessOfFit(WorksheetFunction& host, const BinaryModel& model, const PatternFit& fit,
                          const TiedOrder& order);

}  // namespace zelkova
