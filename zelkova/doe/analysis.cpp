#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "zelkova/doe/codedRuns.h"
#include "zelkova/doe/factorialTerms.h"
#include "zelkova/doe/yDOEAnalyse.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/kit/matrixSet.h"
#include "zelkova/models/regressionFit.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

namespace {

using doe::Term;

enum class DesignKind { Factorial, PlackettBurman };

DesignKind kindOf(const Variant& DesignType) {
  const double type = DesignType.toNumber();
  if (type == 1) return DesignKind::Factorial;
  if (type == 2) return DesignKind::PlackettBurman;
  raise(FailureNumber::InvalidCall, "DesignType is 1 for a factorial, 2 for a Plackett-Burman design");
}

/// A run sheet with its responses.
struct Experiment {
  Column y;
  const StringArray& dx;
  const DoubleArray &dc, &db;
  const StringArray &name, &type, &low, &high;
  DoubleArray coded;

  Index runs() const { return static_cast<Index>(y.size()); }
  Index factors() const { return dx.columns(); }
  bool isCentre(Index run) const { return dc(run) == 0; }

  bool hasCentreRuns() const {
    doe::checkCovers(dc.size(), runs(), "dc");
    for (Index i = 1; i <= runs(); ++i) {
      if (isCentre(i)) return true;
    }
    return false;
  }

  /// Whether any factor's levels are other than -1 and 1.
  bool hasRealLevels() const {
    for (Index j = 1; j <= factors(); ++j) {
      if (high(j) != "1" || low(j) != "-1") return true;
    }
    return false;
  }
};

/// What the caller wants of centre runs and blocks, as far as the data and the kind of design allow.
struct Choices {
  Variant Center, Block, AnalyseBlock, AnalyseCenter;

  bool wantCentreTerm() const { return Center.toNumber() > 0 && AnalyseCenter.toFlag(); }

  /// The number of blocks that the model tells apart.
  Index blocks() const { return AnalyseBlock.toFlag() ? toInteger<std::int16_t>(Block.toNumber()) : 1; }
};

/// The flag that tells whether the replicates of a Plackett-Burman design are blocks: true may come as -1.
bool blocksReplicates(const Variant& Block) {
  return Block.isFlag() ? Block.toFlag() : Block.toNumber() == -1;
}

Choices normalised(Choices choices, DesignKind kind, const Variant& Replicate, const Experiment& experiment) {
  if (kind == DesignKind::PlackettBurman) {
    choices.Block = blocksReplicates(choices.Block) ? Replicate.toNumber() : 1.0;
  }
  const bool wantsCentre = choices.Center.toNumber() > 0 || choices.AnalyseCenter.toFlag();
  if (wantsCentre && !experiment.hasCentreRuns()) {
    choices.Center = 0.0;
    choices.AnalyseCenter = Variant::flag(false);
  }
  return choices;
}

/// The factors that a term multiplies: one for each letter, or the one that a code of any length names.
std::vector<Index> factorsOf(const std::string& code, DesignKind kind, Index factors) {
  std::vector<Index> result;
  if (kind == DesignKind::PlackettBurman) {
    result.push_back(doe::GetFactorIndex(code));
  } else {
    for (const char letter : code) result.push_back(doe::GetFactorIndex({&letter, 1}));
  }
  const bool isTerm = !result.empty() && std::all_of(result.begin(), result.end(), [factors](Index factor) {
    return factor >= 1 && factor <= factors;
  });
  if (!isTerm) raise(FailureNumber::OutOfRange, "\"" + code + "\" is no term of the factors in dx");
  if (static_cast<Index>(result.size()) > doe::group::mostFactors) {
    raise(FailureNumber::InvalidCall, "a term has at most seven factors, " + code + " has more");
  }
  return result;
}

/// Failure 5012 where the runs stand in fewer than `blocks` blocks; all runs of other labels make up for one.
/// The columns of the blocks are then dependent, and told so before thousands of them are multiplied out.
void checkBlocksOfRuns(const Experiment& experiment, Index blocks) {
  doe::checkCovers(experiment.db.size(), experiment.runs(), "db");
  std::vector<bool> seen(static_cast<std::size_t>(blocks) + 1);
  for (Index i = 1; i <= experiment.runs(); ++i) {
    const double label = experiment.db(i);
    const bool isBlock = label >= 1 && label <= static_cast<double>(blocks) && label == std::trunc(label);
    seen[isBlock ? static_cast<std::size_t>(label) : 0] = true;
  }
  if (std::count(seen.begin(), seen.end(), true) < blocks) matrix::raise(MatrixFailure::Singular);
}

struct FactorialModel {
  std::vector<Term> terms;  ///< behind the constant, in the order of the tables
  Index blocks;             ///< how many the block terms tell apart

  bool hasCentreTerm() const { return !terms.empty() && terms.back().group == doe::group::curvature; }
};

FactorialModel modelOf(const StringArray& TSel, DesignKind kind, const Choices& choices,
                       const Experiment& experiment) {
  FactorialModel model{{}, choices.blocks()};
  if (model.blocks > 1) checkBlocksOfRuns(experiment, model.blocks);
  std::vector<Term>& terms = model.terms;
  for (Index block = 1; block < model.blocks; ++block) {
    terms.push_back({std::string(doe::blockPrefix) + std::to_string(block), doe::group::blocks, {}, block});
  }
  for (const std::string& code : TSel.elements()) {
    std::vector<Index> factors = factorsOf(code, kind, experiment.factors());
    const auto count = static_cast<Index>(factors.size());
    const std::string label = count == 1 ? code + ": " + experiment.name(factors.front()) : code;
    terms.push_back({label, count, std::move(factors)});
  }
  if (choices.wantCentreTerm()) terms.push_back({std::string(doe::centreLabel), doe::group::curvature, {}});
  if (static_cast<Index>(terms.size()) >= experiment.runs()) matrix::raise(MatrixFailure::Singular);
  return model;
}

/// Deviations of the blocks from their mean; the last block is minus the sum of the others.
std::vector<double> blockColumn(const Experiment& experiment, Index block, Index blocks) {
  std::vector<double> column(experiment.y.size());
  for (Index i = 1; i <= experiment.runs(); ++i) {
    const double label = experiment.db(i);
    const bool isOwn = label == static_cast<double>(block);
    const bool isLast = label == static_cast<double>(blocks);
    column[static_cast<std::size_t>(i - 1)] = isOwn ? 1 : isLast ? -1 : 0;
  }
  return column;
}

/// The corners at -1, so that the coefficient is the centre less the corners.
std::vector<double> centreColumn(const Experiment& experiment) {
  std::vector<double> column(experiment.y.size());
  for (Index i = 1; i <= experiment.runs(); ++i) {
    column[static_cast<std::size_t>(i - 1)] = experiment.dc(i) == 1 ? -1 : 0;
  }
  return column;
}

/// The columns of the model, a leading constant with them; `settings` are the factors' columns.
std::vector<std::vector<double>> modelColumns(const FactorialModel& model, const DoubleArray& settings,
                                              const Experiment& experiment) {
  std::vector<std::vector<double>> columns{std::vector<double>(experiment.y.size(), 1)};
  for (const Term& term : model.terms) {
    if (term.group == doe::group::blocks) {
      columns.push_back(blockColumn(experiment, term.block, model.blocks));
    } else if (term.group == doe::group::curvature) {
      columns.push_back(centreColumn(experiment));
    } else {
      std::vector<double> product(experiment.y.size(), 1);
      for (const Index factor : term.factors) {
        const auto setting = settings.column(factor);
        for (std::size_t i = 0; i < product.size(); ++i) product[i] *= setting[i];
      }
      columns.push_back(std::move(product));
    }
  }
  return columns;
}

/// The settings in the factors' own units; those of a text factor, and of one in no term, stay codes.
DoubleArray uncodedSettings(const FactorialModel& model, const Experiment& experiment) {
  doe::checkCovers(experiment.type.size(), experiment.factors(), "FType");
  std::set<Index> factors;
  for (const Term& term : model.terms) factors.insert(term.factors.begin(), term.factors.end());
  DoubleArray settings = experiment.coded;
  for (const Index j : factors) {
    if (experiment.type(j) != "Numeric") continue;
    for (Index i = 1; i <= experiment.runs(); ++i) settings(i, j) = toNumber(experiment.dx(i, j));
  }
  return settings;
}

/// A model multiplied out and solved with its columns in the order of their groups, so that the projection of
/// the whole holds those of all sequential models.
class SolvedModel {
 public:
  SolvedModel(const std::vector<Term>& terms, const std::vector<std::vector<double>>& columns, Column y)
      : groups_(groupsOf(terms)),
        columns_(columns.begin(), columns.end()),
        products_(with(columns_, y)),
        byGroup_(placesByGroup(groups_)),
        solved_(products_, byGroup_),
        response_{columns_.size(), extendedSum(y)},
        projection_(solved_.project(response_.place)) {}
  SolvedModel(const SolvedModel&) = delete;
  SolvedModel& operator=(const SolvedModel&) = delete;

  RegressionFit fit(WorksheetFunction& host) const {
    RegressionFit fit = fitRegression(host, products_, solved_, response_, true);
    for (DoubleArray* values : {&fit.coef, &fit.SECoef, &fit.tStat, &fit.PV}) *values = inTermOrder(*values);
    return fit;
  }

  DoubleArray coefficients() const { return inTermOrder(DoubleArray(solved_.coefficients(projection_))); }

  const std::vector<Column>& columns() const { return columns_; }

  std::vector<double> leverages() const {
    std::vector<Column> ordered;
    for (const std::size_t place : byGroup_) ordered.push_back(columns_[place]);
    return solved_.leverages(ordered);
  }

  /// The number of columns of a group.
  double size(Index group) const {
    return static_cast<double>(std::count(groups_.begin(), groups_.end(), group));
  }

  /// What a group explains beyond the groups before it.
  double sequentialSS(Index group) const {
    DoubleDouble sum;
    for (std::size_t k = 0; k < byGroup_.size(); ++k) {
      if (groups_[byGroup_[k]] == group) sum = sum + projection_.sequential[k];
    }
    return checked::finite(sum.rounded());
  }

  /// What the model explains beyond itself without a group.
  double adjustedSS(Index group) const {
    std::vector<std::size_t> others;
    for (const std::size_t place : byGroup_) {
      if (groups_[place] != group) others.push_back(place);
    }
    const LeastSquares without(products_, std::move(others));
    const DoubleDouble difference = explained(projection_) - explained(without.project(response_.place));
    // Rounding must not turn the sign of what is 0.
    return std::max(0.0, checked::finite(difference.rounded()));
  }

 private:
  static std::vector<Column> with(std::vector<Column> columns, Column y) {
    columns.push_back(y);
    return columns;
  }

  static std::vector<Index> groupsOf(const std::vector<Term>& terms) {
    constexpr Index ofConstant = -1;
    std::vector<Index> groups{ofConstant};
    for (const Term& term : terms) groups.push_back(term.group);
    return groups;
  }

  static std::vector<std::size_t> placesByGroup(const std::vector<Index>& groups) {
    std::vector<std::size_t> places = firstPlaces(groups.size());
    std::stable_sort(places.begin(), places.end(),
                     [&groups](std::size_t a, std::size_t b) { return groups[a] < groups[b]; });
    return places;
  }

  DoubleArray inTermOrder(const DoubleArray& values) const {
    DoubleArray result(values.rows());
    for (std::size_t k = 0; k < byGroup_.size(); ++k) {
      result(static_cast<Index>(byGroup_[k]) + 1) = values(static_cast<Index>(k) + 1);
    }
    return result;
  }

  DoubleDouble explained(const LeastSquares::Projection& projection) const {
    return regressionSS(products_, response_, projection, true);
  }

  std::vector<Index> groups_;  ///< of each column
  std::vector<Column> columns_;
  CrossProducts products_;
  std::vector<std::size_t> byGroup_;
  LeastSquares solved_;
  ResponseSummary response_;
  LeastSquares::Projection projection_;
};

/// The table of terms.
struct TermTable {
  StringArray labels;
  DoubleArray effect, coef, se, t, p;
};

/// With a centre term the constant is the mean of the corner runs, and its error that of such a mean.
void moveConstantToCorners(WorksheetFunction& host, const Experiment& experiment, const DoubleArray& RegMain,
                           TermTable& table) {
  table.coef(1) -= table.coef(table.coef.rows());
  const double mse = RegMain(Reg::MSE);
  if (mse == NoValue) return;
  double corners = 0;
  for (Index i = 1; i <= experiment.runs(); ++i) corners += experiment.isCentre(i) ? 0 : 1;
  table.se(1) = checked::root(checked::quotient(mse, corners));
  table.t(1) = checked::quotient(table.coef(1), table.se(1));
  table.p(1) = host.TDist(std::abs(table.t(1)), RegMain(Reg::DFError), 2);
}

TermTable termTable(WorksheetFunction& host, const FactorialModel& model, const Experiment& experiment,
                    RegressionFit fit) {
  std::vector<std::string> labels{std::string(doe::constantLabel)};
  for (const Term& term : model.terms) labels.push_back(term.label);
  TermTable table{StringArray(std::move(labels)),
                  {},
                  std::move(fit.coef),
                  std::move(fit.SECoef),
                  std::move(fit.tStat),
                  std::move(fit.PV)};
  if (model.hasCentreTerm()) moveConstantToCorners(host, experiment, fit.RegMain, table);
  table.effect = DoubleArray(table.coef.rows(), NoValue);
  for (Index i = 1; i <= table.effect.rows(); ++i) {
    if (doe::isFactorTerm(table.labels(i))) table.effect(i) = 2 * table.coef(i);
  }
  return table;
}

/// The analysis of variance.
struct SourceTable {
  StringArray labels;
  DoubleArray df, sequential, adjusted, F, p;
};

constexpr std::array<const char*, 9> groupNames = {
    "Blocks",
    "Main Effects",
    "2-Way Interactions",
    "3-Way Interactions",
    "4-Way Interactions",
    "5-Way Interactions",
    "6-Way Interactions",
    "7-Way Interactions",
    "Curvature",
};

/// The groups that have a row, in order.
std::vector<Index> activeGroups(const std::vector<Term>& terms, DesignKind kind) {
  std::vector<Index> active;
  for (Index group = doe::group::blocks; group <= doe::group::curvature; ++group) {
    const bool isAlways = kind == DesignKind::PlackettBurman && group == doe::group::mainEffects;
    const bool hasTerms =
        std::any_of(terms.begin(), terms.end(), [group](const Term& term) { return term.group == group; });
    if (isAlways || hasTerms) active.push_back(group);
  }
  return active;
}

SourceTable sourceTable(WorksheetFunction& host, const std::vector<Index>& groups, const SolvedModel& model,
                        const DoubleArray& RegMain) {
  const auto count = static_cast<Index>(groups.size());
  const Index error = count + 1;
  const Index total = count + 2;
  SourceTable table{StringArray(total),          DoubleArray(total),          DoubleArray(total),
                    DoubleArray(total, NoValue), DoubleArray(count, NoValue), DoubleArray(count, NoValue)};
  table.labels(error) = "Residual Error";
  table.labels(total) = "Total";
  table.df(error) = RegMain(Reg::DFError);
  table.df(total) = RegMain(Reg::DFTotal);
  table.sequential(error) = table.adjusted(error) = RegMain(Reg::SSE);
  table.sequential(total) = RegMain(Reg::SST);

  for (Index row = 1; row <= count; ++row) {
    const Index group = groups[static_cast<std::size_t>(row - 1)];
    table.labels(row) = groupNames[static_cast<std::size_t>(group)];
    table.df(row) = model.size(group);
    table.sequential(row) = model.sequentialSS(group);
    table.adjusted(row) = count > 1 ? model.adjustedSS(group) : RegMain(Reg::SSR);
    constexpr double least = 1E-8;
    const std::array parts = {table.df(row), table.df(error), table.adjusted(error), table.adjusted(row)};
    if (*std::min_element(parts.begin(), parts.end()) < least) continue;
    table.F(row) =
        checked::quotient(table.adjusted(row) / table.df(row), table.adjusted(error) / table.df(error));
    table.p(row) = host.FDist(table.F(row), table.df(row), table.df(error));
  }
  checked::leaving(table.df, table.sequential, table.adjusted);
  return table;
}

DoubleArray otherStatistics(const SolvedModel& model, const DoubleArray& RegMain,
                            const DoubleArray& residual) {
  DoubleArray others(DOEOthers::size);
  others(DOEOthers::S) = RegMain(Reg::S);
  others(DOEOthers::RSquared) = RegMain(Reg::RSquared);
  others(DOEOthers::AdjustedRSquared) = RegMain(Reg::AdjustedRSquared);
  others(DOEOthers::PRESS) = predictionSS(residual.vector(), model.leverages());
  others(DOEOthers::PredictedRSquared) = predictedRSquared(others(DOEOthers::PRESS), RegMain(Reg::SST));
  return others;
}

/// The coefficients in the factors' own units.
DoubleArray uncodedCoefficients(const FactorialModel& model, const Experiment& experiment) {
  const auto columns = modelColumns(model, uncodedSettings(model, experiment), experiment);
  DoubleArray coefficients = SolvedModel(model.terms, columns, experiment.y).coefficients();
  if (model.hasCentreTerm()) coefficients(1) -= coefficients(coefficients.rows());
  return coefficients;
}

}  // namespace

void yDOEAnalyse::DOEAnaOutput(const DoubleArray& dy, const StringArray& dx, const DoubleArray& dc,
                               const DoubleArray& db, const StringArray& TSel, const StringArray& FName,
                               const StringArray& FType, const StringArray& FLow, const StringArray& FHigh,
                               const Variant& DesignType, const Variant& Factor, const Variant& Design,
                               Variant& Center, const Variant& Replicate, Variant& Block,
                               const Variant& AnalyseBlock, Variant& AnalyseCenter, StringArray& TermsO,
                               DoubleArray& CeffectO, DoubleArray& CcoefO, DoubleArray& CSECoefO,
                               DoubleArray& CtStatO, DoubleArray& CPvalueO, StringArray& SourcesO,
                               DoubleArray& DoFO, DoubleArray& SeqSSO, DoubleArray& AdjSSO,
                               DoubleArray& SSFstatO, DoubleArray& SSPvalueO, DoubleArray& UcoefO,
                               DoubleArray& DOEothers, DoubleArray& fyfitO, DoubleArray& fresidualO,
                               const std::string& OutputType) const {
  const DesignKind kind = kindOf(DesignType);
  const Column y = onlyColumnOf(dy, "dy");
  const Experiment experiment{y,    dx,    dc,
                              db,   FName, FType,
                              FLow, FHigh, doe::codedSettings(dx, FLow, FHigh, static_cast<Index>(y.size()))};
  Choices choices = normalised({Center, Block, AnalyseBlock, AnalyseCenter}, kind, Replicate, experiment);
  StringArray selected = TSel;
  if (kind == DesignKind::Factorial) {
    RemoveAlias(Factor, Design, Replicate, choices.Block, AnalyseBlock, selected);
  }
  const FactorialModel model = modelOf(selected, kind, choices, experiment);
  const auto columns = modelColumns(model, experiment.coded, experiment);
  const SolvedModel solved(model.terms, columns, y);
  RegressionFit fit = solved.fit(worksheetFunction());
  const DoubleArray RegMain = fit.RegMain;
  DoubleArray fitted = fittedValues(solved.columns(), fit.coef);
  DoubleArray residual = residualsOf(y, fitted);
  roundForDisplay(residual);
  checked::leaving(fitted, residual);

  const auto assignFits = [&] {
    Center = std::move(choices.Center);
    Block = std::move(choices.Block);
    AnalyseCenter = std::move(choices.AnalyseCenter);
    fyfitO = std::move(fitted);
    fresidualO = std::move(residual);
  };
  if (OutputType == "Residual") return assignFits();

  const DoubleArray others = otherStatistics(solved, RegMain, residual);
  TermTable byTerm = termTable(worksheetFunction(), model, experiment, std::move(fit));
  SourceTable bySource = sourceTable(worksheetFunction(), activeGroups(model.terms, kind), solved, RegMain);
  DoubleArray uncoded;
  if (experiment.hasRealLevels()) uncoded = uncodedCoefficients(model, experiment);
  checked::leaving(byTerm.coef, byTerm.effect, uncoded);

  assignFits();
  TermsO = std::move(byTerm.labels);
  CeffectO = std::move(byTerm.effect);
  CcoefO = std::move(byTerm.coef);
  CSECoefO = std::move(byTerm.se);
  CtStatO = std::move(byTerm.t);
  CPvalueO = std::move(byTerm.p);
  SourcesO = std::move(bySource.labels);
  DoFO = std::move(bySource.df);
  SeqSSO = std::move(bySource.sequential);
  AdjSSO = std::move(bySource.adjusted);
  SSFstatO = std::move(bySource.F);
  SSPvalueO = std::move(bySource.p);
  UcoefO = std::move(uncoded);
  DOEothers = others;
}

}  // namespace zelkova
