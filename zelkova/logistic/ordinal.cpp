#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/doubleDouble.h"
#include "zelkova/kit/sums.h"
#include "zelkova/logistic/CovariatePatterns.h"
#include "zelkova/logistic/links.h"
#include "zelkova/logistic/logisticTables.h"
#include "zelkova/logistic/newton.h"
#include "zelkova/logistic/yLogistic.h"

namespace zelkova {

namespace {

/// The level of each observation, counted from 0 at `lowest`.
std::vector<Index> levelsFrom(const std::vector<double>& response, double lowest, double levelCount) {
  const auto raiseGap = [] {
    raise(FailureNumber::InvalidCall, "Y has a level without an observation between its lowest and highest");
  };
  if (levelCount > static_cast<double>(response.size())) raiseGap();
  std::vector<Index> levels;
  levels.reserve(response.size());
  std::vector<bool> isMet(static_cast<std::size_t>(levelCount));
  for (const double y : response) {
    levels.push_back(static_cast<Index>(y - lowest));
    isMet[static_cast<std::size_t>(levels.back())] = true;
  }
  if (std::find(isMet.begin(), isMet.end(), false) != isMet.end()) raiseGap();
  return levels;
}

/// The likelihood of ordered levels. Coefficients: the cut points, then the slopes.
class OrdinalModel {
 public:
  OrdinalModel(const CovariatePatterns& patterns, const LevelCounts& counts, const Link& link)
      : patterns_(patterns), counts_(counts), link_(link), cuts_(counts.levels() - 1) {}

  std::size_t coefficients() const { return cuts_ + patterns_.predictors(); }
  std::size_t cuts() const { return cuts_; }

  /// The cut points of the levels' shares, slopes 0.
  std::vector<double> start() const {
    std::vector<double> b(coefficients());
    double rows = 0;
    for (std::size_t j = 0; j < cuts_; ++j) {
      rows += counts_.rowsOfLevels()[j];
      b[j] = link_.LinkInverse(rows / counts_.rows());
    }
    return b;
  }

  Evaluation evaluate(const std::vector<double>& b) const;

  /// The probabilities of the levels in a pattern, and what they are the differences of.
  struct LevelFit {
    explicit LevelFit(std::size_t levels) : density(levels + 1), probability(levels) {}

    std::vector<double> density;  ///< at the lower end of each level, and at the upper one of the last
    std::vector<double> probability;
  };
  void fit(const std::vector<double>& b, double slopes, LevelFit& result) const;

  /// x'b of every pattern.
  std::vector<double> slopeTerms(const std::vector<double>& b) const;

 private:
  const CovariatePatterns& patterns_;
  const LevelCounts& counts_;
  const Link& link_;
  std::size_t cuts_;
};

std::vector<double> OrdinalModel::slopeTerms(const std::vector<double>& b) const {
  std::vector<double> terms(patterns_.count());
  for (std::size_t j = 1; j <= patterns_.predictors(); ++j) {
    const std::span<const double> x = patterns_.column(j);
    for (std::size_t g = 0; g < terms.size(); ++g) terms[g] += b[cuts_ + j - 1] * x[g];
  }
  return terms;
}

void OrdinalModel::fit(const std::vector<double>& b, double slopes, LevelFit& result) const {
  Probability below{0, 1};
  for (std::size_t level = 0; level < cuts_; ++level) {
    const double eta = b[level] + slopes;
    const Probability upTo = link_.LinkCDF(eta);
    // Of the two differences, the one of the smaller numbers keeps its digits.
    result.probability[level] = below.p > 0.5 ? below.complement - upTo.complement : upTo.p - below.p;
    result.density[level + 1] = link_.density(eta, upTo);
    below = upTo;
  }
  result.probability[cuts_] = below.complement;
}

/// What the patterns add to the score and the information: summed for the cut points; for the slopes, by
/// pattern of the block at hand.
class OrdinalSums {
 public:
  explicit OrdinalSums(std::size_t cuts)
      : cutScores(cuts), squares(cuts), neighbours(cuts), mixed(cuts), precision_(cuts + 1) {}

  /// Adds the observations of pattern `i` of the block to the score, and answers their log-likelihood.
  double observe(std::span<const LevelCounts::Cell> cells, const OrdinalModel::LevelFit& fitted,
                 std::size_t i) {
    const std::vector<double>& f = fitted.density;
    double logLikelihood = 0;
    residuals[i] = 0;
    for (const LevelCounts::Cell& cell : cells) {
      const double probability = fitted.probability[cell.level];
      logLikelihood +=
          probability > 0 ? cell.count * std::log(probability) : -std::numeric_limits<double>::infinity();
      const double ratio = cell.count / probability;
      if (cell.level < cutScores.size()) cutScores[cell.level] += ratio * f[cell.level + 1];
      if (cell.level > 0) cutScores[cell.level - 1] -= ratio * f[cell.level];
      residuals[i] += ratio * (f[cell.level + 1] - f[cell.level]);
    }
    return logLikelihood;
  }

  /// Adds the information of `m` observations of pattern `i`; the densities and probabilities of `fitted` are
  /// held off 0 in it.
  void inform(double m, OrdinalModel::LevelFit& fitted, std::size_t i) {
    std::vector<double>& f = fitted.density;
    const std::size_t cuts = squares.size();
    for (std::size_t cut = 1; cut <= cuts; ++cut) f[cut] = Link::offZero(f[cut]);
    const auto slopeOf = [&f](std::size_t level) { return f[level + 1] - f[level]; };
    weights[i] = 0;
    for (std::size_t level = 0; level <= cuts; ++level) {
      precision_[level] = m / std::max(fitted.probability[level], probabilityGuard);
      weights[i] += precision_[level] * slopeOf(level) * slopeOf(level);
    }
    for (std::size_t j = 0; j < cuts; ++j) {
      squares[j] += f[j + 1] * f[j + 1] * (precision_[j] + precision_[j + 1]);
      neighbours[j] += f[j + 1] * f[j + 2] * precision_[j + 1];
      mixed[j][i] = f[j + 1] * (precision_[j] * slopeOf(j) - precision_[j + 1] * slopeOf(j + 1));
    }
  }

  std::vector<double> cutScores;
  std::vector<double> squares;     ///< information of each cut point
  std::vector<double> neighbours;  ///< that with the next one, its sign changed
  Lane residuals;
  Lane weights;
  std::vector<Lane> mixed;  ///< of each cut point with the slopes

 private:
  std::vector<double> precision_;
};

Evaluation OrdinalModel::evaluate(const std::vector<double>& b) const {
  Evaluation result(coefficients());
  const std::vector<double> slopes = slopeTerms(b);
  LevelFit fitted(counts_.levels());
  OrdinalSums sums(cuts_);
  DoubleDouble logLikelihood;
  patterns_.forBlocks([&](const Block& block) {
    double ofBlock = 0;
    for (std::size_t i = 0; i < block.count; ++i) {
      const std::size_t g = block.first + i;
      fit(b, slopes[g], fitted);
      ofBlock += sums.observe(counts_.of(g), fitted, i);
      sums.inform(counts_.rowsOfPattern(g), fitted, i);
    }
    logLikelihood = logLikelihood + DoubleDouble{ofBlock};
    addProducts(patterns_, block, sums.weights, 1, cuts_, cuts_, result.information);
    for (std::size_t j = 0; j < patterns_.predictors(); ++j) {
      const std::span<const double> x = patterns_.column(j + 1, block);
      result.score[cuts_ + j] += laneProduct(x, sums.residuals);
      for (std::size_t cut = 0; cut < cuts_; ++cut) {
        result.information(static_cast<Index>(cuts_ + j + 1), static_cast<Index>(cut + 1)) +=
            laneProduct(x, sums.mixed[cut]);
      }
    }
  });
  result.logLikelihood = logLikelihood.rounded();
  std::copy(sums.cutScores.begin(), sums.cutScores.end(), result.score.begin());
  for (std::size_t j = 0; j < cuts_; ++j) {
    const auto place = static_cast<Index>(j + 1);
    result.information(place, place) = sums.squares[j];
    if (j + 1 < cuts_) result.information(place + 1, place) = -sums.neighbours[j];
  }
  return result;
}

/// How well the levels are fitted, and the mean level number of each pattern.
struct OrdinalFit {
  OrdinalFit(const OrdinalModel& model, const LevelCounts& counts, const Maximum& maximum)
      : scores(counts.patterns()) {
    const std::vector<double> slopes = model.slopeTerms(maximum.coefficients);
    OrdinalModel::LevelFit fitted(counts.levels());
    for (std::size_t g = 0; g < counts.patterns(); ++g) {
      model.fit(maximum.coefficients, slopes[g], fitted);
      counts.forLevels(g, [&](std::size_t level, double observed) {
        const double probability = fitted.probability[level];
        fitness.add(observed, counts.rowsOfPattern(g) * probability);
        scores[g] += static_cast<double>(level + 1) * probability;
      });
    }
  }

  LevelFitness fitness;
  std::vector<double> scores;
};

}  // namespace

void yLogistic::Ordinal_regression(const VariantArray& Y, const VariantArray& x, const StringArray& /*X_nom*/,
                                   const std::string& link_f, DoubleArray& regtable, double& loglikelihood,
                                   DoubleArray& GOFtable, DoubleArray& Associationtable,
                                   DoubleArray& SumMeasure, std::int16_t& numresponseorder) const {
  WorksheetFunction& host = worksheetFunction();
  const std::vector<double> response = numbersOf(responseOf(Y), "Y");
  for (const double y : response) {
    if (y != std::trunc(y)) raise(FailureNumber::InvalidCall, "Y must hold whole numbers");
  }
  const DoubleArray values(response);
  const double lowest = host.Min(values);
  const double k = host.Max(values) - lowest + 1;
  if (k < 3) {
    xlApp->messageBox("The response variable has less than 3 distinct values");
    return;
  }
  const std::vector<Index> levels = levelsFrom(response, lowest, k);
  checkCoefficients(k - 1);
  const CovariatePatterns patterns(x, response.size());
  const LevelCounts counts(patterns, levels, static_cast<std::size_t>(k));
  const Link link(host, link_f);
  const OrdinalModel model(patterns, counts, link);
  checkCoefficients(static_cast<double>(model.coefficients()));

  const Maximum maximum = maximise(model, model.start(), 0);
  CoefficientTable coefficients(host, patterns, maximum);
  for (std::size_t cut = 0; cut < model.cuts(); ++cut) coefficients.addConstant(cut, model.cuts());
  coefficients.addSlopes(model.cuts());
  if (link.isLogit()) coefficients.addOddsRatios();

  const OrdinalFit fit(model, counts, maximum);
  DoubleArray goodness = fit.fitness.table(host, counts, model.coefficients());
  Association association(counts, TiedOrder(fit.scores), pairsOfLevels(counts));

  regtable = coefficients.table();
  loglikelihood = maximum.logLikelihood;
  GOFtable = std::move(goodness);
  Associationtable = std::move(association.table);
  SumMeasure = std::move(association.measures);
  numresponseorder = toInteger<std::int16_t>(k);
}

}  // namespace zelkova
