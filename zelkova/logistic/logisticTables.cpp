#include "zelkova/logistic/logisticTables.h"

#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/LevelTally.h"
#include "zelkova/kit/order.h"
#include "zelkova/logistic/yLogistic.h"

namespace zelkova {

namespace {

double guardedExp(double exponent) {
  constexpr double largest = 700;
  return exponent > largest ? NoValue : checked::exp(exponent);
}

}  // namespace

CoefficientTable::CoefficientTable(WorksheetFunction& host, const CovariatePatterns& patterns,
                                   const Maximum& maximum)
    : host_(host),
      patterns_(patterns),
      maximum_(maximum),
      table_(static_cast<Index>(maximum.coefficients.size()), LogisticCoefficients::size, NoValue) {}

void CoefficientTable::addConstant(std::size_t place, std::size_t firstSlope) {
  double coefficient = maximum_.coefficients[place];
  double variance = covariance(place, place);
  for (std::size_t i = 0; i < patterns_.predictors(); ++i) {
    const double shift = patterns_.centre(i) / patterns_.scale(i);
    coefficient -= shift * maximum_.coefficients[firstSlope + i];
    double ofSlope = -2 * covariance(place, firstSlope + i);
    for (std::size_t j = 0; j < patterns_.predictors(); ++j) {
      ofSlope += patterns_.centre(j) / patterns_.scale(j) * covariance(firstSlope + i, firstSlope + j);
    }
    variance += shift * ofSlope;
  }
  add(coefficient, variance);
}

void CoefficientTable::addSlopes(std::size_t firstSlope) {
  for (std::size_t i = 0; i < patterns_.predictors(); ++i) {
    const double scale = patterns_.scale(i);
    add(maximum_.coefficients[firstSlope + i] / scale,
        covariance(firstSlope + i, firstSlope + i) / scale / scale);
  }
}

void CoefficientTable::addOddsRatios() {
  const double z = host_.NormSInv(0.975);
  for (Index row = rows_ - static_cast<Index>(patterns_.predictors()) + 1; row <= rows_; ++row) {
    const double coefficient = table_(row, LogisticCoefficients::Coefficient);
    const double se = table_(row, LogisticCoefficients::SECoefficient);
    table_(row, LogisticCoefficients::OddsRatio) = guardedExp(coefficient);
    table_(row, LogisticCoefficients::LowerLimit) = guardedExp(coefficient - z * se);
    table_(row, LogisticCoefficients::UpperLimit) = guardedExp(coefficient + z * se);
  }
}

void CoefficientTable::add(double coefficient, double variance) {
  ++rows_;
  const double se = checked::root(checked::finite(variance));
  const double z = checked::quotient(coefficient, se);
  table_(rows_, LogisticCoefficients::Coefficient) = checked::finite(coefficient);
  table_(rows_, LogisticCoefficients::SECoefficient) = se;
  table_(rows_, LogisticCoefficients::Z) = z;
  // The lower tail keeps the digits that 1 less the upper one would lose.
  table_(rows_, LogisticCoefficients::PValue) = 2 * host_.NormSDist(-std::abs(z));
}

void setGoodnessRow(WorksheetFunction& host, DoubleArray& table, Index row, double chiSquare, double df) {
  chiSquare = std::max(0.0, checked::finite(chiSquare));
  table(row, GoodnessOfFit::ChiSquare) = chiSquare;
  table(row, GoodnessOfFit::DF) = df;
  table(row, GoodnessOfFit::PValue) = df == 0 ? NoValue : host.ChiDist(chiSquare, df);
}

double pearsonTerm(double observed, double expected) {
  const double residual = observed - expected;
  return residual == 0 ? 0 : checked::quotient(residual * residual, expected);
}

double devianceTerm(double observed, double expected) {
  return observed == 0 ? 0 : observed * checked::log(checked::quotient(observed, expected));
}

void LevelFitness::add(double observed, double expected) {
  pearson += pearsonTerm(observed, expected);
  deviance += 2 * devianceTerm(observed, expected);
}

DoubleArray LevelFitness::table(WorksheetFunction& host, const LevelCounts& counts,
                                std::size_t coefficients) const {
  const double df = static_cast<double>(counts.patterns()) * (static_cast<double>(counts.levels()) - 1) -
                    static_cast<double>(coefficients);
  DoubleArray result(2, GoodnessOfFit::size, NoValue);
  setGoodnessRow(host, result, 1, pearson, df);
  setGoodnessRow(host, result, 2, deviance, df);
  return result;
}

TiedOrder::TiedOrder(std::span<const double> scores) {
  constexpr double tie = 1E-9;
  std::vector<order::Row> rows = order::rowsOf(scores);
  order::stableSort(rows);
  patterns.reserve(rows.size());
  const auto closeClass = [&] {
    if (!starts.empty()) std::sort(patterns.begin() + static_cast<Index>(starts.back()), patterns.end());
  };
  double classScore = 0;
  for (const order::Row& row : rows) {
    const auto pattern = static_cast<std::size_t>(row.place);
    const double score = scores[pattern];
    if (starts.empty() || score - classScore > tie * std::abs(score)) {
      closeClass();
      starts.push_back(patterns.size());
      classScore = score;
    }
    patterns.push_back(pattern);
  }
  closeClass();
  starts.push_back(patterns.size());
}

double pairsOfLevels(const LevelCounts& counts) {
  double pairs = 0;
  double before = 0;
  for (const double rows : counts.rowsOfLevels()) {
    pairs += before * rows;
    before += rows;
  }
  return pairs;
}

Association::Association(const LevelCounts& counts, const TiedOrder& order, double pairs)
    : table(PairRows::size, PairColumns::size, 0.0), measures(PairMeasures::size, NoValue) {
  double concordant = 0;
  double discordant = 0;
  LevelTally lower(counts.levels());
  for (std::size_t k = 0; k + 1 < order.starts.size(); ++k) {
    const std::span<const std::size_t> tied =
        std::span(order.patterns).subspan(order.starts[k], order.starts[k + 1] - order.starts[k]);
    const double all = lower.all();
    for (const std::size_t pattern : tied) {
      for (const LevelCounts::Cell& cell : counts.of(pattern)) {
        concordant += cell.count * lower.below(cell.level);
        discordant += cell.count * (all - lower.below(cell.level + 1));
      }
    }
    for (const std::size_t pattern : tied) {
      for (const LevelCounts::Cell& cell : counts.of(pattern)) lower.add(cell.level, cell.count);
    }
  }

  table(PairRows::Concordant, PairColumns::Number) = concordant;
  table(PairRows::Discordant, PairColumns::Number) = discordant;
  table(PairRows::Tied, PairColumns::Number) = pairs - concordant - discordant;
  table(PairRows::Total, PairColumns::Number) = pairs;
  for (Index row = 1; row <= PairRows::size; ++row) {
    table(row, PairColumns::Percent) = checked::quotient(100.0 * table(row, PairColumns::Number), pairs);
  }
  const double surplus = concordant - discordant;
  const double n = counts.rows();
  measures(PairMeasures::SomersD) = surplus / pairs;
  if (concordant + discordant > 0) measures(PairMeasures::Gamma) = surplus / (concordant + discordant);
  measures(PairMeasures::TauA) = surplus / (n * (n - 1) / 2);
}

}  // namespace zelkova
