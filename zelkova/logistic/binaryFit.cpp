#include "zelkova/logistic/binaryFit.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/doubleDouble.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace {

/// The logarithm of a product of probabilities, by far fewer logarithms than factors.
class LogProduct {
 public:
  void times(const Probability& factor, double count) {
    if (count != 1 || factor.p < smallest) {
      sum_ += count * logOf(factor);
      return;
    }
    product_ *= factor.p;
    if (product_ >= smallest) return;
    sum_ += std::log(product_);
    product_ = 1;
  }

  double logarithm() const { return sum_ + std::log(product_); }

 private:
  /// The product of two such factors is far from a double's lower end.
  static constexpr double smallest = 1E-140;

  double sum_ = 0;
  double product_ = 1;
};

/// x'Vx of each pattern of a block, by the lower triangle of V: the diagonal once, the rest twice.
Lane quadraticForms(const CovariatePatterns& patterns, const Block& block, const DoubleArray& v) {
  Lane forms{};
  for (std::size_t i = 0; i <= patterns.predictors(); ++i) {
    Lane row{};
    for (std::size_t j = 0; j <= i; ++j) {
      const double element = v(static_cast<Index>(i + 1), static_cast<Index>(j + 1));
      const double share = i == j ? element : 2 * element;
      const std::span<const double> x = patterns.column(j, block);
      for (std::size_t k = 0; k < block.count; ++k) row[k] += share * x[k];
    }
    const std::span<const double> x = patterns.column(i, block);
    for (std::size_t k = 0; k < block.count; ++k) forms[k] += row[k] * x[k];
  }
  return forms;
}

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
  std::vector<double> b = Information(sums.information).solve(std::move(sums.score));
  constexpr double reach = 5;
  double farthest = reach;
  for (const double eta : linearPredictors(b)) farthest = std::max(farthest, std::abs(eta));
  for (double& coefficient : b) coefficient *= reach / farthest;
  return b;
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
    LogProduct ofBlock;
    linearPredictors(b, block, std::span(eta).first(block.count));
    for (std::size_t i = 0; i < block.count; ++i) {
      const double y = events_[block.first + i];
      const double rest = others_[block.first + i];
      const Probability fitted = link_.LinkCDF(eta[i]);
      const double density = link_.density(eta[i], fitted);
      const double heldOff = Link::offZero(density);
      weights[i] = (y + rest) * heldOff * heldOff / fitted.guardedVariance();
      // The gradient is exact: with guards a fit would stop beside the maximum where an observation is all
      // but impossible.
      residuals[i] = 0;
      if (y > 0) {
        residuals[i] += y * (density / fitted.p);
        ofBlock.times(fitted, y);
      }
      if (rest > 0) {
        residuals[i] -= rest * (density / fitted.complement);
        ofBlock.times(fitted.opposite(), rest);
      }
    }
    logLikelihood = logLikelihood + DoubleDouble{ofBlock.logarithm()};
    addProducts(patterns_, block, weights, 0, 0, 0, result.information);
    for (std::size_t j = 0; j < b.size(); ++j) {
      result.score[j] += laneProduct(patterns_.column(j, block), residuals);
    }
  });
  result.logLikelihood = logLikelihood.rounded();
  return result;
}

PatternFit::PatternFit(const BinaryModel& model, const Maximum& maximum) {
  const CovariatePatterns& patterns = model.patterns();
  const std::vector<double> eta = model.linearPredictors(maximum.coefficients);
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

  patterns.forBlocks([&](const Block& block) {
    const Lane forms = quadraticForms(patterns, block, maximum.covariance);
    for (std::size_t k = 0; k < block.count; ++k) {
      h[block.first + k] = std::clamp(h[block.first + k] * forms[k], 0.0, 1.0);
    }
  });
}

}  // namespace zelkova
