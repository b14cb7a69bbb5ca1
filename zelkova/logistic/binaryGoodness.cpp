#include <algorithm>
#include <array>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/sums.h"
#include "zelkova/logistic/binaryFit.h"
#include "zelkova/logistic/yLogistic.h"

namespace zelkova {

namespace {

struct ChiSquare {
  double value;
  double df;
};

/// The statistic of Hosmer and Lemeshow (Communications in Statistics A9, 1980): observed and expected events
/// and non-events in ten groups of rising probability, or as many as there are patterns. Groups are whole
/// patterns; a group ends with the pattern that brings the rows so far nearest to its share.
ChiSquare hosmerLemeshow(const BinaryModel& model, const PatternFit& fit, const TiedOrder& order) {
  constexpr std::size_t mostGroups = 10;
  const std::size_t patterns = order.patterns.size();
  const std::size_t groups = std::min(mostGroups, patterns);
  double all = 0;
  for (std::size_t g = 0; g < patterns; ++g) all += model.rows(g);

  double chiSquare = 0;
  double rows = 0;
  std::size_t next = 0;
  for (std::size_t group = 1; group <= groups; ++group) {
    const double share = all * static_cast<double>(group) / static_cast<double>(groups);
    // A pattern for each group to come.
    const std::size_t last = patterns - (groups - group);
    const std::size_t first = next;
    double events = 0;
    double others = 0;
    double expectedEvents = 0;
    double expectedOthers = 0;
    while (next < last) {
      const std::size_t pattern = order.patterns[next];
      const double m = model.rows(pattern);
      const bool isNearer = rows + m - share <= share - rows;
      if (next > first && group < groups && !isNearer) break;
      events += model.events(pattern);
      others += model.others(pattern);
      expectedEvents += m * fit.fitted[pattern].p;
      expectedOthers += m * fit.fitted[pattern].complement;
      rows += m;
      ++next;
    }
    chiSquare += pearsonTerm(events, expectedEvents) + pearsonTerm(others, expectedOthers);
  }
  return {chiSquare, static_cast<double>(groups) - 2};
}

/// The two directions in which Prentice's (Biometrics 32, 1976) family of links leaves the logit, as
/// covariates of the linear predictor.
struct Extensions {
  double ofEvents, ofOthers;
};

Extensions extensionsAt(const Probability& fitted) {
  // At the ends one quotient goes to a finite limit; the other grows like eta, and its weight vanishes.
  constexpr double smallest = 1E-300;
  const Probability p{std::max(fitted.p, smallest), std::max(fitted.complement, smallest)};
  return {p.complement < probabilityGuard ? -1 : logOf(p) / p.complement,
          p.p < probabilityGuard ? 1 : -logOf(p.opposite()) / p.p};
}

/// Score tests of those extensions (Brown, Communications in Statistics - Theory and Methods 11, 1982): free,
/// and with the sum of the two alone, which keeps the link symmetric.
class BrownTest {
 public:
  BrownTest(const BinaryModel& model, const PatternFit& fit) {
    const CovariatePatterns& patterns = model.patterns();
    const std::size_t columns = patterns.predictors() + 1;
    // The information and the score of the fit with both covariates behind its own.
    DoubleArray information(static_cast<Index>(columns), static_cast<Index>(columns), 0.0);
    std::array<std::vector<double>, 2> mixed{std::vector<double>(columns), std::vector<double>(columns)};
    patterns.forBlocks([&](const Block& block) {
      Lane weights;
      std::array<Lane, 2> weighted;
      for (std::size_t i = 0; i < block.count; ++i) {
        const std::size_t g = block.first + i;
        const Probability& p = fit.fitted[g];
        const Extensions at = extensionsAt(p);
        const double residual = model.events(g) * p.complement - model.others(g) * p.p;
        weights[i] = model.rows(g) * p.p * p.complement;
        weighted[0][i] = weights[i] * at.ofEvents;
        weighted[1][i] = weights[i] * at.ofOthers;
        score_[0] += residual * at.ofEvents;
        score_[1] += residual * at.ofOthers;
        whole_[0] += weighted[0][i] * at.ofEvents;
        whole_[1] += weighted[0][i] * at.ofOthers;
        whole_[2] += weighted[1][i] * at.ofOthers;
      }
      addProducts(patterns, block, weights, 0, 0, 0, information);
      for (std::size_t j = 0; j < columns; ++j) {
        mixed[0][j] += laneProduct(patterns.column(j, block), weighted[0]);
        mixed[1][j] += laneProduct(patterns.column(j, block), weighted[1]);
      }
    });
    const Information ofFit(information);
    const std::vector<double> solved0 = ofFit.solve(mixed[0]);
    const std::vector<double> solved1 = ofFit.solve(mixed[1]);
    rest_ = {whole_[0] - laneProduct(mixed[0], solved0), whole_[1] - laneProduct(mixed[0], solved1),
             whole_[2] - laneProduct(mixed[1], solved1)};
  }

  ChiSquare symmetric() const {
    // The covariates have opposite signs: of two that cancel, their sum is rounding.
    const double whole = whole_[0] + whole_[2];
    const double rest = rest_[0] + 2 * rest_[1] + rest_[2];
    const double score = score_[0] + score_[1];
    return isLost(rest, whole) ? ChiSquare{0, 0} : ChiSquare{score * score / rest, 1};
  }

  /// A direction that the fit itself, or the other one, can follow has no degree of freedom.
  ChiSquare general() const {
    const std::size_t first = rest_[0] >= rest_[2] ? 0 : 1;
    const std::size_t second = 1 - first;
    const double pivot = rest_[2 * first];
    if (isLost(pivot, whole_[2 * first])) return {0, 0};
    const double one = score_[first] * score_[first] / pivot;
    const double left = rest_[2 * second] - rest_[1] * rest_[1] / pivot;
    if (isLost(left, whole_[2 * second])) return {one, 1};
    const double score = score_[second] - rest_[1] / pivot * score_[first];
    return {one + score * score / left, 2};
  }

 private:
  static bool isLost(double rest, double whole) {
    constexpr double digits = 1E-12;
    return !(rest > digits * whole);
  }

  std::array<double, 2> score_{};
  std::array<double, 3> whole_{};  ///< products of the covariates: 0 and 0, 0 and 1, 1 and 1
  std::array<double, 3> rest_{};   ///< what the fit leaves of them
};

}  // namespace

DoubleArray goodnessOfFit(WorksheetFunction& host, const BinaryModel& model, const PatternFit& fit,
                          const TiedOrder& order) {
  const bool isLogit = model.link().isLogit();
  DoubleArray table(isLogit ? 5 : 3, GoodnessOfFit::size, NoValue);
  const auto plainSum = [](const DoubleArray& terms) {
    return laneSum(terms.elements(), [](double term) { return term; });
  };
  const double df =
      static_cast<double>(model.patterns().count()) - static_cast<double>(model.patterns().predictors()) - 1;
  setGoodnessRow(host, table, 1, plainSum(fit.pearson), df);
  setGoodnessRow(host, table, 2, plainSum(fit.deviance), df);
  const ChiSquare grouped = hosmerLemeshow(model, fit, order);
  setGoodnessRow(host, table, 3, grouped.value, grouped.df);
  if (!isLogit) return table;
  const BrownTest brown(model, fit);
  const ChiSquare general = brown.general();
  const ChiSquare symmetric = brown.symmetric();
  setGoodnessRow(host, table, 4, general.value, general.df);
  setGoodnessRow(host, table, 5, symmetric.value, symmetric.df);
  return table;
}

}  // namespace zelkova
