#include "zelkova/gage/yGageLB.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/SortedLevels.h"
#include "zelkova/kit/groups.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

namespace {

/// A study row by row, and by parts and reference values.
struct BiasStudy {
  BiasStudy(const DoubleArray& dy, const StringArray& dpart, const DoubleArray& dstd)
      : readings(dy.vector()),
        references(firstRows(dstd, dy.rows(), "dstd")),
        parts(firstRows(dpart, dy.rows(), "dpart")),
        levels(sortedLevels(references)) {
    bias.reserve(readings.size());
    for (std::size_t i = 0; i < readings.size(); ++i) bias.push_back(readings[i] - references[i]);
  }

  /// What is wrong with the data; empty where nothing is.
  std::string fault() const {
    if (parts.count() < 3) return "Must have at least 3 parts";
    for (std::size_t i = 0; i < readings.size(); ++i) {
      if (levels.codes[i] != referenceOf(parts.codes()[i])) {
        return "Reference value for the same part must be the same";
      }
    }
    return {};
  }

  /// The place of a part's reference value in `levels`.
  Index referenceOf(Index part) const {
    return levels.codes[static_cast<std::size_t>(parts.firsts()[static_cast<std::size_t>(part)])];
  }

  std::span<const double> readings;
  std::span<const double> references;
  Levels parts;
  SortedLevels<double> levels;
  std::vector<double> bias;
};

/// The variation of readings within a set of parts.
struct WithinParts {
  double n = 0;
  double df = 0;
  double squares = 0;

  void add(const GroupSummary& part) {
    n += part.n;
    df += part.n - 1;
    squares += part.squares;
  }
};

double biasPValue(WorksheetFunction& host, double meanBias, const WithinParts& within) {
  if (within.df == 0) return NoValue;
  const double sd = checked::root(within.squares / within.df);
  if (sd == 0) {
    raise(FailureNumber::DivisionByZero, "repeated readings of the same reference value do not vary");
  }
  const double se = sd / checked::root(within.n);
  const double t = std::abs(checked::quotient(meanBias, se));
  // Deliberate: the degrees of freedom are those of all readings, not the pooled ones of the parts.
  return host.TDist(t, within.n - 1, 2);
}

DoubleArray linearityOf(const BiasStudy& study, std::optional<double> processVariation) {
  const auto n = static_cast<Index>(study.bias.size());
  DoubleArray X(n, 2, 1.0);
  std::copy(study.references.begin(), study.references.end(), X.column(2).begin());
  DoubleArray coef, se, t, p, fitted, residual, regression;
  yRegression().RegOutput(DoubleArray(study.bias), X, coef, se, t, p, fitted, residual, regression, true);

  DoubleArray result(GageLinearity::size, NoValue);
  result(GageLinearity::Constant) = coef(1);
  result(GageLinearity::Slope) = coef(2);
  result(GageLinearity::SEConstant) = se(1);
  result(GageLinearity::SESlope) = se(2);
  result(GageLinearity::PConstant) = p(1);
  result(GageLinearity::PSlope) = p(2);
  result(GageLinearity::S) = regression(Reg::S);
  result(GageLinearity::RSquared) = regression(Reg::RSquared);
  if (processVariation) {
    result(GageLinearity::Linearity) = *processVariation * std::abs(coef(2));
    result(GageLinearity::LinearityShare) =
        checked::quotient(result(GageLinearity::Linearity), *processVariation);
  }
  return result;
}

DoubleArray biasTable(WorksheetFunction& host, const BiasStudy& study,
                      std::optional<double> processVariation) {
  WithinParts all;
  std::vector<WithinParts> atReference(static_cast<std::size_t>(study.levels.count()));
  Index part = 0;
  for (const GroupSummary& group : summariesOf(study.readings, study.parts.codes(), study.parts.count())) {
    all.add(group);
    atReference[static_cast<std::size_t>(study.referenceOf(part++))].add(group);
  }

  DoubleArray result(study.levels.count() + 1, GageBias::size, NoValue);
  const auto put = [&](Index row, double mean, const WithinParts& within) {
    result(row, GageBias::Bias) = mean;
    if (processVariation) {
      result(row, GageBias::BiasShare) = checked::quotient(std::abs(mean), *processVariation);
    }
    result(row, GageBias::PValue) = biasPValue(host, mean, within);
  };
  put(1, summaryOf(study.bias).mean(), all);
  const std::vector<GroupSummary> groups = summariesOf(study.bias, study.levels.codes, study.levels.count());
  for (Index k = 1; k <= study.levels.count(); ++k) {
    result(k + 1, GageBias::Reference) = study.levels.values(k);
    const auto place = static_cast<std::size_t>(k - 1);
    put(k + 1, groups[place].mean(), atReference[place]);
  }
  return result;
}

}  // namespace

void yGageLB::GageLBOutput(const DoubleArray& dy, const StringArray& dpart, const DoubleArray& dstd,
                           const std::string& PVar, DoubleArray& Linearity, DoubleArray& Bias,
                           std::string& ErrorCode) const {
  const BiasStudy study(dy, dpart, dstd);
  if (std::string fault = study.fault(); !fault.empty()) {
    ErrorCode = std::move(fault);
    return;
  }
  const std::optional<double> processVariation = givenWidth(PVar, "PVar");
  DoubleArray linearity = linearityOf(study, processVariation);
  DoubleArray bias = biasTable(worksheetFunction(), study, processVariation);
  checked::leaving(linearity, bias);
  Linearity = std::move(linearity);
  Bias = std::move(bias);
}

void yGageLB::GageLBPlotOutput(const DoubleArray& dy, const StringArray& dpart, const DoubleArray& dstd,
                               DoubleArray& BiasArray, DoubleArray& AverageBias) const {
  const BiasStudy study(dy, dpart, dstd);
  if (!study.fault().empty()) return;

  DoubleArray points(dy.rows(), GageBiasPoint::size, 0.0);
  std::copy(study.references.begin(), study.references.end(),
            points.column(GageBiasPoint::Reference).begin());
  std::copy(study.bias.begin(), study.bias.end(), points.column(GageBiasPoint::Bias).begin());
  DoubleArray averages(study.levels.count(), GageBiasPoint::size, 0.0);
  Index k = 0;
  for (const GroupSummary& group : summariesOf(study.bias, study.levels.codes, study.levels.count())) {
    ++k;
    averages(k, GageBiasPoint::Reference) = study.levels.values(k);
    averages(k, GageBiasPoint::Bias) = group.mean();
  }
  checked::leaving(points, averages);
  BiasArray = std::move(points);
  AverageBias = std::move(averages);
}

}  // namespace zelkova
