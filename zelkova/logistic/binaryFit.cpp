#include "zelkova/logistic/binaryFit.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/doubleDouble.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace {

using Lane = std::array<double, Block::longest>;

}  // namespace

BinaryModel::BinaryModel(const CovariatePatterns& patterns, const LevelCounts& counts, const Link& link)
    : patterns_(patterns), link_(link), events_(patterns.count()), others_(patterns.count()) {
  for (std::size_t g = 0; g < patterns.count(); ++g) {
    for (const LevelCounts::Cell& cell : counts.of(g)) {
      (cell.level == 1 ? events_ : others_)[g] = cell.count;
    }
  }
}

std::vector<double> BinaryModel::start() const {
  struct Working {
    double weight, weightedResponse;
  };
  const auto working = [this](double y) {
    const double eta = link_.LinkInverse((y + 0.5) / 2);
    const Probability fitted = link_.LinkCDF(eta);
    const double density = link_.LinkPDF(eta, fitted);
    const double weight = density * density / fitted.guardedVariance();
    return Working{weight, weight * (eta + (y - fitted.p) / density)};
  };
  const Working event = working(1);
  const Working other = working(0);

  const std::size_t columns = patterns_.predictors() + 1;
  Evaluation sums(columns);
  patterns_.forBlocks([&](const Block& block) {
    Lane weights;
    Lane responses;
    for (std::size_t i = 0; i < block.count; ++i) {
      const double y = events_[block.first + i];
      const double rest = others_[block.first + i];
      weights[i] = y * event.weight + rest * other.weight;
      responses[i] = y * event.weightedResponse + rest * other.weightedResponse;
    }
    addProducts(patterns_, block, weights, 0, 0, 0, sums.information);
    for (std::size_t j = 0; j < columns; ++j) {
      sums.score[j] += laneProduct(patterns_.column(j, block), responses);
    }
  });
  return Information(sums.information).solve(std::move(sums.score));
}

void BinaryModel::linearPredictors(const std::vector<double>& b, const Block& block,
                                   std::span<double> eta) const {
  std::fill(eta.begin(), eta.end(), b[0]);
  for (std::size_t j = 1; j < b.size(); ++j) {
    const std::span<const double> x = patterns_.column(j, block);
    for (std::size_t i = 0; i < block.count; ++i) eta[i] += b[j] * x[i];
  }
}

std::vector<double> BinaryModel::linearPredictors(const std::vector<double>& b) const {
  std::vector<double> eta(patterns_.count());
  patterns_.forBlocks([&](const Block& block) {
    linearPredictors(b, block, std::span(eta).subspan(block.first, block.count));
  });
  return eta;
}

Evaluation BinaryModel::evaluate(const std::vector<double>& b) const {
  Evaluation result(b.size());
  DoubleDouble logLikelihood;
  patterns_.forBlocks([&](const Block& block) {
    Lane eta;
    Lane weights;
    Lane residuals;
    double ofBlock = 0;
    linearPredictors(b, block, std::span(eta).first(block.count));
    for (std::size_t i = 0; i < block.count; ++i) {
      const double y = events_[block.first + i];
      const double rest = others_[block.first + i];
      const Probability fitted = link_.LinkCDF(eta[i]);
      const double density = link_.LinkPDF(eta[i], fitted);
      const double factor = density / fitted.guardedVariance();
      weights[i] = (y + rest) * density * factor;
      residuals[i] = (y * fitted.complement - rest * fitted.p) * factor;
      if (y > 0) ofBlock += y * logOf(fitted);
      if (rest > 0) ofBlock += rest * logOf(fitted.opposite());
    }
    logLikelihood = logLikelihood + DoubleDouble{ofBlock};
    addProducts(patterns_, block, weights, 0, 0, 0, result.information);
    for (std::size_t j = 0; j < b.size(); ++j) {
      result.score[j] += laneProduct(patterns_.column(j, block), residuals);
    }
  });
  result.logLikelihood = logLikelihood.rounded();
  return result;
}

PatternFit::PatternFit(const BinaryModel& model, const Maximum& maximum)
    : eta(model.linearPredictors(maximum.coefficients)) {
  const CovariatePatterns& patterns = model.patterns();
  const auto count = static_cast<Index>(patterns.count());
  probability = DoubleArray(count);
  pearson = DoubleArray(count);
  deviance = DoubleArray(count);
  leverage = DoubleArray(count);
  fitted.reserve(patterns.count());
  const std::span<double> h = leverage.vector();
  for (std::size_t g = 0; g < patterns.count(); ++g) {
    const Probability p = model.link().LinkCDF(eta[g]);
    const double density = model.link().LinkPDF(eta[g], p);
    const double m = model.rows(g);
    const Index place = static_cast<Index>(g) + 1;
    fitted.push_back(p);
    probability(place) = p.p;
    pearson(place) = pearsonTerm(model.events(g), m * p.p) + pearsonTerm(model.others(g), m * p.complement);
    deviance(place) = std::max(
        0.0, 2 * (devianceTerm(model.events(g), m * p.p) + devianceTerm(model.others(g), m * p.complement)));
    h[g] = m * density * density / p.guardedVariance();
  }

  const std::size_t columns = patterns.predictors() + 1;
  patterns.forBlocks([&](const Block& block) {
    Lane forms{};
    for (std::size_t i = 0; i < columns; ++i) {
      // x'Vx by its lower triangle: the diagonal once, the rest twice.
      Lane row{};
      for (std::size_t j = 0; j <= i; ++j) {
        const double v = maximum.covariance(static_cast<Index>(i + 1), static_cast<Index>(j + 1));
        const double share = i == j ? v : 2 * v;
        const std::span<const double> x = patterns.column(j, block);
        for (std::size_t k = 0; k < block.count; ++k) row[k] += share * x[k];
      }
      const std::span<const double> x = patterns.column(i, block);
      for (std::size_t k = 0; k < block.count; ++k) forms[k] += row[k] * x[k];
    }
    for (std::size_t k = 0; k < block.count; ++k) {
      h[block.first + k] = std::clamp(h[block.first + k] * forms[k], 0.0, 1.0);
    }
  });
}

}  // namespace zelkova
