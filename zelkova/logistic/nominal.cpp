#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/doubleDouble.h"
#include "zelkova/kit/matrixSet.h"
#include "zelkova/kit/sums.h"
#include "zelkova/logistic/CovariatePatterns.h"
#include "zelkova/logistic/logisticTables.h"
#include "zelkova/logistic/newton.h"
#include "zelkova/logistic/yLogistic.h"

namespace zelkova {

namespace {

/// The levels of a response by their texts, in order of first appearance.
struct TextLevels {
  std::vector<std::string> texts;
  std::vector<Index> codes;
};

TextLevels levelsOf(const std::vector<std::string>& all) {
  const Levels levels{std::span<const std::string>(all)};
  TextLevels result{{}, levels.codes()};
  for (const Index first : levels.firsts()) result.texts.push_back(all[static_cast<std::size_t>(first)]);
  return result;
}

TextLevels levelsOf(std::span<const Variant> response) {
  std::vector<std::string> texts;
  if (!std::all_of(response.begin(), response.end(), [](const Variant& y) { return y.isNumber(); })) {
    texts.reserve(response.size());
    for (const Variant& y : response) texts.push_back(y.toText());
    return levelsOf(texts);
  }
  // Of numbers, a text for each distinct one is enough; those of one text are one level.
  const std::vector<double> values = numbersOf(response, "Y");
  const Levels numbers{std::span<const double>(values)};
  for (const Index first : numbers.firsts())
    texts.push_back(Variant(values[static_cast<std::size_t>(first)]).toText());
  TextLevels result = levelsOf(texts);
  const std::vector<Index> ofNumbers = std::exchange(result.codes, {});
  result.codes.reserve(response.size());
  for (const Index code : numbers.codes()) {
    result.codes.push_back(ofNumbers[static_cast<std::size_t>(code)]);
  }
  return result;
}

/// Numbers `reference` last, the others from 0 on in their order.
void setAside(std::size_t reference, TextLevels& levels) {
  std::rotate(levels.texts.begin() + static_cast<Index>(reference),
              levels.texts.begin() + static_cast<Index>(reference) + 1, levels.texts.end());
  const auto last = static_cast<Index>(levels.texts.size()) - 1;
  for (Index& code : levels.codes) {
    if (code == static_cast<Index>(reference)) {
      code = last;
    } else if (code > static_cast<Index>(reference)) {
      --code;
    }
  }
}

/// The likelihood of unordered levels, the last of which is the reference. Coefficients: a block for each
/// other level, its constant first.
class NominalModel {
 public:
  NominalModel(const CovariatePatterns& patterns, const LevelCounts& counts)
      : patterns_(patterns),
        counts_(counts),
        others_(counts.levels() - 1),
        blockSize_(patterns.predictors() + 1) {}

  std::size_t coefficients() const { return others_ * blockSize_; }

  Evaluation evaluate(const std::vector<double>& b) const;

  LevelFitness goodness(const std::vector<double>& b) const;

 private:
  /// The fitted probabilities in a block of patterns, by level; and the complements, to their own precision.
  struct BlockFit {
    explicit BlockFit(std::size_t levels) : eta(levels), probability(levels), complement(levels) {}

    std::vector<Lane> eta;
    Lane logSum{};  ///< logarithm of the sum of all exp(eta)
    std::vector<Lane> probability;
    std::vector<Lane> complement;
  };
  void fit(const std::vector<double>& b, const Block& block, BlockFit& result) const;

  const CovariatePatterns& patterns_;
  const LevelCounts& counts_;
  std::size_t others_;
  std::size_t blockSize_;
};

void NominalModel::fit(const std::vector<double>& b, const Block& block, BlockFit& result) const {
  for (std::size_t level = 0; level < others_; ++level) {
    Lane& eta = result.eta[level];
    eta.fill(b[level * blockSize_]);
    for (std::size_t j = 1; j < blockSize_; ++j) {
      const std::span<const double> x = patterns_.column(j, block);
      for (std::size_t i = 0; i < block.count; ++i) eta[i] += b[level * blockSize_ + j] * x[i];
    }
  }
  for (std::size_t i = 0; i < block.count; ++i) {
    std::size_t top = 0;
    for (std::size_t level = 1; level <= others_; ++level) {
      if (result.eta[level][i] > result.eta[top][i]) top = level;
    }
    const double largest = result.eta[top][i];
    double rest = 0;
    for (std::size_t level = 0; level <= others_; ++level) {
      if (level == top) continue;
      result.probability[level][i] = std::exp(result.eta[level][i] - largest);
      rest += result.probability[level][i];
    }
    const double sum = 1 + rest;
    for (std::size_t level = 0; level <= others_; ++level) {
      if (level == top) continue;
      result.probability[level][i] /= sum;
      result.complement[level][i] = 1 - result.probability[level][i];
    }
    result.probability[top][i] = 1 / sum;
    result.complement[top][i] = rest / sum;
    result.logSum[i] = largest + std::log1p(rest);
  }
}

Evaluation NominalModel::evaluate(const std::vector<double>& b) const {
  Evaluation result(coefficients());
  BlockFit fitted(others_ + 1);
  std::vector<Lane> residuals(others_);
  DoubleDouble logLikelihood;
  patterns_.forBlocks([&](const Block& block) {
    fit(b, block, fitted);
    double ofBlock = 0;
    for (std::size_t i = 0; i < block.count; ++i) {
      const double m = counts_.rowsOfPattern(block.first + i);
      for (std::size_t level = 0; level < others_; ++level) {
        residuals[level][i] = -m * fitted.probability[level][i];
      }
      for (const LevelCounts::Cell& cell : counts_.of(block.first + i)) {
        ofBlock += cell.count * (fitted.eta[cell.level][i] - fitted.logSum[i]);
        if (cell.level < others_) residuals[cell.level][i] += cell.count;
      }
    }
    logLikelihood = logLikelihood + DoubleDouble{ofBlock};
    Lane weights;
    for (std::size_t level = 0; level < others_; ++level) {
      for (std::size_t j = 0; j < blockSize_; ++j) {
        result.score[level * blockSize_ + j] += laneProduct(patterns_.column(j, block), residuals[level]);
      }
      for (std::size_t other = 0; other <= level; ++other) {
        const Lane& factor = other == level ? fitted.complement[level] : fitted.probability[other];
        const double sign = other == level ? 1 : -1;
        for (std::size_t i = 0; i < block.count; ++i) {
          weights[i] =
              sign * counts_.rowsOfPattern(block.first + i) * fitted.probability[level][i] * factor[i];
        }
        addProducts(patterns_, block, weights, 0, level * blockSize_, other * blockSize_, result.information);
      }
    }
  });
  result.logLikelihood = logLikelihood.rounded();
  return result;
}

LevelFitness NominalModel::goodness(const std::vector<double>& b) const {
  LevelFitness result;
  BlockFit fitted(others_ + 1);
  patterns_.forBlocks([&](const Block& block) {
    fit(b, block, fitted);
    for (std::size_t i = 0; i < block.count; ++i) {
      const double m = counts_.rowsOfPattern(block.first + i);
      counts_.forLevels(block.first + i, [&](std::size_t level, double observed) {
        result.add(observed, m * fitted.probability[level][i]);
      });
    }
  });
  return result;
}

}  // namespace

void yLogistic::Nominal_regression(const VariantArray& Y, const VariantArray& x, const StringArray& /*X_nom*/,
                                   const std::string& refevent, DoubleArray& regtable, double& loglikelihood,
                                   DoubleArray& GOFtable, StringArray& Yname) const {
  WorksheetFunction& host = worksheetFunction();
  TextLevels levels = levelsOf(responseOf(Y));
  const auto reference = std::find(levels.texts.begin(), levels.texts.end(), refevent);
  // deliberate: without a reference each level has coefficients of its own, and any of them could be it.
  if (reference == levels.texts.end()) matrix::raise(MatrixFailure::Singular);
  if (levels.texts.size() == 1) raise(FailureNumber::InvalidCall, "Y has a single level");
  setAside(static_cast<std::size_t>(reference - levels.texts.begin()), levels);
  checkCoefficients(static_cast<double>(levels.texts.size()) - 1);
  const CovariatePatterns patterns(x, levels.codes.size());
  const LevelCounts counts(patterns, levels.codes, levels.texts.size());
  const NominalModel model(patterns, counts);
  checkCoefficients(static_cast<double>(model.coefficients()));

  const Maximum maximum = maximise(model, std::vector<double>(model.coefficients()), 0);
  CoefficientTable coefficients(host, patterns, maximum);
  const std::size_t blockSize = patterns.predictors() + 1;
  for (std::size_t constant = 0; constant < model.coefficients(); constant += blockSize) {
    coefficients.addConstant(constant, constant + 1);
    coefficients.addSlopes(constant + 1);
    coefficients.addOddsRatios();
  }

  DoubleArray goodness = model.goodness(maximum.coefficients).table(host, counts, model.coefficients());
  levels.texts.pop_back();
  regtable = coefficients.table();
  loglikelihood = maximum.logLikelihood;
  GOFtable = std::move(goodness);
  Yname = StringArray(std::move(levels.texts));
}

}  // namespace zelkova
